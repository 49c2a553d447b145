// SPDX-License-Identifier: MIT
#pragma once

#include "unpacking.h"

struct z_stream_s;

/*! What a gzip file holds (RFC 1952), also of several packed one after the other. */
class GzipBytes : public Unpacking
{
public:
    explicit GzipBytes(std::unique_ptr<ByteSource> packed);
    ~GzipBytes() override;

protected:
    Step unpack(const char *packed, qint64 count, char *to, qint64 most) override;
    bool restart() override;

private:
    std::unique_ptr<z_stream_s> m_stream;
    bool m_isReady = false;
};
