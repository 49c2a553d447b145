// SPDX-License-Identifier: MIT
#include "objectbook.h"

#include <canopen/plaintext.h>
#include <checkup/objectwords.h>
#include <live/values/pdosource.h>

using CanOpen::DataType;
using CanOpen::ObjectKey;

void ObjectBook::tell(quint8 nodeId, const CanOpen::ObjectDictionary &sheet)
{
    m_sheets.insert(nodeId, sheet);
    ++m_revision;
}

void ObjectBook::tell(const SnapshotNode &node)
{
    m_nodes.insert(node.id, node);
    ++m_revision;
}

QVector<DataType> ObjectBook::types(quint8 nodeId, ObjectKey object) const
{
    const auto sheet = m_sheets.constFind(nodeId);
    if (sheet != m_sheets.constEnd()) {
        if (const CanOpen::ObjectEntry *entry = sheet->find(object))
            return {entry->type};
    }
    QVector<DataType> types = PdoSource::typesOf(object, std::nullopt);
    const auto node = m_nodes.constFind(nodeId);
    const SnapshotEntry *entry = node != m_nodes.constEnd() ? node->find(object) : nullptr;
    if (types.isEmpty() && entry != nullptr && entry->type)
        types.append(*entry->type);
    return types;
}

QString ObjectBook::name(quint8 nodeId, ObjectKey object) const
{
    QString name = ObjectWords::name(object);
    if (name != CanOpen::indexText(object.index))
        return name;
    const auto sheet = m_sheets.constFind(nodeId);
    const CanOpen::ObjectEntry *entry = sheet != m_sheets.constEnd() ? sheet->find(object) : nullptr;
    return entry != nullptr ? CanOpen::plainText(entry->name.simplified()) : QString();
}
