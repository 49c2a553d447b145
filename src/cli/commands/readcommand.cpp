// SPDX-License-Identifier: MIT
#include "readcommand.h"

#include <cli/core/busread.h>
#include <cli/core/commandarguments.h>
#include <cli/core/console.h>
#include <cli/core/exitstatus.h>
#include <cli/core/language.h>
#include <cli/core/nodeoption.h>
#include <cli/core/outputfile.h>
#include <cli/core/reportfiles.h>

#include <store/exchangefile.h>

#include <QDateTime>

#include <algorithm>
#include <array>

namespace {

struct ReadCommandTr
{
    Q_DECLARE_TR_FUNCTIONS(ReadCommand)
};

constexpr QLatin1String exportOption("export");
constexpr QLatin1String reportOption("report");

/*! The objects that identify a device (CiA 301). */
constexpr quint16 deviceTypeIndex = 0x1000;
constexpr quint16 identityIndex = 0x1018;
constexpr std::array<quint8, 4> identitySubIndices{1, 2, 3, 4}; // vendor, product, revision, serial number

/*! The nodes of a read as lines, what is not there told from what could not be read. */
class NodeLines
{
public:
    NodeLines(const NodeStore &store, const ReadRecord &record)
        : m_store(store)
        , m_record(record)
    {
    }

    QString line(quint8 nodeId) const;

private:
    QString hexValue(quint8 nodeId, quint16 index, quint8 subIndex) const;
    QString identity(quint8 nodeId) const;

    const NodeStore &m_store;
    const ReadRecord &m_record;
};

QString countsText(const ReadCounts &counts)
{
    return ReadCommandTr::tr("%1 values read, %2 objects not there, %3 failed")
        .arg(QString::number(counts.values), QString::number(counts.missing), QString::number(counts.failed));
}

QString NodeLines::line(quint8 nodeId) const
{
    return ReadCommandTr::tr("Node %1: device type %2, %3; %4")
        .arg(QString::number(nodeId), hexValue(nodeId, deviceTypeIndex, 0), identity(nodeId),
             countsText(m_record.counts(nodeId)));
}

/*! "0x0000019A", "-" when the device does not have the object. */
QString NodeLines::hexValue(quint8 nodeId, quint16 index, quint8 subIndex) const
{
    const std::optional<ReadResult> result = m_record.result(nodeId, {index, subIndex});
    if (!result || result->isFailure())
        return ReadCommandTr::tr("not read");
    QVariant value;
    if (!m_store.getValue(nodeId, index, subIndex, value))
        return QStringLiteral("-");
    return QStringLiteral("0x%1").arg(
        QString::number(value.toUInt(), 16).toUpper().rightJustified(8, QLatin1Char('0')));
}

QString NodeLines::identity(quint8 nodeId) const
{
    std::array<QString, identitySubIndices.size()> parts;
    std::transform(identitySubIndices.begin(), identitySubIndices.end(), parts.begin(),
                   [&](quint8 subIndex) { return hexValue(nodeId, identityIndex, subIndex); });
    return ReadCommandTr::tr("vendor %1, product %2, revision %3, serial number %4")
        .arg(parts[0], parts[1], parts[2], parts[3]);
}

void printNodes(const NodeStore &store, const ReadRecord &record, qint64 elapsed)
{
    const NodeLines lines(store, record);
    const QList<quint8> nodes = store.nodeList();
    for (const quint8 nodeId : nodes)
        Console::print(lines.line(nodeId));
    Console::print(ReadCommandTr::tr("Total: %1 nodes, %2, %3 s")
                       .arg(QString::number(nodes.size()), countsText(record.total()),
                            QString::number(static_cast<double>(elapsed) / 1000.0, 'f', 1)));
}

class ReadCommand
{
public:
    ExitStatus run(const QStringList &arguments);

private:
    std::optional<ExitStatus> parse(const QStringList &arguments);
    QString findObstacle() const;
    bool writeExport();
    ExitStatus writeReportFiles();

