// SPDX-License-Identifier: MIT
#include "readlisttypes.h"

#include <interpreter/readlist.h>

#include <QMap>

namespace {

QMap<CanOpen::ObjectKey, CanOpen::DataType> typesOfReadList()
{
    QMap<CanOpen::ObjectKey, CanOpen::DataType> types;
    for (const ReadGroup group :
         {ReadGroup::General, ReadGroup::Group2, ReadGroup::Group3, ReadGroup::Group4, ReadGroup::Group5}) {
        const QList<ReadEntry> entries = readListGroup(group);
        for (const ReadEntry &entry : entries)
            types.insert({entry.index, entry.subIndex}, static_cast<CanOpen::DataType>(entry.dataType));
    }
    return types;
}

} // namespace

std::optional<CanOpen::DataType> readListType(CanOpen::ObjectKey key)
{
    static const QMap<CanOpen::ObjectKey, CanOpen::DataType> types = typesOfReadList();
    const auto type = types.constFind(key);
    return type != types.cend() ? std::optional<CanOpen::DataType>(*type) : std::nullopt;
}
