// SPDX-License-Identifier: MIT
#include "tracebook.h"

#include <live/values/pdosource.h>

void TraceBook::tell(quint8 nodeId, const CanOpen::ObjectDictionary &sheet)
{
    m_objects.tell(nodeId, sheet);
    m_pdos.tell(nodeId, PdoSource::of(nodeId, sheet).lookup);
}

void TraceBook::tell(const TraceDevices &devices)
{
    tell(devices.snapshot);
    for (auto sheet = devices.sheets.cbegin(); sheet != devices.sheets.cend(); ++sheet)
        tell(sheet.key(), sheet.value());
}

void TraceBook::tell(const Snapshot &snapshot)
{
    for (const SnapshotNode &node : snapshot.nodes) {
        m_objects.tell(node);
        m_pdos.tell(node.id, PdoSource::of(node).lookup);
    }
}
