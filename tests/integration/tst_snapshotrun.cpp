// SPDX-License-Identifier: MIT
#include "simulatedhost.h"

#include <host/core/snapshotrun.h>
#include <simulator/fault.h>
#include <snapshot/snapshotfile.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QtTest>

#include <algorithm>

using CanOpen::NmtState;

namespace {

constexpr int aMinute = 60000; // ms; the tests have a clock of their own

Simulator::Fault fault(const char *json)
{
    QString error;
    const std::optional<Simulator::Fault> fault
        = Simulator::parseFault(QJsonDocument::fromJson(json).object(), &error);
    if (!fault)
        qFatal("%s", qUtf8Printable(error));
    return *fault;
}

Simulator::VehicleDescription vehicle(const QString &name)
{
    return SimulatedHost::stillVehicle(name);
}

Simulator::NodeDescription &nodeOf(Simulator::VehicleDescription &description, quint8 nodeId)
{
    return *std::find_if(description.nodes.begin(), description.nodes.end(),
                         [nodeId](const Simulator::NodeDescription &node) { return node.id == nodeId; });
}

/*! Lets time pass, in which everything goes on. */
void wait(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

class Run
{
public:
    explicit Run(SimulatedHost &host)
        : run(&host.services().bus())
        , finished(&run, &SnapshotRun::finished)
    {
        order.scope = SnapshotScope::Quick;
        order.sharePercent = BusShare::everything;
    }

    bool take()
    {
        run.start(order);
        return waitForEnd();
    }
    bool waitForEnd() { return finished.count() == 1 || finished.wait(10 * aMinute); }

    SnapshotNode node(quint8 id) const
    {
        const Snapshot snapshot = run.snapshot();
        const SnapshotNode *node = snapshot.find(id);
        return node != nullptr ? *node : SnapshotNode();
    }

    SnapshotRun run;
    QSignalSpy finished;
    SnapshotOrder order;
};

CanOpen::EdsFile dataSheetOf(Simulator::VehicleDescription &description, quint8 nodeId)
{
    CanOpen::EdsFile sheet;
    sheet.dictionary = nodeOf(description, nodeId).dictionary;
    return sheet;
}

/*! Whether the device does not count the entry: it has no error there now. */
bool isBeyondCount(const CanOpen::ObjectDictionary &dictionary, CanOpen::ObjectKey key)
{
    const CanOpen::ObjectEntry *count = dictionary.find({key.index, 0});
    return key.index == 0x1003 && count->data.at(0) < key.subIndex;
}

/*! Has the bus go after so many frames, now and each time that it is back, and stay away for so long. */
void loseAgainAndAgain(SimulatedHost &host, Run *run, quint64 frames, int msAway)
{
    const auto lose = [&host, frames] { host.bus().loseAfter(frames, Simulator::BusLoss::Disconnected); };
    lose();
    QObject::connect(&run->run, &SnapshotRun::busLostChanged, &run->run,
                     [&host, run, lose, msAway](bool isLost) {
                         if (isLost)
                             QTimer::singleShot(msAway, &run->run, [&host] { host.bus().restore(); });
                         else
                             lose();
                     });
}

QVector<int> nodeIdsOf(const Snapshot &snapshot)
{
    QVector<int> ids;
    for (const SnapshotNode &node : snapshot.nodes)
        ids.append(node.id);
    return ids;
}

} // namespace

/*! A snapshot of simulated vehicles over a connection. */
class tst_SnapshotRun : public QObject
{
    Q_OBJECT

private slots:
    void findsEverythingThatDevicesHave_data();
    void findsEverythingThatDevicesHave();
    void knowsItsOrigin();
    void readsPastSickNodes();
    void readsWhileItListens();
    void readsWithoutNode1();
    void readsNodesThatStartLate();
    void readsNamedNodesOnly();
    void scanFindsNodesWithoutHeartbeat();
    void scanGoesOnAfterALoss();
    void emptyBusHasNoNodes();
    void countsRestarts();
    void waitsForALostBus_data();
    void waitsForALostBus();
    void busThatStaysAwayEndsIt();
    void busThatGoesAgainAtOnceEndsIt();
    void goesOnAfterManyLosses();
    void userDisconnects();
    void dataSheetOfANode();
    void resumes();
    void resumedFileIsReadAgain_data();
    void resumedFileIsReadAgain();
};

void tst_SnapshotRun::findsEverythingThatDevicesHave_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("nodes");
    QTest::newRow("pedelec") << QStringLiteral("pedelec") << 7;
    QTest::newRow("full-bus") << QStringLiteral("full-bus") << 14;
}

