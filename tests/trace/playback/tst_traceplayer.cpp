// SPDX-License-Identifier: MIT
#include "../frames.h"

#include <trace/playback/traceplayer.h>

#include <QtTest>

#include <limits>

namespace {

using Pace = TracePlayer::Pace;

constexpr qint64 ms = millisecond;
constexpr qint64 hour = 3600 * second;
constexpr qint64 then = Q_INT64_C(1'600'000'000) * second; // of the recording
constexpr qint64 start = 5 * second;                       // of the playing

std::vector<TraceFrame> framesAt(const std::vector<qint64> &times)
{
    std::vector<TraceFrame> frames;
    for (const qint64 time : times)
        frames.push_back(frameAt(time, 0x701, "05"));
    return frames;
}

/*! When the frames are due, since the start, if each is taken in time. */
QVector<qint64> dueTimes(const std::vector<TraceFrame> &frames, double speed = 1)
{
    TracePlayer player(&frames);
    player.setSpeed(speed);
    player.start(start);
    QVector<qint64> times;
    while (const std::optional<qint64> due = player.nextDue()) {
        if (player.take(*due - 1) != nullptr)
            return {-1};
        times.append(*due - start);
        if (player.take(*due) != &frames[static_cast<size_t>(times.size()) - 1])
            return {-2};
    }
    return times;
}

} // namespace

Q_DECLARE_METATYPE(std::vector<qint64>)

class tst_TracePlayer : public QObject
{
    Q_OBJECT

private slots:
    void keepsTheTimesBetweenFrames_data();
    void keepsTheTimesBetweenFrames();
    void stampsAreThoseOfTheBus();
    void timeOfTheBus();
    void pausesAndGoesOn();
    void stepsAreNotLeftBehind();
    void changesTheSpeed();
    void stampsGoAlongWithTheSpeed();
    void stampsWithoutTimesNeverGoBackward();
    void stampsOfAnyTime();
    void stampsFromTheLeastTimeOn();
    void whoComesLateGoesOnFromThere();
    void smallDelaysAreCaughtUp();
    void unpacedWaitsForNothing();
    void stepsOnlyWhenAsked();
    void emptyTrace();
    void beginsAnew();
    void beginsAnewInBetween();
};

void tst_TracePlayer::keepsTheTimesBetweenFrames_data()
{
    using Times = std::vector<qint64>;
    QTest::addColumn<Times>("times");
    QTest::addColumn<double>("speed");
    QTest::addColumn<QVector<qint64>>("due");

    const Times usual{then, then + 10 * ms, then + 10 * ms, then + second};
    QTest::newRow("as recorded") << usual << 1.0 << QVector<qint64>{0, 10 * ms, 10 * ms, second};
    QTest::newRow("twice as fast") << usual << 2.0 << QVector<qint64>{0, 5 * ms, 5 * ms, 500 * ms};
    QTest::newRow("a hundredth") << usual << 0.01 << QVector<qint64>{0, second, second, 100 * second};
    QTest::newRow("clock set back") << Times{then, then + ms, then - hour, then - hour + ms} << 1.0
                                    << QVector<qint64>{0, ms, ms, 2 * ms};
    QTest::newRow("clock set on") << Times{then, then + ms, then + hour + 2 * ms, then + hour + 3 * ms} << 1.0
                                  << QVector<qint64>{0, ms, ms, 2 * ms};
    QTest::newRow("a long pause") << Times{then, then + hour} << 1.0 << QVector<qint64>{0, hour};
    constexpr qint64 most = std::numeric_limits<qint64>::max();
    constexpr qint64 least = std::numeric_limits<qint64>::min();
    QTest::newRow("no times at all") << Times{most, least, most, 0} << 1.0 << QVector<qint64>{0, 0, 0, 0};
}

void tst_TracePlayer::keepsTheTimesBetweenFrames()
{
    QFETCH(std::vector<qint64>, times);
    QFETCH(double, speed);
    QFETCH(QVector<qint64>, due);
    QCOMPARE(dueTimes(framesAt(times), speed), due);
}

void tst_TracePlayer::stampsAreThoseOfTheBus()
{
    const std::vector<TraceFrame> frames = framesAt({then, then + 10 * ms, then + 12 * ms});
    TracePlayer player(&frames);
    player.start(start);
    QVERIFY(player.take(start) != nullptr);
    QCOMPARE(player.stamp(), then);
    // Both are due: each has its own time all the same.
    QVERIFY(player.take(start + 13 * ms) != nullptr);
    QCOMPARE(player.stamp(), then + 10 * ms);
    QVERIFY(player.take(start + 13 * ms) != nullptr);
    QCOMPARE(player.stamp(), then + 12 * ms);
    QVERIFY(player.isAtEnd());
}

void tst_TracePlayer::timeOfTheBus()
{
    const std::vector<TraceFrame> frames = framesAt({then, then + 10 * ms, then + 20 * ms});
    TracePlayer player(&frames);
    player.setSpeed(2);
    player.start(start);
    QCOMPARE(player.stampAt(start - ms), then); // it is about to begin
    QVERIFY(player.take(start) != nullptr);
    QCOMPARE(player.stampAt(start + 4 * ms), then + 8 * ms);
    QVERIFY(player.take(start + 5 * ms) != nullptr);
    QVERIFY(player.take(start + 10 * ms) != nullptr);
    QCOMPARE(player.stampAt(start + hour), then + 20 * ms); // over
}

void tst_TracePlayer::pausesAndGoesOn()
{
    const std::vector<TraceFrame> frames
        = framesAt({then, then + 10 * ms, then + 20 * ms, then + 50 * ms, then + 60 * ms});
    TracePlayer player(&frames);
    player.start(start);
    QVERIFY(player.take(start) != nullptr);
    player.change(Pace::Stepped, 1, start + 3 * ms);
    QVERIFY(!player.nextDue());
    QCOMPARE(player.stampAt(start + hour), then + 3 * ms); // time stands still
    player.change(Pace::Recorded, 1, start + hour);
    QCOMPARE(player.nextDue().value_or(0), start + hour + 7 * ms); // what was left
    QVERIFY(player.take(start + hour + 7 * ms) != nullptr);
    QCOMPARE(player.stamp(), then + 10 * ms);

    const qint64 again = start + hour + 7 * ms;
    player.change(Pace::Stepped, 1, again);
    player.step(1);
    QVERIFY(player.take(again) != nullptr);
    const qint64 stepped = player.stamp();
    QVERIFY(player.take(again) == nullptr);
    player.change(Pace::Recorded, 1, again);
    QCOMPARE(player.nextDue().value_or(0), again + 30 * ms); // all of it
    QVERIFY(player.take(again + 30 * ms) != nullptr);
    QCOMPARE(player.stamp(), stepped + 30 * ms);
}

void tst_TracePlayer::stepsAreNotLeftBehind()
{
    const std::vector<TraceFrame> frames = framesAt({then, then + ms, then + 2 * ms});
    TracePlayer player(&frames);
    player.setPace(Pace::Stepped);
    player.start(start);
    player.step(2);
    player.change(Pace::Stepped, 1, start);
    QVERIFY(player.take(start) == nullptr);
    player.step(2);
    player.start(start);
    QVERIFY(player.take(start) == nullptr);
}

void tst_TracePlayer::changesTheSpeed()
{
    const std::vector<TraceFrame> frames = framesAt({then, then + 10 * ms, then + 30 * ms, then + 40 * ms});
    TracePlayer player(&frames);
    player.start(start);
    QVERIFY(player.take(start) != nullptr);
    player.change(Pace::Recorded, 0.5, start + 4 * ms);
    QCOMPARE(player.nextDue().value_or(0), start + 16 * ms); // 6 ms are left
    QVERIFY(player.take(start + 16 * ms) != nullptr);
    QCOMPARE(player.stamp(), then + 10 * ms);
    QCOMPARE(player.nextDue().value_or(0), start + 56 * ms);
    player.change(Pace::Recorded, 10, start + 70 * ms); // it is late already
    QCOMPARE(player.nextDue().value_or(0), start + 70 * ms);
    QVERIFY(player.take(start + 70 * ms) != nullptr);
    QCOMPARE(player.nextDue().value_or(0), start + 71 * ms);
    QCOMPARE(player.stamp(), then + 37 * ms); // as late as it was
    player.change(Pace::Unpaced, 10, start + 70 * ms);
    QVERIFY(player.take(start + 70 * ms) != nullptr);
}

void tst_TracePlayer::stampsGoAlongWithTheSpeed()
{
    const std::vector<TraceFrame> frames = framesAt({then, then + second});
    TracePlayer player(&frames);
    player.setSpeed(10);
    player.start(start);
    QVERIFY(player.take(start) != nullptr);
    QCOMPARE(player.stampAt(start + 50 * ms), then + 500 * ms);
    QVERIFY(player.take(start + 100 * ms) != nullptr);
    QCOMPARE(player.stamp(), then + second);
}

void tst_TracePlayer::stampsWithoutTimesNeverGoBackward()
{
    const std::vector<TraceFrame> frames = framesAt({then, then + ms, then - hour, then - hour + ms});
    TracePlayer player(&frames);
    player.setPace(Pace::Unpaced);
    player.start(start);
    const qint64 expected[] = {then, then + ms, then + ms, then + 2 * ms};
    for (const qint64 stamp : expected) {
        QVERIFY(player.take(start) != nullptr);
        QCOMPARE(player.stamp(), stamp);
    }
    player.start(start);
    QVERIFY(player.take(start) != nullptr);
    QCOMPARE(player.stamp(), then + 2 * ms);
}

void tst_TracePlayer::stampsOfAnyTime()
{
    const std::vector<TraceFrame> frames = framesAt({std::numeric_limits<qint64>::max()});
    TracePlayer player(&frames);
    player.start(start);
    QCOMPARE(player.stampAt(start + 1), std::numeric_limits<qint64>::min());
}

void tst_TracePlayer::stampsFromTheLeastTimeOn()
{
    constexpr qint64 least = std::numeric_limits<qint64>::min();
    const std::vector<TraceFrame> frames = framesAt({least, least + ms});
    TracePlayer player(&frames);
    player.start(start);
    QVERIFY(player.take(start) != nullptr);
    QCOMPARE(player.stamp(), least);
    QCOMPARE(player.stampAt(start + 10), least + 10);
    player.change(TracePlayer::Pace::Recorded, 2, start + 10);
    QCOMPARE(player.stamp(), least + 10);
}

void tst_TracePlayer::whoComesLateGoesOnFromThere()
{
    const std::vector<TraceFrame> frames = framesAt({then, then + ms, then + 2 * ms, then + 3 * ms});
    TracePlayer player(&frames);
    player.start(start);
    QVERIFY(player.take(start) != nullptr);
    const qint64 late = start + 8 * hour; // the computer slept
    QVERIFY(player.take(late) != nullptr);
    QVERIFY(player.take(late) == nullptr);
    QCOMPARE(player.nextDue().value_or(0), late + ms);
    QCOMPARE(player.stamp(), then + 8 * hour);
}

void tst_TracePlayer::smallDelaysAreCaughtUp()
{
    const std::vector<TraceFrame> frames = framesAt({then, then + ms, then + 2 * ms, then + second});
    TracePlayer player(&frames);
    player.start(start);
    QVERIFY(player.take(start + 900 * ms) != nullptr);
    QVERIFY(player.take(start + 900 * ms) != nullptr);
    QVERIFY(player.take(start + 900 * ms) != nullptr);
    QVERIFY(player.take(start + 900 * ms) == nullptr);
    QCOMPARE(player.nextDue().value_or(0), start + second);
}

void tst_TracePlayer::unpacedWaitsForNothing()
{
    const std::vector<TraceFrame> frames = framesAt({then, then + hour});
    TracePlayer player(&frames);
    player.setPace(Pace::Unpaced);
    player.start(start);
    QVERIFY(player.nextDue().value_or(start + 1) <= start);
    QVERIFY(player.take(start) != nullptr);
    QVERIFY(player.nextDue().value_or(start + 1) <= start);
    QVERIFY(player.take(start) != nullptr);
    QCOMPARE(player.stamp(), then + hour); // its own
    QVERIFY(!player.nextDue());
    QVERIFY(player.take(start) == nullptr);
}

void tst_TracePlayer::stepsOnlyWhenAsked()
{
    const std::vector<TraceFrame> frames = framesAt({then, then + hour, then + 2 * hour});
    TracePlayer player(&frames);
    player.setPace(Pace::Stepped);
    player.start(start);
    QVERIFY(!player.nextDue());
    QVERIFY(player.take(start + hour) == nullptr);
    player.step(-5);
    QVERIFY(!player.nextDue());
    player.step(2);
    QVERIFY(player.nextDue());
    QVERIFY(player.take(start) != nullptr);
    QVERIFY(player.take(start) != nullptr);
    QVERIFY(player.take(start) == nullptr);
    QCOMPARE(player.position(), size_t(2));
    player.step(std::numeric_limits<qint64>::max());
    player.step(std::numeric_limits<qint64>::max());
    QVERIFY(player.take(start) != nullptr);
    QVERIFY(player.isAtEnd());
    player.start(start);
    QVERIFY(player.take(start) == nullptr); // no more than there were
}

void tst_TracePlayer::emptyTrace()
{
    const std::vector<TraceFrame> frames;
    TracePlayer player(&frames);
    player.start(start);
    QVERIFY(player.isAtEnd());
    QVERIFY(!player.nextDue());
    QVERIFY(player.take(start + hour) == nullptr);
}

void tst_TracePlayer::beginsAnew()
{
    const std::vector<TraceFrame> frames = framesAt({then, then + ms});
    TracePlayer player(&frames);
    player.start(start);
    QVERIFY(player.take(start) != nullptr);
    QVERIFY(player.take(start + ms) != nullptr);
    player.start(start + second);
    QCOMPARE(player.position(), size_t(0));
    QVERIFY(player.take(start + second - 1) == nullptr);
    QVERIFY(player.take(start + second) == &frames[0]);
    QCOMPARE(player.stamp(), then + ms); // where it was
    QCOMPARE(player.nextDue().value_or(0), start + second + ms);
    QVERIFY(player.take(start + second + ms) != nullptr);
    QCOMPARE(player.stamp(), then + 2 * ms);
}

void tst_TracePlayer::beginsAnewInBetween()
{
    const std::vector<TraceFrame> frames = framesAt({then, then + 10 * ms, then + 20 * ms});
    TracePlayer player(&frames);
    player.start(start);
    QVERIFY(player.take(start) != nullptr);
    player.start(start + 5 * ms);
    QCOMPARE(player.stampAt(start + 5 * ms), then + 5 * ms); // the time of the bus does not go back
    QVERIFY(player.take(start + 5 * ms) == &frames[0]);
    QCOMPARE(player.stamp(), then + 5 * ms);
}

QTEST_APPLESS_MAIN(tst_TracePlayer)
#include "tst_traceplayer.moc"
