// SPDX-License-Identifier: MIT
#include "valuewriting.h"

#include <QStringList>

#include <cmath>

namespace {

QString field(const QString &text)
{
    if (!text.contains(QLatin1Char(',')) && !text.contains(QLatin1Char('"'))
        && !text.contains(QLatin1Char('\n')))
        return text;
    QString quoted = text;
    quoted.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}

} // namespace

QString ValueWriting::numberText(double number, int digits)
{
    constexpr double mostExact = 9007199254740992; // 2^53: a double has all whole numbers below
    const bool isWhole = std::abs(number) < mostExact && !(std::floor(number) < number);
    return isWhole ? QString::number(static_cast<qint64>(number)) : QString::number(number, 'g', digits);
}

QByteArray ValueWriting::csvHead()
{
    return "time,node,object,name,value,unit\r\n";
}

QByteArray ValueWriting::toCsv(const LiveValue &value, const QDateTime &time)
{
    constexpr int digits = 10; // those of UNSIGNED32
    const QStringList fields{
        time.toString(Qt::ISODateWithMs),
        QString::number(value.nodeId),
        value.object.toShortString(),
        field(value.name),
        numberText(value.record.last(), digits),
        field(value.unit),
    };
    return fields.join(QLatin1Char(',')).toUtf8() + "\r\n";
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
