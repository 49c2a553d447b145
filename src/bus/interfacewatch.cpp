// SPDX-License-Identifier: MIT
#include "interfacewatch.h"

#include "backends.h"

#include <QCanBus>
#include <QDir>
#include <QFile>

#include <chrono>

namespace {

using namespace std::chrono_literals;

constexpr auto networkInterval = 250ms;
constexpr auto listInterval = 500ms;
constexpr uint interfaceIsUp = 0x1;     // IFF_UP of the attribute "flags"
constexpr qint64 longestAttribute = 64; // bytes

bool isNetworkPlugin(const QString &plugin)
{
    return BackEnd::find(plugin).presence == BackEnd::Presence::NetworkFolder;
}

/*! A path would lead out of the folder. */
bool isInterfaceName(const QString &name)
{
    return !name.isEmpty() && !name.contains(QLatin1Char('/')) && !name.startsWith(QLatin1Char('.'));
}

QStringList listInterfaces(const QString &plugin)
{
    QStringList names;
    const QList<QCanBusDeviceInfo> devices = QCanBus::instance()->availableDevices(plugin);
    for (const QCanBusDeviceInfo &device : devices)
        names.append(device.name());
    return names;
}

} // namespace

InterfaceWatch::InterfaceWatch(QObject *parent)
    : QObject(parent)
    , m_networkFolder(QStringLiteral("/sys/class/net"))
    , m_lister(listInterfaces)
{
    connect(&m_timer, &QTimer::timeout, this, &InterfaceWatch::check);
}

void InterfaceWatch::start(const BusAddress &address)
{
    m_address = address;
    m_isLost = false;
    m_isWatchable = look(address) != Presence::Unknown;
    if (!m_isWatchable) {
        m_timer.stop();
        return;
    }

    const bool isNetwork = isNetworkPlugin(address.plugin);
    m_interfaceIndex
        = isNetwork ? readAttribute(address.interfaceName, QStringLiteral("ifindex")) : QByteArray();
    m_timer.start(isNetwork ? networkInterval : listInterval);
}

void InterfaceWatch::stop()
{
    m_timer.stop();
    m_isWatchable = false;
    m_isLost = false;
}

InterfaceWatch::Presence InterfaceWatch::look(const BusAddress &address) const
{
    if (isNetworkPlugin(address.plugin))
        return lookInNetworkFolder(address.interfaceName);
    return m_lister(address.plugin).contains(address.interfaceName) ? Presence::Present : Presence::Unknown;
}

void InterfaceWatch::check()
{
    if (!m_isWatchable)
        return;

    const Presence presence = lookAgain();
    if (m_isLost) {
        if (presence == Presence::Present || presence == Presence::Replaced) {
            m_isLost = false;
            m_interfaceIndex = readAttribute(m_address.interfaceName, QStringLiteral("ifindex"));
            emit returned();
        }
        return;
    }
    if (presence == Presence::Present)
        return;

    m_isLost = true;
    emit lost(presence);
}

InterfaceWatch::Presence InterfaceWatch::lookAgain() const
{
    const Presence presence = look(m_address);
    if (presence == Presence::Unknown)
        return Presence::Missing; // it was listed before
    if (presence == Presence::Present && isNetworkPlugin(m_address.plugin)
        && readAttribute(m_address.interfaceName, QStringLiteral("ifindex")) != m_interfaceIndex)
        return Presence::Replaced;
    return presence;
}

InterfaceWatch::Presence InterfaceWatch::lookInNetworkFolder(const QString &interfaceName) const
{
    if (!QDir(m_networkFolder).exists())
        return Presence::Unknown;
    if (!isInterfaceName(interfaceName))
        return Presence::Missing;

    const QByteArray flags = readAttribute(interfaceName, QStringLiteral("flags"));
    if (flags.isEmpty())
        return Presence::Missing;
    return (flags.toUInt(nullptr, 0) & interfaceIsUp) != 0 ? Presence::Present : Presence::Down;
}

QByteArray InterfaceWatch::readAttribute(const QString &interfaceName, const QString &attribute) const
{
    if (!isInterfaceName(interfaceName))
        return QByteArray();
    QFile file(m_networkFolder + QLatin1Char('/') + interfaceName + QLatin1Char('/') + attribute);
    return file.open(QIODevice::ReadOnly) ? file.read(longestAttribute).trimmed() : QByteArray();
}
