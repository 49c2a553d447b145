// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace Simulator {

/*! A timer of the operating system that is more exact than QTimer. Platforms have it in a file of their own. */
class PreciseAlarm
{
public:
    PreciseAlarm() = default;
    virtual ~PreciseAlarm();
    PreciseAlarm(const PreciseAlarm &) = delete;
    PreciseAlarm &operator=(const PreciseAlarm &) = delete;

    /*! Null where the platform has none, or has no more of them. \a ring is called from the event loop. */
    static std::unique_ptr<PreciseAlarm> make(std::function<void()> ring);

    /*! Sets the one alarm to a time of the steady clock; a time in the past rings at once. */
    virtual void set(std::chrono::nanoseconds time) = 0;
    virtual void cancel() = 0;
};

} // namespace Simulator
