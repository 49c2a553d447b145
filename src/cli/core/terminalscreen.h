// SPDX-License-Identifier: MIT
#pragma once

#include "terminal.h"

#include <QStringList>

/*! The whole of the terminal that standard output is, for as long as this lives: what stood there is there again
 *  afterwards (ECMA-48 and the alternate screen of xterm, which all of today's terminals know).
 */
class TerminalScreen
{
public:
    /*! Whether standard output is a terminal that can do it. */
    static bool isPossible();

    TerminalScreen();
    ~TerminalScreen();
    Q_DISABLE_COPY(TerminalScreen)

    /*! Shows these lines in place of what was shown. They must hold nothing that acts on a terminal but colours, and fit
     *  Terminal::size().
     */
    void show(const QStringList &lines);
};
