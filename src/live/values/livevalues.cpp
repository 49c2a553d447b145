// SPDX-License-Identifier: MIT
#include "livevalues.h"

#include "pdosource.h"

#include <canopen/cobid.h>
#include <checkup/objectwords.h>
#include <system/amounts.h>

#include <algorithm>

using CanOpen::ObjectKey;
using CanOpen::PdoMapping;

namespace {

constexpr quint32 standardIds = 0x800;
constexpr std::size_t mostPdos = 8192;

quint32 keyOf(quint8 nodeId, ObjectKey object)
{
    return quint32(nodeId) << 24 | quint32(object.index) << 8 | object.subIndex;
}

quint16 indexOf(quint16 first, int number)
{
    return static_cast<quint16>(first + number - 1);
}

} // namespace

std::array<qint16, 0x800> LiveValues::makeEmpty()
{
    std::array<qint16, standardIds> empty{};
    empty.fill(-1);
    return empty;
}

void LiveValues::learn(const PdoSource &source)
{
    if (!CanOpen::isNodeId(source.nodeId))
        return;
    forget(source.nodeId);
    for (int number = 1; number <= CanOpen::mostPdos; ++number)
        learnPdo(source, number);
    index();
}

void LiveValues::forget(quint8 nodeId)
{
    m_problems.remove(nodeId);
    m_pdos.erase(std::remove_if(m_pdos.begin(), m_pdos.end(),
                                [nodeId](const Pdo &pdo) { return pdo.nodeId == nodeId; }),
                 m_pdos.end());
}

void LiveValues::learnPdo(const PdoSource &source, int number)
{
    const std::optional<CanOpen::PdoParameter> parameter
        = CanOpen::readPdoParameter(source.lookup, indexOf(CanOpen::firstTransmitPdo, number));
    if (!parameter || !parameter->isValid)
        return;
    const PdoMapping mapping
        = CanOpen::readPdoMapping(source.lookup, indexOf(CanOpen::firstTransmitMapping, number));
    if (mapping.problem != PdoMapping::Problem::None) {
        complain(source.nodeId,
                 tr("Node %1, PDO %2: %3")
                     .arg(QString::number(source.nodeId), QString::number(number), wordsOf(mapping.problem)));
        return;
    }
    if (mapping.entries.isEmpty() || m_pdos.size() >= mostPdos)
        return;
    Pdo pdo;
    pdo.nodeId = source.nodeId;
    pdo.number = number;
    pdo.id = parameter->cobId;
    pdo.isExtended = parameter->isExtended;
    pdo.bytes = mapping.bytes();
    addParts(source, mapping, parameter->eventTimer.count() * Microseconds::ofMillisecond, &pdo);
    m_pdos.push_back(pdo);
}

void LiveValues::addParts(const PdoSource &source, const PdoMapping &mapping, qint64 period, Pdo *pdo)
{
    int first = 0;
    for (const CanOpen::PdoMappingEntry &entry : mapping.entries) {
        const std::optional<CanOpen::DataType> type = source.type(entry.object);
        if (!entry.isDummy() && PdoDecoder::isNumber(type)) {
            const int position = provide(source.nodeId, entry.object);
            if (position >= 0) {
                m_values[static_cast<std::size_t>(position)].record.setPeriod(period);
                pdo->parts.push_back({PdoDecoder(first, entry.bits, type), position});
            }
        }
        first += entry.bits;
    }
}

/*! Makes the way from identifiers to PDOs. Of two that say they send the same the first is believed. */
void LiveValues::index()
{
    m_standard = makeEmpty();
    m_extended.clear();
    m_collisions.clear();
    for (std::size_t i = 0; i < m_pdos.size(); ++i)
        place(m_pdos[i]);
}

void LiveValues::place(const Pdo &pdo)
{
    const auto position = static_cast<int>(&pdo - m_pdos.data());
    const int known = pdo.isExtended ? m_extended.value(pdo.id, -1) : m_standard[pdo.id % standardIds];
    if (known >= 0) {
        const Pdo &other = m_pdos[static_cast<std::size_t>(known)];
        m_collisions += tr("Node %1, PDO %2: PDO %3 of node %4 has the same identifier.")
                            .arg(QString::number(pdo.nodeId), QString::number(pdo.number),
                                 QString::number(other.number), QString::number(other.nodeId));
    } else if (pdo.isExtended) {
        m_extended.insert(pdo.id, position);
    } else {
        m_standard[pdo.id % standardIds] = static_cast<qint16>(position);
    }
}

