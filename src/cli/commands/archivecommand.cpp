// SPDX-License-Identifier: MIT
#include "archivecommand.h"

#include <cli/core/commandgroup.h>

namespace {

constexpr Command commands[] = {
    {"add", runArchiveAdd, QT_TRANSLATE_NOOP("ArchiveCommand", "keep snapshots and exchange files")},
    {"list", runArchiveList, QT_TRANSLATE_NOOP("ArchiveCommand", "list the visits, the newest first")},
    {"vehicles", runArchiveVehicles, QT_TRANSLATE_NOOP("ArchiveCommand", "list the vehicles")},
    {"find", runArchiveFind,
     QT_TRANSLATE_NOOP("ArchiveCommand", "find visits by serial number, customer, note, vehicle or day")},
    {"show", runArchiveShow, QT_TRANSLATE_NOOP("ArchiveCommand", "print a visit and its values in words")},
    {"diff", runArchiveDiff, QT_TRANSLATE_NOOP("ArchiveCommand", "say what has changed from visit to visit")},
    {"trend", runArchiveTrend, QT_TRANSLATE_NOOP("ArchiveCommand", "print a value over the visits")},
    {"export", runArchiveExport,
     QT_TRANSLATE_NOOP("ArchiveCommand", "write visits as files, or all as an archive")},
    {"import", runArchiveImport,
     QT_TRANSLATE_NOOP("ArchiveCommand", "keep what files and other archives hold")},
    {"note", runArchiveNote, QT_TRANSLATE_NOOP("ArchiveCommand", "change what is written beside a visit")},
    {"name", runArchiveName, QT_TRANSLATE_NOOP("ArchiveCommand", "give a vehicle a name")},
    {"merge", runArchiveMerge, QT_TRANSLATE_NOOP("ArchiveCommand", "make one vehicle of two")},
    {"move", runArchiveMove, QT_TRANSLATE_NOOP("ArchiveCommand", "give a visit to another vehicle")},
    {"delete", runArchiveDelete, QT_TRANSLATE_NOOP("ArchiveCommand", "delete visits")},
};

constexpr CommandGroup group("archive", "ArchiveCommand",
                             QT_TRANSLATE_NOOP("ArchiveCommand",
                                               "Keeps every read of every vehicle, and finds it again."),
                             commands);

} // namespace

ExitStatus runArchiveCommand(const QStringList &arguments)
{
    return group.run(arguments);
}
