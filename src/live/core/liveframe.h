// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QtGlobal>

class QCanBusFrame;

/*! What a frame is by its identifier, in the predefined connection set of CiA 301. */
enum class FrameKind : quint8 { Nmt, Sync, Time, Emergency, Pdo, Sdo, Heartbeat, Other, Error };

constexpr int frameKinds = 9;

/*! Its name for programs: "emergency". */
const char *frameKindName(FrameKind kind);

/*! Of a data or remote frame with 11 bits of identifier. */
FrameKind frameKindOf(quint32 id);
/*! Likewise the node that the identifier names; 0: no single node. */
quint8 frameNodeOf(quint32 id);

/*! Who put a frame on the bus. */
enum class FrameSource : quint8 { Others, Ourselves };

/*! One frame of a bus, taken apart once for all that listens. */
struct LiveFrame
{
    quint32 id = 0;
    FrameKind kind = FrameKind::Other;
    bool isExtended = false;
    bool isRemote = false;
    FrameSource source = FrameSource::Others;
    quint8 nodeId = 0;  //!< by its identifier; 0: of no single node
    int bits = 0;       //!< on the wire, stuff bits included; 0 for an error frame
    qint64 time = 0;    //!< us, see FrameClock
    quint32 errors = 0; //!< of an error frame: QCanBusFrame::FrameErrors
    QByteArray payload;

    static LiveFrame of(const QCanBusFrame &frame, qint64 time, FrameSource source = FrameSource::Others);

    quint8 byteAt(int place) const { return static_cast<quint8>(payload.at(place)); }
    /*! 580h + node ID. */
    bool isSdoAnswer() const { return kind == FrameKind::Sdo && id <= 0x5FF; }
    /*! Whether its sender is the node: what it produces by the predefined connection set. */
    bool isFromNode() const;
};
