// SPDX-License-Identifier: MIT
#include "agenda.h"

#include <algorithm>

namespace Simulator {

namespace {

constexpr qint64 longestPeriodicCatchUp = 200000; // microseconds
constexpr qint64 mostCatchUpPeriods = 10;         // of slow actions

} // namespace

Agenda::Entry Agenda::add(qint64 due, Action action)
{
    const Entry entry{due, ++m_lastNumber};
    m_actions.emplace(entry, std::move(action));
    return entry;
}

quint64 Agenda::addPeriodic(qint64 first, qint64 period, Action action)
{
    const quint64 number = ++m_lastNumber;
    m_periodic.emplace(number, Periodic{std::max<qint64>(period, 1), std::move(action), first});
    m_actions.emplace(Entry{first, number}, [this, number] { runPeriodic(number); });
    return number;
}

void Agenda::runPeriodic(quint64 number)
{
    const auto found = m_periodic.find(number);
    if (found == m_periodic.end())
        return;
    Periodic &periodic = found->second;
    const qint64 catchUp = std::max(longestPeriodicCatchUp, mostCatchUpPeriods * periodic.period);
    periodic.due = std::max(periodic.due + periodic.period, m_now - catchUp);
    m_actions.emplace(Entry{periodic.due, number}, [this, number] { runPeriodic(number); });
    // The action may cancel itself.
    const Action action = periodic.action;
    action();
}

void Agenda::cancel(Entry entry)
{
    m_actions.erase(entry);
}

void Agenda::cancelPeriodic(quint64 number)
{
    const auto found = m_periodic.find(number);
    if (found == m_periodic.end())
        return;
    m_actions.erase(Entry{found->second.due, number});
    m_periodic.erase(found);
}

void Agenda::clear()
{
    m_actions.clear();
    m_periodic.clear();
}

std::optional<qint64> Agenda::nextDue() const
{
    return m_actions.empty() ? std::nullopt : std::optional<qint64>(m_actions.begin()->first.first);
}

void Agenda::runUntil(qint64 now)
{
    m_now = now;
    while (!m_actions.empty() && m_actions.begin()->first.first <= now) {
        const Action action = std::move(m_actions.begin()->second);
        m_actions.erase(m_actions.begin());
        action();
    }
}

} // namespace Simulator
