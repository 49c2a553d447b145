// SPDX-License-Identifier: MIT
#include "livehost.h"
#include "ride.h"

#include <host/core/settingsstore.h>
#include <host/pages/live/batteryinquiry.h>
#include <host/pages/live/batterypack.h>
#include <live/values/pdosource.h>
#include <simulator/fault.h>

#include <QAction>
#include <QInputDialog>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QSignalSpy>

#include <algorithm>

namespace {

using Dictionary = CanOpen::ObjectDictionary;

constexpr int countQuestions = 16; // a pack each
constexpr int otherQuestions = 5;
constexpr int valuesOfBattery = 10 + 5; // of the ride

Simulator::NodeDescription &nodeOf(Simulator::VehicleDescription &vehicle, quint8 nodeId)
{
    return *std::find_if(vehicle.nodes.begin(), vehicle.nodes.end(),
                         [nodeId](const Simulator::NodeDescription &node) { return node.id == nodeId; });
}

/*! The ride, whose battery has a fault. */
Simulator::VehicleDescription rideWith(const char *fault)
{
    Simulator::VehicleDescription vehicle = SimulatedHost::stillVehicle(QStringLiteral("ride"));
    QString error;
    const auto parsed = Simulator::parseFault(QJsonDocument::fromJson(fault).object(), &error);
    if (!parsed)
        qFatal("%s", qUtf8Printable(error));
    nodeOf(vehicle, 2).faults.append(*parsed);
    return vehicle;
}

/*! With a blank also where no line may end. */
QString textOf(const Ride &ride, const char *label)
{
    return ride.find<QLabel>(label)->text().replace(QChar::Nbsp, QLatin1Char(' '));
}

bool isShown(const Ride &ride, const char *part)
{
    return ride.find<QWidget>(part)->isVisible();
}

/*! Asks and waits until that has come. */
void ask(Ride &ride, quint8 nodeId)
{
    ride.session().questions().askBattery(nodeId);
    QTRY_VERIFY_WITH_TIMEOUT(!ride.session().questions().batteries().isAsking(), 60000);
    QTest::qWait(1000);
}

constexpr char cellsOfRide[] = "Cells: 3.926 V (cell 7) to 3.934 V (cell 4), spread 0.008 V";

} // namespace

/*! A battery whose cells are asked for. */
class tst_BatteryAsking : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { SettingsStore::instance().setValues({}); }

    void fromTheMenu();
    void nobodyIsHeard();
    void offerWaits();
    void isABatteryWhileItIsAsked();
    void onlyWhatHasCome();
    void batteryIsSuggested();
    void offeredWhereOneIsWatched();
    void offeredWhereOneIsKnown_data();
    void offeredWhereOneIsKnown();
    void onceAndThenAtItsPeriod();
    void besideTheWatchList();
    void nodeWithoutCells();
    void nodeThatDoesNotAnswer_data();
    void nodeThatDoesNotAnswer();
    void refusedCount();
    void refusedCountOfAnotherPack();
    void refusedTemperature();
    void refusedCell();
    void allCellsAreRefused();
    void cellsOfTheLastPackAlone();
    void anotherNodeMeanwhile();
    void lyingCounts();
    void answersWithoutASize();
    void valueThatIsNotThere();
    void switchedOff();
    void endsWithTheBus();
    void busThatGoesMeanwhile();
    void waitsForACheckup();
    void waitsForAScan();
    void keepsToItsShare();
};

void tst_BatteryAsking::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Draxel Project"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_batteryasking"));
}

