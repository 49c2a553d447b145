// SPDX-License-Identifier: MIT
#pragma once

#include <cli/core/exitstatus.h>

#include <QStringList>

/*! draxelctl health: listens to a bus and says how well it is. */
ExitStatus runHealthCommand(const QStringList &arguments);
