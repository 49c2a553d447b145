// SPDX-License-Identifier: MIT
#include "progressline.h"

#include <QtGlobal>

#include <cstdio>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace {

constexpr qint64 shortestUpdate = 100;   // ms
constexpr char clearLine[] = "\r\033[K"; // to the first column, then erase to the end

} // namespace

ProgressLine::Output ProgressLine::detectOutput()
{
#ifdef Q_OS_UNIX
    return ::isatty(STDERR_FILENO) == 1 ? Output::Terminal : Output::None;
#else
    return Output::None;
#endif
}

ProgressLine::ProgressLine(Output output)
    : m_output(output)
{
}

ProgressLine::~ProgressLine()
{
    clear();
}

void ProgressLine::update(const QString &text)
{
    if (!isShown() || (m_sinceUpdate.isValid() && m_sinceUpdate.elapsed() < shortestUpdate))
        return;
    m_sinceUpdate.start();
    m_isOnScreen = true;
    std::fputs(clearLine, stderr);
    std::fputs(text.toLocal8Bit().constData(), stderr);
    std::fflush(stderr);
}

void ProgressLine::clear()
{
    if (!m_isOnScreen)
        return;
    m_isOnScreen = false;
    std::fputs(clearLine, stderr);
    std::fflush(stderr);
}
