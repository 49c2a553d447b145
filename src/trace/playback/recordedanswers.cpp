// SPDX-License-Identifier: MIT
#include "recordedanswers.h"

#include <canopen/sdoabort.h>
#include <trace/transfers/sdotransfer.h>
#include <trace/transfers/sdotransfers.h>

#include <algorithm>
#include <optional>

namespace {

using CanOpen::ObjectKey;
using Outcome = SdoTransfer::Outcome;

quint32 hashKey(quint8 nodeId, ObjectKey key)
{
    return quint32(nodeId) << 24 | quint32(key.index) << 8 | key.subIndex;
}

/*! How the device answered; empty when that is not known, or when it was about the transfer and not the object. */
std::optional<RecordedAnswer::Kind> answerKindOf(const SdoTransfer &transfer)
{
    if (transfer.hasValue())
        return RecordedAnswer::Kind::Value;
    if (transfer.outcome == Outcome::NoAnswer)
        return RecordedAnswer::Kind::Silence;
    if (transfer.outcome == Outcome::AbortedByServer && !CanOpen::isAboutTheTransfer(transfer.abortCode))
        return RecordedAnswer::Kind::Abort;
    return std::nullopt;
}

bool isSame(const RecordedAnswer &a, const RecordedAnswer &b)
{
    return a.kind == b.kind && a.isSizeUnknown == b.isSizeUnknown && a.abortCode == b.abortCode
           && a.data == b.data;
}

bool isEarlier(const RecordedAnswer &answer, size_t position)
{
    return answer.position < position;
}

/*! Silence is known late, when it has lasted. */
void insert(RecordedAnswer answer, std::vector<RecordedAnswer> *answers)
{
    const auto next = std::lower_bound(answers->begin(), answers->end(), answer.position, isEarlier);
    if (next != answers->begin() && std::prev(next)->data == answer.data)
        answer.data = std::prev(next)->data; // shared: most say the same again and again
    answers->insert(next, answer);
}

} // namespace

RecordedAnswers RecordedAnswers::of(const std::vector<TraceFrame> &frames)
{
    RecordedAnswers answers;
    SdoTransfers transfers;
    const auto takeOver = [&answers, &transfers] {
        for (const SdoTransfer &transfer : transfers.takeFinished())
            answers.note(transfer);
    };
    for (size_t position = 0; position < frames.size(); ++position) {
        answers.note(frames[position]);
        transfers.handle(frames[position], position);
        if (transfers.hasFinished())
            takeOver();
    }
    transfers.finish();
    takeOver();
    answers.dropRepeated();
    return answers;
}

/*! Only when all are there: silence may still come between two that say the same. */
void RecordedAnswers::dropRepeated()
{
    for (Answers &answers : m_answers) {
        answers.erase(std::unique(answers.begin(), answers.end(), isSame), answers.end());
        answers.shrink_to_fit();
    }
}

void RecordedAnswers::note(const TraceFrame &frame)
{
    if (const quint8 nodeId = speakerOf(frame))
        m_isThere.set(nodeId);
}

void RecordedAnswers::note(const SdoTransfer &transfer)
{
    const std::optional<RecordedAnswer::Kind> kind = answerKindOf(transfer);
    if (!transfer.isUpload || !kind)
        return;
    RecordedAnswer answer;
    answer.kind = *kind;
    answer.position = transfer.lastFrame;
    if (*kind == RecordedAnswer::Kind::Abort)
        answer.abortCode = transfer.abortCode;
    if (*kind == RecordedAnswer::Kind::Value) {
        answer.data = transfer.data;
        answer.isSizeUnknown = transfer.isSizeUnknown;
    }
    insert(answer, &m_answers[hashKey(transfer.nodeId, transfer.object)]);
}

const RecordedAnswers::Answers *RecordedAnswers::answersOf(quint8 nodeId, ObjectKey key) const
{
    const auto found = m_answers.constFind(hashKey(nodeId, key));
    return found != m_answers.cend() ? &*found : nullptr;
}

const RecordedAnswer *RecordedAnswers::lastBefore(quint8 nodeId, ObjectKey key, size_t present) const
{
    const Answers *answers = answersOf(nodeId, key);
    if (answers == nullptr)
        return nullptr;
    const auto next = std::lower_bound(answers->cbegin(), answers->cend(), present, isEarlier);
    return next != answers->cbegin() ? &*std::prev(next) : nullptr;
}

const RecordedAnswer *RecordedAnswers::firstFrom(quint8 nodeId, ObjectKey key, size_t present) const
{
    const Answers *answers = answersOf(nodeId, key);
    if (answers == nullptr)
        return nullptr;
    const auto next = std::lower_bound(answers->cbegin(), answers->cend(), present, isEarlier);
    return next != answers->cend() ? &*next : nullptr;
}

quint8 speakerOf(const TraceFrame &frame)
{
    using namespace CanOpen;
    if (frame.isExtended() || frame.isRemote() || frame.isError())
        return 0;
    for (const quint32 base : {emergencyBase, sdoResponseBase, errorControlBase}) {
        if (const quint8 nodeId = nodeIdOf(frame.id, base))
            return nodeId;
    }
    return 0;
}
