// SPDX-License-Identifier: MIT
#include "archiveplaces.h"
#include "vehicles.h"

#include <archive/archive.h>
#include <snapshot/snapshotfile.h>

#include <QtTest>

using namespace Vehicles;

namespace {

constexpr CanOpen::ObjectKey stateOfHealth{0x6127, 1};

/*! The bike with a value of its battery at a day. */
Snapshot bikeAt(quint32 n, int day, quint32 health)
{
    Snapshot result = snapshot(bike(n), time(day));
    result.nodes[1].insert(number(stateOfHealth.index, stateOfHealth.subIndex, health));
    return result;
}

QVector<qint64> idsOf(const std::optional<QVector<VisitInfo>> &visits)
{
    QVector<qint64> ids;
    for (const VisitInfo &visit : visits.value_or(QVector<VisitInfo>()))
        ids.append(visit.id);
    return ids;
}

VisitQuery byText(const QString &text)
{
    VisitQuery query;
    query.text = text;
    return query;
}

} // namespace

/*! The archive on a file and on a server. */
class tst_Archive : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_places.start(); }

    void isEmptyAtFirst_data() { ArchivePlaces::addRows(); }
    void isEmptyAtFirst();
    void givesTheVerySnapshotBack_data() { ArchivePlaces::addRows(); }
    void givesTheVerySnapshotBack();
    void knowsTheVisit_data() { ArchivePlaces::addRows(); }
    void knowsTheVisit();
    void keepsTheSameSnapshotOnce_data() { ArchivePlaces::addRows(); }
    void keepsTheSameSnapshotOnce();
    void verdictThatIsThereStays_data() { ArchivePlaces::addRows(); }
    void verdictThatIsThereStays();
    void snapshotWithoutTimeIsFiledUnderNow_data() { ArchivePlaces::addRows(); }
    void snapshotWithoutTimeIsFiledUnderNow();
    void isThereAgain_data() { ArchivePlaces::addRows(); }
    void isThereAgain();
    void listsTheNewestFirst_data() { ArchivePlaces::addRows(); }
    void listsTheNewestFirst();
    void finds_data();
    void finds();
    void findsTheVehiclesOfABattery_data() { ArchivePlaces::addRows(); }
    void findsTheVehiclesOfABattery();
    void knowsTheVisitBefore_data() { ArchivePlaces::addRows(); }
    void knowsTheVisitBefore();
    void followsAValue_data() { ArchivePlaces::addRows(); }
    void followsAValue();
    void batterySwapMakesNoNewVehicle_data() { ArchivePlaces::addRows(); }
    void batterySwapMakesNoNewVehicle();
    void newControllerMakesNoNewVehicle_data() { ArchivePlaces::addRows(); }
    void newControllerMakesNoNewVehicle();
    void notesChangeAndTheSnapshotDoesNot_data() { ArchivePlaces::addRows(); }
    void notesChangeAndTheSnapshotDoesNot();
    void vehicleIsNamed_data() { ArchivePlaces::addRows(); }
    void vehicleIsNamed();
    void firstNameThatIsGivenCounts_data() { ArchivePlaces::addRows(); }
    void firstNameThatIsGivenCounts();
    void vehiclesAreMerged_data() { ArchivePlaces::addRows(); }
    void vehiclesAreMerged();
    void visitIsMoved_data() { ArchivePlaces::addRows(); }
    void visitIsMoved();
    void deletesAVisit_data() { ArchivePlaces::addRows(); }
    void deletesAVisit();
    void numbersAreNotGivenAgain_data() { ArchivePlaces::addRows(); }
    void numbersAreNotGivenAgain();
    void saysWhatIsNotThere_data() { ArchivePlaces::addRows(); }
    void saysWhatIsNotThere();
    void takesAnyText_data() { ArchivePlaces::addRows(); }
    void takesAnyText();

private:
    ArchivePlaces m_places;
    QString m_error;
};

