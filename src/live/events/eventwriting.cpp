// SPDX-License-Identifier: MIT
#include "eventwriting.h"

#include "eventwords.h"

#include <canopen/hexadecimal.h>
#include <checkup/findingwords.h>

#include <QStringList>

namespace {

QString manufacturerText(const LiveEvent &event)
{
    QString text;
    for (const quint8 byte : event.manufacturer)
        text += CanOpen::hexadecimal(byte, 2);
    return text;
}

bool isEmergency(const LiveEvent &event)
{
    return event.kind == EventKind::Emergency || event.kind == EventKind::EmergencyReset;
}

QString field(const QString &text)
{
    const bool isPlain = !text.contains(QLatin1Char(',')) && !text.contains(QLatin1Char('"'))
                         && !text.contains(QLatin1Char('\n')) && !text.contains(QLatin1Char('\r'));
    if (isPlain)
        return text;
    QString quoted = text;
    quoted.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}

QByteArray line(const QStringList &fields)
{
    return fields.join(QLatin1Char(',')).toUtf8() + "\r\n";
}

} // namespace

QJsonObject EventWriting::toJson(const LiveEvent &event, const TimeOfDay &timeOfDay)
{
    QJsonObject json{
        {QStringLiteral("time"), timeOfDay(event.time).toString(Qt::ISODateWithMs)},
        {QStringLiteral("lastTime"), timeOfDay(event.lastTime).toString(Qt::ISODateWithMs)},
        {QStringLiteral("severity"), FindingWords::of(event.severity())},
        {QStringLiteral("kind"), eventKindName(event.kind)},
        {QStringLiteral("node"), event.nodeId != 0 ? QJsonValue(event.nodeId) : QJsonValue()},
        {QStringLiteral("code"), double(event.code)},
        {QStringLiteral("count"), double(event.count)},
        {QStringLiteral("text"), EventWords::text(event)},
    };
    if (!event.detail.isEmpty())
        json.insert(QLatin1String("detail"), event.detail);
    if (isEmergency(event)) {
        json.insert(QStringLiteral("errorRegister"), event.errorRegister);
        json.insert(QStringLiteral("manufacturer"), manufacturerText(event));
    }
    return json;
}

QByteArray EventWriting::csvHead()
{
    return "time,severity,node,kind,code,count,text\r\n";
}

QByteArray EventWriting::toCsv(const LiveEvent &event, const TimeOfDay &timeOfDay)
{
    return line({
        timeOfDay(event.time).toString(Qt::ISODateWithMs),
        FindingWords::of(event.severity()),
        event.nodeId != 0 ? QString::number(event.nodeId) : QString(),
        eventKindName(event.kind),
        QString::number(event.code),
        QString::number(event.count),
        field(EventWords::text(event)),
    });
}
