// SPDX-License-Identifier: MIT
#include "alarmclock.h"

#include "precisealarm.h"

#include <algorithm>

namespace Simulator {

AlarmClock::AlarmClock(QObject *parent)
    : QObject(parent)
    , m_precise(PreciseAlarm::make([this] { emit ringing(); }))
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &AlarmClock::ringing);
}

AlarmClock::~AlarmClock() = default;

AlarmClock::Time AlarmClock::now()
{
    return std::chrono::duration_cast<Time>(std::chrono::steady_clock::now().time_since_epoch());
}

void AlarmClock::set(Time time)
{
    if (m_precise != nullptr) {
        m_precise->set(time);
        return;
    }
    const auto rest = std::chrono::duration_cast<std::chrono::milliseconds>(time - now());
    m_timer.start(std::max(rest, std::chrono::milliseconds(0)));
}

void AlarmClock::cancel()
{
    if (m_precise != nullptr)
        m_precise->cancel();
    else
        m_timer.stop();
}

} // namespace Simulator
