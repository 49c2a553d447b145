// SPDX-License-Identifier: MIT
#pragma once

#include <cli/core/exitstatus.h>

class QStringList;

/*! `draxelctl scan`: finds the nodes of a bus by asking each node ID. Returns the exit status. */
ExitStatus runScanCommand(const QStringList &arguments);
