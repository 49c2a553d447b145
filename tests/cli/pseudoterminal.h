// SPDX-License-Identifier: MIT
#pragma once

#include "program.h"

#include <QProcess>
#include <QtTest>

#include <cstdlib>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

/*! A terminal of which a program's standard output and error are the one side, and this test the other. */
class PseudoTerminal
{
public:
    PseudoTerminal()
        : m_end(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK))
    {
        if (m_end < 0 || ::grantpt(m_end) != 0 || ::unlockpt(m_end) != 0)
            qFatal("no pseudo terminal");
    }
    ~PseudoTerminal() { ::close(m_end); }
    Q_DISABLE_COPY(PseudoTerminal)

    void setSize(int columns, int lines) const
    {
        const struct winsize size = {static_cast<ushort>(lines), static_cast<ushort>(columns), 0, 0};
        if (::ioctl(m_end, TIOCSWINSZ, &size) != 0)
            qFatal("no size for the pseudo terminal");
    }

    QString name() const { return QString::fromLocal8Bit(::ptsname(m_end)); }

    QByteArray read()
    {
        char buffer[4096];
        for (ssize_t size = 0; (size = ::read(m_end, buffer, sizeof buffer)) > 0;)
            m_text.append(buffer, static_cast<int>(size));
        return m_text;
    }

private:
    int m_end;
    QByteArray m_text;
};

/*! What the program writes to a terminal. */
inline QByteArray runOnTerminal(const QStringList &arguments)
{
    PseudoTerminal terminal;
    // Held open, so that nothing is lost when the program ends.
    const int other = ::open(terminal.name().toLocal8Bit().constData(), O_RDWR | O_NOCTTY);
    QProcess process;
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    if (waitsForNobodyElse(arguments))
        Program::letClockLeap(&variables);
    process.setProcessEnvironment(variables);
    process.setStandardOutputFile(terminal.name());
    process.setStandardErrorFile(terminal.name());
    process.start(QStringLiteral(DRAXELCTL), arguments);
    const bool hasEnded
        = QTest::qWaitFor([&] { return terminal.read(), process.state() == QProcess::NotRunning; }, patience);
    const QByteArray text = terminal.read();
    ::close(other);
    return hasEnded ? text : QByteArray("did not end");
}
