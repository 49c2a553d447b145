// SPDX-License-Identifier: MIT
#include "frameparts.h"

#include "framewords.h"
#include "pdolayout.h"
#include "pdowords.h"
#include "valuetext.h"

#include <canopen/emergency.h>
#include <canopen/hexadecimal.h>
#include <canopen/sdoabort.h>
#include <canopen/sdoblockdownload.h>
#include <canopen/sdoframe.h>
#include <live/core/liveframe.h>
#include <trace/core/traceframe.h>

#include <QCanBusFrame>

#include <iterator>

using namespace CanOpen;

namespace {

constexpr int byteBits = 8;

QByteArray payloadOf(const TraceFrame &frame)
{
    return QByteArray(reinterpret_cast<const char *>(frame.bytes.data()), frame.length);
}

// In the order of SdoStep
constexpr const char *stepNames[] = {
    QT_TRANSLATE_NOOP("FrameParts", "SDO"),
    QT_TRANSLATE_NOOP("FrameParts", "SDO"),
    QT_TRANSLATE_NOOP("FrameParts", "request to read"),
    QT_TRANSLATE_NOOP("FrameParts", "answer to a read"),
    QT_TRANSLATE_NOOP("FrameParts", "request for a segment"),
    QT_TRANSLATE_NOOP("FrameParts", "segment of a read"),
    QT_TRANSLATE_NOOP("FrameParts", "request to write"),
    QT_TRANSLATE_NOOP("FrameParts", "answer to a write"),
    QT_TRANSLATE_NOOP("FrameParts", "segment of a write"),
    QT_TRANSLATE_NOOP("FrameParts", "answer to a segment of a write"),
    QT_TRANSLATE_NOOP("FrameParts", "request to read in blocks"),
    QT_TRANSLATE_NOOP("FrameParts", "answer to a read in blocks"),
    QT_TRANSLATE_NOOP("FrameParts", "start of the blocks"),
    QT_TRANSLATE_NOOP("FrameParts", "segment of a read"),
    QT_TRANSLATE_NOOP("FrameParts", "acknowledge of a block"),
    QT_TRANSLATE_NOOP("FrameParts", "end of the blocks"),
    QT_TRANSLATE_NOOP("FrameParts", "end of the blocks confirmed"),
    QT_TRANSLATE_NOOP("FrameParts", "request to write in blocks"),
    QT_TRANSLATE_NOOP("FrameParts", "answer to a write in blocks"),
    QT_TRANSLATE_NOOP("FrameParts", "segment of a write"),
    QT_TRANSLATE_NOOP("FrameParts", "acknowledge of a block"),
    QT_TRANSLATE_NOOP("FrameParts", "end of the blocks"),
    QT_TRANSLATE_NOOP("FrameParts", "end of the blocks confirmed"),
    QT_TRANSLATE_NOOP("FrameParts", "abort by the client"),
    QT_TRANSLATE_NOOP("FrameParts", "abort by the server"),
};
static_assert(std::size(stepNames) == static_cast<std::size_t>(SdoStep::ServerAbort) + 1,
              "one name for each step");

const char *nameOf(SdoStep step)
{
    return stepNames[static_cast<std::size_t>(step)];
}

bool hasObject(SdoStep step)
{
    switch (step) {
    case SdoStep::UploadRequest:
    case SdoStep::UploadAnswer:
    case SdoStep::DownloadRequest:
    case SdoStep::DownloadAnswer:
    case SdoStep::BlockUploadRequest:
    case SdoStep::BlockUploadAnswer:
    case SdoStep::BlockDownloadRequest:
    case SdoStep::BlockDownloadAnswer:
    case SdoStep::ClientAbort:
    case SdoStep::ServerAbort:
        return true;
    default:
        return false;
    }
}

} // namespace

QVector<FramePart> FrameParts::single(const TraceFrame &frame)
{
    return frame.size() == 0 ? QVector<FramePart>() : QVector<FramePart>{{0, frame.size(), tr("data")}};
}

QVector<FramePart> FrameParts::of(const TraceFrame &frame, const FrameContext &context) const
{
    if (frame.isError())
        return ofError(frame);
    if (frame.size() == 0)
        return {};
    if (context.layout != nullptr)
        return ofPdo(frame, *context.layout);
    switch (frame.isExtended() ? FrameKind::Other : frameKindOf(frame.id)) {
    case FrameKind::Nmt:
        return ofNmt(frame);
    case FrameKind::Sync:
        return {{0, frame.size(), frame.size() == 1 ? tr("counter %1").arg(frame.bytes[0]) : tr("data")}};
    case FrameKind::Time:
        return ofTime(frame);
    case FrameKind::Emergency:
        return ofEmergency(frame);
    case FrameKind::Sdo:
        return ofSdo(frame, context.step);
    case FrameKind::Heartbeat:
        return {{0, frame.size(), FrameWords::line(frame)}};
    default:
        return single(frame);
    }
}

