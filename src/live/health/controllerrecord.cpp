// SPDX-License-Identifier: MIT
#include "controllerrecord.h"

#include <bus/errorframe.h>

#include <QCanBusFrame>

namespace {

constexpr quint32 countersAreThere = 0x200;

constexpr quint32 busErrorKinds = QCanBusFrame::ProtocolViolationError | QCanBusFrame::TransceiverError
                                  | QCanBusFrame::MissingAcknowledgmentError | QCanBusFrame::BusError;

} // namespace

void ControllerRecord::handle(const LiveFrame &frame)
{
    m_busErrors += (frame.errors & busErrorKinds) != 0 ? 1 : 0;
    const bool isController = (frame.errors & QCanBusFrame::ControllerError) != 0;
    if (frame.payload.size() < ErrorFrame::size)
        return;
    m_overruns
        += isController && (frame.byteAt(ErrorFrame::controllerByte) & ErrorFrame::receiveOverflow) != 0 ? 1
                                                                                                         : 0;
    const quint8 transmit = frame.byteAt(ErrorFrame::transmitCounterByte);
    const quint8 receive = frame.byteAt(ErrorFrame::receiveCounterByte);
    // Older drivers have no bit for it; of a controller with errors one of the two is not 0.
    if ((frame.errors & countersAreThere) == 0 && (!isController || (transmit == 0 && receive == 0)))
        return;
    m_transmitErrors = transmit;
    m_receiveErrors = receive;
}

void ControllerRecord::interrupt()
{
    m_transmitErrors.reset();
    m_receiveErrors.reset();
}
