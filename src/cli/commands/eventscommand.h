// SPDX-License-Identifier: MIT
#pragma once

#include <cli/core/exitstatus.h>

#include <QStringList>

/*! draxelctl events: lists what happens on a bus. */
ExitStatus runEventsCommand(const QStringList &arguments);
