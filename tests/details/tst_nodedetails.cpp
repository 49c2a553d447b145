// SPDX-License-Identifier: MIT
#include "shownnode.h"

#include <tests/support/logwatcher.h>
#include <tests/support/markingtranslator.h>

#include <QtTest>

namespace {

constexpr quint32 hostileCount = 4000000000u;

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

} // namespace

/*! The rows that every node has, and those of the controller, the converter and the motor control. */
class tst_NodeDetails : public QObject
{
    Q_OBJECT

private slots:
    void emptyNodeShowsTheSeparatorOnly();
    void identityOfAnHonestDevice();
    void identityEndsAfterTheSerialNumber();
    void identityComesBackToSubIndexZero();
    void identityEndsWithASmallVendorId();
    void externalDevices_data();
    void externalDevices();
    void securityPropertiesAlarmsAndPartNumber();
    void limits();
    void limitsKeepTheNameOfTheFirstEntry();
    void controlCommandStandsFirst();
    void capabilities_data();
    void capabilities();
    void deviceStatusGivesTwoRows();
    void actualValues();
    void missingEntriesGiveNoRow();
    void rowsBeyond256StartAtTheTopAgain();
    void controllerRows();
    void controllerSeparatorStandsWithoutItsObjects();
    void converterAddsNothing();
    void motorControlRows();
    void motorControlShowsEntriesThatAreNotStored();
    void otherClassesAddNothing_data();
    void otherClassesAddNothing();
    void onlyTheLowByteIsTheClass();
    void everySelectionStartsAnew();
    void hostileCountsEnd();
    void labelsAreTranslated();
    void titlesAreTranslated();
};

void tst_NodeDetails::emptyNodeShowsTheSeparatorOnly()
{
    ShownNode node;
    node.show();
    QCOMPARE(node.parameterRows(), QStringList(s("-")));
    QCOMPARE(node.valueRows(), QStringList());
}

void tst_NodeDetails::identityOfAnHonestDevice()
{
    ShownNode node;
    node.setEntries(0x1018, {0x1F4, 1000, 0x00010002, 77}).show();
    QCOMPARE(node.parameterRows(),
             QStringList({s("Vendor ID = Robatech AG [Object: 0x1018, Value: 500 | 0x1F4]"),
                          s("Product code = 1000 [Object: 0x1018, Value: 1000 | 0x3E8]"),
                          s("Revision number = 1.2 [Object: 0x1018, Value: 65538 | 0x10002]"),
                          s("Serial number = 77 [Object: 0x1018, Value: 77 | 0x4D]"), s("-")}));
}

void tst_NodeDetails::identityEndsAfterTheSerialNumber()
{
    // The bound is the entry found last: with the serial number 3 the walk is past its end at 5.
    ShownNode node;
    node.setEntries(0x1018, {500, 1000, 65538, 3}).set(0x1018, 5, 9).show();
    QCOMPARE(node.parameters.rowCount(), 5);
    QCOMPARE(node.parameterRows().at(3), s("Serial number = 3 [Object: 0x1018, Value: 3 | 0x3]"));
    QCOMPARE(node.parameterRows().at(4), s("-"));
}

void tst_NodeDetails::identityComesBackToSubIndexZero()
{
    ShownNode node;
    node.setEntries(0x1018, {500, 1000, 65538, 300}).show();
    QCOMPARE(node.parameters.rowCount(), 6);
    QCOMPARE(node.parameterRows().at(3), s("Serial number = 300 [Object: 0x1018, Value: 300 | 0x12C]"));
    QCOMPARE(node.parameterRows().at(4), s("no entry = no entry [Object: 0x1018, Value: 4 | 0x4]"));
    QCOMPARE(node.parameterRows().at(5), s("-"));
}

void tst_NodeDetails::identityEndsWithASmallVendorId()
{
    ShownNode node;
    node.setEntries(0x1018, {1, 1000, 65538, 300}).show();
    QCOMPARE(node.parameters.rowCount(), 2);
    QVERIFY(node.parameterRows().at(0).startsWith(s("Vendor ID = ")));
    QVERIFY(node.parameterRows().at(0).endsWith(s(" [Object: 0x1018, Value: 1 | 0x1]")));
    QCOMPARE(node.parameterRows().at(1), s("-"));
}

