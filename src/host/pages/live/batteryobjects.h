// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/objectkey.h>
#include <interpreter/objects.h>

/*! The objects of batteries (CiA 454) that the page "Live" knows. */
namespace BatteryObjects {

// All that only batteries have
constexpr quint16 first = 0x6100;
constexpr quint16 last = 0x61FF;

/*! What tells of a battery beside its cells. */
constexpr CanOpen::ObjectKey others[] = {
    {Object::relativeCapacity, 2},    // state of charge
    {0x603E, 1},                      // current
    {0x6040, 1},                      // voltage
    {Object::batteryTemperatures, 1}, // of the pack
    {0x6042, 1},                      // temperature of the electronics
};

/*! Whether only a battery has the object. */
constexpr bool areOfBattery(quint16 index)
{
    return index >= first && index <= last;
}

/*! Whether the object has the voltages of the cells of a pack. */
constexpr bool areCells(quint16 index)
{
    return index >= Object::firstCellVoltages && index <= Object::lastCellVoltages;
}

} // namespace BatteryObjects