void tst_SnapshotRun::findsEverythingThatDevicesHave()
{
    QFETCH(QString, name);
    QFETCH(int, nodes);
    Simulator::VehicleDescription description = vehicle(name);
    SimulatedHost host(description);
    QVERIFY(host.connectToBus());
    Run run(host);
    run.order.scope = SnapshotScope::Full;
    if (nodes == 14) // what only its maker knows
        run.order.dataSheets.insert(100, dataSheetOf(description, 100));
    QVERIFY(run.take());
    const Snapshot snapshot = run.run.snapshot();
    QVERIFY(snapshot.isComplete());
    QCOMPARE(snapshot.nodes.size(), nodes);
    for (const Simulator::NodeDescription &node : description.nodes) {
        const SnapshotNode *read = snapshot.find(node.id);
        QVERIFY(read != nullptr);
        int values = 0;
        const QVector<CanOpen::ObjectKey> keys = node.dictionary.keys();
        for (const CanOpen::ObjectKey key : keys) {
            const CanOpen::ObjectEntry &real = *node.dictionary.find(key);
            const bool isListed = run.order.dataSheets.contains(node.id);
            if (real.access == CanOpen::Access::WriteOnly
                || (!isListed && isBeyondCount(node.dictionary, key)))
                continue;
            const SnapshotEntry *entry = read->find(key);
            QVERIFY2(entry != nullptr,
                     qPrintable(QStringLiteral("node %1, %2").arg(node.id).arg(key.toShortString())));
            QVERIFY(entry->hasValue());
            if (key.index != 0x1017) // its heartbeat is another one here
                QCOMPARE(entry->raw, real.data);
            ++values;
        }
        QCOMPARE(read->valueCount(), values);
        QVERIFY(read->nmtState == NmtState::Operational);
    }
}

void tst_SnapshotRun::knowsItsOrigin()
{
    SimulatedHost host(vehicle(QStringLiteral("pedelec")), 125000);
    QVERIFY(host.connectToBus());
    Run run(host);
    run.order.program = QStringLiteral("test 1.0");
    run.order.notes.vehicle = QStringLiteral("the blue one");
    const QDateTime before = QDateTime::currentDateTime();
    QVERIFY(run.take());
    const Snapshot snapshot = run.run.snapshot();
    QCOMPARE(snapshot.program, QStringLiteral("test 1.0"));
    QCOMPARE(snapshot.bus, QStringLiteral("simulated:test"));
    QCOMPARE(snapshot.bitRate, 125000);
    QCOMPARE(snapshot.notes.vehicle, QStringLiteral("the blue one"));
    QVERIFY(snapshot.scope == SnapshotScope::Quick);
    // An offset of 0 is UTC.
    QVERIFY(snapshot.time.timeSpec() == Qt::OffsetFromUTC || snapshot.time.timeSpec() == Qt::UTC);
    QCOMPARE(snapshot.time.offsetFromUtc(), before.offsetFromUtc());
    QVERIFY(snapshot.time >= before.addMSecs(-1) && snapshot.time <= QDateTime::currentDateTime());
    QVERIFY2(snapshot.duration >= 2000, qPrintable(QString::number(snapshot.duration)));
    QString error;
    const std::optional<Snapshot> again = SnapshotFile::fromJson(SnapshotFile::toJson(snapshot), &error);
    QVERIFY2(again, qPrintable(error));
    QCOMPARE(SnapshotFile::toJson(*again), SnapshotFile::toJson(snapshot));
}

void tst_SnapshotRun::readsPastSickNodes()
{
    Simulator::VehicleDescription description = vehicle(QStringLiteral("full-bus"));
    nodeOf(description, 3).faults.append(fault(R"({"kind": "sdoSilent"})"));
    nodeOf(description, 5).faults.append(fault(R"({"kind": "stopped"})"));
    nodeOf(description, 9).faults.append(fault(R"({"kind": "sdoAbort", "code": "0x08000000"})"));
    nodeOf(description, 16).faults.append(fault(R"({"kind": "sdoDelay", "ms": 150})"));
    SimulatedHost host(description);
    QVERIFY(host.connectToBus());
    Run run(host);
    QVERIFY(run.take());
    QCOMPARE(run.run.snapshot().nodes.size(), 14);
    QVERIFY(!run.run.snapshot().isComplete());
    QVERIFY(run.node(3).end == SnapshotEnd::Silent);
    QCOMPARE(run.node(3).valueCount(), 0);
    QVERIFY(run.node(5).end == SnapshotEnd::Stopped);
    QVERIFY(run.node(5).nmtState == NmtState::Stopped);
    QVERIFY(run.node(9).end == SnapshotEnd::Complete);
    QCOMPARE(run.node(9).gapCount(), 203);
    QVERIFY(run.node(9).find(0x1018, 4)->gap == SnapshotGap::Abort);
    QCOMPARE(run.node(9).find(0x1018, 4)->abortCode, 0x08000000u);
    QVERIFY(run.node(16).end == SnapshotEnd::Complete);
    QCOMPARE(run.node(16).gapCount(), 0);
    QVERIFY(run.node(16).medianAnswer.value_or(0) >= 150);
    for (const int healthy : {1, 2, 4, 6, 7, 8, 10, 17, 100, 127}) {
        const SnapshotNode node = run.node(static_cast<quint8>(healthy));
        QVERIFY2(node.end == SnapshotEnd::Complete, qPrintable(QString::number(healthy)));
        QCOMPARE(node.gapCount(), 0);
    }
}

