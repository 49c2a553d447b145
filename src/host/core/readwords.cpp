// SPDX-License-Identifier: MIT
#include "readwords.h"

#include <bus/buswords.h>

#include <QMap>
#include <QPair>

namespace {

constexpr qint64 millisecondsPerSecond = 1000;
constexpr qint64 secondsPerMinute = 60;
constexpr int mostObjectsNamed = 8; // of one node and reason, in a sentence

/*! \a text with %1 node, %2 index, %3 sub-index, %4 number of values. */
QString fill(const QString &text, const ReadSummary &summary)
{
    return text.arg(QString::number(summary.nodeId), CanOpen::indexText(summary.key.index),
                    QString::number(summary.key.subIndex), QString::number(summary.record.total().values));
}

} // namespace

QString ReadWords::end(const ReadSummary &summary, Silence silence)
{
    if (summary.end == ReadSummary::End::Complete) {
        return tr("Read finished. Nodes: %1, %2.")
            .arg(QString::number(summary.record.nodes().size()), counts(summary.record.total()));
    }
    return summary.nodeId == 0 ? endOfDetection(summary, silence) : stop(summary, silence);
}

QString ReadWords::counts(const ReadCounts &counts)
{
    return tr("values: %1, objects not there: %2, failed: %3")
        .arg(QString::number(counts.values), QString::number(counts.missing), QString::number(counts.failed));
}

QString ReadWords::nodesMayBeMissing()
{
    return tr(
        "The bus was full while nodes were looked for, so nodes may be missing. Find out who sends so much, "
        "and read again.");
}

QString ReadWords::unknownNodes(const QVector<quint8> &nodeIds)
{
    return tr("Nothing is known of node %1: requests or answers found no room on the bus. It is overloaded, "
              "or "
              "nobody acknowledges; scan again when it is quieter.")
        .arg(BusWords::nodes(nodeIds.toList()));
}

QString ReadWords::endOfDetection(const ReadSummary &summary, Silence silence)
{
    switch (summary.end) {
    case ReadSummary::End::BusGone:
        return tr("Nothing was read, because the bus was lost: %1").arg(summary.reason);
    case ReadSummary::End::Disconnected:
        return tr("Nothing was read, because you disconnected.");
    case ReadSummary::End::Cancelled:
        return tr("The read was cancelled by the user.");
    case ReadSummary::End::Complete:
    case ReadSummary::End::NothingAsked:
    case ReadSummary::End::NoAnswer:
    case ReadSummary::End::NotSent:
    case ReadSummary::End::Refused:
        break;
    }
    if (silence == Silence::BusFull) {
        return tr(
            "Nothing was read, because node 1, the bus controller, was not heard: the bus is full, and the "
            "node's heartbeat may find no room on it. Find out who sends so much, and read again.");
    }
    return tr("Nothing was read, because node 1, the bus controller, was not heard. Is the vehicle "
              "switched on, and does node 1 send a heartbeat?");
}

QString ReadWords::stop(const ReadSummary &summary, Silence silence)
{
    switch (summary.end) {
    case ReadSummary::End::BusGone:
        return tr("The read stopped at node %1, object %2 sub-index %3, because the bus was lost: %5 Values "
                  "read until then: %4.")
            .arg(QString::number(summary.nodeId), CanOpen::indexText(summary.key.index),
                 QString::number(summary.key.subIndex), QString::number(summary.record.total().values),
                 summary.reason);
    case ReadSummary::End::Disconnected:
        return fill(
            tr("The read stopped at node %1, object %2 sub-index %3, because you disconnected. Values "
               "read until then: %4."),
            summary);
    case ReadSummary::End::Cancelled:
        return fill(tr("The read was cancelled by the user at node %1, object %2 sub-index %3. Values read "
                       "until then: %4."),
                    summary);
    case ReadSummary::End::NotSent:
        return fill(
            tr("The read stopped at node %1, object %2 sub-index %3, because the request could not be "
               "sent: the bus is overloaded, or nobody acknowledges. Values read until then: %4."),
            summary);
    case ReadSummary::End::Refused:
        return tr("Nothing was read, because a check-up is using the bus. Wait for its end or cancel it, "
                  "then read again.");
    case ReadSummary::End::Complete:
    case ReadSummary::End::NothingAsked:
    case ReadSummary::End::NoAnswer:
        break;
    }
    switch (silence) {
    case Silence::Stopped:
        return fill(tr("The read stopped at node %1, object %2 sub-index %3, because the node is in the "
                       "state Stopped and answers no SDO. Values read until then: %4."),
                    summary);
    case Silence::Restarting:
        return fill(tr("The read stopped at node %1, object %2 sub-index %3, because the node keeps "
                       "restarting. Look at its supply. Values read until then: %4."),
                    summary);
    case Silence::BusFull:
        return fill(tr("The read stopped at node %1, object %2 sub-index %3, because the bus is full, and "
                       "the node's answer may find no room on it. Find out who sends so much, and read "
                       "again. Values read until then: %4."),
                    summary);
    case Silence::Unexplained:
        break;
    }
    return fill(tr("The read stopped at node %1, object %2 sub-index %3, because it did not answer. "
                   "Values read until then: %4."),
                summary);
}

QString ReadWords::foreignClient(quint8 nodeId)
{
    return tr("Another client is reading node %1. Objects of it may take long or fail; end the other "
              "program, or "
              "take its adapter off the bus.")
        .arg(nodeId);
}

QString ReadWords::place(const ReadPace &pace, quint8 nodeId, const CanOpen::ObjectKey &key)
{
    return tr("Reading node %1 (%2 of %3), object %4 ...")
        .arg(QString::number(nodeId), QString::number(pace.nodeNumber()), QString::number(pace.nodeCount()),
             CanOpen::indexText(key.index));
}

QString ReadWords::timeLeft(const ReadPace &pace)
{
    const std::optional<std::chrono::milliseconds> left = pace.timeLeft();
    if (!left)
        return QString();
    const qint64 seconds = (left->count() + millisecondsPerSecond - 1) / millisecondsPerSecond;
    if (seconds < secondsPerMinute)
        return tr("%1 s left").arg(seconds);
    return tr("%1 min left").arg((seconds + secondsPerMinute - 1) / secondsPerMinute);
}

QStringList ReadWords::failures(const QVector<FailedObject> &failed)
{
    QMap<QPair<quint8, QString>, QStringList> objects; // by node and reason
    for (const FailedObject &failure : failed)
        objects[{failure.nodeId, failure.reason()}].append(failure.key.toShortString());

    QStringList sentences;
    for (auto it = objects.cbegin(); it != objects.cend(); ++it) {
        const int more = it->size() - mostObjectsNamed;
        QString names = QStringList(it->mid(0, mostObjectsNamed)).join(QLatin1String(", "));
        if (more > 0)
            names = tr("%1 and %2 more").arg(names, QString::number(more));
        sentences.append(tr("Not read from node %1: %2. %3.")
                             .arg(QString::number(it.key().first), names, it.key().second));
    }
    return sentences;
}
