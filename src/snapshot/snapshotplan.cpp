// SPDX-License-Identifier: MIT
#include "snapshotplan.h"

#include "objecttypes.h"

#include <canopen/sdoabort.h>
#include <interpreter/objectdescriptions.h>
#include <interpreter/objects.h>
#include <interpreter/readlist.h>

#include <algorithm>

namespace {

using CanOpen::DataType;

// What tells who the device is; asked before everything else.
constexpr quint16 firstObjects[] = {Object::deviceType, Object::identity, 0x1008, 0x1009, 0x100A};

// Communication objects that the object table does not have.
constexpr quint16 furtherObjects[] = {0x1014};

constexpr quint16 firstObjectIndex = 0x1000; // below are data types

/*! The PDOs of one direction (CiA 301). */
struct PdoRange
{
    quint16 communication; // of the first one
    quint16 mapping;
};
constexpr PdoRange pdoRanges[] = {{0x1400, 0x1600}, {0x1800, 0x1A00}};
constexpr int pdoCount = 512;
constexpr quint8 mostMapped = 64; // objects; a higher number marks a multiplexed PDO, which has no such list

constexpr quint8 highestSubIndex = 254; // of an array
constexpr quint8 lastProbe = 2;

constexpr int longText = 28; // bytes; from four segments on blocks take fewer frames

/*! The object that a row of the object table means: some rows have lost the last digit of their index, an E. */
quint16 realIndex(quint16 index)
{
    return index < firstObjectIndex ? static_cast<quint16>(index << 4 | 0xE) : index;
}

using SubIndices = QHash<quint16, QVector<quint8>>;

SubIndices subIndicesOfReadList()
{
    SubIndices subIndices;
    for (const ReadGroup group :
         {ReadGroup::General, ReadGroup::Group2, ReadGroup::Group3, ReadGroup::Group4, ReadGroup::Group5}) {
        const QList<ReadEntry> entries = readListGroup(group);
        for (const ReadEntry &entry : entries) {
            if (entry.subIndex > 0 && !subIndices[entry.index].contains(entry.subIndex))
                subIndices[entry.index].append(entry.subIndex);
        }
    }
    return subIndices;
}

const SubIndices &knownSubIndices()
{
    static const SubIndices subIndices = subIndicesOfReadList();
    return subIndices;
}

quint32 codeOf(CanOpen::ObjectKey key)
{
    return quint32(key.index) << 8 | key.subIndex;
}

const PdoRange *findPdo(quint16 communication)
{
    for (const PdoRange &range : pdoRanges) {
        if (communication >= range.communication && communication < range.communication + pdoCount)
            return &range;
    }
    return nullptr;
}

bool isMapping(quint16 index)
{
    return std::any_of(std::begin(pdoRanges), std::end(pdoRanges), [index](const PdoRange &range) {
        return index >= range.mapping && index < range.mapping + pdoCount;
    });
}

bool isRefused(const SnapshotEntry &entry)
{
    return entry.gap == SnapshotGap::Absent || entry.gap == SnapshotGap::Abort;
}

/*! The byte at sub-index 0; empty when it is something longer. */
std::optional<quint8> countOf(const SnapshotEntry &entry)
{
    const bool isByte
        = entry.raw.size() == 1 || (entry.type == DataType::OctetString && entry.raw.size() == 4);
    return entry.hasValue() && isByte ? std::optional<quint8>(static_cast<quint8>(entry.raw.at(0)))
                                      : std::nullopt;
}

} // namespace

SnapshotPlan::SnapshotPlan(SnapshotScope scope, const CanOpen::ObjectDictionary &dataSheet)
    : m_isFull(scope == SnapshotScope::Full)
    , m_dataSheet(dataSheet)
{
    for (const quint16 index : firstObjects)
        add({index, 0});
    if (m_isFull)
        planFull();
    else
        planQuick();
}

void SnapshotPlan::planQuick()
{
    for (const ReadGroup group :
         {ReadGroup::General, ReadGroup::Group2, ReadGroup::Group3, ReadGroup::Group4, ReadGroup::Group5}) {
        const QList<ReadEntry> entries = readListGroup(group);
        for (const ReadEntry &entry : entries)
            add({entry.index, entry.subIndex});
    }
}

void SnapshotPlan::planFull()
{
    const QVector<quint16> indices = objectDescriptions().indices();
    for (const quint16 index : indices) {
        if (index > 0) // the header's
            add({realIndex(index), 0});
    }
    for (const quint16 index : furtherObjects)
        add({index, 0});
    const QVector<CanOpen::ObjectKey> listed = m_dataSheet.keys();
    for (const CanOpen::ObjectKey key : listed) {
        if (key.index >= firstObjectIndex)
            add(key);
    }
    for (const PdoRange &range : pdoRanges) {
        for (int number = 0; number < pdoCount; ++number)
            add({static_cast<quint16>(range.communication + number), 0}, true);
    }
}

SnapshotQuestion SnapshotPlan::take()
{
    const SnapshotQuestion question = m_pending.front();
    m_pending.pop_front();
    return question;
}

bool SnapshotPlan::holdsOnly(SnapshotGap gap) const
{
    return std::all_of(m_pending.begin(), m_pending.end(),
                       [gap](const SnapshotQuestion &question) { return question.gap == gap; });
}

