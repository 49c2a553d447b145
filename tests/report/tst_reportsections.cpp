// SPDX-License-Identifier: MIT
#include <tests/support/markingtranslator.h>

#include <report/pdfwriter.h>
#include <report/reportsections.h>
#include <store/nodestore.h>

#include <QRegularExpression>
#include <QTranslator>
#include <QtTest>

#include <initializer_list>

namespace {

struct Row
{
    QString name;
    QString text;
};

bool operator==(const Row &a, const Row &b)
{
    return a.name == b.name && a.text == b.text;
}

/*! For the messages of QCOMPARE. */
char *toString(const Row &row)
{
    return QTest::toString(QLatin1Char('{') + row.name + QLatin1String("} {") + row.text + QLatin1Char('}'));
}

struct Device
{
    QString title;
    QList<Row> parameters;
    QList<Row> values;
};

QList<Row> rowsOf(const QString &section)
{
    static const QRegularExpression row(
        QStringLiteral("<tr class=\"alt[12]\"><td class=\"itemName\" width=\"60%\">(.*?)"
                       "</td><td class=\"itemInter\">(.*?)</td></tr>"),
        QRegularExpression::DotMatchesEverythingOption);
    QList<Row> rows;
    QRegularExpressionMatchIterator it = row.globalMatch(section);
    while (it.hasNext()) {
        const QRegularExpressionMatch match = it.next();
        rows << Row{match.captured(1), match.captured(2)};
    }
    return rows;
}

/*! What the report adds to a document. */
QString bodyOf(const NodeStore &store)
{
    pdfWriter writer;
    const int headLength = writer.html().size();
    ReportSections(store).write(writer);
    return writer.html().mid(headLength);
}

QList<Device> devicesOf(const NodeStore &store)
{
    QList<Device> devices;
    const QStringList tables = bodyOf(store).split(QStringLiteral("<table class=\"deviceTable\""));
    for (const QString &table : tables.mid(1)) {
        static const QRegularExpression title(
            QStringLiteral("<td  class=\"deviceTitle\" align=\"center\">(.*?)</td>"));
        const QStringList sections = table.split(QStringLiteral("<table class=\"describeTable\""));
        devices << Device{title.match(table).captured(1), rowsOf(sections.value(1)),
                          rowsOf(sections.value(2))};
    }
    return devices;
}

constexpr quint8 node = 7;

/*! A store with one node, whose class is first of all one without rows of its own. */
class OneNode
{
public:
    explicit OneNode(quint32 componentClass = 11)
    {
        m_store.appendNode(node);
        set(0x6000, 0, 1);
        set(0x6000, 1, componentClass);
    }

    OneNode &set(quint16 index, quint8 subIndex, quint32 value)
    {
        m_store.setValue(node, index, subIndex, QVariant(value));
        return *this;
    }

    QList<Row> parameters() const { return devicesOf(m_store).value(0).parameters; }
    QList<Row> values() const { return devicesOf(m_store).value(0).values; }
    const NodeStore &store() const { return m_store; }

private:
    NodeStore m_store;
};

Row row(const char *name, const char *text)
{
    return {QString::fromUtf8(name), QString::fromUtf8(text)};
}

// The security status with the bits 0, 2, 6 and 7, and the one without a bit.
const QString lockable = QStringLiteral("Locking mechanism supported<br>"
                                        "Device is not locked locally<br>"
                                        "No manipulation detected<br>"
                                        "Device owns current encryption key<br>"
                                        "Device owns initial encryption key<br>"
                                        "No network lock requested<br>"
                                        "Network is not locked<br>");
const QString noStatusBit
    = QStringLiteral("No locking mechanism supported<br>"
                     "Device is not locked locally<br>"
                     "Manipulation detected<br>"
                     "Device owns current encryption key<br>"
                     "Device owns initial encryption key<br>"
                     "Locking of all virtual devices in the EMS requested<br>"
                     "All virtual devices in the EMS that support softlocking are locked<br>");

/*! How many entries of the security status the last row shows. */
int statusCount(const QList<Row> &values)
{
    return values.last().text.count(QLatin1String("encryption key<br>")) / 2;
}

} // namespace

