// SPDX-License-Identifier: MIT
#include "capturedframe.h"

#include "linuxframe.h"

#include <QtEndian>

#include <algorithm>

namespace {

/*  A frame, CAN_SOCKETCAN:                            LINUX_SLL before it, 16 bytes:   LINUX_SLL2, 20 bytes:
 *    0  identifier and flags, highest byte first        0  kind of packet (2)            0  protocol (2)
 *    4  length                                          2  kind of interface (2)         4  interface (4)
 *    5  flags of CAN FD                                 4  address                       8  kind of interface (2)
 *    8  bytes                                          14  protocol (2)                 10  kind of packet (1)
 */
constexpr size_t headSize = 8;
constexpr size_t lengthPlace = 4;
constexpr size_t flexibleFlagsPlace = 5;
constexpr quint8 flexibleFlag = 0x04;

constexpr size_t cookedSize = 16;
constexpr size_t cookedProtocolPlace = 14;
constexpr size_t cooked2Size = 20;
constexpr size_t cooked2InterfacePlace = 4;
constexpr size_t cooked2KindPlace = 10;

constexpr quint16 protocolCan = 0x000C;
constexpr quint16 protocolCanFd = 0x000D;
constexpr quint16 protocolCanXl = 0x000E;
constexpr quint16 outgoingPacket = 4; // kind of packet

quint8 flagsOfId(quint32 id)
{
    if ((id & LinuxFrame::errorFlag) != 0)
        return TraceFrame::Error;
    return static_cast<quint8>(((id & LinuxFrame::extendedFlag) != 0 ? TraceFrame::Extended : 0)
                               | ((id & LinuxFrame::remoteFlag) != 0 ? TraceFrame::Remote : 0));
}

CapturedFrame::Packet readFrame(const uchar *bytes, size_t size)
{
    using CapturedFrame::What;
    CapturedFrame::Packet packet;
    if (size < headSize)
        return packet;
    const quint8 length = bytes[lengthPlace];
    if (length > TraceFrame::mostBytes || (bytes[flexibleFlagsPlace] & flexibleFlag) != 0
        || size > CapturedFrame::size) {
        packet.what = What::FlexibleDataRate;
        return packet;
    }
    const auto id = qFromBigEndian<quint32>(bytes);
    TraceFrame &frame = packet.frame;
    frame.flags = flagsOfId(id);
    frame.id = id & TraceFrame::highestExtendedId;
    frame.length = length;
    if (!frame.isExtended() && !frame.isError() && frame.id > TraceFrame::highestStandardId)
        return packet;
    if (static_cast<size_t>(frame.size()) > size - headSize)
        return packet;
    std::copy_n(bytes + headSize, frame.size(), frame.bytes.begin());
    packet.what = What::Frame;
    return packet;
}

CapturedFrame::Packet readCooked(const uchar *bytes, size_t size, quint16 protocol, bool isSent)
{
    CapturedFrame::Packet packet;
    if (protocol == protocolCan)
        packet = readFrame(bytes, size);
    else if (protocol == protocolCanFd || protocol == protocolCanXl)
        packet.what = CapturedFrame::What::FlexibleDataRate;
    else
        packet.what = CapturedFrame::What::OtherProtocol;
    if (isSent)
        packet.frame.flags |= TraceFrame::Sent;
    return packet;
}

} // namespace

bool CapturedFrame::isCan(quint32 linkType)
{
    return linkType == linkTypeCan || linkType == linkTypeCooked || linkType == linkTypeCooked2;
}

CapturedFrame::Packet CapturedFrame::read(quint32 linkType, const uchar *bytes, size_t size)
{
    if (linkType == linkTypeCan)
        return readFrame(bytes, size);
    if (linkType == linkTypeCooked && size >= cookedSize) {
        return readCooked(bytes + cookedSize, size - cookedSize,
                          qFromBigEndian<quint16>(bytes + cookedProtocolPlace),
                          qFromBigEndian<quint16>(bytes) == outgoingPacket);
    }
    if (linkType == linkTypeCooked2 && size >= cooked2Size) {
        Packet packet = readCooked(bytes + cooked2Size, size - cooked2Size, qFromBigEndian<quint16>(bytes),
                                   bytes[cooked2KindPlace] == outgoingPacket);
        packet.interface = qFromBigEndian<quint32>(bytes + cooked2InterfacePlace);
        return packet;
    }
    return {};
}

void CapturedFrame::write(const TraceFrame &frame, uchar *bytes)
{
    const quint32 flags = frame.isError() ? LinuxFrame::errorFlag
                                          : (frame.isExtended() ? LinuxFrame::extendedFlag : 0)
                                                | (frame.isRemote() ? LinuxFrame::remoteFlag : 0);
    std::fill_n(bytes, size, uchar(0));
    qToBigEndian(frame.id | flags, bytes);
    bytes[lengthPlace] = frame.length;
    std::copy_n(frame.bytes.begin(), frame.size(), bytes + headSize);
}
