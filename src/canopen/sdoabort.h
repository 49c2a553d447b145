// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace CanOpen {

/*! SDO abort codes of CiA 301. A device may send others; they keep their number. */
enum class SdoAbort : quint32 {
    ToggleBitNotAlternated = 0x05030000,
    ProtocolTimedOut = 0x05040000,
    CommandSpecifierUnknown = 0x05040001,
    InvalidBlockSize = 0x05040002,
    InvalidSequenceNumber = 0x05040003,
    CrcError = 0x05040004,
    OutOfMemory = 0x05040005,
    UnsupportedAccess = 0x06010000,
    WriteOnly = 0x06010001,
    ReadOnly = 0x06010002,
    ObjectDoesNotExist = 0x06020000,
    CannotBeMapped = 0x06040041,
    PdoLengthExceeded = 0x06040042,
    ParameterIncompatible = 0x06040043,
    InternalIncompatibility = 0x06040047,
    HardwareError = 0x06060000,
    LengthMismatch = 0x06070010,
    LengthTooHigh = 0x06070012,
    LengthTooLow = 0x06070013,
    SubIndexDoesNotExist = 0x06090011,
    ValueInvalid = 0x06090030,
    ValueTooHigh = 0x06090031,
    ValueTooLow = 0x06090032,
    MaximumBelowMinimum = 0x06090036,
    ResourceNotAvailable = 0x060A0023,
    GeneralError = 0x08000000,
    CannotBeStored = 0x08000020,
    CannotBeStoredLocalControl = 0x08000021,
    CannotBeStoredDeviceState = 0x08000022,
    NoObjectDictionary = 0x08000023,
    NoData = 0x08000024,
    // Of our own, outside of those that CiA 301 gives a meaning: what a trace that is played back says in the place of a
    // device. That the device has the object or does not have it is not said by them.
    NotRecorded = 0x0800F001,   //!< the trace holds no answer of the device
    RecordedLater = 0x0800F002, //!< it does, but the device gave it later than the present of the trace
};

/*! Whether \a code says that the frames of the transfer did not fit, and nothing about the object. */
bool isAboutTheTransfer(quint32 code);

/*! Whether \a code comes from a trace that holds no answer of the device, or none yet. */
bool isGapOfTrace(quint32 code);

/*! The code in words, for example "The object does not exist (0602 0000h)"; unknown codes by number only. */
QString sdoAbortText(quint32 code);

} // namespace CanOpen