void tst_Archive::isEmptyAtFirst()
{
    OpenArchive archive(m_places.make());
    QCOMPARE(idsOf(archive.visits({}, &m_error)), QVector<qint64>());
    const auto vehicles = archive.vehicles(QString(), &m_error);
    QVERIFY(vehicles);
    QCOMPARE(vehicles->size(), 0);
}

void tst_Archive::givesTheVerySnapshotBack()
{
    Snapshot added = snapshot(bike(1));
    added.adapter = QStringLiteral("Adapter");
    added.bitRate = 250000;
    added.notes.vehicle = QStringLiteral("Cargo bike \u00e4");
    SnapshotNode &node = added.nodes[2];
    node.nmtState = CanOpen::NmtState::Stopped;
    node.end = SnapshotEnd::Silent;
    node.medianAnswer = 5;
    node.longestAnswer = 80;
    node.bootUps = 2;
    node.insert(text(0x1008, 0, "DX-Motor"));
    node.insert(gap(0x6040, 1, SnapshotGap::Absent, 0x06020000));
    node.insert(gap(0x6041, 1, SnapshotGap::NoAnswer));
    node.insert(number(0x6042, 1, 0xFFFFFFFF, 99));

    OpenArchive archive(m_places.make());
    const auto kept = archive.add(added, std::nullopt, &m_error);
    QVERIFY2(kept, qPrintable(m_error));
    const auto loaded = archive.load(kept->visitId, &m_error);
    QVERIFY2(loaded, qPrintable(m_error));
    QCOMPARE(SnapshotFile::toJson(*loaded), SnapshotFile::toJson(added));
}

void tst_Archive::knowsTheVisit()
{
    Snapshot added = snapshot(bike(1));
    added.notes.customer = QStringLiteral("M\u00fcller");
    added.nodes[3].insert(gap(0x6041, 1, SnapshotGap::NoAnswer));
    VisitVerdict verdict;
    verdict.verdict = Verdict::Fault;
    verdict.faults = 2;
    verdict.warnings = 1;
    verdict.notes = 3;
    verdict.notChecked = 4;

    OpenArchive archive(m_places.make());
    const auto kept = archive.add(added, verdict, &m_error);
    QVERIFY2(kept, qPrintable(m_error));
    const auto visit = archive.visit(kept->visitId, &m_error);
    QVERIFY2(visit, qPrintable(m_error));
    QCOMPARE(visit->id, kept->visitId);
    QCOMPARE(visit->vehicleId, kept->vehicleId);
    QCOMPARE(visit->vehicle, QStringLiteral("1001"));
    QCOMPARE(visit->time.toString(Qt::ISODate), QStringLiteral("2026-09-03T10:12:00+02:00"));
    QCOMPARE(visit->bus, QStringLiteral("socketcan:can0"));
    QCOMPARE(visit->program, QStringLiteral("draxelctl 1.0.0"));
    QCOMPARE(visit->scope, SnapshotScope::Full);
    QVERIFY(!visit->isComplete);
    QCOMPARE(visit->valueCount, 30);
    QCOMPARE(visit->gapCount, 1);
    QCOMPARE(visit->fingerprint, SnapshotFile::fingerprint(added));
    QCOMPARE(visit->notes.customer, QStringLiteral("M\u00fcller"));
    QVERIFY(visit->verdict);
    QCOMPARE(visit->verdict->verdict, Verdict::Fault);
    QCOMPARE(visit->verdict->faults, 2);
    QCOMPARE(visit->verdict->warnings, 1);
    QCOMPARE(visit->verdict->notes, 3);
    QCOMPARE(visit->verdict->notChecked, 4);
    QCOMPARE(visit->components.size(), 5);
    QCOMPARE(visit->components.at(1).nodeId, quint8(2));
    QCOMPARE(visit->components.at(1).deviceKey(), QStringLiteral("0000fffe-00454606-2001"));
    QCOMPARE(visit->components.at(1).name(), QStringLiteral("Battery Pack"));
    QCOMPARE(visit->components.at(1).identity.revision.value_or(0), quint32(0x00010002));
}

