// SPDX-License-Identifier: MIT
#include "traceinput.h"

#include "console.h"

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

bool TraceInput::open(const QString &path)
{
    QString error;
    m_name = path == QLatin1String("-") ? tr("input") : QDir::toNativeSeparators(path);
    m_reader = readerOf(path, &error);
    if (!m_reader)
        Console::printError(error);
    return m_reader != nullptr;
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
    return m_unread > 0 ? Exit::objectsFailed : Exit::success;
}
