// SPDX-License-Identifier: MIT
#include "simulatedhost.h"

#include <canopen/uploadgate.h>
#include <host/core/livebus.h>
#include <host/core/pdolearning.h>
#include <host/core/valueasking.h>
#include <simulator/fault.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QtTest>

#include <algorithm>

using CanOpen::ObjectKey;

namespace {

constexpr int aMinute = 60000; // ms; the tests have a clock of their own
constexpr int bitRate = 250000;

/*! Lets time pass, in which everything goes on. */
void wait(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

Simulator::NodeDescription &nodeOf(Simulator::VehicleDescription &description, quint8 nodeId)
{
    return *std::find_if(description.nodes.begin(), description.nodes.end(),
                         [nodeId](const Simulator::NodeDescription &node) { return node.id == nodeId; });
}

/*! The shipped vehicle "ride" that stands still, with a fault of one node. */
Simulator::VehicleDescription ride(quint8 nodeId = 0, const char *fault = "")
{
    Simulator::VehicleDescription description = SimulatedHost::stillVehicle(QStringLiteral("ride"));
    if (nodeId == 0)
        return description;
    QString error;
    const auto parsed = Simulator::parseFault(QJsonDocument::fromJson(fault).object(), &error);
    if (!parsed)
        qFatal("%s", qUtf8Printable(error));
    nodeOf(description, nodeId).faults.append(*parsed);
    return description;
}

const QVector<quint8> everyNode{1, 2, 4, 5, 7};

/*! A host that listens to the ride, learns, and keeps what it was told and what it sent. */
class Listener
{
public:
    explicit Listener(const Simulator::VehicleDescription &description)
        : host(description, bitRate)
        , live(&host.services().bus())
        , learning(&host.services().bus())
        , finished(&learning, &PdoLearning::finished)
    {
        if (!host.connectToBus())
            qFatal("The simulated bus cannot be opened");
        live.start();
        QObject::connect(&host.services().bus(), &BusConnection::frameSent, &live,
                         [this](const QCanBusFrame &frame) {
                             sent.append(frame.frameId());
                             areAllUploads = areAllUploads && CanOpen::isUploadRequest(frame);
                         });
        QObject::connect(&learning, &PdoLearning::learned, &live,
                         [this](quint8 nodeId, const PdoSource &source) {
                             learned.append(nodeId);
                             live.learn(source);
                         });
        QObject::connect(&learning, &PdoLearning::notLearned, &live,
                         [this](quint8 nodeId, const QString &reason) {
                             reasons.append(QString::number(nodeId) + QStringLiteral(": ") + reason);
                         });
    }

    bool learn(const QVector<quint8> &nodeIds = everyNode)
    {
        learning.start(nodeIds);
        return finished.count() == 1 || finished.wait(10 * aMinute);
    }

    QVector<quint8> learnedInOrder() const
    {
        QVector<quint8> ids = learned;
        std::sort(ids.begin(), ids.end());
        return ids;
    }

    /*! How often the value was heard. */
    int heard(quint8 nodeId, ObjectKey object) const
    {
        const int position = live.values().find(nodeId, object);
        return position < 0 ? -1 : int(live.values().values()[size_t(position)].record.count());
    }

    double last(quint8 nodeId, ObjectKey object) const
    {
        return live.values().values()[size_t(live.values().find(nodeId, object))].record.last();
    }

    SimulatedHost host;
    LiveBus live;
    PdoLearning learning;
    QSignalSpy finished;
    QVector<quint8> learned;
    QStringList reasons;
    QVector<quint32> sent; // identifiers
    bool areAllUploads = true;
};

/*! Answers to ValueAsking. */
class Asker
{
public:
    explicit Asker(const Simulator::VehicleDescription &description)
        : host(description, bitRate)
        , asking(&host.services().bus())
    {
        if (!host.connectToBus())
            qFatal("The simulated bus cannot be opened");
        QObject::connect(&host.services().bus(), &BusConnection::frameSent, &asking, [this] { ++sent; });
        QObject::connect(&asking, &ValueAsking::answered, &asking,
                         [this](quint8, ObjectKey, double number) { numbers.append(number); });
        QObject::connect(&asking, &ValueAsking::notAnswered, &asking,
                         [this](quint8, ObjectKey, const QString &reason) { reasons.append(reason); });
    }

    SimulatedHost host;
    ValueAsking asking;
    QVector<double> numbers;
    QStringList reasons;
    int sent = 0; // frames
};

} // namespace

/*! PdoLearning and ValueAsking with simulated vehicles. */
class tst_Asking : public QObject
{
    Q_OBJECT

private slots:
    void learnsWhatPdosCarry();
    void learnsHeartbeatTimes();
    void sendsUploadsOnly();
    void silentNode();
    void stoppedNode();
    void nodeWithoutPdos();
    void nodeThatRefusesAll();
    void refusedMapping();
    void lyingMappings_data();
    void lyingMappings();
    void lostBusIsWaitedFor();
    void closedBusEndsIt();
    void cancelled();
    void pausedLearning();
    void nobodyToAsk();
    void secondStartAddsNodes();
    void keepsToItsShare();

