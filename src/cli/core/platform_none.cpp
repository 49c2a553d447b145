// SPDX-License-Identifier: MIT
// What this library asks of the operating system, for systems without POSIX: no signals, and terminals everywhere.
#include "childtask.h"
#include "inputlines.h"
#include "outputfile.h"
#include "terminal.h"
#include "timezone.h"
#include "unixsignals.h"

#include <QSocketNotifier>

bool Terminal::isTerminal(Stream)
{
    return true;
}

bool Terminal::hasReader(Stream)
{
    return true;
}

void Terminal::surviveBrokenPipes() {}

void TimeZone::keep() {}

Terminal::Size Terminal::size()
{
    return {};
}

struct UnixSignals::Handlers
{
};

UnixSignals::UnixSignals(QObject *parent)
    : QObject(parent)
{
}

UnixSignals::~UnixSignals() = default;

void UnixSignals::readPipe() {}

InputLines::InputLines(QObject *parent)
    : QObject(parent)
{
}

InputLines::~InputLines() = default;

void InputLines::readMore() {}

void InputLines::take(const QByteArray &) {}

bool OutputFile::isPipe(const QString &)
{
    return false;
}

std::optional<int> runAsChild(const std::function<int()> &work, InterruptibleLoop *)
{
    return work();
}
