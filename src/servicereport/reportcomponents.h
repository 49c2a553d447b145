// SPDX-License-Identifier: MIT
#pragma once

#include "servicereport.h"

class ReportWords;
struct ServiceReportData;

/*! The sections of a service report about the components. */
namespace ReportComponents {

/*! All components in one table, the worst first. */
ReportSection overview(const ServiceReportData &data);

/*! One component after the other: who it is, its values, cells, and how its health went. */
ReportSection components(const ServiceReportData &data, const ReportWords &words);

} // namespace ReportComponents
