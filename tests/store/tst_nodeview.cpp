// SPDX-License-Identifier: MIT
#include <tests/support/logwatcher.h>

#include <store/nodeview.h>

#include <QtTest>

#include <limits>

namespace {

using Seen = QList<QPair<int, qlonglong>>; // sub-index, value

constexpr quint32 fourThousandMillion = 4000000000u;

/*! Collects what a walk visits. */
struct Collector
{
    Seen *seen;
    void operator()(quint8 subIndex, const QVariant &value) const
    {
        seen->append({subIndex, value.toLongLong()});
    }
};

Seen entries(const NodeStore &store, quint16 index)
{
    Seen seen;
    NodeView(store, 1).forEachEntry(index, Collector{&seen});
    return seen;
}

Seen followed(const NodeStore &store, quint16 index, QVariant holder)
{
    Seen seen;
    NodeView(store, 1).followEntries(index, holder, Collector{&seen});
    return seen;
}

/*! As the window walks: the first bound is the count of sub-index 0. */
Seen followed(const NodeStore &store, quint16 index)
{
    QVariant holder;
    return NodeView(store, 1).getValue(index, 0, holder) ? followed(store, index, holder) : Seen();
}

Seen before(const NodeStore &store, quint16 index, quint32 count)
{
    Seen seen;
    NodeView(store, 1).forEachBefore(index, count, Collector{&seen});
    return seen;
}

NodeStore storeOf(quint16 index, const QVector<QPair<int, qlonglong>> &values)
{
    NodeStore store;
    for (const auto &value : values)
        store.setValue(1, index, static_cast<quint8>(value.first), value.second);
    return store;
}

} // namespace

class tst_NodeView : public QObject
{
    Q_OBJECT

private slots:
    void valueIsEmptyWhenNotStored();
    void entriesOfAnAbsentCount();
    void entriesSkipGaps();
    void entriesReadTheCountOnce();
    void entriesUpToTheLastSubIndex();
    void entriesOfHostileCounts_data();
    void entriesOfHostileCounts();
    void followStopsAtTheCount();
    void followSmallSerialNumber();
    void followLargeSerialNumberFindsSubIndexZeroAgain();
    void followSmallVendorIdEndsTheWalk();
    void followBillionsOfAnHonestDevice();
    void followStartsFromTheGivenBound();
    void followNothingStored();
    void followLeavesTheLastValueInTheHolder();
    void followOneEntryOfValueZero();
    void followHostileCountEnds();
    void followBoundBeyondSubIndicesIsExact();
    void beforeStopsOneShort();
    void beforeCountsWithNothingToList();
    void beforeSkipsGaps();
    void beforeWrapsBeyondSubIndices();
    void beforeHostileCountEnds();
};

void tst_NodeView::valueIsEmptyWhenNotStored()
{
    const NodeStore store = storeOf(0x1018, {{0, 4}});
    const NodeView node(store, 1);
    QVERIFY(!node.value(0x1018, 1));
    QVERIFY(!node.entryCount(0x1019));
    QCOMPARE(node.value(0x1018, 0)->toUInt(), 4u);
    QCOMPARE(*node.entryCount(0x1018), 4u);
    QCOMPARE(node.nodeId(), quint8(1));
    QVERIFY(!NodeView(store, 200).value(0x1018, 0));
}

void tst_NodeView::entriesOfAnAbsentCount()
{
    QCOMPARE(entries(storeOf(0x6020, {{1, 10}, {2, 20}}), 0x6020), Seen());
}

void tst_NodeView::entriesSkipGaps()
{
    QCOMPARE(entries(storeOf(0x6020, {{0, 5}, {1, 10}, {3, 30}, {5, 50}, {6, 60}}), 0x6020),
             (Seen{{1, 10}, {3, 30}, {5, 50}}));
}

void tst_NodeView::entriesReadTheCountOnce()
{
    // Values that would end or prolong a walk whose bound follows them.
    QCOMPARE(entries(storeOf(0x6020, {{0, 3}, {1, 0}, {2, 200}, {3, 1}, {4, 4}}), 0x6020),
             (Seen{{1, 0}, {2, 200}, {3, 1}}));
}

void tst_NodeView::entriesUpToTheLastSubIndex()
{
    LogWatcher log;
    QCOMPARE(entries(storeOf(0x6008, {{0, 255}, {1, 7}, {255, 9}}), 0x6008), (Seen{{1, 7}, {255, 9}}));
    QCOMPARE(log.debugLines(), QStringList());
}

void tst_NodeView::entriesOfHostileCounts_data()
{
    QTest::addColumn<QVariant>("count");
    QTest::newRow("one more than there are sub-indices") << QVariant(256u);
    QTest::newRow("thousands of millions") << QVariant(fourThousandMillion);
    QTest::newRow("greatest") << QVariant(std::numeric_limits<quint32>::max());
    QTest::newRow("negative") << QVariant(-1);
    QTest::newRow("negative 64 bits") << QVariant(qlonglong(-5));
}

void tst_NodeView::entriesOfHostileCounts()
{
    QFETCH(QVariant, count);
    NodeStore store = storeOf(0x6008, {{1, 7}, {255, 9}});
    store.setValue(1, 0x6008, 0, count);
    LogWatcher log;
    QCOMPARE(entries(store, 0x6008), (Seen{{1, 7}, {255, 9}}));
    QCOMPARE(log.debugLines().size(), 1);
    QVERIFY2(log.debugLines().constFirst().contains(QLatin1String("Node 1: object 0x6008 states")),
             qPrintable(log.debugLines().constFirst()));
}

void tst_NodeView::followStopsAtTheCount()
{
    QCOMPARE(followed(storeOf(0x600E, {{0, 2}, {1, 500}, {2, 1}, {3, 9}}), 0x600E), (Seen{{1, 500}, {2, 1}}));
}

