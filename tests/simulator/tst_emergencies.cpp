// SPDX-License-Identifier: MIT
#include "processvehicle.h"

#include <QtTest>

using namespace Simulator;
using namespace std::chrono_literals;

namespace {

/*! Node 4 with an error register and a history of three entries. */
NodeMaker motor()
{
    NodeMaker maker(4);
    maker.u8(0x1001, 0, 0).u8(0x1003, 0, 0).u32(0x1003, 1, 0).u32(0x1003, 2, 0).u32(0x1003, 3, 0);
    maker.u32(0x1014, 0, 0x84);
    return maker;
}

Faults::Emergency tooHot()
{
    Faults::Emergency fault;
    fault.code = 0x4210;
    fault.errorRegister = 0x08;
    fault.manufacturer = 0x0102030405;
    return fault;
}

Faults::Emergency withCode(quint32 code, std::chrono::milliseconds after = 0ms)
{
    Faults::Emergency fault;
    fault.code = code;
    fault.after = after;
    return fault;
}

} // namespace

/*! Emergencies, error register and error history of a simulated node. */
class tst_Emergencies : public QObject
{
    Q_OBJECT

private slots:
    void comesAtItsTime();
    void goesWhenItsTimeIsOver();
    void timesFollowSpeed();
    void comesWithAValue();
    void goesWithTheValue();
    void staysWhenOrdered();
    void valueBelowLimit();
    void registerHasAllErrors();
    void ownRegisterBitsStay();
    void historyHasNewestFirst();
    void historyIsEmptiedByZero();
    void nodeWithoutObjects();
    void usesCobIdOfObject();
    void switchedOffByObject();
    void inhibitTime();
    void moreThanTheBufferHolds();
    void notInStateStopped();
    void leavesOperational();
    void resetRaisesAgainWhatHolds();
    void orderedWhileRunning();
    void othersOrdersStay();
    void fromNobody();
    void babbles();
};

void tst_Emergencies::comesAtItsTime()
{
    Faults::Emergency fault = tooHot();
    fault.after = 250ms;
    ProcessVehicle vehicle({motor().fault(fault).node});
    QCOMPARE(vehicle.start(), QByteArrayList());
    QCOMPARE(vehicle.value(4, 0x1001, 0), 0u);
    QCOMPARE(vehicle.pass(1000), (QByteArrayList{"250 84 1042090102030405"}));
    QCOMPARE(vehicle.value(4, 0x1001, 0), 0x09u);
    QCOMPARE(vehicle.value(4, 0x1003, 0), 1u);
    QCOMPARE(vehicle.value(4, 0x1003, 1), 0x02014210u);
}

void tst_Emergencies::goesWhenItsTimeIsOver()
{
    Faults::Emergency fault = tooHot();
    fault.after = 100ms;
    fault.length = 50ms;
    ProcessVehicle vehicle({motor().fault(fault).node});
    vehicle.start();
    QCOMPARE(vehicle.pass(1000), (QByteArrayList{"100 84 1042090102030405", "150 84 0000000000000000"}));
    QCOMPARE(vehicle.value(4, 0x1001, 0), 0u);
    QCOMPARE(vehicle.value(4, 0x1003, 0), 1u); // the history keeps it
}

void tst_Emergencies::timesFollowSpeed()
{
    Faults::Emergency fault = tooHot();
    fault.after = 1000ms;
    fault.length = 500ms;
    ProcessVehicle vehicle({motor().fault(fault).node}, 10);
    vehicle.start();
    QCOMPARE(vehicle.pass(1000), (QByteArrayList{"100 84 1042090102030405", "150 84 0000000000000000"}));
}

void tst_Emergencies::comesWithAValue()
{
    Faults::Emergency fault = tooHot();
    fault.object = CanOpen::ObjectKey{0x62E8, 4};
    fault.above = 10;
    ProcessVehicle vehicle({motor().u16(0x62E8, 4, 0).counts(0x62E8, 4, 10).fault(fault).node});
    QCOMPARE(vehicle.start(), QByteArrayList());
    // 11 from 110 ms on; it is looked for every 50 ms
    QCOMPARE(vehicle.pass(1000), (QByteArrayList{"150 84 1042090102030405"}));
}

void tst_Emergencies::goesWithTheValue()
{
    Faults::Emergency fault = tooHot();
    fault.object = CanOpen::ObjectKey{0x6042, 1};
    fault.above = 900;
    ProcessVehicle vehicle({motor().i16(0x6042, 1, 901).fault(fault).node});
    QCOMPARE(vehicle.start(), (QByteArrayList{"0 84 1042090102030405"}));
    QCOMPARE(vehicle.pass(100), QByteArrayList());
    vehicle.vehicle.node(4)->dictionary().setValue({0x6042, 1}, 900);
    QCOMPARE(vehicle.pass(100), (QByteArrayList{"150 84 0000000000000000"}));
    vehicle.vehicle.node(4)->dictionary().setValue({0x6042, 1}, 950);
    QCOMPARE(vehicle.pass(100), (QByteArrayList{"250 84 1042090102030405"}));
}

