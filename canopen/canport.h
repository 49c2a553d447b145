// SPDX-License-Identifier: MIT
#pragma once

#include <QCanBusDevice>
#include <QCanBusFrame>
#include <QObject>
#include <QTimer>

#include <deque>
#include <memory>

namespace CanOpen {

/*! A CANopen node's way to one CAN interface: sends and receives frames on a QCanBusDevice.
 *
 *  Sending is paced: at most a few frames are given to the device at once, the others wait in a queue, and a frame whose
 *  write failed is sent again until its time is over, so that a full driver queue or a failing write loses nothing.
 *  Received frames are delivered one by one. A device that leaves the connected state, or that refuses every write for
 *  longer than the write limit, is reported as lost once; the port then sends nothing more.
 */
class CanPort : public QObject
{
    Q_OBJECT

public:
    /*! Takes the device over; it may be connected already or not. */
    explicit CanPort(std::unique_ptr<QCanBusDevice> device, QObject *parent = nullptr);
    ~CanPort() override;

    /*! Connects the device. False on failure with the reason in \a errorMessage; then the port is of no more use.
     *  Back ends that connect in the background are waited for with a bound of 5 s.
     */
    bool open(QString *errorMessage);

    /*! Disconnects; lost() is not emitted for it. */
    void close();

    bool isOpen() const;
    QCanBusDevice *device() const { return m_device.get(); }

    /*! Queues \a frame. Frames that are sent while the port is not open are dropped. */
    void send(const QCanBusFrame &frame);

    quint64 framesReceived() const;
    quint64 framesSent() const;
    quint64 writeRetries() const; // writes that failed and were tried again

signals:
    void frameReceived(const QCanBusFrame &frame);
    /*! The bus has gone; \a reason is a sentence for the user. Emitted once, from the event loop. */
    void lost(const QString &reason);
    // the private part is the implementation's

private:
    std::unique_ptr<QCanBusDevice> m_device;
};

} // namespace CanOpen
