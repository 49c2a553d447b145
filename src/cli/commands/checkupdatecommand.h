// SPDX-License-Identifier: MIT
#pragma once

class QStringList;

/*! `draxelctl check-update`: asks the update information server about one node. Returns the exit status. */
int runCheckUpdateCommand(const QStringList &arguments);
