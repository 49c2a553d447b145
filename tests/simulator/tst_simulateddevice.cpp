// SPDX-License-Identifier: MIT
#include <simulator/echonode.h>
#include <simulator/simulateddevice.h>

#include <QCanBus>
#include <QCoreApplication>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using namespace Simulator;

class tst_SimulatedDevice : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void isFoundByQCanBus();
    void readsThroughTheBackEnd();
    void bitRates_data();
    void bitRates();
    void vehiclesBitRateIsTheDefault();
    void devicesShareTheBus();
    void anotherBitRateIsRefused();
    void vehicleStartsWithTheFirstDevice();
    void connectsAgain();
    void unknownVehicle();
    void brokenVehicleFile();
    void unplugged();
    void dropped();
    void failingWrites();
    void fullSendQueue();
    void unpacedFramesAreWrittenAtOnce();
    void pacedFramesAreWrittenWhenTheyAreThrough();
    void closedDeviceHasNothingToWrite();
    void waitingFramesFailWhenTheBusIsLost();
    void faultsByConfiguration();
    void busLossByConfiguration();
    void framesOfOtherKindsAreRefused();
    void onABusOfTheCaller();
    void mayBeDeletedWhileItReceives();

private:
    std::unique_ptr<QCanBusDevice> create(const QString &name);
    static QByteArray ask(QCanBusDevice &device, quint32 id, const char *hex);
};

namespace {

const QString pedelec = QStringLiteral("pedelec");
constexpr int unpaced = 0;
const char readErrorRegister[] = "4001100000000000";

} // namespace

void tst_SimulatedDevice::initTestCase()
{
    qRegisterMetaType<QCanBusDevice::CanBusDeviceState>();
    qRegisterMetaType<QCanBusDevice::CanBusError>();
    qputenv("DRAXEL_VEHICLES", OVERVIEW_VEHICLES_DIR);
    QCoreApplication::addLibraryPath(QStringLiteral(OVERVIEW_BIN_DIR));
}

std::unique_ptr<QCanBusDevice> tst_SimulatedDevice::create(const QString &name)
{
    QString error;
    std::unique_ptr<QCanBusDevice> device(
        QCanBus::instance()->createDevice(QStringLiteral("simulated"), name, &error));
    if (!device)
        qFatal("%s", qPrintable(error));
    return device;
}

/*! The payload of the first SDO answer. */
QByteArray tst_SimulatedDevice::ask(QCanBusDevice &device, quint32 id, const char *hex)
{
    QByteArray answer;
    device.readAllFrames();
    const auto connection = connect(&device, &QCanBusDevice::framesReceived, [&] {
        const QVector<QCanBusFrame> frames = device.readAllFrames();
        for (const QCanBusFrame &frame : frames) {
            if (frame.frameId() == id - 0x80 && answer.isEmpty())
                answer = frame.payload().toHex();
        }
    });
    device.writeFrame(QCanBusFrame(id, QByteArray::fromHex(hex)));
    (void)QTest::qWaitFor([&answer] { return !answer.isEmpty(); }); // the caller compares the answer
    disconnect(connection);
    return answer;
}

void tst_SimulatedDevice::isFoundByQCanBus()
{
    QVERIFY(QCanBus::instance()->plugins().contains(QStringLiteral("simulated")));
    QString error;
    const auto infos = QCanBus::instance()->availableDevices(QStringLiteral("simulated"), &error);
    QVERIFY2(error.isEmpty(), qPrintable(error));
    QStringList names;
    for (const QCanBusDeviceInfo &info : infos) {
        names.append(info.name());
        QVERIFY2(info.description().size() > 20, qPrintable(info.description()));
        QVERIFY(info.isVirtual());
    }
    QVERIFY(names.contains(pedelec));
    QVERIFY(names.contains(QStringLiteral("full-bus")));
}

