// SPDX-License-Identifier: MIT
#include "pageshost.h"

#include <archive/archivedatabase.h>
#include <host/pages/archivebrowser.h>
#include <host/pages/checkupsession.h>
#include <host/pages/checkupwords.h>
#include <simulator/fault.h>
#include <tests/support/troubledvehicle.h>

#include <QElapsedTimer>
#include <QJsonObject>
#include <QSignalSpy>

namespace {

using Search = CheckupSession::Search;
using Kept = CheckupSession::Kept;

Simulator::VehicleDescription healthy()
{
    Simulator::VehicleDescription vehicle = SimulatedHost::stillVehicle(QStringLiteral("full-bus"));
    TroubledVehicle::heal(&vehicle);
    return vehicle;
}

Simulator::VehicleDescription troubled()
{
    Simulator::VehicleDescription vehicle = healthy();
    TroubledVehicle::spoil(&vehicle);
    return vehicle;
}

/*! A bus with a vehicle, and a session on it with an archive of its own. */
struct Desk
{
    explicit Desk(const Simulator::VehicleDescription &vehicle, int bitRate = 0)
        : host(vehicle, bitRate)
        , records(&host.services(), QStringLiteral("test 1"))
        , session(&host.services(), &records)
    {
        session.setSharePercent(100);
        session.setRules(RuleSet::load({QStringLiteral(RULE_FOLDER)}));
    }

    void run(SnapshotScope scope = SnapshotScope::Full)
    {
        session.start(scope, Search::Heard);
        waitUntil([this] { return !session.isRunning(); });
        waitForArchive(records);
    }

    void turnToOtherArchive()
    {
        qputenv("DRAXEL_ARCHIVE", archive.otherFileName().toLocal8Bit());
        records.reopen();
        waitForArchive(records);
    }

    void removeVisit(qint64 id)
    {
        records.archive().ask(
            &records, [id](Archive &opened, QString *error) { return opened.remove(id, error); },
            [](bool, const QString &) {});
        waitForArchive(records);
    }

    void changeArchive(const QString &statement)
    {
        QString error;
        ArchiveDatabase database;
        QVERIFY2(database.open(*ArchiveAddress::parse(archive.fileName(), &error),
                               ArchiveDatabase::Missing::Refuse),
                 qPrintable(database.errorString()));
        QVERIFY2(database.run(statement), qPrintable(database.errorString()));
    }

    HealthTrend batteryTrend() const
    {
        for (const HealthTrend &trend : session.record().trends) {
            if (trend.nodeId == 2 && trend.pack == 1)
                return trend;
        }
        return {};
    }

    const CheckedComponent *component(quint8 nodeId) const { return session.record().component(nodeId); }

    OwnArchive archive;
    SimulatedHost host;
    VehicleRecords records;
    CheckupSession session;
};

Snapshot withGap(const Snapshot &snapshot)
{
    Snapshot gaps = snapshot;
    SnapshotEntry lost;
    lost.key = {0x1018, 4};
    lost.gap = SnapshotGap::NoAnswer;
    gaps.nodes.first().insert(lost);
    return gaps;
}

SnapshotNotes ofCustomer()
{
    SnapshotNotes notes;
    notes.customer = QStringLiteral("A. Customer");
    return notes;
}

QVector<VisitInfo> visitsOf(VehicleRecords &records)
{
    QVector<VisitInfo> visits;
    records.archive().ask(
        &records, [](Archive &archive, QString *error) { return archive.visits(VisitQuery(), error); },
        [&visits](const std::optional<QVector<VisitInfo>> &found, const QString &) {
            visits = found.value_or(QVector<VisitInfo>());
        });
    waitForArchive(records);
    return visits;
}

int visitCount(VehicleRecords &records)
{
    int count = -1;
    records.archive().ask(
        &records, [](Archive &archive, QString *error) { return archive.visits(VisitQuery(), error); },
        [&count](const std::optional<QVector<VisitInfo>> &visits, const QString &) {
            count = visits ? visits->size() : -1;
        });
    waitForArchive(records);
    return count;
}

} // namespace

/*! One vehicle that is read, judged, kept and compared, on a simulated bus. */
class tst_CheckupSession : public QObject
{
    Q_OBJECT

private slots:
    void saysWhatToDoFirst();
    void readsJudgesAndKeeps();
    void goesOnPastTrouble();
    void rowsFillWhileNodesAreRead();
    void cancelKeepsWhatWasRead();
    void goesOnWhereItEnded();
    void goesOnWithSnapshotsOnly();
    void beginsAnewWithAnotherVehicle();
    void beginsAnewWithAVehicleOfOtherNodes();
    void goesOnWithoutADeviceThatIsAway();
    void asksAnewWhereNobodyCanBeRecognised();
    void tellsOfADeviceThatWasReplaced();
    void keepsToItsShareOfTheBus();
    void fullBusLeavesDoubts();
    void emptyBusIsNotKept();
    void refusesReadsOfPlugins();
    void doesNotBeginDuringARead();
    void waitsForALostBus();
    void endsWhenTheUserDisconnects();
    void comparesWithTheVisitBefore();
    void visitBeforeHasTheNotesThatItHasNow();
    void silentDeviceHasTheNameOfTheVisitBefore();
    void tellsHowTheHealthOfBatteriesWent();
    void oldVisitKnowsNothingOfLaterOnes();
    void damagedVisitsAreNotPassedOver();
    void visitBeforeThatIsDamagedIsNotPassedOver();
    void archiveThatCannotBeReadIsNotPassedOver();
    void archiveThatCannotBeReachedIsNotPassedOver();
    void archiveThatHasNotAnsweredIsNotPassedOver();
    void fileIsShownAndNotKeptByItself();
    void otherVehicleHasOtherNotes();
    void notesEndWithTheConnection();
    void notesEndWithALostBus();
    void notesAndFileNameAreOfWhatIsShown();
    void lateAnswerOfTheArchiveIsOfAnotherRecord();
    void notesReachAVisitThatIsBeingKept();
    void notesReachAVisitThatIsNotShownAnyMore();
    void notesReachAVisitThatWaits();
    void notesReachAVisitThatIsBeingDelivered();
    void notesThatCannotBeWrittenAreSaid();
    void notesOfTheArchivePageAreShown();
    void notesThatCouldNotBeWrittenStay();
    void notesOfAnotherArchiveAreShownAfterAFailure();
    void visitIsOfTheArchiveThatKeptIt();
    void lateAnswerOfTheArchiveBefore();
    void sameArchiveOpenedAgainHasTheVisit();
    void languageJudgesAnew();
    void archiveThatIsAwayIsSaid();
    void visitThatCannotBeDeliveredIsSaid();
    void whatCanBeKeptNowhereIsSaid();
};

