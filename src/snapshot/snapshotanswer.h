// SPDX-License-Identifier: MIT
#pragma once

#include "snapshot.h"

#include <canopen/sdooutcome.h>

/*! Makes entries of what SDO uploads of raw bytes came to. */
namespace SnapshotAnswer {

/*! The entry of \a outcome, without its time. \a types are those that the object may have, the likeliest first; empty
 *  when none is known. Bytes that fit none of them are a gap, and stay in the entry.
 */
SnapshotEntry toEntry(const CanOpen::SdoOutcome &outcome, const QVector<CanOpen::DataType> &types);

} // namespace SnapshotAnswer
