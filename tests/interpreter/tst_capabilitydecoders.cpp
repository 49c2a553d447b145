// SPDX-License-Identifier: MIT
#include <interpreter/datainterpreter.h>

#include <QTest>
#include <QVariant>

class tst_CapabilityDecoders : public QObject
{
    Q_OBJECT

private slots:
    void deviceTypeBit_data();
    void deviceTypeBit();
    void deviceTypeHasSixLinesInOrder();
    void deviceTypeIgnoresOtherBits();
    void alarmBit_data();
    void alarmBit();
    void supportedAlarms_data();
    void supportedAlarms();
    void capabilityBit_data();
    void capabilityBit();
    void capabilitiesAreAppendedInOrder();
    void specificationVersions_data();
    void specificationVersions();
    void batteryList_data();
    void batteryList();
    void batteryListNumbersEveryBattery();
    void batteryListAppendsToTheTexts();
    void neverSaysNoUnconnectedBatteries();
    void securityFeatureBit_data();
    void securityFeatureBit();
    void securityFeaturesAreJoined();
    void keyClass_data();
    void keyClass();
    void securityPropertiesReplaceTheTexts();
    void levType_data();
    void levType();
    void batteryChemistry_data();
    void batteryChemistry();
};

namespace {

struct SecurityProperties
{
    explicit SecurityProperties(quint32 value)
    {
        DataInterpreter::interpretSecurityProperties(value, label, features, keyClassLabel, keyClass);
    }

    QString label = QStringLiteral("from before");
    QString features = QStringLiteral("from before");
    QString keyClassLabel = QStringLiteral("from before");
    QString keyClass = QStringLiteral("from before");
};

} // namespace

void tst_CapabilityDecoders::deviceTypeBit_data()
{
    QTest::addColumn<int>("bit");
    QTest::addColumn<QString>("set");
    QTest::addColumn<QString>("clear");

    QTest::newRow("bit 16") << 16 << QStringLiteral("DXC not supported\n")
                            << QStringLiteral("DXC controller supported\n");
    QTest::newRow("bit 24") << 24 << QStringLiteral("Active device\n") << QStringLiteral("Passive device\n");
    QTest::newRow("bit 25") << 25 << QStringLiteral("Device not changeable by end-user\n")
                            << QStringLiteral("Device changeable by the end-user\n");
    QTest::newRow("bit 26") << 26 << QStringLiteral("Manufacturer-specific functionality not supported\n")
                            << QStringLiteral("Manufacturer-specific functionality supported\n");
    QTest::newRow("bit 27") << 27 << QStringLiteral("Masterless mode not supported\n")
                            << QStringLiteral("Masterless mode supported\n");
    QTest::newRow("bit 30") << 30
                            << QStringLiteral(
                                   "CANopen device not in Bootloader mode; application software running")
                            << QStringLiteral("Bootloader active; no application software is running");
}

void tst_CapabilityDecoders::deviceTypeBit()
{
    QFETCH(int, bit);
    QFETCH(QString, set);
    QFETCH(QString, clear);

    const QString withBit = DataInterpreter::interpretDeviceType(1u << bit);
    const QString withoutBit = DataInterpreter::interpretDeviceType(0u);
    QVERIFY2(withBit.contains(set), qPrintable(withBit));
    QVERIFY2(withoutBit.contains(clear), qPrintable(withoutBit));
    QCOMPARE(withBit, QString(withoutBit).replace(clear, set));
}

void tst_CapabilityDecoders::deviceTypeHasSixLinesInOrder()
{
    QCOMPARE(DataInterpreter::interpretDeviceType(0u),
             QStringLiteral("DXC controller supported\nPassive device\nDevice changeable by the end-user\n"
                            "Manufacturer-specific functionality supported\nMasterless mode supported\n"
                            "Bootloader active; no application software is running"));
    QCOMPARE(
        DataInterpreter::interpretDeviceType(0xFFFFFFFFu),
        QStringLiteral("DXC not supported\nActive device\nDevice not changeable by end-user\n"
                       "Manufacturer-specific functionality not supported\nMasterless mode not supported\n"
                       "CANopen device not in Bootloader mode; application software running"));
}

void tst_CapabilityDecoders::deviceTypeIgnoresOtherBits()
{
    QCOMPARE(DataInterpreter::interpretDeviceType(0xB0FEFFFFu), DataInterpreter::interpretDeviceType(0u));
}

