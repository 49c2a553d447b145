// SPDX-License-Identifier: MIT
#include <canopen/canport.h>

#include <tests/support/fakecandevice.h>

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTimer>
#include <QtTest>

#include <memory>
#include <utility>

using namespace CanOpen;

Q_DECLARE_METATYPE(FakeCanDevice::Sending)

namespace {

QCanBusFrame frame(int number)
{
    QByteArray payload(2, '\0');
    payload[0] = static_cast<char>(number & 0xFF);
    payload[1] = static_cast<char>(number >> 8);
    return QCanBusFrame(0x605, payload);
}

int numberOf(const QCanBusFrame &frame)
{
    const QByteArray payload = frame.payload();
    return static_cast<quint8>(payload.at(0)) | static_cast<quint8>(payload.at(1)) << 8;
}

QVector<int> numbersOf(const QVector<QCanBusFrame> &frames)
{
    QVector<int> numbers;
    for (const QCanBusFrame &each : frames)
        numbers.append(numberOf(each));
    return numbers;
}

QVector<int> upTo(int count)
{
    QVector<int> numbers;
    for (int number = 0; number < count; ++number)
        numbers.append(number);
    return numbers;
}

// A port with its device, not yet open.
struct Fixture
{
    Fixture()
    {
        auto owned = std::make_unique<FakeCanDevice>();
        device = owned.get();
        port = std::make_unique<CanPort>(std::move(owned));
        QObject::connect(port.get(), &CanPort::frameReceived, port.get(),
                         [this](const QCanBusFrame &received) { frames.append(received); });
        QObject::connect(port.get(), &CanPort::lost, port.get(),
                         [this](const QString &reason) { losses.append(reason); });
        QObject::connect(port.get(), &CanPort::written, port.get(),
                         [this](const QCanBusFrame &frame) { written.append(numberOf(frame)); });
        QObject::connect(port.get(), &CanPort::dropped, port.get(),
                         [this](const QCanBusFrame &frame) { dropped.append(numberOf(frame)); });
    }

    bool open()
    {
        QString message;
        return port->open(&message);
    }

    QPointer<FakeCanDevice> device;
    std::unique_ptr<CanPort> port;
    QVector<QCanBusFrame> frames; // received
    QStringList losses;
    QVector<int> written; // of the frames that had to wait
    QVector<int> dropped;
};

} // namespace

class tst_CanPort : public QObject
{
    Q_OBJECT

private slots:
    void clearsTheDefaultBitRate();

    void opens();
    void takesAConnectedDevice();
    void openWaitsForBackground();
    void openFails_data();
    void openFails();
    void deviceSaysHowLongItMayTake();
    void portDeletedWhileConnecting();
    void closeIsNoLoss();
    void dropsWhatIsSentWhileClosed();
    void dropsInvalidFrames();

    void sendsAtOnce();
    void burstLosesNothing_data();
    void burstLosesNothing();
    void keepsFewFramesInTheDevice();
    void failingWritesLoseNothing_data();
    void failingWritesLoseNothing();
    void framesLostInTheQueueAreSentAgain();
    void tellsWhatBecameOfAFrame_data();
    void tellsWhatBecameOfAFrame();
    void tellsWhichFramesAreDropped();
    void tellsNothingOfFramesAfterTheEnd();
    void unpluggedDeviceIsLost();
    void shortFailureIsNoLoss();
    void refusedFrameDoesNotHoldUpTheOthersForEver();
    void stuckDeviceDropsOldFrames();

    void leavingConnectedStateIsALoss();
    void fatalErrorsAreALoss_data();
    void fatalErrorsAreALoss();
    void otherErrorsAreNoLoss();
    void lossIsReportedFromTheEventLoop();
    void closeBeforeTheReportSilencesIt();
    void nothingIsSentAfterALoss();

    void deliversInOrder();
    void deliversWhatWasThereBefore();
    void deliversABoundedNumberPerTurn();
    void passesEveryKindOfFrame();
    void sendsFromTheReceivingSlot();
    void nestedEventLoopKeepsTheOrder();
    void closingInASlotIsSafe_data();
    void closingInASlotIsSafe();
    void deletingInASlotIsSafe_data();
    void deletingInASlotIsSafe();
};

