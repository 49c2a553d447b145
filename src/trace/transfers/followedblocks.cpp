// SPDX-License-Identifier: MIT
// The block transfers of FollowedTransfer.
#include "followedtransfer.h"

#include <canopen/sdoblockdownload.h>

#include <algorithm>

using namespace CanOpen;

void FollowedTransfer::beginBlockUpload(const QByteArray &payload)
{
    m_phase = Phase::BlockUploadAsked;
    m_transfer.protocol = SdoTransfer::Protocol::Block;
    if (const std::optional<SdoBlockInitiateRequest> request = readSdoBlockInitiateRequest(payload)) {
        m_hasCrc = request->crcSupported;
        m_blockSize = request->blockSize;
    }
}

void FollowedTransfer::beginBlockDownload(const QByteArray &payload)
{
    m_transfer.isUpload = false;
    m_transfer.protocol = SdoTransfer::Protocol::Block;
    m_phase = Phase::BlockDownloadAsked;
    if (const std::optional<SdoBlockDownloadRequest> request = readSdoBlockDownloadRequest(payload)) {
        m_hasCrc = request->crcSupported;
        announce(request->sizeIndicated, request->size);
    }
}

void FollowedTransfer::startBlock(quint8 blockSize)
{
    m_blockSize = blockSize;
    m_blockAt = m_size;
    m_lastGood = 0;
    m_lastHeard = 0;
    m_isLast = false;
}

/*! Segments behind a gap are sent again, so only those in order count. */
void FollowedTransfer::takeBlockSegment(const QByteArray &payload)
{
    const std::optional<SdoBlockSegment> segment = readSdoBlockSegment(payload);
    if (!segment)
        return;
    m_lastHeard = segment->sequenceNumber;
    if (segment->sequenceNumber != m_lastGood + 1 || m_isLast)
        return;
    append(segment->data);
    ++m_lastGood;
    m_isLast = segment->last;
}

/*! What was not acknowledged comes again in the next block. */
void FollowedTransfer::acknowledge(const SdoBlockAcknowledge &acknowledge, Phase afterLast, Phase afterBlock)
{
    if (acknowledge.lastSequenceNumber > m_lastGood)
        breakWith(SdoTransfer::LostSegment); // it has come there, and the trace has it not
    const bool isAllThere = m_isLast && acknowledge.lastSequenceNumber >= m_lastGood;
    const int kept = std::min<int>(acknowledge.lastSequenceNumber, m_lastGood);
    m_size = m_blockAt + qint64(kept) * sdoSegmentSize;
    if (m_transfer.data.size() > m_size)
        m_transfer.data.truncate(static_cast<int>(m_size));
    if (isAllThere) {
        m_phase = afterLast;
        return;
    }
    m_phase = afterBlock;
    startBlock(acknowledge.nextBlockSize);
}

void FollowedTransfer::endBlocks(const SdoBlockEnd &end)
{
    const int unused = static_cast<int>(std::min<qint64>(end.unusedBytes, m_size));
    m_size -= unused;
    if (m_transfer.data.size() > m_size)
        m_transfer.data.truncate(static_cast<int>(m_size));
    if (m_announced && m_size != qint64(*m_announced))
        breakWith(SdoTransfer::SizeMismatch);
    if (m_hasCrc && !m_isBroken && !m_transfer.has(SdoTransfer::Cut)
        && sdoBlockCrc(m_transfer.data) != end.crc)
        breakWith(SdoTransfer::WrongChecksum);
}

SdoStep FollowedTransfer::blockUploadAnswer(const QByteArray &payload)
{
    if (sdoResponseOf(payload) == SdoResponse::InitiateUpload)
        return uploadAnswer(payload); // the server switches to the plain protocol
    const std::optional<SdoBlockInitiateResponse> answer = readSdoBlockInitiateResponse(payload);
    if (!answer || answer->key != m_transfer.object)
        return SdoStep::Stray;
    m_hasCrc = m_hasCrc && answer->crcSupported;
    announce(answer->sizeIndicated, answer->size);
    m_phase = Phase::BlockUploadTurn;
    return SdoStep::BlockUploadAnswer;
}

