// SPDX-License-Identifier: MIT
#include "nodeoption.h"

#include "commandarguments.h"
#include "console.h"
#include "optionnames.h"
#include "vehiclesource.h"

namespace {

struct NodeOptionTr
{
    Q_DECLARE_TR_FUNCTIONS(NodeOption)
};

constexpr int firstNodeId = 1;
constexpr int lastNodeId = 127;

} // namespace

void NodeOption::add(CommandArguments &options, const QString &description)
{
    options.addOption({nodeOption, description, QStringLiteral("N")});
}

bool NodeOption::isSet(const CommandArguments &options)
{
    return options.isSet(nodeOption);
}

std::optional<quint8> NodeOption::parse(const CommandArguments &options)
{
    const std::optional<int> number = options.number(nodeOption, firstNodeId, lastNodeId);
    return number ? std::optional<quint8>(static_cast<quint8>(*number)) : std::nullopt;
}

bool NodeOption::isKnown(quint8 nodeId, const VehicleSource &vehicle)
{
    if (vehicle.store().nodeList().contains(nodeId))
        return true;
    Console::printError(
        NodeOptionTr::tr("There is no node %1 in %2.").arg(QString::number(nodeId), vehicle.name()));
    return false;
}