void tst_CanPort::clearsTheDefaultBitRate()
{
    FakeCanDevice device;
    device.setConfigurationParameter(QCanBusDevice::BitRateKey, 500000);
    device.setConfigurationParameter(QCanBusDevice::LoopbackKey, true);
    clearDefaultBitRate(device);
    QVERIFY(!device.configurationKeys().contains(QCanBusDevice::BitRateKey));
    QVERIFY(!device.configurationParameter(QCanBusDevice::BitRateKey).isValid());
    QVERIFY(device.configurationKeys().contains(QCanBusDevice::LoopbackKey));
    clearDefaultBitRate(device);
}

void tst_CanPort::opens()
{
    Fixture test;
    QVERIFY(!test.port->isOpen());
    QCOMPARE(test.port->device(), test.device.data());
    QVERIFY(test.open());
    QVERIFY(test.port->isOpen());
    QCOMPARE(test.device->state(), QCanBusDevice::ConnectedState);
    QVERIFY(test.open());
}

void tst_CanPort::takesAConnectedDevice()
{
    Fixture test;
    QVERIFY(test.device->connectDevice());
    QVERIFY(test.open());
    QVERIFY(test.port->isOpen());
}

void tst_CanPort::openWaitsForBackground()
{
    Fixture test;
    test.device->setConnecting(FakeCanDevice::Connecting::InBackground);
    QVERIFY(test.open());
    QVERIFY(test.port->isOpen());
}

void tst_CanPort::openFails_data()
{
    QTest::addColumn<int>("connecting");
    QTest::addColumn<QString>("message");

    QTest::newRow("at once") << static_cast<int>(FakeCanDevice::Connecting::Refused)
                             << QStringLiteral("no such interface");
    QTest::newRow("in the background")
        << static_cast<int>(FakeCanDevice::Connecting::InBackgroundInVain) << QStringLiteral("nobody there");
    QTest::newRow("never connects") << static_cast<int>(FakeCanDevice::Connecting::Never)
                                    << QStringLiteral("The CAN interface did not connect within 5 seconds.");
}

void tst_CanPort::openFails()
{
    QFETCH(int, connecting);
    QFETCH(QString, message);
    Fixture test;
    test.device->setConnecting(static_cast<FakeCanDevice::Connecting>(connecting));
    QString error;
    QVERIFY(!test.port->open(&error));
    QCOMPARE(error, message);
    QVERIFY(!test.port->isOpen());
    QCOMPARE(test.device->state(), QCanBusDevice::UnconnectedState);
    QCoreApplication::processEvents();
    QCOMPARE(test.losses, QStringList());
}

