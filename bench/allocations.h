// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

/*! Counts the bytes that the program has allocated, by standing in for malloc (GNU C library only). */
namespace Allocations {

/*! Bytes that are allocated now. */
std::size_t current();

/*! Begins a new maximum at what is allocated now. */
void resetPeak();

/*! The most bytes that were allocated at one time since resetPeak(). */
std::size_t peak();

} // namespace Allocations
