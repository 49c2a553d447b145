// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/*! How many of a smaller unit a larger one has. */

namespace Nanoseconds {
constexpr qint64 ofMicrosecond = 1'000;
}

/*! What the times of frames and traces are counted in. */
namespace Microseconds {
constexpr qint64 ofMillisecond = 1'000;
constexpr qint64 ofSecond = 1'000'000;
constexpr qint64 ofMinute = 60 * ofSecond;

/*! The number of the second in which \a time lies: 0 from 0 on, -1 up to then. */
constexpr qint64 secondOf(qint64 time)
{
    return time / ofSecond - (time % ofSecond < 0 ? 1 : 0);
}
} // namespace Microseconds

namespace Bits {
constexpr int ofByte = 8;
}

namespace Bytes {
constexpr qint64 ofMegabyte = 1'000'000;
}
