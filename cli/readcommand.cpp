// SPDX-License-Identifier: MIT
#include "readcommand.h"

#include "commandarguments.h"
#include "console.h"
#include "exitstatus.h"
#include "progressline.h"
#include "readrun.h"
#include "unixsignals.h"

#include <export/exchangefile.h>
#include <host/core/hostservices.h>
#include <reader/datareader.h>

#include <QDir>
#include <QSaveFile>

#include <algorithm>
#include <array>
#include <chrono>

namespace {

struct Tr
{
    Q_DECLARE_TR_FUNCTIONS(ReadCommand)
};

const QString exportOption = QStringLiteral("export");
const QString timeoutOption = QStringLiteral("timeout");
const QString retriesOption = QStringLiteral("retries");

constexpr int longestTimeout = 60000; // ms
constexpr int mostRetries = 100;
constexpr quint8 controllerNodeId = 1;

/*! The objects that identify a device (CiA 301). */
constexpr quint16 deviceTypeIndex = 0x1000;
constexpr quint16 identityIndex = 0x1018;
constexpr std::array<quint8, 4> identitySubIndices{1, 2, 3, 4}; // vendor, product, revision, serial number

/*! \a value as "0x0000019A", "-" when it is not there. */
QString hexValue(const DataReader &reader, quint8 nodeId, quint16 index, quint8 subIndex)
{
    QVariant value;
    if (!reader.getValue(nodeId, index, subIndex, value))
        return QStringLiteral("-");
    return QStringLiteral("0x%1").arg(
        QString::number(value.toUInt(), 16).toUpper().rightJustified(8, QLatin1Char('0')));
}

QString identity(const DataReader &reader, quint8 nodeId)
{
    std::array<QString, identitySubIndices.size()> parts;
    std::transform(identitySubIndices.begin(), identitySubIndices.end(), parts.begin(),
                   [&](quint8 subIndex) { return hexValue(reader, nodeId, identityIndex, subIndex); });
    return Tr::tr("vendor %1, product %2, revision %3, serial number %4")
        .arg(parts[0], parts[1], parts[2], parts[3]);
}

QString joinIds(const QList<quint8> &ids)
{
    QStringList texts;
    for (const quint8 id : ids)
        texts.append(QString::number(id));
    return texts.join(QStringLiteral(", "));
}

void printNodes(const DataReader &reader, const ReadRun &run)
{
    int values = 0;
    int refused = 0;
    const QList<quint8> nodes = reader.getNodeList();
    for (const quint8 nodeId : nodes) {
        const ReadRun::NodeCount count = run.nodeCounts().value(nodeId);
        values += count.values;
        refused += count.refused;
        Console::print(Tr::tr("Node %1: device type %2, %3; %4 values read, %5 objects not there")
                           .arg(QString::number(nodeId), hexValue(reader, nodeId, deviceTypeIndex, 0),
                                identity(reader, nodeId), QString::number(count.values),
                                QString::number(count.refused)));
    }
    Console::print(Tr::tr("Total: %1 nodes, %2 values read, %3 objects not there, %4 s")
                       .arg(QString::number(nodes.size()), QString::number(values), QString::number(refused),
                            QString::number(static_cast<double>(run.elapsed()) / 1000.0, 'f', 1)));
}

QString describeStop(const ReadRun::Stop &stop, HostServices &services)
{
    const QString object = stop.key.toString();
    if (stop.ending == HostSdoClient::Ending::NoBus) {
        return Tr::tr("The read was stopped at node %1, object %2, because the bus was lost: %3")
            .arg(QString::number(stop.nodeId), object, stop.busError);
    }
    const QString sentence
        = Tr::tr("The read was stopped at node %1, object %2, because the node did not answer.")
              .arg(QString::number(stop.nodeId), object);
    if (services.bus().heartbeats().state(stop.nodeId) == CanOpen::NmtState::Stopped) {
        return sentence + QLatin1Char(' ')
               + Tr::tr("It is in the NMT state Stopped, in which no node answers; start it and try again.");
    }
    return sentence + QLatin1Char(' ') + Tr::tr("A larger --timeout or more --retries help with slow nodes.");
}

QString describeNoNode(const QList<quint8> &heard, HostServices &services)
{
    if (services.bus().state() != BusConnection::State::Connected)
        return Tr::tr("Nothing was read, because the bus was lost: %1").arg(services.bus().errorString());
    if (heard.isEmpty()) {
        return Tr::tr(
            "Nothing was read: no node sent a heartbeat. Check that the vehicle is switched on, the cable, "
            "and the bit rate.");
    }
    return Tr::tr("Nothing was read: node 1, the bus controller, sent no heartbeat. Heard: node %1.")
        .arg(joinIds(heard));
}

/*! Finds out before the read whether the file can be written after it. */
bool canBeWritten(const QString &fileName, QString *errorMessage)
{
    QSaveFile file(fileName);
    if (file.open(QIODevice::WriteOnly)) {
        file.cancelWriting();
        return true;
    }
    *errorMessage = Tr::tr("The file %1 cannot be written: %2.")
                        .arg(QDir::toNativeSeparators(fileName), file.errorString());
    return false;
}

class ReadCommand
{
public:
    int run(const QStringList &arguments);

private:
    std::optional<int> parse(const QStringList &arguments);
    int read();
    int finish(const DataReader &reader, const ReadRun &run);

