// SPDX-License-Identifier: MIT
#pragma once

#include "exitstatus.h"

#include <trace/files/tracereader.h>

#include <QCoreApplication>

#include <functional>
#include <memory>
#include <optional>

class InterruptibleInput;

/*! The trace that a command reads, frame by frame; what cannot be read of it is said on standard error.
 *
 *  Ctrl+C, SIGTERM and SIGHUP end a pipe or terminal that is read: what has come by then is read to its end. With a file they
 *  end the program. There may be no InterruptibleLoop beside it.
 */
class TraceInput
{
    Q_DECLARE_TR_FUNCTIONS(TraceInput)

public:
    /*! So many problems are said one by one. */
    static constexpr quint64 mostSaid = 10;

    /*! A file, the trace of a support bundle, or standard input ("-"). False after a complaint. */
    bool open(const QString &path);

    /*! Calls \a action each time before it may wait for more of a pipe or terminal. */
    void setBeforeWaiting(const std::function<void()> &action);

    /*! The same without any words of its own; null with a sentence. */
    static std::unique_ptr<TraceReader> readerOf(const QString &path, QString *errorMessage);

    /*! The next frame; false at the end. */
    bool next(TraceFrame *frame);

    /*! As far as it is known; see TraceReader::head(). */
    const TraceHead &head() const { return m_reader->head(); }
    /*! How many lines or records could not be read so far. */
    quint64 unread() const { return m_unread; }

    /*! The exit status of a command whose input a signal has ended; empty when none has. */
    std::optional<ExitStatus> interruption() const;

    /*! Says how many problems there were beyond those that were said. The exit status of reading. */
    ExitStatus finish() const;

private:
    std::unique_ptr<TraceReader> interruptibleReaderOf(const QString &path, QString *errorMessage);
    void say(const TraceProblem &problem);

    QString m_name;
    std::unique_ptr<TraceReader> m_reader;
    std::shared_ptr<InterruptibleInput>
        m_interruptible; // also of m_reader; null when interrupts end the program
    quint64 m_unread = 0;
};
