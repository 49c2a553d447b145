// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

class QObject;

/*! Hands out the objects through which a plug-in hears the bus.
 *
 *  Implemented and owned by the host, like every object that it returns; all of them live as long as the
 *  host interface.
 */
class CanReceiverHub
{
public:
    virtual ~CanReceiverHub() = default;

    /*! The receiver of the frames with \a cobId: it emits `received(quint16)` with the COB-ID for each of
     *  them.
     *
     *  At least the error control messages 701h to 77Fh (heartbeats of nodes 1 to 127, CiA 301) have a
     *  receiver; null for any COB-ID that has none.
     */
    virtual QObject *getReceiver(quint16 cobId) = 0;

    /*! The source of a node's NMT states: it emits `newNmtState(quint8, NmtSender::NmtState)` when the state
     *  of node \a nodeId (1 to 127) changes, and once soon after this call when the state is known already; null for
     *  any other number.
     */
    virtual QObject *getNmtStateSource(quint8 nodeId) = 0;
};
