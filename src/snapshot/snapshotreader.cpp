// SPDX-License-Identifier: MIT
#include "snapshotreader.h"

#include <canopen/cobid.h>

#include <QPointer>

#include <algorithm>
#include <utility>

namespace {

using std::chrono::milliseconds;

constexpr int frameBits = 120;    // of an SDO frame on the wire
constexpr int exchangeFrames = 2; // that a question takes at least

// Sooner nothing is said of the time left: it would jump.
constexpr milliseconds shortestTime{1000};
constexpr int fewestAsked = 20;

} // namespace

/*! A node and its place among the others. */
struct SnapshotReader::Turn
{
    Turn(quint8 nodeId, SnapshotScope scope, const CanOpen::EdsFile &dataSheet)
        : id(nodeId)
        , reader(nodeId, scope, dataSheet)
    {
    }

    quint8 id;
    SnapshotNodeReader reader;
    CanOpen::SdoTicket ticket = 0; // of the question under way
    milliseconds asked{0};         // when
    milliseconds begun{0};         // with its first question
    bool isQueued = false;
};

SnapshotReader::SnapshotReader(CanOpen::SdoClient *client, Clock clock, QObject *parent)
    : QObject(parent)
    , m_client(client)
    , m_clock(std::move(clock))
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &SnapshotReader::look);
    connect(client, &CanOpen::SdoClient::finished, this, &SnapshotReader::handleOutcome);
}

SnapshotReader::~SnapshotReader() = default;

void SnapshotReader::setShare(int percent, int bitRate)
{
    m_share.setPercent(percent);
    m_share.setBitRate(bitRate);
}

void SnapshotReader::setEarlier(const Snapshot &earlier, milliseconds elapsed)
{
    m_earlier = earlier;
    m_offset = elapsed;
}

void SnapshotReader::start()
{
    m_isRunning = true;
    m_begun = m_clock();
    for (const SnapshotNode &node : qAsConst(m_earlier.nodes))
        addNode(node.id);
}

void SnapshotReader::addNode(quint8 nodeId)
{
    if (!m_isRunning || !CanOpen::isNodeId(nodeId) || turnOf(nodeId) != nullptr)
        return;
    auto turn = std::make_unique<Turn>(nodeId, m_scope, m_dataSheets.value(nodeId));
    if (const SnapshotNode *earlier = m_earlier.find(nodeId))
        turn->reader.resume(*earlier, m_earlier.scope);
    Turn &added = *turn;
    m_turns.emplace(nodeId, std::move(turn));
    enqueue(added);
    m_timer.start(0);
    emit nodeAdded(nodeId);
}

void SnapshotReader::allNodesAdded()
{
    m_areAllAdded = true;
    m_timer.start(0);
}

void SnapshotReader::setNmtState(quint8 nodeId, std::optional<CanOpen::NmtState> state)
{
    Turn *turn = turnOf(nodeId);
    if (turn == nullptr)
        return;
    turn->reader.setNmtState(state);
    enqueue(*turn);
    if (m_isRunning && !m_timer.isActive())
        m_timer.start(0);
}

void SnapshotReader::noteBootUp(quint8 nodeId)
{
    Turn *turn = turnOf(nodeId);
    if (turn == nullptr)
        return;
    // The vehicle may have been switched off since the earlier snapshot: what comes before the first answer is no restart.
    if (m_earlier.nodes.isEmpty() || turn->reader.hasAnswered())
        turn->reader.noteBootUp();
}

void SnapshotReader::setBusPresent(bool isPresent)
{
    m_isBusPresent = isPresent;
    if (m_isRunning && isPresent)
        m_timer.start(0);
}

void SnapshotReader::cancel()
{
    if (!m_isRunning)
        return;
    m_isCancelled = true;
    m_isRunning = false; // nothing more is asked, whatever comes
    for (const auto &[nodeId, turn] : m_turns) {
        if (turn->ticket == 0)
            continue;
        turn->reader.putBack();
        m_client->cancel(std::exchange(turn->ticket, 0));
    }
    m_asking = 0;
    finish();
}

QVector<SnapshotNode> SnapshotReader::nodes() const
{
    QVector<SnapshotNode> nodes;
    for (const auto &[nodeId, turn] : m_turns)
        nodes.append(turn->reader.node());
    return nodes;
}

QVector<quint8> SnapshotReader::replacedNodes() const
{
    return nodesThat(&SnapshotNodeReader::isReplaced);
}

QVector<quint8> SnapshotReader::unrecognizedNodes() const
{
    return nodesThat(&SnapshotNodeReader::isUnrecognized);
}

QVector<quint8> SnapshotReader::nodesThat(bool (SnapshotNodeReader::*hold)() const) const
{
    QVector<quint8> ids;
    for (const auto &[nodeId, turn] : m_turns) {
        if ((turn->reader.*hold)())
            ids.append(nodeId);
    }
    return ids;
}

QVector<quint8> SnapshotReader::strangerNodes() const
{
    QVector<quint8> ids;
    if (m_earlier.nodes.isEmpty())
        return ids;
    for (const auto &[nodeId, turn] : m_turns) {
        const bool isKnown = m_earlier.find(nodeId) != nullptr;
        if (isKnown && !turn->reader.isMissing())
            return {};
        if (!isKnown && turn->reader.hasAnswered())
            ids.append(nodeId);
    }
    return ids;
}

std::optional<SnapshotNode> SnapshotReader::node(quint8 nodeId) const
{
    const Turn *turn = turnOf(nodeId);
    return turn != nullptr ? std::optional<SnapshotNode>(turn->reader.node()) : std::nullopt;
}

