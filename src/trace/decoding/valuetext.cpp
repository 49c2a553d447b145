// SPDX-License-Identifier: MIT
#include "valuetext.h"

#include <canopen/hexadecimal.h>
#include <canopen/pdomapping.h>
#include <checkup/objectwords.h>
#include <snapshot/objecttypes.h>

#include <algorithm>

using CanOpen::DataType;
using CanOpen::ObjectKey;

namespace {

constexpr int longestNumber = 8;   // bytes
constexpr int longestText = 200;   // characters in a line
constexpr int mostShownBytes = 32; // likewise

quint64 numberOf(const QByteArray &bytes)
{
    quint64 number = 0;
    for (int i = std::min(bytes.size(), longestNumber) - 1; i >= 0; --i)
        number = number << 8 | static_cast<quint8>(bytes.at(i));
    return number;
}

QByteArray bytesOf(quint64 value, int bits)
{
    QByteArray bytes;
    for (int done = 0; done < bits; done += 8)
        bytes.append(static_cast<char>(value >> done & 0xFF));
    return bytes;
}

bool isPrintable(const QByteArray &bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), [](char byte) { return byte >= ' ' && byte <= '~'; });
}

QString shortened(const QString &text)
{
    return text.size() <= longestText ? text : text.left(longestText) + QStringLiteral("...");
}

/*! Of an array or record: how many there are, whatever unit its entries have. */
bool isCount(ObjectKey object, DataType type)
{
    return object.subIndex == 0 && type == DataType::Unsigned8;
}

QString inWords(ObjectKey object, DataType type, const QVariant &value)
{
    if (value.type() == QVariant::ByteArray)
        return ValueText::bytesText(value.toByteArray());
    if (value.type() == QVariant::String)
        return QLatin1Char('"') + shortened(ObjectWords::value(object, value)) + QLatin1Char('"');
    return isCount(object, type) ? value.toString() : ObjectWords::value(object, value);
}

} // namespace

QString ValueText::bytesText(const QByteArray &data)
{
    const QString shown = QString::fromLatin1(data.left(mostShownBytes).toHex(' ').toUpper());
    if (data.size() <= mostShownBytes)
        return shown;
    return tr("%1 ... (%2 bytes)").arg(shown, QString::number(data.size()));
}

QString ValueText::untyped(const QByteArray &data)
{
    if (data.isEmpty())
        return tr("nothing (0 bytes)");
    if (data.size() > longestNumber) {
        return isPrintable(data) ? QLatin1Char('"') + shortened(QString::fromLatin1(data)) + QLatin1Char('"')
                                 : bytesText(data);
    }
    const quint64 number = numberOf(data);
    return QStringLiteral("%1 (%2h)")
        .arg(QString::number(number), CanOpen::hexadecimal(number, data.size() * 2));
}

QString ValueText::ofBytes(quint8 nodeId, ObjectKey object, const QByteArray &data, bool isSizeUnknown) const
{
    const QVector<DataType> types = m_book->types(nodeId, object);
    for (const DataType type : types) {
        const int size = CanOpen::byteSize(type);
        const bool isLonger = isSizeUnknown && size > 0 && size < data.size();
        const QByteArray bytes = isLonger ? data.left(size) : data;
        if (const std::optional<QVariant> value = CanOpen::decodeValue(type, bytes))
            return inWords(object, type, *value);
    }
    return untyped(data);
}

QString ValueText::ofBits(quint8 nodeId, ObjectKey object, quint64 value, int bits) const
{
    const QByteArray bytes = bytesOf(value, bits);
    const QVector<DataType> types = m_book->types(nodeId, object);
    for (const DataType type : types) {
        const std::optional<QByteArray> widened = CanOpen::widenMapped(type, bytes, bits);
        const std::optional<QVariant> made = widened ? CanOpen::decodeValue(type, *widened) : std::nullopt;
        if (made)
            return inWords(object, type, *made);
    }
    return untyped(bytes);
}
