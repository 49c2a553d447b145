// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

/*! \file
 *  Byte 0 of SDO answers, for those who falsify them; canopen/sdoframe.h has the table.
 */
namespace Simulator {

constexpr quint8 toggleBit = 0x10;
constexpr quint8 sizeIndicatedBit = 0x01; // of the initiate answer
constexpr quint8 expeditedBit = 0x02;
constexpr quint8 unusedBits = 0x0C;
constexpr quint8 segmentLastBit = 0x01; // of a segment
constexpr quint8 segmentUnusedBits = 0x0E;

/*! \a payload must not be empty. */
inline quint8 firstByte(const QByteArray &payload)
{
    return static_cast<quint8>(payload.at(0));
}

inline void setFirstByte(QByteArray &payload, quint8 byte)
{
    payload[0] = static_cast<char>(byte);
}

} // namespace Simulator
