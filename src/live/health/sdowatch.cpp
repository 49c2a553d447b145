// SPDX-License-Identifier: MIT
#include "sdowatch.h"

#include <canopen/sdoabort.h>
#include <canopen/sdoframe.h>

using namespace CanOpen;

namespace {

constexpr quint8 blockDownloadEnd = 0xA1;

/*! Of an answer: whether more of a block download follows. */
bool isBlockDownload(const LiveFrame &frame)
{
    return sdoResponseOf(frame.payload) == SdoResponse::BlockDownload && frame.byteAt(0) != blockDownloadEnd;
}

} // namespace

bool isAbsence(quint32 abortCode)
{
    return abortCode == static_cast<quint32>(SdoAbort::ObjectDoesNotExist)
           || abortCode == static_cast<quint32>(SdoAbort::SubIndexDoesNotExist);
}

void SdoWatch::handleRequest(const LiveFrame &frame)
{
    if (frame.payload.size() != sdoFrameSize || frame.isRemote)
        return;
    ++m_requests;
    m_foreignRequests += frame.source == FrameSource::Others ? 1 : 0;
    if (frame.byteAt(0) == sdoAbortCommand) {
        m_unanswered += m_asked ? 1 : 0;
        noteAbort(frame);
    } else if (!goesOnInBlocks(frame)) {
        m_unanswered += m_asked ? 1 : 0;
        m_asked = m_blocks == Blocks::None;
        m_askedAt = frame.time;
    }
}

/*! Follows a block transfer by what its client sends. Whether \a frame belongs to one that waits for no answer of its own. */
bool SdoWatch::goesOnInBlocks(const LiveFrame &frame)
{
    const bool isUnderWay = m_blocks != Blocks::None && frame.time - m_blocksAt < longestWait;
    if (isUnderWay && m_blocks == Blocks::Download)
        return true; // segments may begin with any byte, so a request of another transfer looks like one
    m_blocksAt = frame.time;
    const bool isUpload = sdoRequestOf(frame.payload) == SdoRequest::BlockUpload;
    const SdoBlockUpload step = sdoBlockUploadOf(frame.payload);
    const bool isStart = isUpload && step == SdoBlockUpload::Start;
    const bool isAcknowledge = isUpload && step == SdoBlockUpload::Acknowledge;
    m_blocks = isStart || (isUnderWay && isAcknowledge) ? Blocks::Upload : Blocks::None;
    return m_blocks != Blocks::None || (isUpload && step == SdoBlockUpload::EndResponse);
}

void SdoWatch::handleAnswer(const LiveFrame &frame)
{
    if (frame.payload.size() != sdoFrameSize || frame.isRemote)
        return;
    if (m_asked)
        noteTime(frame.time - m_askedAt);
    m_asked = false;
    m_blocksAt = frame.time;
    if (frame.byteAt(0) == sdoAbortCommand)
        noteAbort(frame);
    else if (m_blocks != Blocks::Upload)
        m_blocks = isBlockDownload(frame) ? Blocks::Download : Blocks::None;
}

void SdoWatch::noteTime(qint64 time)
{
    if (time <= longestWait) // a stamp may be a little older than the request, whose time is not the driver's
        m_times.add(static_cast<qint32>(std::max<qint64>(0, time)));
    else
        ++m_unanswered;
}

void SdoWatch::noteAbort(const LiveFrame &frame)
{
    m_asked = false;
    m_blocks = Blocks::None;
    ++m_aborts;
    m_refusals += isAbsence(sdoAbortCodeOf(frame.payload)) ? 0 : 1;
}

quint64 SdoWatch::unanswered(qint64 now) const
{
    return m_unanswered + (m_asked && now - m_askedAt > longestWait ? 1 : 0);
}
