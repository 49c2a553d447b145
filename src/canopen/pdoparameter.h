// SPDX-License-Identifier: MIT
#pragma once

#include "objectlookup.h"

#include <chrono>
#include <optional>

namespace CanOpen {

constexpr quint16 firstReceivePdo = 0x1400; // communication parameters of 512 PDOs
constexpr quint16 firstReceiveMapping = 0x1600;
constexpr quint16 firstTransmitPdo = 0x1800;
constexpr quint16 firstTransmitMapping = 0x1A00;
constexpr int mostPdos = 512; // of each direction

/*! When a PDO is sent (CiA 301, transmission type). */
enum class PdoTrigger {
    SyncOnChange,  //!< 0: on a SYNC, when something has changed
    Sync,          //!< 1 to 240: on every so many SYNCs
    RemoteRequest, //!< 252 and 253: when it is asked for
    Event,         //!< 254 and 255: when something happens, and when the event timer says so
    Reserved,      //!< 241 to 251
};

/*! Communication parameter of a PDO (CiA 301, 1400h to 15FFh and 1800h to 19FFh). */
struct PdoParameter
{
    quint32 cobId = 0; //!< the identifier alone, of 11 or 29 bits
    bool isExtended = false;
    bool isValid = false;         //!< bit 31 is not set: the PDO exists
    bool isRemoteAllowed = false; //!< bit 30 is not set
    quint8 transmissionType = 255;
    std::chrono::microseconds inhibitTime{0}; //!< least time between two frames, in steps of 100 us
    std::chrono::milliseconds eventTimer{0};  //!< longest time between two frames; 0: none
    quint8 syncStart = 0;                     //!< counter of the SYNC from which on is counted; 0: from any

    PdoTrigger trigger() const;
};

/*! The parameter record \a index. Empty when it is not there, or its COB-ID was not told; what else is missing is as if it
 *  were 0, but for the transmission type, which is 255.
 */
std::optional<PdoParameter> readPdoParameter(const ObjectLookup &lookup, quint16 index);

} // namespace CanOpen