class tst_ReportSections : public QObject
{
    Q_OBJECT

private slots:
    void emptyStoreGivesNothing() { QCOMPARE(bodyOf(NodeStore()), QString()); }

    void deviceWithoutRowsHasItsTitles()
    {
        QCOMPARE(bodyOf(OneNode(13).store()),
                 QStringLiteral("<table class=\"deviceTable\" cellspacing=\"0\" width=\"100%\">"
                                "<tr><td  class=\"deviceTitle\" align=\"center\">Generator unit</td></tr>"
                                "<tr><td class=\"inTable\">"
                                "<table class=\"describeTable\" cellspacing=\"0\" width=\"100%\">"
                                "<tr><td  class=\"describeTitle\" colspan=\"2\" align=\"center\">"
                                "Device Parameters (fixed)</td></tr>"
                                "</table>"
                                "<table class=\"describeTable\" cellspacing=\"0\" width=\"100%\">"
                                "<tr><td  class=\"describeTitle\" colspan=\"2\" align=\"center\">"
                                "Actual Values</td></tr>"
                                "</table></td></tr></table>"));
    }

    void titleIsTheClass_data()
    {
        QTest::addColumn<quint32>("componentClass");
        QTest::addColumn<QString>("title");

        QTest::newRow("controller") << 4U << QStringLiteral("Draxel Controller");
        QTest::newRow("converter") << 5U << QStringLiteral("Voltage Converter/Charger");
        QTest::newRow("battery") << 6U << QStringLiteral("Battery Pack");
        QTest::newRow("motor control") << 7U << QStringLiteral("Motor Control unit");
        QTest::newRow("load monitoring") << 8U << QStringLiteral("Load monitoring unit");
        QTest::newRow("display") << 9U << QStringLiteral("HMI control unit/display");
        QTest::newRow("security") << 10U << QStringLiteral("Security unit");
        QTest::newRow("sensor") << 11U << QStringLiteral("Sensor unit");
        QTest::newRow("gateway") << 12U << QStringLiteral("Gateway unit");
        QTest::newRow("generator") << 13U << QStringLiteral("Generator unit");
        QTest::newRow("load") << 14U << QStringLiteral("Load unit");
        QTest::newRow("of the manufacturer") << 80U << QStringLiteral("manufacturer-specific device");
        QTest::newRow("low 8 bits") << 0x1C606U << QStringLiteral("Battery Pack");
    }

    void titleIsTheClass()
    {
        QFETCH(quint32, componentClass);
        QFETCH(QString, title);
        const QList<Device> devices = devicesOf(OneNode(componentClass).store());
        QCOMPARE(devices.size(), 1);
        QCOMPARE(devices.first().title, title);
    }

    void otherClassesAreLeftOut_data()
    {
        QTest::addColumn<quint32>("componentClass");
        for (const quint32 code : {0U, 1U, 3U, 15U, 79U, 81U, 255U, 0x600U})
            QTest::addRow("%u", code) << code;
    }

    void otherClassesAreLeftOut()
    {
        QFETCH(quint32, componentClass);
        QCOMPARE(bodyOf(OneNode(componentClass).store()), QString());
    }

    void nodeWithoutClassIsLeftOut()
    {
        NodeStore store;
        store.appendNode(node);
        store.setValue(node, 0x6000, 0, 1);
        store.setValue(node, 0x6000, 2, 6);
        store.setValue(node, 0x1001, 0, 0);
        QCOMPARE(bodyOf(store), QString());
    }

    void controllerOnNode127IsNoCharger()
    {
        NodeStore store;
        store.appendNode(127);
        store.setValue(127, 0x6000, 1, 4);
        QCOMPARE(devicesOf(store).value(0).title, QStringLiteral("Draxel Controller"));
    }