void tst_Archive::keepsTheSameSnapshotOnce()
{
    OpenArchive archive(m_places.make());
    const auto first = archive.add(snapshot(bike(1)), std::nullopt, &m_error);
    VisitVerdict verdict;
    verdict.verdict = Verdict::Ok;
    const auto second = archive.add(snapshot(bike(1)), verdict, &m_error);
    QVERIFY(first && second);
    QVERIFY(first->isNew);
    QVERIFY(!second->isNew);
    QCOMPARE(second->visitId, first->visitId);
    QCOMPARE(second->vehicleId, first->vehicleId);
    const auto visits = archive.visits({}, &m_error);
    QCOMPARE(idsOf(visits), QVector<qint64>{first->visitId});
    QVERIFY(visits->first().verdict); // which was judged meanwhile
    QCOMPARE(visits->first().verdict->verdict, Verdict::Ok);
}

/*! A backup that is read in again must not bring back what was judged before. */
void tst_Archive::verdictThatIsThereStays()
{
    OpenArchive archive(m_places.make());
    VisitVerdict newer;
    newer.verdict = Verdict::Ok;
    VisitVerdict older;
    older.verdict = Verdict::Fault;
    older.faults = 2;
    const auto first = archive.add(snapshot(bike(1)), newer, &m_error);
    const auto second = archive.add(snapshot(bike(1)), older, &m_error);
    QVERIFY2(first && second, qPrintable(m_error));
    QVERIFY(!second->isNew);
    const auto visit = archive.visit(first->visitId, &m_error);
    QVERIFY(visit->verdict);
    QCOMPARE(visit->verdict->verdict, Verdict::Ok);
    QCOMPARE(visit->verdict->faults, 0);
    QVERIFY(archive.setVerdict(first->visitId, older, &m_error));
    QCOMPARE(archive.visit(first->visitId, &m_error)->verdict->verdict, Verdict::Fault);
}

void tst_Archive::snapshotWithoutTimeIsFiledUnderNow()
{
    OpenArchive archive(m_places.make());
    const Snapshot added = snapshot(bike(1), QDateTime());
    const auto kept = archive.add(added, std::nullopt, &m_error, time(4));
    QVERIFY2(kept, qPrintable(m_error));
    QCOMPARE(archive.visit(kept->visitId, &m_error)->time, time(4));
    QCOMPARE(SnapshotFile::toJson(*archive.load(kept->visitId, &m_error)), SnapshotFile::toJson(added));
}

void tst_Archive::isThereAgain()
{
    const QString address = m_places.make();
    qint64 id = 0;
    {
        OpenArchive archive(address);
        id = archive.add(snapshot(bike(1)), std::nullopt, &m_error)->visitId;
    }
    OpenArchive archive(address);
    QCOMPARE(idsOf(archive.visits({}, &m_error)), QVector<qint64>{id});
}

void tst_Archive::listsTheNewestFirst()
{
    OpenArchive archive(m_places.make());
    const qint64 second = archive.add(bikeAt(1, 1, 98), std::nullopt, &m_error)->visitId;
    const qint64 first = archive.add(bikeAt(1, 0, 99), std::nullopt, &m_error)->visitId;
    const qint64 third = archive.add(bikeAt(1, 2, 97), std::nullopt, &m_error)->visitId;
    QCOMPARE(idsOf(archive.visits({}, &m_error)), (QVector<qint64>{third, second, first}));

    VisitQuery page;
    page.limit = 1;
    page.offset = 1;
    QCOMPARE(idsOf(archive.visits(page, &m_error)), QVector<qint64>{second});

    VisitQuery period;
    period.from = time(1);
    period.to = time(1);
    QCOMPARE(idsOf(archive.visits(period, &m_error)), QVector<qint64>{second});

    const auto vehicles = archive.vehicles(QString(), &m_error);
    QCOMPARE(vehicles->size(), 1);
    QCOMPARE(vehicles->first().visitCount, 3);
    QCOMPARE(vehicles->first().lastVisit, third);
    QCOMPARE(vehicles->first().lastTime, time(2));
    QCOMPARE(vehicles->first().called, QStringLiteral("1001"));
}

