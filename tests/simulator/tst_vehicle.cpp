// SPDX-License-Identifier: MIT
#include "testvehicle.h"

#include <QSignalSpy>
#include <QtTest>

using namespace CanOpen;
using namespace Simulator;

class tst_Vehicle : public QObject
{
    Q_OBJECT

private slots:
    void bootUpThenHeartbeats();
    void withoutBootUp();
    void heartbeatTimeOfTheDictionary();
    void heartbeatTimeWritten();
    void nmtCommands_data();
    void nmtCommands();
    void nmtForOthersAndNonsense_data();
    void nmtForOthersAndNonsense();
    void noSdoInStateStopped();
    void resetNodeRestoresEverything();
    void resetCommunicationRestoresCommunicationOnly();
    void answersSdo();
    void valuesMoveWithTheClock();
    void stopEndsEverything();
    void startAgain();
    void severalNodes();
    void nodesThatCannotBeAreLeftOut();
    void realClockSendsHeartbeats();
};

void tst_Vehicle::bootUpThenHeartbeats()
{
    TestVehicle test;
    QVERIFY(!test.vehicle.isRunning());
    test.vehicle.start();
    QCOMPARE(test.take(), QByteArrayList({"705 00"}));
    test.pass(499);
    QCOMPARE(test.take(), QByteArrayList());
    test.pass(1);
    QCOMPARE(test.take(), QByteArrayList({"705 05"}));
    test.pass(1000);
    QCOMPARE(test.take(), QByteArrayList({"705 05", "705 05"}));
}

void tst_Vehicle::withoutBootUp()
{
    VehicleDescription description = TestVehicle::makeDescription({}, {});
    description.nodes[0].bootUp = false;
    description.nodes[0].state = NmtState::PreOperational;
    Vehicle vehicle(description);
    qint64 time = 0;
    QByteArrayList sent;
    vehicle.setClock([&time] { return time; });
    vehicle.setSender(
        [&sent](const QCanBusFrame &frame, quint8) { sent.append(TestVehicle::textOf(frame)); });
    vehicle.start();
    QCOMPARE(sent, QByteArrayList());
    time = 500000;
    vehicle.processDue();
    QCOMPARE(sent, QByteArrayList({"705 7f"}));
}

void tst_Vehicle::heartbeatTimeOfTheDictionary()
{
    VehicleDescription description = TestVehicle::makeDescription({}, {});
    description.nodes[0].heartbeatMs.reset();
    Vehicle vehicle(description);
    qint64 time = 0;
    int sent = 0;
    vehicle.setClock([&time] { return time; });
    vehicle.setSender([&sent](const QCanBusFrame &, quint8) { ++sent; });
    vehicle.start();
    sent = 0;
    time = 3000000;
    vehicle.processDue();
    QCOMPARE(sent, 3); // 1017h is 1000 ms
}

void tst_Vehicle::heartbeatTimeWritten()
{
    TestVehicle test;
    test.startQuietly();
    QCOMPARE(test.ask("4017100000000000"), QByteArrayList({"585 4b171000f4010000"}));
    QCOMPARE(test.ask("2b17100064000000"), QByteArrayList({"585 6017100000000000"})); // 100 ms
    test.pass(300);
    QCOMPARE(test.take(), QByteArrayList({"705 05", "705 05", "705 05"}));
    QCOMPARE(test.ask("2b17100000000000"), QByteArrayList({"585 6017100000000000"}));
    test.pass(60000);
    QCOMPARE(test.take(), QByteArrayList());
    QCOMPARE(test.ask("2b171000e8030000"), QByteArrayList({"585 6017100000000000"}));
    test.pass(1000);
    QCOMPARE(test.take(), QByteArrayList({"705 05"}));
}

void tst_Vehicle::nmtCommands_data()
{
    QTest::addColumn<QByteArrayList>("commands");
    QTest::addColumn<QByteArrayList>("atOnce");
    QTest::addColumn<QByteArray>("heartbeat");

    const QByteArrayList none;
    const QByteArrayList boot{"705 00"};
    QTest::newRow("stop") << QByteArrayList({"0205"}) << none << QByteArray("705 04");
    QTest::newRow("pre-operational") << QByteArrayList({"8005"}) << none << QByteArray("705 7f");
    QTest::newRow("start") << QByteArrayList({"8005", "0105"}) << none << QByteArray("705 05");
    QTest::newRow("start after stop") << QByteArrayList({"0205", "0105"}) << none << QByteArray("705 05");
    QTest::newRow("reset node") << QByteArrayList({"0205", "8105"}) << boot << QByteArray("705 05");
    QTest::newRow("reset communication") << QByteArrayList({"8005", "8205"}) << boot << QByteArray("705 05");
    QTest::newRow("all nodes") << QByteArrayList({"0200"}) << none << QByteArray("705 04");
}

