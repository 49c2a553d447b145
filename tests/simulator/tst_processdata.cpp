// SPDX-License-Identifier: MIT
#include "processvehicle.h"

#include <canopen/pdomapping.h>

#include <QtTest>

#include <random>

using namespace Simulator;

Q_DECLARE_METATYPE(Simulator::Faults::LyingMapping)

/*! PDOs and SYNC of a simulated vehicle. */
class tst_ProcessData : public QObject
{
    Q_OBJECT

private slots:
    void sendsMappedValues();
    void sendsByEventTimer();
    void sendsOnChange();
    void inhibitTimeHoldsChangesBack();
    void changeRestartsEventTimer();
    void sendsOnEverySoManySyncs();
    void startsWithSyncCounter();
    void sendsOnSyncAfterChange();
    void reservedAndRemoteTypesAreSilent_data();
    void reservedAndRemoteTypesAreSilent();
    void sendsOperationalOnly();
    void pdoThatIsSwitchedOffIsSilent();
    void parametersCanBeWritten();
    void answersNoRemoteFrame();
    void stalledLoopIsNotCaughtUpForLong();

    void producesSync();
    void producesSyncWithCounter();
    void producesNoSyncWhenStopped();
    void syncPeriodCanBeWritten();
    void shortestSyncPeriod();

    void takesPdo();
    void takesPdoOnSync();
    void writtenValueLeavesWaitingPdo();
    void writtenParameterCounts();
    void takesPdoOf29Bits();
    void followsSyncOf29Bits();
    void servicesHave11Bits();
    void takesPdoOperationalOnly();
    void skipsDummiesAndStrangers();
    void complainsOfShortPdo();
    void complainsOfLongPdo();
    void nodesHearEachOther();
    void nodesThatFeedEachOtherEnd();

    void wrongLength();
    void mappingLies_data();
    void mappingLies();
    void lieLeavesDictionaryAlone();
    void floods();

    void sendsWhatADictionarySays();
};

void tst_ProcessData::sendsMappedValues()
{
    NodeMaker maker(2);
    maker.u16(0x6164, 2, 0x1234).u8(0x6000, 1, 1).i16(0x6042, 1, -2).u32(0x6040, 1, 39300);
    // A charge, two bits of a flag, a temperature, 10 bits of a number
    maker.pdo(0x1800, 0x182, 255, 0, 0, {0x61640210, 0x60000102, 0x60420110, 0x6040010A});
    ProcessVehicle vehicle({maker.node});
    // 1234h; then bits 01, FFFEh, 1110000100b (39300 = 9984h): 01 + FFFEh<<2 + 184h<<18
    QCOMPARE(vehicle.start(), (QByteArrayList{"0 182 3412f9ff1306"}));
}

void tst_ProcessData::sendsByEventTimer()
{
    NodeMaker maker(2);
    maker.u16(0x6164, 2, 5).pdo(0x1800, 0x182, 254, 0, 100, {0x61640210});
    ProcessVehicle vehicle({maker.node});
    QCOMPARE(vehicle.start(), (QByteArrayList{"0 182 0500"}));
    QCOMPARE(vehicle.pass(350), (QByteArrayList{"100 182 0500", "200 182 0500", "300 182 0500"}));
}

void tst_ProcessData::sendsOnChange()
{
    NodeMaker maker(2);
    maker.u16(0x6164, 2, 0).counts(0x6164, 2, 100).pdo(0x1800, 0x182, 255, 0, 0, {0x61640210});
    ProcessVehicle vehicle({maker.node});
    QCOMPARE(vehicle.start(), (QByteArrayList{"0 182 0000"}));
    QCOMPARE(vehicle.pass(99), QByteArrayList());
    QCOMPARE(vehicle.pass(201), (QByteArrayList{"100 182 0100", "200 182 0200", "300 182 0300"}));
}

