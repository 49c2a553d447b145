// SPDX-License-Identifier: MIT
#pragma once

#include <snapshot/snapshot.h>

class Masking;

/*! The secrets of a snapshot. */
namespace SnapshotMasking {

void learn(const Snapshot &snapshot, Masking *masking);

/*! The same snapshot without them: serial numbers by others of the same size, what people have written by words. */
Snapshot masked(Snapshot snapshot, Masking *masking);

} // namespace SnapshotMasking
