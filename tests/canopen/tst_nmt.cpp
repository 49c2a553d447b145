// SPDX-License-Identifier: MIT
#include "bytes.h"

#include <canopen/nmt.h>

#include <QCanBusFrame>
#include <QtTest>

using namespace CanOpen;

Q_DECLARE_METATYPE(QCanBusFrame)

class tst_Nmt : public QObject
{
    Q_OBJECT

private slots:
    void makesAndParses_data();
    void makesAndParses();
    void ignoresOtherFrames_data();
    void ignoresOtherFrames();
};

void tst_Nmt::makesAndParses_data()
{
    QTest::addColumn<quint8>("command");
    QTest::addColumn<quint8>("nodeId");
    QTest::addColumn<QByteArray>("payload");

    QTest::newRow("start all nodes") << quint8(0x01) << quint8(0) << bytes("01 00");
    QTest::newRow("stop node 5") << quint8(0x02) << quint8(5) << bytes("02 05");
    QTest::newRow("node 127 to pre-operational") << quint8(0x80) << quint8(127) << bytes("80 7F");
    QTest::newRow("reset node 1") << quint8(0x81) << quint8(1) << bytes("81 01");
    QTest::newRow("reset communication of node 1") << quint8(0x82) << quint8(1) << bytes("82 01");
}

void tst_Nmt::makesAndParses()
{
    QFETCH(quint8, command);
    QFETCH(quint8, nodeId);
    QFETCH(QByteArray, payload);

    const QCanBusFrame frame = makeNmtFrame({static_cast<NmtCommand>(command), nodeId});
    QCOMPARE(frame.frameId(), 0u);
    QCOMPARE(frame.payload(), payload);
    QVERIFY(frame.isValid());

    const std::optional<NmtMessage> message = parseNmtFrame(QCanBusFrame(0x000, payload));
    QVERIFY(message);
    QCOMPARE(static_cast<quint8>(message->command), command);
    QCOMPARE(message->nodeId, nodeId);
}

void tst_Nmt::ignoresOtherFrames_data()
{
    QTest::addColumn<QCanBusFrame>("frame");

    const QCanBusFrame good(0x000, bytes("01 05"));
    QCanBusFrame remote = good;
    remote.setFrameType(QCanBusFrame::RemoteRequestFrame);
    QCanBusFrame extended = good;
    extended.setExtendedFrameFormat(true);
    QTest::newRow("other identifier") << QCanBusFrame(0x001, bytes("01 05"));
    QTest::newRow("remote frame") << remote;
    QTest::newRow("extended identifier") << extended;
    QTest::newRow("no bytes") << QCanBusFrame(0x000, QByteArray());
    QTest::newRow("one byte") << QCanBusFrame(0x000, bytes("01"));
    QTest::newRow("three bytes") << QCanBusFrame(0x000, bytes("01 05 00"));
    QTest::newRow("unknown command") << QCanBusFrame(0x000, bytes("03 05"));
    QTest::newRow("node 128") << QCanBusFrame(0x000, bytes("01 80"));
}

void tst_Nmt::ignoresOtherFrames()
{
    QFETCH(QCanBusFrame, frame);
    QVERIFY(!parseNmtFrame(frame));
}

QTEST_APPLESS_MAIN(tst_Nmt)

#include "tst_nmt.moc"
