// SPDX-License-Identifier: MIT
#include "traceinput.h"

#include "console.h"
#include "interruptibleinput.h"

#include <bundle/bundlefile.h>
#include <trace/files/bytesource.h>
#include <trace/files/tracefile.h>

#include <QDir>

std::unique_ptr<TraceReader> TraceInput::readerOf(const QString &path, QString *errorMessage)
{
    if (!BundleFile::isBundle(path))
        return TraceFile::open(path, errorMessage);
    const std::optional<QByteArray> bytes = BundleFile::loadTrace(path, errorMessage);
    return bytes ? TraceFile::open(std::make_unique<MemoryBytes>(*bytes), path, errorMessage) : nullptr;
}

std::unique_ptr<TraceReader> TraceInput::interruptibleReaderOf(const QString &path, QString *errorMessage)
{
    std::unique_ptr<FileBytes> bytes = FileBytes::open(path, errorMessage);
    if (!bytes)
        return nullptr;
    if (!bytes->isSequential())
        return TraceFile::open(std::move(bytes), path, errorMessage);
    auto input = std::make_unique<InterruptibleInput>(std::move(bytes));
    InterruptibleInput *const interruptible = input.get();
    std::unique_ptr<TraceReader> reader = TraceFile::open(std::move(input), path, errorMessage);
    m_interruptible = reader ? interruptible : nullptr;
    return reader;
}

bool TraceInput::open(const QString &path, Interrupt interrupt)
{
    QString error;
    m_name = path == QLatin1String("-") ? tr("input") : QDir::toNativeSeparators(path);
    m_reader = interrupt == Interrupt::EndsInput && !BundleFile::isBundle(path)
                   ? interruptibleReaderOf(path, &error)
                   : readerOf(path, &error);
    if (!m_reader)
        Console::printError(error);
    return m_reader != nullptr;
}

void TraceInput::setBeforeWaiting(const std::function<void()> &action)
{
    if (m_interruptible != nullptr)
        m_interruptible->setBeforeWaiting(action);
}

bool TraceInput::next(TraceFrame *frame)
{
    for (;;) {
        switch (m_reader->next(frame)) {
        case TraceReader::Step::Frame:
            return true;
        case TraceReader::Step::End:
            return false;
        case TraceReader::Step::Problem:
            say(m_reader->problem());
            break;
        }
    }
}

void TraceInput::say(const TraceProblem &problem)
{
    if (++m_unread <= mostSaid)
        Console::printError(QStringLiteral("%1:%2: %3").arg(m_name).arg(problem.line).arg(problem.text));
}

ExitStatus TraceInput::finish() const
{
    if (m_unread > mostSaid)
        Console::printError(
            tr("%1: %2 more lines or records could not be read.").arg(m_name).arg(m_unread - mostSaid));
    const std::optional<int> signalNumber
        = m_interruptible != nullptr ? m_interruptible->signalNumber() : std::nullopt;
    if (signalNumber)
        return Exit::signalled(*signalNumber);
    return m_unread > 0 ? Exit::objectsFailed : Exit::success;
}
