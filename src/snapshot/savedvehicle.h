// SPDX-License-Identifier: MIT
#pragma once

#include "snapshot.h"

#include <QString>

#include <optional>

class NodeStore;

/*! The values of a vehicle in a file: a snapshot or an exchange file, told apart by what stands in it. */
namespace SavedVehicle {

/*! Empty for a file that cannot be read or is no good one of either kind, with a sentence in \a errorMessage that
 *  names it. Of an exchange file the date of its export is the time; it has no other origin.
 */
std::optional<Snapshot> load(const QString &fileName, QString *errorMessage);

/*! The same into a store, as an import fills it, of a snapshot by SnapshotExchange; false on failure, and the store
 *  stays as it was.
 */
bool loadStore(const QString &fileName, NodeStore &store, QString *errorMessage);

} // namespace SavedVehicle
