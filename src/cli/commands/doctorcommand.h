// SPDX-License-Identifier: MIT
#pragma once

#include <cli/core/exitstatus.h>

#include <QStringList>

/*! draxelctl doctor: says what this computer lacks for CAN, and what mends it. */
ExitStatus runDoctorCommand(const QStringList &arguments);
