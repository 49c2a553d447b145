// SPDX-License-Identifier: MIT
#pragma once

/*! Keeps the debug lines of plug-ins off the terminal.
 *
 *  Plug-ins write every value that they read with qDebug(). The lines still reach Qt's message handler, where
 *  a debugger or another handler sees them; this handler, put in front of the one before, passes them on only
 *  when \a isVerbose, or when QT_LOGGING_RULES is set. Warnings and lines of named categories always pass.
 */
void installConsoleLog(bool isVerbose);
