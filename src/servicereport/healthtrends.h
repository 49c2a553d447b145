// SPDX-License-Identifier: MIT
#pragma once

#include "servicereportdata.h"

/*! How the state of health of batteries (6176h, CiA 454) went. */
namespace HealthTrends {

/*! Each battery pack of the snapshot whose health was read, with what it is now as its only point. */
QVector<HealthTrend> of(const Snapshot &snapshot);

/*! Adds what the same batteries were in an earlier snapshot, wherever they were then; a battery is known by its identity,
 *  one without a serial number is not followed. \a now is the snapshot that the trends are of.
 */
void add(QVector<HealthTrend> *trends, const Snapshot &earlier, const Snapshot &now);

/*! Adds what the battery was at an earlier visit, a value of object(), in its place in time; one of the same time is there
 *  once. A trend of an old snapshot knows nothing of visits after \a now, its time.
 */
void addVisit(HealthTrend *trend, const QDateTime &time, const QVariant &value, const QDateTime &now);

CanOpen::ObjectKey object(const HealthTrend &trend);

} // namespace HealthTrends