QVector<FramePart> FrameParts::ofNmt(const TraceFrame &frame)
{
    if (frame.size() != 2)
        return single(frame);
    const quint8 nodeId = frame.bytes[1];
    return {{0, 1, tr("command: %1").arg(FrameWords::command(frame.bytes[0]))},
            {1, 1, nodeId == 0 ? tr("all nodes") : tr("node %1").arg(nodeId)}};
}

QVector<FramePart> FrameParts::ofTime(const TraceFrame &frame)
{
    const std::optional<QDateTime> time = FrameWords::timeOfDay(frame);
    if (!time)
        return single(frame);
    return {{0, 4, tr("time of day: %1").arg(time->time().toString(QStringLiteral("HH:mm:ss.zzz")))},
            {4, 2, tr("day: %1").arg(time->date().toString(Qt::ISODate))}};
}

QVector<FramePart> FrameParts::ofEmergency(const TraceFrame &frame)
{
    const std::optional<Emergency> emergency = parseEmergency(frame.toCanBusFrame());
    if (!emergency)
        return single(frame);
    const QString bits = errorRegisterText(emergency->errorRegister);
    return {{0, 2,
             tr("error code %1h: %2")
                 .arg(hexadecimal(emergency->errorCode, 4), emergencyText(emergency->errorCode))},
            {2, 1, tr("error register: %1").arg(bits.isEmpty() ? tr("no error") : bits)},
            {3, 5, tr("the device's own")}};
}

/*! As Linux fills an error frame. */
QVector<FramePart> FrameParts::ofError(const TraceFrame &frame)
{
    QVector<FramePart> parts{{0, frame.length, FrameWords::errors(frame)}};
    return frame.length == 0 ? QVector<FramePart>() : parts;
}

QVector<FramePart> FrameParts::ofPdo(const TraceFrame &frame, const PdoLayout &layout) const
{
    QVector<FramePart> parts;
    int end = 0; // byte behind the last whole part
    for (int i = 0; i < layout.parts.size(); ++i) {
        const PdoLayout::Part &part = layout.parts.at(i);
        const int first = part.first / byteBits;
        const int last = (part.first + part.bits - 1) / byteBits;
        if (last >= frame.size()) {
            if (end < frame.size())
                parts.append({end, frame.size() - end, tr("the beginning of what is missing")});
            return parts;
        }
        end = last + 1;
        const QString words = part.isDummy ? tr("fills a place") : m_pdos->part(frame, layout, i);
        const bool isWhole = part.first % byteBits == 0 && part.bits % byteBits == 0;
        const QString place = tr("bits %1 to %2: %3")
                                  .arg(QString::number(part.first - first * byteBits),
                                       QString::number(part.first + part.bits - 1 - first * byteBits), words);
        parts.append({first, last - first + 1, isWhole ? words : place});
    }
    if (end < frame.size())
        parts.append({end, frame.size() - end, tr("not mapped")});
    return parts;
}

QVector<FramePart> FrameParts::ofSdo(const TraceFrame &frame, SdoStep step) const
{
    if (frame.size() != sdoFrameSize)
        return single(frame);
    switch (step) {
    case SdoStep::None:
    case SdoStep::Stray:
        return {{0, 1, FrameWords::sdoCommand(frame)}, {1, sdoFrameSize - 1, tr("data")}};
    case SdoStep::UploadSegment:
    case SdoStep::DownloadSegment:
        return ofSegment(frame, step);
    case SdoStep::UploadSegmentRequest:
    case SdoStep::DownloadSegmentAnswer:
        return ofToggle(frame, step);
    case SdoStep::BlockUploadSegment:
    case SdoStep::BlockDownloadSegment:
        return ofBlockSegment(frame);
    case SdoStep::BlockUploadAcknowledge:
    case SdoStep::BlockDownloadAcknowledge:
        return ofAcknowledge(frame);
    case SdoStep::BlockUploadEnd:
    case SdoStep::BlockDownloadEnd:
        return ofBlockEnd(frame);
    default:
        break;
    }
    if (hasObject(step))
        return ofInitiate(frame, step);
    return {{0, 1, tr(nameOf(step))}, {1, sdoFrameSize - 1, tr("not used")}};
}

QVector<FramePart> FrameParts::ofInitiate(const TraceFrame &frame, SdoStep step) const
{
    const ObjectKey object = sdoKeyOf(payloadOf(frame));
    const QString name = m_book->name(frameNodeOf(frame.id), object);
    return {{0, 1, tr(nameOf(step))},
            {1, 2,
             name.isEmpty() ? tr("object %1").arg(indexText(object.index))
                            : tr("object %1: %2").arg(indexText(object.index), name)},
            {3, 1, tr("sub-index %1").arg(object.subIndex)},
            {4, 4, lastBytes(frame, step)}};
}

