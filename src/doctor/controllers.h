// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

/*! What the driver of a CAN interface tells. Empty is what it does not tell. */
struct ControllerFacts
{
    enum class State { Active, Warning, Passive, BusOff, Off };

    std::optional<int> bitRate; //!< bit/s
    std::optional<State> state;
    std::optional<int> transmitErrors; //!< counters
    std::optional<int> receiveErrors;
    bool isListenOnly = false;
};

/*! What this library asks of the operating system; see controllers_linux.cpp. */
namespace Controllers {

/*! Why no CAN socket can be made, the system's words; empty when one can, or where there are none. */
QString socketError();

/*! Of a network interface with a device; asks the kernel. */
ControllerFacts of(const QString &interfaceName);

} // namespace Controllers