void tst_NodeView::followSmallSerialNumber()
{
    const NodeStore store = storeOf(0x1018, {{0, 4}, {1, 1000}, {2, 1000}, {3, 1000}, {4, 255}});
    QCOMPARE(followed(store, 0x1018), (Seen{{1, 1000}, {2, 1000}, {3, 1000}, {4, 255}}));
}

void tst_NodeView::followLargeSerialNumberFindsSubIndexZeroAgain()
{
    const NodeStore store = storeOf(0x1018, {{0, 4}, {1, 1000}, {2, 1000}, {3, 1000}, {4, 300}});
    QCOMPARE(followed(store, 0x1018), (Seen{{1, 1000}, {2, 1000}, {3, 1000}, {4, 300}, {0, 4}}));
}

void tst_NodeView::followSmallVendorIdEndsTheWalk()
{
    const NodeStore store = storeOf(0x1018, {{0, 4}, {1, 1}, {2, 1000}, {3, 1000}, {4, 300}});
    QCOMPARE(followed(store, 0x1018), (Seen{{1, 1}}));
}

void tst_NodeView::followBillionsOfAnHonestDevice()
{
    LogWatcher log;
    const NodeStore store = storeOf(
        0x1018, {{0, 4}, {1, 3000000000LL}, {2, 3000000000LL}, {3, 3000000000LL}, {4, 4294967295LL}});
    QCOMPARE(followed(store, 0x1018),
             (Seen{{1, 3000000000LL}, {2, 3000000000LL}, {3, 3000000000LL}, {4, 4294967295LL}, {0, 4}}));
    QCOMPARE(log.debugLines(), QStringList());
}

void tst_NodeView::followStartsFromTheGivenBound()
{
    const NodeStore store = storeOf(0x6311, {{0, 2}, {1, 8}, {2, 0}});
    QCOMPARE(followed(store, 0x6311, 0u), Seen());
    QCOMPARE(followed(store, 0x6311, 1u), (Seen{{1, 8}, {2, 0}}));
    QCOMPARE(followed(storeOf(0x6311, {{0, 0}}), 0x6311, 0x01020304u), (Seen{{0, 0}}));
}

void tst_NodeView::followNothingStored()
{
    LogWatcher log;
    QCOMPARE(followed(NodeStore(), 0x6311, 255u), Seen());
    QCOMPARE(log.debugLines(), QStringList());
}

void tst_NodeView::followLeavesTheLastValueInTheHolder()
{
    const NodeStore store = storeOf(0x600E, {{0, 2}, {1, 77}, {2, 1}});
    QVariant holder(2u);
    Seen seen;
    NodeView(store, 1).followEntries(0x600E, holder, Collector{&seen});
    QCOMPARE(holder, QVariant(qlonglong(1)));
}

void tst_NodeView::followOneEntryOfValueZero()
{
    QCOMPARE(followed(storeOf(0x6311, {{0, 1}, {1, 0}}), 0x6311), (Seen{{1, 0}}));
}

void tst_NodeView::followHostileCountEnds()
{
    LogWatcher log;
    const NodeStore store = storeOf(0x1018, {{0, fourThousandMillion}, {7, fourThousandMillion}});
    const Seen seen = followed(store, 0x1018);
    // 16 rounds of 256 sub-indices, of which two are stored.
    QCOMPARE(seen.size(), 32);
    QCOMPARE(log.debugLines().size(), 1);
    QVERIFY2(log.debugLines().constFirst().contains(QLatin1String("Node 1: object 0x1018 states 4000000000")),
             qPrintable(log.debugLines().constFirst()));
}

void tst_NodeView::followBoundBeyondSubIndicesIsExact()
{
    // The count of a hand-written file: sub-index 0 comes up at 256 and 512, sub-index 1 also at 257 and 513.
    LogWatcher log;
    QCOMPARE(followed(storeOf(0x1018, {{0, 513}, {1, 600}}), 0x1018),
             (Seen{{1, 600}, {0, 513}, {1, 600}, {0, 513}, {1, 600}}));
    QCOMPARE(log.debugLines(), QStringList());
}

void tst_NodeView::beforeStopsOneShort()
{
    QCOMPARE(before(storeOf(0x1003, {{0, 3}, {1, 11}, {2, 22}, {3, 33}}), 0x1003, 3),
             (Seen{{1, 11}, {2, 22}}));
}

void tst_NodeView::beforeCountsWithNothingToList()
{
    const NodeStore store = storeOf(0x1003, {{0, 1}, {1, 11}});
    QCOMPARE(before(store, 0x1003, 0), Seen());
    QCOMPARE(before(store, 0x1003, 1), Seen());
}

void tst_NodeView::beforeSkipsGaps()
{
    QCOMPARE(before(storeOf(0x1003, {{0, 4}, {3, 33}}), 0x1003, 4), (Seen{{3, 33}}));
}

void tst_NodeView::beforeWrapsBeyondSubIndices()
{
    LogWatcher log;
    QCOMPARE(before(storeOf(0x1003, {{0, 300}, {1, 11}, {255, 55}}), 0x1003, 300),
             (Seen{{1, 11}, {255, 55}, {0, 300}, {1, 11}}));
    QCOMPARE(log.debugLines(), QStringList());
}

void tst_NodeView::beforeHostileCountEnds()
{
    LogWatcher log;
    QCOMPARE(before(storeOf(0x1003, {{1, 11}}), 0x1003, fourThousandMillion).size(), 16);
    QCOMPARE(log.debugLines().size(), 1);
}

QTEST_GUILESS_MAIN(tst_NodeView)
#include "tst_nodeview.moc"
