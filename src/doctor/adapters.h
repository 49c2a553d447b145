// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/*! A kind of CAN adapter for USB that Linux has a driver for. */
struct UsbAdapter
{
    quint16 vendor;
    int product; //!< -1: all of the vendor
    const char *name;
    const char *module; //!< of the kernel

    /*! The adapter with these numbers; null when it is none that is known. */
    static const UsbAdapter *find(quint16 vendor, quint16 product);
};
