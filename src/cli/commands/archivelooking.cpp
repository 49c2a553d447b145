// SPDX-License-Identifier: MIT
#include "archivecommand.h"
#include "visitlisting.h"

#include <checkup/checkup.h>
#include <checkup/snapshotcomparison.h>
#include <cli/core/archiveaccess.h>
#include <cli/core/commandarguments.h>
#include <cli/core/comparisonlisting.h>
#include <cli/core/console.h>
#include <cli/core/language.h>
#include <cli/core/nodelisting.h>
#include <cli/core/optionnames.h>
#include <cli/core/ruleoptions.h>
#include <snapshot/snapshotexchange.h>
#include <store/nodestore.h>

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>

#include <limits>

namespace {

struct ArchiveLookingTr
{
    Q_DECLARE_TR_FUNCTIONS(ArchiveLooking)
};

constexpr QLatin1String limitOption("limit");

/*! What the commands that only look have in common. */
class LookingCommand
{
public:
    LookingCommand(const QString &name, const QString &description)
        : options(name, description)
    {
        ArchiveAccess::addOption(options);
        options.addOption({jsonOption, ArchiveLookingTr::tr("Print JSON, for programs.")});
        Language::addOption(options);
    }

    /*! Takes the arguments and opens the archive. */
    std::optional<ExitStatus> begin(const QStringList &arguments)
    {
        if (const std::optional<ExitStatus> status = options.parse(arguments))
            return status;
        if (const std::optional<ExitStatus> status = Language::loadWithHost(options))
            return status;
        return access.open(options, Archive::Missing::Refuse);
    }

    bool isJson() const { return options.isSet(jsonOption); }
    Archive &archive() { return access.archive(); }

    ExitStatus fail() const
    {
        Console::printError(error);
        return Exit::fileFailed;
    }

