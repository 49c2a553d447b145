// SPDX-License-Identifier: MIT
#include "sdodistortion.h"

#include "sdobits.h"

#include <canopen/sdoframe.h>

#include <QtEndian>

namespace Simulator {

namespace {

using CanOpen::SdoResponse;

bool isInitiateAnswer(const QByteArray &payload)
{
    const SdoResponse response = CanOpen::sdoResponseOf(payload);
    return response == SdoResponse::InitiateUpload || response == SdoResponse::InitiateDownload;
}

bool isSegmentAnswer(const QByteArray &payload)
{
    const SdoResponse response = CanOpen::sdoResponseOf(payload);
    return response == SdoResponse::UploadSegment || response == SdoResponse::DownloadSegment;
}

/*! \a bits of \a byte, the lowest at \a shift, become \a value; an empty one changes nothing. */
quint8 withBits(quint8 byte, std::optional<int> value, quint8 bits, int shift)
{
    return value ? static_cast<quint8>((byte & ~bits) | (*value << shift & bits)) : byte;
}

void setSize(QByteArray &payload, quint32 size)
{
    constexpr int sizePlace = 4;
    qToLittleEndian(size, payload.data() + sizePlace);
}

void distortInitiate(const Faults::SizeBits &fault, QByteArray &payload)
{
    quint8 command = firstByte(payload);
    if (fault.size && (command & expeditedBit) == 0)
        setSize(payload, *fault.size);
    command = withBits(command, fault.expedited, expeditedBit, 1);
    command = withBits(command, fault.sizeIndicated, sizeIndicatedBit, 0);
    setFirstByte(payload, withBits(command, fault.unused, unusedBits, 2));
}

void distortLastSegment(const Faults::SizeBits &fault, QByteArray &payload)
{
    setFirstByte(payload, withBits(firstByte(payload), fault.lastUnused, segmentUnusedBits, 1));
}

void distortSize(const Faults::SizeBits &fault, QByteArray &payload)
{
    const SdoResponse response = CanOpen::sdoResponseOf(payload);
    if (response == SdoResponse::InitiateUpload)
        distortInitiate(fault, payload);
    else if (response == SdoResponse::UploadSegment && (firstByte(payload) & segmentLastBit) != 0)
        distortLastSegment(fault, payload);
}

void hideSize(QByteArray &payload)
{
    const quint8 command = firstByte(payload);
    if (CanOpen::sdoResponseOf(payload) != SdoResponse::InitiateUpload || (command & expeditedBit) != 0)
        return;
    setFirstByte(payload, static_cast<quint8>(command & ~sizeIndicatedBit));
    setSize(payload, 0);
}

/*! Whether the first frame of an answer is the end of a block upload: a block begins with its segment 1. */
bool isBlockEnd(const QByteArray &payload)
{
    constexpr quint8 sequenceBits = 0x7F;
    return (firstByte(payload) & sequenceBits) != 1;
}

} // namespace

void distortAnswers(const FaultList &faults, CanOpen::ObjectKey object, qint64 segment,
                    QVector<QCanBusFrame> &answers)
{
    const auto *toggle = faults.find<Faults::WrongToggle>(object);
    const auto *multiplexer = faults.find<Faults::WrongMultiplexer>(object);
    const auto *segmented = faults.find<Faults::Segmented>(object);
    const auto *size = faults.find<Faults::SizeBits>(object);
    for (QCanBusFrame &frame : answers) {
        QByteArray payload = frame.payload();
        if (toggle != nullptr && isSegmentAnswer(payload)
            && (toggle->segment == 0 || toggle->segment == segment))
            setFirstByte(payload, static_cast<quint8>(firstByte(payload) ^ toggleBit));
        if (multiplexer != nullptr && isInitiateAnswer(payload))
            payload[1] = static_cast<char>(payload.at(1) + 1);
        if (segmented != nullptr && !segmented->announcesSize)
            hideSize(payload);
        if (size != nullptr)
            distortSize(*size, payload);
        frame.setPayload(payload);
    }
}

void distortBlock(const FaultList &faults, CanOpen::ObjectKey object, QVector<QCanBusFrame> &answers)
{
    const auto *fault = faults.find<Faults::BlockUpload>(object);
    if (fault == nullptr || answers.isEmpty())
        return;
    QByteArray first = answers.first().payload();
    if (isBlockEnd(first)) {
        constexpr int crcPlace = 1;
        if (fault->wrongCrc)
            first[crcPlace] = static_cast<char>(first.at(crcPlace) ^ 0x01);
        answers.first().setPayload(first);
        return;
    }
    if (fault->wrongSequence > 0 && fault->wrongSequence <= answers.size()) {
        QCanBusFrame &segment = answers[fault->wrongSequence - 1];
        QByteArray payload = segment.payload();
        setFirstByte(payload, static_cast<quint8>(firstByte(payload) + 1));
        segment.setPayload(payload);
    }
    if (fault->lostSegment > 0 && fault->lostSegment <= answers.size())
        answers.removeAt(fault->lostSegment - 1);
}

} // namespace Simulator
