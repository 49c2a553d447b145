// SPDX-License-Identifier: MIT
#include "traceframes.h"

#include <trace/recording/backgroundrecording.h>

#include <QSemaphore>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <atomic>

namespace {

constexpr qint64 second = 1'000'000; // us
constexpr qint64 plenty = Q_INT64_C(1'000'000'000'000);

const TraceHead head{{QStringLiteral("can0")}, true};

TraceFrame frameAt(qint64 time)
{
    return traceFrame(1436509052249713 + time, 0x123, "1122334455667788");
}

/*! A disk that stands still when it is told to, whenever it is asked how much room it has. */
class Disk
{
public:
    /*! Lets who asks wait from now on. */
    void stop() { m_isStopped = true; }
    void goOn()
    {
        m_isStopped = false;
        m_gate.release();
    }
    void fill() { m_left = 0; }

    FreeSpace freeSpace()
    {
        return [this](const QString &) {
            if (m_isStopped)
                m_gate.acquire();
            return m_left.load();
        };
    }

private:
    std::atomic<bool> m_isStopped{false};
    std::atomic<qint64> m_left{plenty};
    QSemaphore m_gate;
};

} // namespace

/*! Recording in another thread. Who adds frames goes on, whatever the disk does. */
class tst_BackgroundRecording : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void writesWhileItGoesOn();
    void goesOnWithoutFrames();
    void endsWhenAllIsWritten();
    void writesWhatCameMeanwhile();
    void doesNotWaitForTheDisk();
    void endsWhenTooManyWait();
    void diskFillsUp();
    void destructorWritesTheRest();
    void failsToBegin();

private:
    TraceRecording::Settings settings(const char *name = "ride.log") const;
    QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }
    std::vector<qint64> timesIn(const char *name) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_BackgroundRecording::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

TraceRecording::Settings tst_BackgroundRecording::settings(const char *name) const
{
    TraceRecording::Settings settings;
    settings.path = path(name);
    return settings;
}

/*! Of the frames that stand in the file now, from that of frameAt(0). */
std::vector<qint64> tst_BackgroundRecording::timesIn(const char *name) const
{
    QString error;
    const std::optional<Trace> trace = TraceFile::load(path(name), TraceFile::Limits(), &error);
    std::vector<qint64> times;
    for (const TraceFrame &frame : trace.value_or(Trace()).frames)
        times.push_back(frame.time - frameAt(0).time);
    return times;
}

void tst_BackgroundRecording::writesWhileItGoesOn()
{
    Disk disk;
    BackgroundRecording recording(settings(), disk.freeSpace());
    QVERIFY(recording.begin(head, 0));
    QCOMPARE(recording.files(), QStringList(path("ride.log")));
    recording.add(frameAt(1), 1);
    recording.add(frameAt(2), 2);
    QCOMPARE(recording.added(), quint64(2));
    QCOMPARE(recording.written(), quint64(0));
    recording.advance(second);
    QTest::qWait(500);
    QCOMPARE(recording.written(), quint64(2));
    QCOMPARE(timesIn("ride.log"), (std::vector<qint64>{1, 2})); // it is there as it grows
}

void tst_BackgroundRecording::goesOnWithoutFrames()
{
    Disk disk;
    BackgroundRecording recording(settings(), disk.freeSpace());
    QSignalSpy ended(&recording, &BackgroundRecording::ended);
    QVERIFY(recording.begin(head, 0));
    for (int i = 1; i <= 10; ++i) {
        recording.advance(i * second);
        QTest::qWait(1000);
    }
    QCOMPARE(ended.count(), 0);
    recording.add(frameAt(1), 11 * second);
    recording.advance(11 * second);
    QTest::qWait(500);
    QCOMPARE(timesIn("ride.log"), std::vector<qint64>{1});
}

void tst_BackgroundRecording::endsWhenAllIsWritten()
{
    Disk disk;
    BackgroundRecording recording(settings("ride.log.gz"), disk.freeSpace());
    QSignalSpy ended(&recording, &BackgroundRecording::ended);
    QVERIFY(recording.begin(head, 0));
    recording.add(frameAt(1), 1);
    recording.finish();
    QCOMPARE(ended.count(), 0); // from the event loop
    recording.add(frameAt(2), 2);
    QTest::qWait(500);
    QCOMPARE(ended.count(), 1);
    QCOMPARE(recording.written(), quint64(1));
    QCOMPARE(recording.errorString(), QString());
    QCOMPARE(timesIn("ride.log.gz"), std::vector<qint64>{1}); // and not what came after the end
    recording.advance(second);
    recording.finish();
    QTest::qWait(500);
    QCOMPARE(ended.count(), 1);
}

