// SPDX-License-Identifier: MIT
#include <live/core/frameclock.h>

#include <QtTest>

#include <algorithm>
#include <limits>
#include <random>
#include <vector>

namespace {

constexpr qint64 millisecond = 1000; // us
constexpr qint64 second = 1'000'000;

/*! A driver with a clock that can be off, and a program that comes to look late. */
class Driver
{
public:
    /*! A frame \a step after the one before, of which the program learns \a delay later; what came before is looked at first. */
    qint64 frame(qint64 step, qint64 delay)
    {
        sent += step;
        stamp += step + step * partsPerMillion / 1'000'000;
        now = std::max(now, sent + delay);
        return time = clock.timeOf(stamp, now);
    }

    /*! A frame every 10 ms, all with \a delay. */
    void send(qint64 duration, qint64 delay)
    {
        for (qint64 end = sent + duration; sent < end;)
            frame(10 * millisecond, delay);
    }

    FrameClock clock;
    qint64 partsPerMillion = 0;
    qint64 sent = 5 * second; // on the steady clock
    qint64 stamp = 1'000'000 * second;
    qint64 now = 0; // of the steady clock
    qint64 time = 0;
};

struct Look
{
    qint64 now;
    qint64 offset;
};

/*! The smallest offset that was seen from \a since on. */
qint64 smallestSince(const std::vector<Look> &looks, qint64 since)
{
    qint64 smallest = std::numeric_limits<qint64>::max();
    for (auto look = looks.rbegin(); look != looks.rend() && look->now >= since; ++look)
        smallest = std::min(smallest, look->offset);
    return smallest;
}

} // namespace

/*! Times from a driver's stamps and a steady clock. */
class tst_FrameClock : public QObject
{
    Q_OBJECT

private slots:
    void stampsTellTheDistance();
    void withoutStamps();
    void stampsThatJump_data();
    void stampsThatJump();
    void neverBackward();
    void lookingMovesNothing();
    void absurdStamps();
    void delaysThatAreOver_data();
    void delaysThatAreOver();
    void delaysAtTheBeginning_data();
    void delaysAtTheBeginning();
    void setBackALittle_data();
    void setBackALittle();
    void slowStamps();
    void fewFrames();
    void neverFarFromTheLeastDelay_data();
    void neverFarFromTheLeastDelay();
};

void tst_FrameClock::stampsTellTheDistance()
{
    FrameClock clock;
    const qint64 first = clock.timeOf(1000 * second, 5 * second);
    QCOMPARE(first, 5 * second);
    // The program came to look 30 ms late; the driver knows better.
    QCOMPARE(clock.timeOf(1000 * second + 1000, 5 * second + 31000), first + 1000);
    QCOMPARE(clock.jumps(), 0);
}

void tst_FrameClock::withoutStamps()
{
    FrameClock clock;
    QCOMPARE(clock.timeOf(0, 7 * second), 7 * second);
    QCOMPARE(clock.timeOf(0, 8 * second), 8 * second);
    QCOMPARE(clock.timeAt(9 * second), 9 * second);
}

void tst_FrameClock::stampsThatJump_data()
{
    QTest::addColumn<qint64>("jump");
    QTest::newRow("an hour forward") << 3600 * second;
    QTest::newRow("an hour backward") << -3600 * second;
    QTest::newRow("to the beginning of time") << -99999 * second;
}

void tst_FrameClock::stampsThatJump()
{
    QFETCH(qint64, jump);
    FrameClock clock;
    const qint64 start = 100000 * second;
    clock.timeOf(start, 5 * second);
    QCOMPARE(clock.timeOf(start + second + jump, 6 * second), 6 * second);
    QCOMPARE(clock.jumps(), 1);
    QCOMPARE(clock.timeOf(start + second + jump + 250, 6 * second + 900), 6 * second + 250);
    QCOMPARE(clock.jumps(), 1);
}

void tst_FrameClock::neverBackward()
{
    FrameClock clock;
    QCOMPARE(clock.timeOf(500 * second, 5 * second), 5 * second);
    QCOMPARE(clock.timeOf(499 * second, 5 * second + 10), 5 * second);
    QCOMPARE(clock.timeAt(4 * second), 5 * second);
}

void tst_FrameClock::lookingMovesNothing()
{
    FrameClock clock;
    QCOMPARE(clock.timeOf(500 * second, 5 * second), 5 * second);
    QCOMPARE(clock.timeAt(6 * second), 6 * second);
    QCOMPARE(clock.timeOf(500 * second + 100, 6 * second), 5 * second + 100); // was on its way
}

void tst_FrameClock::absurdStamps()
{
    FrameClock clock;
    QCOMPARE(clock.timeOf(std::numeric_limits<qint64>::max(), second), second);
    QCOMPARE(clock.timeOf(std::numeric_limits<qint64>::min(), 2 * second), 2 * second);
}

void tst_FrameClock::delaysThatAreOver_data()
{
    QTest::addColumn<qint64>("duration");
    QTest::addColumn<qint64>("delay");
    QTest::newRow("short") << 300 * millisecond << 300 * millisecond;
    QTest::newRow("long") << 500 * millisecond << 1900 * millisecond;
    QTest::newRow("always a little") << 60 * second << 9 * millisecond;
}

