// SPDX-License-Identifier: MIT
#pragma once

#include "exitstatus.h"

#include <QString>

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

/*! The same with the host's texts beside them, draxel_LANGUAGE.qm: for commands that say what the host's own libraries
 *  have to say.
 */
std::optional<ExitStatus> loadWithHost(const CommandArguments &options);

/*! The language that is asked for as its files are named, "de"; "en" when none is. After load(). */
QString name(const CommandArguments &options);

} // namespace Language
