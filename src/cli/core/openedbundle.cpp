// SPDX-License-Identifier: MIT
#include "openedbundle.h"

#include "console.h"

#include <bundle/bundlefile.h>
#include <snapshot/savedvehicle.h>
#include <snapshot/snapshotexchange.h>
#include <store/nodestore.h>

#include <QDir>

std::optional<Snapshot> OpenedBundle::snapshot(const QString &fileName, QString *errorMessage)
{
    if (!BundleFile::isBundle(fileName))
        return SavedVehicle::load(fileName, errorMessage);
    const std::optional<SupportBundle> bundle = BundleFile::load(fileName, errorMessage);
    if (!bundle)
        return std::nullopt;
    for (const QString &problem : bundle->problems)
        Console::printError(problem);
    if (!bundle->snapshot)
        *errorMessage = tr("The support bundle %1 has no snapshot that can be used.")
                            .arg(QDir::toNativeSeparators(fileName));
    return bundle->snapshot;
}

bool OpenedBundle::loadStore(const QString &fileName, NodeStore &store, QString *errorMessage)
{
    if (!BundleFile::isBundle(fileName))
        return SavedVehicle::loadStore(fileName, store, errorMessage);
    const std::optional<Snapshot> loaded = snapshot(fileName, errorMessage);
    if (loaded)
        SnapshotExchange::fillStore(*loaded, store);
    return loaded.has_value();
}