void tst_ProcessData::inhibitTimeHoldsChangesBack()
{
    NodeMaker maker(2);
    maker.u16(0x6164, 2, 0).counts(0x6164, 2, 20).pdo(0x1800, 0x182, 255, 500, 0, {0x61640210});
    ProcessVehicle vehicle({maker.node});
    vehicle.start();
    QCOMPARE(vehicle.pass(150), (QByteArrayList{"50 182 0200", "100 182 0500", "150 182 0700"}));
}

void tst_ProcessData::changeRestartsEventTimer()
{
    NodeMaker maker(2);
    maker.u16(0x6164, 2, 0).pdo(0x1800, 0x182, 255, 0, 100, {0x61640210});
    ProcessVehicle vehicle({maker.node});
    vehicle.start();
    vehicle.pass(60);
    vehicle.receive(0x602, "2b64610207000000");
    QCOMPARE(vehicle.pass(105), (QByteArrayList{"61 182 0700", "160 182 0700"}));
}

void tst_ProcessData::sendsOnEverySoManySyncs()
{
    NodeMaker maker(2);
    maker.u16(0x6164, 2, 5).pdo(0x1800, 0x182, 3, 0, 0, {0x61640210});
    ProcessVehicle vehicle({maker.node});
    QCOMPARE(vehicle.start(), QByteArrayList());
    QCOMPARE(vehicle.pass(500), QByteArrayList());
    for (int round = 0; round < 2; ++round) {
        QCOMPARE(vehicle.receive(0x80, ""), QByteArrayList());
        QCOMPARE(vehicle.receive(0x80, ""), QByteArrayList());
        QCOMPARE(vehicle.receive(0x80, ""), (QByteArrayList{"500 182 0500"}));
    }
    QCOMPARE(vehicle.receive(0x81, ""), QByteArrayList());
    QCOMPARE(vehicle.receive(0x80, "0000"), QByteArrayList()); // no SYNC has two bytes
}

void tst_ProcessData::startsWithSyncCounter()
{
    NodeMaker maker(2);
    maker.u16(0x6164, 2, 5).pdo(0x1800, 0x182, 2, 0, 0, {0x61640210}).u8(0x1800, 6, 4);
    ProcessVehicle vehicle({maker.node});
    vehicle.start();
    QByteArrayList counters;
    for (const char *counter : {"02", "03", "04", "05", "06", "07"}) {
        if (!vehicle.receive(0x80, counter).isEmpty())
            counters.append(counter);
    }
    QCOMPARE(counters, (QByteArrayList{"05", "07"}));
}

void tst_ProcessData::sendsOnSyncAfterChange()
{
    NodeMaker maker(2);
    maker.u16(0x6164, 2, 0).counts(0x6164, 2, 100).pdo(0x1800, 0x182, 0, 0, 0, {0x61640210});
    ProcessVehicle vehicle({maker.node});
    QCOMPARE(vehicle.start(), QByteArrayList());
    QCOMPARE(vehicle.receive(0x80, ""), (QByteArrayList{"0 182 0000"}));
    QCOMPARE(vehicle.receive(0x80, ""), QByteArrayList());
    QCOMPARE(vehicle.pass(150), QByteArrayList());
    QCOMPARE(vehicle.receive(0x80, ""), (QByteArrayList{"150 182 0100"}));
    QCOMPARE(vehicle.receive(0x80, ""), QByteArrayList());
}

void tst_ProcessData::reservedAndRemoteTypesAreSilent_data()
{
    QTest::addColumn<uint>("type");

    for (const uint type : {241u, 251u, 252u, 253u})
        QTest::addRow("%u", type) << type;
}

void tst_ProcessData::reservedAndRemoteTypesAreSilent()
{
    QFETCH(uint, type);

    NodeMaker maker(2);
    maker.u16(0x6164, 2, 0).counts(0x6164, 2, 10).pdo(0x1800, 0x182, type, 0, 50, {0x61640210});
    ProcessVehicle vehicle({maker.node});
    QCOMPARE(vehicle.start(), QByteArrayList());
    QCOMPARE(vehicle.pass(200), QByteArrayList());
    QCOMPARE(vehicle.receive(0x80, ""), QByteArrayList());
}

