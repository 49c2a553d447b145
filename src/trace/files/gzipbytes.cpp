// SPDX-License-Identifier: MIT
#include "gzipbytes.h"

#include "gzipformat.h"

#include <algorithm>

namespace {

constexpr qint64 mostAtOnce = 1 << 30; // zlib counts in 32 bits

} // namespace

GzipBytes::GzipBytes(std::unique_ptr<ByteSource> packed)
    : Unpacking(std::move(packed))
    , m_stream(std::make_unique<z_stream>())
{
    m_isReady = inflateInit2(m_stream.get(), gzipFormat) == Z_OK;
}

GzipBytes::~GzipBytes()
{
    if (m_isReady)
        inflateEnd(m_stream.get());
}

Unpacking::Step GzipBytes::unpack(const char *packed, qint64 count, char *to, qint64 most)
{
    if (!m_isReady)
        return {Result::Broken, 0, 0};
    const uInt room = static_cast<uInt>(std::min(most, mostAtOnce));
    const uInt given = static_cast<uInt>(count);
    // zlib only reads what it is given.
    m_stream->next_in = reinterpret_cast<Bytef *>(const_cast<char *>(packed));
    m_stream->avail_in = given;
    m_stream->next_out = reinterpret_cast<Bytef *>(to);
    m_stream->avail_out = room;
    const int result = inflate(m_stream.get(), Z_NO_FLUSH);
    const Step step{result == Z_STREAM_END ? Result::Complete : Result::Going, given - m_stream->avail_in,
                    room - m_stream->avail_out};
    const bool isGood = result == Z_OK || result == Z_STREAM_END || result == Z_BUF_ERROR;
    // What came before the broken place is given; it is met again, as nothing of it is used.
    return isGood || step.made > 0 ? step : Step{Result::Broken, 0, 0};
}

bool GzipBytes::restart()
{
    return m_isReady && inflateReset(m_stream.get()) == Z_OK;
}
