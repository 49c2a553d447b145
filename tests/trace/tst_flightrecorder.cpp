// SPDX-License-Identifier: MIT
#include "traceframes.h"

#include <tests/support/unprivileged.h>
#include <trace/recording/faultsaving.h>
#include <trace/recording/flightrecorder.h>
#include <trace/recording/tracefolder.h>

#include <QTemporaryDir>
#include <QtTest>

namespace {

constexpr qint64 second = 1'000'000; // us
constexpr size_t chunk = FlightRecorder::chunkSize;

void record(FlightRecorder *recorder, qint64 from, int frames, qint64 apart)
{
    for (int i = 0; i < frames; ++i)
        recorder->add(traceFrame(from + i * apart, static_cast<quint32>(i % 0x800), ""));
}

void writeLarge(const QString &fileName)
{
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(QByteArray(2'000'000, 'x')), qint64(2'000'000));
}

} // namespace

/*! The last minutes in memory, and when and where they are saved. */
class tst_FlightRecorder : public QObject
{
    Q_OBJECT

private slots:
    void nothing();
    void lastMinutes();
    void partOfThem();
    void memoryIsGivenBack();
    void numberIsBounded();
    void backwardTimesStay();
    void frozenOnesStay();
    void savesAfterAFault();
    void savesNotTooOften();
    void folderIsBounded();
    void folderWhoseFilesStay();
    void newestAloneIsTooLarge();
    void folderKeepsAReserve();
    void folderThatCannotBe();
};

void tst_FlightRecorder::nothing()
{
    FlightRecorder recorder;
    recorder.setHead({{QStringLiteral("can0")}, true});
    const Trace trace = recorder.all();
    QVERIFY(trace.frames.empty());
    QVERIFY(trace.missing == MissingFrames::None);
    QCOMPARE(trace.head.channels, QStringList{QStringLiteral("can0")});
    QVERIFY(trace.head.hasTimeOfDay);
}

void tst_FlightRecorder::lastMinutes()
{
    FlightRecorder recorder({600 * second, 1'000'000});
    // Twenty minutes, ten frames a second
    record(&recorder, 0, 12001, second / 10);
    const Trace trace = recorder.all();
    QCOMPARE(trace.frames.size(), size_t(6001));
    QCOMPARE(trace.frames.front().time, 600 * second);
    QCOMPARE(trace.frames.back().time, 1200 * second);
    QVERIFY(trace.missing == MissingFrames::None);
}

