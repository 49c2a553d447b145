// SPDX-License-Identifier: MIT
#pragma once

#include <host/pages/trace/tracedocument.h>

#include <QByteArray>

#include <algorithm>
#include <memory>

constexpr qint64 millisecond = 1'000; // us
constexpr qint64 second = 1'000'000;  // us

/*! 2026-11-22 08:30:00 UTC */
constexpr qint64 morning = Q_INT64_C(1'795'336'200) * second;

/*! A frame with the bytes of \a hex, at \a time (us) after the morning. */
inline TraceFrame heard(qint64 time, quint32 id, const char *hex)
{
    const QByteArray bytes = QByteArray::fromHex(hex);
    TraceFrame frame;
    frame.time = morning + time;
    frame.id = id;
    frame.length = static_cast<quint8>(bytes.size());
    std::copy(bytes.begin(), bytes.end(), frame.bytes.begin());
    return frame;
}

/*! A read of a node's 6164h.2, answered after 0.9 ms: two frames, one line. */
inline std::vector<TraceFrame> readOf6164(qint64 time, quint8 nodeId)
{
    return {heard(time, 0x600U + nodeId, "4064610200000000"),
            heard(time + 900, 0x580U + nodeId, "4F64610254000000")};
}

/*! Lines: heartbeat of node 5, read of node 2, emergency of node 4, heartbeat of node 5. */
inline std::vector<TraceFrame> fourLines()
{
    const std::vector<TraceFrame> read = readOf6164(100 * millisecond, 2);
    return {heard(0, 0x705, "05"), read[0], read[1], heard(196 * millisecond, 0x084, "1042080000000000"),
            heard(second, 0x705, "05")};
}

/*! What is known of node 5: its first transmit PDO on 185h carries \a object, else 2000h sub-index 1 with 8 bits. */
inline TraceDevices mappingOf5(quint32 object = 0x20000108)
{
    SnapshotNode node;
    node.id = 5;
    const auto add = [&node](quint16 index, quint8 subIndex, quint32 value) {
        SnapshotEntry entry;
        entry.key = {index, subIndex};
        entry.value = value;
        node.insert(entry);
    };
    add(0x1800, 1, 0x185);
    add(0x1A00, 0, 1);
    add(0x1A00, 1, object);
    TraceDevices devices;
    devices.snapshot.nodes.append(node);
    return devices;
}

inline std::shared_ptr<TraceDocument> documentOf(const std::vector<TraceFrame> &frames)
{
    auto document = std::make_shared<TraceDocument>();
    document->trace.head.channels = QStringList(QStringLiteral("can0"));
    document->trace.head.hasTimeOfDay = true;
    document->trace.frames = frames;
    document->lines.finish();
    return document;
}
