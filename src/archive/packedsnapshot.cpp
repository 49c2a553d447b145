// SPDX-License-Identifier: MIT
#include "packedsnapshot.h"

#include "bytecolumn.h"
#include "packednode.h"

#include <json/jsondocument.h>
#include <snapshot/snapshotfile.h>

#include <QCryptographicHash>

namespace {

QString fingerprintOf(const QByteArray &file)
{
    return QString::fromLatin1(QCryptographicHash::hash(file, QCryptographicHash::Sha256).toHex());
}

Snapshot withoutEntries(Snapshot snapshot)
{
    for (SnapshotNode &node : snapshot.nodes)
        node.entries.clear();
    return snapshot;
}

} // namespace

const int PackedSnapshot::maximumSize = JsonDocument::maximumSize;

std::optional<PackedSnapshot> PackedSnapshot::pack(const Snapshot &snapshot)
{
    const QByteArray file = SnapshotFile::toJson(snapshot);
    if (file.size() > maximumSize)
        return std::nullopt;
    PackedSnapshot packed;
    packed.fingerprint = fingerprintOf(file);
    packed.head = Deflate::compress(SnapshotFile::toJson(withoutEntries(snapshot)));
    for (const SnapshotNode &node : snapshot.nodes)
        packed.nodes.insert(node.id, PackedNode::pack(node.entries));
    return packed.unpack() ? std::optional<PackedSnapshot>(packed) : std::nullopt;
}

std::optional<Snapshot> PackedSnapshot::unpack() const
{
    int room = maximumSize;
    const std::optional<QByteArray> file = Deflate::uncompress(head, room);
    QString error;
    std::optional<Snapshot> snapshot = file ? SnapshotFile::fromJson(*file, &error) : std::nullopt;
    if (!snapshot || snapshot->nodes.size() != nodes.size())
        return std::nullopt;
    for (SnapshotNode &node : snapshot->nodes) {
        std::optional<QVector<SnapshotEntry>> entries = PackedNode::unpack(nodes.value(node.id), &room);
        if (!entries)
            return std::nullopt;
        node.entries = std::move(*entries);
    }
    return SnapshotFile::fingerprint(*snapshot) == fingerprint ? snapshot : std::nullopt;
}
