// SPDX-License-Identifier: MIT
#pragma once

/*! Pixels between what stands beside each other in a bar of the window. */
constexpr int barGap = 6;
