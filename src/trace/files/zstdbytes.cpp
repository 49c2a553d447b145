// SPDX-License-Identifier: MIT
#include "zstdbytes.h"

#include <zstd.h>

namespace {

// Of the memory that data may ask for: 2^27 bytes, 128 MB, what "zstd" itself unpacks without being told to.
constexpr int largestWindow = 27;

} // namespace

ZstdBytes::ZstdBytes(std::unique_ptr<ByteSource> packed)
    : Unpacking(std::move(packed))
    , m_context(ZSTD_createDCtx())
{
    if (m_context != nullptr)
        ZSTD_DCtx_setParameter(m_context, ZSTD_d_windowLogMax, largestWindow);
}

ZstdBytes::~ZstdBytes()
{
    ZSTD_freeDCtx(m_context);
}

Unpacking::Step ZstdBytes::unpack(const char *packed, qint64 count, char *to, qint64 most)
{
    if (m_context == nullptr)
        return {Result::Broken, 0, 0};
    ZSTD_inBuffer in{packed, static_cast<size_t>(count), 0};
    ZSTD_outBuffer out{to, static_cast<size_t>(most), 0};
    const size_t left = ZSTD_decompressStream(m_context, &out, &in);
    if (ZSTD_isError(left) != 0 && out.pos == 0)
        return {Result::Broken, 0, 0};
    return {left == 0 ? Result::Complete : Result::Going, static_cast<qint64>(in.pos),
            static_cast<qint64>(out.pos)};
}
