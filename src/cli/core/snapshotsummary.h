// SPDX-License-Identifier: MIT
#pragma once

#include <snapshot/snapshot.h>

#include <QByteArray>
#include <QStringList>

/*! What a snapshot holds and what it lacks, for people and for programs. */
namespace SnapshotSummary {

/*! A line for each node, the gaps by their reasons below it, and a line for all. */
QStringList lines(const Snapshot &snapshot);

/*! The same as JSON. \a isComplete: without gaps, and no node may be missing. \a file is where the snapshot was written,
 *  empty for nowhere.
 */
QByteArray toJson(const Snapshot &snapshot, bool isComplete, const QString &file);

} // namespace SnapshotSummary
