// SPDX-License-Identifier: MIT
#pragma once

#include <cli/core/exitstatus.h>

#include <QStringList>

/*! draxelctl monitor: shows how a bus is, again and again. */
ExitStatus runMonitorCommand(const QStringList &arguments);