void tst_Archive::finds_data()
{
    QTest::addColumn<bool>("isServer");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("bike"); // 0: none
    for (const bool isServer : {false, true}) {
        if (isServer && !PostgresServer::isInstalled())
            continue;
        const auto row = [isServer](const char *name, const QString &text, int bike) {
            QTest::newRow(qPrintable(QLatin1String(isServer ? "server: " : "file: ") + QLatin1String(name)))
                << isServer << text << bike;
        };
        row("serial number of the battery", QStringLiteral("2002"), 2);
        row("its key", QStringLiteral("0000fffe-00454606-2001"), 1);
        row("customer", QStringLiteral("m\u00fcller"), 1);
        row("other capitals", QStringLiteral("M\u00dcLLER"), 1);
        row("note", QStringLiteral("squeaks"), 2);
        row("two words in two places", QStringLiteral("jansen squeaks"), 2);
        row("two words of two visits", QStringLiteral("m\u00fcller squeaks"), 0);
        row("name of the vehicle", QStringLiteral("cargo"), 1);
        row("day", QStringLiteral("2026-09-04"), 2);
        row("device name", QStringLiteral("dx-ride"), 2);
        row("a percent sign stands for itself", QStringLiteral("100%"), 2);
        row("no pattern", QStringLiteral("%"), 2);
        row("an underscore stands for itself", QStringLiteral("_"), 0);
        row("an exclamation mark stands for itself", QStringLiteral("!"), 0);
        row("a quote", QStringLiteral("o'neill"), 2);
        row("nothing such", QStringLiteral("unicycle"), 0);
    }
}

void tst_Archive::finds()
{
    QFETCH(QString, text);
    QFETCH(int, bike);
    Snapshot one = snapshot(Vehicles::bike(1), time(0));
    one.notes.vehicle = QStringLiteral("Cargo bike 7");
    one.notes.customer = QStringLiteral("M\u00fcller");
    Snapshot two = snapshot(Vehicles::bike(2), time(1));
    two.notes.customer = QStringLiteral("Jansen");
    two.notes.technician = QStringLiteral("O'Neill");
    two.notes.note = QStringLiteral("Squeaks, charged to 100%");
    two.nodes[2].insert(Vehicles::text(0x1008, 0, "DX-Ride"));

    OpenArchive archive(m_places.make());
    const QVector<qint64> ids{archive.add(one, std::nullopt, &m_error)->visitId,
                              archive.add(two, std::nullopt, &m_error)->visitId};
    QCOMPARE(idsOf(archive.visits(byText(text), &m_error)),
             bike == 0 ? QVector<qint64>() : QVector<qint64>{ids.at(bike - 1)});
    QCOMPARE(archive.vehicles(text, &m_error)->size(), bike == 0 ? 0 : 1);
}

void tst_Archive::findsTheVehiclesOfABattery()
{
    QVector<SnapshotNode> borrowed = bike(2);
    borrowed[1] = device(2, batteryClass, 2001);
    OpenArchive archive(m_places.make());
    archive.add(snapshot(bike(1), time(0)), std::nullopt, &m_error);
    archive.add(snapshot(bike(2), time(1)), std::nullopt, &m_error);
    archive.add(snapshot(borrowed, time(2)), std::nullopt, &m_error);

    VisitQuery query;
    query.deviceKey = key(batteryClass, 2001);
    const auto visits = archive.visits(query, &m_error);
    QCOMPARE(visits->size(), 2);
    QCOMPARE(visits->at(0).vehicle, QStringLiteral("1002"));
    QCOMPARE(visits->at(1).vehicle, QStringLiteral("1001"));
}

void tst_Archive::knowsTheVisitBefore()
{
    OpenArchive archive(m_places.make());
    const qint64 first = archive.add(bikeAt(1, 0, 99), std::nullopt, &m_error)->visitId;
    archive.add(bikeAt(2, 1, 99), std::nullopt, &m_error);
    const qint64 second = archive.add(bikeAt(1, 2, 97), std::nullopt, &m_error)->visitId;
    QCOMPARE(archive.previousVisit(second, &m_error).value_or(-1), first);
    QCOMPARE(archive.previousVisit(first, &m_error).value_or(-1), qint64(0));
}

