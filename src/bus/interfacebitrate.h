// SPDX-License-Identifier: MIT
#pragma once

class QString;

/*! The bit rate that the system has configured a CAN interface for, in bit/s. 0 where it does not say: for virtual
 *  interfaces, which have none, and on systems without SocketCAN.
 */
int interfaceBitRate(const QString &interfaceName);
