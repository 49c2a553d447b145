// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <chrono>
#include <optional>

/*! A time as it is written on a command line: "500ms", "10s", "2min", "1h"; a number alone is of seconds. Empty for
 *  anything else, for 0, and for more than a week.
 */
std::optional<std::chrono::milliseconds> parseDuration(const QString &text);
