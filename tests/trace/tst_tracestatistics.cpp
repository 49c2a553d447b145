// SPDX-License-Identifier: MIT
#include "traceframes.h"

#include <trace/statistics/tracestatistics.h>

#include <QtTest>

namespace {

constexpr qint64 second = 1'000'000; // us

} // namespace

class tst_TraceStatistics : public QObject
{
    Q_OBJECT

private slots:
    void nothing();
    void counts();
    void busiestSecond();
    void secondsBeforeZero();
    void backwardTimes();
};

void tst_TraceStatistics::nothing()
{
    const TraceStatistics statistics;
    QCOMPARE(statistics.all().frames, quint64(0));
    QCOMPARE(statistics.all().duration(), 0.0);
    QVERIFY(statistics.channels().isEmpty());
    QVERIFY(statistics.identifiers().isEmpty());
}

void tst_TraceStatistics::counts()
{
    TraceStatistics statistics;
    statistics.add(traceFrame(10 * second, 0x123, "1122334455667788"));
    statistics.add(traceFrame(11 * second, 0x123, "", TraceFrame::Extended | TraceFrame::Sent));
    statistics.add(remoteFrame(12 * second, 0x123, 8, 0, 2));
    statistics.add(traceFrame(13 * second, 0x123, "0000000000000000", TraceFrame::Error, 2));
    statistics.add(traceFrame(14 * second + 500'000, 0x080, "", 0, 2));
    QCOMPARE(statistics.all().frames, quint64(5));
    QCOMPARE(statistics.all().duration(), 4.5);
    // 120 bits, 67 + 5, 47 + 3, none, 47 + 3
    QCOMPARE(statistics.all().bits, quint64(292));
    QCOMPARE(statistics.channels().size(), 3);
    QCOMPARE(statistics.channels().at(0).all.bits, quint64(192));
    QCOMPARE(statistics.channels().at(0).sent, quint64(1));
    QCOMPARE(statistics.channels().at(1).all.frames, quint64(0));
    QCOMPARE(statistics.channels().at(2).all.frames, quint64(3));
    QCOMPARE(statistics.channels().at(2).errorFrames, quint64(1));
    QCOMPARE(statistics.channels().at(2).remoteFrames, quint64(1));
    QCOMPARE(statistics.channels().at(2).all.first, 12 * second);

    const QVector<IdentifierCount> identifiers = statistics.identifiers();
    QCOMPARE(identifiers.size(), 4);
    QCOMPARE(identifiers.at(0).id, 0x123U);
    QVERIFY(!identifiers.at(0).isExtended);
    QVERIFY(identifiers.at(1).isExtended);
    QCOMPARE(identifiers.at(1).id, 0x123U);
    QCOMPARE(int(identifiers.at(2).channel), 2);
    QCOMPARE(identifiers.at(2).id, 0x080U);
    QCOMPARE(identifiers.at(3).count.frames, quint64(1));
}

void tst_TraceStatistics::busiestSecond()
{
    TraceStatistics statistics;
    for (const qint64 time : {0, 100, 1'000'000, 1'200'000, 1'999'999, 2'000'000})
        statistics.add(traceFrame(time, 1, ""));
    QCOMPARE(statistics.channels().at(0).mostBits, quint64(150));
}

void tst_TraceStatistics::secondsBeforeZero()
{
    TraceStatistics statistics;
    for (const qint64 time : {-1'000'001, -1'000'000, -1, 0, 999'999, 1'000'000})
        statistics.add(traceFrame(time, 1, ""));
    // 50 bits each, two in a second
    QCOMPARE(statistics.channels().at(0).mostBits, quint64(100));
}

void tst_TraceStatistics::backwardTimes()
{
    TraceStatistics statistics;
    for (const qint64 time : {5, 4, 6, 3})
        statistics.add(traceFrame(time, 1, ""));
    QCOMPARE(statistics.backwardTimes(), quint64(2));
    QCOMPARE(statistics.all().first, qint64(3));
    QCOMPARE(statistics.all().last, qint64(6));
}

QTEST_GUILESS_MAIN(tst_TraceStatistics)
#include "tst_tracestatistics.moc"
