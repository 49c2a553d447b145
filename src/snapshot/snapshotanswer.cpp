// SPDX-License-Identifier: MIT
#include "snapshotanswer.h"

#include "objecttypes.h"

#include <canopen/sdoabort.h>

namespace {

using CanOpen::DataType;
using CanOpen::SdoAbort;
using CanOpen::SdoOutcome;

bool saysAbsent(quint32 code)
{
    return code == static_cast<quint32>(SdoAbort::ObjectDoesNotExist)
           || code == static_cast<quint32>(SdoAbort::SubIndexDoesNotExist);
}

/*! One frame that does not say how many of its four bytes count: the type does. */
void takeSizeless(const QByteArray &bytes, const QVector<DataType> &types, SnapshotEntry *entry)
{
    entry->raw = bytes;
    // Without a type any number of them may be leftovers of the device's memory, so no number is made of them.
    entry->type = types.isEmpty() ? DataType::OctetString : types.first();
    const int size = CanOpen::byteSize(*entry->type);
    const bool isLonger = types.size() > 1 && bytes.mid(size).count('\0') < bytes.size() - size;
    if (size > bytes.size() || isLonger) { // it may be another of the types
        entry->gap = SnapshotGap::WrongSize;
        return;
    }
    if (size > 0)
        entry->raw.truncate(size);
    entry->value = *CanOpen::decodeValue(*entry->type, entry->raw);
}

void takeBytes(const QByteArray &bytes, const QVector<DataType> &types, SnapshotEntry *entry)
{
    entry->raw = bytes;
    if (types.isEmpty() && !bytes.isEmpty()) {
        entry->value = ObjectTypes::unsignedValue(bytes);
        return;
    }
    if (types.isEmpty()) { // that there are none is all that is known
        entry->type = DataType::OctetString;
        entry->value = bytes;
        return;
    }
    entry->type = ObjectTypes::matching(types, bytes);
    if (entry->type) {
        entry->value = *CanOpen::decodeValue(*entry->type, bytes);
        return;
    }
    entry->type = types.first();
    entry->gap = SnapshotGap::WrongSize;
}

void takeAbort(quint32 code, SnapshotEntry *entry)
{
    if (saysAbsent(code))
        entry->gap = SnapshotGap::Absent;
    else
        entry->gap = CanOpen::isAboutTheTransfer(code) ? SnapshotGap::Failed : SnapshotGap::Abort;
    entry->abortCode = code;
}

} // namespace

SnapshotEntry SnapshotAnswer::toEntry(const SdoOutcome &outcome, const QVector<DataType> &types)
{
    SnapshotEntry entry;
    entry.key = outcome.key;
    switch (outcome.kind) {
    case SdoOutcome::Kind::Value:
        if (outcome.isSizeUnknown)
            takeSizeless(outcome.raw, types, &entry);
        else
            takeBytes(outcome.raw, types, &entry);
        break;
    case SdoOutcome::Kind::Abort:
        takeAbort(outcome.code, &entry);
        break;
    case SdoOutcome::Kind::Error:
        entry.gap = outcome.isUnasked ? SnapshotGap::Cancelled : SnapshotGap::Failed;
        entry.abortCode = outcome.code;
        break;
    case SdoOutcome::Kind::Timeout:
        entry.gap = outcome.isUnasked ? SnapshotGap::Cancelled : SnapshotGap::NoAnswer;
        break;
    case SdoOutcome::Kind::Cancelled:
        entry.gap = SnapshotGap::Cancelled;
        break;
    }
    return entry;
}
