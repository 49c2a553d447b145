// SPDX-License-Identifier: MIT
#include "tracewriter.h"

#include "bytesink.h"
#include "frameencoder.h"

namespace {

constexpr int mostWaiting = 64 * 1024;
constexpr int longestFrame = 256;

} // namespace

TraceWriter::TraceWriter(std::unique_ptr<FrameEncoder> encoder, std::unique_ptr<ByteSink> sink)
    : m_encoder(std::move(encoder))
    , m_sink(std::move(sink))
{
    m_waiting.reserve(mostWaiting + longestFrame);
}

TraceWriter::~TraceWriter() = default;

void TraceWriter::setHead(const TraceHead &head)
{
    m_encoder->setHead(head);
}

void TraceWriter::begin(qint64 first)
{
    if (!m_hasBegun)
        m_encoder->begin(first, &m_waiting);
    m_hasBegun = true;
}

bool TraceWriter::write(const TraceFrame &frame)
{
    if (m_hasFailed)
        return false;
    begin(frame.time);
    m_encoder->write(frame, &m_waiting);
    return m_waiting.size() < mostWaiting || handOver();
}

bool TraceWriter::handOver()
{
    m_hasFailed = m_hasFailed || !m_sink->write(m_waiting);
    m_waiting.resize(0);
    return !m_hasFailed;
}

bool TraceWriter::flush()
{
    m_hasFailed = !handOver() || !m_sink->flush();
    return !m_hasFailed;
}

bool TraceWriter::finish()
{
    if (m_hasFailed)
        return false;
    begin(0);
    m_encoder->end(&m_waiting);
    m_hasFailed = !handOver() || !m_sink->finish();
    return !m_hasFailed;
}

qint64 TraceWriter::size() const
{
    return m_sink->size() + m_waiting.size();
}

QString TraceWriter::errorString() const
{
    return m_sink->errorString();
}
