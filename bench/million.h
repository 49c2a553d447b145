// SPDX-License-Identifier: MIT
#pragma once

#include <trace/core/trace.h>

#include <QByteArray>

#include <algorithm>

constexpr int million = 1000000;
constexpr qint64 frameTime = 125; // us: 8000 frames a second
constexpr qint64 rideBegin = Q_INT64_C(1795336200) * 1000000;

inline TraceFrame frameOf(int i, quint32 id, const char *hex)
{
    const QByteArray bytes = QByteArray::fromHex(hex);
    TraceFrame frame;
    frame.time = rideBegin + i * frameTime;
    frame.id = id;
    frame.length = static_cast<quint8>(bytes.size());
    std::copy(bytes.begin(), bytes.end(), frame.bytes.begin());
    return frame;
}

/*! Mostly process data, with heartbeats, reads, and now and then an emergency. */
inline Trace millionFrames()
{
    Trace trace;
    trace.head = {{QStringLiteral("can0")}, true};
    for (int i = 0; i < million; ++i) {
        const auto node = static_cast<quint32>(1 + i / 8 % 7);
        if (i % 10000 == 9)
            trace.frames.push_back(frameOf(i, 0x080 + node, "1042080000000000"));
        else if (i % 8 == 0)
            trace.frames.push_back(frameOf(i, 0x700 + node, "05"));
        else if (i % 8 == 1)
            trace.frames.push_back(frameOf(i, 0x600 + node, "4064610200000000"));
        else if (i % 8 == 2)
            trace.frames.push_back(frameOf(i, 0x580 + node, "4F64610254000000"));
        else
            trace.frames.push_back(frameOf(i, 0x180 + node, "8499000030010020"));
        if (i % 8 > 2) // values that move
            trace.frames.back().bytes[2] = static_cast<quint8>(i / 64);
    }
    return trace;
}
