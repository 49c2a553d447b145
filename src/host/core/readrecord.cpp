// SPDX-License-Identifier: MIT
#include "readrecord.h"

#include <canopen/sdoabort.h>

namespace {

/*! Of two results of one object the one with the lower rank counts. */
int rankOf(const ReadResult &result)
{
    switch (result.kind) {
    case ReadResult::Kind::Value:
        return 0;
    case ReadResult::Kind::NotThere:
        return 1;
    case ReadResult::Kind::Refused:
        return 2;
    case ReadResult::Kind::HeldUp:
    case ReadResult::Kind::MixedUp:
    case ReadResult::Kind::NoAnswer:
    case ReadResult::Kind::NotSent:
        break;
    }
    return 3;
}

void count(const ReadResult &result, ReadCounts *counts)
{
    if (result.kind == ReadResult::Kind::Value)
        ++counts->values;
    else if (result.kind == ReadResult::Kind::NotThere)
        ++counts->missing;
    else
        ++counts->failed;
}

} // namespace

ReadResult ReadResult::refusal(quint32 code)
{
    using CanOpen::SdoAbort;
    const bool isMissing = code == static_cast<quint32>(SdoAbort::ObjectDoesNotExist)
                           || code == static_cast<quint32>(SdoAbort::SubIndexDoesNotExist);
    return {isMissing ? Kind::NotThere : Kind::Refused, code};
}

ReadResult ReadResult::of(const CanOpen::SdoOutcome &outcome)
{
    switch (outcome.kind) {
    case CanOpen::SdoOutcome::Kind::Value:
        return value();
    case CanOpen::SdoOutcome::Kind::Error:
        if (outcome.foreignClient)
            return {Kind::HeldUp, outcome.code};
        if (outcome.isMixedUp)
            return {Kind::MixedUp, outcome.code};
        return refusal(outcome.code);
    case CanOpen::SdoOutcome::Kind::Abort:
        return refusal(outcome.code);
    case CanOpen::SdoOutcome::Kind::Timeout:
    case CanOpen::SdoOutcome::Kind::Cancelled:
        break;
    }
    return outcome.isUnasked ? notSent() : noAnswer();
}

QString FailedObject::reason() const
{
    switch (result.kind) {
    case ReadResult::Kind::HeldUp:
        return tr("Another client was using the node");
    case ReadResult::Kind::MixedUp:
        return tr("The answers could not be told from late or foreign ones");
    case ReadResult::Kind::NoAnswer:
        return tr("No answer");
    case ReadResult::Kind::NotSent:
        return tr("The request could not be sent");
    case ReadResult::Kind::Value:
    case ReadResult::Kind::NotThere:
    case ReadResult::Kind::Refused:
        break;
    }
    return CanOpen::sdoAbortText(result.code);
}

QString FailedObject::toString() const
{
    return tr("Node %1, object %2 sub-index %3: %4")
        .arg(QString::number(nodeId), CanOpen::indexText(key.index), QString::number(key.subIndex), reason());
}

void ReadRecord::note(quint8 nodeId, CanOpen::ObjectKey key, const ReadResult &result)
{
    Results &results = m_nodes[nodeId];
    const auto known = results.find(key);
    if (known == results.end())
        results.insert(key, result);
    else if (rankOf(result) <= rankOf(*known)) // of equals the later one
        *known = result;
}

std::optional<ReadResult> ReadRecord::result(quint8 nodeId, CanOpen::ObjectKey key) const
{
    const auto node = m_nodes.constFind(nodeId);
    if (node == m_nodes.cend())
        return std::nullopt;
    const auto object = node->constFind(key);
    return object == node->cend() ? std::nullopt : std::optional<ReadResult>(*object);
}

ReadCounts ReadRecord::counts(quint8 nodeId) const
{
    ReadCounts counts;
    for (const ReadResult &result : m_nodes.value(nodeId))
        count(result, &counts);
    return counts;
}

ReadCounts ReadRecord::total() const
{
    ReadCounts counts;
    for (const Results &results : m_nodes) {
        for (const ReadResult &result : results)
            count(result, &counts);
    }
    return counts;
}

QVector<FailedObject> ReadRecord::failures() const
{
    QVector<FailedObject> failures;
    for (auto node = m_nodes.cbegin(); node != m_nodes.cend(); ++node) {
        for (auto object = node->cbegin(); object != node->cend(); ++object) {
            if (object->isFailure())
                failures.append({node.key(), object.key(), *object});
        }
    }
    return failures;
}
