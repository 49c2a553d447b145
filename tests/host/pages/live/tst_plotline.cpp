// SPDX-License-Identifier: MIT
#include <host/pages/live/plotline.h>

#include <QtTest>

namespace {

constexpr qint64 second = 1'000'000; // us

} // namespace

class tst_PlotLine : public QObject
{
    Q_OBJECT

private slots:
    void nothing();
    void pointByPoint();
    void oneMoreOnBothSides();
    void peaksAreKept();
    void columnsAreBounded();
    void rangeOfWhatIsSeen();
    void gaps();
    void slowValuesHaveNoGaps();
    void valueAt();
    void historyThatHasGoneRound();
    void followingIsAsGoodAsAnew_data();
    void followingIsAsGoodAsAnew();
};

void tst_PlotLine::nothing()
{
    const ValueHistory history;
    QVERIFY(PlotLine::of(history, 0, second, 100).columns.isEmpty());
    ValueHistory one;
    one.add(5 * second, 1);
    QVERIFY(PlotLine::of(one, second, second, 100).columns.isEmpty());
    QVERIFY(PlotLine::of(one, 0, 10 * second, 0).columns.isEmpty());
    QCOMPARE(PlotLine::of(one, 0, 10 * second, 100).columns.size(), 1);
}

void tst_PlotLine::pointByPoint()
{
    ValueHistory history;
    for (int i = 0; i < 10; ++i)
        history.add(i * second, i);
    const PlotLine line = PlotLine::of(history, 0, 9 * second, 90);
    QVERIFY(!line.isDense);
    QCOMPARE(line.columns.size(), 10);
    QCOMPARE(line.columns.at(3).place, 30.0);
    QCOMPARE(line.columns.at(3).last, 3.0F);
}

void tst_PlotLine::oneMoreOnBothSides()
{
    ValueHistory history;
    for (int i = 0; i < 10; ++i)
        history.add(i * second, i);
    const PlotLine line = PlotLine::of(history, 3 * second + 1, 5 * second - 1, 100);
    QCOMPARE(line.columns.size(), 3);
    QVERIFY(line.columns.first().place < 0);
    QVERIFY(line.columns.last().place > 100);
    // All of it is behind what is seen, or before it
    QCOMPARE(PlotLine::of(history, 60 * second, 70 * second, 100).columns.size(), 1);
    QCOMPARE(PlotLine::of(history, -60 * second, -50 * second, 100).columns.size(), 1);
}

void tst_PlotLine::peaksAreKept()
{
    ValueHistory history;
    for (int i = 0; i < 36000; ++i)
        history.add(i * second / 10, i == 17000 ? 900 : i == 17001 ? -900 : 5);
    const PlotLine line = PlotLine::of(history, 0, 3600 * second, 600);
    QVERIFY(line.isDense);
    QCOMPARE(line.highest, 900.0F);
    QCOMPARE(line.lowest, -900.0F);
    const PlotLine::Column &column = line.columns.at(17000 / 60);
    QCOMPARE(column.highest, 900.0F);
    QCOMPARE(column.lowest, -900.0F);
    QCOMPARE(column.last, 5.0F);
}

void tst_PlotLine::columnsAreBounded()
{
    ValueHistory history;
    for (int i = 0; i < 36000; ++i)
        history.add(i * second / 10, i % 7);
    QVERIFY(PlotLine::of(history, 0, 3600 * second, 600).columns.size() <= 602);
    QCOMPARE(PlotLine::of(history, 0, 3600 * second, 1).columns.size(), 1);
}

void tst_PlotLine::rangeOfWhatIsSeen()
{
    ValueHistory history;
    history.add(0, 1000);
    history.add(10 * second, 3);
    history.add(11 * second, 7);
    history.add(12 * second, 5);
    const PlotLine line = PlotLine::of(history, 11 * second, 13 * second, 100);
    QCOMPARE(line.lowest, 3.0F); // one more on the left
    QCOMPARE(line.highest, 7.0F);
}

