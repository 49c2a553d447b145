// SPDX-License-Identifier: MIT
#include "simulatednode.h"

#include "sdobits.h"

#include <canopen/heartbeat.h>
#include <canopen/sdoframe.h>
#include <canopen/sync.h>
#include <system/amounts.h>

#include <algorithm>

namespace Simulator {

namespace {

using CanOpen::NmtCommand;
using CanOpen::NmtState;
using CanOpen::ObjectKey;
using CanOpen::SdoRequest;

constexpr ObjectKey heartbeatTimeObject{0x1017, 0};
constexpr quint16 firstCommunicationObject = 0x1000;
constexpr quint16 lastCommunicationObject = 0x1FFF;

constexpr quint8 communicationError = 0x10; // of the error register

} // namespace

SimulatedNode::SimulatedNode(const NodeDescription &description, int bitRate, Agenda *agenda, Clock clock,
                             Sender sender)
    : m_description(description)
    , m_agenda(agenda)
    , m_clock(std::move(clock))
    , m_sender(std::move(sender))
    , m_dictionary(description.dictionary)
    , m_faults(description.faults)
    , m_server(description.id, &m_dictionary, &m_faults)
    , m_babble(description.id, bitRate, agenda, babbleActions())
    , m_context(makeContext())
    , m_pdoSender(&m_context)
    , m_emergencies(&m_context)
    , m_pdoReceiver(&m_context, [this](quint16 code) { m_emergencies.report(code, communicationError); })
    , m_syncProducer(&m_context, [this](const QCanBusFrame &sync) { handleProcessData(sync); })
    , m_emergencyOrders(&m_context, emergencyActions())
{
    if (m_description.heartbeatMs)
        m_description.dictionary.setValue(heartbeatTimeObject, uint(*m_description.heartbeatMs));
}

SimulatedNode::~SimulatedNode()
{
    stop();
}

NodeContext SimulatedNode::makeContext()
{
    NodeContext context;
    context.nodeId = id();
    context.dictionary = &m_dictionary;
    context.faults = &m_faults;
    context.agenda = m_agenda;
    context.clock = m_clock;
    context.send = [this](const QCanBusFrame &frame) { transmit(frame); };
    context.entry = [this](ObjectKey key) {
        refreshValue(key);
        return static_cast<const CanOpen::ObjectDictionary &>(m_dictionary).find(key);
    };
    context.isMoving = [this](ObjectKey key) {
        const auto moves = [key](const Behaviour &behaviour) { return behaviour.object == key; };
        return std::any_of(m_description.behaviours.cbegin(), m_description.behaviours.cend(), moves);
    };
    return context;
}

EmergencyOrders::Node SimulatedNode::emergencyActions()
{
    return {[this](const Faults::Emergency &fault) { raiseEmergency(fault); },
            [this](quint16 errorCode) { m_emergencies.clear(errorCode); }};
}

BabbleSource::Node SimulatedNode::babbleActions()
{
    BabbleSource::Node actions;
    actions.send = [this](const QCanBusFrame &frame) { transmit(frame); };
    actions.sendHeartbeat = [this] { sendHeartbeat(); };
    actions.heartbeat = [this] { return heartbeatFrame(); };
    actions.serveAbandoningClient
        = [this](const Faults::AbandoningClient &fault) { serveAbandoningClient(fault); };
    actions.restart = [this] { boot(); };
    return actions;
}

// ---------------------------------------------------------------------- life and NMT

void SimulatedNode::start()
{
    stop();
    m_dictionary = m_description.dictionary;
    m_startTime = m_clock();
    m_framesSent = 0;
    m_server.restartCount();
    m_isRunning = true;
    boot();
    m_babble.start(m_faults.all(), m_clock());
    m_emergencyOrders.start(m_faults.all());
}

void SimulatedNode::stop()
{
    m_isRunning = false;
    ++m_session;
    m_pdoSender.stop();
    m_pdoReceiver.stop();
    m_syncProducer.stop();
    m_emergencies.setSending(false);
    m_emergencyOrders.stop();
    m_agenda->cancelPeriodic(m_heartbeatJob);
    m_heartbeatJob = 0;
    m_babble.stop();
}

void SimulatedNode::boot()
{
    ++m_session;
    m_server.reset();
    enterState(NmtState::BootUp);
    m_emergencies.reset();
    if (m_description.bootUp && m_faults.find<Faults::NoBootUp>() == nullptr)
        transmit(CanOpen::makeHeartbeatFrame({id(), NmtState::BootUp}));
    enterFirstState();
    m_heartbeatTime = m_description.heartbeatMs.value_or(0);
    if (m_dictionary.find(heartbeatTimeObject) != nullptr)
        m_heartbeatTime = static_cast<quint16>(m_dictionary.value(heartbeatTimeObject).toUInt());
    scheduleHeartbeat();
    m_emergencyOrders.restart();
}

void SimulatedNode::enterFirstState()
{
    enterState(m_faults.find<Faults::Stopped>() != nullptr ? NmtState::Stopped : m_description.state);
}

/*! Services by state (CiA 301): PDOs in Operational only, SYNC and emergencies in Pre-operational too. */
void SimulatedNode::enterState(NmtState state)
{
    m_state = state;
    const bool isOperational = state == NmtState::Operational;
    const bool isActive = isOperational || state == NmtState::PreOperational;
    m_emergencies.setSending(isActive);
    m_syncParameter = CanOpen::readSyncParameter(m_context.lookup());
    if (isActive)
        m_syncProducer.start();
    else
        m_syncProducer.stop();
    if (isOperational) {
        m_pdoReceiver.start();
        m_pdoSender.start();
    } else {
        m_pdoReceiver.stop();
        m_pdoSender.stop();
    }
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
        enterState(NmtState::Operational);
        break;
    case NmtCommand::Stop:
        enterState(NmtState::Stopped);
        m_server.dropTransfer();
        break;
    case NmtCommand::EnterPreOperational:
        enterState(NmtState::PreOperational);
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

bool SimulatedNode::isSilent() const
{
    const auto *silent = m_faults.find<Faults::Silent>();
    return silent != nullptr && m_server.requests() >= silent->from;
}

void SimulatedNode::transmit(const QCanBusFrame &frame)
{
    if (!m_isRunning || isSilent())
        return;
    ++m_framesSent;
    const auto *drop = m_faults.find<Faults::DropFrames>();
    if (drop != nullptr && m_framesSent % drop->every == 0)
        return;
    m_sender(frame);
}

void SimulatedNode::transmitLater(const QCanBusFrame &frame, std::chrono::milliseconds delay)
{
    const qint64 due = m_clock() + delay.count() * Microseconds::ofMillisecond;
    m_agenda->add(due, [this, frame, session = m_session] {
        if (session == m_session)
            transmit(frame);
    });
}

// ---------------------------------------------------------------------- heartbeat

void SimulatedNode::scheduleHeartbeat()
{
    m_agenda->cancelPeriodic(m_heartbeatJob);
    m_heartbeatJob = 0;
    if (m_heartbeatTime == 0)
        return;
    const qint64 period = m_heartbeatTime * Microseconds::ofMillisecond;
    m_heartbeatJob = m_agenda->addPeriodic(m_clock() + period, period, [this] { sendHeartbeat(); });
}

void SimulatedNode::sendHeartbeat()
{
    if (m_faults.find<Faults::NoHeartbeat>() == nullptr)
        transmit(heartbeatFrame());
}

QCanBusFrame SimulatedNode::heartbeatFrame() const
{
    constexpr quint8 topBit = 0x80;
    QCanBusFrame frame = CanOpen::makeHeartbeatFrame({id(), m_state});
    QByteArray payload = frame.payload();
    if (m_faults.find<Faults::HeartbeatTopBit>() != nullptr)
        setFirstByte(payload, firstByte(payload) | topBit);
    if (const auto *fault = m_faults.find<Faults::HeartbeatLength>()) {
        payload.append(QByteArray(8, '\0'));
        payload.truncate(fault->length);
    }
    frame.setPayload(payload);
    if (m_faults.find<Faults::HeartbeatRemote>() != nullptr)
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

void SimulatedNode::handleSdo(const QCanBusFrame &frame)
{
    if (!m_isRunning || m_state == NmtState::Stopped || !CanOpen::isSdoFrame(frame))
        return;
    const QByteArray payload = frame.payload();
    if (const std::optional<ObjectKey> key = FaultySdoServer::objectBegun(payload))
        refreshValue(*key);
    const FaultySdoServer::Answers answers = m_server.handleRequest(frame);
    for (const FaultySdoServer::Answer &answer : answers) {
        if (answer.delay.count() == 0)
            transmit(answer.frame);
        else
            transmitLater(answer.frame, answer.delay);
    }
    const SdoRequest request = CanOpen::sdoRequestOf(payload);
    if (request == SdoRequest::InitiateDownload || request == SdoRequest::DownloadSegment)
        followDictionary();
}

/*! A client has written something. */
void SimulatedNode::followDictionary()
{
    followHeartbeatTime();
    m_emergencies.dictionaryWritten();
    m_pdoSender.parametersWritten();
    m_pdoReceiver.parametersWritten();
    m_syncParameter = CanOpen::readSyncParameter(m_context.lookup());
    if (m_state == NmtState::Operational || m_state == NmtState::PreOperational)
        m_syncProducer.start();
}

// ---------------------------------------------------------------------- process data and emergencies

void SimulatedNode::handleProcessData(const QCanBusFrame &frame)
{
    if (!m_isRunning || m_state != NmtState::Operational)
        return;
    bool isWritten = m_pdoReceiver.handleFrame(frame);
    if (CanOpen::isSyncFrame(m_syncParameter, frame)) {
        isWritten = m_pdoReceiver.handleSync() || isWritten;
        m_pdoSender.handleSync(CanOpen::syncCounterOf(frame));
    }
    if (isWritten)
        m_pdoSender.valuesWritten();
}

void SimulatedNode::raiseEmergency(const Faults::Emergency &fault)
{
    CanOpen::Emergency emergency;
    emergency.errorCode = static_cast<quint16>(fault.code);
    emergency.errorRegister = static_cast<quint8>(fault.errorRegister);
    const int last = static_cast<int>(emergency.manufacturer.size()) - 1;
    for (int i = 0; i <= last; ++i)
        emergency.manufacturer[static_cast<std::size_t>(i)]
            = static_cast<quint8>(fault.manufacturer >> (8 * (last - i)) & 0xFF);
    m_emergencies.announce(emergency);
    if (fault.preOperational && m_state == NmtState::Operational)
        enterState(NmtState::PreOperational);
}

void SimulatedNode::setSpeed(double speed)
{
    m_speed = speed;
    m_emergencyOrders.setSpeed(speed);
}

/*! Microseconds of the time that the values go by. */
qint64 SimulatedNode::valueTime() const
{
    return static_cast<qint64>(static_cast<double>(m_clock() - m_startTime) * m_speed);
}

void SimulatedNode::refreshValue(ObjectKey key)
{
    for (const Behaviour &behaviour : qAsConst(m_description.behaviours)) {
        if (behaviour.object != key)
            continue;
        const CanOpen::ObjectEntry *entry = m_dictionary.find(key);
        if (entry == nullptr)
            return;
        if (const std::optional<QByteArray> data = behaviourData(behaviour, *entry, valueTime()))
            m_dictionary.setData(key, *data);
        return;
    }
}

void SimulatedNode::serveAbandoningClient(const Faults::AbandoningClient &fault)
{
    if (m_state == NmtState::Stopped)
        return;
    const QVector<QCanBusFrame> frames = m_server.abandonedTransfer(fault);
    for (const QCanBusFrame &frame : frames)
        transmit(frame);
}

// ---------------------------------------------------------------------- faults

void SimulatedNode::addFault(const Fault &fault)
{
    m_faults.append(fault);
    m_server.faultsChanged();
    if (!m_isRunning)
        return;
    if (std::holds_alternative<Faults::Stopped>(fault))
        enterState(NmtState::Stopped);
    m_babble.start({fault}, m_clock());
    m_emergencyOrders.start({fault});
}

void SimulatedNode::removeFaults(std::size_t kind)
{
    m_faults.remove(kind);
    m_server.faultsChanged();
    if (kind == faultKind<Faults::Stopped>() && m_isRunning && m_state == NmtState::Stopped)
        enterFirstState();
    if (kind == faultKind<Faults::Emergency>())
        m_emergencyOrders.stop();
    m_babble.stop();
    if (m_isRunning)
        m_babble.start(m_faults.all(), m_clock());
}

void SimulatedNode::clearFaults()
{
    while (!m_faults.isEmpty())
        removeFaults(m_faults.all().first().index());
}

} // namespace Simulator
