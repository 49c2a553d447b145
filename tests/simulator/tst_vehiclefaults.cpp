// SPDX-License-Identifier: MIT
#include "testvehicle.h"

#include <simulator/wire.h>

#include <QtTest>

using namespace Simulator;

class tst_VehicleFaults : public QObject
{
    Q_OBJECT

private slots:
    void silent();
    void noBootUp();
    void noHeartbeat();
    void babbleHeartbeat();
    void heartbeatTopBit();
    void heartbeatLength_data();
    void heartbeatLength();
    void heartbeatRemote();
    void stopped();
    void sdoSilentFromTheThirdRequest();
    void sdoSilentForOneObject();
    void sdoDelay();
    void sdoDelayIsForgottenAtAReset();
    void sdoAbort();
    void abortMidTransfer();
    void wrongToggle();
    void wrongToggleInOneSegment();
    void wrongMultiplexer();
    void sizeBits_data();
    void sizeBits();
    void sizeOfSegmentedTransfer();
    void segmented();
    void wrongWidth_data();
    void wrongWidth();
    void doubleAnswers();
    void lateAnswers();
    void halfOpenUntilAnAbortArrives();
    void babbleSdo();
    void foreignClient();
    void foreignClientReadsSegmentedObjects();
    void foreignClientGetsAborts();
    void dropFrames();
    void traffic();
    void switchedOnAndOff();
    void refusedFaults();
};

namespace {

const char readErrorRegister[] = "4001100000000000";
const QByteArray errorRegister = "585 4f01100081000000";
const char readName[] = "4008100000000000";
const QByteArray nameAnswer = "585 410810000f000000";

Fault fault(FaultKind kind)
{
    return makeFault(kind);
}

} // namespace

void tst_VehicleFaults::silent()
{
    TestVehicle test({fault(FaultKind::Silent)});
    test.vehicle.start();
    test.pass(5000);
    test.nmt("8105");
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList());
}

void tst_VehicleFaults::noBootUp()
{
    TestVehicle test({fault(FaultKind::NoBootUp)});
    test.vehicle.start();
    QCOMPARE(test.take(), QByteArrayList());
    test.pass(500);
    QCOMPARE(test.take(), QByteArrayList({"705 05"}));
}

void tst_VehicleFaults::noHeartbeat()
{
    TestVehicle test({fault(FaultKind::NoHeartbeat)});
    test.vehicle.start();
    test.pass(5000);
    QCOMPARE(test.take(), QByteArrayList({"705 00"}));
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
}

void tst_VehicleFaults::babbleHeartbeat()
{
    Fault babble = fault(FaultKind::BabbleHeartbeat);
    babble.intervalMs = 10;
    TestVehicle test({babble});
    test.startQuietly();
    test.pass(100);
    QCOMPARE(test.take().count("705 05"), 10);
}

void tst_VehicleFaults::heartbeatTopBit()
{
    TestVehicle test({fault(FaultKind::HeartbeatTopBit)});
    test.startQuietly();
    test.pass(500);
    QCOMPARE(test.take(), QByteArrayList({"705 85"}));
}

void tst_VehicleFaults::heartbeatLength_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<QByteArray>("frame");

    QTest::newRow("0") << 0 << QByteArray("705 ");
    QTest::newRow("1") << 1 << QByteArray("705 05");
    QTest::newRow("2") << 2 << QByteArray("705 0500");
    QTest::newRow("8") << 8 << QByteArray("705 0500000000000000");
}

void tst_VehicleFaults::heartbeatLength()
{
    QFETCH(int, length);
    QFETCH(QByteArray, frame);
    Fault wrong = fault(FaultKind::HeartbeatLength);
    wrong.length = length;
    TestVehicle test({wrong});
    test.startQuietly();
    test.pass(500);
    QCOMPARE(test.take(), QByteArrayList({frame}));
}

void tst_VehicleFaults::heartbeatRemote()
{
    TestVehicle test({fault(FaultKind::HeartbeatRemote)});
    test.startQuietly();
    test.pass(500);
    QCOMPARE(test.take(), QByteArrayList({"705 R1"}));
}

void tst_VehicleFaults::stopped()
{
    TestVehicle test({fault(FaultKind::Stopped)});
    test.vehicle.start();
    test.pass(500);
    QCOMPARE(test.take(), QByteArrayList({"705 00", "705 04"}));
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList());
    test.nmt("0105");
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
}

void tst_VehicleFaults::sdoSilentFromTheThirdRequest()
{
    Fault silent = fault(FaultKind::SdoSilent);
    silent.from = 3;
    TestVehicle test({silent});
    test.startQuietly();
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList());
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList());
    test.pass(500);
    QCOMPARE(test.take(), QByteArrayList({"705 05"}));
}

