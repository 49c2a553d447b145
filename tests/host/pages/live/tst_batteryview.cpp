// SPDX-License-Identifier: MIT
#include "livehost.h"

#include <host/pages/live/batterypack.h>
#include <host/pages/live/batteryview.h>

#include <QComboBox>
#include <QLabel>
#include <QSettings>

namespace {

constexpr qint64 second = 1'000'000; // us

void noteCells(LiveValues *values, quint8 nodeId, quint16 object, qint64 time)
{
    for (int cell = 1; cell <= 10; ++cell) // the tenth one first, and sub-index 0 is the count
        values->note(nodeId, {object, quint8(11 - cell)}, cell == 4 ? 3290 : 3700 + cell, time);
    values->note(nodeId, {object, 0}, 10, time);
}

} // namespace

class tst_BatteryView : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { QSettings().clear(); }
    void cellsInTheirOrder();
    void lowestHighestSpread();
    void lateCells();
    void packsAreApart();
    void onlyWithABattery();
    void textOfCells();
    void otherValues();
    void choice();
};

void tst_BatteryView::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Draxel Project"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_batteryview"));
}

void tst_BatteryView::cellsInTheirOrder()
{
    LiveValues values;
    noteCells(&values, 2, 0x6165, 0);
    values.note(2, {0x6164, 2}, 5000, 0); // no cell
    values.note(2, {0x6175, 1}, 5000, 0);
    const QVector<BatteryPack> packs = BatteryPack::of(values, 0);
    QCOMPARE(packs.size(), 1);
    QCOMPARE(packs.first().cells.size(), 10);
    QCOMPARE(packs.first().cells.at(0).number, 1);
    QCOMPARE(packs.first().cells.at(0).value, 3.71);
    QCOMPARE(packs.first().cells.at(9).number, 10);
}

void tst_BatteryView::lowestHighestSpread()
{
    LiveValues values;
    QCOMPARE(BatteryPack().lowest(), -1);
    QCOMPARE(BatteryPack().highest(), -1);
    QCOMPARE(BatteryPack().spread(), 0.0);
    noteCells(&values, 2, 0x6165, 0);
    const BatteryPack pack = BatteryPack::of(values, 0).first();
    QCOMPARE(pack.cells.at(pack.lowest()).number, 7);
    QCOMPARE(pack.cells.at(pack.highest()).number, 1);
    QVERIFY(qAbs(pack.spread() - 0.42) < 1e-9);
}

void tst_BatteryView::lateCells()
{
    LiveValues values;
    noteCells(&values, 2, 0x6165, 0);
    noteCells(&values, 2, 0x6165, second);
    QVERIFY(!BatteryPack::of(values, 2 * second).first().cells.first().isLate);
    QVERIFY(BatteryPack::of(values, 60 * second).first().cells.first().isLate);
}

void tst_BatteryView::packsAreApart()
{
    LiveValues values;
    noteCells(&values, 3, 0x6165, 0);
    noteCells(&values, 2, 0x6174, 0);
    noteCells(&values, 2, 0x6165, 0);
    const QVector<BatteryPack> packs = BatteryPack::of(values, 0);
    QCOMPARE(packs.size(), 3);
    QCOMPARE(packs.at(0).nodeId, quint8(2));
    QCOMPARE(packs.at(0).object, quint16(0x6165));
    QCOMPARE(packs.at(1).object, quint16(0x6174));
    QCOMPARE(packs.at(2).nodeId, quint8(3));
}

void tst_BatteryView::onlyWithABattery()
{
    LiveHost host;
    host.connectToBus();
    QTest::qWait(300);
    QVERIFY(!host.find<BatteryView>("batteryView")->isVisible());
    noteCells(&host.session().live().values(), 2, 0x6165, host.session().now());
    QTest::qWait(300);
    QVERIFY(host.find<BatteryView>("batteryView")->isVisible());
    host.disconnect();
    host.connectToBus();
    QTest::qWait(300);
    QVERIFY(!host.find<BatteryView>("batteryView")->isVisible());
}

void tst_BatteryView::textOfCells()
{
    LiveHost host;
    host.connectToBus();
    noteCells(&host.session().live().values(), 2, 0x6165, host.session().now());
    QTest::qWait(300);
    QCOMPARE(host.find<QLabel>("cellText")->text(),
             QStringLiteral("Cells: 3.290 V (cell 7) to 3.710 V (cell 1), spread 0.420 V"));
    QVERIFY(!host.find<QLabel>("batteryText")->isVisible());
    QVERIFY(!host.find<QComboBox>("batteryChoice")->isVisible());
}

void tst_BatteryView::otherValues()
{
    LiveHost host;
    host.connectToBus();
    LiveValues &values = host.session().live().values();
    noteCells(&values, 2, 0x6165, host.session().now());
    values.note(2, {0x603E, 1}, 6200, host.session().now());
    values.note(2, {0x6164, 2}, 8400, host.session().now());
    values.note(3, {0x6040, 1}, 39300, host.session().now()); // of another
    QTest::qWait(300);
    QCOMPARE(host.find<QLabel>("batteryText")->text(), QStringLiteral("84.00 % · 6.200 A"));
    QVERIFY(host.find<QLabel>("batteryText")
                ->toolTip()
                .contains(QStringLiteral("Device actual current: 6.200 A")));
}

void tst_BatteryView::choice()
{
    LiveHost host;
    host.connectToBus();
    LiveValues &values = host.session().live().values();
    noteCells(&values, 2, 0x6165, host.session().now());
    noteCells(&values, 3, 0x6165, host.session().now());
    values.note(3, {0x6040, 1}, 36000, host.session().now());
    QTest::qWait(300);
    auto *choice = host.find<QComboBox>("batteryChoice");
    QVERIFY(choice->isVisible());
    QCOMPARE(choice->itemText(1), QStringLiteral("Battery of node 3, cells 6165h"));
    choice->setCurrentIndex(1);
    QTest::qWait(300);
    QVERIFY(host.find<QLabel>("batteryText")->isVisible());
    QCOMPARE(host.find<QLabel>("batteryText")->text(), QStringLiteral("36.000 V"));
}

QTEST_MAIN(tst_BatteryView)
#include "tst_batteryview.moc"
