// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonObject>
#include <QString>

/*! What a program and its computer are, for who is to help from afar. */
namespace SystemFacts {

/*! The way to the bus. */
struct Adapter
{
    QString bus;         //!< its address: "socketcan:can0"; empty: none
    QString description; //!< as the driver says; may be empty
    int bitRate = 0;     //!< bit/s; 0: not known
};

/*! "program", "qt", "system", "kernel", "processor", "bus", "adapter", "bitRate" (null: not known) and "computer" with what
 *  it lacks for CAN. Looks at the computer, which takes some time and changes nothing.
 */
QJsonObject of(const QString &program, const Adapter &adapter);

} // namespace SystemFacts
