// SPDX-License-Identifier: MIT
#include "babblesource.h"

#include <canopen/cobid.h>
#include <canopen/emergency.h>
#include <canopen/framebits.h>
#include <canopen/sdoframe.h>
#include <system/amounts.h>

namespace Simulator {

namespace {

qint64 microseconds(Faults::milliseconds time)
{
    return std::chrono::microseconds(time).count();
}

QCanBusFrame emergencyOf(quint8 nodeId, quint32 code)
{
    CanOpen::Emergency emergency;
    emergency.errorCode = static_cast<quint16>(code);
    emergency.errorRegister = code != 0 ? 1 : 0;
    return CanOpen::makeEmergencyFrame(CanOpen::emergencyCobId(nodeId), emergency);
}

} // namespace

BabbleSource::BabbleSource(quint8 nodeId, int bitRate, Agenda *agenda, Node node)
    : m_nodeId(nodeId)
    , m_bitRate(bitRate)
    , m_agenda(agenda)
    , m_node(std::move(node))
    , m_random(nodeId)
{
}

void BabbleSource::start(const QVector<Fault> &faults, qint64 now)
{
    for (const Fault &fault : faults) {
        std::optional<Job> job = std::visit([this](const auto &kind) { return jobOf(kind); }, fault);
        if (job)
            m_jobs.append(m_agenda->addPeriodic(now + job->period, job->period, std::move(job->action)));
    }
}

void BabbleSource::stop()
{
    for (const quint64 job : qAsConst(m_jobs))
        m_agenda->cancelPeriodic(job);
    m_jobs.clear();
}

std::optional<BabbleSource::Job> BabbleSource::jobOf(const Faults::BabbleHeartbeat &fault)
{
    return Job{microseconds(fault.interval), m_node.sendHeartbeat};
}

std::optional<BabbleSource::Job> BabbleSource::jobOf(const Faults::Restarts &fault)
{
    if (!fault.random)
        return Job{microseconds(fault.interval), m_node.restart};
    // One of ten looks on average finds that it is time.
    constexpr quint32 looks = 10;
    return Job{microseconds(fault.interval) / looks, [this] {
                   if (chance(looks) == 0)
                       m_node.restart();
               }};
}

std::optional<BabbleSource::Job> BabbleSource::jobOf(const Faults::EmergencyOfNobody &fault)
{
    return Job{microseconds(fault.interval),
               [this, fault] { m_node.send(emergencyOf(static_cast<quint8>(fault.nodeId), fault.code)); }};
}

std::optional<BabbleSource::Job> BabbleSource::jobOf(const Faults::BabbleEmergency &fault)
{
    return Job{Microseconds::ofSecond / fault.perSecond,
               [this, code = fault.code] { m_node.send(emergencyOf(m_nodeId, code)); }};
}

std::optional<BabbleSource::Job> BabbleSource::jobOf(const Faults::BabblePdo &fault)
{
    return Job{Microseconds::ofSecond / fault.perSecond, [this] {
                   m_node.send(QCanBusFrame(CanOpen::transmitPdoBases[0] + m_nodeId, chanceBytes(8)));
               }};
}

std::optional<BabbleSource::Job> BabbleSource::jobOf(const Faults::BabbleSdo &fault)
{
    return Job{Microseconds::ofSecond / fault.perSecond,
               [this, isSegment = fault.segments] { m_node.send(babble(isSegment)); }};
}

std::optional<BabbleSource::Job> BabbleSource::jobOf(const Faults::AbandoningClient &fault)
{
    return Job{microseconds(fault.interval), [this, fault] { m_node.serveAbandoningClient(fault); }};
}

std::optional<BabbleSource::Job> BabbleSource::jobOf(const Faults::Traffic &fault)
{
    // The frames' lengths vary; five bytes stand for their mean.
    constexpr int meanLength = 5;
    const qint64 bits = CanOpen::frameBits(QCanBusFrame(0, QByteArray(meanLength, '\0')));
    return Job{bits * Microseconds::ofSecond * 100 / (qint64(m_bitRate) * fault.percent),
               [this] { m_node.send(traffic()); }};
}

std::optional<BabbleSource::Job> BabbleSource::jobOf(const Faults::Flood &fault)
{
    return Job{Microseconds::ofSecond / fault.perSecond, [this] { m_node.send(flood()); }};
}

/*! A number from 0 to \a choices - 1. */
quint32 BabbleSource::chance(quint32 choices)
{
    return static_cast<quint32>(m_random() >> 8) % choices;
}

QByteArray BabbleSource::chanceBytes(int size)
{
    QByteArray bytes(size, '\0');
    for (char &byte : bytes)
        byte = static_cast<char>(m_random() >> 8 & 0xFF);
    return bytes;
}

QCanBusFrame BabbleSource::babble(bool isSegment)
{
    constexpr char commandOfSegment = 0x1F; // bits 7 to 5 are zero
    QByteArray payload = chanceBytes(CanOpen::sdoFrameSize);
    // An index that no object has: an invented value under a right key would be no babble but a lie.
    if (isSegment)
        payload[0] = static_cast<char>(payload.at(0) & commandOfSegment);
    else
        payload[2] = static_cast<char>(0x20 | (payload.at(2) & 0x0F));
    return QCanBusFrame(CanOpen::sdoResponseCobId(m_nodeId), payload);
}

QCanBusFrame BabbleSource::traffic()
{
    const quint32 choice = chance(16);
    if (choice == 0)
        return m_node.heartbeat();
    if (choice == 1)
        return QCanBusFrame(CanOpen::emergencyCobId(m_nodeId), chanceBytes(8));
    return QCanBusFrame(CanOpen::transmitPdoBases[choice % 4] + m_nodeId,
                        chanceBytes(2 + static_cast<int>(chance(7))));
}

QCanBusFrame BabbleSource::flood()
{
    // Between SYNC and the SDOs: what other services use would be answered, or be taken for nodes.
    const quint32 standardId = CanOpen::syncCobId + chance(CanOpen::sdoResponseBase - CanOpen::syncCobId);
    QCanBusFrame frame(standardId, chanceBytes(static_cast<int>(chance(9))));
    switch (chance(8)) {
    case 0:
        frame.setExtendedFrameFormat(true);
        frame.setFrameId(chance(1u << 23) << 6 | standardId >> 5);
        break;
    case 1:
        frame.setFrameType(QCanBusFrame::RemoteRequestFrame);
        break;
    default:
        break;
    }
    return frame;
}

} // namespace Simulator
