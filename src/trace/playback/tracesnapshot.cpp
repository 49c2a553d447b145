// SPDX-License-Identifier: MIT
#include "tracesnapshot.h"

#include "recordedanswers.h"
#include "tracedate.h"

#include <canopen/heartbeat.h>
#include <canopen/sdoabort.h>
#include <canopen/sdooutcome.h>
#include <snapshot/objecttypes.h>
#include <snapshot/snapshotanswer.h>
#include <system/amounts.h>

#include <QCanBusFrame>

#include <algorithm>

namespace {

using CanOpen::ObjectKey;
using CanOpen::SdoAbort;
using CanOpen::SdoOutcome;
using Outcome = SdoTransfer::Outcome;

// What is longer is of a clock that was set; the longest that a snapshot's file may say, in ms.
constexpr quint64 longestTrace = Q_UINT64_C(365) * 24 * 3600 * 1000;

/*! What the client that read made of it; empty when it did not come to its end because the client did not want it. */
std::optional<SdoOutcome::Kind> outcomeKindOf(const SdoTransfer &transfer)
{
    switch (transfer.outcome) {
    case Outcome::Done:
        return transfer.hasValue() ? SdoOutcome::Kind::Value : SdoOutcome::Kind::Error;
    case Outcome::AbortedByServer:
        return SdoOutcome::Kind::Abort;
    case Outcome::NoAnswer:
        return SdoOutcome::Kind::Timeout;
    case Outcome::AbortedByClient:
    case Outcome::Broken:
        return SdoOutcome::Kind::Error;
    case Outcome::Unfinished:
        break;
    }
    return std::nullopt;
}

/*! Why a transfer came to no value, as a client of ours would say it. */
quint32 failureOf(const SdoTransfer &transfer)
{
    if (transfer.abortCode != 0)
        return transfer.abortCode;
    SdoAbort code = SdoAbort::GeneralError;
    if (transfer.has(SdoTransfer::WrongToggle))
        code = SdoAbort::ToggleBitNotAlternated;
    else if (transfer.has(SdoTransfer::WrongChecksum))
        code = SdoAbort::CrcError;
    else if (transfer.has(SdoTransfer::SizeMismatch))
        code = SdoAbort::LengthMismatch;
    else if (transfer.has(SdoTransfer::LostSegment))
        code = SdoAbort::InvalidSequenceNumber;
    else if (transfer.has(SdoTransfer::Cut))
        code = SdoAbort::OutOfMemory;
    return static_cast<quint32>(code);
}

/*! In ms; no time at all when the clock was set meanwhile. */
qint64 answerTime(const SdoTransfer &transfer)
{
    const bool isForward = transfer.end > transfer.begin;
    const quint64 time = static_cast<quint64>(transfer.end) - static_cast<quint64>(transfer.begin);
    return isForward && time <= SdoTransfers::longestWait
               ? static_cast<qint64>(time) / Microseconds::ofMillisecond
               : 0;
}

/*! How much an entry says: the one that says more stays. */
int weightOf(const SnapshotEntry &entry)
{
    switch (entry.gap) {
    case SnapshotGap::None:
        return 3;
    case SnapshotGap::Absent:
    case SnapshotGap::Abort:
    case SnapshotGap::WrongSize:
        return 2;
    default:
        return 1;
    }
}

std::optional<CanOpen::Heartbeat> heartbeatIn(const TraceFrame &frame)
{
    const bool isOne = !frame.isExtended() && !frame.isRemote() && !frame.isError()
                       && CanOpen::nodeIdOf(frame.id, CanOpen::errorControlBase) != 0;
    return isOne ? CanOpen::parseHeartbeatFrame(frame.toCanBusFrame()) : std::nullopt;
}

} // namespace

void TraceSnapshot::handle(const TraceFrame &frame)
{
    if (m_position == 0)
        m_first = m_latest = frame.time;
    m_latest = std::max(m_latest, frame.time);
    noteSpeaker(frame);
    m_transfers.handle(frame, m_position++);
    if (m_transfers.hasFinished())
        takeTransfers();
}