void tst_BatteryAsking::fromTheMenu()
{
    Ride ride;
    auto *action = ride.find<QAction>("askABattery");
    QVERIFY(!action->isEnabled());
    ride.connectToBus();
    QVERIFY(action->isEnabled());
    QVERIFY(!isShown(ride, "batteryView"));
    action->trigger();
    auto *dialog = ride.page().findChild<QInputDialog *>(QStringLiteral("batteryNodeDialog"));
    QVERIFY(dialog != nullptr);
    QCOMPARE(dialog->comboBoxItems(),
             (QStringList{QStringLiteral("Node 1"), QStringLiteral("Node 2"), QStringLiteral("Node 4"),
                          QStringLiteral("Node 5"), QStringLiteral("Node 7")}));
    dialog->setTextValue(QStringLiteral("Node 2"));
    dialog->accept();
    QTest::qWait(1000);
    QCOMPARE(ride.told(), QStringLiteral("Battery of node 2: 10 cells are asked for, every 2 s."));
    QCOMPARE(ride.problems(), QStringList());
    QVERIFY(isShown(ride, "cellText"));
    QCOMPARE(textOf(ride, "cellText"), QLatin1String(cellsOfRide));
    QCOMPARE(textOf(ride, "batteryText"),
             QString::fromUtf8("84.00 % · 6.200 A · 39.300 V · 25.3 °C · 26.8 °C"));
    QCOMPARE(ride.rows(), 0); // the watch list is the user's
    QVERIFY(ride.areAllUploads());
    QVERIFY(isShown(ride, "askForValues"));
    QVERIFY(ride.find<QToolButton>("askForValues")->isChecked());
}

void tst_BatteryAsking::offerWaits()
{
    Ride ride;
    ride.watch("2:6164:2");
    ride.connectToBus();
    auto *button = ride.find<QToolButton>("askBattery");
    QCOMPARE(button->toolTip(), QString());
    QVERIFY(ride.find<QWidget>("batteryOffer")->rect().contains(button->geometry()));
    QVERIFY(!button->geometry().intersects(ride.find<QLabel>("batteryState")->geometry()));
    ride.session().questions().setCheckingUp(true);
    QTest::qWait(300);
    QVERIFY(button->isVisible());
    QVERIFY(!button->isEnabled());
    QCOMPARE(button->toolTip(), QStringLiteral("A check-up is running."));
    ride.session().questions().setCheckingUp(false);
    QTest::qWait(300);
    QVERIFY(button->isEnabled());
    QCOMPARE(button->toolTip(), QString());
}

void tst_BatteryAsking::isABatteryWhileItIsAsked()
{
    Ride ride;
    ride.connectToBus();
    const BatteryQuestions &batteries = ride.session().questions().batteries();
    QVERIFY(batteries.nodes().isEmpty());
    ride.session().questions().askBattery(4);
    QCOMPARE(batteries.nodes(), QVector<quint8>{4});
    ask(ride, 4);
    QVERIFY(batteries.nodes().isEmpty()); // it has no cells
    ask(ride, 2);
    QCOMPARE(batteries.nodes(), QVector<quint8>{2});
    ride.session().questions().askBattery(2);
    QCOMPARE(batteries.nodes(), QVector<quint8>{2});
}

/*! A value that a PDO is to carry is none before it has come. */
void tst_BatteryAsking::onlyWhatHasCome()
{
    Simulator::VehicleDescription vehicle = SimulatedHost::stillVehicle(QStringLiteral("ride"));
    LiveValues values;
    values.learn(PdoSource::of(2, nodeOf(vehicle, 2).dictionary));
    QVERIFY(values.find(2, {0x6040, 1}) == 0);
    QCOMPARE(BatteryPack::others(values, 2).size(), 0);
    values.note(2, {0x6040, 1}, 36000, 0);
    QCOMPARE(BatteryPack::others(values, 2).size(), 1);
}

void tst_BatteryAsking::nobodyIsHeard()
{
    LiveHost host;
    host.connectToBus();
    QSignalSpy told(&host.page(), &LivePage::told);
    host.find<QAction>("askABattery")->trigger();
    QVERIFY(host.page().findChild<QInputDialog *>() == nullptr);
    QCOMPARE(told.count(), 1);
    QCOMPARE(told.first().first().toString(), QStringLiteral("No device was heard yet."));
}

