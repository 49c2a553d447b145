// SPDX-License-Identifier: MIT
// The expedited and segmented protocols of SdoUpload.
#include "sdoupload.h"

#include <algorithm>
#include <utility>

namespace CanOpen {

namespace {

// From this size on (bytes), a block upload takes fewer frames although the transfer has begun already; a server that
// knows no blocks costs two frames, once.
constexpr int longObject = 28;

} // namespace

SdoUpload::Step SdoUpload::handleInitiateResponse(const QByteArray &payload)
{
    const std::optional<SdoInitiate> initiate = readSdoInitiateUploadResponse(payload);
    const bool segmentsHaveCome = m_state == State::Segments && !m_segments.isEmpty();
    if (!initiate || initiate->key != m_outcome.key || segmentsHaveCome) {
        noteStray(payload);
        return {};
    }
    m_isAnswered = true;
    if (initiate->expedited)
        return finishExpedited(*initiate);
    if (m_disturbance != Disturbance::None)
        return restart();
    return beginSegments(*initiate);
}

SdoUpload::Step SdoUpload::beginSegments(const SdoInitiate &initiate)
{
    const bool alreadyAsked = m_state == State::Segments;
    if (alreadyAsked)
        m_memory.noteUnasked();

    // The announced size is only ever compared: memory is taken for bytes that came.
    if (initiate.sizeIndicated && initiate.size > static_cast<quint32>(lengthLimit()))
        return abortAndFail(SdoAbort::LengthTooHigh);
    if (initiate.sizeIndicated && initiate.size < static_cast<quint32>(m_typeSize))
        return abortAndFail(SdoAbort::LengthTooLow);
    m_segments.begin(initiate, lengthLimit());
    if (m_protocol == SdoProtocol::BlockWhenLong && m_segments.announcedSize() >= longObject && !alreadyAsked)
        return readInBlocksInstead();

    const bool isOwed = std::exchange(m_isAnswerOwed, false);
    if (std::exchange(m_isForeignSegmentAsked, false) || isOwed)
        m_memory.noteOpenRequest();
    if (alreadyAsked) {
        Step step;
        step.waitRestarts = true;
        return step;
    }
    m_readings.begin(m_memory);
    if (mustWait())
        return waitBeforeTransfer();
    m_state = State::Segments;
    return askSegment();
}

// The server has begun to serve segments: it is told that they are not wanted.
SdoUpload::Step SdoUpload::readInBlocksInstead()
{
    m_protocol = SdoProtocol::Block;
    Step step;
    step.send(makeSdoAbort(m_outcome.key, static_cast<quint32>(SdoAbort::GeneralError)));
    step.send(initiate().frames[0]);
    step.waitRestarts = true;
    return step;
}

SdoUpload::Step SdoUpload::askSegment()
{
    m_memory.noteRequest();
    Step step;
    step.send(makeSdoUploadSegmentRequest(m_segments.toggle()));
    step.waitRestarts = true;
    return step;
}

SdoUpload::Step SdoUpload::handleSegment(const QByteArray &payload)
{
    const std::optional<SdoSegment> segment = readSdoUploadSegmentResponse(payload);
    if (m_state != State::Segments || !segment) {
        noteStray(payload);
        return {};
    }
    if (segment->toggle != m_segments.toggle())
        return handleWrongToggle(payload);

    m_readings.note(m_memory, payload);
    switch (m_segments.take(*segment, payload)) {
    case SegmentReception::Event::Ask:
        return askSegment();
    case SegmentReception::Event::Complete:
        return finishSegments();
    case SegmentReception::Event::TooLong:
        if (isDoubtful())
            return rejectReading(SdoAbort::LengthTooHigh);
        // After its last segment the server has no transfer any more that an abort could end.
        return segment->last ? fail(SdoAbort::LengthTooHigh) : abortAndFail(SdoAbort::LengthTooHigh);
    case SegmentReception::Event::Endless:
        break;
    }
    return abortAndFail(SdoAbort::GeneralError);
}

SdoUpload::Step SdoUpload::handleWrongToggle(const QByteArray &payload)
{
    // A segment that was seen before may be one that the bus has doubled. The right one then follows; if it does
    // not, it was the toggle bit after all.
    if (m_memory.knows(payload)) {
        m_readings.noteCopy(m_memory, payload);
        m_segments.noteOther(payload);
        // Or a later one with the same content, which the server has sent for a doubled request: then one is
        // missing, and only the size of the whole would tell.
        if (!m_segments.isSizeAnnounced() && m_typeSize == 0)
            m_readings.noteGap();
        return {};
    }
    m_memory.note(payload, SegmentMemory::strayOrigin, 0);
    return rejectReading(SdoAbort::ToggleBitNotAlternated);
}

SdoUpload::Step SdoUpload::finishExpedited(const SdoInitiate &initiate)
{
    int size = initiate.data.size;
    // Without an indicated size the data type says how many of the four bytes count.
    if (!initiate.sizeIndicated && m_typeSize > 0)
        size = std::min(size, m_typeSize);
    m_outcome.isSizeUnknown = !initiate.sizeIndicated && m_typeSize == 0;
    return finishValue(QByteArray(initiate.data.bytes.data(), size));
}

SdoUpload::Step SdoUpload::finishSegments()
{
    const int expected = std::max(m_segments.announcedSize(), m_typeSize);
    if (m_segments.data().size() < expected && isDoubtful())
        return rejectReading(SdoAbort::LengthTooLow);
    if (m_segments.data().size() < expected) {
        m_state = State::Initiating; // nothing is open any more
        return fail(SdoAbort::LengthTooLow);
    }
    return finishReading(m_readings.judgeSegments(m_memory, m_segments.data(), m_segments.segments()));
}

} // namespace CanOpen
