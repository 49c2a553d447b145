// SPDX-License-Identifier: MIT
#pragma once

#include <cli/core/exitstatus.h>

#include <QStringList>

/*! draxelctl archive: visits that are kept. */
ExitStatus runArchiveCommand(const QStringList &arguments);

// Its own commands; \a arguments: program and command first. See archivekeeping.cpp ...
ExitStatus runArchiveAdd(const QStringList &arguments);
ExitStatus runArchiveImport(const QStringList &arguments);
ExitStatus runArchiveExport(const QStringList &arguments);
ExitStatus runArchiveDelete(const QStringList &arguments);
ExitStatus runArchiveNote(const QStringList &arguments);
ExitStatus runArchiveName(const QStringList &arguments);
ExitStatus runArchiveMerge(const QStringList &arguments);
ExitStatus runArchiveMove(const QStringList &arguments);

// ... and archivelooking.cpp.
ExitStatus runArchiveList(const QStringList &arguments);
ExitStatus runArchiveVehicles(const QStringList &arguments);
ExitStatus runArchiveFind(const QStringList &arguments);
ExitStatus runArchiveShow(const QStringList &arguments);
ExitStatus runArchiveDiff(const QStringList &arguments);
ExitStatus runArchiveTrend(const QStringList &arguments);
