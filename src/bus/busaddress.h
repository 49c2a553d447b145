// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QString>

#include <optional>

/*! Which CAN interface is meant: the QtSerialBus back end and one of its interfaces.
 *
 *  Written "PLUGIN:INTERFACE", for example "socketcan:can0", "virtualcan:tcp://localhost:35468/can0" or
 *  "simulated:/home/me/vehicle.json". The back end ends at the first colon, so that the interface may hold
 *  more of them.
 */
struct BusAddress
{
    Q_DECLARE_TR_FUNCTIONS(BusAddress)

public:
    QString plugin;
    QString interfaceName;

    /*! The address written as \a text; blanks around both parts are dropped. Empty when one part is missing,
     *  with the reason in \a errorMessage (may be null).
     */
    static std::optional<BusAddress> parse(const QString &text, QString *errorMessage);

    QString toString() const;
};

bool operator==(const BusAddress &a, const BusAddress &b);
bool operator!=(const BusAddress &a, const BusAddress &b);
