// SPDX-License-Identifier: MIT
#include "fakenetworkfolder.h"

#include <tests/support/fakebus.h>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

using State = BusConnection::State;

namespace {

const QString can0 = QStringLiteral("can0");

BusSettings socketCanSettings()
{
    BusSettings settings;
    settings.address = {QStringLiteral("socketcan"), can0};
    return settings;
}

} // namespace

class tst_BusConnection : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        qRegisterMetaType<BusConnection::State>();
        m_folder = std::make_unique<FakeNetworkFolder>();
        m_fake = std::make_unique<FakeBus>();
        m_bus = std::make_unique<BusConnection>();
        m_bus->setDeviceFactory(m_fake->factory());
        m_bus->setBitRateReader([this](const QString &name) { return m_bitRates.value(name, 0); });
        m_bus->interfaceWatch().setNetworkFolder(m_folder->path());
        m_bus->interfaceWatch().setLister([](const QString &) { return QStringList(); });
    }
    void cleanup()
    {
        m_bus.reset();
        m_fake.reset();
        m_bitRates.clear();
    }

    void connects();
    void reportsMissingBackEnd();
    void reportsRefusedConnection();
    void reportsInterfaceThatIsDown();
    void reportsInterfaceThatIsMissing();
    void leavesBitRateOfSocketCanAlone();
    void leavesDefaultBitRateOfOthers();
    void setsBitRateThatWasAskedFor();
    void setsBitRateOfSocketCanFirst();
    void reportsBitRateThatIsRefused();
    void knowsTheLoad_data();
    void knowsTheLoad();
    void readsBitRateOfSocketCan();
    void readsBitRateAgainWhenTheBusIsBack();
    void feedsClientAndConsumer();
    void tellsOfFramesInTheirOrder();
    void tellsOfLostFrames();
    void countsRepeats();
    void deviceThatLeavesIsLost();
    void deviceThatRefusesWritesIsLost();
    void interfaceThatGoesDownIsLost();
    void uploadEndsBeforeLossIsTold();
    void connectsAgainWithNewDevice();
    void connectsAgainWhenInterfaceReturns();
    void userEndsAttempts();
    void keepsCountersOverLoss();
    void disconnectsTwice();
    void connectsWhileConnected();
    void everyCallFromStateChange_data();
    void everyCallFromStateChange();
    void disconnectsFromFrame();
    void hasTheTimeOfItsBackEnd();
    void reconnectsFromUploadOutcome();
    void isDeletedByItsOwnSignal();
    void disconnectsWhileConnecting();
    void isDeletedWhileConnecting();
    void connectsElsewhereWhileConnecting();
    void dropsFramesWhileDisconnected();
    void sendsNothingThatCouldChangeSomething_data();
    void sendsNothingThatCouldChangeSomething();
    void sendsEverythingThroughAnOpenGate();

private:
    std::unique_ptr<FakeNetworkFolder> m_folder;
    std::unique_ptr<FakeBus> m_fake;
    std::unique_ptr<BusConnection> m_bus;
    QHash<QString, int> m_bitRates; // that the system tells, by interface
};

void tst_BusConnection::connects()
{
    QSignalSpy states(m_bus.get(), &BusConnection::stateChanged);
    QString error;
    QVERIFY2(m_bus->connectToBus(fakeSettings(), &error), qPrintable(error));
    QCOMPARE(m_bus->state(), State::Connected);
    QCOMPARE(states.size(), 2);
    QCOMPARE(states.at(0).first().value<State>(), State::Connecting);
    QCOMPARE(states.at(1).first().value<State>(), State::Connected);
    QCOMPARE(m_bus->settings().address.toString(), QStringLiteral("fake:bus0"));

    m_bus->disconnectFromBus();
    QCOMPARE(m_bus->state(), State::Disconnected);
    QCOMPARE(states.size(), 3);
    QTRY_VERIFY(m_fake->device() == nullptr);
}

void tst_BusConnection::reportsMissingBackEnd()
{
    m_fake->refusal = QStringLiteral("No such plugin.");
    QString error;
    QVERIFY(!m_bus->connectToBus(fakeSettings(), &error));
    QCOMPARE(error, QStringLiteral("The bus fake:bus0 cannot be opened: No such plugin."));
    QCOMPARE(m_bus->errorString(), error);
    QCOMPARE(m_bus->state(), State::Disconnected);
}