SnapshotProgress SnapshotReader::progress() const
{
    SnapshotProgress progress;
    for (const auto &[nodeId, turn] : m_turns) {
        const SnapshotProgress part = progressOf(*turn);
        progress.nodes += part.nodes;
        progress.nodesDone += part.nodesDone;
        progress.asked += part.asked;
        progress.total += part.total;
        progress.values += part.values;
        progress.gaps += part.gaps;
        if (part.timeLeft)
            progress.timeLeft = std::max(*part.timeLeft, progress.timeLeft.value_or(milliseconds{0}));
    }
    return progress;
}

SnapshotProgress SnapshotReader::progress(quint8 nodeId) const
{
    const Turn *turn = turnOf(nodeId);
    return turn != nullptr ? progressOf(*turn) : SnapshotProgress();
}

SnapshotProgress SnapshotReader::progressOf(const Turn &turn) const
{
    SnapshotProgress progress;
    progress.nodes = 1;
    progress.nodesDone = turn.reader.isFinished() ? 1 : 0;
    progress.asked = turn.reader.askedCount();
    progress.total = progress.asked + (turn.reader.isFinished() ? 0 : turn.reader.pendingCount());
    progress.values = turn.reader.valueCount();
    progress.gaps = turn.reader.gapCount();
    const milliseconds elapsed = m_clock() - turn.begun;
    const bool isWaiting = turn.reader.isLeft() || turn.reader.isStopped() || turn.reader.isFinished();
    if (!isWaiting && elapsed >= shortestTime && progress.asked >= fewestAsked)
        progress.timeLeft = elapsed * turn.reader.pendingCount() / progress.asked;
    return progress;
}

SnapshotReader::Turn *SnapshotReader::turnOf(quint8 nodeId) const
{
    const auto turn = m_turns.find(nodeId);
    return turn != m_turns.end() ? turn->second.get() : nullptr;
}

void SnapshotReader::handleOutcome(const CanOpen::SdoOutcome &outcome)
{
    Turn *turn = turnOf(outcome.nodeId);
    if (turn == nullptr || turn->ticket == 0 || turn->ticket != outcome.ticket)
        return;
    turn->ticket = 0;
    --m_asking;
    spend(outcome.frames - exchangeFrames, m_clock());
    if (outcome.kind == CanOpen::SdoOutcome::Kind::Cancelled) {
        // The bus has gone, or somebody has ended what is not his. The caller has its say before the next question.
        turn->reader.putBack();
        enqueue(*turn);
        m_timer.start(0);
        return;
    }
    const QPointer<SnapshotReader> self(this);
    takeAnswer(*turn, outcome);
    if (self)
        look();
}

void SnapshotReader::takeAnswer(Turn &turn, const CanOpen::SdoOutcome &outcome)
{
    const milliseconds now = m_clock();
    turn.reader.take(outcome, (m_offset + now - m_begun).count(), (now - turn.asked).count());
    enqueue(turn);
    const QPointer<SnapshotReader> self(this);
    emit nodeChanged(turn.id);
    if (self && m_isRunning && turn.reader.isDone())
        finishNode(turn);
}

/*! Puts the node in line for its next question, if it has one. */
void SnapshotReader::enqueue(Turn &turn)
{
    if (turn.isQueued || !turn.reader.isReady())
        return;
    turn.isQueued = true;
    m_ready.push_back(&turn);
}

/*! Goes on with whatever is possible now. */
void SnapshotReader::look()
{
    if (!m_isRunning || !m_isBusPresent)
        return;
    askReady();
    if (m_areAllAdded && m_asking == 0 && m_ready.empty())
        endRound();
}

void SnapshotReader::askReady()
{
    while (!m_ready.empty()) {
        const milliseconds wait = m_share.wait(m_clock());
        if (wait.count() > 0) {
            m_timer.start(wait);
            return;
        }
        Turn &turn = *m_ready.front();
        m_ready.pop_front();
        turn.isQueued = false;
        if (turn.reader.isReady())
            ask(turn);
    }
}

void SnapshotReader::ask(Turn &turn)
{
    turn.asked = m_clock();
    if (turn.reader.askedCount() == 0)
        turn.begun = turn.asked;
    spend(exchangeFrames, turn.asked);
    const SnapshotQuestion question = turn.reader.ask();
    ++m_asking;
    turn.ticket
        = m_client->upload(turn.id, question.key, CanOpen::rawBytes, milliseconds{0}, turn.reader.protocol());
}

/*! Negative: an upload has cost less than was thought. */
void SnapshotReader::spend(int frames, milliseconds now)
{
    m_share.spend(frames * frameBits, now);
    m_spentBits += static_cast<quint64>(qint64(frames) * frameBits);
}

/*! Nobody has anything to ask: those that were left have another try, then it is over. */
void SnapshotReader::endRound()
{
    for (const auto &[nodeId, turn] : m_turns) {
        if (turn->reader.isFinished() || turn->reader.isSecondRound())
            continue;
        turn->reader.beginSecondRound();
        enqueue(*turn);
    }
    if (m_ready.empty())
        finish();
    else
        askReady();
}

void SnapshotReader::finishNode(Turn &turn)
{
    turn.reader.finish(m_isCancelled);
    emit nodeFinished(turn.id);
}

void SnapshotReader::finish()
{
    m_isRunning = false;
    m_timer.stop();
    const QPointer<SnapshotReader> self(this);
    for (const auto &[nodeId, turn] : m_turns) {
        if (turn->reader.isFinished())
            continue;
        finishNode(*turn);
        if (!self)
            return;
    }
    emit finished();
}
