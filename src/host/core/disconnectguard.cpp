// SPDX-License-Identifier: MIT
#include "disconnectguard.h"

#include <algorithm>

DisconnectGuard::DisconnectGuard(const Clock &clock)
    : m_clock(clock)
{
}

void DisconnectGuard::receiverAsked()
{
    m_lastAsked = m_clock();
    m_quietTurns = 0;
}

void DisconnectGuard::uploadStarted()
{
    ++m_uploads;
    m_quietTurns = 0;
}

void DisconnectGuard::uploadEnded()
{
    m_uploads = std::max(m_uploads - 1, 0);
    m_quietTurns = 0;
}

void DisconnectGuard::turnPassed()
{
    if (m_uploads > 0 || timeToWait().count() > 0)
        m_quietTurns = 0;
    else
        m_quietTurns = std::min(m_quietTurns + 1, quietTurnsNeeded);
}

void DisconnectGuard::restartCounting()
{
    m_quietTurns = 0;
}

bool DisconnectGuard::isSafe() const
{
    return m_uploads == 0 && timeToWait().count() == 0 && m_quietTurns >= quietTurnsNeeded;
}

std::chrono::milliseconds DisconnectGuard::timeToWait() const
{
    if (!m_lastAsked)
        return std::chrono::milliseconds::zero();
    const std::chrono::milliseconds rest = *m_lastAsked + detectionTime - m_clock();
    return std::max(rest, std::chrono::milliseconds::zero());
}

std::chrono::milliseconds DisconnectGuard::steadyClock()
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
}
