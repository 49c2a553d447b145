// SPDX-License-Identifier: MIT
#pragma once

#include <cli/core/exitstatus.h>

class QStringList;

/*! `draxelctl simulate`: puts a simulated vehicle on a bus until it is interrupted. Returns the exit status.
 */
ExitStatus runSimulateCommand(const QStringList &arguments);
