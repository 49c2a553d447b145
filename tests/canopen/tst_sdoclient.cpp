// SPDX-License-Identifier: MIT
#include "bytes.h"
#include "modelserver.h"

#include <canopen/cobid.h>
#include <canopen/sdoclient.h>

#include <QCanBusFrame>
#include <QSignalSpy>
#include <QThread>
#include <QTimer>
#include <QtTest>

#include <map>
#include <random>

using namespace CanOpen;
using namespace std::chrono_literals;

using Kind = SdoOutcome::Kind;

namespace {

constexpr ObjectKey deviceType{0x1000, 0};
constexpr ObjectKey deviceName{0x1008, 0};
constexpr ObjectKey missing{0x6FFF, 0};

QByteArray number(quint32 value)
{
    return *encodeValue(DataType::Unsigned32, value);
}

// What every node answers: numbers that name the node and the object, and one long text.
QByteArray objectOf(quint8 nodeId, ObjectKey key)
{
    if (key == deviceName)
        return QByteArray("A device with a long name, number ") + QByteArray::number(nodeId);
    if (key == missing)
        return QByteArray();
    return number(quint32(nodeId) << 24 | quint32(key.index) << 8 | key.subIndex);
}

// A client and its servers, joined by the event loop.
class Bus : public QObject
{
public:
    Bus()
        : client([this](const QCanBusFrame &frame) {
            take(frame);
            return Sending::Written;
        })
    {
        connect(&client, &SdoClient::finished, this,
                [this](const SdoOutcome &outcome) { outcomes.append(outcome); });
    }

    void addNode(quint8 nodeId)
    {
        nodes.emplace(nodeId, ModelServer([nodeId](ObjectKey key) { return objectOf(nodeId, key); }));
    }

    void take(const QCanBusFrame &frame)
    {
        requests.append(frame);
        const auto nodeId = static_cast<quint8>(frame.frameId() - 0x600);
        const auto node = nodes.find(nodeId);
        if (node == nodes.end() || requestsToIgnore-- > 0)
            return;
        const QByteArray answer = node->second.answer(frame.payload());
        if (answer.isNull())
            return;
        const QCanBusFrame response(0x580u + nodeId, answer);
        if (answersAtOnce)
            client.handleFrame(response);
        else
            QTimer::singleShot(delay, this, [this, response] { client.handleFrame(response); });
    }

    int count(Kind kind) const
    {
        return static_cast<int>(
            std::count_if(outcomes.begin(), outcomes.end(),
                          [kind](const SdoOutcome &outcome) { return outcome.kind == kind; }));
    }

    std::chrono::milliseconds delay{0};
    bool answersAtOnce = false;
    int requestsToIgnore = 0;
    QVector<QCanBusFrame> requests; // what the client sent
    QVector<SdoOutcome> outcomes;
    std::map<quint8, ModelServer> nodes;
    SdoClient client;
};

// A client whose time the test moves; the answers are given by hand.
class TimedBus : public QObject
{
public:
    TimedBus()
        : client(
            [this](const QCanBusFrame &frame) {
                sent.append(frame);
                return sending;
            },
            [this] { return now; })
    {
        connect(&client, &SdoClient::finished, this,
                [this](const SdoOutcome &outcome) { outcomes.append(outcome); });
    }

    void pass(std::chrono::milliseconds time)
    {
        const std::chrono::milliseconds end = now + time;
        for (auto next = client.nextDeadline(); next && *next <= end; next = client.nextDeadline()) {
            now = std::max(now, *next);
            client.checkDeadlines();
        }
        now = end;
    }

    Sending sending = Sending::Written;
    std::chrono::milliseconds now{1000};
    QVector<QCanBusFrame> sent;
    QVector<SdoOutcome> outcomes;
    SdoClient client;
};

// The same on a bus of 120 kbit/s, of which others take some percent: one frame of 120 bits a millisecond fills it.
class LoadedBus : public TimedBus
{
public:
    LoadedBus()
    {
        load.setBitRate(120000);
        client.setBusLoad(&load);
    }

    void passWithLoad(std::chrono::milliseconds time, int percent)
    {
        for (int i = 0; i < time.count(); ++i) {
            m_owed += percent;
            for (; m_owed >= 100; m_owed -= 100)
                load.note(QCanBusFrame(0x181, QByteArray(8, '\0')));
            pass(1ms);
        }
    }

    BusLoad load;

private:
    int m_owed = 0; // hundredths of a frame
};

SdoPatience patience(std::chrono::milliseconds timeout, int repeats)
{
    SdoPatience result;
    result.timeout = timeout;
    result.repeats = repeats;
    return result;
}

QCanBusFrame answer(quint8 nodeId, const char *digits)
{
    return QCanBusFrame(0x580u + nodeId, bytes(digits));
}

} // namespace

class tst_SdoClient : public QObject
{
    Q_OBJECT

private slots:
    void readsOneObject();
    void readsManyObjectsInOrder();
    void countsFrames();
    void nodesGoSideBySide();
    void longTextIsRead();
    void abortIsReported();
    void nothingIsFinishedWithinUpload();
    void synchronousSenderIsNoRecursion();
    void invalidNodeEndsAsError_data();
    void invalidNodeEndsAsError();
    void nextRequestGoesOutWithTheAnswer();
    void uploadFromSlotGoesOutAtOnce();

    void silentNodeEndsAsTimeout();
    void silentNodeDoesNotHoldUpOthers();
    void timeoutArgumentIsALeast();
    void longestBoundsTheUpload();
    void lateAnswerIsTaken();
    void slowNodeIsGivenTime();
    void backToBackAtTheTimeOut();
    void heldUpEventLoopIsNoTimeOut();
    void stubbornServerIsFreedByTheAbort();
    void timeOutsEndEvenWithAnsweringNeighbours();

    void cancelAll();
    void cancelEndsOneUpload();
    void cancelFreesTheServer();
    void cancelOfWhatHasEnded();