    void asksAtThePeriod();
    void numbersHaveTheirSign();
    void typeOfADataSheet();
    void silentNodeIsAskedLess();
    void refusedObject();
    void textIsNoNumber();
    void bytesAreNoNumber_data();
    void bytesAreNoNumber();
    void slowAnswersAreNotQueued();
    void pausedAsking();
    void askingGoesOnAfterALoss();
    void otherObjects();
    void shortestPeriod();
    void shorterOfTwoPeriods();
};

void tst_Asking::learnsWhatPdosCarry()
{
    Listener listener(ride());
    QVERIFY(listener.learn());
    QCOMPARE(listener.learnedInOrder(), everyNode);
    QCOMPARE(listener.reasons, QStringList());
    QCOMPARE(listener.live.values().problems(), QStringList());
    QCOMPARE(int(listener.live.values().values().size()), 4 + 14 + 2 + 7 + 3);
    wait(3000);
    for (const LiveValue &value : listener.live.values().values())
        QVERIFY2(value.record.count() > 0,
                 qPrintable(QString::number(value.nodeId) + QLatin1Char(' ') + value.object.toShortString()));
    QCOMPARE(listener.last(2, {0x6040, 1}), 39.3); // V
    QCOMPARE(listener.last(2, {0x6165, 7}), 3.926);
    QCOMPARE(listener.last(2, {0x603E, 1}), 6.2); // A
}

void tst_Asking::learnsHeartbeatTimes()
{
    Simulator::VehicleDescription description = ride();
    nodeOf(description, 4).heartbeatMs.reset(); // as 1017h says
    Listener listener(description);
    QVERIFY(listener.learn({4}));
    wait(2000);
    const QVector<NodeNumbers> nodes = listener.live.healthNumbers().nodes;
    QCOMPARE(int(nodes.at(2).id), 4);
    QCOMPARE(*nodes.at(2).heartbeat.configured, 250.0);
    QVERIFY(!nodes.at(1).heartbeat.configured);
}

void tst_Asking::sendsUploadsOnly()
{
    Listener listener(ride());
    QVERIFY(listener.learn());
    QVERIFY(listener.areAllUploads);
    // 1017h; of each of ten PDOs three entries, of its mapping the count and the objects; 8 that are not there in each of
    // eight blocks
    const int objects = 4 + 14 + 2 + 7 + 3;
    QCOMPARE(listener.sent.size(), 5 + 10 * 4 + objects + 5 * 64);
}

void tst_Asking::silentNode()
{
    Listener listener(ride(4, R"({"kind": "sdoSilent"})"));
    QVERIFY(listener.learn());
    QCOMPARE(listener.learnedInOrder(), (QVector<quint8>{1, 2, 5, 7}));
    QCOMPARE(listener.reasons, QStringList{QStringLiteral("4: The device did not answer.")});
}

void tst_Asking::stoppedNode()
{
    Listener listener(ride(4, R"({"kind": "stopped"})"));
    wait(1000);
    QVERIFY(listener.learn({4}));
    QCOMPARE(listener.learned, QVector<quint8>());
    QCOMPARE(listener.reasons, QStringList{QStringLiteral("4: The device is stopped and answers nothing.")});
}

void tst_Asking::nodeWithoutPdos()
{
    Listener listener(ride(4, R"({"kind": "sdoAbort", "code": "0x06020000"})"));
    QVERIFY(listener.learn({4}));
    QCOMPARE(listener.learned, QVector<quint8>{4});
    QCOMPARE(listener.reasons, QStringList());
    QCOMPARE(int(listener.live.values().values().size()), 0);
    QCOMPARE(listener.sent.size(), 65);
}

void tst_Asking::nodeThatRefusesAll()
{
    Listener listener(ride(4, R"({"kind": "sdoAbort", "code": "0x08000000"})"));
    QVERIFY(listener.learn({4}));
    QCOMPARE(listener.reasons,
             QStringList{QStringLiteral("4: The device refused it: General error (0800 0000h).")});
}

void tst_Asking::refusedMapping()
{
    Listener listener(ride(2, R"({"kind": "sdoAbort", "code": "0x08000022", "object": "1A01sub2"})"));
    QVERIFY(listener.learn({2}));
    QCOMPARE(listener.learned, QVector<quint8>{2});
    QCOMPARE(listener.reasons.size(), 1);
    QVERIFY2(listener.reasons.first().startsWith(QStringLiteral("2: The device refused it: ")),
             qPrintable(listener.reasons.first()));
    QCOMPARE(listener.live.values().problems(),
             QStringList{QStringLiteral("Node 2, PDO 2: its mapping is not known.")});
    QCOMPARE(int(listener.live.values().values().size()), 10); // the other three
}

void tst_Asking::lyingMappings_data()
{
    QTest::addColumn<QByteArray>("fault");
    QTest::addColumn<QString>("problem");
    QTest::newRow("longer than a frame")
        << QByteArray(R"({"kind": "lyingMapping", "entries": 8, "bits": 32})")
        << QStringLiteral("its mapping is longer than a frame.");
    QTest::newRow("64 objects") << QByteArray(R"({"kind": "lyingMapping", "entries": 64, "bits": 8})")
                                << QStringLiteral("its mapping is longer than a frame.");
    QTest::newRow("65 objects") << QByteArray(R"({"kind": "lyingMapping", "entries": 65, "bits": 1})")
                                << QStringLiteral("its mapping tells more than 64 objects.");
    QTest::newRow("nothing") << QByteArray(R"({"kind": "lyingMapping", "entries": 4, "bits": 0})")
                             << QStringLiteral("its mapping has an object without a length.");
    QTest::newRow("in each frame") << QByteArray(R"({"kind": "lyingMapping", "entries": 254, "bits": 8})")
                                   << QStringLiteral(
                                          "it tells its object in each frame (MPDO), which is not decoded.");
}

void tst_Asking::lyingMappings()
{
    QFETCH(QByteArray, fault);
    QFETCH(QString, problem);
    Listener listener(ride(4, fault.constData()));
    QVERIFY(listener.learn({4}));
    QCOMPARE(listener.learned, QVector<quint8>{4});
    QCOMPARE(listener.live.values().problems(), QStringList{QStringLiteral("Node 4, PDO 1: ") + problem});
    QVERIFY2(listener.sent.size() < 95, qPrintable(QString::number(listener.sent.size())));
}

void tst_Asking::lostBusIsWaitedFor()
{
    Listener listener(ride());
    listener.learning.start(everyNode);
    wait(100);
    QVERIFY(!listener.sent.isEmpty() && listener.learned.isEmpty());
    listener.host.bus().lose(Simulator::BusLoss::Disconnected);
    wait(5000);
    const int sentBefore = listener.sent.size();
    wait(5000);
    QCOMPARE(listener.sent.size(), sentBefore);
    QVERIFY(listener.learning.isRunning());
    listener.host.bus().restore();
    QVERIFY(listener.finished.count() == 1 || listener.finished.wait(aMinute));
    QCOMPARE(listener.learnedInOrder(), everyNode);
    QCOMPARE(listener.reasons, QStringList());
}

void tst_Asking::closedBusEndsIt()
{
    Listener listener(ride());
    listener.learning.start({1, 2});
    wait(50);
    listener.host.services().bus().disconnectFromBus();
    QCOMPARE(listener.finished.count(), 1);
    QCOMPARE(listener.learned, QVector<quint8>());
    QCOMPARE(listener.reasons,
             (QStringList{QStringLiteral("1: The reading was ended before all was asked."),
                          QStringLiteral("2: The reading was ended before all was asked.")}));
}

void tst_Asking::cancelled()
{
    Listener listener(ride());
    listener.learning.start(everyNode);
    wait(50);
    listener.learning.cancel();
    QCOMPARE(listener.finished.count(), 1);
    QVERIFY(!listener.learning.isRunning());
    wait(10); // for the abort
    const int sentBefore = listener.sent.size();
    wait(5000);
    QCOMPARE(listener.sent.size(), sentBefore);
    QCOMPARE(listener.finished.count(), 1);
    QCOMPARE(listener.learned, QVector<quint8>());
    QCOMPARE(listener.reasons, QStringList());
}

void tst_Asking::pausedLearning()
{
    Listener listener(ride(4, R"({"kind": "sdoDelay", "ms": 60})"));
    listener.learning.start(everyNode);
    wait(50);
    listener.learning.setPaused(true);
    QVERIFY(!listener.host.services().bus().sdoClient().isBusy());
    wait(10); // for the aborts
    const int sentBefore = listener.sent.size();
    wait(5000);
    QCOMPARE(listener.sent.size(), sentBefore);
    listener.learning.setPaused(false);
    QVERIFY(listener.finished.wait(aMinute));
    QCOMPARE(listener.learnedInOrder(), everyNode);
}

void tst_Asking::nobodyToAsk()
{
    Listener listener(ride());
    QVERIFY(listener.learn({0, 128}));
    QCOMPARE(listener.sent.size(), 0);
    QCOMPARE(listener.reasons, QStringList());
}

void tst_Asking::secondStartAddsNodes()
{
    Listener listener(ride());
    listener.learning.start({1});
    listener.learning.start({1, 2});
    QVERIFY(listener.finished.wait(aMinute));
    wait(1000);
    QCOMPARE(listener.finished.count(), 1);
    QCOMPARE(listener.learnedInOrder(), (QVector<quint8>{1, 2}));
}

void tst_Asking::keepsToItsShare()
{
    Listener listener(ride());
    listener.learning.setSharePercent(5);
    listener.learning.start(everyNode);
    wait(1000);
    // 12500 bits, with four exchanges to begin with; a frame has at least 111
    QVERIFY2(listener.sent.size() <= 12500 / 222 + 8, qPrintable(QString::number(listener.sent.size())));
    QVERIFY(listener.sent.size() > 30);
}

void tst_Asking::asksAtThePeriod()
{
    Asker asker(ride());
    asker.asking.setObjects({{2, {0x6164, 2}, 500, {}}});
    wait(10200);
    QCOMPARE(asker.numbers, QVector<double>(21, 8400.0)); // the raw number; at 0 s, 0.5 s ... 10 s
    QCOMPARE(asker.reasons, QStringList());
}

void tst_Asking::numbersHaveTheirSign()
{
    Simulator::VehicleDescription description = ride();
    QVERIFY(nodeOf(description, 2).dictionary.setData({0x6042, 1}, QByteArray::fromHex("9CFF")));
    Asker asker(description);
    asker.asking.setObjects({{2, {0x6042, 1}, 500, {}}});
    wait(100);
    QCOMPARE(asker.numbers, QVector<double>{-100});
}

void tst_Asking::typeOfADataSheet()
{
    Simulator::VehicleDescription description = ride();
    QVERIFY(nodeOf(description, 2).dictionary.setData({0x6042, 1}, QByteArray::fromHex("9CFF")));
    Asker asker(description);
    asker.asking.setObjects({{2, {0x6042, 1}, 500, CanOpen::DataType::Unsigned16}});
    wait(100);
    QCOMPARE(asker.numbers, QVector<double>{0xFF9C});
}

void tst_Asking::silentNodeIsAskedLess()
{
    Asker asker(ride(4, R"({"kind": "sdoSilent"})"));
    asker.asking.setObjects({{4, {0x6042, 1}, 100, {}}, {2, {0x6042, 1}, 100, {}}});
    wait(10000);
    QVERIFY2(asker.reasons.size() >= 3 && asker.reasons.size() <= 5,
             qPrintable(QString::number(asker.reasons.size())));
    QCOMPARE(asker.reasons.first(), QStringLiteral("The device did not answer."));
    QVERIFY(asker.numbers.size() >= 99); // the other node has its pace
}

void tst_Asking::refusedObject()
{
    Asker asker(ride());
    asker.asking.setObjects({{2, {0x6FFF, 1}, 500, {}}});
    wait(100);
    QCOMPARE(asker.reasons, QStringList{QStringLiteral("The device does not have it.")});
    QCOMPARE(asker.numbers, QVector<double>());
}

void tst_Asking::textIsNoNumber()
{
    Asker asker(ride());
    asker.asking.setObjects({{2, {0x1008, 0}, 500, {}}});
    wait(100);
    QCOMPARE(asker.reasons, QStringList{QStringLiteral("Its value is no number.")});
    QCOMPARE(asker.numbers, QVector<double>());
}

void tst_Asking::bytesAreNoNumber_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("type");
    QTest::newRow("digits") << QByteArray("1234") << int(CanOpen::DataType::OctetString);
    QTest::newRow("NaN") << QByteArray::fromHex("0000C07F") << int(CanOpen::DataType::Real32);
    QTest::newRow("infinite") << QByteArray::fromHex("0000807F") << int(CanOpen::DataType::Real32);
}