void tst_BatteryAsking::batteryIsSuggested()
{
    Ride ride;
    ride.connectToBus();
    ride.session().live().values().note(4, {0x6164, 2}, 8400, ride.session().now());
    ride.find<QAction>("askABattery")->trigger();
    auto *dialog = ride.page().findChild<QInputDialog *>(QStringLiteral("batteryNodeDialog"));
    QCOMPARE(dialog->comboBoxItems().at(2), QStringLiteral("Node 4, a battery"));
    QCOMPARE(dialog->textValue(), QStringLiteral("Node 4, a battery"));
    dialog->accept();
    QCOMPARE(int(ride.session().questions().batteries().state(4)), int(BatteryQuestions::State::BeingAsked));
}

void tst_BatteryAsking::offeredWhereOneIsWatched()
{
    Ride ride;
    ride.watch("2:6164:2");
    QVERIFY(!isShown(ride, "askBattery"));
    ride.connectToBus();
    auto *button = ride.find<QToolButton>("askBattery");
    QVERIFY(button->isVisible());
    QVERIFY(button->isEnabled());
    QCOMPARE(button->text(), QStringLiteral("Ask node 2 for its cells"));
    QVERIFY(!isShown(ride, "cellText"));
    QCOMPARE(ride.sent(), 0);
    button->click();
    QTest::qWait(20);
    ride.session().questions().setCheckingUp(true); // so that it takes its time
    QTest::qWait(500);
    QVERIFY(!button->isVisible());
    QCOMPARE(textOf(ride, "batteryState"), QStringLiteral("Node 2 is asked for its cells ..."));
    ride.session().questions().setCheckingUp(false);
    QTest::qWait(1000);
    QCOMPARE(textOf(ride, "cellText"), QLatin1String(cellsOfRide));
    QVERIFY(!button->isVisible());
    QVERIFY(!isShown(ride, "batteryOffer"));
    QCOMPARE(ride.rows(), 1);
}

void tst_BatteryAsking::offeredWhereOneIsKnown_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<bool>("isOffered");
    QTest::newRow("before the first") << 0x60FF << false;
    QTest::newRow("type of battery") << 0x6100 << true;
    QTest::newRow("the last one") << 0x61FF << true;
    QTest::newRow("behind it") << 0x6200 << false;
    QTest::newRow("voltage of whatever") << 0x6040 << false;
}

void tst_BatteryAsking::offeredWhereOneIsKnown()
{
    QFETCH(int, index);
    Ride ride;
    ride.connectToBus();
    ride.session().live().values().note(7, {quint16(index), 1}, 1, ride.session().now());
    QTest::qWait(300);
    QTEST(isShown(ride, "askBattery"), "isOffered");
}

void tst_BatteryAsking::onceAndThenAtItsPeriod()
{
    Ride ride;
    ride.connectToBus();
    ask(ride, 2);
    const int atFirst = countQuestions + otherQuestions + valuesOfBattery;
    QCOMPARE(ride.sent(), atFirst);
    QTest::qWait(10000);
    QCOMPARE(ride.sent(), atFirst + 5 * valuesOfBattery);
}

void tst_BatteryAsking::besideTheWatchList()
{
    Ride ride;
    ride.connectToBus();
    ride.watch("2:6040:1", 500); // of the battery, too
    ride.watch("4:6040:1", 1000);
    ask(ride, 2);
    const int before = ride.sent();
    QTest::qWait(10000);
    QCOMPARE(ride.sent() - before, 5 * (valuesOfBattery - 1) + 20 + 10);
    QCOMPARE(ride.cell(1, 1), QStringLiteral("39.200"));
}

void tst_BatteryAsking::nodeWithoutCells()
{
    Ride ride;
    ride.connectToBus();
    ask(ride, 4);
    QCOMPARE(ride.told(), QStringLiteral("Node 4 tells of no cells."));
    QCOMPARE(ride.problems(), QStringList());
    QCOMPARE(ride.sent(), countQuestions);
    QTest::qWait(5000);
    QCOMPARE(ride.sent(), countQuestions);
    QVERIFY(!ride.session().questions().isAsking());
    QVERIFY(!isShown(ride, "askForValues"));
    ride.watch("4:6164:2");
    QVERIFY(!isShown(ride, "askBattery")); // that is known
}

