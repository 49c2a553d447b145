// SPDX-License-Identifier: MIT
#include "objectchange.h"

#include "objectkinds.h"
#include "objectwords.h"

#include <snapshot/snapshotwords.h>

#include <cmath>

namespace {

bool isNumber(const QVariant &value)
{
    return value.isValid() && value.type() != QVariant::String && value.type() != QVariant::ByteArray;
}

Change::Kind changeKind(ObjectKind::Kind kind)
{
    switch (kind) {
    case ObjectKind::Kind::Firmware:
        return Change::Kind::Firmware;
    case ObjectKind::Kind::Counter:
        return Change::Kind::Counter;
    case ObjectKind::Kind::Value:
        return Change::Kind::Value;
    default:
        return Change::Kind::Parameter;
    }
}

/*! Whole numbers are compared digit by digit, which a double could not do beyond 53 bits. */
bool isSame(const QVariant &before, const QVariant &after)
{
    if (!isNumber(before) || !isNumber(after))
        return before == after;
    const bool areWhole = before.type() != QVariant::Double && after.type() != QVariant::Double
                          && before.userType() != QMetaType::Float && after.userType() != QMetaType::Float;
    return areWhole ? before.toLongLong() == after.toLongLong()
                    : !(before.toDouble() < after.toDouble()) && !(after.toDouble() < before.toDouble());
}

double numberOf(const SnapshotEntry &entry)
{
    return ObjectWords::number(entry.key, entry.value.toDouble());
}

bool isNoise(const SnapshotEntry &before, const SnapshotEntry &after, const ObjectKind &kind)
{
    if (!isNumber(before.value) || !isNumber(after.value))
        return false;
    constexpr double percent = 100;
    const double difference = std::abs(numberOf(after) - numberOf(before));
    const double noise = std::max(kind.noise, std::abs(numberOf(before)) * kind.noisePercent / percent);
    return difference <= noise;
}

} // namespace

std::optional<Change> ObjectChange::between(const SnapshotEntry *before, const SnapshotEntry *after,
                                            const ObjectKinds &kinds, const QString &device)
{
    if (before == nullptr || after == nullptr)
        return std::nullopt;
    if (before->isGap() != after->isGap())
        return ofGap(*before, *after, device);
    if (before->isGap())
        return std::nullopt;
    if (before->hasValue() != after->hasValue())
        return ofPresence(*before, *after, device);
    return before->hasValue() ? ofValues(*before, *after, kinds, device) : std::nullopt;
}

std::optional<Change> ObjectChange::ofValues(const SnapshotEntry &before, const SnapshotEntry &after,
                                             const ObjectKinds &kinds, const QString &device)
{
    if (isSame(before.value, after.value))
        return std::nullopt;
    const ObjectKind kind = kinds.find(after.key);
    if (kind.kind == ObjectKind::Kind::Running)
        return std::nullopt;
    const bool isMeasured = kind.kind == ObjectKind::Kind::Value || kind.kind == ObjectKind::Kind::Counter;
    const bool hasFallen = isNumber(before.value) && numberOf(after) < numberOf(before);
    const bool isReset = kind.kind == ObjectKind::Kind::Counter && hasFallen;
    if (isMeasured && !isReset && isNoise(before, after, kind))
        return std::nullopt;
    Change change;
    change.kind = changeKind(kind.kind);
    change.key = after.key;
    change.before = ObjectWords::value(before.key, before.value);
    change.after = ObjectWords::value(after.key, after.value);
    change.text = sentence(change.kind, hasFallen)
                      .arg(device, ObjectWords::nameAndNumber(after.key), change.before, change.after);
    return change;
}

QString ObjectChange::sentence(Change::Kind kind, bool hasFallen)
{
    switch (kind) {
    case Change::Kind::Firmware:
        return tr("%1: %2 was %3, is %4: the software was changed.");
    case Change::Kind::Counter:
        return hasFallen ? tr("%1: %2 fell from %3 to %4: it was reset, or the device repaired.")
                         : tr("%1: %2 rose from %3 to %4.");
    default:
        return tr("%1: %2 was %3, is %4.");
    }
}

Change ObjectChange::ofGap(const SnapshotEntry &before, const SnapshotEntry &after, const QString &device)
{
    Change change;
    change.kind = Change::Kind::Gap;
    change.key = after.key;
    change.before = ObjectWords::value(before.key, before.value);
    change.after = ObjectWords::value(after.key, after.value);
    change.isUnreadNow = after.isGap();
    change.reason = SnapshotWords::reason(after.isGap() ? after : before);
    const QString name = ObjectWords::nameAndNumber(after.key);
    change.text = after.isGap()
                      ? tr("%1: %2 could not be read this time. %3").arg(device, name, change.reason)
                      : tr("%1: %2 could be read this time. Before: %3").arg(device, name, change.reason);
    return change;
}

Change ObjectChange::ofPresence(const SnapshotEntry &before, const SnapshotEntry &after,
                                const QString &device)
{
    Change change;
    change.kind = Change::Kind::Parameter;
    change.key = after.key;
    change.before = ObjectWords::value(before.key, before.value);
    change.after = ObjectWords::value(after.key, after.value);
    const QString name = ObjectWords::nameAndNumber(after.key);
    change.text = after.hasValue() ? tr("%1: %2 is new.").arg(device, name)
                                   : tr("%1: %2 is not there any more.").arg(device, name);
    return change;
}
