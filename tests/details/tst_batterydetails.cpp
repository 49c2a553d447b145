// SPDX-License-Identifier: MIT
#include "shownnode.h"

#include <tests/support/markingtranslator.h>

#include <QtTest>

namespace {

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

/*! A node of the class battery with its two leading objects. */
class Battery : public ShownNode
{
public:
    Battery()
    {
        set(0x6000, 1, 6);
        set(0x6002, 1, 0x00C0);
        set(0x6100, 1, 0xA0);
    }

    /*! The rows below those that every node has: two of the device status, one separator. */
    QStringList batteryValues() const { return valueRows().mid(2); }
    QStringList batteryParameters() const { return parameterRows().mid(1); }
};

const char *const statusRow = "Battery Status = Normal Operation [Object: 0x6002, Value: 192 | 0xC0]";
const char *const chemistryRow
    = "Type of battery = Lithium Ion (Li-Ion) - carbon anode [Object: 0x6100, Value: 160 | 0xA0]";

} // namespace

/*! The rows of battery packs, and which of them stay out of sight. */
class tst_BatteryDetails : public QObject
{
    Q_OBJECT

private slots:
    void rowsInTheirOrder();
    void status_data();
    void status();
    void temperatureLabels_data();
    void temperatureLabels();
    void temperatureColors_data();
    void temperatureColors();
    void missingEntriesGiveNoRow();
    void chargeColors_data();
    void chargeColors();
    void onlyTheRelativeCapacityIsColored();
    void limitsNameTheRatedCapacity();
    void withoutStatusNoLiveValueIsShown();
    void withoutChemistryNoRatingIsShown();
    void hostileCountsEnd();
    void labelsAreTranslated();
};

void tst_BatteryDetails::rowsInTheirOrder()
{
    Battery node;
    node.set(0x6001, 1, 0).set(0x6005, 0, 7);
    node.setEntries(0x6105, {253, 260}).setEntries(0x6160, {250000}).setEntries(0x6162, {500000});
    node.setEntries(0x6164, {5000}).setEntries(0x6176, {9800, 9700}).setEntries(0x6102, {550000});
    node.setEntries(0x6120, {450}).setEntries(0x6127, {2800}).show();

    QCOMPARE(
        node.valueRows(),
        QStringList(
            {s("Device control  command = No action [Object: 0x6001, Value: 0 | 0x0]"),
             s("Device status = nothing active [Object: 0x6002, Value: 192 | 0xC0]"),
             s("Draxel FSA state = Disconnected [Object: 0x6002, Value: 192 | 0xC0]"), s(statusRow),
             s("Battery Pack 0 sensor 1 temperature = 25.30 °C [Object: 0x6105, Value: 253 | 0xFD]"),
             s("Battery Pack 0 sensor 1 temperature = 26.00 °C [Object: 0x6105, Value: 260 | 0x104]"),
             s("Battery pack actual battery wh capacity: 1 = 250.00 Wh [Object: 0x6160, Value: 250000 | "
               "0x3D090]"),
             s("Full DX output battery Wh capacity: 1 = 500.00 Wh [Object: 0x6162, Value: 500000 | 0x7A120]"),
             s("Relative battery Wh capacity: 1 = 50.00 % [Object: 0x6164, Value: 5000 | 0x1388]"),
             s("Battery pack SOH: 1 = 98.00 % [Object: 0x6176, Value: 9800 | 0x2648]"),
             s("Battery pack SOH: 2 = 97.00 % [Object: 0x6176, Value: 9700 | 0x25E4]")}));
    QCOMPARE(
        node.parameterRows(),
        QStringList({s("Device unique part number = 7 [Object: 0x6005, Value: 7 | 0x7]"), s("-"), s("-"),
                     s(chemistryRow),
                     s("Battery pack rated battery Wh capacity = 550.00 Wh [Object: 0x6102, Value: 550000 | "
                       "0x86470]"),
                     s("Battery pack maximum charge start temperature = 45.00 °C [Object: 0x6102, Value: 450 "
                       "| 0x1C2]"),
                     s("Battery pack minimum cell voltage = 2.80 V [Object: 0x6102, Value: 2800 | 0xAF0]")}));
}

void tst_BatteryDetails::status_data()
{
    QTest::addColumn<quint32>("value");
    QTest::addColumn<QString>("text");
    QTest::addColumn<Qt::GlobalColor>("color");

    QTest::newRow("0") << (0u << 6) << s("specific FSA not active") << Qt::white;
    QTest::newRow("1") << (1u << 6) << s("Do-Not-Attach") << Qt::darkYellow;
    QTest::newRow("2") << (2u << 6) << s("Ready-To-Attach") << Qt::darkGreen;
    QTest::newRow("3") << 0x0C0u << s("Normal Operation") << Qt::green;
    QTest::newRow("4 is reserved") << (4u << 6) << s("Reserved: 0x4") << Qt::black;
    QTest::newRow("5 is reserved") << (5u << 6) << s("Reserved: 0x5") << Qt::black;
    QTest::newRow("6") << (6u << 6) << s("Error") << Qt::red;
    QTest::newRow("7 is reserved") << (7u << 6) << s("Reserved: 0x7") << Qt::black;
    QTest::newRow("63 is reserved") << (63u << 6) << s("Reserved: 0x3f") << Qt::black;
    QTest::newRow("other bits do not count") << 0xFFFFF0FFu << s("Normal Operation") << Qt::green;
}

