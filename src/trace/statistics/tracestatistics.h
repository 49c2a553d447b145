// SPDX-License-Identifier: MIT
#pragma once

#include <trace/core/traceframe.h>

#include <QVector>

#include <unordered_map>

/*! What of a trace can be counted. */
struct TraceCount
{
    quint64 frames = 0;
    quint64 bits = 0; //!< on the wire, see CanOpen::frameBits(); none of error frames
    qint64 first = 0; //!< us; the earliest, in traces whose times run backward, too
    qint64 last = 0;  //!< us; the latest

    void add(qint64 time, int frameBits);
    /*! From the first to the last, in s. */
    double duration() const;
};

struct ChannelCount
{
    TraceCount all;
    quint64 errorFrames = 0;
    quint64 remoteFrames = 0;
    quint64 sent = 0;
    quint64 mostBits = 0; //!< within one second of the clock
};

struct IdentifierCount
{
    quint32 id = 0;
    bool isExtended = false;
    quint8 channel = 0;
    TraceCount count;
};

/*! Counts the frames of a trace: in all, by channel, and by identifier. */
class TraceStatistics
{
public:
    void add(const TraceFrame &frame);

    const TraceCount &all() const { return m_all; }
    /*! By their position in the trace's head. */
    const QVector<ChannelCount> &channels() const { return m_channels; }
    /*! By channel and identifier; error frames are in none. */
    QVector<IdentifierCount> identifiers() const;
    /*! How often a time was before that of the frame before, on any channel. */
    quint64 backwardTimes() const { return m_backwardTimes; }

private:
    void countSecond(quint8 channel, qint64 time, int bits);

    struct Second
    {
        qint64 number = 0;
        quint64 bits = 0;
    };

    TraceCount m_all;
    QVector<ChannelCount> m_channels;
    QVector<Second> m_seconds;
    std::unordered_map<quint64, TraceCount> m_identifiers; // channel, format and identifier in one number
    quint64 m_backwardTimes = 0;
    qint64 m_lastTime = 0;
};
