// SPDX-License-Identifier: MIT
#include <interpreter/datainterpreter.h>

#include <QTest>
#include <QVariant>

/*! The services that read the tables of the resource bundle. */
class tst_DataInterpreter : public QObject
{
    Q_OBJECT

private slots:
    void objectName_data();
    void objectName();
    void checkLimits_data();
    void checkLimits();
    void formatValue_data();
    void formatValue();
    void everySubIndexHasTheSameUnit();
    void systemStatusValue_data();
    void systemStatusValue();
    void levTypeValue_data();
    void levTypeValue();
    void identity_data();
    void identity();
    void identityEntriesThatDoNotExist();
    void vendorName_data();
    void vendorName();
};

void tst_DataInterpreter::objectName_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("subIndex");
    QTest::addColumn<QString>("name");

    QTest::newRow("first row") << 0x1000 << 0 << QStringLiteral("Device type");
    QTest::newRow("last row") << 0x6725 << 0 << QStringLiteral("Load switch off SOC");
    QTest::newRow("sub-index without a name") << 0x6040 << 3 << QStringLiteral("Device actual voltage");
    QTest::newRow("alternative name") << 0x6008 << 0 << QStringLiteral("Nominal voltage");
    QTest::newRow("alternative name of a sub-index") << 0x6008 << 2 << QStringLiteral("Nominal voltage");
    QTest::newRow("record") << 0x62E8 << 0 << QStringLiteral("MCU 1 actual motor values");
    QTest::newRow("first part of the record") << 0x62E8 << 1 << QStringLiteral("MCU 1 actual motor current");
    QTest::newRow("second part of the record") << 0x62E8 << 2 << QStringLiteral("MCU 1 actual motor values");
    QTest::newRow("fifth part of the record") << 0x62E8 << 5 << QStringLiteral("MCU 1 actual motor values");
    QTest::newRow("first of two rows") << 0x60AA << 0 << QStringLiteral("AC-to-DC converter charging time");
    QTest::newRow("first of two rows, group 2") << 0x60F0 << 0 << QStringLiteral("Maximum L1 current AC2");
    QTest::newRow("two blanks") << 0x6001 << 0 << QStringLiteral("Device control  command");
    QTest::newRow("the bus's abbreviation")
        << 0x6108 << 0 << QStringLiteral("Battery pack lifetime DX input capacity");
    QTest::newRow("the status of the bus") << 0x6080 << 0 << QStringLiteral("Draxel status");
    QTest::newRow("the index in the name")
        << 0x60DB << 0 << QStringLiteral("60DBh Maximum L2 apparent power AC1");
    QTest::newRow("a dash that is no UTF-8")
        << 0x60F5 << 0 << QStringLiteral("Charge .. \uFFFD Device max voltage");
    QTest::newRow("index of three digits")
        << 0x0638 << 0 << QStringLiteral("DC-to-DC converter 3 set output configuration");
    QTest::newRow("the index that was meant") << 0x638E << 0 << QString();
    QTest::newRow("no row") << 0x6021 << 0 << QString();
    QTest::newRow("no row, sub-index") << 0x6021 << 1 << QString();
    QTest::newRow("header") << 0x0000 << 0 << QStringLiteral("Description2");
}

void tst_DataInterpreter::objectName()
{
    QFETCH(int, index);
    QFETCH(int, subIndex);
    QFETCH(QString, name);

    QCOMPARE(DataInterpreter::objectName(static_cast<quint16>(index), static_cast<quint8>(subIndex)), name);
}

void tst_DataInterpreter::checkLimits_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<Qt::GlobalColor>("color");

    QTest::newRow("above the maximum") << 0x6105 << QVariant(701u) << Qt::red;
    QTest::newRow("the maximum") << 0x6105 << QVariant(700u) << Qt::black;
    QTest::newRow("in range") << 0x6105 << QVariant(253u) << Qt::black;
    QTest::newRow("the minimum") << 0x6105 << QVariant(150u) << Qt::black;
    QTest::newRow("below the minimum") << 0x6105 << QVariant(149u) << Qt::blue;
    QTest::newRow("zero") << 0x6105 << QVariant(0u) << Qt::blue;
    QTest::newRow("negative counts as large") << 0x6105 << QVariant(-1) << Qt::red;
    QTest::newRow("other object above") << 0x6164 << QVariant(25001u) << Qt::red;
    QTest::newRow("other object below") << 0x6164 << QVariant(999u) << Qt::blue;
    QTest::newRow("other object in range") << 0x6164 << QVariant(25000u) << Qt::black;
    QTest::newRow("no limits") << 0x6040 << QVariant(0xFFFFFFFFu) << Qt::black;
    QTest::newRow("no row") << 0x6021 << QVariant(0xFFFFFFFFu) << Qt::black;
}