void SnapshotPlan::reduceTo(const QVector<CanOpen::ObjectKey> &keys)
{
    const auto isUnwanted
        = [&keys](const SnapshotQuestion &question) { return !keys.contains(question.key); };
    m_pending.erase(std::remove_if(m_pending.begin(), m_pending.end(), isUnwanted), m_pending.end());
    for (SnapshotQuestion &question : m_pending)
        question.isProbe = false;
    for (const CanOpen::ObjectKey key : keys)
        add(key);
}

QVector<DataType> SnapshotPlan::typesOf(CanOpen::ObjectKey key) const
{
    const CanOpen::ObjectEntry *listed = m_dataSheet.find(key);
    return listed != nullptr ? QVector<DataType>{listed->type} : ObjectTypes::known(key);
}

CanOpen::SdoProtocol SnapshotPlan::protocolOf(CanOpen::ObjectKey key) const
{
    const CanOpen::ObjectEntry *listed = m_dataSheet.find(key);
    const bool isLong
        = listed != nullptr && (listed->type == DataType::Domain || listed->data.size() >= longText);
    return isLong ? CanOpen::SdoProtocol::Block : CanOpen::SdoProtocol::BlockWhenLong;
}

QVector<SnapshotEntry> SnapshotPlan::note(const SnapshotQuestion &question, const SnapshotEntry &entry)
{
    const bool isSubIndex0 = entry.key.subIndex == 0;
    if (m_isFull && isSubIndex0)
        noteSubIndex0(entry);
    if (question.isProbe && !isSubIndex0)
        return noteProbe(entry);
    if (question.isProbe && isRefused(entry))
        return {};
    return {entry};
}

void SnapshotPlan::add(CanOpen::ObjectKey key, bool isProbe)
{
    if (isNew(key))
        m_pending.push_back({key, isProbe});
}

void SnapshotPlan::addFirst(CanOpen::ObjectKey key, bool isProbe)
{
    if (isNew(key))
        m_pending.push_front({key, isProbe});
}

/*! Whether the entry is to be asked for and was never planned; it is from now on. */
bool SnapshotPlan::isNew(CanOpen::ObjectKey key)
{
    const CanOpen::ObjectEntry *listed = m_dataSheet.find(key);
    if (m_known.contains(codeOf(key)) || (listed != nullptr && listed->access == CanOpen::Access::WriteOnly))
        return false;
    m_known.insert(codeOf(key));
    return true;
}

/*! Whether it is known that the object has more than sub-index 0. */
bool SnapshotPlan::isArray(quint16 index) const
{
    return !ObjectTypes::known({index, 1}).isEmpty() || knownSubIndices().contains(index)
           || m_dataSheet.find({index, 1}) != nullptr;
}

void SnapshotPlan::noteSubIndex0(const SnapshotEntry &entry)
{
    const quint16 index = entry.key.index;
    const bool hasObject = entry.gap != SnapshotGap::Absent
                           || entry.abortCode != static_cast<quint32>(CanOpen::SdoAbort::ObjectDoesNotExist);
    if (const std::optional<quint8> count = countOf(entry))
        noteCount(index, *count);
    else if (!entry.hasValue() && hasObject && entry.gap != SnapshotGap::NoAnswer)
        tryKnownSubIndices(index);
    const PdoRange *pdo = findPdo(index);
    if (pdo != nullptr && entry.hasValue())
        add({static_cast<quint16>(index - pdo->communication + pdo->mapping), 0});
}

void SnapshotPlan::noteCount(quint16 index, quint8 count)
{
    if (count == 0 || (isMapping(index) && count > mostMapped))
        return;
    const quint8 highest = std::min(count, highestSubIndex);
    if (isArray(index)) {
        askRange(index, 1, highest);
        return;
    }
    m_candidates[index].highest = highest;
    addFirst({index, 1}, true);
}

void SnapshotPlan::askRange(quint16 index, quint8 first, quint8 last)
{
    for (int subIndex = last; subIndex >= first; --subIndex)
        addFirst({index, static_cast<quint8>(subIndex)});
}

/*! Sub-index 0 does not tell; what the overview would ask for may be there all the same. */
void SnapshotPlan::tryKnownSubIndices(quint16 index)
{
    const QVector<quint8> subIndices = knownSubIndices().value(index);
    for (auto subIndex = subIndices.crbegin(); subIndex != subIndices.crend(); ++subIndex)
        addFirst({index, *subIndex}, true);
}

QVector<SnapshotEntry> SnapshotPlan::noteProbe(const SnapshotEntry &entry)
{
    if (isRefused(entry))
        return noteHole(entry);
    if (!entry.hasValue())
        return {entry};
    const Candidate candidate = m_candidates.take(entry.key.index);
    if (candidate.highest > entry.key.subIndex)
        askRange(entry.key.index, static_cast<quint8>(entry.key.subIndex + 1), candidate.highest);
    return candidate.holes + QVector<SnapshotEntry>{entry};
}

QVector<SnapshotEntry> SnapshotPlan::noteHole(const SnapshotEntry &entry)
{
    const auto candidate = m_candidates.find(entry.key.index);
    if (candidate == m_candidates.end())
        return {};
    candidate->holes.append(entry);
    if (entry.key.subIndex < std::min(candidate->highest, lastProbe))
        addFirst({entry.key.index, static_cast<quint8>(entry.key.subIndex + 1)}, true);
    else
        m_candidates.erase(candidate);
    return {};
}