void tst_BatteryDetails::status()
{
    QFETCH(quint32, value);
    QFETCH(QString, text);
    QFETCH(Qt::GlobalColor, color);

    Battery node;
    node.set(0x6002, 1, value).show();
    QCOMPARE(node.values.rowCount(), 3);
    QCOMPARE(ShownNode::name(node.values, 2), s("Battery Status"));
    QCOMPARE(ShownNode::text(node.values, 2), text);
    QVERIFY(ShownNode::color(node.values, 2) == color);
}

void tst_BatteryDetails::temperatureLabels_data()
{
    QTest::addColumn<quint32>("count");
    QTest::addColumn<QString>("label");

    QTest::newRow("01h") << 0x01u << s("Battery Pack 1 highest temperature");
    QTest::newRow("02h") << 0x02u << s("Battery Pack 0 sensor 1 temperature");
    QTest::newRow("0Fh") << 0x0Fu << s("Battery Pack 0 sensor 14 temperature");
    QTest::newRow("10h") << 0x10u << s("Battery Pack 2 highest temperature");
    QTest::newRow("21h") << 0x21u << s("Battery Pack 3 highest temperature");
    QTest::newRow("23h") << 0x23u << s("Battery Pack 2 sensor 2 temperature");
    QTest::newRow("F1h") << 0xF1u << s("Battery Pack 16 highest temperature");
    QTest::newRow("FEh") << 0xFEu << s("Battery Pack 15 sensor 13 temperature");
}

void tst_BatteryDetails::temperatureLabels()
{
    QFETCH(quint32, count);
    QFETCH(QString, label);

    Battery node;
    node.set(0x6105, 0, count).set(0x6105, 1, 200);
    if (count > 1)
        node.set(0x6105, static_cast<quint8>(count), 300);
    node.show();

    QStringList expected{s(statusRow), label + s(" = 20.00 °C [Object: 0x6105, Value: 200 | 0xC8]")};
    if (count > 1)
        expected << label + s(" = 30.00 °C [Object: 0x6105, Value: 300 | 0x12C]");
    QCOMPARE(node.batteryValues(), expected);
}

void tst_BatteryDetails::temperatureColors_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<Qt::GlobalColor>("color");

    QTest::newRow("below") << 149 << Qt::blue;
    QTest::newRow("minimum") << 150 << Qt::black;
    QTest::newRow("maximum") << 700 << Qt::black;
    QTest::newRow("above") << 701 << Qt::red;
}

void tst_BatteryDetails::temperatureColors()
{
    QFETCH(int, value);
    QFETCH(Qt::GlobalColor, color);

    Battery node;
    node.setEntries(0x6105, {value}).show();
    QVERIFY(ShownNode::color(node.values, 3) == color);
}

void tst_BatteryDetails::missingEntriesGiveNoRow()
{
    Battery node;
    node.set(0x6105, 0, 3).set(0x6105, 2, 200).set(0x6160, 1, 5).set(0x6162, 0, 0);
    node.set(0x6176, 0, 2).set(0x6176, 2, 100).set(0x6102, 0, 2).set(0x6102, 2, 1000).show();
    QCOMPARE(
        node.batteryValues(),
        QStringList({s(statusRow),
                     s("Battery Pack 0 sensor 2 temperature = 20.00 °C [Object: 0x6105, Value: 200 | 0xC8]"),
                     s("Battery pack SOH: 2 = 1.00 % [Object: 0x6176, Value: 100 | 0x64]")}));
    QCOMPARE(node.batteryParameters(),
             QStringList({s("-"), s(chemistryRow),
                          s("Battery pack rated battery Wh capacity = 1.00 Wh [Object: 0x6102, Value: 1000 | "
                            "0x3E8]")}));
}

void tst_BatteryDetails::chargeColors_data()
{
    using Colors = QVector<Qt::GlobalColor>;
    QTest::addColumn<QVector<qint64>>("charges");
    QTest::addColumn<Colors>("colors");

    QTest::newRow("a colour is kept")
        << QVector<qint64>{3000, 900, 3000, 1500} << Colors{Qt::black, Qt::red, Qt::red, Qt::darkYellow};
    QTest::newRow("borders") << QVector<qint64>{999, 1000, 2499, 2500, 0}
                             << Colors{Qt::red, Qt::darkYellow, Qt::darkYellow, Qt::darkYellow, Qt::red};
    QTest::newRow("good") << QVector<qint64>{2500, 10000} << Colors{Qt::black, Qt::black};
    QTest::newRow("a negative number is a great one") << QVector<qint64>{-1} << Colors{Qt::black};
}

