// SPDX-License-Identifier: MIT
#include "modelserver.h"

#include <canopen/canport.h>
#include <canopen/datatype.h>
#include <canopen/nodescan.h>
#include <canopen/sdoclient.h>

#include <tests/support/fakecandevice.h>

#include <QSignalSpy>
#include <QTimer>
#include <QtTest>

#include <map>
#include <memory>

using namespace CanOpen;

Q_DECLARE_METATYPE(QVector<quint8>)

namespace {

using NodeIds = QVector<quint8>;

// A client on a port on a device, with model servers at the other end of the line.
class Bus : public QObject
{
public:
    Bus()
        : device(new FakeCanDevice)
        , port(std::unique_ptr<QCanBusDevice>(device))
        , client([this](const QCanBusFrame &frame) { return port.send(frame); })
        , scan(&client)
    {
        connect(&port, &CanPort::frameReceived, &client, &SdoClient::handleFrame);
        connect(&port, &CanPort::written, &client, &SdoClient::handleWritten);
        connect(&port, &CanPort::dropped, &client, &SdoClient::handleDropped);
        connect(device, &FakeCanDevice::sent, this, &Bus::answer);
        connect(&scan, &NodeScan::found, this, [this](quint8 nodeId) { found.append(nodeId); });
        connect(&scan, &NodeScan::finished, this, [this](const NodeIds &nodeIds) {
            ++finishedCount;
            result = nodeIds;
        });
        SdoPatience patience;
        patience.timeout = std::chrono::milliseconds(60);
        patience.repeats = 1;
        client.setDefaultPatience(patience);
        QString error;
        port.open(&error);
    }

    void addNode(quint8 nodeId, const QByteArray &deviceType)
    {
        nodes.emplace(nodeId, ModelServer([deviceType](ObjectKey key) {
                          return key == ObjectKey{0x1000, 0} ? deviceType : QByteArray();
                      }));
    }

    void answer(const QCanBusFrame &frame)
    {
        const auto nodeId = static_cast<quint8>(frame.frameId() - 0x600);
        const auto node = nodes.find(nodeId);
        if (node == nodes.end())
            return;
        const QByteArray payload = node->second.answer(frame.payload());
        if (payload.isNull())
            return;
        QTimer::singleShot(
            0, this, [this, nodeId, payload] { device->inject(QCanBusFrame(0x580u + nodeId, payload)); });
    }

    std::map<quint8, ModelServer> nodes;
    FakeCanDevice *device; // owned by the port
    CanPort port;
    SdoClient client;
    NodeScan scan;
    NodeIds found;
    NodeIds result;
    int finishedCount = 0;
};

QByteArray someType()
{
    return *encodeValue(DataType::Unsigned32, 0x000201C6u);
}

} // namespace

class tst_NodeScan : public QObject
{
    Q_OBJECT

private slots:
    void findsNodesThatAnswer();
    void abortIsASignOfLife();
    void answerOfWrongSizeIsASignOfLife();
    void findsNothingOnAnEmptyBus();
    void findsNode127WithAShortQueue_data();
    void findsNode127WithAShortQueue();
    void findsEveryNode();
    void asksABoundedNumberSideBySide();
    void cancelledScanEnds();
    void nodesThatCouldNotBeAskedAreNotAbsent();
    void nodesThatFoundNoRoomAreNotAbsent();
    void nodeThatAnotherClientHoldsUpIsNotFound();
    void nodesThatKeptSilentWereAsked();
    void secondStartChangesNothing();
    void scansAgain();
    void otherUploadsAreNotItsOwn();
    void mayBeDeletedInASlot();
    void asksNobodyWhenItIsGone();
};

void tst_NodeScan::findsNodesThatAnswer()
{
    Bus bus;
    bus.addNode(1, someType());
    bus.addNode(64, someType());
    QVERIFY(!bus.scan.isRunning());
    bus.scan.start();
    QVERIFY(bus.scan.isRunning());
    QTRY_COMPARE(bus.finishedCount, 1);
    QVERIFY(!bus.scan.isRunning());
    QCOMPARE(bus.result, (NodeIds{1, 64}));
    QCOMPARE(bus.scan.foundNodes(), (NodeIds{1, 64}));
    QCOMPARE(bus.found, (NodeIds{1, 64}));
}

void tst_NodeScan::abortIsASignOfLife()
{
    Bus bus;
    bus.addNode(9, QByteArray()); // no object 1000h
    bus.scan.start();
    QTRY_COMPARE(bus.finishedCount, 1);
    QCOMPARE(bus.result, NodeIds{9});
}

