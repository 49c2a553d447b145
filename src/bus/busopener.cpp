// SPDX-License-Identifier: MIT
#include "busopener.h"

#include "backends.h"
#include "buswords.h"
#include "interfacebitrate.h"

#include <bus/socketcan/interfacekind.h>
#include <canopen/canport.h>
#include <system/systemerrortext.h>

#include <QCanBus>
#include <QCanBusDevice>
#include <QVariant>

namespace {

QCanBusDevice *createDevice(const QString &plugin, const QString &interfaceName, QString *errorMessage)
{
    return QCanBus::instance()->createDevice(plugin, interfaceName, errorMessage);
}

} // namespace

BusOpener::BusOpener()
    : m_factory(createDevice)
    , m_readBitRate(interfaceBitRate)
{
}

std::unique_ptr<CanOpen::CanPort> BusOpener::makePort(const BusSettings &settings,
                                                      QString *errorMessage) const
{
    const bool isConfiguredOutside = BackEnd::find(settings.address.plugin).isConfiguredOutside;
    if (isConfiguredOutside && settings.bitRate && !configureInterface(settings, errorMessage))
        return nullptr;
    std::unique_ptr<QCanBusDevice> device = makeDevice(settings.address, errorMessage);
    if (device == nullptr)
        return nullptr;
    if (isConfiguredOutside)
        CanOpen::clearDefaultBitRate(*device);
    else if (settings.bitRate)
        device->setConfigurationParameter(QCanBusDevice::BitRateKey, *settings.bitRate);
    return std::make_unique<CanOpen::CanPort>(std::move(device));
}

int BusOpener::bitRate(const BusSettings &settings, const QCanBusDevice &device) const
{
    const BackEnd &backEnd = BackEnd::find(settings.address.plugin);
    if (!backEnd.hasBitRate)
        return 0;
    if (backEnd.isConfiguredOutside)
        return settings.bitRate ? *settings.bitRate : m_readBitRate(settings.address.interfaceName);
    return device.configurationParameter(QCanBusDevice::BitRateKey).toInt();
}

bool BusOpener::configureInterface(const BusSettings &settings, QString *errorMessage) const
{
    // A refused bit rate does not make connecting fail, but a connected device keeps no parameter that it
    // could not apply. A device of its own, as setting the bit rate takes the interface down and up again.
    const std::unique_ptr<QCanBusDevice> device = makeDevice(settings.address, errorMessage);
    if (device == nullptr)
        return false;
    CanOpen::clearDefaultBitRate(*device);
    if (!device->connectDevice()) {
        *errorMessage = BusWords::cannotBeOpened(settings.address, systemErrorText(device->errorString()));
        return false;
    }
    device->setConfigurationParameter(QCanBusDevice::BitRateKey, *settings.bitRate);
    const bool isSet = device->configurationParameter(QCanBusDevice::BitRateKey).toInt() == *settings.bitRate;
    device->disconnectDevice();
    if (!isSet) {
        const QString name = settings.address.interfaceName;
        *errorMessage
            = tr("The interface %1 does not take the bit rate %2. Setting it needs the library libsocketcan "
                 "and the right to configure interfaces. By hand: run \"%3\" and \"%4\", then connect "
                 "without "
                 "a bit rate.")
                  .arg(name, QString::number(*settings.bitRate), BusWords::switchOffCommand(name),
                       BusWords::switchOnCommand(name, settings.bitRate, interfaceKind(name)));
    }
    return isSet;
}

std::unique_ptr<QCanBusDevice> BusOpener::makeDevice(const BusAddress &address, QString *errorMessage) const
{
    QString reason;
    std::unique_ptr<QCanBusDevice> device(m_factory(address.plugin, address.interfaceName, &reason));
    if (device == nullptr)
        *errorMessage = BusWords::cannotBeOpened(address, reason);
    return device;
}
