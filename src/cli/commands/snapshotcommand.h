// SPDX-License-Identifier: MIT
#pragma once

#include <cli/core/exitstatus.h>

class QStringList;

/*! "draxelctl snapshot"; \a arguments: program and command first. */
ExitStatus runSnapshotCommand(const QStringList &arguments);
