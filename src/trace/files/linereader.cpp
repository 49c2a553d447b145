// SPDX-License-Identifier: MIT
#include "linereader.h"

#include <cstring>

namespace {

constexpr size_t blockSize = 256 * 1024;

} // namespace

LineReader::LineReader(std::unique_ptr<ByteSource> source)
    : m_source(std::move(source))
{
}

LineReader::Step LineReader::next(TextLine *line)
{
    for (;;) {
        const char *const from = m_room.data() + m_position;
        const char *const unsearched = m_room.data() + m_searched;
        const void *found
            = m_searched < m_filled ? std::memchr(unsearched, '\n', m_filled - m_searched) : nullptr;
        if (found != nullptr) {
            const char *const end = static_cast<const char *>(found);
            m_position = static_cast<size_t>(end + 1 - m_room.data());
            m_searched = m_position;
            return give(from, end, line);
        }
        if (m_hasEnded)
            return giveRest(line);
        setAside();
        fill();
    }
}

/*! Makes room: the beginning of a line goes to the front, that of one which is too long is left out. */
void LineReader::setAside()
{
    size_t count = m_filled - m_position;
    if (m_isSkipping || count > static_cast<size_t>(longest)) {
        m_isSkipping = true;
        count = 0;
    }
    if (count > 0)
        std::memmove(m_room.data(), m_room.data() + m_position, count);
    m_position = 0;
    m_searched = count;
    m_filled = count;
}

void LineReader::fill()
{
    m_room.resize(blockSize); // once
    const qint64 count
        = m_source->read(m_room.data() + m_filled, static_cast<qint64>(m_room.size() - m_filled));
    m_hasEnded = count <= 0;
    m_hasFailed = count < 0;
    m_filled += count > 0 ? static_cast<size_t>(count) : 0;
}

LineReader::Step LineReader::give(const char *begin, const char *end, TextLine *line)
{
    ++m_number;
    const bool isTooLong = m_isSkipping || end - begin > longest;
    m_isSkipping = false;
    if (isTooLong)
        return Step::TooLong;
    const bool endsWithCarriageReturn = end > begin && *(end - 1) == '\r';
    *line = {begin, endsWithCarriageReturn ? end - 1 : end};
    return Step::Line;
}

/*! What stands behind the last end of a line. */
LineReader::Step LineReader::giveRest(TextLine *line)
{
    if (m_position < m_filled || m_isSkipping) {
        const char *const begin = m_room.data() + m_position;
        m_position = m_filled;
        m_searched = m_filled;
        return give(begin, m_room.data() + m_filled, line);
    }
    if (!m_hasFailed)
        return Step::End;
    m_hasFailed = false;
    return Step::Failed;
}