    void onlyTheFirstVirtualDeviceIsWritten()
    {
        const QList<Device> devices = devicesOf(OneNode(5).set(0x6000, 0, 2).set(0x6000, 2, 6).store());
        QCOMPARE(devices.size(), 1);
        QCOMPARE(devices.first().title, QStringLiteral("Voltage Converter/Charger"));
    }

    void nodesComeInTheOrderOfTheList()
    {
        NodeStore store;
        for (const quint8 nodeId : std::initializer_list<quint8>{9, 2, 0, 200, 2})
            store.appendNode(nodeId);
        store.setValue(2, 0x6000, 1, 6);
        store.setValue(9, 0x6000, 1, 14);
        store.setValue(10, 0x6000, 1, 7); // not listed
        QStringList titles;
        for (const Device &device : devicesOf(store))
            titles << device.title;
        QCOMPARE(titles, QStringList({QStringLiteral("Load unit"), QStringLiteral("Battery Pack"),
                                      QStringLiteral("Battery Pack")}));
    }

    void rowStylesBeginAnewWithEachDevice()
    {
        NodeStore store;
        for (const quint8 nodeId : {quint8(1), quint8(2)}) {
            store.appendNode(nodeId);
            store.setValue(nodeId, 0x6000, 1, 11);
            store.setValue(nodeId, 0x6005, 0, 1); // one row of the parameters
            store.setValue(nodeId, 0x1001, 0, 0); // one row of the values
            store.setValue(nodeId, 0x6001, 1, 0); // another
        }
        QStringList styles;
        static const QRegularExpression style(QStringLiteral("tr class=\"(alt.)\""));
        QRegularExpressionMatchIterator it = style.globalMatch(bodyOf(store));
        while (it.hasNext())
            styles << it.next().captured(1);
        const QString even = QStringLiteral("alt1");
        const QString odd = QStringLiteral("alt2");
        QCOMPARE(styles, QStringList({even, odd, even, even, odd, even}));
    }

    void identityHasARowForEachEntry()
    {
        OneNode store;
        store.set(0x1018, 0, 4).set(0x1018, 1, 65534).set(0x1018, 2, 4540202).set(0x1018, 3, 0x10002);
        store.set(0x1018, 4, 255);
        QCOMPARE(store.parameters(),
                 QList<Row>({row("Vendor ID", "65534"), row("Product code", "4540202"),
                             row("Revision number", "1.2"), row("Serial number", "255")}));
    }

    void identityFollowsTheValueFoundLast()
    {
        OneNode store;
        store.set(0x1018, 0, 4).set(0x1018, 1, 65534).set(0x1018, 2, 7).set(0x1018, 3, 0x10002);
        store.set(0x1018, 4, 300);
        QCOMPARE(store.parameters(), QList<Row>({row("Vendor ID", "65534"), row("Product code", "7"),
                                                 row("Revision number", "1.2"), row("Serial number", "300"),
                                                 row("no entry", "no entry")}));

        store.set(0x1018, 2, 1); // so the bound is 1 then
        QCOMPARE(store.parameters(), QList<Row>({row("Vendor ID", "65534"), row("Product code", "1")}));
    }

    void identityWithoutCountHasNoRow()
    {
        QCOMPARE(OneNode().set(0x1018, 1, 65534).parameters(), QList<Row>());
    }

    void ratedValuesAreNumbered()
    {
        OneNode store;
        store.set(0x6025, 0, 1).set(0x6025, 1, 20000);
        store.set(0x6024, 0, 1).set(0x6024, 1, 4000);
        store.set(0x6008, 0, 3).set(0x6008, 1, 36000).set(0x6008, 3, 12000).set(0x6008, 4, 1);
        QCOMPARE(store.parameters(),
                 QList<Row>({row("Nominal voltage VDN 1", "36.00 V"), row("Nominal voltage VDN 3", "12.00 V"),
                             row("Device maximum continuous input current VDN 1", "4.00 A"),
                             row("Device maximum continuous output current VDN 1", "20.00 A")}));
    }