void tst_ProcessData::sendsOperationalOnly()
{
    NodeMaker maker(2);
    maker.u16(0x6164, 2, 5).pdo(0x1800, 0x182, 255, 0, 100, {0x61640210});
    maker.pdo(0x1801, 0x282, 1, 0, 0, {0x61640210});
    maker.node.state = CanOpen::NmtState::PreOperational;
    ProcessVehicle vehicle({maker.node});
    QCOMPARE(vehicle.start(), QByteArrayList());
    QCOMPARE(vehicle.pass(200), QByteArrayList());
    QCOMPARE(vehicle.receive(0x80, ""), QByteArrayList());
    QCOMPARE(vehicle.receive(0x000, "0102"), (QByteArrayList{"200 182 0500"})); // start
    QCOMPARE(vehicle.receive(0x80, ""), (QByteArrayList{"200 282 0500"}));
    QCOMPARE(vehicle.pass(100), (QByteArrayList{"300 182 0500"}));
    vehicle.receive(0x000, "0202"); // stop
    QCOMPARE(vehicle.pass(200), QByteArrayList());
    QCOMPARE(vehicle.receive(0x80, ""), QByteArrayList());
    vehicle.receive(0x000, "8000"); // all pre-operational
    QCOMPARE(vehicle.pass(200), QByteArrayList());
}

void tst_ProcessData::pdoThatIsSwitchedOffIsSilent()
{
    NodeMaker maker(2);
    maker.u16(0x6164, 2, 5)
        .pdo(0x1800, 0x80000182, 255, 0, 100, {0x61640210})
        .pdo(0x1801, 0x282, 255, 0, 100, {});
    ProcessVehicle vehicle({maker.node});
    QCOMPARE(vehicle.start(), QByteArrayList());
    QCOMPARE(vehicle.pass(200), QByteArrayList());
}

void tst_ProcessData::parametersCanBeWritten()
{
    NodeMaker maker(2);
    maker.u16(0x6164, 2, 5).pdo(0x1800, 0x80000182, 255, 0, 100, {0x61640210});
    ProcessVehicle vehicle({maker.node});
    vehicle.start();
    // 1800h.1 := 383h, answered first; the PDO is on then
    QCOMPARE(vehicle.receive(0x602, "2300180183030000"),
             (QByteArrayList{"0 582 6000180100000000", "0 383 0500"}));
    QCOMPARE(vehicle.pass(100), (QByteArrayList{"100 383 0500"}));
}

void tst_ProcessData::answersNoRemoteFrame()
{
    NodeMaker maker(2);
    maker.u16(0x6164, 2, 5).pdo(0x1800, 0x182, 255, 0, 0, {0x61640210});
    ProcessVehicle vehicle({maker.node});
    vehicle.start();
    QCanBusFrame remote(QCanBusFrame::RemoteRequestFrame);
    remote.setFrameId(0x182);
    vehicle.vehicle.handleFrame(remote);
    QCOMPARE(vehicle.pass(100), QByteArrayList());
}

void tst_ProcessData::stalledLoopIsNotCaughtUpForLong()
{
    NodeMaker maker(2);
    maker.u16(0x6164, 2, 5).pdo(0x1800, 0x182, 255, 0, 10, {0x61640210});
    ProcessVehicle vehicle({maker.node});
    vehicle.start();
    vehicle.time += 3600 * 1000000LL;
    vehicle.vehicle.processDue();
    const int caughtUp = vehicle.take().size();
    QVERIFY2(caughtUp >= 1 && caughtUp <= 22, qPrintable(QString::number(caughtUp)));
    QCOMPARE(vehicle.pass(100).size(), 10);
}

