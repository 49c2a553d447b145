// SPDX-License-Identifier: MIT
#include "archiveplaces.h"
#include "vehicles.h"

#include <archive/archiveworker.h>
#include <archive/visitkeeper.h>
#include <archive/waitingverdict.h>
#include <snapshot/snapshotfile.h>

#include <QDir>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

using namespace Vehicles;

namespace {

ArchiveAddress addressOf(const QString &text)
{
    QString error;
    return ArchiveAddress::parse(text, &error).value_or(ArchiveAddress());
}

VisitVerdict warned(int warnings)
{
    VisitVerdict verdict;
    verdict.verdict = Verdict::Warning;
    verdict.faults = 4;
    verdict.warnings = warnings;
    verdict.notes = 2;
    verdict.notChecked = 3;
    return verdict;
}

/*! Of the newest visit; -1 when it was not judged. */
int warningsOf(Archive *archive)
{
    QString error;
    const auto visits = archive->visits({}, &error);
    const bool isJudged = visits && !visits->isEmpty() && visits->first().verdict;
    return isJudged ? visits->first().verdict->warnings : -1;
}

} // namespace

/*! The archive in its thread, and what keeps every snapshot. */
class tst_VisitKeeper : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_places.start(); }
    void init()
    {
        m_waiting = WaitingVisits(m_places.filePath(QStringLiteral("waiting-%1").arg(++m_folders)));
    }

    void opensInItsThread_data() { ArchivePlaces::addRows(); }
    void opensInItsThread();
    void saysWhyItDoesNotOpen();
    void answersInOrder();
    void answersNobodyWhoHasGone();
    void endsWhenAllIsDone_data() { ArchivePlaces::addRows(); }
    void endsWhenAllIsDone();
    void nothingWaitsInTheWindow();

    void keeps();
    void waitsWhileTheArchiveIsAway();
    void deliversWhenItIsBack();
    void archiveThatComesBackIsFoundByTheNextVisit();
    void failsWhereNothingCanBeWritten();
    void brokenFileThatWaitsStays();
    void sameProblemIsToldOnce();
    void sameSnapshotWaitsOnce();
    void verdictWaitsToo();
    void deliversTheLastVerdict();
    void waitingVerdictIsNewerThanTheArchives();
    void verdictOfTheArchiveIsNewerThanTheWaitingOne_data();
    void verdictOfTheArchiveIsNewerThanTheWaitingOne();
    void unusableVerdictsStopNothing_data();
    void unusableVerdictsStopNothing();

private:
    QString waitingFolder() const { return m_places.filePath(QStringLiteral("waiting-%1").arg(m_folders)); }
    QStringList waitingFiles(const QString &names = QStringLiteral("*")) const
    {
        return QDir(waitingFolder()).entryList({names}, QDir::Files);
    }

    ArchivePlaces m_places;
    WaitingVisits m_waiting{QString()};
    int m_folders = 0;
    QString m_error;
};

void tst_VisitKeeper::opensInItsThread()
{
    ArchiveWorker worker;
    QSignalSpy opened(&worker, &ArchiveWorker::opened);
    worker.open(addressOf(m_places.make()));
    QVERIFY(!worker.isOpen());
    QCOMPARE(worker.pendingCount(), 1);
    QTRY_COMPARE(opened.size(), 1);
    QVERIFY(worker.isOpen());
    QCOMPARE(worker.pendingCount(), 0);

    QThread *workThread = nullptr;
    QThread *doneThread = nullptr;
    worker.ask(
        this, [](Archive &, QString *) { return QThread::currentThread(); },
        [&](QThread *thread, const QString &) {
            workThread = thread;
            doneThread = QThread::currentThread();
        });
    QTRY_VERIFY(workThread != nullptr);
    QVERIFY(workThread != QThread::currentThread());
    QCOMPARE(doneThread, QThread::currentThread());
}

void tst_VisitKeeper::saysWhyItDoesNotOpen()
{
    const QString file = m_places.filePath(QStringLiteral("nowhere/a.dxarchive"));
    ArchiveWorker worker;
    QSignalSpy failed(&worker, &ArchiveWorker::openFailed);
    worker.open(addressOf(file));
    QTRY_COMPARE(failed.size(), 1);
    QVERIFY(!worker.isOpen());
    QCOMPARE(worker.problem(), failed.first().first().toString());
    QCOMPARE(worker.problem(),
             QStringLiteral("The archive %1 could not be opened. Look whether its folder is there "
                            "and may be written.")
                 .arg(file));
}

