// SPDX-License-Identifier: MIT
#include "httpanswer.h"

#include <QList>

#include <algorithm>

void HttpAnswer::take(const QByteArray &bytes)
{
    int done = 0;
    while (done < bytes.size() && m_state == State::Open) {
        const char *rest = bytes.constData() + done;
        const int count = bytes.size() - done;
        switch (m_part) {
        case Part::StatusLine:
        case Part::Headers:
        case Part::Trailer: {
            const int taken = takeLine(rest, count, maximumHead);
            m_headBytes += taken;
            done += taken;
            if (m_headBytes > maximumHead)
                fail();
            break;
        }
        case Part::ChunkSize:
        case Part::ChunkEnd:
            done += takeLine(rest, count, maximumSizeLine);
            break;
        case Part::Body:
        case Part::BodyToTheClose:
        case Part::Chunk:
            done += takeBody(rest, count);
            break;
        }
    }
}

void HttpAnswer::close()
{
    if (m_state == State::Open && m_part == Part::BodyToTheClose)
        finish();
    else if (m_state == State::Open)
        fail();
}

/*! Takes bytes up to the end of a line and returns how many. */
int HttpAnswer::takeLine(const char *bytes, int count, int maximum)
{
    const char *end = std::find(bytes, bytes + count, '\n');
    const int length = static_cast<int>(end - bytes);
    if (length > maximum - m_line.size()) {
        fail();
        return count;
    }
    m_line.append(bytes, length);
    if (length == count)
        return count;
    if (m_line.endsWith('\r'))
        m_line.chop(1);
    endLine();
    m_line.clear();
    return length + 1;
}

void HttpAnswer::endLine()
{
    switch (m_part) {
    case Part::StatusLine:
        readStatusLine();
        break;
    case Part::Headers:
        if (m_line.isEmpty())
            beginBody();
        else
            readHeader();
        break;
    case Part::ChunkSize:
        readChunkSize();
        break;
    case Part::ChunkEnd:
        m_part = Part::ChunkSize;
        if (!m_line.isEmpty())
            fail();
        break;
    case Part::Trailer:
        if (m_line.isEmpty())
            finish();
        break;
    default:
        break;
    }
}

/*  HTTP/1.1 200 OK  */
void HttpAnswer::readStatusLine()
{
    constexpr int codeStart = 9;
    constexpr int codeLength = 3;
    bool isNumber = false;
    m_status = m_line.mid(codeStart, codeLength).toInt(&isNumber);
    m_part = Part::Headers;
    if (!m_line.startsWith("HTTP/1.") || m_line.size() < codeStart + codeLength
        || m_line.at(codeStart - 1) != ' ' || !isNumber || m_status < 100)
        fail();
}

void HttpAnswer::readHeader()
{
    const int colon = m_line.indexOf(':');
    if (colon <= 0)
        return;
    const QByteArray name = m_line.left(colon).trimmed().toLower();
    const QByteArray value = m_line.mid(colon + 1).trimmed().toLower();
    if (name == "content-length") {
        bool isNumber = false;
        m_length = value.toLongLong(&isNumber);
        if (!isNumber || m_length < 0)
            fail();
    } else if (name == "transfer-encoding") {
        m_isChunked = value.endsWith("chunked");
    } else if (name == "content-encoding" && (value == "gzip" || value == "x-gzip" || value == "deflate")) {
        m_inflater = std::make_unique<Inflater>();
    }
}

void HttpAnswer::beginBody()
{
    const bool isInformation = m_status < 200; // "100 Continue": the answer itself is still to come
    const bool hasNoBody = m_status == 204 || m_status == 304;
    if (isInformation) {
        m_part = Part::StatusLine;
    } else if (hasNoBody || (m_length == 0 && !m_isChunked)) {
        m_inflater.reset();
        finish();
    } else if (m_isChunked) {
        m_part = Part::ChunkSize;
    } else {
        m_part = m_length < 0 ? Part::BodyToTheClose : Part::Body;
    }
}

void HttpAnswer::readChunkSize()
{
    bool isNumber = false;
    const QByteArray number = m_line.split(';').constFirst(); // without the chunk's extensions
    m_length = number.trimmed().toLongLong(&isNumber, 16);
    m_part = m_length == 0 ? Part::Trailer : Part::Chunk;
    if (!isNumber || m_length < 0)
        fail();
}

/*! Takes bytes of the body up to its end, or its chunk's, and returns how many. */
int HttpAnswer::takeBody(const char *bytes, int count)
{
    const bool isBounded = m_part != Part::BodyToTheClose;
    const int taken = isBounded ? static_cast<int>(std::min<qint64>(count, m_length)) : count;
    if (m_inflater) {
        if (!m_inflater->unpack(bytes, taken, m_maximumBody, m_body))
            fail();
    } else if (taken > m_maximumBody - m_body.size()) {
        fail();
    } else {
        m_body.append(bytes, taken);
    }
    if (!isBounded || m_state != State::Open)
        return taken;

    m_length -= taken;
    if (m_length == 0 && m_part == Part::Chunk)
        m_part = Part::ChunkEnd;
    else if (m_length == 0)
        finish();
    return taken;
}

void HttpAnswer::finish()
{
    m_state = State::Complete;
    if (m_inflater && !m_inflater->isComplete())
        fail();
}

void HttpAnswer::fail()
{
    m_state = State::Failed;
    m_body.clear();
}
