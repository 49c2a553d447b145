// SPDX-License-Identifier: MIT
#include "traceinput.h"

#include "console.h"
#include "interruptibleinput.h"

#include <bundle/bundlefile.h>
#include <trace/files/bytesource.h>
#include <trace/files/tracefile.h>

#include <QDir>

#include <utility>

namespace {

/*! A reader's share in an input: of one through which nothing came it is gone before the trace has ended. */
class SharedInput : public ByteSource
{
public:
    explicit SharedInput(std::shared_ptr<InterruptibleInput> input)
        : m_input(std::move(input))
    {
    }

    qint64 read(char *to, qint64 most) override { return m_input->read(to, most); }
    QString errorString() const override { return m_input->errorString(); }

private:
    std::shared_ptr<InterruptibleInput> m_input;
};

} // namespace

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
    m_interruptible = std::make_shared<InterruptibleInput>(std::move(bytes));
    return TraceFile::open(std::make_unique<SharedInput>(m_interruptible), path, errorMessage);
}

bool TraceInput::open(const QString &path)
{
    QString error;
    m_name = path == QLatin1String("-") ? tr("input") : QDir::toNativeSeparators(path);
    m_reader = BundleFile::isBundle(path) ? readerOf(path, &error) : interruptibleReaderOf(path, &error);
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

std::optional<ExitStatus> TraceInput::interruption() const
{
    const std::optional<int> signalNumber
        = m_interruptible != nullptr ? m_interruptible->signalNumber() : std::nullopt;
    return signalNumber ? std::optional(Exit::signalled(*signalNumber)) : std::nullopt;
}

ExitStatus TraceInput::finish() const
{
    if (m_unread > mostSaid)
        Console::printError(
            tr("%1: %2 more lines or records could not be read.").arg(m_name).arg(m_unread - mostSaid));
    return interruption().value_or(m_unread > 0 ? Exit::objectsFailed : Exit::success);
}
