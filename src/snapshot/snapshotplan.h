// SPDX-License-Identifier: MIT
#pragma once

#include "snapshot.h"

#include <canopen/objectdictionary.h>
#include <canopen/sdooutcome.h>

#include <QHash>
#include <QSet>

#include <deque>

/*! One entry that a node is to be asked for. */
struct SnapshotQuestion
{
    CanOpen::ObjectKey key;
    /*! Nobody says that the entry exists: when the device does not have it, or refuses it, it is not spoken of. */
    bool isProbe = false;
    /*! Why it has no value yet; None: it was not asked. */
    SnapshotGap gap = SnapshotGap::None;
};

/*! What one node is asked for, in the order of asking. Grows with the answers: sub-index 0 of an array or a record says
 *  how many more there are.
 *
 *  Full scope: what identifies the device, all objects of the object table with all their sub-indices, what a data sheet
 *  lists, and the parameters and mappings of all PDOs that exist (CiA 301: 512 in each direction). Quick scope: the
 *  entries of the overview's read list and the identity's texts.
 *
 *  Whether an object is an array, only the device can tell: of a byte at sub-index 0 sub-indices 1 and 2 are tried, and
 *  those that the read list names. Once one of them is there, all are asked up to the count; arrays with holes exist.
 */
class SnapshotPlan
{
public:
    /*! \a dataSheet is that of an EDS or DCF: its types win, and what can only be written is not asked. */
    SnapshotPlan(SnapshotScope scope, const CanOpen::ObjectDictionary &dataSheet);

    bool isEmpty() const { return m_pending.empty(); }
    int size() const { return static_cast<int>(m_pending.size()); }

    const SnapshotQuestion &next() const { return m_pending.front(); }
    SnapshotQuestion take();
    /*! Whether all questions that are left were asked before, and have come to \a gap. */
    bool holdsOnly(SnapshotGap gap) const;
    /*! To be asked next, or last of all. */
    void putFirst(const SnapshotQuestion &question) { m_pending.push_front(question); }
    void putLast(const SnapshotQuestion &question) { m_pending.push_back(question); }

    /*! Asks only for \a keys, and for what their answers bring. */
    void reduceTo(const QVector<CanOpen::ObjectKey> &keys);

    /*! The types that an entry may have, the likeliest first; empty when none is known. */
    QVector<CanOpen::DataType> typesOf(CanOpen::ObjectKey key) const;
    /*! In blocks at once where the data sheet says that it is long, else as its announced size suggests. */
    CanOpen::SdoProtocol protocolOf(CanOpen::ObjectKey key) const;

    /*! Takes an answer, and brings up what follows from it. Returns what belongs into the snapshot: the entry, nothing,
     *  or more when it shows that those before it were holes of an array.
     */
    QVector<SnapshotEntry> note(const SnapshotQuestion &question, const SnapshotEntry &entry);

private:
    /*! An object whose sub-index 0 may be a count. */
    struct Candidate
    {
        quint8 highest = 0;           // sub-index
        QVector<SnapshotEntry> holes; // the sub-indices that were tried in vain
    };

    void planQuick();
    void planFull();
    void add(CanOpen::ObjectKey key, bool isProbe = false);
    void addFirst(CanOpen::ObjectKey key, bool isProbe = false);
    bool isNew(CanOpen::ObjectKey key);
    bool isArray(quint16 index) const;
    void noteSubIndex0(const SnapshotEntry &entry);
    void noteCount(quint16 index, quint8 count);
    void askRange(quint16 index, quint8 first, quint8 last);
    void tryKnownSubIndices(quint16 index);
    QVector<SnapshotEntry> noteProbe(const SnapshotEntry &entry);
    QVector<SnapshotEntry> noteHole(const SnapshotEntry &entry);

    bool m_isFull;
    CanOpen::ObjectDictionary m_dataSheet;
    std::deque<SnapshotQuestion> m_pending;
    QSet<quint32> m_known;                  // that were ever planned
    QHash<quint16, Candidate> m_candidates; // by index; not decided yet
};
