// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>
#include <QVector>

/*! How many columns of a terminal a text takes: two for a wide character of East Asia, none for a mark that
 *  goes over the one before.
 */
int terminalWidth(const QString &text);

/*! \a text when it takes no more than \a columns, else its beginning and "...". Nothing for less than one column. */
QString cutToWidth(const QString &text, int columns);

/*! Rows of cells as lines, \a indent columns in, with the cells one below the other. A last cell of several
 *  lines goes on below itself. No line ends in blanks; a row without cells is an empty line.
 */
QStringList alignedLines(const QVector<QStringList> &rows, int indent);
