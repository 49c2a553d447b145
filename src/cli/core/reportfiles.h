// SPDX-License-Identifier: MIT
#pragma once

#include "exitstatus.h"

class NodeStore;
class QString;

/*! Makes the folder for a report if it is not there, and tries whether files can be written into it. On
 *  failure returns false and sets \a errorMessage to a sentence.
 */
bool prepareReportFolder(const QString &folder, QString *errorMessage);

/*! Writes the report on all nodes into a folder that was prepared, and prints which files it wrote, or why it
 *  could not. A file is replaced by a complete one only. Ctrl+C ends it at once and leaves nothing behind. Needs a
 *  QGuiApplication.
 */
ExitStatus writeReport(const NodeStore &store, const QString &folder);
