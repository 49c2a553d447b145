// SPDX-License-Identifier: MIT
#include <interpreter/datainterpreter.h>

#include <QTest>
#include <QVariant>

class tst_StatusDecoders : public QObject
{
    Q_OBJECT

private slots:
    void errorRegisterBit_data();
    void errorRegisterBit();
    void errorRegister_data();
    void errorRegister();
    void securityStatusBit_data();
    void securityStatusBit();
    void securityStatusHasSevenLinesInOrder();
    void securityStatusIgnoresOtherBits();
    void fsaState_data();
    void fsaState();
    void fsaStateIsReservedElsewhere();
    void processingState_data();
    void processingState();
    void processingStateIsReservedElsewhere();
    void reservedStatesAreLowerCaseHexadecimal_data();
    void reservedStatesAreLowerCaseHexadecimal();
    void controlCommand_data();
    void controlCommand();
    void oddControlCommandsAreEmergencyShutdowns();
    void deviceStatusFlag_data();
    void deviceStatusFlag();
    void deviceStatus_data();
    void deviceStatus();
    void deviceStatusReplacesTheTexts();
    void systemStatus_data();
    void systemStatus();
};

void tst_StatusDecoders::errorRegisterBit_data()
{
    QTest::addColumn<int>("bit");
    QTest::addColumn<QString>("text");

    QTest::newRow("bit 0") << 0 << QStringLiteral("Generic error");
    QTest::newRow("bit 1") << 1 << QStringLiteral("\nCurrent Error");
    QTest::newRow("bit 2") << 2 << QStringLiteral("\nVoltage Error");
    QTest::newRow("bit 3") << 3 << QStringLiteral("\nTemperature Error");
    QTest::newRow("bit 4") << 4 << QStringLiteral("\nCommunication error");
    QTest::newRow("bit 5") << 5 << QStringLiteral("\nDevice profile specific");
    QTest::newRow("bit 7") << 7 << QStringLiteral("\nManufactor specific error");
    QTest::newRow("bit 6 has no text") << 6 << QString();
    QTest::newRow("bit 8 has no text") << 8 << QString();
    QTest::newRow("bit 31 has no text") << 31 << QString();
}

void tst_StatusDecoders::errorRegisterBit()
{
    QFETCH(int, bit);
    QFETCH(QString, text);

    QCOMPARE(DataInterpreter::interpretErrorRegister(1u << bit), text);
}

void tst_StatusDecoders::errorRegister_data()
{
    QTest::addColumn<uint>("value");
    QTest::addColumn<QString>("text");

    QTest::newRow("no error") << 0x00u << QStringLiteral("No error");
    QTest::newRow("two errors") << 0x03u << QStringLiteral("Generic error\nCurrent Error");
    QTest::newRow("bit without a text") << 0x40u << QString();
    QTest::newRow("starts with a line break") << 0x06u << QStringLiteral("\nCurrent Error\nVoltage Error");
    QTest::newRow("all bits") << 0xFFu
                              << QStringLiteral(
                                     "Generic error\nCurrent Error\nVoltage Error\nTemperature Error"
                                     "\nCommunication error\nDevice profile specific"
                                     "\nManufactor specific error");
    QTest::newRow("beyond eight bits") << 0x100u << QString();
}

void tst_StatusDecoders::errorRegister()
{
    QFETCH(uint, value);
    QFETCH(QString, text);

    QCOMPARE(DataInterpreter::interpretErrorRegister(value), text);
}

