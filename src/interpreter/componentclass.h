// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/*! A class of components of light electric vehicles (CiA 454): what a virtual device is. */
struct ComponentClass
{
    quint8 code;      // low 8 bits of an entry of object 6000h
    const char *name; // display name, translation context "OverviewForm"
    const char *icon; // resource path of the 32 pixel icon, or null for a class without one
};

/*! Returns the class of a code, or null for a code that no component uses. The table lives as long as the
 *  program.
 */
const ComponentClass *findComponentClass(quint8 code);

/*! Returns the translated display name of a class, whatever node it is found on. */
QString componentClassName(const ComponentClass &componentClass);

/*! Returns the translated display name of a class on a node: the controller on node 127 is a charger as well.
 */
QString componentClassName(const ComponentClass &componentClass, quint8 nodeId);
