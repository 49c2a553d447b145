// SPDX-License-Identifier: MIT
#include "eventreading.h"

#include "eventlist.h"

#include <canopen/cobid.h>
#include <json/jsondocument.h>
#include <json/jsonobject.h>
#include <system/amounts.h>

#include <QDateTime>

#include <limits>

namespace {

constexpr int longestWord = 100;
constexpr int longestDetail = 1000;
constexpr qint64 highestCode = std::numeric_limits<quint32>::max();
constexpr qint64 mostForgotten = Q_INT64_C(1) << 53; // that a number of JSON holds exactly

struct EventReadingTr
{
    Q_DECLARE_TR_FUNCTIONS(EventReading)
};

EventKind kindOf(const JsonObject &json)
{
    const QString name = json.text("kind", longestWord);
    for (int kind = 0; kind < eventKinds; ++kind) {
        if (eventKindName(EventKind(kind)) == name)
            return EventKind(kind);
    }
    json.place().complain(EventReadingTr::tr("\"%1\" is no kind of event").arg(name));
    return EventKind::NodeHeard;
}

qint64 timeIn(const JsonObject &json, const char *key)
{
    const QDateTime time = QDateTime::fromString(json.text(key, longestWord), Qt::ISODateWithMs);
    if (!time.isValid())
        json.place().complain(EventReadingTr::tr("the time cannot be read"));
    return time.isValid() ? time.toMSecsSinceEpoch() * Microseconds::ofMillisecond : 0;
}

LiveEvent eventOf(const JsonObject &json)
{
    LiveEvent event;
    event.kind = kindOf(json);
    event.nodeId = static_cast<quint8>(json.optionalInteger("node", 0, CanOpen::lastNodeId).value_or(0));
    event.code = static_cast<quint32>(json.integer("code", 0, highestCode));
    event.count = static_cast<quint32>(json.integer("count", 1, highestCode));
    event.time = timeIn(json, "time");
    event.lastTime = timeIn(json, "lastTime");
    event.detail = json.optionalText("detail", longestDetail);
    constexpr int highestByte = 0xFF;
    event.errorRegister
        = static_cast<quint8>(json.optionalInteger("errorRegister", 0, highestByte).value_or(0));
    const QByteArray bytes = QByteArray::fromHex(json.optionalText("manufacturer", longestWord).toLatin1());
    for (std::size_t i = 0; i < event.manufacturer.size() && int(i) < bytes.size(); ++i)
        event.manufacturer[i] = static_cast<quint8>(bytes.at(int(i)));
    return event;
}

} // namespace

std::optional<EventReading::Events> EventReading::fromJson(const QByteArray &text, QString *errorMessage)
{
    const std::optional<JsonDocument> document = JsonDocument::parse(text, errorMessage);
    if (!document)
        return std::nullopt;
    JsonFault fault;
    const JsonPlace top(&fault);
    const JsonObject json(document->root(), top);
    Events read;
    if (fault.isEmpty()) {
        read.forgotten
            = static_cast<quint64>(json.optionalInteger("forgotten", 0, mostForgotten).value_or(0));
        json.forEachObject("events", [&read](const JsonObject &event) {
            if (read.events.size() < EventList::mostEvents)
                read.events.push_back(eventOf(event));
            else
                ++read.forgotten;
        });
    }
    if (fault.isEmpty())
        return read;
    *errorMessage = fault.text;
    return std::nullopt;
}
