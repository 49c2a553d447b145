// SPDX-License-Identifier: MIT
#include "archivecommand.h"
#include "visitlisting.h"

#include <archive/archivetransfer.h>
#include <checkup/checkup.h>
#include <cli/core/archiveaccess.h>
#include <cli/core/commandarguments.h>
#include <cli/core/console.h>
#include <cli/core/optionnames.h>
#include <cli/core/ruleoptions.h>
#include <snapshot/snapshotfile.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

namespace {

struct ArchiveKeepingTr
{
    Q_DECLARE_TR_FUNCTIONS(ArchiveKeeping)
};

using Presence = CommandArguments::Presence;

constexpr QLatin1String archiveSuffix(".dxarchive");
constexpr QLatin1String standardOutput("-");

/*! What the commands that change the archive or bring visits out of it have in common. */
class KeepingCommand
{
public:
    KeepingCommand(const QString &name, const QString &description)
        : options(name, description)
    {
        ArchiveAccess::addOption(options);
        options.addOption({jsonOption, ArchiveKeepingTr::tr("Print JSON, for programs.")});
    }

    std::optional<ExitStatus> begin(const QStringList &arguments, Archive::Missing missing)
    {
        if (const std::optional<ExitStatus> status = options.parse(arguments))
            return status;
        return access.open(options, missing);
    }

    bool isJson() const { return options.isSet(jsonOption); }
    Archive &archive() { return access.archive(); }

    ExitStatus fail() const
    {
        Console::printError(error);
        return Exit::fileFailed;
    }

    /*! Says \a sentence, or prints \a object. */
    ExitStatus finish(const QString &sentence, const QJsonObject &object) const
    {
        if (isJson())
            Console::printJson(QJsonDocument(object).toJson());
        else
            Console::print(sentence);
        return Exit::success;
    }

    CommandArguments options;
    ArchiveAccess access;
    QString error;
};

/*! Brings files into the archive, judges what is new, and tells of each. */
class Adding
{
public:
    Adding(KeepingCommand *command, const RuleSet &rules)
        : m_command(command)
        , m_rules(rules)
    {
    }

    ExitStatus run(const QStringList &files);

private:
    void add(const QString &file);
    VisitInfo judge(const KeptVisit &kept);
    void tell(const QString &file, const KeptVisit &kept, const VisitInfo &visit);
    void complain(const QString &problem);

