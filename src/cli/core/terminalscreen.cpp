// SPDX-License-Identifier: MIT
#include "terminalscreen.h"

#include "console.h"

namespace {

constexpr char enter[] = "\x1b[?1049h\x1b[?25l\x1b[2J"; // alternate screen, no cursor, empty
constexpr char leave[] = "\x1b[?25h\x1b[?1049l";
constexpr char home[] = "\x1b[H";
constexpr char eraseLine[] = "\x1b[2K";
constexpr char clearToEnd[] = "\x1b[J";

} // namespace

bool TerminalScreen::isPossible()
{
    const QByteArray kind = qgetenv("TERM");
    return Terminal::isTerminal(Terminal::Stream::Output) && !kind.isEmpty() && kind != "dumb";
}

TerminalScreen::TerminalScreen()
{
    Console::write(enter);
}

TerminalScreen::~TerminalScreen()
{
    Console::write(leave);
}

// What is cleared is cleared before anything is written: behind a line of the full width the cursor stands on its last
// character.
void TerminalScreen::show(const QStringList &lines)
{
    QByteArray bytes = home;
    for (int i = 0; i < lines.size(); ++i) {
        bytes += eraseLine + lines.at(i).toLocal8Bit();
        if (i < lines.size() - 1) // behind the last one the screen would move up
            bytes += "\r\n";
    }
    if (lines.size() < Terminal::size().lines)
        bytes += QByteArray("\r\n") + clearToEnd;
    Console::write(bytes);
}
