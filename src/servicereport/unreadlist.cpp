// SPDX-License-Identifier: MIT
#include "unreadlist.h"

#include "reporttr.h"
#include "reportwords.h"

#include <snapshot/snapshot.h>
#include <snapshot/snapshotwords.h>

#include <interpreter/datainterpreter.h>

namespace {

constexpr int mostObjects = 12; // named of one reason

/*! The sub-indices of one object: "6165h.1, 2, 5". */
struct UnreadObject
{
    quint16 index = 0;
    QVector<int> subIndices;
};

struct Collected
{
    QString reason;
    QVector<UnreadObject> objects;
    int count = 0;
};

Collected *groupFor(QVector<Collected> &groups, const QString &reason)
{
    for (Collected &group : groups) {
        if (group.reason == reason)
            return &group;
    }
    groups.append(Collected{reason, {}, 0});
    return &groups.last();
}

/*! Runs of numbers: "1–10, 12". */
QString numberText(const QVector<int> &numbers)
{
    QStringList texts;
    for (int i = 0; i < numbers.size();) {
        int end = i;
        while (end + 1 < numbers.size() && numbers.at(end + 1) == numbers.at(end) + 1)
            ++end;
        texts.append(i == end ? QString::number(numbers.at(i))
                              : QStringLiteral("%1–%2").arg(numbers.at(i)).arg(numbers.at(end)));
        i = end + 1;
    }
    return texts.join(QStringLiteral(", "));
}

QString objectText(const UnreadObject &object)
{
    const QString number
        = CanOpen::indexText(object.index) + QLatin1Char('.') + numberText(object.subIndices);
    const QString name = DataInterpreter::objectName(object.index, 0).simplified();
    return name.isEmpty() ? number : QStringLiteral("%1 (%2)").arg(name, number);
}

QString objectList(const QVector<UnreadObject> &objects)
{
    QStringList texts;
    for (int i = 0; i < qMin(objects.size(), mostObjects); ++i)
        texts.append(objectText(objects.at(i)));
    const int more = objects.size() - texts.size();
    if (more > 0)
        texts.append(ReportTr::tr("%n more object(s)", nullptr, more));
    return texts.join(QStringLiteral("; "));
}

} // namespace

QVector<UnreadGroup> unreadGroups(const SnapshotNode &node)
{
    QVector<Collected> collected;
    for (const SnapshotEntry &entry : node.entries) {
        if (!entry.isGap())
            continue;
        Collected *group = groupFor(collected, SnapshotWords::reason(entry));
        ++group->count;
        if (group->objects.isEmpty() || group->objects.last().index != entry.key.index)
            group->objects.append(UnreadObject{entry.key.index, {}});
        group->objects.last().subIndices.append(entry.key.subIndex);
    }
    QVector<UnreadGroup> groups;
    for (const Collected &group : qAsConst(collected))
        groups.append({group.reason, objectList(group.objects), group.count});
    return groups;
}