void tst_StatusDecoders::securityStatusBit_data()
{
    QTest::addColumn<int>("bit");
    QTest::addColumn<QString>("set");
    QTest::addColumn<QString>("clear");

    QTest::newRow("bit 0") << 0 << QStringLiteral("Locking mechanism supported\n")
                           << QStringLiteral("No locking mechanism supported\n");
    QTest::newRow("bit 1") << 1 << QStringLiteral("Device is locked locally\n")
                           << QStringLiteral("Device is not locked locally\n");
    QTest::newRow("bit 2") << 2 << QStringLiteral("No manipulation detected\n")
                           << QStringLiteral("Manipulation detected\n");
    QTest::newRow("bit 3") << 3 << QStringLiteral("Device does not own the current encryption key\n")
                           << QStringLiteral("Device owns current encryption key\n");
    QTest::newRow("bit 4") << 4 << QStringLiteral("Initial encryption key is missing\n")
                           << QStringLiteral("Device owns initial encryption key\n");
    QTest::newRow("bit 6") << 6 << QStringLiteral("No network lock requested\n")
                           << QStringLiteral("Locking of all virtual devices in the EMS requested\n");
    QTest::newRow("bit 7") << 7 << QStringLiteral("Network is not locked\n")
                           << QStringLiteral(
                                  "All virtual devices in the EMS that support softlocking are locked\n");
}

void tst_StatusDecoders::securityStatusBit()
{
    QFETCH(int, bit);
    QFETCH(QString, set);
    QFETCH(QString, clear);

    const QString withBit = DataInterpreter::interpretSecurityStatus(1u << bit);
    const QString withoutBit = DataInterpreter::interpretSecurityStatus(0u);
    QVERIFY2(withBit.contains(set), qPrintable(withBit));
    QVERIFY2(withoutBit.contains(clear), qPrintable(withoutBit));
    QCOMPARE(withBit, QString(withoutBit).replace(clear, set));
}

void tst_StatusDecoders::securityStatusHasSevenLinesInOrder()
{
    QCOMPARE(
        DataInterpreter::interpretSecurityStatus(0x00u),
        QStringLiteral("No locking mechanism supported\nDevice is not locked locally\nManipulation detected\n"
                       "Device owns current encryption key\nDevice owns initial encryption key\n"
                       "Locking of all virtual devices in the EMS requested\n"
                       "All virtual devices in the EMS that support softlocking are locked\n"));
    QCOMPARE(
        DataInterpreter::interpretSecurityStatus(0xFFu),
        QStringLiteral("Locking mechanism supported\nDevice is locked locally\nNo manipulation detected\n"
                       "Device does not own the current encryption key\nInitial encryption key is missing\n"
                       "No network lock requested\nNetwork is not locked\n"));
}

void tst_StatusDecoders::securityStatusIgnoresOtherBits()
{
    QCOMPARE(DataInterpreter::interpretSecurityStatus(0xFFFFFF20u),
             DataInterpreter::interpretSecurityStatus(0u));
}

void tst_StatusDecoders::fsaState_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("text");
    QTest::addColumn<Qt::GlobalColor>("color");

    QTest::newRow("code 0") << 0 << QStringLiteral("specific FSA not active") << Qt::white;
    QTest::newRow("code 1") << 1 << QStringLiteral("Do-Not-Attach") << Qt::darkYellow;
    QTest::newRow("code 2") << 2 << QStringLiteral("Ready-To-Attach") << Qt::darkGreen;
    QTest::newRow("code 3") << 3 << QStringLiteral("Normal Operation") << Qt::green;
    QTest::newRow("code 6") << 6 << QStringLiteral("Error") << Qt::red;
    QTest::newRow("reserved 4") << 4 << QStringLiteral("Reserved: 0x4") << Qt::darkYellow;
    QTest::newRow("reserved 5") << 5 << QStringLiteral("Reserved: 0x5") << Qt::darkYellow;
    QTest::newRow("reserved 7") << 7 << QStringLiteral("Reserved: 0x7") << Qt::darkYellow;
    QTest::newRow("reserved 255") << 255 << QStringLiteral("Reserved: 0xff") << Qt::darkYellow;
}

void tst_StatusDecoders::fsaState()
{
    QFETCH(int, state);
    QFETCH(QString, text);
    QFETCH(Qt::GlobalColor, color);

    Qt::GlobalColor shown = Qt::black;
    QCOMPARE(DataInterpreter::interpretFsaState(static_cast<quint8>(state), shown), text);
    QCOMPARE(shown, color);
}

