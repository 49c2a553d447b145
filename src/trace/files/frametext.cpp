// SPDX-License-Identifier: MIT
#include "frameencoder.h"

#include <array>

namespace {

constexpr char digitsOfHex[] = "0123456789ABCDEF";

} // namespace

void FrameText::addHex(quint32 value, int digits, QByteArray *to)
{
    for (int place = digits - 1; place >= 0; --place)
        to->append(digitsOfHex[value >> (4 * place) & 0xF]);
}

void FrameText::addBytes(const TraceFrame &frame, char separator, QByteArray *to)
{
    for (int i = 0; i < frame.size(); ++i) {
        if (separator != 0)
            to->append(separator);
        addHex(frame.bytes[static_cast<size_t>(i)], 2, to);
    }
}

void FrameText::addTime(qint64 time, qint64 scale, int width, char fill, QByteArray *to)
{
    std::array<char, 32> text{};
    auto at = text.end();
    quint64 rest = time < 0 ? -static_cast<quint64>(time) : static_cast<quint64>(time);
    for (qint64 place = 1; place < scale; place *= 10, rest /= 10)
        *--at = static_cast<char>('0' + rest % 10);
    if (scale > 1)
        *--at = '.';
    const auto point = at;
    do {
        *--at = static_cast<char>('0' + rest % 10);
        rest /= 10;
    } while (rest > 0);
    const bool isSignFirst = fill == ' '; // "  -1", but "-001"
    if (time < 0 && isSignFirst)
        *--at = '-';
    while (point - at < width)
        *--at = fill;
    if (time < 0 && !isSignFirst)
        *--at = '-';
    to->append(at, static_cast<int>(text.end() - at));
}

void FrameText::addRight(const QByteArray &text, int width, QByteArray *to)
{
    to->append(text.rightJustified(width, ' '));
}
