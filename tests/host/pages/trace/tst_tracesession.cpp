// SPDX-License-Identifier: MIT
#include "heardframes.h"

#include <host/pages/trace/tracerows.h>
#include <host/pages/trace/tracesession.h>
#include <tests/support/fakebus.h>
#include <tests/support/unprivileged.h>
#include <trace/files/tracefile.h>

#include <live/events/eventlist.h>

#include <QSignalSpy>
#include <QThreadPool>
#include <QtTest>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

/*! What is heard, recorded and opened. */
class tst_TraceSession : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void emptyAtFirst();
    void hearsAndSendsNothing();
    void staysWhenTheBusIsClosed();
    void beginsAnewWithTheNextBus();
    void staysOverALoss();
    void transfersAreLines();
    void transfersEndWithTheConnection();
    void whatIsLearntOfTheNextBus();
    void whatIsLearntOfALongTrace();
    void whatIsToldOfALongTrace();
    void ownFramesAreMarked();
    void framesThatAreNone();
    void lastMinutesAreSaved();
    void saveThatFails();
    void automaticNamesAreRefused();
    void faultSavesByItself();
    void faultsSaveOnce();
    void oneFaultOneFile();
    void faultsOfTheNextBus();
    void faultWithoutFrames();
    void faultBeforeTheEndIsSaved();
    void noFaultNoFile();
    void faultOfAPlayedTraceIsNotSaved();
    void requestsToAPlayedTraceHaveItsTime();
    void automaticSavingIsBounded();
    void boundThatCannotBeKeptIsToldOnce();
    void records();
    void recordingOutlastsTheConnection();
    void faultAfterARecordingIsSaved();
    void nextRecordingEndsTheOneBefore();
    void fileThatIsStillWritten();
    void filesThatAreStillWritten();
    void recordingThatCannotGoOn();
    void recordingThatCannotBegin();
    void opensAFile();
    void transfersEndWithTheFile();
    void fileStaysWhenABusIsConnected();
    void fileStaysWhenLinesLeave();
    void opensNoTrace();
    void refusesWhatIsNoFile();
    void knowsTracesByNameAndByContent();
    void filesThatAreUsedAreTold();
    void openingIsCancelled();
    void devicesOfAFile();
    void devicesAddUp();
    void devicesThatComeWhileLinesAreMade();
    void devicesThatComeWhileAFileIsOpened();
    void devicesThatComeWhileAFileIsRefused();
    void devicesThatComeWhileOpeningIsCancelled();
    void devicesThatAreCancelled();
    void devicesOfAFileThatWasLeft();
    void devicesOfAFileThatWasNotLeft();
    void devicesOfAFileThatIsLeftMeanwhile();
    void devicesOfWhatIsHeard();
    void problemsOfAFile();
    void shownPartIsSaved();
    void missingFramesAreSaidWhenItIsSaved_data();
    void missingFramesAreSaidWhenItIsSaved();
    void framesThatHaveLeftAreSaidWhenItIsSaved();

private:
    void connectToBus();
    void hear(const std::vector<TraceFrame> &frames);
    void heartbeat();
    void openRide();
    void hearMany(int count, quint32 id);
    std::size_t pdosOf5() const;
    TraceRows rowsOf(std::size_t node) const;
    void wait(int milliseconds) { QTest::qWait(milliseconds); }
    /*! Lets what goes on in the background come to its end, in real time. */
    static void finishWork();
    QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }
    QStringList automatic() const { return QDir(path("traces")).entryList(QDir::Files); }
    void write(const char *name, const std::vector<TraceFrame> &frames) const;
    static Trace load(const QString &fileName);
    void addEvent(EventKind kind);
    static QString notUsed()
    {
        return QStringLiteral("Another trace is shown by now: what was told of the devices of the one before "
                              "is not used.");
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<FakeBus> m_fake;
    std::unique_ptr<BusConnection> m_bus;
    std::unique_ptr<EventList> m_events;
    std::unique_ptr<TraceSession> m_session;
    QStringList m_told;
    QStringList m_problems;
    QStringList m_failed;
};

void tst_TraceSession::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_fake = std::make_unique<FakeBus>();
    m_bus = std::make_unique<BusConnection>();
    m_bus->setDeviceFactory(m_fake->factory());
    m_bus->interfaceWatch().setLister([](const QString &) { return QStringList(); });
    m_events = std::make_unique<EventList>();
    m_session = std::make_unique<TraceSession>(m_bus.get());
    TraceSettings settings;
    settings.folder = path("traces");
    m_session->recorder().setSettings(settings);
    m_session->recorder().setEvents(m_events.get());
    m_told.clear();
    m_problems.clear();
    m_failed.clear();
    connect(m_session.get(), &TraceSession::told, this,
            [this](const QString &sentence, const QStringList &problems) {
                m_told << sentence;
                m_problems << problems;
            });
    connect(m_session.get(), &TraceSession::failed, this,
            [this](const QString &sentence) { m_failed << sentence; });
}

void tst_TraceSession::cleanup()
{
    finishWork();
    m_session.reset();
    m_bus.reset();
    m_events.reset();
    m_fake.reset();
    m_folder.reset();
}

void tst_TraceSession::connectToBus()
{
    QString error;
    QVERIFY2(m_bus->connectToBus(fakeSettings(), &error), qPrintable(error));
}

void tst_TraceSession::hear(const std::vector<TraceFrame> &frames)
{
    for (const TraceFrame &frame : frames) {
        QCanBusFrame injected = frame.toCanBusFrame();
        injected.setTimeStamp(QCanBusFrame::TimeStamp()); // of an adapter without stamps
        m_fake->device()->inject(injected);
    }
    wait(300);
}

void tst_TraceSession::heartbeat()
{
    hear({heard(0, 0x705, "05")});
}

/*! Shows a file with one PDO of node 5. */
void tst_TraceSession::openRide()
{
    write("ride.log", {heard(0, 0x185, "2A")});
    m_session->open(path("ride.log"));
    finishWork();
    QCOMPARE(m_session->document()->fileName, path("ride.log"));
}

