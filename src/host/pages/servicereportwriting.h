// SPDX-License-Identifier: MIT
#pragma once

#include <servicereport/servicereportdata.h>
#include <servicereport/servicereportfiles.h>

#include <QObject>
#include <QString>

#include <functional>
#include <optional>

class RuleSet;

/*! What a service report is to be like. */
struct ServiceReportOrder
{
    Snapshot snapshot;
    std::optional<Snapshot> earlier; //!< to compare with
    QVector<HealthTrend> trends;
    Workshop workshop;
    QString language;        //!< of the report: "de"
    QString programLanguage; //!< of everything else
    QString folder;          //!< has to exist
};

/*! Writes service reports without holding the window. */
namespace ServiceReportWriting {

struct Result
{
    ServiceReportFiles::Paths paths;
    QString problem; //!< a sentence; empty when both files are written
};

/*! Calls \a done in the thread of \a context, unless it has gone by then.
 *
 *  Translators are the program's, so a report in another language than the program's is made at once, and the window
 *  waits for it; one in the same language is made in another thread.
 */
void write(const ServiceReportOrder &order, const RuleSet &rules, QObject *context,
           const std::function<void(const Result &)> &done);

} // namespace ServiceReportWriting
