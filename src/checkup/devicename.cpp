// SPDX-License-Identifier: MIT
#include "devicename.h"

#include <interpreter/objects.h>
#include <snapshot/deviceidentity.h>

using CanOpen::ObjectKey;

namespace {

constexpr ObjectKey deviceName{0x1008, 0};

bool isUnread(const SnapshotNode &node, ObjectKey key)
{
    const SnapshotEntry *entry = node.find(key);
    return entry == nullptr || entry->isGap();
}

bool isTold(const DeviceIdentity &identity)
{
    return !identity.classes.isEmpty() || !identity.deviceName.isEmpty();
}

/*! Whether all was read that its name is made of. */
bool isNameRead(const SnapshotNode &node, const DeviceIdentity &identity)
{
    return unreadClasses(node).isEmpty() && (!identity.classes.isEmpty() || !isUnread(node, deviceName));
}

bool differ(const std::optional<quint32> &a, const std::optional<quint32> &b)
{
    return a && b && *a != *b;
}

bool canBeSame(const DeviceIdentity &a, const DeviceIdentity &b)
{
    return !differ(a.vendor, b.vendor) && !differ(a.product, b.product) && !differ(a.serial, b.serial);
}

} // namespace

QVector<ObjectKey> unreadClasses(const SnapshotNode &node)
{
    const ObjectKey count{Object::virtualDevices, 0};
    if (isUnread(node, count))
        return {count};
    QVector<ObjectKey> unread;
    const uint last = qMin(node.value(count.index, 0).toUInt(), 0xFFu);
    for (uint sub = 1; sub <= last; ++sub) {
        const ObjectKey key{Object::virtualDevices, static_cast<quint8>(sub)};
        if (isUnread(node, key))
            unread.append(key);
    }
    return unread;
}

DeviceName DeviceName::of(const SnapshotNode &node, const SnapshotNode *earlier)
{
    const DeviceIdentity is = DeviceIdentity::of(node);
    const DeviceName own{is.displayName(node.id), false};
    if (earlier == nullptr || isNameRead(node, is))
        return own;
    const DeviceIdentity was = DeviceIdentity::of(*earlier);
    const bool isBetter = isTold(was) && (!isTold(is) || isNameRead(*earlier, was));
    return isBetter && canBeSame(was, is) ? DeviceName{was.displayName(node.id), true} : own;
}

DeviceName DeviceName::of(const SnapshotNode &node, const Snapshot *earlier)
{
    return of(node, earlier != nullptr ? earlier->find(node.id) : nullptr);
}
