// SPDX-License-Identifier: MIT
#pragma once

#include <tests/support/freeport.h>

#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QtTest>

#include <algorithm>
#include <csignal>

constexpr int patience = 30000; // ms; a read takes two seconds of detection

struct Result
{
    int status = -1;
    QString output;
    QString errors;
};

/*! Whether all that the program waits for is in its own main thread: a simulated vehicle, and no server. */
inline bool waitsForNobodyElse(const QStringList &arguments)
{
    return arguments.value(0) != QLatin1String("check-update")
           && std::any_of(arguments.begin(), arguments.end(), [](const QString &argument) {
                  return argument.contains(QLatin1String("simulated:"))
                         || argument.contains(QLatin1String("trace:"));
              });
}

/*! The program as the shell starts it; its clock leaps over waiting when it waits for nobody else. */
class Program
{
public:
    /*! \a environment: "NAME=value", or "NAME" for a variable that is not to be there; without LD_PRELOAD the
     *  program lives in real time.
     */
    explicit Program(const QStringList &arguments, const QStringList &environment = {})
    {
        QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
        if (waitsForNobodyElse(arguments))
            letClockLeap(&variables);
        for (const QString &entry : environment) {
            const QString name = entry.section(QLatin1Char('='), 0, 0);
            if (entry.contains(QLatin1Char('=')))
                variables.insert(name, entry.section(QLatin1Char('='), 1));
            else
                variables.remove(name);
        }
        m_process.setProcessEnvironment(variables);
        m_process.start(QStringLiteral(DRAXELCTL), arguments);
    }
    ~Program()
    {
        if (m_process.state() != QProcess::NotRunning) {
            m_process.kill();
            m_process.waitForFinished();
        }
    }
    Q_DISABLE_COPY(Program)

    /*! Puts the leaping clock into the environment of a program, where there is one. */
    static void letClockLeap(QProcessEnvironment *variables)
    {
#ifdef LEAPING_CLOCK
        variables->insert(QStringLiteral("LD_PRELOAD"), QStringLiteral(LEAPING_CLOCK));
        // AddressSanitizer wants to be the first library; this one has nothing to do with memory.
        variables->insert(QStringLiteral("ASAN_OPTIONS"), variables->value(QStringLiteral("ASAN_OPTIONS"))
                                                              + QStringLiteral(":verify_asan_link_order=0"));
#else
        Q_UNUSED(variables)
#endif
    }

    bool waitForOutput(const QString &text)
    {
        return QTest::qWaitFor(
            [&] {
                m_output += m_process.readAllStandardOutput();
                return QString::fromLocal8Bit(m_output).contains(text);
            },
            patience);
    }

    bool waitForErrors(const QString &text)
    {
        return QTest::qWaitFor(
            [&] {
                m_errors += m_process.readAllStandardError();
                return QString::fromLocal8Bit(m_errors).contains(text);
            },
            patience);
    }

    bool waitForStart()
    {
        return m_process.waitForStarted(patience);
    }

    enum class Handler : quint8 { OfTheProgram, OfTheSystem };

    /*! Waits until the program has a handler of its own for a signal, or none any more, as Linux tells. */
    bool waitForSignalHandler(int number, Handler handler = Handler::OfTheProgram)
    {
        // Until then it has those of the test.
        if (!waitForStart())
            return false;
        return QTest::qWaitFor(
            [&] {
                QFile status(QStringLiteral("/proc/%1/status").arg(m_process.processId()));
                if (!status.open(QIODevice::ReadOnly))
                    return false;
                const QByteArray text = status.readAll();
                const int start = text.indexOf("SigCgt:") + 7;
                const QByteArray mask = text.mid(start, text.indexOf('\n', start) - start).trimmed();
                const bool hasOne = (mask.toULongLong(nullptr, 16) >> (number - 1) & 1U) != 0;
                return hasOne == (handler == Handler::OfTheProgram);
            },
            patience);
    }

    qint64 processId() const
    {
        return m_process.processId();
    }
    void type(const QByteArray &text)
    {
        m_process.write(text);
    }
    void endInput()
    {
        m_process.closeWriteChannel();
    }
    void signal(int number)
    {
        ::kill(static_cast<pid_t>(m_process.processId()), number);
    }

    Result finish()
    {
        // Not waitForFinished(): this process may play a part on the bus.
        const bool hasEnded
            = QTest::qWaitFor([this] { return m_process.state() == QProcess::NotRunning; }, patience);
        Result result;
        if (hasEnded && m_process.exitStatus() == QProcess::NormalExit)
            result.status = m_process.exitCode();
        result.output = QString::fromLocal8Bit(m_output + m_process.readAllStandardOutput());
        result.errors = QString::fromLocal8Bit(m_errors + m_process.readAllStandardError());
        return result;
    }

private:
    QProcess m_process;
    QByteArray m_output;
    QByteArray m_errors;
};

inline Result run(const QStringList &arguments, const QStringList &environment = {})
{
    Program program(arguments, environment);
    return program.finish();
}

/*! What the shell says at the end of a command whose output has lost its reader after \a lines: "status 0". Without any it
 *  has lost it before it begins, as a pipe would hold all that a command has to say that comes to its end.
 */
inline QString withoutReader(const QString &arguments, int lines)
{
    const QString command = QStringLiteral("'" DRAXELCTL "' ") + arguments;
    const QString script
        = lines > 0 ? QStringLiteral("{ %1; echo \"status $?\" >&2; } | head -n %2")
                          .arg(command, QString::number(lines))
                    : QStringLiteral("folder=$(mktemp -d) && pipe=$folder/pipe && mkfifo \"$pipe\" || exit\n"
                                     ": <\"$pipe\" & exec 3>\"$pipe\"; wait; rm -r \"$folder\"\n"
                                     "%1 >&3; echo \"status $?\" >&2")
                          .arg(command);
    QProcess shell;
    shell.start(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), script});
    if (!shell.waitForFinished(patience))
        return QStringLiteral("It goes on.");
    return QString::fromLocal8Bit(shell.readAllStandardError());
}

inline QString readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/*! Writes an exchange file with these nodes; returns its name. */
inline QString writeExchange(const QString &name, const QByteArray &nodes)
{
    QFile file(name);
    if (file.open(QIODevice::WriteOnly)) {
        file.write("<?xml version =\"1.0\" encoding=\"UTF-8\" ?>\n<dxtoolstorage pl_overwiew=\"1.0\" "
                   "date=\"\">\n<nodes>\n"
                   + nodes + "</nodes>\n</dxtoolstorage>\n");
    }
    return name;
}

/*! One object of an exchange file. */
inline QByteArray object(int index, int subIndex, qint64 value)
{
    return QStringLiteral("<object index=\"0x%1\" sub=\"0x%2\" value=\"%3\" />\n")
        .arg(index, 4, 16, QLatin1Char('0'))
        .arg(subIndex, 2, 16, QLatin1Char('0'))
        .arg(value)
        .toUtf8();
}

inline QByteArray node(int id, const QByteArray &objects)
{
    return "<node nodeid=\"" + QByteArray::number(id) + "\">\n" + objects + "</node>\n";
}