void tst_BackgroundRecording::writesWhatCameMeanwhile()
{
    Disk disk;
    BackgroundRecording recording(settings(), disk.freeSpace());
    QSignalSpy ended(&recording, &BackgroundRecording::ended);
    QVERIFY(recording.begin(head, 0));
    disk.stop();
    recording.add(frameAt(1), 1);
    recording.advance(second);
    recording.add(frameAt(2), second + 1);
    recording.finish();
    QTest::qWait(1000);
    QCOMPARE(ended.count(), 0);
    disk.goOn();
    QTest::qWait(500);
    QCOMPARE(ended.count(), 1);
    QCOMPARE(timesIn("ride.log"), (std::vector<qint64>{1, 2}));
}

void tst_BackgroundRecording::doesNotWaitForTheDisk()
{
    Disk disk;
    BackgroundRecording recording(settings(), disk.freeSpace());
    QVERIFY(recording.begin(head, 0));
    disk.stop();
    for (int i = 1; i <= 100; ++i) {
        recording.add(frameAt(i), i * second);
        recording.advance(i * second);
        QTest::qWait(1000);
    }
    QCOMPARE(recording.added(), quint64(100));
    QCOMPARE(recording.written(), quint64(0)); // not yet
    disk.goOn();
    QTest::qWait(500);
    recording.advance(101 * second);
    QTest::qWait(500);
    QCOMPARE(recording.written(), quint64(100));
    const std::vector<qint64> times = timesIn("ride.log");
    QCOMPARE(times.size(), std::size_t(100));
    for (std::size_t i = 0; i < times.size(); ++i)
        QCOMPARE(times[i], qint64(i + 1));
}

void tst_BackgroundRecording::endsWhenTooManyWait()
{
    Disk disk;
    constexpr std::size_t mostWaiting = 3;
    BackgroundRecording recording(settings(), disk.freeSpace(), mostWaiting);
    QSignalSpy ended(&recording, &BackgroundRecording::ended);
    QVERIFY(recording.begin(head, 0));
    disk.stop();
    recording.add(frameAt(1), 1);
    recording.advance(second); // that is on its way
    for (int i = 2; i <= 4; ++i)
        recording.add(frameAt(i), second + i);
    QCOMPARE(recording.errorString(), QString());
    recording.add(frameAt(5), second + 5);
    QCOMPARE(recording.errorString(),
             QStringLiteral("The disk of %1 has taken nothing for too long: recording has ended.")
                 .arg(QDir::toNativeSeparators(path("ride.log"))));
    recording.add(frameAt(6), second + 6);
    QCOMPARE(recording.added(), quint64(4));
    QTest::qWait(1000);
    QCOMPARE(ended.count(), 0);
    disk.goOn();
    QTest::qWait(500);
    QCOMPARE(ended.count(), 1);
    QVERIFY(!recording.errorString().isEmpty());
    QCOMPARE(timesIn("ride.log"), (std::vector<qint64>{1, 2, 3, 4})); // what waited is not lost
}

void tst_BackgroundRecording::diskFillsUp()
{
    Disk disk;
    BackgroundRecording recording(settings(), disk.freeSpace());
    QSignalSpy ended(&recording, &BackgroundRecording::ended);
    QVERIFY(recording.begin(head, 0));
    recording.add(frameAt(1), 1);
    disk.fill();
    recording.advance(second);
    QTest::qWait(500);
    QCOMPARE(ended.count(), 1);
    QVERIFY2(recording.errorString().startsWith(QStringLiteral("Less than 200 MB are left on the disk of ")),
             qPrintable(recording.errorString()));
    recording.add(frameAt(2), 2 * second);
    recording.advance(2 * second);
    recording.finish();
    QTest::qWait(500);
    QCOMPARE(ended.count(), 1);
    QCOMPARE(timesIn("ride.log"), std::vector<qint64>{1});
}

void tst_BackgroundRecording::destructorWritesTheRest()
{
    Disk disk;
    {
        BackgroundRecording recording(settings(), disk.freeSpace());
        QVERIFY(recording.begin(head, 0));
        recording.add(frameAt(1), 1);
        recording.advance(second); // may be under way
        recording.add(frameAt(2), second + 1);
    }
    QCOMPARE(timesIn("ride.log"), (std::vector<qint64>{1, 2}));
}

void tst_BackgroundRecording::failsToBegin()
{
    Disk disk;
    BackgroundRecording recording(settings("no/ride.log"), disk.freeSpace());
    QVERIFY(!recording.begin(head, 0));
    QCOMPARE(recording.errorString(),
             path("no/ride.log") + QStringLiteral(" cannot be written: no such file or folder."));
    recording.add(frameAt(1), 1);
    recording.advance(second);
    QTest::qWait(500);
    QCOMPARE(recording.added(), quint64(0));
}

QTEST_GUILESS_MAIN(tst_BackgroundRecording)
#include "tst_backgroundrecording.moc"