void tst_BatteryAsking::nodeThatDoesNotAnswer_data()
{
    QTest::addColumn<QByteArray>("fault");
    QTest::addColumn<QString>("problem");
    QTest::newRow("silent") << QByteArray(R"({"kind": "sdoSilent"})")
                            << QStringLiteral("Node 2, object 6165h.0: The device did not answer.");
    QTest::newRow("stopped") << QByteArray(R"({"kind": "stopped"})")
                             << QStringLiteral(
                                    "Node 2, object 6165h.0: The device is stopped and answers nothing.");
}

void tst_BatteryAsking::nodeThatDoesNotAnswer()
{
    QFETCH(QByteArray, fault);
    QFETCH(QString, problem);
    Ride ride(rideWith(fault.constData()));
    ride.watch("2:6164:2");
    ride.connectToBus();
    ask(ride, 2);
    QCOMPARE(ride.told(), QStringLiteral("It is not known whether node 2 has cells."));
    QCOMPARE(ride.problems(), QStringList{problem});
    QCOMPARE(ride.sentFor("656100"), ride.sent()); // its repeats; no other pack
    const int before = ride.sent();
    QTest::qWait(5000);
    QCOMPARE(ride.sent(), before);
    QVERIFY(isShown(ride, "askBattery")); // once more
}

void tst_BatteryAsking::refusedCount()
{
    Ride ride(rideWith(R"({"kind": "sdoAbort", "code": "0x08000000", "object": "6165sub0"})"));
    ride.connectToBus();
    ask(ride, 2);
    QCOMPARE(ride.told(), QStringLiteral("It is not known whether node 2 has cells."));
    QCOMPARE(ride.problems(),
             QStringList{QStringLiteral(
                 "Node 2, object 6165h.0: The device refused it: General error (0800 0000h).")});
}

void tst_BatteryAsking::refusedCountOfAnotherPack()
{
    Ride ride(rideWith(R"({"kind": "sdoAbort", "code": "0x08000000", "object": "6174sub0"})"));
    ride.connectToBus();
    ask(ride, 2);
    QCOMPARE(ride.told(), QStringLiteral("Battery of node 2: 10 cells are asked for, every 2 s."));
    QCOMPARE(ride.problems(),
             QStringList{QStringLiteral(
                 "Node 2, object 6174h.0: The device refused it: General error (0800 0000h).")});
}

void tst_BatteryAsking::refusedTemperature()
{
    Ride ride(rideWith(R"({"kind": "sdoAbort", "code": "0x08000000", "object": "6105sub1"})"));
    ride.connectToBus();
    ask(ride, 2);
    QCOMPARE(ride.told(), QStringLiteral("Battery of node 2: 10 cells are asked for, every 2 s."));
    QCOMPARE(ride.problems(),
             QStringList{QStringLiteral(
                 "Node 2, object 6105h.1: The device refused it: General error (0800 0000h).")});
}

void tst_BatteryAsking::refusedCell()
{
    Ride ride(rideWith(R"({"kind": "sdoAbort", "code": "0x06090011", "object": "6165sub7"})"));
    ride.connectToBus();
    ask(ride, 2);
    QCOMPARE(
        textOf(ride, "cellText"),
        QStringLiteral("Cells: 3.927 V (cell 2) to 3.934 V (cell 4), spread 0.007 V; 9 of 10 have answered"));
}

void tst_BatteryAsking::allCellsAreRefused()
{
    Simulator::VehicleDescription vehicle = SimulatedHost::stillVehicle(QStringLiteral("ride"));
    CanOpen::ObjectEntry count;
    count.type = CanOpen::DataType::Unsigned8;
    count.data = QByteArray(1, '\x03');
    nodeOf(vehicle, 4).dictionary.insert({0x6166, 0}, count);
    Ride ride(vehicle);
    ride.connectToBus();
    ask(ride, 4);
    QVERIFY(isShown(ride, "batteryState"));
    QCOMPARE(textOf(ride, "batteryState"), QStringLiteral("No cell of node 4 has answered yet."));
    QVERIFY(!isShown(ride, "cellText"));
}

