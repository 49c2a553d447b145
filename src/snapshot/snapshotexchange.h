// SPDX-License-Identifier: MIT
#pragma once

#include "snapshot.h"

class NodeStore;

/*! The way between snapshots and what the overview knows, its store and exchange file. */
namespace SnapshotExchange {

/*! Every whole number of the snapshot under its node, index and sub-index, all nodes in the list of nodes. Texts, bytes
 *  and fractions have no place in an exchange file and are left out.
 */
void fillStore(const Snapshot &snapshot, NodeStore &store);

/*! A snapshot of what a store holds: without bytes, the values as they are; the listed nodes only, in the order of
 *  their IDs. Node IDs outside 1 to 127 are left out, and so is object 0000h, which an import may leave behind.
 */
Snapshot fromStore(const NodeStore &store);

} // namespace SnapshotExchange
