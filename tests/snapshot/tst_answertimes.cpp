// SPDX-License-Identifier: MIT
#include <snapshot/answertimes.h>

#include <QtTest>

/*! How long a node takes for its answers. */
class tst_AnswerTimes : public QObject
{
    Q_OBJECT

private slots:
    void knowsNothingAtFirst();
    void medianIsTheOneInTheMiddle_data();
    void medianIsTheOneInTheMiddle();
    void longTimesStayWhole();
};

void tst_AnswerTimes::knowsNothingAtFirst()
{
    QVERIFY(!AnswerTimes().median());
    QVERIFY(!AnswerTimes().longest());
}

void tst_AnswerTimes::medianIsTheOneInTheMiddle_data()
{
    QTest::addColumn<QVector<int>>("times");
    QTest::addColumn<int>("median");
    QTest::addColumn<int>("longest");

    QTest::newRow("one") << QVector<int>{7} << 7 << 7;
    QTest::newRow("at once") << QVector<int>{0, 0, 3} << 0 << 3;
    QTest::newRow("odd") << QVector<int>{900, 1, 5} << 5 << 900;
    QTest::newRow("even") << QVector<int>{8, 2, 4, 6} << 4 << 8;
}

void tst_AnswerTimes::medianIsTheOneInTheMiddle()
{
    QFETCH(QVector<int>, times);
    AnswerTimes answers;
    for (const int time : qAsConst(times))
        answers.add(time);
    QTEST(answers.median().value_or(-1), "median");
    QTEST(answers.longest().value_or(-1), "longest");
}

void tst_AnswerTimes::longTimesStayWhole()
{
    AnswerTimes answers;
    answers.add(60000);
    answers.add(3);
    answers.add(Q_INT64_C(100000000000));
    QCOMPARE(answers.median().value_or(-1), 1000);
    QCOMPARE(answers.longest().value_or(-1), 2147483647);
}

QTEST_GUILESS_MAIN(tst_AnswerTimes)
#include "tst_answertimes.moc"