void tst_CheckupSession::saysWhatToDoFirst()
{
    Desk desk(healthy());
    QCOMPARE(desk.session.obstacle(), QStringLiteral("Connect a bus first."));
    desk.session.start(SnapshotScope::Quick, Search::Heard);
    QVERIFY(!desk.session.isRunning());
    QVERIFY(desk.host.connectToBus());
    QCOMPARE(desk.session.obstacle(), QString());
    QVERIFY(!desk.session.canResume());
}

void tst_CheckupSession::readsJudgesAndKeeps()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    const QSignalSpy finished(&desk.session, &CheckupSession::finished);
    desk.run();
    QCOMPARE(finished.count(), 1);
    const CheckupRecord &record = desk.session.record();
    QCOMPARE(record.source, CheckupRecord::Source::Bus);
    QCOMPARE(record.snapshot.nodes.size(), 14);
    QVERIFY(record.snapshot.isComplete());
    QCOMPARE(record.result.components.size(), 14);
    QCOMPARE(record.result.count(Severity::Fault), 0);
    QCOMPARE(record.result.count(Severity::Warning), 0);
    QCOMPARE(desk.session.kept(), Kept::Yes);
    QVERIFY(record.visitId);
    QVERIFY(!record.comparison); // the first visit
    QCOMPARE(visitCount(desk.records), 1);
    QVERIFY(desk.session.canStart());
}

void tst_CheckupSession::goesOnPastTrouble()
{
    Desk desk(troubled());
    QVERIFY(desk.host.connectToBus());
    desk.run(SnapshotScope::Full);
    const CheckupRecord &record = desk.session.record();
    QCOMPARE(record.result.verdict, Verdict::Fault);
    const CheckedComponent *battery = desk.component(TroubledVehicle::weakBattery);
    QCOMPARE(battery->state, ComponentState::Fault);
    QVERIFY2(CheckupWords::sentence(*battery).startsWith(QStringLiteral("Cell 7 ")),
             qPrintable(CheckupWords::sentence(*battery)));
    QVERIFY(!desk.component(TroubledVehicle::deadNode)->notChecked.isEmpty());
    QVERIFY(!desk.component(TroubledVehicle::stoppedNode)->notChecked.isEmpty());
    QVERIFY(!desk.component(TroubledVehicle::refusingNode)->notChecked.isEmpty());
    QCOMPARE(record.snapshot.find(TroubledVehicle::deadNode)->end, SnapshotEnd::Silent);
    QCOMPARE(record.snapshot.find(TroubledVehicle::stoppedNode)->end, SnapshotEnd::Stopped);
    QVERIFY(record.snapshot.find(TroubledVehicle::slowNode)->valueCount() > 20);
    QCOMPARE(desk.session.kept(), Kept::Yes);
    QVERIFY(desk.session.canResume());
}

void tst_CheckupSession::rowsFillWhileNodesAreRead()
{
    Desk desk(troubled());
    QVERIFY(desk.host.connectToBus());
    desk.session.start(SnapshotScope::Quick, Search::Heard);
    // A quick node is judged while the slow one is still being read.
    waitUntil([&desk] {
        return desk.session.early(1) != nullptr && desk.session.progress(TroubledVehicle::slowNode).asked > 0;
    });
    QVERIFY(desk.session.isRunning());
    QVERIFY(desk.session.early(TroubledVehicle::slowNode) == nullptr);
    const SnapshotProgress slow = desk.session.progress(TroubledVehicle::slowNode);
    QVERIFY(slow.asked > 0);
    QVERIFY(slow.asked < slow.total);
    QVERIFY(desk.session.readNodes().contains(TroubledVehicle::slowNode));
}

void tst_CheckupSession::cancelKeepsWhatWasRead()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    desk.session.start(SnapshotScope::Full, Search::Heard);
    waitUntil([&desk] { return desk.session.progress().values > 50; });
    desk.session.cancel();
    QVERIFY(!desk.session.isRunning());
    waitForArchive(desk.records);
    const CheckupRecord &record = desk.session.record();
    QVERIFY(record.snapshot.valueCount() > 50);
    QVERIFY(!record.snapshot.isComplete());
    QCOMPARE(record.result.verdict, Verdict::Incomplete);
    QCOMPARE(desk.session.kept(), Kept::Yes);
    QCOMPARE(visitCount(desk.records), 1);
}

void tst_CheckupSession::goesOnWhereItEnded()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    desk.session.start(SnapshotScope::Quick, Search::Heard);
    waitUntil([&desk] { return desk.session.progress().values > 50; });
    desk.session.cancel();
    waitForArchive(desk.records);
    QVERIFY(desk.session.canResume());
    const QDateTime begun = desk.session.record().snapshot.time;
    desk.session.resume();
    QVERIFY(desk.session.isRunning());
    waitUntil([&desk] { return !desk.session.isRunning(); });
    waitForArchive(desk.records);
    QVERIFY(desk.session.record().snapshot.isComplete());
    QCOMPARE(desk.session.record().snapshot.time, begun);
    QVERIFY(!desk.session.canResume());
}

