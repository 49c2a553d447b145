// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/*! Finds the names of files and folders in texts for people. */
namespace PathFinding {

struct Place
{
    int first = -1; //!< position; -1: none
    int size = 0;
};

/*! The first path from \a from on: absolute or with "./", "../" or "~/" in front, of Unix or Windows, also with blanks in
 *  it where more of the path follows. Takes rather too much than too little.
 */
Place next(const QString &text, int from);

} // namespace PathFinding