    void waitBeginsWithTheWrite();
    void framesOfEndedUploadsAreWrittenFirst();
    void droppedRequestIsRepeated();
    void whatWasNeverWrittenIsUnasked();
    void forgottenFramesDoNotHoldUp();

    void crowdedBusProlongsTheWait();
    void waitOnACrowdedBusEndsInTime();
    void lateAnswerOnACrowdedBusIsTaken();
    void silenceOnAFullBusIsNotTheNodes_data();
    void silenceOnAFullBusIsNotTheNodes();
    void onlyTheLastUploadCountsAsCrowdedOut();
    void waitForAQuietLineIsNotProlonged();

    void foreignClientIsNamed();
    void foreignClientDoesNotHoldUpANodeForEver();
    void abandoningForeignClientIsNotWaitedFor();

    void uploadWithinCancelAll();
    void clientMayBeDeletedInASlot_data();
    void clientMayBeDeletedInASlot();
    void deletedClientSaysNothing();

    void otherFramesAreIgnored_data();
    void otherFramesAreIgnored();
    void ownEchoIsNoForeignClient();
    void foreignClientRestartsSegments();
    void trafficChangesNothing();
    void floodOnTheAnswers();
    void strangeAnswersFlood();
};

void tst_SdoClient::readsOneObject()
{
    Bus bus;
    bus.addNode(5);
    QVERIFY(!bus.client.isBusy());
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    QVERIFY(bus.client.isBusy());
    QTRY_COMPARE(bus.outcomes.size(), 1);
    QVERIFY(!bus.client.isBusy());

    const SdoOutcome outcome = bus.outcomes.first();
    QCOMPARE(outcome.kind, Kind::Value);
    QCOMPARE(outcome.nodeId, quint8(5));
    QVERIFY(outcome.key == deviceType);
    QCOMPARE(outcome.value, QVariant(0x05100000u));
    QCOMPARE(outcome.repeats, 0);
    QCOMPARE(bus.requests.size(), 1);
    QCOMPARE(bus.requests.first().frameId(), 0x605u);
    QCOMPARE(bus.requests.first().payload(), bytes("40 00 10 00 00 00 00 00"));
}

void tst_SdoClient::readsManyObjectsInOrder()
{
    Bus bus;
    bus.addNode(5);
    for (quint8 sub = 0; sub < 200; ++sub)
        bus.client.upload(5, {0x6000, sub}, DataType::Unsigned32);
    QCOMPARE(bus.requests.size(), 1); // one at a time
    QTRY_COMPARE(bus.outcomes.size(), 200);
    for (int sub = 0; sub < 200; ++sub) {
        QCOMPARE(bus.outcomes.at(sub).key.subIndex, quint8(sub));
        QCOMPARE(bus.outcomes.at(sub).value, QVariant(0x05600000u + quint32(sub)));
    }
    QCOMPARE(bus.requests.size(), 200);
}

void tst_SdoClient::countsFrames()
{
    Bus bus;
    bus.addNode(5);
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    bus.client.upload(5, deviceName, DataType::VisibleString);
    bus.client.upload(5, missing, DataType::Unsigned32);
    bus.client.upload(6, deviceType, DataType::Unsigned32); // nobody
    QTRY_VERIFY(!bus.client.isBusy());
    std::map<QPair<int, int>, int> frames;
    for (const SdoOutcome &outcome : qAsConst(bus.outcomes))
        frames[{outcome.nodeId, outcome.key.index}] = outcome.frames;
    QCOMPARE((frames[{5, 0x1000}]), 2);
    QCOMPARE((frames[{5, 0x1008}]), 24); // twice 34 bytes in five segments
    QCOMPARE((frames[{5, 0x6FFF}]), 2);
    QCOMPARE((frames[{6, 0x1000}]), 6); // three requests, with an abort after each
}

void tst_SdoClient::nodesGoSideBySide()
{
    Bus bus;
    for (int nodeId = 1; nodeId <= 127; ++nodeId) {
        bus.addNode(static_cast<quint8>(nodeId));
        bus.client.upload(static_cast<quint8>(nodeId), deviceType, DataType::Unsigned32);
    }
    QCOMPARE(bus.requests.size(), 127);
    QTRY_COMPARE(bus.count(Kind::Value), 127);
    for (const SdoOutcome &outcome : qAsConst(bus.outcomes))
        QCOMPARE(outcome.value, QVariant(quint32(outcome.nodeId) << 24 | 0x100000u));
}

void tst_SdoClient::longTextIsRead()
{
    Bus bus;
    bus.addNode(127);
    bus.client.upload(127, deviceName, DataType::VisibleString);
    QTRY_COMPARE(bus.outcomes.size(), 1);
    QCOMPARE(bus.outcomes.first().value, QVariant(QStringLiteral("A device with a long name, number 127")));
}

void tst_SdoClient::abortIsReported()
{
    Bus bus;
    bus.addNode(5);
    bus.client.upload(5, missing, DataType::Unsigned8);
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    QTRY_COMPARE(bus.outcomes.size(), 2);
    QCOMPARE(bus.outcomes.first().kind, Kind::Abort);
    QCOMPARE(bus.outcomes.first().code, 0x06020000u);
    QVERIFY(!bus.outcomes.first().value.isValid());
    QCOMPARE(bus.outcomes.last().kind, Kind::Value);
}

void tst_SdoClient::nothingIsFinishedWithinUpload()
{
    Bus bus;
    bus.addNode(5);
    bus.answersAtOnce = true;
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    bus.client.upload(0, deviceType, DataType::Unsigned32);
    QCOMPARE(bus.outcomes.size(), 0);
    QTRY_COMPARE(bus.outcomes.size(), 2);
    QCOMPARE(bus.count(Kind::Value), 1);
    QCOMPARE(bus.count(Kind::Error), 1);
}