void tst_StatusDecoders::fsaStateIsReservedElsewhere()
{
    const QList<int> known{0, 1, 2, 3, 6};
    for (int state = 0; state <= 255; ++state) {
        Qt::GlobalColor color = Qt::black;
        const QString text = DataInterpreter::interpretFsaState(static_cast<quint8>(state), color);
        QCOMPARE(text.startsWith(QLatin1String("Reserved: 0x")), !known.contains(state));
        if (!known.contains(state))
            QCOMPARE(color, Qt::darkYellow);
    }
}

void tst_StatusDecoders::processingState_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("text");
    QTest::addColumn<Qt::GlobalColor>("color");

    QTest::newRow("code 0") << 0 << QStringLiteral("specific FSA not active") << Qt::white;
    QTest::newRow("code 1") << 1 << QStringLiteral("Idle") << Qt::yellow;
    QTest::newRow("code 2") << 2 << QStringLiteral("Apply A-to-B processing") << Qt::darkGreen;
    QTest::newRow("code 4") << 4 << QStringLiteral("Apply B-to-A processing") << Qt::darkGreen;
    QTest::newRow("code 6") << 6 << QStringLiteral("Stop processing") << Qt::darkYellow;
    QTest::newRow("code 10") << 10 << QStringLiteral("A-to-B processing: PR_Idle") << Qt::green;
    QTest::newRow("code 11") << 11 << QStringLiteral("A-to-B processing: UA const") << Qt::green;
    QTest::newRow("code 12") << 12 << QStringLiteral("A-to-B processing: UB const") << Qt::green;
    QTest::newRow("code 13") << 13 << QStringLiteral("A-to-B processing: IA const") << Qt::green;
    QTest::newRow("code 14") << 14 << QStringLiteral("A-to-B processing: IB const") << Qt::green;
    QTest::newRow("code 15") << 15 << QStringLiteral("A-to-B processing: MPPT") << Qt::green;
    QTest::newRow("code 16") << 16 << QStringLiteral("A-to-B processing: PR_Error") << Qt::green;
    QTest::newRow("code 20") << 20 << QStringLiteral("B-to-A processing: PR_Idle") << Qt::green;
    QTest::newRow("code 21") << 21 << QStringLiteral("B-to-A processing: UA const") << Qt::green;
    QTest::newRow("code 22") << 22 << QStringLiteral("B-to-A processing: UB const") << Qt::green;
    QTest::newRow("code 23") << 23 << QStringLiteral("B-to-A processing: IA const") << Qt::green;
    QTest::newRow("code 24") << 24 << QStringLiteral("B-to-A processing: IB const") << Qt::green;
    QTest::newRow("code 25") << 25 << QStringLiteral("B-to-A processing: MPPT") << Qt::green;
    QTest::newRow("code 26") << 26 << QStringLiteral("B-to-A processing: PR_Error") << Qt::green;
    QTest::newRow("reserved 3") << 3 << QStringLiteral("Reserved: 0x3") << Qt::darkYellow;
    QTest::newRow("reserved 9") << 9 << QStringLiteral("Reserved: 0x9") << Qt::darkYellow;
    QTest::newRow("reserved 17") << 17 << QStringLiteral("Reserved: 0x11") << Qt::darkYellow;
    QTest::newRow("reserved 27") << 27 << QStringLiteral("Reserved: 0x1b") << Qt::darkYellow;
}

void tst_StatusDecoders::processingState()
{
    QFETCH(int, state);
    QFETCH(QString, text);
    QFETCH(Qt::GlobalColor, color);

    Qt::GlobalColor shown = Qt::black;
    QCOMPARE(DataInterpreter::interpretProcessingState(static_cast<quint8>(state), shown), text);
    QCOMPARE(shown, color);
}

void tst_StatusDecoders::processingStateIsReservedElsewhere()
{
    const QList<int> known{0, 1, 2, 4, 6, 10, 11, 12, 13, 14, 15, 16, 20, 21, 22, 23, 24, 25, 26};
    for (int state = 0; state <= 255; ++state) {
        Qt::GlobalColor color = Qt::black;
        const QString text = DataInterpreter::interpretProcessingState(static_cast<quint8>(state), color);
        QCOMPARE(text.startsWith(QLatin1String("Reserved: 0x")), !known.contains(state));
        if (!known.contains(state))
            QCOMPARE(color, Qt::darkYellow);
    }
}

