// SPDX-License-Identifier: MIT
#pragma once

#include "comparison.h"

#include <snapshot/snapshot.h>

#include <QCoreApplication>
#include <QString>

#include <optional>

class ObjectKinds;

/*! Compares one object of one device in two snapshots. */
class ObjectChange
{
    Q_DECLARE_TR_FUNCTIONS(ObjectChange)

public:
    /*! Empty when there is no difference that counts. An entry that was not asked for (null) is no difference. \a device
     *  is the name for the sentence, "Battery Pack (node 2)".
     */
    static std::optional<Change> between(const SnapshotEntry *before, const SnapshotEntry *after,
                                         const ObjectKinds &kinds, const QString &device);

private:
    static std::optional<Change> ofValues(const SnapshotEntry &before, const SnapshotEntry &after,
                                          const ObjectKinds &kinds, const QString &device);
    static Change ofGap(const SnapshotEntry &before, const SnapshotEntry &after, const QString &device);
    static Change ofPresence(const SnapshotEntry &before, const SnapshotEntry &after, const QString &device);
    static QString sentence(Change::Kind kind, bool hasFallen);
};
