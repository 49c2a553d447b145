// SPDX-License-Identifier: MIT
#pragma once

class QStringList;

/*! `draxelctl report`: writes the report on what an exchange file holds. Returns the exit status. Needs a
 *  QGuiApplication.
 */
int runReportCommand(const QStringList &arguments);
