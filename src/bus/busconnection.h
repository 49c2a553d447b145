// SPDX-License-Identifier: MIT
#pragma once

#include "busopener.h"
#include "bussettings.h"
#include "interfacewatch.h"
#include "receivequeue.h"

#include <canopen/busload.h>
#include <canopen/heartbeatconsumer.h>
#include <canopen/sdoclient.h>

#include <QObject>
#include <QTimer>
#include <QVariant>

#include <memory>
#include <optional>

class QCanBusDevice;

namespace CanOpen {
class CanPort;
}

/*! What went over a connection since it was made; kept over a loss of the bus. */
struct BusCounters
{
    quint64 framesReceived = 0;
    quint64 framesSent = 0;
    quint64 writeRetries = 0;  //!< writes that failed and were tried again
    quint64 uploadRepeats = 0; //!< requests that were asked again
};

/*! One connection to one CAN bus, with the CANopen client on it.
 *
 *  Opens a device of QtSerialBus, feeds its frames to the SDO client and the heartbeat consumer, and watches
 *  that the interface stays. When the bus goes away, uploads under way are ended and the connection tries
 *  every second, with a new device, until the interface is back or the user disconnects.
 *
 *  Nothing but SDO uploads and aborts goes out (isUploadRequest()): who looks into a vehicle changes nothing in it.
 *  Only who is a vehicle himself may open the gate.
 *
 *  Every call is allowed at any time, also from a slot of the connection's own signals; the last one counts.
 *  The client and the consumer live as long as the connection.
 */
class BusConnection : public QObject
{
    Q_OBJECT

public:
    enum class State {
        Disconnected,
        Connecting, //!< inside connectToBus() only
        Connected,
        Lost //!< the bus went away; tries to get it back
    };
    Q_ENUM(State)

    using DeviceFactory = BusOpener::DeviceFactory;

    explicit BusConnection(QObject *parent = nullptr);
    ~BusConnection() override;

    /*! QCanBus::createDevice() at first. */
    void setDeviceFactory(const DeviceFactory &factory) { m_opener.setDeviceFactory(factory); }
    /*! interfaceBitRate() at first. */
    void setBitRateReader(const BusOpener::BitRateReader &reader) { m_opener.setBitRateReader(reader); }
    /*! How it is known that this computer loses frames; by the socket of SocketCAN at first. */
    void setLossCounter(const ReceiveQueue::Counter &counter) { m_lossCounter = counter; }

    /*! Opens a bus; one that is open is closed first. May take up to 5 s with back ends that connect in the
     *  background; events are processed meanwhile. False on failure, with a sentence for the user in \a
     *  errorMessage (may be null); the connection is then Disconnected.
     */
    bool connectToBus(const BusSettings &settings, QString *errorMessage);

    /*! Closes the bus, or ends the attempts to get it back. */
    void disconnectFromBus();

    State state() const { return m_state; }

    /*! Of the bus that is open or was opened last. */
    const BusSettings &settings() const { return m_settings; }

    /*! Why the bus was lost or could not be opened, a sentence for the user; empty while it is connected. */
    QString errorString() const { return m_errorString; }

    /*! Why the bus was lost last, a sentence for the user; stays when the bus is back. Empty when it was not
     *  lost since the user connected or disconnected.
     */
    QString lossReason() const { return m_lossReason; }

    BusCounters counters() const;

    /*! At which the bus runs, in bit/s; 0 when nobody tells it, and while the bus is not connected. */
    int bitRate() const { return m_port != nullptr ? m_bitRate : 0; }

    /*! Of all frames; its bit rate is that of the bus when it was open last. */
    const CanOpen::BusLoad &load() const { return m_load; }

    CanOpen::SdoClient &sdoClient() { return m_sdoClient; }
    CanOpen::HeartbeatConsumer &heartbeats() { return m_heartbeats; }
    InterfaceWatch &interfaceWatch() { return m_watch; }

    /*! The time of a bus that has one of its own, in us: that of a trace that is played stands still with it. A back end tells
     *  it in the property "busTime" of its device. Empty for other buses, and while the bus is not connected.
     */
    std::optional<qint64> busTime() const;

    /*! For questions to the back end; null while the bus is not connected. */
    const QCanBusDevice *device() const;

    /*! Tells the back end what only itself knows: \a key is one from QCanBusDevice::UserKey on. False for others, and while
     *  the bus is not connected.
     */
    bool configureDevice(int key, const QVariant &value);

    /*! Sends \a frame; dropped while the bus is not connected, and when it is none that the gate lets through. */
    CanOpen::Sending send(const QCanBusFrame &frame);

    /*! Lets every frame through from now on: for a simulated vehicle on a bus, which answers, sends heartbeats and
     *  writes its outputs.
     */
    void openGate() { m_isGateOpen = true; }

signals:
    void stateChanged(BusConnection::State state);
    /*! Every frame, before the consumer and the client see it: what they send for it has its frameSent() later, so
     *  that both signals together are in the order of the bus. Where this computer has lost frames, there is an
     *  error frame that says so, as adapters do it.
     */
    void frameReceived(const QCanBusFrame &frame);
    /*! Every frame of ours that left for the bus. Slots must not close the connection. */
    void frameSent(const QCanBusFrame &frame);

private:
    enum class Attempt { Opened, Failed, Superseded };

    Attempt open(QString *errorMessage);
    ReceiveQueue::Counter lossCounter() const;
    void adoptPort(std::unique_ptr<CanOpen::CanPort> port);
    void followBusTime();
    void releasePort();
    void handleFrame(const QCanBusFrame &frame);
    void leave(State state, const QString &reason);
    void handleLoss(const QString &reason);
    void tryAgain();
    void setState(State state);
    void addPortCounters(BusCounters *counters) const;

    BusOpener m_opener;
    BusSettings m_settings;
    State m_state = State::Disconnected;
    QString m_errorString;
    QString m_lossReason;
    quint64 m_generation = 0; // raised by every call that makes an attempt under way obsolete
    bool m_isOpening = false;
    bool m_isGateOpen = false;
    bool m_hasOwnTime = false; // the bus
    BusCounters m_counters;    // without those of the open port
    InterfaceWatch m_watch;
    ReceiveQueue::Counter m_lossCounter;
    ReceiveQueue m_queue;
    QTimer m_retryTimer;
    CanOpen::HeartbeatConsumer m_heartbeats;
    CanOpen::BusLoad m_load;
    int m_bitRate = 0; // bit/s
    std::unique_ptr<CanOpen::CanPort> m_port;
    CanOpen::SdoClient m_sdoClient;
};
