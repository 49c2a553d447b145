// SPDX-License-Identifier: MIT
#pragma once

#include "servicereport.h"

#include <checkup/findings.h>

struct SnapshotNode;
class ReportWords;

/*! The values of one component as a table: value, number with unit, and the limits that the component has itself.
 *
 *  First what a workshop asks for, in its words, then whatever else is measured and has a unit, by its name in the object
 *  table; no settings. What \a findings name has its light: nothing is judged here. What could not be read is there and
 *  says so. The table may be empty.
 */
ReportTable valueTable(const SnapshotNode &node, const QVector<Finding> &findings, const ReportWords &words);
