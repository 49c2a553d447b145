// SPDX-License-Identifier: MIT
#include "sdoclient.h"

#include "sdoabort.h"
#include "sdoframe.h"

#include <QPointer>
#include <QQueue>
#include <QTimerEvent>

#include <algorithm>
#include <limits>
#include <utility>

namespace CanOpen {

using std::chrono::milliseconds;

namespace {

// The wait doubles with every repeat, up to this many times.
constexpr int mostDoublings = 10;

// The first wait for a node known as slow may take this part of the longest time, so that repeats still fit
// in.
constexpr int slowNodeShare = 8;

// A timer that fires this much too late (ms) shows that the event loop was held up, and frames with it.
constexpr qint64 heldUpLimit = 20;
constexpr qint64 graceTime = 10; // ms

milliseconds steadyClock()
{
    using std::chrono::steady_clock;
    return std::chrono::duration_cast<milliseconds>(steady_clock::now().time_since_epoch());
}

SdoPatience withinRange(SdoPatience patience)
{
    patience.timeout = std::max(patience.timeout, milliseconds{1});
    patience.longest = std::max(patience.longest, milliseconds{1});
    patience.repeats = std::max(patience.repeats, 0);
    return patience;
}

} // namespace

struct SdoClient::Node
{
    struct Request
    {
        SdoTicket ticket;
        ObjectKey key;
        DataType type;
        milliseconds timeout;
    };

    quint8 id = 0;
    SdoUpload upload;
    SdoTicket ticket = 0; // of the upload under way
    QQueue<Request> queue;
    std::optional<SdoPatience> patience; // the default when empty
    // Times in ms of the client's clock
    qint64 firstWait = 0;
    qint64 started = 0;
    qint64 deadline = 0;   // of the present wait
    qint64 end = 0;        // of the whole upload
    qint64 answerTime = 0; // that the last first answer took
    bool answerTimed = false;
};

SdoClient::SdoClient(Sender sender, QObject *parent)
    : SdoClient(std::move(sender), steadyClock, parent)
{
}

SdoClient::SdoClient(Sender sender, Clock clock, QObject *parent)
    : QObject(parent)
    , m_sender(std::move(sender))
    , m_clock(std::move(clock))
{
}

SdoClient::~SdoClient() = default;

void SdoClient::setDefaultPatience(const SdoPatience &patience)
{
    m_defaultPatience = withinRange(patience);
}

void SdoClient::setPatience(quint8 nodeId, const SdoPatience &patience)
{
    if (isNodeId(nodeId))
        nodeFor(nodeId).patience = withinRange(patience);
}

SdoTicket SdoClient::upload(quint8 nodeId, ObjectKey key, DataType type, milliseconds timeout)
{
    ++m_pending;
    const SdoTicket ticket = ++m_lastTicket;
    if (!isNodeId(nodeId)) {
        SdoOutcome outcome;
        outcome.ticket = ticket;
        outcome.kind = SdoOutcome::Kind::Error;
        outcome.nodeId = nodeId;
        outcome.key = key;
        outcome.code = static_cast<quint32>(SdoAbort::GeneralError);
        deliverLater(outcome);
        return ticket;
    }
    Node &node = nodeFor(nodeId);
    node.queue.enqueue({ticket, key, type, timeout});
    if (!node.upload.isActive())
        startNext(node);
    return ticket;
}

void SdoClient::cancelAll()
{
    QVector<SdoOutcome> outcomes = std::exchange(m_posted, {});
    for (const std::unique_ptr<Node> &node : m_nodes) {
        if (!node)
            continue;
        SdoOutcome outcome;
        outcome.kind = SdoOutcome::Kind::Cancelled;
        outcome.nodeId = node->id;
        if (node->upload.isActive()) {
            outcome.ticket = node->ticket;
            outcome.key = node->upload.outcome().key;
            outcome.repeats = node->upload.attempt();
            outcomes.append(outcome);
            node->upload.forget();
        }
        outcome.repeats = 0;
        while (!node->queue.isEmpty()) {
            const Node::Request request = node->queue.dequeue();
            outcome.ticket = request.ticket;
            outcome.key = request.key;
            outcomes.append(outcome);
        }
    }
    m_timer.stop();

    const QPointer<SdoClient> self(this);
    for (const SdoOutcome &outcome : qAsConst(outcomes)) {
        deliver(outcome);
        if (!self)
            return;
    }
}

bool SdoClient::isBusy() const
{
    return m_pending > 0;
}

void SdoClient::handleFrame(const QCanBusFrame &frame)
{
    const quint8 answering = nodeIdOf(frame.frameId(), sdoResponseBase);
    const quint8 asked = nodeIdOf(frame.frameId(), sdoRequestBase);
    if ((answering == 0 && asked == 0) || !isSdoFrame(frame))
        return;
    if (m_sending || !m_heldFrames.isEmpty()) {
        // The sender has brought the answer before it returned. upload() may be on the stack, so it has to
        // wait.
        if (m_heldFrames.isEmpty())
            QMetaObject::invokeMethod(this, &SdoClient::takeHeldFrames, Qt::QueuedConnection);
        m_heldFrames.append(frame);
        return;
    }

    if (answering != 0) {
        if (Node *node = m_nodes[answering].get()) {
            node->upload.setTime(now());
            take(*node, node->upload.takeResponse(frame.payload()));
        }
    } else if (!frame.hasLocalEcho()) { // with an echo it is our own request
        if (Node *node = m_nodes[asked].get()) {
            node->upload.setTime(now());
            take(*node, node->upload.takeForeignRequest(frame.payload()));
        }
    }
}

void SdoClient::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_timer.timerId()) {
        QObject::timerEvent(event);
        return;
    }
    m_timer.stop();
    if (now() - m_timerDue > heldUpLimit && !m_graceGiven) {
        m_graceGiven = true;
        armTimer(now() + graceTime);
        return;
    }
    m_graceGiven = false;
    checkDeadlines();
}

