// SPDX-License-Identifier: MIT
#include "recordedvehicle.h"

#include <canopen/sdoabort.h>
#include <canopen/sdoframe.h>

#include <utility>

namespace {

using CanOpen::ObjectKey;
using CanOpen::SdoAbort;
using CanOpen::SdoRequest;

// An expedited answer that does not say how many of its four bytes count: e = 1, s = 0.
constexpr char sizelessAnswer = 0x42;

QCanBusFrame answerFrame(quint8 nodeId, const QByteArray &payload)
{
    return QCanBusFrame(CanOpen::sdoResponseCobId(nodeId), payload);
}

QCanBusFrame abortFrame(quint8 nodeId, ObjectKey key, quint32 code)
{
    return answerFrame(nodeId, CanOpen::makeSdoAbort(key, code));
}

QByteArray sizelessPayload(ObjectKey key, const QByteArray &data)
{
    QByteArray payload = CanOpen::makeSdoExpeditedUploadResponse(key, data);
    payload[0] = sizelessAnswer;
    return payload;
}

bool beginsReading(const QByteArray &request)
{
    const SdoRequest kind = CanOpen::sdoRequestOf(request);
    return kind == SdoRequest::InitiateUpload
           || (kind == SdoRequest::BlockUpload
               && CanOpen::sdoBlockUploadOf(request) == CanOpen::SdoBlockUpload::Initiate);
}

bool writes(const QByteArray &request)
{
    const SdoRequest kind = CanOpen::sdoRequestOf(request);
    return kind == SdoRequest::InitiateDownload || kind == SdoRequest::BlockDownload;
}

} // namespace

RecordedVehicle::RecordedVehicle(RecordedAnswers answers, Knowledge knowledge)
    : m_answers(std::move(answers))
    , m_knowledge(knowledge)
{
}

QVector<QCanBusFrame> RecordedVehicle::handleFrame(const QCanBusFrame &frame, size_t present)
{
    if (!CanOpen::isSdoFrame(frame))
        return {};
    const quint8 nodeId = CanOpen::nodeIdOf(frame.frameId(), CanOpen::sdoRequestBase);
    if (nodeId == 0)
        return {};
    const QByteArray request = frame.payload();
    if (beginsReading(request))
        return answerRead(nodeId, frame, present);
    if (!m_answers.isThere(nodeId))
        return {};
    Node &node = nodeOf(nodeId);
    if (!writes(request))
        return node.server.handleFrame(frame);
    node.server.reset();
    const auto code = static_cast<quint32>(SdoAbort::ReadOnly);
    return {abortFrame(nodeId, CanOpen::sdoKeyOf(request), code)};
}

RecordedVehicle::Node &RecordedVehicle::nodeOf(quint8 nodeId)
{
    std::unique_ptr<Node> &node = m_nodes[nodeId];
    if (node == nullptr)
        node = std::make_unique<Node>(nodeId);
    return *node;
}

const RecordedAnswer *RecordedVehicle::find(quint8 nodeId, ObjectKey key, size_t present) const
{
    const RecordedAnswer *answer = m_answers.lastBefore(nodeId, key, present);
    if (answer == nullptr && m_knowledge == Knowledge::Nearest)
        answer = m_answers.firstFrom(nodeId, key, present);
    return answer;
}

QVector<QCanBusFrame> RecordedVehicle::answerRead(quint8 nodeId, const QCanBusFrame &request, size_t present)
{
    const ObjectKey key = CanOpen::sdoKeyOf(request.payload());
    const RecordedAnswer *answer = find(nodeId, key, present);
    if (answer == nullptr && !m_answers.isThere(nodeId))
        return {};
    nodeOf(nodeId).server.reset();
    if (answer != nullptr)
        return answerAs(nodeId, request, *answer);
    return {abortFrame(nodeId, key, reasonOfGap(nodeId, key, present))};
}

QVector<QCanBusFrame> RecordedVehicle::answerAs(quint8 nodeId, const QCanBusFrame &request,
                                                const RecordedAnswer &answer)
{
    const ObjectKey key = CanOpen::sdoKeyOf(request.payload());
    if (answer.kind == RecordedAnswer::Kind::Silence)
        return {};
    if (answer.kind == RecordedAnswer::Kind::Abort)
        return {abortFrame(nodeId, key, answer.abortCode)};
    if (answer.isSizeUnknown)
        return {answerFrame(nodeId, sizelessPayload(key, answer.data))};
    Node &node = nodeOf(nodeId);
    CanOpen::ObjectEntry entry;
    entry.type = CanOpen::DataType::Domain;
    entry.data = answer.data;
    node.dictionary = CanOpen::ObjectDictionary();
    node.dictionary.insert(key, entry);
    return node.server.handleFrame(request);
}

quint32 RecordedVehicle::reasonOfGap(quint8 nodeId, ObjectKey key, size_t present) const
{
    const bool isLater = m_answers.firstFrom(nodeId, key, present) != nullptr;
    return static_cast<quint32>(isLater ? SdoAbort::RecordedLater : SdoAbort::NotRecorded);
}