LiveValues::Pdo *LiveValues::pdoOf(const LiveFrame &frame)
{
    const int position
        = frame.isExtended ? m_extended.value(frame.id, -1) : m_standard[frame.id % standardIds];
    return position >= 0 ? &m_pdos[static_cast<std::size_t>(position)] : nullptr;
}

void LiveValues::handle(const LiveFrame &frame)
{
    if (frame.kind == FrameKind::Error || frame.isRemote)
        return;
    Pdo *pdo = pdoOf(frame);
    if (pdo == nullptr)
        return;
    if (frame.payload.size() < pdo->bytes) { // CiA 301: is not processed
        ++pdo->tooShort;
        return;
    }
    const quint64 bits = PdoDecoder::bitsOf(frame.payload);
    for (const Part &part : pdo->parts) {
        if (const std::optional<double> number = part.decoder.numberIn(bits))
            add(part.value, frame.time, *number);
    }
    ++m_revision;
}

void LiveValues::add(int position, qint64 time, double number)
{
    LiveValue &value = m_values[static_cast<std::size_t>(position)];
    const double shown = ObjectWords::number(value.object, number) / value.divisor;
    value.record.add(time, shown);
    if (value.history != nullptr)
        value.history->add(time, shown);
}

int LiveValues::note(quint8 nodeId, ObjectKey object, double number, qint64 time)
{
    const int position = provide(nodeId, object);
    if (position < 0)
        return position;
    add(position, time, number);
    ++m_revision;
    return position;
}

int LiveValues::find(quint8 nodeId, ObjectKey object) const
{
    return m_positions.value(keyOf(nodeId, object), -1);
}

int LiveValues::provide(quint8 nodeId, ObjectKey object)
{
    const int known = find(nodeId, object);
    if (known >= 0 || m_values.size() >= mostValues)
        return known;
    const ObjectWords::Unit unit = ObjectWords::unit(object);
    LiveValue value;
    value.nodeId = nodeId;
    value.object = object;
    value.name = ObjectWords::name(object);
    value.unit = unit.text;
    value.divisor = unit.divisor;
    m_values.push_back(value);
    const auto position = static_cast<int>(m_values.size()) - 1;
    m_positions.insert(keyOf(nodeId, object), position);
    return position;
}

void LiveValues::setWatched(int position, bool isWatched)
{
    if (position < 0 || position >= static_cast<int>(m_values.size()))
        return;
    LiveValue &value = m_values[static_cast<std::size_t>(position)];
    if (!isWatched)
        value.history.reset();
    else if (value.history == nullptr)
        value.history = std::make_shared<ValueHistory>();
}

void LiveValues::complain(quint8 nodeId, const QString &sentence)
{
    m_problems[nodeId].append(sentence);
}

QStringList LiveValues::problems() const
{
    QStringList sentences;
    QList<quint8> nodes = m_problems.keys();
    std::sort(nodes.begin(), nodes.end());
    for (const quint8 node : nodes)
        sentences += m_problems.value(node);
    sentences += m_collisions;
    for (const Pdo &pdo : m_pdos) {
        if (pdo.tooShort > 0)
            sentences += tr("Node %1, PDO %2: frames that are shorter than its mapping: %3.")
                             .arg(QString::number(pdo.nodeId), QString::number(pdo.number),
                                  QString::number(pdo.tooShort));
    }
    return sentences;
}

QString LiveValues::wordsOf(PdoMapping::Problem problem)
{
    switch (problem) {
    case PdoMapping::Problem::None:
        break;
    case PdoMapping::Problem::NotThere:
        return tr("its mapping is not known.");
    case PdoMapping::Problem::IsMultiplexed:
        return tr("it tells its object in each frame (MPDO), which is not decoded.");
    case PdoMapping::Problem::TooMany:
        return tr("its mapping tells more than 64 objects.");
    case PdoMapping::Problem::EntryMissing:
        return tr("its mapping tells more objects than there are.");
    case PdoMapping::Problem::EmptyEntry:
        return tr("its mapping has an object without a length.");
    case PdoMapping::Problem::TooLong:
        return tr("its mapping is longer than a frame.");
    }
    return QString();
}
