// SPDX-License-Identifier: MIT
#include "inflater.h"

#include <zlib.h>

Inflater::Inflater()
    : m_stream(std::make_unique<z_stream>())
{
    constexpr int eitherFormat = MAX_WBITS + 32;
    m_isReady = inflateInit2(m_stream.get(), eitherFormat) == Z_OK;
}

Inflater::~Inflater()
{
    if (m_isReady)
        inflateEnd(m_stream.get());
}

bool Inflater::unpack(const char *bytes, int count, int maximumSize, QByteArray &output)
{
    constexpr int step = 64 * 1024;
    if (!m_isReady)
        return false;
    // zlib only reads what it is given.
    m_stream->next_in = reinterpret_cast<Bytef *>(const_cast<char *>(bytes));
    m_stream->avail_in = static_cast<uInt>(count);
    char room[step];
    do {
        m_stream->next_out = reinterpret_cast<Bytef *>(room);
        m_stream->avail_out = step;
        const int result = m_isComplete ? Z_STREAM_END : inflate(m_stream.get(), Z_NO_FLUSH);
        m_isComplete = result == Z_STREAM_END;
        if (result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR)
            return false;
        const int made = step - static_cast<int>(m_stream->avail_out);
        if (made > maximumSize - output.size())
            return false;
        output.append(room, made);
    } while (m_stream->avail_out == 0 && !m_isComplete);
    return true;
}
