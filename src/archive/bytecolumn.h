// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <optional>

/*! Numbers and bytes one after the other, small numbers in few bytes: seven bits in each, the least significant first,
 *  the eighth bit set in all but the last. Signed numbers are folded, 0, -1, 1, -2, ..., so that small ones stay small.
 */
class ColumnWriter
{
public:
    void add(quint64 number);
    void addSigned(qint64 number);
    /*! Their number, then the bytes. */
    void addBytes(const QByteArray &bytes);

    const QByteArray &bytes() const { return m_bytes; }

private:
    QByteArray m_bytes;
};

/*! Reads them back. What is cut off or no such number makes it faulty, and everything after it 0 or empty. */
class ColumnReader
{
public:
    explicit ColumnReader(const QByteArray &bytes)
        : m_bytes(bytes)
    {
    }

    quint64 next();
    qint64 nextSigned();
    QByteArray nextBytes();

    bool isFaulty() const { return m_isFaulty; }
    /*! Whether all was good and nothing is left. */
    bool isAtEnd() const { return !m_isFaulty && m_position == m_bytes.size(); }

private:
    quint64 fail();

    QByteArray m_bytes;
    int m_position = 0;
    bool m_isFaulty = false;
};

/*! zlib's compression, with a bound when it is undone. */
namespace Deflate {

QByteArray compress(const QByteArray &bytes);

/*! Empty for what is damaged or would be longer than \a longest bytes; no more memory than that is spent. */
std::optional<QByteArray> uncompress(const QByteArray &bytes, int longest);

} // namespace Deflate