void tst_SnapshotRun::readsWhileItListens()
{
    SimulatedHost host(vehicle(QStringLiteral("pedelec")));
    QVERIFY(host.connectToBus());
    Run run(host);
    run.run.start(run.order);
    wait(500);
    QVERIFY(run.run.isListening());
    QVERIFY(run.run.reader()->progress().nodesDone > 0);
    QVERIFY(run.waitForEnd());
    QVERIFY(!run.run.isListening());
}

void tst_SnapshotRun::readsWithoutNode1()
{
    Simulator::VehicleDescription description = vehicle(QStringLiteral("pedelec"));
    description.nodes.removeFirst();
    SimulatedHost host(description);
    QVERIFY(host.connectToBus());
    Run run(host);
    QVERIFY(run.take());
    QCOMPARE(nodeIdsOf(run.run.snapshot()), (QVector<int>{2, 3, 4, 5, 6, 7}));
    QVERIFY(run.run.snapshot().isComplete());
}

// Nodes are read, too, that are heard for the first time after the listening.
void tst_SnapshotRun::readsNodesThatStartLate()
{
    Simulator::VehicleDescription description = vehicle(QStringLiteral("pedelec"));
    nodeOf(description, 2).faults.append(fault(R"({"kind": "sdoDelay", "ms": 50})"));
    nodeOf(description, 5).heartbeatMs = quint16(4000);
    nodeOf(description, 5).bootUp = false;
    SimulatedHost host(description);
    QVERIFY(host.connectToBus());
    Run run(host);
    QVERIFY(run.take());
    QCOMPARE(run.run.snapshot().nodes.size(), 7);
    QVERIFY(run.node(5).end == SnapshotEnd::Complete);
}

void tst_SnapshotRun::readsNamedNodesOnly()
{
    Simulator::VehicleDescription description = vehicle(QStringLiteral("pedelec"));
    nodeOf(description, 4).heartbeatMs = quint16(0);
    SimulatedHost host(description);
    QVERIFY(host.connectToBus());
    Run run(host);
    run.order.nodeIds = {4, 99, 2};
    QVERIFY(run.take());
    QCOMPARE(nodeIdsOf(run.run.snapshot()), (QVector<int>{2, 4, 99}));
    QVERIFY(run.node(2).end == SnapshotEnd::Complete);
    QVERIFY(run.node(4).end == SnapshotEnd::Complete);
    QVERIFY(!run.node(4).nmtState || *run.node(4).nmtState == NmtState::BootUp);
    QVERIFY(run.node(99).end == SnapshotEnd::Silent);
}

void tst_SnapshotRun::scanFindsNodesWithoutHeartbeat()
{
    Simulator::VehicleDescription description = vehicle(QStringLiteral("pedelec"));
    for (Simulator::NodeDescription &node : description.nodes) {
        node.heartbeatMs = quint16(0);
        node.bootUp = false;
    }
    SimulatedHost host(description);
    QVERIFY(host.connectToBus());
    {
        Run run(host);
        QVERIFY(run.take());
        QCOMPARE(run.run.snapshot().nodes.size(), 0);
    }
    Run run(host);
    run.order.isScanned = true;
    QVERIFY(run.take());
    QCOMPARE(nodeIdsOf(run.run.snapshot()), (QVector<int>{1, 2, 3, 4, 5, 6, 7}));
    QVERIFY(run.run.snapshot().isComplete());
}

