// SPDX-License-Identifier: MIT
#pragma once

#include "servicereport.h"

struct ServiceReportData;

/*! Says what is in \a data, in the order in which people ask: how is it, what is wrong and what to do, what has changed;
 *  then the components, what was not read, and how the record can be checked.
 *
 *  The texts are in the language of the program at this time; ReportLanguage makes it another one for a while.
 */
ServiceReport makeServiceReport(const ServiceReportData &data);
