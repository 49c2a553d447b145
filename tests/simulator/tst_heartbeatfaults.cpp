// SPDX-License-Identifier: MIT
#include "testvehicle.h"

#include <QtTest>

using namespace Simulator;
using std::chrono::milliseconds;

/*! What simulated nodes do wrong with heartbeats, boot-up messages and NMT states. */
class tst_HeartbeatFaults : public QObject
{
    Q_OBJECT

private slots:
    void silent();
    void silentFromTheThirdRequest();
    void noBootUp();
    void noHeartbeat();
    void babbleHeartbeat();
    void heartbeatTopBit();
    void heartbeatLength_data();
    void heartbeatLength();
    void heartbeatRemote();
    void stopped();
    void restarts();
    void restartsAtChanceMoments();
};

void tst_HeartbeatFaults::silent()
{
    TestVehicle test({Faults::Silent()});
    test.vehicle.start();
    test.pass(5000);
    test.nmt("8105");
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList());
}

void tst_HeartbeatFaults::silentFromTheThirdRequest()
{
    Faults::Silent silent;
    silent.from = 3;
    TestVehicle test({silent});
    test.vehicle.start();
    QCOMPARE(test.take(), QByteArrayList({"705 00"}));
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
    test.pass(500);
    QCOMPARE(test.take(), QByteArrayList({"705 05"}));
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList());
    test.pass(5000);
    QCOMPARE(test.take(), QByteArrayList());
}

void tst_HeartbeatFaults::noBootUp()
{
    TestVehicle test({Faults::NoBootUp()});
    test.vehicle.start();
    QCOMPARE(test.take(), QByteArrayList());
    test.pass(500);
    QCOMPARE(test.take(), QByteArrayList({"705 05"}));
}

void tst_HeartbeatFaults::noHeartbeat()
{
    TestVehicle test({Faults::NoHeartbeat()});
    test.vehicle.start();
    test.pass(5000);
    QCOMPARE(test.take(), QByteArrayList({"705 00"}));
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
}

void tst_HeartbeatFaults::babbleHeartbeat()
{
    Faults::BabbleHeartbeat babble;
    babble.interval = milliseconds(10);
    TestVehicle test({babble});
    test.startQuietly();
    test.pass(100);
    QCOMPARE(test.take().count("705 05"), 10);
}

void tst_HeartbeatFaults::heartbeatTopBit()
{
    TestVehicle test({Faults::HeartbeatTopBit()});
    test.startQuietly();
    test.pass(500);
    QCOMPARE(test.take(), QByteArrayList({"705 85"}));
}

void tst_HeartbeatFaults::heartbeatLength_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<QByteArray>("frame");

    QTest::newRow("0") << 0 << QByteArray("705 ");
    QTest::newRow("1") << 1 << QByteArray("705 05");
    QTest::newRow("2") << 2 << QByteArray("705 0500");
    QTest::newRow("8") << 8 << QByteArray("705 0500000000000000");
}

void tst_HeartbeatFaults::heartbeatLength()
{
    QFETCH(int, length);
    QFETCH(QByteArray, frame);
    Faults::HeartbeatLength wrong;
    wrong.length = length;
    TestVehicle test({wrong});
    test.startQuietly();
    test.pass(500);
    QCOMPARE(test.take(), QByteArrayList({frame}));
}

void tst_HeartbeatFaults::heartbeatRemote()
{
    TestVehicle test({Faults::HeartbeatRemote()});
    test.startQuietly();
    test.pass(500);
    QCOMPARE(test.take(), QByteArrayList({"705 R1"}));
}

void tst_HeartbeatFaults::stopped()
{
    TestVehicle test({Faults::Stopped()});
    test.vehicle.start();
    test.pass(500);
    QCOMPARE(test.take(), QByteArrayList({"705 00", "705 04"}));
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList());
    test.nmt("0105");
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
}

void tst_HeartbeatFaults::restarts()
{
    Faults::Restarts restarts;
    restarts.interval = milliseconds(200);
    TestVehicle test({restarts});
    test.vehicle.start();
    QCOMPARE(test.ask(readName), QByteArrayList({"705 00", nameAnswer}));
    test.pass(200);
    // The transfer is lost, and the heartbeat is never due.
    QCOMPARE(test.ask("6000000000000000"), QByteArrayList({"705 00", "585 8000000001000405"}));
    for (int step = 0; step < 10; ++step)
        test.pass(100);
    QCOMPARE(test.take(), QByteArrayList({"705 00", "705 00", "705 00", "705 00", "705 00"}));
    test.vehicle.clearFaults();
    test.pass(500);
    QCOMPARE(test.take(), QByteArrayList({"705 05"}));
}

void tst_HeartbeatFaults::restartsAtChanceMoments()
{
    Faults::Restarts restarts;
    restarts.interval = milliseconds(1000);
    restarts.random = true;
    TestVehicle test({restarts});
    test.startQuietly();
    QSet<int> gaps; // in steps of 100 ms
    int lastRestart = 0;
    int count = 0;
    for (int step = 1; step <= 1000; ++step) {
        test.pass(100);
        if (test.take().contains("705 00")) {
            gaps.insert(step - lastRestart);
            lastRestart = step;
            ++count;
        }
    }
    QVERIFY2(count > 60 && count < 140, qPrintable(QString::number(count))); // 100 on average
    QVERIFY(gaps.size() > 5);
}

QTEST_GUILESS_MAIN(tst_HeartbeatFaults)
#include "tst_heartbeatfaults.moc"
