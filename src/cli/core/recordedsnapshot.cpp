// SPDX-License-Identifier: MIT
#include "recordedsnapshot.h"

#include "commandarguments.h"
#include "console.h"
#include "optionnames.h"

#include <bus/buswords.h>

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

namespace {

constexpr QLatin1String traceOption("from-trace");
const QLatin1String standardInput("-");

/*! When a file was written last; now for what is no file. */
QDateTime endOf(const QString &fileName)
{
    const QFileInfo file(fileName);
    const QDateTime end = file.isFile() ? file.lastModified() : QDateTime::currentDateTime();
    return end.toOffsetFromUtc(end.offsetFromUtc());
}

/*! The address at which it can be played back. */
QString addressOf(const QString &fileName)
{
    return fileName == standardInput ? fileName
                                     : QStringLiteral("trace:") + QFileInfo(fileName).absoluteFilePath();
}

} // namespace

void RecordedSnapshot::addOptions(CommandArguments &options)
{
    options.addOption({traceOption,
                       tr("Take what any client has read in this trace, without a vehicle; \"-\" is standard "
                          "input. Of an object that was read more than once the last value counts."),
                       QStringLiteral("FILE")});
    options.addOption({channelOption,
                       tr("Of the trace's channels this one; without it that of its first frame."),
                       QStringLiteral("NAME")});
}

bool RecordedSnapshot::isWanted(const CommandArguments &options)
{
    return options.isSet(traceOption);
}

std::optional<ExitStatus> RecordedSnapshot::parse(const CommandArguments &options)
{
    m_fileName = options.value(traceOption);
    m_channelName = options.value(channelOption);
    if (const std::optional<ExitStatus> status = m_sheets.parse(options))
        return status;
    m_maker.setDataSheets(m_sheets.sheets());
    return std::nullopt;
}

std::optional<ExitStatus> RecordedSnapshot::take()
{
    if (!m_input.open(m_fileName))
        return Exit::fileFailed;
    TraceFrame frame;
    while (m_input.next(&frame)) {
        if (isWanted(frame))
            m_maker.handle(frame);
    }
    m_snapshot = m_maker.finish(m_input.head(), endOf(m_fileName));
    m_snapshot.program
        = QCoreApplication::applicationName() + QLatin1Char(' ') + QCoreApplication::applicationVersion();
    m_snapshot.bus = addressOf(m_fileName);
    if (m_snapshot.nodes.isEmpty())
        return describeFailure();
    return std::nullopt;
}

/*! One bus is one channel. */
bool RecordedSnapshot::isWanted(const TraceFrame &frame)
{
    const bool isNamed = !m_channel && !m_channelName.isEmpty();
    if (!m_channel && (!isNamed || m_input.head().channels.value(frame.channel) == m_channelName))
        m_channel = frame.channel;
    const bool isWantedOne = m_channel == frame.channel;
    m_hasOthers = m_hasOthers || !isWantedOne;
    return isWantedOne;
}

ExitStatus RecordedSnapshot::describeFailure() const
{
    (void)m_input.finish(); // that nothing is there says more
    const QString name = QDir::toNativeSeparators(m_fileName);
    if (!m_channelName.isEmpty() && !m_channel) {
        Console::printError(
            tr("The trace %1 has no channel \"%2\". There are: %3.")
                .arg(name, m_channelName, m_input.head().channels.join(QStringLiteral(", "))));
        return m_input.interruption().value_or(Exit::fileFailed);
    }
    Console::printError(tr("In the trace %1 no node is heard.").arg(name));
    return m_input.interruption().value_or(Exit::noUsableNode);
}

ExitStatus RecordedSnapshot::finish() const
{
    if (m_hasOthers && m_channelName.isEmpty())
        Console::printError(tr("The trace has more than one channel. The snapshot is of the first one; "
                               "--channel names another."));
    QList<quint8> unread;
    for (const SnapshotNode &node : m_snapshot.nodes) {
        if (node.end == SnapshotEnd::Cancelled)
            unread.append(node.id);
    }
    if (!unread.isEmpty())
        Console::printError(
            tr("Heard in the trace, but read by nobody: node %1.").arg(BusWords::nodes(unread)));
    const ExitStatus reading = m_input.finish();
    return m_snapshot.isComplete() ? reading : m_input.interruption().value_or(Exit::stoppedEarly);
}
