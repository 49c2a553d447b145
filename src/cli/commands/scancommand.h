// SPDX-License-Identifier: MIT
#pragma once

class QStringList;

/*! `draxelctl scan`: finds the nodes of a bus by asking each node ID. Returns the exit status. */
int runScanCommand(const QStringList &arguments);
