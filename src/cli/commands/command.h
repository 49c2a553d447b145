// SPDX-License-Identifier: MIT
#pragma once

#include <cli/core/exitstatus.h>

#include <QStringList>

/*! A command of draxelctl: a row of the table in main.cpp. */
struct Command
{
    const char *name;
    /*! \a arguments: program and command first. */
    ExitStatus (*run)(const QStringList &arguments);
    const char *description; // in the context "DraxelCtl"
    /*! Whether these arguments ask for a report, which needs fonts; null: none of them do. */
    bool (*needsFonts)(const QStringList &arguments) = nullptr;
};
