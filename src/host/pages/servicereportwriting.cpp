// SPDX-License-Identifier: MIT
#include "servicereportwriting.h"

#include <checkup/checkup.h>
#include <checkup/ruleset.h>
#include <checkup/snapshotcomparison.h>
#include <system/background.h>
#include <servicereport/htmlreport.h>
#include <servicereport/pdfreport.h>
#include <servicereport/reportlanguage.h>
#include <servicereport/reportmaker.h>

#include <QCoreApplication>

namespace {

struct Pages
{
    QByteArray html;
    QByteArray pdf;
};

ServiceReport makeReport(const ServiceReportOrder &order, const RuleSet &rules,
                         const ReportLanguage &language)
{
    ServiceReportData data;
    data.snapshot = order.snapshot;
    data.archivedFingerprint = order.archivedFingerprint;
    data.checkup
        = Checkup::judge(order.snapshot, rules, order.language, order.earlier ? &*order.earlier : nullptr);
    if (order.earlier) {
        const CheckupResult before = Checkup::judge(*order.earlier, rules, order.language);
        data.comparison
            = ReportComparison{order.earlier->time,
                               SnapshotComparison::compare({&*order.earlier, &before},
                                                           {&order.snapshot, &data.checkup}, rules.kinds())};
    }
    data.trends = order.trends;
    data.workshop.name = order.workshop.name;
    data.workshop.lines = order.workshop.lines;
    data.program
        = QCoreApplication::applicationName() + QLatin1Char(' ') + QCoreApplication::applicationVersion();
    data.locale = language.locale();
    return makeServiceReport(data);
}

Pages print(const ServiceReport &report)
{
    return {toHtml(report), toPdf(report, usualPaper(report.locale))};
}

/*! With the logo. A report without it is better than none. */
ServiceReportWriting::Result save(ServiceReport report, const WorkshopSettings &workshop,
                                  const QString &folder, const QString &baseName)
{
    ServiceReportWriting::Result result;
    report.logo = workshop.toWorkshop(&result.notice).logo;
    const Pages pages = print(report);
    QString problem;
    if (!ServiceReportFiles::write(folder, baseName, pages.html, pages.pdf, &result.paths, &problem))
        result.problem = problem;
    return result;
}

} // namespace

void ServiceReportWriting::write(const ServiceReportOrder &order, const RuleSet &rules, QObject *context,
                                 const std::function<void(const Result &)> &done)
{
    // The language is the program's meanwhile, so what the report says is made here; it is printed elsewhere.
    const ServiceReport report = makeReport(order, rules, ReportLanguage(order.language));
    const QString baseName = ServiceReportFiles::baseName(order.snapshot);
    Background::run(
        context,
        [report, baseName, workshop = order.workshop, folder = order.folder] {
            return save(report, workshop, folder, baseName);
        },
        done);
}