void tst_SdoClient::synchronousSenderIsNoRecursion()
{
    Bus bus;
    bus.addNode(5);
    bus.answersAtOnce = true;
    int depth = 0;
    int deepest = 0;
    int left = 20000;
    connect(&bus.client, &SdoClient::finished, &bus, [&] {
        deepest = std::max(deepest, ++depth);
        if (--left > 0)
            bus.client.upload(5, deviceName, DataType::VisibleString);
        --depth;
    });
    bus.client.upload(5, deviceName, DataType::VisibleString);
    QTRY_COMPARE_WITH_TIMEOUT(left, 0, 30000);
    QCOMPARE(deepest, 1);
    QCOMPARE(bus.count(Kind::Value), 20000);
}

void tst_SdoClient::invalidNodeEndsAsError_data()
{
    QTest::addColumn<int>("nodeId");
    QTest::newRow("0, all nodes") << 0;
    QTest::newRow("128") << 128;
    QTest::newRow("255") << 255;
}

void tst_SdoClient::invalidNodeEndsAsError()
{
    QFETCH(int, nodeId);
    Bus bus;
    bus.client.setPatience(static_cast<quint8>(nodeId), patience(1ms, 0)); // no effect
    bus.client.upload(static_cast<quint8>(nodeId), deviceType, DataType::Unsigned32);
    QVERIFY(bus.client.isBusy());
    QTRY_COMPARE(bus.outcomes.size(), 1);
    QCOMPARE(bus.outcomes.first().kind, Kind::Error);
    QCOMPARE(bus.outcomes.first().nodeId, quint8(nodeId));
    QVERIFY(bus.outcomes.first().key == deviceType);
    QCOMPARE(bus.requests.size(), 0);
    QVERIFY(!bus.client.isBusy());
}

// No turn of the event loop between an answer and the next request.
void tst_SdoClient::nextRequestGoesOutWithTheAnswer()
{
    Bus bus;
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    bus.client.upload(5, {0x1001, 0}, DataType::Unsigned8);
    QCOMPARE(bus.requests.size(), 1);
    bus.client.handleFrame(answer(5, "43 00 10 00 92 01 02 00"));
    QCOMPARE(bus.requests.size(), 2);
    QCOMPARE(bus.requests.last().payload(), bytes("40 01 10 00 00 00 00 00"));
    QCOMPARE(bus.outcomes.size(), 1);
}

void tst_SdoClient::uploadFromSlotGoesOutAtOnce()
{
    Bus bus;
    connect(&bus.client, &SdoClient::finished, &bus, [&bus] {
        if (bus.requests.size() == 1)
            bus.client.upload(5, {0x1001, 0}, DataType::Unsigned8);
    });
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    bus.client.handleFrame(answer(5, "43 00 10 00 92 01 02 00"));
    QCOMPARE(bus.requests.size(), 2);
}

void tst_SdoClient::silentNodeEndsAsTimeout()
{
    Bus bus;
    bus.client.setDefaultPatience(patience(5ms, 2));
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    QTRY_COMPARE(bus.outcomes.size(), 1);
    QCOMPARE(bus.outcomes.first().kind, Kind::Timeout);
    QCOMPARE(bus.outcomes.first().repeats, 2);
    QVector<QByteArray> sent;
    for (const QCanBusFrame &frame : qAsConst(bus.requests))
        sent.append(frame.payload());
    const QByteArray ask = bytes("40 00 10 00 00 00 00 00");
    const QByteArray abort = bytes("80 00 10 00 00 00 04 05");
    QCOMPARE(sent, (QVector<QByteArray>{ask, abort, ask, abort, ask, abort}));
}

void tst_SdoClient::silentNodeDoesNotHoldUpOthers()
{
    Bus bus;
    bus.addNode(6);
    bus.client.setPatience(5, patience(10s, 0));
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    bus.client.upload(6, deviceType, DataType::Unsigned32);
    QTRY_COMPARE(bus.outcomes.size(), 1);
    QCOMPARE(bus.outcomes.first().nodeId, quint8(6));
    QVERIFY(bus.client.isBusy());
}

// The larger of the two time-outs counts.
void tst_SdoClient::timeoutArgumentIsALeast()
{
    Bus bus;
    bus.addNode(5);
    bus.addNode(6);
    bus.delay = 60ms;
    bus.client.setPatience(5, patience(10ms, 0));
    bus.client.setPatience(6, patience(2000ms, 0));
    bus.client.upload(5, deviceType, DataType::Unsigned32, 2000ms);
    bus.client.upload(6, deviceType, DataType::Unsigned32, 10ms);
    QTRY_COMPARE(bus.outcomes.size(), 2);
    QCOMPARE(bus.count(Kind::Value), 2);
}

void tst_SdoClient::longestBoundsTheUpload()
{
    Bus bus;
    SdoPatience endless = patience(5ms, 1000000);
    endless.longest = 100ms;
    bus.client.setDefaultPatience(endless);
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    QTRY_COMPARE(bus.outcomes.size(), 1);
    QCOMPARE(bus.outcomes.first().kind, Kind::Timeout);
    // 5, 10, 20 and 40 ms have passed, or fewer where the machine was slow.
    QVERIFY2(bus.outcomes.first().repeats <= 4, qPrintable(QString::number(bus.outcomes.first().repeats)));
    QCOMPARE(bus.requests.last().payload(), bytes("80 00 10 00 00 00 04 05"));
}

void tst_SdoClient::lateAnswerIsTaken()
{
    Bus bus;
    bus.addNode(5);
    bus.client.setDefaultPatience(patience(20ms, 3));
    bus.delay = 30ms;
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    QTRY_COMPARE(bus.outcomes.size(), 1);
    QCOMPARE(bus.outcomes.first().kind, Kind::Value);
    QVERIFY(bus.outcomes.first().repeats > 0);
}

