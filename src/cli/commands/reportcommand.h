// SPDX-License-Identifier: MIT
#pragma once

#include <cli/core/exitstatus.h>

class QStringList;

/*! `draxelctl report`: writes the report on what an exchange file holds. Returns the exit status. Needs a
 *  QGuiApplication.
 */
ExitStatus runReportCommand(const QStringList &arguments);

/*! They always do, for the report. */
bool reportNeedsFonts(const QStringList &arguments);