// ---------------------------------------------------------------------- SYNC

void tst_ProcessData::producesSync()
{
    NodeMaker producer(1);
    producer.u32(0x1005, 0, 0x40000080).u32(0x1006, 0, 50000);
    NodeMaker other(2);
    other.u16(0x6164, 2, 5).pdo(0x1800, 0x182, 2, 0, 0, {0x61640210}).u32(0x1006, 0, 20000);
    ProcessVehicle vehicle({producer.node, other.node});
    QCOMPARE(vehicle.start(), QByteArrayList());
    QCOMPARE(vehicle.pass(200),
             (QByteArrayList{"50 80 ", "100 80 ", "100 182 0500", "150 80 ", "200 80 ", "200 182 0500"}));
}

void tst_ProcessData::producesSyncWithCounter()
{
    NodeMaker producer(1);
    producer.u32(0x1005, 0, 0x40000080).u32(0x1006, 0, 10000).u8(0x1019, 0, 3);
    ProcessVehicle vehicle({producer.node});
    vehicle.start();
    QCOMPARE(vehicle.pass(50), (QByteArrayList{"10 80 01", "20 80 02", "30 80 03", "40 80 01", "50 80 02"}));
}

void tst_ProcessData::producesNoSyncWhenStopped()
{
    NodeMaker producer(1);
    producer.u32(0x1005, 0, 0x40000080).u32(0x1006, 0, 50000);
    producer.node.state = CanOpen::NmtState::PreOperational;
    ProcessVehicle vehicle({producer.node});
    vehicle.start();
    QCOMPARE(vehicle.pass(60), (QByteArrayList{"50 80 "}));
    vehicle.receive(0x000, "0201");
    QCOMPARE(vehicle.pass(200), QByteArrayList());
    vehicle.receive(0x000, "0101");
    QCOMPARE(vehicle.pass(60), (QByteArrayList{"310 80 "}));
}

void tst_ProcessData::syncPeriodCanBeWritten()
{
    NodeMaker producer(1);
    producer.u32(0x1005, 0, 0x40000080).u32(0x1006, 0, 50000);
    ProcessVehicle vehicle({producer.node});
    vehicle.start();
    vehicle.receive(0x601, "23061000204e0000"); // 20 ms
    QCOMPARE(vehicle.pass(50), (QByteArrayList{"20 80 ", "40 80 "}));
    vehicle.receive(0x601, "2306100000000000");
    QCOMPARE(vehicle.pass(50), QByteArrayList());
}

void tst_ProcessData::shortestSyncPeriod()
{
    NodeMaker producer(1);
    producer.u32(0x1005, 0, 0x40000080).u32(0x1006, 0, 1);
    ProcessVehicle vehicle({producer.node});
    vehicle.start();
    QCOMPARE(vehicle.pass(20).size(), 20);
}

// ---------------------------------------------------------------------- PDOs that are taken

void tst_ProcessData::takesPdo()
{
    NodeMaker maker(5);
    maker.u16(0x63EC, 1, 1).u16(0x6406, 1, 2).i16(0x6042, 1, 0);
    maker.pdo(0x1400, 0x205, 255, 0, 0, {0x63EC0110, 0x6406010A, 0x60420106});
    ProcessVehicle vehicle({maker.node});
    vehicle.start();
    vehicle.receive(0x205, "3412ffff");
    QCOMPARE(vehicle.value(5, 0x63EC, 1), 0x1234u);
    QCOMPARE(vehicle.value(5, 0x6406, 1), 0x3FFu);
    QCOMPARE(vehicle.vehicle.node(5)->dictionary().value({0x6042, 1}).toInt(), -1);
}

