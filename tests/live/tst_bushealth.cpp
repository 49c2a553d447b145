// SPDX-License-Identifier: MIT
#include "frames.h"

#include <live/health/bushealth.h>

#include <QtTest>

#include <memory>
#include <random>

namespace {

constexpr int bitRate = 250000;

const NodeNumbers *nodeIn(const HealthNumbers &numbers, int id)
{
    for (const NodeNumbers &node : numbers.nodes) {
        if (node.id == id)
            return &node;
    }
    return nullptr;
}

const KindNumbers &kindIn(const HealthNumbers &numbers, FrameKind kind)
{
    return numbers.kinds[static_cast<std::size_t>(kind)];
}

} // namespace

/*! The health of a bus by frames whose times are typed here. */
class tst_BusHealth : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void silentBus();
    void load();
    void peakIsTheBusiestSecond();
    void peakBeginsAtAnyTenth();
    void shortRun();
    void peakIsNeverBelowTheMean();
    void noLoadWithoutBitRate();
    void framesByKind();
    void bursts();
    void heartbeatPeriod();
    void lateHeartbeats();
    void missedBeforeThePeriodWasKnown();
    void configuredPeriodCounts();
    void silenceAtTheEnd();
    void singleHeartbeatIsNotLost();
    void bootUpIsNoInterval();
    void restarts();
    void interruptionIsNobodysFault();
    void onlyWhoIsHeardAgainIsThere();
    void oddHeartbeats();
    void answerTimes();
    void whoeverAsked();
    void unanswered();
    void lateAnswerIsNone();
    void aborts();
    void blocksAreNoPairs();
    void brokenBlocks();
    void blocksOfADeviceThatRestarts();
    void blocksThatAreAnsweredOtherwise();
    void blocksThatAreAnsweredNoMore();
    void emergencies();
    void shareOfTheBus();
    void controller();
    void controllerIsForgottenWhenTheBusIsAway();
    void oldDriversCounters();
    void clockJumpsBack();
    void clockJumpsForward();
    void anythingMayCome();

private:
    void feed(qint64 time, quint32 id, const char *hex, FrameSource source = FrameSource::Others)
    {
        m_health->handle(frameAt(time, id, hex, source));
    }
    void feedHeartbeats(int node, std::initializer_list<qint64> milliseconds);

    std::unique_ptr<BusHealth> m_health;
};

void tst_BusHealth::init()
{
    m_health = std::make_unique<BusHealth>();
    m_health->start(0);
    m_health->setBitRate(bitRate);
}

void tst_BusHealth::feedHeartbeats(int node, std::initializer_list<qint64> milliseconds)
{
    for (const qint64 time : milliseconds)
        feed(time * millisecond, 0x700 + quint32(node), "05");
}

void tst_BusHealth::silentBus()
{
    const HealthNumbers numbers = m_health->numbers(10 * second);
    QCOMPARE(numbers.duration, 10000.0);
    QCOMPARE(*numbers.meanLoad, 0.0);
    QCOMPARE(*numbers.peakLoad, 0.0);
    QCOMPARE(numbers.frames, quint64(0));
    QVERIFY(numbers.nodes.isEmpty());
    QVERIFY(!numbers.longestBurst);
}

void tst_BusHealth::load()
{
    // 53 bits each: 47, and a stuff bit after each five of 34 zeros
    for (int i = 0; i < 1000; ++i)
        feed(i * 2 * millisecond, 0x000, "");
    const HealthNumbers numbers = m_health->numbers(2 * second);
    QCOMPARE(*numbers.meanLoad, 53.0 * 1000 / (2 * bitRate));
    QCOMPARE(*numbers.peakLoad, 53.0 * 500 / bitRate);
    QCOMPARE(*numbers.lastLoad, 53.0 * 500 / bitRate);
    QCOMPARE(numbers.frames, quint64(1000));
    QCOMPARE(numbers.framesPerSecond, 500.0);
}

void tst_BusHealth::peakIsTheBusiestSecond()
{
    for (int i = 0; i < 300; ++i)
        feed(3 * second + i * millisecond, 0x000, "");
    const HealthNumbers numbers = m_health->numbers(10 * second);
    QCOMPARE(*numbers.meanLoad, 53.0 * 300 / (10 * bitRate));
    QCOMPARE(*numbers.peakLoad, 53.0 * 300 / bitRate);
    QCOMPARE(*numbers.lastLoad, 0.0);
}

