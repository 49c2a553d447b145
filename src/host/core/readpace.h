// SPDX-License-Identifier: MIT
#pragma once

#include <QSet>

#include <chrono>
#include <functional>
#include <optional>

/*! How far a plug-in's read is, and how long it may still take.
 *
 *  The host does not know what a plug-in will ask for. It expects the nodes that it has heard, and of each of them as
 *  many objects as of the first; until that one is done, as many as the overview asks for.
 */
class ReadPace
{
public:
    using Clock = std::function<std::chrono::milliseconds()>;

    /*! What the overview asks each node for. */
    static constexpr int usualRequests = 204;
    /*! Sooner nothing is said of the time left: it would jump. */
    static constexpr std::chrono::milliseconds shortestTime{1000};
    static constexpr int fewestRequests = 20;

    explicit ReadPace(const Clock &clock);

    /*! The first object is being asked for, from \a firstNode (0: from no node). \a heard are the nodes that send heartbeats; those of the read before are
     *  expected as well, as plug-ins ask fallen silent ones again.
     */
    void begin(const QSet<quint8> &heard, quint8 firstNode = 0);
    void noteRequest(quint8 nodeId);

    /*! The node that is read is number nodeNumber() of nodeCount(); 0 before the first. */
    int nodeNumber() const { return m_asked.size(); }
    int nodeCount() const;

    /*! 0 to 99: the last object is not the end. */
    int percent() const;

    /*! Empty while it is too early to say. */
    std::optional<std::chrono::milliseconds> timeLeft() const;

private:
    int requestsPerNode() const;
    int requestsDone() const;
    int requestsInAll() const { return nodeCount() * requestsPerNode(); }

    Clock m_clock;
    std::chrono::milliseconds m_begun{0};
    QSet<quint8> m_expected;
    QSet<quint8> m_asked;
    quint8 m_nodeId = 0;
    int m_ofThisNode = 0;  // requests
    int m_ofFirstNode = 0; // requests; 0 until it is done
};