void tst_DataInterpreter::checkLimits()
{
    QFETCH(int, index);
    QFETCH(QVariant, value);
    QFETCH(Qt::GlobalColor, color);

    QCOMPARE(DataInterpreter::checkLimits(static_cast<quint16>(index), value), color);
}

void tst_DataInterpreter::formatValue_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");

    QTest::newRow("temperature") << 0x6105 << QVariant(253u) << QStringLiteral("25.30 °C");
    QTest::newRow("negative temperature")
        << 0x6042 << QVariant::fromValue<qint16>(-55) << QStringLiteral("-5.50 °C");
    QTest::newRow("voltage") << 0x6040 << QVariant(36500u) << QStringLiteral("36.50 V");
    QTest::newRow("nominal voltage") << 0x6008 << QVariant(36000) << QStringLiteral("36.00 V");
    QTest::newRow("current") << 0x603E << QVariant(-5000) << QStringLiteral("-5.00 A");
    QTest::newRow("dynamic current limit") << 0x6022 << QVariant(16000u) << QStringLiteral("16.00 A");
    QTest::newRow("dynamic voltage limit") << 0x6020 << QVariant(42000u) << QStringLiteral("42.00 V");
    QTest::newRow("time of a peak") << 0x604F << QVariant(2500) << QStringLiteral("2.50 s");
    QTest::newRow("a voltage that is shown in amperes")
        << 0x6041 << QVariant(36500u) << QStringLiteral("36.50 A");
    QTest::newRow("capacity") << 0x6102 << QVariant(500000u) << QStringLiteral("500.00 Wh");
    QTest::newRow("state of health") << 0x6176 << QVariant(9850u) << QStringLiteral("98.50 %");
    QTest::newRow("cell voltage") << 0x6126 << QVariant(4200) << QStringLiteral("4.20 V");
    QTest::newRow("prefixes are not applied") << 0x6011 << QVariant(123u) << QStringLiteral("123");
    QTest::newRow("no unit") << 0x6005 << QVariant(4711u) << QStringLiteral("4711");
    QTest::newRow("no unit, negative") << 0x6005 << QVariant(-1) << QStringLiteral("4294967295");
    QTest::newRow("record with rows of its parts") << 0x62E8 << QVariant(5u) << QStringLiteral("5");
    QTest::newRow("two rows") << 0x60AA << QVariant(5u) << QStringLiteral("5");
    QTest::newRow("no row") << 0x6021 << QVariant(5u) << QString();
    QTest::newRow("header") << 0x0000 << QVariant(5u) << QStringLiteral("5");
}

void tst_DataInterpreter::formatValue()
{
    QFETCH(int, index);
    QFETCH(QVariant, value);
    QFETCH(QString, text);

    QCOMPARE(DataInterpreter::formatValue(static_cast<quint16>(index), 1, value), text);
}

void tst_DataInterpreter::everySubIndexHasTheSameUnit()
{
    for (int subIndex = 0; subIndex <= 255; ++subIndex)
        QCOMPARE(DataInterpreter::formatValue(0x6040, static_cast<quint8>(subIndex), 36500u),
                 QStringLiteral("36.50 V"));
}

void tst_DataInterpreter::systemStatusValue_data()
{
    QTest::addColumn<uint>("value");
    QTest::addColumn<QString>("text");

    QTest::newRow("nothing") << 0x00u << QStringLiteral("0,");
    QTest::newRow("bit 0") << 0x01u << QStringLiteral("1,DX is on,");
    QTest::newRow("bit 1") << 0x02u << QStringLiteral("2,DX is awake,");
    QTest::newRow("bit 2") << 0x04u << QStringLiteral("4,DX in standby,");
    QTest::newRow("bit 3") << 0x08u << QStringLiteral("8,DX runs,");
    QTest::newRow("bit 4") << 0x10u << QStringLiteral("16,DX warning,");
    QTest::newRow("bit 5") << 0x20u << QStringLiteral("32,DX error,");
    QTest::newRow("bit 6") << 0x40u << QStringLiteral("0,");
    QTest::newRow("three bits") << 0x0Bu << QStringLiteral("11,DX is on,DX is awake,DX runs,");
    QTest::newRow("all bits") << 0xFFFFu
                              << QStringLiteral(
                                     "63,DX is on,DX is awake,DX in standby,DX runs,DX warning,DX error,");
}