SdoClient::Node &SdoClient::nodeFor(quint8 nodeId)
{
    std::unique_ptr<Node> &node = m_nodes[nodeId];
    if (!node) {
        node = std::make_unique<Node>();
        node->id = nodeId;
    }
    return *node;
}

void SdoClient::startNext(Node &node)
{
    if (node.queue.isEmpty())
        return;
    const Node::Request request = node.queue.dequeue();
    node.ticket = request.ticket;
    const SdoPatience patience = node.patience.value_or(m_defaultPatience);
    const qint64 longest = patience.longest.count();
    const qint64 needed = std::min(2 * node.answerTime, longest / slowNodeShare);
    node.firstWait = std::max({qint64(patience.timeout.count()), qint64(request.timeout.count()), needed});
    node.started = now();
    node.end = node.started + longest;
    node.answerTimed = false;
    node.upload.setTime(node.started);
    node.upload.setAnswerTime(node.answerTime);
    perform(node, node.upload.start(request.key, request.type, patience.repeats));
}

// As perform(), and delivers the outcome if there is one. Nothing may follow it: a slot may have deleted the
// client.
void SdoClient::take(Node &node, const SdoUpload::Step &step)
{
    noteAnswerTime(node);
    perform(node, step);
    if (step.finished)
        deliver(takeOutcome(node));
}

void SdoClient::perform(Node &node, const SdoUpload::Step &step)
{
    for (int i = 0; i < step.frameCount; ++i)
        send(node.id, step.frames[static_cast<std::size_t>(i)]);
    if (step.waitRestarts)
        setDeadline(node, step.wait);
}

// The outcome of the upload that has just ended; the next one in the queue is begun in its place.
SdoOutcome SdoClient::takeOutcome(Node &node)
{
    SdoOutcome outcome = node.upload.outcome();
    outcome.ticket = node.ticket;
    outcome.nodeId = node.id;
    if (outcome.kind != SdoOutcome::Kind::Value)
        outcome.value.clear();
    startNext(node);
    return outcome;
}

void SdoClient::deliver(const SdoOutcome &outcome)
{
    --m_pending;
    emit finished(outcome);
}

void SdoClient::deliverLater(const SdoOutcome &outcome)
{
    if (m_posted.isEmpty())
        QMetaObject::invokeMethod(this, &SdoClient::deliverPosted, Qt::QueuedConnection);
    m_posted.append(outcome);
}

void SdoClient::deliverPosted()
{
    const QPointer<SdoClient> self(this);
    const QVector<SdoOutcome> outcomes = std::exchange(m_posted, {});
    for (const SdoOutcome &outcome : outcomes) {
        deliver(outcome);
        if (!self)
            return;
    }
}

void SdoClient::send(quint8 nodeId, const QByteArray &payload)
{
    m_sending = true;
    m_sender(QCanBusFrame(sdoRequestCobId(nodeId), payload));
    m_sending = false;
}

void SdoClient::takeHeldFrames()
{
    const QPointer<SdoClient> self(this);
    const QVector<QCanBusFrame> frames = std::exchange(m_heldFrames, {});
    for (const QCanBusFrame &frame : frames) {
        handleFrame(frame);
        if (!self)
            return;
    }
}

void SdoClient::noteAnswerTime(Node &node)
{
    if (node.answerTimed || node.upload.isUnanswered())
        return;
    node.answerTimed = true;
    node.answerTime = now() - node.started;
}

void SdoClient::setDeadline(Node &node, qint64 wait)
{
    if (wait == 0)
        wait = node.firstWait << std::min(node.upload.attempt(), mostDoublings);
    node.deadline = std::min(now() + wait, node.end);
    armTimer(node.deadline);
}

void SdoClient::checkDeadlines()
{
    const qint64 time = now();
    for (const std::unique_ptr<Node> &node : m_nodes) {
        if (!node || !node->upload.isActive() || node->deadline > time)
            continue;
        node->upload.setTime(time);
        const SdoUpload::Step step = time >= node->end ? node->upload.giveUp() : node->upload.timeOver();
        perform(*node, step);
        if (step.finished)
            m_posted.append(takeOutcome(*node));
    }
    armTimerForAll();
    deliverPosted();
}

// Leaves a timer alone that fires earlier: it is cheaper to let it fire for nothing than to start it anew
// with every exchange.
void SdoClient::armTimer(qint64 deadline)
{
    if (m_timer.isActive() && m_timerDue <= deadline)
        return;
    m_timerDue = deadline;
    const qint64 wait = std::max<qint64>(deadline - now(), 1);
    m_timer.start(static_cast<int>(std::min<qint64>(wait, std::numeric_limits<int>::max())), this);
}

void SdoClient::armTimerForAll()
{
    if (const std::optional<milliseconds> earliest = nextDeadline())
        armTimer(earliest->count());
}

std::optional<milliseconds> SdoClient::nextDeadline() const
{
    std::optional<milliseconds> earliest;
    for (const std::unique_ptr<Node> &node : m_nodes) {
        if (!node || !node->upload.isActive())
            continue;
        const milliseconds deadline{node->deadline};
        earliest = earliest ? std::min(*earliest, deadline) : deadline;
    }
    return earliest;
}

} // namespace CanOpen
