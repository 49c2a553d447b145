// SPDX-License-Identifier: MIT
#pragma once

class QByteArray;
class QString;

/*! The terminal of a command: results go to standard output, everything else to standard error. */
namespace Console {

/*! Writes \a text and a line end to standard output. */
void print(const QString &text);

/*! Writes bytes to standard output as they are. */
void printBytes(const QByteArray &bytes);

/*! Whether standard output is a terminal, which would take control characters as commands. */
bool isTerminal();

/*! Whether all that was written to standard output so far has arrived. */
bool isComplete();

/*! Writes \a text and a line end to standard error. */
void printError(const QString &text);

/*! Writes why a bus cannot be opened, and the next step. */
void printBusError(const QString &reason);

} // namespace Console
