// SPDX-License-Identifier: MIT
#include "segmentreception.h"

namespace CanOpen {

void SegmentReception::begin(const SdoInitiate &initiate, int limit)
{
    *this = SegmentReception();
    m_isSizeAnnounced = initiate.sizeIndicated;
    m_announcedSize = m_isSizeAnnounced ? static_cast<int>(initiate.size) : 0;
    m_limit = m_isSizeAnnounced ? m_announcedSize : limit;
}

SegmentReception::Event SegmentReception::take(const SdoSegment &segment, const QByteArray &payload)
{
    m_emptySegments = segment.data.size == 0 ? m_emptySegments + 1 : 0;
    if (m_data.size() + segment.data.size > m_limit)
        return Event::TooLong;
    if (m_emptySegments > maximumEmptySegments)
        return Event::Endless;
    m_data.append(segment.data.bytes.data(), segment.data.size);
    ++m_segments;
    m_lastPayload = payload;
    m_isLastRepeated = false;
    if (segment.last)
        return Event::Complete;
    m_toggle = !m_toggle;
    return Event::Ask;
}

void SegmentReception::clear()
{
    m_data.clear();
    m_lastPayload.clear();
}

} // namespace CanOpen
