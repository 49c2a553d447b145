// SPDX-License-Identifier: MIT
#pragma once

#include "datatype.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace CanOpen {

/*! \file
 *  Numbers and values as CiA 306 writes them in electronic data sheets.
 *
 *  | Written        | Means                                                        |
 *  |----------------|--------------------------------------------------------------|
 *  | 17, 0x11, 021  | the same number: decimal, hexadecimal, octal                 |
 *  | -2, 0xFFFE     | the same INTEGER16: with its sign, or in two's complement    |
 *  | $NODEID+0x180  | a number that depends on the node ID; the sum in any order   |
 *  | 1.5, 0x3FC00000| the same REAL32: a decimal fraction, or its bits             |
 *  | 01 ff          | bytes of OCTET_STRING and DOMAIN, with or without blanks     |
 */

/*! Whether \a text is hexadecimal digits only, one at least. */
bool isHexNumber(const QString &text);

/*! A number without sign. Empty for anything else, and beyond 64 bits. */
std::optional<quint64> parseEdsNumber(const QString &text);

/*! A number from 0 to \a highest. */
std::optional<quint64> parseEdsNumber(const QString &text, quint64 highest);

/*! The bytes of a value on the bus; \a nodeId stands for `$NODEID`. Empty when the text is no value of \a type.
 */
std::optional<QByteArray> encodeEdsValue(DataType type, const QString &text, quint8 nodeId);

/*! Reads a limit of an integer type; false when the text is no value of \a type. \a limit stays empty for an
 *  UNSIGNED64 that a qint64 cannot hold, which limits nothing.
 */
bool readEdsLimit(DataType type, const QString &text, quint8 nodeId, std::optional<qint64> *limit);

/*! Whether LowLimit and HighLimit of \a type are numbers that can be checked; not so for texts and REAL. */
bool hasEdsLimits(DataType type);

} // namespace CanOpen
