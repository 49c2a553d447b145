// SPDX-License-Identifier: MIT
#include "livehost.h"

#include <host/core/settingsstore.h>
#include <host/pages/live/batterypack.h>
#include <host/pages/live/batteryview.h>
#include <tests/support/logwatcher.h>
#include <tests/support/markingtranslator.h>

#include <QComboBox>
#include <QImage>
#include <QLabel>

namespace {

constexpr qint64 second = 1'000'000; // us

void noteCells(LiveValues *values, quint8 nodeId, quint16 object, qint64 time)
{
    for (int cell = 1; cell <= 10; ++cell) // the tenth one first, and sub-index 0 is the count
        values->note(nodeId, {object, quint8(11 - cell)}, cell == 4 ? 3290 : 3700 + cell, time);
    values->note(nodeId, {object, 0}, 10, time);
}

/*! A widget as it is painted at a size. */
QImage picture(QWidget *widget, const QSize &size)
{
    widget->resize(size);
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    widget->render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    return image;
}

/*! How many pixels of a column are painted, from below. */
int heightAt(const QImage &image, int x)
{
    int height = 0;
    while (height < image.height() && image.pixelColor(x, image.height() - 1 - height) != Qt::white)
        ++height;
    return height;
}

QColor colourAt(const QImage &image, int x)
{
    return image.pixelColor(x, image.height() - 1);
}

} // namespace

class tst_BatteryView : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { SettingsStore::instance().setValues({}); }
    void cellsInTheirOrder();
    void lowestHighestSpread();
    void lateCells();
    void packsAreApart();
    void onlyWithABattery();
    void textOfCells();
    void otherValues();
    void choice();
    void anotherPackComes();
    void barsAreOfTheChosenPack();
    void barsAsHighAsTheirValues();
    void smallDifferencesStaySmall();
    void barsOfEqualAndOfLateCells();
    void partsStandBelowEachOther();
    void hiddenAtFirst();
    void speaksItsLanguage();
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
             QString::fromUtf8("Cells: 3.290\u00a0V (cell 7) to 3.710\u00a0V (cell 1), spread 0.420\u00a0V"));
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
    QCOMPARE(host.find<QLabel>("batteryText")->text(), QString::fromUtf8("84.00\u00a0% · 6.200\u00a0A"));
    QVERIFY(host.find<QLabel>("batteryText")
                ->toolTip()
                .contains(QString::fromUtf8("Device actual current: 6.200\u00a0A")));
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
    QCOMPARE(host.find<QLabel>("batteryText")->text(), QString::fromUtf8("36.000\u00a0V"));
}

void tst_BatteryView::anotherPackComes()
{
    LiveHost host;
    host.connectToBus();
    LiveValues &values = host.session().live().values();
    noteCells(&values, 2, 0x6165, host.session().now());
    noteCells(&values, 4, 0x6165, host.session().now());
    values.note(4, {0x6040, 1}, 36000, host.session().now());
    QTest::qWait(300);
    auto *choice = host.find<QComboBox>("batteryChoice");
    choice->setCurrentIndex(1);
    emit choice->activated(1);
    QCOMPARE(host.find<QLabel>("batteryText")->text(), QString::fromUtf8("36.000\u00a0V")); // at once
    noteCells(&values, 3, 0x6165, host.session().now());
    QTest::qWait(300);
    QCOMPARE(choice->count(), 3);
    QCOMPARE(choice->currentIndex(), 2); // the same battery
    QCOMPARE(host.find<QLabel>("batteryText")->text(), QString::fromUtf8("36.000\u00a0V"));
    QCOMPARE(choice->itemText(1), QStringLiteral("Battery of node 3, cells 6165h"));
    QCOMPARE(choice->itemText(2), QStringLiteral("Battery of node 4, cells 6165h"));
}

void tst_BatteryView::barsAreOfTheChosenPack()
{
    LiveHost host;
    host.connectToBus();
    LiveValues &values = host.session().live().values();
    noteCells(&values, 2, 0x6165, host.session().now());
    values.note(3, {0x6165, 1}, 3600, host.session().now());
    QTest::qWait(300);
    auto *bars = host.find<BatteryView>("batteryView")->findChild<CellBars *>();
    QVERIFY(bars->toolTip().startsWith(
        QString::fromUtf8("<qt>Node 2<br>Cell 1: 3.710\u00a0V<br>Cell 2: 3.709\u00a0V<br>")));
    host.find<QComboBox>("batteryChoice")->setCurrentIndex(1);
    QTest::qWait(300);
    QCOMPARE(bars->toolTip(), QString::fromUtf8("<qt>Node 3<br>Cell 1: 3.600\u00a0V</qt>"));
}

