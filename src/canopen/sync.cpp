// SPDX-License-Identifier: MIT
#include "sync.h"

#include "cobid.h"

#include <QCanBusFrame>

namespace CanOpen {

namespace {

constexpr ObjectKey cobIdObject{0x1005, 0};
constexpr ObjectKey periodObject{0x1006, 0};
constexpr ObjectKey counterObject{0x1019, 0};

constexpr quint32 lowestOverflow = 2;
constexpr quint32 highestOverflow = 240;

} // namespace

SyncParameter readSyncParameter(const ObjectLookup &lookup)
{
    SyncParameter parameter;
    if (const std::optional<quint32> cobId = lookup(cobIdObject)) {
        parameter.cobId = identifierOf(*cobId);
        parameter.isExtended = isExtendedCobId(*cobId);
        parameter.isProducer = (*cobId & cobIdBit30) != 0;
    }
    parameter.period = std::chrono::microseconds(lookup(periodObject).value_or(0));
    const quint32 overflow = lookup(counterObject).value_or(0);
    if (overflow >= lowestOverflow && overflow <= highestOverflow)
        parameter.highestCounter = static_cast<quint8>(overflow);
    return parameter;
}

QCanBusFrame makeSyncFrame(const SyncParameter &parameter, quint8 counter)
{
    QCanBusFrame frame(parameter.cobId,
                       counter == 0 ? QByteArray() : QByteArray(1, static_cast<char>(counter)));
    frame.setExtendedFrameFormat(parameter.isExtended);
    return frame;
}

bool isSyncFrame(const SyncParameter &parameter, const QCanBusFrame &frame)
{
    return frame.frameType() == QCanBusFrame::DataFrame && frame.frameId() == parameter.cobId
           && frame.hasExtendedFrameFormat() == parameter.isExtended && frame.payload().size() <= 1;
}

quint8 syncCounterOf(const QCanBusFrame &frame)
{
    const QByteArray payload = frame.payload();
    return payload.isEmpty() ? quint8(0) : static_cast<quint8>(payload.at(0));
}

} // namespace CanOpen
