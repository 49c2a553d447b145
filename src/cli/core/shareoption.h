// SPDX-License-Identifier: MIT
#pragma once

#include "exitstatus.h"

#include <optional>

class CommandArguments;

/*! The option --share: how much of a bus questions and answers may take. */
namespace ShareOption {

/*! \a usual in percent. */
void add(CommandArguments &options, int usual);

/*! Takes the option into \a percent, which stays without it; an exit status after a complaint. */
std::optional<ExitStatus> parse(const CommandArguments &options, int *percent);

} // namespace ShareOption
