// SPDX-License-Identifier: MIT
#include "virtualbus.h"

#include <bus/socketcan/interfacekind.h>

bool isVirtualBus(const BusAddress &address)
{
    return isVirtualBus(address, interfaceKind);
}

bool isVirtualBus(const BusAddress &address, const std::function<QString(const QString &name)> &kindOf)
{
    if (address.plugin == QLatin1String("virtualcan") || address.plugin == QLatin1String("simulated"))
        return true;
    return address.plugin == QLatin1String("socketcan")
           && kindOf(address.interfaceName) == QLatin1String("vcan");
}
