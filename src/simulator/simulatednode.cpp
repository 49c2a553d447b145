// SPDX-License-Identifier: MIT
#include "simulatednode.h"

#include "wire.h"

#include <canopen/cobid.h>
#include <canopen/heartbeat.h>
#include <canopen/sdoframe.h>

#include <algorithm>

namespace Simulator {

namespace {

using CanOpen::NmtCommand;
using CanOpen::NmtState;
using CanOpen::ObjectKey;
using CanOpen::SdoRequest;
using CanOpen::SdoResponse;

constexpr ObjectKey heartbeatTimeObject{0x1017, 0};
constexpr quint16 firstCommunicationObject = 0x1000;
constexpr quint16 lastCommunicationObject = 0x1FFF;

constexpr qint64 microsecondsPerMillisecond = 1000;
constexpr qint64 microsecondsPerSecond = 1000000;

// Byte 0 of SDO answers
constexpr quint8 toggleBit = 0x10;
constexpr quint8 segmentLastBit = 0x01;
constexpr quint8 sizeIndicatedBit = 0x01;
constexpr quint8 expeditedBit = 0x02;

constexpr int longestForeignTransfer = 20; // segments

quint8 firstByte(const QByteArray &payload)
{
    return static_cast<quint8>(payload.at(0));
}

bool isInitiateAnswer(const QByteArray &payload)
{
    const SdoResponse response = CanOpen::sdoResponseOf(payload);
    return response == SdoResponse::InitiateUpload || response == SdoResponse::InitiateDownload;
}

bool isSegmentAnswer(const QByteArray &payload)
{
    const SdoResponse response = CanOpen::sdoResponseOf(payload);
    return response == SdoResponse::UploadSegment || response == SdoResponse::DownloadSegment;
}

} // namespace

SimulatedNode::SimulatedNode(const NodeDescription &description, int bitRate, Agenda *agenda, Clock clock,
                             Sender sender)
    : m_description(description)
    , m_bitRate(bitRate)
    , m_agenda(agenda)
    , m_clock(std::move(clock))
    , m_sender(std::move(sender))
    , m_dictionary(description.dictionary)
    , m_server(description.id, &m_dictionary)
    , m_foreignServer(description.id, &m_dictionary)
    , m_faults(description.faults)
    , m_random(description.id)
{
    if (m_description.heartbeatMs)
        m_description.dictionary.setValue(heartbeatTimeObject, uint(*m_description.heartbeatMs));
}

SimulatedNode::~SimulatedNode()
{
    stop();
}

// ---------------------------------------------------------------------- life and NMT

void SimulatedNode::start()
{
    stop();
    m_dictionary = m_description.dictionary;
    m_startTime = m_clock();
    m_framesSent = 0;
    m_requests = 0;
    m_isRunning = true;
    boot();
    for (const Fault &fault : qAsConst(m_faults))
        startJob(fault);
}

void SimulatedNode::stop()
{
    m_isRunning = false;
    ++m_session;
    m_agenda->cancelPeriodic(m_heartbeatJob);
    m_heartbeatJob = 0;
    for (const quint64 job : qAsConst(m_jobs))
        m_agenda->cancelPeriodic(job);
    m_jobs.clear();
}

void SimulatedNode::boot()
{
    ++m_session;
    m_server.reset();
    m_isHalfOpen = false;
    m_lateAnswers.clear();
    m_state = NmtState::BootUp;
    if (m_description.bootUp && findFault(FaultKind::NoBootUp) == nullptr)
        transmit(CanOpen::makeHeartbeatFrame({id(), NmtState::BootUp}));
    enterFirstState();
    m_heartbeatTime = m_description.heartbeatMs.value_or(0);
    if (m_dictionary.find(heartbeatTimeObject) != nullptr)
        m_heartbeatTime = static_cast<quint16>(m_dictionary.value(heartbeatTimeObject).toUInt());
    scheduleHeartbeat();
}

void SimulatedNode::enterFirstState()
{
    m_state = findFault(FaultKind::Stopped) != nullptr ? NmtState::Stopped : m_description.state;
}

void SimulatedNode::restoreDictionary(quint16 firstIndex, quint16 lastIndex)
{
    const QVector<ObjectKey> keys = m_description.dictionary.keys();
    for (const ObjectKey key : keys) {
        if (key.index >= firstIndex && key.index <= lastIndex)
            m_dictionary.insert(key, *m_description.dictionary.find(key));
    }
}

void SimulatedNode::handleNmt(NmtCommand command)
{
    if (!m_isRunning)
        return;
    switch (command) {
    case NmtCommand::Start:
        m_state = NmtState::Operational;
        break;
    case NmtCommand::Stop:
        m_state = NmtState::Stopped;
        m_server.reset();
        break;
    case NmtCommand::EnterPreOperational:
        m_state = NmtState::PreOperational;
        break;
    case NmtCommand::ResetNode:
        m_dictionary = m_description.dictionary;
        boot();
        break;
    case NmtCommand::ResetCommunication:
        restoreDictionary(firstCommunicationObject, lastCommunicationObject);
        boot();
        break;
    }
}

// ---------------------------------------------------------------------- sending

void SimulatedNode::transmit(const QCanBusFrame &frame)
{
    if (!m_isRunning || findFault(FaultKind::Silent) != nullptr)
        return;
    ++m_framesSent;
    const Fault *drop = findFault(FaultKind::DropFrames);
    if (drop != nullptr && m_framesSent % drop->every == 0)
        return;
    m_sender(frame);
}

void SimulatedNode::transmit(const Frames &frames)
{
    for (const QCanBusFrame &frame : frames)
        transmit(frame);
}

// ---------------------------------------------------------------------- heartbeat

void SimulatedNode::scheduleHeartbeat()
{
    m_agenda->cancelPeriodic(m_heartbeatJob);
    m_heartbeatJob = 0;
    if (m_heartbeatTime == 0)
        return;
    const qint64 period = m_heartbeatTime * microsecondsPerMillisecond;
    m_heartbeatJob = m_agenda->addPeriodic(m_clock() + period, period, [this] { sendHeartbeat(); });
}

void SimulatedNode::sendHeartbeat()
{
    if (findFault(FaultKind::NoHeartbeat) == nullptr)
        transmit(heartbeatFrame());
}

QCanBusFrame SimulatedNode::heartbeatFrame() const
{
    QCanBusFrame frame = CanOpen::makeHeartbeatFrame({id(), m_state});
    QByteArray payload = frame.payload();
    if (findFault(FaultKind::HeartbeatTopBit) != nullptr)
        payload[0] = static_cast<char>(firstByte(payload) | 0x80);
    if (const Fault *fault = findFault(FaultKind::HeartbeatLength)) {
        payload.append(QByteArray(8, '\0'));
        payload.truncate(static_cast<int>(fault->length));
    }
    frame.setPayload(payload);
    if (findFault(FaultKind::HeartbeatRemote) != nullptr)
        frame.setFrameType(QCanBusFrame::RemoteRequestFrame);
    return frame;
}

void SimulatedNode::followHeartbeatTime()
{
    const auto time = static_cast<quint16>(m_dictionary.value(heartbeatTimeObject).toUInt());
    if (time == m_heartbeatTime)
        return;
    m_heartbeatTime = time;
    scheduleHeartbeat();
}

// ---------------------------------------------------------------------- SDO

const Fault *SimulatedNode::findFault(FaultKind kind) const
{
    for (const Fault &fault : m_faults) {
        if (fault.kind == kind)
            return &fault;
    }
    return nullptr;
}

const Fault *SimulatedNode::findSdoFault(FaultKind kind) const
{
    for (const Fault &fault : m_faults) {
        if (fault.kind == kind && (!fault.object || *fault.object == m_object))
            return &fault;
    }
    return nullptr;
}

void SimulatedNode::handleSdo(const QCanBusFrame &frame)
{
    if (!m_isRunning || m_state == NmtState::Stopped || !CanOpen::isSdoFrame(frame))
        return;
    const QByteArray payload = frame.payload();
    const SdoRequest request = CanOpen::sdoRequestOf(payload);
    if (request == SdoRequest::Abort) {
        m_isHalfOpen = false;
        m_server.handleFrame(frame);
        return;
    }

    const bool initiates = request == SdoRequest::InitiateUpload || request == SdoRequest::InitiateDownload
                           || (request == SdoRequest::BlockUpload
                               && CanOpen::sdoBlockUploadOf(payload) == CanOpen::SdoBlockUpload::Initiate);
    if (initiates) {
        m_object = CanOpen::sdoKeyOf(payload);
        m_segments = 0;
        refreshValue(m_object);
    } else {
        ++m_segments;
    }

    m_server.setSegmented(findSdoFault(FaultKind::Segmented) != nullptr);
    if (m_faults.isEmpty())
        transmit(m_server.handleFrame(frame));
    else
        sendAnswers(answers(frame, initiates));
    if (request == SdoRequest::InitiateDownload || request == SdoRequest::DownloadSegment)
        followHeartbeatTime();
}

void SimulatedNode::refreshValue(ObjectKey key)
{
    for (const Behaviour &behaviour : qAsConst(m_description.behaviours)) {
        if (behaviour.object != key)
            continue;
        const CanOpen::ObjectEntry *entry = m_dictionary.find(key);
        if (entry == nullptr)
            return;
        if (const std::optional<QByteArray> data = behaviourData(behaviour, *entry, m_clock() - m_startTime))
            m_dictionary.setData(key, *data);
        return;
    }
}

QCanBusFrame SimulatedNode::abortFrame(quint32 code) const
{
    return QCanBusFrame(CanOpen::sdoResponseCobId(id()), CanOpen::makeSdoAbort(m_object, code));
}

SimulatedNode::Frames SimulatedNode::answers(const QCanBusFrame &request, bool initiates)
{
    ++m_requests;
    if (m_isHalfOpen)
        return {abortFrame(static_cast<quint32>(CanOpen::SdoAbort::CommandSpecifierUnknown))};
    const Fault *halfOpen = findSdoFault(FaultKind::HalfOpen);
    if (halfOpen != nullptr && m_requests == halfOpen->from) {
        m_isHalfOpen = true;
        return {};
    }
    const Fault *silent = findSdoFault(FaultKind::SdoSilent);
    if (silent != nullptr && m_requests >= silent->from)
        return {};
    const Fault *refusal = findSdoFault(FaultKind::SdoAbort);
    if (refusal != nullptr && initiates) {
        m_server.reset();
        return {abortFrame(static_cast<quint32>(refusal->code))};
    }
    const Fault *abortion = findSdoFault(FaultKind::AbortMidTransfer);
    if (abortion != nullptr && !initiates && m_segments > abortion->afterSegments) {
        m_server.reset();
        return {abortFrame(static_cast<quint32>(abortion->code))};
    }
    Frames frames = serverAnswers(request, initiates);
    // The segments of a block have no command specifier that could be told from data.
    const bool isBlock = CanOpen::sdoRequestOf(request.payload()) == SdoRequest::BlockUpload;
    if (!isBlock || initiates)
        distort(frames);
    return frames;
}

SimulatedNode::Frames SimulatedNode::serverAnswers(const QCanBusFrame &request, bool initiates)
{
    const Fault *width = findSdoFault(FaultKind::WrongWidth);
    const CanOpen::ObjectEntry *entry = m_dictionary.find(m_object);
    if (width == nullptr || entry == nullptr || !initiates
        || CanOpen::sdoRequestOf(request.payload()) == SdoRequest::InitiateDownload)
        return m_server.handleFrame(request);

    // The server takes the value as the transfer begins; behind it the dictionary has the right one again.
    const QByteArray right = entry->data;
    QByteArray wrong = right;
    wrong.append(QByteArray(static_cast<int>(width->bytes), '\0'));
    wrong.truncate(static_cast<int>(width->bytes));
    m_dictionary.setData(m_object, wrong);
    const Frames frames = m_server.handleFrame(request);
    m_dictionary.setData(m_object, right);
    return frames;
}

void SimulatedNode::distort(Frames &frames) const
{
    const Fault *toggle = findSdoFault(FaultKind::WrongToggle);
    const Fault *multiplexer = findSdoFault(FaultKind::WrongMultiplexer);
    const Fault *size = findSdoFault(FaultKind::SizeBits);
    for (QCanBusFrame &frame : frames) {
        QByteArray payload = frame.payload();
        if (toggle != nullptr && isSegmentAnswer(payload)
            && (toggle->segment == 0 || toggle->segment == m_segments))
            payload[0] = static_cast<char>(firstByte(payload) ^ toggleBit);
        if (multiplexer != nullptr && isInitiateAnswer(payload))
            payload[1] = static_cast<char>(payload.at(1) + 1);
        if (size != nullptr)
            distortSize(*size, payload);
        frame.setPayload(payload);
    }
}

void SimulatedNode::distortSize(const Fault &fault, QByteArray &payload) const
{
    quint8 command = firstByte(payload);
    const auto setBit = [&command](qint64 value, quint8 bit) {
        if (value >= 0)
            command = static_cast<quint8>(value == 0 ? command & ~bit : command | bit);
    };
    switch (CanOpen::sdoResponseOf(payload)) {
    case SdoResponse::InitiateUpload:
        if (fault.size >= 0 && (command & expeditedBit) == 0) {
            for (int byte = 0; byte < 4; ++byte)
                payload[4 + byte] = static_cast<char>(fault.size >> (8 * byte) & 0xFF);
        }
        setBit(fault.expedited, expeditedBit);
        setBit(fault.sizeIndicated, sizeIndicatedBit);
        if (fault.unused >= 0)
            command = static_cast<quint8>((command & ~0x0C) | fault.unused << 2);
        break;
    case SdoResponse::UploadSegment:
        if (fault.lastUnused >= 0 && (command & segmentLastBit) != 0)
            command = static_cast<quint8>((command & ~0x0E) | fault.lastUnused << 1);
        break;
    default:
        break;
    }
    payload[0] = static_cast<char>(command);
}

void SimulatedNode::sendAnswers(Frames frames)
{
    if (const Fault *repeated = findSdoFault(FaultKind::DoubleAnswers)) {
        Frames more;
        for (const QCanBusFrame &frame : qAsConst(frames)) {
            for (qint64 copy = 0; copy < repeated->count; ++copy)
                more.append(frame);
        }
        frames.swap(more);
    }
    const Fault *foreign = findFault(FaultKind::ForeignClient);
    if (foreign != nullptr && m_requests % foreign->every == 0)
        frames = foreignTransfer() + frames;

    Frames due;
    due.swap(m_lateAnswers);
    const Fault *late = findSdoFault(FaultKind::LateAnswers);
    if (late != nullptr && m_requests % late->every == 0)
        m_lateAnswers = frames;
    else
        due += frames;

    const Fault *delay = findSdoFault(FaultKind::SdoDelay);
    if (delay == nullptr || delay->ms == 0) {
        transmit(due);
        return;
    }
    m_agenda->add(m_clock() + delay->ms * microsecondsPerMillisecond, [this, due, session = m_session] {
        if (session == m_session)
            transmit(due);
    });
}

ObjectKey SimulatedNode::foreignObject(const Fault &fault)
{
    if (fault.object)
        return *fault.object;
    // Every fourth transfer is one that the server refuses; the others walk through the dictionary.
    constexpr int refusedEvery = 4;
    const int number = m_foreignTransfers++;
    const QVector<ObjectKey> keys = m_dictionary.keys();
    if (keys.isEmpty() || number % refusedEvery == refusedEvery - 1)
        return ObjectKey{0x5FFF, 0x7F};
    ObjectKey key = keys.at(number % keys.size());
    if (key == m_object)
        key = keys.at((number + 1) % keys.size());
    return key;
}

SimulatedNode::Frames SimulatedNode::foreignTransfer()
{
    const ObjectKey key = foreignObject(*findFault(FaultKind::ForeignClient));
    const quint32 requestId = CanOpen::sdoRequestCobId(id());
    Frames frames;
    m_foreignServer.reset();
    QCanBusFrame request(requestId, CanOpen::makeSdoInitiateUploadRequest(key));
    bool toggle = false;
    for (int segment = 0; segment <= longestForeignTransfer; ++segment) {
        frames.append(request);
        const Frames answer = m_foreignServer.handleFrame(request);
        frames += answer;
        if (answer.isEmpty())
            break;
        const QByteArray payload = answer.last().payload();
        const bool isSegmented = CanOpen::sdoResponseOf(payload) == SdoResponse::InitiateUpload
                                 && (firstByte(payload) & expeditedBit) == 0;
        const bool hasMore = CanOpen::sdoResponseOf(payload) == SdoResponse::UploadSegment
                             && (firstByte(payload) & segmentLastBit) == 0;
        if (!isSegmented && !hasMore)
            break;
        request = QCanBusFrame(requestId, CanOpen::makeSdoUploadSegmentRequest(toggle));
        toggle = !toggle;
    }
    return frames;
}

// ---------------------------------------------------------------------- faults

void SimulatedNode::addFault(const Fault &fault)
{
    m_faults.append(fault);
    m_requests = 0;
    if (!m_isRunning)
        return;
    if (fault.kind == FaultKind::Stopped)
        m_state = NmtState::Stopped;
    startJob(fault);
}

void SimulatedNode::removeFaults(FaultKind kind)
{
    const auto isOfKind = [kind](const Fault &fault) { return fault.kind == kind; };
    m_faults.erase(std::remove_if(m_faults.begin(), m_faults.end(), isOfKind), m_faults.end());
    m_requests = 0;
    if (kind == FaultKind::HalfOpen)
        m_isHalfOpen = false;
    if (kind == FaultKind::LateAnswers)
        m_lateAnswers.clear();
    if (kind == FaultKind::Stopped && m_isRunning && m_state == NmtState::Stopped)
        enterFirstState();
    for (const quint64 job : qAsConst(m_jobs))
        m_agenda->cancelPeriodic(job);
    m_jobs.clear();
    if (!m_isRunning)
        return;
    for (const Fault &fault : qAsConst(m_faults))
        startJob(fault);
}

void SimulatedNode::clearFaults()
{
    while (!m_faults.isEmpty())
        removeFaults(m_faults.first().kind);
}

void SimulatedNode::startJob(const Fault &fault)
{
    qint64 period = 0;
    Agenda::Action action;
    switch (fault.kind) {
    case FaultKind::BabbleHeartbeat:
        period = fault.intervalMs * microsecondsPerMillisecond;
        action = [this] { sendHeartbeat(); };
        break;
    case FaultKind::BabbleSdo:
        period = microsecondsPerSecond / fault.perSecond;
        action = [this] { sendBabble(); };
        break;
    case FaultKind::Traffic: {
        // The frames' lengths vary; five bytes stand for their mean.
        constexpr int meanLength = 5;
        const qint64 bits = frameBits(QCanBusFrame(0, QByteArray(meanLength, '\0')));
        period = bits * microsecondsPerSecond * 100 / (m_bitRate * fault.percent);
        action = [this] { sendTraffic(); };
        break;
    }
    default:
        return;
    }
    m_jobs.append(m_agenda->addPeriodic(m_clock() + period, period, std::move(action)));
}

void SimulatedNode::sendBabble()
{
    QByteArray payload(CanOpen::sdoFrameSize, '\0');
    for (char &byte : payload)
        byte = static_cast<char>(m_random() >> 8 & 0xFF);
    // An index that no object has: an invented value under a right key would be no babble but a lie.
    payload[2] = static_cast<char>(0x20 | (payload.at(2) & 0x0F));
    transmit(QCanBusFrame(CanOpen::sdoResponseCobId(id()), payload));
}

void SimulatedNode::sendTraffic()
{
    constexpr quint32 emergencyBase = 0x080;
    constexpr quint32 pdoBases[] = {0x180, 0x280, 0x380, 0x480}; // of the four predefined transmit PDOs
    const quint32 choice = static_cast<quint32>(m_random() >> 8 & 0x0F);
    if (choice == 0) {
        transmit(heartbeatFrame());
        return;
    }
    const bool isEmergency = choice == 1;
    QByteArray payload(isEmergency ? 8 : static_cast<int>(2 + (m_random() >> 8) % 7), '\0');
    for (char &byte : payload)
        byte = static_cast<char>(m_random() >> 8 & 0xFF);
    const quint32 base = isEmergency ? emergencyBase : pdoBases[choice % 4];
    transmit(QCanBusFrame(base + id(), payload));
}

} // namespace Simulator
