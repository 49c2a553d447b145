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

QTEST_GUILESS_MAIN(tst_PlotLine)
#include "tst_plotline.moc"