void tst_BusConnection::reportsRefusedConnection()
{
    m_fake->prepare
        = [](FakeCanDevice *device) { device->setConnecting(FakeCanDevice::Connecting::Refused); };
    QString error;
    QVERIFY(!m_bus->connectToBus(fakeSettings(), &error));
    QVERIFY2(error.startsWith(QStringLiteral("The bus fake:bus0 cannot be opened: ")), qPrintable(error));
    QCOMPARE(m_bus->state(), State::Disconnected);
    QTRY_VERIFY(m_fake->device() == nullptr);
}

void tst_BusConnection::reportsInterfaceThatIsDown()
{
    m_folder->add(can0, 3, "0x40080");
    QString error;
    QVERIFY(!m_bus->connectToBus(socketCanSettings(), &error));
    QCOMPARE(error, QStringLiteral(
                        "The bus socketcan:can0 cannot be used. can0 is down: run \"sudo ip link set can0 "
                        "up type can bitrate 250000\"."));
    QCOMPARE(m_bus->state(), State::Disconnected);
}

void tst_BusConnection::reportsInterfaceThatIsMissing()
{
    QString error;
    QVERIFY(!m_bus->connectToBus(socketCanSettings(), &error));
    QCOMPARE(error, QStringLiteral(
                        "The bus socketcan:can0 cannot be used. There is no interface can0. Check that the "
                        "adapter is plugged in."));
}

void tst_BusConnection::leavesBitRateOfSocketCanAlone()
{
    m_folder->add(can0, 3);
    m_fake->prepare
        = [](FakeCanDevice *device) { device->setConfigurationParameter(QCanBusDevice::BitRateKey, 500000); };
    QVERIFY(m_bus->connectToBus(socketCanSettings(), nullptr));
    QVERIFY(!m_fake->device()->configurationParameter(QCanBusDevice::BitRateKey).isValid());
}

void tst_BusConnection::leavesDefaultBitRateOfOthers()
{
    m_fake->prepare
        = [](FakeCanDevice *device) { device->setConfigurationParameter(QCanBusDevice::BitRateKey, 500000); };
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    QCOMPARE(m_fake->device()->configurationParameter(QCanBusDevice::BitRateKey).toInt(), 500000);
}

void tst_BusConnection::setsBitRateThatWasAskedFor()
{
    BusSettings settings = fakeSettings();
    settings.bitRate = 250000;
    QVERIFY(m_bus->connectToBus(settings, nullptr));
    QCOMPARE(m_fake->device()->configurationParameter(QCanBusDevice::BitRateKey).toInt(), 250000);
    QCOMPARE(m_fake->devicesMade(), 1);
}

void tst_BusConnection::setsBitRateOfSocketCanFirst()
{
    m_folder->add(can0, 3);
    BusSettings settings = socketCanSettings();
    settings.bitRate = 250000;
    // Of every device when it goes; the last one goes after this function.
    const auto bitRates = std::make_shared<QVariantList>();
    m_fake->prepare = [bitRates](FakeCanDevice *device) {
        connect(device, &QCanBusDevice::stateChanged, device,
                [bitRates, device](QCanBusDevice::CanBusDeviceState state) {
                    if (state == QCanBusDevice::UnconnectedState)
                        bitRates->append(device->configurationParameter(QCanBusDevice::BitRateKey));
                });
    };
    QVERIFY(m_bus->connectToBus(settings, nullptr));
    QCOMPARE(m_fake->devicesMade(), 2);
    QCOMPARE(*bitRates, QVariantList{250000});
    QVERIFY(!m_fake->device()->configurationParameter(QCanBusDevice::BitRateKey).isValid());
}

void tst_BusConnection::reportsBitRateThatIsRefused()
{
    class RefusingDevice : public FakeCanDevice
    {
    public:
        void setConfigurationParameter(int key, const QVariant &value) override
        {
            if (key != QCanBusDevice::BitRateKey || state() != QCanBusDevice::ConnectedState)
                FakeCanDevice::setConfigurationParameter(key, value);
        }
    };
    m_folder->add(can0, 3);
    m_bus->setDeviceFactory([](const QString &, const QString &, QString *) { return new RefusingDevice; });
    BusSettings settings = socketCanSettings();
    settings.bitRate = 250000;
    QString error;
    QVERIFY(!m_bus->connectToBus(settings, &error));
    QVERIFY2(error.startsWith(QStringLiteral("The interface can0 does not take the bit rate 250000. ")),
             qPrintable(error));
    QCOMPARE(m_bus->state(), State::Disconnected);
}

