// SPDX-License-Identifier: MIT
#include "bundlecommand.h"

#include "bundlelistening.h"

#include <bundle/bundlefile.h>
#include <bundle/bundlemasking.h>
#include <bundle/systemfacts.h>
#include <cli/core/bussnapshot.h>
#include <cli/core/commandarguments.h>
#include <cli/core/console.h>
#include <cli/core/duration.h>
#include <cli/core/interruptibleloop.h>
#include <cli/core/language.h>
#include <cli/core/optionnames.h>
#include <cli/core/outputfile.h>
#include <cli/core/ruleoptions.h>
#include <cli/core/snapshotsource.h>
#include <cli/core/snapshotsummary.h>
#include <cli/core/traceinput.h>
#include <live/events/eventrecorder.h>

#include <checkup/ruleset.h>

#include <QCanBusFrame>
#include <QDir>
#include <QTimer>

namespace {

struct BundleCommandTr
{
    Q_DECLARE_TR_FUNCTIONS(BundleCommand)
};

constexpr QLatin1String traceOption("trace");
constexpr QLatin1String maskOption("mask");
constexpr std::chrono::milliseconds usualTime{10000};

QDateTime presentTime()
{
    const QDateTime now = QDateTime::currentDateTime();
    return now.toOffsetFromUtc(now.offsetFromUtc());
}

class BundleCommand
{
public:
    ExitStatus run(const QStringList &arguments);

private:
    void addOptions();
    std::optional<ExitStatus> parse(const QStringList &arguments);
    std::optional<ExitStatus> parseSource();
    std::optional<ExitStatus> parseOutput() const;
    std::optional<ExitStatus> readBus();
    void listenOn();
    std::optional<ExitStatus> readFiles();
    std::optional<ExitStatus> readTrace();
    void addMessages(const QStringList &lines);
    SystemFacts::Adapter adapter() const;
    bool write();

