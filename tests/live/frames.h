// SPDX-License-Identifier: MIT
#pragma once

#include <live/core/liveframe.h>

#include <QByteArray>
#include <QCanBusFrame>

constexpr qint64 millisecond = 1000; // us
constexpr qint64 second = 1'000'000;

/*! A frame with the bytes of \a hex, at \a time (us). */
inline LiveFrame frameAt(qint64 time, quint32 id, const char *hex, FrameSource source = FrameSource::Others)
{
    return LiveFrame::of(QCanBusFrame(id, QByteArray::fromHex(hex)), time, source);
}

/*! An error frame as SocketCAN gives it. */
inline LiveFrame errorAt(qint64 time, int errors, const char *hex)
{
    QCanBusFrame frame(QCanBusFrame::ErrorFrame);
    frame.setError(QCanBusFrame::FrameErrors(errors));
    frame.setPayload(QByteArray::fromHex(hex));
    return LiveFrame::of(frame, time);
}
