// SPDX-License-Identifier: MIT
#include "followedtransfer.h"

#include "sdotransfers.h"

#include <canopen/sdoabort.h>
#include <canopen/sdoblockdownload.h>

using namespace CanOpen;

namespace {

constexpr ObjectKey noObject{0, 0};

} // namespace

FollowedTransfer::Heard::Heard(const TraceFrame &heard, std::size_t place)
    : frame(heard)
    , position(place)
    , payload(QByteArray::fromRawData(reinterpret_cast<const char *>(heard.bytes.data()), sdoFrameSize))
{
}

std::optional<SdoStep> FollowedTransfer::beginning(const Heard &heard)
{
    switch (sdoRequestOf(heard.payload)) {
    case SdoRequest::InitiateUpload:
        return SdoStep::UploadRequest;
    case SdoRequest::InitiateDownload:
        return SdoStep::DownloadRequest;
    case SdoRequest::BlockUpload:
        if (readSdoBlockInitiateRequest(heard.payload))
            return SdoStep::BlockUploadRequest;
        break;
    case SdoRequest::BlockDownload:
        if (readSdoBlockDownloadRequest(heard.payload))
            return SdoStep::BlockDownloadRequest;
        break;
    default:
        break;
    }
    return std::nullopt;
}

FollowedTransfer::FollowedTransfer(const Heard &heard, quint32 number, quint8 nodeId)
{
    m_transfer.number = number;
    m_transfer.channel = heard.frame.channel;
    m_transfer.nodeId = nodeId;
    m_transfer.object = sdoKeyOf(heard.payload);
    m_transfer.isSent = heard.frame.isSent();
    m_transfer.begin = m_transfer.end = heard.frame.time;
    m_transfer.firstFrame = m_transfer.lastFrame = heard.position;
    m_transfer.frames = 1;
    switch (sdoRequestOf(heard.payload)) {
    case SdoRequest::InitiateDownload:
        beginDownload(heard.payload);
        break;
    case SdoRequest::BlockUpload:
        beginBlockUpload(heard.payload);
        break;
    case SdoRequest::BlockDownload:
        beginBlockDownload(heard.payload);
        break;
    default:
        m_phase = Phase::UploadAsked;
    }
}

void FollowedTransfer::beginDownload(const QByteArray &payload)
{
    m_transfer.isUpload = false;
    m_phase = Phase::DownloadAsked;
    const std::optional<SdoInitiate> initiate = readSdoInitiateDownloadRequest(payload);
    if (!initiate)
        return;
    if (initiate->expedited) {
        append(initiate->data);
        m_transfer.isSizeUnknown = !initiate->sizeIndicated;
        m_isLast = true;
    } else {
        m_transfer.protocol = SdoTransfer::Protocol::Segmented;
        announce(initiate->sizeIndicated, initiate->size);
    }
}

bool FollowedTransfer::isBlockSegment(const Heard &heard) const
{
    if (m_phase != Phase::BlockDownloadSegments || !hasSegmentsOnly(heard.payload))
        return false;
    const std::optional<SdoBlockSegment> segment = readSdoBlockSegment(heard.payload);
    const int ahead = segment ? segment->sequenceNumber - m_lastHeard : 0;
    return ahead == 1 || (ahead > 1 && isBehindGap(heard, segment->sequenceNumber));
}

/*! Whether it is a segment behind others that the trace has not: its client goes on at once, and is not done. */
bool FollowedTransfer::isBehindGap(const Heard &heard, int sequenceNumber) const
{
    constexpr qint64 longestPause = 100'000; // us
    const bool isPlainRead
        = heard.payload
          == makeSdoInitiateUploadRequest(sdoKeyOf(heard.payload)); // which data seldom looks like
    return !isPlainRead && !m_isLast && sequenceNumber <= m_blockSize
           && heard.frame.isSent() == m_transfer.isSent && heard.frame.time - m_transfer.end <= longestPause;
}

bool FollowedTransfer::isInitiating() const
{
    return m_phase == Phase::UploadAsked || m_phase == Phase::DownloadAsked
           || m_phase == Phase::BlockUploadAsked || m_phase == Phase::BlockDownloadAsked;
}

bool FollowedTransfer::waitsForServer() const
{
    switch (m_phase) {
    case Phase::UploadSegmentAsked:
    case Phase::DownloadSegmentAsked:
    case Phase::BlockUploadSegments:
    case Phase::BlockUploadEnd:
    case Phase::BlockDownloadEndAsked:
        return true;
    case Phase::BlockDownloadSegments:
        return m_isLast || m_lastHeard >= m_blockSize;
    default:
        return isInitiating();
    }
}

/*! Whether the frames of the side that sends may begin with any byte, but for an abort: its segments have no command. */
bool FollowedTransfer::hasSegmentsOnly(const QByteArray &payload) const
{
    return (m_phase == Phase::BlockUploadSegments || m_phase == Phase::BlockDownloadSegments)
           && static_cast<quint8>(payload.at(0)) != sdoAbortCommand;
}