void tst_VehicleFaults::sdoSilentForOneObject()
{
    Fault silent = fault(FaultKind::SdoSilent);
    silent.object = CanOpen::ObjectKey{0x1008, 0};
    TestVehicle test({silent});
    test.startQuietly();
    QCOMPARE(test.ask(readName), QByteArrayList());
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
    QCOMPARE(test.ask(readName), QByteArrayList());
}

void tst_VehicleFaults::sdoDelay()
{
    Fault delay = fault(FaultKind::SdoDelay);
    delay.ms = 150;
    delay.object = CanOpen::ObjectKey{0x1001, 0};
    TestVehicle test({delay});
    test.startQuietly();
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList());
    QCOMPARE(test.ask(readName), QByteArrayList({nameAnswer}));
    test.pass(149);
    QCOMPARE(test.take(), QByteArrayList());
    test.pass(1);
    QCOMPARE(test.take(), QByteArrayList({errorRegister}));
}

void tst_VehicleFaults::sdoDelayIsForgottenAtAReset()
{
    Fault delay = fault(FaultKind::SdoDelay);
    delay.ms = 150;
    TestVehicle test({delay});
    test.startQuietly();
    test.ask(readErrorRegister);
    test.nmt("8105");
    test.pass(300);
    QCOMPARE(test.take(), QByteArrayList({"705 00"}));
}

void tst_VehicleFaults::sdoAbort()
{
    Fault refusal = fault(FaultKind::SdoAbort);
    refusal.code = 0x06060000;
    refusal.object = CanOpen::ObjectKey{0x6000, 1};
    TestVehicle test({refusal});
    test.startQuietly();
    QCOMPARE(test.ask("4000600100000000"), QByteArrayList({"585 8000600100000606"}));
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
}

void tst_VehicleFaults::abortMidTransfer()
{
    Fault abortion = fault(FaultKind::AbortMidTransfer);
    abortion.code = 0x08000022;
    abortion.afterSegments = 1;
    TestVehicle test({abortion});
    test.startQuietly();
    QCOMPARE(test.ask(readName), QByteArrayList({nameAnswer}));
    QCOMPARE(test.ask("6000000000000000"), QByteArrayList({"585 00506564656c6563"}));
    QCOMPARE(test.ask("7000000000000000"), QByteArrayList({"585 8008100022000008"}));
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
}

void tst_VehicleFaults::wrongToggle()
{
    TestVehicle test({fault(FaultKind::WrongToggle)});
    test.startQuietly();
    QCOMPARE(test.ask(readName), QByteArrayList({nameAnswer}));
    QCOMPARE(test.ask("6000000000000000"), QByteArrayList({"585 10506564656c6563"}));
    QCOMPARE(test.ask("7000000000000000"), QByteArrayList({"585 0020626174746572"}));
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
}

void tst_VehicleFaults::wrongToggleInOneSegment()
{
    Fault wrong = fault(FaultKind::WrongToggle);
    wrong.segment = 2;
    TestVehicle test({wrong});
    test.startQuietly();
    test.ask(readName);
    QCOMPARE(test.ask("6000000000000000"), QByteArrayList({"585 00506564656c6563"}));
    QCOMPARE(test.ask("7000000000000000"), QByteArrayList({"585 0020626174746572"}));
    QCOMPARE(test.ask("6000000000000000"), QByteArrayList({"585 0d79000000000000"}));
}

void tst_VehicleFaults::wrongMultiplexer()
{
    TestVehicle test({fault(FaultKind::WrongMultiplexer)});
    test.startQuietly();
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({"585 4f02100081000000"}));
    QCOMPARE(test.ask("2b00200001000000"), QByteArrayList({"585 6001200000000000"}));
}

void tst_VehicleFaults::sizeBits_data()
{
    QTest::addColumn<int>("expedited");
    QTest::addColumn<int>("sizeIndicated");
    QTest::addColumn<int>("unused");
    QTest::addColumn<QByteArray>("answer");

    const auto row = [](const char *name, int expedited, int sizeIndicated, int unused, const char *answer) {
        QTest::newRow(name) << expedited << sizeIndicated << unused << QByteArray(answer);
    };
    row("kept", -1, -1, -1, "585 4b00200034120000");
    row("not indicated", -1, 0, 0, "585 4200200034120000");
    row("not indicated, n left", -1, 0, -1, "585 4a00200034120000");
    row("too short", -1, -1, 3, "585 4f00200034120000");
    row("too long", -1, -1, 0, "585 4300200034120000");
    row("neither", 0, 0, 0, "585 4000200034120000");
    row("segmented with the data as size", 0, 1, 0, "585 4100200034120000");
}