void tst_VisitKeeper::answersInOrder()
{
    ArchiveWorker worker;
    QVector<int> answers;
    for (int i = 0; i < 5; ++i) {
        worker.ask(
            this, [i](Archive &, QString *) { return i; },
            [&answers](int answer, const QString &) { answers.append(answer); });
    }
    QTRY_COMPARE(answers, (QVector<int>{0, 1, 2, 3, 4}));
}

void tst_VisitKeeper::answersNobodyWhoHasGone()
{
    ArchiveWorker worker;
    bool isAnswered = false;
    bool isLastAnswered = false;
    {
        QObject gone;
        worker.ask(
            &gone, [](Archive &, QString *) { return 1; },
            [&isAnswered](int, const QString &) { isAnswered = true; });
    }
    worker.ask(
        this, [](Archive &, QString *) { return 1; },
        [&isLastAnswered](int, const QString &) { isLastAnswered = true; });
    QTRY_VERIFY(isLastAnswered);
    QVERIFY(!isAnswered);
}

void tst_VisitKeeper::endsWhenAllIsDone()
{
    const QString address = m_places.make();
    {
        ArchiveWorker worker;
        VisitKeeper keeper(&worker, m_waiting);
        worker.open(addressOf(address));
        for (int n = 0; n < 5; ++n)
            keeper.keep(numbered(n));
    }
    QCOMPARE(OpenArchive(address).visits({}, &m_error)->size(), 5);
}

/*! The window is free while the archive works: the work is done only when the window's thread lets it. */
void tst_VisitKeeper::nothingWaitsInTheWindow()
{
    QSemaphore semaphore;
    ArchiveWorker worker;
    VisitKeeper keeper(&worker, m_waiting);
    bool isDone = false;
    worker.ask(
        this,
        [&semaphore](Archive &, QString *) {
            semaphore.acquire();
            return true;
        },
        [&isDone](bool, const QString &) { isDone = true; });
    worker.open(addressOf(m_places.filePath(QStringLiteral("later.dxarchive"))));
    keeper.keep(numbered(1));
    keeper.deliver();
    QVERIFY(!isDone);
    QCOMPARE(worker.pendingCount(), 4);
    semaphore.release();
    QTRY_VERIFY(isDone);
    QTRY_COMPARE(worker.pendingCount(), 0);
}

void tst_VisitKeeper::keeps()
{
    const QString address = m_places.filePath(QStringLiteral("keeps.dxarchive"));
    ArchiveWorker worker;
    VisitKeeper keeper(&worker, m_waiting);
    QSignalSpy kept(&keeper, &VisitKeeper::kept);
    QSignalSpy delivered(&keeper, &VisitKeeper::delivered);
    QSignalSpy problems(&keeper, &VisitKeeper::deliveryFailed);
    worker.open(addressOf(address));
    VisitVerdict verdict;
    verdict.verdict = Verdict::Ok;
    keeper.keep(numbered(1), verdict);
    QTRY_COMPARE(kept.size(), 1);
    const auto visit = kept.first().first().value<KeptVisit>();
    QVERIFY(visit.isNew);
    QVERIFY(OpenArchive(address).visit(visit.visitId, &m_error)->verdict);

    verdict.verdict = Verdict::Warning; // the same snapshot, checked again
    keeper.keep(numbered(1), verdict);
    QTRY_COMPARE(worker.pendingCount(), 0);
    QCOMPARE(OpenArchive(address).visit(visit.visitId, &m_error)->verdict->verdict, Verdict::Warning);
    QCOMPARE(m_waiting.count(), 0);
    // Nothing has waited, so there is nothing to tell of it.
    QTRY_COMPARE(worker.pendingCount(), 0);
    QCOMPARE(delivered.size(), 0);
    QCOMPARE(problems.size(), 0);
}

