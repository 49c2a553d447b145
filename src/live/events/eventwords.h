// SPDX-License-Identifier: MIT
#pragma once

#include "liveevent.h"

#include <QCoreApplication>
#include <QString>

/*! Events in words, for people. */
class EventWords
{
    Q_DECLARE_TR_FUNCTIONS(EventWords)

public:
    /*! A sentence without the node: "Emergency 4210h: device temperature. Error register: generic error, temperature." */
    static QString text(const LiveEvent &event);

    /*! The same with the node in front, and how often it came: "Node 4: ... (12 times)" */
    static QString line(const LiveEvent &event);

    static QString severity(Severity severity);

private:
    static QString emergency(const LiveEvent &event);
    static QString state(quint32 code);
    static QString command(quint32 code);
};
