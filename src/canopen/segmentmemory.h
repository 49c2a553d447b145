// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <array>
#include <vector>

namespace CanOpen {

/*! Remembers the upload segments that one server has sent lately.
 *
 *  A segment does not say which object it belongs to. A line that delays or doubles frames may bring one again
 *  when a later transfer waits for its own. Such a copy can be told by two facts:
 *
 *  - It equals a segment that has been seen before, from another origin: an *origin* is a number for all the
 *    readings of one object that have agreed so far; strayOrigin is for segments that nobody waited for.
 *  - If the original was never seen, there is a request whose answer did not come, or not to the transfer that
 *    it belonged to: an *open request*.
 *
 *  So while no request is open, what is not known was sent for the transfer that waits for it. On a line that
 *  is *clear*, because nothing was asked for lately, that is so for all that comes, unless the node babbles.
 *
 *  Takes the time from its caller. Memory is bounded; a server that sends more in the time makes the line
 *  unclear.
 */
class SegmentMemory
{
public:
    /*! Longest time that a frame may take, in ms, for which no value is mixed up. */
    static constexpr qint64 longestDelay = 300;
    /*! After this time, in ms, nothing comes any more of a request and its answer. */
    static constexpr qint64 lifetime = 2 * longestDelay + 50;
    /*! A copy that comes within this time, in ms, has been doubled on the spot and is not late. */
    static constexpr qint64 onTheSpot = 5;
    /*! The lifetime, in ms, while copies have come on the spot only. */
    static constexpr qint64 shortLifetime = 2 * onTheSpot;
    /*! How long after a sign of trouble, in ms, the line is not trusted. */
    static constexpr qint64 troubleTime = 10000;
    static constexpr int capacity = 256; // segments
    /*! A segment that comes more often without having been asked for is not a copy. */
    static constexpr int maximumCopies = 8;

    static constexpr quint32 strayOrigin = 0;

    struct Sighting
    {
        bool isKnown = false;    // also seen from another origin
        bool isRepeated = false; // also seen in the same reading
        bool isBabble = false;   // came too often, or from nowhere, without having been asked for
    };

    /*! The time of what happens next, in ms; never goes back. */
    void setTime(qint64 now) { m_now = now; }
    qint64 time() const { return m_now; }

    /*! The longest time that the server has needed for an answer, in ms. */
    void setAnswerTime(qint64 time) { m_answerTime = time; }

    /*! Begins an origin of its own. */
    quint32 newOrigin() { return ++m_lastOrigin; }

    /*! Notes a segment: eight bytes. \a reading counts the readings. */
    Sighting note(const QByteArray &payload, quint32 origin, quint32 reading);

    /*! Notes a segment that nobody waited for. */
    void noteStray(const QByteArray &payload);

    /*! Whether the segment was seen lately, from any origin. */
    bool knows(const QByteArray &payload) const;

    /*! Whether a segment that nobody waited for was no copy of one that was seen, since \a time. */
    bool hasBabbledSince(qint64 time) const { return m_babbledAt >= time; }
    /*! The same, not long ago. */
    bool isBabbling() const { return m_babbledAt >= 0 && m_now < m_babbledAt + troubleTime; }

    /*! A segment is asked for now. */
    void noteRequest() { m_askedAt = m_now; }
    /*! What was asked for has not been answered, and the answer may still come. */
    void noteOpenRequest();
    /*! Until the answers to all open requests have come or never will, in ms; 0 when none is awaited. */
    qint64 timeUntilClosed() const;
    /*! Until nothing comes any more, not even copies as they have come lately, in ms; 0 or less when the line is
     *  clear of all.
     */
    qint64 timeUntilClear() const;
    /*! The same for any copies. */
    qint64 timeUntilGone() const;

    /*! Notes any frame of the server, in the order of coming. */
    void noteFrame(const QByteArray &payload);
    /*! A frame came late or not at all. */
    void noteTrouble();
    /*! The frame that came last was not waited for. It may be a copy that came on the spot. */
    void noteUnasked();
    bool isTroubled() const { return m_now < m_troubleUntil; }
    /*! Whether the trouble is more than copies on the spot. */
    bool isLate() const { return m_now < m_lateUntil; }

private:
    struct Entry
    {
        quint64 payload;
        qint64 time; // ms; seen last
        quint32 origin;
        quint32 reading;
        int strays = 0; // how often nobody waited for it, since it was waited for
    };

    struct Frame
    {
        quint64 payload = 0;
        qint64 time = -lifetime;
    };

    qint64 ageLimit() const { return lifetime + m_answerTime; }
    int find(quint64 payload) const; // the position in m_entries; -1: not seen lately
    Entry &add(quint64 payload, quint32 origin, quint32 reading);

    std::vector<Entry> m_entries;
    qint64 m_now = 0;
    qint64 m_answerTime = 0;
    qint64 m_askedAt = -lifetime; // last
    qint64 m_closedAt = 0;        // all open requests
    qint64 m_troubleUntil = 0;
    qint64 m_lateUntil = 0;
    std::array<Frame, 16> m_lastFrames; // a ring
    std::size_t m_lastFrame = 0;        // the position in it
    qint64 m_babbledAt = -1;
    quint32 m_lastOrigin = strayOrigin;
};

} // namespace CanOpen
