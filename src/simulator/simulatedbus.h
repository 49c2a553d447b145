// SPDX-License-Identifier: MIT
#pragma once

#include "alarmclock.h"
#include "wire.h"

#include <QCanBusFrame>
#include <QObject>
#include <QVector>

#include <memory>
#include <optional>

namespace Simulator {

/*! What happens to the devices on a bus that is lost. */
enum class BusLoss {
    Unplugged,   //!< they look connected and every write fails, as when a SocketCAN interface is deleted
    Disconnected //!< they fall back to the unconnected state
};

/*! Somebody on a SimulatedBus. Detaches itself before it is destroyed. */
class BusParticipant
{
public:
    virtual ~BusParticipant() = default;

    /*! A frame of another participant has arrived. */
    virtual void receive(const QCanBusFrame &frame) = 0;

    /*! All frames that arrived together were given to receive(). */
    virtual void batchReceived() {}

    /*! A frame of its own is through, on a bus with a bit rate; the others have not received it yet. */
    virtual void sent() {}

    /*! The bus is gone. */
    virtual void busLost(BusLoss loss) { Q_UNUSED(loss) }

    /*! Whether it is part of the simulation: what it sends in answer to a frame is then ready at the very end
     *  of that frame, however late the event loop was.
     */
    virtual bool isSimulated() const { return false; }
};

/*! One bus segment inside the process: every frame reaches all participants but its sender.
 *
 *  Without a bit rate the frames go through the event loop as fast as it runs, all that wait in one event.
 *  With a bit rate the bus is a Wire and each frame arrives when its last bit is through. Either way a frame
 *  never arrives from within send(). An idle bus needs no processor time. All calls come from one thread.
 */
class SimulatedBus : public QObject, public std::enable_shared_from_this<SimulatedBus>
{
    Q_OBJECT

public:
    /*! \a bitRate in bit/s; 0 runs the bus unpaced. */
    explicit SimulatedBus(int bitRate = 0, QObject *parent = nullptr);
    ~SimulatedBus() override;

    int bitRate() const { return m_bitRate; }

    void attach(BusParticipant *participant);
    /*! Allowed at any time, also from within receive(). Frames that it has queued still go out. */
    void detach(BusParticipant *participant);

    /*! Queues \a frame. False when the bus is lost or when \a queueLength frames of this sender wait already.
     *  \a station tells the controllers of one participant apart (the node ID of a vehicle's node).
     */
    bool send(BusParticipant *sender, const QCanBusFrame &frame, quint8 station = 0,
              int queueLength = defaultQueueLength);

    /*! Loses the bus now: the frames under way are dropped and every participant is told. */
    void lose(BusLoss loss);
    /*! Loses it when \a frames more have been carried. */
    void loseAfter(quint64 frames, BusLoss loss);
    /*! Makes it usable again, for devices that connect from now on. */
    void restore();
    bool isLost() const { return m_isLost; }

    quint64 framesCarried() const { return m_framesCarried; }

    static constexpr int defaultQueueLength = 1000; // frames
    static constexpr int noQueueLimit = 1000000;

protected:
    bool event(QEvent *event) override;

private:
    struct Queued
    {
        QCanBusFrame frame;
        quint64 sender;
    };

    struct Member
    {
        BusParticipant *participant; // null: detached while frames are delivered
        quint64 number;              // its own for as long as the bus lives
    };

    void deliverBatch();
    void deliverFromWire();
    void deliver(const QCanBusFrame &frame, quint64 sender);
    void finishBatch();
    void countFrame();
    void scheduleWire();
    void dropDetached();
    quint64 numberOf(const BusParticipant *participant) const;
    void tellSender(quint64 number);
    Wire::Time readyTime(const BusParticipant &sender) const;

    int m_bitRate;
    QVector<Member> m_members;
    quint64 m_lastNumber = 0;
    bool m_isDelivering = false;
    bool m_isLost = false;
    quint64 m_framesCarried = 0;
    std::optional<quint64> m_framesUntilLoss;
    BusLoss m_plannedLoss = BusLoss::Unplugged;

    // unpaced
    QVector<Queued> m_queue;
    bool m_isPosted = false;

    // paced
    std::optional<Wire> m_wire;
    AlarmClock *m_alarm = nullptr;
    Wire::Time m_alarmTime{0};             // what the alarm is set to; 0: not set
    std::optional<Wire::Time> m_idealTime; // end of the frame that is being delivered
    Wire::Time m_deliveryTime{0};          // real time of the last delivery
    Wire::Time m_lateness{0};              // of that delivery
};

} // namespace Simulator
