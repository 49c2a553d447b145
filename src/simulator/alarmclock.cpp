// SPDX-License-Identifier: MIT
#include "alarmclock.h"

#include <QSocketNotifier>
#include <QTimer>

#include <algorithm>

#ifdef Q_OS_LINUX
#include <sys/timerfd.h>
#include <unistd.h>
#endif

namespace Simulator {

AlarmClock::AlarmClock(QObject *parent)
    : QObject(parent)
{
#ifdef Q_OS_LINUX
    m_descriptor = ::timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC);
    if (m_descriptor >= 0) {
        m_notifier = new QSocketNotifier(m_descriptor, QSocketNotifier::Read, this);
        connect(m_notifier, &QSocketNotifier::activated, this, &AlarmClock::ring);
        return;
    }
#endif
    m_timer = new QTimer(this);
    m_timer->setSingleShot(true);
    m_timer->setTimerType(Qt::PreciseTimer);
    connect(m_timer, &QTimer::timeout, this, &AlarmClock::ringing);
}

AlarmClock::~AlarmClock()
{
#ifdef Q_OS_LINUX
    if (m_descriptor >= 0) {
        m_notifier->setEnabled(false);
        ::close(m_descriptor);
    }
#endif
}

AlarmClock::Time AlarmClock::now()
{
    return std::chrono::duration_cast<Time>(std::chrono::steady_clock::now().time_since_epoch());
}

void AlarmClock::set(Time time)
{
#ifdef Q_OS_LINUX
    if (m_descriptor >= 0) {
        constexpr qint64 second = 1000000000;                 // ns
        const qint64 due = std::max<qint64>(time.count(), 1); // 0 would stop the timer
        itimerspec setting{};
        setting.it_value.tv_sec = static_cast<time_t>(due / second);
        setting.it_value.tv_nsec = static_cast<long>(due % second);
        ::timerfd_settime(m_descriptor, TFD_TIMER_ABSTIME, &setting, nullptr);
        return;
    }
#endif
    const auto rest = std::chrono::duration_cast<std::chrono::milliseconds>(time - now());
    m_timer->start(std::max(rest, std::chrono::milliseconds(0)));
}

void AlarmClock::cancel()
{
#ifdef Q_OS_LINUX
    if (m_descriptor >= 0) {
        const itimerspec off{};
        ::timerfd_settime(m_descriptor, 0, &off, nullptr);
        return;
    }
#endif
    m_timer->stop();
}

void AlarmClock::ring()
{
#ifdef Q_OS_LINUX
    quint64 expirations = 0;
    // Nothing to read: the alarm was set anew after the event loop had seen it ring.
    if (::read(m_descriptor, &expirations, sizeof expirations) != static_cast<ssize_t>(sizeof expirations))
        return;
#endif
    emit ringing();
}

} // namespace Simulator
