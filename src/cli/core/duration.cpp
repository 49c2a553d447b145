// SPDX-License-Identifier: MIT
#include "duration.h"

#include <QRegularExpression>

namespace {

struct DurationUnit
{
    const char *name;
    qint64 milliseconds;
};

constexpr DurationUnit units[] = {{"ms", 1}, {"", 1000}, {"s", 1000}, {"min", 60'000}, {"h", 3'600'000}};

constexpr qint64 longest = 7 * 24 * 3'600'000LL; // ms

} // namespace

std::optional<std::chrono::milliseconds> parseDuration(const QString &text)
{
    static const QRegularExpression pattern(QStringLiteral("^([0-9]{1,9}) ?([a-z]*)$"));
    const QRegularExpressionMatch match = pattern.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    for (const DurationUnit &unit : units) {
        if (match.captured(2) != QLatin1String(unit.name))
            continue;
        const qint64 time = match.captured(1).toLongLong() * unit.milliseconds;
        return time > 0 && time <= longest ? std::optional(std::chrono::milliseconds(time)) : std::nullopt;
    }
    return std::nullopt;
}
