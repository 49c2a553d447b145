// SPDX-License-Identifier: MIT
#include "lyingmapping.h"

#include <canopen/pdomapping.h>
#include <canopen/pdoparameter.h>

namespace Simulator {

namespace {

using CanOpen::ObjectEntry;
using CanOpen::ObjectKey;
using CanOpen::PdoMappingEntry;

ObjectEntry entryOf(CanOpen::DataType type, quint32 value)
{
    ObjectEntry entry;
    entry.type = type;
    entry.data = CanOpen::encodeValue(type, value).value_or(QByteArray());
    return entry;
}

/*! The object that the lie names, else the one that is truly there, else the first of the PDO. */
ObjectKey mappedObject(const Faults::LyingMapping &fault, const CanOpen::ObjectDictionary &dictionary,
                       ObjectKey key)
{
    if (fault.object)
        return *fault.object;
    const ObjectKey first{key.index, 1};
    const QVariant value = dictionary.value(dictionary.find(key) != nullptr ? key : first);
    return PdoMappingEntry::fromValue(value.toUInt()).object;
}

} // namespace

std::optional<ObjectEntry> lieAbout(const FaultList &faults, const CanOpen::ObjectDictionary &dictionary,
                                    ObjectKey key)
{
    for (const Fault &fault : faults.all()) {
        const auto *lie = std::get_if<Faults::LyingMapping>(&fault);
        if (lie == nullptr || key.index != CanOpen::firstTransmitMapping + lie->pdo - 1)
            continue;
        if (key.subIndex == 0)
            return entryOf(CanOpen::DataType::Unsigned8, static_cast<quint32>(lie->entries));
        if (key.subIndex > lie->entries)
            return std::nullopt;
        const PdoMappingEntry entry{mappedObject(*lie, dictionary, key), static_cast<quint8>(lie->bits)};
        return entryOf(CanOpen::DataType::Unsigned32, entry.toValue());
    }
    return std::nullopt;
}

} // namespace Simulator
