// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <chrono>

class QSocketNotifier;
class QTimer;

namespace Simulator {

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
    void ring();

    int m_descriptor = -1; // timerfd; -1 where there is none
    QSocketNotifier *m_notifier = nullptr;
    QTimer *m_timer = nullptr;
};

} // namespace Simulator