    KeepingCommand *m_command;
    const RuleSet &m_rules;
    QJsonArray m_visits;
    bool m_hasFailed = false;
};

ExitStatus Adding::run(const QStringList &files)
{
    for (const QString &file : files)
        add(file);
    if (m_command->isJson())
        Console::printJson(QJsonDocument(QJsonObject{{QStringLiteral("visits"), m_visits}}).toJson());
    return m_hasFailed ? Exit::fileFailed : Exit::success;
}

void Adding::add(const QString &file)
{
    const ArchiveTransfer::Result result = ArchiveTransfer::import(file, m_command->archive());
    for (const KeptVisit &kept : result.visits)
        tell(file, kept, judge(kept));
    for (const QString &problem : result.problems)
        complain(problem);
}

void Adding::complain(const QString &problem)
{
    Console::printError(problem);
    m_hasFailed = true;
}

/*! The visit with its verdict; one that it had already stays. */
VisitInfo Adding::judge(const KeptVisit &kept)
{
    QString error;
    Archive &archive = m_command->archive();
    std::optional<VisitInfo> visit = archive.visit(kept.visitId, &error);
    const std::optional<Snapshot> snapshot
        = visit && !visit->verdict ? archive.load(kept.visitId, &error) : std::nullopt;
    if (snapshot) {
        visit->verdict = VisitVerdict::of(Checkup::judge(*snapshot, m_rules, QStringLiteral("en")));
        archive.setVerdict(kept.visitId, *visit->verdict, &error);
    }
    if (!error.isEmpty())
        complain(error);
    return visit.value_or(VisitInfo());
}

void Adding::tell(const QString &file, const KeptVisit &kept, const VisitInfo &visit)
{
    if (m_command->isJson()) {
        QJsonObject object = VisitListing::json(visit);
        object.insert(QStringLiteral("file"), file);
        object.insert(QStringLiteral("isNew"), kept.isNew);
        m_visits.append(object);
        return;
    }
    const QString sentence = kept.isNew ? ArchiveKeepingTr::tr("Kept %1 as visit %2 of vehicle %3: %4.")
                                        : ArchiveKeepingTr::tr("%1 was visit %2 of vehicle %3 already: %4.");
    Console::print(sentence.arg(QDir::toNativeSeparators(file), QString::number(kept.visitId), visit.vehicle,
                                VisitListing::verdictText(visit.verdict)));
}

ExitStatus addFiles(const QString &name, const QString &description, const QStringList &arguments)
{
    KeepingCommand command(name, description);
    command.options.addPositional(
        QStringLiteral("FILE"),
        ArchiveKeepingTr::tr("A snapshot (.dxsnap), an exchange file (.dxxml) or an archive "
                             "(.dxarchive)."),
        Presence::Repeated);
    RuleOptions::add(command.options);
    RuleSet rules;
    if (const std::optional<ExitStatus> status = command.begin(arguments, Archive::Missing::Make))
        return *status;
    if (const std::optional<ExitStatus> status = RuleOptions::load(command.options, &rules))
        return *status;
    return Adding(&command, rules).run(command.options.positionals());
}

ExitStatus tellFiles(const KeepingCommand &command, const ArchiveTransfer::Result &result)
{
    if (command.isJson()) {
        Console::printJson(
            QJsonDocument(QJsonObject{{QStringLiteral("files"), QJsonArray::fromStringList(result.files)}})
                .toJson());
    } else {
        for (const QString &file : result.files)
            Console::print(ArchiveKeepingTr::tr("Wrote %1").arg(QDir::toNativeSeparators(file)));
    }
    for (const QString &problem : result.problems)
        Console::printError(problem);
    return result.problems.isEmpty() ? Exit::success : Exit::fileFailed;
}

ExitStatus exportVisit(KeepingCommand &command, const QString &visit, const QString &output)
{
    const std::optional<qint64> id = command.access.visit(visit, &command.error);
    if (!id)
        return command.fail();
    if (output == standardOutput) {
        const std::optional<Snapshot> snapshot = command.archive().load(*id, &command.error);
        return snapshot ? (Console::write(SnapshotFile::toJson(*snapshot)), Exit::success) : command.fail();
    }
    ArchiveTransfer::Result result;
    if (!ArchiveTransfer::exportToFile(command.archive(), *id, output, &command.error))
        return command.fail();
    result.files.append(output);
    return tellFiles(command, result);
}

ExitStatus exportArchive(KeepingCommand &command, const QString &output)
{
    Archive target;
    const std::optional<ArchiveAddress> address = ArchiveAddress::parse(output, &command.error);
    if (!address || !target.open(*address, Archive::Missing::Make, &command.error))
        return command.fail();
    ArchiveTransfer::Result result = ArchiveTransfer::copy(command.archive(), target);
    if (result.problems.isEmpty())
        result.files.append(output);
    return tellFiles(command, result);
}

ExitStatus exportFolder(KeepingCommand &command, const QString &output)
{
    const std::optional<QVector<VisitInfo>> visits = command.archive().visits({}, &command.error);
    if (!visits)
        return command.fail();
    return tellFiles(command, ArchiveTransfer::exportToFolder(command.archive(), *visits, output));
}

struct NoteField
{
    const char *option;
    const char *description;
    QString SnapshotNotes::*text;
};

const NoteField noteFields[] = {
    {"note", QT_TRANSLATE_NOOP("ArchiveKeeping", "The note."), &SnapshotNotes::note},
    {"customer", QT_TRANSLATE_NOOP("ArchiveKeeping", "The customer."), &SnapshotNotes::customer},
    {"technician", QT_TRANSLATE_NOOP("ArchiveKeeping", "The technician."), &SnapshotNotes::technician},
    {"odometer", QT_TRANSLATE_NOOP("ArchiveKeeping", "What the odometer shows."), &SnapshotNotes::odometer},
};

/*! A vehicle that has to be there. */
std::optional<qint64> vehicleOf(KeepingCommand &command, const QString &text)
{
    const std::optional<qint64> vehicle = command.access.vehicle(text, &command.error);
    if (!vehicle && command.error.isEmpty())
        command.error = ArchiveKeepingTr::tr("The archive has no vehicle \"%1\".").arg(text);
    return vehicle;
}

QString vehicleHelp()
{
    return ArchiveKeepingTr::tr("What the vehicle is called, or \"#\" and its number.");
}

} // namespace

