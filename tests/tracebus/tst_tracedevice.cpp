// SPDX-License-Identifier: MIT
#include <bus/busconnection.h>
#include <canopen/sdoclient.h>
#include <tracebus/tracedevice.h>

#include <QCanBus>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace {

// candump's log: a heartbeat each 500 ms, the device type of node 2 read at 1.0 s, on another channel something else.
const char ride[] = "(1600000000.000000) can0 702#05\n"
                    "(1600000000.100000) can1 703#7F\n"
                    "(1600000000.500000) can0 702#05\n"
                    "(1600000001.000000) can0 702#05\n"
                    "(1600000001.001000) can0 602#4000100000000000\n"
                    "(1600000001.002000) can0 582#43001000C6010047\n"
                    "(1600000001.500000) can0 702#05\n"
                    "(1600000002.000000) can0 702#05\n";

/*! Lets so much time pass, in ms. */
void pass(int time)
{
    QEventLoop loop;
    QTimer::singleShot(time, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

/*! Times are of a bus that goes with the clock: us. */
bool isAbout(qint64 time, qint64 expected)
{
    return std::abs(time - expected) < 20000;
}

/*! "702#05" */
QString textOf(const QCanBusFrame &frame)
{
    return QStringLiteral("%1#%2")
        .arg(frame.frameId(), 3, 16, QLatin1Char('0'))
        .arg(QString::fromLatin1(frame.payload().toHex()));
}

/*! What arrives at a device, with the time in ms since it was made. */
class Listener
{
public:
    explicit Listener(QCanBusDevice *device)
    {
        m_clock.start();
        QObject::connect(device, &QCanBusDevice::framesReceived, device, [this, device] {
            const QVector<QCanBusFrame> frames = device->readAllFrames();
            for (const QCanBusFrame &frame : frames) {
                texts.append(textOf(frame));
                times.append(m_clock.elapsed());
                stamps.append(frame.timeStamp().seconds() * 1000000 + frame.timeStamp().microSeconds());
            }
        });
    }

    QStringList texts;
    QVector<qint64> times;  // ms
    QVector<qint64> stamps; // us

private:
    QElapsedTimer m_clock;
};

} // namespace

class tst_TraceDevice : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void isFoundByQCanBus();
    void tracesOfTheUserAreListed();
    void playsInItsTimes();
    void playsFaster();
    void playsAsFastAsItIsTaken();
    void unpacedWaitsForItsReader();
    void playsInSteps();
    void pausesAndGoesOn();
    void stepsPause();
    void changesTheSpeed();
    void speedsThatThereAreNot_data();
    void speedsThatThereAreNot();
    void beginsAnewWhenAsked();
    void repeatsWhenAsked();
    void tellsHowFarItIs();
    void playsAnotherChannel();
    void repeats();
    void answersReads();
    void answersWhenItIsOver();
    void hidesTransfersOfThen();
    void otherFramesAreNotHidden();
    void takesFramesThatGoNowhere();
    void cannotBeOpened_data();
    void cannotBeOpened();
    void connectsAgain();
    void canBeGivenUpWhileItIsRead_data();
    void canBeGivenUpWhileItIsRead();
    void slotsMayCloseOrDelete_data();
    void slotsMayCloseOrDelete();
    void isABusForTheHost();
    void nobodyIsLostWhileItIsPaused();

private:
    static bool isConnected(QCanBusDevice *device);
    std::unique_ptr<TraceCanDevice> device(const QString &settings = QString());

    QTemporaryDir m_folder;
    QString m_file;
};

void tst_TraceDevice::initTestCase()
{
    QCoreApplication::addLibraryPath(QStringLiteral(OVERVIEW_BIN_DIR));
    m_file = m_folder.filePath(QStringLiteral("ride.log"));
    QFile file(m_file);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(ride);
}