void tst_CheckupSession::goesOnWithSnapshotsOnly()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    desk.run(SnapshotScope::Quick);
    Snapshot gaps = withGap(desk.session.record().snapshot);
    desk.session.showFile(gaps, QStringLiteral("gaps.dxsnap"));
    QVERIFY(desk.session.canResume());
    gaps.scope = SnapshotScope::Imported; // nobody knows what was asked for
    desk.session.showFile(gaps, QStringLiteral("gaps.dxxml"));
    QVERIFY(!desk.session.canResume());
    gaps.scope = SnapshotScope::Recorded;
    desk.session.showFile(gaps, QStringLiteral("of-a-trace.dxsnap"));
    QVERIFY(!desk.session.canResume());
}

void tst_CheckupSession::beginsAnewWithAnotherVehicle()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    desk.run(SnapshotScope::Quick);
    Snapshot former = withGap(desk.session.record().snapshot);
    former.time = QDateTime(QDate(2026, 3, 12), QTime(10, 12), Qt::OffsetFromUTC, 0);
    former.nodes.append(former.nodes.first());
    former.nodes.last().id = 90; // which the other vehicle has not
    desk.session.showFile(former, QStringLiteral("former.dxsnap"));
    QVERIFY(desk.host.vehicle().node(2)->dictionary().setValue({0x1018, 4}, 4711));
    const QSignalSpy told(&desk.session, &CheckupSession::vehicleReplaced);
    const QSignalSpy finished(&desk.session, &CheckupSession::finished);
    desk.session.resume();
    waitUntil([&] { return finished.count() > 0; });
    waitForArchive(desk.records);
    QCOMPARE(told.count(), 1);
    QCOMPARE(told.first().first().value<QVector<quint8>>(), QVector<quint8>{2});
    const Snapshot &snapshot = desk.session.record().snapshot;
    QCOMPARE(snapshot.nodes.size(), 14);
    QVERIFY(snapshot.find(90) == nullptr);
    QVERIFY(snapshot.time != former.time);
    QCOMPARE(snapshot.scope, SnapshotScope::Quick);
    QVERIFY(snapshot.isComplete());
}

/*! Nobody is there whose identity could differ. */
void tst_CheckupSession::beginsAnewWithAVehicleOfOtherNodes()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    desk.run(SnapshotScope::Quick);
    const int nodeCount = desk.session.record().snapshot.nodes.size();
    QCOMPARE(nodeCount, 14);
    Snapshot former = withGap(desk.session.record().snapshot);
    former.time = QDateTime(QDate(2026, 3, 12), QTime(10, 12), Qt::OffsetFromUTC, 0);
    former.nodes = {former.nodes.first(), former.nodes.first()};
    former.nodes[0].id = 90;
    former.nodes[1].id = 91;
    desk.session.showFile(former, QStringLiteral("former.dxsnap"));
    const QSignalSpy told(&desk.session, &CheckupSession::vehicleReplaced);
    const QSignalSpy finished(&desk.session, &CheckupSession::finished);
    desk.session.resume();
    waitUntil([&] { return finished.count() > 0; });
    waitForArchive(desk.records);
    QCOMPARE(told.count(), 1);
    const auto strangers = told.first().first().value<QVector<quint8>>();
    QVERIFY(!strangers.isEmpty());
    QVERIFY(!strangers.contains(90));
    const Snapshot &snapshot = desk.session.record().snapshot;
    QCOMPARE(snapshot.nodes.size(), 14);
    QVERIFY(snapshot.find(90) == nullptr);
    QVERIFY(snapshot.time != former.time);
    QVERIFY(snapshot.isComplete());
}

/*! One that was there before is there still: it is the same vehicle, with a device more and one less. */
void tst_CheckupSession::goesOnWithoutADeviceThatIsAway()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    desk.run(SnapshotScope::Quick);
    Snapshot former = withGap(desk.session.record().snapshot);
    former.time = QDateTime(QDate(2026, 3, 12), QTime(10, 12), Qt::OffsetFromUTC, 0);
    SnapshotNode away = former.nodes.first();
    away.id = 90;
    former.nodes = {former.nodes.at(1), away};
    desk.session.showFile(former, QStringLiteral("former.dxsnap"));
    const QSignalSpy told(&desk.session, &CheckupSession::vehicleReplaced);
    desk.session.resume();
    waitUntil([&desk] { return !desk.session.isRunning(); });
    waitForArchive(desk.records);
    QCOMPARE(told.count(), 0);
    const Snapshot &snapshot = desk.session.record().snapshot;
    QCOMPARE(snapshot.time, former.time);
    QCOMPARE(snapshot.nodes.size(), 15);
    QCOMPARE(snapshot.find(90)->value(0x1018, 4), away.value(0x1018, 4));
}

void tst_CheckupSession::asksAnewWhereNobodyCanBeRecognised()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    desk.run(SnapshotScope::Full);
    Snapshot former = desk.session.record().snapshot;
    for (SnapshotEntry &entry : former.find(2)->entries) {
        if (entry.key.index == 0x1018) {
            entry.gap = SnapshotGap::NoAnswer;
            entry.value = QVariant();
            entry.raw.clear();
        }
    }
    QVERIFY(desk.host.vehicle().node(2)->dictionary().setValue({0x6107, 1}, 230));
    desk.session.showFile(former, QStringLiteral("former.dxsnap"));
    desk.session.resume();
    waitUntil([&desk] { return !desk.session.isRunning(); });
    waitForArchive(desk.records);
    QCOMPARE(desk.session.record().snapshot.time, former.time);
    QCOMPARE(desk.session.record().snapshot.find(2)->value(0x6107, 1).toInt(), 230);
}

