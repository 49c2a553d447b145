// SPDX-License-Identifier: MIT
#include "readsnapshots.h"

#include "hostservices.h"

#include <canopen/cobid.h>
#include <trace/playback/playbackstate.h>

namespace {

using Phase = ReadObserver::Phase;

/*! Why an object has no value; \a result is empty when it was not asked to the end. */
SnapshotEntry gapOf(CanOpen::ObjectKey key, const std::optional<ReadResult> &result)
{
    using Kind = ReadResult::Kind;
    SnapshotEntry entry;
    entry.key = key;
    entry.gap = SnapshotGap::Cancelled;
    if (!result)
        return entry;
    entry.abortCode = result->code;
    switch (result->kind) {
    case Kind::NotThere:
        entry.gap = SnapshotGap::Absent;
        break;
    case Kind::Refused:
        entry.gap = SnapshotGap::Abort;
        break;
    case Kind::HeldUp:
    case Kind::MixedUp:
        entry.gap = SnapshotGap::Failed;
        break;
    case Kind::NoAnswer:
        entry.gap = SnapshotGap::NoAnswer;
        break;
    case Kind::Value:
    case Kind::NotSent:
        break;
    }
    return entry;
}

} // namespace

ReadSnapshots::ReadSnapshots(HostServices *services, const QString &program, QObject *parent)
    : QObject(parent)
    , m_services(services)
    , m_program(program)
{
    connect(&services->reads(), &ReadObserver::phaseChanged, this, &ReadSnapshots::handlePhase);
    connect(&services->reads(), &ReadObserver::readEnded, this, &ReadSnapshots::handleEnd);
    connect(&services->sdoClient(), &HostSdoClient::uploadStarted, this, &ReadSnapshots::handleRequest);
    connect(&services->sdoClient(), &HostSdoClient::resultReceived, this,
            [this](quint8 nodeId, quint16 index, quint8 subIndex, const QVariant &value) {
                handleValue(nodeId, {index, subIndex}, value);
            });
}

void ReadSnapshots::handlePhase(Phase phase)
{
    // A read begins with the search for nodes, or without one.
    const bool begins = phase == Phase::Detecting || (phase == Phase::Reading && m_phase != Phase::Detecting);
    if (begins && phase != m_phase) {
        m_nodes.clear();
        m_begun = m_clock();
        m_bitRate = m_services->bus().bitRate(); // which nobody knows any more when the bus is lost
        const std::optional<PlaybackState> played = PlaybackState::of(m_services->bus().device());
        m_played = played ? played->timeOfDay() : QDateTime();
    }
    m_phase = phase;
}

// The one more request of a run that was stopped belongs to no read.
void ReadSnapshots::handleRequest(quint8 nodeId, CanOpen::ObjectKey key)
{
    if (m_services->reads().phase() != Phase::Reading || !CanOpen::isNodeId(nodeId))
        return;
    Answers &answers = m_nodes[nodeId];
    if (!answers.contains(key)) // one that is asked for again keeps its value
        answers.insert(key, Answer());
}

void ReadSnapshots::handleValue(quint8 nodeId, CanOpen::ObjectKey key, const QVariant &value)
{
    const auto node = m_nodes.find(nodeId);
    if (node == m_nodes.end())
        return;
    const auto answer = node->find(key);
    if (answer != node->end())
        *answer = {value, now()};
}

void ReadSnapshots::handleEnd(const ReadSummary &summary)
{
    const Snapshot snapshot = makeSnapshot(summary);
    if (snapshot.valueCount() > 0)
        emit snapshotReady(snapshot);
}

Snapshot ReadSnapshots::makeSnapshot(const ReadSummary &summary) const
{
    Snapshot snapshot;
    snapshot.program = m_program;
    snapshot.time = m_played.isValid() ? m_played : m_begun.toOffsetFromUtc(m_begun.offsetFromUtc());
    snapshot.duration = qMax(qint64(0), now());
    snapshot.bus = m_services->bus().settings().address.toString();
    snapshot.bitRate = m_bitRate;
    snapshot.scope = SnapshotScope::Imported;
    for (quint8 nodeId = CanOpen::firstNodeId; nodeId <= CanOpen::lastNodeId; ++nodeId) {
        if (m_nodes.contains(nodeId) || m_services->bus().heartbeats().state(nodeId))
            snapshot.nodes.append(makeNode(nodeId, summary));
    }
    return snapshot;
}

SnapshotNode ReadSnapshots::makeNode(quint8 nodeId, const ReadSummary &summary) const
{
    SnapshotNode node;
    node.id = nodeId;
    node.nmtState = m_services->bus().heartbeats().state(nodeId);
    node.end = endOf(nodeId, summary);
    const Answers answers = m_nodes.value(nodeId);
    for (auto answer = answers.cbegin(); answer != answers.cend(); ++answer) {
        SnapshotEntry entry;
        entry.key = answer.key();
        entry.value = answer->value;
        if (!entry.value.isValid())
            entry = gapOf(answer.key(), summary.record.result(nodeId, answer.key()));
        entry.ms = answer->value.isValid() ? qMax(qint64(0), answer->ms) : 0;
        node.entries.append(entry);
    }
    return node;
}

SnapshotEnd ReadSnapshots::endOf(quint8 nodeId, const ReadSummary &summary) const
{
    if (!m_nodes.contains(nodeId)) // heard, and not asked any more
        return SnapshotEnd::Cancelled;
    if (summary.end == ReadSummary::End::Complete || nodeId != summary.nodeId)
        return SnapshotEnd::Complete;
    if (summary.end != ReadSummary::End::NoAnswer)
        return SnapshotEnd::Cancelled;
    return m_services->bus().heartbeats().state(nodeId) == CanOpen::NmtState::Stopped ? SnapshotEnd::Stopped
                                                                                      : SnapshotEnd::Silent;
}
