// SPDX-License-Identifier: MIT
#include "ride.h"

#include <canopen/cobid.h>
#include <host/core/settingsstore.h>
#include <host/pages/live/watchmodel.h>
#include <host/pages/live/watchview.h>

#include <QAction>
#include <QDialog>
#include <QFile>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTableView>
#include <QTemporaryDir>
#include <QToolButton>
#include <QtTest>

class tst_WatchView : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void nothingIsAskedUnlessWanted();
    void rememberedObjectsAreNotAskedByThemselves();
    void learnsOnPress();
    void learningCanBeStopped();
    void learningNeedsABus();
    void learningTellsOfItself();
    void valuesAreShown();
    void mappedIsNotHeard();
    void equalNamesAreToldApart();
    void smallestLargestAndMean();
    void lateValueIsGrey();
    void valueIsAskedFor();
    void askingEndsWithTheBus();
    void askingCanBeSwitchedOff();
    void objectThatIsNotThere();
    void reasonGoesWithTheAnswer();
    void anotherPeriod();
    void othersAreNotDisturbed();
    void oneAsksAtATime();
    void waitsForACheckup();
    void isRemembered();
    void removedAndMoved();
    void removedIsForgotten();
    void dialogListsWhatIsKnown();
    void dialogSearches();
    void dialogTakesAnObject();
    void dialogRefusesNonsense();
    void dataSheet();
    void dataSheetWithoutANode();
    void brokenDataSheet();
    void dataSheetTellsTypes();
    void savesHistories();
    void scanFindsSilentDevices();
    void scanGivesWay();
    void nextBusForgets();
};

void tst_WatchView::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Draxel Project"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_watchview"));
}

void tst_WatchView::init()
{
    SettingsStore::instance().setValues({});
}

void tst_WatchView::nothingIsAskedUnlessWanted()
{
    Ride ride;
    ride.watch("2:6040:1");
    ride.connectToBus();
    QTest::qWait(60000);
    QCOMPARE(ride.sent(), 0);
    QVERIFY(!ride.find<QToolButton>("askForValues")->isVisible());
}

void tst_WatchView::rememberedObjectsAreNotAskedByThemselves()
{
    {
        Ride ride;
        ride.watch("2:6040:1", 500);
    }
    Ride ride;
    ride.connectToBus();
    QTest::qWait(60000);
    QCOMPARE(ride.rows(), 1);
    QCOMPARE(ride.sent(), 0);
    auto *ask = ride.find<QToolButton>("askForValues");
    QVERIFY(ask->isVisible());
    QVERIFY(!ask->isChecked());
    ask->click();
    QTest::qWait(3000);
    QVERIFY(ask->isChecked());
    QCOMPARE(ride.cell(0, WatchModel::ValueColumn), QStringLiteral("39.300"));
}

void tst_WatchView::learnsOnPress()
{
    Ride ride;
    ride.connectToBus();
    ride.learn();
    QVERIFY(ride.sent() > 50);
    const int values = int(ride.session().live().values().values().size());
    QVERIFY(values > 20);
    QCOMPARE(ride.told(), QStringLiteral("5 devices were asked, %1 values are known now.").arg(values));
    const int sent = ride.sent();
    QTest::qWait(60000);
    QCOMPARE(ride.sent(), sent); // once
}

void tst_WatchView::learningCanBeStopped()
{
    Ride ride;
    ride.connectToBus();
    auto *button = ride.find<QToolButton>("learnValues");
    QCOMPARE(button->text(), QStringLiteral("L&earn values"));
    button->click();
    QVERIFY(ride.session().questions().isLearning());
    QCOMPARE(button->text(), QStringLiteral("Stop learning"));
    button->click();
    QVERIFY(!ride.session().questions().isLearning());
    QCOMPARE(button->text(), QStringLiteral("L&earn values"));
}

