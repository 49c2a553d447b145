// SPDX-License-Identifier: MIT
#include "componentgaps.h"

#include "evaluation.h"

#include <snapshot/snapshotwords.h>

using CanOpen::ObjectKey;

void ComponentGaps::add(const Evaluation &evaluation, const QString &rule)
{
    for (const ObjectKey key : evaluation.missingObjects())
        add(key);
    m_isBehaviourMissing = m_isBehaviourMissing || evaluation.isFactMissing();
    if (evaluation.isIncalculable())
        addSentence(
            tr("The rule \"%1\" cannot be calculated: it divides by zero, or a number becomes too large.")
                .arg(rule));
}

void ComponentGaps::add(ObjectKey key)
{
    m_keys.insert(key, true);
}

void ComponentGaps::add(const ComponentGaps &gaps)
{
    for (const ObjectKey key : gaps.m_keys.keys())
        add(key);
    m_isBehaviourMissing = m_isBehaviourMissing || gaps.m_isBehaviourMissing;
    m_sentences += gaps.m_sentences;
}

void ComponentGaps::addSentence(const QString &sentence)
{
    if (!m_sentences.contains(sentence))
        m_sentences.append(sentence);
}

void ComponentGaps::addSentencesOf(const ComponentGaps &vehicle)
{
    for (const QString &sentence : vehicle.m_sentences)
        addSentence(sentence);
}

QStringList ComponentGaps::sentences(const SnapshotNode &node, SnapshotScope scope) const
{
    QStringList sentences;
    if (node.end != SnapshotEnd::Complete)
        sentences.append(SnapshotWords::ending(node.end));
    QMap<QString, QVector<quint16>> indicesByReason;
    for (const ObjectKey key : m_keys.keys()) {
        const SnapshotEntry *entry = node.find(key);
        if (isExplained(entry, node.end))
            continue;
        QString reason = entry != nullptr ? SnapshotWords::reason(*entry) : notInSnapshot(scope);
        if (reason.isEmpty())
            reason = tr("What the device answers is no number.");
        QVector<quint16> &indices = indicesByReason[reason];
        if (indices.isEmpty() || indices.last() != key.index)
            indices.append(key.index);
    }
    for (auto reason = indicesByReason.cbegin(); reason != indicesByReason.cend(); ++reason)
        sentences.append(QStringLiteral("%1 (%2)").arg(reason.key(), namesOf(reason.value())));
    if (m_isBehaviourMissing)
        sentences.append(tr("The file does not tell how the device behaves on the bus."));
    return sentences + m_sentences;
}

/*! Whether the way in which the reading of the node ended says why the entry is missing. */
bool ComponentGaps::isExplained(const SnapshotEntry *entry, SnapshotEnd end)
{
    if (end == SnapshotEnd::Complete)
        return false;
    return entry == nullptr || entry->gap == SnapshotGap::NoAnswer || entry->gap == SnapshotGap::Stopped
           || entry->gap == SnapshotGap::Cancelled;
}

QString ComponentGaps::notInSnapshot(SnapshotScope scope)
{
    switch (scope) {
    case SnapshotScope::Quick:
        return tr("A quick snapshot does not ask for everything.");
    case SnapshotScope::Imported:
        return tr("The file does not hold everything.");
    case SnapshotScope::Recorded:
        return tr("Nobody has read everything in the trace.");
    case SnapshotScope::Full:
        break;
    }
    return tr("The snapshot does not hold everything.");
}

/*! "1003h, 6009h, 600Bh, ... (7 objects)" */
QString ComponentGaps::namesOf(const QVector<quint16> &indices)
{
    constexpr int mostNames = 6;
    QStringList names;
    for (int i = 0; i < indices.size() && i < mostNames; ++i)
        names.append(CanOpen::indexText(indices.at(i)));
    const QString list = names.join(QStringLiteral(", "));
    return indices.size() <= mostNames ? list
                                       : tr("%1 and others, %2 objects in all").arg(list).arg(indices.size());
}
