// SPDX-License-Identifier: MIT
#include "vehicles.h"

#include <archive/bytecolumn.h>
#include <archive/packednode.h>
#include <archive/packedsnapshot.h>
#include <snapshot/objecttypes.h>
#include <snapshot/snapshotfile.h>

#include <QRandomGenerator>
#include <QtTest>

#include <limits>

using namespace Vehicles;

namespace {

constexpr int room = 1000000; // bytes

SnapshotEntry untyped(const QVariant &value)
{
    SnapshotEntry entry;
    entry.key = {0x2000, 1};
    entry.value = value;
    return entry;
}

/*! An entry as it may come from a bus or a file. */
SnapshotEntry randomEntry(QRandomGenerator *random, CanOpen::ObjectKey key)
{
    SnapshotEntry entry;
    entry.key = key;
    entry.ms = random->bounded(100000);
    if (random->bounded(3) == 0) {
        entry.gap = static_cast<SnapshotGap>(random->bounded(1, 8));
        entry.abortCode = random->bounded(2) == 0 ? random->generate() : 0;
        return entry;
    }
    for (int i = random->bounded(1, 12); i > 0; --i)
        entry.raw.append(static_cast<char>(random->bounded(32, 127)));
    const auto code = static_cast<quint16>(random->bounded(1, 28));
    if (CanOpen::isKnownDataType(code) && random->bounded(2) == 0)
        entry.type = static_cast<CanOpen::DataType>(code);
    const auto decoded = entry.type ? CanOpen::decodeValue(*entry.type, entry.raw) : std::nullopt;
    if (!decoded)
        entry.type.reset();
    entry.value = decoded.value_or(ObjectTypes::unsignedValue(entry.raw));
    return entry;
}

Snapshot randomSnapshot(QRandomGenerator *random)
{
    Snapshot result = snapshot({});
    for (int id = 1; id <= 127; id += random->bounded(1, 60)) {
        SnapshotNode node;
        node.id = static_cast<quint8>(id);
        for (int key = random->bounded(5000); key <= 0xFFFFFF; key += random->bounded(1, 400000))
            node.entries.append(
                randomEntry(random, {static_cast<quint16>(key >> 8), static_cast<quint8>(key)}));
        result.nodes.append(node);
    }
    return result;
}

} // namespace

/*! Snapshots in few bytes. */
class tst_PackedSnapshot : public QObject
{
    Q_OBJECT

private slots:
    void keepsAnyValue_data();
    void keepsAnyValue();
    void keepsAnySnapshot();
    void isSmall();
    void refusesWhatNoFileHolds();
    void refusesAnyDamageOfANode();
    void refusesRandomBytes();
    void countIsBounded();
    void roomIsUsedUp();
    void refusesMissingNodes();
    void refusesNodesOfAnother();
};

void tst_PackedSnapshot::keepsAnyValue_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("none") << QVariant();
    QTest::newRow("number") << QVariant(5U);
    QTest::newRow("negative") << QVariant(-5);
    QTest::newRow("smallest") << QVariant(std::numeric_limits<qlonglong>::min());
    QTest::newRow("largest") << QVariant(std::numeric_limits<qulonglong>::max());
    QTest::newRow("fraction") << QVariant(0.1);
    QTest::newRow("small fraction") << QVariant(1.5F);
    QTest::newRow("text") << QVariant(QStringLiteral("a\"b\\c \u00e4\U0001F6B2"));
    QTest::newRow("empty text") << QVariant(QStringLiteral(""));
}

void tst_PackedSnapshot::keepsAnyValue()
{
    QFETCH(QVariant, value);
    Snapshot added = snapshot({device(1, controllerClass, 1)});
    added.nodes[0].insert(untyped(value));
    const auto packed = PackedSnapshot::pack(added);
    // A file has to have a value or a reason, whatever an archive could keep.
    QVERIFY(packed);
    QCOMPARE(SnapshotFile::toJson(*packed->unpack()), SnapshotFile::toJson(added));
}

