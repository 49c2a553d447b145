// SPDX-License-Identifier: MIT
#include "archivecommand.h"

#include "command.h"

#include <cli/core/console.h>

#include <QCoreApplication>

#include <algorithm>
#include <iterator>

namespace {

struct ArchiveCommandTr
{
    Q_DECLARE_TR_FUNCTIONS(ArchiveCommand)
};

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

QString usage()
{
    QString text = ArchiveCommandTr::tr("Keeps every read of every vehicle, and finds it again.\n"
                                        "\n"
                                        "Usage: draxelctl archive COMMAND [OPTION]...\n"
                                        "\n"
                                        "Commands:\n");
    for (const Command &command : commands) {
        text += QStringLiteral("  %1 %2\n")
                    .arg(QLatin1String(command.name), -9)
                    .arg(ArchiveCommandTr::tr(command.description));
    }
    return text
           + ArchiveCommandTr::tr("\n"
                                  "Options:\n"
                                  "  -h, --help  Show this help.\n"
                                  "\n"
                                  "\"draxelctl archive COMMAND --help\" shows the options of a command.");
}

} // namespace

ExitStatus runArchiveCommand(const QStringList &arguments)
{
    constexpr int own = 1; // the position of "archive"
    const QString name = arguments.value(own + 1);
    if (name == QLatin1String("--help") || name == QLatin1String("-h")) {
        Console::print(usage());
        return Exit::success;
    }
    const auto *const command
        = std::find_if(std::begin(commands), std::end(commands),
                       [&name](const Command &known) { return name == QLatin1String(known.name); });
    if (command == std::end(commands)) {
        Console::printError(name.isEmpty()
                                ? usage()
                                : ArchiveCommandTr::tr("draxelctl archive: There is no command \"%1\".\n"
                                                       "\"draxelctl archive --help\" lists the commands.")
                                      .arg(name));
        return Exit::usage;
    }
    QStringList rest = arguments;
    rest.removeAt(own);
    return command->run(rest);
}
