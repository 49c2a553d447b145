// SPDX-License-Identifier: MIT
#include "foreignclient.h"

#include "sdobits.h"

#include <canopen/cobid.h>
#include <canopen/sdoframe.h>

namespace Simulator {

namespace {

using CanOpen::ObjectKey;
using CanOpen::SdoResponse;

constexpr int longestTransfer = 20; // segments

/*! Whether another segment follows \a answer. */
bool hasMore(const QByteArray &answer)
{
    const SdoResponse response = CanOpen::sdoResponseOf(answer);
    return (response == SdoResponse::InitiateUpload && (firstByte(answer) & expeditedBit) == 0)
           || (response == SdoResponse::UploadSegment && (firstByte(answer) & segmentLastBit) == 0);
}

} // namespace

ForeignClient::ForeignClient(quint8 nodeId, const CanOpen::ObjectDictionary *dictionary)
    : m_nodeId(nodeId)
    , m_dictionary(dictionary)
{
}

ObjectKey ForeignClient::nextObject(ObjectKey busyObject)
{
    // Every fourth transfer is one that the server refuses; the others walk through the dictionary.
    constexpr int refusedEvery = 4;
    const int number = m_transfers++;
    const QVector<ObjectKey> keys = m_dictionary->keys();
    if (keys.isEmpty() || number % refusedEvery == refusedEvery - 1)
        return ObjectKey{0x5FFF, 0x7F};
    const ObjectKey key = keys.at(number % keys.size());
    return key == busyObject ? keys.at((number + 1) % keys.size()) : key;
}

QVector<QCanBusFrame> ForeignClient::readAll(const Faults::ForeignClient &fault, ObjectKey busyObject)
{
    // A server of its own: what the two clients do to each other's transfers is not this fault's business.
    CanOpen::ObjectDictionary dictionary = *m_dictionary;
    CanOpen::SdoServer server(m_nodeId, &dictionary);
    const quint32 requestId = CanOpen::sdoRequestCobId(m_nodeId);
    const ObjectKey key = fault.object ? *fault.object : nextObject(busyObject);

    QVector<QCanBusFrame> frames;
    QCanBusFrame request(requestId, CanOpen::makeSdoInitiateUploadRequest(key));
    bool toggle = false;
    for (int segment = 0; segment <= longestTransfer; ++segment) {
        frames.append(request);
        const QVector<QCanBusFrame> answer = server.handleFrame(request);
        frames += answer;
        if (answer.isEmpty() || !hasMore(answer.last().payload()))
            break;
        request = QCanBusFrame(requestId, CanOpen::makeSdoUploadSegmentRequest(toggle));
        toggle = !toggle;
    }
    return frames;
}

ObjectKey ForeignClient::longObject() const
{
    const QVector<ObjectKey> keys = m_dictionary->keys();
    for (const ObjectKey key : keys) {
        if (m_dictionary->find(key)->data.size() > CanOpen::sdoExpeditedSize)
            return key;
    }
    return keys.isEmpty() ? ObjectKey{} : keys.first();
}

QCanBusFrame ForeignClient::beginOnly(const Faults::AbandoningClient &fault) const
{
    const ObjectKey key = fault.object ? *fault.object : longObject();
    return QCanBusFrame(CanOpen::sdoRequestCobId(m_nodeId), CanOpen::makeSdoInitiateUploadRequest(key));
}

} // namespace Simulator
