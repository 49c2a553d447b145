// SPDX-License-Identifier: MIT
#include "tracemasking.h"

#include "framerewriting.h"
#include "masking.h"

#include <canopen/pdobits.h>
#include <snapshot/snapshot.h>
#include <system/amounts.h>

#include <QtEndian>

#include <algorithm>

namespace {

// CiA 305: identifiers, and the commands that carry a serial number in the bytes 1 to 4.
constexpr quint32 lssMaster = 0x7E5;
constexpr quint32 lssSlave = 0x7E4;
constexpr quint8 selectSerialNumber = 0x43;
constexpr quint8 identifyLowSerialNumber = 0x4A;
constexpr quint8 identifyHighSerialNumber = 0x4B;
constexpr quint8 inquireSerialNumber = 0x5D;
constexpr quint8 fastscan = 0x51;
constexpr int fastscanSub = 6; // byte: which part of the identity
constexpr quint8 serialNumberPart = 3;
constexpr int lssNumberAt = 1;
constexpr int lssNumberBits = 32;

bool isData(const TraceFrame &frame)
{
    return !frame.isRemote() && !frame.isError();
}

/*! Whether a frame that sets up devices carries a serial number. */
bool hasLssSerial(const TraceFrame &frame)
{
    if (!isData(frame) || frame.isExtended() || frame.length != TraceFrame::mostBytes
        || (frame.id != lssMaster && frame.id != lssSlave))
        return false;
    switch (frame.bytes[0]) {
    case selectSerialNumber:
    case identifyLowSerialNumber:
    case identifyHighSerialNumber:
    case inquireSerialNumber:
        return true;
    case fastscan:
        return frame.bytes[fastscanSub] == serialNumberPart;
    default:
        return false;
    }
}

quint32 lssSerial(const TraceFrame &frame)
{
    return qFromLittleEndian<quint32>(frame.bytes.data() + lssNumberAt);
}

QByteArray bytesOf(const TraceFrame &frame)
{
    return QByteArray(reinterpret_cast<const char *>(frame.bytes.data()), frame.size());
}

/*! Calls handle(part, value) for the secrets in a PDO; one that ends in the middle of a secret has no value of it. */
template<typename Handler>
void forEachSecret(const TraceFrame &frame, const PdoLayout *layout, Handler handle)
{
    if (layout == nullptr || !isData(frame))
        return;
    for (const PdoLayout::Part &part : layout->parts) {
        if (!part.isDummy && Masking::isSecret(part.object))
            handle(part, CanOpen::unpackBits(bytesOf(frame), part.first, part.bits));
    }
}

/*! Calls handle(transfer) for every transfer, in the order of their ends. */
template<typename Handler>
void forEachTransfer(const Trace &trace, Handler handle)
{
    SdoTransfers transfers;
    const auto take = [&] {
        const std::vector<SdoTransfer> finished = transfers.takeFinished();
        std::for_each(finished.begin(), finished.end(), handle);
    };
    for (std::size_t i = 0; i < trace.frames.size(); ++i) {
        transfers.handle(trace.frames[i], i);
        if (transfers.hasFinished())
            take();
    }
    transfers.finish();
    take();
}

void maskPdo(TraceFrame *frame, const PdoLayout *layout, Masking *masking)
{
    QByteArray bytes = bytesOf(*frame);
    const int bits = bytes.size() * Bits::ofByte;
    forEachSecret(*frame, layout, [&](const PdoLayout::Part &part, std::optional<quint64> value) {
        if (value)
            CanOpen::packBits(&bytes, part.first, part.bits, masking->number(*value, part.bits));
        else if (part.first < bits)
            CanOpen::packBits(&bytes, part.first, bits - part.first, 0);
    });
    std::copy(bytes.begin(), bytes.end(), frame->bytes.begin());
}

void maskLss(TraceFrame *frame, Masking *masking)
{
    const auto number = static_cast<quint32>(masking->number(lssSerial(*frame), lssNumberBits));
    qToLittleEndian(number, frame->bytes.data() + lssNumberAt);
}

} // namespace

void TraceMasking::tell(const Snapshot &snapshot)
{
    for (const SnapshotNode &node : snapshot.nodes) {
        m_pdos.tell(node.id, [&node](CanOpen::ObjectKey key) -> std::optional<quint32> {
            const SnapshotEntry *entry = node.find(key);
            bool isNumber = false;
            const quint32 number = entry != nullptr && entry->hasValue() ? entry->value.toUInt(&isNumber) : 0;
            return isNumber ? std::optional<quint32>(number) : std::nullopt;
        });
    }
}

void TraceMasking::learn(const Trace &trace, Masking *masking)
{
    forEachTransfer(trace, [this, masking](const SdoTransfer &transfer) {
        m_pdos.learn(transfer);
        if (!transfer.data.isEmpty())
            masking->learnValue(transfer.object, transfer.data);
    });
    for (std::size_t i = 0; i < trace.frames.size(); ++i) {
        const TraceFrame &frame = trace.frames[i];
        if (hasLssSerial(frame) && frame.bytes[0] != fastscan) // which asks for numbers that nobody has
            masking->learnNumber(lssSerial(frame));
        forEachSecret(frame, m_pdos.find(frame, i),
                      [masking](const PdoLayout::Part &, std::optional<quint64> value) {
                          if (value)
                              masking->learnNumber(*value);
                      });
    }
}

void TraceMasking::mask(Trace *trace, Masking *masking) const
{
    FrameRewriting rewriting(masking);
    forEachTransfer(*trace, [masking, &rewriting](const SdoTransfer &transfer) {
        const QByteArray masked = masking->value(transfer.object, transfer.data);
        // The frames of one that went wrong may hold what is no part of its value, and what may be the secret.
        if (masked != transfer.data || transfer.outcome != SdoTransfer::Outcome::Done)
            rewriting.expect(transfer, masked);
    });
    SdoTransfers transfers;
    for (std::size_t i = 0; i < trace->frames.size(); ++i) {
        TraceFrame &frame = trace->frames[i];
        const SdoTransfers::Place place = transfers.handle(frame, i);
        if (transfers.hasFinished())
            (void)transfers.takeFinished();
        if (place.step != SdoStep::None)
            rewriting.rewrite(&frame, place);
        else if (hasLssSerial(frame))
            maskLss(&frame, masking);
        else
            maskPdo(&frame, m_pdos.find(frame, i), masking);
        if (isData(frame))
            masking->sweep(reinterpret_cast<char *>(frame.bytes.data()), frame.length);
    }
}
