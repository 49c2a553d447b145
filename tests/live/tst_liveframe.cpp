// SPDX-License-Identifier: MIT
#include "frames.h"

#include <QtTest>

Q_DECLARE_METATYPE(FrameKind)

/*! Frames taken apart. */
class tst_LiveFrame : public QObject
{
    Q_OBJECT

private slots:
    void kinds_data();
    void kinds();
    void extendedFramesAreOfNobody();
    void errorFrames();
    void invalidFrameIsAnError();
    void longFrame();
    void names();
};

void tst_LiveFrame::kinds_data()
{
    QTest::addColumn<quint32>("id");
    QTest::addColumn<FrameKind>("kind");
    QTest::addColumn<int>("node");
    QTest::addColumn<bool>("isFromNode");

    const auto row = [](const char *name, quint32 id, FrameKind kind, int node, bool isFromNode) {
        QTest::newRow(name) << id << kind << node << isFromNode;
    };
    row("NMT", 0x000, FrameKind::Nmt, 0, false);
    row("behind NMT", 0x001, FrameKind::Other, 0, false);
    row("SYNC", 0x080, FrameKind::Sync, 0, false);
    row("first emergency", 0x081, FrameKind::Emergency, 1, true);
    row("last emergency", 0x0FF, FrameKind::Emergency, 127, true);
    row("TIME", 0x100, FrameKind::Time, 0, false);
    row("behind TIME", 0x101, FrameKind::Other, 0, false);
    row("transmit PDO 1", 0x182, FrameKind::Pdo, 2, true);
    row("receive PDO 1", 0x202, FrameKind::Pdo, 2, false);
    row("transmit PDO 4", 0x4FF, FrameKind::Pdo, 127, true);
    row("receive PDO 4", 0x501, FrameKind::Pdo, 1, false);
    row("PDO of nobody", 0x180, FrameKind::Other, 0, false);
    row("SDO answer", 0x585, FrameKind::Sdo, 5, true);
    row("SDO request", 0x605, FrameKind::Sdo, 5, false);
    row("SDO of nobody", 0x600, FrameKind::Other, 0, false);
    row("without a use", 0x685, FrameKind::Other, 0, false);
    row("heartbeat", 0x77F, FrameKind::Heartbeat, 127, true);
    row("heartbeat of nobody", 0x700, FrameKind::Other, 0, false);
    row("LSS", 0x7E5, FrameKind::Other, 0, false);
}

void tst_LiveFrame::kinds()
{
    QFETCH(quint32, id);
    const LiveFrame frame = frameAt(17, id, "0102");
    QTEST(frame.kind, "kind");
    QTEST(int(frame.nodeId), "node");
    QTEST(frame.isFromNode(), "isFromNode");
    QCOMPARE(frame.time, qint64(17));
    QCOMPARE(frame.payload, QByteArray::fromHex("0102"));
    QVERIFY(frame.bits >= 47 + 16);
    QCOMPARE(frameAt(0, 0x585, "").isSdoAnswer(), true);
    QCOMPARE(frameAt(0, 0x605, "").isSdoAnswer(), false);
}

void tst_LiveFrame::extendedFramesAreOfNobody()
{
    QCanBusFrame original(0x705, QByteArray(1, '\5'));
    original.setExtendedFrameFormat(true);
    const LiveFrame frame = LiveFrame::of(original, 0);
    QCOMPARE(frame.kind, FrameKind::Other);
    QCOMPARE(int(frame.nodeId), 0);
    QVERIFY(frame.isExtended);
    QVERIFY(!frame.isFromNode());
    QVERIFY(frame.bits >= 67 + 8);
}

void tst_LiveFrame::errorFrames()
{
    const LiveFrame frame = errorAt(0, QCanBusFrame::ControllerError, "0001000000000000");
    QCOMPARE(frame.kind, FrameKind::Error);
    QCOMPARE(frame.bits, 0);
    QCOMPARE(frame.errors, quint32(0x04));
    QCOMPARE(int(frame.nodeId), 0);
}

void tst_LiveFrame::invalidFrameIsAnError()
{
    QCOMPARE(LiveFrame::of(QCanBusFrame(QCanBusFrame::InvalidFrame), 0).kind, FrameKind::Error);
}

void tst_LiveFrame::longFrame()
{
    QCanBusFrame original(0x185, QByteArray(64, '\0'));
    const LiveFrame frame = LiveFrame::of(original, 0);
    QCOMPARE(frame.kind, FrameKind::Pdo);
    QCOMPARE(frame.payload.size(), 64);
    QCOMPARE(frame.bits, 47 + 512 + 54); // estimated
}

void tst_LiveFrame::names()
{
    const QByteArrayList expected{"nmt", "sync",      "time",  "emergency", "pdo",
                                  "sdo", "heartbeat", "other", "error"};
    for (int i = 0; i < expected.size(); ++i)
        QCOMPARE(QByteArray(frameKindName(static_cast<FrameKind>(i))), expected.at(i));
}

QTEST_GUILESS_MAIN(tst_LiveFrame)
#include "tst_liveframe.moc"
