// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/*! What is known about the back ends of QtSerialBus beside their names. */
struct BackEnd
{
    /*! Where it shows that an interface has gone. */
    enum class Presence {
        NetworkFolder, //!< /sys/class/net
        List           //!< the back end's own list of interfaces
    };

    const char *plugin; //!< null in the row for all others
    /*! Interfaces are set up by the system and keep their bit rate when they are opened. The other back ends need a
     *  bit rate to open at all, and bring a default of their own.
     */
    bool isConfiguredOutside;
    Presence presence;
    /*! A bus that is only made of network packets has none. */
    bool hasBitRate;
    /*! What goes wrong on the bus comes as error frames, or nothing can: that none has come is a good sign. */
    bool tellsErrors;

    /*! The row of \a plugin, or the one for all others. */
    static const BackEnd &find(const QString &plugin);
};
