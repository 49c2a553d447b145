// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/cobid.h>
#include <canopen/objectkey.h>
#include <trace/core/traceframe.h>

#include <QByteArray>
#include <QHash>

#include <bitset>
#include <vector>

struct SdoTransfer;

/*! What a device answered to one upload in a trace. */
struct RecordedAnswer
{
    enum class Kind : quint8 {
        Value,
        Abort,
        Silence, //!< it was asked and did not answer
    };

    Kind kind = Kind::Silence;
    bool isSizeUnknown = false; //!< of a value: which of its four bytes count was not said
    quint32 abortCode = 0;
    size_t position = 0; //!< of the frame that completed it
    QByteArray data;
};

/*! What the devices of one bus answered when they were read, over the time of a trace.
 *
 *  Knows no clock: the present is the number of frames that have gone by.
 */
class RecordedAnswers
{
public:
    /*! Of a trace with the frames of one bus only. */
    static RecordedAnswers of(const std::vector<TraceFrame> &frames);

    /*! Takes a frame, for who is on the bus. */
    void note(const TraceFrame &frame);
    /*! Takes a transfer that has ended. Downloads, and transfers of which the device's answer is not known, are passed
     *  over.
     */
    void note(const SdoTransfer &transfer);

    /*! The last answer that was complete before frame number \a present; null when there was none. Pointers hold until
     *  something is noted.
     */
    const RecordedAnswer *lastBefore(quint8 nodeId, CanOpen::ObjectKey key, size_t present) const;
    /*! The first one from there on that is another one than the last before. */
    const RecordedAnswer *firstFrom(quint8 nodeId, CanOpen::ObjectKey key, size_t present) const;

    /*! Whether the node is on the bus: it was heard somewhere in the trace. */
    bool isThere(quint8 nodeId) const { return nodeId <= CanOpen::lastNodeId && m_isThere.test(nodeId); }

private:
    using Answers = std::vector<RecordedAnswer>; // in the order of their positions

    void dropRepeated();
    const Answers *answersOf(quint8 nodeId, CanOpen::ObjectKey key) const;

    QHash<quint32, Answers> m_answers; // by node ID, index and sub-index
    std::bitset<CanOpen::lastNodeId + 1> m_isThere;
};

/*! The node that \a frame comes from by the predefined connection set (CiA 301), if it is of those that no PDO can be:
 *  emergency, answer of the SDO server, boot-up and heartbeat. Else 0.
 */
quint8 speakerOf(const TraceFrame &frame);
