// SPDX-License-Identifier: MIT
#include <snapshot/busshare.h>

#include <QtTest>

using std::chrono::milliseconds;

namespace {

constexpr int exchange = 240; // bits of a question and its answer

/*! Spends whenever it may, for \a time; returns the bits. */
int spendFor(BusShare &share, milliseconds time)
{
    int bits = 0;
    milliseconds now{1000};
    const milliseconds end = now + time;
    while (now < end) {
        const milliseconds wait = share.wait(now);
        if (wait.count() > 0) {
            now += wait;
            continue;
        }
        share.spend(exchange, now);
        bits += exchange;
    }
    return bits;
}

} // namespace

/*! The part of the bus that may be used. */
class tst_BusShare : public QObject
{
    Q_OBJECT

private slots:
    void keepsToItsShare_data();
    void keepsToItsShare();
    void allOfItIsNoLimit();
    void debtIsPaidBack();
    void idleTimeIsNotSaved();
    void takesTheNearestOfWhatIsBeyond();
};

void tst_BusShare::keepsToItsShare_data()
{
    QTest::addColumn<int>("bitRate");
    QTest::addColumn<int>("percent");
    QTest::addColumn<int>("most"); // bits in 10 s, the burst included

    QTest::newRow("usual") << 250000 << 60 << 1500000 + 960;
    QTest::newRow("unknown bit rate") << 0 << 60 << 1500000 + 960;
    QTest::newRow("little") << 250000 << 1 << 25000 + 960;
    QTest::newRow("slow bus") << 10000 << 50 << 50000 + 960;
    QTest::newRow("fast bus") << 1000000 << 90 << 9000000 + 4500;
}

void tst_BusShare::keepsToItsShare()
{
    QFETCH(int, bitRate);
    QFETCH(int, percent);
    QFETCH(int, most);
    BusShare share;
    share.setBitRate(bitRate);
    share.setPercent(percent);
    const int bits = spendFor(share, milliseconds(10000));
    // What is begun while the bucket has a last bit is paid for afterwards.
    QVERIFY2(bits <= most + exchange, qPrintable(QString::number(bits)));
    QVERIFY2(bits > 0.98 * (most - 4500), qPrintable(QString::number(bits)));
}

void tst_BusShare::allOfItIsNoLimit()
{
    BusShare share;
    share.setPercent(100);
    for (int i = 0; i < 10000; ++i)
        share.spend(exchange, milliseconds(1));
    QCOMPARE(share.wait(milliseconds(1)).count(), qint64(0));
}

void tst_BusShare::debtIsPaidBack()
{
    BusShare share;
    share.setBitRate(250000);
    share.setPercent(50);                 // 125 bits a millisecond
    share.spend(960, milliseconds(0));    // the burst
    share.spend(12500, milliseconds(10)); // a long object, when 1250 had come in, of which 960 fit
    QCOMPARE(share.wait(milliseconds(10)).count(), qint64((12500 - 960) / 125 + 1));
    QVERIFY(share.wait(milliseconds(10 + 92)).count() > 0);
    QCOMPARE(share.wait(milliseconds(10 + 93)).count(), qint64(0));
}

void tst_BusShare::idleTimeIsNotSaved()
{
    BusShare share;
    share.setBitRate(250000);
    share.setPercent(60);
    share.spend(exchange, milliseconds(0));
    const milliseconds later(3600000);
    int questions = 0;
    for (; share.wait(later).count() == 0; ++questions)
        share.spend(exchange, later);
    QCOMPARE(questions, 4);

    // But a fast bus has room for what timers let wait: 5 ms of 900 bits each.
    BusShare fast;
    fast.setBitRate(1000000);
    fast.setPercent(90);
    fast.spend(exchange, milliseconds(0));
    questions = 0;
    for (; fast.wait(later).count() == 0; ++questions)
        fast.spend(exchange, later);
    QCOMPARE(questions, 19);
}

void tst_BusShare::takesTheNearestOfWhatIsBeyond()
{
    BusShare share;
    QCOMPARE(share.percent(), 60);
    share.setPercent(0);
    QCOMPARE(share.percent(), 1);
    share.setPercent(1000);
    QCOMPARE(share.percent(), 100);
}

QTEST_GUILESS_MAIN(tst_BusShare)
#include "tst_busshare.moc"