void tst_VehicleFaults::sizeBits()
{
    QFETCH(int, expedited);
    QFETCH(int, sizeIndicated);
    QFETCH(int, unused);
    QFETCH(QByteArray, answer);
    Fault bits = fault(FaultKind::SizeBits);
    bits.expedited = expedited;
    bits.sizeIndicated = sizeIndicated;
    bits.unused = unused;
    TestVehicle test({bits});
    test.startQuietly();
    QCOMPARE(test.ask("4000200000000000"), QByteArrayList({answer}));
}

void tst_VehicleFaults::sizeOfSegmentedTransfer()
{
    Fault bits = fault(FaultKind::SizeBits);
    bits.size = 0xFFFFFFFF;
    bits.lastUnused = 7;
    TestVehicle test({bits});
    test.startQuietly();
    QCOMPARE(test.ask(readName), QByteArrayList({"585 41081000ffffffff"}));
    QCOMPARE(test.ask("6000000000000000"), QByteArrayList({"585 00506564656c6563"}));
    QCOMPARE(test.ask("7000000000000000"), QByteArrayList({"585 1020626174746572"}));
    QCOMPARE(test.ask("6000000000000000"), QByteArrayList({"585 0f79000000000000"}));
}

void tst_VehicleFaults::segmented()
{
    TestVehicle test({fault(FaultKind::Segmented)});
    test.startQuietly();
    QCOMPARE(test.ask("4000200000000000"), QByteArrayList({"585 4100200002000000"}));
    QCOMPARE(test.ask("6000000000000000"), QByteArrayList({"585 0b34120000000000"}));
    test.vehicle.removeFaults(5, FaultKind::Segmented);
    QCOMPARE(test.ask("4000200000000000"), QByteArrayList({"585 4b00200034120000"}));
}

void tst_VehicleFaults::wrongWidth_data()
{
    QTest::addColumn<int>("bytes");
    QTest::addColumn<QByteArray>("answer");

    QTest::newRow("1") << 1 << QByteArray("585 4f00200034000000");
    QTest::newRow("3") << 3 << QByteArray("585 4700200034120000");
    QTest::newRow("4") << 4 << QByteArray("585 4300200034120000");
    QTest::newRow("8") << 8 << QByteArray("585 4100200008000000");
    QTest::newRow("0") << 0 << QByteArray("585 4100200000000000");
}

void tst_VehicleFaults::wrongWidth()
{
    QFETCH(int, bytes);
    QFETCH(QByteArray, answer);
    Fault width = fault(FaultKind::WrongWidth);
    width.bytes = bytes;
    TestVehicle test({width});
    test.startQuietly();
    QCOMPARE(test.ask("4000200000000000"), QByteArrayList({answer}));
    test.vehicle.removeFaults(5, FaultKind::WrongWidth);
    QCOMPARE(test.ask("4000200000000000"), QByteArrayList({"585 4b00200034120000"}));
}

void tst_VehicleFaults::doubleAnswers()
{
    Fault doubled = fault(FaultKind::DoubleAnswers);
    TestVehicle test({doubled});
    test.startQuietly();
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister, errorRegister}));
    doubled.count = 3;
    test.vehicle.clearFaults();
    test.vehicle.addFault(5, doubled);
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister, errorRegister, errorRegister}));
}

void tst_VehicleFaults::lateAnswers()
{
    TestVehicle test({fault(FaultKind::LateAnswers)}); // every second
    test.startQuietly();
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList());
    QCOMPARE(test.ask("4000200000000000"), QByteArrayList({errorRegister, "585 4b00200034120000"}));
    QCOMPARE(test.ask("4000200000000000"), QByteArrayList());
    QCOMPARE(test.ask("8000200000000405"), QByteArrayList()); // an abort asks for nothing
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({"585 4b00200034120000", errorRegister}));
}

void tst_VehicleFaults::halfOpenUntilAnAbortArrives()
{
    Fault halfOpen = fault(FaultKind::HalfOpen);
    halfOpen.from = 2;
    TestVehicle test({halfOpen});
    test.startQuietly();
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList());
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({"585 8001100001000405"}));
    QCOMPARE(test.ask(readName), QByteArrayList({"585 8008100001000405"}));
    QCOMPARE(test.ask("8001100000000405"), QByteArrayList());
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
}

void tst_VehicleFaults::babbleSdo()
{
    Fault babble = fault(FaultKind::BabbleSdo);
    babble.perSecond = 1000;
    TestVehicle test({babble});
    test.startQuietly();
    test.pass(100);
    const QByteArrayList frames = test.take();
    QCOMPARE(frames.size(), 100);
    for (const QByteArray &frame : frames) {
        QVERIFY2(frame.startsWith("585 "), frame.constData());
        QCOMPARE(frame.size(), 4 + 16);
        QCOMPARE(frame.at(4 + 4), '2'); // index 2xxxh
    }
    QVERIFY(frames.first() != frames.last());
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
}

