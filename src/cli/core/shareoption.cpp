// SPDX-License-Identifier: MIT
#include "shareoption.h"

#include "commandarguments.h"

#include <snapshot/busshare.h>

namespace {

struct ShareOptionTr
{
    Q_DECLARE_TR_FUNCTIONS(ShareOption)
};

constexpr QLatin1String shareOption("share");

} // namespace

void ShareOption::add(CommandArguments &options, int usual)
{
    options.addOption(
        {shareOption,
         ShareOptionTr::tr("How much of the bus questions and answers may take, 1 to 100 (no limit); usually "
                           "%1.")
             .arg(usual),
         QStringLiteral("PERCENT")});
}

std::optional<ExitStatus> ShareOption::parse(const CommandArguments &options, int *percent)
{
    if (!options.isSet(shareOption))
        return std::nullopt;
    const std::optional<int> share = options.number(shareOption, 1, BusShare::everything);
    if (!share)
        return Exit::usage;
    *percent = *share;
    return std::nullopt;
}
