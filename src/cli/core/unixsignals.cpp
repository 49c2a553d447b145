// SPDX-License-Identifier: MIT
#include "unixsignals.h"

#include <QSocketNotifier>

#ifdef Q_OS_UNIX
#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::array<int, 2> handledSignals{SIGINT, SIGTERM};

std::array<int, 2> pipeEnds{-1, -1}; // read, write; the handler knows no object

void writeToPipe(int signalNumber)
{
    const int savedError = errno;
    const auto byte = static_cast<char>(signalNumber);
    // A full pipe holds a signal already.
    const ssize_t written = ::write(pipeEnds[1], &byte, 1);
    Q_UNUSED(written)
    errno = savedError;
}

} // namespace

struct UnixSignals::Handlers
{
    std::array<struct sigaction, handledSignals.size()> former;
};

UnixSignals::UnixSignals(QObject *parent)
    : QObject(parent)
    , m_handlers(std::make_unique<Handlers>())
{
    Q_ASSERT(pipeEnds[0] < 0);
    if (::pipe(pipeEnds.data()) != 0) {
        m_handlers.reset();
        return; // the signals then end the program as they do by default
    }
    for (const int end : pipeEnds) {
        ::fcntl(end, F_SETFL, O_NONBLOCK);
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
    }
    m_notifier = std::make_unique<QSocketNotifier>(pipeEnds[0], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &UnixSignals::readPipe);

    struct sigaction action = {};
    action.sa_handler = writeToPipe;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (size_t i = 0; i < handledSignals.size(); ++i)
        ::sigaction(handledSignals[i], &action, &m_handlers->former[i]);
}

UnixSignals::~UnixSignals()
{
    if (m_handlers == nullptr)
        return;
    for (size_t i = 0; i < handledSignals.size(); ++i)
        ::sigaction(handledSignals[i], &m_handlers->former[i], nullptr);
    m_notifier.reset();
    for (int &end : pipeEnds) {
        ::close(end);
        end = -1;
    }
}

void UnixSignals::readPipe()
{
    char byte = 0;
    if (::read(pipeEnds[0], &byte, 1) == 1)
        emit received(byte);
}

#else

struct UnixSignals::Handlers
{
};

UnixSignals::UnixSignals(QObject *parent)
    : QObject(parent)
{
}

UnixSignals::~UnixSignals() = default;

void UnixSignals::readPipe() {}

#endif
