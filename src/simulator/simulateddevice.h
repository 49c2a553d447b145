// SPDX-License-Identifier: MIT
#pragma once

#include "simulatedbus.h"

#include <QCanBusDevice>
#include <QCanBusDeviceInfo>
#include <QList>

#include <memory>

namespace Simulator {

class SimulatedSegment;

/*! A CAN interface on a simulated vehicle's bus.
 *
 *  The interface name is the name of a shipped vehicle or the path of a vehicle file. Devices of one process
 *  that have the same interface name share the bus; the vehicle runs from the first that connects to the last
 *  that disconnects. BitRateKey paces the bus: a bit rate of CAN, or 0 for as fast as possible; the vehicle's
 *  own (250000 as a rule) when it is not set. Another rate than the bus runs at already, and one that CAN
 *  does not know, are refused at connect.
 *
 *  On a paced bus framesWritten() comes when a frame is through, as with an adapter that confirms what it has sent;
 *  until then it is one of framesToWrite().
 */
class SimulatedCanDevice : public QCanBusDevice, private BusParticipant
{
    Q_OBJECT

public:
    /*! Configuration keys of this back end, for tests and demonstrations. They act at once. */
    enum SimulatedKey {
        UnplugKey
        = UserKey, //!< true: every write fails and nothing arrives, but the state stays; false: as before
        DropKey,   //!< true: falls back to the unconnected state with a ConnectionError
        FaultKey,  //!< JSON text of a fault with "node" (0 or absent: the bus); an empty text ends all faults
        FailEveryKey, //!< every n-th write fails; 0: none
        SendQueueKey, //!< frames that wait to be sent at most; a write beyond fails
    };
    Q_ENUM(SimulatedKey)

    /*! \a interfaceName as above. */
    explicit SimulatedCanDevice(const QString &interfaceName, QObject *parent = nullptr);

    /*! On \a bus, which must be held by a shared pointer from its creation; the vehicle, if any, is the
     *  caller's.
     */
    explicit SimulatedCanDevice(std::shared_ptr<SimulatedBus> bus, QObject *parent = nullptr);
    ~SimulatedCanDevice() override;

    void setConfigurationParameter(int key, const QVariant &value) override;
    bool writeFrame(const QCanBusFrame &frame) override;
    QString interpretErrorFrame(const QCanBusFrame &errorFrame) override;

    /*! The shipped vehicles. */
    static QList<QCanBusDeviceInfo> interfaces();

protected:
    bool open() override;
    void close() override;

private:
    void receive(const QCanBusFrame &frame) override;
    void batchReceived() override;
    void sent() override;
    void busLost(BusLoss loss) override;

    bool joinSegment();
    void leaveBus();
    void drop();
    void orderFault(const QByteArray &json);

    QString m_interfaceName;
    std::shared_ptr<SimulatedSegment> m_segment; // null while unconnected, or with a bus of the caller
    std::shared_ptr<SimulatedBus> m_bus;         // null while unconnected
    std::shared_ptr<SimulatedBus> m_givenBus;
    QVector<QCanBusFrame> m_received;
    bool m_isUnplugged = false;
    int m_failEvery = 0;
    quint64 m_writes = 0;
    int m_queueLength = SimulatedBus::defaultQueueLength;
};

} // namespace Simulator
