// SPDX-License-Identifier: MIT
#pragma once

#include <snapshot/snapshot.h>

#include <QByteArray>

#include <optional>

/*! The entries of a node in few bytes: what is alike stands together, keys, types, reasons, times, and is compressed.
 *
 *      1                                   the form
 *      number of uncompressed bytes, then compressed:
 *          number of entries
 *          seven columns, each with its number of bytes: kinds, keys, types, bytes, abort codes, times, values
 *
 *  A value that follows from type and bytes takes no room. See ColumnWriter for the numbers.
 */
namespace PackedNode {

QByteArray pack(const QVector<SnapshotEntry> &entries);

/*! The same entries again. Empty for what was not made by pack(), or would take more than \a longest bytes; what was
 *  used is taken away from \a longest.
 */
std::optional<QVector<SnapshotEntry>> unpack(const QByteArray &packed, int *longest);

} // namespace PackedNode
