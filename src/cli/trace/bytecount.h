// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

/*! A number of bytes as it is written on a command line: "500k", "100M", "2G", "1000000"; powers of ten. Empty for anything
 *  else, for 0, and for more than a million G.
 */
std::optional<qint64> parseByteCount(const QString &text);