void tst_CapabilityDecoders::alarmBit_data()
{
    QTest::addColumn<int>("bit");
    QTest::addColumn<QString>("text");

    QTest::newRow("bit 0") << 0 << QStringLiteral("Over voltage alarm supported");
    QTest::newRow("bit 1") << 1 << QStringLiteral("Under voltage alarm supported");
    QTest::newRow("bit 2") << 2 << QStringLiteral("Output over current alarm supported");
    QTest::newRow("bit 3") << 3 << QStringLiteral("Input over current alarm supported");
    QTest::newRow("bit 4") << 4 << QStringLiteral("Electronic over temperature alarm supported");
    QTest::newRow("bit 5") << 5 << QStringLiteral("Battery cells over temperature alarm supported");
    QTest::newRow("bit 6") << 6 << QStringLiteral("Communication error alarm supported");
    QTest::newRow("bit 7") << 7 << QStringLiteral("Battery compatibility error alarm supported");
    QTest::newRow("bit 8") << 8 << QStringLiteral("Electronic power stage defect alarm supported");
    QTest::newRow("bit 9") << 9 << QStringLiteral("Fuse blown alarm supported");
    QTest::newRow("bit 10") << 10 << QStringLiteral("Cell damaged alarm supported");
    QTest::newRow("bit 11") << 11 << QStringLiteral("Charge over temperature alarm supported");
    QTest::newRow("bit 12") << 12 << QStringLiteral("Discharge over temperature alarm supported");
    QTest::newRow("bit 13") << 13 << QStringLiteral("Sensor damaged alarm supported");
    QTest::newRow("bit 14") << 14 << QStringLiteral("Wire broken alarm supported");
    QTest::newRow("bit 15") << 15 << QStringLiteral("Isolation damaged alarm supported");
    QTest::newRow("bit 16 has no text") << 16 << QString();
    QTest::newRow("bit 30 has no text") << 30 << QString();
}

void tst_CapabilityDecoders::alarmBit()
{
    QFETCH(int, bit);
    QFETCH(QString, text);

    QCOMPARE(DataInterpreter::interpretSupportedAlarms(0x80000000u | 1u << bit), text);
    QCOMPARE(DataInterpreter::interpretSupportedAlarms(1u << bit), QStringLiteral("Alarm not supported"));
}

void tst_CapabilityDecoders::supportedAlarms_data()
{
    QTest::addColumn<uint>("value");
    QTest::addColumn<QString>("text");

    QTest::newRow("nothing") << 0u << QStringLiteral("Alarm not supported");
    QTest::newRow("alarms, but not supported") << 0x00000005u << QStringLiteral("Alarm not supported");
    QTest::newRow("two alarms") << 0x80000005u
                                << QStringLiteral(
                                       "Over voltage alarm supported | Output over current alarm supported");
    QTest::newRow("supported without an alarm") << 0x80000000u << QString();
    QTest::newRow("bits without a text") << 0xFFFF0000u << QString();
}

void tst_CapabilityDecoders::supportedAlarms()
{
    QFETCH(uint, value);
    QFETCH(QString, text);

    QCOMPARE(DataInterpreter::interpretSupportedAlarms(value), text);
}

void tst_CapabilityDecoders::capabilityBit_data()
{
    QTest::addColumn<int>("bit");
    QTest::addColumn<QString>("text");

    QTest::newRow("bit 0") << 0 << QStringLiteral("Device is able to switch off or on");
    QTest::newRow("bit 1") << 1 << QStringLiteral("Device is possibly active");
    QTest::newRow("bit 2") << 2 << QStringLiteral("Device is a master capable");
    QTest::newRow("bit 3") << 3 << QStringLiteral("Device is able to switch to sleep mode");
    QTest::newRow("bit 4") << 4 << QStringLiteral("Device is able to limit the input current");
    QTest::newRow("bit 5") << 5 << QStringLiteral("Device is able to limit the output current");
    QTest::newRow("bit 6") << 6 << QStringLiteral("Device is able to limit the input voltage");
    QTest::newRow("bit 7") << 7 << QStringLiteral("Device is able to limit the output voltage");
    QTest::newRow("bit 8") << 8 << QStringLiteral("Device is able to transmit dynamic limitation");
    QTest::newRow("bit 9") << 9 << QStringLiteral("Device is able to receive dynamic limitation");
    QTest::newRow("bit 10 has no text") << 10 << QString();
    QTest::newRow("bit 31 has no text") << 31 << QString();
}

