// SPDX-License-Identifier: MIT
#include "framesort.h"

#include "framewords.h"
#include "pdolayout.h"

#include <canopen/cobid.h>
#include <canopen/heartbeat.h>
#include <canopen/nmt.h>
#include <canopen/sdoabort.h>
#include <trace/core/traceframe.h>
#include <trace/transfers/sdotransfer.h>

#include <QCanBusFrame>

namespace {

constexpr int emergencySize = 8;
constexpr int sdoSize = 8;

TraceMark warningUnless(bool isRight)
{
    return isRight ? TraceMark::Plain : TraceMark::Warning;
}

TraceMark markOfNmt(const TraceFrame &frame)
{
    if (frame.size() != CanOpen::nmtFrameSize || frame.bytes[1] > CanOpen::lastNodeId)
        return TraceMark::Warning;
    switch (static_cast<CanOpen::NmtCommand>(frame.bytes[0])) {
    case CanOpen::NmtCommand::Start:
    case CanOpen::NmtCommand::Stop:
    case CanOpen::NmtCommand::EnterPreOperational:
    case CanOpen::NmtCommand::ResetNode:
    case CanOpen::NmtCommand::ResetCommunication:
        return TraceMark::Note;
    }
    return TraceMark::Warning;
}

TraceMark markOfEmergency(const TraceFrame &frame)
{
    constexpr quint8 resetClass = 0x00; // 00xxh: an error is gone
    if (frame.size() != emergencySize)
        return TraceMark::Warning;
    return frame.bytes[1] == resetClass ? TraceMark::Note : TraceMark::Fault;
}

TraceMark markOfHeartbeat(const TraceFrame &frame)
{
    if (frame.size() != 1)
        return TraceMark::Warning;
    switch (static_cast<CanOpen::NmtState>(frame.bytes[0] & ~CanOpen::guardingToggle)) {
    case CanOpen::NmtState::BootUp:
        return TraceMark::Note;
    case CanOpen::NmtState::Stopped:
    case CanOpen::NmtState::Operational:
    case CanOpen::NmtState::PreOperational:
        return TraceMark::Plain;
    }
    return TraceMark::Warning;
}

TraceMark markOfError(const TraceFrame &frame)
{
    constexpr quint32 restarted = QCanBusFrame::ControllerRestartError;
    if ((frame.id & QCanBusFrame::BusOffError) != 0)
        return TraceMark::Fault;
    return frame.id == restarted ? TraceMark::Note : TraceMark::Warning;
}

TraceMark markOf(const TraceFrame &frame, FrameKind kind)
{
    if (kind == FrameKind::Error)
        return markOfError(frame);
    if (frame.isRemote())
        return TraceMark::Plain;
    switch (kind) {
    case FrameKind::Nmt:
        return markOfNmt(frame);
    case FrameKind::Sync:
        return warningUnless(frame.size() <= 1);
    case FrameKind::Time:
        return warningUnless(FrameWords::timeOfDay(frame).has_value());
    case FrameKind::Emergency:
        return markOfEmergency(frame);
    case FrameKind::Sdo:
        return frame.size() == sdoSize ? TraceMark::Note : TraceMark::Warning;
    case FrameKind::Heartbeat:
        return markOfHeartbeat(frame);
    default:
        return TraceMark::Plain;
    }
}

bool isAbsence(quint32 abortCode)
{
    return abortCode == static_cast<quint32>(CanOpen::SdoAbort::ObjectDoesNotExist)
           || abortCode == static_cast<quint32>(CanOpen::SdoAbort::SubIndexDoesNotExist);
}

TraceMark markOfAbort(const SdoTransfer &transfer)
{
    if (CanOpen::isAboutTheTransfer(transfer.abortCode))
        return TraceMark::Fault;
    return isAbsence(transfer.abortCode) ? TraceMark::Note : TraceMark::Warning;
}

TraceMark markOfOutcome(const SdoTransfer &transfer)
{
    switch (transfer.outcome) {
    case SdoTransfer::Outcome::Done:
        return TraceMark::Plain;
    case SdoTransfer::Outcome::AbortedByServer:
    case SdoTransfer::Outcome::AbortedByClient:
        return markOfAbort(transfer);
    case SdoTransfer::Outcome::NoAnswer:
    case SdoTransfer::Outcome::Broken:
        return TraceMark::Fault;
    case SdoTransfer::Outcome::Unfinished:
        return TraceMark::Note;
    }
    return TraceMark::Fault;
}

} // namespace

FrameSort FrameSort::of(const TraceFrame &frame, const PdoLayout *layout)
{
    FrameSort sort;
    if (layout != nullptr)
        return {FrameKind::Pdo, layout->nodeId, warningUnless(frame.size() >= layout->bytes)};
    if (frame.isError())
        sort.kind = FrameKind::Error;
    else if (!frame.isExtended())
        sort.kind = frameKindOf(frame.id);
    if (sort.kind == FrameKind::Nmt)
        sort.nodeId = frame.size() == CanOpen::nmtFrameSize ? frame.bytes[1] : quint8(0);
    else if (sort.kind != FrameKind::Error && !frame.isExtended())
        sort.nodeId = frameNodeOf(frame.id);
    sort.mark = markOf(frame, sort.kind);
    return sort;
}

FrameSort FrameSort::of(const SdoTransfer &transfer)
{
    constexpr int harmless = SdoTransfer::Cut;
    TraceMark mark = markOfOutcome(transfer);
    if ((transfer.problems & ~harmless) != 0 && mark < TraceMark::Warning)
        mark = TraceMark::Warning;
    return {FrameKind::Sdo, transfer.nodeId, mark};
}
