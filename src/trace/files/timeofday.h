// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/*! Times of traces: us since 1970 (UTC), or since they began. */
namespace TimeOfDay {

constexpr qint64 second = 1'000'000; // us

/*! 2000-01-01: whatever is before is no time of day. Counters that begin with 0 take thirty years to come here. */
constexpr qint64 earliest = Q_INT64_C(946'684'800) * second;

constexpr bool isOne(qint64 time)
{
    return time >= earliest;
}

} // namespace TimeOfDay