void tst_SnapshotRun::scanGoesOnAfterALoss()
{
    Simulator::VehicleDescription description = vehicle(QStringLiteral("pedelec"));
    Simulator::NodeDescription last = nodeOf(description, 7);
    last.id = 120;
    last.heartbeatMs = quint16(0);
    last.bootUp = false;
    description.nodes.append(last);
    SimulatedHost host(description);
    QVERIFY(host.connectToBus());
    Run run(host);
    run.order.isScanned = true;
    run.run.start(run.order);
    wait(2100); // the listening is over, the scan is not
    QVERIFY(run.run.isListening());
    host.bus().lose(Simulator::BusLoss::Disconnected);
    wait(1500);
    QVERIFY(run.run.isBusLost());
    host.bus().restore();
    QVERIFY(run.waitForEnd());
    QCOMPARE(nodeIdsOf(run.run.snapshot()), (QVector<int>{1, 2, 3, 4, 5, 6, 7, 120}));
    QVERIFY(run.run.snapshot().isComplete());
}

void tst_SnapshotRun::emptyBusHasNoNodes()
{
    SimulatedHost host(Simulator::VehicleDescription{});
    QVERIFY(host.connectToBus());
    Run run(host);
    QVERIFY(run.take());
    QVERIFY(!run.run.isCancelled());
    QCOMPARE(run.run.snapshot().nodes.size(), 0);
    QVERIFY(run.run.snapshot().duration >= 2000);
}

void tst_SnapshotRun::countsRestarts()
{
    Simulator::VehicleDescription description = vehicle(QStringLiteral("pedelec"));
    nodeOf(description, 3).faults.append(fault(R"({"kind": "restarts", "intervalMs": 300})"));
    SimulatedHost host(description);
    QVERIFY(host.connectToBus());
    wait(100);
    Run run(host);
    QVERIFY(run.take());
    QVERIFY2(run.node(3).bootUps >= 5, qPrintable(QString::number(run.node(3).bootUps)));
    QCOMPARE(run.node(2).bootUps, 0);
}

void tst_SnapshotRun::waitsForALostBus_data()
{
    QTest::addColumn<int>("frames");
    QTest::addColumn<int>("loss");
    for (const int frames : {1, 20, 500, 2000}) {
        QTest::addRow("unplugged after %d frames", frames) << frames << int(Simulator::BusLoss::Unplugged);
        QTest::addRow("dropped after %d frames", frames) << frames << int(Simulator::BusLoss::Disconnected);
    }
}

void tst_SnapshotRun::waitsForALostBus()
{
    QFETCH(int, frames);
    QFETCH(int, loss);
    SimulatedHost host(vehicle(QStringLiteral("pedelec")));
    QVERIFY(host.connectToBus());
    Run run(host);
    QSignalSpy losses(&run.run, &SnapshotRun::busLostChanged);
    host.bus().loseAfter(quint64(frames), Simulator::BusLoss(loss));
    run.run.start(run.order);
    QTRY_COMPARE_WITH_TIMEOUT(losses.count(), 1, aMinute);
    QVERIFY(run.run.isBusLost());
    wait(20000);
    QVERIFY(run.finished.isEmpty());
    host.bus().restore();
    QVERIFY(run.waitForEnd());
    QCOMPARE(losses.count(), 2);
    QVERIFY(!run.run.isCancelled());
    QCOMPARE(run.run.snapshot().nodes.size(), 7);
    QVERIFY(run.run.snapshot().isComplete());
}

void tst_SnapshotRun::busThatStaysAwayEndsIt()
{
    SimulatedHost host(vehicle(QStringLiteral("pedelec")));
    QVERIFY(host.connectToBus());
    Run run(host);
    host.bus().loseAfter(500, Simulator::BusLoss::Disconnected);
    run.run.start(run.order);
    QVERIFY(!run.finished.wait(59000));
    QVERIFY(run.finished.wait(5000));
    QVERIFY(run.run.isCancelled());
    QVERIFY(run.run.snapshot().valueCount() > 10);
    QVERIFY(!run.run.snapshot().isComplete());
}

void tst_SnapshotRun::busThatGoesAgainAtOnceEndsIt()
{
    SimulatedHost host(vehicle(QStringLiteral("pedelec")));
    QVERIFY(host.connectToBus());
    Run run(host);
    loseAgainAndAgain(host, &run, 1, 500);
    run.run.start(run.order);
    QVERIFY(run.finished.wait(5 * aMinute));
    QVERIFY(run.run.isCancelled());
}

