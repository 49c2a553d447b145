// SPDX-License-Identifier: MIT
#pragma once

#include "unpacking.h"

struct ZSTD_DCtx_s;

/*! What a zstd file holds (RFC 8878), also of several packed one after the other. */
class ZstdBytes : public Unpacking
{
public:
    explicit ZstdBytes(std::unique_ptr<ByteSource> packed);
    ~ZstdBytes() override;

protected:
    Step unpack(const char *packed, qint64 count, char *to, qint64 most) override;
    bool restart() override { return m_context != nullptr; }

private:
    ZSTD_DCtx_s *m_context;
};