/*! The file is read in another thread. */
bool tst_TraceDevice::isConnected(QCanBusDevice *device)
{
    if (!device->connectDevice())
        return false;
    QEventLoop loop;
    connect(device, &QCanBusDevice::stateChanged, &loop, &QEventLoop::quit);
    loop.exec();
    return device->state() == QCanBusDevice::ConnectedState;
}

std::unique_ptr<TraceCanDevice> tst_TraceDevice::device(const QString &settings)
{
    auto made = std::make_unique<TraceCanDevice>(m_file + settings);
    if (!isConnected(made.get()))
        qFatal("%s", qPrintable(made->errorString()));
    return made;
}

void tst_TraceDevice::isFoundByQCanBus()
{
    QVERIFY(QCanBus::instance()->plugins().contains(QStringLiteral("trace")));
    QString error;
    const std::unique_ptr<QCanBusDevice> made(
        QCanBus::instance()->createDevice(QStringLiteral("trace"), m_file, &error));
    QVERIFY2(made != nullptr, qPrintable(error));
    QVERIFY2(isConnected(made.get()), qPrintable(made->errorString()));
    QCOMPARE(made->state(), QCanBusDevice::ConnectedState);
}

void tst_TraceDevice::tracesOfTheUserAreListed()
{
    const QTemporaryDir data;
    qputenv("XDG_DATA_HOME", data.path().toUtf8());
    QVERIFY(TraceCanDevice::interfaces().isEmpty());
    const QDir folder(data.filePath(QStringLiteral("draxel/traces")));
    QVERIFY(folder.mkpath(QStringLiteral(".")));
    for (const char *name : {"a.log", "b.txt", "c.trc.gz"}) {
        QFile file(folder.filePath(QLatin1String(name)));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    QStringList names;
    const QList<QCanBusDeviceInfo> infos = TraceCanDevice::interfaces();
    for (const QCanBusDeviceInfo &info : infos) {
        QVERIFY(info.isVirtual());
        QVERIFY2(info.description().startsWith(QLatin1String("Trace of ")), qPrintable(info.description()));
        names.append(info.name());
    }
    names.sort();
    QCOMPARE(names, QStringList({folder.filePath(QStringLiteral("a.log")),
                                 folder.filePath(QStringLiteral("c.trc.gz"))}));
}

void tst_TraceDevice::playsInItsTimes()
{
    const auto played = device();
    Listener listener(played.get());
    pass(1200);
    QCOMPARE(listener.texts,
             QStringList({QStringLiteral("702#05"), QStringLiteral("702#05"), QStringLiteral("702#05"),
                          QStringLiteral("602#4000100000000000"), QStringLiteral("582#43001000c6010047")}));
    QCOMPARE(listener.stamps, QVector<qint64>({1600000000000000, 1600000000500000, 1600000001000000,
                                               1600000001001000, 1600000001002000}));
    const QVector<qint64> due{0, 500, 1000, 1001, 1002};
    for (int i = 0; i < due.size(); ++i)
        QVERIFY2(std::abs(listener.times.at(i) - due.at(i)) <= 2,
                 qPrintable(QString::number(listener.times.at(i))));
}

void tst_TraceDevice::playsFaster()
{
    const auto played = device(QStringLiteral("?speed=10"));
    Listener listener(played.get());
    pass(155);
    QCOMPARE(listener.texts.size(), 6);
    QCOMPARE(listener.stamps.last(), 1600000001500000);
    pass(50);
    QCOMPARE(listener.texts.size(), 7);
}

void tst_TraceDevice::playsAsFastAsItIsTaken()
{
    const auto played = device(QStringLiteral("?speed=max"));
    Listener listener(played.get());
    pass(20);
    QCOMPARE(listener.texts.size(), 7);
    QCOMPARE(listener.stamps.last(), 1600000002000000);
    QCOMPARE(played->state(), QCanBusDevice::ConnectedState);
}

/*! A million frames are not put into the queue of somebody who does not look. */
void tst_TraceDevice::unpacedWaitsForItsReader()
{
    const QString name = m_folder.filePath(QStringLiteral("long.log"));
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    for (int i = 0; i < 3000; ++i)
        file.write("(1600000000.000000) can0 702#05\n");
    file.close();
    TraceCanDevice played(name + QStringLiteral("?speed=max"));
    QVERIFY(isConnected(&played));
    pass(500);
    QVERIFY2(played.framesAvailable() <= 1000, qPrintable(QString::number(played.framesAvailable())));
    int read = 0;
    while (played.framesAvailable() > 0) {
        read += played.readAllFrames().size();
        pass(50);
    }
    QCOMPARE(read, 3000);
}

void tst_TraceDevice::playsInSteps()
{
    const auto played = device(QStringLiteral("?speed=step"));
    Listener listener(played.get());
    pass(5000);
    QCOMPARE(listener.texts.size(), 0);
    played->setConfigurationParameter(TraceCanDevice::StepKey, 2);
    pass(5);
    QCOMPARE(listener.texts.size(), 2);
    pass(5000);
    QCOMPARE(listener.texts.size(), 2);
    played->setConfigurationParameter(TraceCanDevice::StepKey, 100);
    pass(5);
    QCOMPARE(listener.texts.size(), 7);
}

void tst_TraceDevice::pausesAndGoesOn()
{
    const auto played = device();
    Listener listener(played.get());
    pass(600);
    QCOMPARE(listener.texts.size(), 2);
    played->setConfigurationParameter(TraceCanDevice::PauseKey, true);
    pass(60000);
    QCOMPARE(listener.texts.size(), 2);
    QVERIFY(isAbout(played->busTime(), 1600000000600000));
    played->setConfigurationParameter(TraceCanDevice::PauseKey, true); // once more
    played->setConfigurationParameter(TraceCanDevice::PauseKey, false);
    pass(405);
    QCOMPARE(listener.texts.size(), 5);
    QVERIFY(isAbout(listener.stamps.at(2), 1600000001000000)); // as if there had been no pause
    played->setConfigurationParameter(TraceCanDevice::PauseKey, false);
    pass(600);
    QCOMPARE(listener.texts.size(), 6);
}

void tst_TraceDevice::stepsPause()
{
    const auto played = device();
    Listener listener(played.get());
    pass(100);
    QCOMPARE(listener.texts.size(), 1);
    played->setConfigurationParameter(TraceCanDevice::StepKey, 1);
    pass(60000);
    QCOMPARE(listener.texts.size(), 2);
    played->setConfigurationParameter(TraceCanDevice::StepKey, 1); // two at once count
    played->setConfigurationParameter(TraceCanDevice::StepKey, 1);
    pass(60000);
    QCOMPARE(listener.texts.size(), 4);
    played->setConfigurationParameter(TraceCanDevice::PauseKey, false);
    pass(5);
    QCOMPARE(listener.texts.size(), 5);
}

void tst_TraceDevice::changesTheSpeed()
{
    const auto played = device(QStringLiteral("?speed=step"));
    Listener listener(played.get());
    played->setConfigurationParameter(TraceCanDevice::SpeedKey, 10.0);
    pass(5000);
    QCOMPARE(listener.texts.size(), 0); // paused as before
    played->setConfigurationParameter(TraceCanDevice::PauseKey, false);
    pass(155);
    QCOMPARE(listener.texts.size(), 6);
    played->setConfigurationParameter(TraceCanDevice::SpeedKey, 0.0);
    pass(1);
    QCOMPARE(listener.texts.size(), 7);
}

void tst_TraceDevice::speedsThatThereAreNot_data()
{
    QTest::addColumn<QVariant>("speed");
    QTest::newRow("too slow") << QVariant(0.009);
    QTest::newRow("too fast") << QVariant(1001.0);
    QTest::newRow("backward") << QVariant(-1.0);
    QTest::newRow("no number") << QVariant(qQNaN());
}

void tst_TraceDevice::speedsThatThereAreNot()
{
    QFETCH(QVariant, speed);
    const auto played = device();
    Listener listener(played.get());
    played->setConfigurationParameter(TraceCanDevice::SpeedKey, speed);
    pass(499);
    QCOMPARE(listener.texts.size(), 1);
    pass(5);
    QCOMPARE(listener.texts.size(), 2);
}

void tst_TraceDevice::beginsAnewWhenAsked()
{
    const auto played = device();
    Listener listener(played.get());
    pass(5000);
    QCOMPARE(listener.texts.size(), 7);
    played->setConfigurationParameter(TraceCanDevice::RestartKey, true);
    pass(1200);
    QCOMPARE(listener.texts.size(), 12);
    played->setConfigurationParameter(TraceCanDevice::RestartKey, true);
    pass(1);
    QCOMPARE(listener.texts.size(), 13);
    QVERIFY(listener.stamps.at(12) >= listener.stamps.at(11));
}

void tst_TraceDevice::repeatsWhenAsked()
{
    const auto played = device();
    Listener listener(played.get());
    pass(600);
    played->setConfigurationParameter(TraceCanDevice::RepeatKey, true);
    pass(1550);
    QCOMPARE(listener.texts.size(), 8);
    QVERIFY(PlaybackState::of(played.get()).value_or(PlaybackState()).isRepeated);
    played->setConfigurationParameter(TraceCanDevice::RepeatKey, false);
    pass(60000);
    QCOMPARE(listener.texts.size(), 14);
    played->setConfigurationParameter(TraceCanDevice::RepeatKey, true); // it is over
    pass(100);
    QCOMPARE(listener.texts.size(), 15);
}

void tst_TraceDevice::tellsHowFarItIs()
{
    QVERIFY(!PlaybackState::of(nullptr));
    const auto played = device();
    const auto state = [&played] { return PlaybackState::of(played.get()).value_or(PlaybackState()); };
    QCOMPARE(state().played, 0);
    QCOMPARE(state().frames, 7);
    QCOMPARE(state().time, 1600000000000000);
    QVERIFY(state().hasTimeOfDay);
    QCOMPARE(state().timeOfDay().toMSecsSinceEpoch(), 1600000000000);
    QVERIFY(!state().isPaused);
    QCOMPARE(state().speed, 1.0);
    pass(600);
    QCOMPARE(state().played, 2);
    QCOMPARE(state().time, 1600000000500000);
    QVERIFY(isAbout(played->busTime(), 1600000000600000));
    played->setConfigurationParameter(TraceCanDevice::PauseKey, true);
    played->setConfigurationParameter(TraceCanDevice::SpeedKey, 0.0);
    QVERIFY(state().isPaused);
    QCOMPARE(state().speed, 0.0);
    QVERIFY(!state().isOver);
    played->setConfigurationParameter(TraceCanDevice::PauseKey, false);
    pass(10);
    QVERIFY(state().isOver);
    played->disconnectDevice();
    QCOMPARE(state().frames, 0);
    QCOMPARE(played->busTime(), 0);
    const auto repeated = device(QStringLiteral("?repeat=yes&speed=max"));
    pass(10);
    QVERIFY(!PlaybackState::of(repeated.get()).value_or(PlaybackState()).isOver);
}

void tst_TraceDevice::playsAnotherChannel()
{
    const auto played = device(QStringLiteral("?channel=can1"));
    Listener listener(played.get());
    pass(5000);
    QCOMPARE(listener.texts, QStringList(QStringLiteral("703#7f")));
}

void tst_TraceDevice::repeats()
{
    const auto played = device(QStringLiteral("?repeat=yes"));
    Listener listener(played.get());
    pass(2050);
    QCOMPARE(listener.texts.size(), 7);
    pass(100);
    QCOMPARE(listener.texts.size(), 8);
    pass(2100);
    QCOMPARE(listener.texts.size(), 15);
    for (int i = 1; i < listener.stamps.size(); ++i)
        QVERIFY(listener.stamps.at(i) >= listener.stamps.at(i - 1));
}

void tst_TraceDevice::answersReads()
{
    const auto played = device(QStringLiteral("?answers=past&speed=step"));
    Listener listener(played.get());
    const QCanBusFrame request(0x602, QByteArray::fromHex("4000100000000000"));
    QSignalSpy written(played.get(), &QCanBusDevice::framesWritten);
    QVERIFY(played->writeFrame(request));
    QCOMPARE(written.count(), 1);
    QCOMPARE(listener.texts, QStringList()); // nobody is answered while he writes
    QTRY_COMPARE(listener.texts, QStringList(QStringLiteral("582#8000100002f00008"))); // only later
    played->setConfigurationParameter(TraceCanDevice::StepKey, 5);
    QTRY_COMPARE(listener.texts.size(), 4); // and three heartbeats: the transfer of then is hidden
    QVERIFY(played->writeFrame(request));
    QTRY_COMPARE(listener.texts.size(), 5);
    QCOMPARE(listener.texts.last(), QStringLiteral("582#43001000c6010047"));
}

void tst_TraceDevice::answersWhenItIsOver()
{
    const auto played = device(QStringLiteral("?answers=past"));
    Listener listener(played.get());
    pass(60000);
    QCOMPARE(listener.texts.size(), 7);
    QVERIFY(played->writeFrame(QCanBusFrame(0x602, QByteArray::fromHex("4000100000000000"))));
    QTRY_COMPARE(listener.texts.size(), 8);
    QCOMPARE(listener.texts.last(), QStringLiteral("582#43001000c6010047"));
    QCOMPARE(listener.stamps.last(), 1600000002000000); // its time is over
}

void tst_TraceDevice::hidesTransfersOfThen()
{
    const auto played = device();
    Listener listener(played.get());
    QVERIFY(played->writeFrame(QCanBusFrame(0x602, QByteArray::fromHex("4099990000000000"))));
    pass(3000);
    QCOMPARE(listener.texts.filter(QStringLiteral("602#")), QStringList());
    QCOMPARE(listener.texts.filter(QStringLiteral("582#")),
             QStringList(QStringLiteral("582#8099990001f00008")));
    QCOMPARE(listener.texts.filter(QStringLiteral("702#05")).size(), 5);
}

/*! What only looks like SDO of the node is no transfer. */
void tst_TraceDevice::otherFramesAreNotHidden()
{
    const QString name = m_folder.filePath(QStringLiteral("others.log"));
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("(1600000000.000000) can0 702#05\n"
               "(1600000001.000000) can0 00000602#4000100000000000\n"
               "(1600000001.000000) can0 602#4000100000000000\n"
               "(1600000001.000000) can0 603#4000100000000000\n");
    file.close();
    TraceCanDevice played(name);
    QVERIFY(isConnected(&played));
    Listener listener(&played);
    QVERIFY(played.writeFrame(QCanBusFrame(0x602, QByteArray::fromHex("4099990000000000"))));
    pass(3000);
    QCOMPARE(listener.texts.filter(QStringLiteral("602#")).size(), 1); // the extended one
    QCOMPARE(listener.texts.filter(QStringLiteral("603#")).size(), 1); // nobody has asked this node
}

void tst_TraceDevice::takesFramesThatGoNowhere()
{
    const auto played = device();
    Listener listener(played.get());
    QVERIFY(played->writeFrame(QCanBusFrame(0x000, QByteArray::fromHex("0100"))));
    QCanBusFrame error;
    error.setFrameType(QCanBusFrame::ErrorFrame);
    QVERIFY(!played->writeFrame(error));
    QCOMPARE(played->error(), QCanBusDevice::WriteError);
    pass(3000);
    QCOMPARE(listener.texts.size(), 7);
    played->disconnectDevice();
    QVERIFY(!played->writeFrame(QCanBusFrame(0x000, QByteArray::fromHex("0100"))));
}

void tst_TraceDevice::cannotBeOpened_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("complaint");
    QTest::addColumn<int>("error");

    QTest::newRow("no file") << QStringLiteral("/nowhere/ride.log") << QString()
                             << int(QCanBusDevice::ConnectionError);
#ifdef Q_OS_UNIX
    // Nor a pipe, which might keep a thread waiting for ever.
    QTest::newRow("no ordinary file")
        << QStringLiteral("/dev/null") << QStringLiteral("/dev/null is not a file.")
        << int(QCanBusDevice::ConnectionError);
#endif
    QTest::newRow("setting")
        << QStringLiteral("%1?speed=0")
        << QStringLiteral("\"speed\" takes a number from 0.01 to 1000, \"max\" or \"step\", not \"0\".")
        << int(QCanBusDevice::ConfigurationError);
    QTest::newRow("channel") << QStringLiteral("%1?channel=can7")
                             << QStringLiteral("The trace %1 has no channel \"can7\". There are: can0, can1.")
                             << int(QCanBusDevice::ConnectionError);
}