void tst_SnapshotRun::goesOnAfterManyLosses()
{
    SimulatedHost host(vehicle(QStringLiteral("pedelec")));
    QVERIFY(host.connectToBus());
    Run run(host);
    QSignalSpy losses(&run.run, &SnapshotRun::busLostChanged);
    loseAgainAndAgain(host, &run, 500, 30000);
    run.run.start(run.order);
    QVERIFY(run.waitForEnd());
    QVERIFY(losses.count() > 4);
    QVERIFY(!run.run.isCancelled());
    QVERIFY(run.run.snapshot().isComplete());
}

void tst_SnapshotRun::userDisconnects()
{
    SimulatedHost host(vehicle(QStringLiteral("pedelec")));
    QVERIFY(host.connectToBus());
    Run run(host);
    run.order.scope = SnapshotScope::Full;
    run.order.sharePercent = 50;
    run.run.start(run.order);
    wait(1000);
    host.services().bus().disconnectFromBus();
    QCOMPARE(run.finished.count(), 1);
    QVERIFY(run.run.isCancelled());
    QVERIFY(run.run.snapshot().valueCount() > 10);
}

void tst_SnapshotRun::dataSheetOfANode()
{
    Simulator::VehicleDescription description = vehicle(QStringLiteral("pedelec"));
    CanOpen::ObjectEntry entry;
    entry.type = CanOpen::DataType::Domain;
    entry.data = QByteArray(5000, 'x');
    nodeOf(description, 2).dictionary.insert({0x2100, 0}, entry);
    SimulatedHost host(description);
    QVERIFY(host.connectToBus());
    Run run(host);
    run.order.scope = SnapshotScope::Full;
    CanOpen::EdsFile sheet;
    sheet.productName = QStringLiteral("DX-Pack");
    sheet.dictionary.insert({0x2100, 0}, entry);
    run.order.dataSheets.insert(2, sheet);
    QVERIFY(run.take());
    QCOMPARE(run.node(2).dataSheet, QStringLiteral("DX-Pack"));
    QCOMPARE(run.node(2).find(0x2100, 0)->raw, entry.data);
    QVERIFY(run.node(3).find(0x2100, 0) == nullptr);
}

void tst_SnapshotRun::resumes()
{
    SimulatedHost host(vehicle(QStringLiteral("pedelec")));
    QVERIFY(host.connectToBus());
    Snapshot earlier;
    {
        Run run(host);
        run.order.scope = SnapshotScope::Full;
        run.order.sharePercent = 50;
        run.run.start(run.order);
        wait(1500);
        run.run.cancel();
        QCOMPARE(run.finished.count(), 1);
        earlier = run.run.snapshot();
    }
    QVERIFY(!earlier.isComplete());
    earlier.time = earlier.time.addSecs(-600);
    Run run(host);
    run.order.scope = SnapshotScope::Full;
    run.order.earlier = earlier;
    QVERIFY(run.take());
    const Snapshot snapshot = run.run.snapshot();
    QVERIFY(snapshot.isComplete());
    QVERIFY(snapshot.scope == SnapshotScope::Full);
    QCOMPARE(snapshot.time, earlier.time);
    QVERIFY(snapshot.duration >= 600000);
    QVERIFY(snapshot.find(7)->find(0x6005, 0)->ms < 2000 || snapshot.find(7)->find(0x6005, 0)->ms >= 600000);
    QVERIFY(snapshot.valueCount() > earlier.valueCount());
}

void tst_SnapshotRun::resumedFileIsReadAgain_data()
{
    QTest::addColumn<QDateTime>("earlierTime");
    QTest::newRow("after two years") << QDateTime::currentDateTimeUtc().addYears(-2);
    QTest::newRow("of a computer without a clock") << QDateTime::fromMSecsSinceEpoch(0, Qt::UTC);
    QTest::newRow("of the first year") << QDateTime(QDate(1, 1, 1), QTime(0, 0), Qt::UTC);
}

void tst_SnapshotRun::resumedFileIsReadAgain()
{
    QFETCH(QDateTime, earlierTime);
    SimulatedHost host(vehicle(QStringLiteral("pedelec")));
    QVERIFY(host.connectToBus());
    Run run(host);
    run.order.earlier = Snapshot();
    run.order.earlier->scope = SnapshotScope::Quick;
    run.order.earlier->time = earlierTime;
    QVERIFY(run.take());
    const QByteArray written = SnapshotFile::toJson(run.run.snapshot());
    QString error;
    const std::optional<Snapshot> again = SnapshotFile::fromJson(written, &error);
    QVERIFY2(again, qPrintable(error));
    QCOMPARE(SnapshotFile::toJson(*again), written);
}

QTEST_GUILESS_MAIN(tst_SnapshotRun)
#include "tst_snapshotrun.moc"