void tst_StatusDecoders::reservedStatesAreLowerCaseHexadecimal_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("text");

    QTest::newRow("one digit") << 8 << QStringLiteral("Reserved: 0x8");
    QTest::newRow("letters") << 0xAB << QStringLiteral("Reserved: 0xab");
    QTest::newRow("highest") << 255 << QStringLiteral("Reserved: 0xff");
}

void tst_StatusDecoders::reservedStatesAreLowerCaseHexadecimal()
{
    QFETCH(int, state);
    QFETCH(QString, text);

    Qt::GlobalColor color = Qt::black;
    QCOMPARE(DataInterpreter::interpretFsaState(static_cast<quint8>(state), color), text);
    QCOMPARE(DataInterpreter::interpretProcessingState(static_cast<quint8>(state), color), text);
}

void tst_StatusDecoders::controlCommand_data()
{
    QTest::addColumn<uint>("value");
    QTest::addColumn<QString>("text");

    QTest::newRow("no action") << 0u << QStringLiteral("No action");
    QTest::newRow("emergency shutdown") << 1u << QStringLiteral("Emergency shutdown");
    QTest::newRow("unknown 2") << 2u << QString();
    QTest::newRow("operating by 4") << 4u << QStringLiteral("Enter operating");
    QTest::newRow("operating by 6") << 6u << QStringLiteral("Enter operating");
    QTest::newRow("odd code 7") << 7u << QStringLiteral("Emergency shutdown");
    QTest::newRow("unknown 8") << 8u << QString();
    QTest::newRow("masterless operating") << 10u << QStringLiteral("Enter masterless operating");
    QTest::newRow("unknown 12") << 12u << QString();
    QTest::newRow("sleep and node ID") << 14u << QStringLiteral("Enter sleep mode and set node id to 0xFF");
    QTest::newRow("unknown 16") << 16u << QString();
    QTest::newRow("unknown 62") << 62u << QString();
    QTest::newRow("only six bits count") << 0xFFC4u << QStringLiteral("Enter operating");
    QTest::newRow("six clear bits") << 0x40u << QStringLiteral("No action");
}

void tst_StatusDecoders::controlCommand()
{
    QFETCH(uint, value);
    QFETCH(QString, text);

    QString shown = QStringLiteral("from before");
    DataInterpreter::interpretControlCommand(value, shown);
    QCOMPARE(shown, text);
}

void tst_StatusDecoders::oddControlCommandsAreEmergencyShutdowns()
{
    for (uint value = 1; value < 0x200; value += 2) {
        QString text;
        DataInterpreter::interpretControlCommand(value, text);
        QCOMPARE(text, QStringLiteral("Emergency shutdown"));
    }
}

void tst_StatusDecoders::deviceStatusFlag_data()
{
    QTest::addColumn<int>("bit");
    QTest::addColumn<QString>("text");

    QTest::newRow("bit 0") << 0 << QStringLiteral("Current input active ");
    QTest::newRow("bit 1") << 1 << QStringLiteral("Current output active ");
    QTest::newRow("bit 2") << 2 << QStringLiteral("Fixed voltage input active ");
    QTest::newRow("bit 3") << 3 << QStringLiteral("Fixed voltage output active ");
    QTest::newRow("bit 4") << 4 << QStringLiteral("Current regulation/limitation active ");
    QTest::newRow("bit 5") << 5 << QStringLiteral("Voltage regulation/limitation active ");
    QTest::newRow("bit 6 has no text") << 6 << QStringLiteral("nothing active");
    QTest::newRow("bit 31 has no text") << 31 << QStringLiteral("nothing active");
}

