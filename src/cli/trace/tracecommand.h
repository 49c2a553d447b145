// SPDX-License-Identifier: MIT
#pragma once

#include <cli/core/exitstatus.h>

#include <QStringList>

/*! draxelctl trace: frames of a bus to files and back. */
ExitStatus runTraceCommand(const QStringList &arguments);

// Its own commands, a file each; \a arguments: program and command first.
ExitStatus runTraceRecord(const QStringList &arguments);
ExitStatus runTraceShow(const QStringList &arguments);
ExitStatus runTraceConvert(const QStringList &arguments);
ExitStatus runTraceReplay(const QStringList &arguments);
ExitStatus runTraceStatistics(const QStringList &arguments);