SdoStep FollowedTransfer::handleRequest(const Heard &heard)
{
    const SdoStep step = requestOf(heard.payload);
    if (step == SdoStep::Stray)
        return step;
    if (heard.frame.isSent() != m_transfer.isSent)
        note(SdoTransfer::ForeignClient);
    ++m_transfer.frames;
    m_transfer.end = heard.frame.time;
    m_transfer.lastFrame = heard.position;
    return step;
}

/*! Whether the last segment has come once more: its toggle bit is not that of the next one. */
bool FollowedTransfer::isCopy(const Heard &heard) const
{
    const bool isBetween = m_phase == Phase::UploadTurn || m_phase == Phase::UploadSegmentAsked;
    return isBetween && m_size > 0 && heard.frame.bytes == m_lastSegment.bytes;
}

SdoStep FollowedTransfer::handleAnswer(const Heard &heard)
{
    const bool isRepeated = isCopy(heard);
    const SdoStep step = isRepeated ? SdoStep::UploadSegment : answerOf(heard.payload);
    if (step == SdoStep::Stray)
        return step;
    if (isRepeated)
        note(SdoTransfer::Repeated);
    ++m_transfer.frames;
    m_transfer.end = heard.frame.time;
    m_transfer.lastFrame = heard.position;
    if (step == SdoStep::UploadSegment)
        m_lastSegment = heard.frame;
    return step;
}

SdoStep FollowedTransfer::requestOf(const QByteArray &payload)
{
    const bool isSegment = m_phase == Phase::BlockDownloadSegments && hasSegmentsOnly(payload);
    if (!isSegment && sdoRequestOf(payload) == SdoRequest::Abort)
        return clientAbort(payload);
    switch (m_phase) {
    case Phase::UploadTurn:
    case Phase::UploadSegmentAsked:
        return uploadSegmentRequest(payload);
    case Phase::DownloadTurn:
    case Phase::DownloadSegmentAsked:
        return downloadSegment(payload);
    case Phase::BlockUploadTurn:
    case Phase::BlockUploadSegments:
    case Phase::BlockUploadEnd:
    case Phase::BlockUploadEndTurn:
        return blockUploadRequest(payload);
    case Phase::BlockDownloadSegments:
        return blockDownloadSegment(payload);
    case Phase::BlockDownloadEndTurn:
        return blockDownloadEnd(payload);
    default:
        return SdoStep::Stray;
    }
}

SdoStep FollowedTransfer::answerOf(const QByteArray &payload)
{
    const bool isSegment = m_phase == Phase::BlockUploadSegments && hasSegmentsOnly(payload);
    if (!isSegment && sdoResponseOf(payload) == SdoResponse::Abort)
        return serverAbort(payload);
    switch (m_phase) {
    case Phase::UploadAsked:
        return uploadAnswer(payload);
    case Phase::UploadSegmentAsked:
        return uploadSegment(payload);
    case Phase::DownloadAsked:
        return downloadAnswer(payload);
    case Phase::DownloadSegmentAsked:
        return downloadSegmentAnswer(payload);
    case Phase::BlockUploadAsked:
        return blockUploadAnswer(payload);
    case Phase::BlockUploadSegments:
        return blockUploadSegment(payload);
    case Phase::BlockUploadEnd:
        return blockUploadEnd(payload);
    case Phase::BlockDownloadAsked:
        return blockDownloadAnswer(payload);
    case Phase::BlockDownloadSegments:
        return blockDownloadAcknowledge(payload);
    case Phase::BlockDownloadEndAsked:
        return blockDownloadEndAnswer(payload);
    default:
        return SdoStep::Stray;
    }
}

/*! Devices abort the middle of a transfer without its object as well, so only the beginning is told by it. */
bool FollowedTransfer::isOfThis(const QByteArray &abort) const
{
    const ObjectKey key = sdoKeyOf(abort);
    return key == m_transfer.object || key == noObject || !isInitiating();
}

void FollowedTransfer::abort(const QByteArray &payload, SdoTransfer::Outcome outcome)
{
    m_transfer.abortCode = sdoAbortCodeOf(payload);
    m_transfer.outcome = outcome;
    if (m_transfer.abortCode == static_cast<quint32>(SdoAbort::ToggleBitNotAlternated))
        note(SdoTransfer::WrongToggle);
    m_phase = Phase::Over;
}

SdoStep FollowedTransfer::clientAbort(const QByteArray &payload)
{
    if (!isOfThis(payload))
        return SdoStep::Stray;
    const bool isTimeOut = sdoAbortCodeOf(payload) == static_cast<quint32>(SdoAbort::ProtocolTimedOut);
    abort(payload, isTimeOut && waitsForServer() ? SdoTransfer::Outcome::NoAnswer
                                                 : SdoTransfer::Outcome::AbortedByClient);
    return SdoStep::ClientAbort;
}

SdoStep FollowedTransfer::serverAbort(const QByteArray &payload)
{
    if (!isOfThis(payload))
        return SdoStep::Stray;
    abort(payload, SdoTransfer::Outcome::AbortedByServer);
    return SdoStep::ServerAbort;
}

