// SPDX-License-Identifier: MIT
#include <simulator/wire.h>

#include <QtTest>

using namespace Simulator;
using namespace std::chrono_literals;

class tst_Wire : public QObject
{
    Q_OBJECT

private slots:
    void bitRates_data();
    void bitRates();
    void eightBytesTake480Microseconds();
    void frameArrivesWhenItsLastBitIsThrough();
    void framesFollowWithoutGap();
    void lowestIdentifierGoesFirst();
    void frameOnTheWireIsNotInterrupted();
    void stationKeepsTheOrderOfItsFrames();
    void extendedFrameLosesAgainstStandard();
    void answerBeginsAtTheRequestsEnd();
    void exchangeTakes960Microseconds();
    void waitingFramesAreCounted();
    void clearDropsEverything();
};

namespace {

QCanBusFrame frame(quint32 id, int bytes = 8)
{
    return QCanBusFrame(id, QByteArray(bytes, '\0'));
}

} // namespace

void tst_Wire::bitRates_data()
{
    QTest::addColumn<int>("bitRate");
    QTest::addColumn<bool>("known");

    for (const int rate : {10000, 20000, 50000, 100000, 125000, 250000, 500000, 800000, 1000000})
        QTest::addRow("%d", rate) << rate << true;
    for (const int rate : {0, -1, 1, 33333, 83333, 249999, 1000001})
        QTest::addRow("%d", rate) << rate << false;
}

void tst_Wire::bitRates()
{
    QFETCH(int, bitRate);
    QFETCH(bool, known);
    QCOMPARE(isKnownBitRate(bitRate), known);
}

void tst_Wire::eightBytesTake480Microseconds()
{
    QVERIFY(Wire(250000).frameTime(frame(0x601)) == 480us);
    QVERIFY(Wire(1000000).frameTime(frame(0x601)) == 120us);
    QVERIFY(Wire(10000).frameTime(frame(0x601)) == 12ms);
}

void tst_Wire::frameArrivesWhenItsLastBitIsThrough()
{
    Wire wire(250000);
    QVERIFY(!wire.nextEnd().has_value());
    wire.queue(frame(0x601), 1, 1ms);
    QVERIFY(wire.nextEnd() == Wire::Time(1480us));
    QVERIFY(!wire.take(1479999ns).has_value());
    const auto through = wire.take(1480us);
    QVERIFY(through.has_value());
    QCOMPARE(through->frame.frameId(), 0x601u);
    QCOMPARE(through->station, quint64(1));
    QVERIFY(through->end == Wire::Time(1480us));
    QVERIFY(!wire.take(10s).has_value());
}

void tst_Wire::framesFollowWithoutGap()
{
    Wire wire(250000);
    for (int count = 0; count < 3; ++count)
        wire.queue(frame(0x601), 1, 0us);
    // All taken late: their times are those on the wire nevertheless.
    QVERIFY(wire.take(1s)->end == Wire::Time(480us));
    QVERIFY(wire.take(1s)->end == Wire::Time(960us));
    QVERIFY(wire.take(1s)->end == Wire::Time(1440us));
}

void tst_Wire::lowestIdentifierGoesFirst()
{
    Wire wire(250000);
    wire.queue(frame(0x705, 1), 5, 0us);
    wire.queue(frame(0x601), 1, 0us);
    wire.queue(frame(0x182), 2, 0us);
    wire.queue(frame(0x182), 3, 0us);
    QVector<quint64> stations;
    while (const auto through = wire.take(1s))
        stations.append(through->station);
    QCOMPARE(stations, QVector<quint64>({2, 3, 1, 5}));
}

void tst_Wire::frameOnTheWireIsNotInterrupted()
{
    Wire wire(250000);
    wire.queue(frame(0x705), 5, 0us);
    QVERIFY(wire.nextEnd() == Wire::Time(480us));
    wire.queue(frame(0x000, 2), 1, 10us);
    wire.queue(frame(0x080, 0), 2, 5us);
    QCOMPARE(wire.take(1s)->frame.frameId(), 0x705u);
    QCOMPARE(wire.take(1s)->frame.frameId(), 0x000u);
    QCOMPARE(wire.take(1s)->frame.frameId(), 0x080u);
}

void tst_Wire::stationKeepsTheOrderOfItsFrames()
{
    Wire wire(250000);
    wire.queue(frame(0x605), 5, 0us);
    wire.queue(frame(0x585), 5, 0us);
    QCOMPARE(wire.take(1s)->frame.frameId(), 0x605u);
    QCOMPARE(wire.take(1s)->frame.frameId(), 0x585u);
}

void tst_Wire::extendedFrameLosesAgainstStandard()
{
    Wire wire(250000);
    QCanBusFrame extended(0x601u << 18, QByteArray());
    extended.setExtendedFrameFormat(true);
    QCanBusFrame lowerExtended(0x600u << 18 | 5, QByteArray());
    lowerExtended.setExtendedFrameFormat(true);
    wire.queue(extended, 1, 0us);
    wire.queue(frame(0x601), 2, 0us);
    wire.queue(lowerExtended, 3, 0us);
    QCOMPARE(wire.take(1s)->station, quint64(3));
    QCOMPARE(wire.take(1s)->station, quint64(2));
    QCOMPARE(wire.take(1s)->station, quint64(1));
}

void tst_Wire::answerBeginsAtTheRequestsEnd()
{
    Wire wire(250000);
    wire.queue(frame(0x601), 1, 0us);
    // Taken 100 us late; a heartbeat has come up in between, the answer was ready at the request's end.
    const auto request = wire.take(580us);
    wire.queue(frame(0x705, 1), 5, 500us);
    wire.queue(frame(0x581), 2, request->end);
    const auto answer = wire.take(10ms);
    QCOMPARE(answer->frame.frameId(), 0x581u);
    QVERIFY(answer->end == Wire::Time(960us));
    QVERIFY(wire.take(10ms)->end == Wire::Time(960us + 236us));
}

void tst_Wire::exchangeTakes960Microseconds()
{
    Wire wire(250000);
    Wire::Time now(0);
    for (int exchange = 0; exchange < 1632; ++exchange) {
        wire.queue(frame(0x601), 1, now);
        now = *wire.nextEnd();
        QVERIFY(wire.take(now).has_value());
        wire.queue(frame(0x581), 2, now);
        now = *wire.nextEnd();
        QVERIFY(wire.take(now).has_value());
    }
    QVERIFY(now == Wire::Time(1632 * 960us));
}

void tst_Wire::waitingFramesAreCounted()
{
    Wire wire(250000);
    QCOMPARE(wire.waiting(1), 0);
    wire.queue(frame(0x601), 1, 0us);
    wire.queue(frame(0x601), 1, 0us);
    wire.queue(frame(0x602), 2, 0us);
    QCOMPARE(wire.waiting(1), 2);
    wire.nextEnd(); // on the wire, and still not through
    QCOMPARE(wire.waiting(1), 2);
    wire.take(480us);
    QCOMPARE(wire.waiting(1), 1);
    QCOMPARE(wire.waiting(2), 1);
    QCOMPARE(wire.waiting(3), 0);
}

void tst_Wire::clearDropsEverything()
{
    Wire wire(250000);
    wire.queue(frame(0x601), 1, 0us);
    wire.queue(frame(0x601), 1, 0us);
    wire.nextEnd();
    wire.clear();
    QVERIFY(!wire.nextEnd().has_value());
    QVERIFY(!wire.take(1s).has_value());
}

QTEST_GUILESS_MAIN(tst_Wire)
#include "tst_wire.moc"
