// SPDX-License-Identifier: MIT
#include "nastybus.h"

#include <snapshot/snapshotreader.h>

#include <QEventLoop>
#include <QSignalSpy>
#include <QtTest>

#include <set>

using CanOpen::NmtState;
using std::chrono::milliseconds;

namespace {

constexpr int aMinute = 60000; // ms; the tests have a clock of their own

/*! Lets time pass, in which everything goes on; QTest::qWait() sleeps between its looks. */
void wait(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

class Reading : public QObject
{
public:
    explicit Reading(NastyBus &bus, SnapshotScope scope = SnapshotScope::Quick)
        : m_bus(bus)
        , reader(&bus.client, [&bus] { return milliseconds(bus.clock.elapsed()); })
        , finished(&reader, &SnapshotReader::finished)
    {
        reader.setScope(scope);
        reader.setShare(BusShare::everything, 0);
    }

    void start()
    {
        reader.start();
        for (const auto &[id, node] : m_bus.nodes)
            reader.addNode(id);
        reader.allNodesAdded();
    }

    bool readAll()
    {
        start();
        return waitForEnd();
    }

    bool waitForEnd() { return finished.count() == 1 || finished.wait(100 * aMinute); }

    /*! The bus is gone, as a connection tells it. */
    void loseBus()
    {
        m_bus.isLost = true;
        m_bus.client.cancelAll();
        reader.setBusPresent(false);
    }
    void restoreBus()
    {
        m_bus.isLost = false;
        reader.setBusPresent(true);
    }

    SnapshotNode node(quint8 id) const { return reader.node(id).value_or(SnapshotNode()); }

    NastyBus &m_bus;
    SnapshotReader reader;
    QSignalSpy finished;
};

/*! What a snapshot of \a dictionary holds, when nothing goes wrong. */
std::set<quint32> plannedKeys(const CanOpen::ObjectDictionary &dictionary, SnapshotScope scope)
{
    NastyBus bus;
    bus.addNode(1).dictionary = dictionary;
    Reading reading(bus, scope);
    reading.readAll();
    std::set<quint32> keys;
    const SnapshotNode node = reading.node(1);
    for (const SnapshotEntry &entry : node.entries)
        keys.insert(quint32(entry.key.index) << 8 | entry.key.subIndex);
    return keys;
}

/*! What is wrong with an entry; empty when it is as the device has it. */
QString problemOf(const SnapshotEntry &entry, const NastyBus::Node &node)
{
    const CanOpen::ObjectEntry *real = node.dictionary.find(entry.key);
    const QString key = entry.key.toShortString();
    if (entry.hasValue() && (real == nullptr || entry.raw != real->data))
        return key + QStringLiteral(" has a wrong value: ") + QString::fromLatin1(entry.raw.toHex());
    if (entry.gap == SnapshotGap::Absent && real != nullptr)
        return key + QStringLiteral(" is said to be absent");
    if (entry.gap == SnapshotGap::Abort && !node.habits.refusesAll)
        return key + QStringLiteral(" is said to be refused: ") + QString::number(entry.abortCode, 16);
    return QString();
}

/*! Everything that is wrong with the reading of a node. */
QStringList problemsOf(const SnapshotNode &read, const NastyBus::Node &node, const std::set<quint32> &planned)
{
    QStringList problems;
    std::set<quint32> keys;
    for (int i = 0; i < read.entries.size(); ++i) {
        const SnapshotEntry &entry = read.entries.at(i);
        if (i > 0 && !(read.entries.at(i - 1).key < entry.key))
            problems << entry.key.toShortString() + QStringLiteral(" is out of order or there twice");
        const QString problem = problemOf(entry, node);
        if (!problem.isEmpty())
            problems << problem;
        keys.insert(quint32(entry.key.index) << 8 | entry.key.subIndex);
    }
    if (read.end != SnapshotEnd::Complete)
        return problems;
    for (const quint32 key : planned) {
        if (keys.count(key) == 0 && read.gapCount() == 0) // below a gap there may be more
            problems << QString::number(key, 16) + QStringLiteral(" is missing");
    }
    return problems;
}

} // namespace

/*! Many nodes side by side, on a bus that is as bad as can be. */
class tst_SnapshotReader : public QObject
{
    Q_OBJECT

private slots:
    void readsAllNodes();
    void endsWithoutNodes();
    void slowNodesDoNotHoldUpOthers();
    void nodesTakeTurns();
    void asksOneQuestionOfANodeAtATime();
    void deadNodeCostsLittle();
    void keepsToItsShare_data();
    void keepsToItsShare();
    void shareIsKeptByLongObjects();
    void silentNodeIsTriedAgainAtTheEnd();
    void stoppedNodeIsWaitedFor();
    void nodeThatIsStartedIsAskedAtOnce();
    void lostBusIsWaitedFor();
    void uploadsEndedByOthersAreRepeated();
    void cancelKeepsWhatWasRead();
    void cancelLeavesOtherUploadsAlone();
    void otherUploadsAreNotTakenForOurs();
    void nodesMayComeLater();
    void nodesMayComeWhenAllOthersAreRead();
    void noNodeTwice();
    void saysHowFarItIs();
    void saysNothingOfTheTimeLeftTooSoon();
    void saysNothingOfTheTimeOfANodeThatWaits();
    void saysWhichNodesWereReplaced();
    void resumesWhereItEnded();
    void switchingOnBetweenIsNoRestart();
    void countsTimeFromTheSnapshotsBeginning();
    void mayBeDeletedInASlot_data();
    void mayBeDeletedInASlot();
    void nastyLines_data();
    void nastyLines();
};

void tst_SnapshotReader::readsAllNodes()
{
    NastyBus bus;
    for (const int id : {1, 2, 127})
        bus.addNode(static_cast<quint8>(id));
    Reading reading(bus, SnapshotScope::Full);
    QVERIFY(reading.readAll());
    QCOMPARE(reading.reader.nodes().size(), 3);
    for (const auto &[id, node] : bus.nodes) {
        const SnapshotNode read = reading.node(id);
        QVERIFY(read.end == SnapshotEnd::Complete);
        QCOMPARE(read.valueCount(), node.dictionary.keys().size());
        QCOMPARE(read.gapCount(), 0);
        QCOMPARE(problemsOf(read, node, {}), QStringList());
        QVERIFY(read.find(0x60A0, 1)->gap == SnapshotGap::Absent);
    }
    QCOMPARE(bus.refusedFrames, 0);
}

void tst_SnapshotReader::endsWithoutNodes()
{
    NastyBus bus;
    Reading reading(bus);
    reading.reader.start();
    QVERIFY(!reading.finished.wait(aMinute));
    reading.reader.allNodesAdded();
    QVERIFY(reading.waitForEnd());
    QVERIFY(!reading.reader.isRunning());
    QCOMPARE(reading.reader.nodes().size(), 0);
}

// Seven nodes that take 50 ms for each of some 210 exchanges.
void tst_SnapshotReader::slowNodesDoNotHoldUpOthers()
{
    NastyBus bus;
    NodeHabits slow;
    slow.delay = 50;
    for (quint8 id = 1; id <= 7; ++id)
        bus.addNode(id, slow);
    bus.addNode(8);
    Reading reading(bus);
    QSignalSpy nodes(&reading.reader, &SnapshotReader::nodeFinished);
    const qint64 begun = bus.clock.elapsed();
    reading.start();
    QVERIFY(nodes.wait(aMinute));
    QCOMPARE(nodes.first().first().toInt(), 8);
    QVERIFY(bus.clock.elapsed() - begun < 1000);
    QVERIFY(reading.waitForEnd());
    const qint64 time = bus.clock.elapsed() - begun;
    QVERIFY2(time > 210 * 50 && time < 240 * 50, qPrintable(QString::number(time)));
    const int median = reading.node(1).medianAnswer.value_or(-1);
    QVERIFY2(median >= 50 && median < 55, qPrintable(QString::number(median)));
}

// A tenth of the bus is less than they could take.
void tst_SnapshotReader::nodesTakeTurns()
{
    NastyBus bus;
    for (quint8 id = 1; id <= 5; ++id)
        bus.addNode(id);
    Reading reading(bus);
    reading.reader.setShare(10, 250000);
    reading.start();
    wait(3000);
    for (const auto &[id, node] : bus.nodes) {
        const int difference = node.requests - bus.nodes[1].requests;
        QVERIFY2(node.requests > 20 && difference >= -4 && difference <= 4, // of an object in segments
                 qPrintable(QString::number(difference)));
    }
}

void tst_SnapshotReader::asksOneQuestionOfANodeAtATime()
{
    NastyBus bus;
    NodeHabits slow;
    slow.delay = 10;
    bus.addNode(1, slow);
    bus.addNode(2, slow);
    Reading reading(bus);
    reading.start();
    wait(5);
    QCOMPARE(bus.requests, 2);
    wait(10);
    QCOMPARE(bus.requests, 4);
}

void tst_SnapshotReader::deadNodeCostsLittle()
{
    const auto timeOf = [](bool hasDeadNode) {
        NastyBus bus;
        NodeHabits habits;
        habits.delay = 10;
        for (quint8 id = 1; id <= 13; ++id)
            bus.addNode(id, habits);
        habits.isDead = hasDeadNode;
        bus.addNode(14, habits);
        Reading reading(bus);
        const qint64 begun = bus.clock.elapsed();
        if (!reading.readAll())
            return qint64(-1);
        const bool isDead = reading.node(14).end == SnapshotEnd::Silent;
        return isDead == hasDeadNode ? bus.clock.elapsed() - begun : qint64(-1);
    };
    const qint64 healthy = timeOf(false);
    const qint64 sick = timeOf(true);
    QVERIFY(healthy > 0);
    QVERIFY2(sick > 0 && sick - healthy <= 3000, qPrintable(QStringLiteral("%1 %2").arg(healthy).arg(sick)));
}

void tst_SnapshotReader::keepsToItsShare_data()
{
    QTest::addColumn<int>("bitRate");
    QTest::addColumn<int>("percent");
    QTest::addColumn<int>("bitsPerSecond");

    QTest::newRow("usual") << 250000 << 60 << 150000;
    QTest::newRow("a tenth") << 250000 << 10 << 25000;
    QTest::newRow("unknown bit rate") << 0 << 60 << 150000;
    QTest::newRow("slow bus") << 50000 << 60 << 30000;
}

void tst_SnapshotReader::keepsToItsShare()
{
    QFETCH(int, bitRate);
    QFETCH(int, percent);
    QFETCH(int, bitsPerSecond);
    NastyBus bus;
    for (quint8 id = 1; id <= 20; ++id)
        bus.addNode(id);
    Reading reading(bus);
    reading.reader.setShare(percent, bitRate);
    reading.start();
    wait(1000); // the burst is over
    for (int i = 0; i < 10; ++i) {
        const int before = bus.requests + bus.answers;
        wait(500);
        const int bits = (bus.requests + bus.answers - before) * 120;
        QVERIFY2(bits <= bitsPerSecond / 2 * 1.05 + 960, qPrintable(QString::number(bits)));
        if (reading.finished.isEmpty() && reading.reader.progress().nodesDone == 0)
            QVERIFY2(bits >= bitsPerSecond / 2 * 0.9 - 960, qPrintable(QString::number(bits)));
    }
}

void tst_SnapshotReader::shareIsKeptByLongObjects()
{
    NastyBus bus;
    NastyBus::Node &node = bus.addNode(1);
    NastyBus::set(node, 0x1008, 0, QByteArray(7000, 'x')); // over 1000 segments
    Reading reading(bus);
    reading.reader.setShare(10, 250000);
    reading.start();
    const qint64 begun = bus.clock.elapsed();
    QTRY_VERIFY_WITH_TIMEOUT(reading.node(1).find(0x1009, 0) != nullptr, aMinute);
    // 1000 frames at least, at 25 bits a millisecond
    const qint64 time = bus.clock.elapsed() - begun;
    QVERIFY2(time > 4800, qPrintable(QString::number(time)));
    QCOMPARE(reading.node(1).find(0x1008, 0)->raw.size(), 7000);
}

void tst_SnapshotReader::silentNodeIsTriedAgainAtTheEnd()
{
    NastyBus bus;
    NodeHabits slow;
    slow.delay = 20;
    bus.addNode(1, slow);
    bus.addNode(2).isStopped = true; // and nobody says so
    Reading reading(bus);
    reading.start();
    wait(3000);
    const int requests = bus.nodes[2].requests;
    QVERIFY(requests > 0);
    bus.nodes[2].isStopped = false;
    wait(500);
    QCOMPARE(bus.nodes[2].requests, requests);
    QVERIFY(reading.waitForEnd());
    QVERIFY(reading.node(2).end == SnapshotEnd::Complete);
    QCOMPARE(reading.node(2).entries.size(), 203);
    QCOMPARE(reading.node(2).gapCount(), 0);
}

void tst_SnapshotReader::nodeThatIsStartedIsAskedAtOnce()
{
    NastyBus bus;
    bus.addNode(1).isStopped = true;
    Reading reading(bus);
    reading.reader.start();
    reading.reader.addNode(1);
    reading.reader.setNmtState(1, NmtState::Stopped);
    wait(1000);
    QCOMPARE(bus.nodes[1].requests, 0);
    bus.nodes[1].isStopped = false;
    reading.reader.setNmtState(1, NmtState::Operational);
    reading.reader.noteBootUp(1);
    wait(100);
    QVERIFY(bus.nodes[1].requests > 10);
    QCOMPARE(reading.node(1).bootUps, 1);
}

void tst_SnapshotReader::stoppedNodeIsWaitedFor()
{
    NastyBus bus;
    NodeHabits slow;
    slow.delay = 20;
    bus.addNode(1, slow);
    bus.addNode(2).isStopped = true;
    bus.addNode(3).isStopped = true;
    Reading reading(bus);
    reading.start();
    reading.reader.setNmtState(2, NmtState::Stopped);
    reading.reader.setNmtState(3, NmtState::Stopped);
    wait(1000);
    QCOMPARE(bus.nodes[2].requests, 0);
    bus.nodes[2].isStopped = false;
    reading.reader.setNmtState(2, NmtState::Operational);
    wait(100);
    QVERIFY(bus.nodes[2].requests > 0); // while the first node goes on
    QVERIFY(reading.waitForEnd());
    QVERIFY(reading.node(2).end == SnapshotEnd::Complete);
    QCOMPARE(reading.node(2).gapCount(), 0);
    QVERIFY(reading.node(3).end == SnapshotEnd::Stopped);
    QCOMPARE(bus.nodes[3].requests, 0);
}

void tst_SnapshotReader::lostBusIsWaitedFor()
{
    NastyBus bus;
    NodeHabits slow;
    slow.delay = 5;
    for (quint8 id = 1; id <= 3; ++id)
        bus.addNode(id, slow);
    Reading reading(bus);
    reading.start();
    wait(200);
    reading.loseBus();
    const int before = bus.requests;
    QVERIFY(!reading.finished.wait(10 * aMinute));
    QCOMPARE(bus.requests, before);
    reading.restoreBus();
    QVERIFY(reading.waitForEnd());
    for (const auto &[id, node] : bus.nodes) {
        QVERIFY(reading.node(id).end == SnapshotEnd::Complete);
        QCOMPARE(reading.node(id).entries.size(), 203);
        QCOMPARE(reading.node(id).gapCount(), 0);
    }
}

void tst_SnapshotReader::uploadsEndedByOthersAreRepeated()
{
    NastyBus bus;
    NodeHabits slow;
    slow.delay = 5;
    bus.addNode(1, slow);
    Reading reading(bus);
    reading.start();
    for (int i = 0; i < 10; ++i) {
        wait(33);
        bus.client.cancelAll();
    }
    QVERIFY(reading.waitForEnd());
    QCOMPARE(reading.node(1).entries.size(), 203);
    QCOMPARE(reading.node(1).gapCount(), 0);
}

void tst_SnapshotReader::cancelKeepsWhatWasRead()
{
    NastyBus bus;
    NodeHabits slow;
    slow.delay = 5;
    bus.addNode(1);
    bus.addNode(2, slow);
    slow.isDead = true;
    bus.addNode(3, slow);
    bus.addNode(4);
    Reading reading(bus);
    reading.start();
    reading.reader.setNmtState(4, NmtState::Stopped);
    QTRY_VERIFY(reading.node(1).end == SnapshotEnd::Complete);
    wait(200);
    reading.reader.cancel();
    QCOMPARE(reading.finished.count(), 1);
    QVERIFY(reading.reader.isCancelled());
    QVERIFY(!bus.client.isBusy());
    QVERIFY(reading.node(1).end == SnapshotEnd::Complete);
    QVERIFY(reading.node(2).end == SnapshotEnd::Cancelled);
    QVERIFY(reading.node(2).valueCount() > 5);
    QCOMPARE(reading.node(2).gapCount(), 1); // that was asked for just then
    QVERIFY(reading.node(3).end == SnapshotEnd::Cancelled);
    QVERIFY(reading.node(4).end == SnapshotEnd::Stopped);
    QCOMPARE(reading.node(4).entries.size(), 0); // it was never asked
    QCOMPARE(reading.reader.progress().gaps, 1 + reading.node(3).gapCount());
    QCOMPARE(reading.reader.progress().total, reading.reader.progress().asked);
    const int before = bus.requests;
    wait(aMinute);
    QCOMPARE(bus.requests, before);
    reading.reader.cancel();
    QCOMPARE(reading.finished.count(), 1);
}

void tst_SnapshotReader::cancelLeavesOtherUploadsAlone()
{
    NastyBus bus;
    NodeHabits slow;
    slow.delay = 50;
    bus.addNode(1, slow);
    bus.addNode(2, slow);
    Reading reading(bus);
    reading.reader.start();
    reading.reader.addNode(1);
    wait(120);
    const CanOpen::SdoTicket ticket = bus.client.upload(2, {0x1000, 0}, CanOpen::DataType::Unsigned32);
    CanOpen::SdoOutcome result;
    connect(&bus.client, &CanOpen::SdoClient::finished, this, [&](const CanOpen::SdoOutcome &outcome) {
        if (outcome.ticket == ticket)
            result = outcome;
    });
    reading.reader.cancel();
    QTRY_VERIFY(!bus.client.isBusy());
    QCOMPARE(result.value, QVariant(0x1C6u));
}

void tst_SnapshotReader::otherUploadsAreNotTakenForOurs()
{
    NastyBus bus;
    NodeHabits slow;
    slow.delay = 5;
    bus.addNode(1, slow);
    Reading reading(bus);
    reading.start();
    for (int i = 0; i < 20; ++i) {
        wait(17);
        bus.client.upload(1, {0x1000, 0}, CanOpen::DataType::Unsigned32);
    }
    QVERIFY(reading.waitForEnd());
    QCOMPARE(reading.node(1).entries.size(), 203);
    QCOMPARE(problemsOf(reading.node(1), bus.nodes[1], {}), QStringList());
    QCOMPARE(reading.reader.progress().asked, 203);
}

void tst_SnapshotReader::nodesMayComeWhenAllOthersAreRead()
{
    NastyBus bus;
    bus.addNode(1);
    bus.addNode(2);
    Reading reading(bus);
    reading.reader.start();
    reading.reader.addNode(1);
    QVERIFY(!reading.finished.wait(aMinute));
    QVERIFY(reading.node(1).end == SnapshotEnd::Complete);
    reading.reader.addNode(2);
    reading.reader.allNodesAdded();
    QVERIFY(reading.waitForEnd());
    QVERIFY(reading.node(2).end == SnapshotEnd::Complete);
}

void tst_SnapshotReader::nodesMayComeLater()
{
    NastyBus bus;
    NodeHabits slow;
    slow.delay = 5;
    bus.addNode(1, slow);
    Reading reading(bus);
    QSignalSpy added(&reading.reader, &SnapshotReader::nodeAdded);
    reading.start();
    wait(100);
    NodeHabits flaky;
    flaky.lost = 20;
    bus.addNode(2, flaky);
    reading.reader.addNode(2);
    QCOMPARE(added.count(), 2);
    QVERIFY(reading.waitForEnd());
    QVERIFY(reading.node(2).end == SnapshotEnd::Complete);
    reading.reader.addNode(3); // too late
    QCOMPARE(reading.reader.nodes().size(), 2);
}

void tst_SnapshotReader::noNodeTwice()
{
    NastyBus bus;
    bus.addNode(1);
    Reading reading(bus);
    reading.start();
    reading.reader.addNode(1);
    reading.reader.addNode(0);
    reading.reader.addNode(128);
    QVERIFY(reading.waitForEnd());
    QCOMPARE(reading.reader.nodes().size(), 1);
    QCOMPARE(reading.reader.progress().asked, 203);
}

void tst_SnapshotReader::saysHowFarItIs()
{
    NastyBus bus;
    NodeHabits slow;
    slow.delay = 10;
    bus.addNode(1);
    bus.addNode(2, slow);
    Reading reading(bus);
    reading.start();
    QVERIFY(!reading.reader.progress().timeLeft);
    wait(1100);
    const SnapshotProgress progress = reading.reader.progress();
    QCOMPARE(progress.nodes, 2);
    QCOMPARE(progress.nodesDone, 1);
    QCOMPARE(progress.total, 406);
    QCOMPARE(progress.asked, 203 + reading.reader.progress(2).asked);
    QVERIFY(progress.asked > 203 + 80 && progress.asked < 203 + 110);
    QVERIFY(progress.timeLeft);
    const qint64 left = progress.timeLeft->count();
    QVERIFY2(left > 900 && left < 1500, qPrintable(QString::number(left)));
    QVERIFY(reading.waitForEnd());
    QCOMPARE(reading.reader.progress().asked, 406);
    QCOMPARE(reading.reader.progress().nodesDone, 2);
    QCOMPARE(reading.reader.progress().values, reading.node(1).valueCount() + reading.node(2).valueCount());
}

void tst_SnapshotReader::saysNothingOfTheTimeLeftTooSoon()
{
    NastyBus bus;
    NodeHabits slow;
    slow.delay = 10;
    bus.addNode(1, slow);
    slow.delay = 80;
    bus.addNode(2, slow);
    Reading reading(bus);
    reading.start();
    wait(700);
    QVERIFY(reading.reader.progress(1).asked > 20);
    QVERIFY(!reading.reader.progress(1).timeLeft);
    wait(600);
    QVERIFY(reading.reader.progress(1).timeLeft);
    QVERIFY(reading.reader.progress(2).asked > 5);
    QVERIFY(!reading.reader.progress(2).timeLeft);
}

void tst_SnapshotReader::saysNothingOfTheTimeOfANodeThatWaits()
{
    NastyBus bus;
    NodeHabits slow;
    slow.delay = 25;
    bus.addNode(1, slow);
    bus.addNode(2, slow);
    slow.silentFrom = 50;
    slow.delay = 15;
    bus.addNode(3, slow);
    Reading reading(bus);
    reading.start();
    wait(1200);
    QVERIFY(reading.reader.progress(2).timeLeft);
    reading.reader.setNmtState(2, NmtState::Stopped);
    QVERIFY(!reading.reader.progress(2).timeLeft);
    wait(2300);
    QVERIFY(reading.reader.progress(1).timeLeft);
    QVERIFY(reading.reader.progress(3).asked > 20);
    QVERIFY(!reading.reader.progress(3).timeLeft); // it was left
}

void tst_SnapshotReader::saysWhichNodesWereReplaced()
{
    NastyBus bus;
    bus.addNode(1);
    bus.addNode(2);
    Snapshot earlier;
    {
        Reading reading(bus);
        QVERIFY(reading.readAll());
        earlier.nodes = reading.reader.nodes();
    }
    NastyBus::set(bus.nodes[2], 0x1018, 4, QByteArray::fromHex("99000000"));
    Reading again(bus);
    again.reader.setEarlier(earlier, milliseconds(60000));
    QVERIFY(again.readAll());
    QCOMPARE(again.reader.replacedNodes(), QVector<quint8>{2});
}

void tst_SnapshotReader::resumesWhereItEnded()
{
    NastyBus bus;
    NodeHabits slow;
    slow.delay = 5;
    bus.addNode(1);
    bus.addNode(2, slow);
    Snapshot earlier;
    {
        Reading reading(bus, SnapshotScope::Full);
        reading.start();
        QTRY_VERIFY(reading.node(1).end == SnapshotEnd::Complete);
        wait(100);
        reading.reader.cancel();
        earlier.nodes = reading.reader.nodes();
    }
    const std::set<quint32> planned = plannedKeys(bus.nodes[2].dictionary, SnapshotScope::Full);
    QVERIFY(earlier.find(2)->entries.size() < int(planned.size()));
    bus.nodes[1].requests = 0;
    Reading again(bus, SnapshotScope::Full);
    again.reader.setEarlier(earlier, milliseconds(60000));
    again.reader.start();
    again.reader.allNodesAdded();
    QVERIFY(again.waitForEnd());
    QCOMPARE(bus.nodes[1].requests, 5); // whether it is the same device
    QCOMPARE(again.node(2).entries.size(), int(planned.size()));
    QVERIFY(again.node(2).end == SnapshotEnd::Complete);
}

/*! Also of a device that was not there before. */
void tst_SnapshotReader::switchingOnBetweenIsNoRestart()
{
    NastyBus bus;
    bus.addNode(1);
    bus.addNode(2);
    Snapshot earlier;
    earlier.nodes.append(SnapshotNode());
    earlier.nodes.last().id = 1;
    earlier.nodes.last().bootUps = 1;
    Reading again(bus);
    again.reader.setEarlier(earlier, milliseconds(60000));
    again.reader.start();
    again.reader.addNode(2);
    again.reader.noteBootUp(1);
    again.reader.noteBootUp(2);
    wait(100);
    again.reader.noteBootUp(2); // while it is read
    again.reader.allNodesAdded();
    QVERIFY(again.waitForEnd());
    QCOMPARE(again.node(1).bootUps, 1);
    QCOMPARE(again.node(2).bootUps, 1);
}

void tst_SnapshotReader::countsTimeFromTheSnapshotsBeginning()
{
    NastyBus bus;
    NodeHabits slow;
    slow.delay = 10;
    bus.addNode(1, slow);
    Reading reading(bus);
    reading.reader.setEarlier(Snapshot(), milliseconds(5000));
    wait(777);
    reading.start();
    QVERIFY(reading.waitForEnd());
    QCOMPARE(reading.node(1).find(0x1000, 0)->ms, qint64(5010));
}

void tst_SnapshotReader::mayBeDeletedInASlot_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("nodeChanged") << 0;
    QTest::newRow("nodeFinished") << 1;
    QTest::newRow("finished") << 2;
    QTest::newRow("nodeFinished, by a cancel") << 3;
}