void tst_BusConnection::knowsTheLoad_data()
{
    QTest::addColumn<QString>("plugin");
    QTest::addColumn<int>("bitRate"); // that the user asks for; 0: none
    QTest::addColumn<double>("share");

    // The device's own rate is 500 kbit/s unless another is set.
    QTest::newRow("default") << QStringLiteral("fake") << 0 << 0.048;
    QTest::newRow("asked for") << QStringLiteral("fake") << 250000 << 0.096;
    QTest::newRow("socketcan, asked for") << QStringLiteral("socketcan") << 250000 << 0.096;
    QTest::newRow("socketcan, as it is") << QStringLiteral("socketcan") << 0 << -1.0;
    QTest::newRow("virtualcan has none") << QStringLiteral("virtualcan") << 250000 << -1.0;
}

void tst_BusConnection::knowsTheLoad()
{
    QFETCH(QString, plugin);
    QFETCH(int, bitRate);
    m_folder->add(can0, 3);
    m_fake->prepare
        = [](FakeCanDevice *device) { device->setConfigurationParameter(QCanBusDevice::BitRateKey, 500000); };
    BusSettings settings;
    settings.address = {plugin, can0};
    if (bitRate > 0)
        settings.bitRate = bitRate;
    QVERIFY(m_bus->connectToBus(settings, nullptr));
    for (int i = 0; i < 10; ++i) {
        m_fake->device()->inject(QCanBusFrame(0x181, QByteArray(8, 0)));
        m_bus->send(QCanBusFrame(0x601, QByteArray::fromHex("4018100100000000")));
    }
    QCOMPARE(m_bus->load().bits(), quint64(2400));
    QTEST(m_bus->load().share(0, std::chrono::milliseconds(100)).value_or(-1), "share");
}

void tst_BusConnection::readsBitRateOfSocketCan()
{
    m_folder->add(can0, 3);
    m_bitRates.insert(can0, 125000);
    QCOMPARE(m_bus->bitRate(), 0);
    QVERIFY(m_bus->connectToBus(socketCanSettings(), nullptr));
    QCOMPARE(m_bus->bitRate(), 125000);
    for (int i = 0; i < 10; ++i)
        m_fake->device()->inject(QCanBusFrame(0x181, QByteArray(8, 0)));
    QCOMPARE(m_bus->load().share(0, std::chrono::milliseconds(100)).value_or(-1), 0.096);

    // What the user asks for was set, and other back ends know their own.
    BusSettings settings = socketCanSettings();
    settings.bitRate = 250000;
    QVERIFY(m_bus->connectToBus(settings, nullptr));
    QCOMPARE(m_bus->bitRate(), 250000);
    settings.address.plugin = QStringLiteral("virtualcan");
    QVERIFY(m_bus->connectToBus(settings, nullptr));
    QCOMPARE(m_bus->bitRate(), 0);
    m_bus->disconnectFromBus();
    QCOMPARE(m_bus->bitRate(), 0);
}

void tst_BusConnection::readsBitRateAgainWhenTheBusIsBack()
{
    m_folder->add(can0, 3);
    m_bitRates.insert(can0, 125000);
    QVERIFY(m_bus->connectToBus(socketCanSettings(), nullptr));
    m_folder->remove(can0);
    QTRY_COMPARE(m_bus->state(), State::Lost);
    QCOMPARE(m_bus->bitRate(), 0);
    m_bitRates.insert(can0, 500000);
    m_folder->add(can0, 4);
    QTRY_COMPARE(m_bus->state(), State::Connected);
    QCOMPARE(m_bus->bitRate(), 500000);
}

void tst_BusConnection::feedsClientAndConsumer()
{
    m_fake->addNode(5);
    QSignalSpy frames(m_bus.get(), &BusConnection::frameReceived);
    QSignalSpy outcomes(&m_bus->sdoClient(), &CanOpen::SdoClient::finished);
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    m_fake->heartbeat(5);
    QTRY_COMPARE(m_bus->heartbeats().activeNodeCount(), 1);

    m_bus->sdoClient().upload(5, {0x1000, 0}, CanOpen::DataType::Unsigned32);
    QTRY_COMPARE(outcomes.size(), 1);
    QCOMPARE(frames.size(), 2);
    QCOMPARE(m_bus->counters().framesReceived, quint64(2));
    QCOMPARE(m_bus->counters().framesSent, quint64(1));
}

