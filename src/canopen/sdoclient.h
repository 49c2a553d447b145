// SPDX-License-Identifier: MIT
#pragma once

#include "busload.h"
#include "cobid.h"
#include "datatype.h"
#include "objectkey.h"
#include "sdooutcome.h"
#include "sdoupload.h"
#include "sending.h"

#include <QBasicTimer>
#include <QCanBusFrame>
#include <QObject>
#include <QVector>

#include <array>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace CanOpen {

/*! How patient the client is with a node. */
struct SdoPatience
{
    /*! For the first answer and between segments; doubled with every repeat. */
    std::chrono::milliseconds timeout{100};
    /*! How often the whole upload is asked again after a time-out. */
    int repeats = 2;
    /*! Bound of one upload in all, also when its frames cannot be written or another client keeps the node. */
    std::chrono::milliseconds longest{10000};

    /*! What the waits for an answer take together when none comes, each of the repeats with its whole time. */
    std::chrono::milliseconds allWaits() const;
};

/*! SDO client of all nodes (CiA 301): one upload per node at a time, the nodes side by side, the rest in
 *  queues.
 *
 *  Knows no device: frames go out through the sender function and come in through handleFrame(). Every
 *  upload ends with exactly one finished(), never from within upload().
 *
 *  The wait for an answer begins when the request is written: a sender whose frames wait says so and tells the
 *  rest through handleWritten() and handleDropped(). An upload of which no frame was written ends with
 *  SdoOutcome::isUnasked.
 *
 *  While the bus is crowded an answer may wait for it as long as a request: then each wait for an answer lasts until
 *  there is room again, or its part of the upload's whole time is over.
 *
 *  Another client of a node is waited for. After maximumHeldUp uploads in a row that it has made fail, the next
 *  ones of that node have only heldUpTime, until one gets through.
 *
 *  A node that was found to answer late is given the time it needs from the next upload on, so that the
 *  requests do not pile up in it. A slot of finished() may delete the client.
 */
class SdoClient : public QObject
{
    Q_OBJECT

public:
    using Sender = std::function<Sending(const QCanBusFrame &)>;
    /*! The time since some point in the past; never goes back. */
    using Clock = std::function<std::chrono::milliseconds()>;

    /*! Uploads of one node that another client may make fail before the following ones get less time. */
    static constexpr int maximumHeldUp = 3;
    static constexpr std::chrono::milliseconds heldUpTime{500};
    /*! How long after foreignClientSeen() the same node is not named again. */
    static constexpr std::chrono::milliseconds foreignClientPause{10000};

    /*! Takes the time from the system. */
    explicit SdoClient(Sender sender, QObject *parent = nullptr);
    /*! Takes the time from \a clock: a test's own, or one that its caller has already. */
    SdoClient(Sender sender, Clock clock, QObject *parent = nullptr);
    ~SdoClient() override;

    /*! The patience with every node that has none of its own; holds from the next upload on. */
    void setDefaultPatience(const SdoPatience &patience);
    /*! The patience with one node (1 to 127); empty: the default, as it is or will be. */
    void setPatience(quint8 nodeId, const std::optional<SdoPatience> &patience);

    /*! What tells how full the bus is; its caller's, and must outlive the client. Null, as at first: nothing does. */
    void setBusLoad(const BusLoad *load) { m_load = load; }

    /*! Whether the last upload of the node had no answer and SdoOutcome::isCrowdedOut. */
    bool isCrowdedOut(quint8 nodeId) const;

    /*! Reads an object; the outcome carries the ticket that is returned. \a timeout, when positive, replaces
     *  the time-out of the patience for this upload, if that is shorter. The reading of a node ID outside
     *  1 to 127 ends with Kind::Error.
     */
    SdoTicket upload(quint8 nodeId, ObjectKey key, DataType type,
                     std::chrono::milliseconds timeout = std::chrono::milliseconds{0},
                     SdoProtocol protocol = SdoProtocol::Plain);

    /*! Ends one upload with Kind::Cancelled, at once; a device that may be in the middle of the transfer is told
     *  by an abort. False when the upload has ended already.
     */
    bool cancel(SdoTicket ticket);

    /*! Ends every upload under way and queued with Kind::Cancelled, at once; nothing more is sent. */
    void cancelAll();

    /*! Whether an upload is under way or queued. */
    bool isBusy() const;

    /*! Takes a frame from the bus; what is not meant for this client is ignored. */
    void handleFrame(const QCanBusFrame &frame);

    /*! A frame of the sender that was waiting has been written, or will not be. */
    void handleWritten(const QCanBusFrame &frame);
    void handleDropped(const QCanBusFrame &frame);
    /*! Of the frames that are waiting nothing will be heard any more: their sender is gone. */
    void forgetWaitingFrames();

    /*! Ends the waits that are over. The client's own timer does so in time; a test does after it has moved
     *  its clock.
     */
    void checkDeadlines();

    /*! When checkDeadlines() has something to do, on the client's clock; empty when nothing is waited for. */
    std::optional<std::chrono::milliseconds> nextDeadline() const;

signals:
    void finished(const CanOpen::SdoOutcome &outcome);
    /*! Another client uses the node and is in the way of our uploads. From the event loop. */
    void foreignClientSeen(quint8 nodeId);

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    struct Node;

    Node &nodeFor(quint8 nodeId);
    void startNext(Node &node);
    void handleStep(Node &node, const SdoUpload::Step &step);
    void perform(Node &node, const SdoUpload::Step &step);
    SdoOutcome takeOutcome(Node &node);
    void deliver(const SdoOutcome &outcome);
    void deliverLater(const SdoOutcome &outcome);
    void deliverPosted();
    Sending send(quint8 nodeId, const QByteArray &payload);
    void handleHeldFrames();
    void noteAnswerTime(Node &node) const;
    void noteForeignClient(Node &node);
    void setDeadline(Node &node, qint64 wait);
    double busShare(const Node &node, qint64 time) const;
    bool waitOn(Node &node, qint64 time);
    void settleWaiting(const QCanBusFrame &frame, bool isWritten);
    qint64 now() const { return m_clock().count(); }
    qint64 readClock() { return m_time = now(); }
    void armTimer(qint64 deadline);
    void armTimerForAll();

    Sender m_sender;
    const BusLoad *m_load = nullptr;
    SdoPatience m_defaultPatience;
    std::array<std::unique_ptr<Node>, lastNodeId + 1> m_nodes; // by node ID; made when first used
    SdoTicket m_lastTicket = 0;
    int m_pending = 0;                  // uploads without their finished()
    QVector<SdoOutcome> m_posted;       // to be delivered from the event loop
    QVector<QCanBusFrame> m_heldFrames; // came while a frame was being sent
    bool m_isSending = false;
    Clock m_clock;
    qint64 m_time = 0;           // ms of m_clock; when the client was called last
    QBasicTimer m_timer;         // one for all deadlines; never later than the earliest of them
    qint64 m_timerDue = 0;       // ms of m_clock
    bool m_isGraceGiven = false; // once per firing: frames that wait behind a held up event loop come first
};

} // namespace CanOpen
