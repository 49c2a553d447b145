// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/*! State of a battery's finite state automaton (CiA 454): bits 11 to 6 of the device status 6002h. */
constexpr quint8 batteryState(quint32 deviceStatus)
{
    return static_cast<quint8>((deviceStatus >> 6) & 0x3F);
}

/*! The name of all rows of a battery's temperatures 6105h, from the count of their entries, whose bits say
 *  what is measured. Translated in the context "OverviewForm".
 */
QString batteryTemperatureLabel(quint32 count);
