// SPDX-License-Identifier: MIT
#include "reportparts.h"

#include "reporttr.h"
#include "reportwords.h"
#include "unreadlist.h"

#include <checkup/changesummary.h>
#include <snapshot/snapshotfile.h>
#include <snapshot/snapshotwords.h>

#include <algorithm>

namespace {

constexpr int longestSentence = 1500; // characters
constexpr int mostChanges = 300;

ReportItem itemOf(const Finding &finding, const QString &place)
{
    return {ReportMarks::of(finding.severity), place, ReportWords::shortened(finding.text, longestSentence),
            ReportWords::shortened(finding.advice, longestSentence)};
}

QString kindWord(Change::Kind kind)
{
    switch (kind) {
    case Change::Kind::Added:
        return ReportTr::tr("Added");
    case Change::Kind::Removed:
        return ReportTr::tr("Removed");
    case Change::Kind::Replaced:
        return ReportTr::tr("Replaced");
    case Change::Kind::Moved:
        return ReportTr::tr("Moved");
    case Change::Kind::Firmware:
        return ReportTr::tr("Firmware");
    case Change::Kind::Parameter:
        return ReportTr::tr("Fixed data");
    case Change::Kind::Counter:
        return ReportTr::tr("Counter");
    case Change::Kind::Value:
        return ReportTr::tr("Value");
    case Change::Kind::Finding:
        return ReportTr::tr("Finding");
    case Change::Kind::Gap:
        return ReportTr::tr("Gap");
    }
    return QString();
}

/*! Where something has changed; what is gone is no longer known. */
QString placeOf(const ServiceReportData &data, const Change &change)
{
    const SnapshotNode *node
        = change.kind == Change::Kind::Removed ? nullptr : data.snapshot.find(change.nodeId);
    const QString name = node != nullptr ? ReportWords::name(data.checkup, *node) : ReportTr::tr("Device");
    return ReportWords::place(name, change.nodeId);
}

/*! The sentence, or what it would say. */
QString changeText(const ServiceReportData &data, const Change &change)
{
    if (!change.text.isEmpty())
        return ReportWords::shortened(change.text, longestSentence);
    const QString before = ReportWords::shortened(change.before);
    const QString after = ReportWords::shortened(change.after);
    QStringList parts{placeOf(data, change)};
    if (change.key)
        parts << ReportWords::objectName(*change.key);
    parts << (before.isEmpty() || after.isEmpty() ? before + after
                                                  : QStringLiteral("%1 → %2").arg(before, after));
    parts.removeAll(QString());
    return parts.join(QStringLiteral(": "));
}

ReportTable changeTable(const QVector<Change> &changes, const ServiceReportData &data)
{
    ReportTable table;
    table.columns = {{ReportTr::tr("What"), 2}, {ReportTr::tr("Change"), 10}};
    for (int i = 0; i < qMin(changes.size(), mostChanges); ++i) {
        const Change &change = changes.at(i);
        table.rows.append({{kindWord(change.kind), changeText(data, change)}, ReportMark::None});
    }
    return table;
}

} // namespace

ReportSection ReportParts::findings(const CheckupResult &checkup)
{
    QVector<ReportItem> items;
    for (const Finding &finding : checkup.vehicleFindings)
        items.append(itemOf(finding, ReportWords::place(QString(), 0)));
    for (const CheckedComponent &component : checkup.components) {
        for (const Finding &finding : component.findings)
            items.append(itemOf(finding, ReportWords::place(component.name, component.nodeId)));
    }
    std::stable_sort(items.begin(), items.end(),
                     [](const ReportItem &a, const ReportItem &b) { return a.mark > b.mark; });

    ReportSection section{ReportTr::tr("What was found, and what to do"), {}};
    const bool isNobody = items.isEmpty() && checkup.components.isEmpty();
    if (isNobody)
        section.blocks.append(ReportParagraph{ReportTr::tr("No component was heard.")});
    else if (items.isEmpty())
        section.blocks.append(ReportParagraph{ReportTr::tr("Nothing was found.")});
    else
        section.blocks.append(ReportItems{items});
    return section;
}