void tst_Vehicle::nmtCommands()
{
    QFETCH(QByteArrayList, commands);
    QFETCH(QByteArrayList, atOnce);
    QFETCH(QByteArray, heartbeat);
    TestVehicle test;
    test.startQuietly();
    for (const QByteArray &command : commands)
        test.nmt(command.constData());
    QCOMPARE(test.take(), atOnce);
    test.pass(500);
    QCOMPARE(test.take(), QByteArrayList({heartbeat}));
}

void tst_Vehicle::nmtForOthersAndNonsense_data()
{
    QTest::addColumn<QByteArray>("payload");

    QTest::newRow("another node") << QByteArray("0206");
    QTest::newRow("unknown command") << QByteArray("0305");
    QTest::newRow("one byte") << QByteArray("02");
    QTest::newRow("no byte") << QByteArray("");
}

void tst_Vehicle::nmtForOthersAndNonsense()
{
    QFETCH(QByteArray, payload);
    TestVehicle test;
    test.startQuietly();
    test.nmt(payload.constData());
    QCOMPARE(test.take(), QByteArrayList());
    QCOMPARE(test.vehicle.node(5)->state(), NmtState::Operational);
}

void tst_Vehicle::noSdoInStateStopped()
{
    TestVehicle test;
    test.startQuietly();
    test.nmt("0205");
    QCOMPARE(test.ask("4001100000000000"), QByteArrayList());
    test.nmt("0105");
    QCOMPARE(test.ask("4001100000000000"), QByteArrayList({"585 4f01100081000000"}));
}

void tst_Vehicle::resetNodeRestoresEverything()
{
    TestVehicle test;
    test.startQuietly();
    test.ask("2b00200001000000");
    test.ask("2b17100000000000");
    QCOMPARE(test.ask("4000200000000000"), QByteArrayList({"585 4b00200001000000"}));
    test.nmt("8105");
    QCOMPARE(test.take(), QByteArrayList({"705 00"}));
    QCOMPARE(test.ask("4000200000000000"), QByteArrayList({"585 4b00200034120000"}));
    test.pass(500);
    QCOMPARE(test.take(), QByteArrayList({"705 05"}));
}

void tst_Vehicle::resetCommunicationRestoresCommunicationOnly()
{
    TestVehicle test;
    test.startQuietly();
    test.ask("2b00200001000000");
    test.ask("2b17100000000000");
    test.nmt("8205");
    QCOMPARE(test.take(), QByteArrayList({"705 00"}));
    QCOMPARE(test.ask("4000200000000000"), QByteArrayList({"585 4b00200001000000"}));
    QCOMPARE(test.ask("4017100000000000"), QByteArrayList({"585 4b171000f4010000"}));
}

void tst_Vehicle::answersSdo()
{
    TestVehicle test;
    QCOMPARE(test.ask("4001100000000000"), QByteArrayList()); // not running yet
    test.startQuietly();
    QCOMPARE(test.ask("4008100000000000"), QByteArrayList({"585 410810000f000000"}));
    QCOMPARE(test.ask("6000000000000000"), QByteArrayList({"585 00506564656c6563"}));
    QCOMPARE(test.ask("7000000000000000"), QByteArrayList({"585 1020626174746572"}));
    QCOMPARE(test.ask("6000000000000000"), QByteArrayList({"585 0d79000000000000"}));
    QCOMPARE(test.ask("4000700000000000"), QByteArrayList({"585 8000700000000206"}));

    test.vehicle.handleFrame(QCanBusFrame(0x606, QByteArray::fromHex("4001100000000000")));
    QCanBusFrame remote(0x605, QByteArray::fromHex("4001100000000000"));
    remote.setFrameType(QCanBusFrame::RemoteRequestFrame);
    test.vehicle.handleFrame(remote);
    test.vehicle.handleFrame(QCanBusFrame(0x605, QByteArray::fromHex("40011000000000")));
    test.vehicle.handleFrame(QCanBusFrame(0x605, QByteArray()));
    QCOMPARE(test.take(), QByteArrayList());
}