void tst_NodeDetails::externalDevices_data()
{
    QTest::addColumn<quint32>("count");
    QTest::addColumn<QStringList>("rows");

    QTest::newRow("two") << 2u
                         << QStringList(
                                {s("Nominal voltage VDN 1 = 36.50 V [Object: 0x6008, Value: 36500 | 0x8E94]"),
                                 s("Nominal voltage VDN 2 = 0.00 V [Object: 0x6008, Value: 0 | 0x0]")});
    QTest::newRow("127")
        << 127u
        << QStringList({s("Nominal voltage VDN 1 = 36.50 V [Object: 0x6008, Value: 36500 | 0x8E94]"),
                        s("Nominal voltage VDN 2 = 0.00 V [Object: 0x6008, Value: 0 | 0x0]"),
                        s("Nominal voltage VDN 127 = 1.00 V [Object: 0x6008, Value: 1000 | 0x3E8]")});
    QTest::newRow("128")
        << 128u
        << QStringList(
               {s("Nominal voltage external device 1 = 36.50 V [Object: 0x6008, Value: 36500 | 0x8E94]"),
                s("Nominal voltage external device 2 = 0.00 V [Object: 0x6008, Value: 0 | 0x0]"),
                s("Nominal voltage external device 127 = 1.00 V [Object: 0x6008, Value: 1000 | 0x3E8]"),
                s("Nominal voltage external device 128 = -1.00 V [Object: 0x6008, Value: -1000 | 0x-3E8]")});
    QTest::newRow("none") << 0u << QStringList();
}

void tst_NodeDetails::externalDevices()
{
    QFETCH(quint32, count);
    QFETCH(QStringList, rows);

    ShownNode node;
    node.set(0x6008, 0, count).set(0x6008, 1, 36500).set(0x6008, 2, 0).set(0x6008, 127, 1000);
    node.set(0x6008, 128, -1000).show();
    QCOMPARE(node.parameterRows(), rows + QStringList(s("-")));
}

void tst_NodeDetails::securityPropertiesAlarmsAndPartNumber()
{
    ShownNode node;
    node.set(0x6310, 1, 0x00030081u).set(0x600A, 0, 0x80000005u).set(0x6005, 0, 123456u).show();
    QCOMPARE(
        node.parameterRows(),
        QStringList(
            {s("Security properties = Mechanical locking with charge&lock cable supported | Softlock is "
               "supported "
               "[Object: 0x6310, Value: 196737 | 0x30081]"),
             s("Key class = External device; temporary keys required [Object: 0x6310, Value: 196737 | "
               "0x30081]"),
             s("Supported device alarm = Over voltage alarm supported | Output over current alarm supported "
               "[Object: 0x600A, Value: 2147483653 | 0x-7FFFFFFB]"),
             s("Device unique part number = 123456 [Object: 0x6005, Value: 123456 | 0x1E240]"), s("-")}));
}

void tst_NodeDetails::limits()
{
    ShownNode node;
    for (quint16 index = 0x6020; index <= 0x6027; ++index)
        node.setEntries(index, {1000 + (index & 0xF)});
    node.show();
    QCOMPARE(
        node.parameterRows(),
        QStringList(
            {s("-"),
             s("Device dynamic voltage input limitation VDN 1 = 1.00 V [Object: 0x6020, Value: 1000 | "
               "0x3E8]"),
             s(" VDN 1 =  [Object: 0x6021, Value: 1001 | 0x3E9]"),
             s("Device dynamic current input limitaton VDN 1 = 1.00 A [Object: 0x6022, Value: 1002 | 0x3EA]"),
             s("Device dynamic current output limitaton VDN 1 = 1.00 A [Object: 0x6023, Value: 1003 | "
               "0x3EB]"),
             s("Device maximum continuous input current VDN 1 = 1.00 A [Object: 0x6024, Value: 1004 | "
               "0x3EC]"),
             s("Device maximum continuous output current VDN 1 = 1.00 A [Object: 0x6025, Value: 1005 | "
               "0x3ED]"),
             s("Device maximum voltage VDN 1 = 1.01 V [Object: 0x6026, Value: 1006 | 0x3EE]"),
             s("Device minimum voltage VDN 1 = 1.01 V [Object: 0x6027, Value: 1007 | 0x3EF]")}));
}