void tst_TraceDevice::cannotBeOpened()
{
    QFETCH(QString, name);
    QFETCH(QString, complaint);
    QFETCH(int, error);
    TraceCanDevice played(name.contains(QLatin1Char('%')) ? name.arg(m_file) : name);
    QVERIFY(!isConnected(&played));
    QCOMPARE(played.state(), QCanBusDevice::UnconnectedState);
    QCOMPARE(int(played.error()), error);
    QVERIFY(!played.errorString().isEmpty());
    if (!complaint.isEmpty())
        QCOMPARE(played.errorString(),
                 complaint.contains(QLatin1Char('%')) ? complaint.arg(m_file) : complaint);
}

void tst_TraceDevice::connectsAgain()
{
    const auto played = device();
    Listener listener(played.get());
    pass(600);
    QCOMPARE(listener.texts.size(), 2);
    played->disconnectDevice();
    QCOMPARE(played->state(), QCanBusDevice::UnconnectedState);
    pass(5000);
    QCOMPARE(listener.texts.size(), 2);
    played->disconnectDevice();
    QVERIFY(isConnected(played.get()));
    QVERIFY(played->writeFrame(QCanBusFrame(0x602, QByteArray::fromHex("4000100000000000"))));
    played->disconnectDevice(); // before the answer
    QVERIFY(isConnected(played.get()));
    pass(600);
    QCOMPARE(listener.texts.size(), 4);
}

