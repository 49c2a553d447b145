// SPDX-License-Identifier: MIT
#pragma once

#include "servicereport.h"
#include "servicereportdata.h"

class ReportWords;

/*! The sections of a service report; one without blocks says that there is nothing to say. */
namespace ReportParts {

/*! What is wrong and what to do, the worst first. */
ReportSection findings(const CheckupResult &checkup);

/*! What could not be judged, and why. */
ReportSection unchecked(const CheckupResult &checkup);

ReportSection changes(const ReportComparison &comparison, const ServiceReportData &data,
                      const ReportWords &words);

ReportSection unread(const ServiceReportData &data, const ReportWords &words);

/*! How it can be shown later that report and record belong together. */
ReportSection record(const ServiceReportData &data);

} // namespace ReportParts
