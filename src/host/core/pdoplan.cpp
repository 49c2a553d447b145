// SPDX-License-Identifier: MIT
#include "pdoplan.h"

#include <canopen/cobid.h>
#include <canopen/heartbeat.h>
#include <canopen/pdomapping.h>
#include <canopen/pdoparameter.h>

#include <algorithm>

namespace {

enum Sub : quint8 { CobId = 1, TransmissionType = 2, EventTimer = 5 };

/*! Whether nobody is there to be asked any further. */
bool isEnd(const SnapshotEntry &entry)
{
    return entry.gap == SnapshotGap::NoAnswer || entry.gap == SnapshotGap::Stopped
           || entry.gap == SnapshotGap::Cancelled;
}

} // namespace

void PdoPlan::take(const SnapshotEntry &entry)
{
    if (!m_question)
        return;
    if (isEnd(entry)) {
        m_end = entry;
        m_question.reset();
        return;
    }
    const CanOpen::ObjectKey key = *m_question;
    if (entry.hasValue())
        m_node.insert(entry);
    else
        noteRefusal(entry);
    if (key.index == CanOpen::producerHeartbeatTime)
        m_question = CanOpen::ObjectKey{parameter(), CobId};
    else if (key == CanOpen::ObjectKey{parameter(), CobId})
        takeCobId(entry);
    else if (key == CanOpen::ObjectKey{parameter(), TransmissionType})
        m_question = CanOpen::ObjectKey{parameter(), EventTimer};
    else if (key == CanOpen::ObjectKey{parameter(), EventTimer})
        m_question = CanOpen::ObjectKey{mapping(), 0};
    else if (key.subIndex == 0)
        takeCount(entry);
    else
        takeMapped(entry);
}

quint16 PdoPlan::parameter() const
{
    return static_cast<quint16>(CanOpen::firstTransmitPdo + m_number - 1);
}

quint16 PdoPlan::mapping() const
{
    return static_cast<quint16>(CanOpen::firstTransmitMapping + m_number - 1);
}

void PdoPlan::takeCobId(const SnapshotEntry &entry)
{
    const bool isUsed = entry.hasValue() && (entry.value.toUInt() & CanOpen::cobIdBit31) == 0;
    if (isUsed)
        m_question = CanOpen::ObjectKey{parameter(), TransmissionType};
    else
        leavePdo(entry.hasValue());
}

void PdoPlan::takeCount(const SnapshotEntry &entry)
{
    m_count = entry.hasValue() ? entry.value.toUInt() : 0;
    m_bits = 0;
    if (m_count == 0 || m_count > static_cast<quint32>(CanOpen::mostMappedObjects))
        leavePdo(true);
    else
        m_question = CanOpen::ObjectKey{mapping(), 1};
}

void PdoPlan::takeMapped(const SnapshotEntry &entry)
{
    const int bits = entry.hasValue() ? CanOpen::PdoMappingEntry::fromValue(entry.value.toUInt()).bits : 0;
    m_bits += bits;
    const bool isKnown = entry.hasValue() || entry.gap == SnapshotGap::Absent;
    if (!isKnown) { // so that nobody takes the objects that follow for missing ones
        const auto isCount = [this](const SnapshotEntry &other) {
            return other.key == CanOpen::ObjectKey{mapping(), 0};
        };
        m_node.entries.erase(std::remove_if(m_node.entries.begin(), m_node.entries.end(), isCount),
                             m_node.entries.end());
    }
    const bool goesOn = bits > 0 && m_bits <= CanOpen::mostPdoBits && entry.key.subIndex < m_count;
    if (goesOn)
        ++m_question->subIndex;
    else
        leavePdo(true);
}

void PdoPlan::leavePdo(bool isThere)
{
    m_absent = isThere ? 0 : m_absent + 1;
    ++m_number;
    if (m_absent == mostAbsent) {
        m_absent = 0;
        const int block = (m_number - 2) / blockLength; // of the last one that was not there
        m_number = (block + 1) * blockLength + 1;
    }
    if (m_number <= CanOpen::mostPdos)
        m_question = CanOpen::ObjectKey{parameter(), CobId};
    else
        m_question.reset();
}

void PdoPlan::noteRefusal(const SnapshotEntry &entry)
{
    const bool isOfPdo = entry.key.index != CanOpen::producerHeartbeatTime;
    const bool isNeeded = entry.key.index >= CanOpen::firstTransmitMapping || entry.key.subIndex == CobId;
    if (entry.gap != SnapshotGap::Absent && isOfPdo && isNeeded && !m_refusal)
        m_refusal = entry;
}