void tst_WatchView::learningNeedsABus()
{
    Ride ride;
    auto *button = ride.find<QToolButton>("learnValues");
    QVERIFY(!button->isEnabled());
    QCOMPARE(button->toolTip(), QStringLiteral("Connect a bus first."));
    ride.connectToBus();
    QVERIFY(button->isEnabled());
}

void tst_WatchView::learningTellsOfItself()
{
    Simulator::VehicleDescription vehicle = SimulatedHost::stillVehicle(QStringLiteral("ride"));
    for (Simulator::NodeDescription &node : vehicle.nodes) {
        if (node.id == 7)
            node.faults.append(Simulator::Faults::SdoSilent{});
    }
    Ride ride(vehicle);
    ride.connectToBus();
    for (int i = 0; i < 2; ++i) { // the second time as the first
        ride.learn();
        QVERIFY2(ride.told().startsWith(QStringLiteral("4 devices were asked, ")), qPrintable(ride.told()));
        QCOMPARE(ride.problems(), QStringList{QStringLiteral("The device did not answer.")});
    }
}

void tst_WatchView::valuesAreShown()
{
    Ride ride;
    ride.connectToBus();
    ride.learn();
    ride.watch("2:6040:1");
    QCOMPARE(ride.cell(0, WatchModel::ValueColumn), QStringLiteral("39.300"));
    QCOMPARE(ride.cell(0, WatchModel::UnitColumn), QStringLiteral("V"));
    QCOMPARE(ride.cell(0, WatchModel::NodeColumn), QStringLiteral("2"));
    QCOMPARE(ride.cell(0, WatchModel::ObjectColumn), QStringLiteral("6040h.1"));
    QVERIFY(!ride.isGrey(0));
}

void tst_WatchView::mappedIsNotHeard()
{
    Ride ride;
    ride.connectToBus();
    ride.host().vehicle().stop();
    ride.page().findChild<WatchView *>()->openSheet(QStringLiteral(VEHICLE_FOLDER "/ride-battery.dcf"), 2);
    ride.watch("2:6040:1");
    QVERIFY(ride.session().live().values().find(2, {0x6040, 1}) >= 0);
    QCOMPARE(ride.cell(0, WatchModel::ValueColumn), QStringLiteral("–"));
    QVERIFY(ride.isGrey(0));
}

void tst_WatchView::equalNamesAreToldApart()
{
    Ride ride;
    ride.watch("2:6040:1");
    ride.watch("2:5FFF:1"); // has no name
    QCOMPARE(ride.cell(0, WatchModel::NameColumn), QStringLiteral("Device actual voltage"));
    QCOMPARE(ride.cell(1, WatchModel::NameColumn), QStringLiteral("5FFFh.1"));
    ride.watch("4:6040:1");
    QCOMPARE(ride.cell(0, WatchModel::NameColumn), QStringLiteral("Device actual voltage (2:6040h.1)"));
    QCOMPARE(ride.cell(2, WatchModel::NameColumn), QStringLiteral("Device actual voltage (4:6040h.1)"));
    ride.session().watch().remove(0);
    QCOMPARE(ride.cell(1, WatchModel::NameColumn), QStringLiteral("Device actual voltage"));
}

void tst_WatchView::smallestLargestAndMean()
{
    Ride ride;
    ride.connectToBus();
    ride.watch("2:6040:1");
    LiveValues &values = ride.session().live().values();
    for (const double number : {36000.0, 39000.0, 37500.0})
        values.note(2, {0x6040, 1}, number, ride.session().now());
    QTest::qWait(300);
    QCOMPARE(ride.cell(0, WatchModel::ValueColumn), QStringLiteral("37.500"));
    QCOMPARE(ride.cell(0, WatchModel::SmallestColumn), QStringLiteral("36.000"));
    QCOMPARE(ride.cell(0, WatchModel::LargestColumn), QStringLiteral("39.000"));
    QCOMPARE(ride.cell(0, WatchModel::MeanColumn), QStringLiteral("37.5000"));
}