/*! Frames of one identifier, until they are lines. */
void tst_TraceSession::hearMany(int count, quint32 id)
{
    const QCanBusFrame frame = heard(0, id, "01").toCanBusFrame();
    for (int i = 0; i < count; ++i)
        emit m_bus->frameReceived(frame);
    wait(10'000);
    QCOMPARE(m_session->document()->lines.size(), static_cast<std::size_t>(count));
}

/*! What is shown of one node; 0: all. */
TraceRows tst_TraceSession::rowsOf(std::size_t node) const
{
    TraceRows rows;
    rows.setLines(&m_session->document()->lines);
    TraceFilter filter;
    filter.nodes.set(node, node != 0);
    rows.setFilter(filter);
    rows.append(rows.examine(1000));
    return rows;
}

/*! How many of the lines are sorted as PDOs of node 5. */
std::size_t tst_TraceSession::pdosOf5() const
{
    const TraceLines &lines = m_session->document()->lines;
    std::size_t count = 0;
    for (std::size_t row = 0; row < lines.size(); ++row) {
        if (lines.at(row).kind == FrameKind::Pdo && lines.at(row).nodeId == 5)
            ++count;
    }
    return count;
}

void tst_TraceSession::finishWork()
{
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
}

void tst_TraceSession::write(const char *name, const std::vector<TraceFrame> &frames) const
{
    QString error;
    Trace trace = documentOf(frames)->trace;
    QVERIFY2(TraceFile::save(path(name), trace, &error), qPrintable(error));
}

Trace tst_TraceSession::load(const QString &fileName)
{
    QString error;
    const std::optional<Trace> trace = TraceFile::load(fileName, TraceFile::Limits(), &error);
    if (!trace)
        qWarning("%s", qPrintable(error));
    return trace.value_or(Trace());
}

void tst_TraceSession::addEvent(EventKind kind)
{
    LiveEvent event;
    event.kind = kind;
    event.nodeId = 5;
    event.code = 0x4210;
    // Two seconds after the one before, or it would be counted with it.
    event.time = m_events->events().empty() ? 0 : m_events->events().back().time + 2 * second;
    event.lastTime = event.time;
    m_events->add(event);
}

void tst_TraceSession::emptyAtFirst()
{
    QVERIFY(m_session->isEmpty());
    QVERIFY(m_session->isLive());
    QCOMPARE(m_session->document()->lines.size(), std::size_t(0));
    QCOMPARE(m_session->recorder().kept(), std::size_t(0));
    connectToBus();
    QVERIFY(!m_session->isEmpty());
}

void tst_TraceSession::hearsAndSendsNothing()
{
    connectToBus();
    const qint64 before = QDateTime::currentMSecsSinceEpoch() * 1000;
    hear({heard(0, 0x705, "05"), heard(0, 0x084, "1042080000000000")});
    const TraceDocument &document = *m_session->document();
    QCOMPARE(document.lines.size(), std::size_t(2));
    QCOMPARE(document.trace.frames[1].id, 0x084U);
    QCOMPARE(document.trace.head.channels, QStringList(QStringLiteral("bus0")));
    QVERIFY(document.trace.head.hasTimeOfDay);
    QVERIFY(qAbs(document.trace.frames[0].time - before) < 60 * second);
    wait(60'000);
    QCOMPARE(m_fake->device()->written().size(), 0);
}

void tst_TraceSession::staysWhenTheBusIsClosed()
{
    connectToBus();
    hear(fourLines());
    m_bus->disconnectFromBus();
    wait(1000);
    emit m_bus->frameReceived(heard(0, 0x705, "05").toCanBusFrame()); // of another one
    QCOMPARE(m_session->document()->lines.size(), std::size_t(4));
    QCOMPARE(m_session->recorder().kept(), std::size_t(5));
    QVERIFY(!m_session->isEmpty());
}

void tst_TraceSession::beginsAnewWithTheNextBus()
{
    connectToBus();
    hear(fourLines());
    m_bus->disconnectFromBus();
    QSignalSpy changed(m_session.get(), &TraceSession::documentChanged);
    connectToBus();
    QCOMPARE(changed.count(), 1);
    heartbeat();
    QCOMPARE(m_session->document()->lines.size(), std::size_t(1));
    QCOMPARE(m_session->recorder().kept(), std::size_t(1));
}

void tst_TraceSession::staysOverALoss()
{
    connectToBus();
    hear(fourLines());
    m_fake->refusal = QStringLiteral("gone");
    m_fake->device()->goUnconnected();
    wait(3000);
    m_fake->refusal.clear();
    wait(3000);
    heartbeat();
    QCOMPARE(m_session->document()->lines.size(), std::size_t(5));
}

void tst_TraceSession::transfersAreLines()
{
    connectToBus();
    hear(readOf6164(0, 2));
    QCOMPARE(m_session->document()->lines.size(), std::size_t(1));
    QCOMPARE(m_session->document()->lines.frames(0).size(), std::size_t(2));
}

void tst_TraceSession::transfersEndWithTheConnection()
{
    connectToBus();
    hear({readOf6164(0, 2)[0]});
    QVERIFY(!m_session->document()->lines.transfer(0).has_value()); // under way
    QSignalSpy grown(m_session.get(), &TraceSession::grown);
    m_bus->disconnectFromBus();
    wait(300);
    QVERIFY(m_session->document()->lines.transfer(0).has_value());
    QVERIFY(grown.count() > 0);
}

/*! As much is learnt as of the bus before, and at once. */
void tst_TraceSession::whatIsLearntOfTheNextBus()
{
    const std::vector<TraceFrame> frames{
        heard(0, 0x345, "01"), // whose it is only what follows tells
        heard(0, 0x605, "4000180100000000"),
        heard(0, 0x585, "4300180145030000"), // 1800h.1 = 345h
        heard(0, 0x605, "40001A0000000000"),
        heard(0, 0x585, "4F001A0001000000"), // 1A00h.0 = 1
        heard(0, 0x605, "40001A0100000000"),
        heard(0, 0x585, "43001A0108010060"), // 1A00h.1 = 6000h.1, 8 bits
    };
    for (int bus = 0; bus < 2; ++bus) {
        connectToBus();
        hear(frames);
        QCOMPARE(m_session->document()->lines.size(), std::size_t(4));
        QCOMPARE(int(m_session->document()->lines.at(0).nodeId), 5);
        m_bus->disconnectFromBus();
    }
}

/*! In parts, or the window would stand still; and those who have filtered its lines are told. */
void tst_TraceSession::whatIsLearntOfALongTrace()
{
    connectToBus();
    hearMany(250'000, 0x345);
    std::size_t mostAtOnce = 0;
    std::size_t known = 0;
    connect(m_session.get(), &TraceSession::grown, this, [this, &mostAtOnce, &known] {
        const std::size_t now = pdosOf5();
        mostAtOnce = std::max(mostAtOnce, now - known);
        known = now;
    });
    QSignalSpy relearnt(m_session.get(), &TraceSession::relearnt);
    std::size_t knownWhenTold = 0;
    connect(m_session.get(), &TraceSession::relearnt, this,
            [this, &knownWhenTold] { knownWhenTold = pdosOf5(); });
    const std::vector<TraceFrame> reads{
        heard(0, 0x605, "4000180100000000"), heard(0, 0x585, "4300180145030000"),  // 1800h.1 = 345h
        heard(0, 0x605, "40001A0000000000"), heard(0, 0x585, "4F001A0001000000"),  // 1A00h.0 = 1
        heard(0, 0x605, "40001A0100000000"), heard(0, 0x585, "43001A0108010060")}; // 1A00h.1 = 6000h.1
    for (const TraceFrame &frame : reads)
        emit m_bus->frameReceived(frame.toCanBusFrame());
    m_bus->disconnectFromBus();
    wait(5000);
    QCOMPARE(pdosOf5(), std::size_t(250'000));
    QCOMPARE(relearnt.count(), 1);
    QCOMPARE(knownWhenTold, std::size_t(250'000));
    QVERIFY2(mostAtOnce <= 100'000, qPrintable(QString::number(mostAtOnce)));
}

void tst_TraceSession::whatIsToldOfALongTrace()
{
    connectToBus();
    hearMany(150'000, 0x345);
    m_bus->disconnectFromBus();
    wait(1000);
    TraceDevices devices = mappingOf5();
    SnapshotEntry identifier;
    identifier.key = {0x1800, 1};
    identifier.value = 0x345;
    devices.snapshot.nodes.front().insert(identifier);
    m_session->tell(devices, QString());
    wait(1000);
    QCOMPARE(pdosOf5(), std::size_t(150'000));
}

void tst_TraceSession::ownFramesAreMarked()
{
    m_fake->addNode(5);
    connectToBus();
    m_bus->sdoClient().upload(5, {0x1000, 0}, CanOpen::DataType::Unsigned32);
    wait(500);
    const std::vector<TraceFrame> &frames = m_session->document()->trace.frames;
    QCOMPARE(frames.size(), std::size_t(2));
    QCOMPARE(frames[0].id, 0x605U);
    QVERIFY(frames[0].isSent());
    QVERIFY(!frames[1].isSent());
    QVERIFY(frames[0].time <= frames[1].time);
}

void tst_TraceSession::framesThatAreNone()
{
    connectToBus();
    QCanBusFrame flexible(0x705, QByteArray(12, '\1'));
    flexible.setFlexibleDataRateFormat(true);
    m_fake->device()->inject(flexible);
    wait(300);
    QCOMPARE(m_session->recorder().kept(), std::size_t(0)); // a trace cannot hold them
    heartbeat();
    QCOMPARE(m_session->recorder().kept(), std::size_t(1));
}

void tst_TraceSession::lastMinutesAreSaved()
{
    connectToBus();
    hear(fourLines());
    const FlightRecorder minutes = m_session->recorder().lastMinutes();
    heartbeat(); // after the press
    m_session->save(path("saved.log.gz"), minutes);
    finishWork();
    QCOMPARE(m_failed, QStringList());
    QCOMPARE(
        m_told,
        QStringList(
            QStringLiteral("Saved: %1, 5 frame(s)").arg(QDir::toNativeSeparators(path("saved.log.gz")))));
    QCOMPARE(load(path("saved.log.gz")).frames.size(), std::size_t(5));
}

void tst_TraceSession::saveThatFails()
{
    m_session->save(path("saved.odt"), FlightRecorder());
    finishWork();
    QCOMPARE(m_failed.size(), 1);
    QVERIFY2(m_failed.first().contains(QStringLiteral("tells no format")), qPrintable(m_failed.first()));
    QCOMPARE(m_told, QStringList());
}

void tst_TraceSession::automaticNamesAreRefused()
{
    m_session->save(path("traces/trace 2026-11-22 08.30.15.log.gz"), FlightRecorder());
    finishWork();
    QCOMPARE(m_failed.size(), 1);
    QVERIFY2(m_failed.first().startsWith(QStringLiteral("Names that begin with \"trace \"")),
             qPrintable(m_failed.first()));
    QVERIFY(automatic().isEmpty());
    m_session->record(path("traces/trace 2026-11-22 08.30.15.log.gz"));
    QCOMPARE(m_failed.size(), 2);
    QVERIFY(!m_session->recorder().isRecording());
    m_failed.removeLast();
    m_session->save(path("trace of a ride.log"), FlightRecorder()); // elsewhere nothing is removed
    finishWork();
    QCOMPARE(m_failed.size(), 1);
}

void tst_TraceSession::faultSavesByItself()
{
    connectToBus();
    heartbeat();
    addEvent(EventKind::Emergency);
    wait(4000);
    heartbeat(); // within five seconds after the fault
    finishWork();
    QVERIFY(automatic().isEmpty());
    wait(2000);
    finishWork();
    QCOMPARE(automatic().size(), 1);
    QVERIFY(automatic().first().endsWith(QStringLiteral(".log.gz")));
    QCOMPARE(load(path("traces/") + automatic().first()).frames.size(), std::size_t(2));
    QCOMPARE(m_told.size(), 1);
    QVERIFY2(m_told.first().startsWith(QStringLiteral("What was on the bus before a fault is saved: ")),
             qPrintable(m_told.first()));
}

void tst_TraceSession::faultsSaveOnce()
{
    connectToBus();
    heartbeat();
    for (int i = 0; i < 10; ++i) {
        addEvent(EventKind::Emergency);
        wait(1000);
    }
    finishWork();
    QCOMPARE(m_told.size(), 1); // the next file is a minute later
    wait(60'000);
    finishWork();
    QCOMPARE(m_told.size(), 2);
}

void tst_TraceSession::oneFaultOneFile()
{
    connectToBus();
    heartbeat();
    addEvent(EventKind::NodeHeard);
    addEvent(EventKind::Emergency);
    wait(300'000);
    finishWork();
    QCOMPARE(m_told.size(), 1);
    m_events->clear(); // its numbers begin anew
    addEvent(EventKind::Emergency);
    wait(6000);
    finishWork();
    QCOMPARE(m_told.size(), 2);
}

/*! The wait of a minute is over with the connection. */
void tst_TraceSession::faultsOfTheNextBus()
{
    connectToBus();
    heartbeat();
    addEvent(EventKind::Emergency);
    wait(6000);
    m_bus->disconnectFromBus();
    finishWork();
    QCOMPARE(m_told.size(), 1);
    m_events->clear(); // as LiveSession does
    connectToBus();
    heartbeat();
    addEvent(EventKind::Emergency);
    wait(6000);
    finishWork();
    QCOMPARE(m_told.size(), 2);
}

void tst_TraceSession::faultWithoutFrames()
{
    connectToBus();
    addEvent(EventKind::BusOff);
    wait(6000);
    finishWork();
    QVERIFY(automatic().isEmpty());
    QCOMPARE(m_problems, QStringList());
}

void tst_TraceSession::faultBeforeTheEndIsSaved()
{
    connectToBus();
    heartbeat();
    addEvent(EventKind::NodeLost);
    m_bus->disconnectFromBus();
    finishWork();
    QCOMPARE(automatic().size(), 1);
}

void tst_TraceSession::noFaultNoFile()
{
    connectToBus();
    heartbeat();
    addEvent(EventKind::NodeHeard);
    addEvent(EventKind::NodeRestarted);
    wait(20'000);
    TraceSettings settings = m_session->recorder().settings();
    settings.savesFaults = false;
    m_session->recorder().setSettings(settings);
    addEvent(EventKind::Emergency);
    wait(20'000);
    finishWork();
    QVERIFY(automatic().isEmpty());
}

void tst_TraceSession::faultOfAPlayedTraceIsNotSaved()
{
    connectToBus();
    m_fake->device()->setProperty("busTime", Q_INT64_C(1600000000000000));
    heartbeat();
    addEvent(EventKind::Emergency);
    wait(60000);
    m_bus->disconnectFromBus();
    finishWork();
    QCOMPARE(automatic(), QStringList());
}

void tst_TraceSession::requestsToAPlayedTraceHaveItsTime()
{
    connectToBus();
    m_fake->device()->setProperty("busTime", Q_INT64_C(1600000000250000));
    m_bus->sdoClient().upload(5, {0x1000, 0}, CanOpen::DataType::Unsigned32);
    QCanBusFrame answer(0x585, QByteArray::fromHex("4300100001000000"));
    answer.setTimeStamp(QCanBusFrame::TimeStamp::fromMicroSeconds(1600000000251000));
    m_fake->device()->inject(answer);
    answer.setTimeStamp(QCanBusFrame::TimeStamp::fromMicroSeconds(1600000001000000)); // of a whole second
    m_fake->device()->inject(answer);
    wait(300);
    const QString file = path("played.log");
    m_session->save(file, m_session->recorder().lastMinutes());
    finishWork();
    const Trace trace = load(file);
    QCOMPARE(trace.frames.size(), size_t(3));
    QCOMPARE(trace.frames[0].time, Q_INT64_C(1600000000250000));
    QCOMPARE(trace.frames[1].time, Q_INT64_C(1600000000251000));
    QCOMPARE(trace.frames[2].time, Q_INT64_C(1600000001000000));
}

void tst_TraceSession::automaticSavingIsBounded()
{
    QVERIFY(QDir().mkpath(path("traces")));
    const QByteArray large(2000, 'x');
    for (const char *name : {"trace 2020-01-01 00.00.00.log.gz", "my ride.log.gz"}) {
        QFile file(path("traces/") + QLatin1String(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(large);
    }
    TraceSettings settings = m_session->recorder().settings();
    settings.mostBytes = 1000;
    m_session->recorder().setSettings(settings);
    connectToBus();
    heartbeat();
    addEvent(EventKind::Emergency);
    wait(6000);
    finishWork();
    QCOMPARE(automatic().size(), 2);
    QVERIFY(automatic().contains(QStringLiteral("my ride.log.gz"))); // the user's
    QVERIFY(!automatic().contains(QStringLiteral("trace 2020-01-01 00.00.00.log.gz")));
}

/*! Nothing can be removed from a folder that may only be read; what is saved goes through links to elsewhere. */
void tst_TraceSession::boundThatCannotBeKeptIsToldOnce()
{
    QVERIFY(QDir().mkpath(path("traces")));
    QVERIFY(QDir().mkpath(path("elsewhere")));
    QFile old(path("traces/trace 2020-01-01 00.00.00.log.gz"));
    QVERIFY(old.open(QIODevice::WriteOnly));
    old.write(QByteArray(2'000'000, 'x'));
    old.close();
    constexpr int seconds = 600; // in any of which a name may be given
    for (int i = 0; i < seconds; ++i) {
        const QString name = QDateTime::currentDateTimeUtc().addSecs(i).toString(
            QStringLiteral("/'trace 'yyyy-MM-dd hh.mm.ss'.log.gz'"));
        QFile::link(path("elsewhere") + name, path("traces") + name);
    }
    const Unprivileged unprivileged({m_folder->path(), path("traces"), path("elsewhere")});
    QVERIFY(QFile::setPermissions(path("traces"), QFile::ReadOwner | QFile::ExeOwner));
    TraceSettings settings = m_session->recorder().settings();
    settings.mostBytes = 1'000'000;
    m_session->recorder().setSettings(settings);
    connectToBus();
    heartbeat();
    for (int i = 0; i < 2; ++i) {
        addEvent(EventKind::Emergency);
        wait(61'000);
        finishWork();
    }
    QVERIFY(QFile::setPermissions(path("traces"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    QCOMPARE(m_told.filter(QStringLiteral("before a fault is saved")).size(), 2);
    QCOMPARE(m_problems, QStringList(QStringLiteral("The folder %1 takes more than 1 MB: trace 2020-01-01 "
                                                    "00.00.00.log.gz cannot be removed.")
                                         .arg(QDir::toNativeSeparators(path("traces")))));
}

void tst_TraceSession::records()
{
    connectToBus();
    heartbeat();
    QString error;
    QVERIFY2(m_session->recorder().record(path("ride.log"), &error), qPrintable(error));
    QVERIFY(m_session->recorder().isRecording());
    hear(fourLines());
    QCOMPARE(m_session->recorder().recorded(), quint64(5));
    wait(2000);
    QCOMPARE(load(path("ride.log")).frames.size(), std::size_t(5)); // it is there as it grows
    m_session->recorder().stopRecording();
    QVERIFY(!m_session->recorder().isRecording());
    heartbeat(); // is no longer in it
    QCOMPARE(load(path("ride.log")).frames.size(), std::size_t(5));
    QCOMPARE(m_told,
             QStringList(
                 QStringLiteral("Recorded: %1, 5 frame(s)").arg(QDir::toNativeSeparators(path("ride.log")))));
}

void tst_TraceSession::recordingOutlastsTheConnection()
{
    QString error;
    QVERIFY2(m_session->recorder().record(path("ride.log"), &error), qPrintable(error));
    QSignalSpy changed(&m_session->recorder(), &TraceRecorder::recordingChanged);
    wait(1500);                   // what comes now is not written at once
    QVERIFY(changed.count() > 5); // the time of a recording goes on without a bus
    connectToBus();
    heartbeat();
    m_bus->disconnectFromBus();
    QVERIFY(m_session->recorder().isRecording());
    wait(2000);
    QCOMPARE(load(path("ride.log")).frames.size(), std::size_t(1)); // is written although nothing comes
    connectToBus();
    heartbeat();
    m_session.reset(); // the program ends
    QCOMPARE(load(path("ride.log")).frames.size(), std::size_t(2));
    m_session = std::make_unique<TraceSession>(m_bus.get());
}

void tst_TraceSession::faultAfterARecordingIsSaved()
{
    connectToBus();
    m_session->record(path("ride.log"));
    heartbeat();
    m_session->recorder().stopRecording();
    addEvent(EventKind::Emergency);
    wait(6000);
    finishWork();
    QCOMPARE(automatic().size(), 1);
}

void tst_TraceSession::nextRecordingEndsTheOneBefore()
{
    connectToBus();
    m_session->record(path("first.log"));
    heartbeat();
    m_session->record(path("second.log"));
    wait(500);
    QCOMPARE(m_told.size(), 1);
    QVERIFY2(m_told.first().endsWith(QStringLiteral("first.log, 1 frame(s)")), qPrintable(m_told.first()));
    heartbeat();
    QCOMPARE(m_session->recorder().recordingFile(), path("second.log"));
    m_session->recorder().stopRecording();
    wait(500);
    QCOMPARE(load(path("first.log")).frames.size(), std::size_t(1));
    QCOMPARE(load(path("second.log")).frames.size(), std::size_t(1));
}

void tst_TraceSession::fileThatIsStillWritten()
{
    connectToBus();
    m_session->record(path("ride.log"));
    heartbeat();
    m_session->recorder().stopRecording();
    m_session->record(path("ride.log")); // at once
    QCOMPARE(m_failed.size(), 1);
    QCOMPARE(m_failed.first(), QStringLiteral("%1 is still being written. Choose another name.")
                                   .arg(QDir::toNativeSeparators(path("ride.log"))));
    QVERIFY(!m_session->recorder().isRecording());
    wait(500);
    QCOMPARE(load(path("ride.log")).frames.size(), std::size_t(1));
    m_session->record(path("ride.log"));
    QVERIFY(m_session->recorder().isRecording());
}

/*! The one that goes on could begin the next file under a name that the new one has taken. */
void tst_TraceSession::filesThatAreStillWritten()
{
    TraceSettings settings = m_session->recorder().settings();
    settings.rotation = TraceSettings::Rotation::Time;
    settings.rotationMinutes = 1;
    m_session->recorder().setSettings(settings);
    connectToBus();
    m_session->record(path("ride.log"));
    heartbeat();
    m_session->recorder().stopRecording();
    m_session->record(path("ride.log")); // at once
    QCOMPARE(m_failed, QStringList(QStringLiteral("%1 is still being written. Choose another name.")
                                       .arg(QDir::toNativeSeparators(path("ride.log")))));
    QVERIFY(!m_session->recorder().isRecording());
    wait(500);
    QCOMPARE(load(path("ride-0001.log")).frames.size(), std::size_t(1));
    m_session->record(path("ride.log"));
    QCOMPARE(m_session->recorder().recordingFile(), path("ride-0002.log"));
}

void tst_TraceSession::recordingThatCannotGoOn()
{
    TraceSettings settings = m_session->recorder().settings();
    settings.rotation = TraceSettings::Rotation::Time;
    settings.rotationMinutes = 1;
    m_session->recorder().setSettings(settings);
    QVERIFY(QDir().mkpath(path("stick")));
    connectToBus();
    m_session->record(path("stick/long.log"));
    heartbeat();
    QVERIFY(QDir(path("stick")).removeRecursively()); // it was pulled out
    wait(60'000);
    heartbeat();
    QVERIFY(!m_session->recorder().isRecording());
    QCOMPARE(m_problems.size(), 1);
    QVERIFY2(m_problems.first().startsWith(QStringLiteral("The recording ")), qPrintable(m_problems.first()));
    QVERIFY(m_told.first().isEmpty()); // nothing is said to be recorded
}

void tst_TraceSession::recordingThatCannotBegin()
{
    QString error;
    QVERIFY(!m_session->recorder().record(path("no/such/folder/ride.log"), &error));
    QVERIFY(!error.isEmpty());
    QVERIFY(!m_session->recorder().isRecording());
    error.clear();
    QVERIFY(!m_session->recorder().record(path("ride.odt"), &error));
    QVERIFY2(error.contains(QStringLiteral("tells no format")), qPrintable(error));
}

void tst_TraceSession::opensAFile()
{
    write("ride.log", fourLines());
    QSignalSpy changed(m_session.get(), &TraceSession::documentChanged);
    m_session->open(path("ride.log"));
    QVERIFY(m_session->loading().isRunning());
    QVERIFY(m_session->isLive()); // until it is read
    finishWork();
    QVERIFY(!m_session->loading().isRunning());
    QCOMPARE(changed.count(), 1);
    QVERIFY(!m_session->isLive());
    QVERIFY(!m_session->isEmpty());
    QCOMPARE(m_session->document()->fileName, path("ride.log"));
    QCOMPARE(m_session->document()->lines.size(), std::size_t(4));
    QVERIFY(m_session->document()->trace.head.hasTimeOfDay);
    QCOMPARE(m_session->document()->trace.head.channels, QStringList(QStringLiteral("can0")));
    m_session->showLive();
    QCOMPARE(changed.count(), 2);
    QVERIFY(m_session->isLive());
}

void tst_TraceSession::transfersEndWithTheFile()
{
    write("ride.log", {readOf6164(0, 2)[0]});
    m_session->open(path("ride.log"));
    finishWork();
    QCOMPARE(m_session->document()->lines.size(), std::size_t(1));
    QVERIFY(m_session->document()->lines.transfer(0).has_value()); // not under way
}

void tst_TraceSession::fileStaysWhenABusIsConnected()
{
    write("ride.log", fourLines());
    m_session->open(path("ride.log"));
    finishWork();
    connectToBus();
    heartbeat();
    QVERIFY(!m_session->isLive());
    QCOMPARE(m_session->document()->lines.size(), std::size_t(4));
    m_session->showLive();
    QCOMPARE(m_session->document()->lines.size(), std::size_t(1));
}

void tst_TraceSession::fileStaysWhenLinesLeave()
{
    TraceSession session(m_bus.get(), nullptr, 20);
    write("ride.log", fourLines());
    session.open(path("ride.log"));
    finishWork();
    QSignalSpy shortened(&session, &TraceSession::shortened);
    connectToBus();
    hear(std::vector<TraceFrame>(20, heard(0, 0x705, "05")));
    QVERIFY(!session.isLive());
    QCOMPARE(session.document()->fileName, path("ride.log"));
    QCOMPARE(shortened.count(), 0);
    session.showLive();
    QCOMPARE(session.document()->lines.size(), std::size_t(10));
}

void tst_TraceSession::opensNoTrace()
{
    m_session->open(path("nothing.log"));
    finishWork();
    QCOMPARE(m_failed.size(), 1);
    QVERIFY(!m_session->loading().isRunning());
    QVERIFY(m_session->isLive());
}

void tst_TraceSession::refusesWhatIsNoFile()
{
#ifdef Q_OS_UNIX
    QCOMPARE(mkfifo(QFile::encodeName(path("pipe.log")).constData(), 0600), 0);
    m_session->open(path("pipe.log"));
    finishWork(); // a pipe to which nobody writes would keep it waiting
    QCOMPARE(m_failed, QStringList(path("pipe.log") + QStringLiteral(" is not a file.")));
    QCOMPARE(mkfifo(QFile::encodeName(path("pipe.txt")).constData(), 0600), 0);
    QVERIFY(!TraceSession::isTraceFile(path("pipe.txt"))); // without a look into it
#endif
    m_failed.clear();
    QVERIFY(QDir().mkpath(path("folder.log")));
    m_session->open(path("folder.log"));
    finishWork();
    QCOMPARE(m_failed,
             QStringList(path("folder.log") + QStringLiteral(" cannot be opened: it is a folder.")));
}

void tst_TraceSession::knowsTracesByNameAndByContent()
{
    QVERIFY(TraceSession::isTraceFile(path("nothing.pcapng.ZST")));
    QVERIFY(!TraceSession::isTraceFile(path("nothing.txt")));
    QVERIFY(!TraceSession::isTraceFile(path("traces")));
    write("ride.log", fourLines());
    QVERIFY(QFile::rename(path("ride.log"), path("ride.txt")));
    QVERIFY(TraceSession::isTraceFile(path("ride.txt")));
    QFile words(path("words.txt"));
    QVERIFY(words.open(QIODevice::WriteOnly));
    words.write("A letter to a friend.\n");
    words.close();
    QVERIFY(!TraceSession::isTraceFile(words.fileName()));
    QVERIFY(TraceSession::mayBeTrace(words.fileName()));
    QVERIFY(TraceSession::mayBeTrace(path("RIDE.LOG.GZ")));
    QVERIFY(!TraceSession::mayBeTrace(path("bike.dxsnap")));
}

void tst_TraceSession::filesThatAreUsedAreTold()
{
    QSignalSpy used(m_session.get(), &TraceSession::fileUsed);
    QSignalSpy refused(m_session.get(), &TraceSession::fileRefused);
    write("ride.log", fourLines());
    m_session->open(path("ride.log"));
    finishWork();
    m_session->save(path("saved.log"), FlightRecorder());
    finishWork();
    m_session->record(path("long.log"));
    m_session->recorder().stopRecording();
    wait(500);
    m_session->open(path("gone.log"));
    m_session->save(path("saved.odt"), FlightRecorder());
    finishWork();
    QStringList names;
    for (const QList<QVariant> &call : qAsConst(used))
        names << call.first().toString();
    QCOMPARE(names, QStringList({path("ride.log"), path("saved.log"), path("long.log")}));
    QCOMPARE(refused.count(), 1);
    QCOMPARE(refused.first().first().toString(), path("gone.log"));
}

void tst_TraceSession::openingIsCancelled()
{
    write("ride.log", fourLines());
    QSignalSpy changed(m_session.get(), &TraceSession::documentChanged);
    m_session->open(path("ride.log"));
    m_session->cancelOpening();
    QVERIFY(!m_session->loading().isRunning());
    finishWork();
    QCOMPARE(changed.count(), 0);
    QCOMPARE(m_failed, QStringList());
    QVERIFY(m_session->isLive());
}

/*! The same frames, other words; what the user looks at stays. */
void tst_TraceSession::devicesOfAFile()
{
    write("ride.log", {heard(0, 0x185, "2A")});
    m_session->open(path("ride.log"));
    finishWork();
    QCOMPARE(m_session->document()->lines.text(0).text,
             QStringLiteral("PDO 1, its mapping is not known: 2A"));
    QSignalSpy changed(m_session.get(), &TraceSession::documentChanged);
    QSignalSpy shortened(m_session.get(), &TraceSession::shortened);
    m_session->tell(mappingOf5(), QStringLiteral("Told."));
    QVERIFY(m_session->loading().isRunning());
    finishWork();
    QCOMPARE(m_session->document()->lines.text(0).text, QStringLiteral("PDO 1: 2000h.1 = 42 (2Ah)"));
    QCOMPARE(m_session->document()->fileName, path("ride.log"));
    QCOMPARE(m_session->document()->trace.frames.size(), std::size_t(1));
    QCOMPARE(changed.count(), 0);
    QCOMPARE(shortened.count(), 1);
    QCOMPARE(shortened.first().first().value<std::size_t>(), std::size_t(0));
    QCOMPARE(m_told, QStringList(QStringLiteral("Told.")));
    m_session->open(path("ride.log")); // anew, and nothing is known
    finishWork();
    QCOMPARE(m_session->document()->lines.text(0).text,
             QStringLiteral("PDO 1, its mapping is not known: 2A"));
    QCOMPARE(changed.count(), 1);
}

void tst_TraceSession::devicesAddUp()
{
    write("ride.log", {heard(0, 0x185, "2A"), heard(1, 0x186, "2B")});
    m_session->open(path("ride.log"));
    finishWork();
    m_session->tell(mappingOf5(), QString());
    finishWork();
    TraceDevices other;
    other.sheets.insert(6, CanOpen::ObjectDictionary());
    m_session->tell(other, QString());
    finishWork();
    QCOMPARE(m_session->document()->lines.text(0).text, QStringLiteral("PDO 1: 2000h.1 = 42 (2Ah)"));
    QCOMPARE(m_session->document()->devices.sheets.size(), 1);
    QCOMPARE(m_session->document()->devices.snapshot.nodes.size(), 1);
}

/*! Both count, and both are told. */
void tst_TraceSession::devicesThatComeWhileLinesAreMade()
{
    openRide();
    m_session->tell(mappingOf5(), QStringLiteral("First."));
    TraceDevices other;
    other.sheets.insert(6, CanOpen::ObjectDictionary());
    m_session->tell(other, QStringLiteral("Second."));
    finishWork();
    QCOMPARE(m_session->document()->lines.text(0).text, QStringLiteral("PDO 1: 2000h.1 = 42 (2Ah)"));
    QCOMPARE(m_session->document()->devices.sheets.size(), 1);
    QCOMPARE(m_told, QStringList(QStringLiteral("First. Second.")));
    m_session->tell(other, QStringLiteral("Third."));
    finishWork();
    QCOMPARE(m_told, QStringList({QStringLiteral("First. Second."), QStringLiteral("Third.")}));
}

void tst_TraceSession::devicesThatComeWhileAFileIsOpened()
{
    write("other.log", fourLines());
    openRide();
    m_session->open(path("other.log"));
    m_session->tell(mappingOf5(), QStringLiteral("Told.")); // of what is shown so far
    finishWork();
    QCOMPARE(m_session->document()->fileName, path("other.log"));
    QCOMPARE(m_session->document()->devices.snapshot.nodes.size(), 0);
    QCOMPARE(m_told, QStringList(QString()));
    QCOMPARE(m_problems, QStringList(notUsed()));
}

void tst_TraceSession::devicesThatComeWhileAFileIsRefused()
{
    openRide();
    m_session->open(path("gone.log"));
    m_session->tell(mappingOf5(), QStringLiteral("Told."));
    finishWork();
    finishWork();
    QCOMPARE(m_failed.size(), 1); // that there is no such file
    QCOMPARE(m_session->document()->lines.text(0).text, QStringLiteral("PDO 1: 2000h.1 = 42 (2Ah)"));
    QCOMPARE(m_told, QStringList(QStringLiteral("Told.")));
}

void tst_TraceSession::devicesThatComeWhileOpeningIsCancelled()
{
    write("other.log", fourLines());
    openRide();
    m_session->open(path("other.log"));
    m_session->tell(mappingOf5(), QStringLiteral("Told."));
    m_session->cancelOpening();
    finishWork();
    QCOMPARE(m_session->document()->lines.text(0).text, QStringLiteral("PDO 1: 2000h.1 = 42 (2Ah)"));
    QCOMPARE(m_told, QStringList(QStringLiteral("Told.")));
}

void tst_TraceSession::devicesThatAreCancelled()
{
    openRide();
    m_session->tell(mappingOf5(), QStringLiteral("Told."));
    m_session->cancelOpening();
    QVERIFY(!m_session->loading().isRunning());
    TraceDevices other;
    other.sheets.insert(6, CanOpen::ObjectDictionary());
    m_session->tell(other, QStringLiteral("Second."));
    finishWork();
    QCOMPARE(m_session->document()->devices.snapshot.nodes.size(), 0);
    QCOMPARE(m_told, QStringList(QStringLiteral("Second.")));
}

/*! The file that was to take its place cannot be opened. */
void tst_TraceSession::devicesOfAFileThatWasNotLeft()
{
    openRide();
    m_session->tell(mappingOf5(), QStringLiteral("Told."));
    m_session->open(path("gone.log"));
    finishWork();
    finishWork();
    QCOMPARE(m_session->document()->lines.text(0).text, QStringLiteral("PDO 1: 2000h.1 = 42 (2Ah)"));
    QCOMPARE(m_told, QStringList(QStringLiteral("Told.")));
}

void tst_TraceSession::devicesOfAFileThatWasLeft()
{
    write("ride.log", {heard(0, 0x185, "2A")});
    write("other.log", fourLines());
    m_session->open(path("ride.log"));
    finishWork();
    m_session->tell(mappingOf5(), QStringLiteral("Told."));
    m_session->open(path("other.log")); // before it is done
    finishWork();
    QCOMPARE(m_session->document()->fileName, path("other.log"));
    QCOMPARE(m_told, QStringList(QString()));
    QCOMPARE(m_problems, QStringList(notUsed()));
}

void tst_TraceSession::devicesOfAFileThatIsLeftMeanwhile()
{
    write("ride.log", {heard(0, 0x185, "2A")});
    m_session->open(path("ride.log"));
    finishWork();
    m_session->tell(mappingOf5(), QStringLiteral("Told."));
    m_session->showLive();
    finishWork();
    QVERIFY(m_session->isLive()); // the file does not come back by itself
    QCOMPARE(m_told, QStringList(QString()));
    QCOMPARE(m_problems, QStringList(notUsed()));
}

void tst_TraceSession::devicesOfWhatIsHeard()
{
    connectToBus();
    hear({heard(0, 0x185, "2A")});
    QSignalSpy relearnt(m_session.get(), &TraceSession::relearnt);
    m_session->tell(mappingOf5(), QStringLiteral("Told."));
    QVERIFY(relearnt.count() > 0);
    QCOMPARE(m_session->document()->lines.text(0).text, QStringLiteral("PDO 1: 2000h.1 = 42 (2Ah)"));
    QCOMPARE(m_told, QStringList(QStringLiteral("Told.")));
    hear({heard(0, 0x185, "2B")});
    QCOMPARE(m_session->document()->lines.text(1).text, QStringLiteral("PDO 1: 2000h.1 = 43 (2Bh)"));
}

void tst_TraceSession::problemsOfAFile()
{
    write("ride.log", fourLines());
    QFile file(path("ride.log"));
    QVERIFY(file.open(QIODevice::Append));
    file.write("(1795336201.500000) can0 7FG#05\n");
    file.close();
    m_session->open(path("ride.log"));
    finishWork();
    QCOMPARE(m_session->document()->lines.size(), std::size_t(4));
    QCOMPARE(m_session->document()->trace.unread, quint64(1));
    QCOMPARE(m_session->document()->trace.problems.front().line, qint64(6));
}

void tst_TraceSession::shownPartIsSaved()
{
    write("ride.log", fourLines());
    m_session->open(path("ride.log"));
    finishWork();
    m_session->saveShown(path("part.asc"), rowsOf(2));
    finishWork();
    QCOMPARE(m_failed, QStringList());
    QCOMPARE(load(path("part.asc")).frames.size(), std::size_t(2));
    QCOMPARE(m_problems.size(), 1);
    QVERIFY2(m_problems.first().startsWith(QStringLiteral("This format cannot hold: the names of channels")),
             qPrintable(m_problems.first()));
}

void tst_TraceSession::missingFramesAreSaidWhenItIsSaved_data()
{
    QTest::addColumn<int>("missing");
    QTest::addColumn<int>("node");
    QTest::addColumn<QStringList>("problems");

    const QStringList oldest(QStringLiteral("There were more frames than are kept: the oldest are missing."));
    const QStringList newest(QStringLiteral("There were more frames than are kept: the newest are missing."));
    QTest::newRow("none") << int(MissingFrames::None) << 0 << QStringList();
    QTest::newRow("newest") << int(MissingFrames::Newest) << 0 << newest;
    QTest::newRow("newest, with a filter") << int(MissingFrames::Newest) << 2 << newest;
    QTest::newRow("oldest, with a filter") << int(MissingFrames::Oldest) << 2 << oldest;
}

void tst_TraceSession::missingFramesAreSaidWhenItIsSaved()
{
    QFETCH(int, missing);
    QFETCH(int, node);
    auto trace = std::make_shared<Trace>(documentOf(fourLines())->trace);
    trace->missing = static_cast<MissingFrames>(missing);
    m_session->open(path("ride.log"), trace, TraceDevices());
    finishWork();
    m_session->saveShown(path("part.log"), rowsOf(static_cast<std::size_t>(node)));
    finishWork();
    QCOMPARE(load(path("part.log")).frames.size(), std::size_t(node == 0 ? 5 : 2));
    QTEST(m_problems, "problems");
}

void tst_TraceSession::framesThatHaveLeftAreSaidWhenItIsSaved()
{
    m_session = std::make_unique<TraceSession>(m_bus.get(), nullptr, 100);
    QStringList problems;
    connect(m_session.get(), &TraceSession::told, this,
            [&problems](const QString &, const QStringList &told) { problems << told; });
    connectToBus();
    hear(std::vector<TraceFrame>(90, heard(0, 0x705, "05")));
    m_session->saveShown(path("whole.log"), rowsOf(0));
    finishWork();
    QCOMPARE(problems, QStringList());
    hear(std::vector<TraceFrame>(60, heard(0, 0x705, "05")));
    m_session->saveShown(path("part.log"), rowsOf(5));
    finishWork();
    QCOMPARE(problems,
             QStringList(QStringLiteral("There were more frames than are kept: the oldest are missing.")));
}

QTEST_GUILESS_MAIN(tst_TraceSession)
#include "tst_tracesession.moc"
