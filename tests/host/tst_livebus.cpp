// SPDX-License-Identifier: MIT
#include <tests/support/fakebus.h>

#include <host/core/livebus.h>
#include <live/events/eventwords.h>
#include <trace/playback/playbackstate.h>

#include <QSignalSpy>
#include <QtTest>

#include <limits>
#include <memory>

/*! Health, events and values of a connection with a device that obeys the test. */
class tst_LiveBus : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void listensAndSendsNothing();
    void nothingBeforeTheStart();
    void nothingAfterTheEnd();
    void ownRequestsAreKnown();
    void ownRequestsThatWaitAreKnown();
    void foreignRequestsAreKnown();
    void lossIsAnEvent();
    void busOffEndsWithTheAdapter();
    void silentNodeIsFound();
    void stampsCount();
    void timeOfDay();
    void beginsAnew();
    void playedTraceHasItsOwnTime();
    void playedTraceWithoutADay();
    void framesOfATraceThatComeAtOnce();
    void traceOfNoTime();

private:
    void play(qint64 time, bool hasTimeOfDay);
    void heartbeats(int count);
    QStringList kinds() const
    {
        QStringList names;
        for (const LiveEvent &event : m_live->events().list().events())
            names.append(eventKindName(event.kind));
        return names;
    }
    NodeNumbers node(int id)
    {
        for (const NodeNumbers &node : m_live->healthNumbers().nodes) {
            if (node.id == id)
                return node;
        }
        return {};
    }

    std::unique_ptr<FakeBus> m_fake;
    std::unique_ptr<BusConnection> m_bus;
    std::unique_ptr<LiveBus> m_live;
};

void tst_LiveBus::init()
{
    m_fake = std::make_unique<FakeBus>();
    m_bus = std::make_unique<BusConnection>();
    m_bus->setDeviceFactory(m_fake->factory());
    m_live = std::make_unique<LiveBus>(m_bus.get());
    QString error;
    QVERIFY2(m_bus->connectToBus(fakeSettings(), &error), qPrintable(error));
}

void tst_LiveBus::cleanup()
{
    m_live.reset();
    m_bus.reset();
    m_fake.reset();
}

void tst_LiveBus::heartbeats(int count)
{
    for (int i = 0; i < count; ++i) {
        m_fake->heartbeat(5);
        QTest::qWait(500);
    }
}

void tst_LiveBus::listensAndSendsNothing()
{
    m_live->start();
    heartbeats(6);
    QTest::qWait(60000);
    QCOMPARE(m_fake->device()->written().size(), 0);
    QCOMPARE(node(5).heartbeat.count, quint64(6));
    QVERIFY(qAbs(*node(5).heartbeat.period - 500) < 50);
    QCOMPARE(m_live->healthNumbers().frames, quint64(6));
}

void tst_LiveBus::nothingBeforeTheStart()
{
    heartbeats(1);
    QCOMPARE(m_live->now(), qint64(0));
    m_live->start();
    QCOMPARE(m_live->healthNumbers().frames, quint64(0));
}

void tst_LiveBus::nothingAfterTheEnd()
{
    m_live->start();
    m_live->stop();
    heartbeats(1);
    m_bus->disconnectFromBus();
    QCOMPARE(m_live->healthNumbers().frames, quint64(0));
    QCOMPARE(kinds(), QStringList());
}

void tst_LiveBus::ownRequestsAreKnown()
{
    m_fake->addNode(5);
    m_live->start();
    m_bus->sdoClient().upload(5, {0x1000, 0}, CanOpen::DataType::Unsigned32);
    QSignalSpy finished(&m_bus->sdoClient(), &CanOpen::SdoClient::finished);
    QVERIFY(finished.count() == 1 || finished.wait(5000));
    QCOMPARE(node(5).sdo.answers, quint64(1));
    QCOMPARE(node(5).sdo.requests, quint64(1));
    QCOMPARE(node(5).sdo.foreignRequests, quint64(0));
    QCOMPARE(m_live->healthNumbers().frames, quint64(2));
}

