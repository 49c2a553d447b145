// SPDX-License-Identifier: MIT
#include "bytes.h"

#include <canopen/heartbeat.h>

#include <QCanBusFrame>
#include <QtTest>

using namespace CanOpen;

Q_DECLARE_METATYPE(QCanBusFrame)

class tst_Heartbeat : public QObject
{
    Q_OBJECT

private slots:
    void makes();
    void parses_data();
    void parses();
    void everyStateByte();
    void ignoresOtherFrames_data();
    void ignoresOtherFrames();
};

void tst_Heartbeat::makes()
{
    const QCanBusFrame frame = makeHeartbeatFrame({127, NmtState::PreOperational});
    QCOMPARE(frame.frameId(), 0x77Fu);
    QCOMPARE(frame.payload(), bytes("7F"));
    QCOMPARE(makeHeartbeatFrame({1, NmtState::BootUp}).payload(), bytes("00"));
    QCOMPARE(makeHeartbeatFrame({1, NmtState::BootUp}).frameId(), 0x701u);
}

void tst_Heartbeat::parses_data()
{
    QTest::addColumn<quint32>("id");
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<int>("nodeId");
    QTest::addColumn<int>("state");

    QTest::newRow("boot-up") << 0x701u << bytes("00") << 1 << 0x00;
    QTest::newRow("stopped") << 0x77Fu << bytes("04") << 127 << 0x04;
    QTest::newRow("operational") << 0x705u << bytes("05") << 5 << 0x05;
    QTest::newRow("pre-operational") << 0x705u << bytes("7F") << 5 << 0x7F;
    QTest::newRow("operational, toggled") << 0x705u << bytes("85") << 5 << 0x05;
    QTest::newRow("pre-operational, toggled") << 0x705u << bytes("FF") << 5 << 0x7F;
    QTest::newRow("boot-up, toggled") << 0x705u << bytes("80") << 5 << 0x00;
    QTest::newRow("two bytes") << 0x705u << bytes("05 00") << 5 << 0x05;
    QTest::newRow("eight bytes") << 0x705u << bytes("04 00 00 00 00 00 00 00") << 5 << 0x04;
}

void tst_Heartbeat::parses()
{
    QFETCH(quint32, id);
    QFETCH(QByteArray, payload);
    const std::optional<Heartbeat> heartbeat = parseHeartbeatFrame(QCanBusFrame(id, payload));
    QVERIFY(heartbeat);
    QTEST(static_cast<int>(heartbeat->nodeId), "nodeId");
    QTEST(static_cast<int>(heartbeat->state), "state");
}

void tst_Heartbeat::everyStateByte()
{
    int known = 0;
    for (int byte = 0; byte <= 0xFF; ++byte) {
        const QByteArray payload(1, static_cast<char>(byte));
        known += parseHeartbeatFrame(QCanBusFrame(0x701, payload)).has_value() ? 1 : 0;
    }
    QCOMPARE(known, 8); // four states, each with the top bit and without
}

void tst_Heartbeat::ignoresOtherFrames_data()
{
    QTest::addColumn<QCanBusFrame>("frame");

    const QCanBusFrame good(0x705, bytes("05"));
    QCanBusFrame remote = good;
    remote.setFrameType(QCanBusFrame::RemoteRequestFrame);
    QCanBusFrame error = good;
    error.setFrameType(QCanBusFrame::ErrorFrame);
    QCanBusFrame extended = good;
    extended.setExtendedFrameFormat(true);
    QTest::newRow("no bytes") << QCanBusFrame(0x705, QByteArray());
    QTest::newRow("remote frame of node guarding") << remote;
    QTest::newRow("error frame") << error;
    QTest::newRow("extended identifier") << extended;
    QTest::newRow("700h") << QCanBusFrame(0x700, bytes("05"));
    QTest::newRow("780h") << QCanBusFrame(0x780, bytes("05"));
    QTest::newRow("SDO") << QCanBusFrame(0x605, bytes("05"));
    QTest::newRow("unknown state 1") << QCanBusFrame(0x705, bytes("01"));
    QTest::newRow("unknown state 7E") << QCanBusFrame(0x705, bytes("7E"));
}

void tst_Heartbeat::ignoresOtherFrames()
{
    QFETCH(QCanBusFrame, frame);
    QVERIFY(!parseHeartbeatFrame(frame));
}

QTEST_APPLESS_MAIN(tst_Heartbeat)

#include "tst_heartbeat.moc"