void tst_Emergencies::staysWhenOrdered()
{
    Faults::Emergency fault = tooHot();
    fault.object = CanOpen::ObjectKey{0x6042, 1};
    fault.above = 900;
    fault.stays = true;
    ProcessVehicle vehicle({motor().i16(0x6042, 1, 901).fault(fault).node});
    vehicle.start();
    vehicle.vehicle.node(4)->dictionary().setValue({0x6042, 1}, 200);
    QCOMPARE(vehicle.pass(200), QByteArrayList());
    QCOMPARE(vehicle.value(4, 0x1001, 0), 0x09u);
}

void tst_Emergencies::valueBelowLimit()
{
    Faults::Emergency fault = withCode(0x3120);
    fault.object = CanOpen::ObjectKey{0x6042, 1};
    fault.below = -100;
    ProcessVehicle vehicle({motor().i16(0x6042, 1, -100).fault(fault).node});
    QCOMPARE(vehicle.start(), QByteArrayList());
    vehicle.vehicle.node(4)->dictionary().setValue({0x6042, 1}, -101);
    QCOMPARE(vehicle.pass(50), (QByteArrayList{"50 84 2031010000000000"}));
}

void tst_Emergencies::registerHasAllErrors()
{
    Faults::Emergency first = tooHot();
    first.manufacturer = 0;
    first.length = 200ms;
    Faults::Emergency second = withCode(0x3120, 100ms);
    second.errorRegister = 0x04;
    second.length = 200ms;
    ProcessVehicle vehicle({motor().fault(first).fault(second).node});
    QByteArrayList frames = vehicle.start();
    frames += vehicle.pass(400);
    QCOMPARE(frames, (QByteArrayList{"0 84 1042090000000000", "100 84 20310d0000000000",
                                     "200 84 0000050000000000", "300 84 0000000000000000"}));
}

void tst_Emergencies::ownRegisterBitsStay()
{
    Faults::Emergency fault = tooHot();
    fault.length = 50ms;
    NodeMaker maker(4);
    maker.u8(0x1001, 0, 0x80).fault(fault);
    ProcessVehicle vehicle({maker.node});
    QCOMPARE(vehicle.start(), (QByteArrayList{"0 84 1042890102030405"}));
    QCOMPARE(vehicle.pass(100), (QByteArrayList{"50 84 0000800000000000"}));
}

void tst_Emergencies::historyHasNewestFirst()
{
    NodeMaker maker = motor();
    for (int i = 1; i <= 4; ++i)
        maker.fault(withCode(static_cast<quint32>(0x1000 * i), std::chrono::milliseconds(10 * i)));
    ProcessVehicle vehicle({maker.node});
    vehicle.start();
    vehicle.pass(25);
    QCOMPARE(vehicle.value(4, 0x1003, 0), 2u);
    QCOMPARE(vehicle.value(4, 0x1003, 1), 0x2000u);
    QCOMPARE(vehicle.value(4, 0x1003, 2), 0x1000u);
    vehicle.pass(25);
    QCOMPARE(vehicle.value(4, 0x1003, 0), 3u);
    QCOMPARE(vehicle.value(4, 0x1003, 1), 0x4000u);
    QCOMPARE(vehicle.value(4, 0x1003, 2), 0x3000u);
    QCOMPARE(vehicle.value(4, 0x1003, 3), 0x2000u);
}

void tst_Emergencies::historyIsEmptiedByZero()
{
    ProcessVehicle vehicle({motor().fault(tooHot()).node});
    vehicle.start();
    QCOMPARE(vehicle.receive(0x604, "2f03100000000000"), (QByteArrayList{"0 584 6003100000000000"}));
    QCOMPARE(vehicle.value(4, 0x1003, 0), 0u);
    QCOMPARE(vehicle.value(4, 0x1003, 1), 0u);
    QCOMPARE(vehicle.value(4, 0x1001, 0), 0x09u); // the error is still there
}

void tst_Emergencies::nodeWithoutObjects()
{
    NodeMaker maker(4);
    maker.fault(tooHot());
    ProcessVehicle vehicle({maker.node});
    QCOMPARE(vehicle.start(), (QByteArrayList{"0 84 1042090102030405"}));
}

void tst_Emergencies::usesCobIdOfObject()
{
    ProcessVehicle vehicle({motor().u32(0x1014, 0, 0x199).fault(tooHot()).node});
    QCOMPARE(vehicle.start(), (QByteArrayList{"0 199 1042090102030405"}));
}

void tst_Emergencies::switchedOffByObject()
{
    ProcessVehicle vehicle({motor().u32(0x1014, 0, 0x80000084).fault(tooHot()).node});
    QCOMPARE(vehicle.start(), QByteArrayList());
    QCOMPARE(vehicle.value(4, 0x1001, 0), 0x09u);
    QCOMPARE(vehicle.value(4, 0x1003, 0), 1u);
}

