// SPDX-License-Identifier: MIT
#include "simulateddevice.h"

#include <QCanBusFactory>
#include <QObject>

/*! The QtSerialBus back end "simulated": its interfaces are simulated vehicles. */
class SimulatedCanBusPlugin : public QObject, public QCanBusFactoryV2
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QCanBusFactory" FILE "simulated.json")
    Q_INTERFACES(QCanBusFactoryV2)

public:
    QCanBusDevice *createDevice(const QString &interfaceName, QString *errorMessage) const override
    {
        Q_UNUSED(errorMessage) // told at connect
        return new Simulator::SimulatedCanDevice(interfaceName);
    }

    QList<QCanBusDeviceInfo> availableDevices(QString *errorMessage) const override
    {
        Q_UNUSED(errorMessage)
        return Simulator::SimulatedCanDevice::interfaces();
    }
};

#include "simulatedcanbus.moc"