void tst_StatusDecoders::deviceStatusFlag()
{
    QFETCH(int, bit);
    QFETCH(QString, text);

    QString flags;
    QString state;
    DataInterpreter::interpretDeviceStatus(1u << bit, flags, state);
    QCOMPARE(flags, text);
    QCOMPARE(state, QStringLiteral("Disconnected"));
}

void tst_StatusDecoders::deviceStatus_data()
{
    QTest::addColumn<uint>("value");
    QTest::addColumn<QString>("flags");
    QTest::addColumn<QString>("state");

    const QString nothing = QStringLiteral("nothing active");
    QTest::newRow("nothing") << 0u << nothing << QStringLiteral("Disconnected");
    QTest::newRow("connected") << (1u << 13) << nothing << QStringLiteral("Connected");
    QTest::newRow("compatibility check") << (2u << 13) << nothing << QStringLiteral("Compatibility Check");
    QTest::newRow("limiting") << (3u << 13) << nothing << QStringLiteral("Limiting");
    QTest::newRow("operating") << (4u << 13) << nothing << QStringLiteral("Operating");
    QTest::newRow("masterless") << (5u << 13) << nothing << QStringLiteral("Masterless");
    QTest::newRow("sleep mode") << (6u << 13) << nothing << QStringLiteral("Sleep Mode");
    QTest::newRow("first reserved state") << (7u << 13) << nothing << QStringLiteral("reserved");
    QTest::newRow("state 9") << (9u << 13) << nothing << QStringLiteral("reserved");
    QTest::newRow("state 255") << (255u << 13) << nothing << QStringLiteral("reserved");
    QTest::newRow("bits around the state") << 0xFFE01FC0u << nothing << QStringLiteral("Disconnected");
    QTest::newRow("all flags, operating")
        << 0x803Fu
        << QStringLiteral("Current input active Current output active Fixed voltage input active "
                          "Fixed voltage output active Current regulation/limitation active "
                          "Voltage regulation/limitation active ")
        << QStringLiteral("Operating");
}

void tst_StatusDecoders::deviceStatus()
{
    QFETCH(uint, value);
    QFETCH(QString, flags);
    QFETCH(QString, state);

    QString shownFlags;
    QString shownState;
    DataInterpreter::interpretDeviceStatus(value, shownFlags, shownState);
    QCOMPARE(shownFlags, flags);
    QCOMPARE(shownState, state);
}

void tst_StatusDecoders::deviceStatusReplacesTheTexts()
{
    QString flags = QStringLiteral("from before");
    QString state = QStringLiteral("from before");
    DataInterpreter::interpretDeviceStatus(0x2001u, flags, state);
    QCOMPARE(flags, QStringLiteral("Current input active "));
    QCOMPARE(state, QStringLiteral("Connected"));
}

void tst_StatusDecoders::systemStatus_data()
{
    QTest::addColumn<uint>("value");
    QTest::addColumn<QString>("text");

    QTest::newRow("power line off") << 0x00u << QStringLiteral("Powerline off ");
    QTest::newRow("power line on") << 0x01u << QStringLiteral("Powerline on ");
    QTest::newRow("awake") << 0x02u << QStringLiteral("Powerline off EMS is not sleeping, ready to work ");
    QTest::newRow("communication") << 0x04u
                                   << QStringLiteral("Powerline off CAN communication is working properly ");
    QTest::newRow("bit 3 has no text") << 0x08u << QStringLiteral("Powerline off ");
    QTest::newRow("warning") << 0x10u << QStringLiteral("Powerline off EMS warning ");
    QTest::newRow("error") << 0x20u << QStringLiteral("Powerline off EMS error ");
    QTest::newRow("all bits") << 0xFFFFFFFFu
                              << QStringLiteral(
                                     "Powerline on EMS is not sleeping, ready to work "
                                     "CAN communication is working properly EMS warning EMS error ");
}

void tst_StatusDecoders::systemStatus()
{
    QFETCH(uint, value);
    QFETCH(QString, text);

    QCOMPARE(DataInterpreter::interpretSystemStatus(value), text);
}

QTEST_APPLESS_MAIN(tst_StatusDecoders)

#include "tst_statusdecoders.moc"
