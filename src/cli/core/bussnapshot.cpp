// SPDX-License-Identifier: MIT
#include "bussnapshot.h"

#include "commandarguments.h"
#include "console.h"
#include "datasheets.h"
#include "interruptibleloop.h"
#include "objectaddress.h"
#include "optionnames.h"
#include "patienceoptions.h"
#include "shareoption.h"

#include <canopen/cobid.h>
#include <host/core/readwords.h>

#include <algorithm>

namespace {

constexpr QLatin1String quickOption("quick");
constexpr QLatin1String scanOption("scan");

// Long objects take their time, and hold up only their own node.
constexpr std::chrono::milliseconds longestUpload{30000};

} // namespace

void BusSnapshot::addOptions(CommandArguments &options)
{
    options.addOption(
        {quickOption, tr("Read the entries of the overview and the names of the devices only.")});
    options.addOption({nodeOption,
                       tr("Read this node, whether it sends a heartbeat or not, and no others but those that "
                          "are named so as well."),
                       QStringLiteral("N")});
    options.addOption({scanOption, tr("Ask every node ID, and so also find nodes that send no heartbeat.")});
    DataSheets::addOption(
        options, tr("What the device on node N has is in this EDS or DCF: its types count, and all that "
                    "it lists is read. May be given for several nodes."));
    ShareOption::add(options, BusShare::usualPercent);
    PatienceOptions::add(options);
}

std::optional<ExitStatus> BusSnapshot::parse(const CommandArguments &options)
{
    m_order.scope = options.isSet(quickOption) ? SnapshotScope::Quick : SnapshotScope::Full;
    m_order.isScanned = options.isSet(scanOption);
    m_order.program
        = QCoreApplication::applicationName() + QLatin1Char(' ') + QCoreApplication::applicationVersion();
    if (const std::optional<ExitStatus> status = ShareOption::parse(options, &m_order.sharePercent))
        return status;
    if (const std::optional<ExitStatus> status = parseNodes(options))
        return status;
    DataSheets sheets;
    if (const std::optional<ExitStatus> status = sheets.parse(options))
        return status;
    m_order.dataSheets = sheets.sheets();
    const std::optional<ExitStatus> status = PatienceOptions::parse(options, &m_patience);
    m_patience.longest = std::max(m_patience.longest, longestUpload);
    return status;
}

std::optional<ExitStatus> BusSnapshot::parseNodes(const CommandArguments &options)
{
    const QStringList texts = options.values(nodeOption);
    for (const QString &text : texts) {
        const std::optional<quint8> nodeId = ObjectAddress::parseNodeId(text);
        if (!nodeId)
            return options.complain(tr("\"%1\" is no node ID from 1 to 127.").arg(text));
        m_order.nodeIds.append(*nodeId);
    }
    if (m_order.isScanned && !m_order.nodeIds.isEmpty())
        return options.complain(tr("--scan looks for nodes, --node names them: one of both is enough."));
    return std::nullopt;
}

std::optional<ExitStatus> BusSnapshot::take(const BusSettings &settings)
{
    InterruptibleLoop loop;
    m_bus.sdoClient().setDefaultPatience(m_patience);
    QString error;
    if (!m_bus.connectToBus(settings, &error)) {
        Console::printBusError(error);
        return Exit::busNotOpened;
    }
    const QMetaObject::Connection foreign = QObject::connect(
        &m_bus.sdoClient(), &CanOpen::SdoClient::foreignClientSeen, &m_bus, [this](quint8 nodeId) {
            m_progress.clear();
            Console::printError(ReadWords::foreignClient(nodeId));
        });
    if (!loop.isInterrupted()) // while the bus was being opened
        read(&loop);
    QObject::disconnect(foreign);
    m_progress.clear();
    m_interruption = loop.status();
    if (!m_snapshot.nodes.isEmpty())
        return std::nullopt;
    Console::printError(loop.isInterrupted() ? tr("Interrupted; nothing was read.") : describeNoNode());
    if (loop.isInterrupted())
        return m_interruption;
    return m_bus.lossReason().isEmpty() ? Exit::noUsableNode : Exit::stoppedEarly;
}

void BusSnapshot::read(InterruptibleLoop *loop)
{
    if (readVehicle(loop))
        return;
    m_isOtherVehicle = true;
    m_order.earlier.reset();
    readVehicle(loop);
}

/*! False when it is not the vehicle of the earlier snapshot. */
bool BusSnapshot::readVehicle(InterruptibleLoop *loop)
{
    SnapshotRun run(&m_bus);
    QObject::connect(&run, &SnapshotRun::finished, &run, [loop] { loop->end(); });
    QObject::connect(&run, &SnapshotRun::busLostChanged, &run, [this](bool isLost) { sayLoss(isLost); });
    if (m_progress.isShown())
        QObject::connect(&run, &SnapshotRun::nodeChanged, &run, [this, &run] { showProgress(run); });
    // Later, as the reader is in the middle of an answer.
    const auto endWithStrangers = [&run] {
        if (!run.reader()->strangerNodes().isEmpty())
            run.cancel();
    };
    if (m_order.earlier)
        QObject::connect(&run, &SnapshotRun::nodeChanged, &run, endWithStrangers, Qt::QueuedConnection);
    run.start(m_order);
    if (!loop->run())
        run.cancel();
    if (!loop->isInterrupted() && !run.reader()->strangerNodes().isEmpty())
        return false;
    m_isGivenUp = run.isCancelled() && !loop->isInterrupted();
    m_snapshot = run.snapshot();
    m_replacedNodes = run.reader()->replacedNodes().toList();
    m_unrecognizedNodes = run.reader()->unrecognizedNodes().toList();
    m_doubts = run.doubts();
    return true;
}

ExitStatus BusSnapshot::finish() const
{
    if (m_interruption != Exit::success) {
        Console::printError(tr("Interrupted; what was read is kept."));
        return m_interruption;
    }
    if (m_isGivenUp) {
        Console::printError(
            tr("The snapshot was ended early, because the bus was lost: %1 What was read is kept.")
                .arg(m_bus.lossReason()));
        return Exit::stoppedEarly;
    }
    for (const QString &doubt : m_doubts)
        Console::printError(doubt);
    return isComplete() ? Exit::success : Exit::stoppedEarly;
}

void BusSnapshot::showProgress(const SnapshotRun &run)
{
    if (!m_progress.isDue())
        return;
    const SnapshotProgress progress = run.reader()->progress();
    QString text = tr("%1 of %2 nodes, %3 of %4 objects")
                       .arg(QString::number(progress.nodesDone), QString::number(progress.nodes),
                            QString::number(progress.asked), QString::number(progress.total));
    if (progress.timeLeft) {
        const qint64 seconds = (progress.timeLeft->count() + 999) / 1000;
        text = tr("%1, %2 s left").arg(text, QString::number(seconds));
    }
    m_progress.update(text);
}

void BusSnapshot::sayLoss(bool isLost)
{
    m_progress.clear();
    Console::printError(isLost ? tr("The bus was lost: %1 Waiting for it ...").arg(m_bus.lossReason())
                               : tr("The bus is back."));
}

QString BusSnapshot::describeNoNode() const
{
    if (!m_bus.lossReason().isEmpty())
        return tr("Nothing was read, because the bus was lost: %1").arg(m_bus.lossReason());
    if (!m_doubts.isEmpty())
        return tr("Nothing was read. %1").arg(m_doubts.join(QLatin1Char(' ')));
    return tr(
        "Nothing was read: no node was found. Check that the vehicle is switched on, the cable, and the "
        "bit rate; --scan finds nodes that send no heartbeat.");
}
