// SPDX-License-Identifier: MIT
#include "datatype.h"

#include <QtEndian>

#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>

namespace CanOpen {

namespace {

struct TypeFacts
{
    DataType type;
    int bytes; // 0: variable
    const char *name;
};

constexpr TypeFacts typeFacts[] = {
    {DataType::Boolean, 1, "BOOLEAN"},
    {DataType::Integer8, 1, "INTEGER8"},
    {DataType::Integer16, 2, "INTEGER16"},
    {DataType::Integer24, 3, "INTEGER24"},
    {DataType::Integer32, 4, "INTEGER32"},
    {DataType::Integer40, 5, "INTEGER40"},
    {DataType::Integer48, 6, "INTEGER48"},
    {DataType::Integer56, 7, "INTEGER56"},
    {DataType::Integer64, 8, "INTEGER64"},
    {DataType::Unsigned8, 1, "UNSIGNED8"},
    {DataType::Unsigned16, 2, "UNSIGNED16"},
    {DataType::Unsigned24, 3, "UNSIGNED24"},
    {DataType::Unsigned32, 4, "UNSIGNED32"},
    {DataType::Unsigned40, 5, "UNSIGNED40"},
    {DataType::Unsigned48, 6, "UNSIGNED48"},
    {DataType::Unsigned56, 7, "UNSIGNED56"},
    {DataType::Unsigned64, 8, "UNSIGNED64"},
    {DataType::Real32, 4, "REAL32"},
    {DataType::Real64, 8, "REAL64"},
    {DataType::VisibleString, 0, "VISIBLE_STRING"},
    {DataType::OctetString, 0, "OCTET_STRING"},
    {DataType::UnicodeString, 0, "UNICODE_STRING"},
    {DataType::Domain, 0, "DOMAIN"},
    {DataType::TimeOfDay, 6, "TIME_OF_DAY"},
    {DataType::TimeDifference, 6, "TIME_DIFFERENCE"},
};
static_assert(sizeof(typeFacts) / sizeof(typeFacts[0]) == 25, "one row per data type");

const TypeFacts *findType(DataType type)
{
    for (const TypeFacts &row : typeFacts) {
        if (row.type == type)
            return &row;
    }
    return nullptr;
}

template<typename Number>
Number fromBus(const char *data)
{
    return qFromLittleEndian<Number>(data);
}

template<typename Number>
QByteArray toBus(Number number)
{
    QByteArray data(static_cast<int>(sizeof(Number)), Qt::Uninitialized);
    qToLittleEndian(number, data.data());
    return data;
}

template<typename Real, typename Bits>
Real realFromBus(const char *data)
{
    static_assert(sizeof(Real) == sizeof(Bits));
    const Bits bits = fromBus<Bits>(data);
    Real real;
    std::memcpy(&real, &bits, sizeof real);
    return real;
}

template<typename Real, typename Bits>
QByteArray realToBus(Real real)
{
    static_assert(sizeof(Real) == sizeof(Bits));
    Bits bits;
    std::memcpy(&bits, &real, sizeof bits);
    return toBus(bits);
}

// Any number of bytes up to eight, least significant first.
quint64 unsignedFromBus(const char *data, int size)
{
    quint64 number = 0;
    for (int i = size - 1; i >= 0; --i)
        number = number << 8 | static_cast<quint8>(data[i]);
    return number;
}

qint64 signedFromBus(const char *data, int size)
{
    const int unused = 64 - 8 * size;
    return static_cast<qint64>(unsignedFromBus(data, size) << unused) >> unused;
}

QString stringFromBus(const char *data, int size)
{
    // A device may fill the rest of its buffer with zeros.
    const void *end = std::memchr(data, '\0', static_cast<std::size_t>(size));
    const int length = end != nullptr ? static_cast<int>(static_cast<const char *>(end) - data) : size;
    return QString::fromLatin1(data, length);
}

bool isFloating(const QVariant &value)
{
    return value.userType() == QMetaType::Double || value.userType() == QMetaType::Float;
}

bool isUnsigned(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::UInt:
    case QMetaType::ULongLong:
    case QMetaType::ULong:
    case QMetaType::UShort:
    case QMetaType::UChar:
        return true;
    default:
        return false;
    }
}

// Whole numbers only: 1.5 is no integer, and rounding it would invent a value.
std::optional<qint64> toSigned(const QVariant &value)
{
    bool ok = false;
    if (isFloating(value)) {
        const double real = value.toDouble();
        constexpr double limit = 9223372036854775808.0; // 2^63
        if (!(real >= -limit && real < limit) || std::trunc(real) != real)
            return {};
        return static_cast<qint64>(real);
    }
    if (isUnsigned(value)) {
        const quint64 number = value.toULongLong(&ok);
        if (!ok || number > static_cast<quint64>(std::numeric_limits<qint64>::max()))
            return {};
        return static_cast<qint64>(number);
    }
    const qint64 number = value.toLongLong(&ok);
    return ok ? std::optional<qint64>(number) : std::nullopt;
}

std::optional<quint64> toUnsigned(const QVariant &value)
{
    bool ok = false;
    if (isUnsigned(value) || value.userType() == QMetaType::QString
        || value.userType() == QMetaType::QByteArray) {
        const quint64 number = value.toULongLong(&ok);
        return ok ? std::optional<quint64>(number) : std::nullopt;
    }
    if (isFloating(value)) {
        const double real = value.toDouble();
        constexpr double limit = 18446744073709551616.0; // 2^64
        if (!(real >= 0.0 && real < limit) || std::trunc(real) != real)
            return {};
        return static_cast<quint64>(real);
    }
    const std::optional<qint64> number = toSigned(value);
    if (!number || *number < 0)
        return {};
    return static_cast<quint64>(*number);
}

template<typename Number>
std::optional<QByteArray> encodeNumber(const QVariant &value)
{
    using Limits = std::numeric_limits<Number>;
    if constexpr (std::is_signed_v<Number>) {
        const std::optional<qint64> number = toSigned(value);
        if (!number || *number < Limits::min() || *number > Limits::max())
            return {};
        return toBus(static_cast<Number>(*number));
    } else {
        const std::optional<quint64> number = toUnsigned(value);
        if (!number || *number > Limits::max())
            return {};
        return toBus(static_cast<Number>(*number));
    }
}

std::optional<QByteArray> encodeUnsigned(const QVariant &value, int size)
{
    const std::optional<quint64> number = toUnsigned(value);
    if (!number || *number >> (8 * size) != 0)
        return {};
    return toBus(*number).left(size);
}

std::optional<QByteArray> encodeSigned(const QVariant &value, int size)
{
    const std::optional<qint64> number = toSigned(value);
    const qint64 limit = qint64(1) << (8 * size - 1);
    if (!number || *number < -limit || *number >= limit)
        return {};
    return toBus(*number).left(size);
}

std::optional<QByteArray> encodeBoolean(const QVariant &value)
{
    if (!value.isValid())
        return {};
    if (value.userType() == QMetaType::Bool)
        return QByteArray(1, value.toBool() ? '\1' : '\0');
    const std::optional<quint64> number = toUnsigned(value);
    if (!number || *number > 1)
        return {};
    return toBus(static_cast<quint8>(*number));
}

std::optional<QByteArray> encodeReal32(const QVariant &value)
{
    bool ok = false;
    const double real = value.toDouble(&ok);
    if (!ok || (std::isfinite(real) && std::abs(real) > std::numeric_limits<float>::max()))
        return {};
    return realToBus<float, quint32>(static_cast<float>(real));
}

std::optional<QByteArray> encodeReal64(const QVariant &value)
{
    bool ok = false;
    const double real = value.toDouble(&ok);
    if (!ok)
        return {};
    return realToBus<double, quint64>(real);
}

std::optional<QByteArray> encodeVisibleString(const QVariant &value)
{
    if (value.userType() == QMetaType::QByteArray)
        return value.toByteArray();
    if (!value.canConvert<QString>())
        return {};
    const QString text = value.toString();
    for (const QChar character : text) {
        if (character.unicode() > 0xFF)
            return {};
    }
    return text.toLatin1();
}

std::optional<QByteArray> encodeBytes(const QVariant &value)
{
    if (value.userType() != QMetaType::QByteArray)
        return {};
    return value.toByteArray();
}

} // namespace