SdoStep FollowedTransfer::blockUploadRequest(const QByteArray &payload)
{
    if (sdoRequestOf(payload) != SdoRequest::BlockUpload)
        return SdoStep::Stray;
    const SdoBlockUpload what = sdoBlockUploadOf(payload);
    if (m_phase == Phase::BlockUploadTurn && what == SdoBlockUpload::Start) {
        startBlock(m_blockSize);
        m_phase = Phase::BlockUploadSegments;
        return SdoStep::BlockUploadStart;
    }
    if (m_phase != Phase::BlockUploadTurn && what == SdoBlockUpload::EndResponse) {
        if (m_phase != Phase::BlockUploadEndTurn)
            breakWith(SdoTransfer::LostSegment); // the client has what the trace has not
        complete();
        return SdoStep::BlockUploadEndAnswer;
    }
    const std::optional<SdoBlockAcknowledge> acknowledged = readSdoBlockAcknowledge(payload);
    if (m_phase != Phase::BlockUploadSegments || !acknowledged)
        return SdoStep::Stray;
    acknowledge(*acknowledged, Phase::BlockUploadEnd, Phase::BlockUploadSegments);
    return SdoStep::BlockUploadAcknowledge;
}

SdoStep FollowedTransfer::blockUploadSegment(const QByteArray &payload)
{
    // The acknowledge of the last segment may be missing in the trace.
    if (m_isLast && readSdoBlockEnd(payload))
        return blockUploadEnd(payload);
    takeBlockSegment(payload);
    return SdoStep::BlockUploadSegment;
}

SdoStep FollowedTransfer::blockUploadEnd(const QByteArray &payload)
{
    const std::optional<SdoBlockEnd> end = readSdoBlockEnd(payload);
    if (!end)
        return SdoStep::Stray;
    endBlocks(*end);
    m_phase = Phase::BlockUploadEndTurn;
    return SdoStep::BlockUploadEnd;
}

SdoStep FollowedTransfer::blockDownloadAnswer(const QByteArray &payload)
{
    const std::optional<SdoBlockDownloadResponse> answer = readSdoBlockDownloadResponse(payload);
    if (!answer || answer->key != m_transfer.object)
        return SdoStep::Stray;
    m_hasCrc = m_hasCrc && answer->crcSupported;
    m_phase = Phase::BlockDownloadSegments;
    startBlock(answer->blockSize);
    return SdoStep::BlockDownloadAnswer;
}

SdoStep FollowedTransfer::blockDownloadSegment(const QByteArray &payload)
{
    // The acknowledge of the last segment may be missing in the trace.
    if (m_isLast && readSdoBlockDownloadEnd(payload))
        return blockDownloadEnd(payload);
    takeBlockSegment(payload);
    return SdoStep::BlockDownloadSegment;
}

SdoStep FollowedTransfer::blockDownloadAcknowledge(const QByteArray &payload)
{
    if (isSdoBlockDownloadEndResponse(payload)) {
        breakWith(SdoTransfer::LostSegment); // the server has what the trace has not
        return blockDownloadEndAnswer(payload);
    }
    const std::optional<SdoBlockAcknowledge> acknowledged = readSdoBlockDownloadAcknowledge(payload);
    if (!acknowledged)
        return SdoStep::Stray;
    acknowledge(*acknowledged, Phase::BlockDownloadEndTurn, Phase::BlockDownloadSegments);
    return SdoStep::BlockDownloadAcknowledge;
}

SdoStep FollowedTransfer::blockDownloadEnd(const QByteArray &payload)
{
    const std::optional<SdoBlockEnd> end = readSdoBlockDownloadEnd(payload);
    if (!end)
        return SdoStep::Stray;
    endBlocks(*end);
    m_phase = Phase::BlockDownloadEndAsked;
    return SdoStep::BlockDownloadEnd;
}

SdoStep FollowedTransfer::blockDownloadEndAnswer(const QByteArray &payload)
{
    if (!isSdoBlockDownloadEndResponse(payload))
        return SdoStep::Stray;
    complete();
    return SdoStep::BlockDownloadEndAnswer;
}