void tst_PackedSnapshot::keepsAnySnapshot()
{
    QRandomGenerator random(20260903);
    for (int i = 0; i < 200; ++i) {
        const Snapshot added = randomSnapshot(&random);
        const auto packed = PackedSnapshot::pack(added);
        QVERIFY(packed);
        QCOMPARE(SnapshotFile::toJson(*packed->unpack()), SnapshotFile::toJson(added));
    }
}

void tst_PackedSnapshot::isSmall()
{
    SnapshotNode node = device(1, controllerClass, 1);
    for (quint16 index = 0x6000; index < 0x6200; ++index)
        node.insert(gap(index, 0, SnapshotGap::Absent, 0x06020000));
    const QByteArray packed = PackedNode::pack(node.entries);
    QVERIFY2(packed.size() < 200, qPrintable(QString::number(packed.size())));
}

void tst_PackedSnapshot::refusesWhatNoFileHolds()
{
    Snapshot twice = snapshot({device(1, controllerClass, 1), device(1, controllerClass, 1)});
    QVERIFY(!PackedSnapshot::pack(twice));
    Snapshot before = snapshot({device(1, controllerClass, 1)});
    before.duration = -1;
    QVERIFY(!PackedSnapshot::pack(before));
}

void tst_PackedSnapshot::refusesAnyDamageOfANode()
{
    auto packed = PackedSnapshot::pack(snapshot({device(1, controllerClass, 1)}));
    const QByteArray good = packed->nodes.value(1);
    for (int i = 0; i < good.size(); ++i) {
        QByteArray damaged = good;
        damaged[i] = static_cast<char>(damaged.at(i) ^ 0x55);
        packed->nodes[1] = damaged;
        QVERIFY2(!packed->unpack(), qPrintable(QString::number(i)));
        packed->nodes[1] = good.left(i);
        QVERIFY2(!packed->unpack(), qPrintable(QString::number(i)));
    }
    packed->nodes[1] = good;
    QVERIFY(packed->unpack());
}

/*! Whatever comes out, nothing goes wrong on the way; most is refused. */
void tst_PackedSnapshot::refusesRandomBytes()
{
    QRandomGenerator random(20260903);
    int refused = 0;
    constexpr int tries = 20000;
    for (int i = 0; i < tries; ++i) {
        QByteArray columns;
        for (int n = random.bounded(60); n > 0; --n)
            columns.append(static_cast<char>(random.bounded(random.bounded(2) == 0 ? 8 : 256)));
        int left = room;
        if (!PackedNode::unpack('\x01' + Deflate::compress(columns), &left))
            ++refused;
    }
    QVERIFY(refused > tries / 2);
}

void tst_PackedSnapshot::countIsBounded()
{
    ColumnWriter columns;
    columns.add(std::numeric_limits<quint64>::max());
    int left = room;
    QVERIFY(!PackedNode::unpack('\x01' + Deflate::compress(columns.bytes()), &left));
    QCOMPARE(left, room);
}

void tst_PackedSnapshot::roomIsUsedUp()
{
    const QByteArray packed = PackedNode::pack(device(1, controllerClass, 1).entries);
    int left = 6 * 32; // of six entries
    QVERIFY(PackedNode::unpack(packed, &left));
    QCOMPARE(left, 0);
    QVERIFY(!PackedNode::unpack(packed, &left));
}

void tst_PackedSnapshot::refusesMissingNodes()
{
    auto packed = PackedSnapshot::pack(snapshot(bike(1)));
    packed->nodes.remove(3);
    QVERIFY(!packed->unpack());
    packed->nodes.insert(99, packed->nodes.value(2));
    QVERIFY(!packed->unpack());
}

void tst_PackedSnapshot::refusesNodesOfAnother()
{
    auto one = PackedSnapshot::pack(snapshot(bike(1)));
    const auto two = PackedSnapshot::pack(snapshot(bike(2)));
    one->nodes[3] = two->nodes.value(3);
    QVERIFY(!one->unpack());
}

QTEST_APPLESS_MAIN(tst_PackedSnapshot)
#include "tst_packedsnapshot.moc"