    void countDecidesAboutTheLabelOfRatedValues()
    {
        OneNode store;
        store.set(0x6008, 0, 127).set(0x6008, 1, 36000).set(0x6008, 127, 12000);
        store.set(0x6024, 0, 128).set(0x6024, 1, 4000).set(0x6024, 128, 5000);
        QCOMPARE(
            store.parameters(),
            QList<Row>({row("Nominal voltage VDN 1", "36.00 V"), row("Nominal voltage VDN 127", "12.00 V"),
                        row("Device maximum continuous input current External Device 1", "4.00 A"),
                        row("Device maximum continuous input current External Device 128", "5.00 A")}));
    }

    void parametersComeInOrder()
    {
        OneNode store;
        store.set(0x6005, 0, 454020145).set(0x600A, 0, 0x80000005).set(0x6310, 1, 0x020080);
        store.set(0x6025, 0, 1).set(0x6025, 1, 1500).set(0x1000, 0, 0xFFFFFFFF);
        store.set(0x1018, 0, 1).set(0x1018, 1, 1U << 31);
        const QList<Row> parameters = store.parameters();
        QCOMPARE(parameters.mid(0, 1), QList<Row>({row("Vendor ID", "2147483648")}));
        QCOMPARE(
            parameters.mid(parameters.size() - 6),
            QList<Row>({row("Device information",
                            "DXC not supported<br>Active device<br>Device not changeable by end-user<br>"
                            "Manufacturer-specific functionality not supported<br>"
                            "Masterless mode not supported<br>"
                            "CANopen device not in Bootloader mode; application software running"),
                        row("Device maximum continuous output current VDN 1", "1.50 A"),
                        row("Security properties", "Softlock is supported"),
                        row("Key class", "Internal device; user has the possibility to activate the key"),
                        row("Supported device alarm",
                            "Over voltage alarm supported | Output over current alarm supported"),
                        row("Device unique part number", "454020145")}));
    }

    void valuesComeInOrder()
    {
        OneNode store;
        store.set(0x604F, 0, 1).set(0x604F, 1, 5000).set(0x604A, 0, 1).set(0x604A, 1, 4000);
        store.set(0x6042, 0, 1).set(0x6042, 1, 253).set(0x6040, 0, 2).set(0x6040, 1, 36500);
        store.set(0x6040, 2, 12000).set(0x603E, 0, 1).set(0x603E, 1, 6200);
        store.set(0x6020, 0, 2).set(0x6020, 2, 42000).set(0x6002, 1, 4U << 13).set(0x6001, 1, 6);
        store.set(0x1001, 0, 3).set(0x600E, 0, 1).set(0x600E, 1, 1).set(0x6311, 0, 1).set(0x6311, 1, 0);
        QCOMPARE(store.values(),
                 QList<Row>({row("Device control  command", "Enter operating"),
                             row("Device status", "nothing active"), row("Draxel FSA state", "Operating"),
                             row("Device dynamic voltage input limitation VDN 2", "42.00 V"),
                             row("Device actual current VDN 1", "6.20 A"),
                             row("Device actual voltage VDN 1", "36.50 V"),
                             row("Device actual voltage VDN 2", "12.00 V"),
                             row("Device electronic temperature VDN 1", "25.30 °C"),
                             row("Device set maximum continuous input current VDN 1", "4.00 A"),
                             row("Device set maximum peak output current time VDN 1", "5.00 s"),
                             row("Error register", "Generic error\nCurrent Error"),
                             row("Implemented specification versions", "<br>0.0.0.1"),
                             Row{QStringLiteral("Security Status"), noStatusBit}}));
    }

