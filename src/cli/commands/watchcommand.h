// SPDX-License-Identifier: MIT
#pragma once

#include <cli/core/exitstatus.h>

#include <QStringList>

/*! draxelctl watch: shows the values of chosen objects as they come. */
ExitStatus runWatchCommand(const QStringList &arguments);