void tst_LiveBus::ownRequestsThatWaitAreKnown()
{
    m_fake->addNode(5);
    m_fake->device()->failEveryNthWrite(1);
    m_live->start();
    m_bus->sdoClient().upload(5, {0x1000, 0}, CanOpen::DataType::Unsigned32);
    QCOMPARE(node(5).sdo.requests, quint64(0)); // has not left yet
    m_fake->device()->failEveryNthWrite(0);
    QSignalSpy finished(&m_bus->sdoClient(), &CanOpen::SdoClient::finished);
    QVERIFY(finished.wait(5000));
    QCOMPARE(node(5).sdo.requests, quint64(1));
    QCOMPARE(node(5).sdo.answers, quint64(1));
}

void tst_LiveBus::foreignRequestsAreKnown()
{
    m_live->start();
    m_fake->device()->inject(QCanBusFrame(0x605, QByteArray::fromHex("4000100000000000")));
    QTest::qWait(10);
    QCOMPARE(m_live->healthNumbers().nodesAskedByOthers(), QVector<quint8>{5});
}

void tst_LiveBus::lossIsAnEvent()
{
    m_live->start();
    heartbeats(4);
    m_fake->refusal = QStringLiteral("gone");
    m_fake->device()->goUnconnected();
    QTest::qWait(60000);
    QCOMPARE(kinds(), (QStringList{QStringLiteral("nodeHeard"), QStringLiteral("interfaceGone")}));
    QVERIFY(!m_live->events().list().events().back().detail.isEmpty());
    QVERIFY(!node(5).heartbeat.isLost);
    m_fake->refusal.clear();
    QTest::qWait(3000);
    heartbeats(2);
    QCOMPARE(kinds(), (QStringList{QStringLiteral("nodeHeard"), QStringLiteral("interfaceGone"),
                                   QStringLiteral("interfaceBack")}));
    QCOMPARE(node(5).heartbeat.missed, quint64(0));
}

/*! The device does not tell its state, so nobody would say that it is another one after the plug was drawn. */
void tst_LiveBus::busOffEndsWithTheAdapter()
{
    m_live->start();
    QCanBusFrame frame(QCanBusFrame::ErrorFrame);
    frame.setError(QCanBusFrame::BusOffError);
    frame.setPayload(QByteArray(8, '\0'));
    m_fake->device()->inject(frame);
    QTRY_COMPARE(m_live->healthNumbers().controller, InterfaceHealth::State::BusOff);
    m_fake->device()->goUnconnected();
    QTRY_COMPARE(m_fake->devicesMade(), 2);
    QTRY_COMPARE(m_bus->state(), BusConnection::State::Connected);
    heartbeats(1);
    QCOMPARE(m_live->healthNumbers().controller, InterfaceHealth::State::Unknown);
}

void tst_LiveBus::silentNodeIsFound()
{
    m_live->start();
    heartbeats(4);
    QSignalSpy ticked(m_live.get(), &LiveBus::ticked);
    QTest::qWait(4000);
    QVERIFY(ticked.count() > 30);
    QCOMPARE(kinds(), (QStringList{QStringLiteral("nodeHeard"), QStringLiteral("nodeLost")}));
}

void tst_LiveBus::stampsCount()
{
    m_live->start();
    for (int i = 0; i < 6; ++i) { // all but the first at once, and the driver knows when they came
        if (i == 1)
            QTest::qWait(600);
        QCanBusFrame frame(0x705, QByteArray(1, '\5'));
        frame.setTimeStamp(QCanBusFrame::TimeStamp(1000000, i * 100000));
        m_fake->device()->inject(frame);
    }
    QTest::qWait(10);
    QCOMPARE(*node(5).heartbeat.period, 100.0);
}

