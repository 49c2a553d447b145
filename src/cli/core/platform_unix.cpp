// SPDX-License-Identifier: MIT
// What this library asks of the operating system, by POSIX: terminals, signals, pipes, processes and the time zone.
#include "childtask.h"
#include "exitstatus.h"
#include "inputlines.h"
#include "interruptibleinput.h"
#include "interruptibleloop.h"
#include "outputfile.h"
#include "signalpipe.h"
#include "terminal.h"
#include "timezone.h"
#include "unixsignals.h"

#include <QFile>
#include <QSocketNotifier>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

static_assert(Exit::noReader == Exit::signalled(SIGPIPE));

namespace {

constexpr std::array<int, 3> handledSignals{SIGINT, SIGTERM, SIGHUP};

std::array<int, 2> pipeEnds{-1, -1}; // read, write; the handler knows no object

/*! Whoever starts a program with nohup wants it to outlive its terminal. */
bool isToBeIgnored(int signalNumber)
{
    struct sigaction present = {};
    return signalNumber == SIGHUP && ::sigaction(signalNumber, nullptr, &present) == 0
           && present.sa_handler == SIG_IGN;
}

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

namespace {

int descriptorOf(Terminal::Stream stream)
{
    return stream == Terminal::Stream::Output ? STDOUT_FILENO : STDERR_FILENO;
}

} // namespace

bool Terminal::isTerminal(Stream stream)
{
    return ::isatty(descriptorOf(stream)) == 1;
}

bool Terminal::hasReader(Stream stream)
{
    struct pollfd told = {};
    told.fd = descriptorOf(stream);
    const bool isTold = ::poll(&told, 1, 0) > 0;
    return !isTold || (told.revents & POLLERR) == 0;
}

void Terminal::surviveBrokenPipes()
{
    ::signal(SIGPIPE, SIG_IGN);
}

void TimeZone::keep()
{
    // To the C library a zone that is named does not change. Qt knows this name as that of the system's zone.
    if (!qEnvironmentVariableIsSet("TZ"))
        qputenv("TZ", ":/etc/localtime");
}

Terminal::Size Terminal::size()
{
    struct winsize told = {};
    Size size;
    if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &told) != 0)
        return size;
    size.columns = told.ws_col > 0 ? told.ws_col : size.columns;
    size.lines = told.ws_row > 0 ? told.ws_row : size.lines;
    return size;
}

InputLines::InputLines(QObject *parent)
    : QObject(parent)
    , m_notifier(std::make_unique<QSocketNotifier>(STDIN_FILENO, QSocketNotifier::Read))
{
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &InputLines::readMore);
}

InputLines::~InputLines() = default;

void InputLines::readMore()
{
    std::array<char, longest> bytes{};
    const ssize_t count = ::read(STDIN_FILENO, bytes.data(), bytes.size());
    if (count < 0 && (errno == EINTR || errno == EAGAIN))
        return;
    if (count > 0) {
        take(QByteArray(bytes.data(), static_cast<int>(count)));
        return;
    }
    m_notifier->setEnabled(false);
    if (!m_line.isEmpty())
        take(QByteArray(1, '\n'));
    emit ended();
}

void InputLines::take(const QByteArray &bytes)
{
    for (const char byte : bytes) {
        if (byte != '\n' && m_line.size() < longest)
            m_line.append(byte);
        if (byte != '\n')
            continue;
        const QByteArray line = m_line;
        m_line.clear();
        emit read(line);
    }
}

struct SignalPipe::Handlers
{
    std::array<struct sigaction, handledSignals.size()> former;
};

SignalPipe::SignalPipe(Count count)
{
    Q_ASSERT(pipeEnds[0] < 0);
    if (::pipe(pipeEnds.data()) != 0)
        return; // the signals then end the program as they do by default
    for (const int end : pipeEnds) {
        ::fcntl(end, F_SETFL, O_NONBLOCK);
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
    }
    m_handlers = std::make_unique<Handlers>();
    struct sigaction action = {};
    action.sa_handler = writeToPipe;
    sigemptyset(&action.sa_mask);
    action.sa_flags = count == Count::First ? static_cast<int>(SA_RESTART | SA_RESETHAND) : SA_RESTART;
    for (size_t i = 0; i < handledSignals.size(); ++i) {
        const struct sigaction *const wanted = isToBeIgnored(handledSignals[i]) ? nullptr : &action;
        ::sigaction(handledSignals[i], wanted, &m_handlers->former[i]);
    }
}

