// SPDX-License-Identifier: MIT
#include "datatype.h"

#include <QtEndian>

#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>

namespace CanOpen {

namespace {

struct TypeSize
{
    DataType type;
    int bytes; // 0: variable
};

constexpr TypeSize typeSizes[] = {
    {DataType::Boolean, 1},     {DataType::Integer8, 1},      {DataType::Integer16, 2},
    {DataType::Integer32, 4},   {DataType::Unsigned8, 1},     {DataType::Unsigned16, 2},
    {DataType::Unsigned32, 4},  {DataType::Real32, 4},        {DataType::VisibleString, 0},
    {DataType::OctetString, 0}, {DataType::UnicodeString, 0}, {DataType::Domain, 0},
    {DataType::Real64, 8},      {DataType::Integer64, 8},     {DataType::Unsigned64, 8},
};
static_assert(sizeof(typeSizes) / sizeof(typeSizes[0]) == 15, "one row per data type");

const TypeSize *findType(DataType type)
{
    for (const TypeSize &row : typeSizes) {
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
    const TypeSize *row = findType(type);
    return row != nullptr ? row->bytes : 0;
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
    const TypeSize *row = findType(type);
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
    case DataType::Real32:
        return QVariant(realFromBus<float, quint32>(data));
    case DataType::Real64:
        return QVariant(realFromBus<double, quint64>(data));
    case DataType::VisibleString:
        return QVariant(stringFromBus(data, size));
    case DataType::OctetString:
    case DataType::UnicodeString:
    case DataType::Domain:
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