void tst_CheckupSession::tellsOfADeviceThatWasReplaced()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    desk.session.start(SnapshotScope::Quick, Search::Heard);
    waitUntil([&desk] {
        const std::optional<SnapshotNode> battery = desk.session.node(2);
        return battery && battery->value(0x1018, 4).isValid();
    });
    desk.session.cancel();
    waitForArchive(desk.records);
    const QDateTime begun = desk.session.record().snapshot.time;
    QVERIFY(desk.host.vehicle().node(2)->dictionary().setValue({0x1018, 4}, 4711));
    const QSignalSpy replaced(&desk.session, &CheckupSession::devicesReplaced);
    QVERIFY(desk.session.canResume());
    desk.session.resume(); // on the same connection: somebody has changed the battery
    waitUntil([&desk] { return !desk.session.isRunning(); });
    waitForArchive(desk.records);
    QCOMPARE(replaced.count(), 1);
    QCOMPARE(replaced.first().first().value<QVector<quint8>>(), QVector<quint8>{2});
    QCOMPARE(desk.session.record().snapshot.time, begun);
}

void tst_CheckupSession::keepsToItsShareOfTheBus()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    const auto timeOfARun = [&desk] {
        QElapsedTimer clock; // of the test
        clock.start();
        desk.run(SnapshotScope::Quick);
        return clock.elapsed();
    };
    const qint64 withoutLimit = timeOfARun();
    desk.session.setSharePercent(5);
    QVERIFY(timeOfARun() > 3 * withoutLimit);
}

void tst_CheckupSession::fullBusLeavesDoubts()
{
    Simulator::VehicleDescription vehicle = SimulatedHost::stillVehicle(QStringLiteral("pedelec"));
    QString error;
    const auto traffic = Simulator::parseFault(
        QJsonObject{{QStringLiteral("kind"), QStringLiteral("traffic")}, {QStringLiteral("percent"), 98}},
        &error);
    QVERIFY2(traffic, qPrintable(error));
    vehicle.nodes.last().faults.append(*traffic);
    Desk desk(vehicle, 125000);
    QVERIFY(desk.host.connectToBus());
    desk.session.setSharePercent(20); // so that it is not us who fill it
    const QSignalSpy doubts(&desk.session, &CheckupSession::nodesDoubted);
    desk.run(SnapshotScope::Quick);
    QCOMPARE(doubts.count(), 1);
    QCOMPARE(
        doubts.first().first().toStringList(),
        QStringList{QStringLiteral("The bus was full while nodes were looked for, so nodes may be missing. "
                                   "Find out who sends so much, and read again.")});
}

void tst_CheckupSession::emptyBusIsNotKept()
{
    Simulator::VehicleDescription nobody = healthy();
    nobody.nodes.clear();
    Desk desk(nobody);
    QVERIFY(desk.host.connectToBus());
    desk.run();
    QCOMPARE(desk.session.kept(), Kept::No);
    QCOMPARE(CheckupWords::verdict(desk.session.record()),
             QStringLiteral("No device was heard. Is the vehicle switched on?"));
    QCOMPARE(visitCount(desk.records), 0);
}

void tst_CheckupSession::refusesReadsOfPlugins()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    desk.session.start(SnapshotScope::Full, Search::Heard);
    waitUntil([&desk] { return desk.session.progress().values > 10; });
    QSignalSpy refused(&desk.host.services().sdoClient(), &HostSdoClient::errorReceived);
    QSignalSpy ended(&desk.host.services().reads(), &ReadObserver::readEnded);
    desk.host.services().sdoClient().upload(1, 0x1000, 0, quint16(CanOpen::DataType::Unsigned32), 0);
    waitUntil([&] { return refused.count() > 0; });
    QCOMPARE(refused.first().at(3).toUInt(), HostSdoClient::timeoutCode);
    QCOMPARE(ended.count(), 1);
    const auto summary = ended.first().first().value<ReadSummary>();
    QCOMPARE(int(summary.end), int(ReadSummary::End::Refused));
    QCOMPARE(
        ReadWords::end(summary, ReadWords::Silence::Unexplained),
        QStringLiteral("Nothing was read, because a check-up is using the bus. Wait for its end or cancel "
                       "it, then read again."));
    desk.session.cancel();
    waitForArchive(desk.records);

    // And afterwards it works again.
    QSignalSpy value(&desk.host.services().sdoClient(), &HostSdoClient::resultReceived);
    desk.host.services().sdoClient().upload(1, 0x1000, 0, quint16(CanOpen::DataType::Unsigned32), 0);
    waitUntil([&] { return value.count() > 0 || refused.count() > 1; });
    QCOMPARE(value.count(), 1);
}

void tst_CheckupSession::doesNotBeginDuringARead()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    desk.host.services().sdoClient().upload(1, 0x1000, 0, quint16(CanOpen::DataType::Unsigned32), 0);
    QCOMPARE(desk.session.obstacle(),
             QStringLiteral("The overview is reading. Wait for its end or cancel it (Esc)."));
    desk.session.start(SnapshotScope::Quick, Search::Heard);
    QVERIFY(!desk.session.isRunning());
    const QSignalSpy changed(&desk.session, &CheckupSession::obstacleChanged);
    waitUntil([&desk] { return desk.session.canStart(); });
    QVERIFY(changed.count() > 0);
}

void tst_CheckupSession::waitsForALostBus()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    desk.session.start(SnapshotScope::Quick, Search::Heard);
    waitUntil([&desk] { return desk.session.progress().values > 50; });
    desk.host.bus().lose(Simulator::BusLoss::Unplugged);
    waitUntil([&desk] { return desk.session.isBusLost(); });
    QVERIFY(desk.session.isRunning());
    desk.host.bus().restore();
    waitUntil([&desk] { return !desk.session.isRunning(); });
    waitForArchive(desk.records);
    QCOMPARE(desk.session.record().snapshot.nodes.size(), 14);
    QVERIFY(desk.session.record().snapshot.isComplete());
}

