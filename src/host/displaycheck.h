// SPDX-License-Identifier: MIT
#pragma once

/*! Lives while the QApplication is made: when there is no display, Qt writes several lines and aborts the
 *  process. With this it ends with one sentence that names the command line, and with exit status 1.
 */
class DisplayCheck
{
public:
    DisplayCheck();
    ~DisplayCheck();

    DisplayCheck(const DisplayCheck &) = delete;
    DisplayCheck &operator=(const DisplayCheck &) = delete;
};