void tst_FlightRecorder::partOfThem()
{
    FlightRecorder recorder({600 * second, 1'000'000});
    record(&recorder, 0, 1001, second);
    QCOMPARE(recorder.last(10 * second).frames.size(), size_t(11));
    QCOMPARE(recorder.last(10 * second).frames.front().time, 990 * second);
    QCOMPARE(recorder.last(10'000 * second).frames.front().time, 400 * second);
    recorder.clear();
    QVERIFY(recorder.all().frames.empty());
    QCOMPARE(recorder.size(), size_t(0));
    // A clock that begins anew
    record(&recorder, 0, 3, second);
    QCOMPARE(recorder.all().frames.size(), size_t(3));
}

void tst_FlightRecorder::memoryIsGivenBack()
{
    FlightRecorder recorder({second, 1'000'000});
    record(&recorder, 0, int(chunk), 100);
    record(&recorder, 100 * second, int(chunk), 100);
    QCOMPARE(recorder.size(), chunk);
}

void tst_FlightRecorder::numberIsBounded()
{
    FlightRecorder recorder({600 * second, 3 * chunk});
    record(&recorder, 0, int(3 * chunk), 1);
    QCOMPARE(recorder.size(), 3 * chunk);
    QVERIFY(!recorder.isShort());
    record(&recorder, 3 * chunk, 1, 1);
    QCOMPARE(recorder.size(), 2 * chunk + 1);
    QVERIFY(recorder.isShort());
    QVERIFY(recorder.all().missing == MissingFrames::Oldest);
    QCOMPARE(recorder.all().frames.front().time, qint64(chunk));
    // What is missing is not of the last millisecond,
    QVERIFY(recorder.last(1000).missing == MissingFrames::None);
    // and ten minutes later of nothing.
    record(&recorder, 700 * second, 1, 1);
    QVERIFY(recorder.all().missing == MissingFrames::None);
}

void tst_FlightRecorder::backwardTimesStay()
{
    FlightRecorder recorder({10 * second, 1'000'000});
    for (const qint64 time : {100, 99, 95, 80, 98})
        recorder.add(traceFrame(time * second, 1, ""));
    const Trace trace = recorder.all();
    QCOMPARE(trace.frames.size(), size_t(4));
    QCOMPARE(trace.frames.back().time, 98 * second);
}

void tst_FlightRecorder::frozenOnesStay()
{
    FlightRecorder recorder({600 * second, 10 * chunk});
    record(&recorder, 0, 100, second / 10);
    FlightRecorder frozen = recorder.freeze();
    record(&recorder, 100 * second, 100, second / 10);
    QCOMPARE(frozen.all().frames.size(), size_t(100));
    QCOMPARE(frozen.all().frames.back().time, 99 * second / 10);
    QCOMPARE(recorder.all().frames.size(), size_t(200));
    record(&frozen, 200 * second, 1, second); // nor does it change the other one
    QCOMPARE(recorder.all().frames.size(), size_t(200));
    QCOMPARE(frozen.all().frames.size(), size_t(101));
    record(&recorder, 3000 * second, 1, second); // all others are too old now
    QCOMPARE(recorder.all().frames.size(), size_t(1));
    QCOMPARE(frozen.all().frames.size(), size_t(101));
}

void tst_FlightRecorder::savesAfterAFault()
{
    FaultSaving saving({10 * second, 60 * second});
    QVERIFY(!saving.takeDue(1000 * second));
    saving.handleFault(1000 * second);
    QVERIFY(saving.isWaiting());
    QVERIFY(!saving.takeDue(1010 * second - 1));
    saving.handleFault(1009 * second); // is saved with it
    QVERIFY(saving.takeDue(1010 * second));
    QVERIFY(!saving.takeDue(1011 * second));
    QVERIFY(!saving.isWaiting());
}

void tst_FlightRecorder::savesNotTooOften()
{
    FaultSaving saving({10 * second, 60 * second});
    saving.handleFault(0);
    QVERIFY(saving.takeDue(10 * second));
    saving.handleFault(11 * second);
    QVERIFY(!saving.takeDue(70 * second - 1));
    QVERIFY(saving.takeDue(70 * second));
    saving.handleFault(1000 * second);
    QVERIFY(saving.takeDue(1010 * second));
}

void tst_FlightRecorder::folderIsBounded()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a/traces"));
    Trace trace;
    trace.head = {{QStringLiteral("can0")}, true};
    for (int i = 0; i < 1000; ++i)
        trace.frames.push_back(traceFrame(1436509052249713 + i * 7919, static_cast<quint32>(i), "1122"));

    QString error;
    QDateTime time(QDate(2026, 11, 22), QTime(8, 30, 15), Qt::UTC);
    const QString first = TraceFolder(path, 1'000'000).save(trace, time, &error);
    QCOMPARE(first, path + QStringLiteral("/trace 2026-11-22 08.30.15.log.gz"));
    QCOMPARE(TraceFile::load(first, TraceFile::Limits(), &error)->frames.size(), size_t(1000));

    // What it has not named stays, however old it is.
    QFile other(path + QStringLiteral("/mine.log.gz"));
    QVERIFY(other.open(QIODevice::WriteOnly));
    other.write(QByteArray(100'000, 'x'));
    other.close();
    const qint64 size = QFileInfo(first).size();
    const TraceFolder bounded(path, 3 * size + size / 2);
    for (int i = 0; i < 5; ++i)
        bounded.save(trace, time = time.addSecs(1), &error);
    QCOMPARE(bounded.files().size(), 3);
    QCOMPARE(bounded.files().first(), path + QStringLiteral("/trace 2026-11-22 08.30.18.log.gz"));
    QVERIFY(other.exists());
    // The newest one stays, whatever its size.
    TraceFolder(path, 1).save(trace, time.addSecs(1), &error);
    QCOMPARE(bounded.files(), QStringList{path + QStringLiteral("/trace 2026-11-22 08.30.21.log.gz")});
}

/*! Nothing can be removed from a folder that may only be read; what is saved goes through links to elsewhere. */
void tst_FlightRecorder::folderWhoseFilesStay()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("traces"));
    const QString elsewhere = folder.filePath(QStringLiteral("elsewhere"));
    QVERIFY(QDir().mkdir(path) && QDir().mkdir(elsewhere));
    writeLarge(path + QStringLiteral("/trace 2026-11-22 08.30.11.log.gz"));
    writeLarge(path + QStringLiteral("/trace 2026-11-22 08.30.12.log.gz"));
    QVERIFY(QFile::link(elsewhere + QStringLiteral("/new.log.gz"),
                        path + QStringLiteral("/trace 2026-11-22 08.30.15.log.gz")));
    const Unprivileged unprivileged({folder.path(), path, elsewhere});
    QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::ExeOwner));

    const QDateTime time(QDate(2026, 11, 22), QTime(8, 30, 15), Qt::UTC);
    const TraceFolder traces(path, 3'000'000);
    QString error;
    QCOMPARE(traces.save(Trace(), time, &error), path + QStringLiteral("/trace 2026-11-22 08.30.15.log.gz"));
    QCOMPARE(error, QStringLiteral("The folder %1 takes more than 3 MB: trace 2026-11-22 08.30.11.log.gz "
                                   "cannot be removed.")
                        .arg(path));
    QCOMPARE(traces.files().size(), 3);

    QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    error.clear();
    QVERIFY(!traces.save(Trace(), time.addSecs(1), &error).isEmpty());
    QCOMPARE(error, QString());
    QCOMPARE(traces.files().first(), path + QStringLiteral("/trace 2026-11-22 08.30.12.log.gz"));
    QCOMPARE(traces.files().size(), 3);
}

