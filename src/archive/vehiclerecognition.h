// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

struct Snapshot;
struct VisitComponent;

/*! The devices of a vehicle that can be told from all others, by what they say about the vehicle. Texts as
 *  DeviceIdentity::toKey() gives them.
 */
struct VehicleDevices
{
    QString controller; //!< of node 1; empty when it has no identity of its own
    QStringList fixed;  //!< that stay in a vehicle
    QStringList loose; //!< batteries, chargers, and what stands at node 127: these go from vehicle to vehicle

    /*! Two devices with the same identity tell nothing and are left out. */
    static VehicleDevices of(const QVector<VisitComponent> &components);

    bool isEmpty() const { return controller.isEmpty() && fixed.isEmpty() && loose.isEmpty(); }
    /*! Those that other visits of the vehicle are looked for by. */
    QStringList telling() const;
};

/*! A vehicle that is known and has some of the devices. */
struct KnownVehicle
{
    qint64 id = 0;
    VehicleDevices latest;      //!< of its last visit
    bool hadController = false; //!< whether it had the controller now seen at any visit
    qint64 lastTime = 0;        //!< of its last visit, ms
};

/*! Which vehicle was read; docs/archive.md has the rule in words. */
namespace VehicleRecognition {

/*! Empty when it is a vehicle that is not known yet. */
std::optional<qint64> find(const VehicleDevices &devices, const QVector<KnownVehicle> &known);

/*! The serial number that a vehicle is called by; empty when there is none. */
QString label(const QVector<VisitComponent> &components);

} // namespace VehicleRecognition
