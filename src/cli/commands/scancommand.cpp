// SPDX-License-Identifier: MIT
#include "scancommand.h"

#include <cli/core/commandarguments.h>
#include <cli/core/console.h>
#include <cli/core/exitstatus.h>
#include <cli/core/interruptibleloop.h>
#include <cli/core/progressline.h>
#include <cli/core/silentnode.h>

#include <canopen/nodescan.h>
#include <bus/busconnection.h>
#include <host/core/readwords.h>

namespace {

struct ScanCommandTr
{
    Q_DECLARE_TR_FUNCTIONS(ScanCommand)
};

/*! Says of the nodes that were asked in vain which are there all the same. Whether there are any. */
bool reportHeard(const CanOpen::NodeScan &scan, const CanOpen::HeartbeatConsumer &heartbeats)
{
    bool isAnyHeard = false;
    const QVector<quint8> silent = scan.silentNodes();
    for (const quint8 nodeId : silent) {
        const QString text = silentNodeText(nodeId, heartbeats.state(nodeId));
        if (text.isEmpty())
            continue;
        isAnyHeard = true;
        Console::printError(text);
    }
    return isAnyHeard;
}

ExitStatus report(const CanOpen::NodeScan &scan, const CanOpen::HeartbeatConsumer &heartbeats)
{
    const QVector<quint8> found = scan.foundNodes();
    const QVector<quint8> unasked = scan.unaskedNodes();
    Console::print(ScanCommandTr::tr("%1 nodes found").arg(found.size()));
    const bool isAnyHeard = reportHeard(scan, heartbeats);
    if (!unasked.isEmpty()) {
        Console::printError(ReadWords::unknownNodes(unasked));
        return Exit::stoppedEarly;
    }
    if (!found.isEmpty())
        return Exit::success;
    if (!isAnyHeard) {
        Console::printError(ScanCommandTr::tr(
            "No node answered. Check that the vehicle is switched on, the cable, and the bit rate."));
    }
    return Exit::noUsableNode;
}

ExitStatus scan(const BusSettings &settings)
{
    InterruptibleLoop loop;
    ProgressLine progress;
    BusConnection bus;
    CanOpen::NodeScan nodeScan(&bus.sdoClient());
    QObject::connect(&nodeScan, &CanOpen::NodeScan::found, &nodeScan, [&progress](quint8 nodeId) {
        progress.clear();
        Console::print(ScanCommandTr::tr("Node %1 answers").arg(nodeId));
    });
    QObject::connect(&nodeScan, &CanOpen::NodeScan::finished, &nodeScan, [&loop] { loop.end(); });

    QString error;
    if (!bus.connectToBus(settings, &error)) {
        Console::printBusError(error);
        return Exit::busNotOpened;
    }
    if (!loop.isInterrupted()) {
        progress.update(ScanCommandTr::tr("Asking nodes 1 to 127 ..."));
        nodeScan.start();
    }
    const bool isFinished = loop.run();
    progress.clear();
    if (!isFinished) {
        Console::printError(ScanCommandTr::tr("Interrupted."));
        return loop.status();
    }
    if (!bus.lossReason().isEmpty()) {
        Console::printError(
            ScanCommandTr::tr("The scan was stopped, because the bus was lost: %1").arg(bus.lossReason()));
        return Exit::stoppedEarly;
    }
    return report(nodeScan, bus.heartbeats());
}

} // namespace

ExitStatus runScanCommand(const QStringList &arguments)
{
    CommandArguments options(
        QStringLiteral("scan"),
        ScanCommandTr::tr("Asks every node ID for its device type, and so also finds nodes that send no "
                          "heartbeat."));
    options.addBusOptions();
    if (const std::optional<ExitStatus> status = options.parse(arguments))
        return *status;
    return scan(options.bus());
}
