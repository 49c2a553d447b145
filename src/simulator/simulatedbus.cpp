// SPDX-License-Identifier: MIT
#include "simulatedbus.h"

#include <QCoreApplication>
#include <QEvent>

#include <algorithm>

namespace Simulator {

namespace {

// How late the event loop may wake up without that it slows the bus down; beyond it somebody keeps it busy.
constexpr Wire::Time mostLateness = std::chrono::microseconds(500);
// A frame that is sent within this time of a delivery counts as caused by it.
constexpr Wire::Time longestReaction = std::chrono::milliseconds(1);

// A participant's controllers are told apart in the low bits of a station's number.
constexpr int stationBits = 8;

// Frames of one event at most: a flood leaves the event loop its turns.
constexpr int longestBatch = 4096;

QEvent::Type batchEventType()
{
    static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
    return type;
}

} // namespace

SimulatedBus::SimulatedBus(int bitRate, QObject *parent)
    : QObject(parent)
    , m_bitRate(bitRate)
{
    if (bitRate > 0) {
        m_wire.emplace(bitRate);
        m_alarm = new AlarmClock(this);
        connect(m_alarm, &AlarmClock::ringing, this, &SimulatedBus::deliverFromWire);
    }
}

SimulatedBus::~SimulatedBus() = default;

void SimulatedBus::attach(BusParticipant *participant)
{
    if (numberOf(participant) == 0)
        m_members.append(Member{participant, ++m_lastNumber});
}

void SimulatedBus::detach(BusParticipant *participant)
{
    for (Member &member : m_members) {
        if (member.participant == participant)
            member.participant = nullptr;
    }
    if (!m_isDelivering)
        dropDetached();
}

void SimulatedBus::dropDetached()
{
    const auto isDetached = [](const Member &member) { return member.participant == nullptr; };
    m_members.erase(std::remove_if(m_members.begin(), m_members.end(), isDetached), m_members.end());
}

quint64 SimulatedBus::numberOf(const BusParticipant *participant) const
{
    for (const Member &member : m_members) {
        if (member.participant == participant)
            return member.number;
    }
    return 0;
}

bool SimulatedBus::send(BusParticipant *sender, const QCanBusFrame &frame, quint8 station, int queueLength)
{
    const quint64 senderNumber = numberOf(sender);
    if (m_isLost || senderNumber == 0)
        return false;
    if (!m_wire) {
        if (m_queue.size() >= queueLength) {
            const auto isOwn = [senderNumber](const Queued &queued) { return queued.sender == senderNumber; };
            if (std::count_if(m_queue.cbegin(), m_queue.cend(), isOwn) >= queueLength)
                return false;
        }
        m_queue.append(Queued{frame, senderNumber});
        if (!m_isPosted) {
            m_isPosted = true;
            QCoreApplication::postEvent(this, new QEvent(batchEventType()));
        }
        return true;
    }

    const quint64 number = senderNumber << stationBits | station;
    if (m_wire->waiting(number) >= queueLength)
        return false;
    m_wire->queue(frame, number, readyTime(*sender));
    if (!m_isDelivering)
        scheduleWire();
    return true;
}

Wire::Time SimulatedBus::readyTime(const BusParticipant &sender) const
{
    if (sender.isSimulated() && m_idealTime)
        return *m_idealTime;
    const Wire::Time now = AlarmClock::now();
    // A device outside the simulation needs its own time, but is not charged with the event loop's late
    // waking up.
    const bool isReaction = !sender.isSimulated() && now - m_deliveryTime < longestReaction;
    return isReaction ? now - m_lateness : now;
}

bool SimulatedBus::event(QEvent *event)
{
    if (event->type() != batchEventType())
        return QObject::event(event);
    deliverBatch();
    return true;
}

void SimulatedBus::deliverBatch()
{
    // The last device may let go of the bus while it receives.
    const std::shared_ptr<SimulatedBus> keepAlive = weak_from_this().lock();

    m_isPosted = false;
    QVector<Queued> batch;
    batch.swap(m_queue);
    if (batch.size() > longestBatch) {
        m_queue = batch.mid(longestBatch);
        batch.resize(longestBatch);
        m_isPosted = true;
        QCoreApplication::postEvent(this, new QEvent(batchEventType()));
    }
    m_isDelivering = true;
    for (const Queued &queued : qAsConst(batch)) {
        if (m_isLost)
            break;
        deliver(queued.frame, queued.sender);
    }
    finishBatch();
    // Keeps the memory for the next batch.
    if (m_queue.isEmpty()) {
        batch.clear();
        m_queue.swap(batch);
    }
}

void SimulatedBus::deliverFromWire()
{
    const std::shared_ptr<SimulatedBus> keepAlive = weak_from_this().lock();

    m_alarmTime = Wire::Time(0);
    m_isDelivering = true;
    while (const std::optional<Wire::Transmission> transmission = m_wire->take(AlarmClock::now())) {
        m_idealTime = transmission->end;
        m_deliveryTime = AlarmClock::now();
        m_lateness = std::min(m_deliveryTime - transmission->end, mostLateness);
        const quint64 sender = transmission->station >> stationBits;
        tellSender(sender);
        deliver(transmission->frame, sender);
        m_idealTime.reset();
        finishBatch();
        if (m_isLost)
            return;
        m_isDelivering = true;
    }
    m_isDelivering = false;
    scheduleWire();
}

void SimulatedBus::scheduleWire()
{
    const std::optional<Wire::Time> next = m_wire->nextEnd();
    if (!next) {
        if (m_alarmTime != Wire::Time(0)) {
            m_alarm->cancel();
            m_alarmTime = Wire::Time(0);
        }
        return;
    }
    if (*next != m_alarmTime) {
        m_alarmTime = *next;
        m_alarm->set(*next);
    }
}

void SimulatedBus::tellSender(quint64 number)
{
    for (const Member &member : qAsConst(m_members)) {
        if (member.number == number && member.participant != nullptr) {
            member.participant->sent();
            return;
        }
    }
}

void SimulatedBus::deliver(const QCanBusFrame &frame, quint64 sender)
{
    // By place: participants come and go while they receive.
    for (int place = 0; place < m_members.size(); ++place) {
        const Member member = m_members.at(place);
        if (member.participant != nullptr && member.number != sender)
            member.participant->receive(frame);
    }
    countFrame();
}

void SimulatedBus::finishBatch()
{
    for (int place = 0; place < m_members.size(); ++place) {
        if (BusParticipant *participant = m_members.at(place).participant)
            participant->batchReceived();
    }
    m_isDelivering = false;
    dropDetached();
}

void SimulatedBus::countFrame()
{
    ++m_framesCarried;
    if (m_framesUntilLoss && (*m_framesUntilLoss == 0 || --*m_framesUntilLoss == 0))
        lose(m_plannedLoss);
}

void SimulatedBus::lose(BusLoss loss)
{
    if (m_isLost)
        return;
    m_isLost = true;
    m_framesUntilLoss.reset();
    m_queue.clear();
    if (m_wire) {
        m_wire->clear();
        m_alarm->cancel();
        m_alarmTime = Wire::Time(0);
    }
    for (int place = 0; place < m_members.size(); ++place) {
        if (BusParticipant *participant = m_members.at(place).participant)
            participant->busLost(loss);
    }
}

void SimulatedBus::loseAfter(quint64 frames, BusLoss loss)
{
    m_framesUntilLoss = frames;
    m_plannedLoss = loss;
}

void SimulatedBus::restore()
{
    m_isLost = false;
}

} // namespace Simulator
