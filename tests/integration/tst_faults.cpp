// SPDX-License-Identifier: MIT
#include "simulatedhost.h"

#include <reader/datareader.h>
#include <simulator/fault.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QEventLoop>
#include <QTimer>
#include <QtTest>

namespace {

constexpr quint8 faultyNode = 2; // the battery

QVector<Simulator::Fault> parseFaults(const QByteArray &json)
{
    QVector<Simulator::Fault> faults;
    const QJsonArray array = QJsonDocument::fromJson(json).array();
    for (const QJsonValue &value : array) {
        QString error;
        const std::optional<Simulator::Fault> fault = Simulator::parseFault(value.toObject(), &error);
        if (!fault)
            qFatal("%s", qUtf8Printable(error));
        faults.push_back(*fault);
    }
    return faults;
}

/*! How a read went. */
struct Outcome
{
    bool ended = false;
    QStringList objects; // of all nodes, as the exchange file has them
    QList<quint8> nodes;
    QString silentAt; // where an upload had no answer: "node 2, 6000h sub-index 1"
};

/*! Handles events until \a condition holds; false when it does not within a minute. QTest::qWaitFor() sleeps between
 *  its looks, which makes a read of thousands of short turns slow.
 */
bool waitFor(const std::function<bool()> &condition)
{
    bool late = false;
    QTimer limit;
    QObject::connect(&limit, &QTimer::timeout, &limit, [&late] { late = true; });
    limit.start(60000);
    QEventLoop loop;
    while (!condition() && !late)
        loop.processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    return !late;
}

/*! Reads the vehicle with the plug-in's reader; the faults are switched on before the read. */
Outcome readVehicle(SimulatedHost &host, int nodesToHear)
{
    DataReader reader;
    reader.setSdoClient(host.services().getSdoClient());
    reader.setReceiverHub(host.services().getCanReceiverHub());
    reader.setSecondarySdoClient(host.services().getSecondarySdoClient());

    Outcome outcome;
    QObject::connect(&host.services().sdoClient(), &HostSdoClient::uploadEnded, &reader,
                     [&](quint8 nodeId, CanOpen::ObjectKey key, HostSdoClient::Ending ending, quint32) {
                         if (ending == HostSdoClient::Ending::Silent && outcome.silentAt.isEmpty())
                             outcome.silentAt = QStringLiteral("node %1, %2").arg(nodeId).arg(key.toString());
                     });

    reader.startReading();
    // Detection ends as soon as the nodes that can be heard were heard.
    if (!waitFor([&] { return reader.progress().nodesFound >= nodesToHear; }))
        return outcome;
    // Its own end of the detection would come in the middle of a long read, and begin anew.
    for (QTimer *timer : reader.findChildren<QTimer *>())
        timer->stop();
    reader.handleHBdetectionTimeout();
    outcome.ended = waitFor([&] { return !reader.isReading(); });
    outcome.nodes = reader.getNodeList();
    const QStringList lines = reader.exportXml().split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        if (!line.contains(QLatin1String("date=")))
            outcome.objects << line.trimmed();
    }
    // After a time-out one more request comes, and ends, before the host knows that the run is over.
    outcome.ended = outcome.ended
                    && waitFor([&] { return host.services().reads().phase() == ReadObserver::Phase::Idle; });
    return outcome;
}

} // namespace

/*! What real devices and buses do wrong, against the reader, the host's services and the CANopen client. */
class tst_Faults : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void changesNothing_data();
    void changesNothing();
    void skipsOneObject_data();
    void skipsOneObject();
    void stopsWithWords_data();
    void stopsWithWords();
    void isNotHeard_data();
    void isNotHeard();
    void failingWritesChangeNothing_data();
    void failingWritesChangeNothing();
    void floodLeavesTheNextReadWhole();

private:
    QStringList m_good; // a read without faults
};

void tst_Faults::initTestCase()
{
    SimulatedHost host(SimulatedHost::stillVehicle(QStringLiteral("pedelec")));
    QVERIFY(host.connectToBus());
    const Outcome outcome = readVehicle(host, 7);
    QVERIFY(outcome.ended);
    QCOMPARE(outcome.nodes, QList<quint8>({1, 2, 3, 4, 5, 6, 7}));
    QCOMPARE(outcome.silentAt, QString());
    m_good = outcome.objects;
    QVERIFY(m_good.contains(QStringLiteral("<object index=\"0x6000\" sub=\"0x01\" value=\"6\" />")));
    QVERIFY(m_good.size() > 350);
}