void tst_VehicleFaults::foreignClient()
{
    Fault foreign = fault(FaultKind::ForeignClient);
    foreign.object = CanOpen::ObjectKey{0x2000, 0};
    foreign.every = 2;
    TestVehicle test({foreign});
    test.startQuietly();
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
    QCOMPARE(test.ask(readErrorRegister),
             QByteArrayList({"605 4000200000000000", "585 4b00200034120000", errorRegister}));
}

void tst_VehicleFaults::foreignClientReadsSegmentedObjects()
{
    Fault foreign = fault(FaultKind::ForeignClient);
    foreign.object = CanOpen::ObjectKey{0x1008, 0};
    TestVehicle test({foreign});
    test.startQuietly();
    QCOMPARE(test.ask(readErrorRegister),
             QByteArrayList({"605 4008100000000000", nameAnswer, "605 6000000000000000",
                             "585 00506564656c6563", "605 7000000000000000", "585 1020626174746572",
                             "605 6000000000000000", "585 0d79000000000000", errorRegister}));
}

void tst_VehicleFaults::foreignClientGetsAborts()
{
    TestVehicle test({fault(FaultKind::ForeignClient)});
    test.startQuietly();
    bool hasAbort = false;
    for (int request = 0; request < 8; ++request) {
        const QByteArrayList frames = test.ask(readErrorRegister);
        QVERIFY(frames.size() >= 3);
        QCOMPARE(frames.last(), errorRegister);
        QVERIFY(frames.first().startsWith("605 40"));
        hasAbort = hasAbort || frames.contains("585 80ff5f7f00000206");
    }
    QVERIFY(hasAbort);
}

void tst_VehicleFaults::dropFrames()
{
    Fault drop = fault(FaultKind::DropFrames);
    drop.every = 3;
    TestVehicle test({drop});
    test.vehicle.start();
    QCOMPARE(test.take(), QByteArrayList({"705 00"}));
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList());
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
}

void tst_VehicleFaults::traffic()
{
    Fault load = fault(FaultKind::Traffic);
    load.percent = 70;
    TestVehicle test({fault(FaultKind::NoHeartbeat)});
    test.vehicle.addFault(0, load);
    int bits = 0;
    QSet<QByteArray> identifiers;
    test.vehicle.setSender([&](const QCanBusFrame &frame, quint8) {
        bits += frameBits(frame);
        identifiers.insert(QByteArray::number(frame.frameId(), 16));
    });
    test.vehicle.start();
    for (int step = 0; step < 100; ++step)
        test.pass(100);
    // Ten seconds at 250 kbit/s, 70 percent of them.
    QVERIFY2(bits > 1700000 && bits < 1800000, qPrintable(QString::number(bits)));
    QCOMPARE(identifiers, QSet<QByteArray>({"85", "185", "285", "385", "485", "705"}));
}

void tst_VehicleFaults::switchedOnAndOff()
{
    TestVehicle test;
    test.startQuietly();
    QVERIFY(test.vehicle.addFault(5, fault(FaultKind::SdoSilent)));
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList());
    test.vehicle.removeFaults(5, FaultKind::Silent);
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList());
    test.vehicle.removeFaults(0, FaultKind::SdoSilent);
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));

    QVERIFY(test.vehicle.addFault(5, fault(FaultKind::BabbleSdo)));
    test.pass(10);
    QVERIFY(!test.take().isEmpty());
    test.vehicle.clearFaults();
    test.pass(100);
    QCOMPARE(test.take(), QByteArrayList());

    QVERIFY(test.vehicle.addFault(5, fault(FaultKind::Stopped)));
    QCOMPARE(test.vehicle.node(5)->state(), CanOpen::NmtState::Stopped);
    test.vehicle.clearFaults();
    QCOMPARE(test.vehicle.node(5)->state(), CanOpen::NmtState::Operational);
}

void tst_VehicleFaults::refusedFaults()
{
    TestVehicle test;
    QVERIFY(!test.vehicle.addFault(6, fault(FaultKind::Silent)));
    QVERIFY(!test.vehicle.addFault(0, fault(FaultKind::Silent)));
    QVERIFY(!test.vehicle.addFault(200, fault(FaultKind::Silent)));
    QVERIFY(!test.vehicle.addFault(5, fault(FaultKind::BusLoss)));
    QVERIFY(!test.vehicle.addFault(0, fault(FaultKind::BusLoss)));
}

QTEST_GUILESS_MAIN(tst_VehicleFaults)
#include "tst_vehiclefaults.moc"
