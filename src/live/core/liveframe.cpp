// SPDX-License-Identifier: MIT
#include "liveframe.h"

#include <canopen/cobid.h>
#include <canopen/framebits.h>
#include <canopen/wirebits.h>

#include <QCanBusFrame>

namespace {

constexpr int functionShift = 7;
constexpr quint32 nodeMask = 0x7F;
constexpr quint32 timeCobId = 0x100;
constexpr int classicBytes = 8;

// By function code: identifier bits 10 to 7
struct Function
{
    FrameKind kind;
    bool isOfNode;   // its low bits are a node ID
    bool isProduced; // by that node
};

constexpr Function functions[] = {
    {FrameKind::Nmt, false, false},     // 000h
    {FrameKind::Emergency, true, true}, // 080h; SYNC
    {FrameKind::Time, false, false},    // 100h
    {FrameKind::Pdo, true, true},       // 180h: transmit PDO 1
    {FrameKind::Pdo, true, false},      // 200h: receive PDO 1
    {FrameKind::Pdo, true, true},       // 280h
    {FrameKind::Pdo, true, false},      // 300h
    {FrameKind::Pdo, true, true},       // 380h
    {FrameKind::Pdo, true, false},      // 400h
    {FrameKind::Pdo, true, true},       // 480h
    {FrameKind::Pdo, true, false},      // 500h
    {FrameKind::Sdo, true, true},       // 580h: answers
    {FrameKind::Sdo, true, false},      // 600h: requests
    {FrameKind::Other, false, false},   // 680h
    {FrameKind::Heartbeat, true, true}, // 700h
    {FrameKind::Other, false, false},   // 780h
};
static_assert(sizeof(functions) / sizeof(functions[0]) == 16, "one row per function code");

constexpr const char *kindNames[]
    = {"nmt", "sync", "time", "emergency", "pdo", "sdo", "heartbeat", "other", "error"};
static_assert(sizeof(kindNames) / sizeof(kindNames[0]) == frameKinds, "one name per kind");

const Function &functionOf(quint32 id)
{
    return functions[id >> functionShift & 0xF];
}

int bitsOf(const LiveFrame &frame, const QCanBusFrame &original)
{
    if (frame.payload.size() > classicBytes) // of another format, whose bits have two lengths
        return CanOpen::frameBits(original);
    CanOpen::WireFrame wire;
    wire.id = frame.id;
    wire.isExtended = frame.isExtended;
    wire.isRemote = frame.isRemote;
    wire.data = frame.payload.constData();
    wire.size = frame.payload.size();
    return CanOpen::wireBits(wire);
}

} // namespace

const char *frameKindName(FrameKind kind)
{
    return kindNames[static_cast<int>(kind)];
}

FrameKind frameKindOf(quint32 id)
{
    const FrameKind kind = functionOf(id).kind;
    if ((id & nodeMask) != 0)
        return functionOf(id).isOfNode ? kind : FrameKind::Other;
    if (id == CanOpen::syncCobId)
        return FrameKind::Sync;
    return id == CanOpen::nmtCommandCobId || id == timeCobId ? kind : FrameKind::Other;
}

quint8 frameNodeOf(quint32 id)
{
    const bool isOfNode = functionOf(id).isOfNode && id != CanOpen::syncCobId;
    return isOfNode ? static_cast<quint8>(id & nodeMask) : quint8(0);
}

LiveFrame LiveFrame::of(const QCanBusFrame &frame, qint64 time, FrameSource source)
{
    LiveFrame live;
    live.time = time;
    live.source = source;
    live.payload = frame.payload();
    const QCanBusFrame::FrameType type = frame.frameType();
    if (type != QCanBusFrame::DataFrame && type != QCanBusFrame::RemoteRequestFrame) {
        live.kind = FrameKind::Error;
        live.errors = type == QCanBusFrame::ErrorFrame ? static_cast<quint32>(frame.error()) : 0;
        return live;
    }
    live.id = frame.frameId();
    live.isExtended = frame.hasExtendedFrameFormat();
    live.isRemote = type == QCanBusFrame::RemoteRequestFrame;
    live.bits = bitsOf(live, frame);
    if (live.isExtended)
        return live;
    live.kind = frameKindOf(live.id);
    live.nodeId = frameNodeOf(live.id);
    return live;
}

bool LiveFrame::isFromNode() const
{
    return nodeId != 0 && !isRemote && functionOf(id).isProduced;
}
