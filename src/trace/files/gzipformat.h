// SPDX-License-Identifier: MIT
#pragma once

#include <zlib.h>

/*! What zlib takes for a gzip file: its largest window, and 16 for the format. */
constexpr int gzipFormat = MAX_WBITS + 16;
