// SPDX-License-Identifier: MIT
#include "backends.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr BackEnd backEnds[] = {
    // plugin       configured outside  presence                          bit rate  errors
    {"socketcan", true, BackEnd::Presence::NetworkFolder, true, true},
    {"virtualcan", false, BackEnd::Presence::List, false, true},
    {"simulated", false, BackEnd::Presence::List, true, true},
};

constexpr BackEnd anyOther{nullptr, false, BackEnd::Presence::List, true, false};

} // namespace

const BackEnd &BackEnd::find(const QString &plugin)
{
    const auto *const row
        = std::find_if(std::begin(backEnds), std::end(backEnds),
                       [&plugin](const BackEnd &known) { return plugin == QLatin1String(known.plugin); });
    return row != std::end(backEnds) ? *row : anyOther;
}