    void unknownCommandHasAnEmptyText()
    {
        QCOMPARE(OneNode().set(0x6001, 1, 12).values(), QList<Row>({row("Device control  command", "")}));
    }

    /*! The window shows these; the report does not. */
    void objectsOfTheWindowOnlyAreLeftOut()
    {
        OneNode store(7);
        for (const quint16 index :
             std::initializer_list<quint16>{0x6003, 0x6021, 0x6022, 0x6023, 0x6026, 0x6027, 0x6043, 0x62E8})
            store.set(index, 0, 1).set(index, 1, 5);
        QCOMPARE(store.parameters(), QList<Row>());
        QCOMPARE(store.values(), QList<Row>());
    }

    void twoVersionsAreOneRow()
    {
        OneNode store;
        store.set(0x600E, 0, 2).set(0x600E, 1, 0x7181).set(0x600E, 2, 7);
        QCOMPARE(store.values(),
                 QList<Row>({row("Implemented specification versions", "<br>0.0.113.129<br>0.0.0.7")}));
    }

    void versionsFollowTheValueFoundLast()
    {
        OneNode store;
        store.set(0x600E, 0, 2).set(0x600E, 1, (454U << 22) | (1U << 16) | (2U << 8));
        store.set(0x600E, 2, (454U << 22) | (6U << 16) | (2U << 8));
        // On from sub-index 2 to number 256, where the count itself is found.
        QCOMPARE(store.values(), QList<Row>({row("Implemented specification versions",
                                                 "<br>454.1.2.0<br>454.6.2.0<br>0.0.0.2")}));
    }

    void countWithoutVersionsGivesAnEmptyText()
    {
        QCOMPARE(OneNode().set(0x600E, 0, 2).values(),
                 QList<Row>({row("Implemented specification versions", "")}));
    }

    void securityStatusIsOneRow()
    {
        OneNode store;
        store.set(0x600E, 0, 1).set(0x600E, 1, 1);
        store.set(0x6311, 0, 1).set(0x6311, 1, 0xC5);
        QCOMPARE(store.values().last(), (Row{QStringLiteral("Security Status"), lockable}));
    }

    void securityStatusWithoutCountHasNoRow()
    {
        QCOMPARE(OneNode().set(0x1001, 0, 1).set(0x6311, 1, 0xC5).values(),
                 QList<Row>({row("Error register", "Generic error")}));
    }

    /*! The count is not the first bound: with nothing found before there is none. */
    void securityStatusWithNothingBeforeIsEmpty()
    {
        QCOMPARE(OneNode().set(0x6311, 0, 2).set(0x6311, 1, 0xC5).values(),
                 QList<Row>({row("Security Status", "")}));
    }

    void securityStatusBeginsWithTheValueFoundLast_data()
    {
        QTest::addColumn<QList<quint32>>("entries"); // index, sub-index, value, ...
        QTest::addColumn<int>("count");

        // Sub-indices 1 to 5 of 6311h hold 5, so that a first bound of 1 or more shows all five.
        QTest::newRow("error register 0") << QList<quint32>{0x1001, 0, 0} << 0;
        QTest::newRow("error register 1") << QList<quint32>{0x1001, 0, 1} << 5;
        QTest::newRow("command 0") << QList<quint32>{0x6001, 1, 0} << 0;
        QTest::newRow("command 4") << QList<quint32>{0x6001, 1, 4} << 5;
        QTest::newRow("status 0") << QList<quint32>{0x6001, 1, 4, 0x6002, 1, 0} << 0;
        QTest::newRow("limit 0") << QList<quint32>{0x6002, 1, 4, 0x6020, 0, 1, 0x6020, 1, 0} << 0;
        QTest::newRow("limit not stored: its count") << QList<quint32>{0x6020, 0, 3} << 5;
        QTest::newRow("count 0 of an actual value") << QList<quint32>{0x6002, 1, 4, 0x604F, 0, 0} << 0;
        QTest::newRow("actual value 0") << QList<quint32>{0x6040, 0, 2, 0x6040, 1, 9, 0x6040, 2, 0} << 0;
        QTest::newRow("error register after it")
            << QList<quint32>{0x6040, 0, 1, 0x6040, 1, 0, 0x1001, 0, 1} << 5;
        QTest::newRow("version 0") << QList<quint32>{0x1001, 0, 1, 0x600E, 0, 1, 0x600E, 1, 0} << 0;
        QTest::newRow("version 3") << QList<quint32>{0x1001, 0, 0, 0x600E, 0, 1, 0x600E, 1, 3} << 5;
        QTest::newRow("parameters do not count") << QList<quint32>{0x6005, 0, 9, 0x1000, 0, 9} << 0;
    }

