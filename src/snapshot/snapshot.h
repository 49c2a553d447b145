// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/datatype.h>
#include <canopen/nmt.h>
#include <canopen/objectkey.h>

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QVariant>
#include <QVector>

#include <optional>

/*! \file
 *  What a vehicle answered at one time, gaps included: the record that is judged, compared, kept and printed.
 *
 *  Plain values without a way to a bus; SnapshotReader makes one from a bus, SnapshotFile from a file.
 */

/*! Why an entry has no value. */
enum class SnapshotGap : quint8 {
    None,      //!< it has one
    Absent,    //!< the device says that it does not have the object or the sub-index; not counted as a gap
    Abort,     //!< the device refused for another reason; abortCode says why
    NoAnswer,  //!< also after the repeats, and at the end of the snapshot once more
    WrongSize, //!< the bytes came, but not as many as the object's type has
    Failed,    //!< the transfer went wrong on the way; abortCode says how
    Stopped,   //!< the node was in the NMT state Stopped, in which a device answers no SDO (CiA 301)
    Cancelled, //!< not asked any more: the user cancelled, or the bus went away
};

/*! One object dictionary entry of one node. */
struct SnapshotEntry
{
    CanOpen::ObjectKey key;
    /*! How the value is made of the bytes; empty when no type is known. The value is an unsigned number then, if the
     *  bytes are 1 to 8, or a text or nothing if they came from a file without bytes.
     */
    std::optional<CanOpen::DataType> type;
    QByteArray
        raw; //!< as they came, least significant byte first; empty with a gap, and from files that have none
    QVariant
        value; //!< see CanOpen::decodeValue(); invalid with a gap, and for bytes that are neither number nor text
    SnapshotGap gap = SnapshotGap::None;
    quint32 abortCode = 0; //!< of Abort, Absent and Failed (CiA 301)
    qint64 ms = 0;         //!< when it was read, in ms since the snapshot's time

    /*! Whether the entry might have a value and has none that is known. What can only be written never has one. */
    bool isGap() const;
    bool hasValue() const { return gap == SnapshotGap::None; }
};

/*! How the reading of a node ended. */
enum class SnapshotEnd : quint8 {
    Complete, //!< everything was asked for and answered in some way
    Silent,   //!< the node did not answer, or stopped answering
    Stopped,  //!< it was in the NMT state Stopped to the end
    Cancelled //!< it was not asked to the end: the user cancelled, or the bus went away
};

/*! One node with all that was asked of it. */
struct SnapshotNode
{
    quint8 id = 0; //!< 1 to 127
    SnapshotEnd end = SnapshotEnd::Complete;
    std::optional<CanOpen::NmtState> nmtState; //!< as heard last; empty when the node sends no heartbeat
    int bootUps = 0;                           //!< boot-up messages that were heard during the snapshot
    /*! Times from a request to its answer, in ms; empty when nothing was answered, and from files that know none. */
    std::optional<int> medianAnswer;
    std::optional<int> longestAnswer;
    QString dataSheet;              //!< the product name of the EDS or DCF that was given for the node
    QVector<SnapshotEntry> entries; //!< in the order of their keys, each once

    /*! The entry; null when it was not asked for. The pointer holds until the entries change. */
    const SnapshotEntry *find(CanOpen::ObjectKey key) const;
    const SnapshotEntry *find(quint16 index, quint8 subIndex) const { return find({index, subIndex}); }

    /*! The value; invalid when there is none. */
    QVariant value(quint16 index, quint8 subIndex) const;

    /*! Puts an entry into its place, or in the place of the one with its key. */
    void insert(const SnapshotEntry &entry);

    int valueCount() const;
    int gapCount() const;
};

/*! What people write beside a snapshot. Free texts, may all be empty. */
struct SnapshotNotes
{
    QString vehicle;
    QString customer;
    QString technician;
    QString odometer;
    QString note;
};

/*! How much was asked for. */
enum class SnapshotScope : quint8 {
    Full,     //!< everything that the object table, the profile and the nodes' data sheets name
    Quick,    //!< the entries that the overview reads, and the identity's texts
    Imported, //!< what a file without this knowledge held
    Recorded, //!< what others read in a trace
};

struct Snapshot
{
    QString program;     //!< "draxelctl 1.0.0"
    QDateTime time;      //!< of the beginning; with the offset of its time zone
    qint64 duration = 0; //!< ms
    QString bus;         //!< its address: "socketcan:can0"
    QString adapter;     //!< the interface's description, may be empty
    int bitRate = 0;     //!< bit/s; 0 when it is not known
    SnapshotScope scope = SnapshotScope::Full;
    SnapshotNotes notes;
    QVector<SnapshotNode> nodes; //!< in the order of their IDs, each once

    const SnapshotNode *find(quint8 nodeId) const;
    SnapshotNode *find(quint8 nodeId);

    int valueCount() const;
    int gapCount() const;
    /*! Whether every node was read to its end and no entry is a gap. */
    bool isComplete() const;
    /*! Whether a bus was asked for it: it is known then what was asked for, and who sends no heartbeat. */
    bool isOfBus() const { return scope == SnapshotScope::Full || scope == SnapshotScope::Quick; }
};
