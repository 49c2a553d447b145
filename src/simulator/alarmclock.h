// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QTimer>

#include <chrono>
#include <memory>

namespace Simulator {

class PreciseAlarm;

/*! Wakes the event loop at an absolute time, to some ten microseconds on Linux and to a millisecond
 *  elsewhere.
 */
class AlarmClock : public QObject
{
    Q_OBJECT

public:
    using Time = std::chrono::nanoseconds; // of the steady clock

    explicit AlarmClock(QObject *parent = nullptr);
    ~AlarmClock() override;

    static Time now();

    /*! Sets the one alarm; a time in the past rings at once, from the event loop. */
    void set(Time time);
    void cancel();

signals:
    void ringing();

private:
    std::unique_ptr<PreciseAlarm> m_precise; // null where the platform has none
    QTimer m_timer;                          // in its place then
};

} // namespace Simulator