    void securityStatusBeginsWithTheValueFoundLast()
    {
        QFETCH(QList<quint32>, entries);
        QFETCH(int, count);
        OneNode store;
        for (int i = 0; i < entries.size(); i += 3)
            store.set(static_cast<quint16>(entries.at(i)), static_cast<quint8>(entries.at(i + 1)),
                      entries.at(i + 2));
        store.set(0x6311, 0, 1);
        for (quint8 subIndex = 1; subIndex <= 5; ++subIndex)
            store.set(0x6311, subIndex, 5);
        QCOMPARE(statusCount(store.values()), count);
    }

    void securityStatusGoesOnWithItsOwnValues()
    {
        OneNode store;
        store.set(0x1001, 0, 1);
        store.set(0x6311, 0, 9).set(0x6311, 1, 0x02).set(0x6311, 2, 0).set(0x6311, 3, 0xC5);
        QCOMPARE(statusCount(store.values()), 2); // after the 0 of sub-index 2

        store.set(0x6311, 2, 0xC5).set(0x6311, 197, 1);
        QCOMPARE(statusCount(store.values()), 4); // 1, 2, 3 and 197, the number C5h
    }

    void securityStatusComesBackToItsCount()
    {
        OneNode store;
        store.set(0x6002, 1, 1000);
        store.set(0x6311, 0, 1);
        QCOMPARE(store.values().last(),
                 (Row{QStringLiteral("Security Status"),
                      QString(noStatusBit).replace(QLatin1String("No locking"), QLatin1String("Locking"))}));
    }

    void eachNodeBeginsWithAnEmptyHolder()
    {
        NodeStore store;
        for (const quint8 nodeId : {quint8(1), quint8(2)}) {
            store.appendNode(nodeId);
            store.setValue(nodeId, 0x6000, 1, 11);
            store.setValue(nodeId, 0x6311, 0, 1);
            store.setValue(nodeId, 0x6311, 1, 1);
        }
        store.setValue(1, 0x1001, 0, 1);
        const QList<Device> devices = devicesOf(store);
        QCOMPARE(statusCount(devices.at(0).values), 1);
        QCOMPARE(statusCount(devices.at(1).values), 0);
    }

    void countsThatNoDeviceCanHaveEnd()
    {
        OneNode store(6);
        for (const quint16 index : std::initializer_list<quint16>{
                 0x1018, 0x6008, 0x6024, 0x6025, 0x6020, 0x603E, 0x6040, 0x6042, 0x604A, 0x604F,
                 0x600E, 0x6311, 0x6102, 0x6120, 0x6127, 0x6105, 0x6160, 0x6162, 0x6164, 0x6176}) {
            for (const quint8 subIndex : std::initializer_list<quint8>{0, 1, 255})
                store.set(index, subIndex, 0xFFFFFFFF);
        }
        QVERIFY(store.parameters().size() < 100);
        QVERIFY(store.values().size() < 100);
    }

