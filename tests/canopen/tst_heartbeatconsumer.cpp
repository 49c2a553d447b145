// SPDX-License-Identifier: MIT
#include <canopen/heartbeatconsumer.h>

#include <QCanBusFrame>
#include <QSignalSpy>
#include <QtTest>

#include <memory>
#include <utility>

using namespace CanOpen;
using namespace std::chrono_literals;

Q_DECLARE_METATYPE(CanOpen::NmtState)

namespace {

qint64 now = 0; // ms

qint64 testClock()
{
    return now;
}

QCanBusFrame heartbeat(quint8 nodeId, int state)
{
    return QCanBusFrame(0x700u + nodeId, QByteArray(1, static_cast<char>(state)));
}

// A consumer with the test's time, and what it says.
struct Fixture
{
    Fixture()
    {
        now = 1000;
        consumer.setClock(testClock);
    }

    void hear(qint64 time, quint8 nodeId, int state)
    {
        now = time;
        consumer.handleFrame(heartbeat(nodeId, state));
    }

    HeartbeatConsumer consumer;
    QSignalSpy received{&consumer, &HeartbeatConsumer::heartbeatReceived};
    QSignalSpy changed{&consumer, &HeartbeatConsumer::stateChanged};
    QSignalSpy lost{&consumer, &HeartbeatConsumer::nodeLost};
};

} // namespace

class tst_HeartbeatConsumer : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void followsStates();
    void toggleBitIsNoChange();
    void otherFramesAreIgnored();
    void lostAfterMinimumTimeout();
    void lostAfterThreeOwnPeriods();
    void heardOnceIsNotLost();
    void bootUpTellsNoPeriod();
    void doubledFrameTellsNoPeriod();
    void lostNodeComesBack();
    void oneMissedHeartbeatIsNoLoss();
    void minimumTimeoutCanBeSet();
    void clearForgetsSilently();
    void everyNodeOnItsOwn();
    void timerLooksOfItself();
    void mayBeDeletedInASlot_data();
    void mayBeDeletedInASlot();
};

void tst_HeartbeatConsumer::initTestCase()
{
    qRegisterMetaType<CanOpen::NmtState>("CanOpen::NmtState");
}

void tst_HeartbeatConsumer::followsStates()
{
    Fixture test;
    QVERIFY(!test.consumer.state(5));
    test.hear(1000, 5, 0x00);
    QCOMPARE(test.received.count(), 1);
    QCOMPARE(test.changed.count(), 1);
    QCOMPARE(test.consumer.activeNodeCount(), 1);
    QCOMPARE(*test.consumer.state(5), NmtState::BootUp);

    test.hear(1500, 5, 0x7F);
    test.hear(2000, 5, 0x7F);
    QCOMPARE(test.received.count(), 3);
    QCOMPARE(test.changed.count(), 2);
    QCOMPARE(test.changed.last().at(0).value<quint8>(), quint8(5));
    QCOMPARE(test.changed.last().at(1).value<NmtState>(), NmtState::PreOperational);

    test.hear(2500, 5, 0x05);
    QCOMPARE(*test.consumer.state(5), NmtState::Operational);
    QCOMPARE(test.changed.count(), 3);
    QCOMPARE(test.consumer.activeNodeCount(), 1);
    QVERIFY(!test.consumer.state(0));
    QVERIFY(!test.consumer.state(128));
    QVERIFY(!test.consumer.state(255));
}

void tst_HeartbeatConsumer::toggleBitIsNoChange()
{
    Fixture test;
    test.hear(1000, 5, 0x05);
    test.hear(1100, 5, 0x85);
    test.hear(1200, 5, 0x05);
    QCOMPARE(test.received.count(), 3);
    QCOMPARE(test.changed.count(), 1);
}

void tst_HeartbeatConsumer::otherFramesAreIgnored()
{
    Fixture test;
    test.consumer.handleFrame(QCanBusFrame(0x585, QByteArray(8, '\5')));
    test.consumer.handleFrame(QCanBusFrame(0x705, QByteArray()));
    test.consumer.handleFrame(QCanBusFrame(0x705, QByteArray(1, '\1')));
    QCOMPARE(test.received.count(), 0);
    QCOMPARE(test.consumer.activeNodeCount(), 0);
}

void tst_HeartbeatConsumer::lostAfterMinimumTimeout()
{
    Fixture test;
    test.hear(1000, 5, 0x05);
    test.hear(1100, 5, 0x05);
    test.consumer.checkTimeouts(1100 + 2000);
    QCOMPARE(test.lost.count(), 0);
    test.consumer.checkTimeouts(1100 + 2001);
    QCOMPARE(test.lost.count(), 1);
    QCOMPARE(test.lost.first().first().value<quint8>(), quint8(5));
    QVERIFY(!test.consumer.state(5));
    QCOMPARE(test.consumer.activeNodeCount(), 0);
    test.consumer.checkTimeouts(1100 + 9000);
    QCOMPARE(test.lost.count(), 1);
}

void tst_HeartbeatConsumer::lostAfterThreeOwnPeriods()
{
    Fixture test;
    test.hear(1000, 5, 0x05);
    test.hear(6000, 5, 0x05);
    test.consumer.checkTimeouts(6000 + 15000);
    QCOMPARE(test.lost.count(), 0);
    test.consumer.checkTimeouts(6000 + 15001);
    QCOMPARE(test.lost.count(), 1);
}

void tst_HeartbeatConsumer::heardOnceIsNotLost()
{
    Fixture test;
    test.hear(1000, 5, 0x05);
    test.hear(1000, 6, 0x00);
    test.consumer.checkTimeouts(1000 + 3600000);
    QCOMPARE(test.lost.count(), 0);
    QCOMPARE(test.consumer.activeNodeCount(), 2);
}

