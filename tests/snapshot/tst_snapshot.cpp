// SPDX-License-Identifier: MIT
#include <snapshot/snapshot.h>

#include <QtTest>

Q_DECLARE_METATYPE(SnapshotGap)

class tst_Snapshot : public QObject
{
    Q_OBJECT

private slots:
    void entriesStandInOrderOfTheirKeys();
    void insertReplacesTheSameKey();
    void whatWasNotAskedIsNotFound();
    void absentIsNoGap_data();
    void absentIsNoGap();
    void snapshotIsCompleteWithoutGaps();
    void silentNodeMakesItIncomplete();
};

namespace {

SnapshotEntry entry(quint16 index, quint8 subIndex, SnapshotGap gap = SnapshotGap::None)
{
    SnapshotEntry result;
    result.key = {index, subIndex};
    result.gap = gap;
    if (gap == SnapshotGap::None)
        result.value = 5u;
    return result;
}

} // namespace

void tst_Snapshot::entriesStandInOrderOfTheirKeys()
{
    SnapshotNode node;
    node.insert(entry(0x6000, 1));
    node.insert(entry(0x1000, 0));
    node.insert(entry(0x6000, 0));
    QCOMPARE(node.entries.size(), 3);
    QCOMPARE(node.entries.at(0).key.toShortString(), QStringLiteral("1000h.0"));
    QCOMPARE(node.entries.at(1).key.toShortString(), QStringLiteral("6000h.0"));
    QCOMPARE(node.entries.at(2).key.toShortString(), QStringLiteral("6000h.1"));
}

void tst_Snapshot::insertReplacesTheSameKey()
{
    SnapshotNode node;
    node.insert(entry(0x6000, 1, SnapshotGap::NoAnswer));
    node.insert(entry(0x6000, 1));
    QCOMPARE(node.entries.size(), 1);
    QVERIFY(node.entries.first().hasValue());
}

void tst_Snapshot::whatWasNotAskedIsNotFound()
{
    SnapshotNode node;
    node.insert(entry(0x6000, 1));
    QVERIFY(node.find(0x6000, 1) != nullptr);
    QVERIFY(node.find(0x6000, 0) == nullptr);
    QVERIFY(node.find(0x6000, 2) == nullptr);
    QVERIFY(!node.value(0x6000, 2).isValid());
    QCOMPARE(node.value(0x6000, 1), QVariant(5u));

    Snapshot snapshot;
    node.id = 7;
    snapshot.nodes.append(node);
    QVERIFY(snapshot.find(7) != nullptr);
    QVERIFY(snapshot.find(8) == nullptr);
}

void tst_Snapshot::absentIsNoGap_data()
{
    QTest::addColumn<SnapshotGap>("gap");
    QTest::addColumn<bool>("isGap");
    QTest::newRow("value") << SnapshotGap::None << false;
    QTest::newRow("absent") << SnapshotGap::Absent << false;
    QTest::newRow("abort") << SnapshotGap::Abort << true;
    QTest::newRow("no answer") << SnapshotGap::NoAnswer << true;
    QTest::newRow("wrong size") << SnapshotGap::WrongSize << true;
    QTest::newRow("failed") << SnapshotGap::Failed << true;
    QTest::newRow("stopped") << SnapshotGap::Stopped << true;
    QTest::newRow("cancelled") << SnapshotGap::Cancelled << true;
}

void tst_Snapshot::absentIsNoGap()
{
    QFETCH(SnapshotGap, gap);
    QFETCH(bool, isGap);
    SnapshotNode node;
    node.insert(entry(0x6000, 1, gap));
    QCOMPARE(node.gapCount(), isGap ? 1 : 0);
    QCOMPARE(node.valueCount(), gap == SnapshotGap::None ? 1 : 0);
    Snapshot snapshot;
    snapshot.nodes.append(node);
    QCOMPARE(snapshot.isComplete(), !isGap);
}

void tst_Snapshot::snapshotIsCompleteWithoutGaps()
{
    Snapshot snapshot;
    SnapshotNode node;
    node.insert(entry(0x6000, 1));
    snapshot.nodes = {node, node};
    QCOMPARE(snapshot.valueCount(), 2);
    QCOMPARE(snapshot.gapCount(), 0);
    QVERIFY(snapshot.isComplete());
}

void tst_Snapshot::silentNodeMakesItIncomplete()
{
    for (const SnapshotEnd end : {SnapshotEnd::Silent, SnapshotEnd::Stopped, SnapshotEnd::Cancelled}) {
        Snapshot snapshot;
        SnapshotNode node;
        node.end = end;
        snapshot.nodes.append(node);
        QVERIFY(!snapshot.isComplete());
    }
}

QTEST_GUILESS_MAIN(tst_Snapshot)
#include "tst_snapshot.moc"
