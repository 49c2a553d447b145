// SPDX-License-Identifier: MIT
#pragma once

#include <live/events/liveevent.h>

#include <QByteArray>
#include <QDateTime>

#include <vector>

/*! Events as they are shown, for a file. A value: it may be written in another thread. */
struct EventTable
{
    std::vector<LiveEvent> events;
    QDateTime start; //!< the time of day of the time 0

    QByteArray toCsv() const;
    QByteArray toJson() const;
};
