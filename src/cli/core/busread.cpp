// SPDX-License-Identifier: MIT
#include "busread.h"

#include "commandarguments.h"
#include "console.h"
#include "interruptibleloop.h"
#include "patienceoptions.h"

#include <bus/buswords.h>

namespace {

constexpr quint8 controllerNodeId = 1;

} // namespace

void BusRead::addOptions(CommandArguments &options)
{
    PatienceOptions::add(options);
}

std::optional<ExitStatus> BusRead::parse(const CommandArguments &options)
{
    return PatienceOptions::parse(options, &m_patience);
}

void BusRead::setNode(quint8 nodeId)
{
    m_nodeReader = std::make_unique<NodeReader>(&m_services.bus().sdoClient(), nodeId);
}

std::optional<ExitStatus> BusRead::read(const BusSettings &settings)
{
    InterruptibleLoop loop;
    m_services.bus().sdoClient().setDefaultPatience(m_patience);
    QString error;
    if (!m_services.bus().connectToBus(settings, &error)) {
        Console::printBusError(error);
        return Exit::busNotOpened;
    }
    // Whether the run is whole or not: who reads beside it makes it slow.
    QObject::connect(&m_services.bus().sdoClient(), &CanOpen::SdoClient::foreignClientSeen, &m_services,
                     [this](quint8 nodeId) {
                         m_progress.clear();
                         Console::printError(ReadWords::foreignClient(nodeId));
                     });
    QElapsedTimer clock;
    clock.start();
    if (m_nodeReader != nullptr)
        readNode(&loop);
    else
        readAll(&loop);
    m_elapsed = clock.elapsed();
    m_progress.clear();
    if (loop.isInterrupted()) {
        Console::printError(tr("Interrupted; nothing was saved."));
        return loop.status();
    }
    return m_nodeReader != nullptr ? checkNode() : checkVehicle();
}

void BusRead::readAll(InterruptibleLoop *loop)
{
    if (loop->isInterrupted()) // while the bus was being opened
        return;
    ReadRun run(&m_services, &m_reader, &m_progress);
    run.run(loop);
}

void BusRead::readNode(InterruptibleLoop *loop)
{
    QObject::connect(m_nodeReader.get(), &NodeReader::finished, m_nodeReader.get(), [loop] { loop->end(); });
    QObject::connect(&m_services.bus().sdoClient(), &CanOpen::SdoClient::finished, m_nodeReader.get(),
                     [this] {
                         m_progress.update(tr("Reading node %1, object %2: %3 of %4")
                                               .arg(QString::number(m_nodeReader->nodeId()),
                                                    m_nodeReader->key().toString(),
                                                    QString::number(m_nodeReader->entriesDone()),
                                                    QString::number(m_nodeReader->entriesTotal())));
                     });
    m_nodeReader->start();
    loop->run();
}

std::optional<ExitStatus> BusRead::checkVehicle()
{
    const QList<quint8> heard = m_reader.getNodeList();
    if (heard.contains(controllerNodeId))
        return std::nullopt;
    Console::printError(describeNoNode(heard));
    return Exit::noUsableNode;
}

std::optional<ExitStatus> BusRead::checkNode()
{
    const ReadSummary how = summary();
    const bool isSilent = how.end == ReadSummary::End::NoAnswer
                          && how.record.failures().size() == how.record.total().objects()
                          && how.record.total().objects() == NodeReader::mostSilences;
    // One that is heard is there, and the cable is in order.
    const bool isHeard = m_services.bus().heartbeats().state(how.nodeId).has_value();
    if (!isSilent || isHeard || m_services.silenceOf(how.nodeId) == ReadWords::Silence::BusFull)
        return std::nullopt;
    Console::printError(
        tr("Nothing was read: node %1 does not answer. Check that it is switched on, the cable, "
           "and the bit rate.")
            .arg(how.nodeId));
    return Exit::noUsableNode;
}

ReadSummary BusRead::summary()
{
    if (m_nodeReader == nullptr)
        return m_services.reads().summary();

    ReadSummary summary;
    summary.nodeId = m_nodeReader->nodeId();
    summary.key = m_nodeReader->key();
    summary.record = m_nodeReader->record();
    summary.reason = m_services.bus().lossReason();
    const std::optional<ReadResult> last = summary.record.result(summary.nodeId, summary.key);
    const bool isUnsent = last && last->kind == ReadResult::Kind::NotSent;
    if (m_nodeReader->end() == NodeReader::End::NodeSilent)
        summary.end = isUnsent ? ReadSummary::End::NotSent : ReadSummary::End::NoAnswer;
    else if (m_nodeReader->end() == NodeReader::End::Cancelled)
        summary.end = ReadSummary::End::BusGone;
    return summary;
}

ExitStatus BusRead::finish()
{
    const ReadSummary how = summary();
    const bool isStopped = how.end != ReadSummary::End::Complete;
    if (isStopped)
        Console::printError(describeStop(how));
    else if (m_nodeReader == nullptr && m_services.wasBusFull())
        Console::printError(ReadWords::nodesMayBeMissing());
    const QVector<FailedObject> failures = how.failuresBeside();
    for (const FailedObject &failure : failures)
        Console::printError(failure.toString());
    if (isStopped)
        return Exit::stoppedEarly;
    return failures.isEmpty() ? Exit::success : Exit::objectsFailed;
}

NmtSender::NmtState BusRead::nmtState(quint8 nodeId)
{
    const std::optional<CanOpen::NmtState> state = m_services.bus().heartbeats().state(nodeId);
    return state ? HeartbeatHub::toHostState(*state) : NmtSender::Unknown;
}

QString BusRead::describeStop(const ReadSummary &summary)
{
    const ReadWords::Silence silence = m_services.silenceOf(summary.nodeId);
    QString sentence = ReadWords::end(summary, silence);
    if (summary.end != ReadSummary::End::NoAnswer || silence != ReadWords::Silence::Unexplained)
        return sentence;
    return sentence + QLatin1Char(' ') + tr("A larger --timeout or more --retries help with slow nodes.");
}

QString BusRead::describeNoNode(const QList<quint8> &heard)
{
    if (!m_services.bus().lossReason().isEmpty())
        return tr("Nothing was read, because the bus was lost: %1").arg(m_services.bus().lossReason());
    if (m_services.wasBusFull()) {
        ReadSummary nothing;
        nothing.end = ReadSummary::End::NothingAsked;
        return ReadWords::end(nothing, ReadWords::Silence::BusFull);
    }
    if (heard.isEmpty()) {
        return tr(
            "Nothing was read: no node sent a heartbeat. Check that the vehicle is switched on, the cable, "
            "and the bit rate.");
    }
    return tr("Nothing was read: node 1, the bus controller, sent no heartbeat. Heard: node %1.")
        .arg(BusWords::nodes(heard));
}
