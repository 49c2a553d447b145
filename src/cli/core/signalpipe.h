// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <memory>
#include <optional>

/*! While it is there, SIGINT, SIGTERM and SIGHUP do nothing but write one byte to a pipe; the former handlers are back when it
 *  is gone. A SIGHUP that is ignored, as nohup asks for, stays so.
 *
 *  There may be one at a time. On systems without such signals, and where there is no pipe, no signal ever comes.
 */
class SignalPipe
{
public:
    enum class Count : quint8 {
        Every,
        First //!< one more of the same ends the program
    };

    explicit SignalPipe(Count count);
    ~SignalPipe();
    Q_DISABLE_COPY(SignalPipe)

    /*! What can be read when a signal has come; -1 without a pipe. */
    int descriptor() const;
    /*! The next signal that has come; empty when there is none. Does not wait. */
    std::optional<int> take() const;

private:
    struct Handlers;

    std::unique_ptr<Handlers> m_handlers; // null without a pipe
};
