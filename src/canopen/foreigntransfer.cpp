// SPDX-License-Identifier: MIT
#include "foreigntransfer.h"

#include "sdoframe.h"

namespace CanOpen {

namespace {

constexpr quint8 blockDownloadEndResponse = 0xA1;

quint8 commandOf(const QByteArray &payload)
{
    return payload.isEmpty() ? quint8(0) : static_cast<quint8>(payload.at(0));
}

} // namespace

void ForeignTransfer::handleRequest(const QByteArray &payload)
{
    // The segments of a block download have any byte 0 but that of an abort, which would be sequence number
    // 0.
    if (m_phase == Phase::BlockDownload && commandOf(payload) != sdoAbortCommand)
        return;

    switch (sdoRequestOf(payload)) {
    case SdoRequest::InitiateUpload:
        m_isAbandoning = m_phase == Phase::UploadInitiated || m_phase == Phase::Upload;
        m_key = sdoKeyOf(payload);
        m_phase = Phase::UploadInitiated;
        break;
    case SdoRequest::UploadSegment:
        m_isAbandoning = false;
        m_phase = Phase::Upload;
        break;
    case SdoRequest::InitiateDownload: {
        m_key = sdoKeyOf(payload);
        const std::optional<SdoInitiate> request = readSdoInitiateDownloadRequest(payload);
        m_phase = request && request->expedited ? Phase::DownloadLast : Phase::DownloadInitiated;
        break;
    }
    case SdoRequest::DownloadSegment: {
        const std::optional<SdoSegment> segment = readSdoDownloadSegmentRequest(payload);
        m_phase = segment && segment->last ? Phase::DownloadLast : Phase::Download;
        break;
    }
    case SdoRequest::Abort:
        m_phase = Phase::None;
        break;
    case SdoRequest::BlockUpload:
        m_phase = sdoBlockUploadOf(payload) == SdoBlockUpload::EndResponse ? Phase::None : Phase::BlockUpload;
        break;
    case SdoRequest::BlockDownload:
        m_phase = Phase::BlockDownload;
        break;
    case SdoRequest::Reserved:
        break;
    }
}

void ForeignTransfer::handleResponse(const QByteArray &payload)
{
    const SdoResponse response = sdoResponseOf(payload);
    switch (m_phase) {
    case Phase::None:
        return;
    case Phase::BlockUpload:
        // Only an abort can be told from a segment here.
        if (commandOf(payload) == sdoAbortCommand)
            m_phase = Phase::None;
        return;
    case Phase::BlockDownload:
        // The server answers a block download with its own specifier only: anything else says that it is
        // over.
        if (commandOf(payload) == blockDownloadEndResponse || response != SdoResponse::BlockDownload)
            m_phase = Phase::None;
        return;
    case Phase::UploadInitiated: {
        const std::optional<SdoInitiate> answer = readSdoInitiateUploadResponse(payload);
        if (answer && answer->key == m_key)
            m_phase = answer->expedited ? Phase::None : Phase::Upload;
        break;
    }
    case Phase::Upload: {
        const std::optional<SdoSegment> segment = readSdoUploadSegmentResponse(payload);
        if (segment && segment->last)
            m_phase = Phase::None;
        break;
    }
    case Phase::DownloadInitiated:
        if (response == SdoResponse::InitiateDownload && sdoKeyOf(payload) == m_key)
            m_phase = Phase::Download;
        break;
    case Phase::DownloadLast:
        if (response == SdoResponse::DownloadSegment
            || (response == SdoResponse::InitiateDownload && sdoKeyOf(payload) == m_key))
            m_phase = Phase::None;
        break;
    case Phase::Download:
        break;
    }
    // The key of a transfer is unknown when its begin was not seen, so every abort may be its end.
    if (response == SdoResponse::Abort)
        m_phase = Phase::None;
}

} // namespace CanOpen