void tst_FrameClock::delaysThatAreOver()
{
    QFETCH(qint64, duration);
    QFETCH(qint64, delay);
    Driver driver;
    const qint64 first = driver.frame(0, 0);
    QCOMPARE(first, 5 * second);
    for (int i = 0; i < 7; ++i) {
        driver.send(2777 * millisecond, 3 * millisecond);
        driver.send(duration, delay);
        QCOMPARE(driver.time, driver.sent);
    }
    QCOMPARE(driver.frame(1, 0), driver.sent);
    QCOMPARE(driver.clock.jumps(), 0);
}

void tst_FrameClock::delaysAtTheBeginning_data()
{
    QTest::addColumn<qint64>("jump"); // of the stamps
    QTest::newRow("of all") << qint64(0);
    QTest::newRow("behind a jump") << 3600 * second;
}

/*! The frame that begins counts for a whole window and the one behind it. */
void tst_FrameClock::delaysAtTheBeginning()
{
    QFETCH(qint64, jump);
    Driver driver;
    if (jump != 0) {
        driver.send(4 * second, 0);
        driver.stamp += jump;
    }
    driver.frame(1, 0);
    driver.send(5 * second, 500 * millisecond);
    QCOMPARE(driver.time, driver.sent);
}

void tst_FrameClock::setBackALittle_data()
{
    QTest::addColumn<qint64>("step");
    QTest::newRow("a second") << second;
    QTest::newRow("nearly a jump") << 2 * second - 1;
    QTest::newRow("little more than what is let be") << 11 * millisecond;
}

void tst_FrameClock::setBackALittle()
{
    QFETCH(qint64, step);
    Driver driver;
    driver.send(20 * second, 0);
    QCOMPARE(driver.time, driver.sent);
    driver.stamp -= step;
    driver.send(2 * second, 0); // may be delays still
    QCOMPARE(driver.time, driver.sent - step);
    driver.send(4100 * millisecond, 0);
    QCOMPARE(driver.time, driver.sent);
    QCOMPARE(driver.frame(125, 40 * millisecond), driver.sent); // as exact as before
}

void tst_FrameClock::slowStamps()
{
    Driver driver;
    driver.partsPerMillion = -100;
    for (int i = 0; i < 600; ++i) {
        driver.send(10 * second, 0);
        const qint64 late = driver.sent - driver.time;
        QVERIFY2(late >= 0 && late <= 10'600, qPrintable(QString::number(late))); // us
    }
}

void tst_FrameClock::fewFrames()
{
    Driver driver;
    driver.frame(0, 0);
    driver.frame(60 * second, 0);
    driver.frame(60 * second, 200 * millisecond); // one that is late says nothing yet
    QCOMPARE(driver.time, driver.sent);
    driver.frame(60 * second, 0);
    QCOMPARE(driver.time, driver.sent);
}

void tst_FrameClock::neverFarFromTheLeastDelay_data()
{
    QTest::addColumn<unsigned>("seed");
    for (unsigned seed = 1; seed <= 20; ++seed)
        QTest::newRow(qPrintable(QStringLiteral("seed %1").arg(seed))) << seed;
}

/*! Any delays, drifts and steps: the times lie between what the least delay of the last window says, and that of two windows
 *  less what is let be.
 */
void tst_FrameClock::neverFarFromTheLeastDelay()
{
    QFETCH(unsigned, seed);
    std::mt19937 random(seed);
    const auto below = [&random](qint64 end) { return qint64(random() % quint64(end)); };
    constexpr qint64 longestStep = 50 * millisecond;
    constexpr qint64 longestDelay = 900 * millisecond;
    Driver driver;
    std::vector<Look> looks;
    qint64 delayed = 0; // as long as all frames are
    qint64 delay = 0;
    qint64 toStep = 0;
    qint64 last = 0;
    for (int i = 0; i < 20'000; ++i) {
        const qint64 step = below(longestStep);
        if ((toStep -= step) < 0) {
            toStep = 10 * second + below(10 * second);
            driver.stamp += below(2 * second) - second;
            driver.partsPerMillion = below(400) - 200;
        }
        if ((delayed -= step) < 0) {
            delayed = below(below(3) == 0 ? 8 * second : second);
            delay = below(2) == 0 ? 0 : below(longestDelay);
        }
        const qint64 time = driver.frame(step, delay + below(2 * millisecond));
        looks.push_back({driver.now, driver.now - driver.stamp});
        QVERIFY(time >= last && time <= driver.now);
        if (time > last) {
            constexpr qint64 longestGap = longestStep + longestDelay + 2 * millisecond;
            const qint64 offset = time - driver.stamp;
            const qint64 highest = smallestSince(looks, driver.now - 3 * second);
            const qint64 lowest = smallestSince(looks, driver.now - 2 * (3 * second + longestGap));
            QVERIFY2(offset <= highest && offset >= lowest - 10 * millisecond,
                     qPrintable(QStringLiteral("frame %1: %2 is not between %3 and %4")
                                    .arg(i)
                                    .arg(offset)
                                    .arg(lowest - 10 * millisecond)
                                    .arg(highest)));
        }
        last = time;
        if (i % 7 == 0) { // another frame at the same time, looked at later
            driver.now += 5 * millisecond;
            QCOMPARE(driver.clock.timeOf(driver.stamp, driver.now), time);
        }
    }
    QCOMPARE(driver.clock.jumps(), 0);
}

QTEST_GUILESS_MAIN(tst_FrameClock)
#include "tst_frameclock.moc"