void tst_Asking::bytesAreNoNumber()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, type);
    Simulator::VehicleDescription description = ride();
    QVERIFY(nodeOf(description, 2).dictionary.setData({0x6040, 1}, bytes));
    Asker asker(description);
    asker.asking.setObjects({{2, {0x6040, 1}, 500, static_cast<CanOpen::DataType>(type)}});
    wait(100);
    QCOMPARE(asker.reasons, QStringList{QStringLiteral("Its value is no number.")});
    QCOMPARE(asker.numbers, QVector<double>());
}

void tst_Asking::slowAnswersAreNotQueued()
{
    Asker asker(ride(2, R"({"kind": "sdoDelay", "ms": 80})"));
    const AskedObject voltage{2, {0x6040, 1}, 100, {}};
    const AskedObject current{2, {0x603E, 1}, 100, {}};
    const AskedObject charge{2, {0x6164, 2}, 100, {}};
    asker.asking.setObjects({voltage, current, charge});
    wait(10000);
    // 80 ms each, one after the other
    QVERIFY2(asker.numbers.size() > 90 && asker.numbers.size() <= 125,
             qPrintable(QString::number(asker.numbers.size())));
    asker.asking.setObjects({});
    const int before = asker.numbers.size();
    wait(5000);
    QCOMPARE(asker.numbers.size(), before);
}

