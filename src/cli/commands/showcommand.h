// SPDX-License-Identifier: MIT
#pragma once

class QStringList;

/*! `draxelctl show`: prints the components of a vehicle and all their values in words. Returns the exit status.
 */
int runShowCommand(const QStringList &arguments);
