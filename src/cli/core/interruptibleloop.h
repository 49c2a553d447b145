// SPDX-License-Identifier: MIT
#pragma once

#include "exitstatus.h"
#include "unixsignals.h"

#include <QEventLoop>

#include <optional>

/*! The event loop in which a command waits: until end(), or until Ctrl+C (SIGINT), SIGTERM, or the closing of
 *  the terminal (SIGHUP).
 *
 *  Signals count from the making of the loop on, also before run(). There may be one at a time.
 */
class InterruptibleLoop
{
public:
    InterruptibleLoop();

    /*! Waits. False when a signal ended it, or had come before. */
    bool run();

    /*! Ends run(), as soon as it begins if it has not yet. */
    void end();

    bool isInterrupted() const { return m_signalNumber.has_value(); }

    /*! The exit status of a command that was interrupted; of success for one that was not. */
    ExitStatus status() const;

private:
    UnixSignals m_signals;
    QEventLoop m_loop;
    std::optional<int> m_signalNumber;
    bool m_isEnded = false;
};