void tst_NodeDetails::limitsKeepTheNameOfTheFirstEntry()
{
    ShownNode node;
    node.setEntries(0x6024, {1000, 2000, 3000}).show();
    QCOMPARE(node.parameterRows(),
             QStringList(
                 {s("-"),
                  s("Device maximum continuous input current VDN 1 = 1.00 A [Object: 0x6024, Value: 1000 | "
                    "0x3E8]"),
                  s("Device maximum continuous input current VDN 2 = 2.00 A [Object: 0x6024, Value: 2000 | "
                    "0x7D0]"),
                  s("Device maximum continuous input current VDN 3 = 3.00 A [Object: 0x6024, Value: 3000 | "
                    "0xBB8]")}));
}

void tst_NodeDetails::controlCommandStandsFirst()
{
    ShownNode node;
    node.set(0x6002, 1, 0x8000u).set(0x6001, 1, 4).show();
    QCOMPARE(node.valueRows(),
             QStringList({s("Device control  command = Enter operating [Object: 0x6001, Value: 4 | 0x4]"),
                          s("Device status = nothing active [Object: 0x6002, Value: 32768 | 0x8000]"),
                          s("Draxel FSA state = Operating [Object: 0x6002, Value: 32768 | 0x8000]")}));
}

void tst_NodeDetails::capabilities_data()
{
    QTest::addColumn<quint32>("value");
    QTest::addColumn<QString>("row");

    QTest::newRow("no bits") << 0u << s("Device capability = (---) [Object: 0x6005, Value: 0 | 0x0]");
    QTest::newRow("two bits")
        << 0x204u
        << s("Device capability = (Device is a master capable, Device is able to receive "
             "dynamic limitation) [Object: 0x6005, Value: 516 | 0x204]");
    QTest::newRow("unknown bits") << 0xFC00u
                                  << s("Device capability = (---) [Object: 0x6005, Value: 64512 | 0xFC00]");
}

void tst_NodeDetails::capabilities()
{
    QFETCH(quint32, value);
    QFETCH(QString, row);

    ShownNode node;
    node.set(0x6003, 1, value).show();
    QCOMPARE(node.valueRows(), QStringList(row));
}

void tst_NodeDetails::deviceStatusGivesTwoRows()
{
    ShownNode node;
    node.set(0x6002, 1, (2u << 13) | 0x21u).show();
    QCOMPARE(
        node.valueRows(),
        QStringList({s("Device status = Current input active Voltage regulation/limitation active  "
                       "[Object: 0x6002, Value: 16417 | 0x4021]"),
                     s("Draxel FSA state = Compatibility Check [Object: 0x6002, Value: 16417 | 0x4021]")}));
}

void tst_NodeDetails::actualValues()
{
    ShownNode node;
    for (const quint16 index :
         QVector<quint16>{0x603E, 0x6040, 0x6042, 0x604A, 0x604B, 0x604C, 0x604D, 0x604E, 0x604F})
        node.setEntries(index, {255});
    node.setEntries(0x6042, {-55, 253}).show();
    QCOMPARE(
        node.valueRows(),
        QStringList(
            {s("Device actual current VDN 1 = 0.26 A [Object: 0x603E, Value: 255 | 0xFF]"),
             s("Device actual voltage VDN 1 = 0.26 V [Object: 0x6040, Value: 255 | 0xFF]"),
             s("Device electronic temperature VDN 1 = -5.50 °C [Object: 0x6042, Value: -55 | 0x-37]"),
             s("Device electronic temperature VDN 2 = 25.30 °C [Object: 0x6042, Value: 253 | 0xFD]"),
             s("Device set maximum continuous input current VDN 1 = 0.26 A [Object: 0x604A, Value: 255 | "
               "0xFF]"),
             s("Device set maximum continuous output current VDN 1 = 0.26 A [Object: 0x604B, Value: 255 | "
               "0xFF]"),
             s("Device set maximum peak input current VDN 1 = 0.26 A [Object: 0x604C, Value: 255 | 0xFF]"),
             s("Device set maximum peak input current time VDN 1 = 0.26 s [Object: 0x604D, Value: 255 | "
               "0xFF]"),
             s("Device set maximum peak output current VDN 1 = 0.26 A [Object: 0x604E, Value: 255 | 0xFF]"),
             s("Device set maximum peak output current time VDN 1 = 0.26 s [Object: 0x604F, Value: 255 | "
               "0xFF]")}));
}

