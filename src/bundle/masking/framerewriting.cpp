// SPDX-License-Identifier: MIT
#include "framerewriting.h"

#include "masking.h"

#include <canopen/sdoframe.h>
#include <system/amounts.h>
#include <trace/transfers/sdotransfer.h>

#include <algorithm>

using namespace CanOpen;

namespace {

constexpr int dataAt = 4;    // byte of an initiate frame
constexpr int segmentAt = 1; // byte of a segment
constexpr int checksumAt = 1;
constexpr quint8 expeditedBit = 0x02;
constexpr quint8 sizeBit = 0x01;
constexpr int unusedShift = 2;
constexpr quint8 unusedMask = 0x03;
constexpr quint8 sequenceMask = 0x7F;
constexpr quint8 uploadRequestCommand = 0x40;
constexpr quint8 downloadAnswerCommand = 0x60;
constexpr char filler = '.';

QByteArray payloadOf(const TraceFrame &frame)
{
    return QByteArray(reinterpret_cast<const char *>(frame.bytes.data()), sdoFrameSize);
}

/*! How many bytes of data an expedited initiate frame has; 0 when it is none. */
int expeditedSize(const TraceFrame &frame)
{
    const quint8 command = frame.bytes[0];
    if ((command & expeditedBit) == 0)
        return 0;
    return (command & sizeBit) != 0 ? sdoExpeditedSize - ((command >> unusedShift) & unusedMask)
                                    : sdoExpeditedSize;
}

bool isEmptyBehind(const TraceFrame &frame, int first)
{
    return std::all_of(frame.bytes.begin() + first, frame.bytes.end(), [](quint8 byte) { return byte == 0; });
}

/*! Whether the first byte is one of an initiate frame with data in it, of either direction. */
bool isExpedited(const TraceFrame &frame)
{
    const auto kind = sdoRequestOf(payloadOf(frame)); // 1: download request, 2: upload answer
    return (kind == SdoRequest::InitiateDownload || kind == SdoRequest::InitiateUpload)
           && expeditedSize(frame) > 0;
}

} // namespace

void FrameRewriting::expect(const SdoTransfer &transfer, const QByteArray &masked)
{
    if (transfer.protocol == SdoTransfer::Protocol::Expedited)
        return; // its one frame says all
    Rewritten rewritten;
    rewritten.original = transfer.data;
    rewritten.masked = masked;
    m_transfers.insert(transfer.number, rewritten);
}

void FrameRewriting::rewrite(TraceFrame *frame, const SdoTransfers::Place &place)
{
    if (place.step == SdoStep::Stray)
        return rewriteStray(frame);
    if (place.step == SdoStep::UploadAnswer || place.step == SdoStep::DownloadRequest)
        return rewriteInitiate(frame);
    const auto transfer = m_transfers.find(place.transfer);
    if (transfer == m_transfers.end())
        return;
    switch (place.step) {
    case SdoStep::UploadSegment:
    case SdoStep::DownloadSegment:
        return rewriteSegment(frame, &*transfer);
    case SdoStep::BlockUploadSegment:
    case SdoStep::BlockDownloadSegment:
        return rewriteBlockSegment(frame, &*transfer);
    case SdoStep::BlockUploadAcknowledge:
    case SdoStep::BlockDownloadAcknowledge:
        return acknowledge(*frame, &*transfer);
    case SdoStep::BlockUploadEnd:
    case SdoStep::BlockDownloadEnd:
        return rewriteChecksum(frame, *transfer);
    default:
        return;
    }
}

void FrameRewriting::rewriteInitiate(TraceFrame *frame)
{
    const int size = expeditedSize(*frame);
    if (size == 0)
        return;
    const QByteArray payload = payloadOf(*frame);
    const QByteArray masked = m_masking->value(sdoKeyOf(payload), payload.mid(dataAt, size));
    std::copy(masked.begin(), masked.end(), frame->bytes.begin() + dataAt);
    // What stands behind may be left over from another value.
    if (Masking::isSecret(sdoKeyOf(payload)))
        std::fill(frame->bytes.begin() + dataAt + size, frame->bytes.end(), quint8(0));
}

/*! Of a transfer whose beginning is not in the trace: nobody knows of which object a segment is. */
void FrameRewriting::rewriteStray(TraceFrame *frame)
{
    const quint8 command = frame->bytes[0];
    const bool isHarmless = command == sdoAbortCommand
                            || ((command == uploadRequestCommand || command == downloadAnswerCommand)
                                && isEmptyBehind(*frame, dataAt));
    if (isHarmless)
        return;
    if (isExpedited(*frame))
        rewriteInitiate(frame);
    else
        std::fill(frame->bytes.begin() + segmentAt, frame->bytes.end(), quint8(0));
}

/*! The \a size bytes of a segment that begins at \a at of the value; what is not as it came at the end is filled. */
void FrameRewriting::put(TraceFrame *frame, int size, int at, const Rewritten &transfer)
{
    for (int i = 0; i < size; ++i) {
        quint8 &byte = frame->bytes.at(std::size_t(segmentAt) + std::size_t(i));
        const bool isThere
            = at + i < transfer.masked.size() && transfer.original.at(at + i) == static_cast<char>(byte);
        byte = static_cast<quint8>(isThere ? transfer.masked.at(at + i) : filler);
    }
    std::fill(frame->bytes.begin() + segmentAt + size, frame->bytes.end(), quint8(0));
}

void FrameRewriting::rewriteSegment(TraceFrame *frame, Rewritten *transfer)
{
    const TraceFrame original = *frame;
    const bool isCopy = transfer->done > 0 && transfer->last.bytes == original.bytes;
    const QByteArray payload = payloadOf(original);
    const auto segment = readSdoUploadSegmentResponse(payload); // both directions look the same
    const int size = segment ? segment->data.size : sdoSegmentSize;
    const int at = isCopy ? transfer->lastAt : transfer->done;
    put(frame, size, at, *transfer);
    transfer->last = original;
    transfer->lastAt = at;
    transfer->done = at + size;
}

void FrameRewriting::rewriteBlockSegment(TraceFrame *frame, Rewritten *transfer)
{
    const int number = frame->bytes[0] & sequenceMask;
    const int at = transfer->blockAt + (number - 1) * sdoSegmentSize;
    const int rest = transfer->masked.size() - at;
    // The last one has bytes that do not count; the end says how many.
    put(frame, number > 0 ? qBound(0, rest, sdoSegmentSize) : 0, at, *transfer);
}

void FrameRewriting::acknowledge(const TraceFrame &frame, Rewritten *transfer)
{
    transfer->blockAt += (frame.bytes[1] & sequenceMask) * sdoSegmentSize;
}

/*! A checksum that was right is right again, and a wrong one wrong. */
void FrameRewriting::rewriteChecksum(TraceFrame *frame, const Rewritten &transfer)
{
    auto &low = frame->bytes[checksumAt];
    auto &high = frame->bytes[checksumAt + 1];
    if (low == 0 && high == 0)
        return; // without one
    const quint16 change = sdoBlockCrc(transfer.original) ^ sdoBlockCrc(transfer.masked);
    low = static_cast<quint8>(low ^ (change & 0xFF));
    high = static_cast<quint8>(high ^ (change >> Bits::ofByte));
}