void tst_CheckupSession::endsWhenTheUserDisconnects()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    desk.session.start(SnapshotScope::Quick, Search::Heard);
    waitUntil([&desk] { return desk.session.progress().values > 50; });
    desk.host.services().bus().disconnectFromBus();
    QVERIFY(!desk.session.isRunning());
    waitForArchive(desk.records);
    QCOMPARE(desk.session.kept(), Kept::Yes);
    QVERIFY(!desk.host.services().sdoClient().isRefusing());
}

void tst_CheckupSession::comparesWithTheVisitBefore()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    desk.run();
    QVERIFY(desk.host.vehicle().node(2)->dictionary().setValue({0x6107, 1}, 230));
    desk.run();
    const CheckupRecord &record = desk.session.record();
    QVERIFY(record.comparison);
    const QVector<Change> changes = record.changesOf(2);
    QCOMPARE(changes.size(), 1);
    QCOMPARE(changes.first().kind, Change::Kind::Counter);
    QCOMPARE(changes.first().after, QStringLiteral("230"));
    QVERIFY(record.changesOf(1).isEmpty());
}

/*! Else it would seem to be of another vehicle, or of another customer. */
void tst_CheckupSession::visitBeforeHasTheNotesThatItHasNow()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    desk.run(SnapshotScope::Quick);
    desk.session.setNotes(ofCustomer());
    waitForArchive(desk.records);
    desk.run(SnapshotScope::Quick);
    QVERIFY(desk.session.record().comparison);
    QCOMPARE(desk.session.record().comparison->earlier.notes.customer, QStringLiteral("A. Customer"));
}

void tst_CheckupSession::silentDeviceHasTheNameOfTheVisitBefore()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    desk.run();
    const QString name = desk.component(2)->name;
    Snapshot later = desk.session.record().snapshot;
    later.time = later.time.addDays(1);
    for (SnapshotEntry &entry : later.find(2)->entries) {
        entry.gap = SnapshotGap::NoAnswer;
        entry.value = QVariant();
        entry.raw.clear();
    }
    desk.session.showFile(later, QStringLiteral("/somewhere/bike.dxsnap"));
    QVERIFY(desk.component(2)->name != name);
    desk.session.keep();
    waitForArchive(desk.records);
    QCOMPARE(desk.component(2)->name, name);
    QVERIFY(desk.component(2)->isNameEarlier);
}

void tst_CheckupSession::tellsHowTheHealthOfBatteriesWent()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    QVERIFY(desk.host.vehicle().node(2)->dictionary().setValue({0x6176, 1}, 9100));
    desk.run();
    QVERIFY(desk.host.vehicle().node(2)->dictionary().setValue({0x6176, 1}, 8800));
    desk.run();
    const HealthTrend trend = desk.batteryTrend();
    QCOMPARE(trend.points.size(), 2);
    QCOMPARE(trend.points.at(0).percent, 91.0);
    QCOMPARE(trend.points.at(1).percent, 88.0);
}

void tst_CheckupSession::oldVisitKnowsNothingOfLaterOnes()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    desk.run();
    const Snapshot old = desk.session.record().snapshot;
    const qint64 oldId = *desk.session.record().visitId;
    desk.run();
    QCOMPARE(desk.batteryTrend().points.size(), 2);
    desk.session.showVisit(old, oldId);
    waitForArchive(desk.records);
    QCOMPARE(desk.batteryTrend().points.size(), 1);
    QCOMPARE(desk.batteryTrend().points.first().time, old.time);
}

void tst_CheckupSession::damagedVisitsAreNotPassedOver()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    desk.run();
    const qint64 damaged = *desk.session.record().visitId;
    desk.changeArchive(
        QStringLiteral("UPDATE draxel_entries SET data = x'00' WHERE visit = %1 AND node = 2").arg(damaged));
    QSignalSpy incomplete(&desk.session, &CheckupSession::pastIncomplete);
    desk.run();
    QCOMPARE(incomplete.size(), 1);
    QCOMPARE(incomplete.first().first().toStringList(),
             QStringList{QStringLiteral("Visit %1 is damaged in the archive and cannot be shown. Take the "
                                        "last backup of the archive; the other visits are not affected.")
                             .arg(damaged)});
    QVERIFY(!desk.session.record().comparison);
    QCOMPARE(desk.batteryTrend().points.size(), 1);
    QCOMPARE(desk.batteryTrend().damagedVisits, 1);
    QVERIFY(!desk.batteryTrend().isArchiveUnread);
}

void tst_CheckupSession::visitBeforeThatIsDamagedIsNotPassedOver()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    desk.run();
    // Not where the battery is.
    desk.changeArchive(QStringLiteral("UPDATE draxel_entries SET data = x'00' WHERE node = 4"));
    QSignalSpy incomplete(&desk.session, &CheckupSession::pastIncomplete);
    desk.run();
    QCOMPARE(incomplete.size(), 1);
    QCOMPARE(incomplete.first().first().toStringList().size(), 1);
    QVERIFY(!desk.session.record().comparison);
    QCOMPARE(desk.batteryTrend().points.size(), 2);
    QCOMPARE(desk.batteryTrend().damagedVisits, 0);
}

void tst_CheckupSession::archiveThatCannotBeReadIsNotPassedOver()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    desk.run();
    const Snapshot snapshot = desk.session.record().snapshot;
    const qint64 visitId = *desk.session.record().visitId;
    QSignalSpy incomplete(&desk.session, &CheckupSession::pastIncomplete);
    desk.session.showVisit(snapshot, visitId);
    waitForArchive(desk.records);
    QCOMPARE(incomplete.size(), 0);
    QVERIFY(!desk.batteryTrend().isArchiveUnread);
    desk.changeArchive(QStringLiteral("ALTER TABLE draxel_entries RENAME TO elsewhere"));
    desk.session.showVisit(snapshot, visitId);
    waitForArchive(desk.records);
    QCOMPARE(incomplete.size(), 1);
    QVERIFY(!incomplete.first().first().toStringList().join(QString()).isEmpty());
    QVERIFY(desk.batteryTrend().isArchiveUnread);
}

