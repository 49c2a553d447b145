// SPDX-License-Identifier: MIT
#pragma once

#include <cli/core/exitstatus.h>

class QStringList;

/*! `draxelctl interfaces`: lists the back ends of QtSerialBus and their interfaces. Returns the exit status.
 */
ExitStatus runInterfacesCommand(const QStringList &arguments);