void tst_BusHealth::peakBeginsAtAnyTenth()
{
    for (int i = 0; i < 1000; ++i)
        feed(3500 * millisecond + i * millisecond, 0x000, "");
    QCOMPARE(*m_health->numbers(10 * second).peakLoad, 53.0 * 1000 / bitRate);
}

void tst_BusHealth::shortRun()
{
    for (int i = 0; i < 100; ++i)
        feed(i * millisecond, 0x000, "");
    const HealthNumbers numbers = m_health->numbers(500 * millisecond);
    QCOMPARE(*numbers.peakLoad, 53.0 * 100 * 2 / bitRate);
    QCOMPARE(*numbers.peakLoad, *numbers.meanLoad);
    QVERIFY(!numbers.lastLoad);
}

void tst_BusHealth::peakIsNeverBelowTheMean()
{
    for (int i = 0; i < 50; ++i)
        feed(second + i * millisecond, 0x000, "");
    const HealthNumbers numbers = m_health->numbers(second + 50 * millisecond);
    QCOMPARE(*numbers.meanLoad, 53.0 * 50 / (1.05 * bitRate));
    QCOMPARE(*numbers.peakLoad, *numbers.meanLoad);
}

void tst_BusHealth::noLoadWithoutBitRate()
{
    m_health->setBitRate(0);
    feed(0, 0x705, "05");
    const HealthNumbers numbers = m_health->numbers(second);
    QVERIFY(!numbers.meanLoad);
    QVERIFY(!numbers.peakLoad);
    QVERIFY(!numbers.longestBurst);
    QVERIFY(!nodeIn(numbers, 5)->load);
    QCOMPARE(numbers.frames, quint64(1));
}

void tst_BusHealth::framesByKind()
{
    feed(0, 0x000, "0100");
    feed(0, 0x080, "");
    feed(0, 0x080, "");
    feed(0, 0x100, "000000000000");
    feed(0, 0x085, "0000000000000000");
    feed(0, 0x185, "00");
    feed(1900 * millisecond, 0x605, "4000100000000000");
    feed(1900 * millisecond, 0x705, "05");
    feed(1900 * millisecond, 0x7E5, "00");
    m_health->handle(errorAt(1900 * millisecond, QCanBusFrame::BusError, "0000000000000000"));
    const HealthNumbers numbers = m_health->numbers(2 * second);
    QCOMPARE(kindIn(numbers, FrameKind::Nmt).count, quint64(1));
    QCOMPARE(kindIn(numbers, FrameKind::Sync).count, quint64(2));
    QCOMPARE(kindIn(numbers, FrameKind::Sync).perSecond, 1.0);
    QCOMPARE(*kindIn(numbers, FrameKind::Sync).lastSecond, 0.0);
    QCOMPARE(kindIn(numbers, FrameKind::Time).count, quint64(1));
    QCOMPARE(kindIn(numbers, FrameKind::Emergency).count, quint64(1));
    QCOMPARE(kindIn(numbers, FrameKind::Pdo).count, quint64(1));
    QCOMPARE(kindIn(numbers, FrameKind::Sdo).count, quint64(1));
    QCOMPARE(*kindIn(numbers, FrameKind::Sdo).lastSecond, 1.0);
    QCOMPARE(kindIn(numbers, FrameKind::Heartbeat).count, quint64(1));
    QCOMPARE(kindIn(numbers, FrameKind::Other).count, quint64(1));
    QCOMPARE(kindIn(numbers, FrameKind::Error).count, quint64(1));
    QCOMPARE(numbers.frames, quint64(9)); // an error frame is none
}

void tst_BusHealth::bursts()
{
    // 53 bits take 212 us at 250 kbit/s; 318 us and less is no room for another frame
    for (const int time : {0, 212, 530, 849, 1061, 1273, 1485, 5000})
        feed(time, 0x000, "");
    QCOMPARE(*m_health->numbers(second).longestBurst, 4);
}