void tst_VisitKeeper::waitsWhileTheArchiveIsAway()
{
    ArchiveWorker worker;
    VisitKeeper keeper(&worker, m_waiting);
    QSignalSpy waiting(&keeper, &VisitKeeper::isWaiting);
    worker.open(addressOf(m_places.filePath(QStringLiteral("away/a.dxarchive"))));
    keeper.keep(numbered(1));
    QTRY_COMPARE(waiting.size(), 1);
    QVERIFY(waiting.first().first().toString().startsWith(QStringLiteral("There is no archive ")));
    QCOMPARE(m_waiting.count(), 1);
}

void tst_VisitKeeper::deliversWhenItIsBack()
{
    QVERIFY(m_waiting.save(numbered(1), std::nullopt, &m_error));
    QVERIFY(m_waiting.save(numbered(2), std::nullopt, &m_error));
    const QString address = m_places.filePath(QStringLiteral("back.dxarchive"));
    ArchiveWorker worker;
    VisitKeeper keeper(&worker, m_waiting);
    QSignalSpy delivered(&keeper, &VisitKeeper::delivered);
    worker.open(addressOf(address));
    QTRY_COMPARE(delivered.size(), 1);
    QCOMPARE(delivered.first().first().toInt(), 2);
    QCOMPARE(m_waiting.count(), 0);
    OpenArchive archive(address);
    const auto visits = archive.visits({}, &m_error);
    QCOMPARE(visits->size(), 2);
    QCOMPARE(SnapshotFile::toJson(*archive.load(visits->first().id, &m_error)),
             SnapshotFile::toJson(numbered(2)));
}

void tst_VisitKeeper::archiveThatComesBackIsFoundByTheNextVisit()
{
    const QString folder = m_places.filePath(QStringLiteral("share"));
    const QString address = folder + QStringLiteral("/a.dxarchive");
    QVERIFY(QDir().mkpath(folder));
    { // it was there before
        OpenArchive made(address);
    }
    QVERIFY(QDir().rename(folder, folder + QStringLiteral("-away")));
    ArchiveWorker worker;
    VisitKeeper keeper(&worker, m_waiting);
    QSignalSpy waiting(&keeper, &VisitKeeper::isWaiting);
    QSignalSpy kept(&keeper, &VisitKeeper::kept);
    QSignalSpy delivered(&keeper, &VisitKeeper::delivered);
    worker.open(addressOf(address));
    keeper.keep(numbered(1));
    QTRY_COMPARE(waiting.size(), 1);
    QVERIFY(QDir().rename(folder + QStringLiteral("-away"), folder));
    keeper.keep(numbered(2));
    QTRY_COMPARE(kept.size(), 1);
    QTRY_COMPARE(delivered.size(), 1);
    QCOMPARE(OpenArchive(address).visits({}, &m_error)->size(), 2);
}

void tst_VisitKeeper::failsWhereNothingCanBeWritten()
{
    const QString file = m_places.filePath(QStringLiteral("file"));
    QFile blocked(file);
    QVERIFY(blocked.open(QIODevice::WriteOnly));
    const WaitingVisits nowhere(file + QStringLiteral("/waiting"));
    ArchiveWorker worker;
    VisitKeeper keeper(&worker, nowhere);
    QSignalSpy failed(&keeper, &VisitKeeper::failed);
    worker.open(addressOf(m_places.filePath(QStringLiteral("away/a.dxarchive"))));
    keeper.keep(numbered(1));
    QTRY_COMPARE(failed.size(), 1);
    QVERIFY(failed.first().first().toString().endsWith(
        QStringLiteral("The folder %1/waiting could not be made.").arg(file)));
}

void tst_VisitKeeper::brokenFileThatWaitsStays()
{
    QVERIFY(m_waiting.save(numbered(2), std::nullopt, &m_error));
    const QString folder = m_places.filePath(QStringLiteral("waiting-%1").arg(m_folders));
    QFile broken(folder + QStringLiteral("/00000000-000000-0.dxsnap"));
    QVERIFY(broken.open(QIODevice::WriteOnly) && broken.write("{") == 1);
    broken.close();
    ArchiveWorker worker;
    VisitKeeper keeper(&worker, m_waiting);
    QSignalSpy delivered(&keeper, &VisitKeeper::delivered);
    QSignalSpy problems(&keeper, &VisitKeeper::deliveryFailed);
    worker.open(addressOf(m_places.filePath(QStringLiteral("broken.dxarchive"))));
    QTRY_COMPARE(problems.size(), 1);
    QVERIFY(problems.first().first().toString().contains(broken.fileName()));
    QCOMPARE(delivered.size(), 1); // the good one, behind it
    QCOMPARE(m_waiting.count(), 1);
    QVERIFY(broken.exists());
}