/*! Bytes 4 to 7 of a frame with an object. */
QString FrameParts::lastBytes(const TraceFrame &frame, SdoStep step) const
{
    const QByteArray payload = payloadOf(frame);
    if (step == SdoStep::ClientAbort || step == SdoStep::ServerAbort)
        return sdoAbortText(sdoAbortCodeOf(payload));
    if (const auto request = readSdoBlockInitiateRequest(payload);
        request && step == SdoStep::BlockUploadRequest)
        return tr("%1 segments in a block").arg(request->blockSize);
    if (const auto answer = readSdoBlockDownloadResponse(payload);
        answer && step == SdoStep::BlockDownloadAnswer)
        return tr("%1 segments in a block").arg(answer->blockSize);
    const bool isWrite = step == SdoStep::DownloadRequest;
    const std::optional<SdoInitiate> initiate
        = isWrite ? readSdoInitiateDownloadRequest(payload) : readSdoInitiateUploadResponse(payload);
    const bool hasInitiate = initiate && (isWrite || step == SdoStep::UploadAnswer);
    if (hasInitiate && initiate->expedited)
        return tr("value: %1")
            .arg(m_values->ofBytes(frameNodeOf(frame.id), initiate->key, initiate->data.toByteArray(),
                                   !initiate->sizeIndicated));
    const auto blocks = step == SdoStep::BlockUploadAnswer      ? readSdoBlockInitiateResponse(payload)
                        : step == SdoStep::BlockDownloadRequest ? readSdoBlockDownloadRequest(payload)
                                                                : std::nullopt;
    if (hasInitiate || blocks) {
        const bool isTold = blocks ? blocks->sizeIndicated : initiate->sizeIndicated;
        const quint32 size = blocks ? blocks->size : initiate->size;
        return isTold ? tr("%1 bytes follow").arg(size) : tr("does not say how many bytes follow");
    }
    return tr("not used");
}

QVector<FramePart> FrameParts::ofSegment(const TraceFrame &frame, SdoStep step)
{
    const QByteArray payload = payloadOf(frame);
    const auto segment = step == SdoStep::UploadSegment ? readSdoUploadSegmentResponse(payload)
                                                        : readSdoDownloadSegmentRequest(payload);
    if (!segment)
        return single(frame);
    const QString command = segment->last ? tr("%1, toggle bit %2, the last one") : tr("%1, toggle bit %2");
    QVector<FramePart> parts{{0, 1, command.arg(tr(nameOf(step)), QString::number(segment->toggle ? 1 : 0))}};
    const int used = segment->data.size;
    if (used > 0)
        parts.append({1, used, tr("data")});
    if (used < sdoSegmentSize)
        parts.append({1 + used, sdoSegmentSize - used, tr("not used")});
    return parts;
}

QVector<FramePart> FrameParts::ofToggle(const TraceFrame &frame, SdoStep step)
{
    const bool toggle = sdoToggleOf(payloadOf(frame));
    return {{0, 1, tr("%1, toggle bit %2").arg(tr(nameOf(step)), QString::number(toggle ? 1 : 0))},
            {1, sdoFrameSize - 1, tr("not used")}};
}

QVector<FramePart> FrameParts::ofBlockSegment(const TraceFrame &frame)
{
    const std::optional<SdoBlockSegment> segment = readSdoBlockSegment(payloadOf(frame));
    if (!segment)
        return single(frame);
    const QString number = QString::number(segment->sequenceNumber);
    return {{0, 1, segment->last ? tr("segment %1, the last one").arg(number) : tr("segment %1").arg(number)},
            {1, sdoSegmentSize, tr("data")}};
}

QVector<FramePart> FrameParts::ofAcknowledge(const TraceFrame &frame)
{
    return {{0, 1, tr("acknowledge of a block")},
            {1, 1, tr("has come up to segment %1").arg(frame.bytes[1])},
            {2, 1, tr("next block: %1 segments").arg(frame.bytes[2])},
            {3, 5, tr("not used")}};
}

QVector<FramePart> FrameParts::ofBlockEnd(const TraceFrame &frame)
{
    constexpr int unusedShift = 2;
    constexpr int unusedMask = 0x07;
    const int unused = frame.bytes[0] >> unusedShift & unusedMask;
    const int checksum = frame.bytes[1] | frame.bytes[2] << byteBits;
    return {{0, 1, tr("end of the blocks, %1 bytes of the last segment do not count").arg(unused)},
            {1, 2, tr("checksum %1h").arg(hexadecimal(static_cast<quint64>(checksum), 4))},
            {3, 5, tr("not used")}};
}
