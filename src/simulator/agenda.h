// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <functional>
#include <map>
#include <optional>
#include <utility>

namespace Simulator {

/*! What is to be done at which time: one list for a whole vehicle, so that it needs a single timer.
 *
 *  Times are microseconds of a clock that the owner reads; the agenda knows none.
 */
class Agenda
{
public:
    using Action = std::function<void()>;
    using Entry = std::pair<qint64, quint64>; // due time and number; numbers start at 1

    /*! Plans \a action for the time \a due. */
    Entry add(qint64 due, Action action);

    /*! Plans \a action for \a first and then every \a period microseconds (positive) until it is cancelled.
     *  The entry stays the same; what a long stall has missed beyond some tenths of a second is not caught
     *  up.
     */
    quint64 addPeriodic(qint64 first, qint64 period, Action action);

    void cancel(Entry entry);
    void cancelPeriodic(quint64 number);
    void clear();

    /*! When the next action is due. */
    std::optional<qint64> nextDue() const;

    /*! Runs what is due at \a now, in order of time. */
    void runUntil(qint64 now);

private:
    struct Periodic
    {
        qint64 period;
        Action action;
        qint64 due;
    };

    void runPeriodic(quint64 number);

    std::map<Entry, Action> m_actions;
    std::map<quint64, Periodic> m_periodic;
    quint64 m_lastNumber = 0;
    qint64 m_now = 0; // of the running runUntil()
};

} // namespace Simulator
