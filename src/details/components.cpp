// SPDX-License-Identifier: MIT
#include "components.h"

#include "objecttooltip.h"
#include "overviewtr.h"

#include <interpreter/componentclass.h>
#include <interpreter/datainterpreter.h>
#include <interpreter/objects.h>
#include <store/nodeview.h>

#include <QDebug>

#include <iterator>

namespace {

constexpr quint32 virtualDeviceLimit = 128; // sub-indices of 6000h from here on are not looked at

constexpr const char *nmtStateTexts[] = {
    QT_TRANSLATE_NOOP("OverviewForm", "Unknown"), QT_TRANSLATE_NOOP("OverviewForm", "Boot-up"),
    QT_TRANSLATE_NOOP("OverviewForm", "Pre-Op"),  QT_TRANSLATE_NOOP("OverviewForm", "Operational"),
    QT_TRANSLATE_NOOP("OverviewForm", "Stopped"),
};
static_assert(std::size(nmtStateTexts) == 5);

Component componentOf(const NodeView &node, const ComponentClass &componentClass)
{
    Component component;
    component.nodeId = node.nodeId();
    component.name = componentClassName(componentClass, node.nodeId());
    component.icon = componentClass.icon;

    // The state is the node's: all its components show that of the first virtual device.
    if (const std::optional<QVariant> status = node.value(Object::deviceStatus, 1)) {
        QString flags;
        DataInterpreter::interpretDeviceStatus(*status, flags, component.deviceState);
        component.toolTip = objectToolTip(Object::deviceStatus, *status);
    }
    return component;
}

} // namespace

QVector<Component> componentsOf(const NodeView &node)
{
    qDebug() << "Handling of node" << node.nodeId();
    const quint32 count = node.entryCount(Object::virtualDevices).value_or(0) & 0xFF;
    qDebug() << "sub0 value = " << count;

    QVector<Component> components;
    for (quint32 s = 1; s <= count && s < virtualDeviceLimit; ++s) {
        const std::optional<QVariant> entry = node.value(Object::virtualDevices, static_cast<quint8>(s));
        if (!entry)
            continue;
        if (const ComponentClass *componentClass
            = findComponentClass(static_cast<quint8>(entry->toUInt() & 0xFF)))
            components.append(componentOf(node, *componentClass));
    }
    return components;
}

QString nmtStateText(int state)
{
    const auto number = static_cast<std::size_t>(state);
    return number < std::size(nmtStateTexts) ? OverviewTr::tr(nmtStateTexts[number]) : QString();
}
