// SPDX-License-Identifier: MIT
#pragma once

#include "exitstatus.h"

#include <trace/files/tracereader.h>

#include <QCoreApplication>

#include <functional>
#include <memory>

class InterruptibleInput;

/*! The trace that a command reads, frame by frame; what cannot be read of it is said on standard error. */
class TraceInput
{
    Q_DECLARE_TR_FUNCTIONS(TraceInput)

public:
    /*! So many problems are said one by one. */
    static constexpr quint64 mostSaid = 10;

    /*! What Ctrl+C, SIGTERM and SIGHUP do while a pipe or terminal is read; with a file they end the program. */
    enum class Interrupt : quint8 {
        EndsProgram,
        EndsInput //!< what has come is read to its end, and finish() gives the status of an interrupted command
    };

    /*! A file, the trace of a support bundle, or standard input ("-"). False after a complaint. */
    bool open(const QString &path, Interrupt interrupt = Interrupt::EndsProgram);

    /*! Calls \a action each time before it may wait for more, with Interrupt::EndsInput. */
    void setBeforeWaiting(const std::function<void()> &action);

    /*! The same without any words of its own; null with a sentence. */
    static std::unique_ptr<TraceReader> readerOf(const QString &path, QString *errorMessage);

    /*! The next frame; false at the end. */
    bool next(TraceFrame *frame);

    /*! As far as it is known; see TraceReader::head(). */
    const TraceHead &head() const { return m_reader->head(); }
    /*! How many lines or records could not be read so far. */
    quint64 unread() const { return m_unread; }

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
