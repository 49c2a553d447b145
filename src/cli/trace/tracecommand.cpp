// SPDX-License-Identifier: MIT
#include "tracecommand.h"

#include <cli/core/commandgroup.h>

namespace {

constexpr Command commands[] = {
    {"record", runTraceRecord, QT_TRANSLATE_NOOP("TraceCommand", "record the frames of a bus")},
    {"show", runTraceShow, QT_TRANSLATE_NOOP("TraceCommand", "show a trace in words")},
    {"convert", runTraceConvert, QT_TRANSLATE_NOOP("TraceCommand", "write a trace in another format")},
    {"replay", runTraceReplay, QT_TRANSLATE_NOOP("TraceCommand", "send the frames of a trace to a bus")},
    {"statistics", runTraceStatistics,
     QT_TRANSLATE_NOOP("TraceCommand", "count the frames of a trace, and say how full the bus was")},
};

constexpr CommandGroup group("trace", "TraceCommand",
                             QT_TRANSLATE_NOOP("TraceCommand",
                                               "Records the frames of a bus, and reads what was recorded."),
                             commands);

} // namespace

ExitStatus runTraceCommand(const QStringList &arguments)
{
    return group.run(arguments);
}
