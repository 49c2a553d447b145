// SPDX-License-Identifier: MIT
#include "sdoblockdownload.h"

#include <QtEndian>

namespace CanOpen {

namespace {

constexpr quint8 clientSubcommandMask = 0x01;
constexpr quint8 clientEnd = 0x01;
constexpr quint8 serverSubcommandMask = 0x03;
constexpr quint8 serverInitiate = 0x00;
constexpr quint8 serverEnd = 0x01;
constexpr quint8 serverAcknowledge = 0x02;
constexpr quint8 crcBit = 0x04;
constexpr quint8 sizeBit = 0x02;
constexpr int unusedShift = 2;
constexpr quint8 unusedMask = 0x07;

bool isRequest(const QByteArray &payload, quint8 subcommand)
{
    return payload.size() == sdoFrameSize && sdoRequestOf(payload) == SdoRequest::BlockDownload
           && (byteAt(payload, 0) & clientSubcommandMask) == subcommand;
}

bool isResponse(const QByteArray &payload, quint8 subcommand)
{
    return payload.size() == sdoFrameSize && sdoResponseOf(payload) == SdoResponse::BlockDownload
           && (byteAt(payload, 0) & serverSubcommandMask) == subcommand;
}

} // namespace

std::optional<SdoBlockDownloadRequest> readSdoBlockDownloadRequest(const QByteArray &payload)
{
    if (!isRequest(payload, 0))
        return {};
    SdoBlockDownloadRequest request;
    request.key = sdoKeyOf(payload);
    request.crcSupported = (byteAt(payload, 0) & crcBit) != 0;
    request.sizeIndicated = (byteAt(payload, 0) & sizeBit) != 0;
    request.size = request.sizeIndicated ? qFromLittleEndian<quint32>(payload.constData() + 4) : 0;
    return request;
}

std::optional<SdoBlockDownloadResponse> readSdoBlockDownloadResponse(const QByteArray &payload)
{
    if (!isResponse(payload, serverInitiate))
        return {};
    return SdoBlockDownloadResponse{sdoKeyOf(payload), (byteAt(payload, 0) & crcBit) != 0,
                                    byteAt(payload, 4)};
}

std::optional<SdoBlockAcknowledge> readSdoBlockDownloadAcknowledge(const QByteArray &payload)
{
    if (!isResponse(payload, serverAcknowledge))
        return {};
    return SdoBlockAcknowledge{byteAt(payload, 1), byteAt(payload, 2)};
}

std::optional<SdoBlockEnd> readSdoBlockDownloadEnd(const QByteArray &payload)
{
    if (!isRequest(payload, clientEnd))
        return {};
    return SdoBlockEnd{byteAt(payload, 0) >> unusedShift & unusedMask,
                       qFromLittleEndian<quint16>(payload.constData() + 1)};
}

bool isSdoBlockDownloadEndResponse(const QByteArray &payload)
{
    return isResponse(payload, serverEnd);
}

} // namespace CanOpen