void tst_SimulatedDevice::readsThroughTheBackEnd()
{
    const auto device = create(pedelec);
    device->setConfigurationParameter(QCanBusDevice::BitRateKey, unpaced);
    QSignalSpy states(device.get(), &QCanBusDevice::stateChanged);
    QVERIFY2(device->connectDevice(), qPrintable(device->errorString()));
    QCOMPARE(device->state(), QCanBusDevice::ConnectedState);
    QVERIFY(states.count() >= 1);
    QVERIFY(ask(*device, 0x601, "4000100000000000").startsWith("43001000"));
    QCOMPARE(ask(*device, 0x601, "4000200000000000"), QByteArray("8000200000000206"));
    device->disconnectDevice();
    QCOMPARE(device->state(), QCanBusDevice::UnconnectedState);
    QVERIFY(!device->writeFrame(QCanBusFrame(0x601, QByteArray(8, '\0'))));
}

void tst_SimulatedDevice::bitRates_data()
{
    QTest::addColumn<QVariant>("bitRate");
    QTest::addColumn<bool>("works");

    QTest::newRow("unpaced") << QVariant(0) << true;
    QTest::newRow("125 kbit/s") << QVariant(125000) << true;
    QTest::newRow("1 Mbit/s") << QVariant(1000000) << true;
    QTest::newRow("33333") << QVariant(33333) << false;
    QTest::newRow("negative") << QVariant(-250000) << false;
    QTest::newRow("words") << QVariant(QStringLiteral("fast")) << false;
}

void tst_SimulatedDevice::bitRates()
{
    QFETCH(QVariant, bitRate);
    QFETCH(bool, works);
    const auto device = create(pedelec);
    device->setConfigurationParameter(QCanBusDevice::BitRateKey, bitRate);
    QCOMPARE(device->connectDevice(), works);
    if (works) {
        QCOMPARE(ask(*device, 0x601, "4000200000000000"), QByteArray("8000200000000206"));
        return;
    }
    QCOMPARE(device->state(), QCanBusDevice::UnconnectedState);
    QCOMPARE(device->error(), QCanBusDevice::ConfigurationError);
    QVERIFY2(
        device->errorString().startsWith(bitRate.toString() + QStringLiteral(" bit/s is no bit rate of CAN")),
        qPrintable(device->errorString()));
}

void tst_SimulatedDevice::vehiclesBitRateIsTheDefault()
{
    const auto device = create(pedelec);
    QVERIFY(device->connectDevice());
    QCOMPARE(device->configurationParameter(QCanBusDevice::BitRateKey).toInt(), 250000);
}

void tst_SimulatedDevice::devicesShareTheBus()
{
    const auto first = create(pedelec);
    const auto second = create(pedelec);
    first->setConfigurationParameter(QCanBusDevice::BitRateKey, unpaced);
    QVERIFY(first->connectDevice());
    QVERIFY2(second->connectDevice(), qPrintable(second->errorString()));
    QCOMPARE(second->configurationParameter(QCanBusDevice::BitRateKey).toInt(), 0);
    QCoreApplication::processEvents();
    second->readAllFrames();
    first->writeFrame(QCanBusFrame(0x321, QByteArrayLiteral("hello")));
    QTRY_VERIFY(second->framesAvailable() > 0);
    const QCanBusFrame frame = second->readFrame();
    QCOMPARE(frame.frameId(), 0x321u);
    QCOMPARE(frame.payload(), QByteArrayLiteral("hello"));
}

void tst_SimulatedDevice::anotherBitRateIsRefused()
{
    const auto first = create(pedelec);
    const auto second = create(pedelec);
    QVERIFY(first->connectDevice());
    second->setConfigurationParameter(QCanBusDevice::BitRateKey, 125000);
    QVERIFY(!second->connectDevice());
    QCOMPARE(second->errorString(),
             QStringLiteral("The simulated bus runs at 250000 bit/s already, not at 125000"));
    first->disconnectDevice();
    QVERIFY(second->connectDevice());
}

