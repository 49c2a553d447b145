// SPDX-License-Identifier: MIT
#include "batteryinquiry.h"

#include "batteryobjects.h"

#include <live/values/pdosource.h>

#include <algorithm>

namespace {

constexpr int lastCell = 254; // highest sub-index of an array (CiA 301)

/*! Whether nobody is there to be asked any further. */
bool isEnd(const SnapshotEntry &entry)
{
    return entry.gap == SnapshotGap::NoAnswer || entry.gap == SnapshotGap::Stopped
           || entry.gap == SnapshotGap::Cancelled;
}

} // namespace

BatteryInquiry::BatteryInquiry(BusConnection *bus, QObject *parent)
    : QObject(parent)
    , m_questions(bus)
{
    connect(&m_questions, &PacedQuestions::answered, this, &BatteryInquiry::handleAnswer);
}

void BatteryInquiry::start(quint8 nodeId)
{
    cancel();
    m_answer = BatteryAnswer();
    m_answer.nodeId = nodeId;
    for (int index = Object::firstCellVoltages; index <= Object::lastCellVoltages; ++index)
        ask({static_cast<quint16>(index), 0});
}

void BatteryInquiry::cancel()
{
    m_questions.cancel();
    m_open = 0;
}

void BatteryInquiry::ask(CanOpen::ObjectKey key)
{
    ++m_open;
    m_questions.ask(m_answer.nodeId, key);
}

void BatteryInquiry::handleAnswer(const CanOpen::SdoOutcome &outcome)
{
    const bool isCount = BatteryObjects::areCells(outcome.key.index);
    const SnapshotEntry entry
        = m_questions.entryOf(outcome, isCount ? QVector<CanOpen::DataType>{CanOpen::DataType::Unsigned8}
                                               : PdoSource::typesOf(outcome.key, std::nullopt));
    --m_open;
    isCount ? takeCount(entry) : takeOther(entry);
    if (isEnd(entry)) {
        cancel();
    } else if (isCount && m_open == 0 && !m_answer.cells.isEmpty()) {
        for (const CanOpen::ObjectKey other : BatteryObjects::others)
            ask(other);
    }
    if (m_open > 0)
        return;
    const BatteryAnswer answer = m_answer;
    emit finished(answer);
}

void BatteryInquiry::takeCount(const SnapshotEntry &entry)
{
    noteTrouble(entry);
    if (!entry.hasValue())
        return;
    const int count = std::min(static_cast<int>(entry.value.toUInt()), lastCell);
    m_answer.told += count;
    for (int cell = 1; cell <= count && m_answer.cells.size() < mostCells; ++cell)
        m_answer.cells.append({entry.key.index, static_cast<quint8>(cell)});
}

void BatteryInquiry::takeOther(const SnapshotEntry &entry)
{
    noteTrouble(entry);
    if (entry.gap != SnapshotGap::Absent)
        m_answer.others.append(entry.key);
}

void BatteryInquiry::noteTrouble(const SnapshotEntry &entry)
{
    if (!entry.hasValue() && entry.gap != SnapshotGap::Absent && !m_answer.trouble)
        m_answer.trouble = entry;
}
