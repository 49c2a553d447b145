// SPDX-License-Identifier: MIT
#include "reportcomponents.h"

#include "cellvoltages.h"
#include "charts.h"
#include "reporttr.h"
#include "reportwords.h"
#include "servicereportdata.h"
#include "valuerows.h"

#include <interpreter/vendortable.h>
#include <snapshot/deviceidentity.h>
#include <snapshot/snapshotwords.h>

#include <algorithm>

namespace {

/*! A node of the snapshot with what the check-up says of it. */
struct Component
{
    const SnapshotNode *node;
    DeviceIdentity identity;
    QString name;
    CheckedComponent checked;
};

/*! In the order of the check-up; nodes that it does not have, behind them. */
QVector<Component> componentsOf(const ServiceReportData &data)
{
    QVector<Component> components;
    QVector<quint8> done;
    const auto add = [&](const SnapshotNode &node, const CheckedComponent &checked) {
        const DeviceIdentity identity = DeviceIdentity::of(node);
        components.append(
            {&node, identity, ReportWords::shortened(ReportWords::name(data.checkup, node)), checked});
        done.append(node.id);
    };
    for (const CheckedComponent &checked : data.checkup.components) {
        const SnapshotNode *node = data.snapshot.find(checked.nodeId);
        if (node != nullptr && !done.contains(checked.nodeId))
            add(*node, checked);
    }
    for (const SnapshotNode &node : data.snapshot.nodes) {
        CheckedComponent unknown;
        unknown.nodeId = node.id;
        unknown.state = ComponentState::NotChecked;
        if (!done.contains(node.id))
            add(node, unknown);
    }
    return components;
}

QString hexText(quint32 number)
{
    return QStringLiteral("%1h")
        .arg(number, 8, 16, QLatin1Char('0'))
        .toUpper()
        .replace(QLatin1Char('H'), QLatin1Char('h'));
}

QString vendorText(quint32 vendor)
{
    const QString company = vendorTable().company(vendor).simplified();
    return company.isEmpty() ? hexText(vendor) : QStringLiteral("%1 (%2)").arg(company, hexText(vendor));
}

QString revisionText(quint32 revision)
{
    return QStringLiteral("%1.%2").arg(revision >> 16).arg(revision & 0xFFFF);
}

/*! Revision and software version, whichever are known. */
QString firmwareText(const DeviceIdentity &identity)
{
    QStringList texts;
    if (!identity.softwareVersion.isEmpty())
        texts << ReportWords::shortened(identity.softwareVersion, 60);
    if (identity.revision)
        texts << ReportTr::tr("revision %1").arg(revisionText(*identity.revision));
    return texts.join(QStringLiteral(", "));
}

QString optionalNumber(const std::optional<quint32> &number)
{
    return number ? QString::number(*number) : QString();
}

QString serialText(const Component &component)
{
    if (!component.identity.serial && component.checked.isNameEarlier)
        return ReportTr::tr("not read this time");
    return optionalNumber(component.identity.serial);
}

QString answerText(const SnapshotNode &node, const ReportWords &words)
{
    if (!node.medianAnswer)
        return QString();
    return *node.medianAnswer > 0 ? ReportTr::tr("%1 ms").arg(words.locale().toString(*node.medianAnswer))
                                  : ReportTr::tr("less than 1 ms");
}

QVector<ReportFact> identityFacts(const Component &component, const ReportWords &words)
{
    const DeviceIdentity &identity = component.identity;
    const SnapshotNode &node = *component.node;
    const QVector<ReportFact> all{
        {ReportTr::tr("Identity"), component.checked.isNameEarlier
                                       ? ReportTr::tr("not read this time; the name is from an earlier visit")
                                       : QString()},
        {ReportTr::tr("Device name"), ReportWords::shortened(identity.deviceName)},
        {ReportTr::tr("Manufacturer"), identity.vendor ? vendorText(*identity.vendor) : QString()},
        {ReportTr::tr("Product"), identity.product ? hexText(*identity.product) : QString()},
        {ReportTr::tr("Serial number"), optionalNumber(identity.serial)},
        {ReportTr::tr("Part number"), optionalNumber(identity.partNumber)},
        {ReportTr::tr("Software version"), ReportWords::shortened(identity.softwareVersion)},
        {ReportTr::tr("Revision"), identity.revision ? revisionText(*identity.revision) : QString()},
        {ReportTr::tr("Hardware version"), ReportWords::shortened(identity.hardwareVersion)},
        {ReportTr::tr("Answers after"), answerText(node, words)},
        {ReportTr::tr("Data sheet"), ReportWords::shortened(node.dataSheet)},
    };
    QVector<ReportFact> known;
    std::copy_if(all.cbegin(), all.cend(), std::back_inserter(known),
                 [](const ReportFact &fact) { return !fact.text.isEmpty(); });
    return known;
}

QString packTitle(const QString &title, int pack, int count)
{
    return count > 1 ? ReportTr::tr("%1, pack %2").arg(title, QString::number(pack)) : title;
}

/*! Why a trend lacks visits; empty when it does not. */
QString missingVisits(const HealthTrend &trend)
{
    if (trend.isArchiveUnread)
        return ReportTr::tr("Earlier visits may be missing, as the archive could not be read.");
    if (trend.damagedVisits > 0)
        return ReportTr::tr("Number of visits that are missing, as they are damaged in the archive: %1.")
            .arg(trend.damagedVisits);
    return QString();
}

void addPictures(const Component &component, const ServiceReportData &data, const ReportWords &words,
                 ReportSection *section)
{
    const QVector<CellVoltages> packs = CellVoltages::of(*component.node);
    for (const CellVoltages &pack : packs) {
        section->blocks.append(ReportCharts::cellVoltages(
            pack, packTitle(ReportTr::tr("Cell voltages"), pack.pack, packs.size()), words));
    }
    const auto isOwn = [&](const HealthTrend &trend) {
        return trend.nodeId == component.node->id
               && (trend.points.size() > 1 || !missingVisits(trend).isEmpty());
    };
    const auto count = std::count_if(data.trends.cbegin(), data.trends.cend(), isOwn);
    for (const HealthTrend &trend : data.trends) {
        if (!isOwn(trend))
            continue;
        const QString title
            = packTitle(ReportTr::tr("State of health over the visits"), trend.pack, int(count));
        const QString missing = missingVisits(trend);
        const bool isDrawn = trend.points.size() > 1;
        if (isDrawn)
            section->blocks.append(ReportCharts::health(trend, title, words));
        if (!missing.isEmpty())
            section->blocks.append(
                ReportParagraph{isDrawn ? missing : ReportTr::tr("%1: %2").arg(title, missing)});
    }
}

/*! A page of rows that all say so would say no more than one sentence. */
bool isUnread(const ReportTable &values)
{
    return !values.rows.isEmpty()
           && std::all_of(values.rows.cbegin(), values.rows.cend(),
                          [](const ReportTable::Row &row) { return row.mark == ReportMark::NotChecked; });
}

void addComponent(const Component &component, const ServiceReportData &data, const ReportWords &words,
                  ReportSection *section)
{
    ReportHeading heading;
    heading.text = component.name;
    heading.aside = ReportTr::tr("node %1").arg(component.node->id);
    heading.mark = ReportMarks::of(component.checked.state);
    section->blocks.append(heading);

    const QString ending = SnapshotWords::ending(component.node->end);
    if (!ending.isEmpty())
        section->blocks.append(ReportParagraph{ending, ReportParagraph::Look::Plain});
    const QVector<ReportFact> facts = identityFacts(component, words);
    if (!facts.isEmpty())
        section->blocks.append(ReportFacts{facts});
    else if (ending.isEmpty())
        section->blocks.append(ReportParagraph{ReportTr::tr("The device does not say who it is.")});
    const ReportTable values = valueTable(*component.node, component.checked.findings, words);
    if (isUnread(values))
        section->blocks.append(ReportParagraph{ReportTr::tr("None of its values could be read.")});
    else if (!values.rows.isEmpty())
        section->blocks.append(values);
    addPictures(component, data, words, section);
}

} // namespace

ReportSection ReportComponents::overview(const ServiceReportData &data)
{
    ReportTable table;
    table.columns = {{ReportTr::tr("State"), 8},
                     {ReportTr::tr("Component"), 11},
                     {ReportTr::tr("Node"), 3},
                     {ReportTr::tr("Serial number"), 6},
                     {ReportTr::tr("Firmware"), 8}};
    for (const Component &component : componentsOf(data)) {
        const ReportMark mark = ReportMarks::of(component.checked.state);
        table.rows.append({{ReportMarks::word(mark), component.name, QString::number(component.node->id),
                            serialText(component), firmwareText(component.identity)},
                           mark});
    }
    ReportSection section{ReportTr::tr("Components"), {}};
    if (table.rows.isEmpty())
        section.blocks.append(ReportParagraph{ReportTr::tr("No component was heard.")});
    else
        section.blocks.append(table);
    return section;
}

ReportSection ReportComponents::components(const ServiceReportData &data, const ReportWords &words)
{
    ReportSection section{ReportTr::tr("Component by component"), {}};
    for (const Component &component : componentsOf(data))
        addComponent(component, data, words, &section);
    return section;
}
