// SPDX-License-Identifier: MIT
#pragma once

#include <trace/files/filebytes.h>

#include <functional>
#include <memory>
#include <optional>

class SignalPipe;

/*! A pipe or terminal that Ctrl+C (SIGINT), SIGTERM or SIGHUP ends in the place of the program: what has come by then is
 *  still read, and then there is its end. One more such signal ends the program, whatever it does.
 *
 *  Signals count from the making on. There may be one at a time, and no InterruptibleLoop beside it. On systems without such
 *  signals it is the input as it is.
 */
class InterruptibleInput : public ByteSource
{
public:
    explicit InterruptibleInput(std::unique_ptr<FileBytes> bytes);
    ~InterruptibleInput() override;

    /*! Calls \a action each time before it may wait for more. */
    void setBeforeWaiting(const std::function<void()> &action) { m_beforeWaiting = action; }

    qint64 read(char *to, qint64 most) override;
    QString errorString() const override { return m_bytes->errorString(); }

    /*! The signal that has come; empty when none has. */
    std::optional<int> signalNumber();

private:
    bool waitForMore();

    std::unique_ptr<FileBytes> m_bytes;
    std::function<void()> m_beforeWaiting;
    std::unique_ptr<SignalPipe> m_signals; // null when one has come
    std::optional<int> m_signalNumber;
    qint64 m_left = 0; // bytes that had come before the signal
};
