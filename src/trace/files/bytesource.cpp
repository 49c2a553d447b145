// SPDX-License-Identifier: MIT
#include "bytesource.h"

#include <algorithm>
#include <cstring>

qint64 ByteSource::fail(const QString &sentence)
{
    m_error = sentence;
    return -1;
}

qint64 MemoryBytes::read(char *to, qint64 most)
{
    const qint64 count = std::min<qint64>(most, m_bytes.size() - m_position);
    std::memcpy(to, m_bytes.constData() + m_position, static_cast<size_t>(count));
    m_position += static_cast<int>(count);
    return count;
}

qint64 PrefixedBytes::read(char *to, qint64 most)
{
    return m_isPrefixRead ? m_rest->read(to, most) : readPrefix(to, most);
}

qint64 PrefixedBytes::readPrefix(char *to, qint64 most)
{
    const qint64 count = m_prefix.read(to, most);
    if (count > 0)
        return count;
    m_isPrefixRead = true;
    return m_rest->read(to, most);
}
