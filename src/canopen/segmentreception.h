// SPDX-License-Identifier: MIT
#pragma once

#include "sdoframe.h"

#include <QByteArray>

namespace CanOpen {

/*! Puts together what a server sends in the segments of one SDO upload (CiA 301).
 *
 *  Knows neither frames' way nor time, and believes what it is given: whether a segment belongs to the transfer is its
 *  caller's business.
 */
class SegmentReception
{
public:
    /*! Most segments without data in a row; a server that sends more would never end. */
    static constexpr int maximumEmptySegments = 16;

    enum class Event {
        Ask,      //!< more is to come
        Complete, //!< that was the last one
        TooLong,  //!< more than was announced, or than the limit
        Endless   //!< too many segments without data
    };

    /*! Begins; at most \a limit bytes are taken, and no more than are announced. */
    void begin(const SdoInitiate &initiate, int limit);

    /*! \a payload is the frame with \a segment, whose toggle bit is right. */
    Event take(const SdoSegment &segment, const QByteArray &payload);

    /*! A segment has come that is not the next one. */
    void noteOther(const QByteArray &payload) { m_isLastRepeated = payload == m_lastPayload; }

    void clear();

    const QByteArray &data() const { return m_data; }
    /*! How many were taken. */
    int segments() const { return m_segments; }
    /*! Whether the server has said how many bytes come, and how many; else 0. */
    bool isSizeAnnounced() const { return m_isSizeAnnounced; }
    int announcedSize() const { return m_announcedSize; }
    /*! Of the segment that is waited for. */
    bool toggle() const { return m_toggle; }
    bool isEmpty() const { return m_lastPayload.isEmpty(); }
    /*! Whether the last one came again, and nothing since. */
    bool isLastRepeated() const { return m_isLastRepeated; }

private:
    QByteArray m_data;
    QByteArray m_lastPayload;
    int m_segments = 0;
    int m_limit = 0; // bytes
    bool m_isSizeAnnounced = false;
    int m_announcedSize = 0;
    int m_emptySegments = 0; // in a row
    bool m_toggle = false;
    bool m_isLastRepeated = false;
};

} // namespace CanOpen
