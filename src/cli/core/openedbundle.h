// SPDX-License-Identifier: MIT
#pragma once

#include <snapshot/snapshot.h>

#include <QCoreApplication>
#include <QString>

#include <optional>

class NodeStore;

/*! Files of a vehicle, and support bundles in their place: what of a bundle cannot be used is said on standard error. */
class OpenedBundle
{
    Q_DECLARE_TR_FUNCTIONS(OpenedBundle)

public:
    /*! A snapshot, an exchange file, or the snapshot of a bundle; empty with a sentence. */
    static std::optional<Snapshot> snapshot(const QString &fileName, QString *errorMessage);
    /*! The same into a store, see SavedVehicle. */
    static bool loadStore(const QString &fileName, NodeStore &store, QString *errorMessage);
};