/*! The client asks for the next object within the answer, and the device sends that at once. */
void tst_BusConnection::tellsOfFramesInTheirOrder()
{
    m_fake->addNode(5);
    QStringList frames;
    connect(m_bus.get(), &BusConnection::frameReceived, this, [&frames](const QCanBusFrame &frame) {
        frames.append(QStringLiteral("received ") + QString::number(frame.frameId(), 16));
    });
    connect(m_bus.get(), &BusConnection::frameSent, this, [&frames](const QCanBusFrame &frame) {
        frames.append(QStringLiteral("sent ") + QString::number(frame.frameId(), 16));
    });
    QSignalSpy outcomes(&m_bus->sdoClient(), &CanOpen::SdoClient::finished);
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    m_bus->sdoClient().upload(5, {0x1000, 0}, CanOpen::DataType::Unsigned32);
    m_bus->sdoClient().upload(5, {0x1018, 1}, CanOpen::DataType::Unsigned32);
    QTRY_COMPARE(outcomes.size(), 2);
    QCOMPARE(frames, (QStringList{QStringLiteral("sent 605"), QStringLiteral("received 585"),
                                  QStringLiteral("sent 605"), QStringLiteral("received 585")}));
}

void tst_BusConnection::tellsOfLostFrames()
{
    quint32 dropped = 0;
    m_bus->setLossCounter([&dropped] { return dropped; });
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    QVector<QCanBusFrame> received;
    connect(m_bus.get(), &BusConnection::frameReceived, this,
            [&received](const QCanBusFrame &frame) { received.append(frame); });
    QTest::qWait(3000);
    QCOMPARE(received.size(), 0);
    dropped = 250;
    QTRY_COMPARE(received.size(), 1);
    QCOMPARE(received.first().frameType(), QCanBusFrame::ErrorFrame);
    QCOMPARE(received.first().error(), QCanBusFrame::FrameErrors(QCanBusFrame::ControllerError));
    QCOMPARE(received.first().payload(), QByteArray::fromHex("0001000000000000"));

    m_bus->disconnectFromBus();
    dropped = 500;
    QTest::qWait(3000);
    QCOMPARE(received.size(), 1);
}

void tst_BusConnection::countsRepeats()
{
    m_fake->addNode(5);
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    CanOpen::SdoPatience patience;
    patience.timeout = std::chrono::milliseconds(20);
    patience.repeats = 1;
    m_bus->sdoClient().setDefaultPatience(patience);
    m_bus->sdoClient().upload(5, {0x1000, 0}, CanOpen::DataType::Unsigned32);
    m_bus->sdoClient().upload(5, {0x6000, 0}, CanOpen::DataType::Unsigned8);
    m_bus->sdoClient().upload(6, {0x1000, 0}, CanOpen::DataType::Unsigned32);
    QTRY_COMPARE(m_bus->counters().uploadRepeats, quint64(1));
}

void tst_BusConnection::deviceThatLeavesIsLost()
{
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    m_fake->device()->goUnconnected();
    QTRY_COMPARE(m_bus->state(), State::Lost);
    QVERIFY(!m_bus->errorString().isEmpty());
}

void tst_BusConnection::deviceThatRefusesWritesIsLost()
{
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    m_fake->device()->unplug();
    m_bus->sdoClient().upload(5, {0x1000, 0}, CanOpen::DataType::Unsigned32);
    QTRY_COMPARE(m_bus->state(), State::Lost);
}

void tst_BusConnection::interfaceThatGoesDownIsLost()
{
    m_folder->add(can0, 3);
    QVERIFY(m_bus->connectToBus(socketCanSettings(), nullptr));
    m_folder->setFlags(can0, "0x40080");
    QTRY_COMPARE(m_bus->state(), State::Lost);
    QCOMPARE(m_bus->errorString(),
             QStringLiteral("can0 is down: run \"sudo ip link set can0 up type can bitrate 250000\"."));
}