// Without that, the repeated requests would pile up in the node until it seems silent.
void tst_SdoClient::slowNodeIsGivenTime()
{
    Bus bus;
    bus.addNode(5);
    SdoPatience impatient = patience(10ms, 3);
    impatient.longest = 4s;
    bus.client.setDefaultPatience(impatient);
    bus.delay = 50ms;
    for (quint8 sub = 0; sub < 8; ++sub)
        bus.client.upload(5, {0x6000, sub}, DataType::Unsigned32);
    QTRY_COMPARE_WITH_TIMEOUT(bus.outcomes.size(), 8, 20000);
    for (int sub = 0; sub < 8; ++sub) {
        QCOMPARE(bus.outcomes.at(sub).kind, Kind::Value);
        QCOMPARE(bus.outcomes.at(sub).value, QVariant(0x05600000u + quint32(sub)));
    }
    QVERIFY(bus.outcomes.first().repeats > 0);
    QCOMPARE(bus.outcomes.last().repeats, 0);
}

// The answer and the end of the wait come together, transfer after transfer: the end of one wait must not end
// the next transfer.
void tst_SdoClient::backToBackAtTheTimeOut()
{
    Bus bus;
    bus.addNode(5);
    bus.client.setDefaultPatience(patience(10ms, 5));
    bus.delay = 10ms;
    for (quint8 sub = 0; sub < 50; ++sub)
        bus.client.upload(5, {0x6000, sub}, DataType::Unsigned32);
    QTRY_COMPARE_WITH_TIMEOUT(bus.outcomes.size(), 50, 20000);
    for (int sub = 0; sub < 50; ++sub) {
        QCOMPARE(bus.outcomes.at(sub).kind, Kind::Value);
        QCOMPARE(bus.outcomes.at(sub).value, QVariant(0x05600000u + quint32(sub)));
    }
}

// Answer and end of the wait are both overdue when the event loop comes back, the end of the wait first.
void tst_SdoClient::heldUpEventLoopIsNoTimeOut()
{
    Bus bus;
    bus.addNode(5);
    bus.client.setDefaultPatience(patience(10ms, 0));
    bus.delay = 15ms;
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    QThread::msleep(80); // the event loop is held up
    QTRY_COMPARE(bus.outcomes.size(), 1);
    QCOMPARE(bus.outcomes.first().kind, Kind::Value);
}

// A server that waits for the rest of a transfer refuses all else until that is aborted.
void tst_SdoClient::stubbornServerIsFreedByTheAbort()
{
    Bus bus;
    bus.addNode(5);
    bus.nodes.at(5).setStubborn(true);
    bus.client.setDefaultPatience(patience(20ms, 0));
    bus.client.upload(5, deviceName, DataType::VisibleString);
    bus.requestsToIgnore = 1; // the first segment request
    QVERIFY(bus.nodes.at(5).isTransferOpen());
    QTRY_COMPARE(bus.outcomes.size(), 1);
    QCOMPARE(bus.outcomes.first().kind, Kind::Error);
    QVERIFY(!bus.nodes.at(5).isTransferOpen());
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    QTRY_COMPARE(bus.outcomes.size(), 2);
    QCOMPARE(bus.outcomes.last().kind, Kind::Value);
}

void tst_SdoClient::timeOutsEndEvenWithAnsweringNeighbours()
{
    Bus bus;
    bus.addNode(6);
    bus.client.setDefaultPatience(patience(10ms, 1));
    connect(&bus.client, &SdoClient::finished, &bus, [&bus](const SdoOutcome &outcome) {
        if (outcome.nodeId == 6 && bus.count(Kind::Timeout) == 0)
            bus.client.upload(6, deviceType, DataType::Unsigned32);
    });
    bus.client.upload(6, deviceType, DataType::Unsigned32);
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    QTRY_COMPARE(bus.count(Kind::Timeout), 1);
    QTRY_VERIFY(!bus.client.isBusy());
    QVERIFY(bus.count(Kind::Value) > 1);
}

void tst_SdoClient::cancelAll()
{
    Bus bus;
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    bus.client.upload(5, deviceName, DataType::VisibleString);
    bus.client.upload(6, deviceType, DataType::Unsigned32);
    QCOMPARE(bus.requests.size(), 2);
    bus.client.cancelAll();
    QCOMPARE(bus.count(Kind::Cancelled), 3);
    QVERIFY(!bus.client.isBusy());
    QCOMPARE(bus.requests.size(), 2);
    bus.client.handleFrame(answer(5, "43 00 10 00 92 01 02 00"));
    QCOMPARE(bus.outcomes.size(), 3);
    bus.client.cancelAll();
    QCOMPARE(bus.outcomes.size(), 3);
}

void tst_SdoClient::cancelEndsOneUpload()
{
    TimedBus bus;
    const SdoTicket first = bus.client.upload(5, deviceType, DataType::Unsigned32);
    const SdoTicket second = bus.client.upload(5, {0x1001, 0}, DataType::Unsigned8);
    const SdoTicket third = bus.client.upload(5, {0x1002, 0}, DataType::Unsigned8);
    QVERIFY(bus.client.cancel(second)); // still in the queue
    QCOMPARE(bus.outcomes.size(), 1);
    QCOMPARE(bus.outcomes.last().ticket, second);
    QCOMPARE(bus.outcomes.last().kind, Kind::Cancelled);
    QVERIFY(bus.outcomes.last().key == (ObjectKey{0x1001, 0}));
    QVERIFY(bus.outcomes.last().isUnasked);
    QCOMPARE(bus.sent.size(), 1);

    QVERIFY(bus.client.cancel(first));
    QCOMPARE(bus.outcomes.size(), 2);
    QCOMPARE(bus.outcomes.last().ticket, first);
    QCOMPARE(bus.outcomes.last().kind, Kind::Cancelled);
    QVERIFY(!bus.outcomes.last().isUnasked);
    // An abort, and then the next one's request.
    QCOMPARE(bus.sent.size(), 3);
    QCOMPARE(bus.sent.at(1).payload(), bytes("80 00 10 00 00 00 00 08"));
    QCOMPARE(bus.sent.at(2).payload(), bytes("40 02 10 00 00 00 00 00"));
    bus.client.handleFrame(answer(5, "4F 02 10 00 07 00 00 00"));
    QCOMPARE(bus.outcomes.last().ticket, third);
    QCOMPARE(bus.outcomes.last().value, QVariant(7u));
    QVERIFY(!bus.client.isBusy());
}

