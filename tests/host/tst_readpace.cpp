// SPDX-License-Identifier: MIT
#include <host/core/readpace.h>
#include <host/core/readwords.h>

#include <QtTest>

using std::chrono::milliseconds;

class tst_ReadPace : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_now = milliseconds(5000);
        m_pace = ReadPace([this] { return m_now; });
    }

    void beforeTheFirstRequest();
    void firstNodeCountsAtOnce();
    void countsNodes();
    void nodeThatWasNotHeardIsCounted();
    void nodesOfTheReadBeforeAreExpected();
    void percentByTheUsualNumber();
    void percentByTheFirstNode();
    void moreThanExpectedIsNotOver();
    void timeLeft();
    void timeLeftInWords_data();
    void timeLeftInWords();
    void placeInWords();

private:
    void ask(quint8 nodeId, int requests, int msEach = 10)
    {
        for (int i = 0; i < requests; ++i) {
            m_pace.noteRequest(nodeId);
            m_now += milliseconds(msEach);
        }
    }

    milliseconds m_now{0};
    ReadPace m_pace{[] { return milliseconds(0); }};
};

void tst_ReadPace::beforeTheFirstRequest()
{
    QCOMPARE(m_pace.percent(), 0);
    QCOMPARE(m_pace.nodeNumber(), 0);
    QCOMPARE(m_pace.nodeCount(), 0);
    QVERIFY(!m_pace.timeLeft());
    m_pace.begin({1, 2, 3});
    QCOMPARE(m_pace.percent(), 0);
    QCOMPARE(m_pace.nodeCount(), 3);
}

void tst_ReadPace::firstNodeCountsAtOnce()
{
    m_pace.begin({1, 2, 7}, 1);
    QCOMPARE(m_pace.nodeNumber(), 1);
    QCOMPARE(m_pace.nodeCount(), 3);
    QCOMPARE(m_pace.percent(), 0);
    ask(1, 10);
    ask(2, 6);
    QCOMPARE(m_pace.percent(), 50); // 15 of 30
}

void tst_ReadPace::countsNodes()
{
    m_pace.begin({1, 2, 7});
    ask(1, 204);
    QCOMPARE(m_pace.nodeNumber(), 1);
    ask(2, 1);
    QCOMPARE(m_pace.nodeNumber(), 2);
    QCOMPARE(m_pace.nodeCount(), 3);
}

void tst_ReadPace::nodeThatWasNotHeardIsCounted()
{
    m_pace.begin({1});
    ask(1, 204);
    ask(5, 1);
    QCOMPARE(m_pace.nodeNumber(), 2);
    QCOMPARE(m_pace.nodeCount(), 2);
}

void tst_ReadPace::nodesOfTheReadBeforeAreExpected()
{
    m_pace.begin({1, 5});
    ask(1, 204);
    ask(5, 204);
    m_pace.begin({1});
    QCOMPARE(m_pace.nodeCount(), 2);
    QCOMPARE(m_pace.nodeNumber(), 0);
}

void tst_ReadPace::percentByTheUsualNumber()
{
    m_pace.begin({1, 2});
    ask(1, 103); // 102 are answered, of 408
    QCOMPARE(m_pace.percent(), 25);
    ask(1, 101);
    ask(2, 103);
    QCOMPARE(m_pace.percent(), 75);
    ask(2, 101);
    QCOMPARE(m_pace.percent(), 99);
}

void tst_ReadPace::percentByTheFirstNode()
{
    m_pace.begin({1, 2, 3, 4});
    ask(1, 10); // of another plug-in
    ask(2, 6);
    QCOMPARE(m_pace.percent(), 37); // 15 of 40
}

void tst_ReadPace::moreThanExpectedIsNotOver()
{
    m_pace.begin({1, 2});
    ask(1, 10);
    ask(2, 500);
    QCOMPARE(m_pace.percent(), 95); // all but the one that is out
    m_pace.begin({1});
    ask(1, 1000);
    QVERIFY(m_pace.percent() < 100);
}

void tst_ReadPace::timeLeft()
{
    m_pace.begin({1, 2});
    ask(1, 100, 9); // 900 ms
    QVERIFY(!m_pace.timeLeft());
    ask(1, 3, 40); // 1020 ms, 102 answered, 306 to come
    QCOMPARE(m_pace.timeLeft()->count(), 3060LL);

    m_pace.begin({1, 2});
    ask(1, 20, 1000); // too few to tell
    QVERIFY(!m_pace.timeLeft());
    ask(1, 1, 1000); // 20 answered
    QVERIFY(m_pace.timeLeft().has_value());
}

void tst_ReadPace::timeLeftInWords_data()
{
    QTest::addColumn<int>("msEach");
    QTest::addColumn<QString>("text");

    // 102 of 204 answered: as long as it has taken.
    QTest::newRow("too early") << 9 << QString();
    QTest::newRow("seconds, upwards") << 10 << QStringLiteral("2 s left");
    QTest::newRow("less than a minute") << 500 << QStringLiteral("52 s left");
    QTest::newRow("minutes, upwards") << 600 << QStringLiteral("2 min left");
}

void tst_ReadPace::timeLeftInWords()
{
    QFETCH(int, msEach);
    m_pace.begin({1});
    ask(1, 103, msEach);
    QTEST(ReadWords::timeLeft(m_pace), "text");
}

void tst_ReadPace::placeInWords()
{
    m_pace.begin({1, 2, 5});
    ask(1, 204);
    ask(2, 1);
    QCOMPARE(ReadWords::place(m_pace, 2, {0x60AB, 3}),
             QStringLiteral("Reading node 2 (2 of 3), object 60ABh ..."));
}

QTEST_GUILESS_MAIN(tst_ReadPace)
#include "tst_readpace.moc"
