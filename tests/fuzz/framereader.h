// SPDX-License-Identifier: MIT
#pragma once

#include "bytereader.h"

#include <QCanBusFrame>

/*! A frame of any kind with identifier \a id, from the bytes of the fuzzer. */
inline QCanBusFrame frameFrom(ByteReader &reader, quint32 id)
{
    const quint8 shape = reader.byte();
    QCanBusFrame frame(id, reader.bytes(shape & 0x0F));
    if ((shape & 0x40) != 0)
        frame.setFrameType(QCanBusFrame::RemoteRequestFrame);
    if ((shape & 0x20) != 0)
        frame.setExtendedFrameFormat(true);
    return frame;
}