// The first heartbeat may follow the boot-up message at any time.
void tst_HeartbeatConsumer::bootUpTellsNoPeriod()
{
    Fixture test;
    test.hear(1000, 5, 0x00);
    test.hear(1010, 5, 0x7F);
    test.consumer.checkTimeouts(1010 + 4999);
    QCOMPARE(test.lost.count(), 0);
    test.hear(6010, 5, 0x7F);
    test.consumer.checkTimeouts(6010 + 15000);
    QCOMPARE(test.lost.count(), 0);
    test.consumer.checkTimeouts(6010 + 15001);
    QCOMPARE(test.lost.count(), 1);
}

void tst_HeartbeatConsumer::doubledFrameTellsNoPeriod()
{
    Fixture test;
    test.hear(1000, 5, 0x05);
    test.hear(6000, 5, 0x05);
    test.hear(6001, 5, 0x05);
    test.consumer.checkTimeouts(6001 + 10000);
    QCOMPARE(test.lost.count(), 0);
}

void tst_HeartbeatConsumer::lostNodeComesBack()
{
    Fixture test;
    test.hear(1000, 5, 0x05);
    test.hear(1100, 5, 0x05);
    test.consumer.checkTimeouts(9000);
    QCOMPARE(test.lost.count(), 1);
    test.hear(60000, 5, 0x05);
    QCOMPARE(test.changed.count(), 2); // heard again, though in the same state
    QCOMPARE(test.consumer.activeNodeCount(), 1);
    // The gap is not its period.
    test.hear(60100, 5, 0x05);
    test.consumer.checkTimeouts(60100 + 2001);
    QCOMPARE(test.lost.count(), 2);
}

void tst_HeartbeatConsumer::oneMissedHeartbeatIsNoLoss()
{
    Fixture test;
    test.hear(1000, 5, 0x05);
    test.hear(2000, 5, 0x05);
    test.consumer.checkTimeouts(4900);
    QCOMPARE(test.lost.count(), 0);
}

void tst_HeartbeatConsumer::minimumTimeoutCanBeSet()
{
    Fixture test;
    test.consumer.setMinimumTimeout(500ms);
    test.consumer.setMinimumTimeout(0ms); // not positive: no effect
    test.hear(1000, 5, 0x05);
    test.hear(1100, 5, 0x05);
    test.consumer.checkTimeouts(1600);
    QCOMPARE(test.lost.count(), 0);
    test.consumer.checkTimeouts(1601);
    QCOMPARE(test.lost.count(), 1);
}

void tst_HeartbeatConsumer::clearForgetsSilently()
{
    Fixture test;
    test.hear(1000, 5, 0x05);
    test.hear(1100, 5, 0x05);
    test.consumer.clear();
    QVERIFY(!test.consumer.state(5));
    QCOMPARE(test.consumer.activeNodeCount(), 0);
    test.consumer.checkTimeouts(100000);
    QCOMPARE(test.lost.count(), 0);
    QCOMPARE(test.changed.count(), 1);
}

void tst_HeartbeatConsumer::everyNodeOnItsOwn()
{
    Fixture test;
    for (int round = 0; round < 2; ++round) {
        for (int nodeId = 1; nodeId <= 127; ++nodeId)
            test.hear(1000 + 100 * round, static_cast<quint8>(nodeId), 0x05);
    }
    QCOMPARE(test.consumer.activeNodeCount(), 127);
    test.hear(3000, 64, 0x05);
    test.consumer.checkTimeouts(3200);
    QCOMPARE(test.lost.count(), 126);
    QCOMPARE(test.consumer.activeNodeCount(), 1);
    QVERIFY(test.consumer.state(64));
}

// With the consumer's own clock and timer.
void tst_HeartbeatConsumer::timerLooksOfItself()
{
    HeartbeatConsumer consumer;
    consumer.setMinimumTimeout(50ms);
    QSignalSpy lost(&consumer, &HeartbeatConsumer::nodeLost);
    consumer.handleFrame(heartbeat(5, 0x05));
    QTimer::singleShot(5, &consumer, [&consumer] { consumer.handleFrame(heartbeat(5, 0x05)); });
    QTRY_COMPARE(lost.count(), 1);
    QCOMPARE(consumer.activeNodeCount(), 0);
}

void tst_HeartbeatConsumer::mayBeDeletedInASlot_data()
{
    QTest::addColumn<QString>("where");
    for (const char *where : {"received", "changed", "lost"})
        QTest::newRow(where) << QString::fromLatin1(where);
}

void tst_HeartbeatConsumer::mayBeDeletedInASlot()
{
    QFETCH(QString, where);
    now = 1000;
    auto *consumer = new HeartbeatConsumer;
    consumer->setClock(testClock);
    const auto remove = [&consumer] { delete std::exchange(consumer, nullptr); };
    if (where == QLatin1String("received"))
        connect(consumer, &HeartbeatConsumer::heartbeatReceived, this, remove);
    if (where == QLatin1String("changed"))
        connect(consumer, &HeartbeatConsumer::stateChanged, this, remove);
    if (where == QLatin1String("lost"))
        connect(consumer, &HeartbeatConsumer::nodeLost, this, remove);

    consumer->handleFrame(heartbeat(5, 0x05));
    if (where == QLatin1String("lost")) {
        now = 1100;
        consumer->handleFrame(heartbeat(5, 0x05));
        consumer->checkTimeouts(9000);
    }
    QVERIFY(consumer == nullptr);
}

QTEST_GUILESS_MAIN(tst_HeartbeatConsumer)

#include "tst_heartbeatconsumer.moc"
