// SPDX-License-Identifier: MIT
#pragma once

class QString;

/*! The terminal of a command: results go to standard output, everything else to standard error. */
namespace Console {

/*! Writes \a text and a line end to standard output. */
void print(const QString &text);

/*! Writes \a text and a line end to standard error. */
void printError(const QString &text);

} // namespace Console
