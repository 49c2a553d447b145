// SPDX-License-Identifier: MIT
#include "snapshotwriting.h"

#include <json/jsontext.h>

namespace {

using namespace SnapshotJson;

void writeOptional(JsonText &json, const char *key, const QString &text)
{
    if (!text.isEmpty())
        json.write(key, text);
}

void writeValue(JsonText &json, const QVariant &value)
{
    switch (static_cast<QMetaType::Type>(value.type())) {
    case QMetaType::Int:
    case QMetaType::LongLong:
        json.write("value", value.toLongLong());
        break;
    case QMetaType::UInt:
    case QMetaType::ULongLong:
        json.write("value", value.toULongLong());
        break;
    case QMetaType::Float:
    case QMetaType::Double:
        json.write("value", value.toDouble());
        break;
    case QMetaType::QString:
        json.write("value", value.toString());
        break;
    default:
        break; // bytes: raw has them
    }
}

void writeEntry(JsonText &json, const SnapshotEntry &entry)
{
    json.breakLine();
    json.beginObject();
    json.write("index", qint64(entry.key.index));
    json.write("sub", qint64(entry.key.subIndex));
    if (entry.type)
        json.write("type", qint64(*entry.type));
    if (!entry.raw.isEmpty())
        json.write("raw", QString::fromLatin1(entry.raw.toHex()));
    if (entry.gap == SnapshotGap::None)
        writeValue(json, entry.value);
    else
        json.write("gap", wordOf(gapWords, entry.gap));
    if (entry.abortCode != 0)
        json.write("abortCode", qint64(entry.abortCode));
    json.write("ms", entry.ms);
    json.endObject();
}

void writeNode(JsonText &json, const SnapshotNode &node)
{
    json.breakLine();
    json.beginObject();
    json.write("id", qint64(node.id));
    if (node.nmtState)
        json.write("nmtState", wordOf(nmtWords, *node.nmtState));
    json.write("end", wordOf(endWords, node.end));
    if (node.bootUps > 0)
        json.write("bootUps", qint64(node.bootUps));
    if (node.medianAnswer)
        json.write("medianAnswer", qint64(*node.medianAnswer));
    if (node.longestAnswer)
        json.write("longestAnswer", qint64(*node.longestAnswer));
    writeOptional(json, "dataSheet", node.dataSheet);
    json.beginArray("entries");
    for (const SnapshotEntry &entry : node.entries)
        writeEntry(json, entry);
    json.endArray();
    json.endObject();
}

/*! With the offset of its time zone. */
QString timeText(const QDateTime &time)
{
    return time.toOffsetFromUtc(time.offsetFromUtc()).toString(Qt::ISODateWithMs);
}

void writeOrigin(JsonText &json, const Snapshot &snapshot)
{
    json.write("program", snapshot.program);
    json.write("time", timeText(snapshot.time));
    json.write("duration", snapshot.duration);
    json.write("scope", wordOf(scopeWords, snapshot.scope));
    json.write("bus", snapshot.bus);
    writeOptional(json, "adapter", snapshot.adapter);
    if (snapshot.bitRate > 0)
        json.write("bitRate", qint64(snapshot.bitRate));
}

void writeNotes(JsonText &json, const SnapshotNotes &notes)
{
    writeOptional(json, "vehicle", notes.vehicle);
    writeOptional(json, "customer", notes.customer);
    writeOptional(json, "technician", notes.technician);
    writeOptional(json, "odometer", notes.odometer);
    writeOptional(json, "note", notes.note);
}

} // namespace

QByteArray SnapshotJson::write(const Snapshot &snapshot, int version)
{
    JsonText json;
    json.beginObject();
    json.write("format", QString::fromLatin1(formatName));
    json.write("version", qint64(version));
    json.breakLine();
    writeOrigin(json, snapshot);
    json.breakLine();
    writeNotes(json, snapshot.notes);
    json.beginArray("nodes");
    for (const SnapshotNode &node : snapshot.nodes)
        writeNode(json, node);
    json.endArray();
    json.endObject();
    return json.bytes() + '\n';
}
