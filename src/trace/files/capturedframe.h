// SPDX-License-Identifier: MIT
#pragma once

#include <trace/core/traceframe.h>

/*! Frames of Linux in packets of a capture: the link types CAN_SOCKETCAN, LINUX_SLL and LINUX_SLL2. */
namespace CapturedFrame {

constexpr quint32 linkTypeCan = 227;
constexpr quint32 linkTypeCooked = 113;
constexpr quint32 linkTypeCooked2 = 276;

bool isCan(quint32 linkType);

enum class What : quint8 {
    Frame,
    FlexibleDataRate, //!< or larger
    OtherProtocol,    //!< on another kind of interface
    Broken
};

/*! A packet: its frame, and the interface that LINUX_SLL2 tells. */
struct Packet
{
    What what = What::Broken;
    TraceFrame frame;      //!< without a time
    quint32 interface = 0; //!< 0: not told
};

Packet read(quint32 linkType, const uchar *bytes, size_t size);

/*! How many bytes a frame takes as CAN_SOCKETCAN. */
constexpr size_t size = 16;
/*! Writes it as CAN_SOCKETCAN. */
void write(const TraceFrame &frame, uchar *bytes);

} // namespace CapturedFrame
