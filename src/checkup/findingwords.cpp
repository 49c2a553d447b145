// SPDX-License-Identifier: MIT
#include "findingwords.h"

#include <iterator>

namespace {

// In the order of their enumerations
constexpr const char *severities[] = {"note", "warning", "fault"};
constexpr const char *states[] = {"good", "note", "notChecked", "warning", "fault"};
constexpr const char *verdicts[] = {"ok", "note", "incomplete", "warning", "fault"};
static_assert(std::size(severities) == static_cast<std::size_t>(Severity::Fault) + 1);
static_assert(std::size(states) == static_cast<std::size_t>(ComponentState::Fault) + 1);
static_assert(std::size(verdicts) == static_cast<std::size_t>(Verdict::Fault) + 1);

} // namespace

QString FindingWords::of(Severity severity)
{
    return QLatin1String(severities[static_cast<std::size_t>(severity)]);
}

QString FindingWords::of(ComponentState state)
{
    return QLatin1String(states[static_cast<std::size_t>(state)]);
}

QString FindingWords::of(Verdict verdict)
{
    return QLatin1String(verdicts[static_cast<std::size_t>(verdict)]);
}
