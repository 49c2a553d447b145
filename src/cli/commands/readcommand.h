// SPDX-License-Identifier: MIT
#pragma once

class QStringList;

/*! `draxelctl read`: reads a bus as the window does and writes an exchange file. Returns the exit status. */
int runReadCommand(const QStringList &arguments);
