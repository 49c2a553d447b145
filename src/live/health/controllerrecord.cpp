// SPDX-License-Identifier: MIT
#include "controllerrecord.h"

#include <QCanBusFrame>

namespace {

// As on SocketCAN: byte 1 what is wrong with the controller, bytes 6 and 7 its counters
constexpr int errorFrameSize = 8;
constexpr int controllerByte = 1;
constexpr int transmitCounterByte = 6;
constexpr int receiveCounterByte = 7;
constexpr quint8 receiveOverflow = 0x01;
constexpr quint32 countersAreThere = 0x200;

constexpr quint32 busErrorKinds = QCanBusFrame::ProtocolViolationError | QCanBusFrame::TransceiverError
                                  | QCanBusFrame::MissingAcknowledgmentError | QCanBusFrame::BusError;

} // namespace

void ControllerRecord::handle(const LiveFrame &frame)
{
    m_busErrors += (frame.errors & busErrorKinds) != 0 ? 1 : 0;
    const bool isController = (frame.errors & QCanBusFrame::ControllerError) != 0;
    if (frame.payload.size() < errorFrameSize)
        return;
    m_overruns += isController && (frame.byteAt(controllerByte) & receiveOverflow) != 0 ? 1 : 0;
    const quint8 transmit = frame.byteAt(transmitCounterByte);
    const quint8 receive = frame.byteAt(receiveCounterByte);
    // Older drivers have no bit for it; of a controller with errors one of the two is not 0.
    if ((frame.errors & countersAreThere) == 0 && (!isController || (transmit == 0 && receive == 0)))
        return;
    m_transmitErrors = transmit;
    m_receiveErrors = receive;
}