void tst_SnapshotReader::mayBeDeletedInASlot()
{
    QFETCH(int, signal);
    NastyBus bus;
    bus.addNode(1);
    bus.addNode(2);
    auto *reader = new SnapshotReader(&bus.client, [&bus] { return milliseconds(bus.clock.elapsed()); });
    reader->setScope(SnapshotScope::Quick);
    const auto end = [&reader] { delete std::exchange(reader, nullptr); };
    if (signal == 0)
        connect(reader, &SnapshotReader::nodeChanged, this, end);
    else if (signal == 1 || signal == 3)
        connect(reader, &SnapshotReader::nodeFinished, this, end);
    else
        connect(reader, &SnapshotReader::finished, this, end);
    reader->start();
    reader->addNode(1);
    reader->addNode(2);
    reader->allNodesAdded();
    if (signal == 3)
        reader->cancel();
    QTRY_VERIFY(reader == nullptr);
    QTRY_VERIFY(!bus.client.isBusy());
}

void tst_SnapshotReader::nastyLines_data()
{
    QTest::addColumn<int>("scope");
    QTest::addColumn<int>("seeds");
    QTest::newRow("quick") << int(SnapshotScope::Quick) << 100;
    QTest::newRow("full") << int(SnapshotScope::Full) << 12;
}

