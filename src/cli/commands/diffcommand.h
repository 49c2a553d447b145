// SPDX-License-Identifier: MIT
#pragma once

#include <cli/core/exitstatus.h>

#include <QStringList>

/*! `draxelctl diff`: what has changed between two snapshots of a vehicle. */
ExitStatus runDiffCommand(const QStringList &arguments);
