// SPDX-License-Identifier: MIT
#include "snapshotsource.h"

#include "commandarguments.h"
#include "console.h"
#include "openedbundle.h"

void SnapshotSource::addOptions(CommandArguments &options)
{
    options.addBusOptions(CommandArguments::Presence::Optional);
    BusSnapshot::addOptions(options);
}

std::optional<ExitStatus> SnapshotSource::parse(const CommandArguments &options, const QString &fileName)
{
    m_options = &options;
    m_fileName = fileName;
    if (fileName.isEmpty() && !options.hasBus())
        return options.complain(tr("What is meant? Name a FILE or a --bus."));
    if (!fileName.isEmpty() && options.hasBus())
        return options.complain(tr("Name either a FILE or a --bus, not both."));
    if (!options.hasBus())
        return std::nullopt;
    m_bus = std::make_unique<BusSnapshot>();
    return m_bus->parse(options);
}

std::optional<ExitStatus> SnapshotSource::load()
{
    return m_bus != nullptr ? m_bus->take(m_options->bus()) : loadSnapshot(m_fileName, &m_snapshot);
}

std::optional<ExitStatus> loadSnapshot(const QString &fileName, Snapshot *snapshot)
{
    QString error;
    const std::optional<Snapshot> loaded = OpenedBundle::snapshot(fileName, &error);
    if (!loaded) {
        Console::printError(error);
        return Exit::fileFailed;
    }
    *snapshot = *loaded;
    return std::nullopt;
}
