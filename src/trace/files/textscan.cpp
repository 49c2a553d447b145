// SPDX-License-Identifier: MIT
#include "textscan.h"

#include <system/amounts.h>

#include <QString>

namespace {

// Before the point: with the places of the scale a number has 18, and stays below 2^63.
constexpr int mostPlaces = 12;
constexpr int mostPlacesOfMilliseconds = 15;
constexpr int shown = 60; // characters of an excerpt

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

} // namespace

bool TextScan::takeFixed(const char **at, const char *end, qint64 scale, qint64 *value)
{
    const char *p = *at;
    const bool isNegative = take(&p, end, '-');
    quint64 whole = 0;
    const int most = scale > Microseconds::ofMillisecond ? mostPlaces : mostPlacesOfMilliseconds;
    if (takeDecimal(&p, end, most, &whole) == 0)
        return false;
    qint64 fraction = 0;
    if (take(&p, end, '.')) {
        qint64 place = scale / 10;
        for (; p < end && isDigit(*p); ++p, place /= 10)
            fraction += place * (*p - '0');
    }
    const qint64 read = static_cast<qint64>(whole) * scale + fraction;
    *at = p;
    *value = isNegative ? -read : read;
    return true;
}

bool TextScan::takeByte(const char **at, const char *end, bool isHex, quint8 *byte)
{
    const char *p = *at;
    skipBlanks(&p, end);
    constexpr int mostHex = 2;
    constexpr int mostDecimal = 3;
    constexpr quint64 highest = 0xFF;
    quint32 hex = 0;
    quint64 decimal = 0;
    const int digits = isHex ? takeHex(&p, end, &hex) : takeDecimal(&p, end, mostDecimal, &decimal);
    const quint64 value = isHex ? hex : decimal;
    if (digits == 0 || (isHex && digits > mostHex) || value > highest || (p < end && !isBlank(*p)))
        return false;
    *byte = static_cast<quint8>(value);
    *at = p;
    return true;
}

bool TextScan::isWordOfAnyCase(TextLine word, const char *text)
{
    const size_t length = std::strlen(text);
    if (static_cast<size_t>(word.size()) != length)
        return false;
    for (size_t i = 0; i < length; ++i) {
        if (lower(word.begin[i]) != text[i])
            return false;
    }
    return true;
}

QString TextScan::excerpt(TextLine line)
{
    const int size = line.size() < shown ? line.size() : shown;
    QString text = QString::fromUtf8(line.begin, size).trimmed();
    for (QChar &character : text) {
        if (character.category() == QChar::Other_Control)
            character = QChar::ReplacementCharacter;
    }
    return size < line.size() ? text + QStringLiteral("...") : text;
}
