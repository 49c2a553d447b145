// SPDX-License-Identifier: MIT
#include "busread.h"

#include "commandarguments.h"
#include "console.h"
#include "exitstatus.h"
#include "unixsignals.h"

#include <algorithm>
#include <chrono>

namespace {

const QString timeoutOption = QStringLiteral("timeout");
const QString retriesOption = QStringLiteral("retries");

constexpr int longestTimeout = 60000; // ms
constexpr int mostRetries = 100;
constexpr quint8 controllerNodeId = 1;

QString joinIds(const QList<quint8> &ids)
{
    QStringList texts;
    for (const quint8 id : ids)
        texts.append(QString::number(id));
    return texts.join(QStringLiteral(", "));
}

} // namespace

void BusRead::addOptions(CommandArguments &options)
{
    options.addOption({timeoutOption,
                       tr("How long a node may take to answer, in ms; at least and usually 100."),
                       QStringLiteral("MS")});
    options.addOption({retriesOption, tr("How often a node that does not answer is asked again; usually 2."),
                       QStringLiteral("N")});
}

std::optional<int> BusRead::parse(const CommandArguments &options)
{
    if (options.isSet(timeoutOption)) {
        const std::optional<int> timeout
            = options.number(timeoutOption, static_cast<int>(m_patience.timeout.count()), longestTimeout);
        if (!timeout)
            return ExitStatus::usage;
        m_patience.timeout = std::chrono::milliseconds(*timeout);
    }
    if (options.isSet(retriesOption)) {
        const std::optional<int> retries = options.number(retriesOption, 0, mostRetries);
        if (!retries)
            return ExitStatus::usage;
        m_patience.repeats = *retries;
    }
    // Every repeat gets its whole time.
    m_patience.longest = std::max(m_patience.longest, m_patience.timeout * (m_patience.repeats + 2));
    return std::nullopt;
}

std::optional<int> BusRead::read(const BusSettings &settings)
{
    UnixSignals signalSource;
    std::optional<int> earlySignal; // while the bus is being opened
    QObject::connect(&signalSource, &UnixSignals::received, &m_run, [this, &earlySignal](int signalNumber) {
        earlySignal = signalNumber;
        m_run.interrupt();
    });

    m_services.bus().sdoClient().setDefaultPatience(m_patience);
    QString error;
    if (!m_services.bus().connectToBus(settings, &error)) {
        Console::printBusError(error);
        return ExitStatus::busNotOpened;
    }
    if (!earlySignal)
        m_run.run();
    if (earlySignal) {
        Console::printError(tr("Interrupted; nothing was saved."));
        return ExitStatus::signalled(*earlySignal);
    }
    const QList<quint8> heard = m_reader.getNodeList();
    if (!heard.contains(controllerNodeId)) {
        Console::printError(describeNoNode(heard));
        return ExitStatus::noUsableNode;
    }
    return std::nullopt;
}

int BusRead::finish()
{
    const ReadSummary &summary = m_services.reads().summary();
    const bool isStopped = summary.end != ReadSummary::End::Complete;
    if (isStopped)
        Console::printError(describeStop());
    const QVector<FailedObject> failures = summary.failuresBeside();
    for (const FailedObject &failure : failures)
        Console::printError(failure.toString());
    if (isStopped)
        return ExitStatus::stoppedEarly;
    return failures.isEmpty() ? ExitStatus::success : ExitStatus::objectsFailed;
}

NmtSender::NmtState BusRead::nmtState(quint8 nodeId)
{
    const std::optional<CanOpen::NmtState> state = m_services.bus().heartbeats().state(nodeId);
    return state ? HeartbeatHub::toHostState(*state) : NmtSender::Unknown;
}

QString BusRead::describeStop()
{
    const ReadSummary &summary = m_services.reads().summary();
    const ReadWords::Silence silence = m_services.silenceOf(summary.nodeId);
    const QString sentence = ReadWords::end(summary, silence);
    if (summary.end != ReadSummary::End::NoAnswer || silence != ReadWords::Silence::Unexplained)
        return sentence;
    return sentence + QLatin1Char(' ') + tr("A larger --timeout or more --retries help with slow nodes.");
}

QString BusRead::describeNoNode(const QList<quint8> &heard)
{
    if (!m_services.bus().lossReason().isEmpty())
        return tr("Nothing was read, because the bus was lost: %1").arg(m_services.bus().lossReason());
    if (heard.isEmpty()) {
        return tr(
            "Nothing was read: no node sent a heartbeat. Check that the vehicle is switched on, the cable, "
            "and the bit rate.");
    }
    return tr("Nothing was read: node 1, the bus controller, sent no heartbeat. Heard: node %1.")
        .arg(joinIds(heard));
}