    CommandArguments m_options{QStringLiteral("read"),
                               Tr::tr("Reads all devices of a bus and saves what they said.")};
    CanOpen::SdoPatience m_patience;
    HostServices m_services;
};

int ReadCommand::run(const QStringList &arguments)
{
    if (const std::optional<int> status = parse(arguments))
        return *status;

    QString error;
    if (m_options.isSet(exportOption) && !canBeWritten(m_options.value(exportOption), &error)) {
        Console::printError(error);
        return ExitStatus::fileFailed;
    }
    return read();
}

std::optional<int> ReadCommand::parse(const QStringList &arguments)
{
    m_options.addBusOptions();
    m_options.addOption(
        {exportOption, Tr::tr("Save what was read as this exchange file (.dxxml)."), Tr::tr("FILE")});
    m_options.addOption({timeoutOption,
                         Tr::tr("How long a node may take to answer, in ms; at least and usually 100."),
                         QStringLiteral("MS")});
    m_options.addOption({retriesOption,
                         Tr::tr("How often a node that does not answer is asked again; usually 2."),
                         QStringLiteral("N")});
    if (const std::optional<int> status = m_options.parse(arguments))
        return status;

    if (m_options.isSet(timeoutOption)) {
        const std::optional<int> timeout
            = m_options.number(timeoutOption, static_cast<int>(m_patience.timeout.count()), longestTimeout);
        if (!timeout)
            return ExitStatus::usage;
        m_patience.timeout = std::chrono::milliseconds(*timeout);
    }
    if (m_options.isSet(retriesOption)) {
        const std::optional<int> retries = m_options.number(retriesOption, 0, mostRetries);
        if (!retries)
            return ExitStatus::usage;
        m_patience.repeats = *retries;
    }
    // Every repeat gets its whole time.
    m_patience.longest = std::max(m_patience.longest, m_patience.timeout * (m_patience.repeats + 2));
    if (m_options.isSet(exportOption) && m_options.value(exportOption).isEmpty())
        return m_options.complain(Tr::tr("--export takes the name of a file."));
    return std::nullopt;
}

int ReadCommand::read()
{
    UnixSignals signalSource;
    ProgressLine progress;
    DataReader reader;
    ReadRun run(&m_services, &reader, &progress);
    std::optional<int> earlySignal; // while the bus is being opened
    QObject::connect(&signalSource, &UnixSignals::received, &run, [&run, &earlySignal](int signalNumber) {
        earlySignal = signalNumber;
        run.interrupt(signalNumber);
    });

    m_services.bus().sdoClient().setDefaultPatience(m_patience);
    QString error;
    if (!m_services.bus().connectToBus(m_options.bus(), &error)) {
        Console::printError(error);
        return ExitStatus::busNotOpened;
    }
    if (!earlySignal)
        run.run();
    if (earlySignal) {
        Console::printError(Tr::tr("Interrupted; nothing was saved."));
        return ExitStatus::signalled(*earlySignal);
    }
    return finish(reader, run);
}

int ReadCommand::finish(const DataReader &reader, const ReadRun &run)
{
    const QList<quint8> heard = reader.getNodeList();
    if (!heard.contains(controllerNodeId)) {
        Console::printError(describeNoNode(heard, m_services));
        return ExitStatus::noUsableNode;
    }

    printNodes(reader, run);
    if (run.stop())
        Console::printError(describeStop(*run.stop(), m_services));
    if (m_options.isSet(exportOption)) {
        const QString fileName = m_options.value(exportOption);
        QString error;
        if (!saveExchangeFile(fileName, reader.exportXml(), &error)) {
            Console::printError(error);
            return ExitStatus::fileFailed;
        }
        Console::print(Tr::tr("Wrote %1").arg(QDir::toNativeSeparators(fileName)));
    }
    return run.stop() ? ExitStatus::stoppedByTimeout : ExitStatus::success;
}

} // namespace

int runReadCommand(const QStringList &arguments)
{
    ReadCommand command;
    return command.run(arguments);
}
