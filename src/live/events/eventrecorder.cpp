// SPDX-License-Identifier: MIT
#include "eventrecorder.h"

#include <bus/errorframe.h>
#include <canopen/nmt.h>
#include <canopen/sdoframe.h>
#include <live/health/heartbeatstate.h>
#include <live/health/sdowatch.h>

#include <QCanBusFrame>

#include <algorithm>

namespace {

constexpr int emergencySize = 8;
constexpr int manufacturerOffset = 3;
constexpr quint16 highestReset = 0x00FF; // error codes 00xxh: fewer errors than before, or none
constexpr int commandSize = 2;

} // namespace

void EventRecorder::handle(const LiveFrame &frame)
{
    switch (frame.kind) {
    case FrameKind::Heartbeat:
        handleHeartbeat(frame);
        break;
    case FrameKind::Emergency:
        handleEmergency(frame);
        break;
    case FrameKind::Sdo:
        if (frame.payload.size() == CanOpen::sdoFrameSize && frame.byteAt(0) == CanOpen::sdoAbortCommand)
            handleAbort(frame);
        break;
    case FrameKind::Nmt:
        handleCommand(frame);
        break;
    case FrameKind::Error:
        handleError(frame);
        break;
    case FrameKind::Pdo:
    case FrameKind::Sync:
    case FrameKind::Time:
    case FrameKind::Other:
        break;
    }
}

void EventRecorder::add(EventKind kind, quint8 nodeId, qint64 time, quint32 code, quint32 count)
{
    LiveEvent event;
    event.kind = kind;
    event.nodeId = nodeId;
    event.time = time;
    event.code = code;
    event.count = count;
    m_list.add(event);
}

void EventRecorder::handleHeartbeat(const LiveFrame &frame)
{
    const std::optional<CanOpen::NmtState> state = heartbeatStateOf(frame);
    if (!state)
        return;
    Node &node = m_nodes[frame.nodeId];
    handleState(&node, frame, *state);
    node.isKnown = true;
    node.isLost = false;
    node.heartbeat.beat(frame.time, *state);
}

void EventRecorder::handleState(Node *node, const LiveFrame &frame, CanOpen::NmtState state)
{
    const auto code = static_cast<quint32>(state);
    if (!node->isKnown)
        add(EventKind::NodeHeard, frame.nodeId, frame.time, code);
    else if (node->isLost)
        add(EventKind::NodeBack, frame.nodeId, frame.time, code);
    else if (state == CanOpen::NmtState::BootUp)
        add(EventKind::NodeRestarted, frame.nodeId, frame.time);
    else if (node->heartbeat.state() != state)
        add(EventKind::StateChanged, frame.nodeId, frame.time, code);
}

void EventRecorder::handleEmergency(const LiveFrame &frame)
{
    if (frame.isRemote || frame.payload.size() != emergencySize)
        return;
    LiveEvent event;
    event.code = static_cast<quint32>(frame.byteAt(0) | frame.byteAt(1) << 8);
    event.kind = event.code <= highestReset ? EventKind::EmergencyReset : EventKind::Emergency;
    event.nodeId = frame.nodeId;
    event.errorRegister = frame.byteAt(2);
    for (std::size_t i = 0; i < event.manufacturer.size(); ++i)
        event.manufacturer[i] = frame.byteAt(manufacturerOffset + static_cast<int>(i));
    event.time = frame.time;
    if (event.kind == EventKind::Emergency)
        event.detail = m_nodes[event.nodeId].emergencyTexts.value(static_cast<quint16>(event.code));
    m_list.add(event);
}

void EventRecorder::handleAbort(const LiveFrame &frame)
{
    const quint32 code = CanOpen::sdoAbortCodeOf(frame.payload);
    if (frame.isRemote || isAbsence(code))
        return;
    const quint32 count = m_nodes[frame.nodeId].aborts.note(frame.time);
    if (count > 0)
        add(EventKind::AbortBurst, frame.nodeId, frame.time, code, count);
}

void EventRecorder::handleCommand(const LiveFrame &frame)
{
    if (frame.isRemote || frame.payload.size() != commandSize || frame.byteAt(1) > CanOpen::lastNodeId)
        return;
    add(EventKind::NmtCommand, frame.byteAt(1), frame.time, frame.byteAt(0));
}

void EventRecorder::handleError(const LiveFrame &frame)
{
    const bool isController = (frame.errors & QCanBusFrame::ControllerError) != 0;
    if (isController && frame.payload.size() > ErrorFrame::controllerByte
        && (frame.byteAt(ErrorFrame::controllerByte) & ErrorFrame::receiveOverflow) != 0)
        add(EventKind::Overrun, 0, frame.time);
}

void EventRecorder::setConfiguredHeartbeat(quint8 nodeId, int milliseconds)
{
    constexpr qint64 factor = 1000;
    if (CanOpen::isNodeId(nodeId))
        m_nodes[nodeId].heartbeat.setConfigured(milliseconds * factor);
}

void EventRecorder::setEmergencyTexts(quint8 nodeId, const QMap<quint16, QString> &texts)
{
    if (!CanOpen::isNodeId(nodeId))
        return;
    m_nodes[nodeId].emergencyTexts = texts;
    m_list.explain(nodeId, texts);
}

void EventRecorder::advance(qint64 now)
{
    if (m_isInterfaceGone)
        return;
    for (quint8 id = CanOpen::firstNodeId; id <= CanOpen::lastNodeId; ++id) {
        Node &node = m_nodes[id];
        if (!node.isKnown || node.isLost || !node.heartbeat.isLost(now))
            continue;
        node.isLost = true;
        add(EventKind::NodeLost, id, now);
    }
}

void EventRecorder::setController(InterfaceHealth::State state, qint64 now)
{
    const InterfaceHealth::State before = m_controller;
    m_controller = state;
    if (state == before)
        return;
    const bool wasBad = before != InterfaceHealth::State::Unknown && before != InterfaceHealth::State::Good;
    switch (state) {
    case InterfaceHealth::State::Unknown:
        break;
    case InterfaceHealth::State::Good:
        if (wasBad)
            add(EventKind::ControllerGood, 0, now);
        break;
    case InterfaceHealth::State::Warning:
        add(EventKind::ControllerWarning, 0, now);
        break;
    case InterfaceHealth::State::Passive:
        add(EventKind::ControllerPassive, 0, now);
        break;
    case InterfaceHealth::State::BusOff:
        add(EventKind::BusOff, 0, now);
        break;
    }
}

void EventRecorder::loseInterface(const QString &reason, qint64 now)
{
    if (m_isInterfaceGone)
        return;
    m_isInterfaceGone = true;
    m_controller = InterfaceHealth::State::Unknown;
    for (Node &node : m_nodes)
        node.heartbeat.interrupt();
    LiveEvent event;
    event.kind = EventKind::InterfaceGone;
    event.time = now;
    event.detail = reason;
    m_list.add(event);
}

void EventRecorder::findInterface(qint64 now)
{
    if (!m_isInterfaceGone)
        return;
    m_isInterfaceGone = false;
    add(EventKind::InterfaceBack, 0, now);
}