void tst_CapabilityDecoders::capabilityBit()
{
    QFETCH(int, bit);
    QFETCH(QString, text);

    QStringList texts;
    DataInterpreter::interpretDeviceCapability(1u << bit, texts);
    QCOMPARE(texts, text.isEmpty() ? QStringList() : QStringList(text));
}

void tst_CapabilityDecoders::capabilitiesAreAppendedInOrder()
{
    QStringList texts{QStringLiteral("from before")};
    DataInterpreter::interpretDeviceCapability(0u, texts);
    QCOMPARE(texts, QStringList{QStringLiteral("from before")});

    DataInterpreter::interpretDeviceCapability(0x205u, texts);
    QCOMPARE(texts,
             (QStringList{QStringLiteral("from before"), QStringLiteral("Device is able to switch off or on"),
                          QStringLiteral("Device is a master capable"),
                          QStringLiteral("Device is able to receive dynamic limitation")}));
}

void tst_CapabilityDecoders::specificationVersions_data()
{
    QTest::addColumn<uint>("value");
    QTest::addColumn<QString>("text");

    QTest::newRow("zero") << 0u << QStringLiteral("0.0.0.0");
    QTest::newRow("CiA 454-1, version 2.0")
        << ((454u << 22) + (1u << 16) + (2u << 8)) << QStringLiteral("454.1.2.0");
    QTest::newRow("every number has its bits") << 0x00410101u << QStringLiteral("1.1.1.1");
    QTest::newRow("all bits") << 0xFFFFFFFFu << QStringLiteral("1023.63.255.255");
}

void tst_CapabilityDecoders::specificationVersions()
{
    QFETCH(uint, value);
    QFETCH(QString, text);

    QString label = QStringLiteral("from before");
    QString shown = QStringLiteral("from before");
    DataInterpreter::interpretSpecificationVersions(value, label, shown);
    QCOMPARE(label, QStringLiteral("CiA.part.version.revision"));
    QCOMPARE(shown, text);
}

void tst_CapabilityDecoders::batteryList_data()
{
    QTest::addColumn<uint>("value");
    QTest::addColumn<QString>("installed");
    QTest::addColumn<QString>("connected");

    const QString all = QStringLiteral("1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16");
    const QString noneInstalled = QStringLiteral("No installed batteries");
    const QString noneConnected = QStringLiteral("No connected batteries");
    QTest::newRow("none") << 0x00u << noneInstalled << noneConnected;
    QTest::newRow("two installed, the second connected")
        << 0x0Du << QStringLiteral("1, 2") << QStringLiteral("2");
    QTest::newRow("connected only") << 0x02u << noneInstalled << QStringLiteral("1");
    QTest::newRow("all installed") << 0x55555555u << all << noneConnected;
    QTest::newRow("all connected") << 0xAAAAAAAAu << noneInstalled << all;
    QTest::newRow("all") << 0xFFFFFFFFu << all << all;
}

void tst_CapabilityDecoders::batteryList()
{
    QFETCH(uint, value);
    QFETCH(QString, installed);
    QFETCH(QString, connected);

    QString shownInstalled;
    QString shownConnected;
    DataInterpreter::interpretBatteryList(value, shownInstalled, shownConnected);
    QCOMPARE(shownInstalled, installed);
    QCOMPARE(shownConnected, connected);
}

void tst_CapabilityDecoders::batteryListNumbersEveryBattery()
{
    for (int battery = 1; battery <= 16; ++battery) {
        QString installed;
        QString connected;
        DataInterpreter::interpretBatteryList(1u << (2 * battery - 2), installed, connected);
        QCOMPARE(installed, QString::number(battery));
        QCOMPARE(connected, QStringLiteral("No connected batteries"));

        installed.clear();
        connected.clear();
        DataInterpreter::interpretBatteryList(1u << (2 * battery - 1), installed, connected);
        QCOMPARE(installed, QStringLiteral("No installed batteries"));
        QCOMPARE(connected, QString::number(battery));
    }
}

