// SPDX-License-Identifier: MIT
// Snapshots: what is read is written so that it can be read again, with the same bytes from then on.
#include "bytereader.h"

#include <snapshot/deviceidentity.h>
#include <snapshot/snapshotexchange.h>
#include <snapshot/snapshotfile.h>
#include <store/nodestore.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    QString error;
    const std::optional<Snapshot> snapshot = SnapshotFile::fromJson(
        QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(size)), &error);
    require(snapshot.has_value() == error.isEmpty());
    if (!snapshot)
        return 0;

    const QByteArray text = SnapshotFile::toJson(*snapshot);
    const std::optional<Snapshot> again = SnapshotFile::fromJson(text, &error);
    require(again.has_value());
    require(SnapshotFile::toJson(*again) == text);

    NodeStore store;
    SnapshotExchange::fillStore(*snapshot, store);
    const Snapshot imported = SnapshotExchange::fromStore(store);
    require(imported.nodes.size() == snapshot->nodes.size());
    for (const SnapshotNode &node : snapshot->nodes)
        DeviceIdentity::of(node).toKey();
    return 0;
}
