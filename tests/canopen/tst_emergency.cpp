// SPDX-License-Identifier: MIT
#include <canopen/emergency.h>

#include <QCanBusFrame>
#include <QtTest>

using namespace CanOpen;

class tst_Emergency : public QObject
{
    Q_OBJECT

private slots:
    void makesFrame();
    void usesCobIdOfObject();
    void parsesFrame();
    void refusesOtherFrames_data();
    void refusesOtherFrames();
    void historyHasCodeAndAddition();
    void resets();
    void words_data();
    void words();
    void registerBits_data();
    void registerBits();
    void wholeRegister();
};

void tst_Emergency::makesFrame()
{
    const Emergency emergency{0x4210, 0x09, {1, 2, 3, 4, 5}};
    const QCanBusFrame frame = makeEmergencyFrame(0x84, emergency);
    QCOMPARE(frame.frameId(), quint32(0x84));
    QVERIFY(!frame.hasExtendedFrameFormat());
    QCOMPARE(frame.payload().toHex(), QByteArray("1042090102030405"));
}

void tst_Emergency::usesCobIdOfObject()
{
    QCOMPARE(makeEmergencyFrame(0x80000184, {}).frameId(), quint32(0x184));
    const QCanBusFrame wide = makeEmergencyFrame(0x21234567, {});
    QCOMPARE(wide.frameId(), quint32(0x01234567));
    QVERIFY(wide.hasExtendedFrameFormat());
}

void tst_Emergency::parsesFrame()
{
    const std::optional<Emergency> emergency
        = parseEmergency(QCanBusFrame(0x84, QByteArray::fromHex("10ff81a1a2a3a4a5")));
    QVERIFY(emergency);
    QCOMPARE(emergency->errorCode, quint16(0xFF10));
    QCOMPARE(emergency->errorRegister, quint8(0x81));
    QCOMPARE(emergency->manufacturer, (std::array<quint8, 5>{0xA1, 0xA2, 0xA3, 0xA4, 0xA5}));
}

void tst_Emergency::refusesOtherFrames_data()
{
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<bool>("isRemote");

    QTest::newRow("no byte, as a SYNC") << QByteArray() << false;
    QTest::newRow("seven bytes") << QByteArray(7, '\1') << false;
    QTest::newRow("remote frame") << QByteArray(8, '\1') << true;
}

void tst_Emergency::refusesOtherFrames()
{
    QFETCH(QByteArray, payload);
    QFETCH(bool, isRemote);

    QCanBusFrame frame(0x84, payload);
    if (isRemote)
        frame.setFrameType(QCanBusFrame::RemoteRequestFrame);
    QVERIFY(!parseEmergency(frame));
}

void tst_Emergency::historyHasCodeAndAddition()
{
    QCOMPARE((Emergency{0x4210, 0x09, {1, 2, 3, 4, 5}}).historyEntry(), quint32(0x02014210));
    QCOMPARE((Emergency{0xFF10, 0x81, {0, 0xFE, 0, 0, 0}}).historyEntry(), quint32(0xFE00FF10));
}

void tst_Emergency::resets()
{
    QVERIFY((Emergency{0x0000, 0, {}}).isReset());
    QVERIFY((Emergency{0x00FF, 0, {}}).isReset());
    QVERIFY(!(Emergency{0x1000, 0, {}}).isReset());
}

void tst_Emergency::words_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("words");

    const auto row = [](int code, const char *words) {
        QTest::addRow("%04X", code) << code << QString::fromLatin1(words);
    };
    row(0x0001, "error reset or no error");
    row(0x1000, "generic error");
    row(0x2000, "current");
    row(0x2101, "current, input side");
    row(0x2210, "current inside the device");
    row(0x23FF, "current, output side");
    row(0x3000, "voltage");
    row(0x3110, "mains voltage");
    row(0x3210, "voltage inside the device");
    row(0x3310, "output voltage");
    row(0x4000, "temperature");
    row(0x4110, "ambient temperature");
    row(0x4210, "device temperature");
    row(0x5000, "hardware");
    row(0x5530, "hardware");
    row(0x6000, "software");
    row(0x6100, "internal software");
    row(0x6200, "user software");
    row(0x6300, "data set");
    row(0x7000, "additional modules");
    row(0x8000, "monitoring");
    row(0x8100, "communication");
    row(0x8110, "CAN overrun (messages lost)");
    row(0x8120, "CAN in error passive mode");
    row(0x8130, "life guard or heartbeat error");
    row(0x8140, "recovered from bus off");
    row(0x8150, "CAN-ID collision");
    row(0x8200, "protocol error");
    row(0x8210, "PDO not processed: wrong length");
    row(0x8220, "PDO too long");
    row(0x8230, "MPDO not processed: destination not available");
    row(0x8240, "unexpected SYNC length");
    row(0x8250, "RPDO time-out");
    row(0x9000, "external error");
    row(0xF000, "additional functions");
    row(0xFF01, "specific to the device");
    row(0xA000, "unknown error");
}

void tst_Emergency::words()
{
    QFETCH(int, code);

    QTEST(emergencyText(static_cast<quint16>(code)), "words");
}

void tst_Emergency::registerBits_data()
{
    QTest::addColumn<int>("bit");
    QTest::addColumn<QString>("words");

    const char *const words[]
        = {"generic error", "current",        "voltage",        "temperature",
           "communication", "device profile", "reserved bit 6", "specific to the manufacturer"};
    for (int bit = 0; bit < 8; ++bit)
        QTest::addRow("bit %d", bit) << bit << QString::fromLatin1(words[bit]);
}

void tst_Emergency::registerBits()
{
    QFETCH(int, bit);

    QTEST(errorRegisterBitText(bit), "words");
    QTEST(errorRegisterText(static_cast<quint8>(1 << bit)), "words");
}

void tst_Emergency::wholeRegister()
{
    QCOMPARE(errorRegisterText(0), QString());
    QCOMPARE(errorRegisterText(0x89),
             QStringLiteral("generic error, temperature, specific to the manufacturer"));
}

QTEST_GUILESS_MAIN(tst_Emergency)
#include "tst_emergency.moc"