void FollowedTransfer::leave(bool isTimeOver)
{
    if (isOver())
        return;
    const bool isSilent = isTimeOver && waitsForServer();
    // An answer came, and was none that a client can take.
    const bool isBroken = isSilent && (m_isBroken || m_transfer.has(SdoTransfer::WrongToggle));
    m_transfer.outcome = isBroken   ? SdoTransfer::Outcome::Broken
                         : isSilent ? SdoTransfer::Outcome::NoAnswer
                                    : SdoTransfer::Outcome::Unfinished;
    m_phase = Phase::Over;
}

void FollowedTransfer::announce(bool isTold, quint32 size)
{
    if (isTold)
        m_announced = size;
}

void FollowedTransfer::append(const SdoChunk &chunk)
{
    m_size += chunk.size;
    if (m_size > SdoTransfers::mostData)
        note(SdoTransfer::Cut);
    else
        m_transfer.data.append(chunk.bytes.data(), chunk.size);
}

void FollowedTransfer::breakWith(SdoTransfer::Problem problem)
{
    note(problem);
    m_isBroken = true;
}

void FollowedTransfer::complete()
{
    if (m_announced && m_size != qint64(*m_announced))
        breakWith(SdoTransfer::SizeMismatch);
    m_transfer.outcome = m_isBroken ? SdoTransfer::Outcome::Broken : SdoTransfer::Outcome::Done;
    m_phase = Phase::Over;
}

SdoStep FollowedTransfer::uploadAnswer(const QByteArray &payload)
{
    const std::optional<SdoInitiate> answer = readSdoInitiateUploadResponse(payload);
    if (!answer || answer->key != m_transfer.object)
        return SdoStep::Stray;
    if (answer->expedited) {
        m_transfer.protocol = SdoTransfer::Protocol::Expedited;
        m_transfer.isSizeUnknown = !answer->sizeIndicated;
        append(answer->data);
        complete();
    } else {
        m_transfer.protocol = SdoTransfer::Protocol::Segmented;
        announce(answer->sizeIndicated, answer->size);
        m_phase = Phase::UploadTurn;
    }
    return SdoStep::UploadAnswer;
}

SdoStep FollowedTransfer::uploadSegmentRequest(const QByteArray &payload)
{
    if (sdoRequestOf(payload) != SdoRequest::UploadSegment)
        return SdoStep::Stray;
    const bool toggle = sdoToggleOf(payload);
    if (m_phase == Phase::UploadSegmentAsked) {
        if (toggle == m_toggle)
            note(SdoTransfer::Repeated);
        else
            breakWith(SdoTransfer::LostSegment); // the client has an answer that the trace has not
    } else if (toggle != m_toggle) {
        breakWith(SdoTransfer::WrongToggle);
    }
    m_toggle = toggle;
    m_phase = Phase::UploadSegmentAsked;
    return SdoStep::UploadSegmentRequest;
}

SdoStep FollowedTransfer::uploadSegment(const QByteArray &payload)
{
    const std::optional<SdoSegment> segment = readSdoUploadSegmentResponse(payload);
    if (!segment)
        return SdoStep::Stray;
    if (segment->toggle != m_toggle) { // perhaps a copy of the one before; the right one may still come
        note(SdoTransfer::WrongToggle);
        return SdoStep::UploadSegment;
    }
    append(segment->data);
    m_toggle = !m_toggle;
    m_phase = Phase::UploadTurn;
    if (segment->last)
        complete();
    return SdoStep::UploadSegment;
}

SdoStep FollowedTransfer::downloadAnswer(const QByteArray &payload)
{
    if (sdoResponseOf(payload) != SdoResponse::InitiateDownload || sdoKeyOf(payload) != m_transfer.object)
        return SdoStep::Stray;
    if (m_isLast)
        complete();
    else
        m_phase = Phase::DownloadTurn;
    return SdoStep::DownloadAnswer;
}

SdoStep FollowedTransfer::downloadSegment(const QByteArray &payload)
{
    const std::optional<SdoSegment> segment = readSdoDownloadSegmentRequest(payload);
    if (!segment)
        return SdoStep::Stray;
    const bool isAsked = m_phase == Phase::DownloadSegmentAsked;
    if (isAsked && segment->toggle == m_toggle) {
        note(SdoTransfer::Repeated);
        return SdoStep::DownloadSegment;
    }
    if (isAsked)
        note(SdoTransfer::LostSegment); // the answer to the one before is not in the trace
    else if (segment->toggle != m_toggle)
        breakWith(SdoTransfer::WrongToggle);
    append(segment->data);
    m_toggle = segment->toggle;
    m_isLast = segment->last;
    m_phase = Phase::DownloadSegmentAsked;
    return SdoStep::DownloadSegment;
}

SdoStep FollowedTransfer::downloadSegmentAnswer(const QByteArray &payload)
{
    if (sdoResponseOf(payload) != SdoResponse::DownloadSegment)
        return SdoStep::Stray;
    if (sdoToggleOf(payload) != m_toggle)
        breakWith(SdoTransfer::WrongToggle);
    m_toggle = !m_toggle;
    m_phase = Phase::DownloadTurn;
    if (m_isLast)
        complete();
    return SdoStep::DownloadSegmentAnswer;
}
