// SPDX-License-Identifier: MIT
#include "snapshotsummary.h"

#include <json/jsontext.h>
#include <snapshot/deviceidentity.h>
#include <snapshot/snapshotwords.h>

#include <QCoreApplication>
#include <QMap>

#include <algorithm>

namespace {

struct SnapshotSummaryTr
{
    Q_DECLARE_TR_FUNCTIONS(SnapshotSummary)
};

constexpr int mostNamed = 3; // objects of one reason

struct Counts
{
    int values = 0;
    int absent = 0;
    int gaps = 0;
};

Counts countsOf(const SnapshotNode &node)
{
    Counts counts;
    counts.values = node.valueCount();
    counts.gaps = node.gapCount();
    counts.absent = node.entries.size() - counts.values - counts.gaps;
    return counts;
}

QString countsText(const Counts &counts)
{
    return SnapshotSummaryTr::tr("%1 values read, %2 objects not there, %3 could not be read")
        .arg(QString::number(counts.values), QString::number(counts.absent), QString::number(counts.gaps));
}

QString nameOf(const SnapshotNode &node)
{
    return DeviceIdentity::of(node).displayName(node.id);
}

QString objectsText(const QStringList &objects)
{
    const QString named = objects.mid(0, mostNamed).join(QStringLiteral(", "));
    return objects.size() > mostNamed ? SnapshotSummaryTr::tr("%1 and %2 more")
                                            .arg(named, QString::number(objects.size() - mostNamed))
                                      : named;
}

/*! The objects that could not be read, by the reason. */
QMap<QString, QStringList> gapsOf(const SnapshotNode &node)
{
    QMap<QString, QStringList> gaps;
    for (const SnapshotEntry &entry : node.entries) {
        if (entry.isGap())
            gaps[SnapshotWords::reason(entry)].append(entry.key.toShortString());
    }
    return gaps;
}

QStringList nodeLines(const SnapshotNode &node)
{
    const QString ending = SnapshotWords::ending(node.end);
    const Counts counts = countsOf(node);
    if (!ending.isEmpty() && counts.values + counts.absent == 0)
        return {SnapshotSummaryTr::tr("Node %1: %2").arg(QString::number(node.id), ending)};
    QStringList lines{SnapshotSummaryTr::tr("Node %1, %2: %3")
                          .arg(QString::number(node.id), nameOf(node), countsText(counts))};
    if (!ending.isEmpty())
        lines.append(QStringLiteral("    ") + ending);
    const QMap<QString, QStringList> gaps = gapsOf(node);
    for (auto gap = gaps.cbegin(); gap != gaps.cend(); ++gap)
        lines.append(QStringLiteral("    %1 %2").arg(gap.key(), objectsText(gap.value())));
    return lines;
}

void writeGap(JsonText &json, const SnapshotEntry &entry)
{
    json.beginObject();
    json.write("index", qint64(entry.key.index));
    json.write("sub", qint64(entry.key.subIndex));
    json.write("reason", SnapshotWords::reason(entry));
    json.endObject();
}

void writeNode(JsonText &json, const SnapshotNode &node)
{
    const Counts counts = countsOf(node);
    json.breakLine();
    json.beginObject();
    json.write("id", qint64(node.id));
    json.write("name", nameOf(node));
    json.writeBoolean("complete", node.end == SnapshotEnd::Complete && counts.gaps == 0);
    json.write("reason", SnapshotWords::ending(node.end));
    json.write("values", qint64(counts.values));
    json.write("absent", qint64(counts.absent));
    json.beginArray("gaps");
    for (const SnapshotEntry &entry : node.entries) {
        if (entry.isGap())
            writeGap(json, entry);
    }
    json.endArray();
    json.endObject();
}

} // namespace

QStringList SnapshotSummary::lines(const Snapshot &snapshot)
{
    QStringList lines;
    Counts total;
    for (const SnapshotNode &node : snapshot.nodes) {
        const Counts counts = countsOf(node);
        total.values += counts.values;
        total.absent += counts.absent;
        total.gaps += counts.gaps;
        lines += nodeLines(node);
    }
    lines.append(SnapshotSummaryTr::tr("Total: %1 nodes, %2, %3 s")
                     .arg(QString::number(snapshot.nodes.size()), countsText(total),
                          QString::number(static_cast<double>(snapshot.duration) / 1000.0, 'f', 1)));
    return lines;
}

QByteArray SnapshotSummary::toJson(const Snapshot &snapshot, bool isComplete, const QString &file)
{
    JsonText json;
    json.beginObject();
    json.writeBoolean("complete", isComplete);
    json.write("file", file);
    json.write("duration", snapshot.duration);
    json.beginArray("nodes");
    for (const SnapshotNode &node : snapshot.nodes)
        writeNode(json, node);
    json.endArray();
    json.endObject();
    return json.bytes();
}