void tst_Asking::pausedAsking()
{
    Asker asker(ride());
    asker.asking.setObjects({{2, {0x6040, 1}, 100, {}}});
    wait(1000);
    asker.asking.setPaused(true);
    const int before = asker.sent;
    wait(5000);
    QCOMPARE(asker.sent, before);
    asker.asking.setPaused(false);
    wait(50);
    QCOMPARE(asker.sent, before + 1); // what was missed is not caught up
}

void tst_Asking::askingGoesOnAfterALoss()
{
    Asker asker(ride());
    asker.asking.setObjects({{2, {0x6040, 1}, 100, {}}});
    wait(1000);
    asker.host.bus().lose(Simulator::BusLoss::Disconnected);
    wait(5000);
    const int before = asker.numbers.size();
    QVERIFY(before > 8 && before < 15);
    asker.host.bus().restore();
    wait(5000);
    QVERIFY(asker.numbers.size() > before + 20);
    QCOMPARE(asker.reasons, QStringList());
}

void tst_Asking::otherObjects()
{
    Asker asker(ride());
    asker.asking.setObjects({{2, {0x6040, 1}, 100, {}}});
    wait(1000);
    asker.numbers.clear();
    const AskedObject charge{2, {0x6164, 2}, 1000, {}};
    asker.asking.setObjects({charge, charge, {0, {0x6164, 2}, 100, {}}});
    wait(2500);
    QCOMPARE(asker.numbers, QVector<double>(3, 8400.0)); // once, and no voltage
}

void tst_Asking::shortestPeriod()
{
    Asker asker(ride());
    asker.asking.setObjects({{2, {0x6164, 2}, 0, {}}});
    wait(1050);
    QCOMPARE(asker.numbers.size(), 11);
}

void tst_Asking::shorterOfTwoPeriods()
{
    for (const auto &[first, second] : {std::pair(500, 5000), std::pair(5000, 500)}) {
        Asker asker(ride());
        asker.asking.setObjects({{2, {0x6164, 2}, first, {}}, {2, {0x6164, 2}, second, {}}});
        wait(10200);
        QCOMPARE(asker.numbers.size(), 21);
    }
}

QTEST_GUILESS_MAIN(tst_Asking)
#include "tst_asking.moc"
