// SPDX-License-Identifier: MIT
#pragma once

#include <cli/core/exitstatus.h>

class QStringList;

/*! `draxelctl get`: reads one object of a node and prints it. Returns the exit status. */
ExitStatus runGetCommand(const QStringList &arguments);