void tst_VisitKeeper::sameProblemIsToldOnce()
{
    QVERIFY(QDir().mkpath(waitingFolder()));
    const auto spoil = [this](const char *name) {
        QFile broken(waitingFolder() + QLatin1Char('/') + QLatin1String(name));
        return broken.open(QIODevice::WriteOnly) && broken.write("{") == 1;
    };
    QVERIFY(spoil("1.dxsnap"));
    ArchiveWorker worker;
    VisitKeeper keeper(&worker, m_waiting);
    QSignalSpy problems(&keeper, &VisitKeeper::deliveryFailed);
    QSignalSpy kept(&keeper, &VisitKeeper::kept);
    worker.open(addressOf(m_places.filePath(QStringLiteral("once.dxarchive"))));
    QTRY_COMPARE(problems.size(), 1);
    keeper.keep(numbered(1));
    QTRY_COMPARE(kept.size(), 1);
    keeper.deliver();
    QTRY_COMPARE(worker.pendingCount(), 0);
    QCOMPARE(problems.size(), 1);

    QVERIFY(spoil("2.dxsnap")); // another reason
    keeper.deliver();
    QTRY_COMPARE(problems.size(), 2);

    QVERIFY(QDir(waitingFolder()).removeRecursively()); // all is well again
    keeper.deliver();
    QVERIFY(QDir().mkpath(waitingFolder()));
    QTRY_COMPARE(worker.pendingCount(), 0);
    QVERIFY(spoil("1.dxsnap"));
    keeper.deliver();
    QTRY_COMPARE(problems.size(), 3);
}

void tst_VisitKeeper::sameSnapshotWaitsOnce()
{
    QVERIFY(m_waiting.save(numbered(1), std::nullopt, &m_error));
    QVERIFY(m_waiting.save(numbered(1), std::nullopt, &m_error));
    QCOMPARE(m_waiting.count(), 1);
}

void tst_VisitKeeper::verdictWaitsToo()
{
    {
        ArchiveWorker worker;
        VisitKeeper keeper(&worker, m_waiting);
        worker.open(addressOf(m_places.filePath(QStringLiteral("away/a.dxarchive"))));
        keeper.keep(numbered(1), warned(7));
    } // which ends when it is done
    QCOMPARE(m_waiting.count(), 1);
    QCOMPARE(waitingFiles().size(), 2);

    const QString address = m_places.filePath(QStringLiteral("verdict.dxarchive"));
    ArchiveWorker worker;
    VisitKeeper keeper(&worker, m_waiting);
    QSignalSpy delivered(&keeper, &VisitKeeper::delivered);
    worker.open(addressOf(address));
    QTRY_COMPARE(delivered.size(), 1);
    const auto visits = OpenArchive(address).visits({}, &m_error);
    QCOMPARE(visits->size(), 1);
    const std::optional<VisitVerdict> verdict = visits->first().verdict;
    QVERIFY(verdict);
    QCOMPARE(verdict->verdict, Verdict::Warning);
    QCOMPARE(verdict->faults, 4);
    QCOMPARE(verdict->warnings, 7);
    QCOMPARE(verdict->notes, 2);
    QCOMPARE(verdict->notChecked, 3);
    QCOMPARE(waitingFiles(), QStringList());
}

void tst_VisitKeeper::deliversTheLastVerdict()
{
    QVERIFY(m_waiting.save(numbered(1), warned(1), &m_error));
    QVERIFY(m_waiting.save(numbered(1), warned(5), &m_error));
    QVERIFY(m_waiting.save(numbered(1), std::nullopt, &m_error)); // says nothing of it
    QCOMPARE(waitingFiles().size(), 2);
    OpenArchive archive(m_places.filePath(QStringLiteral("last.dxarchive")));
    QCOMPARE(m_waiting.deliver(archive).visits.size(), 1);
    QCOMPARE(warningsOf(&archive), 5);
}

