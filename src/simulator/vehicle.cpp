// SPDX-License-Identifier: MIT
#include "vehicle.h"

#include <canopen/cobid.h>
#include <canopen/nmt.h>
#include <system/amounts.h>

#include <algorithm>

namespace Simulator {

namespace {

constexpr qint64 longestTimer = Q_INT64_C(24) * 60 * 60 * 1000; // ms; an earlier end does no harm

} // namespace

Vehicle::Vehicle(const VehicleDescription &description, QObject *parent)
    : QObject(parent)
    , m_name(description.name)
    , m_description(description.description)
    , m_bitRate(description.bitRate)
{
    m_elapsed.start();
    m_clock = [this] { return m_elapsed.nsecsElapsed() / 1000; };
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &Vehicle::processDue);

    for (const NodeDescription &node : description.nodes) {
        if (!CanOpen::isNodeId(node.id) || m_nodesById[node.id] != nullptr)
            continue;
        const auto send = [this, id = node.id](const QCanBusFrame &frame) { sendFrom(id, frame); };
        m_nodes.push_back(std::make_unique<SimulatedNode>(
            node, m_bitRate, &m_agenda, [this] { return m_clock(); }, send));
        m_nodesById[node.id] = m_nodes.back().get();
    }
    for (const Fault &fault : description.faults)
        addFault(0, fault);
    setSpeed(description.speed);
}

Vehicle::~Vehicle()
{
    stop();
}

void Vehicle::setClock(Clock clock)
{
    m_clock = std::move(clock);
    m_hasRealClock = false;
    m_timer.stop();
}

void Vehicle::start()
{
    m_isRunning = true;
    for (const auto &node : m_nodes)
        node->start();
    armTimer();
}

void Vehicle::stop()
{
    m_isRunning = false;
    for (const auto &node : m_nodes)
        node->stop();
    m_agenda.clear();
    m_timer.stop();
    m_armedFor = -1;
}

void Vehicle::handleFrame(const QCanBusFrame &frame)
{
    if (!m_isRunning || frame.frameType() != QCanBusFrame::DataFrame)
        return;
    // NMT and the default SDO have identifiers of 11 bits.
    const bool mayBeService = !frame.hasExtendedFrameFormat();
    const quint32 cobId = frame.frameId();
    const quint8 nodeId = mayBeService ? CanOpen::nodeIdOf(cobId, CanOpen::sdoRequestBase) : quint8(0);
    if (mayBeService && cobId == CanOpen::nmtCommandCobId) {
        const std::optional<CanOpen::NmtMessage> message = CanOpen::parseNmtFrame(frame);
        if (!message)
            return;
        for (const auto &node : m_nodes) {
            if (message->nodeId == 0 || message->nodeId == node->id())
                node->handleNmt(message->command);
        }
    } else if (nodeId != 0) {
        if (SimulatedNode *node = m_nodesById[nodeId])
            node->handleSdo(frame);
    } else {
        handleProcessData(frame, 0);
    }
    armTimer();
}

void Vehicle::setSpeed(double speed)
{
    for (const auto &node : m_nodes)
        node->setSpeed(speed);
}

/*! The vehicle's own nodes hear each other too. */
void Vehicle::sendFrom(quint8 nodeId, const QCanBusFrame &frame)
{
    if (m_sender)
        m_sender(frame, nodeId);
    handleProcessData(frame, nodeId);
}

void Vehicle::handleProcessData(const QCanBusFrame &frame, quint8 sender)
{
    // A SYNC, the PDO that follows it, the emergency of one that did not like it: deeper goes a vehicle file that has nodes
    // talk in circles.
    constexpr int deepest = 4;
    if (m_reactions >= deepest)
        return;
    ++m_reactions;
    for (const auto &node : m_nodes) {
        if (node->id() != sender)
            node->handleProcessData(frame);
    }
    --m_reactions;
}

void Vehicle::processDue()
{
    m_armedFor = -1;
    if (m_isRunning)
        m_agenda.runUntil(m_clock());
    armTimer();
}

void Vehicle::armTimer()
{
    if (!m_hasRealClock || !m_isRunning)
        return;
    const std::optional<qint64> due = m_agenda.nextDue();
    if (due.value_or(-1) == m_armedFor)
        return;
    m_armedFor = due.value_or(-1);
    if (!due) {
        m_timer.stop();
        return;
    }
    // Rounded up: a timer that fires early would find nothing due.
    const qint64 rest = (*due - m_clock() + Microseconds::ofMillisecond - 1) / Microseconds::ofMillisecond;
    m_timer.start(static_cast<int>(qBound<qint64>(0, rest, longestTimer)));
}

SimulatedNode *Vehicle::node(int nodeId) const
{
    return CanOpen::isNodeId(nodeId) ? m_nodesById[static_cast<std::size_t>(nodeId)] : nullptr;
}

QVector<quint8> Vehicle::nodeIds() const
{
    QVector<quint8> ids;
    for (const auto &node : m_nodes)
        ids.append(node->id());
    return ids;
}

bool Vehicle::addFault(quint8 nodeId, const Fault &fault)
{
    SimulatedNode *target
        = nodeId == 0 && isBusFault(fault) && !m_nodes.empty() ? m_nodes.front().get() : node(nodeId);
    if (target == nullptr || !isNodeFault(fault))
        return false;
    target->addFault(fault);
    armTimer();
    return true;
}

void Vehicle::removeFaults(quint8 nodeId, std::size_t kind)
{
    for (const auto &node : m_nodes) {
        if (nodeId == 0 || nodeId == node->id())
            node->removeFaults(kind);
    }
    armTimer();
}

void Vehicle::clearFaults()
{
    for (const auto &node : m_nodes)
        node->clearFaults();
    armTimer();
}

} // namespace Simulator
