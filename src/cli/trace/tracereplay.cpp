// SPDX-License-Identifier: MIT
#include "replaycontents.h"
#include "replaysender.h"
#include "tracecommand.h"

#include <cli/core/commandarguments.h>
#include <cli/core/console.h>
#include <cli/core/interruptibleloop.h>
#include <cli/core/optionnames.h>
#include <cli/core/traceinput.h>

#include <bus/busopener.h>
#include <bus/buswords.h>
#include <bus/virtualbus.h>
#include <trace/files/tracefile.h>

#include <QDir>

namespace {

struct TraceReplayTr
{
    Q_DECLARE_TR_FUNCTIONS(TraceReplay)
};

constexpr QLatin1String reallyOption("really");
constexpr QLatin1String fastest("max");

/*! Puts what was recorded on a bus again. */
class ReplayCommand
{
public:
    ExitStatus run(const QStringList &arguments);

private:
    std::optional<ExitStatus> parse(const QStringList &arguments);
    std::optional<ExitStatus> parseTarget();
    std::optional<ExitStatus> parseSpeed();
    std::optional<ExitStatus> load();
    bool isWanted(const TraceFrame &frame, const TraceHead &head);
    ExitStatus describeNothing(const TraceInput &input) const;
    ExitStatus describeInterruption(ExitStatus status) const;
    void sayWhatIsSent() const;
    ExitStatus send();
    ExitStatus end(const ReplaySender &sender, const InterruptibleLoop &loop) const;

