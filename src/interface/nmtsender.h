// SPDX-License-Identifier: MIT
#pragma once

#include <QMetaType>

/*! The NMT states of a CANopen device as the host reports them (CiA 301, NMT state machine).
 *
 *  The numbers are part of the contract between host and plug-in; they are not the codes of the
 *  heartbeat message.
 */
class NmtSender
{
public:
    enum NmtState {
        Unknown = 0,        //!< nothing heard yet, or the heartbeat is lost
        BootUp = 1,         //!< boot-up message (heartbeat code 00h)
        PreOperational = 2, //!< heartbeat code 7Fh
        Operational = 3,    //!< heartbeat code 05h
        Stopped = 4         //!< heartbeat code 04h; the node answers no SDO in this state
    };
};

/*! Known to the meta-type system, so that a state can travel in queued and text-based connections.
 *  The host calls `qRegisterMetaType<NmtSender::NmtState>("NmtSender::NmtState")` before it loads plug-ins.
 */
Q_DECLARE_METATYPE(NmtSender::NmtState)
