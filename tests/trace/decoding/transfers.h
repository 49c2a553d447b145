// SPDX-License-Identifier: MIT
#pragma once

#include <trace/transfers/sdotransfer.h>

#include <QByteArray>

/*! A read that has its value. */
inline SdoTransfer readOf(quint8 nodeId, CanOpen::ObjectKey object, const QByteArray &hex,
                          std::size_t position = 0)
{
    SdoTransfer transfer;
    transfer.number = 1;
    transfer.nodeId = nodeId;
    transfer.object = object;
    transfer.outcome = SdoTransfer::Outcome::Done;
    transfer.data = QByteArray::fromHex(hex);
    transfer.frames = 2;
    transfer.begin = 1000;
    transfer.end = 1900;
    transfer.firstFrame = position;
    transfer.lastFrame = position;
    return transfer;
}

inline SdoTransfer writeOf(quint8 nodeId, CanOpen::ObjectKey object, const QByteArray &hex,
                           std::size_t position = 0)
{
    SdoTransfer transfer = readOf(nodeId, object, hex, position);
    transfer.isUpload = false;
    return transfer;
}
