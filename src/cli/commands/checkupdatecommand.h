// SPDX-License-Identifier: MIT
#pragma once

#include <cli/core/exitstatus.h>

class QStringList;

/*! `draxelctl check-update`: asks the update information server about one node. Returns the exit status. */
ExitStatus runCheckUpdateCommand(const QStringList &arguments);
