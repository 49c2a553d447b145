// SPDX-License-Identifier: MIT
#include <canopen/sdoabort.h>

#include <QtTest>

class tst_SdoAbort : public QObject
{
    Q_OBJECT

private slots:
    void text_data();
    void text();
};

void tst_SdoAbort::text_data()
{
    QTest::addColumn<quint32>("code");
    QTest::addColumn<QString>("text");

    const auto row
        = [](const char *text, quint32 code) { QTest::newRow(text) << code << QString::fromLatin1(text); };
    row("The toggle bit did not alternate (0503 0000h)", 0x05030000);
    row("The SDO protocol timed out (0504 0000h)", 0x05040000);
    row("The command specifier is not valid or unknown (0504 0001h)", 0x05040001);
    row("The block size is not valid (0504 0002h)", 0x05040002);
    row("The sequence number is not valid (0504 0003h)", 0x05040003);
    row("The checksum is wrong (0504 0004h)", 0x05040004);
    row("The device is out of memory (0504 0005h)", 0x05040005);
    row("The access to the object is not supported (0601 0000h)", 0x06010000);
    row("The object can only be written (0601 0001h)", 0x06010001);
    row("The object can only be read (0601 0002h)", 0x06010002);
    row("The object does not exist (0602 0000h)", 0x06020000);
    row("The object cannot be mapped to a PDO (0604 0041h)", 0x06040041);
    row("The mapped objects exceed the length of a PDO (0604 0042h)", 0x06040042);
    row("The parameter is incompatible (0604 0043h)", 0x06040043);
    row("The device has an internal incompatibility (0604 0047h)", 0x06040047);
    row("The access failed because of a hardware error (0606 0000h)", 0x06060000);
    row("The length does not match the data type (0607 0010h)", 0x06070010);
    row("There are more bytes than the data type has (0607 0012h)", 0x06070012);
    row("There are fewer bytes than the data type has (0607 0013h)", 0x06070013);
    row("The sub-index does not exist (0609 0011h)", 0x06090011);
    row("The value is not valid (0609 0030h)", 0x06090030);
    row("The value is too high (0609 0031h)", 0x06090031);
    row("The value is too low (0609 0032h)", 0x06090032);
    row("The maximum is less than the minimum (0609 0036h)", 0x06090036);
    row("The resource is not available (060A 0023h)", 0x060A0023);
    row("General error (0800 0000h)", 0x08000000);
    row("The data cannot be transferred or stored (0800 0020h)", 0x08000020);
    row("The data cannot be transferred or stored because of local control (0800 0021h)", 0x08000021);
    row("The data cannot be transferred or stored in the present state of the device (0800 0022h)",
        0x08000022);
    row("There is no object dictionary (0800 0023h)", 0x08000023);
    row("No data is available (0800 0024h)", 0x08000024);
    row("The trace holds no answer of the device to this (0800 F001h)", 0x0800F001);
    row("The device answers this only later in the trace (0800 F002h)", 0x0800F002);
    row("Abort code 0000 0000h", 0x00000000);
    row("Abort code 0602 0001h", 0x06020001);
    row("Abort code FFFF FFFFh", 0xFFFFFFFF);
}

void tst_SdoAbort::text()
{
    QFETCH(quint32, code);
    QFETCH(QString, text);
    QCOMPARE(CanOpen::sdoAbortText(code), text);
}

QTEST_APPLESS_MAIN(tst_SdoAbort)

#include "tst_sdoabort.moc"