void tst_SdoClient::cancelFreesTheServer()
{
    Bus bus;
    bus.addNode(5);
    bus.nodes.at(5).setStubborn(true);
    const SdoTicket ticket = bus.client.upload(5, deviceName, DataType::VisibleString);
    QVERIFY(bus.nodes.at(5).isTransferOpen());
    QVERIFY(bus.client.cancel(ticket));
    QVERIFY(!bus.nodes.at(5).isTransferOpen());
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    QTRY_COMPARE(bus.outcomes.size(), 2);
    QCOMPARE(bus.outcomes.last().kind, Kind::Value);
}

void tst_SdoClient::cancelOfWhatHasEnded()
{
    TimedBus bus;
    const SdoTicket ticket = bus.client.upload(5, deviceType, DataType::Unsigned32);
    bus.client.handleFrame(answer(5, "43 00 10 00 92 01 02 00"));
    QCOMPARE(bus.outcomes.size(), 1);
    QVERIFY(!bus.client.cancel(ticket));
    QVERIFY(!bus.client.cancel(0));
    QVERIFY(!bus.client.cancel(999));
    QCOMPARE(bus.outcomes.size(), 1);
    QCOMPARE(bus.sent.size(), 1);
}

void tst_SdoClient::waitBeginsWithTheWrite()
{
    TimedBus bus;
    bus.client.setDefaultPatience(patience(100ms, 0));
    bus.sending = Sending::Waiting;
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    bus.pass(3000ms);
    QCOMPARE(bus.outcomes.size(), 0);
    QCOMPARE(bus.sent.size(), 1); // not asked again either
    bus.client.handleWritten(bus.sent.first());
    bus.pass(99ms);
    QCOMPARE(bus.outcomes.size(), 0);
    bus.pass(1ms);
    QCOMPARE(bus.outcomes.size(), 1);
    QCOMPARE(bus.outcomes.first().kind, Kind::Timeout);
    QVERIFY(!bus.outcomes.first().isUnasked);
}

void tst_SdoClient::framesOfEndedUploadsAreWrittenFirst()
{
    TimedBus bus;
    bus.client.setDefaultPatience(patience(100ms, 0));
    bus.sending = Sending::Waiting;
    bus.client.cancel(bus.client.upload(5, deviceType, DataType::Unsigned32));
    bus.client.upload(5, {0x1001, 0}, DataType::Unsigned8);
    QCOMPARE(bus.sent.size(), 3); // a request, its abort, a request
    bus.client.handleWritten(bus.sent.at(0));
    bus.client.handleWritten(bus.sent.at(1));
    bus.pass(5000ms);
    QCOMPARE(bus.outcomes.size(), 1);
    bus.client.handleWritten(bus.sent.at(2));
    bus.pass(100ms);
    QCOMPARE(bus.outcomes.size(), 2);
    QVERIFY(!bus.outcomes.last().isUnasked);
}

void tst_SdoClient::droppedRequestIsRepeated()
{
    TimedBus bus;
    bus.client.setDefaultPatience(patience(100ms, 1));
    bus.sending = Sending::Waiting;
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    bus.client.handleDropped(bus.sent.first());
    bus.sending = Sending::Written;
    bus.pass(100ms);
    QCOMPARE(bus.sent.size(), 3);
    bus.client.handleFrame(answer(5, "43 00 10 00 92 01 02 00"));
    QCOMPARE(bus.outcomes.size(), 1);
    QCOMPARE(bus.outcomes.first().kind, Kind::Value);
    QVERIFY(!bus.outcomes.first().isUnasked);
}

void tst_SdoClient::whatWasNeverWrittenIsUnasked()
{
    TimedBus bus;
    bus.sending = Sending::Dropped;
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    bus.pass(1000ms);
    QCOMPARE(bus.outcomes.size(), 1);
    QCOMPARE(bus.outcomes.first().kind, Kind::Timeout);
    QVERIFY(bus.outcomes.first().isUnasked);

    bus.sending = Sending::Waiting; // and neither written nor dropped
    bus.client.upload(6, deviceType, DataType::Unsigned32);
    bus.pass(9999ms);
    QCOMPARE(bus.outcomes.size(), 1);
    bus.pass(1ms);
    QCOMPARE(bus.outcomes.size(), 2);
    QVERIFY(bus.outcomes.last().isUnasked);
}

void tst_SdoClient::forgottenFramesDoNotHoldUp()
{
    TimedBus bus;
    bus.client.setDefaultPatience(patience(100ms, 0));
    bus.sending = Sending::Waiting;
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    bus.client.forgetWaitingFrames();
    bus.client.cancelAll();
    bus.sending = Sending::Written;
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    bus.pass(100ms);
    QCOMPARE(bus.outcomes.last().kind, Kind::Timeout);
}

void tst_SdoClient::crowdedBusProlongsTheWait()
{
    LoadedBus bus;
    bus.client.setDefaultPatience(patience(100ms, 0));
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    bus.passWithLoad(1000ms, 81);
    QCOMPARE(bus.outcomes.size(), 0);
    QCOMPARE(bus.sent.size(), 1); // nor asked again

    // There is room again: the wait under way is the last one.
    bus.passWithLoad(100ms, 78);
    QCOMPARE(bus.outcomes.size(), 1);
    QCOMPARE(bus.outcomes.first().kind, Kind::Timeout);
    QVERIFY(!bus.outcomes.first().isCrowdedOut);
    QVERIFY(!bus.client.isCrowdedOut(5));
}