void tst_Archive::followsAValue()
{
    OpenArchive archive(m_places.make());
    const auto first = archive.add(bikeAt(1, 0, 99), std::nullopt, &m_error);
    archive.add(bikeAt(2, 1, 50), std::nullopt, &m_error);
    archive.add(snapshot(bike(1), time(2)), std::nullopt, &m_error); // without the value
    Snapshot later = bikeAt(1, 3, 97);
    later.nodes[1].id = 2;
    archive.add(later, std::nullopt, &m_error);

    const auto trend = archive.vehicleTrend(first->vehicleId, stateOfHealth, &m_error);
    QVERIFY2(trend, qPrintable(m_error));
    QCOMPARE(trend->problems, QStringList());
    const QVector<TrendPoint> points = trend->points;
    QCOMPARE(points.size(), 2);
    QCOMPARE(points.at(0).value.toInt(), 99);
    QCOMPARE(points.at(0).time, time(0));
    QCOMPARE(points.at(0).visitId, first->visitId);
    QCOMPARE(points.at(0).nodeId, quint8(2));
    QCOMPARE(points.at(0).identity.toKey(), key(batteryClass, 2001));
    QCOMPARE(points.at(1).value.toInt(), 97);

    const auto device = archive.deviceTrend(key(batteryClass, 2002), stateOfHealth, &m_error);
    QVERIFY2(device, qPrintable(m_error));
    QCOMPARE(device->points.size(), 1);
    QCOMPARE(device->points.first().value.toInt(), 50);
}

void tst_Archive::batterySwapMakesNoNewVehicle()
{
    QVector<SnapshotNode> one = bike(1);
    QVector<SnapshotNode> two = bike(2);
    OpenArchive archive(m_places.make());
    const qint64 first = archive.add(snapshot(one), std::nullopt, &m_error)->vehicleId;
    const qint64 second = archive.add(snapshot(two), std::nullopt, &m_error)->vehicleId;
    QVERIFY(first != second);
    std::swap(one[1], two[1]);
    QCOMPARE(archive.add(snapshot(one, time(1)), std::nullopt, &m_error)->vehicleId, first);
    QCOMPARE(archive.add(snapshot(two, time(1)), std::nullopt, &m_error)->vehicleId, second);
    QCOMPARE(archive.vehicles(QString(), &m_error)->size(), 2);
}

void tst_Archive::newControllerMakesNoNewVehicle()
{
    OpenArchive archive(m_places.make());
    const qint64 vehicle = archive.add(snapshot(bike(1)), std::nullopt, &m_error)->vehicleId;
    QVector<SnapshotNode> repaired = bike(1);
    repaired[0] = device(1, controllerClass, 9000);
    QCOMPARE(archive.add(snapshot(repaired, time(1)), std::nullopt, &m_error)->vehicleId, vehicle);
    // From now on it is known by its new controller.
    QCOMPARE(archive.add(snapshot({repaired[0]}, time(2)), std::nullopt, &m_error)->vehicleId, vehicle);
}

void tst_Archive::notesChangeAndTheSnapshotDoesNot()
{
    const Snapshot added = snapshot(bike(1));
    OpenArchive archive(m_places.make());
    const qint64 id = archive.add(added, std::nullopt, &m_error)->visitId;
    SnapshotNotes notes;
    notes.customer = QStringLiteral("Jansen");
    notes.note = QStringLiteral("New tyres");
    QVERIFY2(archive.setNotes(id, notes, &m_error), qPrintable(m_error));
    QCOMPARE(archive.visit(id, &m_error)->notes.customer, QStringLiteral("Jansen"));
    QCOMPARE(archive.visit(id, &m_error)->notes.note, QStringLiteral("New tyres"));
    QCOMPARE(idsOf(archive.visits(byText(QStringLiteral("tyres")), &m_error)), QVector<qint64>{id});
    QCOMPARE(SnapshotFile::toJson(*archive.load(id, &m_error)), SnapshotFile::toJson(added));
    Snapshot shown = added;
    shown.notes = notes;
    QCOMPARE(SnapshotFile::toJson(*archive.loadWithNotes(id, &m_error)), SnapshotFile::toJson(shown));
    QVERIFY(!archive.loadWithNotes(id + 1, &m_error));
    QVERIFY(!m_error.isEmpty());
}

