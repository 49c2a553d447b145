// SPDX-License-Identifier: MIT
#pragma once

#include "exitstatus.h"

#include <optional>

class CommandArguments;

/*! The language of what devices say: the translations of the plug-in, pl_overview_LANGUAGE.qm in the folder
 *  "languages" beside the program. The program's own sentences are English.
 */
namespace Language {

/*! Adds --language. */
void addOption(CommandArguments &options);

/*! Loads the language that is asked for; an exit status after a complaint that there is none such. */
std::optional<ExitStatus> load(const CommandArguments &options);

} // namespace Language