void tst_BatteryView::barsAsHighAsTheirValues()
{
    LiveValues values;
    for (int cell = 1; cell <= 4; ++cell)
        values.note(2, {0x6165, quint8(cell)}, 3200 + 200 * cell, 0); // 3.4 V to 4.0 V
    CellBars bars;
    QCOMPARE(heightAt(picture(&bars, QSize(100, 100)), 5), 0);
    bars.setPack(BatteryPack::of(values, 0).first());
    const QImage image = picture(&bars, QSize(100, 100));
    QCOMPARE(heightAt(image, 2), 25);
    QCOMPARE(heightAt(image, 27), 50);
    QCOMPARE(heightAt(image, 52), 75);
    QCOMPARE(heightAt(image, 77), 100);
    for (const int gap : {23, 48, 73, 98})
        QCOMPARE(heightAt(image, gap), 0);
    QVERIFY(colourAt(image, 27) == colourAt(image, 52));
    QVERIFY(colourAt(image, 2) != colourAt(image, 27));
    QVERIFY(colourAt(image, 77) != colourAt(image, 27));
    QVERIFY(colourAt(image, 77) != colourAt(image, 2));
}

void tst_BatteryView::smallDifferencesStaySmall()
{
    LiveValues values;
    values.note(2, {0x6165, 1}, 3700, 0);
    values.note(2, {0x6165, 2}, 3663, 0); // 1 % less
    CellBars bars;
    bars.setPack(BatteryPack::of(values, 0).first());
    const QImage image = picture(&bars, QSize(100, 100));
    QCOMPARE(heightAt(image, 2), 100);
    QCOMPARE(heightAt(image, 52), 75);
}

void tst_BatteryView::barsOfEqualAndOfLateCells()
{
    LiveValues values;
    for (int cell = 1; cell <= 4; ++cell) {
        values.note(2, {0x6165, quint8(cell)}, 3700, 0);
        values.note(2, {0x6165, quint8(cell)}, 3700, second);
    }
    values.note(2, {0x6165, 3}, 3700, 60 * second);
    CellBars bars;
    bars.setPack(BatteryPack::of(values, second).first());
    const QImage fresh = picture(&bars, QSize(100, 100));
    QCOMPARE(heightAt(fresh, 2), 100);
    QVERIFY(colourAt(fresh, 2) == colourAt(fresh, 27)); // none is the lowest
    bars.setPack(BatteryPack::of(values, 60 * second).first());
    const QImage late = picture(&bars, QSize(100, 100));
    QVERIFY(colourAt(late, 52) == colourAt(fresh, 52));
    QVERIFY(colourAt(late, 2) != colourAt(fresh, 2));
}

void tst_BatteryView::partsStandBelowEachOther()
{
    LiveHost host;
    host.connectToBus();
    LiveValues &values = host.session().live().values();
    noteCells(&values, 2, 0x6165, host.session().now());
    noteCells(&values, 3, 0x6165, host.session().now());
    values.note(2, {0x6040, 1}, 36000, host.session().now());
    QTest::qWait(300);
    const auto *view = host.find<BatteryView>("batteryView");
    const QVector<QWidget *> parts{host.find<QComboBox>("batteryChoice"), view->findChild<CellBars *>(),
                                   host.find<QLabel>("cellText"), host.find<QLabel>("batteryText")};
    int bottom = -1;
    for (const QWidget *part : parts) {
        QVERIFY(part->isVisible());
        QVERIFY(part->geometry().top() > bottom);
        bottom = part->geometry().bottom();
    }
    QVERIFY(bottom < view->height());
    QVERIFY(parts.at(1)->height() > 20);
    // All lines of the text are seen.
    QVERIFY(parts.at(2)->height() >= parts.at(2)->heightForWidth(parts.at(2)->width()));
    QVERIFY(parts.at(2)->height() > parts.at(3)->height());
    host.page().resize(700, 400);
    QTest::qWait(300);
    QVERIFY(parts.at(2)->height() >= parts.at(2)->heightForWidth(parts.at(2)->width()));
    QVERIFY(parts.at(2)->height() > parts.at(3)->height());
}

void tst_BatteryView::hiddenAtFirst()
{
    LiveHost host;
    const LogWatcher log;
    QWidget page;
    auto *view = new BatteryView(&host.session(), &page);
    page.show();
    view->resize(300, 100);
    QVERIFY(!view->isVisible());
    view->show(); // without a text
    QCOMPARE(log.warnings(), QStringList());
}

void tst_BatteryView::speaksItsLanguage()
{
    LiveHost host;
    host.connectToBus();
    LiveValues &values = host.session().live().values();
    noteCells(&values, 2, 0x6165, host.session().now());
    noteCells(&values, 3, 0x6165, host.session().now());
    QTest::qWait(300);
    auto *choice = host.find<QComboBox>("batteryChoice");
    choice->setCurrentIndex(1);
    emit choice->activated(1);
    const MarkingTranslator marking("BatteryView");
    QTest::qWait(300);
    QCOMPARE(choice->count(), 2);
    QCOMPARE(choice->itemText(1), QStringLiteral("[BatteryView:Battery of node 3, cells 6165h]"));
    QCOMPARE(choice->currentIndex(), 1);
}

QTEST_MAIN(tst_BatteryView)
#include "tst_batteryview.moc"
