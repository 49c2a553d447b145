// SPDX-License-Identifier: MIT
#pragma once

#include <cli/core/exitstatus.h>

#include <QStringList>

/*! draxelctl bundle: a support bundle of a bus, or of files. */
ExitStatus runBundleCommand(const QStringList &arguments);