int byteSize(DataType type)
{
    const TypeFacts *row = findType(type);
    return row != nullptr ? row->bytes : 0;
}

QString dataTypeName(DataType type)
{
    const TypeFacts *row = findType(type);
    return row != nullptr ? QString::fromLatin1(row->name) : QString();
}

bool isSignedInteger(DataType type)
{
    switch (type) {
    case DataType::Integer8:
    case DataType::Integer16:
    case DataType::Integer24:
    case DataType::Integer32:
    case DataType::Integer40:
    case DataType::Integer48:
    case DataType::Integer56:
    case DataType::Integer64:
        return true;
    default:
        return false;
    }
}

bool isKnownDataType(quint16 code)
{
    return findType(static_cast<DataType>(code)) != nullptr;
}

std::optional<QVariant> decodeValue(DataType type, const QByteArray &data)
{
    return decodeValue(type, data.constData(), data.size());
}

std::optional<QVariant> decodeValue(DataType type, const char *data, int size)
{
    const TypeFacts *row = findType(type);
    if (row == nullptr || (row->bytes != 0 && row->bytes != size))
        return {};

    switch (type) {
    case DataType::Boolean:
    case DataType::Unsigned8:
        return QVariant(uint(fromBus<quint8>(data)));
    case DataType::Unsigned16:
        return QVariant(uint(fromBus<quint16>(data)));
    case DataType::Unsigned32:
        return QVariant(uint(fromBus<quint32>(data)));
    case DataType::Unsigned64:
        return QVariant(qulonglong(fromBus<quint64>(data)));
    case DataType::Integer8:
        return QVariant(int(fromBus<qint8>(data)));
    case DataType::Integer16:
        return QVariant(int(fromBus<qint16>(data)));
    case DataType::Integer32:
        return QVariant(int(fromBus<qint32>(data)));
    case DataType::Integer64:
        return QVariant(qlonglong(fromBus<qint64>(data)));
    case DataType::Unsigned24:
        return QVariant(static_cast<uint>(unsignedFromBus(data, size)));
    case DataType::Unsigned40:
    case DataType::Unsigned48:
    case DataType::Unsigned56:
        return QVariant(qulonglong(unsignedFromBus(data, size)));
    case DataType::Integer24:
        return QVariant(static_cast<int>(signedFromBus(data, size)));
    case DataType::Integer40:
    case DataType::Integer48:
    case DataType::Integer56:
        return QVariant(qlonglong(signedFromBus(data, size)));
    case DataType::Real32:
        return QVariant(realFromBus<float, quint32>(data));
    case DataType::Real64:
        return QVariant(realFromBus<double, quint64>(data));
    case DataType::VisibleString:
        return QVariant(stringFromBus(data, size));
    case DataType::OctetString:
    case DataType::UnicodeString:
    case DataType::Domain:
    case DataType::TimeOfDay:
    case DataType::TimeDifference:
        return QVariant(QByteArray(data, size));
    }
    return {};
}

