// SPDX-License-Identifier: MIT
#include "interfacescommand.h"

#include <cli/core/commandarguments.h>
#include <cli/core/console.h>
#include <cli/core/exitstatus.h>

#include <QCanBus>
#include <QCoreApplication>

namespace {

struct InterfacesCommandTr
{
    Q_DECLARE_TR_FUNCTIONS(InterfacesCommand)
};

QString describe(const QString &plugin, const QCanBusDeviceInfo &device)
{
    QStringList notes;
    if (!device.description().isEmpty())
        notes.append(device.description());
    if (!device.serialNumber().isEmpty())
        notes.append(InterfacesCommandTr::tr("serial number %1").arg(device.serialNumber()));
    if (device.isVirtual())
        notes.append(InterfacesCommandTr::tr("virtual"));

    const QString address = QStringLiteral("  %1:%2").arg(plugin, device.name());
    return notes.isEmpty() ? address
                           : QStringLiteral("%1  (%2)").arg(address, notes.join(QStringLiteral(", ")));
}

void listPlugin(const QString &plugin)
{
    Console::print(plugin);
    QString error;
    const QList<QCanBusDeviceInfo> devices = QCanBus::instance()->availableDevices(plugin, &error);
    for (const QCanBusDeviceInfo &device : devices)
        Console::print(describe(plugin, device));
    if (!error.isEmpty())
        Console::print(InterfacesCommandTr::tr("  cannot be used here: %1").arg(error));
    else if (devices.isEmpty())
        Console::print(InterfacesCommandTr::tr("  has no interface now"));
}

} // namespace

ExitStatus runInterfacesCommand(const QStringList &arguments)
{
    CommandArguments options(
        QStringLiteral("interfaces"),
        InterfacesCommandTr::tr("Lists the CAN back ends and their interfaces, as --bus takes them."));
    if (const std::optional<ExitStatus> status = options.parse(arguments))
        return *status;

    QStringList plugins = QCanBus::instance()->plugins();
    plugins.sort();
    for (const QString &plugin : qAsConst(plugins))
        listPlugin(plugin);
    if (plugins.isEmpty())
        Console::print(
            InterfacesCommandTr::tr("QtSerialBus found no back end. Is its plug-in package installed?"));
    return Exit::success;
}
