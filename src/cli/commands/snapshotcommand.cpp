// SPDX-License-Identifier: MIT
#include "snapshotcommand.h"

#include <cli/core/bussnapshot.h>
#include <cli/core/commandarguments.h>
#include <cli/core/console.h>
#include <cli/core/language.h>
#include <cli/core/optionnames.h>
#include <cli/core/outputfile.h>
#include <cli/core/recordedsnapshot.h>
#include <cli/core/snapshotsummary.h>

#include <bus/buswords.h>
#include <snapshot/savedvehicle.h>

#include <QDir>
#include <QFileInfo>

namespace {

struct SnapshotCommandTr
{
    Q_DECLARE_TR_FUNCTIONS(SnapshotCommand)
};

constexpr QLatin1String resumeOption("resume");

// How devices are asked.
constexpr const char *askingOptions[]
    = {"bitrate", "quick", "node", "scan", "share", "timeout", "retries", "resume"};

/*! What people write beside a snapshot. */
struct NoteOption
{
    const char *name;
    QString SnapshotNotes::*field;
    const char *description;
};

constexpr NoteOption noteOptions[] = {
    {"vehicle", &SnapshotNotes::vehicle, QT_TRANSLATE_NOOP("SnapshotCommand", "The vehicle, in your words.")},
    {"customer", &SnapshotNotes::customer, QT_TRANSLATE_NOOP("SnapshotCommand", "Whose it is.")},
    {"technician", &SnapshotNotes::technician,
     QT_TRANSLATE_NOOP("SnapshotCommand", "Who takes the snapshot.")},
    {"odometer", &SnapshotNotes::odometer, QT_TRANSLATE_NOOP("SnapshotCommand", "What the odometer shows.")},
    {"note", &SnapshotNotes::note, QT_TRANSLATE_NOOP("SnapshotCommand", "Anything else.")},
};

/*! "bike-2.dxsnap" for "bike.dxsnap", or the next number that is free. */
QString freeNameBeside(const QString &name)
{
    const QFileInfo file(name);
    const QString dotAndSuffix = file.suffix().isEmpty() ? QString() : QLatin1Char('.') + file.suffix();
    for (int number = 2;; ++number) {
        const QString other
            = QStringLiteral("%1-%2%3").arg(file.completeBaseName(), QString::number(number), dotAndSuffix);
        if (!file.dir().exists(other))
            return file.dir().filePath(other);
    }
}

class SnapshotCommand
{
public:
    ExitStatus run(const QStringList &arguments);

private:
    void addOptions();
    std::optional<ExitStatus> parse(const QStringList &arguments);
    std::optional<ExitStatus> parseSource();
    std::optional<ExitStatus> complainOfForeignOptions() const;
    std::optional<ExitStatus> parseResume();
    std::optional<ExitStatus> take();
    SnapshotNotes notes() const;
    void sayWhatIsNotRecognized() const;
    QString outputName() const;
    void print() const;

