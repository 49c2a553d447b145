// SPDX-License-Identifier: MIT
#include "checkupdatecommand.h"

#include <cli/core/commandarguments.h>
#include <cli/core/console.h>
#include <cli/core/exitstatus.h>
#include <cli/core/language.h>
#include <cli/core/nodeoption.h>
#include <cli/core/vehiclesource.h>

#include <host/core/hostsettings.h>
#include <store/nodeview.h>
#include <update/componentupdatechecker.h>

#include <QEventLoop>

namespace {

struct CheckUpdateCommandTr
{
    Q_DECLARE_TR_FUNCTIONS(CheckUpdateCommand)
};

constexpr quint16 identityObject = 0x1018;

void printAnswer(QString answer)
{
    // The line ends here, if not in the answer itself.
    if (answer.endsWith(QLatin1Char('\n')))
        answer.chop(1);
    Console::print(answer);
}

ExitStatus ask(quint32 vendor, quint32 product, quint32 revision)
{
    // The server's name is in the settings of the window.
    QCoreApplication::setOrganizationName(QLatin1String(HostSettings::organization));
    QCoreApplication::setApplicationName(QLatin1String(HostSettings::application));

    ComponentUpdateChecker checker;
    QEventLoop loop;
    QString answer;
    QObject::connect(&checker, &ComponentUpdateChecker::updateInformation, &loop,
                     [&](quint32, quint32, quint32, const QString &info) {
                         answer = info;
                         loop.quit();
                     });
    checker.checkForUpdate(vendor, product, revision);
    loop.exec();
    if (checker.hasFailed()) {
        Console::printError(answer);
        return Exit::serverNotAsked;
    }
    printAnswer(answer);
    return Exit::success;
}

/*! Asks about a node whose identityObject is known as far as the question needs it. */
ExitStatus checkUpdate(const VehicleSource &vehicle, quint8 nodeId)
{
    const NodeView node(vehicle.store(), nodeId);
    const std::optional<QVariant> vendor = node.value(identityObject, 1);
    const std::optional<QVariant> product = node.value(identityObject, 2);
    const std::optional<QVariant> revision = node.value(identityObject, 3);
    if (vendor && product && revision)
        return ask(vendor->toUInt(), product->toUInt(), revision->toUInt());
    Console::printError(
        CheckUpdateCommandTr::tr("The identity of node %1 (object 1018h, sub-indices 1 to 3) is not in %2.")
            .arg(QString::number(nodeId), vehicle.name()));
    return Exit::noUsableNode;
}

} // namespace

ExitStatus runCheckUpdateCommand(const QStringList &arguments)
{
    CommandArguments options(
        QStringLiteral("check-update"),
        CheckUpdateCommandTr::tr("Asks the update information server what it knows about the firmware of "
                                 "a node, and prints its answer."));
    VehicleSource vehicle;
    VehicleSource::addOptions(options);
    NodeOption::add(options, CheckUpdateCommandTr::tr("The node that is asked about."));
    Language::addOption(options);
    if (const std::optional<ExitStatus> status = options.parse(arguments))
        return *status;
    if (const std::optional<ExitStatus> status = vehicle.parse(options))
        return *status;
    if (!NodeOption::isSet(options))
        return options.complain(CheckUpdateCommandTr::tr("--node is missing: which node is meant?"));
    const std::optional<quint8> nodeId = NodeOption::parse(options);
    if (!nodeId)
        return Exit::usage;
    if (const std::optional<ExitStatus> status = Language::load(options))
        return *status;

    if (const std::optional<ExitStatus> status = vehicle.load())
        return *status;
    const ExitStatus readStatus = vehicle.finish();
    if (!NodeOption::isKnown(*nodeId, vehicle))
        return Exit::noUsableNode;
    const ExitStatus status = checkUpdate(vehicle, *nodeId);
    return status != Exit::success ? status : readStatus;
}
