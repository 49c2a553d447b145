// SPDX-License-Identifier: MIT
#pragma once

#include "sending.h"

#include <QCanBusDevice>
#include <QCanBusFrame>
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <QVector>

#include <deque>
#include <memory>

namespace CanOpen {

/*! Takes QtSerialBus' own bit rate from the settings of \a device, so that connecting leaves the
 *  interface's as it is.
 *
 *  For interfaces that are configured outside of the program (SocketCAN), unless the user asked for a bit
 *  rate. To be called before the device connects.
 */
void clearDefaultBitRate(QCanBusDevice &device);

/*! A CANopen node's way to one CAN interface: sends and receives frames on a QCanBusDevice.
 *
 *  Sending is paced: at most a few frames are given to the device at once, the others wait in a queue, and
 *  a frame whose write failed is sent again until its time is over, so that a full driver queue or a
 *  failing write loses nothing. Received frames are delivered one by one, a bounded number in each turn of
 *  the event loop. A device that leaves the connected state, or that refuses every write for longer than
 *  the write limit, is reported as lost once; the port then sends nothing more. Slots of frameReceived() and
 *  lost() may close and delete the port.
 */
class CanPort : public QObject
{
    Q_OBJECT

public:
    /*! Frames that are given to the device and not yet written. */
    static constexpr int maximumFramesInDevice = 4;
    /*! Received frames that are delivered in one turn of the event loop. */
    static constexpr int maximumFramesPerTurn = 500;
    /*! Time of failing writes after which the bus is lost, in ms. */
    static constexpr int writeLimit = 600;
    /*! How long one frame may hold up the others, or wait for a stuck device, in ms. */
    static constexpr int frameTimeLimit = 500;
    /*! Frames that may wait; beyond that the oldest is dropped. */
    static constexpr int maximumQueueLength = 10000;

    /*! Takes the device over; it may be connected already or not. */
    explicit CanPort(std::unique_ptr<QCanBusDevice> device, QObject *parent = nullptr);
    ~CanPort() override;

    /*! Connects the device. False on failure with the reason in \a errorMessage; then the port is of no
     *  more use. Back ends that connect in the background are waited for with a bound of 5 s.
     */
    bool open(QString *errorMessage);

    /*! Disconnects; lost() is not emitted for it. */
    void close();

    bool isOpen() const { return m_state == State::Open; }
    QCanBusDevice *device() const { return m_device.get(); }

    /*! Queues \a frame. Frames that are sent while the port is not open, and invalid ones, are dropped. Of a
     *  frame that waits, written() or dropped() tells the end, unless the port is closed or lost before.
     */
    Sending send(const QCanBusFrame &frame);

    quint64 framesReceived() const { return m_framesReceived; } // error frames included
    quint64 framesSent() const { return m_framesSent; }
    quint64 writeRetries() const { return m_writeRetries; } // writes that failed and were tried again
    quint64 errorFrames() const { return m_errorFrames; }   // received error and invalid frames

signals:
    void frameReceived(const QCanBusFrame &frame);
    /*! A frame that had to wait was written. Slots must not close the port. */
    void written(const QCanBusFrame &frame);
    /*! A frame that had to wait will not be sent; likewise. */
    void dropped(const QCanBusFrame &frame);
    /*! The bus has gone; \a reason is a sentence for the user. Emitted once, from the event loop. */
    void lost(const QString &reason);

private:
    enum class State { Closed, Open, Lost };
    struct WaitingFrame
    {
        QCanBusFrame frame;
        qint64 since; // ms of m_clock
    };
    struct FrameInDevice
    {
        QCanBusFrame frame;
        bool isAwaited; // written() is to be emitted
    };
    class DeviceSignal;

    bool connectDevice(QString *errorMessage);
    int connectTime() const;
    void waitUntilConnected();
    void disconnectDevice();
    void handleState();
    void handleError(QCanBusDevice::CanBusError error);
    void handleFramesWritten();
    void handleFramesReceived();
    void deliverFrames();
    bool readNext(QCanBusFrame *frame);
    bool canWrite() const;
    bool write(const QCanBusFrame &frame, bool isAwaited);
    void dropOldest();
    void writeWaiting();
    void settleWritten();
    void handleFailedWrite();
    void handleStall();
    void lose(const QString &reason);
    void stop(State state);

    std::unique_ptr<QCanBusDevice> m_device;
    State m_state = State::Closed;
    int m_deviceSignalDepth = 0; // slots that the device is calling just now

    // Sending
    std::deque<WaitingFrame> m_waiting;
    std::deque<FrameInDevice> m_inDevice; // accepted, not yet reported as written
    QTimer m_retryTimer;                  // until the next try after a failed write
    QTimer m_stallTimer;                  // looks after a device that reports nothing
    QElapsedTimer m_clock;
    qint64 m_failingSince = -1; // ms of m_clock; -1 while writes succeed
    int m_retryDelay = 0;       // ms
    bool m_isWriting = false;   // writeFrame() is on the stack

    // Receiving
    QVector<QCanBusFrame> m_inbox; // read from the device, delivered up to m_inboxPosition
    int m_inboxPosition = 0;
    QTimer m_deliveryTimer; // active while frames are left for the next turn

    quint64 m_framesReceived = 0;
    quint64 m_framesSent = 0;
    quint64 m_writeRetries = 0;
    quint64 m_errorFrames = 0;
};

} // namespace CanOpen
