// SPDX-License-Identifier: MIT
#include "bussnapshot.h"

#include "commandarguments.h"
#include "console.h"
#include "interruptibleloop.h"
#include "patienceoptions.h"

#include <canopen/cobid.h>
#include <host/core/readwords.h>

#include <algorithm>

namespace {

constexpr QLatin1String quickOption("quick");
constexpr QLatin1String nodeOption("node");
constexpr QLatin1String scanOption("scan");
constexpr QLatin1String edsOption("eds");
constexpr QLatin1String shareOption("share");

// Long objects take their time, and hold up only their own node.
constexpr std::chrono::milliseconds longestUpload{30000};

std::optional<quint8> parseNodeId(const QString &text)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    return isNumber && CanOpen::isNodeId(number) ? std::optional<quint8>(static_cast<quint8>(number))
                                                 : std::nullopt;
}

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
    options.addOption(
        {edsOption,
         tr("What the device on node N has is in this EDS or DCF: its types count, and all that "
            "it lists is read. May be given for several nodes."),
         QStringLiteral("N:FILE")});
    options.addOption({shareOption,
                       tr("How much of the bus questions and answers may take, 1 to 100 (no limit); usually "
                          "%1.")
                           .arg(BusShare::usualPercent),
                       QStringLiteral("PERCENT")});
    PatienceOptions::add(options);
}

std::optional<ExitStatus> BusSnapshot::parse(const CommandArguments &options)
{
    m_order.scope = options.isSet(quickOption) ? SnapshotScope::Quick : SnapshotScope::Full;
    m_order.isScanned = options.isSet(scanOption);
    m_order.program
        = QCoreApplication::applicationName() + QLatin1Char(' ') + QCoreApplication::applicationVersion();
    if (options.isSet(shareOption)) {
        const std::optional<int> share = options.number(shareOption, 1, BusShare::everything);
        if (!share)
            return Exit::usage;
        m_order.sharePercent = *share;
    }
    if (const std::optional<ExitStatus> status = parseNodes(options))
        return status;
    if (const std::optional<ExitStatus> status = parseDataSheets(options))
        return status;
    const std::optional<ExitStatus> status = PatienceOptions::parse(options, &m_patience);
    m_patience.longest = std::max(m_patience.longest, longestUpload);
    return status;
}

std::optional<ExitStatus> BusSnapshot::parseNodes(const CommandArguments &options)
{
    const QStringList texts = options.values(nodeOption);
    for (const QString &text : texts) {
        const std::optional<quint8> nodeId = parseNodeId(text);
        if (!nodeId)
            return options.complain(tr("\"%1\" is no node ID from 1 to 127.").arg(text));
        m_order.nodeIds.append(*nodeId);
    }
    if (m_order.isScanned && !m_order.nodeIds.isEmpty())
        return options.complain(tr("--scan looks for nodes, --node names them: one of both is enough."));
    return std::nullopt;
}

std::optional<ExitStatus> BusSnapshot::parseDataSheets(const CommandArguments &options)
{
    const QStringList texts = options.values(edsOption);
    for (const QString &text : texts) {
        const int colon = text.indexOf(QLatin1Char(':'));
        const std::optional<quint8> nodeId = parseNodeId(text.left(std::max(colon, 0)));
        if (!nodeId)
            return options.complain(tr("--eds takes a node ID and a file, as in 2:battery.eds."));
        QString error;
        const std::optional<CanOpen::EdsFile> sheet
            = CanOpen::readEdsFile(text.mid(colon + 1), *nodeId, &error);
        if (!sheet) {
            Console::printError(error);
            return Exit::fileFailed;
        }
        m_order.dataSheets.insert(*nodeId, *sheet);
    }
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
    SnapshotRun run(&m_bus);
    QObject::connect(&run, &SnapshotRun::finished, &run, [loop] { loop->end(); });
    QObject::connect(&run, &SnapshotRun::busLostChanged, &run, [this](bool isLost) { sayLoss(isLost); });
    if (m_progress.isShown())
        QObject::connect(&run, &SnapshotRun::nodeChanged, &run, [this, &run] { showProgress(run); });
    run.start(m_order);
    if (!loop->run())
        run.cancel();
    m_isGivenUp = run.isCancelled() && !loop->isInterrupted();
    m_snapshot = run.snapshot();
    m_replacedNodes = run.reader()->replacedNodes().toList();
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
    return m_snapshot.isComplete() ? Exit::success : Exit::stoppedEarly;
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
    return tr(
        "Nothing was read: no node was found. Check that the vehicle is switched on, the cable, and the "
        "bit rate; --scan finds nodes that send no heartbeat.");
}
