// SPDX-License-Identifier: MIT
#include "nodecontext.h"

#include <canopen/pdoparameter.h>

namespace Simulator {

CanOpen::ObjectLookup NodeContext::lookup() const
{
    return [objects = dictionary](CanOpen::ObjectKey key) -> std::optional<quint32> {
        bool isNumber = false;
        const quint32 value = objects->value(key).toUInt(&isNumber);
        return isNumber ? std::optional<quint32>(value) : std::nullopt;
    };
}

QVector<quint32> NodeContext::pdoSettings(quint16 firstParameter) const
{
    constexpr int firstMapping = CanOpen::firstTransmitMapping - CanOpen::firstTransmitPdo;
    static_assert(CanOpen::firstReceiveMapping - CanOpen::firstReceivePdo == firstMapping);
    const int end = firstParameter + firstMapping + CanOpen::mostPdos;
    QVector<quint32> settings;
    const QVector<CanOpen::ObjectKey> keys = dictionary->keys();
    for (const CanOpen::ObjectKey key : keys) {
        if (key.index >= firstParameter && key.index < end)
            settings.append(dictionary->value(key).toUInt());
    }
    return settings;
}

} // namespace Simulator
