// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <optional>

namespace CanOpen {

/*! Values in a PDO (CiA 301): the least significant bit of the first byte is bit 0, and a value's own least significant
 *  bit comes first. Values stand side by side, wherever bytes begin.
 */

constexpr int mostPdoBits = 64;

/*! The \a count bits of \a payload from bit \a first on. Empty when they are not all there, or \a count is not 1 to 64. */
std::optional<quint64> unpackBits(const QByteArray &payload, int first, int count);

/*! Writes the lowest \a count bits of \a value from bit \a first on; no other bit changes. False, and nothing is written,
 *  when they are not all there or \a count is not 1 to 64.
 */
bool packBits(QByteArray *payload, int first, int count, quint64 value);

} // namespace CanOpen