void tst_CapabilityDecoders::batteryListAppendsToTheTexts()
{
    QString installed = QStringLiteral("A");
    QString connected = QStringLiteral("B");
    DataInterpreter::interpretBatteryList(0x05u, installed, connected);
    QCOMPARE(installed, QStringLiteral("A, 1, 2"));
    QCOMPARE(connected, QStringLiteral("B"));
}

void tst_CapabilityDecoders::neverSaysNoUnconnectedBatteries()
{
    for (uint value = 0; value < 0x10000; ++value) {
        QString installed;
        QString connected;
        DataInterpreter::interpretBatteryList(value, installed, connected);
        if (installed.contains(QLatin1String("unconnected")))
            QFAIL(qPrintable(QStringLiteral("%1: %2").arg(value, 0, 16).arg(installed)));
    }
}

void tst_CapabilityDecoders::securityFeatureBit_data()
{
    QTest::addColumn<int>("bit");
    QTest::addColumn<QString>("text");

    QTest::newRow("bit 0") << 0 << QStringLiteral("Mechanical locking with charge&lock cable supported");
    QTest::newRow("bit 1") << 1 << QStringLiteral("Optical alarm supported");
    QTest::newRow("bit 2") << 2 << QStringLiteral("Vibration alarm supported");
    QTest::newRow("bit 3") << 3 << QStringLiteral("RFID-key supported");
    QTest::newRow("bit 4") << 4 << QStringLiteral("Mechanical key supported");
    QTest::newRow("bit 5") << 5 << QStringLiteral("GPS position tracking supported");
    QTest::newRow("bit 6") << 6 << QStringLiteral("Acoustic alarm supported");
    QTest::newRow("bit 7") << 7 << QStringLiteral("Softlock is supported");
    QTest::newRow("bit 8") << 8 << QStringLiteral("Mechanical locking (except charge&lock cable) supported");
    QTest::newRow("bit 9 has no text") << 9 << QStringLiteral("nothing supported");
    QTest::newRow("bit 31 has no text") << 31 << QStringLiteral("nothing supported");
}

void tst_CapabilityDecoders::securityFeatureBit()
{
    QFETCH(int, bit);
    QFETCH(QString, text);

    QCOMPARE(SecurityProperties(1u << bit).features, text);
}

void tst_CapabilityDecoders::securityFeaturesAreJoined()
{
    QCOMPARE(SecurityProperties(0x10Au).features,
             QStringLiteral("Optical alarm supported | RFID-key supported | "
                            "Mechanical locking (except charge&lock cable) supported"));
    QCOMPARE(SecurityProperties(0u).features, QStringLiteral("nothing supported"));
}

void tst_CapabilityDecoders::keyClass_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("text");

    QTest::newRow("class 0") << 0 << QStringLiteral("Security not supported");
    QTest::newRow("class 1") << 1
                             << QStringLiteral(
                                    "Security device; activation in a very secure environment only");
    QTest::newRow("class 2") << 2
                             << QStringLiteral(
                                    "Internal device; user has the possibility to activate the key");
    QTest::newRow("class 3") << 3 << QStringLiteral("External device; temporary keys required");
    QTest::newRow("class 4") << 4
                             << QStringLiteral("Internal device, simple changeable; automatic activation of "
                                               "the key resp. simple key learning possible");
    QTest::newRow("unknown class 5") << 5 << QString();
    QTest::newRow("unknown class 255") << 255 << QString();
}

void tst_CapabilityDecoders::keyClass()
{
    QFETCH(int, code);
    QFETCH(QString, text);

    QCOMPARE(SecurityProperties(static_cast<quint32>(code) << 16).keyClass, text);
    QCOMPARE(SecurityProperties(0xFF00FFFFu | static_cast<quint32>(code) << 16).keyClass, text);
}

void tst_CapabilityDecoders::securityPropertiesReplaceTheTexts()
{
    const SecurityProperties properties(0x00FF0002u);
    QCOMPARE(properties.label, QStringLiteral("Security properties"));
    QCOMPARE(properties.features, QStringLiteral("Optical alarm supported"));
    QCOMPARE(properties.keyClassLabel, QStringLiteral("Key class"));
    QCOMPARE(properties.keyClass, QString());
}

