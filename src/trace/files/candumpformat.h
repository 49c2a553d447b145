// SPDX-License-Identifier: MIT
#pragma once

/*! Hexadecimal digits of an identifier in the log of candump; error frames have those of an extended one. */
namespace CandumpFormat {

constexpr int standardDigits = 3;
constexpr int extendedDigits = 8;

} // namespace CandumpFormat
