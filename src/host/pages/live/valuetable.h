// SPDX-License-Identifier: MIT
#pragma once

#include <live/values/livevalues.h>

#include <QByteArray>
#include <QDateTime>

#include <vector>

class LiveBus;
class LiveWatch;

/*! The histories of all watched values at one moment, for a file. It can be handed to another thread. */
class ValueTable
{
public:
    static ValueTable of(const LiveWatch &watch, const LiveBus &live);

    /*! Time after time, with all that came then: the last value of a point. See ValueWriting. */
    QByteArray toCsv() const;

private:
    struct Column
    {
        LiveValue value; // without a history
        ValueHistory history;
    };

    std::vector<Column> m_columns;
    QDateTime m_start; // at which the line of time is 0
};
