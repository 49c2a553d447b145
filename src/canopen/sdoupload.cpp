// SPDX-License-Identifier: MIT
#include "sdoupload.h"

#include <algorithm>
#include <utility>

namespace CanOpen {

namespace {

// A server of small values may answer a block request with them at once.
constexpr quint8 protocolSwitchThreshold = sdoExpeditedSize; // bytes

// Other values that read as an abort are numbers of last segments of a block.

} // namespace

void SdoUpload::Step::send(QByteArray payload)
{
    if (frameCount < static_cast<int>(frames.size()))
        frames[static_cast<std::size_t>(frameCount++)] = std::move(payload);
}

SdoUpload::Step SdoUpload::start(ObjectKey key, DataType type, int repeats, SdoProtocol protocol)
{
    leaveTransfer();
    m_outcome = SdoOutcome();
    m_outcome.key = key;
    m_type = type;
    m_typeSize = byteSize(type);
    m_repeats = repeats;
    m_attempt = 0;
    m_restarts = 0;
    m_isAnswered = false;
    m_protocol = m_knowsNoBlocks ? SdoProtocol::Plain : protocol;
    m_readings.start(m_memory);
    m_quietWaits = 0;
    m_state = State::AwaitingForeign;
    return handleForeignEnd();
}

SdoUpload::Step SdoUpload::handleResponse(const QByteArray &payload)
{
    const bool isSegment = sdoResponseOf(payload) == SdoResponse::UploadSegment;
    m_isForForeign = m_foreign.isUnderWay() && (!isSegment || m_isForeignSegmentAsked);
    m_foreign.handleResponse(payload);
    m_memory.noteFrame(payload);
    if (isSegment)
        m_isForeignSegmentAsked = false;
    switch (m_state) {
    case State::Idle:
    case State::Quiet:
    case State::Listening:
        noteStray(payload);
        return {};
    case State::AwaitingForeign:
        noteStray(payload);
        return handleForeignEnd();
    case State::Block:
        return payload.startsWith(static_cast<char>(sdoAbortCommand)) ? handleAbort(payload)
                                                                      : handleBlockFrame(payload);
    default:
        break;
    }

    switch (sdoResponseOf(payload)) {
    case SdoResponse::InitiateUpload:
        return handleInitiateResponse(payload);
    case SdoResponse::UploadSegment:
        return handleSegment(payload);
    case SdoResponse::Abort:
        return handleAbort(payload);
    case SdoResponse::BlockUpload:
        return handleBlockInitiateResponse(payload);
    default:
        return {}; // answers to another client's downloads
    }
}

SdoUpload::Step SdoUpload::handleForeignRequest(const QByteArray &payload)
{
    m_foreign.handleRequest(payload);
    const SdoRequest request = sdoRequestOf(payload);
    if (request == SdoRequest::BlockUpload || (request == SdoRequest::UploadSegment && m_memory.isTroubled()))
        m_memory.noteOpenRequest();
    m_isForeignSegmentAsked = m_isForeignSegmentAsked || request == SdoRequest::UploadSegment;
    if (m_state == State::Idle || m_state == State::Quiet || m_state == State::Listening)
        return {};
    if (m_state == State::AwaitingForeign)
        return handleForeignEnd();

    if (request == SdoRequest::Reserved)
        return {};
    const bool writesOurObject
        = request == SdoRequest::InitiateDownload && sdoKeyOf(payload) == m_outcome.key;
    if (isInTransfer() || writesOurObject || request == SdoRequest::BlockUpload
        || request == SdoRequest::BlockDownload)
        return restart();

    // An initiate request is answered with its own multiplexer, so an abort with ours is still ours.
    const bool isInitiate = request == SdoRequest::InitiateUpload || request == SdoRequest::InitiateDownload;
    m_disturbance
        = std::max(m_disturbance, isInitiate ? Disturbance::TransferLost : Disturbance::AbortUnclear);
    return {};
}

SdoUpload::Step SdoUpload::timeOver()
{
    switch (m_state) {
    case State::Idle:
        return {};
    case State::AwaitingForeign:
        // The other client has gone, or a frame of its transfer was lost.
        m_foreign.reset();
        return initiate();
    case State::Quiet:
        return awaitClearLine();
    case State::Listening:
        if (m_memory.hasBabbledSince(m_readings.begunAt()))
            return awaitClearLine();
        return finishValue(m_readings.data());
    case State::Block:
        m_memory.noteTrouble();
        return doNextOfBlock(m_block.timeOver());
    case State::InitiatingBlock:
        m_protocol = SdoProtocol::Plain;
        break;
    case State::Segments:
        if (m_segments.isLastRepeated())
            return abortAndFail(SdoAbort::ToggleBitNotAlternated);
        break;
    case State::Initiating:
        break;
    }
    m_memory.noteTrouble();
    if (m_attempt >= m_repeats)
        return endInSilence();
    ++m_attempt;
    ++m_outcome.repeats;
    return startAfresh();
}

SdoUpload::Step SdoUpload::giveUp()
{
    switch (m_state) {
    case State::Idle:
        return {};
    case State::AwaitingForeign:
        return fail(SdoAbort::ResourceNotAvailable);
    case State::Quiet:
    case State::Listening:
        return failMixedUp();
    default:
        break;
    }
    // A server that is still sending is not silent.
    return isInTransfer() && m_attempt == 0 ? abortAndFail(SdoAbort::GeneralError) : endInSilence();
}

// A server that has begun a transfer in the last attempt as well is not silent: it may answer for other objects.
SdoUpload::Step SdoUpload::endInSilence()
{
    const bool isStuck = isInTransfer();
    Step step = isStuck ? fail(SdoAbort::ProtocolTimedOut) : finish(SdoOutcome::Kind::Timeout, 0);
    sendTimeOutAbort(&step);
    return step;
}

SdoUpload::Step SdoUpload::cancel()
{
    const bool mayBeOpen
        = isInTransfer() || m_state == State::Initiating || m_state == State::InitiatingBlock;
    Step step = finish(SdoOutcome::Kind::Cancelled, 0);
    if (mayBeOpen && !m_foreign.isUnderWay())
        step.send(makeSdoAbort(m_outcome.key, static_cast<quint32>(SdoAbort::GeneralError)));
    return step;
}

void SdoUpload::forget()
{
    leaveTransfer();
    m_state = State::Idle;
}

// Segments that were asked for may still come.
void SdoUpload::leaveTransfer()
{
    if (isInTransfer())
        m_memory.noteOpenRequest();
    m_readings.interrupt();
}

SdoUpload::Step SdoUpload::startAfresh()
{
    leaveTransfer();
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
    m_disturbance = Disturbance::None;
    Step step;
    if (m_protocol == SdoProtocol::Block) {
        m_state = State::InitiatingBlock;
        step.send(makeSdoBlockInitiateRequest(
            {m_outcome.key, true, BlockReception::blockSize, protocolSwitchThreshold}));
    } else {
        m_state = State::Initiating;
        step.send(makeSdoInitiateUploadRequest(m_outcome.key));
    }
    step.waitRestarts = true;
    return step;
}

// Starts anew because of another client, as soon as that one has finished.
SdoUpload::Step SdoUpload::restart()
{
    // Without trouble the answer to our last request comes before that to the next one.
    m_isAnswerOwed = m_state == State::Segments;
    if (m_isAnswerOwed && !m_memory.isTroubled())
        m_state = State::AwaitingForeign;
    leaveTransfer();
    m_outcome.foreignClient = true;
    if (++m_restarts > maximumRestarts)
        return fail(SdoAbort::ResourceNotAvailable);
    m_state = State::AwaitingForeign;
    return handleForeignEnd();
}

SdoUpload::Step SdoUpload::handleForeignEnd()
{
    if (!m_foreign.isUnderWay() || m_foreign.isAbandoning())
        return initiate();
    m_outcome.foreignClient = true;
    Step step;
    step.waitRestarts = true; // the other transfer makes progress
    return step;
}

SdoUpload::Step SdoUpload::awaitClearLine()
{
    const qint64 wait = m_memory.timeUntilClear();
    if (wait <= 0) {
        m_state = State::AwaitingForeign;
        return handleForeignEnd();
    }
    if (++m_quietWaits > maximumQuietWaits)
        return failMixedUp();
    m_state = State::Quiet;
    Step step;
    step.waitRestarts = true;
    step.wait = wait;
    return step;
}

SdoUpload::Step SdoUpload::listen()
{
    m_state = State::Listening;
    Step step;
    step.waitRestarts = true;
    step.wait = m_memory.timeUntilGone();
    return step;
}

// A frame that nobody waits for: late, doubled, or from a node that babbles.
void SdoUpload::noteStray(const QByteArray &payload)
{
    const bool isSegment = sdoResponseOf(payload) == SdoResponse::UploadSegment;
    const bool endsOurs
        = m_isAnswerOwed && !m_isForForeign && (isSegment || sdoResponseOf(payload) == SdoResponse::Abort);
    if (endsOurs)
        m_isAnswerOwed = false;
    else if (!m_isForForeign)
        m_memory.noteUnasked();
    if (isSegment && (m_isForForeign || endsOurs))
        m_memory.note(payload, SegmentMemory::strayOrigin, 0);
    else if (isSegment)
        m_memory.noteStray(payload);
}

// Whether what was asked for before could get into a reading that begins now.
bool SdoUpload::mustWait() const
{
    if (m_memory.timeUntilClosed() > 0)
        return true;
    return m_memory.isTroubled() && !m_readings.isContinuing() && m_memory.timeUntilClear() > 0;
}

// The server has a transfer for us, and the line is not ready for it.
SdoUpload::Step SdoUpload::waitBeforeTransfer()
{
    Step step = awaitClearLine();
    step.send(makeSdoAbort(m_outcome.key, static_cast<quint32>(SdoAbort::GeneralError)));
    return step;
}

SdoUpload::Step SdoUpload::handleAbort(const QByteArray &payload)
{
    if (sdoKeyOf(payload) != m_outcome.key) {
        noteStray(payload);
        return {};
    }
    if (m_disturbance == Disturbance::AbortUnclear)
        return restart();
    const quint32 code = sdoAbortCodeOf(payload);
    m_isAnswered = true;
    if (m_state == State::InitiatingBlock || m_state == State::Block)
        return readPlainInstead(code);
    if (isAboutTheTransfer(code) && m_memory.isTroubled() && ++m_restarts <= maximumRestarts) {
        leaveTransfer();
        return awaitClearLine();
    }
    if (!m_memory.isTroubled())
        m_state = State::Initiating; // nothing is open any more
    return finish(SdoOutcome::Kind::Abort, code);
}

SdoUpload::Step SdoUpload::finishReading(std::optional<ReadingCheck::Verdict> verdict)
{
    m_attempt = 0;
    if (!verdict)
        return failMixedUp();
    switch (*verdict) {
    case ReadingCheck::Verdict::Believe:
        m_state = State::Initiating; // nothing is open any more
        return finishValue(m_readings.data());
    case ReadingCheck::Verdict::ReadAgain:
        m_state = State::AwaitingForeign;
        return handleForeignEnd();
    case ReadingCheck::Verdict::ReadWhenClear:
        return awaitClearLine();
    case ReadingCheck::Verdict::Listen:
        return listen();
    }
    return {};
}

SdoUpload::Step SdoUpload::finishValue(const QByteArray &bytes)
{
    if (m_typeSize > 0 && bytes.size() > m_typeSize)
        return fail(SdoAbort::LengthTooHigh);
    if (m_typeSize > 0 && bytes.size() < m_typeSize)
        return fail(SdoAbort::LengthTooLow);
    std::optional<QVariant> value = decodeValue(m_type, bytes);
    if (!value)
        return fail(SdoAbort::LengthMismatch);
    m_outcome.value = std::move(*value);
    m_outcome.raw = bytes;
    return finish(SdoOutcome::Kind::Value, 0);
}

SdoUpload::Step SdoUpload::finish(SdoOutcome::Kind kind, quint32 code)
{
    leaveTransfer();
    m_outcome.kind = kind;
    m_outcome.code = code;
    m_state = State::Idle;
    m_readings.clearData();
    m_segments.clear();
    Step step;
    step.finished = true;
    return step;
}

SdoUpload::Step SdoUpload::fail(SdoAbort code)
{
    return finish(SdoOutcome::Kind::Error, static_cast<quint32>(code));
}

SdoUpload::Step SdoUpload::failMixedUp()
{
    m_outcome.isMixedUp = true;
    return fail(SdoAbort::GeneralError);
}

SdoUpload::Step SdoUpload::abortAndFail(SdoAbort code)
{
    Step step = fail(code);
    step.send(makeSdoAbort(m_outcome.key, static_cast<quint32>(code)));
    return step;
}

// The frames of this reading do not fit together: the device's fault, or the line's.
SdoUpload::Step SdoUpload::rejectReading(SdoAbort code)
{
    if (!isDoubtful())
        return abortAndFail(code);
    m_memory.noteTrouble();
    leaveTransfer();
    Step step = awaitClearLine();
    step.send(makeSdoAbort(m_outcome.key, static_cast<quint32>(code)));
    return step;
}

bool SdoUpload::isInTransfer() const
{
    return m_state == State::Segments || m_state == State::Block;
}

bool SdoUpload::isDoubtful() const
{
    return m_readings.isKnown() || m_memory.isTroubled();
}

int SdoUpload::lengthLimit() const
{
    return m_typeSize > 0 ? m_typeSize : maximumLength;
}

} // namespace CanOpen
