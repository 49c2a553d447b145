// SPDX-License-Identifier: MIT
#pragma once

class QCanBusFrame;

namespace CanOpen {

/*! Bits of a frame without data and without stuff bits, with the three bits between frames (ISO 11898-1). */
constexpr int standardFrameBits = 47;
constexpr int extendedFrameBits = 67;

/*! Bits that \a frame takes on the wire, the three bits between frames included; 0 for what is no frame of a bus.
 *
 *  Standard format 47 + 8n bits, extended format 67 + 8n bits for n data bytes (none in a remote frame), and
 *  ordinary stuffing: one bit for every ten of those that can be stuffed (34 + 8n, 54 + 8n). A standard frame
 *  of eight bytes has 120 bits: 0.48 ms at 250 kbit/s.
 */
int frameBits(const QCanBusFrame &frame);

/*! The same for a frame of \a dataBytes bytes, which a remote frame has none of. */
int frameBits(bool isExtended, int dataBytes);

} // namespace CanOpen