void tst_SdoClient::waitOnACrowdedBusEndsInTime()
{
    LoadedBus bus;
    SdoPatience limited = patience(100ms, 1);
    limited.longest = 3000ms;
    bus.client.setDefaultPatience(limited);
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    bus.passWithLoad(1499ms, 99);
    QCOMPARE(bus.sent.size(), 1);
    bus.passWithLoad(1ms, 99);
    QCOMPARE(bus.sent.size(), 3); // its half of the time is over: the abort, and the request again
    QCOMPARE(bus.outcomes.size(), 0);
    bus.passWithLoad(1499ms, 99);
    QCOMPARE(bus.outcomes.size(), 0);
    bus.passWithLoad(1ms, 99);
    QCOMPARE(bus.outcomes.size(), 1);
}

void tst_SdoClient::lateAnswerOnACrowdedBusIsTaken()
{
    LoadedBus bus;
    bus.client.setDefaultPatience(patience(100ms, 0));
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    bus.passWithLoad(2500ms, 98);
    bus.client.handleFrame(answer(5, "43 00 10 00 07 00 00 00"));
    QCOMPARE(bus.outcomes.size(), 1);
    QCOMPARE(bus.outcomes.first().value, QVariant(7u));
    QVERIFY(!bus.outcomes.first().isCrowdedOut);
}

void tst_SdoClient::silenceOnAFullBusIsNotTheNodes_data()
{
    QTest::addColumn<int>("percent");
    QTest::addColumn<bool>("isCrowdedOut");

    QTest::newRow("idle") << 0 << false;
    QTest::newRow("busy") << 79 << false;
    QTest::newRow("crowded") << 90 << false;
    QTest::newRow("full") << 97 << true;
}

void tst_SdoClient::silenceOnAFullBusIsNotTheNodes()
{
    QFETCH(int, percent);
    LoadedBus bus;
    bus.client.setDefaultPatience(patience(100ms, 1));
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    QVERIFY(!bus.client.isCrowdedOut(5));
    bus.passWithLoad(11000ms, percent);
    QCOMPARE(bus.outcomes.size(), 1);
    QCOMPARE(bus.outcomes.first().kind, Kind::Timeout);
    QTEST(bus.outcomes.first().isCrowdedOut, "isCrowdedOut");
    QTEST(bus.client.isCrowdedOut(5), "isCrowdedOut");
    QVERIFY(!bus.client.isCrowdedOut(6));
}

void tst_SdoClient::onlyTheLastUploadCountsAsCrowdedOut()
{
    LoadedBus bus;
    bus.client.setDefaultPatience(patience(100ms, 0));
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    bus.passWithLoad(11000ms, 100);
    QVERIFY(bus.client.isCrowdedOut(5));
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    bus.passWithLoad(10ms, 100);
    bus.client.handleFrame(answer(5, "43 00 10 00 07 00 00 00"));
    QCOMPARE(bus.outcomes.last().kind, Kind::Value);
    QVERIFY(!bus.client.isCrowdedOut(5));
}

// After a segment that did not come, the next ones are asked for only when nothing can come of it any more. No answer is
// on its way then.
void tst_SdoClient::waitForAQuietLineIsNotProlonged()
{
    LoadedBus bus;
    bus.client.setDefaultPatience(patience(100ms, 1));
    bus.client.upload(5, deviceName, DataType::VisibleString);
    bus.client.handleFrame(answer(5, "41 08 10 00 08 00 00 00"));
    bus.pass(100ms);
    bus.client.handleFrame(answer(5, "41 08 10 00 08 00 00 00"));
    const int sent = bus.sent.size();
    bus.passWithLoad(500ms, 100);
    QCOMPARE(bus.sent.size(), sent);
    bus.passWithLoad(400ms, 100);
    QCOMPARE(bus.sent.size(), sent + 1);
}

void tst_SdoClient::foreignClientIsNamed()
{
    TimedBus bus;
    QSignalSpy spy(&bus.client, &SdoClient::foreignClientSeen);
    const QCanBusFrame foreignBegin(0x605, bytes("40 09 10 00 00 00 00 00"));
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    bus.client.handleFrame(foreignBegin); // changes nothing for us
    bus.client.handleFrame(answer(5, "43 09 10 00 31 2E 30 30"));
    bus.client.handleFrame(answer(5, "43 00 10 00 92 01 02 00"));
    QCoreApplication::processEvents();
    QCOMPARE(spy.count(), 0);
    QVERIFY(!bus.outcomes.last().foreignClient);

    for (int i = 0; i < 3; ++i) {
        bus.client.handleFrame(foreignBegin);
        bus.client.handleFrame(answer(5, "41 09 10 00 0A 00 00 00"));
        bus.client.upload(5, deviceType, DataType::Unsigned32); // has to wait
        bus.client.handleFrame(answer(5, "80 09 10 00 00 00 00 08"));
        bus.client.handleFrame(answer(5, "43 00 10 00 92 01 02 00"));
        QVERIFY(bus.outcomes.last().foreignClient);
        QCOMPARE(bus.outcomes.last().kind, Kind::Value);
    }
    QCoreApplication::processEvents();
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.first().first().toInt(), 5);
    bus.pass(10000ms);
    bus.client.handleFrame(foreignBegin);
    bus.client.handleFrame(answer(5, "41 09 10 00 0A 00 00 00"));
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    QCoreApplication::processEvents();
    QCOMPARE(spy.count(), 2);
}

