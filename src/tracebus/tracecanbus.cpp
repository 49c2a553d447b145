// SPDX-License-Identifier: MIT
#include "tracedevice.h"

#include <QCanBusFactory>
#include <QObject>

/*! The QtSerialBus back end "trace": its interfaces are traces that are played back. */
class TraceCanBusPlugin : public QObject, public QCanBusFactoryV2
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QCanBusFactory" FILE "trace.json")
    Q_INTERFACES(QCanBusFactoryV2)

public:
    QCanBusDevice *createDevice(const QString &interfaceName, QString *errorMessage) const override
    {
        Q_UNUSED(errorMessage) // told at connect
        return new TraceCanDevice(interfaceName);
    }

    QList<QCanBusDeviceInfo> availableDevices(QString *errorMessage) const override
    {
        Q_UNUSED(errorMessage)
        return TraceCanDevice::interfaces();
    }
};

#include "tracecanbus.moc"
