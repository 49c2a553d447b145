// SPDX-License-Identifier: MIT
#include "archiveplaces.h"
#include "vehicles.h"

#include <archive/archivetransfer.h>
#include <snapshot/snapshotfile.h>
#include <tests/support/filesizelimit.h>

#include <QtTest>

using namespace Vehicles;

namespace {

void writeFile(const QString &name, const QByteArray &bytes)
{
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

QByteArray readFile(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

/*! Visits on their way out of archives and into them. */
class tst_ArchiveTransfer : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_places.start(); }

    void importsASnapshot();
    void importsAnExchangeFile();
    void importTellsWhatIsWrong_data();
    void importTellsWhatIsWrong();
    void exportsAVisit();
    void namesFilesForPeople();
    void exportsIntoAFolder();
    void folderThatCannotBeMade();
    void copiesEverything_data() { ArchivePlaces::addRows(); }
    void copiesEverything();
    void copyLeavesWhatIsThere();
    void importsAnArchive();
    void copyTellsWhatItCouldNotRead();

private:
    ArchivePlaces m_places;
    QString m_error;
};

void tst_ArchiveTransfer::importsASnapshot()
{
    const QString file = m_places.filePath(QStringLiteral("one.dxsnap"));
    QVERIFY(SnapshotFile::save(file, snapshot(bike(1)), &m_error));
    OpenArchive archive(m_places.filePath(QStringLiteral("import.dxarchive")));
    const ArchiveTransfer::Result result = ArchiveTransfer::import(file, archive);
    QCOMPARE(result.problems, QStringList());
    QCOMPARE(result.visits.size(), 1);
    QVERIFY(result.visits.first().isNew);
    QCOMPARE(SnapshotFile::toJson(*archive.load(result.visits.first().visitId, &m_error)), readFile(file));
    QVERIFY(!ArchiveTransfer::import(file, archive).visits.first().isNew);
}

void tst_ArchiveTransfer::importsAnExchangeFile()
{
    const QString file = m_places.filePath(QStringLiteral("one.dxxml"));
    writeFile(file, "<?xml version =\"1.0\" encoding=\"UTF-8\" ?>\n<dxtoolstorage pl_overwiew=\"1.0\" "
                    "date=\"Thu Sep 3 10:12:00 2026\">\n<nodes>\n<node nodeid=\"1\">\n"
                    "<object index=\"0x1018\" sub=\"0x01\" value=\"65534\" />\n"
                    "<object index=\"0x1018\" sub=\"0x02\" value=\"4540101\" />\n"
                    "<object index=\"0x1018\" sub=\"0x04\" value=\"1104001\" />\n"
                    "</node>\n</nodes>\n</dxtoolstorage>\n");
    OpenArchive archive(m_places.filePath(QStringLiteral("exchange.dxarchive")));
    const ArchiveTransfer::Result result = ArchiveTransfer::import(file, archive);
    QCOMPARE(result.problems, QStringList());
    const auto visit = archive.visit(result.visits.first().visitId, &m_error);
    QCOMPARE(visit->vehicle, QStringLiteral("1104001"));
    QCOMPARE(visit->time.date(), QDate(2026, 9, 3));
    QCOMPARE(visit->scope, SnapshotScope::Imported);
}

void tst_ArchiveTransfer::importTellsWhatIsWrong_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("broken snapshot") << SnapshotFile::toJson(snapshot(bike(1))).left(500);
    QTest::newRow("no archive") << QByteArray("SQLite format 3\0", 16) + QByteArray(5000, 'x');
}

void tst_ArchiveTransfer::importTellsWhatIsWrong()
{
    QFETCH(QByteArray, bytes);
    const QString file = m_places.filePath(QStringLiteral("bad"));
    writeFile(file, bytes);
    OpenArchive archive(m_places.filePath(QStringLiteral("bad.dxarchive")));
    const ArchiveTransfer::Result result = ArchiveTransfer::import(file, archive);
    QCOMPARE(result.visits.size(), 0);
    QCOMPARE(result.problems.size(), 1);
    QVERIFY2(result.problems.first().contains(file), qPrintable(result.problems.first()));
}