void tst_ProcessData::takesPdoOnSync()
{
    NodeMaker maker(5);
    maker.u16(0x63EC, 1, 1).pdo(0x1400, 0x205, 1, 0, 0, {0x63EC0110});
    ProcessVehicle vehicle({maker.node});
    vehicle.start();
    vehicle.receive(0x205, "3412");
    vehicle.receive(0x205, "3512");
    QCOMPARE(vehicle.value(5, 0x63EC, 1), 1u);
    vehicle.receive(0x80, "");
    QCOMPARE(vehicle.value(5, 0x63EC, 1), 0x1235u);
}

void tst_ProcessData::writtenValueLeavesWaitingPdo()
{
    NodeMaker maker(5);
    maker.u16(0x63EC, 1, 1).u16(0x6164, 2, 0).pdo(0x1400, 0x205, 1, 0, 0, {0x63EC0110});
    ProcessVehicle vehicle({maker.node});
    vehicle.start();
    vehicle.receive(0x205, "3412");
    QCOMPARE(vehicle.receive(0x605, "2b64610207000000"), (QByteArrayList{"0 585 6064610200000000"}));
    vehicle.receive(0x000, "0105"); // it is started already
    QCOMPARE(vehicle.value(5, 0x63EC, 1), 1u);
    vehicle.receive(0x80, "");
    QCOMPARE(vehicle.value(5, 0x63EC, 1), 0x1234u);
}

void tst_ProcessData::writtenParameterCounts()
{
    NodeMaker maker(5);
    maker.u16(0x63EC, 1, 1).u16(0x63EC, 2, 2).pdo(0x1400, 0x205, 255, 0, 0, {0x63EC0110});
    ProcessVehicle vehicle({maker.node});
    vehicle.start();
    vehicle.receive(0x605, "2300140106020000"); // 1400h.1 := 206h
    vehicle.receive(0x205, "3412");
    QCOMPARE(vehicle.value(5, 0x63EC, 1), 1u);
    vehicle.receive(0x206, "3512");
    QCOMPARE(vehicle.value(5, 0x63EC, 1), 0x1235u);
    vehicle.receive(0x605, "230016011002ec63"); // 1600h.1 := 63EC0210h
    vehicle.receive(0x206, "3612");
    QCOMPARE(vehicle.value(5, 0x63EC, 1), 0x1235u);
    QCOMPARE(vehicle.value(5, 0x63EC, 2), 0x1236u);
}

void tst_ProcessData::takesPdoOf29Bits()
{
    NodeMaker maker(5);
    maker.u16(0x63EC, 1, 1).pdo(0x1400, 0x20000205, 255, 0, 0, {0x63EC0110});
    maker.u16(0x63EC, 2, 2).pdo(0x1401, 0x305, 255, 0, 0, {0x63EC0210});
    maker.u16(0x63EC, 3, 3).pdo(0x1402, 0x32345678, 255, 0, 0, {0x63EC0310});
    ProcessVehicle vehicle({maker.node});
    vehicle.start();
    vehicle.receive(0x205, "3412");
    QCOMPARE(vehicle.value(5, 0x63EC, 1), 1u);
    vehicle.receiveExtended(0x205, "3412");
    QCOMPARE(vehicle.value(5, 0x63EC, 1), 0x1234u);
    vehicle.receiveExtended(0x305, "3512");
    QCOMPARE(vehicle.value(5, 0x63EC, 2), 2u);
    vehicle.receive(0x305, "3512");
    QCOMPARE(vehicle.value(5, 0x63EC, 2), 0x1235u);
    vehicle.receiveExtended(0x12345678, "3612");
    QCOMPARE(vehicle.value(5, 0x63EC, 3), 0x1236u);
}

