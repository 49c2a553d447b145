// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/edsfile.h>
#include <snapshot/answertimes.h>
#include <snapshot/snapshot.h>
#include <trace/core/trace.h>
#include <trace/transfers/sdotransfers.h>

#include <QDateTime>
#include <QMap>
#include <QString>

#include <map>
#include <optional>

/*! Makes a snapshot of a trace: of all that any client read in it.
 *
 *  Fed with the frames of one bus in the order of the trace, which may be longer than what fits into memory. Of an object
 *  that was read more than once the last value counts, also when a later reading failed; without a value the last answer
 *  of the device, and without one how the readings failed. Values that were written are none that the device has said.
 *
 *  A node is in it when it was heard: by its boot-up, its heartbeat, an emergency or an answer. One that nobody has read has
 *  no entries, and its reading has not come to its end.
 */
class TraceSnapshot
{
public:
    /*! What the EDS or DCF of a node says of its types; before the first frame. */
    void setDataSheets(const QMap<quint8, CanOpen::EdsFile> &sheets) { m_sheets = sheets; }

    void handle(const TraceFrame &frame);

    /*! After the last frame, once. \a end is when the trace ended, if \a head does not tell its times. Origin and notes are
     *  left to the caller.
     */
    Snapshot finish(const TraceHead &head, const QDateTime &end);

    /*! How many readings there were, whatever became of them. */
    quint64 uploads() const { return m_uploads; }

private:
    struct Node
    {
        SnapshotNode node;
        AnswerTimes times;
        bool isHeard = false;
        bool wasAsked = false;
        bool hasAnswered = false;
    };

    void noteSpeaker(const TraceFrame &frame);
    void takeTransfers();
    void note(const SdoTransfer &transfer);
    SnapshotEntry entryOf(const SdoTransfer &transfer) const;
    QVector<CanOpen::DataType> typesOf(quint8 nodeId, CanOpen::ObjectKey key) const;
    qint64 sinceBegin(qint64 time) const;
    static SnapshotEnd endOf(const Node &node);

    QMap<quint8, CanOpen::EdsFile> m_sheets;
    SdoTransfers m_transfers;
    std::map<quint8, Node> m_nodes; // that were asked or heard
    size_t m_position = 0;          // of the next frame
    qint64 m_first = 0;             // us; of the first frame
    qint64 m_latest = 0;
    quint64 m_uploads = 0;
};
