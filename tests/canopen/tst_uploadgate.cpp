// SPDX-License-Identifier: MIT
#include <canopen/uploadgate.h>

#include <QCanBusFrame>
#include <QtTest>

using CanOpen::isUploadRequest;

namespace {

QCanBusFrame requestOf(quint32 cobId, quint8 command)
{
    QByteArray payload(8, '\0');
    payload[0] = static_cast<char>(command);
    return QCanBusFrame(cobId, payload);
}

} // namespace

/*! What may be sent to a vehicle that is only looked at. */
class tst_UploadGate : public QObject
{
    Q_OBJECT

private slots:
    void letsUploadsAndAbortsThrough_data();
    void letsUploadsAndAbortsThrough();
    void refusesEveryOtherCommand();
    void refusesEveryOtherIdentifier();
    void refusesOtherLengths();
    void refusesOtherFormats();
};

void tst_UploadGate::letsUploadsAndAbortsThrough_data()
{
    QTest::addColumn<QByteArray>("payload");

    QTest::newRow("initiate upload") << QByteArray::fromHex("4018100100000000");
    QTest::newRow("segment, toggle 0") << QByteArray::fromHex("6000000000000000");
    QTest::newRow("segment, toggle 1") << QByteArray::fromHex("7000000000000000");
    QTest::newRow("abort") << QByteArray::fromHex("8018100100000408");
    QTest::newRow("initiate block upload") << QByteArray::fromHex("A018100100000000");
    QTest::newRow("the same with CRC") << QByteArray::fromHex("A41810011F040000");
    QTest::newRow("block end") << QByteArray::fromHex("A100000000000000");
    QTest::newRow("block acknowledge") << QByteArray::fromHex("A21F1F0000000000");
    QTest::newRow("block start") << QByteArray::fromHex("A300000000000000");
}

void tst_UploadGate::letsUploadsAndAbortsThrough()
{
    QFETCH(QByteArray, payload);
    QVERIFY(isUploadRequest(QCanBusFrame(0x601, payload)));
    QVERIFY(isUploadRequest(QCanBusFrame(0x67F, payload)));
}

void tst_UploadGate::refusesEveryOtherCommand()
{
    int passed = 0;
    for (int command = 0; command <= 0xFF; ++command)
        passed += isUploadRequest(requestOf(0x605, static_cast<quint8>(command))) ? 1 : 0;
    QCOMPARE(passed, 9);
    QVERIFY(!isUploadRequest(requestOf(0x605, 0x23))); // writes four bytes
    QVERIFY(!isUploadRequest(requestOf(0x605, 0x2F))); // writes one
    QVERIFY(!isUploadRequest(requestOf(0x605, 0x00))); // writes a segment
    QVERIFY(!isUploadRequest(requestOf(0x605, 0xC2))); // begins to write blocks
}

void tst_UploadGate::refusesEveryOtherIdentifier()
{
    QVector<quint32> passed;
    for (quint32 cobId = 0; cobId <= 0x7FF; ++cobId) {
        if (isUploadRequest(requestOf(cobId, 0x40)))
            passed.append(cobId);
    }
    QCOMPARE(passed.size(), 127);
    QCOMPARE(passed.first(), 0x601u);
    QCOMPARE(passed.last(), 0x67Fu);
}

void tst_UploadGate::refusesOtherLengths()
{
    for (int size = 0; size <= 64; ++size) {
        QByteArray payload(size, '\0');
        payload.replace(0, std::min(size, 1), QByteArray(std::min(size, 1), '\x40'));
        QCOMPARE(isUploadRequest(QCanBusFrame(0x601, payload)), size == 8);
    }
}

void tst_UploadGate::refusesOtherFormats()
{
    QCanBusFrame extended = requestOf(0x601, 0x40);
    extended.setExtendedFrameFormat(true);
    QVERIFY(!isUploadRequest(extended));
    QCanBusFrame remote = requestOf(0x601, 0x40);
    remote.setFrameType(QCanBusFrame::RemoteRequestFrame);
    QVERIFY(!isUploadRequest(remote));
    QCanBusFrame error = requestOf(0x601, 0x40);
    error.setFrameType(QCanBusFrame::ErrorFrame);
    QVERIFY(!isUploadRequest(error));
    QCanBusFrame flexible = requestOf(0x601, 0x40);
    flexible.setFlexibleDataRateFormat(true);
    QVERIFY(!isUploadRequest(flexible));
    QVERIFY(!isUploadRequest(QCanBusFrame(QCanBusFrame::InvalidFrame)));
}

QTEST_GUILESS_MAIN(tst_UploadGate)
#include "tst_uploadgate.moc"