void tst_Archive::vehicleIsNamed()
{
    OpenArchive archive(m_places.make());
    const auto kept = archive.add(snapshot(bike(1)), std::nullopt, &m_error);
    QVERIFY2(archive.renameVehicle(kept->vehicleId, QStringLiteral("Cargo bike 7"), &m_error),
             qPrintable(m_error));
    QCOMPARE(archive.visit(kept->visitId, &m_error)->vehicle, QStringLiteral("Cargo bike 7"));
    QCOMPARE(archive.vehicles(QStringLiteral("cargo"), &m_error)->size(), 1);
    // What a technician writes later is no new name.
    Snapshot later = snapshot(bike(1), time(1));
    later.notes.vehicle = QStringLiteral("the red one");
    archive.add(later, std::nullopt, &m_error);
    QCOMPARE(archive.vehicles(QString(), &m_error)->first().name, QStringLiteral("Cargo bike 7"));
    QVERIFY(archive.renameVehicle(kept->vehicleId, QString(), &m_error));
    QCOMPARE(archive.visit(kept->visitId, &m_error)->vehicle, QStringLiteral("1001"));
}

void tst_Archive::firstNameThatIsGivenCounts()
{
    OpenArchive archive(m_places.make());
    const auto kept = archive.add(snapshot(bike(1)), std::nullopt, &m_error);
    Snapshot named = snapshot(bike(1), time(1));
    named.notes.vehicle = QStringLiteral("Cargo bike 7");
    archive.add(named, std::nullopt, &m_error);
    QCOMPARE(archive.visit(kept->visitId, &m_error)->vehicle, QStringLiteral("Cargo bike 7"));

    VisitExtras extras;
    extras.vehicleName = QStringLiteral("Trike");
    Snapshot other = snapshot(bike(2));
    other.notes.vehicle = QStringLiteral("the red one");
    QVERIFY(
        archive.renameVehicle(archive.add(other, std::nullopt, &m_error)->vehicleId, QString(), &m_error));
    other.time = time(1);
    const auto again = archive.add(other, extras, &m_error);
    QCOMPARE(archive.visit(again->visitId, &m_error)->vehicle, QStringLiteral("Trike"));
}

void tst_Archive::vehiclesAreMerged()
{
    OpenArchive archive(m_places.make());
    const qint64 first = archive.add(snapshot(bike(1), time(0)), std::nullopt, &m_error)->vehicleId;
    const qint64 second = archive.add(snapshot(bike(2), time(1)), std::nullopt, &m_error)->vehicleId;
    QVERIFY2(archive.mergeVehicle(first, second, &m_error), qPrintable(m_error));
    const auto vehicles = archive.vehicles(QString(), &m_error);
    QCOMPARE(vehicles->size(), 1);
    QCOMPARE(vehicles->first().id, second);
    QCOMPARE(vehicles->first().visitCount, 2);
    QVERIFY(!archive.mergeVehicle(first, second, &m_error));
    QCOMPARE(m_error, QStringLiteral("The archive has no vehicle %1.").arg(first));
    QVERIFY(archive.mergeVehicle(second, second, &m_error));
    QCOMPARE(archive.vehicles(QString(), &m_error)->size(), 1);
    QVERIFY(!archive.mergeVehicle(second, 99, &m_error));
    QCOMPARE(m_error, QStringLiteral("The archive has no vehicle 99."));
    QCOMPARE(archive.vehicles(QString(), &m_error)->first().visitCount, 2);
}