void tst_BusConnection::uploadEndsBeforeLossIsTold()
{
    QStringList order;
    connect(&m_bus->sdoClient(), &CanOpen::SdoClient::finished, this,
            [&](const CanOpen::SdoOutcome &outcome) {
                QCOMPARE(outcome.kind, CanOpen::SdoOutcome::Kind::Cancelled);
                QCOMPARE(m_bus->state(), State::Lost);
                order.append(QStringLiteral("upload"));
            });
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    connect(m_bus.get(), &BusConnection::stateChanged, this,
            [&order] { order.append(QStringLiteral("state")); });
    CanOpen::SdoPatience patience;
    patience.timeout = std::chrono::seconds(60);
    patience.longest = std::chrono::seconds(60);
    m_bus->sdoClient().setDefaultPatience(patience);
    m_bus->sdoClient().upload(5, {0x1000, 0}, CanOpen::DataType::Unsigned32);

    m_fake->device()->goUnconnected();
    QTRY_COMPARE(order, QStringList({QStringLiteral("upload"), QStringLiteral("state")}));
}

void tst_BusConnection::connectsAgainWithNewDevice()
{
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    const QPointer<FakeCanDevice> first = m_fake->device();
    m_fake->refusal = QStringLiteral("Still away.");
    first->goUnconnected();
    QTRY_COMPARE(m_bus->state(), State::Lost);
    const QString reason = m_bus->errorString();
    QTRY_VERIFY(first.isNull());

    m_fake->refusal.clear();
    QTRY_COMPARE(m_bus->state(), State::Connected);
    QCOMPARE(m_fake->devicesMade(), 2);
    QVERIFY(!reason.isEmpty());
    QVERIFY(m_bus->errorString().isEmpty());
    QCOMPARE(m_bus->lossReason(), reason); // for outcomes that are told later
    m_bus->disconnectFromBus();
    QVERIFY(m_bus->lossReason().isEmpty());
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));

    m_fake->addNode(5);
    QSignalSpy outcomes(&m_bus->sdoClient(), &CanOpen::SdoClient::finished);
    m_bus->sdoClient().upload(5, {0x1000, 0}, CanOpen::DataType::Unsigned32);
    QTRY_COMPARE(outcomes.size(), 1);
    QCOMPARE(outcomes.first().first().value<CanOpen::SdoOutcome>().value.toUInt(), 1U);
}

void tst_BusConnection::connectsAgainWhenInterfaceReturns()
{
    m_folder->add(can0, 3);
    QVERIFY(m_bus->connectToBus(socketCanSettings(), nullptr));
    m_folder->remove(can0);
    QTRY_COMPARE(m_bus->state(), State::Lost);
    QCOMPARE(m_fake->devicesMade(), 1); // no attempt while the interface is not there
    m_folder->add(can0, 4);
    QTRY_COMPARE(m_bus->state(), State::Connected);
    QCOMPARE(m_fake->devicesMade(), 2);

    m_folder->setFlags(can0, "0x40080"); // the new interface is watched as well
    QTRY_COMPARE(m_bus->state(), State::Lost);
}

void tst_BusConnection::userEndsAttempts()
{
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    m_fake->refusal = QStringLiteral("Still away.");
    m_fake->device()->goUnconnected();
    QTRY_COMPARE(m_bus->state(), State::Lost);
    m_bus->disconnectFromBus();
    QCOMPARE(m_bus->state(), State::Disconnected);

    m_fake->refusal.clear();
    QSignalSpy states(m_bus.get(), &BusConnection::stateChanged);
    QVERIFY(!states.wait(1500)); // longer than the pause between two attempts
    QCOMPARE(m_fake->devicesMade(), 1);
}

void tst_BusConnection::keepsCountersOverLoss()
{
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    m_fake->heartbeat(5);
    QTRY_COMPARE(m_bus->counters().framesReceived, quint64(1));
    m_fake->device()->goUnconnected();
    QTRY_COMPARE(m_bus->state(), State::Lost);
    QCOMPARE(m_bus->heartbeats().activeNodeCount(), 0);
    QTRY_COMPARE(m_bus->state(), State::Connected);
    m_fake->heartbeat(5);
    QTRY_COMPARE(m_bus->counters().framesReceived, quint64(2));

    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr)); // another connection counts anew
    QCOMPARE(m_bus->counters().framesReceived, quint64(0));
}