void tst_TraceDevice::canBeGivenUpWhileItIsRead_data()
{
    QTest::addColumn<bool>("isDeleted");
    QTest::newRow("closed") << false;
    QTest::newRow("deleted") << true;
}

void tst_TraceDevice::canBeGivenUpWhileItIsRead()
{
    QFETCH(bool, isDeleted);
    auto played = std::make_unique<TraceCanDevice>(m_file);
    QVERIFY(played->connectDevice());
    QCOMPARE(played->state(), QCanBusDevice::ConnectingState);
    QVERIFY(!played->writeFrame(QCanBusFrame(0x602, QByteArray::fromHex("4000100000000000"))));
    if (isDeleted) {
        played.reset();
        pass(1000);
        return;
    }
    played->disconnectDevice();
    QCOMPARE(played->state(), QCanBusDevice::UnconnectedState);
    pass(1000); // what was read comes to nothing
    QCOMPARE(played->state(), QCanBusDevice::UnconnectedState);
    QVERIFY(isConnected(played.get()));
    Listener listener(played.get());
    pass(600);
    QCOMPARE(listener.texts.size(), 2);
}

void tst_TraceDevice::slotsMayCloseOrDelete_data()
{
    QTest::addColumn<bool>("isDeleted");
    QTest::addColumn<bool>("isAsked");
    QTest::newRow("closed") << false << false;
    QTest::newRow("deleted") << true << false;
    QTest::newRow("closed at an answer") << false << true;
    QTest::newRow("deleted at an answer") << true << true;
}

