// SPDX-License-Identifier: MIT
#include "packednode.h"

#include "bytecolumn.h"

#include <snapshot/objecttypes.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace {

using CanOpen::DataType;

constexpr char form = 1;

/*! What an entry counts at least, in bytes: less than it takes in a file of its own. */
constexpr int leastOfEntry = 32;

/*! How the value of an entry is kept. */
enum class ValueKind : quint8 { None, Implied, Signed, Unsigned, Fraction, Text };

constexpr quint8 lastGap = static_cast<quint8>(SnapshotGap::Cancelled);
constexpr quint8 lastValueKind = static_cast<quint8>(ValueKind::Text);

enum Column { Kinds, Keys, Types, Bytes, AbortCodes, Times, Values, columnCount };

// The bits of a kind.
constexpr int gapBits = 0x07;
constexpr int typeBit = 0x08;
constexpr int valueShift = 4;
constexpr int valueBits = 0x07;
constexpr int abortBit = 0x80;

QVariant impliedValue(const SnapshotEntry &entry)
{
    return entry.type ? CanOpen::decodeValue(*entry.type, entry.raw).value_or(QVariant())
                      : ObjectTypes::unsignedValue(entry.raw);
}

ValueKind kindOf(const SnapshotEntry &entry)
{
    if (entry.gap != SnapshotGap::None)
        return ValueKind::None;
    const QVariant implied = impliedValue(entry);
    if (implied.type() == entry.value.type() && implied == entry.value)
        return ValueKind::Implied;
    switch (static_cast<QMetaType::Type>(entry.value.type())) {
    case QMetaType::Int:
    case QMetaType::LongLong:
        return ValueKind::Signed;
    case QMetaType::UInt:
    case QMetaType::ULongLong:
        return ValueKind::Unsigned;
    case QMetaType::Float:
    case QMetaType::Double:
        return ValueKind::Fraction;
    case QMetaType::QString:
        return ValueKind::Text;
    default:
        return ValueKind::None;
    }
}

quint64 bitsOf(double number)
{
    quint64 bits = 0;
    static_assert(sizeof bits == sizeof number);
    std::memcpy(&bits, &number, sizeof bits);
    return bits;
}

double fractionOf(quint64 bits)
{
    double number = 0;
    std::memcpy(&number, &bits, sizeof number);
    return number;
}

int numberOf(CanOpen::ObjectKey key)
{
    return key.index << 8 | key.subIndex;
}

class Packer
{
public:
    void add(const SnapshotEntry &entry);
    QByteArray finish() const;

private:
    void addValue(ValueKind kind, const QVariant &value);

    std::array<ColumnWriter, columnCount> m_columns;
    quint64 m_count = 0;
    int m_lastKey = 0;
    qint64 m_lastTime = 0;
};

void Packer::add(const SnapshotEntry &entry)
{
    const ValueKind valueKind = kindOf(entry);
    int kind = static_cast<int>(entry.gap) | static_cast<int>(valueKind) << valueShift;
    if (entry.type) {
        kind |= typeBit;
        m_columns[Types].add(static_cast<quint64>(*entry.type));
    }
    if (entry.abortCode != 0) {
        kind |= abortBit;
        m_columns[AbortCodes].add(entry.abortCode);
    }
    m_columns[Kinds].add(static_cast<quint64>(kind));
    m_columns[Keys].addSigned(numberOf(entry.key) - m_lastKey);
    m_columns[Bytes].addBytes(entry.raw);
    m_columns[Times].addSigned(entry.ms - m_lastTime);
    addValue(valueKind, entry.value);
    m_lastKey = numberOf(entry.key);
    m_lastTime = entry.ms;
    ++m_count;
}

void Packer::addValue(ValueKind kind, const QVariant &value)
{
    ColumnWriter &column = m_columns[Values];
    switch (kind) {
    case ValueKind::None:
    case ValueKind::Implied:
        break;
    case ValueKind::Signed:
        column.addSigned(value.toLongLong());
        break;
    case ValueKind::Unsigned:
        column.add(value.toULongLong());
        break;
    case ValueKind::Fraction:
        column.add(bitsOf(value.toDouble()));
        break;
    case ValueKind::Text:
        column.addBytes(value.toString().toUtf8());
        break;
    }
}

QByteArray Packer::finish() const
{
    ColumnWriter all;
    all.add(m_count);
    for (const ColumnWriter &column : m_columns)
        all.addBytes(column.bytes());
    return form + Deflate::compress(all.bytes());
}

class Unpacker
{
public:
    explicit Unpacker(ColumnReader &all);

    SnapshotEntry next();
    bool isFaulty() const;
    bool isAtEnd() const;

private:
    QVariant nextValue(quint8 kind, const SnapshotEntry &entry);
    void fail() { m_isFaulty = true; }