void tst_WatchView::lateValueIsGrey()
{
    Ride ride;
    ride.connectToBus();
    ride.learn();
    ride.watch("2:6040:1");
    QVERIFY(!ride.isGrey(0));
    ride.host().vehicle().stop();
    QTest::qWait(8000);
    QVERIFY(ride.isGrey(0));
    const QString tip = ride.index(0, 0).data(Qt::ToolTipRole).toString();
    QVERIFY2(
        tip.contains(QRegularExpression(QStringLiteral("It has not come since \\d\\d:\\d\\d:\\d\\d\\."))),
        qPrintable(tip));
}

void tst_WatchView::valueIsAskedFor()
{
    Ride ride;
    ride.connectToBus();
    ride.watch("2:6040:1", 500);
    ride.session().questions().setAsking(true);
    QTest::qWait(10000);
    QCOMPARE(ride.cell(0, WatchModel::ValueColumn), QStringLiteral("39.300"));
    QVERIFY2(ride.sent() >= 15 && ride.sent() <= 22, qPrintable(QString::number(ride.sent())));
    QVERIFY(!ride.isGrey(0));
}

void tst_WatchView::askingEndsWithTheBus()
{
    Ride ride;
    ride.connectToBus();
    ride.watch("2:6040:1", 500);
    ride.session().questions().setAsking(true);
    QTest::qWait(2000);
    ride.host().services().bus().disconnectFromBus();
    QVERIFY(!ride.session().questions().isAsking());
    const int sent = ride.sent();
    ride.connectToBus();
    QTest::qWait(5000);
    QCOMPARE(ride.sent(), sent);
}

void tst_WatchView::askingCanBeSwitchedOff()
{
    Ride ride;
    ride.connectToBus();
    ride.watch("2:6040:1", 500);
    auto *ask = ride.find<QToolButton>("askForValues");
    ask->click();
    QTest::qWait(2000);
    QVERIFY(ride.sent() > 0);
    ask->click();
    const int sent = ride.sent();
    QTest::qWait(5000);
    QCOMPARE(ride.sent(), sent);
}

void tst_WatchView::objectThatIsNotThere()
{
    Ride ride;
    ride.connectToBus();
    ride.watch("2:5FFF:1", 500);
    ride.session().questions().setAsking(true);
    QTest::qWait(3000);
    QCOMPARE(ride.cell(0, WatchModel::ValueColumn), QStringLiteral("–"));
    const QString tip = ride.index(0, 0).data(Qt::ToolTipRole).toString();
    QVERIFY2(tip.contains(QStringLiteral("The device does not have it.")), qPrintable(tip));
}

void tst_WatchView::reasonGoesWithTheAnswer()
{
    Ride ride;
    ride.connectToBus();
    ride.watch("2:6040:1", 500);
    ride.host().vehicle().stop();
    ride.session().questions().setAsking(true);
    QTest::qWait(5000);
    QCOMPARE(ride.session().watch().silence(0), QStringLiteral("The device did not answer."));
    ride.host().vehicle().start();
    QTest::qWait(5000);
    QCOMPARE(ride.session().watch().silence(0), QString());
    QCOMPARE(ride.cell(0, WatchModel::ValueColumn), QStringLiteral("39.300"));
}

void tst_WatchView::anotherPeriod()
{
    Ride ride;
    ride.connectToBus();
    ride.watch("2:6040:1", 1000);
    ride.session().questions().setAsking(true);
    ride.watch("2:6040:1", 200);
    QCOMPARE(ride.rows(), 1);
    const int sent = ride.sent();
    QTest::qWait(10000);
    QVERIFY2(ride.sent() - sent >= 48 && ride.sent() - sent <= 51,
             qPrintable(QString::number(ride.sent() - sent)));
}

