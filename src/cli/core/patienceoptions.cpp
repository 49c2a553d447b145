// SPDX-License-Identifier: MIT
#include "patienceoptions.h"

#include "commandarguments.h"

#include <algorithm>
#include <chrono>

namespace {

struct PatienceOptionsTr
{
    Q_DECLARE_TR_FUNCTIONS(PatienceOptions)
};

constexpr QLatin1String timeoutOption("timeout");
constexpr QLatin1String retriesOption("retries");

constexpr int longestTimeout = 60000; // ms
constexpr int mostRetries = 100;

} // namespace

void PatienceOptions::add(CommandArguments &options)
{
    options.addOption(
        {timeoutOption,
         PatienceOptionsTr::tr("How long a node may take to answer, in ms; at least and usually 100."),
         QStringLiteral("MS")});
    options.addOption(
        {retriesOption,
         PatienceOptionsTr::tr("How often a node that does not answer is asked again; usually 2."),
         QStringLiteral("N")});
}

std::optional<ExitStatus> PatienceOptions::parse(const CommandArguments &options,
                                                 CanOpen::SdoPatience *patience)
{
    if (options.isSet(timeoutOption)) {
        const std::optional<int> timeout
            = options.number(timeoutOption, static_cast<int>(patience->timeout.count()), longestTimeout);
        if (!timeout)
            return Exit::usage;
        patience->timeout = std::chrono::milliseconds(*timeout);
    }
    if (options.isSet(retriesOption)) {
        const std::optional<int> retries = options.number(retriesOption, 0, mostRetries);
        if (!retries)
            return Exit::usage;
        patience->repeats = *retries;
    }
    // Every repeat gets its whole time, and frames that wait to be sent have some as well.
    patience->longest = std::max(patience->longest, patience->allWaits() + patience->timeout);
    return std::nullopt;
}