void tst_ArchiveTransfer::exportsAVisit()
{
    OpenArchive archive(m_places.filePath(QStringLiteral("export.dxarchive")));
    const qint64 id = archive.add(snapshot(bike(1)), std::nullopt, &m_error)->visitId;
    const QString file = m_places.filePath(QStringLiteral("visit.dxsnap"));
    QVERIFY2(ArchiveTransfer::exportToFile(archive, id, file, &m_error), qPrintable(m_error));
    QCOMPARE(readFile(file), SnapshotFile::toJson(snapshot(bike(1))));
    QVERIFY(!ArchiveTransfer::exportToFile(archive, id + 1, file, &m_error));
    QCOMPARE(m_error, QStringLiteral("The archive has no visit %1.").arg(id + 1));
    QCOMPARE(readFile(file), SnapshotFile::toJson(snapshot(bike(1))));
}

void tst_ArchiveTransfer::namesFilesForPeople()
{
    VisitInfo visit;
    visit.time = time();
    visit.vehicle = QStringLiteral("../Cargo: bike/7 \u00e4");
    visit.fingerprint = QStringLiteral("0123456789abcdef");
    QCOMPARE(ArchiveTransfer::fileNameOf(visit),
             QStringLiteral("2026-09-03 10-12 Cargo bike7 \u00e4 01234567.dxsnap"));
}

void tst_ArchiveTransfer::exportsIntoAFolder()
{
    OpenArchive archive(m_places.filePath(QStringLiteral("all.dxarchive")));
    archive.add(snapshot(bike(1), time(0)), std::nullopt, &m_error);
    archive.add(snapshot(bike(2), time(1)), std::nullopt, &m_error);
    const QString folder = m_places.filePath(QStringLiteral("all/of/them"));
    const auto visits = archive.visits({}, &m_error);
    ArchiveTransfer::Result result = ArchiveTransfer::exportToFolder(archive, *visits, folder);
    QCOMPARE(result.problems, QStringList());
    QCOMPARE(result.files.size(), 2);
    QCOMPARE(readFile(result.files.at(0)), SnapshotFile::toJson(snapshot(bike(2), time(1))));
    QCOMPARE(readFile(result.files.at(1)), SnapshotFile::toJson(snapshot(bike(1), time(0))));
    // Again: what is there is not written again, also where nothing can be written.
    const FileSizeLimit limit(0);
    result = ArchiveTransfer::exportToFolder(archive, *visits, folder);
    QCOMPARE(result.problems, QStringList());
    QCOMPARE(result.files.size(), 2);
}

void tst_ArchiveTransfer::folderThatCannotBeMade()
{
    OpenArchive archive(m_places.filePath(QStringLiteral("nofolder.dxarchive")));
    const QString file = m_places.filePath(QStringLiteral("file"));
    writeFile(file, "x");
    const ArchiveTransfer::Result result
        = ArchiveTransfer::exportToFolder(archive, {}, file + QStringLiteral("/a"));
    QCOMPARE(result.problems, QStringList(QStringLiteral("The folder %1/a could not be made.").arg(file)));
}