ReportSection ReportParts::unchecked(const CheckupResult &checkup)
{
    QVector<ReportItem> items;
    for (const CheckedComponent &component : checkup.components) {
        const QString place = ReportWords::place(component.name, component.nodeId);
        QStringList reasons;
        for (const QString &reason : component.notChecked)
            reasons.append(ReportWords::shortened(reason, longestSentence));
        if (reasons.isEmpty() && component.state == ComponentState::NotChecked)
            reasons.append(ReportTr::tr("It could not be checked."));
        if (!reasons.isEmpty())
            items.append({ReportMark::NotChecked, place, reasons.join(QLatin1Char('\n')), QString()});
    }
    ReportSection section{ReportTr::tr("What could not be checked"), {}};
    if (!items.isEmpty())
        section.blocks.append(ReportItems{items});
    return section;
}

ReportSection ReportParts::changes(const ReportComparison &comparison, const ServiceReportData &data,
                                   const ReportWords &words)
{
    const QVector<Change> changes = ChangeSummary::forPeople(comparison.comparison).changes;
    ReportSection section{ReportTr::tr("What has changed since %1").arg(words.dateAndTime(comparison.time)),
                          {}};
    if (changes.isEmpty()) {
        section.blocks.append(ReportParagraph{ReportTr::tr("Nothing has changed.")});
        return section;
    }
    section.blocks.append(changeTable(changes, data));
    const int more = changes.size() - mostChanges;
    if (more > 0)
        section.blocks.append(ReportParagraph{ReportTr::tr("And %n more change(s).", nullptr, more)});
    return section;
}

ReportSection ReportParts::unread(const ServiceReportData &data, const ReportWords &words)
{
    ReportTable table;
    table.columns = {{ReportTr::tr("Component"), 3},
                     {ReportTr::tr("Why"), 4},
                     {ReportTr::tr("Values"), 2},
                     {ReportTr::tr("Which"), 6}};
    for (const SnapshotNode &node : data.snapshot.nodes) {
        const QString place = ReportWords::place(ReportWords::name(data.checkup, node), node.id);
        for (const UnreadGroup &group : unreadGroups(node)) {
            table.rows.append({{place, group.reason, words.locale().toString(group.count), group.objects},
                               ReportMark::None});
        }
        const QString ending = SnapshotWords::ending(node.end);
        if (!ending.isEmpty() && node.entries.isEmpty())
            table.rows.append({{place, ending, QString(), ReportTr::tr("Everything")}, ReportMark::None});
    }
    ReportSection section{ReportTr::tr("What was not read"), {}};
    if (data.snapshot.nodes.isEmpty())
        section.blocks.append(ReportParagraph{ReportTr::tr("No component was heard.")});
    else if (table.rows.isEmpty())
        section.blocks.append(ReportParagraph{ReportTr::tr("Everything that was asked for was answered.")});
    else
        section.blocks.append(table);
    return section;
}

ReportSection ReportParts::record(const ServiceReportData &data)
{
    const QString shown = SnapshotFile::fingerprint(data.snapshot);
    const QString lasting = data.archivedFingerprint.isEmpty() ? shown : data.archivedFingerprint;
    ReportSection section{ReportTr::tr("The record"), {}};
    section.blocks.append(ReportParagraph{
        ReportTr::tr("This report was made from a snapshot, a file that holds everything that the devices "
                     "answered. Its fingerprint (SHA-256) is:")});
    section.blocks.append(ReportParagraph{lasting, ReportParagraph::Look::Code});
    if (lasting != shown) {
        section.blocks.append(ReportParagraph{
            ReportTr::tr("That is the snapshot as the archive keeps it. Saved with the notes that were "
                         "entered since, its file has the fingerprint:")});
        section.blocks.append(ReportParagraph{shown, ReportParagraph::Look::Code});
    }
    section.blocks.append(ReportParagraph{
        ReportTr::tr(
            "To see whether a snapshot is the one of this report, compare: \"sha256sum FILE.dxsnap\" on "
            "Linux, \"certutil -hashfile FILE.dxsnap SHA256\" on Windows."),
        ReportParagraph::Look::Small});
    return section;
}
