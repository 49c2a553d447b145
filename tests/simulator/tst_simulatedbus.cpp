// SPDX-License-Identifier: MIT
#include "testvehicle.h"

#include <simulator/echonode.h>
#include <simulator/simulatedbus.h>
#include <simulator/vehicleonbus.h>

#include <QCoreApplication>
#include <QtTest>

#include <functional>

using namespace Simulator;

class tst_SimulatedBus : public QObject
{
    Q_OBJECT

private slots:
    void framesReachAllOthers_data();
    void framesReachAllOthers();
    void framesNeverArriveWithinSend_data();
    void framesNeverArriveWithinSend();
    void waitingFramesComeInOneBatch();
    void answersOfOneBatchComeInTheNext();
    void pacedFramesComeByPriority();
    void pacedAnswerFollowsItsRequest();
    void participantMayLeaveWhileItReceives_data();
    void participantMayLeaveWhileItReceives();
    void busMayBeLetGoWhileItDelivers_data();
    void busMayBeLetGoWhileItDelivers();
    void pacedFrameIsToldWhenItIsThrough();
    void senderMayLeaveWhenItIsTold();
    void fullQueueRefuses_data();
    void fullQueueRefuses();
    void strangersCannotSend();
    void lostNow_data();
    void lostNow();
    void lostAfterSomeFrames();
    void restored();
    void vehicleOnBus();
    void floodLeavesTheEventLoopItsTurns();
};

namespace {

class Listener : public BusParticipant
{
public:
    explicit Listener(SimulatedBus *bus)
        : m_bus(bus)
    {
        m_bus->attach(this);
    }
    ~Listener() override
    {
        if (m_bus != nullptr)
            m_bus->detach(this);
    }

    void receive(const QCanBusFrame &frame) override
    {
        received.append(TestVehicle::textOf(frame));
        const std::function<void()> react = onReceive; // may replace itself
        if (react)
            react();
    }
    void batchReceived() override { ++batches; }
    void sent() override
    {
        ++told;
        if (onSent)
            onSent();
    }
    void busLost(BusLoss loss) override { losses.append(loss); }
    bool isSimulated() const override { return isPartOfSimulation; }
    bool send(quint32 id, const char *hex = "", int queueLength = SimulatedBus::defaultQueueLength)
    {
        return m_bus->send(this, QCanBusFrame(id, QByteArray::fromHex(hex)), 0, queueLength);
    }
    void leave()
    {
        m_bus->detach(this);
        m_bus = nullptr;
    }

    QByteArrayList received;
    int batches = 0;
    bool isPartOfSimulation = false;
    QVector<BusLoss> losses;
    std::function<void()> onReceive;
    int told = 0; // frames of its own that were through
    std::function<void()> onSent;

private:
    SimulatedBus *m_bus;
};

void addBitRates()
{
    QTest::addColumn<int>("bitRate");
    QTest::newRow("unpaced") << 0;
    QTest::newRow("paced") << 1000000;
}

} // namespace

void tst_SimulatedBus::framesReachAllOthers_data()
{
    addBitRates();
}

void tst_SimulatedBus::framesReachAllOthers()
{
    QFETCH(int, bitRate);
    SimulatedBus bus(bitRate);
    Listener first(&bus);
    Listener second(&bus);
    Listener third(&bus);
    QVERIFY(first.send(0x601, "40"));
    QVERIFY(second.send(0x602, "41"));
    QTRY_COMPARE(third.received, QByteArrayList({"601 40", "602 41"}));
    QCOMPARE(first.received, QByteArrayList({"602 41"}));
    QCOMPARE(second.received, QByteArrayList({"601 40"}));
    QCOMPARE(bus.framesCarried(), quint64(2));
}

void tst_SimulatedBus::framesNeverArriveWithinSend_data()
{
    addBitRates();
}

void tst_SimulatedBus::framesNeverArriveWithinSend()
{
    QFETCH(int, bitRate);
    SimulatedBus bus(bitRate);
    Listener sender(&bus);
    EchoNode echo(&bus, QCanBusFrame(0x581, QByteArray(8, '\0')));
    bool isSending = false;
    bool wasNested = false;
    int exchanges = 0;
    const auto ask = [&] {
        isSending = true;
        sender.send(0x601);
        isSending = false;
    };
    sender.onReceive = [&] {
        wasNested = wasNested || isSending;
        if (++exchanges < 50)
            ask();
    };
    ask();
    QTRY_COMPARE(exchanges, 50);
    QVERIFY(!wasNested);
}

