// SPDX-License-Identifier: MIT
#include "traceframes.h"

#include <trace/recording/recordedtime.h>
#include <trace/recording/tracerecording.h>

#include <QCanBusFrame>
#include <QTemporaryDir>
#include <QtTest>

namespace {

constexpr qint64 second = 1'000'000; // us
constexpr qint64 plenty = Q_INT64_C(1'000'000'000'000);

const TraceHead head{{QStringLiteral("can0")}, true};

qint64 muchSpace(const QString &)
{
    return plenty;
}

TraceFrame frameAt(qint64 time)
{
    return traceFrame(1436509052249713 + time, 0x123, "1122334455667788");
}

} // namespace

/*! Recording into files. Time is passed in. */
class tst_TraceRecording : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void oneFile();
    void lastSecondAtMost();
    void rotatesBySize();
    void rotatesByTime();
    void numbersGoOn();
    void leavesFilesThatCameMeanwhile();
    void keepsTheNewest();
    void keepsAllUnlessAsked();
    void keepsWhatIsThereWhenTheNextCannotBeMade();
    void removesLaterWhatCannotBeRemovedNow();
    void filesThatOthersRemove();
    void names_data();
    void names();
    void reserveAtTheBeginning();
    void reserveWhileRecording();
    void unknownSpace();
    void noReserve();
    void standardOutputIsOnNoDisk();
    void failsToBegin();
    void timesOfFrames();
    void framesThatCanBeHeld();

