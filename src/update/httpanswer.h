// SPDX-License-Identifier: MIT
#pragma once

#include "inflater.h"

#include <QByteArray>

#include <memory>

/*! Takes the bytes of one answer to an HTTP GET (RFC 7230) and gives status and body, bounded in every respect.
 *
 *  Holds nothing of the head but what it needs and no more of the body than it may, after decompression. Knows neither
 *  socket nor clock. Cookies, redirects and authentication are none of its business.
 */
class HttpAnswer
{
public:
    static constexpr int maximumHead
        = 64 * 1024; //!< bytes of the head, those of "100 Continue" before it included
    static constexpr int maximumSizeLine = 256; //!< bytes of the line before a chunk

    /*! \a maximumBody in bytes; positive. */
    explicit HttpAnswer(int maximumBody)
        : m_maximumBody(maximumBody)
    {
    }

    enum class State : quint8 {
        Open,     //!< more bytes are expected
        Complete, //!< status() and body() are those of a whole answer
        Failed,   //!< no HTTP, broken off, broken compression, or too long
    };
    State state() const { return m_state; }

    void take(const QByteArray &bytes);

    /*! The server has closed the connection. */
    void close();

    int status() const { return m_status; }
    const QByteArray &body() const { return m_body; }

private:
    enum class Part : quint8 {
        StatusLine,
        Headers,
        Body,
        BodyToTheClose,
        ChunkSize,
        Chunk,
        ChunkEnd,
        Trailer
    };

    int takeLine(const char *bytes, int count, int maximum);
    int takeBody(const char *bytes, int count);
    void endLine();
    void readStatusLine();
    void readHeader();
    void beginBody();
    void readChunkSize();
    void finish();
    void fail();

    const int m_maximumBody;
    State m_state = State::Open;
    Part m_part = Part::StatusLine;
    QByteArray m_line;   // so far, without its end
    int m_headBytes = 0; // so far
    int m_status = 0;
    qint64 m_length = -1; // of the body, or of the chunk, still to come; -1: to the close
    bool m_isChunked = false;
    std::unique_ptr<Inflater> m_inflater; // of a compressed body
    QByteArray m_body;
};
