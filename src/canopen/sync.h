// SPDX-License-Identifier: MIT
#pragma once

#include "objectlookup.h"

#include <chrono>

class QCanBusFrame;

namespace CanOpen {

/*! What a device has to do with the SYNC (CiA 301: 1005h, 1006h, 1019h). */
struct SyncParameter
{
    quint32 cobId = 0x080; //!< the identifier alone; 80h unless 1005h says otherwise
    bool isExtended = false;
    bool isProducer = false;             //!< bit 30 of 1005h
    std::chrono::microseconds period{0}; //!< 1006h; 0: none is sent
    quint8 highestCounter = 0;           //!< 1019h, 2 to 240; 0: the SYNC has no counter
};

constexpr bool operator==(const SyncParameter &a, const SyncParameter &b)
{
    return a.cobId == b.cobId && a.isExtended == b.isExtended && a.isProducer == b.isProducer
           && a.period == b.period && a.highestCounter == b.highestCounter;
}

SyncParameter readSyncParameter(const ObjectLookup &lookup);

/*! The SYNC with \a counter, or without one (0). */
QCanBusFrame makeSyncFrame(const SyncParameter &parameter, quint8 counter);

/*! Whether \a frame is the SYNC of these parameters: a data frame with no byte, or one. */
bool isSyncFrame(const SyncParameter &parameter, const QCanBusFrame &frame);

/*! The counter of a SYNC; 0 without one. */
quint8 syncCounterOf(const QCanBusFrame &frame);

} // namespace CanOpen
