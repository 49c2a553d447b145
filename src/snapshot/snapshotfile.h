// SPDX-License-Identifier: MIT
#pragma once

#include "snapshot.h"

#include <QByteArray>
#include <QString>

#include <optional>

/*! The file of a snapshot, ".dxsnap": one JSON document, described with its schema in docs/snapshot.md. See
 *  SavedVehicle for reading one.
 *
 *  The same snapshot always gives the same bytes, and what was read from a file that this program wrote gives the
 *  file's bytes again; so the SHA-256 of a file stands for the snapshot.
 */
namespace SnapshotFile {

/*! The version that is written, and the highest one that is read. */
constexpr int version = 1;

QByteArray toJson(const Snapshot &snapshot);

/*! Empty when \a text is no snapshot, with a sentence in \a errorMessage: that it is no JSON (line and column), no
 *  snapshot, of a newer version, or what is wrong at which place. Nothing of a broken document is taken: values have to
 *  be those of their bytes, keys have to ascend.
 */
std::optional<Snapshot> fromJson(const QByteArray &text, QString *errorMessage);

/*! Writes the file, or leaves the old one as it is; false with a sentence in \a errorMessage. */
bool save(const QString &fileName, const Snapshot &snapshot, QString *errorMessage);

/*! Whether \a text begins like a snapshot; for telling it from an exchange file. */
bool looksLikeSnapshot(const QByteArray &text);

/*! SHA-256 of toJson(), as 64 hexadecimal digits. */
QString fingerprint(const Snapshot &snapshot);

} // namespace SnapshotFile
