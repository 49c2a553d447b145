// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QSet>
#include <QVector>

#include <chrono>
#include <functional>

/*! Knows which nodes keep restarting, by their boot-up messages (CiA 301). Such a node sends no heartbeat, or few,
 *  and answers nothing or not for long: it is not slow.
 */
class RestartWatch
{
public:
    using Clock = std::function<std::chrono::milliseconds()>;

    /*! Boot-up messages count for this long. */
    static constexpr std::chrono::milliseconds memory{20000};
    /*! So many of them are a loop. One is a supply that was switched on, a second one the reset by NMT after it. */
    static constexpr int loopLength = 3;
    /*! The same for a node that has sent no heartbeat since. */
    static constexpr int shortLoopLength = 2;

    explicit RestartWatch(const Clock &clock);

    void noteBootUp(quint8 nodeId);
    void noteHeartbeat(quint8 nodeId) { m_starting.remove(nodeId); }
    void clear();

    bool keepsRestarting(quint8 nodeId) const;

private:
    Clock m_clock;
    QHash<quint8, QVector<std::chrono::milliseconds>> m_bootUps; // the last loopLength of each node
    QSet<quint8> m_starting;                                     // nodes without a heartbeat since
};