    CommandArguments m_options{
        QStringLiteral("bundle"),
        BundleCommandTr::tr("Puts all that is known of a vehicle into one file for who is to help: "
                            "snapshot, check-up, frames, events and this computer.")};
    std::chrono::milliseconds m_time = usualTime;
    BusSnapshot m_bus;
    RuleSet m_rules;
    SupportBundle m_bundle;
    ExitStatus m_status; // of what was read
};

ExitStatus BundleCommand::run(const QStringList &arguments)
{
    addOptions();
    if (const std::optional<ExitStatus> status = parse(arguments))
        return *status;
    m_bundle.program
        = QCoreApplication::applicationName() + QLatin1Char(' ') + QCoreApplication::applicationVersion();
    m_bundle.time = presentTime();
    if (const std::optional<ExitStatus> status = m_options.hasBus() ? readBus() : readFiles())
        return *status;
    m_bundle.system = SystemFacts::of(m_bundle.program, adapter());
    return write() ? m_status : Exit::fileFailed;
}

void BundleCommand::addOptions()
{
    m_options.addBusOptions(CommandArguments::Presence::Optional);
    m_options.addOption(
        {snapshotOption,
         BundleCommandTr::tr("A snapshot (.dxsnap) or an exchange file (.dxxml) in the place of a bus."),
         QStringLiteral("FILE")});
    m_options.addOption({traceOption,
                         BundleCommandTr::tr("With --snapshot: the frames that belong to it, as \"draxelctl "
                                             "trace record\" writes them."),
                         QStringLiteral("FILE")});
    m_options.addOption(
        {outputOption, BundleCommandTr::tr("Write the bundle to this file (.zip)."), QStringLiteral("FILE")});
    m_options.addOption(
        {forOption,
         BundleCommandTr::tr("How long to listen to the bus when it has been read: 500ms, 10s, 2min; "
                             "usually 10s. All frames are kept, those of the reading as well."),
         QStringLiteral("TIME")});
    m_options.addOption(
        {maskOption,
         BundleCommandTr::tr("Replace serial numbers, names, notes and paths, the same one everywhere by "
                             "the same, in the frames as well.")});
    BusSnapshot::addOptions(m_options);
    RuleOptions::add(m_options);
    Language::addOption(m_options);
}

std::optional<ExitStatus> BundleCommand::parse(const QStringList &arguments)
{
    if (const std::optional<ExitStatus> status = m_options.parse(arguments))
        return status;
    if (const std::optional<ExitStatus> status = parseSource())
        return status;
    if (const std::optional<ExitStatus> status = m_bus.parse(m_options))
        return status;
    if (const std::optional<ExitStatus> status = Language::loadWithHost(m_options))
        return status;
    if (const std::optional<ExitStatus> status = RuleOptions::load(m_options, &m_rules))
        return status;
    return parseOutput();
}

std::optional<ExitStatus> BundleCommand::parseSource()
{
    if (m_options.hasBus() == m_options.isSet(snapshotOption))
        return m_options.complain(m_options.hasBus()
                                      ? BundleCommandTr::tr("Name either a --bus or a --snapshot, not both.")
                                      : BundleCommandTr::tr("What is meant? Name a --bus or a --snapshot."));
    if (m_options.hasBus() && m_options.isSet(traceOption))
        return m_options.complain(
            BundleCommandTr::tr("Of a bus the frames are recorded; leave out --trace."));
    if (!m_options.isSet(forOption))
        return std::nullopt;
    if (!m_options.hasBus())
        return m_options.complain(BundleCommandTr::tr("--for is for a bus only."));
    const std::optional<std::chrono::milliseconds> time = parseDuration(m_options.value(forOption));
    if (!time)
        return m_options.complain(
            BundleCommandTr::tr("\"%1\" is no time; one is written like 500ms, 10s or 2min, up to a week.")
                .arg(m_options.value(forOption)));
    m_time = *time;
    return std::nullopt;
}

/*! Whether the file can be written is found out before the bus is read. */
std::optional<ExitStatus> BundleCommand::parseOutput() const
{
    const OutputFile output(m_options.value(outputOption));
    if (m_options.value(outputOption).isEmpty())
        return m_options.complain(BundleCommandTr::tr("--output takes the name of a file."));
    if (output.isStandardOutput())
        return m_options.complain(
            BundleCommandTr::tr("A bundle is written to a file, not to standard output."));
    QString error;
    if (output.canBeWritten(&error))
        return std::nullopt;
    Console::printError(error);
    return Exit::fileFailed;
}

std::optional<ExitStatus> BundleCommand::readBus()
{
    BundleListening listening(&m_bus.bus());
    listening.begin(m_options.bus().address);
    if (const std::optional<ExitStatus> status = m_bus.take(m_options.bus()))
        return status;
    m_status = m_bus.finish();
    if (m_status == Exit::success || m_status == Exit::stoppedEarly)
        listenOn();
    m_bundle.snapshot = m_bus.snapshot();
    m_bundle.trace = listening.trace();
    if (m_bundle.trace->missing != MissingFrames::None) {
        Console::printError(
            BundleCommandTr::tr("There were too many frames: the bundle has the last %1 of them.")
                .arg(m_bundle.trace->frames.size()));
        m_status = m_status == Exit::success ? Exit::objectsFailed : m_status;
    }
    m_bundle.events = listening.events();
    m_bundle.forgottenEvents = listening.forgottenEvents();
    addMessages(SnapshotSummary::lines(*m_bundle.snapshot));
    return std::nullopt;
}

void BundleCommand::listenOn()
{
    InterruptibleLoop loop;
    QTimer::singleShot(m_time, Qt::PreciseTimer, &m_bus.bus(), [&loop] { loop.end(); });
    if (!loop.run())
        m_status = loop.status();
}

std::optional<ExitStatus> BundleCommand::readFiles()
{
    m_bundle.snapshot.emplace();
    if (const std::optional<ExitStatus> status
        = loadSnapshot(m_options.value(snapshotOption), &*m_bundle.snapshot))
        return status;
    addMessages(SnapshotSummary::lines(*m_bundle.snapshot));
    return m_options.isSet(traceOption) ? readTrace() : std::nullopt;
}

/*! The events are those that the frames make on the bus of the first one: a node ID is another device on another bus. */
std::optional<ExitStatus> BundleCommand::readTrace()
{
    TraceInput input;
    if (!input.open(m_options.value(traceOption)))
        return Exit::fileFailed;
    EventRecorder events;
    m_bundle.trace.emplace();
    TraceFrame frame;
    while (input.next(&frame)) {
        if (m_bundle.trace->frames.size() >= BundleListening::mostFrames) {
            Console::printError(
                BundleCommandTr::tr("The trace is too long: the bundle has its first %1 frames.")
                    .arg(BundleListening::mostFrames));
            m_status = Exit::objectsFailed;
            break;
        }
        m_bundle.trace->frames.push_back(frame);
        if (frame.channel == m_bundle.trace->frames.front().channel)
            events.handle(LiveFrame::of(frame.toCanBusFrame(), frame.time));
        events.advance(frame.time);
    }
    m_bundle.trace->head = input.head();
    m_bundle.events.assign(events.list().events().begin(), events.list().events().end());
    m_bundle.forgottenEvents = events.list().forgotten();
    const ExitStatus read = input.finish();
    m_status = m_status == Exit::success ? read : m_status;
    return std::nullopt;
}

void BundleCommand::addMessages(const QStringList &lines)
{
    for (const QString &line : lines)
        m_bundle.messages.append({presentTime(), Severity::Note, line});
}

SystemFacts::Adapter BundleCommand::adapter() const
{
    return {m_bundle.snapshot->bus, m_bundle.snapshot->adapter, m_bundle.snapshot->bitRate};
}

bool BundleCommand::write()
{
    if (m_options.isSet(maskOption))
        m_bundle = BundleMasking::masked(m_bundle);
    const QString fileName = m_options.value(outputOption);
    QString error;
    if (!BundleFile::save(fileName, m_bundle, m_rules, Language::name(m_options), &error)) {
        Console::printError(error);
        return false;
    }
    const QStringList lines = SnapshotSummary::lines(*m_bundle.snapshot);
    for (const QString &line : lines)
        Console::print(line);
    if (m_bundle.trace)
        Console::print(BundleCommandTr::tr("Frames: %1, events: %2")
                           .arg(m_bundle.trace->frames.size())
                           .arg(m_bundle.events.size()));
    Console::print(BundleCommandTr::tr("Wrote %1").arg(QDir::toNativeSeparators(fileName)));
    return true;
}

} // namespace

ExitStatus runBundleCommand(const QStringList &arguments)
{
    BundleCommand command;
    return command.run(arguments);
}
