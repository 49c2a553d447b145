// SPDX-License-Identifier: MIT
#include "faultsaving.h"

#include <algorithm>

void FaultSaving::handleFault(qint64 time)
{
    if (m_isWaiting)
        return;
    m_isWaiting = true;
    m_due = time + m_settings.after;
    if (m_hasSaved)
        m_due = std::max(m_due, m_lastSaved + m_settings.apart);
}

bool FaultSaving::takeDue(qint64 now)
{
    if (!m_isWaiting || now < m_due)
        return false;
    m_isWaiting = false;
    m_hasSaved = true;
    m_lastSaved = now;
    return true;
}
