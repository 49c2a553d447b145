// SPDX-License-Identifier: MIT
#include "showcommand.h"

#include <cli/core/commandarguments.h>
#include <cli/core/console.h>
#include <cli/core/exitstatus.h>
#include <cli/core/language.h>
#include <cli/core/nodelisting.h>
#include <cli/core/nodeoption.h>
#include <cli/core/optionnames.h>
#include <cli/core/vehiclesource.h>

#include <algorithm>

namespace {

struct ShowCommandTr
{
    Q_DECLARE_TR_FUNCTIONS(ShowCommand)
};

/*! People look for components; nodes without one are left out. */
QVector<ListedNode> withComponents(QVector<ListedNode> nodes)
{
    nodes.erase(std::remove_if(nodes.begin(), nodes.end(),
                               [](const ListedNode &node) { return node.components.isEmpty(); }),
                nodes.end());
    return nodes;
}

class ShowCommand
{
public:
    ExitStatus run(const QStringList &arguments);

private:
    std::optional<ExitStatus> parse(const QStringList &arguments);
    void print();

    CommandArguments m_options{
        QStringLiteral("show"),
        ShowCommandTr::tr("Prints the components of a vehicle and all their values in words.")};
    VehicleSource m_vehicle;
    std::optional<quint8> m_nodeId; // the only one asked for
};

ExitStatus ShowCommand::run(const QStringList &arguments)
{
    if (const std::optional<ExitStatus> status = parse(arguments))
        return *status;
    if (const std::optional<ExitStatus> status = m_vehicle.load())
        return *status;
    if (m_nodeId && !NodeOption::isKnown(*m_nodeId, m_vehicle))
        return Exit::noUsableNode;
    print();
    return m_vehicle.finish();
}

std::optional<ExitStatus> ShowCommand::parse(const QStringList &arguments)
{
    VehicleSource::addOptions(m_options);
    m_options.addOption({jsonOption, ShowCommandTr::tr("Print JSON, for programs.")});
    NodeOption::add(m_options, ShowCommandTr::tr("Show this node only."));
    Language::addOption(m_options);
    if (const std::optional<ExitStatus> status = m_options.parse(arguments))
        return status;
    if (const std::optional<ExitStatus> status = m_vehicle.parse(m_options))
        return status;
    if (NodeOption::isSet(m_options)) {
        m_nodeId = NodeOption::parse(m_options);
        if (!m_nodeId)
            return Exit::usage;
    }
    return Language::load(m_options);
}

void ShowCommand::print()
{
    QVector<ListedNode> nodes = m_nodeId ? QVector<ListedNode>{listNode(m_vehicle.store(), *m_nodeId)}
                                         : listNodes(m_vehicle.store());
    for (ListedNode &node : nodes)
        node.nmtState = m_vehicle.nmtState(node.id);

    if (m_options.isSet(jsonOption)) {
        Console::printJson(listingJson(nodes));
        return;
    }
    if (!m_nodeId)
        nodes = withComponents(nodes);
    if (nodes.isEmpty())
        Console::printError(ShowCommandTr::tr("There is no component in %1.").arg(m_vehicle.name()));
    else
        Console::print(listingText(nodes));
}

} // namespace

ExitStatus runShowCommand(const QStringList &arguments)
{
    ShowCommand command;
    return command.run(arguments);
}
