// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/*! Where traces that the window saves by itself lie, and how much room they may take; how it records. */
struct TraceSettings
{
    /*! When a recording goes on in another file. */
    enum class Rotation : quint8 { Never, Size, Time };
    QString folder;
    qint64 mostBytes = 500000000; //!< of what is saved by itself; the oldest go first
    bool savesFaults = true;      //!< whether a fault saves the last minutes
    Rotation rotation = Rotation::Never;
    qint64 rotationMegabytes = 100;
    qint64 rotationMinutes = 60;

    /*! Those that the user has set; the others as usual: the folder "draxel/traces" among the user's data. */
    static TraceSettings load();
    /*! Keeps what the window lets the user choose: the rotation. */
    void save() const;
};
