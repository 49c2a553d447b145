// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/objectkey.h>

#include <QLocale>
#include <QString>

/*! Numbers of the communication profile area (CiA 301, 1000h to 1FFFh) as people read them: identifiers in hexadecimal
 *  digits ("185h"), times with their unit, what a PDO carries by object and size.
 */
namespace CommunicationValues {

/*! In the program's language; empty for objects that are numbers like any other. \a locale writes the numbers. */
QString text(CanOpen::ObjectKey key, quint64 number, const QLocale &locale);

} // namespace CommunicationValues
