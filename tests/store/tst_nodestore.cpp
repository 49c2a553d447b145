// SPDX-License-Identifier: MIT
#include <store/nodestore.h>

#include <QtTest>

class tst_NodeStore : public QObject
{
    Q_OBJECT

private slots:
    void keysAreOrderedByIndexThenSubIndex();
    void emptyStoreHoldsNothing();
    void absentEntryLeavesValueUntouched();
    void listsAreAscendingAndDistinct();
    void sameKeyKeepsTheLastValue();
    void clearKeepsTheNodeList();
    void nodesAreIndependent();
    void nodeZeroIsASlot();
    void nodesBeyondTheStoreHaveNoValues();
    void objectsAreWalkedInKeyOrder();
    void nodeListIsSortedAndKeepsDuplicates();
};

void tst_NodeStore::keysAreOrderedByIndexThenSubIndex()
{
    QVERIFY((ObjectKey{0x1000, 255} < ObjectKey{0x1001, 0}));
    QVERIFY((ObjectKey{0x1018, 1} < ObjectKey{0x1018, 2}));
    QVERIFY(!(ObjectKey{0x1018, 2} < ObjectKey{0x1018, 2}));
    QVERIFY((ObjectKey{0x7FFF, 0} < ObjectKey{0x8000, 0}));
    QVERIFY((ObjectKey{0x1018, 127} < ObjectKey{0x1018, 128}));
    QVERIFY((ObjectKey{0x1018, 2} == ObjectKey{0x1018, 2}));
    QVERIFY((ObjectKey{0x1018, 2} != ObjectKey{0x1018, 3}));
    QVERIFY((ObjectKey{0x1018, 2} != ObjectKey{0x1019, 2}));
}

void tst_NodeStore::emptyStoreHoldsNothing()
{
    const NodeStore store;
    QVariant value;
    QVERIFY(!store.getValue(5, 0x1018, 1, value));
    QVERIFY(store.getIndexList(5).isEmpty());
    QVERIFY(store.getSubIndexList(5, 0x1018).isEmpty());
    QVERIFY(store.objects(5).isEmpty());
    QVERIFY(store.nodeList().isEmpty());
}

void tst_NodeStore::absentEntryLeavesValueUntouched()
{
    NodeStore store;
    store.setValue(5, 0x1018, 1, 42u);
    QVariant value(QStringLiteral("as before"));
    QVERIFY(!store.getValue(5, 0x1018, 2, value));
    QVERIFY(!store.getValue(6, 0x1018, 1, value));
    QCOMPARE(value, QVariant(QStringLiteral("as before")));
    QVERIFY(store.getValue(5, 0x1018, 1, value));
    QCOMPARE(value, QVariant(42u));
}

void tst_NodeStore::listsAreAscendingAndDistinct()
{
    NodeStore store;
    store.clear();
    store.setValue(5, 0x6000, 0, 1u);
    store.setValue(5, 0x1018, 2, 1u);
    store.setValue(5, 0x1018, 1, 1u);
    QCOMPARE(store.getIndexList(5), (QList<quint16>{0x1018, 0x6000}));
    QCOMPARE(store.getSubIndexList(5, 0x1018), (QList<quint8>{1, 2}));
    QCOMPARE(store.getSubIndexList(5, 0x6000), (QList<quint8>{0}));
    QVERIFY(store.getSubIndexList(5, 0x1019).isEmpty());
}

void tst_NodeStore::sameKeyKeepsTheLastValue()
{
    NodeStore store;
    store.setValue(5, 0x1018, 1, 1u);
    store.setValue(5, 0x1018, 1, -2);
    QCOMPARE(store.objects(5).size(), 1);
    QVariant value;
    QVERIFY(store.getValue(5, 0x1018, 1, value));
    QCOMPARE(value, QVariant(-2));
}

void tst_NodeStore::clearKeepsTheNodeList()
{
    NodeStore store;
    store.appendNode(5);
    store.setValue(5, 0x1018, 1, 1u);
    store.clear();
    QCOMPARE(store.nodeList(), QList<quint8>{5});
    QVariant value;
    QVERIFY(!store.getValue(5, 0x1018, 1, value));
    store.clearNodeList();
    QVERIFY(store.nodeList().isEmpty());
}

void tst_NodeStore::nodesAreIndependent()
{
    NodeStore store;
    store.setValue(1, 0x1000, 0, 1u);
    store.setValue(127, 0x1000, 0, 127u);
    QVariant value;
    QVERIFY(store.getValue(1, 0x1000, 0, value));
    QCOMPARE(value.toUInt(), 1u);
    QVERIFY(store.getValue(127, 0x1000, 0, value));
    QCOMPARE(value.toUInt(), 127u);
    QVERIFY(!store.getValue(2, 0x1000, 0, value));
}

void tst_NodeStore::nodeZeroIsASlot()
{
    NodeStore store;
    store.setValue(0, 0, 0, 3u);
    QVariant value;
    QVERIFY(store.getValue(0, 0, 0, value));
    QCOMPARE(value.toUInt(), 3u);
}

void tst_NodeStore::nodesBeyondTheStoreHaveNoValues()
{
    NodeStore store;
    store.clear();
    for (const quint8 nodeId : {quint8(128), quint8(255)}) {
        store.setValue(nodeId, 0x1000, 0, 1u);
        QVariant value;
        QVERIFY(!store.getValue(nodeId, 0x1000, 0, value));
        QVERIFY(store.getIndexList(nodeId).isEmpty());
        QVERIFY(store.getSubIndexList(nodeId, 0x1000).isEmpty());
    }
    QVERIFY(store.objects(127).isEmpty());
    QVERIFY(store.objects(0).isEmpty());
}

void tst_NodeStore::objectsAreWalkedInKeyOrder()
{
    NodeStore store;
    store.setValue(9, 0xFFFF, 255, 4u);
    store.setValue(9, 0x1018, 0, 2u);
    store.setValue(9, 0x1000, 7, 1u);
    store.setValue(9, 0x1018, 4, 3u);
    QList<uint> values;
    for (const QVariant &value : store.objects(9))
        values.append(value.toUInt());
    QCOMPARE(values, (QList<uint>{1, 2, 3, 4}));
}

void tst_NodeStore::nodeListIsSortedAndKeepsDuplicates()
{
    NodeStore store;
    for (const quint8 nodeId : QList<quint8>{5, 0, 200, 1, 0})
        store.appendNode(nodeId);
    QCOMPARE(store.nodeList(), (QList<quint8>{5, 0, 200, 1, 0}));
    store.sortNodeList();
    QCOMPARE(store.nodeList(), (QList<quint8>{0, 0, 1, 5, 200}));
}

QTEST_GUILESS_MAIN(tst_NodeStore)
#include "tst_nodestore.moc"