void tst_BusHealth::heartbeatPeriod()
{
    feedHeartbeats(5, {0, 1000, 2010, 3000, 4000});
    const HealthNumbers numbers = m_health->numbers(4500 * millisecond);
    const NodeNumbers *node = nodeIn(numbers, 5);
    QVERIFY(node != nullptr);
    QCOMPARE(*node->state, CanOpen::NmtState::Operational);
    QCOMPARE(node->heartbeat.count, quint64(5));
    QCOMPARE(*node->heartbeat.period, 1000.0);
    QCOMPARE(*node->heartbeat.jitter, 10.0);
    QCOMPARE(*node->heartbeat.longestGap, 1010.0);
    QCOMPARE(node->heartbeat.late, quint64(0));
    QCOMPARE(node->heartbeat.missed, quint64(0));
    QVERIFY(!node->heartbeat.isLost);
    QVERIFY(!node->heartbeat.configured);
}

void tst_BusHealth::lateHeartbeats()
{
    feedHeartbeats(5, {0, 100, 200, 300, 460, 500, 600, 1000, 1100});
    const NodeNumbers node = *nodeIn(m_health->numbers(1150 * millisecond), 5);
    QCOMPARE(*node.heartbeat.period, 100.0);
    QCOMPARE(node.heartbeat.late, quint64(2));   // 160 ms and 400 ms
    QCOMPARE(node.heartbeat.missed, quint64(4)); // one and three
    QCOMPARE(*node.heartbeat.longestGap, 400.0);
}

void tst_BusHealth::missedBeforeThePeriodWasKnown()
{
    feedHeartbeats(5, {0, 300, 400, 500, 600});
    const NodeNumbers node = *nodeIn(m_health->numbers(650 * millisecond), 5);
    QCOMPARE(node.heartbeat.late, quint64(1));
    QCOMPARE(node.heartbeat.missed, quint64(2));
}

void tst_BusHealth::configuredPeriodCounts()
{
    m_health->setConfiguredHeartbeat(5, 50);
    m_health->setConfiguredHeartbeat(200, 50); // no node
    feedHeartbeats(5, {0, 100, 200, 300, 400});
    const NodeNumbers node = *nodeIn(m_health->numbers(400 * millisecond), 5);
    QCOMPARE(*node.heartbeat.configured, 50.0);
    QCOMPARE(node.heartbeat.missed, quint64(4));
}

void tst_BusHealth::silenceAtTheEnd()
{
    feedHeartbeats(5, {0, 1000, 2000, 3000});
    NodeNumbers node = *nodeIn(m_health->numbers(6000 * millisecond), 5);
    QVERIFY(!node.heartbeat.isLost);
    QCOMPARE(*node.heartbeat.longestGap, 3000.0);
    QCOMPARE(node.heartbeat.missed, quint64(2));
    QCOMPARE(node.heartbeat.late, quint64(1));
    node = *nodeIn(m_health->numbers(6001 * millisecond), 5);
    QVERIFY(node.heartbeat.isLost);
    feedHeartbeats(5, {6100});
    node = *nodeIn(m_health->numbers(6200 * millisecond), 5);
    QVERIFY(!node.heartbeat.isLost);
    QCOMPARE(*node.heartbeat.longestGap, 3100.0);
}

void tst_BusHealth::singleHeartbeatIsNotLost()
{
    feedHeartbeats(5, {0});
    const NodeNumbers node = *nodeIn(m_health->numbers(3600 * second), 5);
    QVERIFY(!node.heartbeat.isLost);
    QVERIFY(!node.heartbeat.period);
    QVERIFY(!node.heartbeat.longestGap);
    QCOMPARE(node.heartbeat.missed, quint64(0));
}

void tst_BusHealth::bootUpIsNoInterval()
{
    feed(0, 0x705, "00");
    feedHeartbeats(5, {700, 800, 900, 1000});
    const NodeNumbers node = *nodeIn(m_health->numbers(1000 * millisecond), 5);
    QCOMPARE(*node.heartbeat.longestGap, 100.0);
    QCOMPARE(node.restarts, quint64(0)); // the vehicle was switched on
}

