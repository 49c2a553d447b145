// SPDX-License-Identifier: MIT
#include "traceframe.h"

#include <QByteArray>
#include <QCanBusFrame>

#include <algorithm>

bool TraceFrame::canHold(const QCanBusFrame &frame)
{
    return frame.isValid() && frame.frameType() != QCanBusFrame::InvalidFrame
           && frame.frameType() != QCanBusFrame::UnknownFrame && frame.payload().size() <= mostBytes;
}

TraceFrame TraceFrame::of(const QCanBusFrame &frame, qint64 time)
{
    TraceFrame made;
    made.time = time;
    const QCanBusFrame::FrameType type = frame.frameType();
    if (type == QCanBusFrame::ErrorFrame) {
        made.flags = Error;
        made.id = static_cast<quint32>(frame.error());
    } else {
        made.id = frame.frameId();
        made.flags = static_cast<quint8>((frame.hasExtendedFrameFormat() ? Extended : 0)
                                         | (type == QCanBusFrame::RemoteRequestFrame ? Remote : 0));
    }
    const QByteArray payload = frame.payload();
    made.length = static_cast<quint8>(std::min<int>(payload.size(), mostBytes));
    if (!made.isRemote())
        std::copy_n(payload.constBegin(), made.length, made.bytes.begin());
    return made;
}

QCanBusFrame TraceFrame::toCanBusFrame() const
{
    QCanBusFrame frame;
    if (isError()) {
        frame.setFrameType(QCanBusFrame::ErrorFrame);
        frame.setError(QCanBusFrame::FrameErrors(QFlag(static_cast<int>(id))));
    } else {
        frame.setFrameType(isRemote() ? QCanBusFrame::RemoteRequestFrame : QCanBusFrame::DataFrame);
        frame.setFrameId(id);
        frame.setExtendedFrameFormat(isExtended());
    }
    // A remote frame of QtSerialBus has as many bytes as it asks for.
    frame.setPayload(QByteArray(reinterpret_cast<const char *>(bytes.data()), length));
    frame.setTimeStamp(QCanBusFrame::TimeStamp::fromMicroSeconds(time));
    return frame;
}

bool operator==(const TraceFrame &a, const TraceFrame &b)
{
    return a.time == b.time && a.id == b.id && a.channel == b.channel && a.flags == b.flags
           && a.length == b.length && a.bytes == b.bytes;
}

bool operator!=(const TraceFrame &a, const TraceFrame &b)
{
    return !(a == b);
}