void tst_CheckupSession::archiveThatCannotBeReachedIsNotPassedOver()
{
    Desk desk(healthy());
    qputenv("DRAXEL_ARCHIVE", "/proc/none/here.dxarchive");
    QVERIFY(desk.host.connectToBus());
    desk.run();
    QCOMPARE(desk.session.kept(), Kept::Waiting);
    QCOMPARE(desk.batteryTrend().points.size(), 1);
    QVERIFY(desk.batteryTrend().isArchiveUnread);
    desk.turnToOtherArchive();
    QCOMPARE(desk.session.kept(), Kept::Yes);
    waitForArchive(desk.records);
    QCOMPARE(desk.batteryTrend().points.size(), 1);
    QVERIFY(!desk.batteryTrend().isArchiveUnread);
}

/*! What a report says that is written at once. */
void tst_CheckupSession::archiveThatHasNotAnsweredIsNotPassedOver()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    desk.session.start(SnapshotScope::Full, Search::Heard);
    waitUntil([&desk] { return !desk.session.isRunning(); });
    QCOMPARE(desk.session.kept(), Kept::Asked);
    QVERIFY(desk.batteryTrend().isArchiveUnread);
    waitForArchive(desk.records);
    QVERIFY(!desk.batteryTrend().isArchiveUnread);
    const Snapshot snapshot = desk.session.record().snapshot;
    desk.session.showVisit(snapshot, *desk.session.record().visitId);
    QVERIFY(desk.batteryTrend().isArchiveUnread);
    waitForArchive(desk.records);
    QVERIFY(!desk.batteryTrend().isArchiveUnread);
}

void tst_CheckupSession::fileIsShownAndNotKeptByItself()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    desk.run();
    const Snapshot snapshot = desk.session.record().snapshot;
    Snapshot other = snapshot;
    other.nodes.removeLast();
    desk.session.showFile(other, QStringLiteral("/somewhere/bike.dxsnap"));
    waitForArchive(desk.records);
    QCOMPARE(desk.session.record().source, CheckupRecord::Source::File);
    QCOMPARE(desk.session.record().result.components.size(), 13);
    QCOMPARE(desk.session.kept(), Kept::No);
    QCOMPARE(visitCount(desk.records), 1);
    desk.session.keep();
    waitForArchive(desk.records);
    QCOMPARE(desk.session.kept(), Kept::Yes);
    QCOMPARE(visitCount(desk.records), 2);
}

void tst_CheckupSession::otherVehicleHasOtherNotes()
{
    Desk desk(healthy());
    SnapshotNotes notes;
    notes.customer = QStringLiteral("A. Customer");
    notes.technician = QStringLiteral("T. Wrench");
    desk.session.setNotes(notes);
    QVERIFY(desk.host.connectToBus());
    desk.run();
    QCOMPARE(desk.session.record().snapshot.notes.customer, QStringLiteral("A. Customer"));
    desk.run(); // the same vehicle once more
    QCOMPARE(desk.session.record().snapshot.notes.customer, QStringLiteral("A. Customer"));
    desk.host.services().bus().disconnectFromBus();
    QVERIFY(desk.host.connectToBus());
    desk.run(); // maybe another one
    QCOMPARE(desk.session.record().snapshot.notes.customer, QString());
    QCOMPARE(desk.session.record().snapshot.notes.technician, QStringLiteral("T. Wrench"));
}

void tst_CheckupSession::notesEndWithTheConnection()
{
    Desk desk(healthy());
    SnapshotNotes notes;
    notes.customer = QStringLiteral("A. Customer");
    desk.session.setNotes(notes);
    QVERIFY(desk.host.connectToBus());
    desk.session.start(SnapshotScope::Quick, Search::Heard);
    waitUntil([&desk] { return desk.session.progress().values > 50; });
    desk.host.services().bus().disconnectFromBus(); // in the middle
    waitForArchive(desk.records);
    QVERIFY(desk.host.connectToBus());
    desk.run(SnapshotScope::Quick);
    QCOMPARE(desk.session.record().snapshot.notes.customer, QString());
}

void tst_CheckupSession::notesEndWithALostBus()
{
    Desk desk(healthy());
    SnapshotNotes notes;
    notes.customer = QStringLiteral("A. Customer");
    desk.session.setNotes(notes);
    QVERIFY(desk.host.connectToBus());
    desk.session.start(SnapshotScope::Quick, Search::Heard);
    waitUntil([&desk] { return desk.session.progress().values > 50; });
    desk.host.bus().lose(Simulator::BusLoss::Unplugged);
    waitUntil([&desk] { return desk.session.isBusLost(); });
    desk.session.cancel();
    waitForArchive(desk.records);
    QCOMPARE(desk.session.record().snapshot.notes.customer, QStringLiteral("A. Customer"));
    desk.host.bus().restore(); // maybe with another vehicle
    waitUntil([&desk] { return desk.session.canStart(); });
    desk.run(SnapshotScope::Quick);
    QCOMPARE(desk.session.record().snapshot.notes.customer, QString());
}

void tst_CheckupSession::notesAndFileNameAreOfWhatIsShown()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    desk.run(SnapshotScope::Quick);
    const QSignalSpy told(&desk.session, &CheckupSession::recordChanged);
    SnapshotNotes notes;
    notes.odometer = QStringLiteral("1204 km");
    desk.session.setNotes(notes);
    QCOMPARE(desk.session.record().snapshot.notes.odometer, QStringLiteral("1204 km"));
    desk.session.noteSaved(QStringLiteral("/somewhere/bike.dxsnap"));
    QCOMPARE(desk.session.record().fileName, QStringLiteral("/somewhere/bike.dxsnap"));
    QCOMPARE(told.count(), 2);
}

