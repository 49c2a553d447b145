// SPDX-License-Identifier: MIT
#include "nodenews.h"

#include <utility>

void NodeNews::noteHeartbeat(quint8 nodeId, CanOpen::NmtState state, std::chrono::milliseconds now)
{
    const auto known = m_states.constFind(nodeId);
    const bool isNew = known == m_states.constEnd();
    const bool isBootUp = state == CanOpen::NmtState::BootUp;
    if (!isNew && *known == state && !isBootUp)
        return;

    if (isBootUp)
        m_booted.insert(nodeId, now);
    else
        m_booted.remove(nodeId);
    if (isNew || m_report.heard.contains(nodeId))
        m_report.heard.insert(nodeId, state);
    else if (isBootUp)
        m_report.restarted.insert(nodeId);
    else
        m_report.changed.insert(nodeId, state);
    m_states.insert(nodeId, state);
}

void NodeNews::noteLoss(quint8 nodeId)
{
    m_states.remove(nodeId);
    m_booted.remove(nodeId);
    m_report.heard.remove(nodeId);
    m_report.changed.remove(nodeId);
    m_report.lost.insert(nodeId);
}

NodeNews::Report NodeNews::take()
{
    return std::exchange(m_report, Report());
}

QSet<quint8> NodeNews::takeSilent(std::chrono::milliseconds now)
{
    QSet<quint8> silent;
    for (auto it = m_booted.begin(); it != m_booted.end();) {
        if (now - it.value() < heartbeatDue) {
            ++it;
            continue;
        }
        silent.insert(it.key());
        it = m_booted.erase(it);
    }
    return silent;
}

void NodeNews::clear()
{
    m_report = Report();
    m_states.clear();
    m_booted.clear();
}
