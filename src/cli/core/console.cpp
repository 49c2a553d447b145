// SPDX-License-Identifier: MIT
#include "console.h"

#include <QCoreApplication>
#include <QString>

#include <cstdio>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace {

void writeBytes(FILE *stream, const QByteArray &bytes)
{
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stream);
    std::fflush(stream);
}

void printLine(FILE *stream, const QString &text)
{
    writeBytes(stream, text.toLocal8Bit() + '\n');
}

} // namespace

void Console::print(const QString &text)
{
    printLine(stdout, text);
}

void Console::printError(const QString &text)
{
    printLine(stderr, text);
}

void Console::printBusError(const QString &reason)
{
    printError(reason);
    printError(QCoreApplication::translate("Console", "\"draxelctl interfaces\" lists what there is."));
}

void Console::printBytes(const QByteArray &bytes)
{
    writeBytes(stdout, bytes);
}

bool Console::isTerminal()
{
#ifdef Q_OS_UNIX
    return ::isatty(STDOUT_FILENO) == 1;
#else
    return true;
#endif
}

bool Console::isComplete()
{
    return std::ferror(stdout) == 0;
}
