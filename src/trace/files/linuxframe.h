// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/*! How Linux tells what a frame is: flags in its identifier, and the classes of an error frame in their place. */
namespace LinuxFrame {

constexpr quint32 extendedFlag = 0x80000000;
constexpr quint32 remoteFlag = 0x40000000;
constexpr quint32 errorFlag = 0x20000000;

constexpr quint32 protocolError = 0x08;
constexpr quint32 busError = 0x80; //!< of which no more is known

} // namespace LinuxFrame
