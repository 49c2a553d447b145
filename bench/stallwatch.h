// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

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

    /*! Begins anew. */
    void reset();

protected:
    bool event(QEvent *event) override;

private:
    using Clock = std::chrono::steady_clock;

    void ask();

    std::atomic<bool> m_isEnding{false};
    std::atomic<bool> m_isAnswered{true};
    std::atomic<qint64> m_asked{0};   // ns of the clock
    std::atomic<qint64> m_longest{0}; // ns
    std::thread m_thread;
};
