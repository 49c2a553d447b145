// SPDX-License-Identifier: MIT
#include "tracetimes.h"

#include <system/amounts.h>

#include <QDateTime>

namespace {

constexpr int decimal = 10;
constexpr int milliDigits = 3;
constexpr int microDigits = 6;

/*! Whole seconds before a time, also before 0, and the rest of it. */
struct Parts
{
    explicit Parts(qint64 time)
        : seconds(Microseconds::secondOf(time))
        , rest(time - seconds * Microseconds::ofSecond)
    {
    }

    qint64 seconds;
    qint64 rest;
};

QString digits(qint64 number, int width)
{
    return QStringLiteral("%1").arg(number, width, decimal, QLatin1Char('0'));
}

} // namespace

QString TraceTimes::shortText(qint64 time, bool hasTimeOfDay)
{
    if (!hasTimeOfDay)
        return tr("%1 s").arg(double(time) / double(Microseconds::ofSecond), 0, 'f', milliDigits);
    const Parts parts(time);
    return QDateTime::fromSecsSinceEpoch(parts.seconds).toString(QStringLiteral("HH:mm:ss."))
           + digits(parts.rest / Microseconds::ofMillisecond, milliDigits);
}

QString TraceTimes::longText(qint64 time, bool hasTimeOfDay)
{
    if (!hasTimeOfDay)
        return tr("%1 s").arg(double(time) / double(Microseconds::ofSecond), 0, 'f', microDigits);
    const Parts parts(time);
    return QDateTime::fromSecsSinceEpoch(parts.seconds).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss."))
           + digits(parts.rest, microDigits);
}

QString TraceTimes::difference(qint64 microseconds)
{
    const qint64 size = qAbs(microseconds);
    if (size < Microseconds::ofMillisecond)
        return tr("%1 µs").arg(microseconds);
    if (size < Microseconds::ofSecond)
        return tr("%1 ms").arg(double(microseconds) / double(Microseconds::ofMillisecond), 0, 'f', 1);
    if (size < Microseconds::ofMinute)
        return tr("%1 s").arg(double(microseconds) / double(Microseconds::ofSecond), 0, 'f', milliDigits);
    const QString sign = microseconds < 0 ? QStringLiteral("-") : QString();
    return sign
           + tr("%1 min %2 s")
                 .arg(QString::number(size / Microseconds::ofMinute),
                      digits(size % Microseconds::ofMinute / Microseconds::ofSecond, 2));
}

QString TraceTimes::count(quint64 number)
{
    constexpr quint64 thousand = 1000;
    constexpr quint64 million = 1000000;
    constexpr quint64 mostExact = 100000;
    if (number < mostExact)
        return QString::number(number);
    if (number < million)
        return tr("%1 k").arg(number / thousand);
    return tr("%1 M").arg(double(number) / double(million), 0, 'f', 1);
}

QString TraceTimes::frames(quint64 number)
{
    return number == 1 ? tr("1 frame") : tr("%1 frames").arg(count(number));
}

QString TraceTimes::lines(quint64 number)
{
    return number == 1 ? tr("1 line") : tr("%1 lines").arg(count(number));
}
