// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <cstdlib>

/*! Takes numbers and frames from the bytes that the fuzzer has made, until there are none left. */
class ByteReader
{
public:
    ByteReader(const uint8_t *data, std::size_t size)
        : m_bytes(reinterpret_cast<const char *>(data), static_cast<int>(size))
    {
    }

    bool atEnd() const { return m_position >= m_bytes.size(); }

    /*! The next byte; 0 behind the end. */
    quint8 byte() { return atEnd() ? quint8(0) : static_cast<quint8>(m_bytes.at(m_position++)); }
    quint16 word() { return static_cast<quint16>(byte() | byte() << 8); }
    quint32 doubleWord() { return word() | quint32(word()) << 16; }

    /*! As many bytes as are left, \a size at most. */
    QByteArray bytes(int size)
    {
        const QByteArray taken = m_bytes.mid(m_position, size);
        m_position += taken.size();
        return taken;
    }

    /*! The eight bytes of an SDO, filled up with zeros. */
    QByteArray payload()
    {
        constexpr int sdoSize = 8;
        return bytes(sdoSize).leftJustified(sdoSize, '\0');
    }

private:
    QByteArray m_bytes;
    int m_position = 0;
};

/*! Ends the run, so that the fuzzer keeps the bytes that led here. */
inline void require(bool condition)
{
    if (!condition)
        std::abort();
}
