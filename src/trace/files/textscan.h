// SPDX-License-Identifier: MIT
#pragma once

#include "linereader.h"

#include <array>
#include <cstring>

/*! Reading the pieces of a line from left to right. Every function moves *at only over what it has taken. */
namespace TextScan {

constexpr std::array<qint8, 256> makeDigits()
{
    std::array<qint8, 256> digits{};
    for (auto &digit : digits)
        digit = -1;
    for (size_t i = 0; i < 10; ++i)
        digits['0' + i] = static_cast<qint8>(i);
    for (size_t i = 0; i < 6; ++i) {
        digits['a' + i] = static_cast<qint8>(10 + i);
        digits['A' + i] = static_cast<qint8>(10 + i);
    }
    return digits;
}
constexpr std::array<qint8, 256> hexDigits = makeDigits();

/*! The value of a hexadecimal digit; -1 for anything else. */
inline int hexDigit(char c)
{
    return hexDigits[static_cast<unsigned char>(c)];
}

inline bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

inline bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

inline void skipBlanks(const char **at, const char *end)
{
    while (*at < end && isBlank(**at))
        ++*at;
}

/*! Takes \a c if it stands there. */
inline bool take(const char **at, const char *end, char c)
{
    if (*at >= end || **at != c)
        return false;
    ++*at;
    return true;
}

/*! Takes hexadecimal digits; how many there are, and in *value their number. More than eight are not taken. */
inline int takeHex(const char **at, const char *end, quint32 *value)
{
    constexpr int most = 8;
    const char *p = *at;
    quint32 read = 0;
    while (p < end && p - *at < most && hexDigit(*p) >= 0)
        read = read << 4 | static_cast<quint32>(hexDigit(*p++));
    const int count = static_cast<int>(p - *at);
    *at = p;
    *value = read;
    return count;
}

/*! Takes decimal digits, up to \a most; how many there are, and in *value their number. */
inline int takeDecimal(const char **at, const char *end, int most, quint64 *value)
{
    const char *p = *at;
    quint64 read = 0;
    while (p < end && p - *at < most && isDigit(*p))
        read = read * 10 + static_cast<quint64>(*p++ - '0');
    const int count = static_cast<int>(p - *at);
    *at = p;
    *value = read;
    return count;
}

/*! Takes a number with or without a fraction, and gives it in parts of \a scale, a power of ten: 1000000 reads seconds as
 *  us. Further places are left out. Before the point stand at most 12, at most 15 of a scale up to 1000.
 */
bool takeFixed(const char **at, const char *end, qint64 scale, qint64 *value);

/*! Takes up to the next blank. */
inline TextLine takeWord(const char **at, const char *end)
{
    skipBlanks(at, end);
    const char *const begin = *at;
    while (*at < end && !isBlank(**at))
        ++*at;
    return {begin, *at};
}

/*! Takes the next word as a byte: one or two hexadecimal digits, or up to three decimal ones. */
bool takeByte(const char **at, const char *end, bool isHex, quint8 *byte);

inline bool isWord(TextLine word, const char *text)
{
    const size_t length = std::strlen(text);
    return static_cast<size_t>(word.size()) == length && std::memcmp(word.begin, text, length) == 0;
}

/*! The same; upper and lower case of ASCII count as one. \a text is in lower case. */
bool isWordOfAnyCase(TextLine word, const char *text);

/*! The line as it may be shown in a sentence: its beginning, read as UTF-8, with nothing that acts on a terminal. */
QString excerpt(TextLine line);

} // namespace TextScan
