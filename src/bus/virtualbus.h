// SPDX-License-Identifier: MIT
#pragma once

#include "busaddress.h"

#include <QString>

#include <functional>

/*! Whether nothing but programs can be on a bus: what is sent there moves no motor.
 *
 *  True for the back ends "virtualcan" and "simulated", and for a virtual interface of SocketCAN. Of everything else nobody
 *  knows: false.
 */
bool isVirtualBus(const BusAddress &address);

/*! The same; \a kindOf tells the kind of a network interface, see interfaceKind(). */
bool isVirtualBus(const BusAddress &address, const std::function<QString(const QString &name)> &kindOf);