// It writes without end, so that the node is never free for us.
void tst_SdoClient::foreignClientDoesNotHoldUpANodeForEver()
{
    TimedBus bus;
    const auto goOn = [&bus](std::chrono::milliseconds time) {
        for (auto passed = 0ms; passed < time; passed += 20ms) {
            bus.client.handleFrame(QCanBusFrame(0x605, bytes("00 01 02 03 04 05 06 07")));
            bus.client.handleFrame(answer(5, "20 00 00 00 00 00 00 00"));
            bus.pass(20ms);
        }
    };
    bus.client.setPatience(5, SdoPatience()); // from now on the client knows the node
    goOn(20ms);
    for (int i = 0; i < 5; ++i)
        bus.client.upload(5, deviceType, DataType::Unsigned32);
    goOn(3 * 10000ms);
    QCOMPARE(bus.outcomes.size(), 3);
    goOn(520ms);
    QCOMPARE(bus.outcomes.size(), 4);
    goOn(520ms);
    QCOMPARE(bus.outcomes.size(), 5);
    for (const SdoOutcome &outcome : qAsConst(bus.outcomes)) {
        QCOMPARE(outcome.kind, Kind::Error);
        QVERIFY(outcome.foreignClient);
        QVERIFY(outcome.isUnasked);
    }

    // When the node is free again, the next upload has all its time.
    bus.client.handleFrame(QCanBusFrame(0x605, bytes("80 00 00 00 00 00 00 08")));
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    bus.client.handleFrame(answer(5, "43 00 10 00 92 01 02 00"));
    QCOMPARE(bus.outcomes.last().kind, Kind::Value);
    goOn(20ms);
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    goOn(2000ms);
    QCOMPARE(bus.outcomes.size(), 6);
}

// It begins an upload every 55 ms and leaves it there.
void tst_SdoClient::abandoningForeignClientIsNotWaitedFor()
{
    TimedBus bus;
    const auto begin = [&bus] {
        bus.client.handleFrame(QCanBusFrame(0x605, bytes("40 08 10 00 00 00 00 00")));
        bus.client.handleFrame(answer(5, "41 08 10 00 0A 00 00 00"));
        bus.pass(55ms);
    };
    bus.client.setPatience(5, SdoPatience()); // from now on the client knows the node
    begin();
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    QCOMPARE(bus.sent.size(), 0); // it may go on
    begin();
    QCOMPARE(bus.sent.size(), 1);
    bus.client.handleFrame(answer(5, "43 00 10 00 92 01 02 00"));
    QCOMPARE(bus.outcomes.last().kind, Kind::Value);
    bus.client.upload(5, {0x1001, 0}, DataType::Unsigned8);
    QCOMPARE(bus.sent.size(), 2); // at once
}

void tst_SdoClient::uploadWithinCancelAll()
{
    Bus bus;
    bus.addNode(5);
    bus.client.upload(7, deviceType, DataType::Unsigned32);
    connect(&bus.client, &SdoClient::finished, &bus, [&bus](const SdoOutcome &outcome) {
        if (outcome.kind == Kind::Cancelled)
            bus.client.upload(5, deviceType, DataType::Unsigned32);
    });
    bus.client.cancelAll();
    QVERIFY(bus.client.isBusy());
    QTRY_COMPARE(bus.outcomes.size(), 2);
    QCOMPARE(bus.outcomes.last().kind, Kind::Value);
}

void tst_SdoClient::clientMayBeDeletedInASlot_data()
{
    QTest::addColumn<QString>("by");
    for (const char *by : {"value", "time-out", "cancel", "invalid node", "answer before send returns"})
        QTest::newRow(by) << QString::fromLatin1(by);
}

void tst_SdoClient::clientMayBeDeletedInASlot()
{
    QFETCH(QString, by);
    const bool answersAtOnce = by.startsWith(QLatin1String("answer"));
    SdoClient *client = nullptr;
    client = new SdoClient([&client, answersAtOnce](const QCanBusFrame &) {
        if (answersAtOnce)
            client->handleFrame(answer(5, "43 00 10 00 92 01 02 00"));
        return Sending::Written;
    });
    int finished = 0;
    connect(client, &SdoClient::finished, this, [&] {
        ++finished;
        delete std::exchange(client, nullptr);
    });
    client->setDefaultPatience(patience(1ms, 0));
    const quint8 nodeId = by == QLatin1String("invalid node") ? 0 : 5;
    for (int i = 0; i < 3; ++i)
        client->upload(nodeId, deviceType, DataType::Unsigned32);
    client->upload(6, deviceType, DataType::Unsigned32);
    if (by == QLatin1String("value"))
        client->handleFrame(answer(5, "43 00 10 00 92 01 02 00"));
    if (by == QLatin1String("cancel"))
        client->cancelAll();
    QTRY_COMPARE(finished, 1);
    QVERIFY(client == nullptr);
}

void tst_SdoClient::deletedClientSaysNothing()
{
    auto client = std::make_unique<SdoClient>([](const QCanBusFrame &) { return Sending::Written; });
    QSignalSpy spy(client.get(), &SdoClient::finished);
    client->upload(5, deviceType, DataType::Unsigned32);
    client->upload(0, deviceType, DataType::Unsigned32);
    client.reset();
    QCoreApplication::processEvents();
    QCOMPARE(spy.count(), 0);
}

void tst_SdoClient::otherFramesAreIgnored_data()
{
    QTest::addColumn<quint32>("id");
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<bool>("remote");
    QTest::addColumn<bool>("extended");

    const QByteArray good = bytes("43 00 10 00 11 11 11 11");
    QTest::newRow("answer of another node") << 0x586u << good << false << false;
    QTest::newRow("580h") << 0x580u << good << false << false;
    QTest::newRow("heartbeat") << 0x705u << bytes("05") << false << false;
    QTest::newRow("PDO") << 0x185u << good << false << false;
    QTest::newRow("EMCY") << 0x085u << good << false << false;
    QTest::newRow("extended identifier") << 0x585u << good << false << true;
    QTest::newRow("remote frame") << 0x585u << good << true << false;
    QTest::newRow("seven bytes") << 0x585u << good.left(7) << false << false;
    QTest::newRow("no bytes") << 0x585u << QByteArray() << false << false;
    QTest::newRow("twelve bytes") << 0x585u << good + good.left(4) << false << false;
}

