// SPDX-License-Identifier: MIT
#include "tracecommand.h"

#include <cli/commands/command.h>
#include <cli/core/console.h>

#include <QCoreApplication>

#include <algorithm>
#include <iterator>

namespace {

struct TraceCommandTr
{
    Q_DECLARE_TR_FUNCTIONS(TraceCommand)
};

constexpr Command commands[] = {
    {"record", runTraceRecord, QT_TRANSLATE_NOOP("TraceCommand", "record the frames of a bus")},
    {"show", runTraceShow, QT_TRANSLATE_NOOP("TraceCommand", "show a trace in words")},
    {"convert", runTraceConvert, QT_TRANSLATE_NOOP("TraceCommand", "write a trace in another format")},
    {"replay", runTraceReplay, QT_TRANSLATE_NOOP("TraceCommand", "send the frames of a trace to a bus")},
    {"statistics", runTraceStatistics,
     QT_TRANSLATE_NOOP("TraceCommand", "count the frames of a trace, and say how full the bus was")},
};

QString usage()
{
    QString text = TraceCommandTr::tr("Records the frames of a bus, and reads what was recorded.\n"
                                      "\n"
                                      "Usage: draxelctl trace COMMAND [OPTION]...\n"
                                      "\n"
                                      "Commands:\n");
    for (const Command &command : commands) {
        text += QStringLiteral("  %1 %2\n")
                    .arg(QLatin1String(command.name), -11)
                    .arg(TraceCommandTr::tr(command.description));
    }
    return text
           + TraceCommandTr::tr("\n"
                                "Options:\n"
                                "  -h, --help  Show this help.\n"
                                "\n"
                                "\"draxelctl trace COMMAND --help\" shows the options of a command.");
}

} // namespace

ExitStatus runTraceCommand(const QStringList &arguments)
{
    constexpr int own = 1; // the position of "trace"
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
                                : TraceCommandTr::tr("draxelctl trace: There is no command \"%1\".\n"
                                                     "\"draxelctl trace --help\" lists the commands.")
                                      .arg(name));
        return Exit::usage;
    }
    QStringList rest = arguments;
    rest.removeAt(own);
    return command->run(rest);
}