void tst_WatchView::othersAreNotDisturbed()
{
    Ride ride;
    ride.connectToBus();
    ride.watch("2:6040:1", 20000);
    ride.session().questions().setAsking(true);
    QTest::qWait(500);
    QCOMPARE(ride.sent(), 1);
    ride.watch("4:6040:1"); // is listened to
    ride.session().watch().move(0, 1);
    ride.session().watch().setPlotted(1, true);
    QTest::qWait(500);
    QCOMPARE(ride.sent(), 1);
}

void tst_WatchView::oneAsksAtATime()
{
    Ride ride;
    ride.connectToBus();
    ride.watch("2:6042:1", 100); // in no PDO
    ride.session().questions().setAsking(true);
    QTest::qWait(1000);
    const int before = ride.sentFor("426001");
    QVERIFY(before > 8);
    ride.session().questions().setSharePercent(5); // so that it takes its time
    ride.find<QToolButton>("learnValues")->click();
    QTest::qWait(3000);
    QVERIFY(ride.session().questions().isLearning());
    QCOMPARE(ride.sentFor("426001"), before);
    ride.session().questions().cancelLearning();
    QTest::qWait(1000);
    QVERIFY(ride.sentFor("426001") > before);
    const int learned = ride.sent() - ride.sentFor("426001");
    ride.session().questions().scan();
    const int asked = ride.sentFor("426001");
    QTest::qWait(1000);
    QVERIFY(ride.session().questions().isScanning());
    QCOMPARE(ride.sentFor("426001"), asked);
    QVERIFY(ride.sent() - asked > learned); // the scan's
}

void tst_WatchView::waitsForACheckup()
{
    Ride ride;
    ride.connectToBus();
    ride.watch("2:6040:1", 500);
    ride.session().questions().setAsking(true);
    QTest::qWait(2000);
    ride.session().questions().setCheckingUp(true);
    QVERIFY(!ride.find<QToolButton>("learnValues")->isEnabled());
    const int sent = ride.sent();
    QTest::qWait(5000);
    QCOMPARE(ride.sent(), sent);
    ride.session().questions().setCheckingUp(false);
    QTest::qWait(2000);
    QVERIFY(ride.sent() > sent);
}

void tst_WatchView::isRemembered()
{
    {
        Ride ride;
        ride.watch("2:6040:1");
        ride.watch("4:62E8:4", 250);
        ride.session().watch().move(1, 0);
    }
    Ride ride;
    QCOMPARE(ride.rows(), 2);
    QCOMPARE(ride.cell(0, WatchModel::ObjectColumn), QStringLiteral("62E8h.4"));
    QCOMPARE(ride.session().watch().items().at(0).period, 250);
}

void tst_WatchView::removedAndMoved()
{
    Ride ride;
    ride.watch("2:6040:1");
    ride.watch("2:603E:1");
    ride.watch("4:62E8:4");
    auto *table = ride.find<QTableView>("watchTable");
    QVERIFY(!ride.find<QAction>("removeValue")->isEnabled());
    table->selectRow(2);
    ride.find<QAction>("moveValueUp")->trigger();
    QCOMPARE(ride.cell(1, WatchModel::ObjectColumn), QStringLiteral("62E8h.4"));
    QCOMPARE(table->currentIndex().row(), 1);
    ride.find<QAction>("moveValueDown")->trigger();
    QCOMPARE(ride.cell(2, WatchModel::ObjectColumn), QStringLiteral("62E8h.4"));
    QVERIFY(!ride.find<QAction>("moveValueDown")->isEnabled());
    ride.find<QAction>("removeValue")->trigger();
    QCOMPARE(ride.rows(), 2);
    QCOMPARE(ride.cell(1, WatchModel::ObjectColumn), QStringLiteral("603Eh.1"));
}

