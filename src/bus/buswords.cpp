// SPDX-License-Identifier: MIT
#include "buswords.h"

#include <bus/socketcan/interfacekind.h>

#include <QStringList>

namespace {

constexpr double bitsPerKilobit = 1000.0;
constexpr int usualBitRate = 250000; // of the vehicles of CiA 454, bit/s

bool takesBitRate(const QString &interfaceName, const QString &kind)
{
    if (!kind.isEmpty())
        return kind == QLatin1String("can");
    for (const char *const other : {"vcan", "vxcan", "slcan"}) {
        if (interfaceName.startsWith(QLatin1String(other)))
            return false;
    }
    return true;
}

} // namespace

QString BusWords::nodes(const QList<quint8> &sorted)
{
    QStringList parts;
    for (int first = 0; first < sorted.size();) {
        int last = first;
        while (last + 1 < sorted.size() && sorted.at(last + 1) == sorted.at(last) + 1)
            ++last;
        if (last - first >= 2) {
            parts.append(
                tr("%1 to %2").arg(QString::number(sorted.at(first)), QString::number(sorted.at(last))));
        } else {
            for (int i = first; i <= last; ++i)
                parts.append(QString::number(sorted.at(i)));
        }
        first = last + 1;
    }
    return parts.join(QLatin1String(", "));
}

QString BusWords::connecting(const BusSettings &settings)
{
    return tr("Connecting to %1 ...").arg(settings.address.toString());
}

QString BusWords::connected(const BusSettings &settings)
{
    const QString address = settings.address.toString();
    const int bitRate = settings.bitRate.value_or(0);
    if (bitRate > 0)
        return tr("Connected to %1 at %2 kbit/s.").arg(address, QString::number(bitRate / bitsPerKilobit));
    return tr("Connected to %1.").arg(address);
}

QString BusWords::cannotBeOpened(const BusAddress &address, const QString &reason)
{
    return tr("The bus %1 cannot be opened: %2").arg(address.toString(), reason);
}

QString BusWords::presence(InterfaceWatch::Presence presence, const BusSettings &settings)
{
    const QString name = settings.address.interfaceName;
    switch (presence) {
    case InterfaceWatch::Presence::Unknown:
    case InterfaceWatch::Presence::Present:
        return tr("The interface %1 is there.").arg(name);
    case InterfaceWatch::Presence::Down:
        return tr("%1 is down: run \"%2\".")
            .arg(name, switchOnCommand(name, settings.bitRate, interfaceKind(name)));
    case InterfaceWatch::Presence::Missing:
        return tr("There is no interface %1. Check that the adapter is plugged in.").arg(name);
    case InterfaceWatch::Presence::Replaced:
        return tr("The interface %1 was removed and came back.").arg(name);
    }
    return QString();
}

QString BusWords::health(InterfaceHealth::State state, const QString &interfaceName)
{
    switch (state) {
    case InterfaceHealth::State::Unknown:
    case InterfaceHealth::State::Good:
        return QString();
    case InterfaceHealth::State::Warning:
        return tr("The CAN interface %1 counts many bus errors.").arg(interfaceName);
    case InterfaceHealth::State::Passive:
        return tr("The CAN interface %1 is error-passive: nobody acknowledges its frames, or they arrive "
                  "broken. Check bit rate, wiring and termination.")
            .arg(interfaceName);
    case InterfaceHealth::State::BusOff:
        return tr("The CAN interface %1 is bus-off: it has left the bus after too many errors. Check bit "
                  "rate, wiring and termination, then restart the interface, or disconnect and connect.")
            .arg(interfaceName);
    }
    return QString();
}

QString BusWords::switchOnCommand(const QString &interfaceName, std::optional<int> bitRate,
                                  const QString &kind)
{
    const QString command = QStringLiteral("sudo ip link set %1 up").arg(interfaceName);
    if (!takesBitRate(interfaceName, kind))
        return command;
    return command + QStringLiteral(" type can bitrate %1").arg(bitRate.value_or(usualBitRate));
}

QString BusWords::switchOffCommand(const QString &interfaceName)
{
    return QStringLiteral("sudo ip link set %1 down").arg(interfaceName);
}
