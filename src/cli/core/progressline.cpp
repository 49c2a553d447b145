// SPDX-License-Identifier: MIT
#include "progressline.h"

#include "terminal.h"

#include <cstdio>

namespace {

constexpr qint64 shortestUpdate = 100;     // ms
constexpr char restartLine[] = "\r\033[K"; // to the first column, then erase to the end

} // namespace

ProgressLine::Output ProgressLine::detectOutput()
{
    return Terminal::isTerminal(Terminal::Stream::Errors) ? Output::Terminal : Output::None;
}

ProgressLine::ProgressLine(Output output)
    : m_output(output)
{
}

ProgressLine::~ProgressLine()
{
    clear();
}

bool ProgressLine::isDue() const
{
    return isShown() && (!m_sinceUpdate.isValid() || m_sinceUpdate.elapsed() >= shortestUpdate);
}

void ProgressLine::update(const QString &text)
{
    if (!isDue())
        return;
    m_sinceUpdate.start();
    m_isOnScreen = true;
    std::fputs(restartLine, stderr);
    std::fputs(Terminal::visible(text).toLocal8Bit().constData(), stderr);
    std::fflush(stderr);
}

void ProgressLine::clear()
{
    if (!m_isOnScreen)
        return;
    m_isOnScreen = false;
    std::fputs(restartLine, stderr);
    std::fflush(stderr);
}
