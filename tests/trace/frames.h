// SPDX-License-Identifier: MIT
#pragma once

#include <trace/core/traceframe.h>

#include <QByteArray>

#include <algorithm>

constexpr qint64 millisecond = 1000; // us
constexpr qint64 second = 1'000'000;

/*! A frame with the bytes of \a hex, at \a time (us). */
inline TraceFrame frameAt(qint64 time, quint32 id, const QByteArray &hex, quint8 flags = 0)
{
    const QByteArray bytes = QByteArray::fromHex(hex);
    TraceFrame frame;
    frame.time = time;
    frame.id = id;
    frame.flags = flags;
    frame.length = static_cast<quint8>(std::min<int>(bytes.size(), TraceFrame::mostBytes));
    std::copy_n(bytes.begin(), frame.length, frame.bytes.begin());
    return frame;
}