void tst_LiveBus::timeOfDay()
{
    const QDateTime before = QDateTime::currentDateTime();
    m_live->start();
    const QDateTime after = QDateTime::currentDateTime();
    QVERIFY(m_live->timeOfDay(0) >= before && m_live->timeOfDay(0) <= after);
    QCOMPARE(m_live->timeOfDay(0).msecsTo(m_live->timeOfDay(1500000)), qint64(1500));
    QVERIFY(m_live->timeOfDay(0).timeSpec() != Qt::LocalTime);
}

void tst_LiveBus::beginsAnew()
{
    m_live->start();
    heartbeats(2);
    m_live->values().note(5, {0x6040, 1}, 1, 0);
    m_live->start();
    QCOMPARE(m_live->healthNumbers().frames, quint64(0));
    QCOMPARE(kinds(), QStringList());
    QVERIFY(m_live->values().values().empty());
}

/*! What the device of a trace tells: us. */
void tst_LiveBus::play(qint64 time, bool hasTimeOfDay)
{
    PlaybackState state;
    state.time = time;
    state.hasTimeOfDay = hasTimeOfDay;
    m_fake->device()->setProperty("playback", state.toMap());
    m_fake->device()->setProperty("busTime", time);
}

void tst_LiveBus::playedTraceHasItsOwnTime()
{
    constexpr qint64 then = Q_INT64_C(1600000000000000); // us
    constexpr qint64 period = 500000;
    play(then, true);
    m_live->start();
    QCOMPARE(m_live->timeOfDay(0).toMSecsSinceEpoch(), Q_INT64_C(1600000000000));
    for (int i = 0; i < 4; ++i) { // all at once for the clock of here
        play(then + i * period, true);
        QCanBusFrame frame(0x705, QByteArray(1, '\5'));
        frame.setTimeStamp(QCanBusFrame::TimeStamp::fromMicroSeconds(then + i * period));
        m_fake->device()->inject(frame);
        QTest::qWait(1);
    }
    QCOMPARE(*node(5).heartbeat.period, 500.0);
    QTest::qWait(60000); // it is paused, or over
    QCOMPARE(kinds(), QStringList(QStringLiteral("nodeHeard")));
    QCOMPARE(m_live->now(), 3 * period);
    play(then + 20 * period, true);
    QTest::qWait(200);
    QCOMPARE(kinds(), (QStringList{QStringLiteral("nodeHeard"), QStringLiteral("nodeLost")}));
}

void tst_LiveBus::playedTraceWithoutADay()
{
    const QDateTime before = QDateTime::currentDateTime();
    play(1500000, false);
    m_live->start();
    QVERIFY(m_live->timeOfDay(0) >= before);
    play(2500000, false);
    QCOMPARE(m_live->now(), Q_INT64_C(1000000));
}

/*! A trace without pauses may be far ahead of what was delivered of it. */
void tst_LiveBus::framesOfATraceThatComeAtOnce()
{
    play(0, false);
    m_live->start();
    play(5000000, false);
    QVector<QCanBusFrame> frames;
    for (int i = 0; i <= 10; ++i) {
        frames.append(QCanBusFrame(0x705, QByteArray(1, '\5')));
        frames.last().setTimeStamp(QCanBusFrame::TimeStamp::fromMicroSeconds(i * 500000));
    }
    m_fake->device()->inject(frames);
    QTest::qWait(1000);
    QCOMPARE(*node(5).heartbeat.period, 500.0);
    QCOMPARE(node(5).heartbeat.longestGap.value_or(0), 500.0);
    QCOMPARE(kinds(), QStringList(QStringLiteral("nodeHeard")));
}

void tst_LiveBus::traceOfNoTime()
{
    play(std::numeric_limits<qint64>::min(), true);
    m_live->start();
    heartbeats(6);
    QVERIFY(qAbs(*node(5).heartbeat.period - 500) < 50);
}

QTEST_GUILESS_MAIN(tst_LiveBus)
#include "tst_livebus.moc"
