// SPDX-License-Identifier: MIT
#pragma once

#include "bussettings.h"
#include "interfacehealth.h"
#include "interfacewatch.h"

#include <QCoreApplication>
#include <QList>

/*! What is said of a bus, the same in the message log, the status line and on the command line. Sentences for the
 *  user, with the next step where there is one.
 */
class BusWords
{
    Q_DECLARE_TR_FUNCTIONS(BusWords)

public:
    /*! "1, 4 to 6, 9": node IDs in ascending order. */
    static QString nodes(const QList<quint8> &sorted);

    static QString connecting(const BusSettings &settings);
    static QString connected(const BusSettings &settings);
    static QString cannotBeOpened(const BusAddress &address, const QString &reason);

    /*! Of an interface that is down: the command that switches it on. */
    static QString presence(InterfaceWatch::Presence presence, const BusSettings &settings);

    /*! Of trouble only; empty for the other states. */
    static QString health(InterfaceHealth::State state, const QString &interfaceName);

    /*! The command that switches a network interface on. Without a \a bitRate it has that of CiA 454's vehicles.
     *  Interfaces of another \a kind than "can" (see interfaceKind()) take none; of one that does not tell, the name says
     *  what it is.
     */
    static QString switchOnCommand(const QString &interfaceName, std::optional<int> bitRate,
                                   const QString &kind);
    static QString switchOffCommand(const QString &interfaceName);
};
