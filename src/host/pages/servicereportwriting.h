// SPDX-License-Identifier: MIT
#pragma once

#include <servicereport/servicereportdata.h>
#include <servicereport/servicereportfiles.h>
#include <servicereport/workshopsettings.h>

#include <QObject>
#include <QString>

#include <functional>
#include <optional>

class RuleSet;

/*! What a service report is to be like. */
struct ServiceReportOrder
{
    Snapshot snapshot;
    QString archivedFingerprint;     //!< see ServiceReportData
    std::optional<Snapshot> earlier; //!< to compare with
    QVector<HealthTrend> trends;
    WorkshopSettings workshop;
    QString language; //!< of the report: "de"
    QString folder;   //!< has to exist
};

/*! Writes service reports without holding the window. */
namespace ServiceReportWriting {

struct Result
{
    ServiceReportFiles::Paths paths;
    QString problem; //!< a sentence; empty when both files are written
    QString notice;  //!< a sentence about what they lack, may be empty
};

/*! Calls \a done in the thread of \a context, unless it has gone by then.
 *
 *  What the report says is made at once, as translators are the whole program's; the logo is read, and all is laid out,
 *  printed and written in another thread.
 */
void write(const ServiceReportOrder &order, const RuleSet &rules, QObject *context,
           const std::function<void(const Result &)> &done);

} // namespace ServiceReportWriting
