// SPDX-License-Identifier: MIT
#pragma once

class QStringList;

/*! `draxelctl simulate`: puts a simulated vehicle on a bus until it is interrupted. Returns the exit status.
 */
int runSimulateCommand(const QStringList &arguments);
