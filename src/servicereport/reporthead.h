// SPDX-License-Identifier: MIT
#pragma once

#include "servicereport.h"

struct CheckupResult;
struct Snapshot;
class ReportWords;

/*! What stands at the top of a service report. */
namespace ReportHead {

/*! What people call the vehicle: as it was written beside the snapshot, else the serial number of the bus controller;
 *  empty when neither is known.
 */
QString vehicleName(const Snapshot &snapshot);

/*! Who, what, when and by what; without what is not known. */
QVector<ReportFact> facts(const Snapshot &snapshot, const ReportWords &words);

QString headline(const CheckupResult &checkup);

/*! What was found in numbers: "2 faults, 1 warning; 1 component not fully checked" */
QString sentence(const CheckupResult &checkup);

} // namespace ReportHead