void tst_SdoClient::otherFramesAreIgnored()
{
    QFETCH(quint32, id);
    QFETCH(QByteArray, payload);
    QFETCH(bool, remote);
    QFETCH(bool, extended);

    Bus bus;
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    QCanBusFrame frame(id, payload);
    frame.setExtendedFrameFormat(extended);
    if (remote)
        frame.setFrameType(QCanBusFrame::RemoteRequestFrame);
    bus.client.handleFrame(frame);
    QCOMPARE(bus.outcomes.size(), 0);
    bus.client.handleFrame(answer(5, "43 00 10 00 92 01 02 00"));
    QCOMPARE(bus.outcomes.size(), 1);
    QCOMPARE(bus.outcomes.first().value, QVariant(0x00020192u));
}

void tst_SdoClient::ownEchoIsNoForeignClient()
{
    Bus bus;
    bus.client.upload(5, deviceName, DataType::VisibleString);
    bus.client.handleFrame(answer(5, "41 08 10 00 02 00 00 00"));
    QCanBusFrame echo = bus.requests.last();
    echo.setLocalEcho(true);
    bus.client.handleFrame(echo);
    bus.client.handleFrame(answer(5, "0B 41 42 00 00 00 00 00"));
    bus.client.handleFrame(answer(5, "41 08 10 00 02 00 00 00"));
    bus.client.handleFrame(answer(5, "0B 41 42 00 00 00 00 00"));
    QCOMPARE(bus.outcomes.size(), 1);
    QCOMPARE(bus.outcomes.first().value, QVariant(QStringLiteral("AB")));
}

void tst_SdoClient::foreignClientRestartsSegments()
{
    TimedBus bus;
    bus.client.upload(5, deviceName, DataType::VisibleString);
    bus.client.handleFrame(answer(5, "41 08 10 00 02 00 00 00"));
    QCOMPARE(bus.sent.size(), 2);
    bus.client.handleFrame(QCanBusFrame(0x605, bytes("40 09 10 00 00 00 00 00")));
    bus.client.handleFrame(answer(5, "0B 78 78 00 00 00 00 00"));
    QCOMPARE(bus.outcomes.size(), 0);
    bus.client.handleFrame(answer(5, "43 09 10 00 31 2E 30 30"));
    QCOMPARE(bus.sent.size(), 3);
    QCOMPARE(bus.sent.last().payload(), bytes("40 08 10 00 00 00 00 00"));
    for (int reading = 0; reading < 2; ++reading) {
        bus.client.handleFrame(answer(5, "41 08 10 00 02 00 00 00"));
        bus.client.handleFrame(answer(5, "0B 41 42 00 00 00 00 00"));
    }
    QCOMPARE(bus.outcomes.size(), 1);
    QCOMPARE(bus.outcomes.first().value, QVariant(QStringLiteral("AB")));
    QVERIFY(bus.outcomes.first().foreignClient);
}

// Heartbeats, PDOs, emergencies and other nodes' SDOs, ten for each frame of a segmented transfer.
void tst_SdoClient::trafficChangesNothing()
{
    Bus bus;
    bus.addNode(5);
    std::mt19937 random(7);
    QTimer traffic;
    traffic.setInterval(0);
    int frames = 0;
    connect(&traffic, &QTimer::timeout, &bus, [&] {
        for (int i = 0; i < 10; ++i, ++frames) {
            quint32 id = random() % 0x800;
            if (id == 0x585 || id == 0x605)
                id = 0x705;
            QByteArray payload(static_cast<int>(random() % 9), '\0');
            for (char &byte : payload)
                byte = static_cast<char>(random());
            bus.client.handleFrame(QCanBusFrame(id, payload));
        }
    });
    traffic.start();
    for (int i = 0; i < 200; ++i)
        bus.client.upload(5, deviceName, DataType::VisibleString);
    QTRY_COMPARE_WITH_TIMEOUT(bus.outcomes.size(), 200, 20000);
    for (const SdoOutcome &outcome : qAsConst(bus.outcomes)) {
        QCOMPARE(outcome.value, QVariant(QStringLiteral("A device with a long name, number 5")));
        QCOMPARE(outcome.repeats, 0);
    }
    QVERIFY(frames > 1000);
}

// A node that sends on its SDO COB-ID without end.
void tst_SdoClient::floodOnTheAnswers()
{
    Bus bus;
    bus.client.setDefaultPatience(patience(20ms, 1));
    std::mt19937 random(8);
    QTimer babble;
    babble.setInterval(0);
    connect(&babble, &QTimer::timeout, &bus, [&] {
        for (int i = 0; i < 200; ++i) {
            QByteArray payload(8, '\0');
            for (char &byte : payload)
                byte = static_cast<char>(random());
            bus.client.handleFrame(QCanBusFrame(0x585, payload));
        }
    });
    babble.start();
    bus.client.upload(5, deviceName, DataType::VisibleString);
    QTRY_COMPARE(bus.outcomes.size(), 1); // whatever it is
    babble.stop();

    bus.addNode(5);
    bus.client.upload(5, deviceType, DataType::Unsigned32);
    QTRY_COMPARE(bus.outcomes.size(), 2);
    QCOMPARE(bus.outcomes.last().value, QVariant(0x05100000u));
}

// The same with frames that do belong to the transfer: segments that never end.
void tst_SdoClient::strangeAnswersFlood()
{
    TimedBus bus;
    bus.client.upload(5, deviceName, DataType::VisibleString);
    for (int i = 0; i < 100000 && bus.outcomes.isEmpty(); ++i) {
        bus.client.handleFrame(answer(5, "40 08 10 00 00 00 00 00"));
        bus.client.handleFrame(answer(5, "00 78 78 78 78 78 78 78"));
        bus.client.handleFrame(answer(5, "10 78 78 78 78 78 78 78"));
        bus.pass(1ms);
    }
    QCOMPARE(bus.outcomes.size(), 1);
    QCOMPARE(bus.outcomes.first().kind, Kind::Error); // it has answered
    QVERIFY(bus.now <= 11000ms + 5ms);                // within the bound of an upload
}

QTEST_GUILESS_MAIN(tst_SdoClient)

#include "tst_sdoclient.moc"
