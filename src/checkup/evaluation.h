// SPDX-License-Identifier: MIT
#pragma once

#include "expression.h"

#include <QSet>
#include <QVector>

struct SnapshotEntry;
class FactSource;

/*! The numbers of an object's sub-indices from 1 to its count; those that are absent are left out. */
struct ObjectNumbers
{
    QVector<double> numbers;
    QVector<quint8> subIndices; //!< of each of them
    bool isUnknown = false;     //!< one of them was not read, or how many there are
};

/*! Where expressions of a rule get their numbers from: one node, or none, and the loops' numbers. Notes what they asked
 *  for and what was not there.
 */
class Evaluation
{
public:
    static constexpr int mostLoops = 2;

    /*! \a position of the node in the source; -1: the vehicle as a whole, which has no objects. */
    Evaluation(const FactSource &vehicle, int position);

    /*! \a object is the loop's own object ("these"). */
    void setLoop(int loop, int number, quint16 object = 0);

    int loopNumber(int loop) const { return m_loops[loop].number; }
    CanOpen::ObjectKey keyOf(const ObjectReference &object) const;
    Operand object(const ObjectReference &object);
    Operand object(CanOpen::ObjectKey key);
    ObjectNumbers allOf(const ObjectReference &object);
    Operand fact(Fact fact);
    QString factText(Fact fact) const;
    const SnapshotEntry *entry(CanOpen::ObjectKey key) const;

    /*! Forgets what was noted. */
    void clearNotes();
    const QVector<CanOpen::ObjectKey> &askedFor() const { return m_askedFor; }
    const QVector<CanOpen::ObjectKey> &missingObjects() const { return m_missingObjects; }
    bool isFactMissing() const { return m_isFactMissing; }
    void noteIncalculable() { m_isIncalculable = true; }
    bool isIncalculable() const { return m_isIncalculable; }

    /*! Objects and facts that were asked for so far; what rules cost. */
    int steps() const { return m_steps; }

private:
    struct Loop
    {
        int number = 0;
        quint16 object = 0;
    };

    bool isBeyondCount(CanOpen::ObjectKey key) const;

    const FactSource &m_vehicle;
    int m_position;
    Loop m_loops[mostLoops];
    QVector<CanOpen::ObjectKey> m_askedFor;
    QVector<CanOpen::ObjectKey> m_missingObjects;
    bool m_isFactMissing = false;
    bool m_isIncalculable = false; // something has no result: a division by zero, a number that is too large
    int m_steps = 0;
};
