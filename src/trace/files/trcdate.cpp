// SPDX-License-Identifier: MIT
#include "trcdate.h"

#include "textscan.h"
#include "timeofday.h"

#include <system/amounts.h>

#include <QDateTime>

#include <algorithm>

namespace {

constexpr qint64 places = 1'000'000'000'000; // a day in them: 12 places, 0.09 us
constexpr qint64 secondsOfDay = 86400;
constexpr qint64 day = secondsOfDay * Microseconds::ofSecond;
constexpr qint64 placesPerSecond = 1'000'000; // times secondsOfDay

/*! Day 0. */
QDate firstDay()
{
    return {1899, 12, 30};
}

} // namespace

qint64 TrcDate::parse(TextLine days)
{
    const char *at = days.begin;
    TextScan::skipBlanks(&at, days.end);
    quint64 whole = 0;
    constexpr int mostDigits = 6;
    if (TextScan::takeDecimal(&at, days.end, mostDigits, &whole) == 0)
        return 0;
    qint64 fraction = 0; // of a day, in places
    if (at < days.end && *at == '.') {
        qint64 place = places / 10;
        for (++at; at < days.end && TextScan::isDigit(*at); ++at, place /= 10)
            fraction += place * (*at - '0');
    }
    const qint64 rounded = (fraction * secondsOfDay + placesPerSecond / 2) / placesPerSecond;
    const qint64 inDay = std::min(rounded, day - 1);
    const QDate date = firstDay().addDays(static_cast<qint64>(whole));
    const QTime toMillisecond
        = QTime::fromMSecsSinceStartOfDay(static_cast<int>(inDay / Microseconds::ofMillisecond));
    const qint64 time = QDateTime(date, toMillisecond).toMSecsSinceEpoch() * Microseconds::ofMillisecond
                        + inDay % Microseconds::ofMillisecond;
    return TimeOfDay::isOne(time) ? time : 0;
}

QByteArray TrcDate::write(qint64 time)
{
    if (!TimeOfDay::isOne(time))
        return QByteArrayLiteral("0.000000000000");
    const QDateTime local = QDateTime::fromMSecsSinceEpoch(time / Microseconds::ofMillisecond);
    const qint64 inDay = qint64(local.time().msecsSinceStartOfDay()) * Microseconds::ofMillisecond
                         + time % Microseconds::ofMillisecond;
    const qint64 fraction = (inDay * placesPerSecond + secondsOfDay / 2) / secondsOfDay;
    return QByteArray::number(firstDay().daysTo(local.date())) + '.'
           + QByteArray::number(fraction).rightJustified(12, '0');
}