void tst_DataInterpreter::systemStatusValue()
{
    QFETCH(uint, value);
    QFETCH(QString, text);

    QCOMPARE(DataInterpreter::formatValue(0x6080, 0, value), text);
}

void tst_DataInterpreter::levTypeValue_data()
{
    QTest::addColumn<uint>("value");
    QTest::addColumn<QString>("text");

    QTest::newRow("1") << 1u << QStringLiteral("Pedelec with speed limit (<25km/h");
    QTest::newRow("2") << 2u << QStringLiteral("Pedelec with speed limit (<45km/h");
    QTest::newRow("3") << 3u << QStringLiteral("Pedelec with speed (>45km/h");
    QTest::newRow("4") << 4u << QStringLiteral("reserved");
    QTest::newRow("0") << 0u << QStringLiteral("reserved");
    QTest::newRow("255") << 255u << QStringLiteral("reserved");
    QTest::newRow("only the low eight bits")
        << 0xFF02u << QStringLiteral("Pedelec with speed limit (<45km/h");
}

void tst_DataInterpreter::levTypeValue()
{
    QFETCH(uint, value);
    QFETCH(QString, text);

    QCOMPARE(DataInterpreter::formatValue(0x6081, 0, value), text);
}

void tst_DataInterpreter::identity_data()
{
    QTest::addColumn<int>("subIndex");
    QTest::addColumn<uint>("value");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");

    QTest::newRow("vendor") << 1 << 0x2u << QStringLiteral("Vendor ID")
                            << QStringLiteral("Beckhoff Automation GmbH");
    QTest::newRow("product code") << 2 << 0xFFFFFFFFu << QStringLiteral("Product code")
                                  << QStringLiteral("4294967295");
    QTest::newRow("revision") << 3 << 0x00010002u << QStringLiteral("Revision number")
                              << QStringLiteral("1.2");
    QTest::newRow("highest revision")
        << 3 << 0xFFFFFFFFu << QStringLiteral("Revision number") << QStringLiteral("65535.65535");
    QTest::newRow("serial number") << 4 << 300u << QStringLiteral("Serial number") << QStringLiteral("300");
    QTest::newRow("number of entries") << 0 << 4u << QStringLiteral("no entry") << QStringLiteral("no entry");
    QTest::newRow("beyond the last entry")
        << 5 << 4u << QStringLiteral("no entry") << QStringLiteral("no entry");
}

void tst_DataInterpreter::identity()
{
    QFETCH(int, subIndex);
    QFETCH(uint, value);
    QFETCH(QString, name);
    QFETCH(QString, text);

    QString shownName = QStringLiteral("from before");
    QString shownText = QStringLiteral("from before");
    DataInterpreter::interpretIdentity(value, static_cast<quint8>(subIndex), shownName, shownText);
    QCOMPARE(shownName, name);
    QCOMPARE(shownText, text);
}

void tst_DataInterpreter::identityEntriesThatDoNotExist()
{
    for (int subIndex = 5; subIndex <= 255; ++subIndex) {
        QString name;
        QString text;
        DataInterpreter::interpretIdentity(1u, static_cast<quint8>(subIndex), name, text);
        QCOMPARE(name, QStringLiteral("no entry"));
        QCOMPARE(text, QStringLiteral("no entry"));
    }
}

void tst_DataInterpreter::vendorName_data()
{
    QTest::addColumn<QVariant>("vendorId");
    QTest::addColumn<QString>("text");

    QTest::newRow("small number") << QVariant(0x3Fu) << QStringLiteral("SYS TEC electronic AG");
    QTest::newRow("umlaut") << QVariant(0x13u) << QStringLiteral("Kuebler GmbH");
    QTest::newRow("department") << QVariant(0x02000350u) << QStringLiteral("Wartsila Lyngso Marine A/S");
    QTest::newRow("not in the table") << QVariant(1u) << QStringLiteral("1");
    QTest::newRow("zero") << QVariant(0u) << QStringLiteral("0");
    QTest::newRow("number without a sign") << QVariant(0xAFFEAFFEu) << QStringLiteral("2952703998");
    QTest::newRow("number without a sign, as INTEGER32")
        << QVariant(static_cast<int>(0xFEEDC0DEu)) << QStringLiteral("4276994270");
}

void tst_DataInterpreter::vendorName()
{
    QFETCH(QVariant, vendorId);
    QFETCH(QString, text);

    QString name;
    QString shown;
    DataInterpreter::interpretIdentity(vendorId, 1, name, shown);
    QCOMPARE(shown, text);
}

QTEST_APPLESS_MAIN(tst_DataInterpreter)

#include "tst_datainterpreter.moc"
