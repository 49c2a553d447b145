// SPDX-License-Identifier: MIT
#include "console.h"

#include "terminal.h"

#include <QCoreApplication>
#include <QString>

#include <cstdio>

namespace {

void writeBytes(FILE *stream, const QByteArray &bytes)
{
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stream);
    std::fflush(stream);
}

bool isOutputForFile = false;

void printLine(FILE *stream, const QString &text)
{
    writeBytes(stream, text.toLocal8Bit() + '\n');
}

} // namespace

void Console::keepOutputForFile()
{
    isOutputForFile = true;
}

bool Console::write(const QByteArray &bytes)
{
    writeBytes(stdout, bytes);
    return isComplete();
}

void Console::print(const QString &text)
{
    if (isOutputForFile) {
        printError(text);
        return;
    }
    printLine(stdout, Terminal::isTerminal(Terminal::Stream::Output) ? Terminal::visible(text) : text);
}

void Console::printPlain(const QString &text)
{
    printLine(isOutputForFile ? stderr : stdout, text);
}

// Names and values of others stand in these sentences, whoever reads them.
void Console::printError(const QString &text)
{
    printLine(stderr, Terminal::visible(text));
}

void Console::printBusError(const QString &reason)
{
    printError(reason);
    printError(QCoreApplication::translate("Console", "\"draxelctl interfaces\" lists what there is."));
}

void Console::printJson(const QByteArray &json)
{
    const bool isShown = Terminal::isTerminal(Terminal::Stream::Output);
    writeBytes(stdout, isShown ? Terminal::visible(QString::fromUtf8(json)).toUtf8() : json);
}

bool Console::isComplete()
{
    return std::ferror(stdout) == 0;
}
