// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/objectkey.h>

#include <QByteArray>

#include <cstddef>

/*! One whole SDO transfer of a trace: from the request to the last segment, expedited, in segments or in blocks, as somebody
 *  saw it who only listened.
 */
struct SdoTransfer
{
    enum class Outcome : quint8 {
        Done,            //!< came to its end, and its frames make a whole value
        AbortedByServer, //!< abortCode says why
        AbortedByClient, //!< likewise
        NoAnswer,        //!< the server kept silent; abortCode is the client's, if it sent one
        Broken,          //!< came to its end, but its frames make no whole value; problems says why
        Unfinished,      //!< its client left it there, or the trace ends in it
    };

    enum class Protocol : quint8 { Expedited, Segmented, Block };

    /*! What was wrong on the way; several together. */
    enum Problem : quint16 {
        WrongToggle = 0x01,   //!< the toggle bit did not alternate
        LostSegment = 0x02,   //!< one that was acknowledged is not in the trace
        SizeMismatch = 0x04,  //!< more or fewer bytes than were announced
        WrongChecksum = 0x08, //!< of a block transfer
        ForeignClient = 0x10, //!< another client used the server meanwhile
        Overtaken = 0x20,     //!< another request came before it was at its end
        Repeated = 0x40,      //!< a request or a segment came twice
        Cut = 0x80,           //!< longer than is kept (SdoTransfers::mostData)
    };

    quint32 number = 0; //!< from 1, in the order in which they begin; see SdoTransfers::handle()
    quint8 channel = 0;
    quint8 nodeId = 0; //!< of the server, 1 to 127
    CanOpen::ObjectKey object;
    bool isUpload = true; //!< read; else written
    bool isSent = false;  //!< its request was sent by the computer that recorded
    /*! Of an expedited transfer: it does not say how many of its four bytes count. */
    bool isSizeUnknown = false;
    Protocol protocol = Protocol::Expedited;
    Outcome outcome = Outcome::Unfinished;
    quint32 abortCode = 0;
    quint16 problems = 0; //!< Problem
    int frames = 0;
    qint64 begin = 0;           //!< us, time of the first frame
    qint64 end = 0;             //!< us, time of the last one; may be less than begin where times run backward
    std::size_t firstFrame = 0; //!< positions in the trace; frames of others may stand between them
    std::size_t lastFrame = 0;
    QByteArray data; //!< what came of the value, least significant byte first; see hasValue()

    bool has(Problem problem) const { return (problems & problem) != 0; }
    /*! Whether data is what was read or written, whole. */
    bool hasValue() const { return outcome == Outcome::Done && !has(Cut); }
};
