// SPDX-License-Identifier: MIT
#include "bushealth.h"

#include <system/amounts.h>

namespace {

template<typename Number>
std::optional<double> inMilliseconds(std::optional<Number> time)
{
    return time ? std::optional(double(*time) / Microseconds::ofMillisecond) : std::nullopt;
}

HeartbeatNumbers heartbeatNumbers(const HeartbeatRecord &record, qint64 now)
{
    HeartbeatNumbers numbers;
    numbers.count = record.count();
    numbers.period = inMilliseconds(record.period());
    numbers.jitter = inMilliseconds(record.jitter());
    numbers.longestGap = inMilliseconds(record.longestGap(now));
    numbers.configured = inMilliseconds(record.configured());
    numbers.late = record.late(now);
    numbers.missed = record.missed(now);
    numbers.isLost = record.isLost(now);
    return numbers;
}

SdoNumbers sdoNumbers(const SdoWatch &watch, qint64 now)
{
    constexpr double median = 0.5;
    constexpr double most = 0.95;
    SdoNumbers numbers;
    numbers.answers = watch.times().count();
    numbers.smallest = inMilliseconds(watch.times().smallest());
    numbers.median = inMilliseconds(watch.times().quantile(median));
    numbers.most = inMilliseconds(watch.times().quantile(most));
    numbers.longest = inMilliseconds(watch.times().largest());
    numbers.requests = watch.requests();
    numbers.foreignRequests = watch.foreignRequests();
    numbers.unanswered = watch.unanswered(now);
    numbers.aborts = watch.aborts();
    numbers.refusals = watch.refusals();
    return numbers;
}

} // namespace

bool HealthNumbers::areErrorsKnown() const
{
    return areErrorsTold || controller != InterfaceHealth::State::Unknown
           || kinds[static_cast<std::size_t>(FrameKind::Error)].count > 0;
}

int HealthNumbers::heardNodes() const
{
    return static_cast<int>(std::count_if(
        nodes.begin(), nodes.end(), [](const NodeNumbers &node) { return node.frames > 0 && !node.isAway; }));
}

QVector<quint8> HealthNumbers::nodesAskedByOthers() const
{
    QVector<quint8> asked;
    for (const NodeNumbers &node : nodes) {
        if (node.sdo.foreignRequests > 0)
            asked.append(node.id);
    }
    return asked;
}

void BusHealth::start(qint64 time)
{
    *this = BusHealth();
    m_traffic.start(time);
}

void BusHealth::setConfiguredHeartbeat(quint8 nodeId, int milliseconds)
{
    constexpr qint64 factor = 1000;
    if (CanOpen::isNodeId(nodeId))
        m_nodes[nodeId].heartbeat().setConfigured(milliseconds * factor);
}

void BusHealth::handle(const LiveFrame &frame)
{
    m_traffic.add(frame.time, frame.kind, frame.bits);
    if (frame.kind == FrameKind::Error) {
        m_controller.handle(frame);
        return;
    }
    m_bursts.add(frame.time, frame.bits, m_bitRate);
    if (CanOpen::isNodeId(frame.nodeId))
        m_nodes[frame.nodeId].handle(frame);
}

void BusHealth::interrupt()
{
    m_controllerState = InterfaceHealth::State::Unknown;
    m_controller.interrupt();
    for (NodeHealth &node : m_nodes)
        node.interrupt();
}

HealthNumbers BusHealth::numbers(qint64 now)
{
    m_traffic.advance(now);
    const qint64 duration = m_traffic.duration(now);
    HealthNumbers numbers;
    numbers.duration = double(duration) / Microseconds::ofMillisecond;
    numbers.bitRate = m_bitRate;
    addLoads(&numbers, duration);
    addKinds(&numbers, duration);
    if (m_bursts.longest() > 0)
        numbers.longestBurst = m_bursts.longest();
    numbers.controller = m_controllerState;
    numbers.transmitErrors = m_controller.transmitErrors();
    numbers.receiveErrors = m_controller.receiveErrors();
    numbers.overruns = m_controller.overruns();
    numbers.busErrors = m_controller.busErrors();
    numbers.areErrorsTold = m_areErrorsTold;
    for (quint8 id = CanOpen::firstNodeId; id <= CanOpen::lastNodeId; ++id) {
        if (m_nodes[id].isHeard() || m_nodes[id].sdo().requests() > 0)
            numbers.nodes.append(numbersOf(id, now));
    }
    return numbers;
}

void BusHealth::addLoads(HealthNumbers *numbers, qint64 duration) const
{
    if (m_bitRate <= 0 || duration <= 0)
        return;
    const double mean
        = double(m_traffic.total().bits) * Microseconds::ofSecond / (double(duration) * m_bitRate);
    numbers->meanLoad = mean;
    // The tenth of a second that is not over yet counts for the mean only.
    numbers->peakLoad = std::max(mean, double(m_traffic.mostBits().value_or(0)) / m_bitRate);
    if (const std::optional<TrafficMeter::Counts> last = m_traffic.lastSecond())
        numbers->lastLoad = double(last->bits) / m_bitRate;
}

void BusHealth::addKinds(HealthNumbers *numbers, qint64 duration) const
{
    const TrafficMeter::Counts total = m_traffic.total();
    const std::optional<TrafficMeter::Counts> last = m_traffic.lastSecond();
    const double seconds = double(duration) / Microseconds::ofSecond;
    numbers->frames = total.allFrames();
    numbers->framesPerSecond = duration > 0 ? double(total.allFrames()) / seconds : 0;
    for (std::size_t i = 0; i < total.frames.size(); ++i) {
        numbers->kinds[i].count = total.frames[i];
        numbers->kinds[i].perSecond = duration > 0 ? double(total.frames[i]) / seconds : 0;
        if (last)
            numbers->kinds[i].lastSecond = double(last->frames[i]);
    }
}

NodeNumbers BusHealth::numbersOf(quint8 nodeId, qint64 now) const
{
    const NodeHealth &node = m_nodes[nodeId];
    const qint64 duration = m_traffic.duration(now);
    NodeNumbers numbers;
    numbers.id = nodeId;
    numbers.state = node.heartbeat().state();
    numbers.heartbeat = heartbeatNumbers(node.heartbeat(), now);
    numbers.sdo = sdoNumbers(node.sdo(), now);
    numbers.restarts = node.restarts();
    numbers.emergencies = node.emergencies();
    numbers.lastEmergency = node.lastEmergency();
    numbers.hasOpenError = node.hasOpenError();
    numbers.frames = node.frames();
    numbers.isAway = node.isAway();
    if (m_bitRate > 0 && duration > 0)
        numbers.load = double(node.bits()) * Microseconds::ofSecond / (double(duration) * m_bitRate);
    return numbers;
}
