// SPDX-License-Identifier: MIT
#pragma once

#include "exitstatus.h"

#include <QStringList>

/*! A command of draxelctl or of one of its groups: a row of their tables. */
struct Command
{
    const char *name;
    /*! \a arguments: program and command first. */
    ExitStatus (*run)(const QStringList &arguments);
    const char *description; // in the context of the table
    /*! Whether these arguments ask for a report, which needs fonts; null: none of them do. */
    bool (*needsFonts)(const QStringList &arguments) = nullptr;
};
