// SPDX-License-Identifier: MIT
#pragma once

class QStringList;

/*! `draxelctl interfaces`: lists the back ends of QtSerialBus and their interfaces. Returns the exit status.
 */
int runInterfacesCommand(const QStringList &arguments);
