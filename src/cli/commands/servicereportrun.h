// SPDX-License-Identifier: MIT
#pragma once

#include <cli/core/exitstatus.h>

#include <QString>

class CommandArguments;

/*! `draxelctl report --service`: judges a vehicle and writes the service report. */
namespace ServiceReportRun {

void addOptions(CommandArguments &options);

/*! Whether the service report is meant. */
bool isWanted(const CommandArguments &options);

/*! The first option that is only for a service report and is there without it; empty for none. */
QString strayOption(const CommandArguments &options);

/*! Writes the report on the file into the folder, which is made when it is not there. Needs a QGuiApplication. */
ExitStatus run(const CommandArguments &options, const QString &fileName, const QString &folder);

} // namespace ServiceReportRun