    void valuesOfOtherTypesAreNumbersOrZero()
    {
        NodeStore store;
        store.appendNode(node);
        store.setValue(node, 0x6000, 1, QVariant(qlonglong(6)));
        store.setValue(node, 0x6100, 1, QVariant(QByteArray("\x01\x02\x03")));
        store.setValue(node, 0x6102, 0, QVariant(QStringLiteral("many")));
        store.setValue(node, 0x6102, 1, QVariant(500000));
        store.setValue(node, 0x6120, 0, QVariant(qlonglong(-1)));
        store.setValue(node, 0x6120, 1, QVariant());
        const QList<Device> devices = devicesOf(store);
        QCOMPARE(devices.size(), 1);
        QCOMPARE(devices.first().parameters,
                 QList<Row>({row("Type of battery", "Chemistry not specified"),
                             row("Battery pack maximum charge start temperature", "0.00 °C")}));
    }

    void controllerHasRowsOfItsOwn()
    {
        OneNode store(4);
        store.set(0x6080, 0, 0x17).set(0x6081, 0, 4).set(0x6005, 0, 5).set(0x1001, 0, 0);
        QCOMPARE(store.parameters(),
                 QList<Row>({row("Device unique part number", "5"),
                             row("DXC type of LEV", "Electrical bicycle with speed limit (<25 km/h)")}));
        QCOMPARE(store.values(),
                 QList<Row>({row("Error register", "No error"),
                             row("Draxel status", "Powerline on EMS is not sleeping, ready to work "
                                                  "CAN communication is working properly EMS warning ")}));
    }

    void batteryHasParametersOfItsOwn()
    {
        OneNode store(6);
        store.set(0x6127, 0, 1).set(0x6127, 1, 2800).set(0x6120, 0, 1).set(0x6120, 1, 450);
        store.set(0x6102, 0, 3).set(0x6102, 1, 500000).set(0x6102, 3, 250000);
        store.set(0x6100, 0, 1).set(0x6100, 1, 0xA3).set(0x6005, 0, 5);
        store.set(0x6103, 0, 1).set(0x6103, 1, 1);
        QCOMPARE(store.parameters(),
                 QList<Row>({row("Device unique part number", "5"),
                             row("Type of battery", "Lithium Ion (Li-Ion) - carbon anode"),
                             row("Battery pack rated battery Wh capacity", "500.00 Wh"),
                             row("Battery pack rated battery Wh capacity", "250.00 Wh"),
                             row("Battery pack maximum charge start temperature", "45.00 °C"),
                             row("Battery pack minimum cell voltage", "2.80 V")}));
    }

    void batteryLimitsComeInOrder()
    {
        OneNode store(6);
        for (quint16 index = 0x6120; index <= 0x6127; ++index)
            store.set(index, 0, 1).set(index, 1, 0);
        QStringList names;
        for (const Row &parameter : store.parameters())
            names << parameter.name;
        QCOMPARE(names, QStringList({QStringLiteral("Battery pack maximum charge start temperature"),
                                     QStringLiteral("Battery pack minimum charge start temperature"),
                                     QStringLiteral("Battery pack maximum discharge temperature"),
                                     QStringLiteral("Battery pack minimum discharge temperature"),
                                     QStringLiteral("Battery pack maximum temperature for storage"),
                                     QStringLiteral("Battery pack minimal temperature for storage"),
                                     QStringLiteral("Battery pack maximum cell voltage"),
                                     QStringLiteral("Battery pack minimum cell voltage")}));
    }

