// SPDX-License-Identifier: MIT
#include "evaluation.h"

#include "factsource.h"

#include <snapshot/snapshot.h>

using CanOpen::ObjectKey;

namespace {

std::optional<double> numberOf(const QVariant &value)
{
    switch (static_cast<QMetaType::Type>(value.type())) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Bool:
    case QMetaType::Double:
    case QMetaType::Float:
        return std::isfinite(value.toDouble()) ? std::optional<double>(value.toDouble()) : std::nullopt;
    default:
        return std::nullopt;
    }
}

} // namespace

Evaluation::Evaluation(const FactSource &vehicle, int position)
    : m_vehicle(vehicle)
    , m_position(position)
{
}

void Evaluation::setLoop(int loop, int number, quint16 object)
{
    m_loops[loop] = {number, object};
}

ObjectKey Evaluation::keyOf(const ObjectReference &object) const
{
    ObjectKey key{object.index, object.subIndex};
    if (object.objectLoop >= 0)
        key.index = m_loops[object.objectLoop].object;
    if (object.subLoop >= 0)
        key.subIndex = static_cast<quint8>(m_loops[object.subLoop].number);
    return key;
}

Operand Evaluation::object(const ObjectReference &object)
{
    // No device has a sub-index that a byte cannot hold.
    if (object.subLoop >= 0 && (loopNumber(object.subLoop) < 0 || loopNumber(object.subLoop) > 0xFF))
        return Operand::absent();
    return this->object(keyOf(object));
}

Operand Evaluation::object(ObjectKey key)
{
    ++m_steps;
    const SnapshotEntry *found = entry(key);
    if (found != nullptr ? found->gap == SnapshotGap::Absent : isBeyondCount(key))
        return Operand::absent();
    if (!m_askedFor.contains(key))
        m_askedFor.append(key);
    const std::optional<double> number = found != nullptr ? numberOf(found->value) : std::nullopt;
    if (number)
        return Operand::of(*number);
    if (!m_missingObjects.contains(key))
        m_missingObjects.append(key);
    return Operand::unknown();
}

/*! Whether an entry was not asked for because the device does not have the object, or not so many sub-indices. */
bool Evaluation::isBeyondCount(ObjectKey key) const
{
    const SnapshotEntry *count = key.subIndex > 0 ? entry({key.index, 0}) : nullptr;
    if (count == nullptr || count->isGap())
        return false;
    return count->gap == SnapshotGap::Absent || key.subIndex > numberOf(count->value).value_or(key.subIndex);
}

ObjectNumbers Evaluation::allOf(const ObjectReference &object)
{
    ObjectKey key = keyOf(object);
    key.subIndex = 0;
    ObjectNumbers all;
    const Operand count = this->object(key);
    all.isUnknown = count.isUnknown();
    for (int sub = 1; sub <= 0xFF && sub <= count.number; ++sub) {
        key.subIndex = static_cast<quint8>(sub);
        const Operand number = this->object(key);
        all.isUnknown = all.isUnknown || number.isUnknown();
        if (!number.isNumber())
            continue;
        all.numbers.append(number.number);
        all.subIndices.append(key.subIndex);
    }
    return all;
}

Operand Evaluation::fact(Fact fact)
{
    ++m_steps;
    const FactValue value = m_vehicle.number(fact, m_position);
    for (const ObjectKey key : value.missing) {
        if (!m_missingObjects.contains(key))
            m_missingObjects.append(key);
    }
    if (value.operand.isUnknown() && value.missing.isEmpty())
        m_isFactMissing = true;
    return value.operand;
}

QString Evaluation::factText(Fact fact) const
{
    return m_vehicle.text(fact, m_position);
}

const SnapshotEntry *Evaluation::entry(ObjectKey key) const
{
    const SnapshotNode *node = m_vehicle.node(m_position);
    return node != nullptr ? node->find(key) : nullptr;
}

void Evaluation::clearNotes()
{
    m_askedFor.clear();
    m_missingObjects.clear();
    m_isFactMissing = false;
    m_isIncalculable = false;
}
