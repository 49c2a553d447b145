// SPDX-License-Identifier: MIT
#include "tracecommand.h"
#include "tracestatisticslisting.h"

#include <bus/bussettings.h>
#include <cli/core/commandarguments.h>
#include <cli/core/console.h>
#include <cli/core/optionnames.h>
#include <cli/core/traceinput.h>

#include <QJsonDocument>

namespace {

struct TraceStatisticsCommandTr
{
    Q_DECLARE_TR_FUNCTIONS(TraceStatisticsCommand)
};

/*! The bit rate in *rate; an exit status after a complaint. */
std::optional<ExitStatus> parseRate(const CommandArguments &options, std::optional<int> *rate)
{
    if (!options.isSet(bitRateOption))
        return std::nullopt;
    QString error;
    *rate = parseBitRate(options.value(bitRateOption), &error);
    if (!*rate)
        return options.complain(error);
    if (**rate == 0)
        rate->reset();
    return std::nullopt;
}

} // namespace

ExitStatus runTraceStatistics(const QStringList &arguments)
{
    CommandArguments options(
        QStringLiteral("trace statistics"),
        TraceStatisticsCommandTr::tr("Counts the frames of a trace, and says how full the bus was."));
    options.addPositional(QStringLiteral("FILE"),
                          TraceStatisticsCommandTr::tr("A trace; - for standard input."));
    options.addOption({bitRateOption,
                       TraceStatisticsCommandTr::tr(
                           "The bit rate of the bus, which no trace tells: the load is in percent then."),
                       QStringLiteral("BIT/S")});
    options.addOption({jsonOption, TraceStatisticsCommandTr::tr("Print JSON, for programs.")});
    if (const std::optional<ExitStatus> status = options.parse(arguments))
        return *status;
    std::optional<int> bitRate;
    if (const std::optional<ExitStatus> status = parseRate(options, &bitRate))
        return *status;

    TraceInput input;
    if (!input.open(options.positional()))
        return Exit::fileFailed;
    TraceStatistics statistics;
    TraceFrame frame;
    while (input.next(&frame))
        statistics.add(frame);
    const TraceStatisticsListing listing(statistics, input.head(), input.unread(), bitRate);
    if (options.isSet(jsonOption))
        Console::printJson(QJsonDocument(listing.json()).toJson());
    else
        Console::printPlain(listing.text());
    return input.finish();
}
