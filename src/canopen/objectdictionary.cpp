// SPDX-License-Identifier: MIT
#include "objectdictionary.h"

namespace CanOpen {

void ObjectDictionary::insert(ObjectKey key, const ObjectEntry &entry)
{
    m_entries.insert(key, entry);
}

void ObjectDictionary::remove(ObjectKey key)
{
    m_entries.remove(key);
}

const ObjectEntry *ObjectDictionary::find(ObjectKey key) const
{
    const auto entry = m_entries.constFind(key);
    return entry != m_entries.constEnd() ? &entry.value() : nullptr;
}

bool ObjectDictionary::containsIndex(quint16 index) const
{
    const auto entry = m_entries.lowerBound(ObjectKey{index, 0});
    return entry != m_entries.constEnd() && entry.key().index == index;
}

QVector<ObjectKey> ObjectDictionary::keys() const
{
    QVector<ObjectKey> keys;
    keys.reserve(m_entries.size());
    for (auto entry = m_entries.constBegin(); entry != m_entries.constEnd(); ++entry)
        keys.append(entry.key());
    return keys;
}

QVariant ObjectDictionary::value(ObjectKey key) const
{
    const ObjectEntry *entry = find(key);
    if (entry == nullptr)
        return QVariant();
    return decodeValue(entry->type, entry->data).value_or(QVariant());
}

bool ObjectDictionary::setValue(ObjectKey key, const QVariant &value)
{
    const auto entry = m_entries.find(key);
    if (entry == m_entries.end())
        return false;
    const std::optional<QByteArray> data = encodeValue(entry->type, value);
    if (!data)
        return false;
    entry->data = *data;
    return true;
}

bool ObjectDictionary::setData(ObjectKey key, const QByteArray &data)
{
    const auto entry = m_entries.find(key);
    if (entry == m_entries.end())
        return false;
    entry->data = data;
    return true;
}

} // namespace CanOpen
