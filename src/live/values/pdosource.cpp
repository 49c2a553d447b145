// SPDX-License-Identifier: MIT
#include "pdosource.h"

#include <canopen/objectdictionary.h>
#include <interpreter/objectdescriptions.h>
#include <interpreter/objects.h>
#include <interpreter/units.h>
#include <snapshot/objecttypes.h>
#include <snapshot/snapshot.h>

#include <limits>

using CanOpen::DataType;
using CanOpen::ObjectKey;

namespace {

std::optional<quint32> numberOf(const QVariant &value)
{
    bool isNumber = false;
    const qulonglong number = value.type() == QVariant::ByteArray ? 0 : value.toULongLong(&isNumber);
    if (!isNumber || number > std::numeric_limits<quint32>::max())
        return std::nullopt;
    return static_cast<quint32>(number);
}

std::optional<DataType> usualType(ObjectKey key)
{
    const QVector<DataType> known = ObjectTypes::known(key);
    return known.isEmpty() ? std::nullopt : std::optional(known.first());
}

/*! The overview does not read them, so it has no type for them. */
bool isCellVoltage(ObjectKey key)
{
    return key.index >= Object::firstCellVoltages && key.index <= Object::lastCellVoltages
           && key.subIndex > 0;
}

/*! The overview reads all numbers without their sign. Of temperatures, and of currents of 32 bits, half of what they could
 *  be then is what nothing is: it is below zero.
 */
DataType withSign(ObjectKey key, DataType type)
{
    const ObjectDescription *description = objectDescriptions().find(key.index);
    if (description == nullptr || description->unit == nullptr)
        return type;
    const QLatin1String unit(description->unit->key);
    const bool isTemperature = unit == QLatin1String("C");
    if (type == DataType::Unsigned16 && isTemperature)
        return DataType::Integer16;
    if (type == DataType::Unsigned32 && (isTemperature || unit == QLatin1String("mA")))
        return DataType::Integer32;
    return type;
}

} // namespace

QVector<DataType> PdoSource::typesOf(ObjectKey key, std::optional<DataType> told)
{
    if (told)
        return {*told};
    if (isCellVoltage(key))
        return {DataType::Unsigned16, DataType::Unsigned32};
    QVector<DataType> types = ObjectTypes::known(key);
    for (DataType &type : types)
        type = withSign(key, type);
    return types;
}

PdoSource PdoSource::of(const SnapshotNode &node)
{
    const auto lookup = [&node](ObjectKey key) { return numberOf(node.value(key.index, key.subIndex)); };
    const auto type = [&node](ObjectKey key) -> std::optional<DataType> {
        const SnapshotEntry *entry = node.find(key);
        const std::optional<DataType> known = entry != nullptr && entry->type ? entry->type : usualType(key);
        return known ? std::optional(withSign(key, *known)) : std::nullopt;
    };
    return {node.id, lookup, type};
}

PdoSource PdoSource::of(quint8 nodeId, const CanOpen::ObjectDictionary &dictionary)
{
    const auto lookup = [&dictionary](ObjectKey key) { return numberOf(dictionary.value(key)); };
    const auto type = [&dictionary](ObjectKey key) {
        const CanOpen::ObjectEntry *entry = dictionary.find(key);
        return entry != nullptr ? std::optional(entry->type) : usualType(key);
    };
    return {nodeId, lookup, type};
}
