// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/objectkey.h>

#include <QString>
#include <QStringList>

#include <optional>

class QJsonObject;

namespace Simulator {

/*! What a simulated node, or the whole bus, does wrong when it is ordered to. */
enum class FaultKind {
    Silent,           //!< the node sends nothing
    NoBootUp,         //!< no boot-up message
    NoHeartbeat,      //!< no heartbeat
    BabbleHeartbeat,  //!< a heartbeat every intervalMs besides the ordinary ones
    HeartbeatTopBit,  //!< bit 7 of the state byte is set
    HeartbeatLength,  //!< heartbeats have length bytes
    HeartbeatRemote,  //!< heartbeats are remote frames
    Stopped,          //!< the node is in state Stopped after its boot-up
    SdoSilent,        //!< no answer, from the request number from on, or for the object
    SdoDelay,         //!< answers come ms later
    SdoAbort,         //!< transfers are refused with code
    AbortMidTransfer, //!< segmented transfers are aborted with code after afterSegments segments
    WrongToggle, //!< the toggle bit of answers to segments is wrong (of segment number segment; 0: of all)
    WrongMultiplexer, //!< answers tell the next index
    SizeBits,         //!< answers have the given bits and sizes instead of the right ones
    Segmented,        //!< values come in segments, also those that one frame could hold
    WrongWidth,       //!< values have bytes bytes
    DoubleAnswers,    //!< each answer comes count times
    LateAnswers,      //!< the answer to every every-th request comes after the next request
    HalfOpen, //!< request number from is not answered, and all that follow are refused until an abort arrives
    BabbleSdo,     //!< perSecond frames with chance content on the SDO's COB-ID
    ForeignClient, //!< another client's transfer with the node precedes the answer to every every-th request
    DropFrames,    //!< every every-th frame of the node is lost
    Traffic,       //!< PDOs, emergencies and heartbeats that fill percent of the bus
    BusLoss,       //!< the bus is lost after afterFrames frames; for the whole bus only
};

/*! One fault with its parameters; those that its kind does not have mean nothing. */
struct Fault
{
    FaultKind kind = FaultKind::Silent;
    std::optional<CanOpen::ObjectKey> object; // the fault shows with this object only
    qint64 from = 1;
    qint64 ms = 0;
    qint64 code = 0x08000000;
    qint64 every = 1;
    qint64 intervalMs = 10;
    qint64 perSecond = 1000;
    qint64 length = 1;
    qint64 afterSegments = 1;
    qint64 segment = 0;
    qint64 bytes = 1;
    qint64 count = 2;
    qint64 percent = 50;
    qint64 afterFrames = 0;
    qint64 drop
        = 0; // BusLoss: 1 when the devices fall back to the unconnected state, 0 when they look connected

    // SizeBits; -1 keeps what is right
    qint64 expedited = -1;     // bit e of the initiate answer
    qint64 sizeIndicated = -1; // bit s
    qint64 unused = -1;        // its two bits n
    qint64 size = -1;          // the size that a segmented transfer announces
    qint64 lastUnused = -1;    // the three bits n of the last segment
};

/*! A fault by its kind alone, with the parameters' ordinary values. */
Fault makeFault(FaultKind kind);

/*! The name of a kind in vehicle files, for example "sdoDelay". */
QString faultName(FaultKind kind);

/*! Whether the kind can be one of the whole bus. */
bool isBusFault(FaultKind kind);
/*! Whether the kind can be one of a node. */
bool isNodeFault(FaultKind kind);

/*! The names of all kinds, and the parameters of one: for messages and documents. */
QStringList faultNames();
QStringList faultParameters(FaultKind kind);

/*! Reads a fault of a vehicle file; \a errorMessage then tells the key and what is wrong. */
std::optional<Fault> parseFault(const QJsonObject &json, QString *errorMessage);

} // namespace Simulator
