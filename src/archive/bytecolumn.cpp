// SPDX-License-Identifier: MIT
#include "bytecolumn.h"

#include <zlib.h>

namespace {

constexpr int bitsInByte = 7;
constexpr quint8 moreFollows = 0x80;
constexpr int lastShift = 63; // of the tenth byte of a 64-bit number, which has one bit

} // namespace

void ColumnWriter::add(quint64 number)
{
    while (number >= moreFollows) {
        m_bytes.append(static_cast<char>(number | moreFollows));
        number >>= bitsInByte;
    }
    m_bytes.append(static_cast<char>(number));
}

void ColumnWriter::addSigned(qint64 number)
{
    const auto bits = static_cast<quint64>(number);
    add(number < 0 ? ~(bits << 1) : bits << 1);
}

void ColumnWriter::addBytes(const QByteArray &bytes)
{
    add(static_cast<quint64>(bytes.size()));
    m_bytes.append(bytes);
}

quint64 ColumnReader::next()
{
    quint64 number = 0;
    for (int shift = 0; shift <= lastShift && m_position < m_bytes.size(); shift += bitsInByte) {
        const auto byte = static_cast<quint8>(m_bytes.at(m_position++));
        if (shift == lastShift && byte > 1)
            return fail();
        number |= quint64(byte & ~moreFollows) << shift;
        if ((byte & moreFollows) == 0)
            return number;
    }
    return fail();
}

qint64 ColumnReader::nextSigned()
{
    const quint64 folded = next();
    return static_cast<qint64>((folded & 1) != 0 ? ~(folded >> 1) : folded >> 1);
}

QByteArray ColumnReader::nextBytes()
{
    const quint64 size = next();
    if (size > static_cast<quint64>(m_bytes.size() - m_position)) {
        fail();
        return QByteArray();
    }
    const QByteArray bytes = m_bytes.mid(m_position, static_cast<int>(size));
    m_position += static_cast<int>(size);
    return bytes;
}

quint64 ColumnReader::fail()
{
    m_isFaulty = true;
    m_position = m_bytes.size();
    return 0;
}

QByteArray Deflate::compress(const QByteArray &bytes)
{
    uLongf size = compressBound(static_cast<uLong>(bytes.size()));
    QByteArray result(static_cast<int>(size), Qt::Uninitialized);
    compress2(reinterpret_cast<Bytef *>(result.data()), &size,
              reinterpret_cast<const Bytef *>(bytes.constData()), static_cast<uLong>(bytes.size()),
              Z_BEST_COMPRESSION);
    result.truncate(static_cast<int>(size));
    // How long it was comes first, so that uncompressing takes one step.
    ColumnWriter length;
    length.add(static_cast<quint64>(bytes.size()));
    return length.bytes() + result;
}

std::optional<QByteArray> Deflate::uncompress(const QByteArray &bytes, int longest)
{
    ColumnReader length(bytes);
    const quint64 expected = length.next();
    if (length.isFaulty() || expected > static_cast<quint64>(longest))
        return std::nullopt;
    ColumnWriter start;
    start.add(expected);
    const QByteArray packed = bytes.mid(start.bytes().size());

    QByteArray result(static_cast<int>(expected), Qt::Uninitialized);
    // One byte at least: zlib takes no empty place.
    result.reserve(static_cast<int>(expected) + 1);
    uLongf size = static_cast<uLongf>(expected);
    const int status = ::uncompress(reinterpret_cast<Bytef *>(result.data()), &size,
                                    reinterpret_cast<const Bytef *>(packed.constData()),
                                    static_cast<uLong>(packed.size()));
    if (status != Z_OK || size != expected)
        return std::nullopt;
    return result;
}
