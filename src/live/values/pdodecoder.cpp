// SPDX-License-Identifier: MIT
#include "pdodecoder.h"

#include <algorithm>
#include <cmath>
#include <cstring>

using CanOpen::DataType;

namespace {

constexpr int frameBits = 64;
constexpr int bitsOfByte = 8;

PdoDecoder::Kind kindOf(std::optional<DataType> type, int bits)
{
    if (type == DataType::Real32 && bits == 32)
        return PdoDecoder::Kind::Real32;
    if (type == DataType::Real64 && bits == 64)
        return PdoDecoder::Kind::Real64;
    return type && CanOpen::isSignedInteger(*type) ? PdoDecoder::Kind::Signed : PdoDecoder::Kind::Unsigned;
}

template<typename Number, typename Bits>
Number sameBits(Bits bits)
{
    static_assert(sizeof(Number) == sizeof(Bits));
    Number number;
    std::memcpy(&number, &bits, sizeof(number));
    return number;
}

std::optional<double> ifFinite(double number)
{
    return std::isfinite(number) ? std::optional(number) : std::nullopt;
}

} // namespace

PdoDecoder::PdoDecoder(int first, int bits, std::optional<DataType> type)
    : m_kind(kindOf(type, bits))
    , m_first(static_cast<quint8>(std::clamp(first, 0, frameBits - 1)))
    , m_bits(static_cast<quint8>(std::clamp(bits, 1, frameBits - m_first)))
{
}

quint64 PdoDecoder::bitsOf(const QByteArray &payload)
{
    quint64 bits = 0;
    const int size = std::min(payload.size(), frameBits / bitsOfByte);
    const char *bytes = payload.constData();
    for (int i = 0; i < size; ++i)
        bits |= quint64(static_cast<quint8>(bytes[i])) << (i * bitsOfByte);
    return bits;
}

std::optional<double> PdoDecoder::numberIn(quint64 frame) const
{
    const int unused = frameBits - m_bits;
    const quint64 highest = frame >> m_first << unused; // the value's bits at the top
    switch (m_kind) {
    case Kind::Unsigned:
        return double(highest >> unused);
    case Kind::Signed:
        return double(static_cast<qint64>(highest) >> unused);
    case Kind::Real32:
        return ifFinite(double(sameBits<float>(static_cast<quint32>(highest >> unused))));
    case Kind::Real64:
        return ifFinite(sameBits<double>(highest));
    }
    return std::nullopt;
}

bool PdoDecoder::isNumber(std::optional<DataType> type)
{
    if (!type)
        return true; // most likely
    switch (*type) {
    case DataType::VisibleString:
    case DataType::OctetString:
    case DataType::UnicodeString:
    case DataType::TimeOfDay:
    case DataType::TimeDifference:
    case DataType::Domain:
        return false;
    default:
        return true;
    }
}
