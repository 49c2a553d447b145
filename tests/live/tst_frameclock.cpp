// SPDX-License-Identifier: MIT
#include <live/core/frameclock.h>

#include <QtTest>

#include <limits>

namespace {
constexpr qint64 second = 1'000'000; // us
}

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

QTEST_GUILESS_MAIN(tst_FrameClock)
#include "tst_frameclock.moc"
