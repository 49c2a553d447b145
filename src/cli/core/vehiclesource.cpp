// SPDX-License-Identifier: MIT
#include "vehiclesource.h"

#include "commandarguments.h"
#include "console.h"
#include "exitstatus.h"
#include "openedbundle.h"

#include <details/components.h>

#include <QDir>

void VehicleSource::addOptions(CommandArguments &options)
{
    options.addPositional(QStringLiteral("FILE"),
                          tr("A snapshot (.dxsnap), exchange file (.dxxml) or support bundle (.zip). "
                             "Without it --bus is read."),
                          CommandArguments::Presence::Optional);
    options.addBusOptions(CommandArguments::Presence::Optional);
    BusRead::addOptions(options);
}

std::optional<ExitStatus> VehicleSource::parse(const CommandArguments &options)
{
    m_options = &options;
    if (options.positional().isEmpty() && !options.hasBus())
        return options.complain(tr("What is meant? Name a FILE or a --bus."));
    if (!options.positional().isEmpty() && options.hasBus())
        return options.complain(tr("Name either a FILE or a --bus, not both."));
    if (!options.hasBus())
        return std::nullopt;
    m_bus = std::make_unique<BusRead>();
    return m_bus->parse(options);
}

std::optional<ExitStatus> VehicleSource::load()
{
    if (m_bus != nullptr)
        return m_bus->read(m_options->bus());

    QString error;
    if (OpenedBundle::loadStore(m_options->positional(), m_fileStore, &error))
        return std::nullopt;
    Console::printError(error);
    return Exit::fileFailed;
}

const NodeStore &VehicleSource::store() const
{
    return m_bus != nullptr ? m_bus->store() : m_fileStore;
}

QString VehicleSource::name() const
{
    return m_bus != nullptr ? m_options->bus().address.toString()
                            : QDir::toNativeSeparators(m_options->positional());
}

QString VehicleSource::nmtState(quint8 nodeId) const
{
    return m_bus != nullptr ? nmtStateText(m_bus->nmtState(nodeId)) : QString();
}

ExitStatus VehicleSource::finish() const
{
    return m_bus != nullptr ? m_bus->finish() : Exit::success;
}
