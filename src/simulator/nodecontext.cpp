// SPDX-License-Identifier: MIT
#include "nodecontext.h"

namespace Simulator {

CanOpen::ObjectLookup NodeContext::lookup() const
{
    return [objects = dictionary](CanOpen::ObjectKey key) -> std::optional<quint32> {
        bool isNumber = false;
        const quint32 value = objects->value(key).toUInt(&isNumber);
        return isNumber ? std::optional<quint32>(value) : std::nullopt;
    };
}

} // namespace Simulator