    void batteryHasValuesOfItsOwn()
    {
        OneNode store(6);
        store.set(0x6176, 0, 1).set(0x6176, 1, 9720).set(0x6164, 0, 2).set(0x6164, 1, 8400);
        store.set(0x6164, 2, 92).set(0x6162, 0, 1).set(0x6162, 1, 486000);
        store.set(0x6160, 0, 2).set(0x6160, 2, 420000).set(0x6105, 0, 2).set(0x6105, 1, 253);
        store.set(0x6105, 2, 701).set(0x6002, 1, 0x80C0);
        QCOMPARE(
            store.values(),
            QList<Row>({row("Device status", "nothing active"), row("Draxel FSA state", "Operating"),
                        row("Battery Status", "Normal Operation"),
                        row("Battery Pack 0 sensor 1 temperature", "25.30 °C"),
                        row("Battery Pack 0 sensor 1 temperature", "70.10 °C"),
                        row("Battery pack actual battery wh capacity", "420.00 Wh"),
                        row("Full DX output battery Wh capacity", "486.00 Wh"),
                        row("Relative battery Wh capacity", "84.00 %"),
                        row("Relative battery Wh capacity", "0.92 %"), row("Battery pack SOH", "97.20 %")}));
    }

    /*! In the window they would not be shown without it. */
    void batteryValuesNeedNoStatus()
    {
        QCOMPARE(OneNode(6).set(0x6176, 0, 1).set(0x6176, 1, 9720).values(),
                 QList<Row>({row("Battery pack SOH", "97.20 %")}));
    }

    void temperatureLabelComesFromTheCount_data()
    {
        QTest::addColumn<quint32>("count");
        QTest::addColumn<QString>("label");

        QTest::newRow("01h") << 0x01U << QStringLiteral("Battery Pack 1 highest temperature");
        QTest::newRow("21h") << 0x21U << QStringLiteral("Battery Pack 3 highest temperature");
        QTest::newRow("10h") << 0x10U << QStringLiteral("Battery Pack 2 highest temperature");
        QTest::newRow("02h") << 0x02U << QStringLiteral("Battery Pack 0 sensor 1 temperature");
        QTest::newRow("23h") << 0x23U << QStringLiteral("Battery Pack 2 sensor 2 temperature");
        QTest::newRow("FFh") << 0xFFU << QStringLiteral("Battery Pack 15 sensor 14 temperature");
    }

    void temperatureLabelComesFromTheCount()
    {
        QFETCH(quint32, count);
        QFETCH(QString, label);
        const QList<Row> values = OneNode(6).set(0x6105, 0, count).set(0x6105, 1, 253).values();
        QCOMPARE(values, QList<Row>({Row{label, QStringLiteral("25.30 °C")}}));
    }

    void otherClassesHaveNoRowsOfTheirOwn_data()
    {
        QTest::addColumn<quint32>("componentClass");
        for (const quint32 code : {5U, 7U, 8U, 9U, 10U, 11U, 12U, 13U, 14U, 80U})
            QTest::addRow("%u", code) << code;
    }

    void otherClassesHaveNoRowsOfTheirOwn()
    {
        QFETCH(quint32, componentClass);
        OneNode store(componentClass);
        for (const quint16 index : std::initializer_list<quint16>{0x6080, 0x6081, 0x6100, 0x6102, 0x6105,
                                                                  0x6120, 0x6160, 0x6164, 0x6176})
            store.set(index, 0, 1).set(index, 1, 1);
        QCOMPARE(store.parameters(), QList<Row>());
        QCOMPARE(store.values(), QList<Row>());
    }

    void textsAreTheWindowsTexts()
    {
        const MarkingTranslator translator;
        OneNode store(6);
        store.set(0x6008, 0, 1).set(0x6008, 1, 0).set(0x6024, 0, 128).set(0x6024, 1, 0);
        store.set(0x6105, 0, 1).set(0x6105, 1, 0).set(0x600E, 0, 0).set(0x6311, 0, 0);
        const QString body = bodyOf(store.store());
        for (const char *text : {"Battery Pack", "Device Parameters (fixed)", "Actual Values", " VDN ",
                                 " External Device ", "Implemented specification versions", "Security Status",
                                 "Battery Pack ", " highest temperature"}) {
            QVERIFY2(body.contains(QLatin1String("[OverviewForm:") + QLatin1String(text) + QLatin1Char(']')),
                     text);
        }
    }
};

QTEST_MAIN(tst_ReportSections)
#include "tst_reportsections.moc"
