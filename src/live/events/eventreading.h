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
    struct Events
    {
        std::vector<LiveEvent> events; //!< with times in us since 1970
        quint64 forgotten = 0;         //!< that there were beside them
    };

    /*! The members "events" of a document, as many as an EventList keeps, and "forgotten". Empty when something is wrong,
     *  with a sentence.
     */
    static std::optional<Events> fromJson(const QByteArray &text, QString *errorMessage);
};
