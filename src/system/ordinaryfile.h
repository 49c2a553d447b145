// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/*! What is wrong with a name that is neither that of a file nor of a folder: opening a pipe, for instance, could keep a thread
 *  waiting for ever. Empty for all others, also when there is nothing of that name: who opens it says so.
 */
QString ordinaryFileProblem(const QString &fileName);
