// SPDX-License-Identifier: MIT
#include "transmitpdo.h"

#include <system/amounts.h>

#include <algorithm>

namespace Simulator {

namespace {

using CanOpen::PdoTrigger;

// Changes are looked for so often where no inhibit time says less. It also bounds what devices that feed each other with
// changes can send.
constexpr qint64 leastInterval = 10 * Microseconds::ofMillisecond;
// What a stall of the event loop has missed beyond this is not caught up.
constexpr qint64 longestCatchUp = 200 * Microseconds::ofMillisecond;

quint16 indexOf(quint16 first, int number)
{
    return static_cast<quint16>(first + number - 1);
}

} // namespace

TransmitPdo::TransmitPdo(const NodeContext *node, int number)
    : m_node(node)
    , m_number(number)
    , m_parameter(CanOpen::readPdoParameter(node->lookup(), indexOf(CanOpen::firstTransmitPdo, number))
                      .value_or(CanOpen::PdoParameter()))
    , m_mapping(CanOpen::readPdoMapping(node->lookup(), indexOf(CanOpen::firstTransmitMapping, number)))
{
}

TransmitPdo::~TransmitPdo()
{
    if (m_look)
        m_node->agenda->cancel(*m_look);
}

bool TransmitPdo::exists(const NodeContext &node, int number)
{
    const auto parameter
        = CanOpen::readPdoParameter(node.lookup(), indexOf(CanOpen::firstTransmitPdo, number));
    if (!parameter || !parameter->isValid)
        return false;
    const CanOpen::PdoMapping mapping
        = CanOpen::readPdoMapping(node.lookup(), indexOf(CanOpen::firstTransmitMapping, number));
    return mapping.problem == CanOpen::PdoMapping::Problem::None && !mapping.entries.isEmpty();
}

void TransmitPdo::start()
{
    if (m_parameter.trigger() == PdoTrigger::Event)
        look(m_node->clock());
}

// ---------------------------------------------------------------------- on SYNC

bool TransmitPdo::isSyncStarted(quint8 counter)
{
    m_isSyncStarted
        = m_isSyncStarted || m_parameter.syncStart == 0 || counter == 0 || counter == m_parameter.syncStart;
    return m_isSyncStarted;
}

void TransmitPdo::handleSync(quint8 counter)
{
    const PdoTrigger trigger = m_parameter.trigger();
    if (trigger == PdoTrigger::SyncOnChange) {
        const QByteArray now = payload();
        if (!m_sentTime || now != m_sent)
            send(now, m_node->clock());
    } else if (trigger == PdoTrigger::Sync && isSyncStarted(counter)
               && ++m_syncs >= m_parameter.transmissionType) {
        send(payload(), m_node->clock());
    }
}

// ---------------------------------------------------------------------- on events

void TransmitPdo::dictionaryWritten()
{
    if (m_parameter.trigger() == PdoTrigger::Event)
        planLook(m_node->clock());
}

/*! Sends what is due at \a time, and plans the next look. */
void TransmitPdo::look(qint64 time)
{
    m_look.reset();
    const qint64 ideal = std::max(time, m_node->clock() - longestCatchUp);
    const QByteArray now = payload();
    if (!m_sentTime || now != m_sent || isTime(time))
        send(now, ideal);
    if (const std::optional<qint64> next = nextLook(ideal))
        planLook(*next);
}

bool TransmitPdo::isTime(qint64 time) const
{
    const qint64 timer = m_parameter.eventTimer.count() * Microseconds::ofMillisecond;
    return timer > 0 && m_sentTime && time >= *m_sentTime + timer;
}

/*! Looks at \a time, or as soon after it as the inhibit time allows; an earlier look that is planned stays. */
void TransmitPdo::planLook(qint64 time)
{
    const qint64 inhibit = std::max<qint64>(m_parameter.inhibitTime.count(), leastInterval);
    const qint64 due = m_sentTime ? std::max(time, *m_sentTime + inhibit) : time;
    if (m_look && m_look->first <= due)
        return;
    if (m_look)
        m_node->agenda->cancel(*m_look);
    m_look = m_node->agenda->add(due, [this, due] { look(due); });
}

std::optional<qint64> TransmitPdo::nextLook(qint64 time) const
{
    const qint64 timer = m_parameter.eventTimer.count() * Microseconds::ofMillisecond;
    const qint64 change = time + std::max<qint64>(m_parameter.inhibitTime.count(), leastInterval);
    if (timer > 0 && m_sentTime)
        return hasMovingValues() ? std::min(change, *m_sentTime + timer) : *m_sentTime + timer;
    return hasMovingValues() ? std::optional<qint64>(change) : std::nullopt;
}

bool TransmitPdo::hasMovingValues() const
{
    return std::any_of(
        m_mapping.entries.cbegin(), m_mapping.entries.cend(),
        [this](const CanOpen::PdoMappingEntry &entry) { return m_node->isMoving(entry.object); });
}

// ---------------------------------------------------------------------- the frame

/*! What is not in the dictionary is sent as 0. */
QByteArray TransmitPdo::payload() const
{
    QByteArray payload(m_mapping.bytes(), '\0');
    int first = 0;
    for (const CanOpen::PdoMappingEntry &mapped : m_mapping.entries) {
        const CanOpen::ObjectEntry *entry = mapped.isDummy() ? nullptr : m_node->entry(mapped.object);
        QByteArray value = entry != nullptr ? entry->data.left(8) : QByteArray();
        value.append(QByteArray(8 - value.size(), '\0'));
        CanOpen::packBits(&payload, first, mapped.bits,
                          CanOpen::unpackBits(value, 0, CanOpen::mostPdoBits).value_or(0));
        first += mapped.bits;
    }
    return payload;
}

void TransmitPdo::send(const QByteArray &payload, qint64 time)
{
    m_sent = payload;
    m_sentTime = time;
    m_syncs = 0;
    QByteArray onTheWire = payload;
    const auto *length = m_node->faults->find<Faults::PdoLength>();
    if (length != nullptr && (length->pdo == 0 || length->pdo == m_number)) {
        onTheWire.append(QByteArray(8, '\0'));
        onTheWire.truncate(length->length);
    }
    QCanBusFrame frame(m_parameter.cobId, onTheWire);
    frame.setExtendedFrameFormat(m_parameter.isExtended);
    m_node->send(frame);
}

} // namespace Simulator
