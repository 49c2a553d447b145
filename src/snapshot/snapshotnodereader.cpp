// SPDX-License-Identifier: MIT
#include "snapshotnodereader.h"

#include "snapshotanswer.h"

#include <canopen/sdoframe.h>
#include <interpreter/objects.h>

#include <algorithm>

namespace {

using CanOpen::NmtState;
using CanOpen::SdoOutcome;

// What tells one device from another.
constexpr CanOpen::ObjectKey identityKeys[] = {
    {Object::deviceType, 0}, {Object::identity, 1}, {Object::identity, 2},
    {Object::identity, 3},   {Object::identity, 4},
};

bool isIdentity(CanOpen::ObjectKey key)
{
    return std::find(std::begin(identityKeys), std::end(identityKeys), key) != std::end(identityKeys);
}

/*! Whether nothing more is to be learnt about the entry. */
bool isSettled(const SnapshotEntry *entry)
{
    return entry != nullptr && (entry->hasValue() || entry->gap == SnapshotGap::Absent);
}

} // namespace

SnapshotNodeReader::SnapshotNodeReader(quint8 nodeId, SnapshotScope scope, const CanOpen::EdsFile &dataSheet)
    : m_scope(scope)
    , m_dataSheet(dataSheet)
    , m_plan(scope, dataSheet.dictionary)
{
    m_node.id = nodeId;
    m_node.dataSheet = dataSheet.productName;
}

void SnapshotNodeReader::resume(const SnapshotNode &earlier, SnapshotScope scope)
{
    m_earlier = earlier;
    m_node.bootUps = earlier.bootUps;
    m_node.nmtState = earlier.nmtState;
    if (m_node.dataSheet.isEmpty())
        m_node.dataSheet = earlier.dataSheet;
    QVector<CanOpen::ObjectKey> keys(std::begin(identityKeys), std::end(identityKeys));
    for (const SnapshotEntry &entry : earlier.entries) {
        if (isSettled(&entry) || !entry.isGap())
            m_node.entries.append(entry);
        else if (!keys.contains(entry.key))
            keys.append(entry.key);
    }
    const bool isCovered = scope == m_scope || scope == SnapshotScope::Full;
    if (earlier.end == SnapshotEnd::Complete && isCovered)
        m_plan.reduceTo(keys);
    skipKept();
}

void SnapshotNodeReader::setNmtState(std::optional<NmtState> state)
{
    m_state = state;
    if (state)
        m_node.nmtState = state;
}

bool SnapshotNodeReader::isReady() const
{
    return !m_isFinished && !m_isAsking && !m_isLeft && !isStopped() && !m_plan.isEmpty();
}

bool SnapshotNodeReader::isStopped() const
{
    return m_state == NmtState::Stopped;
}

SnapshotQuestion SnapshotNodeReader::ask()
{
    m_question = m_plan.take();
    m_isAsking = true;
    return m_question;
}

void SnapshotNodeReader::take(const SdoOutcome &outcome, qint64 ms, qint64 answerTime)
{
    m_isAsking = false;
    ++m_asked;
    m_isUnasked = outcome.isUnasked || outcome.isCrowdedOut;
    SnapshotEntry entry = SnapshotAnswer::toEntry(outcome, m_plan.typesOf(outcome.key));
    entry.ms = ms;
    // What another client has held up says nothing of the device either.
    if (outcome.kind == SdoOutcome::Kind::Timeout || outcome.isUnasked) {
        m_question.gap = isStopped() ? SnapshotGap::Stopped : entry.gap;
        takeSilence();
        return;
    }
    m_silences = 0;
    m_hasAnswered = true;
    if (outcome.kind != SdoOutcome::Kind::Error && outcome.raw.size() <= CanOpen::sdoExpeditedSize)
        m_answerTimes.add(answerTime);
    if (const SnapshotEntry *kept = keptIdentity(entry)) {
        if (kept->gap != entry.gap || kept->raw != entry.raw) {
            startAnew();
            return;
        }
        m_isRecognized = m_isRecognized || entry.key.index == Object::identity;
    }
    record(m_question, entry);
    if (entry.gap == SnapshotGap::Failed && !m_isSecondRound) {
        m_question.gap = entry.gap;
        m_unanswered.append(m_question);
    }
    skipKept();
}

void SnapshotNodeReader::putBack()
{
    m_isAsking = false;
    m_question.gap = SnapshotGap::Cancelled;
    m_plan.putFirst(m_question);
}

void SnapshotNodeReader::beginSecondRound()
{
    m_isSecondRound = true;
    m_isLeft = false;
    m_silences = 0;
    for (const SnapshotQuestion &question : qAsConst(m_unanswered))
        m_plan.putLast(question);
    m_unanswered.clear();
}

