// SPDX-License-Identifier: MIT
#include <simulator/agenda.h>

#include <QtTest>

using namespace Simulator;

class tst_Agenda : public QObject
{
    Q_OBJECT

private slots:
    void runsInOrderOfTime();
    void nothingIsDueInAnEmptyAgenda();
    void cancelledActionsDoNotRun();
    void periodicActionsRepeat();
    void periodicActionMayCancelItself();
    void actionsMayPlanActions();
    void longStallIsNotCaughtUp();
};

void tst_Agenda::runsInOrderOfTime()
{
    Agenda agenda;
    QString order;
    agenda.add(300, [&order] { order += QLatin1Char('c'); });
    agenda.add(100, [&order] { order += QLatin1Char('a'); });
    agenda.add(200, [&order] { order += QLatin1Char('b'); });
    agenda.add(200, [&order] { order += QLatin1Char('B'); });
    QCOMPARE(agenda.nextDue().value_or(0), qint64(100));
    agenda.runUntil(99);
    QCOMPARE(order, QString());
    agenda.runUntil(200);
    QCOMPARE(order, QStringLiteral("abB"));
    QCOMPARE(agenda.nextDue().value_or(0), qint64(300));
    agenda.runUntil(1000);
    QCOMPARE(order, QStringLiteral("abBc"));
}

void tst_Agenda::nothingIsDueInAnEmptyAgenda()
{
    Agenda agenda;
    QVERIFY(!agenda.nextDue().has_value());
    agenda.runUntil(1000000);
    agenda.add(5, [] {});
    agenda.clear();
    QVERIFY(!agenda.nextDue().has_value());
}

void tst_Agenda::cancelledActionsDoNotRun()
{
    Agenda agenda;
    int runs = 0;
    const Agenda::Entry entry = agenda.add(100, [&runs] { ++runs; });
    const quint64 periodic = agenda.addPeriodic(100, 100, [&runs] { ++runs; });
    agenda.cancel(entry);
    agenda.cancelPeriodic(periodic);
    agenda.cancelPeriodic(periodic);
    agenda.cancelPeriodic(0);
    agenda.runUntil(1000);
    QCOMPARE(runs, 0);
    QVERIFY(!agenda.nextDue().has_value());
}

void tst_Agenda::periodicActionsRepeat()
{
    Agenda agenda;
    int runs = 0;
    agenda.addPeriodic(50, 100, [&runs] { ++runs; });
    agenda.runUntil(49);
    QCOMPARE(runs, 0);
    agenda.runUntil(50);
    QCOMPARE(runs, 1);
    agenda.runUntil(149);
    QCOMPARE(runs, 1);
    agenda.runUntil(450);
    QCOMPARE(runs, 5);
}

void tst_Agenda::periodicActionMayCancelItself()
{
    Agenda agenda;
    int runs = 0;
    quint64 number = 0;
    number = agenda.addPeriodic(10, 10, [&] {
        if (++runs == 3)
            agenda.cancelPeriodic(number);
    });
    agenda.runUntil(1000);
    QCOMPARE(runs, 3);
}

void tst_Agenda::actionsMayPlanActions()
{
    Agenda agenda;
    QVector<int> times;
    agenda.add(10, [&] {
        times.append(10);
        agenda.add(20, [&times] { times.append(20); });
        agenda.add(500, [&times] { times.append(500); });
    });
    agenda.runUntil(100);
    QCOMPARE(times, QVector<int>({10, 20}));
}

void tst_Agenda::longStallIsNotCaughtUp()
{
    Agenda agenda;
    int runs = 0;
    agenda.addPeriodic(0, 100, [&runs] { ++runs; });
    agenda.runUntil(3600LL * 1000000); // an hour asleep
    QVERIFY2(runs <= 2003, qPrintable(QString::number(runs)));
    QVERIFY2(runs >= 1000, qPrintable(QString::number(runs)));
}

QTEST_GUILESS_MAIN(tst_Agenda)
#include "tst_agenda.moc"