void TraceSnapshot::noteSpeaker(const TraceFrame &frame)
{
    const quint8 nodeId = speakerOf(frame);
    if (nodeId == 0)
        return;
    Node &node = m_nodes[nodeId];
    node.isHeard = true;
    const std::optional<CanOpen::Heartbeat> heartbeat = heartbeatIn(frame);
    if (!heartbeat)
        return;
    node.node.nmtState = heartbeat->state;
    node.node.bootUps += heartbeat->state == CanOpen::NmtState::BootUp ? 1 : 0;
}

void TraceSnapshot::takeTransfers()
{
    for (const SdoTransfer &transfer : m_transfers.takeFinished())
        note(transfer);
}

void TraceSnapshot::note(const SdoTransfer &transfer)
{
    if (!transfer.isUpload || !outcomeKindOf(transfer))
        return;
    ++m_uploads;
    Node &node = m_nodes[transfer.nodeId];
    node.wasAsked = true;
    node.hasAnswered = node.hasAnswered || transfer.outcome != Outcome::NoAnswer;
    if (transfer.protocol == SdoTransfer::Protocol::Expedited && transfer.outcome == Outcome::Done)
        node.times.add(answerTime(transfer));
    const SnapshotEntry entry = entryOf(transfer);
    const SnapshotEntry *known = node.node.find(entry.key);
    if (known == nullptr || weightOf(entry) >= weightOf(*known))
        node.node.insert(entry);
}

SnapshotEntry TraceSnapshot::entryOf(const SdoTransfer &transfer) const
{
    SdoOutcome outcome;
    outcome.kind = *outcomeKindOf(transfer);
    outcome.nodeId = transfer.nodeId;
    outcome.key = transfer.object;
    outcome.raw = transfer.data;
    outcome.isSizeUnknown = transfer.isSizeUnknown;
    outcome.code = outcome.kind == SdoOutcome::Kind::Error ? failureOf(transfer) : transfer.abortCode;
    SnapshotEntry entry = SnapshotAnswer::toEntry(outcome, typesOf(transfer.nodeId, transfer.object));
    entry.ms = sinceBegin(transfer.end);
    return entry;
}

QVector<CanOpen::DataType> TraceSnapshot::typesOf(quint8 nodeId, ObjectKey key) const
{
    const auto sheet = m_sheets.constFind(nodeId);
    const CanOpen::ObjectEntry *entry = sheet != m_sheets.cend() ? sheet->dictionary.find(key) : nullptr;
    return entry != nullptr ? QVector<CanOpen::DataType>{entry->type} : ObjectTypes::known(key);
}

/*! In ms; times may run backward, and be of any size. */
qint64 TraceSnapshot::sinceBegin(qint64 time) const
{
    if (time <= m_first)
        return 0;
    const quint64 since
        = (static_cast<quint64>(time) - static_cast<quint64>(m_first)) / Microseconds::ofMillisecond;
    return static_cast<qint64>(std::min<quint64>(since, longestTrace));
}

SnapshotEnd TraceSnapshot::endOf(const Node &node)
{
    if (!node.wasAsked)
        return SnapshotEnd::Cancelled;
    return node.hasAnswered ? SnapshotEnd::Complete : SnapshotEnd::Silent;
}

Snapshot TraceSnapshot::finish(const TraceHead &head, const QDateTime &end)
{
    m_transfers.finish();
    takeTransfers();
    Snapshot snapshot;
    snapshot.scope = SnapshotScope::Recorded;
    snapshot.duration = sinceBegin(m_latest);
    snapshot.time = head.hasTimeOfDay ? traceDate(m_first) : QDateTime();
    if (!snapshot.time.isValid())
        snapshot.time = end.addMSecs(-snapshot.duration);
    for (auto &[nodeId, node] : m_nodes) {
        // Who asks every ID finds no node where nobody has ever said anything.
        if (!node.isHeard)
            continue;
        node.node.id = nodeId;
        node.node.end = endOf(node);
        node.node.medianAnswer = node.times.median();
        node.node.longestAnswer = node.times.longest();
        node.node.dataSheet = m_sheets.value(nodeId).productName;
        snapshot.nodes.append(node.node);
    }
    return snapshot;
}
