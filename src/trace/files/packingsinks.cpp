// SPDX-License-Identifier: MIT
#include "packingsinks.h"

#include "gzipformat.h"
#include "tracefilestr.h"

#include <array>

#include <zstd.h>

namespace {

constexpr size_t packedAtOnce = 64 * 1024;
constexpr int gzipMemory = 8; // what deflateInit() takes
constexpr int gzipLevel = 4;  // half as long as the usual one, for a tenth more
constexpr int zstdLevel = 3;

} // namespace

QString PackingSink::errorString() const
{
    return m_hasFailed ? TraceFilesTr::tr("Compressing failed.") : m_to->errorString();
}

bool PackingSink::pack(const QByteArray &bytes, Until until)
{
    QByteArray packed;
    if (!pack(bytes, until, &packed)) {
        m_hasFailed = true;
        return false;
    }
    return packed.isEmpty() || m_to->write(packed);
}

GzipSink::GzipSink(std::unique_ptr<ByteSink> to)
    : PackingSink(std::move(to))
    , m_stream(std::make_unique<z_stream>())
{
    m_isReady
        = deflateInit2(m_stream.get(), gzipLevel, Z_DEFLATED, gzipFormat, gzipMemory, Z_DEFAULT_STRATEGY)
          == Z_OK;
}

GzipSink::~GzipSink()
{
    if (m_isReady)
        deflateEnd(m_stream.get());
}

bool GzipSink::pack(const QByteArray &bytes, Until until, QByteArray *packed)
{
    if (!m_isReady)
        return false;
    const int how = until == Until::End ? Z_FINISH : until == Until::Readable ? Z_SYNC_FLUSH : Z_NO_FLUSH;
    // zlib only reads what it is given.
    m_stream->next_in = reinterpret_cast<Bytef *>(const_cast<char *>(bytes.constData()));
    m_stream->avail_in = static_cast<uInt>(bytes.size());
    std::array<char, packedAtOnce> room;
    do {
        m_stream->next_out = reinterpret_cast<Bytef *>(room.data());
        m_stream->avail_out = static_cast<uInt>(room.size());
        const int result = deflate(m_stream.get(), how);
        if (result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR)
            return false;
        packed->append(room.data(), static_cast<int>(room.size() - m_stream->avail_out));
    } while (m_stream->avail_out == 0);
    return true;
}

ZstdSink::ZstdSink(std::unique_ptr<ByteSink> to)
    : PackingSink(std::move(to))
    , m_context(ZSTD_createCCtx())
{
    if (m_context == nullptr)
        return;
    ZSTD_CCtx_setParameter(m_context, ZSTD_c_compressionLevel, zstdLevel);
    ZSTD_CCtx_setParameter(m_context, ZSTD_c_checksumFlag, 1);
}

ZstdSink::~ZstdSink()
{
    ZSTD_freeCCtx(m_context);
}

bool ZstdSink::pack(const QByteArray &bytes, Until until, QByteArray *packed)
{
    if (m_context == nullptr)
        return false;
    const ZSTD_EndDirective how = until == Until::End        ? ZSTD_e_end
                                  : until == Until::Readable ? ZSTD_e_flush
                                                             : ZSTD_e_continue;
    ZSTD_inBuffer in{bytes.constData(), static_cast<size_t>(bytes.size()), 0};
    std::array<char, packedAtOnce> room;
    for (;;) {
        ZSTD_outBuffer out{room.data(), room.size(), 0};
        const size_t left = ZSTD_compressStream2(m_context, &out, &in, how);
        if (ZSTD_isError(left) != 0)
            return false;
        packed->append(room.data(), static_cast<int>(out.pos));
        if (in.pos == in.size && (left == 0 || how == ZSTD_e_continue))
            return true;
    }
}
