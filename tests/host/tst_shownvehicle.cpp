// SPDX-License-Identifier: MIT
#include <host/core/shownvehicle.h>
#include <store/nodestore.h>

#include <QLocale>
#include <QSignalSpy>
#include <QtTest>

using Kind = ShownVehicle::Note::Kind;

namespace {

const QDateTime morning(QDate(2026, 9, 3), QTime(10, 12));

/*! A vehicle of nodes 1 and 4 that was read to its end on a connected bus. */
void read(ShownVehicle *vehicle, bool isComplete = true, int failed = 0)
{
    vehicle->setConnected(true);
    vehicle->beginRead();
    vehicle->handleValue(1, 0x1018, 4, 1104001u);
    vehicle->handleValue(4, 0x6000, 1, 7u);
    vehicle->endRead(isComplete, morning, failed);
}

} // namespace

/*! What the window says of the values that it shows. */
class tst_ShownVehicle : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }

    void nothingAtFirst();
    void titleNamesVehicleAndTime();
    void titleSaysThatItIsNotComplete();
    void titleWithoutASerialNumber();
    void titleDuringARead();
    void titleOfAFile();
    void unsavedUntilSaved();
    void readWithoutValuesShowsNothing();
    void completeReadNeedsNoNote();
    void readWithFailuresIsNotComplete();
    void notes_data();
    void notes();
    void newReadIsNotOld();
    void fileIsNotOfNow();
    void suggestsAFileName();
    void tellsChanges();
};

void tst_ShownVehicle::nothingAtFirst()
{
    const ShownVehicle vehicle;
    QCOMPARE(vehicle.title(), QString());
    QCOMPARE(vehicle.note().kind, Kind::None);
    QVERIFY(!vehicle.isUnsaved());
}

void tst_ShownVehicle::titleNamesVehicleAndTime()
{
    ShownVehicle vehicle;
    read(&vehicle);
    QCOMPARE(vehicle.title(), QStringLiteral("Vehicle 1104001, read on 3 Sep 2026 10:12:00"));
    vehicle.noteSaved(QStringLiteral("/home/x/bike.dxxml"));
    QCOMPARE(vehicle.title(), QStringLiteral("bike.dxxml (Vehicle 1104001, read on 3 Sep 2026 10:12:00)"));
}

void tst_ShownVehicle::titleSaysThatItIsNotComplete()
{
    ShownVehicle vehicle;
    read(&vehicle, false);
    QCOMPARE(vehicle.title(), QStringLiteral("Vehicle 1104001, read on 3 Sep 2026 10:12:00, not complete"));
}

void tst_ShownVehicle::titleWithoutASerialNumber()
{
    ShownVehicle vehicle;
    vehicle.beginRead();
    vehicle.handleValue(4, 0x1018, 4, 77u); // not the controller's
    vehicle.handleValue(1, 0x1018, 3, 78u); // not the serial number
    vehicle.endRead(true, morning);
    QCOMPARE(vehicle.title(), QStringLiteral("Vehicle without a serial number, read on 3 Sep 2026 10:12:00"));
}

void tst_ShownVehicle::titleDuringARead()
{
    ShownVehicle vehicle;
    vehicle.beginRead();
    QCOMPARE(vehicle.title(), QString());
    vehicle.handleValue(1, 0x1018, 4, 1104001u);
    QCOMPARE(vehicle.title(), QStringLiteral("Vehicle 1104001, is being read"));
}

void tst_ShownVehicle::titleOfAFile()
{
    ShownVehicle vehicle;
    NodeStore store;
    store.appendNode(1);
    store.setValue(1, 0x1000, 0, 5);
    vehicle.showFile(QStringLiteral("/home/x/bike.dxxml"), store, QDateTime());
    QCOMPARE(vehicle.title(), QStringLiteral("bike.dxxml"));
    store.setValue(1, 0x1018, 4, qlonglong(1104001));
    vehicle.showFile(QStringLiteral("/home/x/bike.dxxml"), store, morning);
    QCOMPARE(vehicle.title(), QStringLiteral("bike.dxxml (Vehicle 1104001)"));
}

void tst_ShownVehicle::unsavedUntilSaved()
{
    ShownVehicle vehicle;
    vehicle.beginRead();
    QVERIFY(!vehicle.isUnsaved()); // nothing to lose yet
    vehicle.handleValue(1, 0x1000, 0, 5u);
    QVERIFY(vehicle.isUnsaved());
    vehicle.endRead(false, morning);
    QVERIFY(vehicle.isUnsaved());
    vehicle.noteSaved(QStringLiteral("/x.dxxml"));
    QVERIFY(!vehicle.isUnsaved());
    vehicle.handleValue(1, 0x1000, 0, 6u);
    QVERIFY(vehicle.isUnsaved());
    vehicle.showFile(QStringLiteral("/y.dxxml"), NodeStore(), QDateTime());
    QVERIFY(!vehicle.isUnsaved());
}

