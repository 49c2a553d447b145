// SPDX-License-Identifier: MIT
#pragma once

#include <cli/core/exitstatus.h>

#include <QStringList>

/*! `draxelctl checkup`: judges a vehicle. */
ExitStatus runCheckupCommand(const QStringList &arguments);
