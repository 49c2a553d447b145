// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include <functional>

class QIODevice;

/*! Returns field \a number of a table's row, or empty text when the row is too short. */
QString tableField(const QStringList &fields, int number);

/*! Returns the key of a table's row: field 0 as a signed 32-bit hexadecimal number.
 *
 *  A field that is no such number gives 0 and sets \a ok, where given, to false.
 */
int tableKey(const QStringList &fields, bool *ok = nullptr);

/*! Calls \a handleRow for every line of a table, in order, with the fields between its semicolons.
 *
 *  \a device is open in text mode; the last field of a row keeps the line feed.
 */
void forEachTableRow(QIODevice &device, const std::function<void(const QStringList &fields)> &handleRow);