    CommandArguments m_options{
        QStringLiteral("trace replay"),
        TraceReplayTr::tr("Sends the frames of a trace to a bus, for other programs there.")};
    bool m_isVirtual = false;
    double m_speed = 1.0;
    TracePlayer::Pace m_pace = TracePlayer::Pace::Recorded;
    ExitStatus m_reading = Exit::success;
    QString m_channelName; // empty: that of the first frame
    std::optional<quint8> m_channel;
    std::vector<TraceFrame> m_frames;
};

ExitStatus ReplayCommand::run(const QStringList &arguments)
{
    if (const std::optional<ExitStatus> status = parse(arguments))
        return *status;
    if (const std::optional<ExitStatus> status = load())
        return *status;
    sayWhatIsSent();
    return send();
}

std::optional<ExitStatus> ReplayCommand::parse(const QStringList &arguments)
{
    m_options.addPositional(QStringLiteral("FILE"), TraceReplayTr::tr("The trace; \"-\" is standard input."));
    m_options.addBusOptions();
    m_options.addOption(
        {reallyOption,
         TraceReplayTr::tr(
             "The same bus once more, when real devices may be on it: what was recorded acts on them."),
         QStringLiteral("PLUGIN:INTERFACE")});
    m_options.addOption(
        {speedOption,
         TraceReplayTr::tr(
             "So many times as fast as it was recorded, 0.01 to 1000, or \"max\": without pauses."),
         TraceReplayTr::tr("FACTOR")});
    m_options.addOption(
        {channelOption,
         TraceReplayTr::tr("Of the trace's channels this one; without it that of its first frame."),
         QStringLiteral("NAME")});
    if (const std::optional<ExitStatus> status = m_options.parse(arguments))
        return status;
    m_channelName = m_options.value(channelOption);
    if (const std::optional<ExitStatus> status = parseSpeed())
        return status;
    return parseTarget();
}

std::optional<ExitStatus> ReplayCommand::parseSpeed()
{
    if (!m_options.isSet(speedOption))
        return std::nullopt;
    const QString text = m_options.value(speedOption);
    if (text == fastest) {
        m_pace = TracePlayer::Pace::Unpaced;
        return std::nullopt;
    }
    bool isNumber = false;
    m_speed = text.toDouble(&isNumber);
    if (isNumber && m_speed >= TracePlayer::slowest && m_speed <= TracePlayer::fastest)
        return std::nullopt;
    return m_options.complain(
        TraceReplayTr::tr(R"(--speed takes a number from 0.01 to 1000, or "max", not "%1".)").arg(text));
}

/*! Nobody sends to a real vehicle by a slip of the finger. */
std::optional<ExitStatus> ReplayCommand::parseTarget()
{
    const BusAddress &address = m_options.bus().address;
    const QString name = address.toString();
    if (address.plugin == QLatin1String("trace"))
        return m_options.complain(
            TraceReplayTr::tr("%1 is a trace itself: nothing can be sent to it.").arg(name));
    m_isVirtual = isVirtualBus(address);
    if (!m_options.isSet(reallyOption)) {
        if (m_isVirtual)
            return std::nullopt;
        return m_options.complain(
            TraceReplayTr::tr(
                "Real devices may be on %1, and what was recorded acts on them: motors may start, settings "
                "may change. If that is meant, name the bus once more: --really %1")
                .arg(name));
    }
    if (m_options.value(reallyOption) == name)
        return std::nullopt;
    return m_options.complain(TraceReplayTr::tr("--bus names %1, but --really %2; they must be the same.")
                                  .arg(name, m_options.value(reallyOption)));
}

std::optional<ExitStatus> ReplayCommand::load()
{
    TraceInput input; // which must be gone before the loop that sends
    if (!input.open(m_options.positional()))
        return Exit::fileFailed;
    const size_t most = TraceFile::Limits().frames;
    TraceFrame frame;
    while (m_frames.size() < most && input.next(&frame)) {
        if (isWanted(frame, input.head()))
            m_frames.push_back(frame);
    }
    m_reading = input.finish();
    if (const std::optional<ExitStatus> status = input.interruption())
        return describeInterruption(*status);
    if (m_frames.empty())
        return describeNothing(input);
    if (m_frames.size() == most)
        Console::printError(
            TraceReplayTr::tr("The trace may be longer than what fits into memory: no more than %1 "
                              "frames are sent.")
                .arg(most));
    return std::nullopt;
}

/*! Those of one channel that can be sent: what a controller said of its bus cannot. */
bool ReplayCommand::isWanted(const TraceFrame &frame, const TraceHead &head)
{
    const bool isAny = m_channelName.isEmpty();
    if (!m_channel && (isAny || head.channels.value(frame.channel) == m_channelName))
        m_channel = frame.channel;
    return m_channel == frame.channel && !frame.isError();
}

ExitStatus ReplayCommand::describeNothing(const TraceInput &input) const
{
    const QString file = QDir::toNativeSeparators(m_options.positional());
    if (m_channel || m_channelName.isEmpty())
        Console::printError(TraceReplayTr::tr("The trace %1 has no frames to send.").arg(file));
    else
        Console::printError(TraceReplayTr::tr("The trace %1 has no channel \"%2\". There are: %3.")
                                .arg(file, m_channelName, input.head().channels.join(QStringLiteral(", "))));
    return Exit::fileFailed;
}

/*! Who ends the input does not want the half that has come on a bus. */
ExitStatus ReplayCommand::describeInterruption(ExitStatus status) const
{
    Console::printError(
        TraceReplayTr::tr("Sent %1 of %2.").arg(QStringLiteral("0"), QString::number(m_frames.size())));
    return status;
}

void ReplayCommand::sayWhatIsSent() const
{
    const QString bus = m_options.bus().address.toString();
    Console::print(TraceReplayTr::tr("Frames to be sent to %1: %2. Ctrl+C ends it.")
                       .arg(bus, QString::number(m_frames.size())));
    const QStringList acting = ReplayContents(m_frames).acting();
    if (!m_isVirtual && !acting.isEmpty())
        Console::printError(TraceReplayTr::tr("Among them is what acts on devices: %1.")
                                .arg(acting.join(QStringLiteral(", "))));
}

ExitStatus ReplayCommand::send()
{
    InterruptibleLoop loop;
    QString error;
    std::unique_ptr<CanOpen::CanPort> port = BusOpener().makePort(m_options.bus(), &error);
    if (port == nullptr) {
        Console::printBusError(error);
        return Exit::busNotOpened;
    }
    ReplaySender sender(std::move(port), &m_frames);
    sender.setSpeed(m_speed);
    sender.setPace(m_pace);
    QObject::connect(&sender, &ReplaySender::finished, &sender, [&loop] { loop.end(); });
    if (!sender.start(&error)) {
        Console::printBusError(BusWords::cannotBeOpened(m_options.bus().address, error));
        return Exit::busNotOpened;
    }
    loop.run();
    sender.stop();
    return end(sender, loop);
}

ExitStatus ReplayCommand::end(const ReplaySender &sender, const InterruptibleLoop &loop) const
{
    const QString sent = QString::number(sender.sent());
    const QString all = QString::number(m_frames.size());
    if (sender.sent() == m_frames.size()) {
        Console::print(TraceReplayTr::tr("Sent all of them."));
        return m_reading;
    }
    if (!sender.lossReason().isEmpty())
        Console::printError(TraceReplayTr::tr("The bus was lost: %1").arg(sender.lossReason()));
    if (sender.dropped() > 0)
        Console::printError(TraceReplayTr::tr("The bus did not take %1 of them.").arg(sender.dropped()));
    Console::printError(TraceReplayTr::tr("Sent %1 of %2.").arg(sent, all));
    return loop.isInterrupted() ? loop.status() : Exit::stoppedEarly;
}

} // namespace

ExitStatus runTraceReplay(const QStringList &arguments)
{
    ReplayCommand command;
    return command.run(arguments);
}
