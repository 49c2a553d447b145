// SPDX-License-Identifier: MIT
#pragma once

#include "liveevent.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QString>

#include <optional>
#include <vector>

/*! Events out of what EventWriting made of them. */
class EventReading
{
    Q_DECLARE_TR_FUNCTIONS(EventReading)

public:
    /*! The member "events" of a document, as many as an EventList keeps. Their times are us since 1970. Empty when
     *  something is wrong, with a sentence.
     */
    static std::optional<std::vector<LiveEvent>> fromJson(const QByteArray &text, QString *errorMessage);
};