    CommandArguments options;
    ArchiveAccess access;
    QString error;
};

void printJson(const QJsonObject &object)
{
    Console::printJson(QJsonDocument(object).toJson());
}

/*! A list as text, or as JSON under \a name. */
template<typename Item, typename MakeJson>
void printList(const LookingCommand &command, const QString &name, const QVector<Item> &items,
               const QString &text, const QString &nothing, MakeJson makeJson)
{
    if (command.isJson()) {
        QJsonArray array;
        for (const Item &item : items)
            array.append(makeJson(item));
        printJson({{name, array}});
    } else if (items.isEmpty()) {
        Console::printError(nothing);
    } else {
        Console::print(text);
    }
}

ExitStatus listVisits(LookingCommand &command, const VisitQuery &query, const QString &nothing)
{
    const std::optional<QVector<VisitInfo>> visits = command.archive().visits(query, &command.error);
    if (!visits)
        return command.fail();
    printList(command, QStringLiteral("visits"), *visits, VisitListing::text(*visits), nothing,
              [](const VisitInfo &visit) { return VisitListing::json(visit); });
    return Exit::success;
}

std::optional<ExitStatus> takeLimit(const CommandArguments &options, VisitQuery *query)
{
    if (!options.isSet(limitOption))
        return std::nullopt;
    const std::optional<int> limit = options.number(limitOption, 1, std::numeric_limits<int>::max());
    if (!limit)
        return Exit::usage;
    query->limit = *limit;
    return std::nullopt;
}

QCommandLineOption limitOptionOf()
{
    return {limitOption, ArchiveLookingTr::tr("List this many at most."), QStringLiteral("N")};
}

/*! "6164", "6164h", "0x6164", each with ".2" for the sub-index. */
std::optional<CanOpen::ObjectKey> parseObject(const QString &text)
{
    static const QRegularExpression form(
        QStringLiteral("\\A(?:0x)?([0-9a-f]{1,4})h?(?:[.:]([0-9]{1,3}))?\\z"),
        QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = form.match(text);
    const int subIndex = match.captured(2).toInt();
    if (!match.hasMatch() || subIndex > 0xFF)
        return std::nullopt;
    return CanOpen::ObjectKey{match.captured(1).toUShort(nullptr, 16), static_cast<quint8>(subIndex)};
}

std::optional<ValueTrend> readTrend(LookingCommand &command, CanOpen::ObjectKey key)
{
    const QString subject = command.options.positional(0);
    const std::optional<qint64> vehicle = command.access.vehicle(subject, &command.error);
    if (vehicle)
        return command.archive().vehicleTrend(*vehicle, key, &command.error);
    if (!command.error.isEmpty())
        return std::nullopt;
    const std::optional<QString> device = command.access.device(subject, &command.error);
    return device ? command.archive().deviceTrend(*device, key, &command.error) : std::nullopt;
}

/*! The visits of a comparison, the earlier one first: two that are named, or one and that before it. */
std::optional<QVector<qint64>> visitsToCompare(LookingCommand &command)
{
    const QStringList names = command.options.positionals();
    QVector<qint64> visits;
    for (const QString &name : names) {
        const std::optional<qint64> id = command.access.visit(name, &command.error);
        if (!id)
            return std::nullopt;
        visits.append(*id);
    }
    if (visits.size() == 2)
        return visits;
    const std::optional<qint64> previous = command.archive().previousVisit(visits.first(), &command.error);
    if (previous && *previous == 0)
        command.error = ArchiveLookingTr::tr("Visit %1 is the first one of its vehicle.").arg(visits.first());
    if (!previous || *previous == 0)
        return std::nullopt;
    visits.prepend(*previous);
    return visits;
}

ExitStatus printComparison(LookingCommand &command, const QVector<qint64> &visits, const RuleSet &rules)
{
    const std::optional<Snapshot> before = command.archive().load(visits.first(), &command.error);
    const std::optional<Snapshot> after
        = before ? command.archive().load(visits.last(), &command.error) : std::nullopt;
    if (!after)
        return command.fail();
    const QString language = Language::name(command.options);
    const CheckupResult wasFound = Checkup::judge(*before, rules, language);
    const CheckupResult isFound = Checkup::judge(*after, rules, language, &*before);
    const Comparison comparison
        = SnapshotComparison::compare({&*before, &wasFound}, {&*after, &isFound}, rules.kinds());
    if (command.isJson())
        Console::printJson(ComparisonListing::toJson(comparison));
    else
        Console::print(ComparisonListing::toText(comparison));
    return comparison.isSame() ? Exit::success : Exit::different;
}

void printVisit(const LookingCommand &command, const VisitInfo &visit, const QVector<ListedNode> &nodes)
{
    if (command.isJson()) {
        QJsonObject object = VisitListing::json(visit);
        object.insert(QStringLiteral("nodes"),
                      QJsonDocument::fromJson(listingJson(nodes)).object().value(QStringLiteral("nodes")));
        printJson(object);
        return;
    }
    Console::print(VisitListing::text(visit) + QLatin1Char('\n'));
    Console::print(listingText(nodes));
}

} // namespace

ExitStatus runArchiveList(const QStringList &arguments)
{
    LookingCommand command(QStringLiteral("archive list"),
                           ArchiveLookingTr::tr("Lists the visits, the newest first."));
    command.options.addOption(limitOptionOf());
    VisitQuery query;
    if (const std::optional<ExitStatus> status = command.begin(arguments))
        return *status;
    if (const std::optional<ExitStatus> status = takeLimit(command.options, &query))
        return *status;
    return listVisits(command, query, ArchiveLookingTr::tr("There is no visit in the archive."));
}

ExitStatus runArchiveFind(const QStringList &arguments)
{
    LookingCommand command(
        QStringLiteral("archive find"),
        ArchiveLookingTr::tr(
            "Lists the visits in which all words are found: in serial and part numbers, names, "
            "vehicle, customer, technician, notes and the day (2026-09-03)."));
    command.options.addPositional(QStringLiteral("TEXT"), ArchiveLookingTr::tr("What is looked for."),
                                  CommandArguments::Presence::Repeated);
    command.options.addOption(limitOptionOf());
    VisitQuery query;
    if (const std::optional<ExitStatus> status = command.begin(arguments))
        return *status;
    if (const std::optional<ExitStatus> status = takeLimit(command.options, &query))
        return *status;
    query.text = command.options.positionals().join(QLatin1Char(' '));
    return listVisits(command, query, ArchiveLookingTr::tr("No visit has \"%1\".").arg(query.text));
}

ExitStatus runArchiveVehicles(const QStringList &arguments)
{
    LookingCommand command(QStringLiteral("archive vehicles"),
                           ArchiveLookingTr::tr("Lists the vehicles, the one that was here last first."));
    if (const std::optional<ExitStatus> status = command.begin(arguments))
        return *status;
    const std::optional<QVector<VehicleInfo>> vehicles
        = command.archive().vehicles(QString(), &command.error);
    if (!vehicles)
        return command.fail();
    printList(command, QStringLiteral("vehicles"), *vehicles, VisitListing::text(*vehicles),
              ArchiveLookingTr::tr("There is no vehicle in the archive."),
              [](const VehicleInfo &vehicle) { return VisitListing::json(vehicle); });
    return Exit::success;
}

ExitStatus runArchiveShow(const QStringList &arguments)
{
    LookingCommand command(
        QStringLiteral("archive show"),
        ArchiveLookingTr::tr("Prints a visit, its components and all their values in words."));
    command.options.addPositional(QStringLiteral("VISIT"),
                                  ArchiveLookingTr::tr("The visit's number, or \"last\"."));
    if (const std::optional<ExitStatus> status = command.begin(arguments))
        return *status;
    const std::optional<qint64> id = command.access.visit(command.options.positional(), &command.error);
    const std::optional<VisitInfo> visit = id ? command.archive().visit(*id, &command.error) : std::nullopt;
    const std::optional<Snapshot> snapshot
        = visit ? command.archive().load(*id, &command.error) : std::nullopt;
    if (!snapshot)
        return command.fail();
    NodeStore store;
    SnapshotExchange::fillStore(*snapshot, store);
    printVisit(command, *visit, listNodes(store));
    return Exit::success;
}

ExitStatus runArchiveTrend(const QStringList &arguments)
{
    LookingCommand command(
        QStringLiteral("archive trend"),
        ArchiveLookingTr::tr("Prints a value at all visits of a vehicle, or of a device in whatever vehicle, "
                             "the oldest first."));
    command.options.addPositional(
        QStringLiteral("SUBJECT"),
        ArchiveLookingTr::tr("What the vehicle is called or \"#\" and its number; or the device's serial "
                             "number or key, as \"find --json\" shows it."));
    command.options.addPositional(
        QStringLiteral("OBJECT"),
        ArchiveLookingTr::tr("Index in hexadecimal and sub-index: 6164h.2 or 6164.2."));
    if (const std::optional<ExitStatus> status = command.begin(arguments))
        return *status;
    const std::optional<CanOpen::ObjectKey> key = parseObject(command.options.positional(1));
    if (!key)
        return command.options.complain(ArchiveLookingTr::tr("\"%1\" is no object: write it like 6164h.2.")
                                            .arg(command.options.positional(1)));
    const std::optional<ValueTrend> trend = readTrend(command, *key);
    if (!trend)
        return command.fail();
    // A visit that cannot be read may have the value.
    const bool isUnknown = trend->points.isEmpty() && !trend->problems.isEmpty();
    if (!isUnknown || command.isJson())
        printList(command, QStringLiteral("points"), trend->points, VisitListing::text(trend->points, *key),
                  ArchiveLookingTr::tr("No visit of it has a value of %1.").arg(key->toShortString()),
                  [key](const TrendPoint &point) { return VisitListing::json(point, *key); });
    for (const QString &problem : trend->problems)
        Console::printError(problem);
    return trend->problems.isEmpty() ? Exit::success : Exit::fileFailed;
}

ExitStatus runArchiveDiff(const QStringList &arguments)
{
    LookingCommand command(
        QStringLiteral("archive diff"),
        ArchiveLookingTr::tr("Says what has changed from one visit to a later one. With one VISIT: since the "
                             "visit of the vehicle before it."));
    command.options.addPositional(QStringLiteral("VISIT"),
                                  ArchiveLookingTr::tr("The earlier visit's number, or \"last\"."));
    command.options.addPositional(QStringLiteral("VISIT2"), ArchiveLookingTr::tr("The later one's."),
                                  CommandArguments::Presence::Optional);
    RuleOptions::add(command.options);
    RuleSet rules;
    if (const std::optional<ExitStatus> status = command.begin(arguments))
        return *status;
    if (const std::optional<ExitStatus> status = RuleOptions::load(command.options, &rules))
        return *status;
    const std::optional<QVector<qint64>> visits = visitsToCompare(command);
    return visits ? printComparison(command, *visits, rules) : command.fail();
}