void tst_NodeDetails::missingEntriesGiveNoRow()
{
    ShownNode node;
    node.set(0x6040, 1, 1000).set(0x6026, 1, 1000).set(0x6008, 1, 1000).set(0x1018, 1, 500); // no counts
    node.set(0x603E, 0, 5).set(0x603E, 3, 1000).set(0x603E, 6, 1000);                        // gaps
    node.show();
    QCOMPARE(node.parameterRows(), QStringList(s("-")));
    QCOMPARE(node.valueRows(),
             QStringList(s("Device actual current VDN 3 = 1.00 A [Object: 0x603E, Value: 1000 | 0x3E8]")));
}

void tst_NodeDetails::rowsBeyond256StartAtTheTopAgain()
{
    ShownNode node;
    node.setEntries(0x6008, QVector<qint64>(255, 1000));
    node.set(0x6310, 1, 0).set(0x6005, 0, 7).set(0x6026, 0, 1).set(0x6026, 1, 2000).show();

    // 255 voltages; the 256th row is the last below them, the 257th and those that follow go above them.
    const QStringList rows = node.parameterRows();
    QCOMPARE(rows.size(), 260);
    QCOMPARE(rows.at(0), s("Key class = Security not supported [Object: 0x6310, Value: 0 | 0x0]"));
    QCOMPARE(rows.at(1), s("Device unique part number = 7 [Object: 0x6005, Value: 7 | 0x7]"));
    QCOMPARE(rows.at(2), s("-"));
    QCOMPARE(rows.at(3), s("Device maximum voltage VDN 1 = 2.00 V [Object: 0x6026, Value: 2000 | 0x7D0]"));
    QCOMPARE(rows.at(4),
             s("Nominal voltage external device 1 = 1.00 V [Object: 0x6008, Value: 1000 | 0x3E8]"));
    QCOMPARE(rows.at(258),
             s("Nominal voltage external device 255 = 1.00 V [Object: 0x6008, Value: 1000 | 0x3E8]"));
    QCOMPARE(rows.at(259), s("Security properties = nothing supported [Object: 0x6310, Value: 0 | 0x0]"));
}

void tst_NodeDetails::controllerRows()
{
    ShownNode node;
    node.set(0x6000, 1, 4).set(0x6080, 0, 0x07).set(0x6081, 0, 2).set(0x6001, 1, 0).show();
    QCOMPARE(
        node.valueRows(),
        QStringList({s("Device control  command = No action [Object: 0x6001, Value: 0 | 0x0]"),
                     s("Draxel status = Powerline on EMS is not sleeping, ready to work CAN communication is "
                       "working properly  [Object: 0x6080, Value: 7 | 0x7]")}));
    QCOMPARE(
        node.parameterRows(),
        QStringList({s("-"), s("-"),
                     s("DXC type of LEV = Pedelec with speed limit (<45 km/h) [Object: 0x6081, Value: 2 | "
                       "0x2]")}));
}

void tst_NodeDetails::controllerSeparatorStandsWithoutItsObjects()
{
    ShownNode node;
    node.set(0x6000, 1, 4).show();
    QCOMPARE(node.parameterRows(), QStringList({s("-"), s("-")}));
    QCOMPARE(node.valueRows(), QStringList());
}

void tst_NodeDetails::converterAddsNothing()
{
    ShownNode node;
    node.set(0x6000, 1, 5).set(0x60A6, 1, 1).show();
    QCOMPARE(node.parameterRows(), QStringList(s("-")));
    QCOMPARE(node.valueRows(), QStringList());
}

void tst_NodeDetails::motorControlRows()
{
    ShownNode node;
    node.set(0x6000, 1, 7).setEntries(0x62E8, {-12, 250, 90}).show();
    QCOMPARE(node.valueRows(),
             QStringList({s("MCU 1 actual motor values = 3 []"), s("MCU 1 actual motor current = -12 []"),
                          s("MCU 1 actual motor values = 250 []")}));
    QCOMPARE(node.parameterRows(), QStringList(s("-")));
}

void tst_NodeDetails::motorControlShowsEntriesThatAreNotStored()
{
    ShownNode node;
    node.set(0x6000, 1, 7).set(0x62E8, 0, 3).set(0x62E8, 2, 9).show();
    QCOMPARE(node.valueRows(),
             QStringList({s("MCU 1 actual motor values = 3 []"), s("MCU 1 actual motor current =  []"),
                          s("MCU 1 actual motor values = 9 []")}));
}