    std::array<ColumnReader, columnCount> m_columns;
    int m_lastKey = 0;
    qint64 m_lastTime = 0;
    bool m_isFaulty = false;
};

// The members of a braced list are evaluated from the left to the right.
Unpacker::Unpacker(ColumnReader &all)
    : m_columns{ColumnReader(all.nextBytes()), ColumnReader(all.nextBytes()), ColumnReader(all.nextBytes()),
                ColumnReader(all.nextBytes()), ColumnReader(all.nextBytes()), ColumnReader(all.nextBytes()),
                ColumnReader(all.nextBytes())}
{
}

SnapshotEntry Unpacker::next()
{
    constexpr qint64 lastKey = 0xFFFFFF;
    SnapshotEntry entry;
    const quint64 kind = m_columns[Kinds].next();
    const qint64 step = m_columns[Keys].nextSigned();
    if (kind > 0xFF || step < -lastKey || step > lastKey) {
        fail();
        return entry;
    }
    const qint64 key = m_lastKey + step;
    const quint64 type = (kind & typeBit) != 0 ? m_columns[Types].next() : 0;
    const quint64 abortCode = (kind & abortBit) != 0 ? m_columns[AbortCodes].next() : 0;
    const auto valueKind = static_cast<quint8>(kind >> valueShift & valueBits);
    if (key < 0 || key > lastKey || type > 0xFFFF || abortCode > 0xFFFFFFFF || (kind & gapBits) > lastGap
        || valueKind > lastValueKind
        || ((kind & typeBit) != 0 && !CanOpen::isKnownDataType(static_cast<quint16>(type)))) {
        fail();
        return entry;
    }
    m_lastKey = static_cast<int>(key);
    entry.key = {static_cast<quint16>(key >> 8), static_cast<quint8>(key & 0xFF)};
    entry.gap = static_cast<SnapshotGap>(kind & gapBits);
    if ((kind & typeBit) != 0)
        entry.type = static_cast<DataType>(type);
    entry.abortCode = static_cast<quint32>(abortCode);
    entry.raw = m_columns[Bytes].nextBytes();
    // Unsigned, so that hostile steps wrap.
    m_lastTime = static_cast<qint64>(static_cast<quint64>(m_lastTime)
                                     + static_cast<quint64>(m_columns[Times].nextSigned()));
    entry.ms = m_lastTime;
    entry.value = nextValue(valueKind, entry);
    return entry;
}

QVariant Unpacker::nextValue(quint8 kind, const SnapshotEntry &entry)
{
    ColumnReader &column = m_columns[Values];
    switch (static_cast<ValueKind>(kind)) {
    case ValueKind::None:
        break;
    case ValueKind::Implied:
        return impliedValue(entry);
    case ValueKind::Signed:
        return qlonglong(column.nextSigned());
    case ValueKind::Unsigned:
        return qulonglong(column.next());
    case ValueKind::Fraction:
        return fractionOf(column.next());
    case ValueKind::Text:
        return QString::fromUtf8(column.nextBytes());
    }
    return QVariant();
}

bool Unpacker::isFaulty() const
{
    return m_isFaulty || std::any_of(m_columns.begin(), m_columns.end(), [](const ColumnReader &column) {
               return column.isFaulty();
           });
}

bool Unpacker::isAtEnd() const
{
    return !m_isFaulty && std::all_of(m_columns.begin(), m_columns.end(), [](const ColumnReader &column) {
        return column.isAtEnd();
    });
}

} // namespace

QByteArray PackedNode::pack(const QVector<SnapshotEntry> &entries)
{
    Packer packer;
    for (const SnapshotEntry &entry : entries)
        packer.add(entry);
    return packer.finish();
}

std::optional<QVector<SnapshotEntry>> PackedNode::unpack(const QByteArray &packed, int *longest)
{
    if (!packed.startsWith(form))
        return std::nullopt;
    const std::optional<QByteArray> bytes = Deflate::uncompress(packed.mid(1), *longest);
    if (!bytes)
        return std::nullopt;
    ColumnReader all(*bytes);
    const quint64 count = all.next();
    if (count > static_cast<quint64>(*longest / leastOfEntry))
        return std::nullopt;
    *longest -= qMax(bytes->size(), static_cast<int>(count) * leastOfEntry);

    Unpacker unpacker(all);
    QVector<SnapshotEntry> entries;
    for (quint64 i = 0; i < count && !unpacker.isFaulty(); ++i)
        entries.append(unpacker.next());
    if (!all.isAtEnd() || !unpacker.isAtEnd())
        return std::nullopt;
    return entries;
}