void tst_WatchView::removedIsForgotten()
{
    Ride ride;
    ride.connectToBus();
    ride.learn();
    ride.watch("2:6040:1");
    const LiveValues &values = ride.session().live().values();
    const auto position = static_cast<std::size_t>(values.find(2, {0x6040, 1}));
    QVERIFY(values.values()[position].history != nullptr);
    ride.session().watch().remove(0);
    QTest::qWait(500);
    QVERIFY(values.values()[position].history == nullptr);
}

void tst_WatchView::dialogListsWhatIsKnown()
{
    Ride ride;
    ride.connectToBus();
    ride.learn();
    ride.watch("2:6040:1");
    const int known = int(ride.session().live().values().values().size());
    AddValueDialog *dialog = ride.openDialog();
    auto *table = dialog->findChild<QTableView *>(QStringLiteral("knownValues"));
    QCOMPARE(table->model()->rowCount(), known - 1); // less what is watched
    QVERIFY(!dialog->findChild<QPushButton *>(QStringLiteral("addValues"))->isEnabled());
    table->selectRow(0);
    const QString object = table->model()->index(0, 2).data().toString();
    QVERIFY(dialog->findChild<QPushButton *>(QStringLiteral("addValues"))->isEnabled());
    dialog->accept();
    QCOMPARE(ride.rows(), 2);
    QCOMPARE(ride.cell(1, WatchModel::ObjectColumn), object);
    QVERIFY(!ride.session().questions().isAsking());
}

void tst_WatchView::dialogSearches()
{
    Ride ride;
    ride.connectToBus();
    ride.learn();
    AddValueDialog *dialog = ride.openDialog();
    dialog->findChild<QLineEdit *>(QStringLiteral("valueSearch"))->setText(QStringLiteral("6165H"));
    auto *table = dialog->findChild<QTableView *>(QStringLiteral("knownValues"));
    QVERIFY(table->model()->rowCount() > 0);
    for (int row = 0; row < table->model()->rowCount(); ++row)
        QVERIFY(table->model()->index(row, 2).data().toString().startsWith(QStringLiteral("6165h")));
    table->selectRow(table->model()->rowCount() - 1);
    const QString object = table->model()->index(table->model()->rowCount() - 1, 2).data().toString();
    dialog->accept();
    QCOMPARE(ride.cell(0, WatchModel::ObjectColumn), object);
}

void tst_WatchView::dialogTakesAnObject()
{
    Ride ride;
    ride.connectToBus();
    AddValueDialog *dialog = ride.openDialog();
    dialog->findChild<QLineEdit *>(QStringLiteral("askedObject"))->setText(QStringLiteral("2:6040:1"));
    dialog->findChild<QSpinBox *>(QStringLiteral("askedPeriod"))->setValue(200);
    dialog->accept();
    QCOMPARE(ride.session().watch().items().at(0).period, 200);
    QVERIFY(ride.session().questions().isAsking()); // that was wanted
    QTest::qWait(2000);
    QCOMPARE(ride.cell(0, WatchModel::ValueColumn), QStringLiteral("39.300"));
}

void tst_WatchView::dialogRefusesNonsense()
{
    Ride ride;
    ride.connectToBus();
    AddValueDialog *dialog = ride.openDialog();
    auto *button = dialog->findChild<QPushButton *>(QStringLiteral("addValues"));
    auto *object = dialog->findChild<QLineEdit *>(QStringLiteral("askedObject"));
    object->setText(QStringLiteral("2:6040:1"));
    QVERIFY(button->isEnabled());
    object->setText(QStringLiteral("2:60x0:1"));
    QVERIFY(!button->isEnabled());
    QCOMPARE(object->toolTip(),
             QStringLiteral("Node (1 to 127), index (hexadecimal) and sub-index: 2:6040:1"));
}

