// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <pthread.h>

#include <atomic>
#include <chrono>
#include <thread>

/*! How long the event loop of this thread is held at a time: how long a click would wait.
 *
 *  A thread of its own asks the event loop for an answer every millisecond and notes how long the answer took. A
 *  question is put when the one before was answered.
 */
class StallWatch : public QObject
{
    Q_OBJECT

public:
    StallWatch();
    ~StallWatch() override;

    /*! The longest time without an answer so far, in ms; 0 when nothing was asked. */
    double longest() const;

    /*! The most processor time, in ms, that the watched thread took between a question and its answer. What other
     *  programs and the machine take is not in it.
     */
    double longestBusy() const;

    /*! Begins anew. */
    void reset();

protected:
    bool event(QEvent *event) override;

private:
    using Clock = std::chrono::steady_clock;

    void ask();

    std::atomic<bool> m_isEnding{false};
    std::atomic<bool> m_isAnswered{true};
    std::atomic<qint64> m_asked{0};        // ns of the clock
    std::atomic<qint64> m_busyAtAsking{0}; // ns of m_busyClock
    std::atomic<qint64> m_longest{0};      // ns
    std::atomic<qint64> m_longestBusy{0};  // ns
    clockid_t m_busyClock = 0;             // processor time of the watched thread
    std::thread m_thread;
};