void tst_Emergencies::inhibitTime()
{
    Faults::Emergency fault = tooHot();
    fault.length = 10ms;
    ProcessVehicle vehicle({motor()
                                .u16(0x1015, 0, 1000)
                                .fault(fault)
                                .fault(withCode(0x5000, 20ms))
                                .fault(withCode(0x6000, 400ms))
                                .node});
    QByteArrayList frames = vehicle.start();
    frames += vehicle.pass(500);
    QCOMPARE(frames, (QByteArrayList{"0 84 1042090102030405", "100 84 0000000000000000",
                                     "200 84 0050010000000000", "400 84 0060010000000000"}));
}

void tst_Emergencies::moreThanTheBufferHolds()
{
    NodeMaker maker = motor();
    maker.u16(0x1015, 0, 10000); // a second
    for (quint32 i = 0; i < 100; ++i)
        maker.fault(withCode(0x1000 + i));
    ProcessVehicle vehicle({maker.node});
    int frames = vehicle.start().size();
    frames += vehicle.pass(60000).size();
    QCOMPARE(frames, 1 + 32);
}

void tst_Emergencies::notInStateStopped()
{
    NodeMaker maker = motor();
    maker.fault(withCode(0x5000, 100ms)).fault(withCode(0x6000, 200ms));
    ProcessVehicle vehicle({maker.node});
    vehicle.start();
    vehicle.receive(0x000, "0204");
    QCOMPARE(vehicle.pass(150), QByteArrayList());
    QCOMPARE(vehicle.value(4, 0x1001, 0), 0x01u);
    vehicle.receive(0x000, "8004");
    QCOMPARE(vehicle.pass(100), (QByteArrayList{"200 84 0060010000000000"}));
}

void tst_Emergencies::leavesOperational()
{
    Faults::Emergency fault = tooHot();
    fault.after = 50ms;
    fault.preOperational = true;
    ProcessVehicle vehicle(
        {motor().u16(0x6164, 2, 5).pdo(0x1800, 0x184, 255, 0, 40, {0x61640210}).fault(fault).node});
    QCOMPARE(vehicle.start(), (QByteArrayList{"0 184 0500"}));
    QCOMPARE(vehicle.pass(200), (QByteArrayList{"40 184 0500", "50 84 1042090102030405"}));
    QCOMPARE(vehicle.vehicle.node(4)->state(), CanOpen::NmtState::PreOperational);
}

void tst_Emergencies::resetRaisesAgainWhatHolds()
{
    Faults::Emergency over = withCode(0x5000);
    over.length = 50ms;
    ProcessVehicle vehicle({motor().fault(tooHot()).fault(over).node});
    vehicle.start();
    vehicle.pass(100);
    QCOMPARE(vehicle.receive(0x000, "8104"), (QByteArrayList{"100 84 1042090102030405"}));
    QCOMPARE(vehicle.value(4, 0x1003, 0), 1u);
    QCOMPARE(vehicle.value(4, 0x1001, 0), 0x09u);
}

void tst_Emergencies::orderedWhileRunning()
{
    ProcessVehicle vehicle({motor().node});
    vehicle.start();
    vehicle.pass(1000);
    Faults::Emergency fault = tooHot();
    fault.after = 20ms;
    QVERIFY(vehicle.vehicle.addFault(4, fault));
    QCOMPARE(vehicle.pass(100), (QByteArrayList{"1020 84 1042090102030405"}));
    vehicle.vehicle.removeFaults<Faults::Emergency>(4);
    QCOMPARE(vehicle.take(), (QByteArrayList{"1100 84 0000000000000000"}));
    QCOMPARE(vehicle.pass(100), QByteArrayList());
}

void tst_Emergencies::othersOrdersStay()
{
    ProcessVehicle vehicle({motor().fault(tooHot()).fault(Faults::NoHeartbeat()).node});
    vehicle.start();
    vehicle.vehicle.removeFaults<Faults::NoHeartbeat>(4);
    QCOMPARE(vehicle.pass(100), QByteArrayList());
    vehicle.vehicle.clearFaults();
    QCOMPARE(vehicle.take(), (QByteArrayList{"100 84 0000000000000000"}));
}

void tst_Emergencies::fromNobody()
{
    Faults::EmergencyOfNobody fault;
    fault.nodeId = 99;
    fault.code = 0x4210;
    fault.interval = 100ms;
    ProcessVehicle vehicle({motor().fault(fault).node});
    vehicle.start();
    QCOMPARE(vehicle.pass(250), (QByteArrayList{"100 e3 1042010000000000", "200 e3 1042010000000000"}));
    QCOMPARE(vehicle.value(4, 0x1003, 0), 0u);
}

void tst_Emergencies::babbles()
{
    Faults::BabbleEmergency fault;
    fault.perSecond = 100;
    fault.code = 0x8130;
    ProcessVehicle vehicle({motor().fault(fault).node});
    vehicle.start();
    QCOMPARE(vehicle.pass(30),
             (QByteArrayList{"10 84 3081010000000000", "20 84 3081010000000000", "30 84 3081010000000000"}));
}

QTEST_GUILESS_MAIN(tst_Emergencies)
#include "tst_emergencies.moc"
