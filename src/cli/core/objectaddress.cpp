// SPDX-License-Identifier: MIT
#include "objectaddress.h"

#include <canopen/cobid.h>

#include <QStringList>

namespace {

/*! A number from \a lowest to \a highest, "10" or "0x0A". */
std::optional<quint8> parseByte(const QString &text, int lowest, int highest)
{
    const bool isHex = text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive);
    bool isNumber = false;
    const int number = text.toInt(&isNumber, isHex ? 16 : 10);
    if (!isNumber || number < lowest || number > highest)
        return std::nullopt;
    return static_cast<quint8>(number);
}

} // namespace

std::optional<ObjectAddress> ObjectAddress::parse(const QString &text)
{
    const QStringList parts = text.split(QLatin1Char(':'));
    if (parts.size() < 2 || parts.size() > 3)
        return std::nullopt;
    const std::optional<quint8> nodeId = parseNodeId(parts.at(0));
    const std::optional<quint16> index = parseIndex(parts.at(1));
    const std::optional<quint8> subIndex = parseSubIndex(parts.value(2, QStringLiteral("0")));
    if (!nodeId || !index || !subIndex)
        return std::nullopt;
    return ObjectAddress{*nodeId, {*index, *subIndex}};
}

std::optional<quint16> ObjectAddress::parseIndex(QString text)
{
    if (text.endsWith(QLatin1Char('h'), Qt::CaseInsensitive))
        text.chop(1);
    bool isNumber = false;
    const ushort index = text.toUShort(&isNumber, 16);
    return isNumber ? std::optional<quint16>(index) : std::nullopt;
}

std::optional<quint8> ObjectAddress::parseSubIndex(const QString &text)
{
    return parseByte(text, 0, 255);
}

std::optional<quint8> ObjectAddress::parseNodeId(const QString &text)
{
    return parseByte(text, CanOpen::firstNodeId, CanOpen::lastNodeId);
}