std::optional<QByteArray> encodeValue(DataType type, const QVariant &value)
{
    switch (type) {
    case DataType::Boolean:
        return encodeBoolean(value);
    case DataType::Unsigned8:
        return encodeNumber<quint8>(value);
    case DataType::Unsigned16:
        return encodeNumber<quint16>(value);
    case DataType::Unsigned32:
        return encodeNumber<quint32>(value);
    case DataType::Unsigned64:
        return encodeNumber<quint64>(value);
    case DataType::Integer8:
        return encodeNumber<qint8>(value);
    case DataType::Integer16:
        return encodeNumber<qint16>(value);
    case DataType::Integer32:
        return encodeNumber<qint32>(value);
    case DataType::Integer64:
        return encodeNumber<qint64>(value);
    case DataType::Unsigned24:
    case DataType::Unsigned40:
    case DataType::Unsigned48:
    case DataType::Unsigned56:
        return encodeUnsigned(value, byteSize(type));
    case DataType::Integer24:
    case DataType::Integer40:
    case DataType::Integer48:
    case DataType::Integer56:
        return encodeSigned(value, byteSize(type));
    case DataType::TimeOfDay:
    case DataType::TimeDifference: {
        const std::optional<QByteArray> data = encodeBytes(value);
        return data && data->size() == byteSize(type) ? data : std::nullopt;
    }
    case DataType::Real32:
        return encodeReal32(value);
    case DataType::Real64:
        return encodeReal64(value);
    case DataType::VisibleString:
        return encodeVisibleString(value);
    case DataType::OctetString:
    case DataType::UnicodeString:
    case DataType::Domain:
        return encodeBytes(value);
    }
    return {};
}

} // namespace CanOpen
