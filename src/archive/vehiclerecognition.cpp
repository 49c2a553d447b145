// SPDX-License-Identifier: MIT
#include "vehiclerecognition.h"

#include "visit.h"

#include <algorithm>

namespace {

constexpr quint8 controllerNode = 1;
constexpr quint8 stationNode = 127; // a charging station is at this node
constexpr quint8 chargerClass = 5;  // CiA 454
constexpr quint8 batteryClass = 6;

bool isLoose(const VisitComponent &component)
{
    const QVector<quint8> &classes = component.identity.classes;
    return component.nodeId == stationNode
           || (!classes.isEmpty() && std::all_of(classes.begin(), classes.end(), [](quint8 code) {
                  return code == batteryClass || code == chargerClass;
              }));
}

QStringList keysOf(const QVector<VisitComponent> &components)
{
    QStringList keys;
    for (const VisitComponent &component : components)
        keys.append(component.deviceKey());
    return keys;
}

int sharedCount(const QStringList &a, const QStringList &b)
{
    return static_cast<int>(
        std::count_if(a.begin(), a.end(), [&b](const QString &key) { return b.contains(key); }));
}

bool areDifferent(const QString &a, const QString &b)
{
    return !a.isEmpty() && !b.isEmpty() && a != b;
}

bool hasSameController(const VehicleDevices &now, const KnownVehicle &vehicle)
{
    return !now.controller.isEmpty() && now.controller == vehicle.latest.controller;
}

/*! The same parts: of a vehicle with a new controller most of all, and two at least; else most of those that the smaller
 *  list has, because a part may not answer.
 */
bool hasSameParts(const VehicleDevices &now, const KnownVehicle &vehicle)
{
    const bool isOtherController = areDifferent(now.controller, vehicle.latest.controller);
    const int shared = sharedCount(now.fixed, vehicle.latest.fixed);
    const int all = isOtherController ? qMax(now.fixed.size(), vehicle.latest.fixed.size())
                                      : qMin(now.fixed.size(), vehicle.latest.fixed.size());
    return shared >= (isOtherController ? 2 : 1) && shared * 2 > all;
}

/*! It had the controller before its last visit, as vehicles that the user has merged, and nothing speaks against it. */
bool hadController(const VehicleDevices &now, const KnownVehicle &vehicle)
{
    return vehicle.hadController && (now.fixed.isEmpty() || sharedCount(now.fixed, vehicle.latest.fixed) > 0);
}

/*! Loose parts that were read alone. */
bool areSameLooseParts(const VehicleDevices &now, const KnownVehicle &vehicle)
{
    const bool areAlone = now.controller.isEmpty() && now.fixed.isEmpty()
                          && vehicle.latest.controller.isEmpty() && vehicle.latest.fixed.isEmpty();
    return areAlone && sharedCount(now.loose, vehicle.latest.loose) * 2 > now.loose.size();
}

} // namespace

VehicleDevices VehicleDevices::of(const QVector<VisitComponent> &components)
{
    const QStringList keys = keysOf(components);
    VehicleDevices devices;
    for (const VisitComponent &component : components) {
        const QString key = component.deviceKey();
        if (key.isEmpty() || keys.count(key) > 1)
            continue;
        if (component.nodeId == controllerNode)
            devices.controller = key;
        else
            (isLoose(component) ? devices.loose : devices.fixed).append(key);
    }
    return devices;
}

QStringList VehicleDevices::telling() const
{
    QStringList keys = fixed;
    if (!controller.isEmpty())
        keys.prepend(controller);
    return keys.isEmpty() ? loose : keys;
}

std::optional<qint64> VehicleRecognition::find(const VehicleDevices &devices,
                                               const QVector<KnownVehicle> &known)
{
    using Rule = bool (*)(const VehicleDevices &, const KnownVehicle &);
    constexpr Rule rules[] = {hasSameController, hasSameParts, hadController, areSameLooseParts};
    for (const Rule rule : rules) {
        const KnownVehicle *found = nullptr;
        for (const KnownVehicle &vehicle : known) {
            if (rule(devices, vehicle) && (found == nullptr || vehicle.lastTime > found->lastTime))
                found = &vehicle;
        }
        if (found != nullptr)
            return found->id;
    }
    return std::nullopt;
}

QString VehicleRecognition::label(const QVector<VisitComponent> &components)
{
    // By node, so that the controller is the first one.
    for (const VisitComponent &component : components) {
        if (component.identity.isUnique())
            return QString::number(*component.identity.serial);
    }
    return QString();
}