void tst_Vehicle::valuesMoveWithTheClock()
{
    Behaviour ramp;
    ramp.object = {0x2000, 0};
    ramp.kind = BehaviourKind::Ramp;
    ramp.from = 0;
    ramp.to = 1000;
    ramp.seconds = 10;
    TestVehicle test({}, {ramp});
    test.time = 77000000;
    test.startQuietly();
    QCOMPARE(test.ask("4000200000000000"), QByteArrayList({"585 4b00200000000000"}));
    test.time += 5000000;
    QCOMPARE(test.ask("4000200000000000"), QByteArrayList({"585 4b002000f4010000"}));
    test.time += 50000000;
    QCOMPARE(test.ask("4000200000000000"), QByteArrayList({"585 4b002000e8030000"}));
    // Also for a block upload.
    QCOMPARE(test.ask("a40020007f000000"), QByteArrayList({"585 c600200002000000"}));
    QCOMPARE(test.ask("a300000000000000"), QByteArrayList({"585 81e8030000000000"}));
}

void tst_Vehicle::stopEndsEverything()
{
    TestVehicle test;
    test.startQuietly();
    test.vehicle.stop();
    test.pass(5000);
    test.ask("4001100000000000");
    test.nmt("8105");
    QCOMPARE(test.take(), QByteArrayList());
}

void tst_Vehicle::startAgain()
{
    TestVehicle test;
    test.startQuietly();
    test.ask("2b00200001000000");
    test.vehicle.stop();
    test.vehicle.start();
    QCOMPARE(test.take(), QByteArrayList({"705 00"}));
    QCOMPARE(test.ask("4000200000000000"), QByteArrayList({"585 4b00200034120000"}));
    test.pass(500);
    QCOMPARE(test.take(), QByteArrayList({"705 05"}));
}

void tst_Vehicle::severalNodes()
{
    VehicleDescription description = TestVehicle::makeDescription({}, {});
    description.nodes.append(description.nodes.first());
    description.nodes[1].id = 127;
    Vehicle vehicle(description);
    QCOMPARE(vehicle.nodeIds(), QVector<quint8>({5, 127}));
    QByteArrayList sent;
    QVector<int> senders;
    vehicle.setClock([] { return qint64(0); });
    vehicle.setSender([&](const QCanBusFrame &frame, quint8 nodeId) {
        sent.append(TestVehicle::textOf(frame));
        senders.append(nodeId);
    });
    vehicle.start();
    QCOMPARE(sent, QByteArrayList({"705 00", "77f 00"}));
    QCOMPARE(senders, QVector<int>({5, 127}));
    sent.clear();
    vehicle.handleFrame(QCanBusFrame(0x67F, QByteArray::fromHex("4001100000000000")));
    QCOMPARE(sent, QByteArrayList({"5ff 4f01100081000000"}));
    vehicle.handleFrame(QCanBusFrame(0x000, QByteArray::fromHex("0200")));
    QCOMPARE(vehicle.node(5)->state(), NmtState::Stopped);
    QCOMPARE(vehicle.node(127)->state(), NmtState::Stopped);
}

void tst_Vehicle::nodesThatCannotBeAreLeftOut()
{
    VehicleDescription description = TestVehicle::makeDescription({}, {});
    for (const int id : {0, 128, 255, 5}) {
        description.nodes.append(description.nodes.first());
        description.nodes.last().id = static_cast<quint8>(id);
    }
    Vehicle vehicle(description);
    QCOMPARE(vehicle.nodeIds(), QVector<quint8>({5}));
    for (const int id : {-1, 0, 1, 128, 255, 100000})
        QVERIFY(vehicle.node(id) == nullptr);
}

void tst_Vehicle::realClockSendsHeartbeats()
{
    VehicleDescription description = TestVehicle::makeDescription({}, {});
    description.nodes[0].heartbeatMs = 5;
    Vehicle vehicle(description);
    int heartbeats = 0;
    vehicle.setSender([&heartbeats](const QCanBusFrame &, quint8) { ++heartbeats; });
    vehicle.start();
    QTRY_VERIFY(heartbeats >= 5);
}

QTEST_GUILESS_MAIN(tst_Vehicle)
#include "tst_vehicle.moc"
