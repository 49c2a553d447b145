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

milliseconds SdoPatience::allWaits() const
{
    // The first wait once, twice, four times ..., and from the last doubling on always the same.
    const int doublings = std::min(repeats, mostDoublings);
    const qint64 growing = (qint64(2) << doublings) - 1;
    const qint64 steady = qint64(repeats - doublings) << mostDoublings;
    return timeout * (growing + steady);
}

struct SdoClient::Node
{
    struct Request
    {
        SdoTicket ticket;
        ObjectKey key;
        DataType type;
        milliseconds timeout;
        SdoProtocol protocol;
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
    qint64 wait = 0;           // the present one, as the upload has asked for it
    qint64 waitBegan = 0;      // or was looked at last
    qint64 waitLimit = 0;      // how long the wait for an answer may become on a crowded bus
    qint64 waited = 0;         // of that
    quint64 bitsBefore = 0;    // of the bus, when the wait began or was looked at last
    bool isBusFull = false;    // at the end of the last wait
    int unwritten = 0;         // frames that the sender has and that are not on the bus
    bool isAsked = false;      // a frame of the upload was written
    bool isCrowdedOut = false; // the last upload
    int heldUp = 0;            // uploads in a row that another client made fail
    qint64 foreignSeen = -1;   // when that was said last; -1: never
    int frames = 0;            // of the upload, sent and received
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

void SdoClient::setPatience(quint8 nodeId, const std::optional<SdoPatience> &patience)
{
    if (isNodeId(nodeId))
        nodeFor(nodeId).patience = patience ? std::optional(withinRange(*patience)) : std::nullopt;
}

SdoTicket SdoClient::upload(quint8 nodeId, ObjectKey key, DataType type, milliseconds timeout,
                            SdoProtocol protocol)
{
    ++m_pending;
    readClock();
    const SdoTicket ticket = ++m_lastTicket;
    if (!isNodeId(nodeId)) {
        SdoOutcome outcome;
        outcome.ticket = ticket;
        outcome.kind = SdoOutcome::Kind::Error;
        outcome.nodeId = nodeId;
        outcome.key = key;
        outcome.code = static_cast<quint32>(SdoAbort::GeneralError);
        outcome.isUnasked = true;
        deliverLater(outcome);
        return ticket;
    }
    Node &node = nodeFor(nodeId);
    node.queue.enqueue({ticket, key, type, timeout, protocol});
    if (!node.upload.isActive())
        startNext(node);
    return ticket;
}

bool SdoClient::cancel(SdoTicket ticket)
{
    for (const std::unique_ptr<Node> &node : m_nodes) {
        if (!node)
            continue;
        if (node->upload.isActive() && node->ticket == ticket) {
            node->upload.setTime(readClock());
            handleStep(*node, node->upload.cancel());
            return true;
        }
        const auto hasTicket = [ticket](const Node::Request &request) { return request.ticket == ticket; };
        const auto queued = std::find_if(node->queue.begin(), node->queue.end(), hasTicket);
        if (queued == node->queue.end())
            continue;
        SdoOutcome outcome;
        outcome.ticket = ticket;
        outcome.kind = SdoOutcome::Kind::Cancelled;
        outcome.nodeId = node->id;
        outcome.key = queued->key;
        outcome.isUnasked = true;
        node->queue.erase(queued);
        deliver(outcome);
        return true;
    }
    return false;
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
            outcome.repeats = node->upload.outcome().repeats;
            outcome.isUnasked = !node->isAsked;
            outcomes.append(outcome);
            node->upload.forget();
        }
        outcome.repeats = 0;
        outcome.isUnasked = true;
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

bool SdoClient::isCrowdedOut(quint8 nodeId) const
{
    return isNodeId(nodeId) && m_nodes[nodeId] && m_nodes[nodeId]->isCrowdedOut;
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
    if (m_isSending || !m_heldFrames.isEmpty()) {
        // The sender has brought the answer before it returned. upload() may be on the stack, so it has to
        // wait.
        if (m_heldFrames.isEmpty())
            QMetaObject::invokeMethod(this, &SdoClient::handleHeldFrames, Qt::QueuedConnection);
        m_heldFrames.append(frame);
        return;
    }

    if (answering != 0) {
        if (Node *node = m_nodes[answering].get()) {
            node->upload.setTime(readClock());
            ++node->frames;
            handleStep(*node, node->upload.handleResponse(frame.payload()));
        }
    } else if (!frame.hasLocalEcho()) { // with an echo it is our own request
        if (Node *node = m_nodes[asked].get()) {
            node->upload.setTime(readClock());
            handleStep(*node, node->upload.handleForeignRequest(frame.payload()));
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
    if (now() - m_timerDue > heldUpLimit && !m_isGraceGiven) {
        m_isGraceGiven = true;
        armTimer(now() + graceTime);
        return;
    }
    m_isGraceGiven = false;
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
    const bool isHeldUp = node.heldUp >= maximumHeldUp;
    const qint64 longest = std::min(patience.longest, isHeldUp ? heldUpTime : patience.longest).count();
    const qint64 needed = std::min(2 * node.answerTime, longest / slowNodeShare);
    node.firstWait = std::max({qint64(patience.timeout.count()), qint64(request.timeout.count()), needed});
    node.started = m_time;
    node.end = node.started + longest;
    node.waitLimit = longest / (patience.repeats + 1);
    node.answerTimed = false;
    node.isAsked = false;
    node.isBusFull = false;
    node.frames = 0;
    node.upload.setTime(node.started);
    node.upload.setAnswerTime(node.answerTime);
    perform(node, node.upload.start(request.key, request.type, patience.repeats, request.protocol));
    noteForeignClient(node);
}

// As perform(), and delivers the outcome if there is one. Nothing may follow it: a slot may have deleted the
// client.
void SdoClient::handleStep(Node &node, const SdoUpload::Step &step)
{
    noteAnswerTime(node);
    perform(node, step);
    if (step.finished || node.upload.isActive())
        noteForeignClient(node);
    if (step.finished)
        deliver(takeOutcome(node));
}

void SdoClient::perform(Node &node, const SdoUpload::Step &step)
{
    for (int i = 0; i < step.frameCount; ++i) {
        const Sending sending = send(node.id, step.frames[static_cast<std::size_t>(i)]);
        node.isAsked = node.isAsked || sending == Sending::Written;
        node.frames += sending == Sending::Dropped ? 0 : 1;
        node.unwritten += sending == Sending::Waiting ? 1 : 0;
    }
    if (step.waitRestarts)
        setDeadline(node, step.wait);
}

// The outcome of the upload that has just ended; the next one in the queue is begun in its place.
SdoOutcome SdoClient::takeOutcome(Node &node)
{
    SdoOutcome outcome = node.upload.outcome();
    outcome.ticket = node.ticket;
    outcome.nodeId = node.id;
    outcome.isUnasked = !node.isAsked;
    outcome.isCrowdedOut = outcome.kind == SdoOutcome::Kind::Timeout && node.isAsked && node.isBusFull;
    node.isCrowdedOut = outcome.isCrowdedOut;
    outcome.frames = node.frames;
    const bool isHeldUp = outcome.foreignClient && outcome.kind == SdoOutcome::Kind::Error;
    node.heldUp = isHeldUp ? node.heldUp + 1 : 0;
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

Sending SdoClient::send(quint8 nodeId, const QByteArray &payload)
{
    m_isSending = true;
    const Sending sending = m_sender(QCanBusFrame(sdoRequestCobId(nodeId), payload));
    m_isSending = false;
    return sending;
}

void SdoClient::handleWritten(const QCanBusFrame &frame)
{
    settleWaiting(frame, true);
}

void SdoClient::handleDropped(const QCanBusFrame &frame)
{
    settleWaiting(frame, false);
}

void SdoClient::forgetWaitingFrames()
{
    for (const std::unique_ptr<Node> &node : m_nodes) {
        if (node)
            node->unwritten = 0;
    }
}

// A sender keeps the order, so the frames of the upload under way are the last ones. After a frame that was dropped
// comes the wait for its answer as well, and then the repeat.
void SdoClient::settleWaiting(const QCanBusFrame &frame, bool isWritten)
{
    Node *node = m_nodes[nodeIdOf(frame.frameId(), sdoRequestBase)].get();
    if (node == nullptr || node->unwritten == 0)
        return;
    --node->unwritten;
    readClock();
    if (node->unwritten > 0 || !node->upload.isActive())
        return;
    node->isAsked = node->isAsked || isWritten;
    setDeadline(*node, node->wait);
}

void SdoClient::handleHeldFrames()
{
    const QPointer<SdoClient> self(this);
    const QVector<QCanBusFrame> frames = std::exchange(m_heldFrames, {});
    for (const QCanBusFrame &frame : frames) {
        handleFrame(frame);
        if (!self)
            return;
    }
}

void SdoClient::noteAnswerTime(Node &node) const
{
    if (node.answerTimed || node.upload.isUnanswered())
        return;
    node.answerTimed = true;
    node.answerTime = m_time - node.started;
}

void SdoClient::noteForeignClient(Node &node)
{
    if (!node.upload.outcome().foreignClient)
        return;
    const qint64 time = m_time;
    if (node.foreignSeen >= 0 && time < node.foreignSeen + foreignClientPause.count())
        return;
    node.foreignSeen = time;
    const quint8 nodeId = node.id;
    QMetaObject::invokeMethod(
        this, [this, nodeId] { emit foreignClientSeen(nodeId); }, Qt::QueuedConnection);
}

// While a frame waits to be written, only the bound of the whole upload counts.
void SdoClient::setDeadline(Node &node, qint64 wait)
{
    node.wait = wait;
    if (node.unwritten > 0) {
        node.deadline = node.end;
        armTimer(node.deadline);
        return;
    }
    if (wait == 0)
        wait = node.firstWait << std::min(node.upload.attempt(), mostDoublings);
    node.waited = 0;
    node.waitBegan = m_time;
    node.bitsBefore = m_load != nullptr ? m_load->bits() : 0;
    node.deadline = std::min(node.waitBegan + wait, node.end);
    armTimer(node.deadline);
}

// The load of the bus since the present wait began or was looked at last; 0 when nothing is known of it.
double SdoClient::busShare(const Node &node, qint64 time) const
{
    if (m_load == nullptr)
        return 0;
    return m_load->share(node.bitsBefore, milliseconds(time - node.waitBegan)).value_or(0);
}

// The end of a wait for an answer: whether it goes on for as long again, as the bus had hardly room for the answer.
bool SdoClient::waitOn(Node &node, qint64 time)
{
    const double share = node.wait == 0 ? busShare(node, time) : 0;
    const qint64 lasted = time - node.waitBegan;
    node.isBusFull = share >= BusLoad::fullShare;
    node.waited += lasted;
    if (share < BusLoad::crowdedShare || node.waited >= node.waitLimit || time >= node.end)
        return false;
    node.waitBegan = time;
    node.bitsBefore = m_load->bits();
    node.deadline = std::min({time + lasted, time + node.waitLimit - node.waited, node.end});
    return true;
}

void SdoClient::checkDeadlines()
{
    const qint64 time = readClock();
    for (const std::unique_ptr<Node> &node : m_nodes) {
        if (!node || !node->upload.isActive() || node->deadline > time)
            continue;
        if (waitOn(*node, time))
            continue;
        node->upload.setTime(time);
        const SdoUpload::Step step = time >= node->end ? node->upload.giveUp() : node->upload.timeOver();
        perform(*node, step);
        noteForeignClient(*node);
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
