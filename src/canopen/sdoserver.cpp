// SPDX-License-Identifier: MIT
#include "sdoserver.h"

#include "cobid.h"
#include "sdoframe.h"

#include <algorithm>
#include <limits>

namespace CanOpen {

namespace {

// A client may announce 4 GB; no object of variable length here takes more than this.
constexpr int maximumDownloadSize = 64 * 1024; // bytes

bool isInteger(DataType type)
{
    switch (type) {
    case DataType::Boolean:
    case DataType::Integer8:
    case DataType::Integer16:
    case DataType::Integer32:
    case DataType::Integer24:
    case DataType::Integer40:
    case DataType::Integer48:
    case DataType::Integer56:
    case DataType::Integer64:
    case DataType::Unsigned8:
    case DataType::Unsigned16:
    case DataType::Unsigned32:
    case DataType::Unsigned24:
    case DataType::Unsigned40:
    case DataType::Unsigned48:
    case DataType::Unsigned56:
    case DataType::Unsigned64:
        return true;
    default:
        return false;
    }
}

std::optional<SdoAbort> checkLimits(const ObjectEntry &entry, const QByteArray &data)
{
    const std::optional<QVariant> value
        = isInteger(entry.type) ? decodeValue(entry.type, data) : std::nullopt;
    if (!value)
        return std::nullopt;
    if (entry.type == DataType::Boolean && value->toUInt() > 1)
        return SdoAbort::ValueTooHigh;
    if (entry.type == DataType::Unsigned64
        && value->toULongLong() > quint64(std::numeric_limits<qint64>::max()))
        return entry.highLimit ? std::optional<SdoAbort>(SdoAbort::ValueTooHigh) : std::nullopt;
    const qint64 number = value->toLongLong();
    if (entry.highLimit && number > *entry.highLimit)
        return SdoAbort::ValueTooHigh;
    if (entry.lowLimit && number < *entry.lowLimit)
        return SdoAbort::ValueTooLow;
    return std::nullopt;
}

} // namespace

SdoServer::SdoServer(quint8 nodeId, ObjectDictionary *dictionary)
    : m_nodeId(nodeId)
    , m_dictionary(dictionary)
{
}

QVector<QCanBusFrame> SdoServer::handleFrame(const QCanBusFrame &frame)
{
    if (!isSdoFrame(frame) || frame.frameId() != sdoRequestCobId(m_nodeId))
        return {};
    QVector<QCanBusFrame> frames;
    const QVector<QByteArray> payloads = answer(frame.payload());
    frames.reserve(payloads.size());
    for (const QByteArray &payload : payloads)
        frames.append(QCanBusFrame(sdoResponseCobId(m_nodeId), payload));
    return frames;
}

void SdoServer::reset()
{
    m_transfer = Transfer::None;
    m_data.clear();
}

QVector<QByteArray> SdoServer::answer(const QByteArray &request)
{
    switch (sdoRequestOf(request)) {
    case SdoRequest::InitiateUpload:
        return initiateUpload(sdoKeyOf(request));
    case SdoRequest::UploadSegment:
        return uploadSegment(request);
    case SdoRequest::InitiateDownload:
        return initiateDownload(request);
    case SdoRequest::DownloadSegment:
        return downloadSegment(request);
    case SdoRequest::BlockUpload:
        return blockUpload(request);
    case SdoRequest::Abort:
        reset();
        return {};
    case SdoRequest::BlockDownload:
    case SdoRequest::Reserved:
        break;
    }
    return abort(m_transfer != Transfer::None ? m_key : sdoKeyOf(request), SdoAbort::CommandSpecifierUnknown);
}

QVector<QByteArray> SdoServer::abort(ObjectKey key, SdoAbort code)
{
    reset();
    return {makeSdoAbort(key, static_cast<quint32>(code))};
}

std::optional<SdoAbort> SdoServer::startReading(ObjectKey key)
{
    // What was half open is replaced: a client that starts anew has given the old transfer up.
    reset();
    m_key = key;
    const ObjectEntry *entry = m_dictionary->find(key);
    if (entry == nullptr)
        return m_dictionary->containsIndex(key.index) ? SdoAbort::SubIndexDoesNotExist
                                                      : SdoAbort::ObjectDoesNotExist;
    if (entry->access == Access::WriteOnly)
        return SdoAbort::WriteOnly;
    m_data = entry->data;
    m_position = 0;
    m_toggle = false;
    return std::nullopt;
}

QVector<QByteArray> SdoServer::initiateUpload(ObjectKey key)
{
    if (const std::optional<SdoAbort> code = startReading(key))
        return abort(key, *code);
    // An expedited answer cannot be empty, so an empty text goes as one empty segment.
    if (!m_isSegmented && !m_data.isEmpty() && m_data.size() <= sdoExpeditedSize) {
        const QByteArray response = makeSdoExpeditedUploadResponse(key, m_data);
        reset();
        return {response};
    }
    m_transfer = Transfer::Upload;
    return {makeSdoSegmentedUploadResponse(key, static_cast<quint32>(m_data.size()))};
}

QVector<QByteArray> SdoServer::uploadSegment(const QByteArray &request)
{
    if (m_transfer == Transfer::None)
        return abort({}, SdoAbort::CommandSpecifierUnknown);
    if (m_transfer != Transfer::Upload)
        return abort(m_key, SdoAbort::CommandSpecifierUnknown);
    if (sdoToggleOf(request) != m_toggle)
        return abort(m_key, SdoAbort::ToggleBitNotAlternated);

    const QByteArray data = m_data.mid(m_position, m_segmentSize);
    m_position += data.size();
    const bool isLast = m_position >= m_data.size();
    const QByteArray response = makeSdoUploadSegmentResponse(m_toggle, isLast, data);
    m_toggle = !m_toggle;
    if (isLast)
        reset();
    return {response};
}

std::optional<SdoAbort> SdoServer::checkLength(const ObjectEntry &entry, int size) const
{
    const int expected = byteSize(entry.type);
    if (expected == 0)
        return size > maximumDownloadSize ? std::optional<SdoAbort>(SdoAbort::OutOfMemory) : std::nullopt;
    if (size > expected)
        return SdoAbort::LengthTooHigh;
    return size < expected ? std::optional<SdoAbort>(SdoAbort::LengthTooLow) : std::nullopt;
}

std::optional<SdoAbort> SdoServer::store(ObjectKey key, const QByteArray &data)
{
    const ObjectEntry *entry = m_dictionary->find(key);
    if (entry == nullptr)
        return SdoAbort::ObjectDoesNotExist;
    if (const std::optional<SdoAbort> code = checkLength(*entry, data.size()))
        return code;
    if (const std::optional<SdoAbort> code = checkLimits(*entry, data))
        return code;
    m_dictionary->setData(key, data);
    return std::nullopt;
}

QVector<QByteArray> SdoServer::initiateDownload(const QByteArray &request)
{
    reset();
    const std::optional<SdoInitiate> initiate = readSdoInitiateDownloadRequest(request);
    if (!initiate)
        return abort(sdoKeyOf(request), SdoAbort::CommandSpecifierUnknown);
    const ObjectKey key = initiate->key;
    const ObjectEntry *entry = m_dictionary->find(key);
    if (entry == nullptr)
        return abort(key, m_dictionary->containsIndex(key.index) ? SdoAbort::SubIndexDoesNotExist
                                                                 : SdoAbort::ObjectDoesNotExist);
    if (entry->access == Access::ReadOnly || entry->access == Access::Constant)
        return abort(key, SdoAbort::ReadOnly);

    if (initiate->expedited) {
        QByteArray data = initiate->data.toByteArray();
        // Without a size the type tells how many of the four bytes count.
        const int expected = byteSize(entry->type);
        if (!initiate->sizeIndicated && expected > 0 && expected < data.size())
            data.truncate(expected);
        if (const std::optional<SdoAbort> code = store(key, data))
            return abort(key, *code);
        return {makeSdoInitiateDownloadResponse(key)};
    }

    if (initiate->sizeIndicated) {
        const int size = static_cast<int>(std::min<quint32>(initiate->size, maximumDownloadSize + 1));
        if (const std::optional<SdoAbort> code = checkLength(*entry, size))
            return abort(key, *code);
    }
    m_transfer = Transfer::Download;
    m_key = key;
    m_toggle = false;
    m_size = initiate->sizeIndicated ? std::optional<quint32>(initiate->size) : std::nullopt;
    return {makeSdoInitiateDownloadResponse(key)};
}

QVector<QByteArray> SdoServer::downloadSegment(const QByteArray &request)
{
    if (m_transfer == Transfer::None)
        return abort({}, SdoAbort::CommandSpecifierUnknown);
    const std::optional<SdoSegment> segment = readSdoDownloadSegmentRequest(request);
    if (m_transfer != Transfer::Download || !segment)
        return abort(m_key, SdoAbort::CommandSpecifierUnknown);
    if (segment->toggle != m_toggle)
        return abort(m_key, SdoAbort::ToggleBitNotAlternated);

    m_data.append(segment->data.toByteArray());
    const ObjectEntry *entry = m_dictionary->find(m_key);
    const int expected = entry != nullptr ? byteSize(entry->type) : 0;
    if (expected == 0 && m_data.size() > maximumDownloadSize)
        return abort(m_key, SdoAbort::OutOfMemory);
    if ((expected > 0 && m_data.size() > expected) || (m_size && quint32(m_data.size()) > *m_size))
        return abort(m_key, SdoAbort::LengthTooHigh);

    const QByteArray response = makeSdoDownloadSegmentResponse(m_toggle);
    m_toggle = !m_toggle;
    if (!segment->last)
        return {response};
    if (m_size && quint32(m_data.size()) < *m_size)
        return abort(m_key, SdoAbort::LengthTooLow);
    if (const std::optional<SdoAbort> code = store(m_key, m_data))
        return abort(m_key, *code);
    reset();
    return {response};
}

QVector<QByteArray> SdoServer::blockUpload(const QByteArray &request)
{
    switch (sdoBlockUploadOf(request)) {
    case SdoBlockUpload::Initiate:
        return initiateBlockUpload(request);
    case SdoBlockUpload::Start:
        if (m_transfer == Transfer::BlockUploadStart)
            return nextBlock();
        break;
    case SdoBlockUpload::Acknowledge:
        if (m_transfer == Transfer::BlockUpload)
            return acknowledgeBlock(request);
        break;
    case SdoBlockUpload::EndResponse:
        if (m_transfer == Transfer::BlockUploadEnd) {
            reset();
            return {};
        }
        break;
    }
    return abort(m_transfer != Transfer::None ? m_key : ObjectKey{}, SdoAbort::CommandSpecifierUnknown);
}

QVector<QByteArray> SdoServer::initiateBlockUpload(const QByteArray &request)
{
    const ObjectKey key = sdoKeyOf(request);
    const std::optional<SdoBlockInitiateRequest> initiate = readSdoBlockInitiateRequest(request);
    if (!initiate)
        return abort(key, SdoAbort::CommandSpecifierUnknown);
    if (const std::optional<SdoAbort> code = startReading(key))
        return abort(key, *code);
    if (initiate->blockSize < 1 || initiate->blockSize > sdoMaximumBlockSize)
        return abort(key, SdoAbort::InvalidBlockSize);
    // A client that names a threshold allows the plain protocol for values up to it.
    if (initiate->protocolSwitchThreshold > 0 && m_data.size() <= initiate->protocolSwitchThreshold)
        return initiateUpload(key);

    m_transfer = Transfer::BlockUploadStart;
    m_blockSize = initiate->blockSize;
    m_hasCrc = initiate->crcSupported;
    SdoBlockInitiateResponse response;
    response.key = key;
    response.crcSupported = true;
    response.sizeIndicated = true;
    response.size = static_cast<quint32>(m_data.size());
    return {makeSdoBlockInitiateResponse(response)};
}

QVector<QByteArray> SdoServer::nextBlock()
{
    m_transfer = Transfer::BlockUpload;
    m_blockSent = 0;
    QVector<QByteArray> segments;
    int position = m_position;
    do {
        const QByteArray data = m_data.mid(position, sdoSegmentSize);
        position += data.size();
        ++m_blockSent;
        segments.append(
            makeSdoBlockSegment(position >= m_data.size(), static_cast<quint8>(m_blockSent), data));
    } while (m_blockSent < m_blockSize && position < m_data.size());
    return segments;
}

QVector<QByteArray> SdoServer::acknowledgeBlock(const QByteArray &request)
{
    const std::optional<SdoBlockAcknowledge> acknowledge = readSdoBlockAcknowledge(request);
    if (!acknowledge)
        return abort(m_key, SdoAbort::CommandSpecifierUnknown);
    if (acknowledge->lastSequenceNumber > m_blockSent)
        return abort(m_key, SdoAbort::InvalidSequenceNumber);
    if (acknowledge->nextBlockSize < 1 || acknowledge->nextBlockSize > sdoMaximumBlockSize)
        return abort(m_key, SdoAbort::InvalidBlockSize);

    // Segments that the client did not get go again as the first ones of the next block.
    m_position = std::min(m_position + acknowledge->lastSequenceNumber * sdoSegmentSize, m_data.size());
    m_blockSize = acknowledge->nextBlockSize;
    const bool wasLastSent = acknowledge->lastSequenceNumber > 0 && m_position == m_data.size();
    return wasLastSent ? blockEnd() : nextBlock();
}

QVector<QByteArray> SdoServer::blockEnd()
{
    m_transfer = Transfer::BlockUploadEnd;
    SdoBlockEnd end;
    const int rest = m_data.size() % sdoSegmentSize;
    end.unusedBytes = rest == 0 && !m_data.isEmpty() ? 0 : sdoSegmentSize - rest;
    end.crc = m_hasCrc ? sdoBlockCrc(m_data) : quint16(0);
    return {makeSdoBlockEnd(end)};
}

} // namespace CanOpen
