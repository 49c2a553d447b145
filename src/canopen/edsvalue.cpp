// SPDX-License-Identifier: MIT
#include "edsvalue.h"

#include <QtEndian>

#include <cmath>
#include <cstring>
#include <limits>

namespace CanOpen {

// QString's own conversions take blanks, signs and 0x as well.
bool isHexNumber(const QString &text)
{
    for (const QChar character : text) {
        const bool isHex = (character >= QLatin1Char('0') && character <= QLatin1Char('9'))
                           || (character >= QLatin1Char('a') && character <= QLatin1Char('f'))
                           || (character >= QLatin1Char('A') && character <= QLatin1Char('F'));
        if (!isHex)
            return false;
    }
    return !text.isEmpty();
}

std::optional<quint64> parseEdsNumber(const QString &text)
{
    int base = 10;
    QString digits = text;
    if (text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive)) {
        base = 16;
        digits = text.mid(2);
    } else if (text.size() > 1 && text.startsWith(QLatin1Char('0'))) {
        base = 8;
        digits = text.mid(1);
    }
    if (!isHexNumber(digits))
        return std::nullopt;
    bool isNumber = false;
    const quint64 number = digits.toULongLong(&isNumber, base);
    return isNumber ? std::optional<quint64>(number) : std::nullopt;
}

std::optional<quint64> parseEdsNumber(const QString &text, quint64 highest)
{
    const std::optional<quint64> number = parseEdsNumber(text);
    return number && *number <= highest ? number : std::nullopt;
}

namespace {

/*! One term or a sum with `$NODEID`; arithmetic wraps as the bus' unsigned values do. */
struct Number
{
    quint64 magnitude = 0;
    bool isNegative = false;
};

std::optional<Number> parseNumber(QString text, quint8 nodeId)
{
    static const QString nodeIdName = QStringLiteral("$NODEID");
    text = text.trimmed();

    const int position = text.indexOf(nodeIdName, 0, Qt::CaseInsensitive);
    if (position >= 0) {
        QString rest = text;
        rest.remove(position, nodeIdName.size());
        rest = rest.trimmed();
        if (rest.isEmpty())
            return Number{nodeId, false};
        const bool isInFront = position == 0 && rest.startsWith(QLatin1Char('+'));
        const bool isBehind = position > 0 && rest.endsWith(QLatin1Char('+'));
        if (!isInFront && !isBehind)
            return std::nullopt;
        const QString summand = isInFront ? rest.mid(1) : rest.left(rest.size() - 1);
        const std::optional<quint64> number = parseEdsNumber(summand.trimmed());
        if (!number || *number > std::numeric_limits<quint64>::max() - nodeId)
            return std::nullopt;
        return Number{*number + nodeId, false};
    }

    const bool isNegative = text.startsWith(QLatin1Char('-'));
    const bool hasSign = isNegative || text.startsWith(QLatin1Char('+'));
    const std::optional<quint64> number = parseEdsNumber(hasSign ? text.mid(1) : text);
    if (!number)
        return std::nullopt;
    return Number{*number, isNegative && *number != 0};
}

bool isReal(DataType type)
{
    return type == DataType::Real32 || type == DataType::Real64;
}

/*! \a number in \a type's bits, or nothing when it does not fit. Signed values may be written in two's
 *  complement.
 */
std::optional<quint64> fitInteger(DataType type, const Number &number)
{
    if (type == DataType::Boolean)
        return !number.isNegative && number.magnitude <= 1 ? std::optional<quint64>(number.magnitude)
                                                           : std::nullopt;
    const int bits = 8 * byteSize(type);
    const quint64 highest = bits == 64 ? std::numeric_limits<quint64>::max() : (quint64(1) << bits) - 1;
    if (!number.isNegative)
        return number.magnitude <= highest ? std::optional<quint64>(number.magnitude) : std::nullopt;
    if (!isSignedInteger(type) || number.magnitude > quint64(1) << (bits - 1))
        return std::nullopt;
    return (~number.magnitude + 1) & highest;
}

/*! The bits of fitInteger() as a number with its sign; nothing for what a qint64 cannot hold. */
std::optional<qint64> toSigned(DataType type, quint64 bitsOfValue)
{
    if (!isSignedInteger(type))
        return bitsOfValue <= quint64(std::numeric_limits<qint64>::max())
                   ? std::optional<qint64>(static_cast<qint64>(bitsOfValue))
                   : std::nullopt;
    const int shift = 64 - 8 * byteSize(type);
    return static_cast<qint64>(bitsOfValue << shift) >> shift;
}

QByteArray littleEndian(quint64 number, int bytes)
{
    char buffer[8];
    qToLittleEndian(number, buffer);
    return QByteArray(buffer, bytes);
}

/*! REAL values are written as decimal fractions or as the bits of the number (0x..). */
std::optional<QByteArray> encodeReal(DataType type, const QString &text)
{
    if (text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive)) {
        const std::optional<quint64> bits = parseEdsNumber(text);
        if (!bits || (type == DataType::Real32 && *bits > std::numeric_limits<quint32>::max()))
            return std::nullopt;
        return littleEndian(*bits, byteSize(type));
    }
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    if (!isNumber || !std::isfinite(number))
        return std::nullopt;
    if (type == DataType::Real64) {
        quint64 bits = 0;
        std::memcpy(&bits, &number, sizeof bits);
        return littleEndian(bits, 8);
    }
    if (std::abs(number) > double(std::numeric_limits<float>::max()))
        return std::nullopt;
    const float single = static_cast<float>(number);
    quint32 bits = 0;
    std::memcpy(&bits, &single, sizeof bits);
    return littleEndian(bits, 4);
}

/*! Bytes written as pairs of hexadecimal digits, blanks between them or not. */
std::optional<QByteArray> encodeBytes(const QString &text)
{
    QByteArray digits;
    for (const QChar character : text) {
        if (character.isSpace())
            continue;
        const char digit = character.toLatin1();
        const bool isHex = (digit >= '0' && digit <= '9') || (digit >= 'a' && digit <= 'f')
                           || (digit >= 'A' && digit <= 'F');
        if (!isHex)
            return std::nullopt;
        digits.append(digit);
    }
    if (digits.size() % 2 != 0)
        return std::nullopt;
    return QByteArray::fromHex(digits);
}

} // namespace

std::optional<QByteArray> encodeEdsValue(DataType type, const QString &text, quint8 nodeId)
{
    switch (type) {
    case DataType::VisibleString:
        return encodeValue(type, text);
    case DataType::UnicodeString: {
        QByteArray data;
        for (const QChar character : text)
            data.append(littleEndian(character.unicode(), 2));
        return data;
    }
    case DataType::OctetString:
    case DataType::Domain:
        return encodeBytes(text);
    default:
        break;
    }
    if (isReal(type))
        return encodeReal(type, text);
    const std::optional<Number> number = parseNumber(text, nodeId);
    const std::optional<quint64> bits = number ? fitInteger(type, *number) : std::nullopt;
    return bits ? std::optional<QByteArray>(littleEndian(*bits, byteSize(type))) : std::nullopt;
}

bool readEdsLimit(DataType type, const QString &text, quint8 nodeId, std::optional<qint64> *limit)
{
    const std::optional<Number> number = parseNumber(text, nodeId);
    const std::optional<quint64> bits = number ? fitInteger(type, *number) : std::nullopt;
    if (bits)
        *limit = toSigned(type, *bits);
    return bits.has_value();
}

bool hasEdsLimits(DataType type)
{
    return byteSize(type) != 0 && !isReal(type);
}

} // namespace CanOpen
