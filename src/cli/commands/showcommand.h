// SPDX-License-Identifier: MIT
#pragma once

#include <cli/core/exitstatus.h>

class QStringList;

/*! `draxelctl show`: prints the components of a vehicle and all their values in words. Returns the exit status.
 */
ExitStatus runShowCommand(const QStringList &arguments);
