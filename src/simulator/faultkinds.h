// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/objectkey.h>

#include <QtGlobal>

#include <chrono>
#include <limits>
#include <optional>

/*! What a simulated node, or the whole bus, does wrong when it is ordered to: one struct for each kind, with
 *  what can be set of it.
 */
namespace Simulator::Faults {

using std::chrono::milliseconds;

/*! A fault that can be limited to one object. */
struct OfObject
{
    std::optional<CanOpen::ObjectKey> object; // empty: with every object
};

// ---------------------------------------------------------------------- heartbeats and NMT

/*! The node sends nothing. */
struct Silent
{
    int from = 0; // from its SDO request with this number on; 0: from the start
};

/*! No boot-up message. */
struct NoBootUp
{
};

/*! No heartbeat. */
struct NoHeartbeat
{
};

/*! More heartbeats than the ordinary ones. */
struct BabbleHeartbeat
{
    milliseconds interval{10};
};

/*! Bit 7 of the state byte is set. */
struct HeartbeatTopBit
{
};

/*! Heartbeats of another length. */
struct HeartbeatLength
{
    int length = 1; // bytes, 0 to 8
};

/*! Heartbeats are remote frames. */
struct HeartbeatRemote
{
};

/*! The node is in state Stopped after its boot-up: heartbeats, but no SDO. */
struct Stopped
{
};

/*! The node starts again and again, with a boot-up message and without the transfer that was under way. */
struct Restarts
{
    milliseconds interval{500};
    bool random = false; // at chance moments, the interval apart on average
};

// ---------------------------------------------------------------------- emergencies and PDOs

/*! The node has an error, for a time or for as long as the value of an object is beyond a limit. */
struct Emergency : OfObject
{
    static constexpr qint64 noUpperLimit = std::numeric_limits<qint64>::max();
    static constexpr qint64 noLowerLimit = std::numeric_limits<qint64>::min();

    quint32 code = 0x1000;     // emergency error code
    quint32 errorRegister = 0; // bits that it sets; bit 0 is always set
    qint64 manufacturer = 0;   // five bytes, the first one highest
    milliseconds after{0};     // from when on, of the time that the values go by
    milliseconds length{0};    // for how long; 0: for ever
    qint64 above = noUpperLimit;
    qint64 below = noLowerLimit;
    bool stays = false;          // also when the value is back
    bool preOperational = false; // the node leaves the state Operational with it

    bool hasCondition() const { return above != noUpperLimit || below != noLowerLimit; }
};

/*! Emergencies come from a node that does not exist. */
struct EmergencyOfNobody
{
    int nodeId = 120;
    quint32 code = 0x1000;
    milliseconds interval{1000};
};

/*! The node sends one emergency after the other. */
struct BabbleEmergency
{
    int perSecond = 100;
    quint32 code = 0x1000;
};

/*! Frames with chance content on the COB-ID that is predefined for the node's first PDO. */
struct BabblePdo
{
    int perSecond = 1000;
};

/*! PDOs have another length than their mapping. */
struct PdoLength
{
    int pdo = 0;    // number of the only one that is wrong, from 1 on; 0: all
    int length = 3; // bytes, 0 to 8
};

/*! The mapping object of a PDO tells something else than what is sent. */
struct LyingMapping : OfObject // the object that each entry names; the true ones where empty
{
    int pdo = 1;     // number of the PDO
    int entries = 8; // that sub-index 0 counts
    int bits = 32;   // of each
};

// ---------------------------------------------------------------------- SDO server

/*! No answer. */
struct SdoSilent : OfObject
{
    int from = 1; // from the request with this number on
};

/*! Answers come late. */
struct SdoDelay : OfObject
{
    milliseconds delay{0};
};

/*! Transfers are refused. */
struct SdoAbort : OfObject
{
    quint32 code = 0x08000000;
};

/*! Segmented transfers are refused half way. */
struct AbortMidTransfer : OfObject
{
    quint32 code = 0x08000000;
    int afterSegments = 1;
};

/*! The toggle bit of answers to segments is wrong. */
struct WrongToggle : OfObject
{
    int segment = 0; // number of the only one that is wrong, from 1 on; 0: all
};

/*! Answers tell the next index. */
struct WrongMultiplexer : OfObject
{
};

/*! Answers have these bits and sizes; what is empty stays right. */
struct SizeBits : OfObject
{
    std::optional<int> expedited;     // bit e of the initiate answer
    std::optional<int> sizeIndicated; // its bit s
    std::optional<int> unused;        // its two bits n
    std::optional<quint32> size;      // bytes that a segmented transfer announces
    std::optional<int> lastUnused;    // the three bits n of the last segment
};

/*! Values come in segments, also those that one frame could hold. */
struct Segmented : OfObject
{
    bool announcesSize = true;
    int bytes = 7; // in a segment, 1 to 7
};

/*! Values come in segments of which none is ever the last. */
struct Endless : OfObject
{
    int bytes = 7; // in a segment, 0 to 7
};

/*! Values have another number of bytes. */
struct WrongWidth : OfObject
{
    int bytes = 1; // 0 to 64
};

/*! Block uploads go wrong. */
struct BlockUpload : OfObject
{
    bool wrongCrc = true;
    int lostSegment = 0;   // number of the segment of each block that is not sent; 0: none
    int wrongSequence = 0; // number of the segment of each block that has the next one's number; 0: none
};

/*! Each answer comes several times in a row. */
struct DoubleAnswers : OfObject
{
    int count = 2;
};

/*! Copies of each answer come later, at chance moments and so in any order. */
struct LateCopies : OfObject
{
    int count = 1;
    milliseconds within{300};
};

/*! The answer to every n-th request comes after the next request. */
struct LateAnswers : OfObject
{
    int every = 2; // with every answer late a client never gets one in time
};

/*! A request is not answered, and all that follow are refused until an abort arrives. */
struct HalfOpen : OfObject
{
    int from = 1; // number of the request
};

/*! Frames with chance content on the SDO's COB-ID. */
struct BabbleSdo
{
    int perSecond = 1000;
    bool segments = false; // each looks like a segment of an upload
};

// ---------------------------------------------------------------------- others on the bus

/*! Another client's transfer with the node precedes the answer to every n-th request. */
struct ForeignClient : OfObject
{
    int every = 1;
};

/*! Another client begins segmented uploads from the node and never goes on with them. */
struct AbandoningClient : OfObject
{
    milliseconds interval{55};
};

/*! Every n-th frame of the node is lost. */
struct DropFrames
{
    int every = 2;
};

/*! PDOs, emergencies and heartbeats fill a share of the bus. */
struct Traffic
{
    int percent = 50;
};

/*! Frames of any identifier, format and length that no CANopen service of this vehicle uses. */
struct Flood
{
    int perSecond = 8000;
};

/*! The bus is lost. Of the whole bus only. */
struct BusLoss
{
    int afterFrames = 0;
    bool drop = false; // whether the devices fall back to the unconnected state; else they look connected
};

} // namespace Simulator::Faults
