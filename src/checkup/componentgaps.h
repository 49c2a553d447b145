// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/objectkey.h>
#include <snapshot/snapshot.h>

#include <QCoreApplication>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>

class Evaluation;

/*! Collects what rules missed in one component, and says it in few sentences. */
class ComponentGaps
{
    Q_DECLARE_TR_FUNCTIONS(ComponentGaps)

public:
    /*! Takes what an evaluation of a rule noted, which came to nothing because of it. */
    void add(const Evaluation &evaluation, const QString &rule);
    void add(CanOpen::ObjectKey key);
    void add(const ComponentGaps &gaps);
    /*! Something else that kept rules from being applied, a sentence. */
    void addSentence(const QString &sentence);
    /*! Takes the sentences of those of the vehicle as a whole. */
    void addSentencesOf(const ComponentGaps &vehicle);

    bool isEmpty() const { return m_keys.isEmpty() && !m_isBehaviourMissing && m_sentences.isEmpty(); }

    /*! Why rules could not be judged, sentences; empty when all of them were. */
    QStringList sentences(const SnapshotNode &node, SnapshotScope scope) const;

private:
    static QString notInSnapshot(SnapshotScope scope);
    static QString namesOf(const QVector<quint16> &indices);
    static bool isExplained(const SnapshotEntry *entry, SnapshotEnd end);

    QMap<CanOpen::ObjectKey, bool> m_keys; // a sorted set
    bool m_isBehaviourMissing = false;
    QStringList m_sentences;
};