void tst_BatteryAsking::cellsOfTheLastPackAlone()
{
    Simulator::VehicleDescription vehicle = SimulatedHost::stillVehicle(QStringLiteral("ride"));
    Dictionary &dictionary = nodeOf(vehicle, 2).dictionary;
    for (quint8 cell = 0; cell <= 10; ++cell) {
        dictionary.insert({0x6174, cell}, *dictionary.find({0x6165, cell}));
        dictionary.remove({0x6165, cell});
    }
    Ride ride(vehicle);
    ride.connectToBus();
    ask(ride, 2);
    QCOMPARE(ride.told(), QStringLiteral("Battery of node 2: 10 cells are asked for, every 2 s."));
    QCOMPARE(textOf(ride, "batteryText"), // it is asked what else it has
             QString::fromUtf8("84.00 % · 6.200 A · 39.300 V · 25.3 °C · 26.8 °C"));
}

void tst_BatteryAsking::anotherNodeMeanwhile()
{
    Ride ride;
    ride.connectToBus();
    BatteryInquiry inquiry(&ride.services().bus());
    QVector<BatteryAnswer> answers;
    connect(&inquiry, &BatteryInquiry::finished, this,
            [&answers](const BatteryAnswer &answer) { answers << answer; });
    inquiry.start(4);
    QTest::qWait(5); // some are answered
    inquiry.start(2);
    QTest::qWait(5000);
    QCOMPARE(answers.size(), 1); // nothing is told of the other one, and all of this one at once
    QCOMPARE(int(answers.first().nodeId), 2);
    QCOMPARE(answers.first().cells.size(), 10);
    QCOMPARE(answers.first().others.size(), otherQuestions);
    QVERIFY(ride.sent() > countQuestions + otherQuestions);
    QVERIFY(ride.sent() < 2 * countQuestions + otherQuestions);
}

void tst_BatteryAsking::lyingCounts()
{
    Simulator::VehicleDescription vehicle = SimulatedHost::stillVehicle(QStringLiteral("ride"));
    Dictionary &dictionary = nodeOf(vehicle, 2).dictionary;
    CanOpen::ObjectEntry count;
    count.type = CanOpen::DataType::Unsigned8;
    count.data = QByteArray(1, '\xFF');
    QVERIFY(dictionary.setData({0x6165, 0}, count.data));
    dictionary.insert({0x6166, 0}, count);
    Ride ride(vehicle);
    ride.connectToBus();
    ask(ride, 2);
    QCOMPARE(ride.told(), QStringLiteral("Battery of node 2: 256 cells are asked for, every 2 s."));
    QCOMPARE(ride.problems(),
             QStringList{QStringLiteral("Node 2 tells of 508 cells. Only the first 256 are asked for.")});
    QTest::qWait(3000);
    QVERIFY2(textOf(ride, "cellText").endsWith(QStringLiteral("; 10 of 254 have answered")),
             qPrintable(textOf(ride, "cellText")));
}

void tst_BatteryAsking::answersWithoutASize()
{
    Ride ride(rideWith(R"({"kind": "sizeBits", "sizeIndicated": 0, "unused": 0})"));
    ride.connectToBus();
    ask(ride, 2);
    QCOMPARE(textOf(ride, "cellText"), QLatin1String(cellsOfRide));
}

void tst_BatteryAsking::valueThatIsNotThere()
{
    Ride ride(rideWith(R"({"kind": "sdoAbort", "code": "0x06020000", "object": "6042sub1"})"));
    ride.connectToBus();
    ask(ride, 2);
    QCOMPARE(ride.problems(), QStringList());
    QCOMPARE(textOf(ride, "batteryText"), QString::fromUtf8("84.00 % · 6.200 A · 39.300 V · 25.3 °C"));
    const int before = ride.sent();
    QTest::qWait(10000);
    QCOMPARE(ride.sent(), before + 5 * (valuesOfBattery - 1));
}