void tst_VisitKeeper::waitingVerdictIsNewerThanTheArchives()
{
    OpenArchive archive(m_places.filePath(QStringLiteral("older.dxarchive")));
    QVERIFY(archive.add(numbered(1), warned(1), &m_error));
    QVERIFY(m_waiting.save(numbered(1), warned(2), &m_error));
    QCOMPARE(m_waiting.deliver(archive).visits.size(), 1);
    QCOMPARE(warningsOf(&archive), 2);
}

void tst_VisitKeeper::verdictOfTheArchiveIsNewerThanTheWaitingOne_data()
{
    QTest::addColumn<int>("given"); // warnings of what is kept; 0: it has no verdict
    QTest::addColumn<int>("warnings");
    QTest::newRow("with a verdict") << 2 << 2;
    QTest::newRow("without one") << 0 << 1;
}

/*! What waited was checked again when the archive was back: before it is delivered, the archive has the newer one. */
void tst_VisitKeeper::verdictOfTheArchiveIsNewerThanTheWaitingOne()
{
    const QString address = m_places.filePath(QStringLiteral("newer-%1.dxarchive").arg(m_folders));
    { // it is there, and found by the visit that is kept: nothing is delivered before
        OpenArchive made(address);
    }
    ArchiveWorker worker;
    VisitKeeper keeper(&worker, m_waiting);
    QSignalSpy delivered(&keeper, &VisitKeeper::delivered);
    worker.open(addressOf(address));
    QTRY_COMPARE(worker.pendingCount(), 0);
    QVERIFY(m_waiting.save(numbered(1), warned(1), &m_error));
    QFETCH(int, given);
    keeper.keep(numbered(1), given > 0 ? std::optional(warned(given)) : std::nullopt);
    QTRY_COMPARE(delivered.size(), 1);
    OpenArchive archive(address);
    QTEST(warningsOf(&archive), "warnings");
    QCOMPARE(waitingFiles(), QStringList());
}

void tst_VisitKeeper::unusableVerdictsStopNothing_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("half") << QByteArray(R"({"verdict":3,"fau)");
    QTest::newRow("no object") << QByteArray("[3]");
    QTest::newRow("number missing") << QByteArray(R"({"verdict":3,"faults":0,"warnings":1,"notes":0})");
    QTest::newRow("unknown word") << QByteArray(
        R"({"verdict":5,"faults":0,"warnings":1,"notes":0,"notChecked":0})");
    QTest::newRow("negative count") << QByteArray(
        R"({"verdict":3,"faults":0,"warnings":-1,"notes":0,"notChecked":0})");
    QTest::newRow("too long") << QByteArray(
                                     R"({"verdict":3,"faults":0,"warnings":1,"notes":0,"notChecked":0})")
                                     .leftJustified(4097, ' ');
}

void tst_VisitKeeper::unusableVerdictsStopNothing()
{
    QFETCH(QByteArray, text);
    const std::optional<QString> snapshot = m_waiting.save(numbered(1), warned(1), &m_error);
    QVERIFY(snapshot);
    const QStringList verdicts = waitingFiles(QStringLiteral("*.verdict"));
    QCOMPARE(verdicts.size(), 1);
    for (const QString &name : {verdicts.first(), QStringLiteral("20260101-000000-0.verdict")}) {
        QFile file(waitingFolder() + QLatin1Char('/') + name); // the second one has no snapshot
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(text), qint64(text.size()));
    }
    QVERIFY(!WaitingVerdict::load(*snapshot));
    OpenArchive archive(m_places.filePath(QStringLiteral("%1.dxarchive").arg(m_folders)));
    const WaitingVisits::Delivery delivery = m_waiting.deliver(archive);
    QCOMPARE(delivery.problems, QStringList());
    QCOMPARE(delivery.visits.size(), 1);
    QVERIFY(!archive.visits({}, &m_error)->first().verdict);
    QCOMPARE(waitingFiles(QStringLiteral("*.dxsnap")), QStringList());
}

QTEST_GUILESS_MAIN(tst_VisitKeeper)
#include "tst_visitkeeper.moc"
