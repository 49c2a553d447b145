// SPDX-License-Identifier: MIT
#include "snapshotwords.h"

#include <canopen/sdoabort.h>

QString SnapshotWords::reason(const SnapshotEntry &entry)
{
    switch (entry.gap) {
    case SnapshotGap::None:
        return QString();
    case SnapshotGap::Absent:
        return tr("The device does not have it.");
    case SnapshotGap::Abort:
        if (CanOpen::isGapOfTrace(entry.abortCode))
            return tr("Not recorded: %1.").arg(CanOpen::sdoAbortText(entry.abortCode));
        return tr("The device refused it: %1.").arg(CanOpen::sdoAbortText(entry.abortCode));
    case SnapshotGap::NoAnswer:
        return tr("The device did not answer.");
    case SnapshotGap::WrongSize:
        return tr("The answer has %n byte(s), which does not fit the object.", nullptr, entry.raw.size());
    case SnapshotGap::Failed:
        return tr("The transfer failed: %1.").arg(CanOpen::sdoAbortText(entry.abortCode));
    case SnapshotGap::Stopped:
        return tr("The device is stopped and answers nothing.");
    case SnapshotGap::Cancelled:
        return tr("It was not asked any more.");
    }
    return QString();
}

QString SnapshotWords::ending(SnapshotEnd end)
{
    switch (end) {
    case SnapshotEnd::Complete:
        return QString();
    case SnapshotEnd::Silent:
        return tr("The device does not answer.");
    case SnapshotEnd::Stopped:
        return tr("The device is stopped and answers nothing.");
    case SnapshotEnd::Cancelled:
        return tr("The reading was ended before all was asked.");
    }
    return QString();
}