void tst_BusHealth::restarts()
{
    feedHeartbeats(5, {0, 100});
    feed(150 * millisecond, 0x705, "00");
    feed(160 * millisecond, 0x705, "00");
    feed(0, 0x186, "00"); // another one that is heard by a PDO
    feed(170 * millisecond, 0x706, "00");
    const HealthNumbers numbers = m_health->numbers(second);
    QCOMPARE(nodeIn(numbers, 5)->restarts, quint64(2));
    QCOMPARE(nodeIn(numbers, 6)->restarts, quint64(1));
    QCOMPARE(*nodeIn(numbers, 5)->state, CanOpen::NmtState::BootUp);
}

void tst_BusHealth::interruptionIsNobodysFault()
{
    feedHeartbeats(5, {0, 100, 200, 300});
    m_health->interrupt();
    const NodeNumbers away = *nodeIn(m_health->numbers(60 * second), 5);
    QVERIFY(!away.heartbeat.isLost);
    feedHeartbeats(5, {60000, 60100});
    const NodeNumbers node = *nodeIn(m_health->numbers(60100 * millisecond), 5);
    QCOMPARE(node.heartbeat.missed, quint64(0));
    QCOMPARE(*node.heartbeat.longestGap, 100.0);
}

/*! Not lost, because nobody could listen; and not there before it is heard. */
void tst_BusHealth::onlyWhoIsHeardAgainIsThere()
{
    feedHeartbeats(5, {0, 100, 200});
    feedHeartbeats(6, {10, 110, 210});
    QCOMPARE(m_health->numbers(second).heardNodes(), 2);
    m_health->interrupt();
    QCOMPARE(m_health->numbers(2 * second).heardNodes(), 0);
    feedHeartbeats(6, {60010, 60110});
    const HealthNumbers numbers = m_health->numbers(60200 * millisecond);
    QCOMPARE(numbers.heardNodes(), 1);
    QVERIFY(nodeIn(numbers, 5)->isAway);
    QVERIFY(!nodeIn(numbers, 5)->heartbeat.isLost);
    QCOMPARE(nodeIn(numbers, 5)->frames, quint64(3));
    QVERIFY(!nodeIn(numbers, 6)->isAway);
}

void tst_BusHealth::oddHeartbeats()
{
    feed(0, 0x705, "85"); // with the toggle bit of node guarding
    QCOMPARE(*nodeIn(m_health->numbers(second), 5)->state, CanOpen::NmtState::Operational);
    feed(0, 0x705, "33");   // no state
    feed(0, 0x705, "0500"); // too long
    feed(0, 0x705, "");
    QCanBusFrame remote(QCanBusFrame::RemoteRequestFrame);
    remote.setFrameId(0x706);
    m_health->handle(LiveFrame::of(remote, 0));
    const HealthNumbers numbers = m_health->numbers(second);
    QCOMPARE(nodeIn(numbers, 5)->heartbeat.count, quint64(1));
    QVERIFY(nodeIn(numbers, 6) == nullptr); // who asks is not who is asked
}

void tst_BusHealth::answerTimes()
{
    for (int i = 1; i <= 100; ++i) {
        feed(i * second, 0x605, "4018100100000000", FrameSource::Ourselves);
        feed(i * second + i * millisecond, 0x585, "4318100111223344");
    }
    const SdoNumbers sdo = nodeIn(m_health->numbers(200 * second), 5)->sdo;
    QCOMPARE(sdo.answers, quint64(100));
    QCOMPARE(*sdo.smallest, 1.0);
    QCOMPARE(*sdo.median, 50.0);
    QCOMPARE(*sdo.most, 95.0);
    QCOMPARE(*sdo.longest, 100.0);
    QCOMPARE(sdo.unanswered, quint64(0));
    QCOMPARE(sdo.foreignRequests, quint64(0));
}

void tst_BusHealth::whoeverAsked()
{
    feed(0, 0x605, "4018100100000000", FrameSource::Others);
    feed(3 * millisecond, 0x585, "4318100111223344");
    feed(4 * millisecond, 0x607, "4018100100000000", FrameSource::Ourselves);
    const HealthNumbers numbers = m_health->numbers(second);
    QCOMPARE(*nodeIn(numbers, 5)->sdo.median, 3.0);
    QCOMPARE(nodeIn(numbers, 5)->sdo.foreignRequests, quint64(1));
    QCOMPARE(numbers.nodesAskedByOthers(), QVector<quint8>{5});
    QCOMPARE(numbers.nodes.size(), 2);
    QCOMPARE(numbers.heardNodes(), 1); // node 7 was only asked
}

