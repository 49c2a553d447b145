// SPDX-License-Identifier: MIT
#include "computerfacts.h"

#include "adapters.h"

#include <QCanBus>
#include <QCanBusDevice>
#include <QCanBusDeviceInfo>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLibrary>
#include <QStandardPaths>

#include <algorithm>
#include <limits>
#include <memory>

namespace {

constexpr qint64 longestAttribute = 64; // bytes
constexpr int canType = 280;            // of network interfaces: ARPHRD_CAN
constexpr uint interfaceIsUp = 0x1;     // IFF_UP
constexpr int hexadecimal = 16;

// Of Qt 5.12 to 5.15; "virtualcan" leads to no adapter.
const char *const knownBackEnds[]
    = {"socketcan", "peakcan", "tinycan", "systeccan", "passthrucan", "vectorcan"};

// Serial lines, and those of drivers that adapters bring.
const char *const deviceFilePatterns[] = {"ttyUSB*", "ttyACM*", "pcan*"};

QString attribute(const QString &folder, const char *name)
{
    QFile file(folder + QLatin1Char('/') + QLatin1String(name));
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.read(longestAttribute)).trimmed()
                                          : QString();
}

/*! Of a number that is written as C does: "280", "0x40081". */
std::optional<qint64> numberIn(const QString &folder, const char *name)
{
    bool isNumber = false;
    const qint64 number = attribute(folder, name).toLongLong(&isNumber, 0);
    return isNumber ? std::optional(number) : std::nullopt;
}

InterfaceFacts interfaceIn(const QString &folder, const QString &name, const ComputerPlaces &places)
{
    InterfaceFacts facts;
    facts.name = name;
    facts.isUp = (static_cast<uint>(numberIn(folder, "flags").value_or(0)) & interfaceIsUp) != 0;
    facts.kind = places.kind(name);
    if (const std::optional<qint64> length = numberIn(folder, "tx_queue_len"))
        facts.queueLength = static_cast<int>(std::clamp<qint64>(*length, 0, std::numeric_limits<int>::max()));
    const std::optional<qint64> overruns = numberIn(folder, "statistics/rx_over_errors");
    const std::optional<qint64> dropped = numberIn(folder, "statistics/rx_dropped");
    if (overruns || dropped)
        facts.lost = overruns.value_or(0) + dropped.value_or(0);
    if (QFileInfo::exists(folder + QStringLiteral("/device")))
        facts.controller = places.controller(name);
    return facts;
}

/*! Whether a part of the device in the folder is a CAN interface. */
bool hasInterface(const QString &device)
{
    const QStringList parts = QDir(device).entryList({QStringLiteral("*:*")}, QDir::Dirs);
    return std::any_of(parts.begin(), parts.end(), [&device](const QString &part) {
        return QFileInfo::exists(device + QLatin1Char('/') + part + QStringLiteral("/net"));
    });
}

std::optional<quint16> usbNumber(const QString &folder, const char *name)
{
    bool isNumber = false;
    const ushort number = attribute(folder, name).toUShort(&isNumber, hexadecimal);
    return isNumber ? std::optional<quint16>(number) : std::nullopt;
}

/*! Some list interfaces without having looked, and say only when a device is made that their library is missing. */
BackEndFacts backEnd(const QString &name)
{
    BackEndFacts facts;
    facts.name = name;
    const QList<QCanBusDeviceInfo> devices = QCanBus::instance()->availableDevices(name, &facts.error);
    for (const QCanBusDeviceInfo &device : devices)
        facts.interfaces.append(device.name());
    if (!facts.error.isEmpty() || devices.isEmpty())
        return facts;
    const std::unique_ptr<QCanBusDevice> device(
        QCanBus::instance()->createDevice(name, devices.first().name(), &facts.error));
    if (device != nullptr)
        facts.error.clear();
    else
        facts.interfaces.clear();
    return facts;
}

} // namespace

QVector<InterfaceFacts> Computer::interfaces(const ComputerPlaces &places)
{
    QVector<InterfaceFacts> all;
    const QStringList names = QDir(places.network).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &name : names) {
        const QString folder = places.network + QLatin1Char('/') + name;
        if (numberIn(folder, "type") == canType)
            all.append(interfaceIn(folder, name, places));
    }
    return all;
}

QVector<AdapterFacts> Computer::adapters(const ComputerPlaces &places)
{
    QVector<AdapterFacts> all;
    const QStringList names = QDir(places.usb).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &name : names) {
        const QString folder = places.usb + QLatin1Char('/') + name;
        const std::optional<quint16> vendor = usbNumber(folder, "idVendor");
        const std::optional<quint16> product = usbNumber(folder, "idProduct");
        const UsbAdapter *known = vendor && product ? UsbAdapter::find(*vendor, *product) : nullptr;
        if (known != nullptr)
            all.append({QLatin1String(known->name), QLatin1String(known->module), hasInterface(folder)});
    }
    return all;
}

QVector<DeviceFileFacts> Computer::deviceFiles(const ComputerPlaces &places)
{
    QStringList patterns;
    for (const char *pattern : deviceFilePatterns)
        patterns.append(QLatin1String(pattern));
    QVector<DeviceFileFacts> all;
    const QFileInfoList files = QDir(places.devices).entryInfoList(patterns, QDir::System | QDir::Files);
    for (const QFileInfo &file : files) {
        const bool isForGroup = file.permission(QFile::ReadGroup | QFile::WriteGroup);
        all.append(
            {file.filePath(), isForGroup ? file.group() : QString(), file.isReadable() && file.isWritable()});
    }
    return all;
}

QVector<BackEndFacts> Computer::backEnds()
{
    QVector<BackEndFacts> all;
    QStringList installed = QCanBus::instance()->plugins();
    installed.sort();
    for (const QString &name : qAsConst(installed))
        all.append(backEnd(name));
    for (const char *name : knownBackEnds) {
        if (!installed.contains(QLatin1String(name)))
            all.append({QLatin1String(name), false, {}, {}});
    }
    return all;
}

ComputerFacts Computer::look(const ComputerPlaces &places)
{
    ComputerFacts facts;
    facts.user = qEnvironmentVariable("USER");
    facts.socketError = Controllers::socketError();
    const QStringList systemFolders{QStringLiteral("/sbin"), QStringLiteral("/usr/sbin")};
    facts.hasIpCommand = !QStandardPaths::findExecutable(QStringLiteral("ip")).isEmpty()
                         || !QStandardPaths::findExecutable(QStringLiteral("ip"), systemFolders).isEmpty();
    facts.hasSocketCanLibrary = QLibrary(QStringLiteral("socketcan")).load(); // as Qt does
    facts.backEnds = backEnds();
    facts.interfaces = interfaces(places);
    facts.adapters = adapters(places);
    facts.deviceFiles = deviceFiles(places);
    return facts;
}
