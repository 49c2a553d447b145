// SPDX-License-Identifier: MIT
#pragma once

#include <trace/core/trace.h>

#include <deque>
#include <memory>
#include <vector>

/*! The last minutes of a bus in memory, for the moment in which somebody wants to know what has just happened.
 *
 *  Memory grows with what there is, and is bounded. Times of frames must be of a clock that goes forward, see FrameClock:
 *  the newest one decides what is too old.
 */
class FlightRecorder
{
public:
    struct Limits
    {
        qint64 span = 600'000'000; //!< us
        /*! Ten minutes of 8000 frames a second; 115 MB. At least one chunk. */
        size_t frames = 4'800'000;
    };

    /*! Memory is taken and given back in pieces of so many frames. */
    static constexpr size_t chunkSize = 8192;

    FlightRecorder()
        : FlightRecorder(Limits())
    {
    }
    explicit FlightRecorder(const Limits &limits)
        : m_limits(limits)
    {
    }

    /*! Of the frames; clear() keeps it. */
    void setHead(const TraceHead &head) { m_head = head; }
    void add(const TraceFrame &frame);
    void clear();

    /*! The same frames, which stay as they are while this one goes on. Costs next to nothing, and may be read in another
     *  thread.
     */
    FlightRecorder freeze();

    /*! How many frames are kept; some of them may be older than the span. */
    size_t size() const { return m_size; }
    /*! Whether frames within the span had to go because there were too many. */
    bool isShort() const;

    /*! The frames of the last \a span us (no more than that of the limits) before the newest one, oldest first. */
    Trace last(qint64 span) const;
    Trace all() const { return last(m_limits.span); }

private:
    struct Chunk
    {
        std::shared_ptr<std::vector<TraceFrame>> frames = std::make_shared<std::vector<TraceFrame>>();
        qint64 newest = 0;
    };

    void beginChunk();
    void dropOldest();

    Limits m_limits;
    TraceHead m_head;
    std::deque<Chunk> m_chunks;
    bool m_isFrozen = false; // others read the last chunk: nothing more comes into it
    size_t m_size = 0;
    qint64 m_newest = 0;
    bool m_hasDropped = false;
    qint64 m_newestDropped = 0; // of what had to go for the number
};
