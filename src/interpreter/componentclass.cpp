// SPDX-License-Identifier: MIT
#include "componentclass.h"

#include "texttables.h"

#include <QCoreApplication>

namespace {

constexpr quint8 controllerClass = 4;
constexpr quint8 chargerNodeId = 127;

constexpr char chargerName[] = QT_TRANSLATE_NOOP("OverviewForm", "Draxel Controller/Charger");

// Deliberate: the names keep their mixed capital letters
constexpr ComponentClass componentClasses[] = {
    {controllerClass, QT_TRANSLATE_NOOP("OverviewForm", "Draxel Controller"), ":/img/icon/dxc32.png"},
    {5, QT_TRANSLATE_NOOP("OverviewForm", "Voltage Converter/Charger"), ":/img/icon/charger32.png"},
    {6, QT_TRANSLATE_NOOP("OverviewForm", "Battery Pack"), ":/img/icon/battery32.png"},
    {7, QT_TRANSLATE_NOOP("OverviewForm", "Motor Control unit"), ":/img/icon/motor32.png"},
    {8, QT_TRANSLATE_NOOP("OverviewForm", "Load monitoring unit"), ":/img/icon/lmd_32.png"},
    {9, QT_TRANSLATE_NOOP("OverviewForm", "HMI control unit/display"), ":/img/icon/display32.png"},
    {10, QT_TRANSLATE_NOOP("OverviewForm", "Security unit"), ":/img/icon/lock_32.png"},
    {11, QT_TRANSLATE_NOOP("OverviewForm", "Sensor unit"), nullptr},
    {12, QT_TRANSLATE_NOOP("OverviewForm", "Gateway unit"), nullptr},
    {13, QT_TRANSLATE_NOOP("OverviewForm", "Generator unit"), nullptr},
    {14, QT_TRANSLATE_NOOP("OverviewForm", "Load unit"), nullptr},
    {80, QT_TRANSLATE_NOOP("OverviewForm", "manufacturer-specific device"), nullptr},
};
static_assert(hasDistinctCodes(componentClasses));

QString formText(const char *text)
{
    return QCoreApplication::translate("OverviewForm", text);
}

} // namespace

const ComponentClass *findComponentClass(quint8 code)
{
    return findRow(componentClasses, code);
}

QString componentClassName(const ComponentClass &componentClass)
{
    return formText(componentClass.name);
}

QString componentClassName(const ComponentClass &componentClass, quint8 nodeId)
{
    if (componentClass.code == controllerClass && nodeId == chargerNodeId)
        return formText(chargerName);
    return componentClassName(componentClass);
}