void SnapshotNodeReader::finish(bool isCancelled)
{
    m_isAsking = false;
    m_isFinished = true;
    m_node.end = endOf(isCancelled);
    const bool wasAllAsked = isDone();
    recordGaps();
    if (!wasAllAsked)
        keepEarlierGaps();
}

SnapshotNode SnapshotNodeReader::node() const
{
    SnapshotNode node = m_node;
    node.medianAnswer = m_answerTimes.median();
    node.longestAnswer = m_answerTimes.longest();
    if (!m_isFinished)
        node.end = SnapshotEnd::Cancelled;
    return node;
}

/*! Answers the next questions from what is kept. */
void SnapshotNodeReader::skipKept()
{
    if (m_earlier.entries.isEmpty())
        return;
    while (!m_plan.isEmpty() && !isIdentity(m_plan.next().key)) {
        const SnapshotEntry *kept = m_earlier.find(m_plan.next().key);
        if (!isSettled(kept))
            return;
        m_plan.note(m_plan.take(), *kept);
    }
}

void SnapshotNodeReader::record(const SnapshotQuestion &question, const SnapshotEntry &entry)
{
    const QVector<SnapshotEntry> entries = m_plan.note(question, entry);
    for (const SnapshotEntry &recorded : entries) {
        if (!recorded.isGap() || !isSettled(m_node.find(recorded.key))) // what is kept is better than nothing
            m_node.insert(recorded);
    }
}

/*! What is known of the earlier device in the place of a value that tells devices apart; else null. */
const SnapshotEntry *SnapshotNodeReader::keptIdentity(const SnapshotEntry &entry) const
{
    if (!isIdentity(entry.key) || entry.isGap())
        return nullptr;
    const SnapshotEntry *kept = m_earlier.find(entry.key);
    return isSettled(kept) ? kept : nullptr;
}

bool SnapshotNodeReader::isUnrecognized() const
{
    return m_hasAnswered && !m_isReplaced && !m_isRecognized && m_earlier.valueCount() > 0;
}

void SnapshotNodeReader::startAnew()
{
    m_isReplaced = true;
    m_earlier = SnapshotNode();
    m_node.entries.clear();
    m_node.bootUps = 0;
    m_node.dataSheet = m_dataSheet.productName;
    m_unanswered.clear();
    m_plan = SnapshotPlan(m_scope, m_dataSheet.dictionary);
}

void SnapshotNodeReader::takeSilence()
{
    if (m_question.gap == SnapshotGap::Stopped) {
        m_plan.putFirst(m_question);
        return;
    }
    if (m_isSecondRound) {
        SnapshotEntry entry;
        entry.key = m_question.key;
        entry.gap = m_question.gap;
        record(m_question, entry);
    } else {
        m_unanswered.append(m_question);
    }
    const int mostNow = m_isSecondRound && !m_hasAnswered ? 1 : mostSilences;
    m_isLeft = ++m_silences >= mostNow;
}

SnapshotEnd SnapshotNodeReader::endOf(bool isCancelled) const
{
    const SnapshotEnd silent = m_isUnasked ? SnapshotEnd::Cancelled : SnapshotEnd::Silent;
    if (isDone())
        return m_hasAnswered ? SnapshotEnd::Complete : silent;
    if (isStopped())
        return SnapshotEnd::Stopped;
    if (isCancelled)
        return m_isLeft ? silent : SnapshotEnd::Cancelled;
    const bool wasAllAsked = m_plan.holdsOnly(SnapshotGap::NoAnswer);
    return m_hasAnswered && wasAllAsked ? SnapshotEnd::Complete : silent;
}

/*! What was asked in vain. What was never asked is no entry: how the node ended says why. */
void SnapshotNodeReader::recordGaps()
{
    while (!m_plan.isEmpty())
        m_unanswered.append(m_plan.take());
    for (const SnapshotQuestion &question : qAsConst(m_unanswered)) {
        const bool isSpokenOf = question.gap == SnapshotGap::NoAnswer || !question.isProbe;
        if (question.gap == SnapshotGap::None || !isSpokenOf || m_node.find(question.key) != nullptr)
            continue;
        if (question.gap == SnapshotGap::Cancelled && m_earlier.find(question.key) != nullptr)
            continue; // which says more
        SnapshotEntry entry;
        entry.key = question.key;
        entry.gap = question.gap;
        m_node.insert(entry);
    }
}

/*! Why something could not be read then still holds where it was not asked for again. */
void SnapshotNodeReader::keepEarlierGaps()
{
    for (const SnapshotEntry &entry : qAsConst(m_earlier.entries)) {
        if (m_node.find(entry.key) == nullptr)
            m_node.insert(entry);
    }
}