void tst_CanPort::deviceSaysHowLongItMayTake()
{
    Fixture test;
    test.device->setConnecting(FakeCanDevice::Connecting::Never);
    test.device->setProperty("connectTime", 90'000);
    QElapsedTimer clock;
    clock.start();
    QString error;
    QVERIFY(!test.port->open(&error));
    QCOMPARE(error, QStringLiteral("The CAN interface did not connect within 90 seconds."));
    QCOMPARE(clock.elapsed() / 1000, qint64(90));
}

void tst_CanPort::portDeletedWhileConnecting()
{
    auto device = std::make_unique<FakeCanDevice>();
    device->setConnecting(FakeCanDevice::Connecting::Never);
    auto *port = new CanPort(std::move(device));
    QTimer::singleShot(0, this, [&port] { delete std::exchange(port, nullptr); });
    QString error;
    CanPort *opening = port;
    QVERIFY(!opening->open(&error));
    QVERIFY(port == nullptr);
}

void tst_CanPort::closeIsNoLoss()
{
    Fixture test;
    test.port->close(); // not open: no effect
    QVERIFY(test.open());
    test.port->close();
    QVERIFY(!test.port->isOpen());
    QCOMPARE(test.device->state(), QCanBusDevice::UnconnectedState);
    test.port->close();
    QCoreApplication::processEvents();
    QCOMPARE(test.losses, QStringList());
}

void tst_CanPort::dropsWhatIsSentWhileClosed()
{
    Fixture test;
    test.port->send(frame(1));
    QVERIFY(test.open());
    test.port->send(frame(2));
    test.port->close();
    test.port->send(frame(3));
    QCOMPARE(numbersOf(test.device->written()), QVector<int>{2});
    QCOMPARE(test.device->writeCalls(), 1);
}

void tst_CanPort::dropsInvalidFrames()
{
    Fixture test;
    QVERIFY(test.open());
    test.port->send(QCanBusFrame(QCanBusFrame::InvalidFrame));
    test.port->send(frame(1));
    QCOMPARE(numbersOf(test.device->written()), QVector<int>{1});
}

void tst_CanPort::sendsAtOnce()
{
    Fixture test;
    QVERIFY(test.open());
    test.port->send(frame(1));
    QCOMPARE(numbersOf(test.device->written()), QVector<int>{1});
    QCOMPARE(test.port->framesSent(), quint64(1));
    QCOMPARE(test.port->writeRetries(), quint64(0));
}

void tst_CanPort::burstLosesNothing_data()
{
    QTest::addColumn<FakeCanDevice::Sending>("sending");
    QTest::newRow("no queue") << FakeCanDevice::Sending::AtOnce;
    QTest::newRow("back end without reports") << FakeCanDevice::Sending::Unreported;
    QTest::newRow("queue of the device") << FakeCanDevice::Sending::DeviceQueue;
    QTest::newRow("queue of the driver") << FakeCanDevice::Sending::DriverQueue;
}

// 127 requests at once through a queue of ten frames.
void tst_CanPort::burstLosesNothing()
{
    QFETCH(FakeCanDevice::Sending, sending);
    Fixture test;
    test.device->setSending(sending);
    test.device->setQueueLimit(10);
    QVERIFY(test.open());
    for (int number = 0; number < 127; ++number)
        test.port->send(frame(number));
    QTRY_COMPARE(test.device->written().size(), 127);
    QCOMPARE(numbersOf(test.device->written()), upTo(127));
    QTRY_COMPARE(test.port->framesSent(), quint64(127));
    QCOMPARE(test.losses, QStringList());
}

void tst_CanPort::keepsFewFramesInTheDevice()
{
    Fixture test;
    test.device->setSending(FakeCanDevice::Sending::DeviceQueue);
    QVERIFY(test.open());
    for (int number = 0; number < 50; ++number)
        test.port->send(frame(number));
    QCOMPARE(test.device->framesToWrite(), qint64(4));
    QTRY_COMPARE(test.device->written().size(), 50);
    QCOMPARE(test.device->mostFramesToWrite(), 4);
    QCOMPARE(test.port->writeRetries(), quint64(0));
}

void tst_CanPort::failingWritesLoseNothing_data()
{
    QTest::addColumn<FakeCanDevice::Sending>("sending");
    QTest::addColumn<int>("every");
    QTest::newRow("every 7th") << FakeCanDevice::Sending::AtOnce << 7;
    QTest::newRow("every 7th, queue") << FakeCanDevice::Sending::DeviceQueue << 7;
    QTest::newRow("every 2nd") << FakeCanDevice::Sending::AtOnce << 2;
}

void tst_CanPort::failingWritesLoseNothing()
{
    QFETCH(FakeCanDevice::Sending, sending);
    QFETCH(int, every);
    Fixture test;
    test.device->setSending(sending);
    test.device->failEveryNthWrite(every);
    QVERIFY(test.open());
    for (int number = 0; number < 100; ++number)
        test.port->send(frame(number));
    QTRY_COMPARE(test.device->written().size(), 100);
    QCOMPARE(numbersOf(test.device->written()), upTo(100));
    QVERIFY(test.port->writeRetries() >= quint64(100 / every));
    QCOMPARE(test.losses, QStringList());
}

// A back end that reports a failed frame after it has taken it from its queue.
void tst_CanPort::framesLostInTheQueueAreSentAgain()
{
    Fixture test;
    test.device->setSending(FakeCanDevice::Sending::DeviceQueue);
    test.device->loseEveryNthQueuedFrame(7);
    QVERIFY(test.open());
    for (int number = 0; number < 100; ++number)
        test.port->send(frame(number));
    QTRY_COMPARE(test.device->written().size(), 100);
    QVector<int> numbers = numbersOf(test.device->written());
    std::sort(numbers.begin(), numbers.end());
    QCOMPARE(numbers, upTo(100));
    QTRY_COMPARE(test.port->framesSent(), quint64(100));
    QCOMPARE(test.losses, QStringList());
}

void tst_CanPort::tellsWhatBecameOfAFrame_data()
{
    QTest::addColumn<FakeCanDevice::Sending>("sending");
    QTest::addColumn<int>("atOnce"); // frames of ten
    QTest::newRow("no queue") << FakeCanDevice::Sending::AtOnce << 10;
    QTest::newRow("no queue, nothing reported") << FakeCanDevice::Sending::Unreported << 10;
    QTest::newRow("queue of the device") << FakeCanDevice::Sending::DeviceQueue << 0;
}

void tst_CanPort::tellsWhatBecameOfAFrame()
{
    QFETCH(FakeCanDevice::Sending, sending);
    QFETCH(int, atOnce);
    Fixture bus;
    QVERIFY(bus.port->send(frame(0)) == Sending::Dropped); // not open
    QVERIFY(bus.open());
    bus.device->setSending(sending);
    int written = 0;
    for (int number = 0; number < 10; ++number) {
        const Sending result = bus.port->send(frame(number));
        QVERIFY(result != Sending::Dropped);
        written += result == Sending::Written ? 1 : 0;
    }
    QCOMPARE(written, atOnce);
    QCOMPARE(bus.written.size(), 0);
    QTRY_COMPARE(bus.device->written().size(), 10);
    QCOMPARE(bus.written, atOnce == 10 ? QVector<int>() : upTo(10));
    QCOMPARE(bus.dropped, QVector<int>());
}

void tst_CanPort::tellsWhichFramesAreDropped()
{
    Fixture bus;
    QVERIFY(bus.open());
    bus.device->setSending(FakeCanDevice::Sending::StuckQueue);
    for (int number = 0; number < CanPort::maximumFramesInDevice + CanPort::maximumQueueLength + 2; ++number)
        QVERIFY(bus.port->send(frame(number)) == Sending::Waiting);
    QCOMPARE(bus.dropped, (QVector<int>{CanPort::maximumFramesInDevice, CanPort::maximumFramesInDevice + 1}));
    QCOMPARE(bus.written, QVector<int>());
}

void tst_CanPort::tellsNothingOfFramesAfterTheEnd()
{
    Fixture bus;
    QVERIFY(bus.open());
    bus.device->setSending(FakeCanDevice::Sending::StuckQueue);
    for (int number = 0; number < 10; ++number)
        bus.port->send(frame(number));
    bus.port->close();
    QVERIFY(bus.port->send(frame(10)) == Sending::Dropped);
    QCoreApplication::processEvents();
    QCOMPARE(bus.written, QVector<int>());
    QCOMPARE(bus.dropped, QVector<int>());
}

void tst_CanPort::unpluggedDeviceIsLost()
{
    Fixture test;
    QVERIFY(test.open());
    test.device->unplug();
    test.port->send(frame(1)); // one frame is enough
    QCOMPARE(test.losses, QStringList());
    QTRY_COMPARE(test.losses.size(), 1);
    QCOMPARE(test.losses.first(),
             QStringLiteral("The CAN interface does not send any more: no buffer is free."));
    QVERIFY(!test.port->isOpen());
    QCOMPARE(test.device->state(), QCanBusDevice::ConnectedState);
}

void tst_CanPort::shortFailureIsNoLoss()
{
    Fixture test;
    QVERIFY(test.open());
    test.device->unplug();
    for (int number = 0; number < 20; ++number)
        test.port->send(frame(number));
    QTRY_VERIFY(test.port->writeRetries() >= 4);
    test.device->plugIn();
    QTRY_COMPARE(test.device->written().size(), 20);
    QCOMPARE(numbersOf(test.device->written()), upTo(20));
    QCOMPARE(test.losses, QStringList());
}

void tst_CanPort::refusedFrameDoesNotHoldUpTheOthersForEver()
{
    class PickyDevice : public FakeCanDevice
    {
    public:
        bool writeFrame(const QCanBusFrame &each) override
        {
            return numberOf(each) != 1 && FakeCanDevice::writeFrame(each);
        }
    };
    auto owned = std::make_unique<PickyDevice>();
    PickyDevice *device = owned.get();
    CanPort port(std::move(owned));
    QSignalSpy lost(&port, &CanPort::lost);
    QString error;
    QVERIFY(port.open(&error));
    for (int number = 0; number < 5; ++number)
        port.send(frame(number));
    QTRY_COMPARE(device->written().size(), 4);
    QCOMPARE(numbersOf(device->written()), (QVector<int>{0, 2, 3, 4}));
    QCOMPARE(lost.count(), 0);
    QVERIFY(port.isOpen());
}

// A request that is sent long after it was made is of no use to anybody.
void tst_CanPort::stuckDeviceDropsOldFrames()
{
    Fixture test;
    test.device->setSending(FakeCanDevice::Sending::StuckQueue);
    QVERIFY(test.open());
    for (int number = 0; number < 10; ++number)
        test.port->send(frame(number));
    QCOMPARE(test.device->framesToWrite(), qint64(4));
    QElapsedTimer timer;
    timer.start();
    QTRY_VERIFY(timer.elapsed() > 800);
    test.device->clear(QCanBusDevice::Output);
    test.device->setSending(FakeCanDevice::Sending::AtOnce);
    test.port->send(frame(99));
    QTRY_COMPARE(numbersOf(test.device->written()), QVector<int>{99});
    QCOMPARE(test.losses, QStringList());
}

void tst_CanPort::leavingConnectedStateIsALoss()
{
    Fixture test;
    QVERIFY(test.open());
    test.device->goUnconnected();
    QVERIFY(!test.port->isOpen());
    QTRY_COMPARE(test.losses, QStringList{QStringLiteral("The CAN interface was disconnected.")});
}

void tst_CanPort::fatalErrorsAreALoss_data()
{
    QTest::addColumn<int>("error");
    QTest::newRow("connection") << static_cast<int>(QCanBusDevice::ConnectionError);
    QTest::newRow("read") << static_cast<int>(QCanBusDevice::ReadError);
}

void tst_CanPort::fatalErrorsAreALoss()
{
    QFETCH(int, error);
    Fixture test;
    QVERIFY(test.open());
    test.device->reportError(static_cast<QCanBusDevice::CanBusError>(error));
    test.device->reportError(static_cast<QCanBusDevice::CanBusError>(error));
    test.device->goUnconnected();
    QTRY_COMPARE(test.losses.size(), 1);
    QCOMPARE(test.losses.first(), QStringLiteral("The CAN interface failed: as ordered."));
    QCoreApplication::processEvents();
    QCOMPARE(test.losses.size(), 1);
}

void tst_CanPort::otherErrorsAreNoLoss()
{
    Fixture test;
    QVERIFY(test.open());
    for (const auto error :
         {QCanBusDevice::WriteError, QCanBusDevice::ConfigurationError, QCanBusDevice::UnknownError})
        test.device->reportError(error);
    QCoreApplication::processEvents();
    QCOMPARE(test.losses, QStringList());
    test.port->send(frame(1));
    QTRY_COMPARE(test.device->written().size(), 1);
}

void tst_CanPort::lossIsReportedFromTheEventLoop()
{
    Fixture test;
    QVERIFY(test.open());
    test.device->goUnconnected();
    QCOMPARE(test.losses, QStringList());
    QTRY_COMPARE(test.losses.size(), 1);
}

void tst_CanPort::closeBeforeTheReportSilencesIt()
{
    Fixture test;
    QVERIFY(test.open());
    test.device->goUnconnected();
    test.port->close();
    QCoreApplication::processEvents();
    QCOMPARE(test.losses, QStringList());
}

void tst_CanPort::nothingIsSentAfterALoss()
{
    Fixture test;
    QVERIFY(test.open());
    test.device->reportError(QCanBusDevice::ReadError);
    QTRY_COMPARE(test.losses.size(), 1);
    test.port->send(frame(1));
    test.device->inject(frame(2));
    QCoreApplication::processEvents();
    QCOMPARE(test.device->writeCalls(), 0);
    QCOMPARE(test.frames.size(), 0);
}

void tst_CanPort::deliversInOrder()
{
    Fixture test;
    QVERIFY(test.open());
    test.device->inject(frame(0));
    test.device->inject({frame(1), frame(2), frame(3)});
    QCOMPARE(numbersOf(test.frames), upTo(4));
    QCOMPARE(test.port->framesReceived(), quint64(4));
}

void tst_CanPort::deliversWhatWasThereBefore()
{
    Fixture test;
    QVERIFY(test.device->connectDevice());
    test.device->inject({frame(0), frame(1)});
    QCOMPARE(test.frames.size(), 0);
    QVERIFY(test.open());
    QTRY_COMPARE(numbersOf(test.frames), upTo(2));
}

void tst_CanPort::deliversABoundedNumberPerTurn()
{
    Fixture test;
    QVERIFY(test.open());
    QVector<QCanBusFrame> many;
    for (int number = 0; number < 1600; ++number)
        many.append(frame(number));
    test.device->inject(many);
    QCOMPARE(test.frames.size(), 500);
    test.device->inject(frame(1600)); // the turn has had its share
    QCOMPARE(test.frames.size(), 500);
    QTRY_COMPARE(test.frames.size(), 1601);
    QCOMPARE(numbersOf(test.frames), upTo(1601));
}

void tst_CanPort::passesEveryKindOfFrame()
{
    Fixture test;
    QVERIFY(test.open());
    QCanBusFrame remote(0x705, QByteArray());
    remote.setFrameType(QCanBusFrame::RemoteRequestFrame);
    QCanBusFrame extended(0x12345678, QByteArray(8, '\1'));
    QCanBusFrame error(QCanBusFrame::ErrorFrame);
    QCanBusFrame invalid(QCanBusFrame::InvalidFrame);
    test.device->inject({remote, extended, error, invalid, frame(1)});
    QCOMPARE(test.frames.size(), 5);
    QCOMPARE(test.frames.at(0).frameType(), QCanBusFrame::RemoteRequestFrame);
    QVERIFY(test.frames.at(1).hasExtendedFrameFormat());
    QCOMPARE(test.frames.at(2).frameType(), QCanBusFrame::ErrorFrame);
    QCOMPARE(test.frames.at(3).frameType(), QCanBusFrame::InvalidFrame);
    QCOMPARE(test.port->framesReceived(), quint64(5));
    QCOMPARE(test.port->errorFrames(), quint64(2));
}

void tst_CanPort::sendsFromTheReceivingSlot()
{
    Fixture test;
    QVERIFY(test.open());
    connect(test.port.get(), &CanPort::frameReceived, this,
            [&test](const QCanBusFrame &received) { test.port->send(frame(numberOf(received) + 100)); });
    // The answer comes before writeFrame() returns, and is answered itself.
    int answers = 0;
    connect(test.device.data(), &FakeCanDevice::sent, this, [&](const QCanBusFrame &sent) {
        if (++answers < 5)
            test.device->inject(frame(numberOf(sent) + 1));
    });
    test.device->inject(frame(0));
    QTRY_COMPARE(numbersOf(test.device->written()), (QVector<int>{100, 201, 302, 403, 504}));
}

void tst_CanPort::nestedEventLoopKeepsTheOrder()
{
    Fixture test;
    QVERIFY(test.open());
    bool nested = false;
    connect(test.port.get(), &CanPort::frameReceived, this, [&](const QCanBusFrame &) {
        if (std::exchange(nested, true))
            return;
        test.device->inject(frame(3));
        QCoreApplication::processEvents();
    });
    test.device->inject({frame(0), frame(1), frame(2)});
    QTRY_COMPARE(numbersOf(test.frames), upTo(4));
}

void tst_CanPort::closingInASlotIsSafe_data()
{
    QTest::addColumn<bool>("onLoss");
    QTest::newRow("on a frame") << false;
    QTest::newRow("on a loss") << true;
}

void tst_CanPort::closingInASlotIsSafe()
{
    QFETCH(bool, onLoss);
    Fixture test;
    QVERIFY(test.open());
    connect(test.port.get(), &CanPort::frameReceived, this, [&test] { test.port->close(); });
    connect(test.port.get(), &CanPort::lost, this, [&test] { test.port->close(); });
    if (onLoss)
        test.device->reportError(QCanBusDevice::ReadError);
    else
        test.device->inject({frame(0), frame(1)});
    QCOMPARE(test.device->state(), QCanBusDevice::ConnectedState); // nor closed
    QTRY_COMPARE(test.device->state(), QCanBusDevice::UnconnectedState);
    QVERIFY(!test.port->isOpen());
    QCOMPARE(test.frames.size(), onLoss ? 0 : 1);
    QCOMPARE(test.losses.size(), onLoss ? 1 : 0);
}

void tst_CanPort::deletingInASlotIsSafe_data()
{
    closingInASlotIsSafe_data();
}

void tst_CanPort::deletingInASlotIsSafe()
{
    QFETCH(bool, onLoss);
    Fixture test;
    QVERIFY(test.open());
    connect(test.port.get(), &CanPort::frameReceived, this, [&test] { test.port.reset(); });
    connect(test.port.get(), &CanPort::lost, this, [&test] { test.port.reset(); });
    if (onLoss)
        test.device->reportError(QCanBusDevice::ReadError);
    else
        test.device->inject({frame(0), frame(1)});
    QVERIFY(!test.device.isNull()); // the device is not deleted under its own feet
    QTRY_VERIFY(test.device.isNull());
    QVERIFY(test.port == nullptr);
}

QTEST_GUILESS_MAIN(tst_CanPort)

#include "tst_canport.moc"
