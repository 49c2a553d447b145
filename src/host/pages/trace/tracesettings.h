// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/*! Where traces that the window saves by itself lie, and how much room they may take. */
struct TraceSettings
{
    QString folder;
    qint64 mostBytes = 500000000; //!< of what is saved by itself; the oldest go first
    bool savesFaults = true;        //!< whether a fault saves the last minutes

    /*! Those that the user has set; the others as usual: the folder "draxel/traces" among the user's data. */
    static TraceSettings load();
};
