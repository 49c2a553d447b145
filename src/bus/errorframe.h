// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/*! The bytes of an error frame, as on SocketCAN. */
namespace ErrorFrame {

constexpr int size = 8;
constexpr int controllerByte = 1; //!< what is wrong with the controller
constexpr int transmitCounterByte = 6;
constexpr int receiveCounterByte = 7;

constexpr quint8 receiveOverflow = 0x01; //!< of the controller's byte

} // namespace ErrorFrame
