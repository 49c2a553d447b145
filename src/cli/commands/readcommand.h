// SPDX-License-Identifier: MIT
#pragma once

#include <cli/core/exitstatus.h>

class QStringList;

/*! `draxelctl read`: reads a bus as the window does and writes an exchange file. Returns the exit status. */
ExitStatus runReadCommand(const QStringList &arguments);

/*! Whether \a arguments ask for a report. */
bool readNeedsFonts(const QStringList &arguments);
