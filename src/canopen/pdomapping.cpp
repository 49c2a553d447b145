// SPDX-License-Identifier: MIT
#include "pdomapping.h"

#include <algorithm>

namespace CanOpen {

namespace {

constexpr quint32 firstMultiplexed = 254; // source and destination address mode
constexpr quint32 lastMultiplexed = 255;

QByteArray bytesOf(quint64 value, int bits)
{
    QByteArray data;
    for (int bit = 0; bit < bits; bit += 8)
        data.append(static_cast<char>(value >> bit & 0xFF));
    return data;
}

PdoMapping::Problem problemOfCount(std::optional<quint32> count)
{
    if (!count)
        return PdoMapping::Problem::NotThere;
    if (*count >= firstMultiplexed && *count <= lastMultiplexed)
        return PdoMapping::Problem::IsMultiplexed;
    return *count > mostMappedObjects ? PdoMapping::Problem::TooMany : PdoMapping::Problem::None;
}

PdoMapping::Problem problemOfEntry(const PdoMapping &mapping, std::optional<quint32> value)
{
    if (!value)
        return PdoMapping::Problem::EntryMissing;
    const int bits = PdoMappingEntry::fromValue(*value).bits;
    if (bits == 0)
        return PdoMapping::Problem::EmptyEntry;
    return mapping.bits() + bits > mostPdoBits ? PdoMapping::Problem::TooLong : PdoMapping::Problem::None;
}

} // namespace

PdoMappingEntry PdoMappingEntry::fromValue(quint32 value)
{
    return {{static_cast<quint16>(value >> 16), static_cast<quint8>(value >> 8 & 0xFF)},
            static_cast<quint8>(value & 0xFF)};
}

quint32 PdoMappingEntry::toValue() const
{
    return quint32(object.index) << 16 | quint32(object.subIndex) << 8 | bits;
}

int PdoMapping::bits() const
{
    int sum = 0;
    for (const PdoMappingEntry &entry : entries)
        sum += entry.bits;
    return sum;
}

bool PdoMapping::contains(ObjectKey object) const
{
    return std::any_of(entries.cbegin(), entries.cend(),
                       [object](const PdoMappingEntry &entry) { return entry.object == object; });
}

PdoMapping readPdoMapping(const ObjectLookup &lookup, quint16 index)
{
    PdoMapping mapping;
    const std::optional<quint32> count = lookup({index, 0});
    mapping.problem = problemOfCount(count);
    if (mapping.problem != PdoMapping::Problem::None)
        return mapping;
    for (quint32 number = 1; number <= *count; ++number) {
        const std::optional<quint32> value = lookup({index, static_cast<quint8>(number)});
        mapping.problem = problemOfEntry(mapping, value);
        if (mapping.problem != PdoMapping::Problem::None)
            break;
        mapping.entries.append(PdoMappingEntry::fromValue(*value));
    }
    return mapping;
}

QVector<PdoValue> unpackPdo(const PdoMapping &mapping, const QByteArray &payload)
{
    QVector<PdoValue> values;
    int first = 0;
    for (const PdoMappingEntry &entry : mapping.entries) {
        const std::optional<quint64> value = unpackBits(payload, first, entry.bits);
        first += entry.bits;
        if (!entry.isDummy())
            values.append({entry.object, entry.bits, value ? bytesOf(*value, entry.bits) : QByteArray()});
    }
    return values;
}

std::optional<QByteArray> widenMapped(DataType type, const QByteArray &data, int bits)
{
    const int size = byteSize(type);
    if (data.isEmpty() || bits < 1 || data.size() != (bits + 7) / 8)
        return std::nullopt;
    if (size == 0) // texts and the like
        return data;
    if (data.size() > size)
        return std::nullopt;
    const bool isWhole = isSignedInteger(type) || dataTypeName(type).startsWith(QLatin1String("UNSIGNED"))
                         || type == DataType::Boolean;
    if (!isWhole)
        return data.size() == size ? std::optional<QByteArray>(data) : std::nullopt;
    quint64 value = unpackBits(data, 0, bits).value_or(0);
    const bool isNegative = isSignedInteger(type) && (value >> (bits - 1) & 1) != 0;
    if (isNegative && bits < mostPdoBits)
        value |= ~quint64(0) << bits;
    return bytesOf(value, 8 * size);
}

} // namespace CanOpen
