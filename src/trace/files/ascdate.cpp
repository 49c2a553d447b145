// SPDX-License-Identifier: MIT
#include "ascdate.h"

#include "textscan.h"
#include "timeofday.h"

#include <system/amounts.h>

#include <QDateTime>

#include <optional>

using namespace TextScan;

namespace {

struct MonthName
{
    const char *begin; // in lower case, as bytes of the file
    int month;
};

// German computers write their own names, in Latin 1 or in UTF-8.
constexpr MonthName months[] = {
    {"jan", 1}, {"feb", 2},  {"mar", 3},  {"m\xE4r", 3}, {"m\xC3\xA4", 3}, {"mrz", 3},
    {"apr", 4}, {"may", 5},  {"mai", 5},  {"jun", 6},    {"jul", 7},       {"aug", 8},
    {"sep", 9}, {"oct", 10}, {"okt", 10}, {"nov", 11},   {"dec", 12},      {"dez", 12},
};

constexpr const char *englishMonths[]
    = {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
constexpr const char *englishDays[] = {"Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"};

int monthOf(TextLine word)
{
    constexpr int beginning = 3;
    if (word.size() < beginning)
        return 0;
    for (const MonthName &name : months) {
        if (isWordOfAnyCase({word.begin, word.begin + beginning}, name.begin))
            return name.month;
    }
    return 0;
}

/*! "08:37:32.249", as us since midnight. */
std::optional<qint64> takeClock(TextLine word)
{
    constexpr int mostDigits = 2;
    const char *at = word.begin;
    quint64 hour = 0;
    quint64 minute = 0;
    qint64 seconds = 0;
    if (takeDecimal(&at, word.end, mostDigits, &hour) == 0 || !take(&at, word.end, ':')
        || takeDecimal(&at, word.end, mostDigits, &minute) == 0 || !take(&at, word.end, ':')
        || !takeFixed(&at, word.end, Microseconds::ofSecond, &seconds) || hour > 23 || minute > 59)
        return std::nullopt;
    return static_cast<qint64>(hour * 60 + minute) * 60 * Microseconds::ofSecond + seconds;
}

int takeInt(TextLine word)
{
    constexpr int mostDigits = 4;
    const char *at = word.begin;
    quint64 value = 0;
    takeDecimal(&at, word.end, mostDigits, &value);
    return at == word.end ? static_cast<int>(value) : 0;
}

/*! Hours of twelve that go on to 24. */
qint64 ofDay(qint64 clock, TextLine half)
{
    constexpr qint64 twelveHours = qint64(12) * 3600 * Microseconds::ofSecond;
    const bool isAfternoon = isWordOfAnyCase(half, "pm") || isWordOfAnyCase(half, "nachm.");
    const bool isMorning = isWordOfAnyCase(half, "am") || isWordOfAnyCase(half, "vorm.");
    if (isAfternoon && clock < twelveHours)
        return clock + twelveHours;
    return isMorning && clock >= twelveHours ? clock - twelveHours : clock;
}

} // namespace

bool AscDate::parse(TextLine line, qint64 *time)
{
    const char *at = line.begin;
    int month = 0;
    while (month == 0 && at < line.end)
        month = monthOf(takeWord(&at, line.end));
    const int day = takeInt(takeWord(&at, line.end));
    const std::optional<qint64> clock = takeClock(takeWord(&at, line.end));
    const TextLine half = takeWord(&at, line.end);
    const TextLine last = takeWord(&at, line.end);
    const int year = takeInt(last.size() > 0 ? last : half);
    const QDate date(year, month, day);
    if (!date.isValid() || !clock)
        return false;
    if (time != nullptr) {
        const qint64 inDay = ofDay(*clock, half);
        const QTime toMillisecond
            = QTime::fromMSecsSinceStartOfDay(static_cast<int>(inDay / Microseconds::ofMillisecond));
        *time = QDateTime(date, toMillisecond).toMSecsSinceEpoch() * Microseconds::ofMillisecond
                + inDay % Microseconds::ofMillisecond;
    }
    return true;
}

QByteArray AscDate::write(qint64 time)
{
    const QDateTime local = QDateTime::fromMSecsSinceEpoch(time / Microseconds::ofMillisecond);
    const QDate date = local.date();
    const QByteArray clock = local.time().toString(QStringLiteral("HH:mm:ss.zzz")).toLatin1();
    return QByteArray(englishDays[date.dayOfWeek() - 1]) + ' ' + englishMonths[date.month() - 1] + ' '
           + QByteArray::number(date.day()) + ' ' + clock + ' ' + QByteArray::number(date.year());
}
