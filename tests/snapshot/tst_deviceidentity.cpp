// SPDX-License-Identifier: MIT
#include "snapshotbuilder.h"

#include <snapshot/deviceidentity.h>

#include <QtTest>

using CanOpen::DataType;

namespace {

SnapshotBuilder battery(quint32 serial)
{
    SnapshotBuilder builder;
    builder.node(2)
        .value(0x1008, 0, DataType::VisibleString, QStringLiteral("DX-Pack "))
        .value(0x100A, 0, DataType::VisibleString, QStringLiteral("1.3"))
        .value(0x1018, 1, DataType::Unsigned32, 0xFFFEu)
        .value(0x1018, 2, DataType::Unsigned32, 0x0045472Au)
        .value(0x1018, 3, DataType::Unsigned32, 0x00010003u)
        .value(0x1018, 4, DataType::Unsigned32, serial)
        .value(0x6000, 0, DataType::Unsigned8, 2)
        .value(0x6000, 1, DataType::Unsigned32, 0x10006u)
        .value(0x6000, 2, DataType::Unsigned32, 0x6u);
    return builder;
}

} // namespace

class tst_DeviceIdentity : public QObject
{
    Q_OBJECT

private slots:
    void everythingIsTakenFromTheNode();
    void keyTellsDevicesApart();
    void withoutSerialNumberThereIsNoKey();
    void makeIsVendorProductAndClasses();
    void nameIsThatOfTheClasses();
    void nameWithoutClassIsTheDevices();
    void gapsAreNoIdentity();
};

void tst_DeviceIdentity::everythingIsTakenFromTheNode()
{
    const DeviceIdentity identity = DeviceIdentity::of(battery(1123450).last());
    QCOMPARE(identity.vendor, std::optional<quint32>(0xFFFE));
    QCOMPARE(identity.product, std::optional<quint32>(0x0045472A));
    QCOMPARE(identity.revision, std::optional<quint32>(0x00010003));
    QCOMPARE(identity.serial, std::optional<quint32>(1123450));
    QVERIFY(!identity.partNumber);
    QCOMPARE(identity.deviceName, QStringLiteral("DX-Pack"));
    QCOMPARE(identity.hardwareVersion, QString());
    QCOMPARE(identity.softwareVersion, QStringLiteral("1.3"));
    QCOMPARE(identity.classes, (QVector<quint8>{6, 6}));
}

void tst_DeviceIdentity::keyTellsDevicesApart()
{
    QCOMPARE(DeviceIdentity::of(battery(1123450).last()).toKey(),
             QStringLiteral("0000fffe-0045472a-1123450"));
    QCOMPARE(DeviceIdentity::of(battery(1).last()).toKey(), QStringLiteral("0000fffe-0045472a-1"));
}

void tst_DeviceIdentity::withoutSerialNumberThereIsNoKey()
{
    QCOMPARE(DeviceIdentity::of(battery(0).last()).toKey(), QString());
    QVERIFY(!DeviceIdentity::of(battery(0).last()).isUnique());
    QCOMPARE(DeviceIdentity().toKey(), QString());
}

void tst_DeviceIdentity::makeIsVendorProductAndClasses()
{
    const DeviceIdentity one = DeviceIdentity::of(battery(1).last());
    QVERIFY(one.isSameMake(DeviceIdentity::of(battery(2).last())));
    SnapshotBuilder other = battery(1);
    other.value(0x1018, 2, DataType::Unsigned32, 1u);
    QVERIFY(!one.isSameMake(DeviceIdentity::of(other.last())));
    SnapshotBuilder single = battery(1);
    single.value(0x6000, 0, DataType::Unsigned8, 1);
    QVERIFY(!one.isSameMake(DeviceIdentity::of(single.last())));
}

void tst_DeviceIdentity::nameIsThatOfTheClasses()
{
    QCOMPARE(DeviceIdentity::of(battery(1).last()).displayName(2), QStringLiteral("Battery Pack"));
    SnapshotBuilder two = battery(1);
    two.value(0x6000, 2, DataType::Unsigned32, 7u);
    QCOMPARE(DeviceIdentity::of(two.last()).displayName(2),
             QStringLiteral("Battery Pack, Motor Control unit"));
}

void tst_DeviceIdentity::nameWithoutClassIsTheDevices()
{
    SnapshotBuilder bell;
    bell.node(100).value(0x1008, 0, DataType::VisibleString, QStringLiteral("Bell"));
    QCOMPARE(DeviceIdentity::of(bell.last()).displayName(100), QStringLiteral("Bell"));
    QCOMPARE(DeviceIdentity().displayName(100), QStringLiteral("Device"));
}

void tst_DeviceIdentity::gapsAreNoIdentity()
{
    SnapshotBuilder builder;
    builder.node(2).gap(0x1018, 4, SnapshotGap::NoAnswer).gap(0x6000, 0, SnapshotGap::Abort, 0x08000000);
    const DeviceIdentity identity = DeviceIdentity::of(builder.last());
    QVERIFY(!identity.serial);
    QVERIFY(identity.classes.isEmpty());
}

QTEST_GUILESS_MAIN(tst_DeviceIdentity)
#include "tst_deviceidentity.moc"
