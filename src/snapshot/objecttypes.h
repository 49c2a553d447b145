// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/datatype.h>
#include <canopen/objectkey.h>

#include <QByteArray>
#include <QVariant>
#include <QVector>

#include <optional>

/*! What is known of the data types of objects without asking a data sheet: CiA 301's communication objects and the
 *  entries that the overview reads.
 */
namespace ObjectTypes {

/*! The types that an object may have, the likeliest first; some are read in two sizes. Empty when none is known. */
QVector<CanOpen::DataType> known(CanOpen::ObjectKey key);

/*! The type of \a known that \a raw has the size of; empty when there is none. */
std::optional<CanOpen::DataType> matching(const QVector<CanOpen::DataType> &known, const QByteArray &raw);

/*! The value of bytes of which no type is known: an unsigned number (`qulonglong`) of 1 to 8 bytes, else nothing. */
QVariant unsignedValue(const QByteArray &raw);

} // namespace ObjectTypes
