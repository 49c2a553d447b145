// SPDX-License-Identifier: MIT
#include "stallwatch.h"

#include <QCoreApplication>
#include <QEvent>

#include <algorithm>
#include <ctime>

namespace {

using namespace std::chrono_literals;

constexpr auto interval = 1ms;
constexpr double nanosecondsPerMillisecond = 1e6;
const auto questionType = static_cast<QEvent::Type>(QEvent::registerEventType());

qint64 nanoseconds(std::chrono::steady_clock::time_point time)
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(time.time_since_epoch()).count();
}

qint64 now(clockid_t clock)
{
    constexpr qint64 nanosecondsPerSecond = 1000000000;
    timespec time{};
    clock_gettime(clock, &time);
    return time.tv_sec * nanosecondsPerSecond + time.tv_nsec;
}

} // namespace

StallWatch::StallWatch()
{
    pthread_getcpuclockid(pthread_self(), &m_busyClock);
    m_thread = std::thread([this] {
        while (!m_isEnding) {
            std::this_thread::sleep_for(interval);
            if (m_isAnswered)
                ask();
        }
    });
}

StallWatch::~StallWatch()
{
    m_isEnding = true;
    m_thread.join();
}

double StallWatch::longest() const
{
    return static_cast<double>(m_longest) / nanosecondsPerMillisecond;
}

double StallWatch::longestBusy() const
{
    return static_cast<double>(m_longestBusy) / nanosecondsPerMillisecond;
}

void StallWatch::reset()
{
    m_longest = 0;
    m_longestBusy = 0;
}

bool StallWatch::event(QEvent *event)
{
    if (event->type() != questionType)
        return QObject::event(event);
    m_longest = std::max<qint64>(m_longest, nanoseconds(Clock::now()) - m_asked);
    m_longestBusy = std::max<qint64>(m_longestBusy, now(m_busyClock) - m_busyAtAsking);
    m_isAnswered = true;
    return true;
}

void StallWatch::ask()
{
    m_isAnswered = false;
    m_busyAtAsking = now(m_busyClock);
    m_asked = nanoseconds(Clock::now());
    QCoreApplication::postEvent(this, new QEvent(questionType));
}
