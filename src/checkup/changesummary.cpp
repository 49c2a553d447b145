// SPDX-License-Identifier: MIT
#include "changesummary.h"

#include <QHash>

namespace {

/*! What the gaps have in common that become one; empty for what stays alone. */
QString causeOf(const Change &change)
{
    if (change.kind != Change::Kind::Gap || !change.key)
        return QString();
    return QStringLiteral("%1 %2 %3").arg(change.nodeId).arg(change.isUnreadNow ? 1 : 0).arg(change.reason);
}

} // namespace

Comparison ChangeSummary::forPeople(const Comparison &comparison)
{
    Comparison summary;
    QHash<QString, int> positions; // of the first gap with a cause
    for (const Change &change : comparison.changes) {
        const QString cause = causeOf(change);
        const int position = cause.isEmpty() ? -1 : positions.value(cause, -1);
        if (position >= 0) {
            summary.changes[position].count += change.count;
            continue;
        }
        if (!cause.isEmpty())
            positions.insert(cause, summary.changes.size());
        summary.changes.append(change);
    }
    for (Change &change : summary.changes) {
        if (change.count > 1)
            describe(&change);
    }
    return summary;
}

void ChangeSummary::describe(Change *change)
{
    const QString values = tr("%n values", nullptr, change->count);
    change->key.reset();
    change->before = change->isUnreadNow ? values : QString();
    change->after = change->isUnreadNow ? QString() : values;
    change->text
        = change->isUnreadNow
              ? tr("Not read any more: %1 of %2. %3").arg(values, change->device, change->reason)
              : tr("Read this time: %1 of %2. Before: %3").arg(values, change->device, change->reason);
}
