// SPDX-License-Identifier: MIT
#pragma once

#include "visit.h"

#include <QString>

#include <optional>

/*! What a check-up said of a snapshot that waits: a file of its own beside the snapshot's, so that this one stays the
 *  same. One whose snapshot is gone, as programs can end between the two, means nothing.
 */
namespace WaitingVerdict {

/*! The file beside a snapshot's: "20260903-081205-3fa9c2d1b0e5a774.verdict" */
QString fileOf(const QString &snapshotFile);

/*! Writes it whole, in the place of an older one, or not at all. */
bool save(const QString &snapshotFile, const VisitVerdict &verdict);

/*! Empty when there is none, or none that can be read. */
std::optional<VisitVerdict> load(const QString &snapshotFile);

void remove(const QString &snapshotFile);

} // namespace WaitingVerdict
