// SPDX-License-Identifier: MIT
#include "recordbytes.h"

#include <algorithm>
#include <cstring>

RecordBytes::RecordBytes(std::unique_ptr<ByteSource> source)
    : m_source(std::move(source))
{
}

const uchar *RecordBytes::peek(size_t count)
{
    if (count > longest)
        return nullptr;
    while (m_filled - m_position < count) {
        if (!fill())
            return nullptr;
    }
    return m_room.data() + m_position;
}

const uchar *RecordBytes::take(size_t count)
{
    const uchar *const bytes = peek(count);
    if (bytes != nullptr)
        m_position += count;
    return bytes;
}

bool RecordBytes::skip(quint64 count)
{
    while (count > 0) {
        if (m_position == m_filled && !fill())
            return false;
        const auto now = static_cast<size_t>(std::min<quint64>(count, m_filled - m_position));
        m_position += now;
        count -= now;
    }
    return true;
}

bool RecordBytes::isAtEnd()
{
    return m_position == m_filled && !fill();
}

bool RecordBytes::fill()
{
    if (m_hasEnded)
        return false;
    m_room.resize(longest); // once
    std::memmove(m_room.data(), m_room.data() + m_position, m_filled - m_position);
    m_filled -= m_position;
    m_position = 0;
    const qint64 count = m_source->read(reinterpret_cast<char *>(m_room.data() + m_filled),
                                        static_cast<qint64>(longest - m_filled));
    m_hasEnded = count <= 0;
    m_filled += count > 0 ? static_cast<size_t>(count) : 0;
    return count > 0;
}
