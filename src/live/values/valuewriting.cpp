// SPDX-License-Identifier: MIT
#include "valuewriting.h"

#include <system/csvline.h>

#include <cmath>

QString ValueWriting::numberText(double number, int digits)
{
    constexpr double mostExact = 9007199254740992; // 2^53: a double has all whole numbers below
    const bool isWhole = std::abs(number) < mostExact && !(std::floor(number) < number);
    return isWhole ? QString::number(static_cast<qint64>(number)) : QString::number(number, 'g', digits);
}

QStringList ValueWriting::csvColumns()
{
    return {QStringLiteral("time"), QStringLiteral("node"),  QStringLiteral("object"),
            QStringLiteral("name"), QStringLiteral("value"), QStringLiteral("unit")};
}

QStringList ValueWriting::csvFields(const LiveValue &value, const QDateTime &time)
{
    constexpr int digits = 10; // those of UNSIGNED32
    return {
        time.toString(Qt::ISODateWithMs),
        QString::number(value.nodeId),
        value.object.toShortString(),
        value.name,
        numberText(value.record.last(), digits),
        value.unit,
    };
}

QByteArray ValueWriting::csvHead()
{
    return csvLine(csvColumns());
}

QByteArray ValueWriting::toCsv(const LiveValue &value, const QDateTime &time)
{
    return csvLine(csvFields(value, time));
}

QJsonObject ValueWriting::toJson(const LiveValue &value, const QDateTime &time)
{
    return {
        {QStringLiteral("time"), time.toString(Qt::ISODateWithMs)},
        {QStringLiteral("node"), value.nodeId},
        {QStringLiteral("index"), value.object.index},
        {QStringLiteral("sub"), value.object.subIndex},
        {QStringLiteral("name"), value.name},
        {QStringLiteral("value"), value.record.last()},
        {QStringLiteral("unit"), value.unit},
    };
}