void tst_NodeDetails::otherClassesAddNothing_data()
{
    QTest::addColumn<int>("code");
    for (const int code : {0, 3, 8, 9, 10, 11, 12, 13, 14, 80, 0x84, 0x86, 0x87, 255})
        QTest::addRow("class %d", code) << code;
}

void tst_NodeDetails::otherClassesAddNothing()
{
    QFETCH(int, code);

    ShownNode node;
    node.set(0x6000, 1, code).set(0x6080, 0, 1).set(0x62E8, 0, 3).set(0x6100, 1, 1).set(0x6105, 0, 1).show();
    QCOMPARE(node.parameterRows(), QStringList(s("-")));
    QCOMPARE(node.valueRows(), QStringList());
}

void tst_NodeDetails::onlyTheLowByteIsTheClass()
{
    ShownNode node;
    node.set(0x6000, 1, 0xABCD0104u).show();
    QCOMPARE(node.parameters.rowCount(), 2);
}

void tst_NodeDetails::everySelectionStartsAnew()
{
    ShownNode node;
    node.set(0x6000, 1, 4).set(0x6003, 1, 1).set(0x6005, 0, 7).set(0x6080, 0, 1);
    node.show();
    const QStringList parameters = node.parameterRows();
    const QStringList values = node.valueRows();
    QCOMPARE(parameters.size(), 3);
    QCOMPARE(values.size(), 2);

    node.show();
    QCOMPARE(node.parameterRows(), parameters);
    QCOMPARE(node.valueRows(), values);

    node.store.setValue(6, 0x6005, 0, 8);
    NodeDetails(node.store, node.parameters, node.values).showNode(6);
    QCOMPARE(node.parameterRows(),
             QStringList({s("Device unique part number = 8 [Object: 0x6005, Value: 8 | 0x8]"), s("-")}));
    QCOMPARE(node.valueRows(), QStringList());
}

void tst_NodeDetails::hostileCountsEnd()
{
    LogWatcher log;
    ShownNode node;
    for (const quint16 index : QVector<quint16>{0x1018, 0x6008, 0x6020, 0x6027, 0x603E, 0x604F, 0x62E8})
        node.set(index, 0, hostileCount).set(index, 1, hostileCount).set(index, 2, -1);
    node.set(0x6000, 1, 7).show();

    QVERIFY(node.parameters.rowCount() < 100);
    // Two rows of each of the two objects, and the motor values 0 to 255.
    QCOMPARE(node.values.rowCount(), 2 + 2 + 256);
    QCOMPARE(node.valueRows().at(4), s("MCU 1 actual motor values = 4000000000 []"));
    QVERIFY(log.debugLines().filter(s("more than there can be")).size() >= 7);
    QCOMPARE(log.warnings(), QStringList());
}

void tst_NodeDetails::labelsAreTranslated()
{
    const MarkingTranslator translator("OverviewForm");
    ShownNode node;
    node.setEntries(0x6008, {1}).setEntries(0x6026, {1}).setEntries(0x6040, {1}).set(0x6002, 1, 0).show();
    QCOMPARE(ShownNode::name(node.parameters, 0), s("Nominal voltage[OverviewForm: VDN ]1"));
    QCOMPARE(ShownNode::name(node.parameters, 2), s("Device maximum voltage[OverviewForm: VDN ]1"));
    QCOMPARE(ShownNode::name(node.values, 1), s("[OverviewForm:Draxel FSA state]"));
    QCOMPARE(ShownNode::name(node.values, 2), s("Device actual voltage[OverviewForm: VDN ]1"));
    node.set(0x6008, 0, 128).show();
    QCOMPARE(ShownNode::name(node.parameters, 0), s("Nominal voltage[OverviewForm: external device ]1"));
}

void tst_NodeDetails::titlesAreTranslated()
{
    QCOMPARE(NodeDetails::parametersTitle(), s("Device Parameters (fixed)"));
    QCOMPARE(NodeDetails::valuesTitle(), s("Actual Values"));
    const MarkingTranslator translator("OverviewForm");
    QCOMPARE(NodeDetails::parametersTitle(), s("[OverviewForm:Device Parameters (fixed)]"));
    QCOMPARE(NodeDetails::valuesTitle(), s("[OverviewForm:Actual Values]"));
}

QTEST_GUILESS_MAIN(tst_NodeDetails)
#include "tst_nodedetails.moc"