private:
    QString path(const char *name) const { return m_folder->filePath(QString::fromLatin1(name)); }
    QStringList there() const { return QDir(m_folder->path()).entryList(QDir::Files, QDir::Name); }
    size_t framesIn(const char *name) const
    {
        QString error;
        const auto trace = TraceFile::load(path(name), TraceFile::Limits(), &error);
        return trace ? trace->frames.size() : 0;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_TraceRecording::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

void tst_TraceRecording::oneFile()
{
    TraceRecording::Settings settings;
    settings.path = path("ride.log");
    TraceRecording recording(settings, muchSpace);
    QVERIFY(!recording.isRecording());
    QVERIFY(recording.begin(head, 0));
    QVERIFY(recording.isRecording());
    for (int i = 0; i < 1000; ++i)
        QVERIFY(recording.add(frameAt(i), i));
    QVERIFY(recording.finish());
    QVERIFY(!recording.isRecording());
    QVERIFY(!recording.add(frameAt(0), 0));
    QCOMPARE(recording.frames(), quint64(1000));
    QCOMPARE(recording.files(), QStringList{path("ride.log")});
    QCOMPARE(framesIn("ride.log"), size_t(1000));
    QCOMPARE(recording.errorString(), QString());
}

void tst_TraceRecording::lastSecondAtMost()
{
    TraceRecording::Settings settings;
    settings.path = path("ride.log.gz");
    TraceRecording recording(settings, muchSpace);
    QVERIFY(recording.begin(head, 0));
    for (int i = 0; i < 10; ++i)
        QVERIFY(recording.add(frameAt(i), i));
    QVERIFY(recording.advance(799'999));
    QCOMPARE(framesIn("ride.log.gz"), size_t(0));
    QVERIFY(recording.advance(800'000));
    QCOMPARE(framesIn("ride.log.gz"), size_t(10));
    // Frames alone do it, too.
    QVERIFY(recording.add(frameAt(10), 800'001));
    QVERIFY(recording.add(frameAt(11), 1'600'000));
    QCOMPARE(framesIn("ride.log.gz"), size_t(12));
}

void tst_TraceRecording::rotatesBySize()
{
    TraceRecording::Settings settings;
    settings.path = path("ride.log");
    settings.rotateSize = 1000;
    TraceRecording recording(settings, muchSpace);
    QVERIFY(recording.begin(head, 0));
    // 46 bytes each: 22 in a file
    for (int i = 0; i < 50; ++i)
        QVERIFY(recording.add(frameAt(i), i));
    QVERIFY(recording.finish());
    QCOMPARE(there(), (QStringList{QStringLiteral("ride-0001.log"), QStringLiteral("ride-0002.log"),
                                   QStringLiteral("ride-0003.log")}));
    QCOMPARE(framesIn("ride-0001.log"), size_t(22));
    QCOMPARE(framesIn("ride-0002.log"), size_t(22));
    QCOMPARE(framesIn("ride-0003.log"), size_t(6));
    QCOMPARE(recording.frames(), quint64(50));
}

void tst_TraceRecording::rotatesByTime()
{
    TraceRecording::Settings settings;
    settings.path = path("ride.pcapng.zst");
    settings.rotateTime = 60 * second;
    TraceRecording recording(settings, muchSpace);
    QVERIFY(recording.begin(head, 0));
    QVERIFY(recording.add(frameAt(0), 60 * second - 1));
    QVERIFY(recording.add(frameAt(1), 60 * second));
    QVERIFY(recording.add(frameAt(2), 119 * second));
    QVERIFY(recording.add(frameAt(3), 121 * second));
    QVERIFY(recording.finish());
    QCOMPARE(framesIn("ride-0001.pcapng.zst"), size_t(1));
    QCOMPARE(framesIn("ride-0002.pcapng.zst"), size_t(2));
    QCOMPARE(framesIn("ride-0003.pcapng.zst"), size_t(1));
}

void tst_TraceRecording::numbersGoOn()
{
    for (const char *name : {"ride-0007.log", "ride-0009.log.gz", "other-0010.log", "ride-x.log"}) {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    TraceRecording::Settings settings;
    settings.path = path("ride.log");
    settings.rotateSize = 1000;
    TraceRecording recording(settings, muchSpace);
    QVERIFY(recording.begin(head, 0));
    QCOMPARE(recording.files(), QStringList{path("ride-0008.log")});
}

void tst_TraceRecording::leavesFilesThatCameMeanwhile()
{
    TraceRecording::Settings settings;
    settings.path = path("ride.log");
    settings.rotateTime = second;
    TraceRecording recording(settings, muchSpace);
    TraceRecording other(settings, muchSpace);
    QVERIFY(recording.begin(head, 0));
    // Two recordings of one name, as of two programs
    QVERIFY(other.begin(head, 0));
    QVERIFY(other.add(frameAt(0), 0));
    QVERIFY(recording.add(frameAt(1), second));
    QVERIFY(recording.finish());
    QVERIFY(other.finish());
    QCOMPARE(recording.files(), (QStringList{path("ride-0001.log"), path("ride-0003.log")}));
    QCOMPARE(other.files(), QStringList{path("ride-0002.log")});
    QCOMPARE(framesIn("ride-0002.log"), size_t(1));
}

void tst_TraceRecording::keepsTheNewest()
{
    TraceRecording::Settings settings;
    settings.path = path("ride.log");
    settings.rotateSize = 1000;
    settings.keep = 2;
    {
        QFile earlier(path("ride-0001.log")); // of another recording
        QVERIFY(earlier.open(QIODevice::WriteOnly));
    }
    TraceRecording recording(settings, muchSpace);
    QVERIFY(recording.begin(head, 0));
    for (int i = 0; i < 100; ++i)
        QVERIFY(recording.add(frameAt(i), i));
    QVERIFY(recording.finish());
    QCOMPARE(there(), (QStringList{QStringLiteral("ride-0001.log"), QStringLiteral("ride-0005.log"),
                                   QStringLiteral("ride-0006.log")}));
    QCOMPARE(recording.files(), (QStringList{path("ride-0005.log"), path("ride-0006.log")}));
}

void tst_TraceRecording::keepsAllUnlessAsked()
{
    TraceRecording::Settings settings;
    settings.path = path("ride.log");
    settings.rotateSize = 100;
    TraceRecording recording(settings, muchSpace);
    QVERIFY(recording.begin(head, 0));
    for (int i = 0; i < 100; ++i)
        QVERIFY(recording.add(frameAt(i), i));
    QVERIFY(recording.finish());
    QCOMPARE(there().size(), 34);
}

void tst_TraceRecording::keepsWhatIsThereWhenTheNextCannotBeMade()
{
    // Where the next file would be stands a link to where nothing can be made.
    QVERIFY(QFile::link(path("no/such/folder"), path("ride-0002.log")));
    TraceRecording::Settings settings;
    settings.path = path("ride.log");
    settings.rotateSize = 1000;
    settings.keep = 1;
    TraceRecording recording(settings, muchSpace);
    QVERIFY(recording.begin(head, 0));
    for (int i = 0; i < 22; ++i)
        QVERIFY(recording.add(frameAt(i), i));
    QVERIFY(!recording.add(frameAt(22), 22));
    QCOMPARE(recording.errorString(),
             path("ride-0002.log") + QStringLiteral(" cannot be written: no such file or folder."));
    QCOMPARE(recording.files(), QStringList{path("ride-0001.log")});
    QCOMPARE(framesIn("ride-0001.log"), size_t(22));
}

void tst_TraceRecording::removesLaterWhatCannotBeRemovedNow()
{
    TraceRecording::Settings settings;
    settings.path = path("ride.log");
    settings.rotateTime = second;
    settings.keep = 2;
    TraceRecording recording(settings, muchSpace);
    QVERIFY(recording.begin(head, 0));
    QVERIFY(recording.add(frameAt(0), second));
    QVERIFY(!recording.keepsTooMany());
    // A folder is not removed as a file is.
    QVERIFY(QFile::remove(path("ride-0001.log")));
    QVERIFY(QDir().mkdir(path("ride-0001.log")));
    QVERIFY(recording.add(frameAt(1), 2 * second));
    QVERIFY(recording.keepsTooMany());
    QVERIFY(recording.add(frameAt(2), 3 * second));
    QVERIFY(recording.keepsTooMany());
    QCOMPARE(recording.files(),
             (QStringList{path("ride-0001.log"), path("ride-0003.log"), path("ride-0004.log")}));
    QCOMPARE(there(), (QStringList{QStringLiteral("ride-0003.log"), QStringLiteral("ride-0004.log")}));

    QVERIFY(QDir().rmdir(path("ride-0001.log")));
    QVERIFY(QFile::copy(path("ride-0003.log"), path("ride-0001.log")));
    QVERIFY(recording.add(frameAt(3), 4 * second));
    QVERIFY(!recording.keepsTooMany());
    QCOMPARE(recording.files(), (QStringList{path("ride-0004.log"), path("ride-0005.log")}));
    QCOMPARE(there(), (QStringList{QStringLiteral("ride-0004.log"), QStringLiteral("ride-0005.log")}));
}

void tst_TraceRecording::filesThatOthersRemove()
{
    TraceRecording::Settings settings;
    settings.path = path("ride.log");
    settings.rotateTime = second;
    settings.keep = 1;
    TraceRecording recording(settings, muchSpace);
    QVERIFY(recording.begin(head, 0));
    QVERIFY(QFile::remove(path("ride-0001.log")));
    QVERIFY(recording.add(frameAt(0), second));
    QVERIFY(!recording.keepsTooMany());
    QCOMPARE(recording.files(), QStringList{path("ride-0002.log")});
}

void tst_TraceRecording::names_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("first");

    QTest::newRow("one suffix") << "/a/ride.log"
                                << "/a/ride-0001.log";
    QTest::newRow("two") << "/a/ride.asc.zst"
                         << "/a/ride-0001.asc.zst";
    QTest::newRow("more points") << "/a.b/ride.1.log.gz"
                                 << "/a.b/ride.1-0001.log.gz";
    QTest::newRow("none") << "/a.b/ride"
                          << "/a.b/ride-0001";
    QTest::newRow("hidden") << "/a/.ride"
                            << "/a/.ride-0001";
    QTest::newRow("without a folder") << "ride.log"
                                      << "ride-0001.log";
}

void tst_TraceRecording::names()
{
    QFETCH(QString, name);
    QFETCH(QString, first);

    QCOMPARE(RecordingFiles(name, RecordingFiles::Kind::Numbered).next(), first);
    QCOMPARE(RecordingFiles(name, RecordingFiles::Kind::One).next(), name);
}

void tst_TraceRecording::reserveAtTheBeginning()
{
    TraceRecording::Settings settings;
    settings.path = path("ride.log");
    settings.reserve = 200'000'000;
    TraceRecording recording(settings, [](const QString &) { return 199'999'999; });
    QVERIFY(!recording.begin(head, 0));
    QCOMPARE(recording.errorString(),
             QStringLiteral("Less than 200 MB are left on the disk of %1: recording has ended.")
                 .arg(path("ride.log")));
    QCOMPARE(there(), QStringList());
}

void tst_TraceRecording::reserveWhileRecording()
{
    qint64 left = 200'000'000;
    TraceRecording::Settings settings;
    settings.path = path("ride.asc");
    TraceRecording recording(settings, [&left](const QString &) { return left; });
    QVERIFY(recording.begin(head, 0));
    QVERIFY(recording.add(frameAt(0), 0));
    QVERIFY(recording.advance(second));
    left = 199'000'000;
    QVERIFY(!recording.advance(2 * second));
    QVERIFY(!recording.isRecording());
    QVERIFY(!recording.add(frameAt(1), 2 * second));
    QVERIFY(!recording.finish());
    QVERIFY(recording.errorString().startsWith(QLatin1String("Less than 200 MB are left")));
    // What was recorded is whole.
    QCOMPARE(framesIn("ride.asc"), size_t(1));
    QVERIFY(QFile(path("ride.asc")).exists());
}

void tst_TraceRecording::unknownSpace()
{
    TraceRecording::Settings settings;
    settings.path = path("ride.log");
    TraceRecording recording(settings, [](const QString &) { return -1; });
    QVERIFY(recording.begin(head, 0));
    QVERIFY(recording.advance(5 * second));
}

void tst_TraceRecording::noReserve()
{
    int looks = 0;
    TraceRecording::Settings settings;
    settings.path = path("ride.log");
    settings.reserve = 0;
    TraceRecording recording(settings, [&looks](const QString &) { return ++looks; });
    QVERIFY(recording.begin(head, 0));
    QVERIFY(recording.add(frameAt(0), 0));
    QVERIFY(recording.advance(5 * second));
    QVERIFY(recording.finish());
    QCOMPARE(looks, 0);
    QCOMPARE(framesIn("ride.log"), size_t(1));
}

void tst_TraceRecording::standardOutputIsOnNoDisk()
{
    QCOMPARE(systemFreeSpace(QStringLiteral("-")), qint64(-1));
    QVERIFY(systemFreeSpace(path("ride.log")) > 0);
}

void tst_TraceRecording::failsToBegin()
{
    TraceRecording::Settings settings;
    settings.path = path("no/ride.log");
    TraceRecording recording(settings, muchSpace);
    QVERIFY(!recording.begin(head, 0));
    QCOMPARE(recording.errorString(),
             path("no/ride.log") + QStringLiteral(" cannot be written: no such file or folder."));
    QVERIFY(!recording.add(frameAt(0), 0));
    QVERIFY(!recording.advance(second));
}

void tst_TraceRecording::timesOfFrames()
{
    constexpr qint64 begin = 1436509052000000;
    const auto stamped = [](qint64 time) {
        QCanBusFrame frame(0x123, QByteArray());
        frame.setTimeStamp(QCanBusFrame::TimeStamp::fromMicroSeconds(time));
        return frame;
    };
    // The time of day stays as it is, to the us,
    RecordedTime time(begin);
    QCOMPARE(time.timeOf(stamped(1436509060123456), 500), qint64(1436509060123456));
    QCOMPARE(time.timeOf(stamped(1436509050000001), 600), qint64(1436509050000001));
    // counters of an adapter keep their distances,
    RecordedTime counted(begin);
    QCOMPARE(counted.timeOf(stamped(7000), 500), begin + 500);
    QCOMPARE(counted.timeOf(stamped(7100), 900), begin + 600);
    // and without stamps there is the time at which the program learnt of it.
    RecordedTime unstamped(begin);
    QCOMPARE(unstamped.timeOf(stamped(0), 500), begin + 500);
    QCOMPARE(unstamped.timeOf(stamped(0), 900), begin + 900);
    // On a bus with a time of its own what has no stamp has that one.
    RecordedTime played(begin);
    constexpr qint64 then = 1300000000000000;
    QCOMPARE(played.timeOf(stamped(then), 500, then + 20), then);
    QCOMPARE(played.timeOf(stamped(0), 600, then + 20), then + 20);
    RecordedTime withoutDate(begin);
    QCOMPARE(withoutDate.timeOf(stamped(7000), 500, 7010), begin + 500);
    QCOMPARE(withoutDate.timeOf(stamped(0), 900, 7100), begin + 600);
}

void tst_TraceRecording::framesThatCanBeHeld()
{
    QCanBusFrame frame(0x123, QByteArray(8, 'a'));
    QVERIFY(TraceFrame::canHold(frame));
    frame.setFrameType(QCanBusFrame::RemoteRequestFrame);
    QVERIFY(TraceFrame::canHold(frame));
    QVERIFY(TraceFrame::canHold(QCanBusFrame(QCanBusFrame::ErrorFrame)));
    QVERIFY(!TraceFrame::canHold(QCanBusFrame(0x123, QByteArray(12, 'a')))); // CAN FD
    QVERIFY(!TraceFrame::canHold(QCanBusFrame(QCanBusFrame::InvalidFrame)));
    QVERIFY(!TraceFrame::canHold(QCanBusFrame(QCanBusFrame::UnknownFrame)));
}

QTEST_GUILESS_MAIN(tst_TraceRecording)
#include "tst_tracerecording.moc"
