// SPDX-License-Identifier: MIT
#include "reportmaker.h"

#include "reportcomponents.h"
#include "reporthead.h"
#include "reportparts.h"
#include "reporttr.h"
#include "reportwords.h"
#include "servicereportdata.h"

namespace {

void addUnlessEmpty(ServiceReport *report, const ReportSection &section)
{
    if (!section.blocks.isEmpty())
        report->sections.append(section);
}

QString subjectOf(const Snapshot &snapshot, const ReportWords &words)
{
    const QString vehicle = ReportWords::shortened(ReportHead::vehicleName(snapshot), 60);
    const QString date = words.date(snapshot.time);
    return vehicle.isEmpty() ? date : QStringLiteral("%1 · %2").arg(vehicle, date);
}

ReportLabels makeLabels()
{
    ReportLabels labels;
    labels.advice = ReportTr::tr("What to do:");
    labels.page = ReportTr::tr("Page %1 of %2");
    for (const ReportMark mark : {ReportMark::None, ReportMark::Good, ReportMark::Note,
                                  ReportMark::NotChecked, ReportMark::Warning, ReportMark::Fault})
        labels.marks.append(ReportMarks::word(mark));
    return labels;
}

} // namespace

ServiceReport makeServiceReport(const ServiceReportData &data)
{
    const ReportWords words(data.locale);
    ServiceReport report;
    report.locale = data.locale;
    report.labels = makeLabels();
    report.title = ReportTr::tr("Service report");
    report.subject = subjectOf(data.snapshot, words);
    report.program = data.program;
    report.workshop = data.workshop.name;
    report.workshopLines = data.workshop.lines;
    report.logo = data.workshop.logo;
    report.facts = ReportHead::facts(data.snapshot, words);
    report.verdict = ReportMarks::of(data.checkup.verdict);
    report.verdictHeadline = ReportHead::headline(data.checkup);
    report.verdictSentence = ReportHead::sentence(data.checkup);

    addUnlessEmpty(&report, ReportParts::findings(data.checkup));
    addUnlessEmpty(&report, ReportParts::unchecked(data.checkup));
    if (data.comparison)
        addUnlessEmpty(&report, ReportParts::changes(*data.comparison, data, words));
    addUnlessEmpty(&report, ReportComponents::overview(data));
    addUnlessEmpty(&report, ReportComponents::components(data, words));
    addUnlessEmpty(&report, ReportParts::unread(data, words));
    addUnlessEmpty(&report, ReportParts::record(data));
    return report;
}
