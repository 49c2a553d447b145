// SPDX-License-Identifier: MIT
#include "bytecount.h"

namespace {

struct Unit
{
    char letter;
    qint64 bytes;
};

constexpr Unit units[] = {{'k', 1'000}, {'M', 1'000'000}, {'G', 1'000'000'000}};
constexpr qint64 mostBytes = Q_INT64_C(1'000'000'000'000'000);

} // namespace

std::optional<qint64> parseByteCount(const QString &text)
{
    qint64 factor = 1;
    QString digits = text;
    for (const Unit &unit : units) {
        if (text.endsWith(QLatin1Char(unit.letter))) {
            factor = unit.bytes;
            digits.chop(1);
            break;
        }
    }
    bool isNumber = false;
    const qint64 count = digits.toLongLong(&isNumber);
    if (!isNumber || count <= 0 || count > mostBytes / factor)
        return std::nullopt;
    return count * factor;
}