void tst_ShownVehicle::readWithoutValuesShowsNothing()
{
    ShownVehicle vehicle;
    read(&vehicle);
    vehicle.beginRead();
    vehicle.endRead(false, morning);
    QCOMPARE(vehicle.title(), QString());
    QCOMPARE(vehicle.note().kind, Kind::None);
}

void tst_ShownVehicle::completeReadNeedsNoNote()
{
    ShownVehicle vehicle;
    read(&vehicle);
    QCOMPARE(vehicle.note().kind, Kind::None);
    QCOMPARE(vehicle.note().sentence, QString());
}

void tst_ShownVehicle::readWithFailuresIsNotComplete()
{
    ShownVehicle vehicle;
    read(&vehicle, true, 3);
    QCOMPARE(vehicle.title(), QStringLiteral("Vehicle 1104001, read on 3 Sep 2026 10:12:00, not complete"));
    QCOMPARE(vehicle.note().kind, Kind::Warning);
    QCOMPARE(vehicle.note().sentence,
             QStringLiteral("Not complete: 3 value(s) could not be read on 3 Sep 2026 10:12:00. The messages "
                            "name them."));
    read(&vehicle);
    QCOMPARE(vehicle.note().kind, Kind::None);
}

void tst_ShownVehicle::notes_data()
{
    QTest::addColumn<bool>("isComplete");
    QTest::addColumn<QString>("event");
    QTest::addColumn<QString>("sentence");

    QTest::newRow("ended early") << false << QString()
                                 << "Not complete: the read of 3 Sep 2026 10:12:00 ended early. What is "
                                    "missing was not read.";
    QTest::newRow("node silent") << true << "silent"
                                 << "Old values, read on 3 Sep 2026 10:12:00: no longer heard is node 1, 4.";
    QTest::newRow("other node silent") << true << "other silent"
                                       << "";
    QTest::newRow("disconnected") << true << "disconnected"
                                  << "Old values, read on 3 Sep 2026 10:12:00: the bus is not connected now.";
    QTest::newRow("connected again") << true << "again"
                                     << "Old values, read on 3 Sep 2026 10:12:00: the bus was disconnected "
                                        "since. Read again (F5).";
}

void tst_ShownVehicle::notes()
{
    QFETCH(bool, isComplete);
    QFETCH(QString, event);
    QFETCH(QString, sentence);
    ShownVehicle vehicle;
    read(&vehicle, isComplete);
    if (event == QLatin1String("silent"))
        vehicle.setSilentNodes({4, 1, 9});
    if (event == QLatin1String("other silent"))
        vehicle.setSilentNodes({9});
    if (event == QLatin1String("disconnected") || event == QLatin1String("again"))
        vehicle.setConnected(false);
    if (event == QLatin1String("again"))
        vehicle.setConnected(true);
    QCOMPARE(vehicle.note().sentence, sentence);
    QCOMPARE(vehicle.note().kind, sentence.isEmpty() ? Kind::None : Kind::Warning);
}

void tst_ShownVehicle::newReadIsNotOld()
{
    ShownVehicle vehicle;
    read(&vehicle);
    vehicle.setConnected(false);
    vehicle.setConnected(true);
    vehicle.setSilentNodes({4});
    read(&vehicle);
    QCOMPARE(vehicle.note().sentence, QString());
}

void tst_ShownVehicle::fileIsNotOfNow()
{
    ShownVehicle vehicle;
    vehicle.showFile(QStringLiteral("/x.dxxml"), NodeStore(), QDateTime());
    QCOMPARE(vehicle.note().kind, Kind::Information);
    QCOMPARE(vehicle.note().sentence, QStringLiteral("Values from a file, not of now."));
    vehicle.showFile(QStringLiteral("/x.dxxml"), NodeStore(), morning);
    QCOMPARE(vehicle.note().sentence,
             QStringLiteral("Values from a file, not of now: it was saved on 3 Sep 2026 10:12:00."));
}

void tst_ShownVehicle::suggestsAFileName()
{
    ShownVehicle vehicle;
    read(&vehicle);
    QCOMPARE(vehicle.suggestedFileName(), QStringLiteral("1104001 2026-09-03 10-12.dxxml"));
    vehicle.beginRead();
    vehicle.handleValue(1, 0x1000, 0, 5u);
    vehicle.endRead(true, morning);
    QCOMPARE(vehicle.suggestedFileName(), QStringLiteral("vehicle 2026-09-03 10-12.dxxml"));
}

void tst_ShownVehicle::tellsChanges()
{
    ShownVehicle vehicle;
    QSignalSpy changes(&vehicle, &ShownVehicle::changed);
    read(&vehicle);
    const int afterRead = changes.size();
    QVERIFY(afterRead > 0);
    vehicle.setConnected(true); // as before
    vehicle.setSilentNodes({});
    QCOMPARE(changes.size(), afterRead);
    vehicle.setSilentNodes({4});
    QCOMPARE(changes.size(), afterRead + 1);
    vehicle.setConnected(false);
    QCOMPARE(changes.size(), afterRead + 2);
}

QTEST_GUILESS_MAIN(tst_ShownVehicle)
#include "tst_shownvehicle.moc"