void tst_Archive::visitIsMoved()
{
    OpenArchive archive(m_places.make());
    const auto first = archive.add(snapshot(bike(1), time(0)), std::nullopt, &m_error);
    const auto second = archive.add(snapshot(bike(1), time(1)), std::nullopt, &m_error);
    QCOMPARE(second->vehicleId, first->vehicleId);
    const auto alone = archive.moveVisit(second->visitId, std::nullopt, &m_error);
    QVERIFY2(alone, qPrintable(m_error));
    QVERIFY(*alone != first->vehicleId);
    QCOMPARE(archive.vehicles(QString(), &m_error)->size(), 2);
    QVERIFY(archive.moveVisit(second->visitId, first->vehicleId, &m_error));
    QCOMPARE(archive.vehicles(QString(), &m_error)->size(), 1);
    QVERIFY(!archive.renameVehicle(*alone, QStringLiteral("x"), &m_error)); // the empty one has gone
    QVERIFY(!archive.moveVisit(second->visitId, 99, &m_error));
    QCOMPARE(m_error, QStringLiteral("The archive has no vehicle 99."));
    QCOMPARE(archive.visit(second->visitId, &m_error)->vehicleId, first->vehicleId);
}

void tst_Archive::deletesAVisit()
{
    OpenArchive archive(m_places.make());
    const auto kept = archive.add(bikeAt(1, 0, 99), std::nullopt, &m_error);
    const qint64 first = kept->visitId;
    const qint64 second = archive.add(bikeAt(1, 1, 98), std::nullopt, &m_error)->visitId;
    QVERIFY2(archive.remove(first, &m_error), qPrintable(m_error));
    QCOMPARE(idsOf(archive.visits({}, &m_error)), QVector<qint64>{second});
    QVERIFY(!archive.load(first, &m_error));
    QCOMPARE(m_error, QStringLiteral("The archive has no visit %1.").arg(first));
    QVERIFY(archive.remove(second, &m_error));
    QCOMPARE(archive.vehicles(QString(), &m_error)->size(), 0);
    QVERIFY(!archive.renameVehicle(kept->vehicleId, QStringLiteral("x"), &m_error)); // it went with it
}

void tst_Archive::numbersAreNotGivenAgain()
{
    OpenArchive archive(m_places.make());
    const qint64 first = archive.add(snapshot(bike(1)), std::nullopt, &m_error)->visitId;
    QVERIFY(archive.remove(first, &m_error));
    QVERIFY(archive.add(snapshot(bike(1)), std::nullopt, &m_error)->visitId > first);
}

void tst_Archive::saysWhatIsNotThere()
{
    OpenArchive archive(m_places.make());
    QVERIFY(!archive.visit(7, &m_error));
    QCOMPARE(m_error, QStringLiteral("The archive has no visit 7."));
    QVERIFY(!archive.remove(7, &m_error));
    QVERIFY(!archive.setNotes(7, {}, &m_error));
    QVERIFY(!archive.setVerdict(7, {}, &m_error));
    QVERIFY(!archive.renameVehicle(7, QStringLiteral("x"), &m_error));
    QCOMPARE(m_error, QStringLiteral("The archive has no vehicle 7."));
    QVERIFY(!archive.vehicleTrend(7, stateOfHealth, &m_error));
}

void tst_Archive::takesAnyText()
{
    Snapshot added = snapshot(bike(1));
    added.notes.note = QStringLiteral("a\u0000b'; DROP TABLE draxel_visit; --\n\U0001F6B2");
    OpenArchive archive(m_places.make());
    const auto kept = archive.add(added, std::nullopt, &m_error);
    QVERIFY2(kept, qPrintable(m_error));
    QCOMPARE(archive.load(kept->visitId, &m_error)->notes.note, added.notes.note);
    QCOMPARE(archive.visit(kept->visitId, &m_error)->notes.note,
             QStringLiteral("ab'; DROP TABLE draxel_visit; --\n\U0001F6B2"));
}

QTEST_GUILESS_MAIN(tst_Archive)
#include "tst_archive.moc"
