// SPDX-License-Identifier: MIT
#include <canopen/heartbeatconsumer.h>
#include <host/core/readforecast.h>

#include <QCanBusFrame>
#include <QtTest>

namespace {

using namespace std::chrono_literals;

void hear(CanOpen::HeartbeatConsumer *consumer, quint32 nodeId, char state)
{
    consumer->handleFrame(QCanBusFrame(0x700 + nodeId, QByteArray(1, state)));
}

} // namespace

class tst_ReadForecast : public QObject
{
    Q_OBJECT

private slots:
    void nodeOneIsGivenTime();
    void nodeOneMissing();
    void stoppedNodes();
    void otherStatesAreGood();
};

void tst_ReadForecast::nodeOneIsGivenTime()
{
    CanOpen::HeartbeatConsumer consumer;
    QVERIFY(ReadForecast::make(consumer, 1999ms).isGood());
    QVERIFY(!ReadForecast::make(consumer, 2000ms).isGood());
    hear(&consumer, 1, 0x05);
    QVERIFY(ReadForecast::make(consumer, 2000ms).isGood());
}

void tst_ReadForecast::nodeOneMissing()
{
    CanOpen::HeartbeatConsumer consumer;
    hear(&consumer, 2, 0x05);
    const ReadForecast forecast = ReadForecast::make(consumer, 5000ms);
    QVERIFY(forecast.isControllerMissing);
    QVERIFY(forecast.stoppedNodes.isEmpty());
}

void tst_ReadForecast::stoppedNodes()
{
    CanOpen::HeartbeatConsumer consumer;
    hear(&consumer, 127, 0x04);
    hear(&consumer, 1, 0x04);
    hear(&consumer, 3, 0x05);
    const ReadForecast forecast = ReadForecast::make(consumer, 0ms);
    QVERIFY(!forecast.isControllerMissing);
    QCOMPARE(forecast.stoppedNodes, (QVector<quint8>{1, 127}));
    QVERIFY(!forecast.isGood());
}

void tst_ReadForecast::otherStatesAreGood()
{
    CanOpen::HeartbeatConsumer consumer;
    hear(&consumer, 1, 0x7F);
    hear(&consumer, 2, 0x00);
    hear(&consumer, 3, 0x05);
    QVERIFY(ReadForecast::make(consumer, 5000ms).isGood());
}

QTEST_GUILESS_MAIN(tst_ReadForecast)
#include "tst_readforecast.moc"
