// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <memory>

struct z_stream_s;

/*! Unpacks gzip (RFC 1952) and zlib (RFC 1950) data piece by piece, and never more than it is allowed to. */
class Inflater
{
public:
    Inflater();
    ~Inflater();
    Q_DISABLE_COPY(Inflater)

    /*! Unpacks a piece and appends to \a output, which is never made longer than \a maximumSize bytes. Returns false
     *  when the data are broken or too long; what comes behind their end is left out.
     */
    bool unpack(const char *bytes, int count, int maximumSize, QByteArray &output);

    /*! Whether the data have come to their end. */
    bool isComplete() const { return m_isComplete; }

private:
    std::unique_ptr<z_stream_s> m_stream;
    bool m_isReady = false;
    bool m_isComplete = false;
};