    CommandArguments m_options{QStringLiteral("read"),
                               ReadCommandTr::tr("Reads all devices of a bus and saves what they said.")};
    BusRead m_bus;
};

ExitStatus ReadCommand::run(const QStringList &arguments)
{
    if (const std::optional<ExitStatus> status = parse(arguments))
        return *status;

    if (OutputFile(m_options.value(exportOption)).isStandardOutput())
        Console::keepOutputForFile();
    const QString obstacle = findObstacle();
    if (!obstacle.isEmpty()) {
        Console::printError(obstacle);
        return Exit::fileFailed;
    }
    if (const std::optional<ExitStatus> status = m_bus.read(m_options.bus()))
        return *status;

    printNodes(m_bus.store(), m_bus.summary().record, m_bus.elapsed());
    const ExitStatus readStatus = m_bus.finish();
    const bool isExported = writeExport();
    const ExitStatus reportStatus = writeReportFiles();
    if (reportStatus != Exit::success)
        return reportStatus;
    return isExported ? readStatus : Exit::fileFailed;
}

std::optional<ExitStatus> ReadCommand::parse(const QStringList &arguments)
{
    m_options.addBusOptions();
    m_options.addOption(
        {exportOption,
         ReadCommandTr::tr("Save what was read as this exchange file (.dxxml), \"-\" for standard output."),
         ReadCommandTr::tr("FILE")});
    m_options.addOption(
        {reportOption,
         ReadCommandTr::tr(
             "Write the report, dx_report.pdf and dx_report.html, into this folder, which is made when "
             "it is not there."),
         ReadCommandTr::tr("DIR")});
    NodeOption::add(
        m_options,
        ReadCommandTr::tr("Read this node only. It need not send a heartbeat, and node 1 need not be "
                          "there."));
    BusRead::addOptions(m_options);
    Language::addOption(m_options);
    if (const std::optional<ExitStatus> status = m_options.parse(arguments))
        return status;
    if (const std::optional<ExitStatus> status = m_bus.parse(m_options))
        return status;
    if (m_options.isSet(exportOption) && m_options.value(exportOption).isEmpty())
        return m_options.complain(ReadCommandTr::tr("--export takes the name of a file."));
    if (m_options.isSet(reportOption) && m_options.value(reportOption).isEmpty())
        return m_options.complain(ReadCommandTr::tr("--report takes the name of a folder."));
    if (NodeOption::isSet(m_options)) {
        const std::optional<quint8> nodeId = NodeOption::parse(m_options);
        if (!nodeId)
            return Exit::usage;
        m_bus.setNode(*nodeId);
    }
    return Language::load(m_options);
}

/*! Finds out before the read why what it gives could not be written after it; empty when it could. */
QString ReadCommand::findObstacle() const
{
    QString error;
    if (m_options.isSet(exportOption) && !OutputFile(m_options.value(exportOption)).canBeWritten(&error))
        return error;
    if (m_options.isSet(reportOption) && !prepareReportFolder(m_options.value(reportOption), &error))
        return error;
    return QString();
}

bool ReadCommand::writeExport()
{
    return !m_options.isSet(exportOption)
           || OutputFile(m_options.value(exportOption))
                  .writeExchange(exportToText(m_bus.store(), QDateTime::currentDateTime()));
}

ExitStatus ReadCommand::writeReportFiles()
{
    return m_options.isSet(reportOption) ? writeReport(m_bus.store(), m_options.value(reportOption))
                                         : Exit::success;
}

} // namespace

ExitStatus runReadCommand(const QStringList &arguments)
{
    ReadCommand command;
    return command.run(arguments);
}

bool readNeedsFonts(const QStringList &arguments)
{
    return std::any_of(arguments.cbegin(), arguments.cend(), [](const QString &argument) {
        return argument.startsWith(QLatin1String("--") + reportOption);
    });
}
