// SPDX-License-Identifier: MIT
#pragma once

#include "samplering.h"

#include <canopen/nmt.h>

#include <optional>

/*! The heartbeats of one node: how regular they are, and which were missing. Times in us. */
class HeartbeatRecord
{
public:
    /*! The producer heartbeat time that the node tells (1017h); 0: none, nothing: not known. */
    void setConfigured(std::optional<qint64> period) { m_configured = period; }
    std::optional<qint64> configured() const { return m_configured; }

    void beat(qint64 time, CanOpen::NmtState state);

    /*! What follows tells nothing of the node: nobody could listen meanwhile. */
    void interrupt() { m_last.reset(); }

    std::optional<CanOpen::NmtState> state() const { return m_state; }
    quint64 count() const { return m_count; }

    /*! The median of the times between heartbeats; empty before two of them. */
    std::optional<qint64> period() const;
    /*! How far 95 of 100 heartbeats are at most from their time. */
    std::optional<qint64> jitter() const;
    /*! The longest time between two, or since the last. */
    std::optional<qint64> longestGap(qint64 now) const;
    /*! How often one was late by more than half a period. */
    quint64 late(qint64 now) const;
    /*! Those that did not come at all. */
    quint64 missed(qint64 now) const;
    /*! Silent for longer than three periods, and than 2 s. */
    bool isLost(qint64 now) const;

private:
    static constexpr int kept = 128;

    void addInterval(qint64 interval);
    qint64 expected() const;
    static quint64 missedIn(qint64 interval, qint64 period);
    qint64 silence(qint64 now) const;

    std::optional<qint64> m_configured;
    std::optional<CanOpen::NmtState> m_state;
    std::optional<qint64> m_last;
    quint64 m_count = 0;
    SampleRing<kept> m_intervals;
    qint64 m_usual = 0; // the median as it was lately; 0: not known yet
    quint64 m_late = 0;
    quint64 m_missed = 0;
};
