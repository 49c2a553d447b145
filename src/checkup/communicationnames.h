// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/objectkey.h>

#include <QString>

/*! Names of the objects of the communication profile area (CiA 301, 1000h to 1FFFh) that a check-up reads and the
 *  overview has no name for.
 */
namespace CommunicationNames {

/*! In the program's language; empty for objects without a name here. Numbers of PDOs and SDO channels begin with 1, as in
 *  the standard. Sub-indices have no names of their own, but for the parameters of PDOs.
 */
QString name(CanOpen::ObjectKey key);

} // namespace CommunicationNames