// Nodes of every kind, with losses of the bus, Stopped nodes, ended uploads and a cancel at chance moments.
void tst_SnapshotReader::nastyLines()
{
    QFETCH(int, scope);
    QFETCH(int, seeds);
    int complete = 0;
    int incomplete = 0;
    for (quint32 seed = 1; seed <= quint32(seeds); ++seed) {
        NastyBus bus(seed);
        for (quint8 id = 1; id <= 8; ++id) {
            NodeHabits habits;
            habits.isDead = bus.chance(10) == 0;
            habits.refusesAll = bus.chance(10) == 0;
            habits.isSegmented = bus.chance(4) == 0;
            habits.delay = bus.chance(4) == 0 ? bus.chance(40) : 0;
            habits.spread = bus.chance(3) == 0 ? bus.chance(60) : 0;
            habits.lost = bus.chance(3) == 0 ? bus.chance(10) : 0;
            habits.doubled = bus.chance(3) == 0 ? bus.chance(20) : 0;
            habits.silentFrom = bus.chance(8) == 0 ? bus.chance(300) : 0;
            bus.addNode(id, habits);
        }
        Reading reading(bus, SnapshotScope(scope));
        reading.reader.setShare(bus.chance(100) + 1, 250000);
        reading.start();
        const int events = bus.chance(6);
        for (int i = 0; i < events && reading.finished.isEmpty(); ++i) {
            wait(1 + bus.chance(3000));
            const auto id = static_cast<quint8>(1 + bus.chance(8));
            switch (bus.chance(5)) {
            case 0:
                reading.loseBus();
                wait(1 + bus.chance(3000));
                reading.restoreBus();
                break;
            case 1:
                bus.nodes[id].isStopped = true;
                reading.reader.setNmtState(id, NmtState::Stopped);
                break;
            case 2:
                bus.nodes[id].isStopped = false;
                reading.reader.setNmtState(id, NmtState::Operational);
                break;
            case 3:
                bus.client.cancelAll();
                break;
            default:
                if (bus.chance(4) == 0)
                    reading.reader.cancel();
                break;
            }
        }
        QVERIFY(reading.waitForEnd());
        QCOMPARE(bus.refusedFrames, 0);
        for (const auto &[id, node] : bus.nodes) {
            const SnapshotNode read = reading.node(id);
            const std::set<quint32> planned = plannedKeys(node.dictionary, SnapshotScope(scope));
            const QStringList problems = problemsOf(read, node, planned);
            QVERIFY2(problems.isEmpty(), qPrintable(QStringLiteral("seed %1, node %2: ").arg(seed).arg(id)
                                                    + problems.join(QStringLiteral("; "))));
            ++(read.end == SnapshotEnd::Complete ? complete : incomplete);
        }
    }
    qInfo("%d nodes complete, %d not", complete, incomplete);
    QVERIFY(complete > 2 * seeds && incomplete > seeds / 2); // of eight for each seed
}

QTEST_GUILESS_MAIN(tst_SnapshotReader)
#include "tst_snapshotreader.moc"
