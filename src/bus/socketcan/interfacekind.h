// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/*! What kind of link the network interface \a name is, as the system calls it: "vcan", "vxcan", "can". Empty when it is not
 *  there, when its driver does not tell (serial lines, the loopback), and on systems without such interfaces.
 */
QString interfaceKind(const QString &name);
