// SPDX-License-Identifier: MIT
#include "testvehicle.h"

#include <canopen/framebits.h>

#include <QtTest>

using namespace Simulator;
using std::chrono::milliseconds;

/*! What others on a simulated bus do: babbling nodes, another client, traffic. */
class tst_TrafficFaults : public QObject
{
    Q_OBJECT

private slots:
    void babbleSdo();
    void babbleOfSegments();
    void foreignClient();
    void foreignClientReadsSegmentedObjects();
    void foreignClientGetsAborts();
    void abandoningClient();
    void abandoningClientOfOneObject();
    void dropFrames();
    void traffic();
    void flood();
    void switchedOnAndOff();
    void refusedFaults();
};

void tst_TrafficFaults::babbleSdo()
{
    Faults::BabbleSdo babble;
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

void tst_TrafficFaults::babbleOfSegments()
{
    Faults::BabbleSdo babble;
    babble.perSecond = 200;
    babble.segments = true;
    TestVehicle test({babble});
    test.startQuietly();
    for (int step = 0; step < 4; ++step)
        test.pass(100);
    const QByteArrayList frames = test.take();
    QCOMPARE(frames.size(), 80);
    QSet<QByteArray> commands;
    for (const QByteArray &frame : frames) {
        QVERIFY2(frame.startsWith("585 0") || frame.startsWith("585 1"), frame.constData());
        commands.insert(frame.mid(4, 2));
    }
    QVERIFY(commands.size() > 20); // of 32
}

void tst_TrafficFaults::foreignClient()
{
    Faults::ForeignClient foreign;
    foreign.object = CanOpen::ObjectKey{0x2000, 0};
    foreign.every = 2;
    TestVehicle test({foreign});
    test.startQuietly();
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
    QCOMPARE(test.ask(readErrorRegister),
             QByteArrayList({"605 4000200000000000", "585 4b00200034120000", errorRegister}));
}

void tst_TrafficFaults::foreignClientReadsSegmentedObjects()
{
    Faults::ForeignClient foreign;
    foreign.object = CanOpen::ObjectKey{0x1008, 0};
    TestVehicle test({foreign});
    test.startQuietly();
    QCOMPARE(test.ask(readErrorRegister),
             QByteArrayList({"605 4008100000000000", nameAnswer, "605 6000000000000000",
                             "585 00506564656c6563", "605 7000000000000000", "585 1020626174746572",
                             "605 6000000000000000", "585 0d79000000000000", errorRegister}));
}

void tst_TrafficFaults::foreignClientGetsAborts()
{
    TestVehicle test({Faults::ForeignClient()});
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

void tst_TrafficFaults::abandoningClient()
{
    TestVehicle test({Faults::NoHeartbeat(), Faults::AbandoningClient()});
    test.startQuietly();
    QCOMPARE(test.ask(readName), QByteArrayList({nameAnswer}));
    test.pass(54);
    QCOMPARE(test.take(), QByteArrayList());
    test.pass(1);
    QCOMPARE(test.take(), QByteArrayList({"605 4008100000000000", nameAnswer}));
    // The server has one transfer at a time: the segments belong to whoever began last.
    QCOMPARE(test.ask("6000000000000000"), QByteArrayList({"585 00506564656c6563"}));
    test.pass(110);
    QCOMPARE(test.take().count(nameAnswer), 2);
    QCOMPARE(test.ask("7000000000000000"), QByteArrayList({"585 8008100000000305"}));
    test.nmt("0205");
    test.pass(110);
    QCOMPARE(test.take(), QByteArrayList());
}

void tst_TrafficFaults::abandoningClientOfOneObject()
{
    Faults::AbandoningClient client;
    client.object = CanOpen::ObjectKey{0x2000, 0};
    client.interval = milliseconds(20);
    TestVehicle test({client});
    test.startQuietly();
    test.pass(20);
    QCOMPARE(test.take(), QByteArrayList({"605 4000200000000000", "585 4100200002000000"}));
    QCOMPARE(test.ask("4000200000000000"), QByteArrayList({"585 4b00200034120000"}));
}

void tst_TrafficFaults::dropFrames()
{
    Faults::DropFrames drop;
    drop.every = 3;
    TestVehicle test({drop});
    test.vehicle.start();
    QCOMPARE(test.take(), QByteArrayList({"705 00"}));
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList());
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
}

void tst_TrafficFaults::traffic()
{
    Faults::Traffic load;
    load.percent = 70;
    TestVehicle test({Faults::NoHeartbeat()});
    test.vehicle.addFault(0, load);
    int bits = 0;
    QSet<QByteArray> identifiers;
    test.vehicle.setSender([&](const QCanBusFrame &frame, quint8) {
        bits += CanOpen::frameBits(frame);
        identifiers.insert(QByteArray::number(frame.frameId(), 16));
    });
    test.vehicle.start();
    for (int step = 0; step < 100; ++step)
        test.pass(100);
    // Ten seconds at 250 kbit/s, 70 percent of them.
    QVERIFY2(bits > 1700000 && bits < 1800000, qPrintable(QString::number(bits)));
    QCOMPARE(identifiers, QSet<QByteArray>({"85", "185", "285", "385", "485", "705"}));
}

void tst_TrafficFaults::flood()
{
    TestVehicle test({Faults::NoHeartbeat()});
    test.startQuietly();
    QVERIFY(test.vehicle.addFault(0, Faults::Flood()));
    int extended = 0;
    int remote = 0;
    int frames = 0;
    QSet<int> lengths;
    test.vehicle.setSender([&](const QCanBusFrame &frame, quint8) {
        ++frames;
        QVERIFY(frame.isValid());
        extended += frame.hasExtendedFrameFormat() ? 1 : 0;
        remote += frame.frameType() == QCanBusFrame::RemoteRequestFrame ? 1 : 0;
        lengths.insert(frame.payload().size());
        if (!frame.hasExtendedFrameFormat())
            QVERIFY(frame.frameId() >= 0x080 && frame.frameId() < 0x580);
    });
    for (int step = 0; step < 10; ++step)
        test.pass(100);
    QCOMPARE(frames, 8000);
    QVERIFY(extended > 500 && extended < 1500);
    QVERIFY(remote > 500 && remote < 1500);
    QCOMPARE(lengths, QSet<int>({0, 1, 2, 3, 4, 5, 6, 7, 8}));
}

void tst_TrafficFaults::switchedOnAndOff()
{
    TestVehicle test;
    test.startQuietly();
    QVERIFY(test.vehicle.addFault(5, Faults::SdoSilent()));
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList());
    test.vehicle.removeFaults<Faults::Silent>(5);
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList());
    test.vehicle.removeFaults<Faults::SdoSilent>(0);
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));

    QVERIFY(test.vehicle.addFault(5, Faults::BabbleSdo()));
    test.pass(10);
    QVERIFY(!test.take().isEmpty());
    test.vehicle.clearFaults();
    test.pass(100);
    QCOMPARE(test.take(), QByteArrayList());

    QVERIFY(test.vehicle.addFault(5, Faults::Stopped()));
    QCOMPARE(test.vehicle.node(5)->state(), CanOpen::NmtState::Stopped);
    test.vehicle.clearFaults();
    QCOMPARE(test.vehicle.node(5)->state(), CanOpen::NmtState::Operational);
}

void tst_TrafficFaults::refusedFaults()
{
    TestVehicle test;
    QVERIFY(!test.vehicle.addFault(6, Faults::Silent()));
    QVERIFY(!test.vehicle.addFault(0, Faults::Silent()));
    QVERIFY(!test.vehicle.addFault(200, Faults::Silent()));
    QVERIFY(!test.vehicle.addFault(5, Faults::BusLoss()));
    QVERIFY(!test.vehicle.addFault(0, Faults::BusLoss()));
}

QTEST_GUILESS_MAIN(tst_TrafficFaults)
#include "tst_trafficfaults.moc"
