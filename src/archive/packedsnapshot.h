// SPDX-License-Identifier: MIT
#pragma once

#include <snapshot/snapshot.h>

#include <QByteArray>
#include <QMap>
#include <QString>

#include <optional>

/*! A snapshot in few bytes, without loss, each node for itself so that one can be read without the others. */
struct PackedSnapshot
{
    /*! The largest snapshot that is packed, in bytes of its file; larger ones cannot be read as a file either. */
    static const int maximumSize;

    QString fingerprint;            //!< see SnapshotFile::fingerprint()
    QByteArray head;                //!< the file without entries, compressed
    QMap<quint8, QByteArray> nodes; //!< see PackedNode

    /*! Empty for a snapshot of which unpack() would not make the same file again: it is too large or holds what no file
     *  can.
     */
    static std::optional<PackedSnapshot> pack(const Snapshot &snapshot);

    /*! Empty when anything is missing or damaged: what it gives has the fingerprint. */
    std::optional<Snapshot> unpack() const;
};
