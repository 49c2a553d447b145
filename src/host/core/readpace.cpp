// SPDX-License-Identifier: MIT
#include "readpace.h"

#include <algorithm>

ReadPace::ReadPace(const Clock &clock)
    : m_clock(clock)
{
}

void ReadPace::begin(const QSet<quint8> &heard, quint8 firstNode)
{
    m_begun = m_clock();
    m_expected = heard + m_asked;
    m_asked.clear();
    m_nodeId = firstNode;
    if (firstNode != 0)
        m_asked.insert(firstNode);
    m_ofThisNode = 0;
    m_ofFirstNode = 0;
}

void ReadPace::noteRequest(quint8 nodeId)
{
    if (nodeId != m_nodeId) {
        if (m_asked.size() == 1)
            m_ofFirstNode = m_ofThisNode;
        m_asked.insert(nodeId);
        m_nodeId = nodeId;
        m_ofThisNode = 0;
    }
    ++m_ofThisNode;
}

int ReadPace::nodeCount() const
{
    return (m_expected + m_asked).size();
}

int ReadPace::requestsPerNode() const
{
    return m_ofFirstNode > 0 ? m_ofFirstNode : std::max(usualRequests, m_ofThisNode);
}

int ReadPace::requestsDone() const
{
    // The one that is out is not done.
    const int ofThisNode = std::max(std::min(m_ofThisNode, requestsPerNode()) - 1, 0);
    return m_asked.isEmpty() ? 0 : (nodeNumber() - 1) * requestsPerNode() + ofThisNode;
}

int ReadPace::percent() const
{
    return m_asked.isEmpty() ? 0 : static_cast<int>(qint64(requestsDone()) * 100 / requestsInAll());
}

std::optional<std::chrono::milliseconds> ReadPace::timeLeft() const
{
    const std::chrono::milliseconds passed = m_clock() - m_begun;
    const int done = requestsDone();
    if (passed < shortestTime || done < fewestRequests)
        return std::nullopt;
    return passed * (requestsInAll() - done) / done;
}