void tst_CapabilityDecoders::levType_data()
{
    QTest::addColumn<uint>("value");
    QTest::addColumn<QString>("text");

    QTest::newRow("code 1") << 1u << QStringLiteral("Pedelec with speed limit (<25 km/h)");
    QTest::newRow("code 2") << 2u << QStringLiteral("Pedelec with speed limit (<45 km/h)");
    QTest::newRow("code 3") << 3u << QStringLiteral("Pedelec with speed (>45 km/h)");
    QTest::newRow("code 4") << 4u << QStringLiteral("Electrical bicycle with speed limit (<25 km/h)");
    QTest::newRow("code 5") << 5u << QStringLiteral("Electrical bicycle with speed limit (<45 km/h)");
    QTest::newRow("code 6") << 6u << QStringLiteral("Motor-bike with speed (>45 km/h)");
    QTest::newRow("code 7") << 7u << QStringLiteral("Electrical bicycle with speed limit (<32 km/h) USA");
    QTest::newRow("code 8") << 8u << QStringLiteral("Electrical bicycle with speed limit (<20 km/h) CN");
    QTest::newRow("code 9") << 9u << QStringLiteral("Scooter");
    QTest::newRow("code 10") << 10u << QStringLiteral("Robot");
    QTest::newRow("code 11") << 11u << QStringLiteral("Wheelchair");
    QTest::newRow("code 0") << 0u << QStringLiteral("undefined");
    QTest::newRow("code 12") << 12u << QStringLiteral("undefined");
    QTest::newRow("the value as a whole counts") << 0x101u << QStringLiteral("undefined");
    QTest::newRow("highest value") << 0xFFFFFFFFu << QStringLiteral("undefined");
}

void tst_CapabilityDecoders::levType()
{
    QFETCH(uint, value);
    QFETCH(QString, text);

    QCOMPARE(DataInterpreter::interpretLevType(value), text);
}

void tst_CapabilityDecoders::batteryChemistry_data()
{
    QTest::addColumn<uint>("value");
    QTest::addColumn<QString>("text");

    QTest::newRow("code 0") << 0x00u << QStringLiteral("Chemistry not specified");
    QTest::newRow("code 1") << 0x10u << QStringLiteral("Lead acid (PbA)");
    QTest::newRow("code 2") << 0x20u << QStringLiteral("Nickel cadmium");
    QTest::newRow("code 3") << 0x30u << QStringLiteral("Nickel zinc (Ni-Zn)");
    QTest::newRow("code 4") << 0x40u << QStringLiteral("Reserved");
    QTest::newRow("code 5") << 0x50u << QStringLiteral("Nickel iron (Ni-Fe)");
    QTest::newRow("code 6") << 0x60u << QStringLiteral("Silver oxide");
    QTest::newRow("code 7") << 0x70u << QStringLiteral("Nickel hydrogen (NiH2)");
    QTest::newRow("code 8") << 0x80u << QStringLiteral("Nickel metal hydride");
    QTest::newRow("code 9") << 0x90u << QStringLiteral("Zinc/Alkaline/Manganese dioxide");
    QTest::newRow("code 10") << 0xA0u << QStringLiteral("Lithium Ion (Li-Ion) - carbon anode");
    QTest::newRow("code 11") << 0xB0u << QStringLiteral("Lithium Ion (Li-Ion) - Lithium titanate anode");
    QTest::newRow("code 12") << 0xC0u << QStringLiteral("Zinc bromine");
    QTest::newRow("code 13") << 0xD0u << QStringLiteral("Metal air");
    QTest::newRow("code 14") << 0xE0u << QStringLiteral("Lithium-Iron-sulphide");
    QTest::newRow("code 15") << 0xF0u << QStringLiteral("Sodium beta");
    QTest::newRow("low bits do not count") << 0x13u << QStringLiteral("Lead acid (PbA)");
    QTest::newRow("high bits do not count") << 0xFFFFFF1Fu << QStringLiteral("Lead acid (PbA)");
}

void tst_CapabilityDecoders::batteryChemistry()
{
    QFETCH(uint, value);
    QFETCH(QString, text);

    QCOMPARE(DataInterpreter::interpretBatteryChemistry(value), text);
}

QTEST_APPLESS_MAIN(tst_CapabilityDecoders)

#include "tst_capabilitydecoders.moc"
