// SPDX-License-Identifier: MIT
#pragma once

#include "exitstatus.h"

#include <checkup/ruleset.h>

#include <optional>

class CommandArguments;

/*! The option --rules: by which rules a command judges. */
namespace RuleOptions {

void add(CommandArguments &options);

/*! Loads the shipped rules, and the folder that is asked for or the user's own. What is wrong in them is said on
 *  standard error, and all other rules hold. An exit status when there is no such folder, or no rule at all.
 */
std::optional<ExitStatus> load(const CommandArguments &options, RuleSet *rules);

} // namespace RuleOptions
