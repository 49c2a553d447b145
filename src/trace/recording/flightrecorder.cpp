// SPDX-License-Identifier: MIT
#include "flightrecorder.h"

#include <algorithm>
#include <iterator>

void FlightRecorder::add(const TraceFrame &frame)
{
    m_newest = m_size == 0 ? frame.time : std::max(m_newest, frame.time);
    if (m_chunks.empty() || m_isFrozen || m_chunks.back().frames->size() == chunkSize)
        beginChunk();
    Chunk &chunk = m_chunks.back();
    chunk.newest = chunk.frames->empty() ? frame.time : std::max(chunk.newest, frame.time);
    chunk.frames->push_back(frame);
    ++m_size;
}

void FlightRecorder::beginChunk()
{
    while (!m_chunks.empty() && m_chunks.front().newest < m_newest - m_limits.span)
        dropOldest();
    while (!m_chunks.empty() && m_size + chunkSize > m_limits.frames) {
        m_hasDropped = true;
        m_newestDropped = m_chunks.front().newest;
        dropOldest();
    }
    m_chunks.emplace_back();
    m_chunks.back().frames->reserve(chunkSize);
    m_isFrozen = false;
}

void FlightRecorder::dropOldest()
{
    m_size -= m_chunks.front().frames->size();
    m_chunks.pop_front();
}

void FlightRecorder::clear()
{
    m_chunks.clear();
    m_size = 0;
    m_hasDropped = false;
}

FlightRecorder FlightRecorder::freeze()
{
    m_isFrozen = true;
    return *this;
}

bool FlightRecorder::isShort() const
{
    return m_hasDropped && m_newestDropped >= m_newest - m_limits.span;
}

Trace FlightRecorder::last(qint64 span) const
{
    const qint64 oldest = m_newest - std::min(span, m_limits.span);
    Trace trace;
    trace.head = m_head;
    if (isShort() && m_newestDropped >= oldest)
        trace.missing = MissingFrames::Oldest;
    trace.frames.reserve(m_size);
    for (const Chunk &chunk : m_chunks) {
        if (chunk.newest < oldest)
            continue;
        std::copy_if(chunk.frames->begin(), chunk.frames->end(), std::back_inserter(trace.frames),
                     [oldest](const TraceFrame &frame) { return frame.time >= oldest; });
    }
    return trace;
}
