// SPDX-License-Identifier: MIT
#include "scancommand.h"

#include <cli/core/commandarguments.h>
#include <cli/core/console.h>
#include <cli/core/exitstatus.h>
#include <cli/core/progressline.h>
#include <cli/core/unixsignals.h>

#include <canopen/nodescan.h>
#include <bus/busconnection.h>

#include <QEventLoop>

namespace {

struct Tr
{
    Q_DECLARE_TR_FUNCTIONS(ScanCommand)
};

int report(const QVector<quint8> &nodes)
{
    Console::print(Tr::tr("%1 nodes found").arg(nodes.size()));
    if (!nodes.isEmpty())
        return ExitStatus::success;
    Console::printError(
        Tr::tr("No node answered. Check that the vehicle is switched on, the cable, and the bit rate."));
    return ExitStatus::noUsableNode;
}

int scan(const BusSettings &settings)
{
    UnixSignals signalSource;
    ProgressLine progress;
    BusConnection bus;
    CanOpen::NodeScan nodeScan(&bus.sdoClient());
    QEventLoop loop;
    QVector<quint8> nodes;
    std::optional<int> signalNumber;
    bool isFinished = false;

    QObject::connect(&signalSource, &UnixSignals::received, &loop, [&](int number) {
        signalNumber = number;
        loop.quit();
    });
    QObject::connect(&nodeScan, &CanOpen::NodeScan::found, &loop, [&progress](quint8 nodeId) {
        progress.clear();
        Console::print(Tr::tr("Node %1 answers").arg(nodeId));
    });
    QObject::connect(&nodeScan, &CanOpen::NodeScan::finished, &loop, [&](const QVector<quint8> &found) {
        nodes = found;
        isFinished = true;
        loop.quit();
    });

    QString error;
    if (!bus.connectToBus(settings, &error)) {
        Console::printBusError(error);
        return ExitStatus::busNotOpened;
    }
    if (!signalNumber) {
        progress.update(Tr::tr("Asking nodes 1 to 127 ..."));
        nodeScan.start();
        if (!isFinished)
            loop.exec();
    }
    progress.clear();
    if (signalNumber) {
        Console::printError(Tr::tr("Interrupted."));
        return ExitStatus::signalled(*signalNumber);
    }
    if (bus.state() != BusConnection::State::Connected) {
        Console::printError(
            Tr::tr("The scan was stopped, because the bus was lost: %1").arg(bus.errorString()));
        return ExitStatus::stoppedEarly;
    }
    return report(nodes);
}

} // namespace

int runScanCommand(const QStringList &arguments)
{
    CommandArguments options(
        QStringLiteral("scan"),
        Tr::tr("Asks every node ID for its device type, and so also finds nodes that send no "
               "heartbeat."));
    options.addBusOptions();
    if (const std::optional<int> status = options.parse(arguments))
        return *status;
    return scan(options.bus());
}
