// SPDX-License-Identifier: MIT
#pragma once

#include <QCanBusDevice>
#include <QCanBusFrame>
#include <QTimer>
#include <QVector>

/*! A CAN interface that records what is sent and fails to order. */
class FakeCanDevice : public QCanBusDevice
{
    Q_OBJECT

public:
    enum class Connecting { AtOnce, InBackground, InBackgroundInVain, Never, Refused };

    /*! How the device sends. */
    enum class Sending {
        AtOnce,      //!< no queue; framesWritten() from within writeFrame()
        Unreported,  //!< no queue and no framesWritten()
        DeviceQueue, //!< the queue of QCanBusDevice, emptied by the event loop; framesWritten() then
        DriverQueue, //!< a queue that QCanBusDevice does not know; framesWritten() from within writeFrame()
        StuckQueue,  //!< the queue of QCanBusDevice, never emptied
    };

    explicit FakeCanDevice(QObject *parent = nullptr);

    void setConnecting(Connecting connecting) { m_connecting = connecting; }
    void setSending(Sending sending) { m_isSending = sending; }

    /*! Frames in the queue beyond which writeFrame() refuses; 0: no limit. */
    void setQueueLimit(int frames) { m_queueLimit = frames; }

    /*! Every n-th writeFrame() fails; 0: none. */
    void failEveryNthWrite(int n) { m_failEvery = n; }

    /*! Every n-th frame that leaves the device's queue is lost with a WriteError; 0: none. */
    void loseEveryNthQueuedFrame(int n) { m_loseEvery = n; }

    /*! From now on every write fails, and the device stays in the connected state, as SocketCAN's does. */
    void unplug() { m_unplugged = true; }
    void plugIn() { m_unplugged = false; }

    /*! The device leaves the connected state of itself. */
    void goUnconnected() { setState(UnconnectedState); }

    void reportError(CanBusError error) { setError(QStringLiteral("as ordered"), error); }

    /*! Frames from the bus, in one go. */
    void inject(const QVector<QCanBusFrame> &frames) { enqueueReceivedFrames(frames); }
    void inject(const QCanBusFrame &frame) { enqueueReceivedFrames({frame}); }

    /*! Frames that went out on the bus, oldest first. */
    const QVector<QCanBusFrame> &written() const { return m_written; }
    int writeCalls() const { return m_writeCalls; }
    int mostFramesToWrite() const { return m_mostFramesToWrite; }

    bool writeFrame(const QCanBusFrame &frame) override;
    QString interpretErrorFrame(const QCanBusFrame &errorFrame) override;

signals:
    /*! A frame went out on the bus. */
    void sent(const QCanBusFrame &frame);

protected:
    bool open() override;
    void close() override;

private:
    void putOnBus(const QCanBusFrame &frame);
    bool isQueueFull() const;
    void drain();

    Connecting m_connecting = Connecting::AtOnce;
    Sending m_isSending = Sending::AtOnce;
    int m_queueLimit = 0;
    int m_failEvery = 0;
    int m_loseEvery = 0;
    int m_writeCalls = 0;
    int m_drained = 0;
    int m_mostFramesToWrite = 0;
    bool m_unplugged = false;
    QVector<QCanBusFrame> m_driverQueue;
    QVector<QCanBusFrame> m_written;
    QTimer m_drainTimer;
};
