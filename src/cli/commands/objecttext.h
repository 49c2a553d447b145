// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/datatype.h>
#include <canopen/objectkey.h>

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <optional>

/*! A value that one object of a node was read to have. */
struct ObjectValue
{
    quint8 nodeId = 0;
    CanOpen::ObjectKey key;
    std::optional<CanOpen::DataType> type; // empty: nobody knows it; the value is its bytes then
    QVariant value;
    QByteArray bytes;           // as on the bus, least significant byte first
    bool isSizeUnknown = false; // the device did not say how many of the bytes count
};

/*! The value as text for people: name, value in words where the object table knows them, number, bytes. Of a value
 *  without a type all that it may mean.
 */
QString objectText(const ObjectValue &object);

/*! The value as JSON (RFC 8259, UTF-8), with a line end. */
QByteArray objectJson(const ObjectValue &object);