void tst_ProcessData::followsSyncOf29Bits()
{
    NodeMaker extended(5);
    extended.u32(0x1005, 0, 0x20000080).u16(0x6164, 2, 5).pdo(0x1800, 0x185, 1, 0, 0, {0x61640210});
    NodeMaker standard(6);
    standard.u16(0x6164, 2, 6).pdo(0x1800, 0x186, 1, 0, 0, {0x61640210});
    ProcessVehicle vehicle({extended.node, standard.node});
    vehicle.start();
    QCOMPARE(vehicle.receiveExtended(0x80, ""), (QByteArrayList{"0 185 0500"}));
    QCOMPARE(vehicle.receive(0x80, ""), (QByteArrayList{"0 186 0600"}));
    QCOMPARE(vehicle.receiveExtended(0x80, "0102"), QByteArrayList());
}

void tst_ProcessData::servicesHave11Bits()
{
    NodeMaker maker(5);
    maker.u16(0x6164, 2, 5).pdo(0x1800, 0x185, 255, 0, 100, {0x61640210});
    ProcessVehicle vehicle({maker.node});
    vehicle.start();
    QCOMPARE(vehicle.receiveExtended(0x605, "4064610200000000"), QByteArrayList());
    vehicle.receiveExtended(0x000, "0205");
    QCOMPARE(vehicle.pass(100), (QByteArrayList{"100 185 0500"})); // not stopped
}

void tst_ProcessData::takesPdoOperationalOnly()
{
    NodeMaker maker(5);
    maker.u16(0x63EC, 1, 1).pdo(0x1400, 0x205, 255, 0, 0, {0x63EC0110});
    ProcessVehicle vehicle({maker.node});
    vehicle.start();
    vehicle.receive(0x000, "8005");
    vehicle.receive(0x205, "3412");
    QCOMPARE(vehicle.value(5, 0x63EC, 1), 1u);
    vehicle.receive(0x000, "0105");
    vehicle.receive(0x205, "3412");
    QCOMPARE(vehicle.value(5, 0x63EC, 1), 0x1234u);
}

void tst_ProcessData::skipsDummiesAndStrangers()
{
    NodeMaker maker(5);
    maker.u16(0x63EC, 1, 1).u8(0x0005, 0, 9);
    maker.pdo(0x1400, 0x205, 255, 0, 0, {0x00050008, 0x5FFF0708, 0x63EC0110});
    ProcessVehicle vehicle({maker.node});
    vehicle.start();
    QCOMPARE(vehicle.receive(0x205, "01023412"), QByteArrayList());
    QCOMPARE(vehicle.value(5, 0x63EC, 1), 0x1234u);
    QCOMPARE(vehicle.value(5, 0x0005, 0), 9u);
}

void tst_ProcessData::complainsOfShortPdo()
{
    NodeMaker maker(5);
    maker.u8(0x1001, 0, 0).u16(0x63EC, 1, 1).pdo(0x1400, 0x205, 255, 0, 0, {0x63EC0110});
    ProcessVehicle vehicle({maker.node});
    vehicle.start();
    QCOMPARE(vehicle.receive(0x205, "34"),
             (QByteArrayList{"0 85 1082110000000000", "0 85 0000000000000000"}));
    QCOMPARE(vehicle.value(5, 0x63EC, 1), 1u);
}

void tst_ProcessData::complainsOfLongPdo()
{
    NodeMaker maker(5);
    maker.u8(0x1001, 0, 0).u16(0x63EC, 1, 1).pdo(0x1400, 0x205, 255, 0, 0, {0x63EC0110});
    ProcessVehicle vehicle({maker.node});
    vehicle.start();
    QCOMPARE(vehicle.receive(0x205, "341256"),
             (QByteArrayList{"0 85 2082110000000000", "0 85 0000000000000000"}));
    QCOMPARE(vehicle.value(5, 0x63EC, 1), 0x1234u);
}

void tst_ProcessData::nodesHearEachOther()
{
    NodeMaker motor(4);
    motor.u16(0x62E8, 5, 0).counts(0x62E8, 5, 100).pdo(0x1800, 0x184, 255, 0, 0, {0x62E80510});
    NodeMaker display(5);
    display.u16(0x63EC, 1, 0).pdo(0x1400, 0x184, 255, 0, 0, {0x63EC0110});
    ProcessVehicle vehicle({motor.node, display.node});
    vehicle.start();
    vehicle.pass(250);
    QCOMPARE(vehicle.value(5, 0x63EC, 1), 2u);
}

