// SPDX-License-Identifier: MIT
#include "framebits.h"

#include <QCanBusFrame>

namespace CanOpen {

namespace {

constexpr int standardStuffable = 34; // start of frame to checksum
constexpr int extendedStuffable = 54;
constexpr int bitsPerStuffBit = 10; // ordinary data; the worst case is 4

} // namespace

int frameBits(const QCanBusFrame &frame)
{
    const QCanBusFrame::FrameType type = frame.frameType();
    if (type != QCanBusFrame::DataFrame && type != QCanBusFrame::RemoteRequestFrame)
        return 0;
    return frameBits(frame.hasExtendedFrameFormat(),
                     type == QCanBusFrame::DataFrame ? frame.payload().size() : 0);
}

int frameBits(bool isExtended, int dataBytes)
{
    const int dataBits = 8 * dataBytes;
    const int stuffable = (isExtended ? extendedStuffable : standardStuffable) + dataBits;
    return (isExtended ? extendedFrameBits : standardFrameBits) + dataBits + stuffable / bitsPerStuffBit;
}

} // namespace CanOpen
