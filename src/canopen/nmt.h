// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <optional>

class QCanBusFrame;

namespace CanOpen {

/*! States of the NMT state machine with their heartbeat codes (CiA 301). */
enum class NmtState : quint8 { BootUp = 0x00, Stopped = 0x04, Operational = 0x05, PreOperational = 0x7F };

/*! Command specifiers of the NMT message (CiA 301). */
enum class NmtCommand : quint8 {
    Start = 0x01,
    Stop = 0x02,
    EnterPreOperational = 0x80,
    ResetNode = 0x81,
    ResetCommunication = 0x82,
};

/*! Bytes of an NMT message. */
constexpr int nmtFrameSize = 2;

struct NmtMessage
{
    NmtCommand command;
    quint8 nodeId; // 0: all nodes
};

/*! COB-ID 000h: byte 0 command specifier, byte 1 node ID. */
QCanBusFrame makeNmtFrame(NmtMessage message);

/*! The command in \a frame; empty when it is no well-formed NMT message. */
std::optional<NmtMessage> parseNmtFrame(const QCanBusFrame &frame);

} // namespace CanOpen
