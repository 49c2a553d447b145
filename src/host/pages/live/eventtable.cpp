// SPDX-License-Identifier: MIT
#include "eventtable.h"

#include <live/events/eventwriting.h>
#include <system/amounts.h>

#include <QJsonArray>
#include <QJsonDocument>

namespace {

EventWriting::TimeOfDay timesFrom(const QDateTime &start)
{
    return [start](qint64 time) { return start.addMSecs(time / Microseconds::ofMillisecond); };
}

} // namespace

QByteArray EventTable::toCsv() const
{
    QByteArray csv = EventWriting::csvHead();
    for (const LiveEvent &event : events)
        csv += EventWriting::toCsv(event, timesFrom(start));
    return csv;
}

QByteArray EventTable::toJson() const
{
    QJsonArray array;
    for (const LiveEvent &event : events)
        array.append(EventWriting::toJson(event, timesFrom(start)));
    return QJsonDocument(QJsonObject{{QStringLiteral("events"), array}}).toJson();
}
