// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

namespace CanOpen {

/*! A classic frame as it stands on the wire. */
struct WireFrame
{
    quint32 id = 0;
    bool isExtended = false; //!< an identifier of 29 bits
    bool isRemote = false;   //!< no data, but a length
    const char *data = nullptr;
    int size = 0; //!< 0 to 8
};

/*! Bits that \a frame takes on the wire, with exactly the stuff bits that its own bits and its checksum need, and the
 *  three bits between frames (ISO 11898-1). At most eight bytes count.
 *
 *  frameBits() estimates the stuffing and costs less.
 */
int wireBits(const WireFrame &frame);

} // namespace CanOpen
