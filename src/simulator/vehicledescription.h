// SPDX-License-Identifier: MIT
#pragma once

#include "behaviour.h"
#include "fault.h"

#include <canopen/nmt.h>
#include <canopen/objectdictionary.h>

#include <QString>
#include <QVector>

#include <optional>

namespace Simulator {

/*! One node of a simulated vehicle. */
struct NodeDescription
{
    quint8 id = 0; // 1 to 127
    QString name;
    CanOpen::ObjectDictionary dictionary;
    std::optional<quint16> heartbeatMs; // heartbeat period, 0: off; empty: what object 1017h says
    bool bootUp = true;                 // whether it sends a boot-up message
    CanOpen::NmtState state = CanOpen::NmtState::Operational; // what it enters by itself after its boot-up
    QVector<Behaviour> behaviours;
    QVector<Fault> faults;
};

/*! How much faster than real time the moving values of a vehicle may go. */
constexpr double slowestVehicle = 0.01;
constexpr double fastestVehicle = 1000;
constexpr bool isVehicleSpeed(double speed)
{
    return speed >= slowestVehicle && speed <= fastestVehicle;
}

/*! A simulated vehicle, from a vehicle file or made in code. */
struct VehicleDescription
{
    QString name;
    QString description;
    int bitRate = 250000; // bit/s of its bus
    QVector<NodeDescription> nodes;
    QVector<Fault> faults; // of the whole bus
    double speed = 1;      // seconds of the moving values in a second, more than 0
};

} // namespace Simulator
