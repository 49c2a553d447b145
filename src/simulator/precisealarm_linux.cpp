// SPDX-License-Identifier: MIT
#include "precisealarm.h"

#include <QSocketNotifier>

#include <algorithm>
#include <utility>

#include <sys/timerfd.h>
#include <unistd.h>

namespace Simulator {

namespace {

/*! A timerfd, read by the event loop: exact to some ten microseconds. */
class TimerDescriptor : public PreciseAlarm
{
public:
    TimerDescriptor(int descriptor, std::function<void()> ring)
        : m_descriptor(descriptor)
        , m_notifier(descriptor, QSocketNotifier::Read)
        , m_ring(std::move(ring))
    {
        QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier, [this] { handleRinging(); });
    }

    ~TimerDescriptor() override
    {
        m_notifier.setEnabled(false);
        ::close(m_descriptor);
    }

    void set(std::chrono::nanoseconds time) override
    {
        constexpr qint64 second = 1000000000;                 // ns
        const qint64 due = std::max<qint64>(time.count(), 1); // 0 would stop the timer
        itimerspec setting{};
        setting.it_value.tv_sec = static_cast<time_t>(due / second);
        setting.it_value.tv_nsec = static_cast<long>(due % second);
        ::timerfd_settime(m_descriptor, TFD_TIMER_ABSTIME, &setting, nullptr);
    }

    void cancel() override
    {
        const itimerspec off{};
        ::timerfd_settime(m_descriptor, 0, &off, nullptr);
    }

private:
    void handleRinging()
    {
        quint64 expirations = 0;
        // Nothing to read: the alarm was set anew after the event loop had seen it ring.
        const ssize_t size = ::read(m_descriptor, &expirations, sizeof expirations);
        if (size == static_cast<ssize_t>(sizeof expirations))
            m_ring();
    }

    int m_descriptor;
    QSocketNotifier m_notifier;
    std::function<void()> m_ring;
};

} // namespace

PreciseAlarm::~PreciseAlarm() = default;

std::unique_ptr<PreciseAlarm> PreciseAlarm::make(std::function<void()> ring)
{
    const int descriptor = ::timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC);
    return descriptor >= 0 ? std::make_unique<TimerDescriptor>(descriptor, std::move(ring)) : nullptr;
}

} // namespace Simulator