void tst_BatteryDetails::chargeColors()
{
    QFETCH(QVector<qint64>, charges);
    QFETCH(QVector<Qt::GlobalColor>, colors);

    Battery node;
    node.setEntries(0x6164, charges).show();
    QCOMPARE(node.values.rowCount(), 3 + charges.size());
    for (int i = 0; i < colors.size(); ++i)
        QVERIFY(ShownNode::color(node.values, 3 + i) == colors.at(i));

    node.show(); // no colour stays from one selection to the next
    QVERIFY(ShownNode::color(node.values, 3) == colors.at(0));
}

void tst_BatteryDetails::onlyTheRelativeCapacityIsColored()
{
    Battery node;
    node.setEntries(0x6160, {1})
        .setEntries(0x6162, {1})
        .setEntries(0x6164, {1})
        .setEntries(0x6176, {1})
        .show();
    QVERIFY(!ShownNode::color(node.values, 3));
    QVERIFY(!ShownNode::color(node.values, 4));
    QVERIFY(ShownNode::color(node.values, 5) == Qt::red);
    QVERIFY(!ShownNode::color(node.values, 6));
}

void tst_BatteryDetails::limitsNameTheRatedCapacity()
{
    Battery node;
    for (quint16 index = 0x6120; index <= 0x6127; ++index)
        node.setEntries(index, {255});
    node.show();
    QCOMPARE(
        node.batteryParameters(),
        QStringList(
            {s("-"), s(chemistryRow),
             s("Battery pack maximum charge start temperature = 25.50 °C [Object: 0x6102, Value: 255 | "
               "0xFF]"),
             s("Battery pack minimum charge start temperature = 25.50 °C [Object: 0x6102, Value: 255 | "
               "0xFF]"),
             s("Battery pack maximum discharge temperature = 25.50 °C [Object: 0x6102, Value: 255 | 0xFF]"),
             s("Battery pack minimum discharge temperature = 25.50 °C [Object: 0x6102, Value: 255 | 0xFF]"),
             s("Battery pack maximum temperature for storage = 25.50 °C [Object: 0x6102, Value: 255 | 0xFF]"),
             s("Battery pack minimal temperature for storage = 25.50 °C [Object: 0x6102, Value: 255 | 0xFF]"),
             s("Battery pack maximum cell voltage = 0.26 V [Object: 0x6102, Value: 255 | 0xFF]"),
             s("Battery pack minimum cell voltage = 0.26 V [Object: 0x6102, Value: 255 | 0xFF]")}));
}

void tst_BatteryDetails::withoutStatusNoLiveValueIsShown()
{
    ShownNode node;
    node.set(0x6000, 1, 6).set(0x6001, 1, 0).set(0x6100, 1, 0xA0);
    node.setEntries(0x6105, {253}).setEntries(0x6160, {1}).setEntries(0x6164, {1}).show();
    QCOMPARE(node.valueRows(),
             QStringList(s("Device control  command = No action [Object: 0x6001, Value: 0 | 0x0]")));
    QCOMPARE(node.parameterRows(), QStringList({s("-"), s("-"), s(chemistryRow)}));
}

void tst_BatteryDetails::withoutChemistryNoRatingIsShown()
{
    ShownNode node;
    node.set(0x6000, 1, 6).set(0x6002, 1, 0xC0).setEntries(0x6176, {100});
    node.setEntries(0x6102, {1, 2}).setEntries(0x6120, {1}).show();
    QCOMPARE(node.parameterRows(), QStringList({s("-"), s("-")}));
    QCOMPARE(
        node.valueRows().mid(2),
        QStringList({s(statusRow), s("Battery pack SOH: 1 = 1.00 % [Object: 0x6176, Value: 100 | 0x64]")}));
}

void tst_BatteryDetails::hostileCountsEnd()
{
    Battery node;
    for (const quint16 index : QVector<quint16>{0x6105, 0x6160, 0x6164, 0x6102, 0x6127})
        node.set(index, 0, 0xFFFFFFF1u).set(index, 1, 500).set(index, 255, 600);
    node.show();
    QCOMPARE(node.batteryValues().size(), 1 + 3 * 2);
    QCOMPARE(node.batteryParameters().size(), 2 + 2 * 2);
}

void tst_BatteryDetails::labelsAreTranslated()
{
    const MarkingTranslator translator("OverviewForm");
    Battery node;
    node.setEntries(0x6105, {253}).show();
    QCOMPARE(ShownNode::name(node.values, 2), s("[OverviewForm:Battery Status]"));
    QCOMPARE(ShownNode::name(node.values, 3),
             s("[OverviewForm:Battery Pack ]1[OverviewForm: highest temperature]"));
    node.setEntries(0x6105, {253, 254}).show();
    QCOMPARE(ShownNode::name(node.values, 3),
             s("[OverviewForm:Battery Pack ]0[OverviewForm: sensor ]1[OverviewForm: temperature]"));
}

QTEST_GUILESS_MAIN(tst_BatteryDetails)
#include "tst_batterydetails.moc"
