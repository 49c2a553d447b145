// SPDX-License-Identifier: MIT
#pragma once

#include "bytesink.h"

struct z_stream_s;
struct ZSTD_CCtx_s;

/*! Compresses on the way to another sink; the base of the kinds of compression. */
class PackingSink : public ByteSink
{
public:
    explicit PackingSink(std::unique_ptr<ByteSink> to)
        : m_to(std::move(to))
    {
    }

    bool write(const QByteArray &bytes) final { return pack(bytes, Until::Whenever); }
    bool flush() final { return pack({}, Until::Readable) && m_to->flush(); }
    bool finish() final { return pack({}, Until::End) && m_to->finish(); }
    qint64 size() const final { return m_to->size(); }
    QString errorString() const final;

protected:
    /*! How far what is given must have come out. */
    enum class Until : quint8 { Whenever, Readable, End };

    /*! Compresses \a bytes and appends what comes out to \a packed; false when it cannot. */
    virtual bool pack(const QByteArray &bytes, Until until, QByteArray *packed) = 0;

private:
    bool pack(const QByteArray &bytes, Until until);

    std::unique_ptr<ByteSink> m_to;
    bool m_hasFailed = false;
};

class GzipSink : public PackingSink
{
public:
    explicit GzipSink(std::unique_ptr<ByteSink> to);
    ~GzipSink() override;

protected:
    bool pack(const QByteArray &bytes, Until until, QByteArray *packed) override;

private:
    std::unique_ptr<z_stream_s> m_stream;
    bool m_isReady = false;
};

class ZstdSink : public PackingSink
{
public:
    explicit ZstdSink(std::unique_ptr<ByteSink> to);
    ~ZstdSink() override;

protected:
    bool pack(const QByteArray &bytes, Until until, QByteArray *packed) override;

private:
    ZSTD_CCtx_s *m_context;
};