void tst_BusHealth::unanswered()
{
    feed(0, 0x605, "4018100100000000");
    feed(second, 0x605, "4018100100000000"); // asked again
    feed(second + 2 * millisecond, 0x585, "4318100111223344");
    QCOMPARE(nodeIn(m_health->numbers(2 * second), 5)->sdo.unanswered, quint64(1));
    QCOMPARE(*nodeIn(m_health->numbers(2 * second), 5)->sdo.median, 2.0);
    feed(3 * second, 0x605, "4018100100000000");
    feed(4 * second, 0x605, "8018100100000405"); // the client gives up
    QCOMPARE(nodeIn(m_health->numbers(5 * second), 5)->sdo.unanswered, quint64(2));
    feed(6 * second, 0x605, "4018100100000000");
    QCOMPARE(nodeIn(m_health->numbers(7 * second), 5)->sdo.unanswered, quint64(2)); // may still come
    QCOMPARE(nodeIn(m_health->numbers(17 * second), 5)->sdo.unanswered, quint64(3));
}

void tst_BusHealth::lateAnswerIsNone()
{
    feed(0, 0x605, "4018100100000000");
    feed(60 * second, 0x585, "4318100111223344");
    feed(61 * second, 0x585, "4318100111223344"); // nobody asked
    const SdoNumbers sdo = nodeIn(m_health->numbers(62 * second), 5)->sdo;
    QCOMPARE(sdo.answers, quint64(0));
    QCOMPARE(sdo.unanswered, quint64(1));
}

void tst_BusHealth::aborts()
{
    feed(0, 0x605, "4000200000000000");
    feed(millisecond, 0x585, "8000200000000206"); // there is no such object
    feed(second, 0x605, "4000200000000000");
    feed(second + millisecond, 0x585, "8000200000000008");
    const SdoNumbers sdo = nodeIn(m_health->numbers(2 * second), 5)->sdo;
    QCOMPARE(sdo.aborts, quint64(2));
    QCOMPARE(sdo.refusals, quint64(1));
    QCOMPARE(sdo.answers, quint64(2)); // a refusal is an answer
    QCOMPARE(sdo.unanswered, quint64(0));
}

void tst_BusHealth::blocksAreNoPairs()
{
    // Upload: initiate, start, three segments (one that looks like an abort's kin), acknowledge, end, end response
    feed(0, 0x605, "A400100002000000");
    feed(2 * millisecond, 0x585, "C600100012000000");
    feed(3 * millisecond, 0x605, "A300000000000000");
    feed(4 * millisecond, 0x585, "0111111111111111");
    feed(5 * millisecond, 0x585, "8222222222222222");
    feed(6 * millisecond, 0x605, "A202020000000000");
    feed(7 * millisecond, 0x585, "C100000000000000");
    feed(8 * millisecond, 0x605, "A100000000000000");
    // Download: initiate, two segments, acknowledge, end, answered
    feed(20 * millisecond, 0x605, "C600100004000000");
    feed(22 * millisecond, 0x585, "A400100002000000");
    feed(23 * millisecond, 0x605, "0111111111111111");
    feed(24 * millisecond, 0x605, "A122222222222222"); // a segment, not the end of an upload
    feed(25 * millisecond, 0x585, "A202020000000000");
    feed(26 * millisecond, 0x605, "C100000000000000");
    feed(27 * millisecond, 0x585, "A100000000000000");
    // And pairs count again
    feed(second, 0x605, "4018100100000000");
    feed(second + 5 * millisecond, 0x585, "4318100111223344");
    const SdoNumbers sdo = nodeIn(m_health->numbers(20 * second), 5)->sdo;
    QCOMPARE(sdo.answers, quint64(3));
    QCOMPARE(*sdo.smallest, 2.0);
    QCOMPARE(*sdo.longest, 5.0);
    QCOMPARE(sdo.unanswered, quint64(0));
    QCOMPARE(sdo.aborts, quint64(0));
}