void tst_SimulatedDevice::vehicleStartsWithTheFirstDevice()
{
    const auto device = create(pedelec);
    device->setConfigurationParameter(QCanBusDevice::BitRateKey, unpaced);
    QVERIFY(device->connectDevice());
    QTRY_VERIFY(device->framesAvailable() >= 7);
    QVector<quint32> bootUps;
    const QVector<QCanBusFrame> frames = device->readAllFrames();
    for (const QCanBusFrame &frame : frames) {
        if (frame.payload() == QByteArray(1, '\0'))
            bootUps.append(frame.frameId());
    }
    QCOMPARE(bootUps, QVector<quint32>({0x701, 0x702, 0x703, 0x704, 0x705, 0x706, 0x707}));
}

void tst_SimulatedDevice::connectsAgain()
{
    const auto device = create(pedelec);
    device->setConfigurationParameter(QCanBusDevice::BitRateKey, unpaced);
    for (int round = 0; round < 20; ++round) {
        QVERIFY(device->connectDevice());
        QCOMPARE(ask(*device, 0x601, "4000200000000000"), QByteArray("8000200000000206"));
        device->disconnectDevice();
    }
}

void tst_SimulatedDevice::unknownVehicle()
{
    const auto device = create(QStringLiteral("hovercraft"));
    QVERIFY(!device->connectDevice());
    QCOMPARE(device->state(), QCanBusDevice::UnconnectedState);
    QCOMPARE(device->errorString(),
             QStringLiteral("There is neither a vehicle nor a vehicle file \"hovercraft\"; "
                            "vehicles are: full-bus, pedelec, ride"));
}

void tst_SimulatedDevice::brokenVehicleFile()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("broken.json"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(R"({"nodes":[{"id":0}]})");
    file.close();
    const auto device = create(path);
    QVERIFY(!device->connectDevice());
    QCOMPARE(device->errorString(),
             path + QStringLiteral(": line 1, nodes[0].id: no whole number from 1 to 127"));
}

void tst_SimulatedDevice::unplugged()
{
    const auto device = create(pedelec);
    device->setConfigurationParameter(QCanBusDevice::BitRateKey, unpaced);
    QVERIFY(device->connectDevice());
    QVERIFY(!ask(*device, 0x601, readErrorRegister).isEmpty());
    device->setConfigurationParameter(SimulatedCanDevice::UnplugKey, true);
    QCoreApplication::processEvents();
    device->readAllFrames();
    QVERIFY(!device->writeFrame(QCanBusFrame(0x601, QByteArray::fromHex(readErrorRegister))));
    QCOMPARE(device->error(), QCanBusDevice::WriteError);
    QCOMPARE(device->state(), QCanBusDevice::ConnectedState);
    QCoreApplication::processEvents();
    QCOMPARE(device->framesAvailable(), qint64(0));
    device->setConfigurationParameter(SimulatedCanDevice::UnplugKey, false);
    QVERIFY(!ask(*device, 0x601, readErrorRegister).isEmpty());
}

void tst_SimulatedDevice::dropped()
{
    const auto device = create(pedelec);
    QVERIFY(device->connectDevice());
    QSignalSpy errors(device.get(), &QCanBusDevice::errorOccurred);
    device->setConfigurationParameter(SimulatedCanDevice::DropKey, true);
    QCOMPARE(device->state(), QCanBusDevice::UnconnectedState);
    QCOMPARE(errors.count(), 1);
    QCOMPARE(device->error(), QCanBusDevice::ConnectionError);
    QVERIFY(device->connectDevice());
}

void tst_SimulatedDevice::failingWrites()
{
    const auto device = create(pedelec);
    device->setConfigurationParameter(QCanBusDevice::BitRateKey, unpaced);
    device->setConfigurationParameter(SimulatedCanDevice::FailEveryKey, 3);
    QVERIFY(device->connectDevice());
    QString outcome;
    for (int write = 0; write < 6; ++write)
        outcome
            += device->writeFrame(QCanBusFrame(0x321, QByteArray())) ? QLatin1Char('+') : QLatin1Char('-');
    QCOMPARE(outcome, QStringLiteral("++-++-"));
}