ExitStatus runArchiveAdd(const QStringList &arguments)
{
    return addFiles(QStringLiteral("archive add"),
                    ArchiveKeepingTr::tr("Keeps snapshots and exchange files as visits."), arguments);
}

ExitStatus runArchiveImport(const QStringList &arguments)
{
    return addFiles(
        QStringLiteral("archive import"),
        ArchiveKeepingTr::tr(
            "Keeps what files and other archives hold. What the archive has already is kept once."),
        arguments);
}

ExitStatus runArchiveExport(const QStringList &arguments)
{
    KeepingCommand command(
        QStringLiteral("archive export"),
        ArchiveKeepingTr::tr(
            "Writes a visit as a snapshot file. Without VISIT all of them: into a folder, a file "
            "each, or into an archive with notes and names when the output ends with "
            ".dxarchive."));
    command.options.addPositional(QStringLiteral("VISIT"),
                                  ArchiveKeepingTr::tr("The visit's number, or \"last\"."),
                                  Presence::Optional);
    command.options.addOption({outputOption,
                               ArchiveKeepingTr::tr("The file or folder; \"-\" is standard output."),
                               QStringLiteral("PATH")});
    if (const std::optional<ExitStatus> status = command.begin(arguments, Archive::Missing::Refuse))
        return *status;
    const QString output = command.options.value(outputOption);
    const QString visit = command.options.positional();
    if (output.isEmpty())
        return command.options.complain(
            ArchiveKeepingTr::tr("--output is missing: which file or folder is meant?"));
    if (!visit.isEmpty())
        return exportVisit(command, visit, output);
    return output.endsWith(archiveSuffix) ? exportArchive(command, output) : exportFolder(command, output);
}

ExitStatus runArchiveDelete(const QStringList &arguments)
{
    KeepingCommand command(QStringLiteral("archive delete"),
                           ArchiveKeepingTr::tr("Deletes visits; a vehicle goes with its last one."));
    command.options.addPositional(QStringLiteral("VISIT"), ArchiveKeepingTr::tr("The visit's number."),
                                  Presence::Repeated);
    if (const std::optional<ExitStatus> status = command.begin(arguments, Archive::Missing::Refuse))
        return *status;
    QJsonArray deleted;
    const QStringList visits = command.options.positionals();
    for (const QString &visit : visits) {
        const std::optional<qint64> id = command.access.visit(visit, &command.error);
        if (!id || !command.archive().remove(*id, &command.error))
            return command.fail();
        deleted.append(*id);
        if (!command.isJson())
            Console::print(ArchiveKeepingTr::tr("Deleted visit %1.").arg(*id));
    }
    if (command.isJson())
        Console::printJson(QJsonDocument(QJsonObject{{QStringLiteral("deleted"), deleted}}).toJson());
    return Exit::success;
}

