// SPDX-License-Identifier: MIT
#pragma once

#include "bussettings.h"

#include <QCoreApplication>

#include <functional>
#include <memory>

class QCanBusDevice;

namespace CanOpen {
class CanPort;
}

/*! Makes the way to a CAN interface as the settings want it: sets the bit rate where it is set before, and makes the
 *  port, which is not open yet.
 */
class BusOpener
{
    Q_DECLARE_TR_FUNCTIONS(BusOpener)

public:
    /*! Makes the device of an interface, not connected yet; null on failure with the reason. The caller owns
     *  it.
     */
    using DeviceFactory = std::function<QCanBusDevice *(const QString &plugin, const QString &interfaceName,
                                                        QString *errorMessage)>;

    /*! Tells the bit rate of an interface that the system sets up, in bit/s; 0: not known. */
    using BitRateReader = std::function<int(const QString &interfaceName)>;

    /*! QCanBus::createDevice() and interfaceBitRate() at first. */
    BusOpener();

    void setDeviceFactory(const DeviceFactory &factory) { m_factory = factory; }
    void setBitRateReader(const BitRateReader &reader) { m_readBitRate = reader; }

    /*! Null on failure, with a sentence for the user in \a errorMessage. */
    std::unique_ptr<CanOpen::CanPort> makePort(const BusSettings &settings, QString *errorMessage) const;

    /*! At which an interface runs that was opened with these settings, in bit/s; 0: not known. */
    int bitRate(const BusSettings &settings, const QCanBusDevice &device) const;

private:
    bool configureInterface(const BusSettings &settings, QString *errorMessage) const;
    std::unique_ptr<QCanBusDevice> makeDevice(const BusAddress &address, QString *errorMessage) const;

    DeviceFactory m_factory;
    BitRateReader m_readBitRate;
};