/*! The newest one stays, and nobody is to mend that. */
void tst_FlightRecorder::newestAloneIsTooLarge()
{
    const QTemporaryDir folder;
    QString error;
    const QDateTime time(QDate(2026, 11, 22), QTime(8, 30, 15), Qt::UTC);
    Trace trace;
    trace.frames.push_back(traceFrame(0, 1, ""));
    QVERIFY(!TraceFolder(folder.path(), 1).save(trace, time, &error).isEmpty());
    QCOMPARE(error, QString());
}

void tst_FlightRecorder::folderKeepsAReserve()
{
    const QTemporaryDir folder;
    QString error;
    qint64 left = 200'000'000;
    const TraceFolder traces(folder.path(), 1'000'000, [&left](const QString &) { return left; });
    QDateTime time(QDate(2026, 11, 22), QTime(8, 30, 15), Qt::UTC);
    QVERIFY(!traces.save(Trace(), time, &error).isEmpty());
    left = 199'999'999;
    QCOMPARE(traces.save(Trace(), time.addSecs(1), &error), QString());
    QCOMPARE(error, QStringLiteral("Less than 200 MB are left on the disk of %1.").arg(folder.path()));
    QCOMPARE(traces.files().size(), 1);
    left = -1; // nobody knows
    QVERIFY(!traces.save(Trace(), time.addSecs(2), &error).isEmpty());
}

void tst_FlightRecorder::folderThatCannotBe()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("file")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QString error;
    const QString path = file.fileName() + QStringLiteral("/traces");
    QCOMPARE(TraceFolder(path, 1000).save(Trace(), QDateTime::currentDateTime(), &error), QString());
    QCOMPARE(error, QStringLiteral("The folder %1 cannot be made.").arg(path));
}

QTEST_GUILESS_MAIN(tst_FlightRecorder)
#include "tst_flightrecorder.moc"