void tst_BatteryAsking::switchedOff()
{
    Ride ride;
    ride.connectToBus();
    ask(ride, 2);
    auto *button = ride.find<QToolButton>("askForValues");
    button->click();
    const int before = ride.sent();
    QTest::qWait(20000);
    QCOMPARE(ride.sent(), before);
    QVERIFY(isShown(ride, "cellText")); // what was heard stays
    button->click();
    QTest::qWait(1000);
    QCOMPARE(ride.sent(), before + valuesOfBattery);
}

void tst_BatteryAsking::endsWithTheBus()
{
    Ride ride;
    ride.connectToBus();
    ask(ride, 2);
    ride.host().services().bus().disconnectFromBus();
    const int before = ride.sent();
    QTest::qWait(500);
    QVERIFY(!isShown(ride, "askForValues"));
    ride.connectToBus();
    QTest::qWait(10000);
    QCOMPARE(ride.sent(), before);
    QVERIFY(!isShown(ride, "batteryView"));
    ask(ride, 2);
    QCOMPARE(textOf(ride, "cellText"), QLatin1String(cellsOfRide));
}

void tst_BatteryAsking::busThatGoesMeanwhile()
{
    Ride ride;
    ride.connectToBus();
    ride.session().questions().askBattery(2);
    QVERIFY(!ride.session().questions().canAskBattery());
    ride.host().services().bus().disconnectFromBus();
    QVERIFY(!ride.session().questions().batteries().isAsking());
    ride.connectToBus();
    QVERIFY(ride.session().questions().canAskBattery());
    QTest::qWait(5000);
    QCOMPARE(ride.told(), QString());
    QVERIFY(!isShown(ride, "batteryView"));
    ride.session().questions().setAsking(true); // others need not wait for it
    ride.watch("2:6040:1", 500);
    QCOMPARE(ride.cell(0, 1), QStringLiteral("39.300"));
}

void tst_BatteryAsking::waitsForACheckup()
{
    Ride ride;
    ride.connectToBus();
    ride.session().questions().askBattery(2);
    ride.session().questions().setCheckingUp(true);
    QTest::qWait(5000);
    QCOMPARE(ride.sent(), 0);
    ride.session().questions().setCheckingUp(false);
    QTest::qWait(1000);
    QCOMPARE(textOf(ride, "cellText"), QLatin1String(cellsOfRide));
    ride.session().questions().setCheckingUp(true);
    QVERIFY(!ride.session().questions().canAskBattery());
    const int before = ride.sent();
    QTest::qWait(5000);
    QCOMPARE(ride.sent(), before);
    ride.session().questions().askBattery(4); // not now
    ride.session().questions().setCheckingUp(false);
    QTest::qWait(1000);
    QVERIFY(ride.sent() > before);
    QCOMPARE(ride.told(), QStringLiteral("Battery of node 2: 10 cells are asked for, every 2 s."));
}

void tst_BatteryAsking::waitsForAScan()
{
    Ride ride;
    ride.connectToBus();
    ride.session().questions().askBattery(2);
    ride.session().questions().scan();
    QVERIFY(!ride.session().questions().canAskBattery());
    QTRY_VERIFY_WITH_TIMEOUT(!ride.session().questions().isScanning(), 120000);
    QVERIFY2(ride.told().startsWith(QStringLiteral("These devices answer")), qPrintable(ride.told()));
    QTest::qWait(1000);
    QCOMPARE(ride.told(), QStringLiteral("Battery of node 2: 10 cells are asked for, every 2 s."));
}

void tst_BatteryAsking::keepsToItsShare()
{
    Ride ride;
    ride.session().questions().setSharePercent(1);
    ride.connectToBus();
    ride.session().questions().askBattery(2);
    QTest::qWait(10000);
    // 2500 bits a second, of which an exchange takes at least 222, and a few to begin with
    QVERIFY2(ride.sent() <= 10 * 2500 / 222 + 8, qPrintable(QString::number(ride.sent())));
    QVERIFY(ride.sent() > 50);
}

QTEST_MAIN(tst_BatteryAsking)
#include "tst_batteryasking.moc"
