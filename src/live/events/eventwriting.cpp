// SPDX-License-Identifier: MIT
#include "eventwriting.h"

#include "eventwords.h"

#include <canopen/hexadecimal.h>
#include <checkup/findingwords.h>
#include <system/csvline.h>

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
    return csvLine({
        timeOfDay(event.time).toString(Qt::ISODateWithMs),
        FindingWords::of(event.severity()),
        event.nodeId != 0 ? QString::number(event.nodeId) : QString(),
        eventKindName(event.kind),
        QString::number(event.code),
        QString::number(event.count),
        EventWords::text(event),
    });
}
