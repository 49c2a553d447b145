// SPDX-License-Identifier: MIT
#include "../frames.h"

#include <trace/statistics/trafficgroups.h>

#include <QtTest>

/*! Frames counted by kind and by node. */
class tst_TrafficGroups : public QObject
{
    Q_OBJECT

private slots:
    void byKind();
    void byNode();
    void ofNothing();

private:
    static TraceStatistics counted()
    {
        TraceStatistics statistics;
        statistics.add(frameAt(1 * second, 0x182, "01"));
        statistics.add(frameAt(2 * second, 0x602, "4000100000000000"));
        statistics.add(frameAt(3 * second, 0x582, "43001000c6010000"));
        statistics.add(frameAt(4 * second, 0x704, "05"));
        statistics.add(frameAt(5 * second, 0x080, ""));
        statistics.add(frameAt(6 * second, 0x020, "0000000000000000", TraceFrame::Error));
        statistics.add(frameAt(7 * second, 0x182, "01", TraceFrame::Extended));
        TraceFrame other = frameAt(8 * second, 0x182, "01");
        other.channel = 1;
        statistics.add(other);
        return statistics;
    }
};

void tst_TrafficGroups::byKind()
{
    QStringList texts;
    for (const TrafficGroups::Kind &kind : TrafficGroups::byKind(counted())) {
        texts += QStringLiteral("%1 %2").arg(QLatin1String(frameKindName(kind.kind))).arg(kind.count.frames);
    }
    QCOMPARE(texts.join(QLatin1String(", ")),
             QStringLiteral("sync 1, pdo 2, sdo 2, heartbeat 1, other 1, error 1"));
}

void tst_TrafficGroups::byNode()
{
    const QVector<TrafficGroups::Node> nodes = TrafficGroups::byNode(counted());
    QCOMPARE(nodes.size(), 3);
    QCOMPARE(int(nodes.at(0).nodeId), 2);
    QCOMPARE(nodes.at(0).count.frames, quint64(3));
    QCOMPARE(nodes.at(0).count.first, 1 * second);
    QCOMPARE(nodes.at(0).count.last, 3 * second);
    // 47 bits and 8 for each byte, and a stuff bit for ten of 34 and 8 for each: 59 for one byte, 120 for eight
    QCOMPARE(nodes.at(0).count.bits, quint64(59 + 120 + 120));
    QCOMPARE(int(nodes.at(1).nodeId), 4);
    QCOMPARE(int(nodes.at(2).nodeId), 2);
    QCOMPARE(int(nodes.at(2).channel), 1);
}

void tst_TrafficGroups::ofNothing()
{
    QVERIFY(TrafficGroups::byKind(TraceStatistics()).isEmpty());
    QVERIFY(TrafficGroups::byNode(TraceStatistics()).isEmpty());
}

QTEST_GUILESS_MAIN(tst_TrafficGroups)
#include "tst_trafficgroups.moc"