void tst_SimulatedBus::waitingFramesComeInOneBatch()
{
    SimulatedBus bus;
    Listener sender(&bus);
    Listener receiver(&bus);
    for (int count = 0; count < 100; ++count)
        sender.send(0x601);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(receiver.received.size(), 100);
    QCOMPARE(receiver.batches, 1);
}

void tst_SimulatedBus::answersOfOneBatchComeInTheNext()
{
    SimulatedBus bus;
    Listener sender(&bus);
    EchoNode echo(&bus, QCanBusFrame(0x581, QByteArray()));
    sender.send(0x601);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(sender.received.size(), 0);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(sender.received.size(), 1);
}

void tst_SimulatedBus::pacedFramesComeByPriority()
{
    SimulatedBus bus(1000000);
    Listener first(&bus);
    Listener second(&bus);
    Listener third(&bus);
    Listener client(&bus);
    // Three answers to one frame: all are ready at its end, in whatever order they were given.
    const auto answerOnce = [](Listener &listener, quint32 id) {
        listener.isPartOfSimulation = true;
        listener.onReceive = [&listener, id] {
            listener.onReceive = nullptr;
            listener.send(id);
        };
    };
    answerOnce(first, 0x601);
    answerOnce(second, 0x080);
    answerOnce(third, 0x181);
    client.send(0x321);
    QTRY_COMPARE(client.received.size(), 3);
    QCOMPARE(client.received, QByteArrayList({"80 ", "181 ", "601 "}));
}

void tst_SimulatedBus::pacedAnswerFollowsItsRequest()
{
    SimulatedBus bus(1000000);
    Listener client(&bus);
    EchoNode echo(&bus, QCanBusFrame(0x581, QByteArray(8, '\0')));
    client.send(0x601, "4000100000000000");
    QTRY_COMPARE(client.received, QByteArrayList({"581 0000000000000000"}));
    QCOMPARE(bus.framesCarried(), quint64(2));
}

void tst_SimulatedBus::participantMayLeaveWhileItReceives_data()
{
    addBitRates();
}

void tst_SimulatedBus::participantMayLeaveWhileItReceives()
{
    QFETCH(int, bitRate);
    SimulatedBus bus(bitRate);
    Listener sender(&bus);
    Listener leaver(&bus);
    Listener stayer(&bus);
    leaver.onReceive = [&leaver] { leaver.leave(); };
    sender.send(0x601);
    sender.send(0x602);
    QTRY_COMPARE(stayer.received.size(), 2);
    QCOMPARE(leaver.received.size(), 1);
}

void tst_SimulatedBus::busMayBeLetGoWhileItDelivers_data()
{
    addBitRates();
}

void tst_SimulatedBus::busMayBeLetGoWhileItDelivers()
{
    QFETCH(int, bitRate);
    auto bus = std::make_shared<SimulatedBus>(bitRate);
    const std::weak_ptr<SimulatedBus> watched = bus;
    auto sender = std::make_unique<Listener>(bus.get());
    auto receiver = std::make_unique<Listener>(bus.get());
    receiver->onReceive = [&] {
        sender->leave();
        receiver->leave();
        bus.reset();
    };
    sender->send(0x601);
    sender->send(0x602);
    QTRY_VERIFY(watched.expired());
    QCOMPARE(receiver->received.size(), 1);
}

void tst_SimulatedBus::pacedFrameIsToldWhenItIsThrough()
{
    SimulatedBus bus(10000);
    Listener low(&bus);
    Listener high(&bus);
    QByteArrayList order;
    high.onSent = [&order] { order.append("high is through"); };
    low.onSent = [&] {
        QCOMPARE(high.received.size(), low.told - 1); // before the others have it
        order.append("low is through");
    };
    QVERIFY(low.send(0x602));
    QVERIFY(low.send(0x602));
    QVERIFY(high.send(0x181));
    QCOMPARE(low.told, 0);
    QTRY_COMPARE(low.told, 2);
    // Nothing could stop the first one, then the lower identifier went first.
    QCOMPARE(order, QByteArrayList({"low is through", "high is through", "low is through"}));
}

