// SPDX-License-Identifier: MIT
#include <host/pages/trace/tracesearch.h>

#include <QSet>
#include <QtTest>

using Direction = TraceSearch::Direction;
using State = TraceSearch::State;

/*! Looking for words in rows. */
class tst_TraceSearch : public QObject
{
    Q_OBJECT

private slots:
    void finds_data();
    void finds();
    void findsNothing();
    void nothingToLookAt();
    void inSlices();
    void stops();
};

void tst_TraceSearch::finds_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<bool>("isForward");
    QTest::addColumn<int>("row");
    QTest::addColumn<bool>("wentRound");

    // Of ten rows 2 and 7 match.
    QTest::newRow("from the beginning") << -1 << true << 2 << false;
    QTest::newRow("next") << 2 << true << 7 << false;
    QTest::newRow("round") << 7 << true << 2 << true;
    QTest::newRow("from the end") << -1 << false << 7 << false;
    QTest::newRow("before") << 7 << false << 2 << false;
    QTest::newRow("round backward") << 2 << false << 7 << true;
}

void tst_TraceSearch::finds()
{
    QFETCH(int, from);
    QFETCH(bool, isForward);
    TraceSearch search;
    search.start(from, 10, isForward ? Direction::Forward : Direction::Backward,
                 [](int row) { return row == 2 || row == 7; });
    QCOMPARE(search.advance(100), State::Found);
    QTEST(search.row(), "row");
    QTEST(search.wentRound(), "wentRound");
}

void tst_TraceSearch::findsNothing()
{
    TraceSearch search;
    QSet<int> looked;
    search.start(3, 10, Direction::Forward, [&looked](int row) {
        looked.insert(row);
        return false;
    });
    QCOMPARE(search.advance(100), State::NotFound);
    QCOMPARE(looked.size(), 10); // also the row where it began
    QVERIFY(!looked.contains(-1) && !looked.contains(10));
}

void tst_TraceSearch::nothingToLookAt()
{
    TraceSearch search;
    search.start(-1, 0, Direction::Backward, [](int) { return true; });
    QCOMPARE(search.advance(1), State::NotFound);
}

void tst_TraceSearch::inSlices()
{
    TraceSearch search;
    int looked = 0;
    search.start(-1, 10, Direction::Forward, [&looked](int row) {
        ++looked;
        return row == 5;
    });
    QCOMPARE(search.advance(4), State::Looking);
    QCOMPARE(looked, 4);
    QCOMPARE(search.advance(4), State::Found);
    QCOMPARE(looked, 6);
    QCOMPARE(search.row(), 5);
}

void tst_TraceSearch::stops()
{
    TraceSearch search;
    search.start(-1, 10, Direction::Forward, [](int) { return true; });
    search.stop();
    QCOMPARE(search.advance(4), State::Idle);
}

QTEST_GUILESS_MAIN(tst_TraceSearch)
#include "tst_tracesearch.moc"