void tst_BusConnection::disconnectsTwice()
{
    QSignalSpy states(m_bus.get(), &BusConnection::stateChanged);
    m_bus->disconnectFromBus();
    QCOMPARE(states.size(), 0);
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    m_bus->disconnectFromBus();
    m_bus->disconnectFromBus();
    QCOMPARE(states.size(), 3);
}

void tst_BusConnection::connectsWhileConnected()
{
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    const QPointer<FakeCanDevice> first = m_fake->device();
    BusSettings other = fakeSettings();
    other.bitRate = 125000;
    QVERIFY(m_bus->connectToBus(other, nullptr));
    QCOMPARE(m_bus->state(), State::Connected);
    QTRY_VERIFY(first.isNull());
    QCOMPARE(m_fake->device()->configurationParameter(QCanBusDevice::BitRateKey).toInt(), 125000);
}

void tst_BusConnection::everyCallFromStateChange_data()
{
    QTest::addColumn<int>("when");
    QTest::addColumn<bool>("connects");
    QTest::addColumn<int>("then");

    QTest::newRow("disconnect on connecting")
        << static_cast<int>(State::Connecting) << false << static_cast<int>(State::Disconnected);
    QTest::newRow("disconnect on connected")
        << static_cast<int>(State::Connected) << false << static_cast<int>(State::Disconnected);
    QTest::newRow("connect on connecting")
        << static_cast<int>(State::Connecting) << true << static_cast<int>(State::Connected);
    QTest::newRow("connect on connected")
        << static_cast<int>(State::Connected) << true << static_cast<int>(State::Connected);
}

void tst_BusConnection::everyCallFromStateChange()
{
    QFETCH(int, when);
    QFETCH(bool, connects);
    QFETCH(int, then);

    bool isDone = false;
    connect(m_bus.get(), &BusConnection::stateChanged, this, [&](State state) {
        if (isDone || static_cast<int>(state) != when)
            return;
        isDone = true;
        if (connects)
            QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
        else
            m_bus->disconnectFromBus();
    });
    m_bus->connectToBus(fakeSettings(), nullptr);
    QVERIFY(isDone);
    QCOMPARE(static_cast<int>(m_bus->state()), then);

    if (m_bus->state() == State::Connected) { // and it works
        m_fake->heartbeat(5);
        QTRY_COMPARE(m_bus->heartbeats().activeNodeCount(), 1);
    }
}

void tst_BusConnection::disconnectsFromFrame()
{
    connect(m_bus.get(), &BusConnection::frameReceived, this, [this] { m_bus->disconnectFromBus(); });
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    QSignalSpy frames(m_bus.get(), &BusConnection::frameReceived);
    m_fake->device()->inject({QCanBusFrame(0x705, QByteArray(1, 5)), QCanBusFrame(0x706, QByteArray(1, 5))});
    QTRY_COMPARE(m_bus->state(), State::Disconnected);
    QTRY_VERIFY(m_fake->device() == nullptr);
    QCOMPARE(frames.size(), 1);
}

/*! A trace that is played may stand still; the next bus has the time of here again. */
void tst_BusConnection::hasTheTimeOfItsBackEnd()
{
    m_fake->prepare
        = [](FakeCanDevice *device) { device->setProperty("busTime", Q_INT64_C(1600000000000000)); };
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    QCOMPARE(m_bus->busTime().value_or(0), Q_INT64_C(1600000000000000));
    const auto beat = [this](int count) {
        for (int i = 0; i < count; ++i) {
            m_fake->heartbeat(5);
            QTest::qWait(500);
        }
    };
    beat(4);
    QTest::qWait(60000);
    QCOMPARE(m_bus->heartbeats().activeNodeCount(), 1);
    m_fake->prepare = {};
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    QVERIFY(!m_bus->busTime());
    beat(4);
    QTest::qWait(60000);
    QCOMPARE(m_bus->heartbeats().activeNodeCount(), 0);
}

void tst_BusConnection::reconnectsFromUploadOutcome()
{
    bool isDone = false;
    connect(&m_bus->sdoClient(), &CanOpen::SdoClient::finished, this, [&] {
        if (isDone)
            return;
        isDone = true;
        QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    });
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    m_bus->sdoClient().upload(5, {0x1000, 0}, CanOpen::DataType::Unsigned32);
    m_bus->disconnectFromBus(); // ends the upload, whose slot connects again
    QVERIFY(isDone);
    QCOMPARE(m_bus->state(), State::Connected);
    m_fake->heartbeat(5);
    QTRY_COMPARE(m_bus->heartbeats().activeNodeCount(), 1);
}

