// SPDX-License-Identifier: MIT
#pragma once

#include "exitstatus.h"

#include <canopen/sdoclient.h>

#include <optional>

class CommandArguments;

/*! The options --timeout and --retries: how patient a command is with nodes. */
namespace PatienceOptions {

void add(CommandArguments &options);

/*! Takes the options into \a patience; an exit status after a complaint. */
std::optional<ExitStatus> parse(const CommandArguments &options, CanOpen::SdoPatience *patience);

} // namespace PatienceOptions
