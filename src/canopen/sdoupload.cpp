// SPDX-License-Identifier: MIT
#include "sdoupload.h"

#include <algorithm>
#include <utility>

namespace CanOpen {

namespace {

// A server of small values may answer a block request with them at once.
constexpr quint8 protocolSwitchThreshold = sdoExpeditedSize; // bytes

// From this size on (bytes), a block upload takes fewer frames although the transfer has begun already; a server that
// knows no blocks costs two frames, once.
constexpr int longObject = 28;

// Other values that read as an abort are numbers of last segments of a block.
constexpr char abortCommand = '\x80';

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
    m_check.reset();
    m_origin = m_memory.newOrigin();
    m_readings = 0;
    m_quietWaits = 0;
    m_isContinuing = false;
    m_runBegan = -1;
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
        return payload.startsWith(abortCommand) ? handleAbort(payload) : handleBlockFrame(payload);
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
        if (m_memory.hasBabbledSince(m_readingBegan))
            return awaitClearLine();
        return finishValue(m_reading.data.constData(), m_reading.data.size());
    case State::Block:
        m_memory.noteTrouble();
        return doNextOfBlock(m_block.timeOver());
    case State::InitiatingBlock:
        m_protocol = SdoProtocol::Plain;
        break;
    case State::Segments:
        if (m_isSegmentRepeated)
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

SdoUpload::Step SdoUpload::endInSilence()
{
    Step step = finish(SdoOutcome::Kind::Timeout, 0);
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
    m_isContinuing = false;
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

SdoUpload::Step SdoUpload::handleInitiateResponse(const QByteArray &payload)
{
    const std::optional<SdoInitiate> initiate = readSdoInitiateUploadResponse(payload);
    const bool segmentsHaveCome = m_state == State::Segments && !m_lastSegment.isEmpty();
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
    m_lastSegment.clear();
    m_emptySegments = 0;
    m_toggle = false;
    m_isSegmentRepeated = false;
    m_reading.data.clear();
    m_isSizeAnnounced = initiate.sizeIndicated;

    // The announced size is only ever compared: memory is taken for bytes that came.
    if (m_isSizeAnnounced && initiate.size > static_cast<quint32>(lengthLimit()))
        return abortAndFail(SdoAbort::LengthTooHigh);
    if (m_isSizeAnnounced && initiate.size < static_cast<quint32>(m_typeSize))
        return abortAndFail(SdoAbort::LengthTooLow);
    m_announcedSize = static_cast<int>(initiate.size);
    if (m_protocol == SdoProtocol::BlockWhenLong && m_isSizeAnnounced && m_announcedSize >= longObject
        && !alreadyAsked)
        return readInBlocksInstead();

    const bool isOwed = std::exchange(m_isAnswerOwed, false);
    if (std::exchange(m_isForeignSegmentAsked, false) || isOwed)
        m_memory.noteOpenRequest();
    if (!alreadyAsked)
        beginReading();
    if (!alreadyAsked && mustWait()) {
        Step step = awaitClearLine();
        step.send(makeSdoAbort(m_outcome.key, static_cast<quint32>(SdoAbort::GeneralError)));
        return step;
    }

    m_state = State::Segments;
    if (alreadyAsked) {
        Step step;
        step.waitRestarts = true;
        return step;
    }
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
    step.send(makeSdoUploadSegmentRequest(m_toggle));
    step.waitRestarts = true;
    return step;
}

// Whether what was asked for before could get into a reading that begins now.
bool SdoUpload::mustWait() const
{
    if (m_memory.timeUntilClosed() > 0)
        return true;
    return m_memory.isTroubled() && !m_isContinuing && m_memory.timeUntilClear() > 0;
}

void SdoUpload::beginReading()
{
    m_reading = ReadingCheck::Reading();
    m_hasBabble = false;
    m_reading.begunClear = m_memory.timeUntilClear() <= 0;
    m_begunAlone = m_memory.timeUntilGone() <= 0;
    m_readingBegan = m_memory.time();
}

SdoUpload::Step SdoUpload::handleSegment(const QByteArray &payload)
{
    const std::optional<SdoSegment> segment = readSdoUploadSegmentResponse(payload);
    if (m_state != State::Segments || !segment) {
        noteStray(payload);
        return {};
    }
    if (segment->toggle != m_toggle)
        return handleWrongToggle(payload);

    noteSighting(m_memory.note(payload, m_origin, static_cast<quint32>(m_readings)));
    const int limit = m_isSizeAnnounced ? m_announcedSize : lengthLimit();
    m_emptySegments = segment->data.size == 0 ? m_emptySegments + 1 : 0;
    if (m_reading.data.size() + segment->data.size > limit) {
        if (isDoubtful())
            return rejectReading(SdoAbort::LengthTooHigh);
        // After its last segment the server has no transfer any more that an abort could end.
        return segment->last ? fail(SdoAbort::LengthTooHigh) : abortAndFail(SdoAbort::LengthTooHigh);
    }
    if (m_emptySegments > maximumEmptySegments)
        return abortAndFail(SdoAbort::GeneralError);

    m_reading.data.append(segment->data.bytes.data(), segment->data.size);
    ++m_reading.segments;
    m_lastSegment = payload;
    m_isSegmentRepeated = false;
    if (segment->last)
        return finishSegments();

    m_toggle = !m_toggle;
    return askSegment();
}

void SdoUpload::noteSighting(SegmentMemory::Sighting sighting)
{
    m_reading.isKnown = m_reading.isKnown || sighting.isKnown;
    m_reading.isRepeating = m_reading.isRepeating || sighting.isRepeated;
    m_hasBabble = m_hasBabble || sighting.isBabble;
}

SdoUpload::Step SdoUpload::handleWrongToggle(const QByteArray &payload)
{
    // A segment that was seen before may be one that the bus has doubled. The right one then follows; if it does
    // not, it was the toggle bit after all.
    if (m_memory.knows(payload)) {
        m_memory.note(payload, m_origin, static_cast<quint32>(m_readings));
        m_memory.noteUnasked();
        m_isSegmentRepeated = payload == m_lastSegment;
        // Or a later one with the same content, which the server has sent for a doubled request: then one is
        // missing, and only the size of the whole would tell.
        m_reading.isRepeating = m_reading.isRepeating || (!m_isSizeAnnounced && m_typeSize == 0);
        return {};
    }
    m_memory.note(payload, SegmentMemory::strayOrigin, 0);
    return rejectReading(SdoAbort::ToggleBitNotAlternated);
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

SdoUpload::Step SdoUpload::handleBlockInitiateResponse(const QByteArray &payload)
{
    const std::optional<SdoBlockInitiateResponse> response = readSdoBlockInitiateResponse(payload);
    if (m_state != State::InitiatingBlock || !response || response->key != m_outcome.key)
        return {}; // answers to another client
    m_isAnswered = true;
    if (m_disturbance != Disturbance::None)
        return restart();
    if (mustWait()) {
        Step step = awaitClearLine();
        step.send(makeSdoAbort(m_outcome.key, static_cast<quint32>(SdoAbort::GeneralError)));
        return step;
    }
    m_state = State::Block;
    beginReading();
    m_block.begin(*response, lengthLimit());
    m_memory.noteRequest();
    Step step;
    step.send(makeSdoBlockStart());
    step.waitRestarts = true;
    return step;
}

SdoUpload::Step SdoUpload::handleBlockFrame(const QByteArray &payload)
{
    noteSighting(m_memory.note(payload, m_origin, static_cast<quint32>(m_readings)));
    return doNextOfBlock(m_block.take(payload));
}

SdoUpload::Step SdoUpload::doNextOfBlock(BlockReception::Event event)
{
    Step step;
    switch (event) {
    case BlockReception::Event::Nothing:
        step.waitRestarts = true;
        break;
    case BlockReception::Event::Ignored:
        m_memory.noteUnasked();
        break;
    case BlockReception::Event::Acknowledge:
        m_memory.noteRequest();
        step.send(m_block.acknowledge());
        step.waitRestarts = true;
        break;
    case BlockReception::Event::Complete: {
        m_reading.hasCrc = m_block.hasCrc();
        m_reading.isRepeating = false; // the segments are numbered
        m_reading.segments = 2;
        step = finishReading(m_block.data());
        // The end is confirmed before anything else is asked.
        std::swap(step.frames[0], step.frames[1]);
        step.frames[0] = makeSdoBlockEndResponse();
        ++step.frameCount;
        break;
    }
    case BlockReception::Event::Failed:
        return readPlainInstead(static_cast<quint32>(m_block.failure()));
    }
    return step;
}

// Whatever it was: the plain protocol says it better, or works.
SdoUpload::Step SdoUpload::readPlainInstead(quint32 code)
{
    m_protocol = SdoProtocol::Plain;
    if (m_state == State::InitiatingBlock) {
        m_knowsNoBlocks = code == static_cast<quint32>(SdoAbort::CommandSpecifierUnknown);
        return initiate();
    }
    m_memory.noteTrouble();
    leaveTransfer();
    Step step = awaitClearLine();
    step.send(makeSdoAbort(m_outcome.key, code));
    return step;
}

SdoUpload::Step SdoUpload::finishExpedited(const SdoInitiate &initiate)
{
    int size = initiate.data.size;
    // Without an indicated size the data type says how many of the four bytes count.
    if (!initiate.sizeIndicated && m_typeSize > 0)
        size = std::min(size, m_typeSize);
    m_outcome.isSizeUnknown = !initiate.sizeIndicated && m_typeSize == 0;
    return finishValue(initiate.data.bytes.data(), size);
}

SdoUpload::Step SdoUpload::finishSegments()
{
    const int expected = std::max(m_isSizeAnnounced ? m_announcedSize : 0, m_typeSize);
    if (m_reading.data.size() < expected && isDoubtful())
        return rejectReading(SdoAbort::LengthTooLow);
    if (m_reading.data.size() < expected) {
        m_state = State::Initiating; // nothing is open any more
        return fail(SdoAbort::LengthTooLow);
    }
    return finishReading(m_reading.data);
}

SdoUpload::Step SdoUpload::finishReading(const QByteArray &data)
{
    m_reading.data = data;
    m_attempt = 0;
    if (++m_readings > maximumReadings)
        return failMixedUp();
    // On a line that was clear only a node that babbles can have sent what is known from elsewhere.
    const bool isTroubled = m_memory.isTroubled();
    const bool mayBeBabble
        = m_hasBabble || m_memory.hasBabbledSince(m_runBegan < 0 ? m_readingBegan : m_runBegan);
    m_reading.isBabble = m_reading.isKnown && isTroubled && mayBeBabble;
    if (m_memory.isLate()) {
        m_reading.isKnown = false;
        m_reading.begunClear = m_begunAlone;
    }
    // What was read before the trouble, or before it grew, was read with less care.
    const int trouble = isTroubled + m_memory.isLate();
    if (trouble > m_runTrouble)
        m_check.breakOff();
    const ReadingCheck::Verdict verdict = m_check.take(m_reading, isTroubled, m_memory.isBabbling());
    if (m_check.isFirst()) {
        m_runBegan = m_readingBegan;
        m_runTrouble = trouble;
    }
    m_isContinuing = verdict == ReadingCheck::Verdict::ReadAgain;
    switch (verdict) {
    case ReadingCheck::Verdict::Believe:
        m_state = State::Initiating; // nothing is open any more
        return finishValue(data.constData(), data.size());
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
    m_outcome.raw = QByteArray(data, size);
    return finish(SdoOutcome::Kind::Value, 0);
}

SdoUpload::Step SdoUpload::finish(SdoOutcome::Kind kind, quint32 code)
{
    leaveTransfer();
    m_outcome.kind = kind;
    m_outcome.code = code;
    m_state = State::Idle;
    m_reading.data.clear();
    m_lastSegment.clear();
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
    return m_reading.isKnown || m_memory.isTroubled();
}

int SdoUpload::lengthLimit() const
{
    return m_typeSize > 0 ? m_typeSize : maximumLength;
}

} // namespace CanOpen