void tst_SimulatedDevice::fullSendQueue()
{
    const auto device = create(pedelec);
    device->setConfigurationParameter(SimulatedCanDevice::SendQueueKey, 10);
    QVERIFY(device->connectDevice());
    int written = 0;
    while (written < 100 && device->writeFrame(QCanBusFrame(0x321, QByteArray(8, '\0'))))
        ++written;
    // A frame may have got through meanwhile.
    QVERIFY2(written >= 10 && written < 100, qPrintable(QString::number(written)));
    QCOMPARE(device->error(), QCanBusDevice::WriteError);
    QTRY_VERIFY(device->writeFrame(QCanBusFrame(0x321, QByteArray(8, '\0'))));
}

void tst_SimulatedDevice::unpacedFramesAreWrittenAtOnce()
{
    SimulatedCanDevice device(std::make_shared<SimulatedBus>(unpaced));
    QVERIFY(device.connectDevice());
    QSignalSpy written(&device, &QCanBusDevice::framesWritten);
    QVERIFY(device.writeFrame(QCanBusFrame(0x601, QByteArray(8, '\0'))));
    QCOMPARE(written.count(), 1);
    QCOMPARE(device.framesToWrite(), qint64(0));
}

void tst_SimulatedDevice::pacedFramesAreWrittenWhenTheyAreThrough()
{
    SimulatedCanDevice device(std::make_shared<SimulatedBus>(10000));
    QVERIFY(device.connectDevice());
    QVector<qint64> left;
    connect(&device, &QCanBusDevice::framesWritten, &device, [&] { left.append(device.framesToWrite()); });
    QVERIFY(device.writeFrame(QCanBusFrame(0x601, QByteArray(8, '\0'))));
    QVERIFY(device.writeFrame(QCanBusFrame(0x601, QByteArray(8, '\0'))));
    QCOMPARE(left, QVector<qint64>());
    QCOMPARE(device.framesToWrite(), qint64(2));
    QTRY_COMPARE(left, QVector<qint64>({1, 0}));
}

void tst_SimulatedDevice::closedDeviceHasNothingToWrite()
{
    SimulatedCanDevice device(std::make_shared<SimulatedBus>(10000));
    QVERIFY(device.connectDevice());
    QVERIFY(device.writeFrame(QCanBusFrame(0x601, QByteArray(8, '\0'))));
    device.disconnectDevice();
    QCOMPARE(device.framesToWrite(), qint64(0));
}

void tst_SimulatedDevice::waitingFramesFailWhenTheBusIsLost()
{
    const auto bus = std::make_shared<SimulatedBus>(10000);
    SimulatedCanDevice device(bus);
    QVERIFY(device.connectDevice());
    QVERIFY(device.writeFrame(QCanBusFrame(0x601, QByteArray(8, '\0'))));
    QVERIFY(device.writeFrame(QCanBusFrame(0x602, QByteArray(8, '\0'))));
    QSignalSpy errors(&device, &QCanBusDevice::errorOccurred);
    QSignalSpy written(&device, &QCanBusDevice::framesWritten);
    bus->lose(BusLoss::Unplugged);
    QCOMPARE(errors.count(), 2);
    QCOMPARE(device.error(), QCanBusDevice::WriteError);
    QCOMPARE(device.framesToWrite(), qint64(0));
    QCOMPARE(written.count(), 0);
}

