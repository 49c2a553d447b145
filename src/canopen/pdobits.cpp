// SPDX-License-Identifier: MIT
#include "pdobits.h"

#include <algorithm>

namespace CanOpen {

namespace {

constexpr int bitsPerByte = 8;

bool isInside(const QByteArray &payload, int first, int count)
{
    return count >= 1 && count <= mostPdoBits && first >= 0
           && qint64(first) + count <= qint64(payload.size()) * bitsPerByte;
}

/*! As many ones as the part of a value has bits, 1 to 8. */
quint8 onesOf(int bits)
{
    return static_cast<quint8>(0xFF >> (bitsPerByte - bits));
}

/*! Calls \a part(byte, bit in it, bits of it, bits done before) for each byte that the bits lie in. */
template<typename Part>
void forEachByte(int first, int count, Part part)
{
    for (int done = 0; done < count;) {
        const int bit = (first + done) % bitsPerByte;
        const int bits = std::min(bitsPerByte - bit, count - done);
        part((first + done) / bitsPerByte, bit, bits, done);
        done += bits;
    }
}

} // namespace

std::optional<quint64> unpackBits(const QByteArray &payload, int first, int count)
{
    if (!isInside(payload, first, count))
        return std::nullopt;
    quint64 value = 0;
    forEachByte(first, count, [&](int byte, int bit, int bits, int done) {
        const int part = static_cast<quint8>(payload.at(byte)) >> bit & onesOf(bits);
        value |= static_cast<quint64>(part) << done;
    });
    return value;
}

bool packBits(QByteArray *payload, int first, int count, quint64 value)
{
    if (!isInside(*payload, first, count))
        return false;
    forEachByte(first, count, [&](int byte, int bit, int bits, int done) {
        const int mask = onesOf(bits) << bit;
        const int part = static_cast<int>(value >> done & onesOf(bits)) << bit;
        (*payload)[byte] = static_cast<char>((static_cast<quint8>(payload->at(byte)) & ~mask) | part);
    });
    return true;
}

} // namespace CanOpen
