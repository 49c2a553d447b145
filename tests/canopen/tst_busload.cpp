// SPDX-License-Identifier: MIT
#include <canopen/busload.h>

#include <QCanBusFrame>
#include <QtTest>

using namespace CanOpen;
using namespace std::chrono_literals;

class tst_BusLoad : public QObject
{
    Q_OBJECT

private slots:
    void countsBits();
    void shareOfTheTime();
    void countsFromTheGivenMoment();
    void unknownWithoutBitRate();
    void unknownWithoutTime();
    void fullFrom95PercentOn();
};

namespace {

const QCanBusFrame frame(0x181, QByteArray(8, '\0')); // 120 bits

BusLoad loadOf(int frames, int bitRate)
{
    BusLoad load;
    load.setBitRate(bitRate);
    for (int i = 0; i < frames; ++i)
        load.note(frame);
    return load;
}

} // namespace

void tst_BusLoad::countsBits()
{
    QCOMPARE(loadOf(0, 0).bits(), quint64(0));
    QCOMPARE(loadOf(3, 0).bits(), quint64(360));
}

void tst_BusLoad::shareOfTheTime()
{
    // 6000 bits in 100 ms are 60 kbit/s.
    QCOMPARE(loadOf(50, 250000).share(0, 100ms), std::optional<double>(0.24));
    QCOMPARE(loadOf(50, 125000).share(0, 100ms), std::optional<double>(0.48));
    QCOMPARE(loadOf(50, 250000).share(0, 50ms), std::optional<double>(0.48));
    QCOMPARE(loadOf(0, 250000).share(0, 50ms), std::optional<double>(0.0));
}

void tst_BusLoad::countsFromTheGivenMoment()
{
    QCOMPARE(loadOf(50, 250000).share(3000, 100ms), std::optional<double>(0.12));
}

void tst_BusLoad::unknownWithoutBitRate()
{
    QVERIFY(!loadOf(50, 0).share(0, 100ms));
    QVERIFY(!loadOf(5000, 0).isFull(0, 100ms));
}

void tst_BusLoad::unknownWithoutTime()
{
    QVERIFY(!loadOf(50, 250000).share(0, 0ms));
    QVERIFY(!loadOf(50, 250000).isFull(0, 0ms));
}

void tst_BusLoad::fullFrom95PercentOn()
{
    QVERIFY(!loadOf(94, 120000).isFull(0, 100ms));
    QVERIFY(loadOf(95, 120000).isFull(0, 100ms));
    QVERIFY(loadOf(101, 120000).isFull(0, 100ms));
}

QTEST_GUILESS_MAIN(tst_BusLoad)
#include "tst_busload.moc"