void tst_Faults::changesNothing_data()
{
    QTest::addColumn<QByteArray>("faults");

    QTest::newRow("answers come after the time-out")
        << QByteArray(R"([{"kind": "sdoDelay", "ms": 150, "object": "6000sub1"}])");
    QTest::newRow("doubled answers") << QByteArray(R"([{"kind": "doubleAnswers"}])");
    QTest::newRow("copies of answers come later")
        << QByteArray(R"([{"kind": "lateCopies", "count": 3, "withinMs": 50}])");
    QTest::newRow("answers come after the next request")
        << QByteArray(R"([{"kind": "lateAnswers", "every": 50}])");
    QTest::newRow("half-open transfer until an abort") << QByteArray(R"([{"kind": "halfOpen", "from": 20}])");
    QTest::newRow("every 40th frame lost") << QByteArray(R"([{"kind": "dropFrames", "every": 40}])");
    QTest::newRow("another client on the same node")
        << QByteArray(R"([{"kind": "foreignClient", "every": 5}])");
    QTest::newRow("segmented where expedited is usual") << QByteArray(R"([{"kind": "segmented"}])");
    QTest::newRow("segmented, doubled answers")
        << QByteArray(R"([{"kind": "segmented"}, {"kind": "doubleAnswers"}])");
    QTest::newRow("segmented without a size")
        << QByteArray(R"([{"kind": "segmented"}, {"kind": "sizeBits", "sizeIndicated": 0}])");
    QTest::newRow("segmented, another client on the same node")
        << QByteArray(R"([{"kind": "segmented"}, {"kind": "foreignClient", "every": 5}])");
    QTest::newRow("segmented, bus load of 70 %")
        << QByteArray(R"([{"kind": "segmented"}, {"kind": "traffic", "percent": 70}])");
    QTest::newRow("segments of one byte") << QByteArray(R"([{"kind": "segmented", "bytes": 1}])");
    QTest::newRow("frames that no service uses") << QByteArray(R"([{"kind": "flood", "perSecond": 1000}])");
    QTest::newRow("expedited without a size") << QByteArray(R"([{"kind": "sizeBits", "sizeIndicated": 0}])");
    QTest::newRow("heartbeats with the top bit") << QByteArray(R"([{"kind": "heartbeatTopBit"}])");
    QTest::newRow("babbling heartbeat") << QByteArray(R"([{"kind": "babbleHeartbeat", "intervalMs": 1}])");
}

void tst_Faults::changesNothing()
{
    QFETCH(QByteArray, faults);

    SimulatedHost host(SimulatedHost::stillVehicle(QStringLiteral("pedelec")));
    const QVector<Simulator::Fault> parsed = parseFaults(faults);
    QVERIFY(!parsed.isEmpty());
    for (const Simulator::Fault &fault : parsed)
        QVERIFY(host.vehicle().addFault(faultyNode, fault));
    QVERIFY(host.connectToBus());

    const Outcome outcome = readVehicle(host, 7);
    QVERIFY(outcome.ended);
    QCOMPARE(outcome.silentAt, QString());
    QCOMPARE(outcome.objects, m_good);
}

void tst_Faults::skipsOneObject_data()
{
    QTest::addColumn<QByteArray>("faults");

    // The battery's object 6040h sub-index 1 is its voltage, an INTEGER32.
    QTest::newRow("wrong toggle bit") << QByteArray(R"([{"kind": "segmented", "object": "6040sub1"},
                          {"kind": "wrongToggle", "object": "6040sub1"}])");
    QTest::newRow("refused") << QByteArray(
        R"([{"kind": "sdoAbort", "code": 134217760, "object": "6040sub1"}])");
    QTest::newRow("refused half way") << QByteArray(R"([{"kind": "segmented", "object": "6040sub1"},
                          {"kind": "abortMidTransfer", "afterSegments": 0, "object": "6040sub1"}])");
    QTest::newRow("too narrow") << QByteArray(
        R"([{"kind": "wrongWidth", "bytes": 2, "object": "6040sub1"}])");
    QTest::newRow("too wide") << QByteArray(R"([{"kind": "wrongWidth", "bytes": 8, "object": "6040sub1"}])");
    QTest::newRow("called segmented where it is not")
        << QByteArray(R"([{"kind": "sizeBits", "expedited": 0, "object": "6040sub1"}])");
    QTest::newRow("segments without end") << QByteArray(R"([{"kind": "endless", "object": "6040sub1"}])");
    QTest::newRow("segments without end and data")
        << QByteArray(R"([{"kind": "endless", "bytes": 0, "object": "6040sub1"}])");
    QTest::newRow("wrong size announced") << QByteArray(R"([{"kind": "segmented", "object": "6040sub1"},
                          {"kind": "sizeBits", "size": 4000000000, "object": "6040sub1"}])");
}

void tst_Faults::skipsOneObject()
{
    QFETCH(QByteArray, faults);

    SimulatedHost host(SimulatedHost::stillVehicle(QStringLiteral("pedelec")));
    for (const Simulator::Fault &fault : parseFaults(faults))
        QVERIFY(host.vehicle().addFault(faultyNode, fault));
    QVERIFY(host.connectToBus());

    const Outcome outcome = readVehicle(host, 7);
    QVERIFY(outcome.ended);
    QCOMPARE(outcome.silentAt, QString());

    QStringList expected = m_good;
    const int battery = expected.indexOf(QStringLiteral("<node nodeid=\"2\">"));
    const int voltage = expected.indexOf(
        QRegularExpression(QStringLiteral("<object index=\"0x6040\" sub=\"0x01\" .*")), battery);
    QVERIFY(battery > 0 && voltage > battery);
    expected.removeAt(voltage);
    QCOMPARE(outcome.objects, expected);
}

