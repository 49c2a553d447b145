// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/objectkey.h>
#include <snapshot/snapshot.h>

#include <QString>
#include <QVector>

/*! What was not read of 6000h, so that the classes of a device's parts are not all known. */
QVector<CanOpen::ObjectKey> unreadClasses(const SnapshotNode &node);

/*! What a device is called: by what it tells of itself (see DeviceIdentity::displayName()), or, when that was not read,
 *  by what it told in an earlier snapshot.
 */
struct DeviceName
{
    QString text;
    bool isEarlier = false; //!< it was not read this time

    /*! \a earlier may be null, and is not asked when it tells another identity. */
    static DeviceName of(const SnapshotNode &node, const SnapshotNode *earlier);

    /*! The earlier one is the one on the same node; \a earlier may be null. */
    static DeviceName of(const SnapshotNode &node, const Snapshot *earlier);
};
