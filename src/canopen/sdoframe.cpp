// SPDX-License-Identifier: MIT
#include "sdoframe.h"

#include <QCanBusFrame>

#include <algorithm>

namespace CanOpen {

namespace {

// Byte 0
constexpr int specifierShift = 5;
constexpr quint8 initiateSizeIndicated = 0x01;
constexpr quint8 initiateExpedited = 0x02;
constexpr int initiateUnusedShift = 2;
constexpr quint8 initiateUnusedMask = 0x03;
constexpr quint8 segmentLast = 0x01;
constexpr int segmentUnusedShift = 1;
constexpr quint8 segmentUnusedMask = 0x07;
constexpr quint8 segmentToggle = 0x10;
constexpr quint8 blockSubcommandMask = 0x03;
constexpr quint8 blockServerSubcommandMask = 0x01;
constexpr quint8 blockEndSubcommand = 0x01;
constexpr quint8 blockCrcSupported = 0x04;
constexpr quint8 blockSizeIndicated = 0x02;
constexpr int blockEndUnusedShift = 2;
constexpr quint8 blockEndUnusedMask = 0x07;
constexpr quint8 blockSegmentLast = 0x80;
constexpr quint8 blockSequenceMask = 0x7F;

// Places of the other fields
constexpr int indexAt = 1;
constexpr int subIndexAt = 3;
constexpr int initiateDataAt = 4;
constexpr int segmentDataAt = 1;
constexpr int blockSizeAt = 4;
constexpr int switchThresholdAt = 5;
constexpr int acknowledgedSequenceAt = 1;
constexpr int nextBlockSizeAt = 2;
constexpr int crcAt = 1;

quint16 word16At(const QByteArray &payload, int place)
{
    return static_cast<quint16>(byteAt(payload, place) | byteAt(payload, place + 1) << 8);
}

quint32 word32At(const QByteArray &payload, int place)
{
    return quint32(word16At(payload, place)) | quint32(word16At(payload, place + 2)) << 16;
}

quint8 specifierBits(quint8 specifier)
{
    return static_cast<quint8>(specifier << specifierShift);
}

QByteArray makeFrame(quint8 specifier, quint8 flags)
{
    QByteArray payload(sdoFrameSize, '\0');
    payload[0] = static_cast<char>(specifierBits(specifier) | flags);
    return payload;
}

QByteArray makeFrame(SdoRequest specifier, int flags = 0)
{
    return makeFrame(static_cast<quint8>(specifier), static_cast<quint8>(flags));
}

QByteArray makeFrame(SdoResponse specifier, int flags = 0)
{
    return makeFrame(static_cast<quint8>(specifier), static_cast<quint8>(flags));
}

void putByte(QByteArray &payload, int place, quint8 value)
{
    payload[place] = static_cast<char>(value);
}

void putWord16(QByteArray &payload, int place, quint16 value)
{
    putByte(payload, place, static_cast<quint8>(value & 0xFF));
    putByte(payload, place + 1, static_cast<quint8>(value >> 8));
}

void putWord32(QByteArray &payload, int place, quint32 value)
{
    putWord16(payload, place, static_cast<quint16>(value & 0xFFFF));
    putWord16(payload, place + 2, static_cast<quint16>(value >> 16));
}

QByteArray withKey(QByteArray payload, ObjectKey key)
{
    putWord16(payload, indexAt, key.index);
    putByte(payload, subIndexAt, key.subIndex);
    return payload;
}

QByteArray withData(QByteArray payload, int place, const QByteArray &data)
{
    const int count = std::min(data.size(), sdoFrameSize - place);
    std::copy_n(data.constBegin(), count, payload.begin() + place);
    return payload;
}

int unusedBytes(const QByteArray &data, int most)
{
    return most - std::min(data.size(), most);
}

SdoChunk chunkAt(const QByteArray &payload, int place, int count)
{
    SdoChunk chunk;
    std::copy_n(payload.constBegin() + place, count, chunk.bytes.begin());
    chunk.size = count;
    return chunk;
}

SdoInitiate readInitiate(const QByteArray &payload)
{
    const quint8 command = byteAt(payload, 0);
    SdoInitiate initiate;
    initiate.key = sdoKeyOf(payload);
    initiate.expedited = (command & initiateExpedited) != 0;
    initiate.sizeIndicated = (command & initiateSizeIndicated) != 0;
    if (initiate.expedited) {
        const int unused = initiate.sizeIndicated ? command >> initiateUnusedShift & initiateUnusedMask : 0;
        initiate.data = chunkAt(payload, initiateDataAt, sdoExpeditedSize - unused);
    }
    if (initiate.sizeIndicated) {
        initiate.size = initiate.expedited ? static_cast<quint32>(initiate.data.size)
                                           : word32At(payload, initiateDataAt);
    }
    return initiate;
}

SdoSegment readSegment(const QByteArray &payload)
{
    const quint8 command = byteAt(payload, 0);
    const int unused = command >> segmentUnusedShift & segmentUnusedMask;
    SdoSegment segment;
    segment.toggle = (command & segmentToggle) != 0;
    segment.last = (command & segmentLast) != 0;
    segment.data = chunkAt(payload, segmentDataAt, sdoSegmentSize - unused);
    return segment;
}

int expeditedFlags(const QByteArray &data)
{
    return unusedBytes(data, sdoExpeditedSize) << initiateUnusedShift | initiateExpedited
           | initiateSizeIndicated;
}

int segmentFlags(bool toggle, bool last, const QByteArray &data)
{
    return (toggle ? segmentToggle : 0) | unusedBytes(data, sdoSegmentSize) << segmentUnusedShift
           | (last ? segmentLast : 0);
}

bool is(const QByteArray &payload, SdoRequest specifier)
{
    return payload.size() == sdoFrameSize && sdoRequestOf(payload) == specifier;
}

bool is(const QByteArray &payload, SdoResponse specifier)
{
    return payload.size() == sdoFrameSize && sdoResponseOf(payload) == specifier;
}

} // namespace

bool isSdoFrame(const QCanBusFrame &frame)
{
    return frame.frameType() == QCanBusFrame::DataFrame && !frame.hasExtendedFrameFormat()
           && frame.payload().size() == sdoFrameSize;
}

SdoRequest sdoRequestOf(const QByteArray &payload)
{
    return static_cast<SdoRequest>(byteAt(payload, 0) >> specifierShift);
}

SdoResponse sdoResponseOf(const QByteArray &payload)
{
    return static_cast<SdoResponse>(byteAt(payload, 0) >> specifierShift);
}

SdoBlockUpload sdoBlockUploadOf(const QByteArray &payload)
{
    return static_cast<SdoBlockUpload>(byteAt(payload, 0) & blockSubcommandMask);
}

ObjectKey sdoKeyOf(const QByteArray &payload)
{
    return {word16At(payload, indexAt), byteAt(payload, subIndexAt)};
}

quint32 sdoAbortCodeOf(const QByteArray &payload)
{
    return word32At(payload, initiateDataAt);
}

bool sdoToggleOf(const QByteArray &payload)
{
    return (byteAt(payload, 0) & segmentToggle) != 0;
}

std::optional<SdoInitiate> readSdoInitiateUploadResponse(const QByteArray &payload)
{
    if (!is(payload, SdoResponse::InitiateUpload))
        return {};
    return readInitiate(payload);
}

std::optional<SdoInitiate> readSdoInitiateDownloadRequest(const QByteArray &payload)
{
    if (!is(payload, SdoRequest::InitiateDownload))
        return {};
    return readInitiate(payload);
}

std::optional<SdoSegment> readSdoUploadSegmentResponse(const QByteArray &payload)
{
    if (!is(payload, SdoResponse::UploadSegment))
        return {};
    return readSegment(payload);
}

std::optional<SdoSegment> readSdoDownloadSegmentRequest(const QByteArray &payload)
{
    if (!is(payload, SdoRequest::DownloadSegment))
        return {};
    return readSegment(payload);
}

std::optional<SdoBlockInitiateRequest> readSdoBlockInitiateRequest(const QByteArray &payload)
{
    if (!is(payload, SdoRequest::BlockUpload) || sdoBlockUploadOf(payload) != SdoBlockUpload::Initiate)
        return {};
    SdoBlockInitiateRequest request;
    request.key = sdoKeyOf(payload);
    request.crcSupported = (byteAt(payload, 0) & blockCrcSupported) != 0;
    request.blockSize = byteAt(payload, blockSizeAt);
    request.protocolSwitchThreshold = byteAt(payload, switchThresholdAt);
    return request;
}

std::optional<SdoBlockInitiateResponse> readSdoBlockInitiateResponse(const QByteArray &payload)
{
    if (!is(payload, SdoResponse::BlockUpload) || (byteAt(payload, 0) & blockServerSubcommandMask) != 0)
        return {};
    SdoBlockInitiateResponse response;
    response.key = sdoKeyOf(payload);
    response.crcSupported = (byteAt(payload, 0) & blockCrcSupported) != 0;
    response.sizeIndicated = (byteAt(payload, 0) & blockSizeIndicated) != 0;
    response.size = response.sizeIndicated ? word32At(payload, initiateDataAt) : 0;
    return response;
}

std::optional<SdoBlockSegment> readSdoBlockSegment(const QByteArray &payload)
{
    if (payload.size() != sdoFrameSize)
        return {};
    SdoBlockSegment segment;
    segment.last = (byteAt(payload, 0) & blockSegmentLast) != 0;
    segment.sequenceNumber = byteAt(payload, 0) & blockSequenceMask;
    segment.data = chunkAt(payload, segmentDataAt, sdoSegmentSize);
    return segment;
}

std::optional<SdoBlockAcknowledge> readSdoBlockAcknowledge(const QByteArray &payload)
{
    if (!is(payload, SdoRequest::BlockUpload) || sdoBlockUploadOf(payload) != SdoBlockUpload::Acknowledge)
        return {};
    return SdoBlockAcknowledge{byteAt(payload, acknowledgedSequenceAt), byteAt(payload, nextBlockSizeAt)};
}

std::optional<SdoBlockEnd> readSdoBlockEnd(const QByteArray &payload)
{
    const quint8 command = byteAt(payload, 0);
    if (!is(payload, SdoResponse::BlockUpload) || (command & blockServerSubcommandMask) != blockEndSubcommand)
        return {};
    return SdoBlockEnd{command >> blockEndUnusedShift & blockEndUnusedMask, word16At(payload, crcAt)};
}

QByteArray makeSdoAbort(ObjectKey key, quint32 code)
{
    // Client and server use the same specifier.
    QByteArray payload = withKey(makeFrame(SdoRequest::Abort), key);
    putWord32(payload, initiateDataAt, code);
    return payload;
}

QByteArray makeSdoInitiateUploadRequest(ObjectKey key)
{
    return withKey(makeFrame(SdoRequest::InitiateUpload), key);
}

QByteArray makeSdoExpeditedUploadResponse(ObjectKey key, const QByteArray &data)
{
    return withData(withKey(makeFrame(SdoResponse::InitiateUpload, expeditedFlags(data)), key),
                    initiateDataAt, data);
}

QByteArray makeSdoSegmentedUploadResponse(ObjectKey key, quint32 size)
{
    QByteArray payload = withKey(makeFrame(SdoResponse::InitiateUpload, initiateSizeIndicated), key);
    putWord32(payload, initiateDataAt, size);
    return payload;
}

QByteArray makeSdoUploadSegmentRequest(bool toggle)
{
    return makeFrame(SdoRequest::UploadSegment, toggle ? segmentToggle : 0);
}

QByteArray makeSdoUploadSegmentResponse(bool toggle, bool last, const QByteArray &data)
{
    return withData(makeFrame(SdoResponse::UploadSegment, segmentFlags(toggle, last, data)), segmentDataAt,
                    data);
}

QByteArray makeSdoExpeditedDownloadRequest(ObjectKey key, const QByteArray &data)
{
    return withData(withKey(makeFrame(SdoRequest::InitiateDownload, expeditedFlags(data)), key),
                    initiateDataAt, data);
}

QByteArray makeSdoSegmentedDownloadRequest(ObjectKey key, quint32 size)
{
    QByteArray payload = withKey(makeFrame(SdoRequest::InitiateDownload, initiateSizeIndicated), key);
    putWord32(payload, initiateDataAt, size);
    return payload;
}

QByteArray makeSdoInitiateDownloadResponse(ObjectKey key)
{
    return withKey(makeFrame(SdoResponse::InitiateDownload), key);
}

QByteArray makeSdoDownloadSegmentRequest(bool toggle, bool last, const QByteArray &data)
{
    return withData(makeFrame(SdoRequest::DownloadSegment, segmentFlags(toggle, last, data)), segmentDataAt,
                    data);
}

QByteArray makeSdoDownloadSegmentResponse(bool toggle)
{
    return makeFrame(SdoResponse::DownloadSegment, toggle ? segmentToggle : 0);
}

QByteArray makeSdoBlockInitiateRequest(const SdoBlockInitiateRequest &request)
{
    QByteArray payload = withKey(
        makeFrame(SdoRequest::BlockUpload, request.crcSupported ? blockCrcSupported : 0), request.key);
    putByte(payload, blockSizeAt, request.blockSize);
    putByte(payload, switchThresholdAt, request.protocolSwitchThreshold);
    return payload;
}

QByteArray makeSdoBlockInitiateResponse(const SdoBlockInitiateResponse &response)
{
    const int flags
        = (response.crcSupported ? blockCrcSupported : 0) | (response.sizeIndicated ? blockSizeIndicated : 0);
    QByteArray payload = withKey(makeFrame(SdoResponse::BlockUpload, flags), response.key);
    if (response.sizeIndicated)
        putWord32(payload, initiateDataAt, response.size);
    return payload;
}

QByteArray makeSdoBlockStart()
{
    return makeFrame(SdoRequest::BlockUpload, static_cast<int>(SdoBlockUpload::Start));
}

QByteArray makeSdoBlockSegment(bool last, quint8 sequenceNumber, const QByteArray &data)
{
    QByteArray payload(sdoFrameSize, '\0');
    putByte(payload, 0,
            static_cast<quint8>((last ? blockSegmentLast : 0) | (sequenceNumber & blockSequenceMask)));
    return withData(payload, segmentDataAt, data);
}

QByteArray makeSdoBlockAcknowledge(SdoBlockAcknowledge acknowledge)
{
    QByteArray payload = makeFrame(SdoRequest::BlockUpload, static_cast<int>(SdoBlockUpload::Acknowledge));
    putByte(payload, acknowledgedSequenceAt, acknowledge.lastSequenceNumber);
    putByte(payload, nextBlockSizeAt, acknowledge.nextBlockSize);
    return payload;
}

QByteArray makeSdoBlockEnd(SdoBlockEnd end)
{
    const int flags = (end.unusedBytes & blockEndUnusedMask) << blockEndUnusedShift | blockEndSubcommand;
    QByteArray payload = makeFrame(SdoResponse::BlockUpload, flags);
    putWord16(payload, crcAt, end.crc);
    return payload;
}

QByteArray makeSdoBlockEndResponse()
{
    return makeFrame(SdoRequest::BlockUpload, static_cast<int>(SdoBlockUpload::EndResponse));
}

quint16 sdoBlockCrc(const QByteArray &data)
{
    constexpr quint16 polynomial = 0x1021;
    quint16 crc = 0;
    for (const char byte : data) {
        crc = static_cast<quint16>(crc ^ static_cast<quint8>(byte) << 8);
        for (int bit = 0; bit < 8; ++bit)
            crc = static_cast<quint16>((crc & 0x8000) != 0 ? crc << 1 ^ polynomial : crc << 1);
    }
    return crc;
}

} // namespace CanOpen
