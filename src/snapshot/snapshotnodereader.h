// SPDX-License-Identifier: MIT
#pragma once

#include "answertimes.h"
#include "snapshotplan.h"

#include <canopen/edsfile.h>

/*! The reading of one node: what is to be asked next, and what became of it. Knows no bus and no clock.
 *
 *  There are two rounds. A node that keeps silent is left in the first one, so that it does not hold up the rest, and
 *  asked again in the second; so is every single object without an answer, or with a transfer that failed. A Stopped node answers nothing (CiA 301) and
 *  is not asked before its state is another one.
 */
class SnapshotNodeReader
{
public:
    /*! So many objects without an answer, one after the other, and the node is left. */
    static constexpr int mostSilences = 3;

    /*! \a dataSheet may be empty. */
    SnapshotNodeReader(quint8 nodeId, SnapshotScope scope, const CanOpen::EdsFile &dataSheet);

    /*! Goes on where \a earlier, of a reading with \a scope, has ended: what has a value there or is absent is not asked
     *  again. What identifies the device is; another device is read anew. Gaps that are not asked for again stay as they were.
     */
    void resume(const SnapshotNode &earlier, SnapshotScope scope);

    void setNmtState(std::optional<CanOpen::NmtState> state);
    void noteBootUp() { ++m_node.bootUps; }
    /*! In this reading, not in an earlier one. */
    bool hasAnswered() const { return m_hasAnswered; }

    /*! Whether there is something to ask now. */
    bool isReady() const;
    /*! The next question, for which isReady() holds. Ends with exactly one take() or putBack(). */
    SnapshotQuestion ask();
    CanOpen::SdoProtocol protocol() const { return m_plan.protocolOf(m_question.key); }
    bool isAsking() const { return m_isAsking; }

    /*! The outcome of the question, \a ms after the beginning of the snapshot; \a answerTime is how long it took. */
    void take(const CanOpen::SdoOutcome &outcome, qint64 ms, qint64 answerTime);
    /*! The question was not answered through no fault of the node. */
    void putBack();

    /*! Everybody has been asked: what was left is tried again. */
    void beginSecondRound();
    bool isSecondRound() const { return m_isSecondRound; }
    /*! Nothing more will be asked. */
    void finish(bool isCancelled);
    bool isFinished() const { return m_isFinished; }

    /*! Whether nothing is left to ask. */
    bool isDone() const { return m_plan.isEmpty() && m_unanswered.isEmpty() && !m_isAsking; }
    /*! Whether it is waited for, as it is Stopped or silent. */
    bool isStopped() const;
    bool isLeft() const { return m_isLeft; }
    /*! Whether nothing says that it is there: it was asked in vain, and sends no heartbeat. */
    bool isMissing() const { return m_isLeft && !m_isUnasked && !m_hasAnswered && !m_state; }

    /*! Whether it is another device than the one in resume(). */
    bool isReplaced() const { return m_isReplaced; }
    /*! Whether it has answered, and nothing of its identity object (1018h) is known both of it and of the device in resume(),
     *  whose values are kept: nobody can say then whether they are the same.
     */
    bool isUnrecognized() const;

    int valueCount() const { return m_node.valueCount(); }
    int gapCount() const { return m_node.gapCount(); }

    /*! Entries asked for so far, and those that will be as far as is known. */
    int askedCount() const { return m_asked; }
    int pendingCount() const { return m_plan.size() + m_unanswered.size() + (m_isAsking ? 1 : 0); }

    /*! What was read so far. */
    SnapshotNode node() const;

private:
    void skipKept();
    void record(const SnapshotQuestion &question, const SnapshotEntry &entry);
    const SnapshotEntry *keptIdentity(const SnapshotEntry &entry) const;
    void startAnew();
    void takeSilence();
    SnapshotEnd endOf(bool isCancelled) const;
    void recordGaps();
    void keepEarlierGaps();

    SnapshotScope m_scope;
    CanOpen::EdsFile m_dataSheet;
    SnapshotPlan m_plan;
    SnapshotNode m_node;
    SnapshotNode m_earlier; // what is to be kept; empty when nothing is
    std::optional<CanOpen::NmtState> m_state;
    AnswerTimes m_answerTimes;
    SnapshotQuestion m_question; // under way, or the last one
    QVector<SnapshotQuestion> m_unanswered;
    int m_asked = 0;
    int m_silences = 0; // in a row
    bool m_isAsking = false;
    bool m_hasAnswered = false;
    bool m_isUnasked = false; // the last question could not be sent, or the bus was too full for its answer
    bool m_isLeft = false;
    bool m_isReplaced = false;
    bool m_isRecognized = false;
    bool m_isSecondRound = false;
    bool m_isFinished = false;
};