    CommandArguments m_options{
        QStringLiteral("snapshot"),
        SnapshotCommandTr::tr("Reads all that can be read of all devices on a bus, past those that "
                              "do not answer, and saves it with what could not be read and why. Or "
                              "saves what others have read in a trace.")};
    BusSnapshot m_bus;
    RecordedSnapshot m_trace;
    bool m_isOfTrace = false;
    Snapshot m_snapshot;
    std::optional<Snapshot> m_earlier;
};

ExitStatus SnapshotCommand::run(const QStringList &arguments)
{
    if (const std::optional<ExitStatus> status = parse(arguments))
        return *status;
    const OutputFile output(m_options.value(outputOption));
    if (output.isStandardOutput() || m_options.isSet(jsonOption))
        Console::keepOutputForFile();
    QString error;
    if (!output.canBeWritten(&error)) {
        Console::printError(error);
        return Exit::fileFailed;
    }
    if (const std::optional<ExitStatus> status = take())
        return *status;

    if (!m_options.isSet(jsonOption))
        print();
    const ExitStatus status = m_isOfTrace ? m_trace.finish() : m_bus.finish();
    sayWhatIsNotRecognized();
    const QString name = outputName();
    if (!OutputFile(name).writeSnapshot(m_snapshot))
        return Exit::fileFailed;
    const bool isComplete = m_isOfTrace ? m_snapshot.isComplete() : m_bus.isComplete();
    if (m_options.isSet(jsonOption))
        Console::printJson(SnapshotSummary::toJson(m_snapshot, isComplete, name));
    return status;
}

std::optional<ExitStatus> SnapshotCommand::take()
{
    const std::optional<ExitStatus> status = m_isOfTrace ? m_trace.take() : m_bus.take(m_options.bus());
    m_snapshot = m_isOfTrace ? m_trace.snapshot() : m_bus.snapshot();
    if (m_isOfTrace || m_bus.isOtherVehicle())
        m_snapshot.notes = notes();
    return status;
}

void SnapshotCommand::sayWhatIsNotRecognized() const
{
    if (m_bus.unrecognizedNodes().isEmpty())
        return;
    Console::printError(
        SnapshotCommandTr::tr(
            "Whether the same device as in %1 is on node %2 cannot be told, as too little of its "
            "identity is known; its values there were kept.")
            .arg(QDir::toNativeSeparators(m_options.value(resumeOption)),
                 BusWords::nodes(m_bus.unrecognizedNodes())));
}

/*! Where to write. A snapshot of other devices is not replaced by what was to complete it. */
QString SnapshotCommand::outputName() const
{
    QString wanted = m_options.value(outputOption);
    if (m_bus.replacedNodes().isEmpty() && !m_bus.isOtherVehicle())
        return wanted;
    const QString earlier = m_options.value(resumeOption);
    const QString what
        = m_bus.isOtherVehicle()
              ? SnapshotCommandTr::tr("No device of %1 is on the bus, but others are: they were read anew.")
                    .arg(QDir::toNativeSeparators(earlier))
              : SnapshotCommandTr::tr("There is another device than in %1 on node %2; it was read anew.")
                    .arg(QDir::toNativeSeparators(earlier), BusWords::nodes(m_bus.replacedNodes()));
    Console::printError(what);
    const bool wouldReplace = QFileInfo(wanted).canonicalFilePath() == QFileInfo(earlier).canonicalFilePath();
    return wouldReplace ? freeNameBeside(wanted) : wanted;
}

std::optional<ExitStatus> SnapshotCommand::parse(const QStringList &arguments)
{
    addOptions();
    if (const std::optional<ExitStatus> status = m_options.parse(arguments))
        return status;
    if (m_options.value(outputOption).isEmpty())
        return m_options.complain(SnapshotCommandTr::tr("--output takes the name of a file."));
    if (m_options.isSet(jsonOption) && OutputFile(m_options.value(outputOption)).isStandardOutput())
        return m_options.complain(
            SnapshotCommandTr::tr("Standard output takes the snapshot or the summary, not both."));
    if (const std::optional<ExitStatus> status = parseSource())
        return status;
    if (const std::optional<ExitStatus> status = parseResume())
        return status;
    m_bus.setNotes(notes());
    return Language::loadWithHost(m_options);
}

/*! A bus, or a trace; each has options that the other one does not know. */
std::optional<ExitStatus> SnapshotCommand::parseSource()
{
    m_isOfTrace = RecordedSnapshot::isWanted(m_options);
    if (m_isOfTrace == m_options.hasBus())
        return m_options.complain(m_isOfTrace
                                      ? SnapshotCommandTr::tr("Name either a --bus or a trace, not both.")
                                      : SnapshotCommandTr::tr("What is meant? Name a --bus, or a trace with "
                                                              "--from-trace."));
    if (const std::optional<ExitStatus> status = complainOfForeignOptions())
        return status;
    return m_isOfTrace ? m_trace.parse(m_options) : m_bus.parse(m_options);
}

std::optional<ExitStatus> SnapshotCommand::complainOfForeignOptions() const
{
    if (!m_isOfTrace && m_options.isSet(channelOption))
        return m_options.complain(SnapshotCommandTr::tr("--%1 is for traces only.").arg(channelOption));
    for (const char *name : askingOptions) {
        const QString option = QString::fromLatin1(name);
        if (m_isOfTrace && m_options.isSet(option))
            return m_options.complain(
                SnapshotCommandTr::tr("A trace is not asked; leave out --%1.").arg(option));
    }
    return std::nullopt;
}

void SnapshotCommand::addOptions()
{
    m_options.addBusOptions(CommandArguments::Presence::Optional);
    m_options.addOption(
        {outputOption,
         SnapshotCommandTr::tr("Save the snapshot as this file (.dxsnap), \"-\" for standard output."),
         SnapshotCommandTr::tr("FILE")});
    BusSnapshot::addOptions(m_options);
    RecordedSnapshot::addOptions(m_options);
    m_options.addOption(
        {resumeOption,
         SnapshotCommandTr::tr("Go on where this snapshot has ended: ask only for what it has not. A device "
                               "that is another one than then is read anew."),
         SnapshotCommandTr::tr("FILE")});
    for (const NoteOption &option : noteOptions)
        m_options.addOption({QLatin1String(option.name), SnapshotCommandTr::tr(option.description),
                             SnapshotCommandTr::tr("TEXT")});
    m_options.addOption({jsonOption, SnapshotCommandTr::tr("Print the summary as JSON, for programs.")});
    Language::addOption(m_options);
}

std::optional<ExitStatus> SnapshotCommand::parseResume()
{
    if (!m_options.isSet(resumeOption))
        return std::nullopt;
    QString error;
    m_earlier = SavedVehicle::load(m_options.value(resumeOption), &error);
    if (!m_earlier) {
        Console::printError(error);
        return Exit::fileFailed;
    }
    if (!m_earlier->isOfBus())
        return m_options.complain(SnapshotCommandTr::tr(
            "A snapshot that was made of an exchange file or a trace cannot be gone on with: "
            "it does not say what was asked for."));
    if (m_bus.isQuick() && m_earlier->scope != SnapshotScope::Quick)
        return m_options.complain(
            SnapshotCommandTr::tr("The snapshot to go on with is a full one; leave out --quick."));
    m_bus.setEarlier(*m_earlier);
    return std::nullopt;
}

/*! The options, and where there is none what was written beside the earlier snapshot; beside that of another vehicle only
 *  the technician is the same.
 */
SnapshotNotes SnapshotCommand::notes() const
{
    SnapshotNotes notes = m_earlier ? m_earlier->notes : SnapshotNotes();
    if (m_bus.isOtherVehicle()) {
        notes = SnapshotNotes();
        notes.technician = m_earlier->notes.technician;
    }
    for (const NoteOption &option : noteOptions) {
        const QString name = QString::fromLatin1(option.name);
        if (m_options.isSet(name))
            notes.*option.field = m_options.value(name);
    }
    return notes;
}

void SnapshotCommand::print() const
{
    const QStringList lines = SnapshotSummary::lines(m_snapshot);
    for (const QString &line : lines)
        Console::print(line);
}

} // namespace

ExitStatus runSnapshotCommand(const QStringList &arguments)
{
    SnapshotCommand command;
    return command.run(arguments);
}