void tst_ArchiveTransfer::copiesEverything()
{
    VisitVerdict verdict;
    verdict.verdict = Verdict::Warning;
    verdict.warnings = 2;
    SnapshotNotes notes;
    notes.customer = QStringLiteral("Jansen");
    OpenArchive source(
        m_places.filePath(QStringLiteral("source-%1.dxarchive").arg(QLatin1String(QTest::currentDataTag()))));
    const auto first = source.add(snapshot(bike(1), time(0)), verdict, &m_error);
    const auto second = source.add(snapshot(bike(2), time(1)), std::nullopt, &m_error);
    source.setNotes(first->visitId, notes, &m_error);
    source.mergeVehicle(second->vehicleId, first->vehicleId, &m_error);
    source.renameVehicle(first->vehicleId, QStringLiteral("Cargo bike 7"), &m_error);

    OpenArchive target(m_places.make());
    const ArchiveTransfer::Result result = ArchiveTransfer::copy(source, target);
    QCOMPARE(result.problems, QStringList());
    QCOMPARE(result.visits.size(), 2);
    const auto vehicles = target.vehicles(QString(), &m_error);
    QCOMPARE(vehicles->size(), 1); // as the user had merged them
    QCOMPARE(vehicles->first().name, QStringLiteral("Cargo bike 7"));
    const auto visits = target.visits({}, &m_error);
    QCOMPARE(visits->size(), 2);
    QCOMPARE(visits->last().notes.customer, QStringLiteral("Jansen"));
    QVERIFY(visits->last().verdict);
    QCOMPARE(visits->last().verdict->warnings, 2);
    QCOMPARE(SnapshotFile::toJson(*target.load(visits->last().id, &m_error)),
             SnapshotFile::toJson(snapshot(bike(1), time(0))));
}

void tst_ArchiveTransfer::copyLeavesWhatIsThere()
{
    OpenArchive source(m_places.filePath(QStringLiteral("leave1.dxarchive")));
    OpenArchive target(m_places.filePath(QStringLiteral("leave2.dxarchive")));
    const qint64 there = source.add(snapshot(bike(1)), std::nullopt, &m_error)->visitId;
    const qint64 here = target.add(snapshot(bike(1)), std::nullopt, &m_error)->visitId;
    SnapshotNotes notes;
    notes.note = QStringLiteral("there");
    source.setNotes(there, notes, &m_error);
    notes.note = QStringLiteral("here");
    target.setNotes(here, notes, &m_error);
    const ArchiveTransfer::Result result = ArchiveTransfer::copy(source, target);
    QCOMPARE(result.visits.size(), 1);
    QVERIFY(!result.visits.first().isNew);
    QCOMPARE(target.visit(here, &m_error)->notes.note, QStringLiteral("here"));
}

void tst_ArchiveTransfer::importsAnArchive()
{
    const QString file = m_places.filePath(QStringLiteral("backup.dxarchive"));
    OpenArchive(file).add(snapshot(bike(1)), std::nullopt, &m_error);
    OpenArchive target(m_places.filePath(QStringLiteral("restored.dxarchive")));
    const ArchiveTransfer::Result result = ArchiveTransfer::import(file, target);
    QCOMPARE(result.problems, QStringList());
    QCOMPARE(target.visits({}, &m_error)->size(), 1);
}

void tst_ArchiveTransfer::copyTellsWhatItCouldNotRead()
{
    const QString file = m_places.filePath(QStringLiteral("partly.dxarchive"));
    OpenArchive source(file);
    const qint64 first = source.add(snapshot(bike(1), time(0)), std::nullopt, &m_error)->visitId;
    source.add(snapshot(bike(2), time(1)), std::nullopt, &m_error);
    ArchiveDatabase database;
    QVERIFY(database.open(*ArchiveAddress::parse(file, &m_error), ArchiveDatabase::Missing::Refuse));
    QVERIFY(database.run(QStringLiteral("DELETE FROM draxel_entries WHERE visit = %1").arg(first)));
    OpenArchive target(m_places.filePath(QStringLiteral("rest.dxarchive")));
    const ArchiveTransfer::Result result = ArchiveTransfer::copy(source, target);
    QCOMPARE(result.visits.size(), 1);
    QCOMPARE(result.problems.size(), 1);
    QVERIFY(result.problems.first().startsWith(QStringLiteral("Visit %1 is damaged").arg(first)));
}

QTEST_GUILESS_MAIN(tst_ArchiveTransfer)
#include "tst_archivetransfer.moc"
