// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <optional>

namespace CanOpen {

/*! Data type codes of CiA 301. */
enum class DataType : quint16 {
    Boolean = 0x01,
    Integer8 = 0x02,
    Integer16 = 0x03,
    Integer32 = 0x04,
    Unsigned8 = 0x05,
    Unsigned16 = 0x06,
    Unsigned32 = 0x07,
    Real32 = 0x08,
    VisibleString = 0x09,
    OctetString = 0x0A,
    UnicodeString = 0x0B,
    TimeOfDay = 0x0C,
    TimeDifference = 0x0D,
    Domain = 0x0F,
    Integer24 = 0x10,
    Real64 = 0x11,
    Integer40 = 0x12,
    Integer48 = 0x13,
    Integer56 = 0x14,
    Integer64 = 0x15,
    Unsigned24 = 0x16,
    Unsigned40 = 0x18,
    Unsigned48 = 0x19,
    Unsigned56 = 0x1A,
    Unsigned64 = 0x1B,
};

/*! For what is read without knowing its type: any number of bytes, as they are. */
constexpr DataType rawBytes = DataType::Domain;

/*! Bytes of a value of \a type on the bus; 0 for types of variable length and for unknown codes. */
int byteSize(DataType type);

/*! The name in CiA 301, for example "UNSIGNED32"; empty for unknown codes. */
QString dataTypeName(DataType type);

/*! Whether \a type is one of the INTEGER types. */
bool isSignedInteger(DataType type);

/*! Whether \a code is one of the types above. */
bool isKnownDataType(quint16 code);

/*! The value of \a data, least significant byte first as on the bus.
 *
 *  UNSIGNED8 to UNSIGNED32 and BOOLEAN give a `uint`, INTEGER8 to INTEGER32 an `int`, the wider ones
 *  `qulonglong` and `qlonglong`, the REAL types `float` and `double`, VISIBLE_STRING a `QString`, the rest
 *  a `QByteArray`. Empty when the number of bytes is not that of the type: no value is invented.
 */
std::optional<QVariant> decodeValue(DataType type, const QByteArray &data);

/*! The same for \a size bytes at \a data, which stay the caller's. */
std::optional<QVariant> decodeValue(DataType type, const char *data, int size);

/*! The bytes of \a value as \a type; empty optional when the value cannot be converted or does not fit the
 *  type's range.
 */
std::optional<QByteArray> encodeValue(DataType type, const QVariant &value);

} // namespace CanOpen