void tst_SimulatedBus::senderMayLeaveWhenItIsTold()
{
    SimulatedBus bus(1000000);
    Listener sender(&bus);
    Listener other(&bus);
    sender.onSent = [&sender] { sender.leave(); };
    QVERIFY(sender.send(0x602));
    QVERIFY(sender.send(0x603));
    QTRY_COMPARE(other.received, QByteArrayList({"602 ", "603 "}));
    QCOMPARE(sender.told, 1);
}

void tst_SimulatedBus::fullQueueRefuses_data()
{
    addBitRates();
}

void tst_SimulatedBus::fullQueueRefuses()
{
    QFETCH(int, bitRate);
    SimulatedBus bus(bitRate);
    Listener sender(&bus);
    Listener other(&bus);
    constexpr int queueLength = 10;
    for (int count = 0; count < queueLength; ++count)
        QVERIFY(sender.send(0x601, "", queueLength));
    QVERIFY(!sender.send(0x601, "", queueLength));
    QVERIFY2(other.send(0x602, "", queueLength), "each sender has a queue of its own");
    QTRY_COMPARE(other.received.size(), queueLength);
    QVERIFY(sender.send(0x601, "", queueLength));
}

void tst_SimulatedBus::strangersCannotSend()
{
    SimulatedBus bus;
    SimulatedBus otherBus;
    Listener stranger(&otherBus);
    QVERIFY(!bus.send(&stranger, QCanBusFrame(0x601, QByteArray())));
}

void tst_SimulatedBus::lostNow_data()
{
    addBitRates();
}

void tst_SimulatedBus::lostNow()
{
    QFETCH(int, bitRate);
    SimulatedBus bus(bitRate);
    Listener sender(&bus);
    Listener receiver(&bus);
    sender.send(0x601);
    bus.lose(BusLoss::Unplugged);
    bus.lose(BusLoss::Disconnected); // once is enough
    QVERIFY(bus.isLost());
    QCOMPARE(receiver.losses, QVector<BusLoss>({BusLoss::Unplugged}));
    QVERIFY(!sender.send(0x601));
    QCoreApplication::processEvents();
    QCOMPARE(receiver.received, QByteArrayList());
}

void tst_SimulatedBus::lostAfterSomeFrames()
{
    SimulatedBus bus;
    Listener sender(&bus);
    Listener receiver(&bus);
    bus.loseAfter(3, BusLoss::Disconnected);
    for (int count = 0; count < 10; ++count)
        sender.send(0x601);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(receiver.received.size(), 3);
    QCOMPARE(sender.losses, QVector<BusLoss>({BusLoss::Disconnected}));
}

void tst_SimulatedBus::restored()
{
    SimulatedBus bus;
    Listener sender(&bus);
    Listener receiver(&bus);
    bus.lose(BusLoss::Unplugged);
    bus.restore();
    QVERIFY(sender.send(0x601));
    QTRY_COMPARE(receiver.received.size(), 1);
}

void tst_SimulatedBus::vehicleOnBus()
{
    SimulatedBus bus;
    TestVehicle test;
    Listener client(&bus);
    {
        VehicleOnBus onBus(&test.vehicle, &bus);
        test.vehicle.start();
        client.send(0x605, "4001100000000000");
        QTRY_COMPARE(client.received, QByteArrayList({"705 00", "585 4f01100081000000"}));
    }
    client.send(0x605, "4001100000000000");
    QCoreApplication::processEvents();
    QCOMPARE(client.received.size(), 2);
}

void tst_SimulatedBus::floodLeavesTheEventLoopItsTurns()
{
    SimulatedBus bus;
    Listener first(&bus);
    Listener second(&bus);
    int turns = 0;
    first.onReceive = [&first] { first.send(0x601); };
    second.onReceive = [&second] { second.send(0x602); };
    first.send(0x601);
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&turns] { ++turns; });
    timer.start(0);
    QTRY_VERIFY(turns >= 20);
}

QTEST_GUILESS_MAIN(tst_SimulatedBus)
#include "tst_simulatedbus.moc"