void tst_TraceDevice::slotsMayCloseOrDelete()
{
    QFETCH(bool, isDeleted);
    QFETCH(bool, isAsked);
    TraceCanDevice *played = device(isAsked ? QStringLiteral("?speed=step") : QString()).release();
    int received = 0;
    connect(played, &QCanBusDevice::framesReceived, this, [played, isDeleted, &received] {
        ++received;
        if (isDeleted)
            delete played;
        else
            played->disconnectDevice();
    });
    if (isAsked)
        played->writeFrame(QCanBusFrame(0x602, QByteArray::fromHex("4000100000000000")));
    pass(3000);
    QCOMPARE(received, 1);
    if (!isDeleted)
        delete played;
}

/*! Through the host's connection: heartbeats are heard, uploads give the value of then, and gaps their reason. */
void tst_TraceDevice::isABusForTheHost()
{
    BusConnection bus;
    QSignalSpy finished(&bus.sdoClient(), &CanOpen::SdoClient::finished);
    BusSettings settings;
    settings.address.plugin = QStringLiteral("trace");
    settings.address.interfaceName = m_file;
    QString error;
    QVERIFY2(bus.connectToBus(settings, &error), qPrintable(error));
    QTRY_VERIFY(bus.heartbeats().state(2) == CanOpen::NmtState::Operational);
    bus.sdoClient().upload(2, {0x1000, 0}, CanOpen::DataType::Unsigned32);
    QTRY_COMPARE(finished.count(), 1);
    bus.sdoClient().upload(2, {0x1001, 0}, CanOpen::DataType::Unsigned8);
    QTRY_COMPARE(finished.count(), 2);
    const auto first = finished.at(0).first().value<CanOpen::SdoOutcome>();
    QVERIFY(first.kind == CanOpen::SdoOutcome::Kind::Value);
    QCOMPARE(first.value.toUInt(), 0x470001C6u);
    const auto second = finished.at(1).first().value<CanOpen::SdoOutcome>();
    QVERIFY(second.kind == CanOpen::SdoOutcome::Kind::Abort);
    QCOMPARE(second.code, 0x0800F001u);
}