void tst_ProcessData::nodesThatFeedEachOtherEnd()
{
    // Two numbers that the other node always gives back swapped never come to rest.
    NodeMaker a(4);
    a.u8(0x2000, 1, 1).u8(0x2000, 2, 2);
    a.pdo(0x1800, 0x184, 255, 0, 0, {0x20000108, 0x20000208});
    a.pdo(0x1400, 0x185, 255, 0, 0, {0x20000208, 0x20000108});
    NodeMaker b(5);
    b.u8(0x2000, 1, 1).u8(0x2000, 2, 2);
    b.pdo(0x1800, 0x185, 255, 0, 0, {0x20000108, 0x20000208});
    b.pdo(0x1400, 0x184, 255, 0, 0, {0x20000108, 0x20000208});
    // And two whose complaints are what the other one complains of
    a.pdo(0x1401, 0x85, 255, 0, 0, {0x20000108});
    b.pdo(0x1401, 0x84, 255, 0, 0, {0x20000108});
    b.pdo(0x1402, 0x300, 255, 0, 0, {0x20000108});
    ProcessVehicle vehicle({a.node, b.node});
    vehicle.start();
    const int frames = vehicle.pass(100).size();
    QVERIFY2(frames > 0 && frames <= 100, qPrintable(QString::number(frames)));
    const int answers = vehicle.receive(0x300, "").size();
    QVERIFY2(answers > 0 && answers <= 64, qPrintable(QString::number(answers)));
}

// ---------------------------------------------------------------------- faults

void tst_ProcessData::wrongLength()
{
    Faults::PdoLength fault;
    fault.pdo = 2;
    fault.length = 1;
    NodeMaker maker(2);
    maker.u16(0x6164, 2, 5)
        .pdo(0x1800, 0x182, 255, 0, 0, {0x61640210})
        .pdo(0x1801, 0x282, 255, 0, 0, {0x61640210});
    maker.fault(fault);
    ProcessVehicle vehicle({maker.node});
    QCOMPARE(vehicle.start(), (QByteArrayList{"0 182 0500", "0 282 05"}));
    fault.pdo = 0;
    fault.length = 8;
    vehicle.vehicle.clearFaults();
    QVERIFY(vehicle.vehicle.addFault(2, fault));
    vehicle.receive(0x000, "8002");
    QCOMPARE(vehicle.receive(0x000, "0102"),
             (QByteArrayList{"0 182 0500000000000000", "0 282 0500000000000000"}));
}

void tst_ProcessData::mappingLies_data()
{
    QTest::addColumn<Faults::LyingMapping>("fault");
    QTest::addColumn<QByteArray>("count");
    QTest::addColumn<QByteArray>("third");

    Faults::LyingMapping tooLong; // eight entries of 32 bits
    QTest::newRow("longer than the frame")
        << tooLong << QByteArray("4f001a0008000000") << QByteArray("43001a0320026461");
    Faults::LyingMapping notThere;
    notThere.object = CanOpen::ObjectKey{0x5FFF, 7};
    notThere.bits = 8;
    QTest::newRow("object that is not there")
        << notThere << QByteArray("4f001a0008000000") << QByteArray("43001a030807ff5f");
    Faults::LyingMapping many;
    many.entries = 64;
    many.bits = 1;
    QTest::newRow("64 entries") << many << QByteArray("4f001a0040000000") << QByteArray("43001a0301026461");
    Faults::LyingMapping few;
    few.entries = 2;
    QTest::newRow("no third entry") << few << QByteArray("4f001a0002000000")
                                    << QByteArray("80001a0311000906");
}

