// SPDX-License-Identifier: MIT
#include "objecttypes.h"

#include <interpreter/readlist.h>

#include <QMap>

namespace {

using CanOpen::DataType;

struct TypedObject
{
    quint16 index;
    quint8 subIndex;
    DataType type;
};

// Communication objects (CiA 301) that the read list does not have.
constexpr TypedObject communicationObjects[] = {
    {0x1003, 0, DataType::Unsigned8},     // number of errors
    {0x1005, 0, DataType::Unsigned32},    // COB-ID SYNC
    {0x1006, 0, DataType::Unsigned32},    // communication cycle period
    {0x1007, 0, DataType::Unsigned32},    // synchronous window length
    {0x1008, 0, DataType::VisibleString}, // device name
    {0x1009, 0, DataType::VisibleString}, // hardware version
    {0x100A, 0, DataType::VisibleString}, // software version
    {0x1014, 0, DataType::Unsigned32},    // COB-ID EMCY
    {0x1015, 0, DataType::Unsigned16},    // inhibit time of EMCY
    {0x1016, 0, DataType::Unsigned8},     // number of consumed heartbeats
    {0x1017, 0, DataType::Unsigned16},    // heartbeat producer time
    {0x1019, 0, DataType::Unsigned8},     // overflow value of the SYNC counter
    {0x1029, 0, DataType::Unsigned8},     // number of error classes
};

struct TypedRange
{
    quint16 first;
    quint16 last;
    quint8 firstSub;
    quint8 lastSub;
    DataType type;
};

// Records and arrays of which every sub-index has its type.
constexpr TypedRange ranges[] = {
    {0x1003, 0x1003, 1, 254, DataType::Unsigned32}, // errors, the newest first
    {0x1016, 0x1016, 1, 127, DataType::Unsigned32}, // consumed heartbeats
    {0x1029, 0x1029, 1, 254, DataType::Unsigned8},  // behaviour for each class of errors
    {0x1400, 0x15FF, 0, 0, DataType::Unsigned8},    // RPDO communication: highest sub-index
    {0x1400, 0x15FF, 1, 1, DataType::Unsigned32},   //   COB-ID
    {0x1400, 0x15FF, 2, 2, DataType::Unsigned8},    //   transmission type
    {0x1400, 0x15FF, 3, 3, DataType::Unsigned16},   //   inhibit time
    {0x1400, 0x15FF, 4, 4, DataType::Unsigned8},    //   reserved
    {0x1400, 0x15FF, 5, 5, DataType::Unsigned16},   //   event timer
    {0x1400, 0x15FF, 6, 6, DataType::Unsigned8},    //   SYNC start value
    {0x1600, 0x17FF, 0, 0, DataType::Unsigned8},    // RPDO mapping: number of objects
    {0x1600, 0x17FF, 1, 64, DataType::Unsigned32},
    {0x1800, 0x19FF, 0, 0, DataType::Unsigned8}, // TPDO communication, as above
    {0x1800, 0x19FF, 1, 1, DataType::Unsigned32},
    {0x1800, 0x19FF, 2, 2, DataType::Unsigned8},
    {0x1800, 0x19FF, 3, 3, DataType::Unsigned16},
    {0x1800, 0x19FF, 4, 4, DataType::Unsigned8},
    {0x1800, 0x19FF, 5, 5, DataType::Unsigned16},
    {0x1800, 0x19FF, 6, 6, DataType::Unsigned8},
    {0x1A00, 0x1BFF, 0, 0, DataType::Unsigned8}, // TPDO mapping
    {0x1A00, 0x1BFF, 1, 64, DataType::Unsigned32},
};

using TypeMap = QMap<CanOpen::ObjectKey, QVector<DataType>>;

TypeMap typesOfSingleObjects()
{
    TypeMap types;
    for (const TypedObject &object : communicationObjects)
        types[{object.index, object.subIndex}].append(object.type);
    for (const ReadGroup group :
         {ReadGroup::General, ReadGroup::Group2, ReadGroup::Group3, ReadGroup::Group4, ReadGroup::Group5}) {
        const QList<ReadEntry> entries = readListGroup(group);
        for (const ReadEntry &entry : entries) {
            QVector<DataType> &known = types[{entry.index, entry.subIndex}];
            const auto type = static_cast<DataType>(entry.dataType);
            if (!known.contains(type))
                known.prepend(type); // the later one is the likelier one
        }
    }
    return types;
}

} // namespace

QVector<DataType> ObjectTypes::known(CanOpen::ObjectKey key)
{
    static const TypeMap types = typesOfSingleObjects();
    const auto single = types.constFind(key);
    if (single != types.cend())
        return *single;
    for (const TypedRange &range : ranges) {
        if (key.index >= range.first && key.index <= range.last && key.subIndex >= range.firstSub
            && key.subIndex <= range.lastSub)
            return {range.type};
    }
    return {};
}

std::optional<DataType> ObjectTypes::matching(const QVector<DataType> &known, const QByteArray &raw)
{
    for (const DataType type : known) {
        if (CanOpen::decodeValue(type, raw))
            return type;
    }
    return std::nullopt;
}

QVariant ObjectTypes::unsignedValue(const QByteArray &raw)
{
    constexpr int longest = 8;
    if (raw.isEmpty() || raw.size() > longest)
        return QVariant();
    qulonglong value = 0;
    for (int i = raw.size() - 1; i >= 0; --i)
        value = value << 8 | static_cast<quint8>(raw.at(i));
    return value;
}
