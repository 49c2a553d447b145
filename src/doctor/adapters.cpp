// SPDX-License-Identifier: MIT
#include "adapters.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr int all = -1;

// By the drivers of Linux 6.1.
constexpr UsbAdapter adapters[] = {
    {0x0C72, all, "PEAK PCAN-USB", "peak_usb"},
    {0x0BFD, all, "Kvaser USB", "kvaser_usb"},
    {0x0AB4, all, "esd CAN-USB", "esd_usb"},
    {0x12E6, all, "EMS CPC-USB", "ems_usb"},
    {0x1D50, 0x606F, "candleLight (gs_usb)", "gs_usb"},
    {0x1209, 0x2323, "candleLight (gs_usb)", "gs_usb"},
    {0x1CD2, 0x606F, "CES CANext FD (gs_usb)", "gs_usb"},
    {0x04D8, 0x0A30, "Microchip CAN BUS Analyzer", "mcba_usb"},
    {0x0483, 0x1234, "8devices USB2CAN", "usb_8dev"},
};

} // namespace

const UsbAdapter *UsbAdapter::find(quint16 vendor, quint16 product)
{
    const auto *const known = std::find_if(
        std::begin(adapters), std::end(adapters), [vendor, product](const UsbAdapter &adapter) {
            return adapter.vendor == vendor && (adapter.product == all || adapter.product == product);
        });
    return known != std::end(adapters) ? known : nullptr;
}