void tst_PlotLine::gaps()
{
    ValueHistory history;
    for (int i = 0; i < 100; ++i)
        history.add(i * second, 1);
    for (int i = 0; i < 100; ++i)
        history.add((160 + i) * second, 2);
    for (const int width : {1000, 20}) {
        int count = 0;
        const PlotLine line = PlotLine::of(history, 0, 260 * second, width);
        for (const PlotLine::Column &column : line.columns)
            count += column.isBehindGap ? 1 : 0;
        QCOMPARE(count, 1);
    }
}

void tst_PlotLine::slowValuesHaveNoGaps()
{
    ValueHistory history;
    for (int i = 0; i < 10; ++i)
        history.add(i * 60 * second, i);
    const PlotLine line = PlotLine::of(history, 0, 600 * second, 100);
    for (const PlotLine::Column &column : line.columns)
        QVERIFY(!column.isBehindGap);
}

void tst_PlotLine::valueAt()
{
    ValueHistory history;
    QVERIFY(!PlotLine::valueAt(history, 0));
    history.add(2 * second, 4);
    history.add(3 * second, 6);
    QVERIFY(!PlotLine::valueAt(history, 2 * second - 1));
    QCOMPARE(*PlotLine::valueAt(history, 2 * second), 4.0F);
    QCOMPARE(*PlotLine::valueAt(history, 3 * second - 1), 4.0F);
    QCOMPARE(*PlotLine::valueAt(history, 60 * second), 6.0F);
}

void tst_PlotLine::historyThatHasGoneRound()
{
    ValueHistory history;
    for (int i = 0; i < 50000; ++i)
        history.add(i * second / 10, i);
    QVERIFY(!PlotLine::valueAt(history, 1399 * second));
    QCOMPARE(*PlotLine::valueAt(history, 1400 * second), 14000.0F);
    QCOMPARE(*PlotLine::valueAt(history, 4999 * second), 49990.0F);
    const PlotLine line = PlotLine::of(history, 4000 * second, 4001 * second, 100);
    QCOMPARE(line.columns.size(), 12);
    QCOMPARE(line.columns.at(1).last, 40000.0F);
}

void tst_PlotLine::followingIsAsGoodAsAnew_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("step"); // tenths of a second
    QTest::newRow("usual") << 100 << 1;
    QTest::newRow("narrow") << 7 << 3;
    QTest::newRow("steps of several columns") << 100 << 70;
    QTest::newRow("leaps over everything") << 100 << 5000;
}

void tst_PlotLine::followingIsAsGoodAsAnew()
{
    QFETCH(int, width);
    QFETCH(int, step);
    constexpr qint64 span = 300 * second;
    ValueHistory history;
    PlotLine followed;
    int value = 0;
    const auto add = [&history, &value](qint64 time) {
        if (time % (40 * second) < 28 * second) // with gaps
            history.add(time, value = (value * 31 + 17) % 101);
    };
    for (int i = 1; i < 60000; ++i) {
        add(i * second / 10);
        if (i < 4000 || i % step != 0)
            continue;
        const qint64 to = i * second / 10 + second / 20;
        followed.follow(history, to - span, to, width);
        add(to - second / 100); // the newest point grows behind its back
        followed.follow(history, to - span, to, width);
        if (i % (7 * step) != 0)
            continue;
        const PlotLine anew = PlotLine::of(history, to - span, to, width);
        QVERIFY(anew.isDense);
        // All but the left edge, of which those that went on know more.
        const qint64 edge = (to - span) * width / span;
        int compared = 0;
        for (int k = 1; k <= anew.columns.size(); ++k) {
            const PlotLine::Column &other = anew.columns.at(anew.columns.size() - k);
            if (other.bucket <= edge)
                break;
            const PlotLine::Column &one = followed.columns.at(followed.columns.size() - k);
            ++compared;
            QCOMPARE(one.bucket, other.bucket);
            QCOMPARE(one.lowest, other.lowest);
            QCOMPARE(one.highest, other.highest);
            QCOMPARE(one.last, other.last);
            QCOMPARE(one.place, other.place);
            QCOMPARE(one.isBehindGap, other.isBehindGap);
        }
        QCOMPARE(followed.columns.first().place < 0, anew.columns.first().place < 0);
        QVERIFY(compared >= width / 2);
        QVERIFY(followed.columns.size() <= 3 * width);
    }
}

QTEST_GUILESS_MAIN(tst_PlotLine)
#include "tst_plotline.moc"
