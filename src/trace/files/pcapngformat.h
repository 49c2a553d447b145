// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/*! Numbers of a pcapng file. */
namespace PcapNg {

constexpr quint32 byteOrderMagic = 0x1A2B3C4D;

namespace BlockType {
constexpr quint32 section = 0x0A0D0D0A;
constexpr quint32 interface = 1;
constexpr quint32 packet = 6;
} // namespace BlockType

namespace OptionCode {
constexpr quint16 name = 2;
constexpr quint16 flags = 2; //!< of a packet
constexpr quint16 timeResolution = 9;
constexpr quint16 timeOffset = 14;
} // namespace OptionCode

// Of a packet's flags
constexpr quint32 directionMask = 3;
constexpr quint32 inbound = 1;
constexpr quint32 outbound = 2;

} // namespace PcapNg
