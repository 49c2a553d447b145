// SPDX-License-Identifier: MIT
// What this library asks of the operating system, for systems without POSIX: no signals, and terminals everywhere.
#include "childtask.h"
#include "inputlines.h"
#include "interruptibleinput.h"
#include "outputfile.h"
#include "signalpipe.h"
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

struct SignalPipe::Handlers
{
};

SignalPipe::SignalPipe(Count) {}

SignalPipe::~SignalPipe() = default;

int SignalPipe::descriptor() const
{
    return -1;
}

std::optional<int> SignalPipe::take() const
{
    return std::nullopt;
}

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

InterruptibleInput::InterruptibleInput(std::unique_ptr<FileBytes> bytes)
    : m_bytes(std::move(bytes))
{
}

InterruptibleInput::~InterruptibleInput() = default;

qint64 InterruptibleInput::read(char *to, qint64 most)
{
    if (m_beforeWaiting)
        m_beforeWaiting();
    return m_bytes->read(to, most);
}

bool InterruptibleInput::waitForMore()
{
    return true;
}

std::optional<int> InterruptibleInput::signalNumber()
{
    return std::nullopt;
}

bool OutputFile::isPipe(const QString &)
{
    return false;
}

std::optional<int> runAsChild(const std::function<int()> &work, InterruptibleLoop *)
{
    return work();
}
