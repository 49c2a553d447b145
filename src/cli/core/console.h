// SPDX-License-Identifier: MIT
#pragma once

class QByteArray;
class QString;

/*! The terminal of a command: results go to standard output, everything else to standard error.
 *
 *  What comes from devices and files may hold control characters. A terminal shows them written out, see
 *  Terminal::visible(); files and pipes get results unchanged.
 */
namespace Console {

/*! Writes \a text and a line end to standard output. */
void print(const QString &text);

/*! The same with a text that holds nothing of others that acts on a terminal; its own colours stay. */
void printPlain(const QString &text);

/*! Writes JSON (UTF-8) to standard output as it is. */
void printJson(const QByteArray &json);

/*! Writes bytes to standard output, whatever it is; false when it could not take them all. */
bool write(const QByteArray &bytes);

/*! From now on print() writes to standard error: standard output belongs to a file. */
void keepOutputForFile();

/*! Whether all that was written to standard output so far has arrived. */
bool isComplete();

/*! Writes \a text and a line end to standard error. */
void printError(const QString &text);

/*! Writes why a bus cannot be opened, and the next step. */
void printBusError(const QString &reason);

} // namespace Console
