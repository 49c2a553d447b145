// SPDX-License-Identifier: MIT
#pragma once

#include <simulator/vehicledescription.h>
#include <snapshot/snapshot.h>

#include <QString>

#include <random>

/*! What a full snapshot of a simulated vehicle looks like, without the time that reading takes: the objects that the
 *  vehicle has, a reason for each other one of the object table, and times of a bus.
 */
class VehicleSnapshots
{
public:
    /*! \a name: a vehicle file of the simulator's folder. An unknown one has no nodes. */
    explicit VehicleSnapshots(const QString &name);

    /*! A visit of a vehicle: its own serial numbers, and values that differ from visit to visit. */
    Snapshot visit(int vehicle, int number);

private:
    SnapshotNode nodeOf(const Simulator::NodeDescription &description, int vehicle);
    SnapshotEntry entryOf(const Simulator::NodeDescription &description, CanOpen::ObjectKey key, int vehicle);

    Simulator::VehicleDescription m_vehicle;
    std::mt19937 m_random{20260903};
    qint64 m_time = 0; // ms since the snapshot began
};