void tst_Faults::stopsWithWords_data()
{
    QTest::addColumn<QByteArray>("fault");
    QTest::addColumn<QString>("silentAt");

    QTest::newRow("one object is never answered")
        << QByteArray(R"([{"kind": "sdoSilent", "object": "6000sub1"}])")
        << QStringLiteral("node 2, 6000h sub-index 1");
    QTest::newRow("no more answers from the third request on")
        << QByteArray(R"([{"kind": "sdoSilent", "from": 3}])") << QStringLiteral("node 2, 1018h sub-index 0");
    QTest::newRow("always the wrong multiplexer")
        << QByteArray(R"([{"kind": "wrongMultiplexer"}])") << QStringLiteral("node 2, 1000h sub-index 0");
    QTest::newRow("heartbeats, but state Stopped")
        << QByteArray(R"([{"kind": "stopped"}])") << QStringLiteral("node 2, 1000h sub-index 0");
}

void tst_Faults::stopsWithWords()
{
    QFETCH(QByteArray, fault);

    Simulator::VehicleDescription description = SimulatedHost::stillVehicle(QStringLiteral("pedelec"));
    for (Simulator::NodeDescription &node : description.nodes) {
        if (node.id == faultyNode)
            node.faults = parseFaults(fault);
    }
    SimulatedHost host(description);
    QVERIFY(host.connectToBus());

    const Outcome outcome = readVehicle(host, 7);
    QVERIFY(outcome.ended);
    QTEST(outcome.silentAt, "silentAt");
    // What was read of node 1 is there, of node 3 nothing.
    QVERIFY(outcome.objects.contains(QStringLiteral("<object index=\"0x6000\" sub=\"0x01\" value=\"4\" />")));
    QVERIFY(
        !outcome.objects.contains(QStringLiteral("<object index=\"0x6000\" sub=\"0x01\" value=\"5\" />")));

    // Without the fault the next read is whole.
    host.vehicle().clearFaults();
    const Outcome next = readVehicle(host, 7);
    if (qstrcmp(QTest::currentDataTag(), "heartbeats, but state Stopped") != 0) {
        QVERIFY(next.ended);
        QCOMPARE(next.objects, m_good);
    }
}

void tst_Faults::isNotHeard_data()
{
    QTest::addColumn<QByteArray>("fault");

    QTest::newRow("silent") << QByteArray(R"([{"kind": "silent"}])");
    QTest::newRow("no heartbeat") << QByteArray(R"([{"kind": "noHeartbeat"}, {"kind": "noBootUp"}])");
    QTest::newRow("heartbeats as remote frames")
        << QByteArray(R"([{"kind": "heartbeatRemote"}, {"kind": "noBootUp"}])");
}

void tst_Faults::isNotHeard()
{
    QFETCH(QByteArray, fault);

    Simulator::VehicleDescription description = SimulatedHost::stillVehicle(QStringLiteral("pedelec"));
    for (Simulator::NodeDescription &node : description.nodes) {
        if (node.id == faultyNode)
            node.faults = parseFaults(fault);
    }
    SimulatedHost host(description);
    QVERIFY(host.connectToBus());

    const Outcome outcome = readVehicle(host, 6);
    QVERIFY(outcome.ended);
    QCOMPARE(outcome.nodes, QList<quint8>({1, 3, 4, 5, 6, 7}));
}

void tst_Faults::failingWritesChangeNothing_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("value");

    QTest::newRow("every 7th write fails") << int(Simulator::SimulatedCanDevice::FailEveryKey) << 7;
    QTest::newRow("send queue of one frame") << int(Simulator::SimulatedCanDevice::SendQueueKey) << 1;
}

void tst_Faults::failingWritesChangeNothing()
{
    QFETCH(int, key);
    QFETCH(int, value);

    SimulatedHost host(SimulatedHost::stillVehicle(QStringLiteral("pedelec")));
    host.prepare
        = [=](Simulator::SimulatedCanDevice &device) { device.setConfigurationParameter(key, value); };
    QVERIFY(host.connectToBus());

    const Outcome outcome = readVehicle(host, 7);
    QVERIFY(outcome.ended);
    QCOMPARE(outcome.silentAt, QString());
    QCOMPARE(outcome.objects, m_good);
}

void tst_Faults::floodLeavesTheNextReadWhole()
{
    SimulatedHost host(SimulatedHost::stillVehicle(QStringLiteral("pedelec")));
    QVERIFY(host.connectToBus());
    for (const Simulator::Fault &fault : parseFaults(R"([{"kind": "babbleSdo", "perSecond": 5000}])"))
        QVERIFY(host.vehicle().addFault(faultyNode, fault));

    const Outcome flooded = readVehicle(host, 7);
    QVERIFY(flooded.ended);

    host.vehicle().clearFaults();
    const Outcome next = readVehicle(host, 7);
    QVERIFY(next.ended);
    QCOMPARE(next.objects, m_good);
}

QTEST_GUILESS_MAIN(tst_Faults)
#include "tst_faults.moc"
