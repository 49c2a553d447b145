// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/*! The objects that are spoken of by name (CiA 301, CiA 454). Tables that list objects keep their numbers, each with its
 *  comment.
 */
namespace Object {

constexpr quint16 deviceType = 0x1000;
constexpr quint16 errorRegister = 0x1001;
constexpr quint16 errorField = 0x1003;
constexpr quint16 identity = 0x1018;

constexpr quint16 virtualDevices = 0x6000;
constexpr quint16 controlCommand = 0x6001;
constexpr quint16 deviceStatus = 0x6002;
constexpr quint16 deviceCapability = 0x6003;
constexpr quint16 uniquePartNumber = 0x6005;
constexpr quint16 ratedVoltage = 0x6008; // of virtual devices, or of external ones
constexpr quint16 supportedAlarms = 0x600A;
constexpr quint16 profileVersions = 0x600E;
constexpr quint16 inputVoltageLimit = 0x6020;
constexpr quint16 systemStatus = 0x6080;
constexpr quint16 levType = 0x6081;

constexpr quint16 batteryType = 0x6100;
constexpr quint16 batteryTemperatures = 0x6105;
constexpr quint16 relativeCapacity = 0x6164;  // state of charge
constexpr quint16 firstCellVoltages = 0x6165; // of 16 packs, a sub-index for each cell
constexpr quint16 lastCellVoltages = 0x6174;

constexpr quint16 motorValues = 0x62E8;

constexpr quint16 securityCapability = 0x6310;
constexpr quint16 securityStatus = 0x6311;

} // namespace Object