ExitStatus runArchiveNote(const QStringList &arguments)
{
    KeepingCommand command(
        QStringLiteral("archive note"),
        ArchiveKeepingTr::tr("Changes what is written beside a visit; the snapshot stays as it was."));
    command.options.addPositional(QStringLiteral("VISIT"),
                                  ArchiveKeepingTr::tr("The visit's number, or \"last\"."));
    for (const NoteField &field : noteFields)
        command.options.addOption(
            {QLatin1String(field.option), ArchiveKeepingTr::tr(field.description), QStringLiteral("TEXT")});
    if (const std::optional<ExitStatus> status = command.begin(arguments, Archive::Missing::Refuse))
        return *status;
    const std::optional<qint64> id = command.access.visit(command.options.positional(), &command.error);
    const std::optional<VisitInfo> visit = id ? command.archive().visit(*id, &command.error) : std::nullopt;
    if (!visit)
        return command.fail();
    SnapshotNotes notes = visit->notes;
    for (const NoteField &field : noteFields) {
        if (command.options.isSet(QLatin1String(field.option)))
            notes.*field.text = command.options.value(QLatin1String(field.option));
    }
    if (!command.archive().setNotes(*id, notes, &command.error))
        return command.fail();
    return command.finish(ArchiveKeepingTr::tr("Changed visit %1.").arg(*id), {{QStringLiteral("id"), *id}});
}

ExitStatus runArchiveName(const QStringList &arguments)
{
    KeepingCommand command(
        QStringLiteral("archive name"),
        ArchiveKeepingTr::tr(
            "Gives a vehicle a name; without NAME it is called by its serial number again."));
    command.options.addPositional(QStringLiteral("VEHICLE"), vehicleHelp());
    command.options.addPositional(QStringLiteral("NAME"), ArchiveKeepingTr::tr("The new name."),
                                  Presence::Optional);
    if (const std::optional<ExitStatus> status = command.begin(arguments, Archive::Missing::Refuse))
        return *status;
    const QString name = command.options.positional(1);
    const std::optional<qint64> vehicle = vehicleOf(command, command.options.positional(0));
    if (!vehicle || !command.archive().renameVehicle(*vehicle, name, &command.error))
        return command.fail();
    return command.finish(ArchiveKeepingTr::tr("Changed the vehicle's name."),
                          {{QStringLiteral("vehicleId"), *vehicle}});
}

ExitStatus runArchiveMerge(const QStringList &arguments)
{
    KeepingCommand command(
        QStringLiteral("archive merge"),
        ArchiveKeepingTr::tr("Makes one vehicle of two: all visits of VEHICLE become those of INTO."));
    command.options.addPositional(QStringLiteral("VEHICLE"), vehicleHelp());
    command.options.addPositional(QStringLiteral("INTO"), vehicleHelp());
    if (const std::optional<ExitStatus> status = command.begin(arguments, Archive::Missing::Refuse))
        return *status;
    const std::optional<qint64> vehicle = vehicleOf(command, command.options.positional(0));
    const std::optional<qint64> into
        = vehicle ? vehicleOf(command, command.options.positional(1)) : std::nullopt;
    if (!into || !command.archive().mergeVehicle(*vehicle, *into, &command.error))
        return command.fail();
    return command.finish(ArchiveKeepingTr::tr("The visits are those of one vehicle now."),
                          {{QStringLiteral("vehicleId"), *into}});
}

ExitStatus runArchiveMove(const QStringList &arguments)
{
    KeepingCommand command(
        QStringLiteral("archive move"),
        ArchiveKeepingTr::tr("Gives a visit to another vehicle; without VEHICLE to a new one of its own."));
    command.options.addPositional(QStringLiteral("VISIT"),
                                  ArchiveKeepingTr::tr("The visit's number, or \"last\"."));
    command.options.addPositional(QStringLiteral("VEHICLE"), vehicleHelp(), Presence::Optional);
    if (const std::optional<ExitStatus> status = command.begin(arguments, Archive::Missing::Refuse))
        return *status;
    const QString name = command.options.positional(1);
    const std::optional<qint64> id = command.access.visit(command.options.positional(0), &command.error);
    const std::optional<qint64> vehicle = id && !name.isEmpty() ? vehicleOf(command, name) : std::nullopt;
    if (!id || (!vehicle && !name.isEmpty()))
        return command.fail();
    const std::optional<qint64> target = command.archive().moveVisit(*id, vehicle, &command.error);
    if (!target)
        return command.fail();
    return command.finish(ArchiveKeepingTr::tr("Moved visit %1.").arg(*id),
                          {{QStringLiteral("id"), *id}, {QStringLiteral("vehicleId"), *target}});
}
