// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/*! Files that get their name when they are complete. There is one source file for each kind of system. */
namespace UnnamedFile {

/*! Opens a new file in \a folder for reading and writing and returns its descriptor, which the caller closes; -1 where the system
 *  or the folder's file system has no such files, or the folder cannot be written.
 */
int open(const QString &folder);

/*! Where this process can open the file once more, for what takes names only; good while \a descriptor is open. */
QString path(int descriptor);

/*! Puts the file under \a fileName, on the same file system, in the place of one that is there and with its
 *  permissions. On failure returns false, sets \a error to the system's reason, and leaves the old one alone.
 */
bool giveName(int descriptor, const QString &fileName, QString *error);

} // namespace UnnamedFile
