// SPDX-License-Identifier: MIT
#pragma once

#include "servicereport.h"
#include "servicereportdata.h"

struct CellVoltages;
class ReportWords;

/*! The pictures of a service report, each with its words. */
namespace ReportCharts {

/*! A bar for each cell; lowest and highest with their values, the device's limits as lines, a question mark for a cell
 *  that could not be read.
 */
ReportPicture cellVoltages(const CellVoltages &voltages, const QString &title, const ReportWords &words);

/*! A line over the visits; \a trend has to have a point. */
ReportPicture health(const HealthTrend &trend, const QString &title, const ReportWords &words);

} // namespace ReportCharts