void tst_NodeScan::answerOfWrongSizeIsASignOfLife()
{
    Bus bus;
    bus.addNode(9, QByteArray("\1\2", 2));
    bus.scan.start();
    QTRY_COMPARE(bus.finishedCount, 1);
    QCOMPARE(bus.result, NodeIds{9});
}

void tst_NodeScan::findsNothingOnAnEmptyBus()
{
    Bus bus;
    bus.scan.start();
    QTRY_COMPARE(bus.finishedCount, 1);
    QCOMPARE(bus.result, NodeIds());
    QCOMPARE(bus.found, NodeIds());
}

void tst_NodeScan::findsNode127WithAShortQueue_data()
{
    QTest::addColumn<int>("sending");
    QTest::addColumn<int>("failEvery");
    QTest::newRow("queue of the device") << static_cast<int>(FakeCanDevice::Sending::DeviceQueue) << 0;
    QTest::newRow("queue of the driver") << static_cast<int>(FakeCanDevice::Sending::DriverQueue) << 0;
    QTest::newRow("every 7th write fails") << static_cast<int>(FakeCanDevice::Sending::DeviceQueue) << 7;
}

void tst_NodeScan::findsNode127WithAShortQueue()
{
    QFETCH(int, sending);
    QFETCH(int, failEvery);
    Bus bus;
    bus.device->setSending(static_cast<FakeCanDevice::Sending>(sending));
    bus.device->setQueueLimit(10);
    bus.device->failEveryNthWrite(failEvery);
    bus.addNode(127, someType());
    bus.scan.start();
    QTRY_COMPARE(bus.finishedCount, 1);
    QCOMPARE(bus.result, NodeIds{127});
    // Every node was asked.
    QVector<bool> asked(128, false);
    for (const QCanBusFrame &frame : bus.device->written())
        asked[static_cast<int>(frame.frameId() - 0x600)] = true;
    QCOMPARE(asked.count(true), 127);
}

void tst_NodeScan::findsEveryNode()
{
    Bus bus;
    bus.device->setSending(FakeCanDevice::Sending::DeviceQueue);
    bus.device->setQueueLimit(10);
    for (int nodeId = 1; nodeId <= 127; ++nodeId)
        bus.addNode(static_cast<quint8>(nodeId), someType());
    bus.scan.start();
    QTRY_COMPARE(bus.finishedCount, 1);
    QCOMPARE(bus.result.size(), 127);
    QCOMPARE(bus.result.first(), quint8(1));
    QCOMPARE(bus.result.last(), quint8(127));
}

void tst_NodeScan::asksABoundedNumberSideBySide()
{
    Bus bus;
    bus.scan.start();
    QCOMPARE(bus.device->written().size(), 32);
    QCOMPARE(bus.device->written().last().frameId(), 0x620u);
}

void tst_NodeScan::cancelledScanEnds()
{
    Bus bus;
    bus.addNode(5, someType());
    bus.scan.start();
    QTRY_COMPARE(bus.found, NodeIds{5});
    bus.client.cancelAll();
    QCOMPARE(bus.finishedCount, 1);
    QCOMPARE(bus.result, NodeIds{5});
}

// A device that takes four frames and then no more.
void tst_NodeScan::nodesThatCouldNotBeAskedAreNotAbsent()
{
    Bus bus;
    bus.device->setSending(FakeCanDevice::Sending::StuckQueue);
    SdoPatience patience;
    patience.longest = std::chrono::milliseconds(20);
    bus.client.setDefaultPatience(patience);
    bus.scan.start();
    QTRY_COMPARE(bus.finishedCount, 1);
    QCOMPARE(bus.result, NodeIds());
    QCOMPARE(bus.scan.unaskedNodes().size(), 127);
    QCOMPARE(bus.scan.silentNodes(), NodeIds());
}

void tst_NodeScan::nodesThatFoundNoRoomAreNotAbsent()
{
    Bus bus;
    bus.addNode(9, someType());
    BusLoad load;
    load.setBitRate(1); // so that the requests alone fill it
    bus.client.setBusLoad(&load);
    connect(bus.device, &FakeCanDevice::sent, this, [&load](const QCanBusFrame &frame) { load.note(frame); });
    QTimer others;
    connect(&others, &QTimer::timeout, this,
            [&load] { load.note(QCanBusFrame(0x181, QByteArray(8, '\0'))); });
    others.start(10);
    SdoPatience patience;
    patience.longest = std::chrono::milliseconds(200);
    bus.client.setDefaultPatience(patience);
    bus.scan.start();
    QTRY_COMPARE(bus.finishedCount, 1);
    QCOMPARE(bus.result, NodeIds{9});
    QCOMPARE(bus.scan.unaskedNodes().size(), 126);
    QCOMPARE(bus.scan.silentNodes(), NodeIds());
}

