// SPDX-License-Identifier: MIT
#pragma once

#include <system/amounts.h>

#include <QtGlobal>

/*! Times of traces: us since 1970 (UTC), or since they began. */
namespace TimeOfDay {

/*! 2000-01-01: whatever is before is no time of day. Counters that begin with 0 take thirty years to come here. */
constexpr qint64 earliest = Q_INT64_C(946'684'800) * Microseconds::ofSecond;

constexpr bool isOne(qint64 time)
{
    return time >= earliest;
}

} // namespace TimeOfDay