void tst_BusHealth::brokenBlocks()
{
    feed(0, 0x605, "C600100004000000");
    feed(millisecond, 0x585, "A400100002000000");
    // Nothing more comes of it, and a minute later another client reads
    feed(60 * second, 0x605, "4018100100000000");
    feed(60 * second + 4 * millisecond, 0x585, "4318100111223344");
    const SdoNumbers sdo = nodeIn(m_health->numbers(61 * second), 5)->sdo;
    QCOMPARE(sdo.answers, quint64(2));
    QCOMPARE(*sdo.longest, 4.0);
}

/*! Requests that follow one another within seconds must not keep the transfer alive that nobody goes on with. */
void tst_BusHealth::blocksOfADeviceThatRestarts()
{
    feed(0, 0x605, "C600100004000000");
    feed(2 * millisecond, 0x585, "A400100002000000");
    feed(10 * millisecond, 0x605, "0111111111111111");
    feed(500 * millisecond, 0x705, "00");
    feed(second, 0x605, "4018100100000000");
    feed(second + 5 * millisecond, 0x585, "4318100111223344");
    const SdoNumbers sdo = nodeIn(m_health->numbers(20 * second), 5)->sdo;
    QCOMPARE(sdo.answers, quint64(2));
    QCOMPARE(*sdo.longest, 5.0);
    QCOMPARE(sdo.unanswered, quint64(0));
}

void tst_BusHealth::blocksThatAreAnsweredOtherwise()
{
    feed(0, 0x605, "C600100004000000");
    feed(2 * millisecond, 0x585, "A400100002000000");
    feed(second, 0x605, "4018100100000000"); // may be a segment
    feed(second + 5 * millisecond, 0x585, "4318100111223344");
    feed(2 * second, 0x605, "4018100100000000");
    feed(2 * second + 5 * millisecond, 0x585, "4318100111223344");
    feed(3 * second, 0x605, "4018100100000000");
    const SdoNumbers sdo = nodeIn(m_health->numbers(20 * second), 5)->sdo;
    QCOMPARE(sdo.answers, quint64(2));
    QCOMPARE(*sdo.longest, 5.0);
    QCOMPARE(sdo.unanswered, quint64(1));
}

void tst_BusHealth::blocksThatAreAnsweredNoMore()
{
    feed(0, 0x605, "C600100004000000");
    feed(2 * millisecond, 0x585, "A400100002000000");
    for (int i = 1; i <= 15; ++i)
        feed(i * second, 0x605, "4018100100000000");
    QCOMPARE(nodeIn(m_health->numbers(30 * second), 5)->sdo.unanswered, quint64(5)); // those after 10 s
}

void tst_BusHealth::emergencies()
{
    feed(0, 0x085, "1042090000000000");
    NodeNumbers node = *nodeIn(m_health->numbers(second), 5);
    QCOMPARE(node.emergencies, quint64(1));
    QCOMPARE(*node.lastEmergency, quint16(0x4210));
    QVERIFY(node.hasOpenError);
    feed(0, 0x085, "0000010000000000"); // one error less
    QVERIFY(nodeIn(m_health->numbers(second), 5)->hasOpenError);
    feed(0, 0x085, "0000000000000000");
    node = *nodeIn(m_health->numbers(second), 5);
    QVERIFY(!node.hasOpenError);
    QCOMPARE(node.emergencies, quint64(1));
    feed(0, 0x085, "104209"); // too short for one
    QCOMPARE(nodeIn(m_health->numbers(second), 5)->emergencies, quint64(1));
}

void tst_BusHealth::shareOfTheBus()
{
    const LiveFrame sent = frameAt(0, 0x185, "0102030405060708");
    m_health->handle(sent);
    feed(0, 0x205, "0102030405060708"); // to the node, not from it
    const HealthNumbers numbers = m_health->numbers(2 * second);
    QCOMPARE(*nodeIn(numbers, 5)->load, double(sent.bits) / (2 * bitRate));
    QCOMPARE(nodeIn(numbers, 5)->frames, quint64(1));
}

