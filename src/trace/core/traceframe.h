// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <array>
#include <type_traits>

class QCanBusFrame;

/*! One frame of a trace: a classic CAN frame with its time, as small as it can be kept.
 *
 *  An error frame is one of Linux: its identifier holds the error classes, its eight bytes say more.
 */
struct TraceFrame
{
    static constexpr int mostBytes = 8;
    static constexpr quint32 highestStandardId = 0x7FF;
    static constexpr quint32 highestExtendedId = 0x1FFFFFFF;

    enum Flag : quint8 {
        Extended = 0x01, //!< 29 bits of identifier
        Remote = 0x02,   //!< asks for a frame; carries a length and no bytes
        Error = 0x04,    //!< what a controller says of the bus
        Sent = 0x08,     //!< by the computer that recorded; formats without a direction have none of these
    };

    qint64 time = 0;                       //!< us; see Trace::hasTimeOfDay
    quint32 id = 0;                        //!< of an error frame: its classes
    quint8 channel = 0;                    //!< position in Trace::channels
    quint8 flags = 0;                      //!< Flag
    quint8 length = 0;                     //!< 0 to 8; of a remote frame: that is asked for
    std::array<quint8, mostBytes> bytes{}; //!< those beyond the length are 0

    bool isExtended() const { return (flags & Extended) != 0; }
    bool isRemote() const { return (flags & Remote) != 0; }
    bool isError() const { return (flags & Error) != 0; }
    bool isSent() const { return (flags & Sent) != 0; }
    /*! How many of the bytes count: none of a remote frame. */
    int size() const { return isRemote() ? 0 : length; }

    /*! Whether \a frame is one that a trace can hold: a classic one of no more than 8 bytes. */
    static bool canHold(const QCanBusFrame &frame);
    /*! \a frame must be one that can be held. */
    static TraceFrame of(const QCanBusFrame &frame, qint64 time);
    /*! With its time as time stamp. */
    QCanBusFrame toCanBusFrame() const;
};

static_assert(sizeof(TraceFrame) == 24, "a million of them take 24 MB");
static_assert(std::is_trivially_copyable_v<TraceFrame>, "they are kept by the million");

bool operator==(const TraceFrame &a, const TraceFrame &b);
bool operator!=(const TraceFrame &a, const TraceFrame &b);
