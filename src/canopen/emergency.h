// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <array>
#include <optional>

class QCanBusFrame;

namespace CanOpen {

/*! An emergency (CiA 301): bytes 0 and 1 error code, byte 2 error register, bytes 3 to 7 the manufacturer's. */
struct Emergency
{
    quint16 errorCode = 0; //!< 0000h: an error is gone; the register tells what is left
    quint8 errorRegister = 0;
    std::array<quint8, 5> manufacturer{};

    /*! Error code 00xxh: no new error, but one less or none. */
    bool isReset() const { return errorCode <= 0x00FF; }

    /*! As the error history keeps it (1003h): bits 0 to 15 error code, bits 16 to 31 two of the manufacturer's bytes. */
    quint32 historyEntry() const;
};

/*! The emergency under \a cobId, a value as 1014h has it; its bit 31 is not looked at. */
QCanBusFrame makeEmergencyFrame(quint32 cobId, const Emergency &emergency);

/*! The emergency in \a frame, whatever its identifier. Empty unless it is a data frame of eight bytes. */
std::optional<Emergency> parseEmergency(const QCanBusFrame &frame);

/*! An emergency error code in words: "device temperature". Never empty. */
QString emergencyText(quint16 errorCode);

/*! A bit of the error register (1001h), 0 to 7, in words: "temperature". */
QString errorRegisterBitText(int bit);

/*! All bits that are set, in words: "generic error, temperature". Empty for 0. */
QString errorRegisterText(quint8 errorRegister);

} // namespace CanOpen