void tst_BusHealth::controller()
{
    m_health->setController(InterfaceHealth::State::Passive);
    m_health->handle(errorAt(0, QCanBusFrame::ControllerError | 0x200, "0001000000006007"));
    m_health->handle(errorAt(0, QCanBusFrame::BusError, "0000000000000000"));
    m_health->handle(errorAt(0, QCanBusFrame::ControllerError, "0001"));
    const HealthNumbers numbers = m_health->numbers(second);
    QCOMPARE(numbers.controller, InterfaceHealth::State::Passive);
    QCOMPARE(numbers.overruns, quint64(1));
    QCOMPARE(numbers.busErrors, quint64(1));
    QCOMPARE(*numbers.transmitErrors, 96);
    QCOMPARE(*numbers.receiveErrors, 7);
}

/*! The adapter that comes back may be another one, and has begun anew. What happened before has happened. */
void tst_BusHealth::controllerIsForgottenWhenTheBusIsAway()
{
    m_health->setController(InterfaceHealth::State::BusOff);
    m_health->handle(errorAt(0, QCanBusFrame::ControllerError | QCanBusFrame::BusError, "000100000000F880"));
    QCOMPARE(m_health->numbers(second).transmitErrors.value_or(0), 248);
    m_health->interrupt();
    const HealthNumbers numbers = m_health->numbers(2 * second);
    QCOMPARE(numbers.controller, InterfaceHealth::State::Unknown);
    QVERIFY(!numbers.transmitErrors);
    QVERIFY(!numbers.receiveErrors);
    QCOMPARE(numbers.overruns, quint64(1));
    QCOMPARE(numbers.busErrors, quint64(1));
}

void tst_BusHealth::oldDriversCounters()
{
    m_health->handle(errorAt(0, QCanBusFrame::BusError, "0000000000006007"));
    QVERIFY(!m_health->numbers(second).transmitErrors);
    m_health->handle(errorAt(0, QCanBusFrame::ControllerError, "0004000000006007"));
    QCOMPARE(*m_health->numbers(second).transmitErrors, 96);
    QCOMPARE(m_health->numbers(second).overruns, quint64(0));
}

void tst_BusHealth::clockJumpsBack()
{
    feedHeartbeats(5, {10000, 10100, 9000, 9100});
    const HealthNumbers numbers = m_health->numbers(5 * second);
    QCOMPARE(numbers.frames, quint64(4));
    QCOMPARE(*nodeIn(numbers, 5)->heartbeat.longestGap, 100.0);
    QCOMPARE(*nodeIn(numbers, 5)->heartbeat.jitter, 0.0);
    m_health->numbers(-second);
}

void tst_BusHealth::clockJumpsForward()
{
    feed(0, 0x000, "");
    const qint64 aYear = 365 * 86400 * second;
    feed(100 * aYear, 0x000, "");
    const HealthNumbers numbers = m_health->numbers(100 * aYear + second);
    QCOMPARE(numbers.frames, quint64(2));
    QCOMPARE(*numbers.lastLoad, 53.0 / bitRate);
    feedHeartbeats(5, {100 * aYear / millisecond, 200 * aYear / millisecond});
    QVERIFY(*nodeIn(m_health->numbers(201 * aYear), 5)->heartbeat.longestGap > 1e9);
}

void tst_BusHealth::anythingMayCome()
{
    std::mt19937 random(815);
    qint64 time = 0;
    for (int i = 0; i < 100000; ++i) {
        QByteArray payload(int(random() % 9), '\0');
        for (char &byte : payload)
            byte = char(random());
        QCanBusFrame frame(quint32(random() % 0x800), payload);
        frame.setFrameType(random() % 10 == 0 ? QCanBusFrame::ErrorFrame
                                              : (random() % 10 == 0 ? QCanBusFrame::RemoteRequestFrame
                                                                    : QCanBusFrame::DataFrame));
        if (frame.frameType() == QCanBusFrame::ErrorFrame)
            frame.setError(QCanBusFrame::FrameErrors(int(random() % 0x400)));
        time += qint64(random() % 3000) - 100;
        m_health->handle(LiveFrame::of(frame, time));
    }
    const HealthNumbers numbers = m_health->numbers(time);
    QVERIFY(*numbers.meanLoad > 0);
    QVERIFY(*numbers.peakLoad >= *numbers.meanLoad);
    QVERIFY(numbers.nodes.size() <= 127);
    for (const NodeNumbers &node : numbers.nodes)
        QVERIFY(*node.load <= *numbers.meanLoad);
}

QTEST_GUILESS_MAIN(tst_BusHealth)
#include "tst_bushealth.moc"