void tst_CheckupSession::lateAnswerOfTheArchiveIsOfAnotherRecord()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    desk.session.start(SnapshotScope::Quick, Search::Heard);
    waitUntil([&desk] { return !desk.session.isRunning(); });
    QCOMPARE(desk.session.kept(), Kept::Asked);
    desk.session.showFile(desk.session.record().snapshot, QStringLiteral("other.dxsnap"));
    waitForArchive(desk.records);
    QCOMPARE(visitCount(desk.records), 1);
    QCOMPARE(desk.session.kept(), Kept::No);
    QVERIFY(!desk.session.record().visitId);
}

void tst_CheckupSession::notesReachAVisitThatIsBeingKept()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    desk.session.start(SnapshotScope::Quick, Search::Heard);
    waitUntil([&desk] { return !desk.session.isRunning(); });
    QCOMPARE(desk.session.kept(), Kept::Asked);
    desk.session.setNotes(ofCustomer());
    waitForArchive(desk.records);
    QCOMPARE(visitsOf(desk.records).value(0).notes.customer, QStringLiteral("A. Customer"));
}

void tst_CheckupSession::notesReachAVisitThatIsNotShownAnyMore()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    desk.session.start(SnapshotScope::Quick, Search::Heard);
    waitUntil([&desk] { return !desk.session.isRunning(); });
    QCOMPARE(desk.session.kept(), Kept::Asked);
    desk.session.setNotes(ofCustomer());
    desk.session.showFile(Snapshot(), QStringLiteral("other.dxsnap"));
    waitForArchive(desk.records);
    QCOMPARE(visitsOf(desk.records).value(0).notes.customer, QStringLiteral("A. Customer"));
    QCOMPARE(desk.session.kept(), Kept::No);
}

void tst_CheckupSession::notesReachAVisitThatWaits()
{
    Desk desk(healthy());
    qputenv("DRAXEL_ARCHIVE", "/proc/none/here.dxarchive");
    QVERIFY(desk.host.connectToBus());
    desk.run(SnapshotScope::Quick);
    QCOMPARE(desk.session.kept(), Kept::Waiting);
    desk.session.setNotes(ofCustomer());
    waitForArchive(desk.records);
    desk.session.showFile(Snapshot(), QStringLiteral("other.dxsnap")); // delivered when nobody looks
    desk.turnToOtherArchive();
    QCOMPARE(visitsOf(desk.records).value(0).notes.customer, QStringLiteral("A. Customer"));
}

void tst_CheckupSession::notesReachAVisitThatIsBeingDelivered()
{
    Desk desk(healthy());
    qputenv("DRAXEL_ARCHIVE", "/proc/none/here.dxarchive");
    QVERIFY(desk.host.connectToBus());
    desk.run(SnapshotScope::Quick);
    QCOMPARE(desk.session.kept(), Kept::Waiting);
    const QSignalSpy failed(&desk.session, &CheckupSession::notesFailed);
    // Entered after the archive has taken it, and before the session was told of that.
    connect(&desk.records, &VehicleRecords::changed, this, [&desk] {
        if (desk.session.kept() == Kept::Waiting)
            desk.session.setNotes(ofCustomer());
    });
    desk.turnToOtherArchive();
    QCOMPARE(desk.session.kept(), Kept::Yes);
    QCOMPARE(desk.session.record().visitId.value_or(0), 1);
    QCOMPARE(visitsOf(desk.records).value(0).notes.customer, QStringLiteral("A. Customer"));
    QCOMPARE(failed.count(), 0);
}

void tst_CheckupSession::notesThatCannotBeWrittenAreSaid()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    desk.run(SnapshotScope::Quick);
    const QSignalSpy failed(&desk.session, &CheckupSession::notesFailed);
    desk.session.setNotes(ofCustomer());
    waitForArchive(desk.records);
    QCOMPARE(failed.count(), 0);
    desk.removeVisit(desk.session.record().visitId.value_or(0));
    desk.session.setNotes(ofCustomer());
    waitForArchive(desk.records);
    QCOMPARE(failed.count(), 1);
    QVERIFY(!failed.first().first().toString().isEmpty());
}

void tst_CheckupSession::notesOfTheArchivePageAreShown()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    desk.run(SnapshotScope::Quick);
    const QSignalSpy told(&desk.session, &CheckupSession::recordChanged);
    ArchiveBrowser browser(&desk.records);
    browser.setNotes(desk.session.record().visitId.value_or(0), ofCustomer());
    waitForArchive(desk.records);
    QCOMPARE(desk.session.record().snapshot.notes.customer, QStringLiteral("A. Customer"));
    QCOMPARE(desk.session.notes().customer, QStringLiteral("A. Customer")); // what is offered to change
    QCOMPARE(told.count(), 1);

    // Those of another visit are nothing to it.
    Snapshot other = desk.session.record().snapshot;
    other.time = other.time.addDays(1);
    desk.records.keep(other, std::nullopt);
    SnapshotNotes notes;
    notes.customer = QStringLiteral("B. Customer");
    browser.setNotes(2, notes);
    waitForArchive(desk.records);
    QCOMPARE(visitsOf(desk.records).value(0).notes.customer, QStringLiteral("B. Customer"));
    QCOMPARE(desk.session.record().snapshot.notes.customer, QStringLiteral("A. Customer"));
    QCOMPARE(told.count(), 1);
}