void tst_SimulatedDevice::faultsByConfiguration()
{
    const auto device = create(pedelec);
    device->setConfigurationParameter(QCanBusDevice::BitRateKey, unpaced);
    QVERIFY(device->connectDevice());
    device->setConfigurationParameter(SimulatedCanDevice::FaultKey,
                                      QByteArray(R"({"node":1,"kind":"sdoAbort","code":"0x06060000"})"));
    QCOMPARE(ask(*device, 0x601, readErrorRegister), QByteArray("8001100000000606"));
    device->setConfigurationParameter(SimulatedCanDevice::FaultKey, QByteArray());
    QVERIFY(ask(*device, 0x601, readErrorRegister).startsWith("4f011000"));

    device->setConfigurationParameter(SimulatedCanDevice::FaultKey,
                                      QByteArray(R"({"node":99,"kind":"silent"})"));
    QCOMPARE(device->errorString(), QStringLiteral("There is no node 99 for the fault \"silent\""));
    device->setConfigurationParameter(SimulatedCanDevice::FaultKey,
                                      QByteArray(R"({"node":1,"kind":"sdoDelay","ms":-1})"));
    QCOMPARE(device->errorString(), QStringLiteral("ms: no whole number from 0 to 1000000"));
}

void tst_SimulatedDevice::busLossByConfiguration()
{
    const auto device = create(pedelec);
    device->setConfigurationParameter(QCanBusDevice::BitRateKey, unpaced);
    QVERIFY(device->connectDevice());
    device->setConfigurationParameter(SimulatedCanDevice::FaultKey,
                                      QByteArray(R"({"kind":"busLoss","afterFrames":20,"drop":1})"));
    for (int request = 0; request < 20 && device->state() == QCanBusDevice::ConnectedState; ++request)
        ask(*device, 0x601, readErrorRegister);
    QCOMPARE(device->state(), QCanBusDevice::UnconnectedState);
}

void tst_SimulatedDevice::framesOfOtherKindsAreRefused()
{
    const auto device = create(pedelec);
    QVERIFY(device->connectDevice());
    QCanBusFrame flexible(0x321, QByteArray(12, '\0'));
    flexible.setFlexibleDataRateFormat(true);
    QVERIFY(!device->writeFrame(flexible));
    QVERIFY(!device->writeFrame(QCanBusFrame(QCanBusFrame::ErrorFrame)));
    QVERIFY(!device->writeFrame(QCanBusFrame(QCanBusFrame::InvalidFrame)));
    QCanBusFrame remote(0x701, QByteArray());
    remote.setFrameType(QCanBusFrame::RemoteRequestFrame);
    QVERIFY(device->writeFrame(remote));
}

void tst_SimulatedDevice::onABusOfTheCaller()
{
    const auto bus = std::make_shared<SimulatedBus>();
    EchoNode echo(bus.get(), QCanBusFrame(0x581, QByteArrayLiteral("answer")));
    SimulatedCanDevice device(bus);
    QVERIFY(device.connectDevice());
    device.writeFrame(QCanBusFrame(0x601, QByteArray()));
    QTRY_COMPARE(device.framesAvailable(), qint64(1));
    QCOMPARE(device.readFrame().payload(), QByteArrayLiteral("answer"));

    bus->lose(BusLoss::Unplugged);
    QVERIFY(!device.writeFrame(QCanBusFrame(0x601, QByteArray())));
    QCOMPARE(device.state(), QCanBusDevice::ConnectedState);
    SimulatedCanDevice second(bus);
    QVERIFY(!second.connectDevice());
    QCOMPARE(second.errorString(), QStringLiteral("The simulated bus is down"));
    bus->restore();
    QVERIFY(second.connectDevice());
    QVERIFY2(!device.writeFrame(QCanBusFrame(0x601, QByteArray())), "the old device stays broken");
    QVERIFY(second.writeFrame(QCanBusFrame(0x601, QByteArray())));
}

void tst_SimulatedDevice::mayBeDeletedWhileItReceives()
{
    QCanBusDevice *device = create(pedelec).release();
    device->setConfigurationParameter(QCanBusDevice::BitRateKey, unpaced);
    QVERIFY(device->connectDevice());
    QPointer<QCanBusDevice> watched(device);
    connect(device, &QCanBusDevice::framesReceived, device, [device] {
        device->disconnectDevice();
        device->deleteLater();
    });
    QTRY_VERIFY(watched.isNull());
}

QTEST_GUILESS_MAIN(tst_SimulatedDevice)
#include "tst_simulateddevice.moc"
