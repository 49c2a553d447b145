// SPDX-License-Identifier: MIT
#pragma once

#include "objectdictionary.h"
#include "sdoabort.h"

#include <QByteArray>
#include <QCanBusFrame>
#include <QVector>

namespace CanOpen {

/*! The SDO server of one node (CiA 301): expedited and segmented upload and download, block upload.
 *
 *  Knows no device and no clock: a request goes in, the answers come out.
 */
class SdoServer
{
public:
    /*! \a dictionary stays the caller's and must outlive the server. */
    SdoServer(quint8 nodeId, ObjectDictionary *dictionary);

    /*! Takes a frame from the bus and returns the frames to send, none for what is not addressed to this server.
     *  An 8-byte frame on 600h + node ID is a request; every other length and remote frames are ignored.
     */
    QVector<QCanBusFrame> handleFrame(const QCanBusFrame &frame);

    /*! Drops a transfer that is under way, as a reset of the node does. */
    void reset();
    // the private part is the implementation's
};

} // namespace CanOpen
