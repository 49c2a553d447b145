// SPDX-License-Identifier: MIT
#pragma once

#include <simulator/vehicledescription.h>

#include <QVariant>

#include <chrono>

/*! Vehicles made of the shipped full bus: one that is in order, and one that has what a bad day brings. */
namespace TroubledVehicle {

constexpr quint8 weakBattery = 2;  // cell 7 of its first pack is 410 mV below the others
constexpr quint8 deadNode = 9;     // heartbeats, and no answer
constexpr quint8 stoppedNode = 10; // in the NMT state Stopped
constexpr quint8 refusingNode = 16;
constexpr quint8 slowNode = 17;

/*! Takes away what the shipped one reports: an error that is there, and its history. */
inline void heal(Simulator::VehicleDescription *vehicle)
{
    constexpr quint8 errorReporter = 8;
    for (Simulator::NodeDescription &node : vehicle->nodes) {
        if (node.id == errorReporter) {
            node.dictionary.setValue({0x1001, 0}, 0);
            node.dictionary.setValue({0x1003, 0}, 0);
        }
    }
}

/*! \a slowness is how long the slow node takes for an answer. */
inline void spoil(Simulator::VehicleDescription *vehicle,
                  std::chrono::milliseconds slowness = std::chrono::milliseconds(250))
{
    using namespace Simulator::Faults;
    for (Simulator::NodeDescription &node : vehicle->nodes) {
        switch (node.id) {
        case weakBattery:
            node.behaviours.clear();
            node.dictionary.setValue({0x6165, 7}, 3290);
            break;
        case deadNode:
            node.faults.append(SdoSilent());
            break;
        case stoppedNode:
            node.faults.append(Stopped());
            break;
        case refusingNode:
            node.faults.append(SdoAbort());
            break;
        case slowNode: {
            SdoDelay delay;
            delay.delay = slowness;
            node.faults.append(delay);
            break;
        }
        default:
            break;
        }
    }
}

} // namespace TroubledVehicle