void tst_WatchView::dataSheet()
{
    Ride ride;
    ride.connectToBus();
    ride.page().findChild<WatchView *>()->openSheet(QStringLiteral(VEHICLE_FOLDER "/ride-battery.dcf"), 2);
    ride.watch("2:6040:1");
    QCOMPARE(ride.cell(0, WatchModel::ValueColumn), QStringLiteral("39.300"));
    QCOMPARE(ride.sent(), 0);
    QVERIFY2(ride.told().startsWith(QStringLiteral("ride-battery.dcf tells the values of node 2; ")),
             qPrintable(ride.told()));
}

void tst_WatchView::dataSheetWithoutANode()
{
    QTemporaryDir folder;
    QFile dcf(QStringLiteral(VEHICLE_FOLDER "/ride-battery.dcf"));
    QVERIFY(dcf.open(QIODevice::ReadOnly));
    QByteArray text = dcf.readAll();
    text.replace("NodeID=", "NoNodeID=");
    QFile eds(folder.filePath(QStringLiteral("battery.eds")));
    QVERIFY(eds.open(QIODevice::WriteOnly));
    eds.write(text);
    eds.close();
    Ride ride;
    ride.connectToBus();
    ride.page().findChild<WatchView *>()->openSheet(eds.fileName());
    auto *dialog = ride.page().findChild<QInputDialog *>(QStringLiteral("sheetNodeDialog"));
    QVERIFY(dialog != nullptr);
    QCOMPARE(ride.told(), QString());
    dialog->setIntValue(2);
    dialog->accept();
    QVERIFY2(ride.told().startsWith(QStringLiteral("battery.eds tells the values of node 2; ")),
             qPrintable(ride.told()));
}

void tst_WatchView::brokenDataSheet()
{
    Ride ride;
    ride.connectToBus();
    ride.page().findChild<WatchView *>()->openSheet(QStringLiteral("/nowhere.eds"));
    QVERIFY2(ride.failed().startsWith(QStringLiteral("/nowhere.eds")), qPrintable(ride.failed()));
}

void tst_WatchView::dataSheetTellsTypes()
{
    QTemporaryDir folder;
    QFile dcf(QStringLiteral(VEHICLE_FOLDER "/ride-battery.dcf"));
    QVERIFY(dcf.open(QIODevice::ReadOnly));
    QByteArray text = dcf.readAll();
    text.replace(text.indexOf("DataType=0x0003", text.indexOf("[6042sub1]")), 15, "DataType=0x0006");
    text.replace("LowLimit=-400", "LowLimit=0");
    QFile sheet(folder.filePath(QStringLiteral("battery.dcf")));
    QVERIFY(sheet.open(QIODevice::WriteOnly));
    sheet.write(text);
    sheet.close();
    Simulator::VehicleDescription vehicle = SimulatedHost::stillVehicle(QStringLiteral("ride"));
    for (Simulator::NodeDescription &node : vehicle.nodes) {
        if (node.id == 2)
            QVERIFY(node.dictionary.setData({0x6042, 1}, QByteArray::fromHex("9CFF")));
    }
    Ride ride(vehicle);
    ride.connectToBus();
    ride.watch("2:6042:1", 500);
    ride.session().questions().setAsking(true);
    QTest::qWait(1000);
    QCOMPARE(ride.cell(0, WatchModel::ValueColumn), QStringLiteral("-10.0"));
    ride.page().findChild<WatchView *>()->openSheet(sheet.fileName(), 2);
    QCOMPARE(ride.failed(), QString());
    QTest::qWait(1000);
    QCOMPARE(ride.cell(0, WatchModel::ValueColumn),
             QStringLiteral("-10.0")); // a temperature has its sign all the same
    ride.host().services().bus().disconnectFromBus();
    ride.connectToBus();
    ride.session().questions().setAsking(true);
    QTest::qWait(1000);
    QCOMPARE(ride.cell(0, WatchModel::ValueColumn), QStringLiteral("-10.0")); // may be another vehicle
}