void tst_BusConnection::isDeletedByItsOwnSignal()
{
    connect(m_bus.get(), &BusConnection::stateChanged, this, [this](State state) {
        if (state == State::Lost)
            m_bus.reset();
    });
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    m_fake->device()->goUnconnected();
    QTRY_VERIFY(m_bus == nullptr);
    QTRY_VERIFY(m_fake->device() == nullptr);
}

void tst_BusConnection::disconnectsWhileConnecting()
{
    m_fake->prepare
        = [](FakeCanDevice *device) { device->setConnecting(FakeCanDevice::Connecting::InBackground); };
    QTimer::singleShot(0, this, [this] { m_bus->disconnectFromBus(); });
    QString error;
    QVERIFY(!m_bus->connectToBus(fakeSettings(), &error));
    QCOMPARE(m_bus->state(), State::Disconnected);
    QVERIFY(!error.isEmpty());
    QVERIFY(m_bus->errorString().isEmpty());
    QTRY_VERIFY(m_fake->device() == nullptr);
}

void tst_BusConnection::isDeletedWhileConnecting()
{
    m_fake->prepare
        = [](FakeCanDevice *device) { device->setConnecting(FakeCanDevice::Connecting::InBackground); };
    QTimer::singleShot(0, this, [this] { m_bus.reset(); });
    QVERIFY(!m_bus->connectToBus(fakeSettings(), nullptr));
    QVERIFY(m_bus == nullptr);
    QTRY_VERIFY(m_fake->device() == nullptr);
}

void tst_BusConnection::connectsElsewhereWhileConnecting()
{
    m_fake->prepare
        = [](FakeCanDevice *device) { device->setConnecting(FakeCanDevice::Connecting::InBackground); };
    BusSettings other;
    other.address = {QStringLiteral("fake"), QStringLiteral("bus1")};
    bool isConnected = false;
    QTimer::singleShot(0, this, [&] { isConnected = m_bus->connectToBus(other, nullptr); });
    QVERIFY(!m_bus->connectToBus(fakeSettings(), nullptr));
    QVERIFY(isConnected);
    QCOMPARE(m_bus->state(), State::Connected);
    QCOMPARE(m_bus->settings().address.interfaceName, QStringLiteral("bus1"));
}

void tst_BusConnection::dropsFramesWhileDisconnected()
{
    m_bus->send(QCanBusFrame(0x601, QByteArray::fromHex("4018100100000000")));
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    QCOMPARE(m_fake->device()->writeCalls(), 0);
}

void tst_BusConnection::sendsNothingThatCouldChangeSomething_data()
{
    QTest::addColumn<quint32>("cobId");
    QTest::addColumn<QByteArray>("payload");

    QTest::newRow("NMT: stop all nodes") << 0x000u << QByteArray::fromHex("0200");
    QTest::newRow("SYNC") << 0x080u << QByteArray();
    QTest::newRow("PDO") << 0x205u << QByteArray::fromHex("0102030405060708");
    QTest::newRow("download") << 0x605u << QByteArray::fromHex("2B01600105000000");
    QTest::newRow("heartbeat") << 0x705u << QByteArray::fromHex("05");
}

void tst_BusConnection::sendsNothingThatCouldChangeSomething()
{
    QFETCH(quint32, cobId);
    QFETCH(QByteArray, payload);
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^A frame was not sent")));
    QCOMPARE(m_bus->send(QCanBusFrame(cobId, payload)), CanOpen::Sending::Dropped);
    QCOMPARE(m_fake->device()->writeCalls(), 0);
    QCOMPARE(m_bus->send(QCanBusFrame(0x605, QByteArray::fromHex("4018100100000000"))),
             CanOpen::Sending::Written);
    QCOMPARE(m_fake->device()->writeCalls(), 1);
}

void tst_BusConnection::sendsEverythingThroughAnOpenGate()
{
    m_bus->openGate();
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    QCOMPARE(m_bus->send(QCanBusFrame(0x705, QByteArray::fromHex("05"))), CanOpen::Sending::Written);
    QCOMPARE(m_fake->device()->writeCalls(), 1);
}

QTEST_GUILESS_MAIN(tst_BusConnection)
#include "tst_busconnection.moc"
