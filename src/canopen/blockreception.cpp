// SPDX-License-Identifier: MIT
#include "blockreception.h"

namespace CanOpen {

void BlockReception::begin(const SdoBlockInitiateResponse &response, int limit)
{
    *this = BlockReception();
    m_limit = limit;
    m_hasCrc = response.crcSupported;
    if (response.sizeIndicated)
        m_size = response.size;
}

BlockReception::Event BlockReception::take(const QByteArray &payload)
{
    if (const std::optional<SdoBlockEnd> end = readSdoBlockEnd(payload))
        return takeEnd(*end);
    const std::optional<SdoBlockSegment> segment = readSdoBlockSegment(payload);
    if (!segment || m_hasLastCome || segment->sequenceNumber == 0 || segment->sequenceNumber > blockSize)
        return Event::Ignored;
    return handleSegment(*segment);
}

BlockReception::Event BlockReception::timeOver()
{
    // Either the acknowledge got lost, or the whole block after it. Taken for the first; if it is wrong, size and
    // CRC tell.
    if (++m_stalls > maximumStalls)
        return fail(SdoAbort::ProtocolTimedOut);
    if (m_lastGood == 0) // also after the last segment
        return Event::Acknowledge;
    return endBlock();
}

QByteArray BlockReception::acknowledge() const
{
    return makeSdoBlockAcknowledge({m_acknowledged, blockSize});
}

BlockReception::Event BlockReception::handleSegment(const SdoBlockSegment &segment)
{
    const bool endsBlock = segment.last || segment.sequenceNumber == blockSize;
    if (segment.sequenceNumber != m_lastGood + 1) {
        // After a gap the rest of the block is dropped; the server sends it again. With nothing good before it
        // the segment may be a late one of the block before.
        const bool tellsGap = endsBlock && m_lastGood > 0 && segment.sequenceNumber > m_lastGood;
        return tellsGap ? endBlock() : Event::Ignored;
    }
    // The last segment is full here; how much of it counts is said at the end.
    if (m_data.size() > m_limit)
        return fail(SdoAbort::LengthTooHigh);
    m_data.append(segment.data.bytes.data(), segment.data.size);
    m_lastGood = segment.sequenceNumber;
    m_hasLastCome = segment.last;
    m_stalls = 0;
    return endsBlock ? endBlock() : Event::Nothing;
}

BlockReception::Event BlockReception::endBlock()
{
    m_acknowledged = m_lastGood;
    m_lastGood = 0;
    return Event::Acknowledge;
}

BlockReception::Event BlockReception::takeEnd(const SdoBlockEnd &end)
{
    if (!m_hasLastCome)
        return fail(SdoAbort::InvalidSequenceNumber);
    m_data.chop(end.unusedBytes);
    if (m_size && static_cast<quint32>(m_data.size()) != *m_size)
        return fail(static_cast<quint32>(m_data.size()) > *m_size ? SdoAbort::LengthTooHigh
                                                                  : SdoAbort::LengthTooLow);
    if (m_data.size() > m_limit)
        return fail(SdoAbort::LengthTooHigh);
    if (m_hasCrc && sdoBlockCrc(m_data) != end.crc)
        return fail(SdoAbort::CrcError);
    return Event::Complete;
}

BlockReception::Event BlockReception::fail(SdoAbort code)
{
    m_failure = code;
    return Event::Failed;
}

} // namespace CanOpen