void tst_WatchView::savesHistories()
{
    QTemporaryDir folder;
    Ride ride;
    ride.connectToBus();
    ride.watch("2:6040:1");
    ride.watch("4:62E8:4");
    LiveValues &values = ride.session().live().values();
    values.note(2, {0x6040, 1}, 36000, 1000000); // was not watched in time: it was not there yet
    QTest::qWait(200);
    values.note(2, {0x6040, 1}, 36500, 1000000);
    values.note(4, {0x62E8, 4}, 500, 1500000);
    QTest::qWait(200);
    values.note(2, {0x6040, 1}, 37000, 2000000);
    values.note(4, {0x62E8, 4}, 600, 3000000);
    const QString name = folder.filePath(QStringLiteral("values.csv"));
    ride.page().findChild<WatchView *>()->write(name);
    QTRY_VERIFY(!ride.told().isEmpty());
    QFile file(name);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = file.readAll().split('\n');
    QCOMPARE(lines.size(), 5); // head, three points, what is behind the end
    QVERIFY2(lines.at(1).contains(",2,6040h.1,") && lines.at(1).contains(",36.5,V"), lines.at(1));
    QVERIFY2(lines.at(2).contains(",2,6040h.1,") && lines.at(2).contains(",37,V"), lines.at(2));
    QVERIFY2(lines.at(3).contains(",4,62E8h.4,"), lines.at(3));
}

void tst_WatchView::scanFindsSilentDevices()
{
    Simulator::VehicleDescription description = SimulatedHost::stillVehicle(QStringLiteral("ride"));
    for (Simulator::NodeDescription &node : description.nodes) {
        if (node.id == 7)
            node.heartbeatMs = quint16(0);
    }
    Ride ride(description);
    ride.connectToBus();
    ride.find<QAction>("lookForDevices")->trigger();
    QVERIFY(!ride.find<QAction>("lookForDevices")->isEnabled());
    QTRY_VERIFY_WITH_TIMEOUT(!ride.session().questions().isScanning(), 120000);
    QCOMPARE(ride.told(), QStringLiteral("These devices answer: node 1, 2, 4, 5, 7."));
    QVERIFY(ride.find<QAction>("lookForDevices")->isEnabled());
    ride.learn(); // the silent one too
    QVERIFY2(ride.told().startsWith(QStringLiteral("5 devices were asked")), qPrintable(ride.told()));
}

void tst_WatchView::scanGivesWay()
{
    Ride ride;
    ride.connectToBus();
    ride.find<QAction>("lookForDevices")->trigger();
    QTest::qWait(500);
    QVERIFY(ride.session().questions().isScanning());
    ride.session().questions().setCheckingUp(true);
    QVERIFY(!ride.session().questions().isScanning());
    QCOMPARE(ride.session().questions().obstacle(), QStringLiteral("A check-up is running."));
    QTest::qWait(100); // for the aborts
    const int sent = ride.sent();
    QTest::qWait(3000);
    QCOMPARE(ride.sent(), sent);
    ride.session().questions().scan(); // not now
    QVERIFY(!ride.session().questions().isScanning());
    ride.session().questions().setCheckingUp(false);
    QTest::qWait(500);
    QCOMPARE(ride.told(), QString());
    ride.find<QAction>("lookForDevices")->trigger();
    ride.host().services().bus().disconnectFromBus();
    QVERIFY(!ride.session().questions().isScanning());
}

void tst_WatchView::nextBusForgets()
{
    Ride ride;
    ride.connectToBus();
    ride.learn();
    ride.watch("2:6040:1");
    ride.host().services().bus().disconnectFromBus();
    QTest::qWait(500);
    QCOMPARE(ride.cell(0, WatchModel::ValueColumn), QStringLiteral("39.300")); // what was heard last stays
    QVERIFY(ride.isGrey(0));
    ride.connectToBus();
    QCOMPARE(ride.cell(0, WatchModel::ValueColumn), QStringLiteral("–"));
}

QTEST_MAIN(tst_WatchView)
#include "tst_watchview.moc"