SignalPipe::~SignalPipe()
{
    if (m_handlers == nullptr)
        return;
    for (size_t i = 0; i < handledSignals.size(); ++i)
        ::sigaction(handledSignals[i], &m_handlers->former[i], nullptr);
    for (int &end : pipeEnds) {
        ::close(end);
        end = -1;
    }
}

int SignalPipe::descriptor() const
{
    return m_handlers ? pipeEnds[0] : -1;
}

std::optional<int> SignalPipe::take() const
{
    char byte = 0;
    return ::read(descriptor(), &byte, 1) == 1 ? std::optional<int>(byte) : std::nullopt;
}

UnixSignals::UnixSignals(QObject *parent)
    : QObject(parent)
    , m_pipe(std::make_unique<SignalPipe>(SignalPipe::Count::Every))
{
    if (m_pipe->descriptor() < 0)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(m_pipe->descriptor(), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &UnixSignals::readPipe);
}

UnixSignals::~UnixSignals() = default;

void UnixSignals::readPipe()
{
    if (const std::optional<int> number = m_pipe->take())
        emit received(*number);
}

InterruptibleInput::InterruptibleInput(std::unique_ptr<FileBytes> bytes)
    : m_bytes(std::move(bytes))
    , m_signals(std::make_unique<SignalPipe>(SignalPipe::Count::First))
{
}

InterruptibleInput::~InterruptibleInput() = default;

qint64 InterruptibleInput::read(char *to, qint64 most)
{
    if (!waitForMore())
        most = std::min(most, m_left);
    const qint64 count = most > 0 ? m_bytes->read(to, most) : 0;
    if (m_signalNumber && count > 0)
        m_left -= count;
    return count;
}

/*! False when a signal has come. */
bool InterruptibleInput::waitForMore()
{
    if (m_beforeWaiting)
        m_beforeWaiting();
    if (signalNumber())
        return false;
    std::array<struct pollfd, 2> waited{
        {{m_bytes->handle(), POLLIN, 0}, {m_signals->descriptor(), POLLIN, 0}}};
    while (::poll(waited.data(), waited.size(), -1) < 0 && errno == EINTR) {
    }
    return !signalNumber();
}

std::optional<int> InterruptibleInput::signalNumber()
{
    if (m_signalNumber)
        return m_signalNumber;
    m_signalNumber = m_signals->take();
    int count = 0;
    if (!m_signalNumber)
        return std::nullopt;
    m_signals.reset();
    if (::ioctl(m_bytes->handle(), FIONREAD, &count) == 0)
        m_left = count;
    return m_signalNumber;
}

bool OutputFile::isPipe(const QString &fileName)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(fileName).constData(), &status) == 0 && S_ISFIFO(status.st_mode);
}

namespace {

/*! In the child: the end of the pipe that it holds closes with it, and tells the parent. */
[[noreturn]] void runInChild(const std::function<int()> &work)
{
    for (const int number : handledSignals) {
        if (!isToBeIgnored(number))
            ::signal(number, SIG_DFL);
    }
    const int status = work();
    std::fflush(nullptr);
    ::_exit(status);
}

std::optional<int> statusOf(pid_t child)
{
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        if (errno != EINTR)
            return std::nullopt;
    }
    return WIFEXITED(status) ? std::optional<int>(WEXITSTATUS(status)) : std::nullopt;
}

} // namespace

std::optional<int> runAsChild(const std::function<int()> &work, InterruptibleLoop *loop)
{
    std::array<int, 2> ends{-1, -1}; // read, write
    if (::pipe(ends.data()) != 0)
        return work();
    std::fflush(nullptr);
    const pid_t child = ::fork();
    if (child == 0)
        runInChild(work);
    ::close(ends[1]);
    std::optional<int> status;
    if (child > 0) {
        QSocketNotifier notifier(ends[0], QSocketNotifier::Read);
        QObject::connect(&notifier, &QSocketNotifier::activated, &notifier, [loop] { loop->end(); });
        if (!loop->run())
            ::kill(child, SIGKILL);
        status = statusOf(child);
    }
    ::close(ends[0]);
    return status;
}
