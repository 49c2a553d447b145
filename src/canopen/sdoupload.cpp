// SPDX-License-Identifier: MIT
#include "sdoupload.h"

#include <algorithm>
#include <utility>

namespace CanOpen {

void SdoUpload::Step::send(QByteArray payload)
{
    if (frameCount < static_cast<int>(frames.size()))
        frames[static_cast<std::size_t>(frameCount++)] = std::move(payload);
}

SdoUpload::Step SdoUpload::start(ObjectKey key, DataType type, int repeats)
{
    m_outcome.key = key;
    m_outcome.value.clear();
    m_outcome.code = 0;
    m_outcome.repeats = 0;
    m_type = type;
    m_typeSize = byteSize(type);
    m_repeats = repeats;
    m_restarts = 0;
    m_answered = false;
    m_state = State::AwaitingForeign;
    return takeForeignEnd();
}

SdoUpload::Step SdoUpload::takeResponse(const QByteArray &payload)
{
    m_foreign.takeResponse(payload);
    if (m_state == State::Idle)
        return {};
    if (m_state == State::AwaitingForeign)
        return takeForeignEnd();

    switch (sdoResponseOf(payload)) {
    case SdoResponse::InitiateUpload:
        return takeInitiateResponse(payload);
    case SdoResponse::UploadSegment:
        return takeSegment(payload);
    case SdoResponse::Abort:
        return takeAbort(payload);
    default:
        return {}; // answers to another client's downloads and block transfers
    }
}

SdoUpload::Step SdoUpload::takeForeignRequest(const QByteArray &payload)
{
    m_foreign.takeRequest(payload);
    if (m_state == State::Idle)
        return {};
    if (m_state == State::AwaitingForeign)
        return takeForeignEnd();

    const SdoRequest request = sdoRequestOf(payload);
    if (request == SdoRequest::Reserved)
        return {};
    const bool writesOurObject
        = request == SdoRequest::InitiateDownload && sdoKeyOf(payload) == m_outcome.key;
    if (m_state == State::Segments || m_state == State::Settling || writesOurObject
        || request == SdoRequest::BlockUpload || request == SdoRequest::BlockDownload)
        return restart();

    // An initiate request is answered with its own multiplexer, so an abort with ours is still ours.
    const bool isInitiate = request == SdoRequest::InitiateUpload || request == SdoRequest::InitiateDownload;
    m_disturbance
        = std::max(m_disturbance, isInitiate ? Disturbance::TransferLost : Disturbance::AbortUnclear);
    return {};
}

SdoUpload::Step SdoUpload::timeOver()
{
    if (m_state == State::Idle)
        return {};
    if (m_state == State::AwaitingForeign) {
        // The other client has gone, or a frame of its transfer was lost.
        m_foreign.reset();
        return initiate();
    }
    if (m_state == State::Settling) {
        // The segment that was owed has got lost, or is very late.
        m_segmentOwed = false;
        m_needsSecondReading = true;
        return beginSegments(m_settling);
    }
    if (m_state == State::Segments && m_segmentRepeated)
        return abortAndFail(SdoAbort::ToggleBitNotAlternated);
    if (m_outcome.repeats >= m_repeats)
        return giveUp();

    ++m_outcome.repeats;
    return startAfresh();
}

SdoUpload::Step SdoUpload::giveUp()
{
    if (m_state == State::Idle)
        return {};
    if (m_state == State::AwaitingForeign)
        return fail(SdoAbort::ResourceNotAvailable);
    noteOwedSegment();
    Step step = finish(SdoOutcome::Kind::Timeout, 0);
    sendTimeOutAbort(&step);
    return step;
}

void SdoUpload::forget()
{
    noteOwedSegment();
    m_state = State::Idle;
}

// In the segmented phase there is always one segment request without its answer.
void SdoUpload::noteOwedSegment()
{
    m_segmentOwed = m_segmentOwed || m_state == State::Segments;
}

SdoUpload::Step SdoUpload::startAfresh()
{
    noteOwedSegment();
    Step step;
    sendTimeOutAbort(&step);
    step.send(initiate().frames[0]);
    step.waitRestarts = true;
    return step;
}

// The server may be in the middle of the transfer and would refuse the next one. Another client's transfer,
// though, is not ours to end.
void SdoUpload::sendTimeOutAbort(Step *step)
{
    if (!m_foreign.isUnderWay())
        step->send(makeSdoAbort(m_outcome.key, static_cast<quint32>(SdoAbort::ProtocolTimedOut)));
    m_foreign.reset();
}

SdoUpload::Step SdoUpload::initiate()
{
    m_state = State::Initiating;
    m_disturbance = Disturbance::None;
    m_needsSecondReading = false;
    Step step;
    step.send(makeSdoInitiateUploadRequest(m_outcome.key));
    step.waitRestarts = true;
    return step;
}

// Starts anew because of another client, as soon as that one has finished.
SdoUpload::Step SdoUpload::restart()
{
    if (++m_restarts > maximumRestarts)
        return fail(SdoAbort::ResourceNotAvailable);
    m_state = State::AwaitingForeign;
    return takeForeignEnd();
}

SdoUpload::Step SdoUpload::takeForeignEnd()
{
    if (!m_foreign.isUnderWay())
        return initiate();
    Step step;
    step.waitRestarts = true; // the other transfer makes progress
    return step;
}

SdoUpload::Step SdoUpload::takeInitiateResponse(const QByteArray &payload)
{
    const std::optional<SdoInitiate> initiate = readSdoInitiateUploadResponse(payload);
    if (!initiate || initiate->key != m_outcome.key)
        return {};

    // The server has read all our requests before it sends the first segment. An initiate response after that
    // says that the segments so far were an older transfer's.
    const bool segmentsHaveCome = m_state == State::Segments && !m_lastSegment.isEmpty();
    if (segmentsHaveCome)
        return ++m_restarts > maximumRestarts ? abortAndFail(SdoAbort::GeneralError) : startAfresh();

    m_answered = true;
    if (initiate->expedited) {
        noteOwedSegment();
        return finishExpedited(*initiate);
    }
    if (m_disturbance != Disturbance::None)
        return restart();
    return m_segmentOwed ? settle(*initiate) : beginSegments(*initiate);
}

SdoUpload::Step SdoUpload::settle(const SdoInitiate &initiate)
{
    m_state = State::Settling;
    m_settling = initiate;
    Step step;
    step.waitRestarts = true;
    return step;
}

SdoUpload::Step SdoUpload::beginSegments(const SdoInitiate &initiate)
{
    const bool alreadyAsked = m_state == State::Segments;
    m_state = State::Segments;
    m_data.clear();
    m_lastSegment.clear();
    m_emptySegments = 0;
    m_toggle = false;
    m_segmentRepeated = false;
    m_sizeAnnounced = initiate.sizeIndicated;

    // The announced size is only ever compared: memory is taken for bytes that came.
    if (m_sizeAnnounced && initiate.size > static_cast<quint32>(lengthLimit()))
        return abortAndFail(SdoAbort::LengthTooHigh);
    if (m_sizeAnnounced && initiate.size < static_cast<quint32>(m_typeSize))
        return abortAndFail(SdoAbort::LengthTooLow);
    m_announcedSize = static_cast<int>(initiate.size);

    Step step;
    if (!alreadyAsked)
        step.send(makeSdoUploadSegmentRequest(m_toggle));
    step.waitRestarts = true;
    return step;
}

SdoUpload::Step SdoUpload::takeSegment(const QByteArray &payload)
{
    if (m_state != State::Segments) {
        // All that is older than the segment that was owed has come.
        m_segmentOwed = false;
        if (m_state == State::Settling)
            m_state = State::Initiating;
        return {};
    }
    const std::optional<SdoSegment> segment = readSdoUploadSegmentResponse(payload);
    if (!segment)
        return {};
    if (segment->toggle != m_toggle)
        return takeWrongToggle(payload);

    const int limit = m_sizeAnnounced ? m_announcedSize : lengthLimit();
    m_emptySegments = segment->data.size == 0 ? m_emptySegments + 1 : 0;
    if (m_data.size() + segment->data.size > limit) {
        // After its last segment the server has no transfer any more that an abort could end.
        return segment->last ? fail(SdoAbort::LengthTooHigh) : abortAndFail(SdoAbort::LengthTooHigh);
    }
    if (m_emptySegments > maximumEmptySegments)
        return abortAndFail(SdoAbort::GeneralError);

    m_data.append(segment->data.bytes.data(), segment->data.size);
    m_lastSegment = payload;
    m_segmentRepeated = false;
    if (segment->last)
        return finishSegments();

    m_toggle = !m_toggle;
    Step step;
    step.send(makeSdoUploadSegmentRequest(m_toggle));
    step.waitRestarts = true;
    return step;
}

SdoUpload::Step SdoUpload::takeWrongToggle(const QByteArray &payload)
{
    // The same frame again may be one that the bus has doubled. The right one then follows; if it does not,
    // it was the toggle bit after all.
    if (payload == m_lastSegment) {
        m_segmentRepeated = true;
        return {};
    }
    return abortAndFail(SdoAbort::ToggleBitNotAlternated);
}

SdoUpload::Step SdoUpload::takeAbort(const QByteArray &payload)
{
    if (sdoKeyOf(payload) != m_outcome.key)
        return {};
    if (m_disturbance == Disturbance::AbortUnclear)
        return restart();
    m_answered = true;
    return finish(SdoOutcome::Kind::Abort, sdoAbortCodeOf(payload));
}

SdoUpload::Step SdoUpload::finishExpedited(const SdoInitiate &initiate)
{
    int size = initiate.data.size;
    // Without an indicated size the data type says how many of the four bytes count.
    if (!initiate.sizeIndicated && m_typeSize > 0)
        size = std::min(size, m_typeSize);
    return finishValue(initiate.data.bytes.data(), size);
}

SdoUpload::Step SdoUpload::finishSegments()
{
    // With the answer to our last request everything older has come, so the next reading cannot be mixed up.
    if (m_needsSecondReading)
        return initiate();
    if (m_sizeAnnounced && m_data.size() < m_announcedSize)
        return fail(SdoAbort::LengthTooLow);
    return finishValue(m_data.constData(), m_data.size());
}

SdoUpload::Step SdoUpload::finishValue(const char *data, int size)
{
    if (m_typeSize > 0 && size > m_typeSize)
        return fail(SdoAbort::LengthTooHigh);
    if (m_typeSize > 0 && size < m_typeSize)
        return fail(SdoAbort::LengthTooLow);
    std::optional<QVariant> value = decodeValue(m_type, data, size);
    if (!value)
        return fail(SdoAbort::LengthMismatch);
    m_outcome.value = std::move(*value);
    return finish(SdoOutcome::Kind::Value, 0);
}

SdoUpload::Step SdoUpload::finish(SdoOutcome::Kind kind, quint32 code)
{
    m_outcome.kind = kind;
    m_outcome.code = code;
    m_state = State::Idle;
    m_data.clear();
    m_lastSegment.clear();
    Step step;
    step.finished = true;
    return step;
}

SdoUpload::Step SdoUpload::fail(SdoAbort code)
{
    return finish(SdoOutcome::Kind::Error, static_cast<quint32>(code));
}

SdoUpload::Step SdoUpload::abortAndFail(SdoAbort code)
{
    Step step = fail(code);
    step.send(makeSdoAbort(m_outcome.key, static_cast<quint32>(code)));
    return step;
}

int SdoUpload::lengthLimit() const
{
    return m_typeSize > 0 ? m_typeSize : maximumLength;
}

} // namespace CanOpen