/*! Nor when it is over: what was not recorded is not gone. */
void tst_TraceDevice::nobodyIsLostWhileItIsPaused()
{
    const QString name = m_folder.filePath(QStringLiteral("silent.log"));
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    for (const char *time : {"0.0", "0.5", "1.0", "1.5", "2.0"})
        file.write(QByteArray("(160000000") + time + "00000) can0 702#05\n");
    file.write("(1600000010.000000) can0 703#05\n");
    file.close();
    BusConnection bus;
    QSignalSpy lost(&bus.heartbeats(), &CanOpen::HeartbeatConsumer::nodeLost);
    BusSettings settings;
    settings.address.plugin = QStringLiteral("trace");
    settings.address.interfaceName = name;
    QString error;
    QVERIFY2(bus.connectToBus(settings, &error), qPrintable(error));
    pass(2100);
    QVERIFY(bus.configureDevice(TraceCanDevice::PauseKey, true));
    pass(60000);
    QVERIFY(bus.heartbeats().state(2).has_value());
    QVERIFY(bus.configureDevice(TraceCanDevice::PauseKey, false));
    pass(5000);
    QCOMPARE(lost.count(), 1); // that one has gone
    pass(60000);
    QCOMPARE(lost.count(), 1);
    QVERIFY(bus.heartbeats().state(3).has_value());
    QVERIFY(bus.busTime().has_value());
    bus.disconnectFromBus();
    QVERIFY(!bus.busTime().has_value());
    QVERIFY(!bus.configureDevice(TraceCanDevice::PauseKey, true));
}

QTEST_GUILESS_MAIN(tst_TraceDevice)
#include "tst_tracedevice.moc"