void tst_ProcessData::mappingLies()
{
    QFETCH(Faults::LyingMapping, fault);
    QFETCH(QByteArray, count);
    QFETCH(QByteArray, third);

    NodeMaker maker(2);
    maker.u16(0x6164, 2, 5).pdo(0x1800, 0x182, 255, 0, 100, {0x61640210}).fault(fault);
    ProcessVehicle vehicle({maker.node});
    QCOMPARE(vehicle.start(), (QByteArrayList{"0 182 0500"}));
    QCOMPARE(vehicle.receive(0x602, "40001a0000000000"), (QByteArrayList{"0 582 " + count}));
    QCOMPARE(vehicle.receive(0x602, "40001a0300000000"), (QByteArrayList{"0 582 " + third}));
    // What is sent is as it truly is.
    QCOMPARE(vehicle.pass(100), (QByteArrayList{"100 182 0500"}));
}

void tst_ProcessData::lieLeavesDictionaryAlone()
{
    NodeMaker maker(2);
    maker.u16(0x6164, 2, 5).pdo(0x1800, 0x182, 255, 0, 0, {0x61640210}).fault(Faults::LyingMapping());
    ProcessVehicle vehicle({maker.node});
    vehicle.start();
    vehicle.receive(0x602, "40001a0000000000");
    vehicle.receive(0x602, "40001a0500000000");
    QCOMPARE(vehicle.value(2, 0x1A00, 0), 1u);
    QVERIFY(vehicle.vehicle.node(2)->dictionary().find({0x1A00, 5}) == nullptr);
    QCOMPARE(vehicle.value(2, 0x1A00, 1), 0x61640210u);
}

void tst_ProcessData::floods()
{
    Faults::BabblePdo pdos;
    pdos.perSecond = 500;
    NodeMaker maker(2);
    maker.fault(pdos);
    ProcessVehicle vehicle({maker.node});
    vehicle.start();
    const QByteArrayList frames = vehicle.pass(100);
    QCOMPARE(frames.size(), 50);
    for (const QByteArray &frame : frames)
        QVERIFY2(frame.contains(" 182 ") && frame.mid(frame.lastIndexOf(" ") + 1).size() == 16,
                 frame.constData());
}

// ---------------------------------------------------------------------- whatever a dictionary says

void tst_ProcessData::sendsWhatADictionarySays()
{
    std::mt19937 random(11);
    for (int run = 0; run < 300; ++run) {
        NodeMaker maker(2);
        QVector<uint> mapping;
        int bits = 0;
        const auto objects = static_cast<int>(1 + random() % 10);
        for (int i = 0; i < objects; ++i) {
            const auto sub = static_cast<quint8>(i + 1);
            maker.u32(0x2000, sub, static_cast<uint>(random()));
            const auto length = static_cast<int>(1 + random() % 32);
            if (bits + length <= 64) {
                mapping.append(0x20000000u | uint(sub) << 8 | static_cast<uint>(length));
                bits += length;
            }
        }
        maker.pdo(0x1800, 0x182, 255, 0, 0, mapping);
        ProcessVehicle vehicle({maker.node});
        const QByteArrayList frames = vehicle.start();
        QCOMPARE(frames.size(), 1);
        const QByteArray payload = QByteArray::fromHex(frames.first().mid(6));
        QCOMPARE(payload.size(), (bits + 7) / 8);
        int first = 0;
        for (const uint mapped : qAsConst(mapping)) {
            const int length = static_cast<int>(mapped & 0xFF);
            const quint64 value = vehicle.value(2, 0x2000, static_cast<quint8>(mapped >> 8));
            QCOMPARE(CanOpen::unpackBits(payload, first, length).value_or(~quint64(0)),
                     value & ((Q_UINT64_C(1) << length) - 1));
            first += length;
        }
    }
}

QTEST_GUILESS_MAIN(tst_ProcessData)
#include "tst_processdata.moc"
