// SPDX-License-Identifier: MIT
#include "snapshotbuilder.h"

#include <snapshot/snapshotexchange.h>
#include <snapshot/snapshotfile.h>
#include <store/exchangefile.h>
#include <store/nodestore.h>

#include <QtTest>

#include <limits>

using CanOpen::DataType;

class tst_SnapshotExchange : public QObject
{
    Q_OBJECT

private slots:
    void wholeNumbersGetIntoTheStore();
    void whatWasThereBeforeIsGone();
    void storeBecomesASnapshot();
    void exchangeFileLosesNoNumber();
};

void tst_SnapshotExchange::wholeNumbersGetIntoTheStore()
{
    SnapshotBuilder builder;
    builder.node(3)
        .value(0x1000, 0, DataType::Unsigned32, 0xFFFFFFFFu)
        .value(0x6042, 1, DataType::Integer16, -5)
        .value(0x2000, 0, DataType::Unsigned64, qulonglong(1) << 62)
        .value(0x2001, 0, DataType::Unsigned64, std::numeric_limits<qulonglong>::max())
        .value(0x1008, 0, DataType::VisibleString, QStringLiteral("text"))
        .value(0x2002, 0, DataType::Real32, 1.5f)
        .gap(0x6000, 0, SnapshotGap::NoAnswer);
    builder.node(100);
    NodeStore store;
    SnapshotExchange::fillStore(builder.snapshot(), store);
    QCOMPARE(store.nodeList(), (QList<quint8>{3, 100}));
    QCOMPARE(store.objects(3).size(), 3);
    QCOMPARE(store.objects(3).value({0x1000, 0}).toLongLong(), 4294967295LL);
    QCOMPARE(store.objects(3).value({0x6042, 1}).toLongLong(), -5LL);
    QCOMPARE(store.objects(3).value({0x2000, 0}).toLongLong(), 1LL << 62);
}

void tst_SnapshotExchange::whatWasThereBeforeIsGone()
{
    NodeStore store;
    store.setValue(5, 0x1000, 0, 1);
    store.appendNode(5);
    SnapshotExchange::fillStore(Snapshot(), store);
    QVERIFY(store.nodeList().isEmpty());
    QVERIFY(store.objects(5).isEmpty());
}

void tst_SnapshotExchange::storeBecomesASnapshot()
{
    NodeStore store;
    store.setValue(7, 0x6000, 0, qlonglong(1));
    store.setValue(7, 0x6042, 1, qlonglong(-5));
    store.setValue(7, 0x0000, 0, qlonglong(9)); // left over by an import
    store.setValue(9, 0x6000, 0, qlonglong(1)); // not listed
    for (const quint8 node : {quint8(100), quint8(7), quint8(7), quint8(0), quint8(255)})
        store.appendNode(node);
    const Snapshot snapshot = SnapshotExchange::fromStore(store);
    QVERIFY(snapshot.scope == SnapshotScope::Imported);
    QCOMPARE(snapshot.nodes.size(), 2);
    QCOMPARE(snapshot.nodes.first().id, quint8(7));
    QCOMPARE(snapshot.nodes.last().id, quint8(100));
    QCOMPARE(snapshot.nodes.first().entries.size(), 2);
    QCOMPARE(snapshot.nodes.first().value(0x6042, 1), QVariant(qlonglong(-5)));
    QVERIFY(snapshot.nodes.first().find(0x6042, 1)->raw.isEmpty());
    QVERIFY(!snapshot.nodes.first().find(0x6042, 1)->type);
    QString error;
    QVERIFY2(SnapshotFile::fromJson(SnapshotFile::toJson(snapshot), &error), qPrintable(error));
}

void tst_SnapshotExchange::exchangeFileLosesNoNumber()
{
    SnapshotBuilder builder;
    builder.node(1)
        .value(0x1000, 0, DataType::Unsigned32, 0xFFFFFFFFu)
        .value(0x6042, 1, DataType::Integer16, -32768)
        .value(0x6042, 2, DataType::Integer32, std::numeric_limits<int>::min());
    NodeStore store;
    SnapshotExchange::fillStore(builder.snapshot(), store);
    NodeStore again;
    QVERIFY(importFrom(exportToText(store, QDateTime(QDate(2026, 1, 1), QTime(0, 0))), again));
    const Snapshot after = SnapshotExchange::fromStore(again);
    QCOMPARE(after.nodes.size(), 1);
    for (const SnapshotEntry &entry : builder.last().entries)
        QCOMPARE(after.nodes.first().find(entry.key)->value.toLongLong(), entry.value.toLongLong());
}

QTEST_GUILESS_MAIN(tst_SnapshotExchange)
#include "tst_snapshotexchange.moc"