/*! It goes on and on, and no request of ours goes out: all that is known is what others say. */
void tst_NodeScan::nodeThatAnotherClientHoldsUpIsNotFound()
{
    Bus bus;
    const auto goOn = [&bus] {
        bus.device->inject(QCanBusFrame(0x605, QByteArray::fromHex("0001020304050607")));
        bus.device->inject(QCanBusFrame(0x585, QByteArray::fromHex("2000000000000000")));
    };
    QTimer other;
    connect(&other, &QTimer::timeout, &bus, goOn);
    bus.client.setPatience(5, SdoPatience()); // from now on the client knows the node
    goOn();
    other.start(10);
    bus.scan.start();
    QTRY_COMPARE_WITH_TIMEOUT(bus.finishedCount, 1, 60000);
    QCOMPARE(bus.found, NodeIds());
    QCOMPARE(bus.scan.unaskedNodes(), NodeIds{5});
}

void tst_NodeScan::nodesThatKeptSilentWereAsked()
{
    Bus bus;
    bus.addNode(9, someType());
    bus.device->setSending(FakeCanDevice::Sending::DeviceQueue);
    bus.scan.start();
    QTRY_COMPARE(bus.finishedCount, 1);
    QCOMPARE(bus.result, NodeIds{9});
    QCOMPARE(bus.scan.unaskedNodes(), NodeIds());
    QCOMPARE(bus.scan.silentNodes().size(), 126);
    QVERIFY(!bus.scan.silentNodes().contains(9));

    bus.scan.start();
    bus.client.cancelAll();
    QCOMPARE(bus.finishedCount, 2);
    QCOMPARE(bus.scan.unaskedNodes().size(), 127);
}

void tst_NodeScan::secondStartChangesNothing()
{
    Bus bus;
    bus.addNode(5, someType());
    bus.scan.start();
    bus.scan.start();
    QTRY_COMPARE(bus.finishedCount, 1);
    QTRY_VERIFY(!bus.client.isBusy());
    QCOMPARE(bus.finishedCount, 1);
    QCOMPARE(bus.found, NodeIds{5});
}

void tst_NodeScan::scansAgain()
{
    Bus bus;
    bus.addNode(5, someType());
    bus.scan.start();
    QTRY_COMPARE(bus.finishedCount, 1);
    bus.nodes.clear();
    bus.addNode(6, someType());
    bus.scan.start();
    QTRY_COMPARE(bus.finishedCount, 2);
    QCOMPARE(bus.result, NodeIds{6});
}

void tst_NodeScan::otherUploadsAreNotItsOwn()
{
    Bus bus;
    bus.addNode(5, someType());
    bus.client.upload(5, {0x1001, 0}, DataType::Unsigned8);
    bus.client.upload(5, {0x1000, 0}, DataType::Unsigned32);
    QTRY_VERIFY(!bus.client.isBusy());
    QCOMPARE(bus.found, NodeIds());
    QCOMPARE(bus.finishedCount, 0);
}

void tst_NodeScan::mayBeDeletedInASlot()
{
    Bus bus;
    bus.addNode(5, someType());
    auto *scan = new NodeScan(&bus.client);
    connect(scan, &NodeScan::found, this, [&scan] { delete std::exchange(scan, nullptr); });
    scan->start();
    QTRY_VERIFY(scan == nullptr);
    QTRY_VERIFY(!bus.client.isBusy());
}

void tst_NodeScan::asksNobodyWhenItIsGone()
{
    Bus bus;
    auto scan = std::make_unique<NodeScan>(&bus.client);
    QSignalSpy finished(scan.get(), &NodeScan::finished);
    scan->start();
    QTest::qWait(20);
    QVERIFY(bus.client.isBusy());
    scan.reset();
    QVERIFY(!bus.client.isBusy());
    QTest::qWait(10); // for the aborts
    const int sent = bus.device->written().size();
    QTest::qWait(500);
    QCOMPARE(bus.device->written().size(), sent); // no repeats
    QCOMPARE(finished.count(), 0);
}

QTEST_GUILESS_MAIN(tst_NodeScan)

#include "tst_nodescan.moc"
