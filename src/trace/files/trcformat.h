// SPDX-License-Identifier: MIT
#pragma once

/*! Hexadecimal digits of an identifier in a .trc file. */
namespace TrcFormat {

constexpr int standardDigits = 4;
constexpr int extendedDigits = 8; //!< other programs write fewer, too, but more than of a standard one

} // namespace TrcFormat