void tst_CheckupSession::notesThatCouldNotBeWrittenStay()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    desk.run(SnapshotScope::Quick);
    QString error;
    ArchiveDatabase database;
    QVERIFY(database.open(*ArchiveAddress::parse(desk.archive.fileName(), &error),
                          ArchiveDatabase::Missing::Refuse));
    QVERIFY(database.run(QStringLiteral("CREATE TRIGGER refuse BEFORE UPDATE ON draxel_visit"
                                        " BEGIN SELECT RAISE(ABORT, 'refused'); END")));
    const QSignalSpy failed(&desk.session, &CheckupSession::notesFailed);
    desk.session.setNotes(ofCustomer());
    waitForArchive(desk.records);
    QCOMPARE(failed.count(), 1);
    desk.records.noteChange();
    waitForArchive(desk.records);
    QCOMPARE(desk.session.record().snapshot.notes.customer, QStringLiteral("A. Customer"));
}

/*! It was kept with those that the archive before could not take. */
void tst_CheckupSession::notesOfAnotherArchiveAreShownAfterAFailure()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    desk.run(SnapshotScope::Quick);
    desk.removeVisit(desk.session.record().visitId.value_or(0));
    const QSignalSpy failed(&desk.session, &CheckupSession::notesFailed);
    desk.session.setNotes(ofCustomer());
    waitForArchive(desk.records);
    QCOMPARE(failed.count(), 1);

    desk.turnToOtherArchive();
    desk.session.keep();
    waitForArchive(desk.records);
    QCOMPARE(visitsOf(desk.records).value(0).notes.customer, QStringLiteral("A. Customer"));
    SnapshotNotes notes;
    notes.customer = QStringLiteral("B. Customer");
    ArchiveBrowser browser(&desk.records);
    browser.setNotes(desk.session.record().visitId.value_or(0), notes);
    waitForArchive(desk.records);
    QCOMPARE(desk.session.record().snapshot.notes.customer, QStringLiteral("B. Customer"));
}

void tst_CheckupSession::visitIsOfTheArchiveThatKeptIt()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    desk.run(SnapshotScope::Quick);
    QCOMPARE(desk.session.record().visitId.value_or(0), 1);

    desk.turnToOtherArchive();
    QCOMPARE(desk.session.kept(), Kept::No);
    Snapshot other = desk.session.record().snapshot;
    other.time = other.time.addDays(1);
    desk.records.keep(other, std::nullopt);
    waitForArchive(desk.records);
    QCOMPARE(visitsOf(desk.records).value(0).id, 1);

    SnapshotNotes notes;
    notes.customer = QStringLiteral("A. Customer");
    desk.session.setNotes(notes);
    QCOMPARE(visitsOf(desk.records).value(0).notes.customer, QString());
    desk.session.keep();
    waitForArchive(desk.records);
    QCOMPARE(desk.session.kept(), Kept::Yes);
    QCOMPARE(visitCount(desk.records), 2);
}

void tst_CheckupSession::lateAnswerOfTheArchiveBefore()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    desk.session.start(SnapshotScope::Quick, Search::Heard);
    waitUntil([&desk] { return !desk.session.isRunning(); });
    QCOMPARE(desk.session.kept(), Kept::Asked);
    desk.turnToOtherArchive();
    QCOMPARE(desk.session.kept(), Kept::No);
    QVERIFY(!desk.session.record().visitId);
    QCOMPARE(visitCount(desk.records), 0);
}

void tst_CheckupSession::sameArchiveOpenedAgainHasTheVisit()
{
    Desk desk(healthy());
    QVERIFY(desk.host.connectToBus());
    desk.run(SnapshotScope::Quick);
    desk.records.reopen();
    waitForArchive(desk.records);
    QCOMPARE(desk.session.kept(), Kept::Yes);
    QCOMPARE(desk.session.record().visitId.value_or(0), 1);
}

void tst_CheckupSession::languageJudgesAnew()
{
    Desk desk(troubled());
    QVERIFY(desk.host.connectToBus());
    desk.run(SnapshotScope::Full);
    desk.session.setLanguage(QStringLiteral("de"));
    const QString sentence = CheckupWords::sentence(*desk.component(TroubledVehicle::weakBattery));
    QVERIFY2(sentence.startsWith(QStringLiteral("Zelle 7 ")), qPrintable(sentence));
}

void tst_CheckupSession::archiveThatIsAwayIsSaid()
{
    Desk desk(healthy());
    qputenv("DRAXEL_ARCHIVE", "/proc/none/here.dxarchive");
    QVERIFY(desk.host.connectToBus());
    desk.run();
    QCOMPARE(desk.session.kept(), Kept::Waiting);
    QVERIFY(!desk.session.keepingProblem().isEmpty());
}

void tst_CheckupSession::visitThatCannotBeDeliveredIsSaid()
{
    Desk desk(healthy());
    const QDir folder(QFileInfo(desk.archive.fileName()).dir().filePath(QStringLiteral("draxel/waiting")));
    QVERIFY(folder.mkpath(QStringLiteral(".")));
    QFile broken(folder.filePath(QStringLiteral("1.dxsnap")));
    QVERIFY(broken.open(QIODevice::WriteOnly) && broken.write("{") == 1);
    broken.close();
    const QSignalSpy failed(&desk.records, &VehicleRecords::deliveryFailed);
    waitForArchive(desk.records);
    QCOMPARE(failed.count(), 1);
    QVERIFY(failed.first().first().toString().startsWith(
        QStringLiteral("The file %1 is no good snapshot: ").arg(broken.fileName())));
}

void tst_CheckupSession::whatCanBeKeptNowhereIsSaid()
{
    Desk desk(healthy());
    qputenv("DRAXEL_ARCHIVE", "/proc/none/here.dxarchive");
    QFile inTheWay(QFileInfo(desk.archive.fileName()).dir().filePath(QStringLiteral("draxel"))); // no folder
    QVERIFY(inTheWay.open(QIODevice::WriteOnly));
    QVERIFY(desk.host.connectToBus());
    desk.run(SnapshotScope::Quick);
    QCOMPARE(desk.session.kept(), Kept::Failed);
    QVERIFY(!desk.session.keepingProblem().isEmpty());
}

QTEST_GUILESS_MAIN(tst_CheckupSession)
#include "tst_checkupsession.moc"
