// SPDX-License-Identifier: MIT
#include "console.h"

#include <QString>

#include <cstdio>

namespace {

void printLine(FILE *stream, const QString &text)
{
    const QByteArray bytes = text.toLocal8Bit() + '\n';
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stream);
    std::fflush(stream);
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
