// SPDX-License-Identifier: MIT
#include "modelserver.h"
#include "unreliableline.h"

#include <canopen/cobid.h>
#include <canopen/heartbeat.h>
#include <canopen/heartbeatconsumer.h>
#include <canopen/nmt.h>
#include <canopen/sdoclient.h>
#include <canopen/sdoupload.h>

#include <QCanBusFrame>
#include <QtTest>

#include <deque>
#include <random>

using namespace CanOpen;

using Kind = SdoOutcome::Kind;

Q_DECLARE_METATYPE(LineFaults)

namespace {

constexpr int foreignTransferCount = 100000;

struct Object
{
    ObjectKey key;
    DataType type;
    int size; // bytes; 0: does not exist
};

// Few objects, so that the answers to one are often late for another or for the same.
constexpr Object objects[] = {
    {{0x1000, 0}, DataType::Unsigned32, 4},   {{0x1000, 1}, DataType::Unsigned32, 4},
    {{0x1018, 1}, DataType::Unsigned32, 4},   {{0x6081, 0}, DataType::Unsigned32, 4},
    {{0x1008, 0}, DataType::OctetString, 12}, {{0x1009, 0}, DataType::OctetString, 20},
    {{0x100A, 0}, DataType::OctetString, 20}, {{0x1001, 0}, DataType::Unsigned32, 0},
};
constexpr int objectCount = sizeof(objects) / sizeof(objects[0]);

const Object *findObject(ObjectKey key)
{
    for (const Object &object : objects) {
        if (object.key == key)
            return &object;
    }
    return nullptr;
}

/*! Every four bytes of a value name the object and the reading:
 *  index low byte, sub-index and index high byte mixed, number of the reading (two bytes).
 */
QByteArray valueOf(const Object &object, quint16 reading)
{
    const char unit[] = {static_cast<char>(object.key.index & 0xFF),
                         static_cast<char>(object.key.index >> 8 ^ object.key.subIndex << 7),
                         static_cast<char>(reading & 0xFF), static_cast<char>(reading >> 8)};
    QByteArray value;
    while (value.size() < object.size)
        value.append(unit, sizeof unit);
    return value;
}

bool belongsTo(const Object &object, const QVariant &value)
{
    const QByteArray data
        = object.type == DataType::Unsigned32 ? *encodeValue(object.type, value) : value.toByteArray();
    if (data.size() != object.size)
        return false;
    const auto reading
        = static_cast<quint16>(static_cast<quint8>(data.at(2)) | static_cast<quint8>(data.at(3)) << 8);
    return data == valueOf(object, reading);
}

struct Tally
{
    int values = 0;
    int aborts = 0;
    int errors = 0;
    int timeouts = 0;
    int wrong = 0;

    void count(const SdoOutcome &outcome, const Object &object)
    {
        switch (outcome.kind) {
        case Kind::Value:
            ++values;
            wrong += belongsTo(object, outcome.value) && outcome.key == object.key ? 0 : 1;
            break;
        case Kind::Abort:
            ++aborts;
            wrong += object.size == 0 || outcome.code != 0x06020000 ? 0 : 1;
            break;
        case Kind::Error:
            ++errors;
            break;
        default:
            ++timeouts;
        }
    }
};

constexpr int lineCount = 12;
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int defaultTransfers = 12000;
#else
constexpr int defaultTransfers = 120000;
#endif
constexpr int transfersPerNode = 500;

struct LineTally
{
    int transfers = 0;
    int values = 0;
    int aborts = 0;
    int errors = 0;
    int timeouts = 0;
    int wrong = 0;
    qint64 time = 0; // us
    quint64 requests = 0;

    void count(const UnreliableLine &line, const UnreliableLine::Object &object, const SdoOutcome &outcome,
               DataType type)
    {
        ++transfers;
        switch (outcome.kind) {
        case Kind::Value: {
            ++values;
            std::optional<QByteArray> data = encodeValue(type, outcome.value);
            if (data && outcome.isSizeUnknown) // the device leaves the rest empty
                *data = data->mid(object.size).count('\0') == data->size() - object.size
                            ? data->left(object.size)
                            : QByteArray();
            const bool isRight = data && outcome.key == object.key && line.isRight(object, *data);
            wrong += isRight ? 0 : 1;
            if (!isRight)
                qWarning() << "wrong at transfer" << transfers << ":" << object.key.toString()
                           << outcome.raw.toHex();
            break;
        }
        case Kind::Abort:
            // Other codes tell that the transfer failed, not that the object is missing.
            if (outcome.code == 0x06020000) {
                ++aborts;
                wrong += object.size == 0 ? 0 : 1;
            } else {
                ++errors;
            }
            break;
        case Kind::Error:
            ++errors;
            break;
        default:
            ++timeouts;
        }
    }
};

QByteArray randomPayload(Random *random, int size)
{
    QByteArray payload(size, '\0');
    for (char &byte : payload)
        byte = static_cast<char>(random->below(256));
    // Often the objects that are being asked for, or nothing would get past the first check.
    if (size >= 4 && random->oneIn(2)) {
        const Object &object = objects[random->below(objectCount)];
        payload[1] = static_cast<char>(object.key.index & 0xFF);
        payload[2] = static_cast<char>(object.key.index >> 8);
        payload[3] = static_cast<char>(object.key.subIndex);
    }
    return payload;
}

} // namespace

class tst_SdoFuzz : public QObject
{
    Q_OBJECT

private slots:
    void unreliableLines_data();
    void unreliableLines();
    void rawBytesOverUnreliableLines_data() { unreliableLines_data(); }
    void rawBytesOverUnreliableLines();
    void anotherClient();
    void anyBytesIntoUpload();
    void anyFramesIntoClient();
    void anyFramesIntoParsers();
};

void tst_SdoFuzz::unreliableLines_data()
{
    QTest::addColumn<LineFaults>("faults");
    QTest::addColumn<int>("values"); // of 100 transfers, at least; one in thirteen asks for what is not there

    QTest::newRow("good") << LineFaults() << 91;
    LineFaults doubled;
    doubled.copied = 20;
    doubled.longestDelay = 5;
    QTest::newRow("doubled a round trip later") << doubled << 78;
    LineFaults onTheSpot;
    onTheSpot.copied = 100;
    onTheSpot.copiesLate = 0;
    QTest::newRow("always doubled on the spot") << onTheSpot << 58;
    LineFaults sometimesLate = onTheSpot;
    sometimesLate.copiesLate = 1;
    QTest::newRow("always doubled, now and then late") << sometimesLate << 58;
    LineFaults late;
    late.copied = 30;
    QTest::newRow("doubled, up to 300 ms later") << late << 78;
    LineFaults everything;
    everything.copied = 50;
    everything.copiesLate = 70;
    everything.originalsLate = 20;
    everything.lost = 3;
    QTest::newRow("doubled, late and lost") << everything << 65;
    LineFaults rare;
    rare.copied = 2;
    rare.originalsLate = 1;
    rare.lost = 1;
    QTest::newRow("now and then") << rare << 78;
    LineFaults shortDelays = everything;
    shortDelays.longestDelay = 4;
    shortDelays.lost = 1;
    QTest::newRow("out of order") << shortDelays << 65;
    LineFaults babble;
    babble.babble = 200;
    QTest::newRow("babble") << babble << 62;
    LineFaults sameBabble = babble;
    sameBabble.sameBabble = true;
    QTest::newRow("babble, always the same") << sameBabble << 75;
    LineFaults foreignOnly;
    foreignOnly.foreign = 15;
    QTest::newRow("another client") << foreignOnly << 80;
    LineFaults foreign = late;
    foreign.foreign = 15;
    QTest::newRow("another client, doubled") << foreign << 20;
}

// No value under a wrong key, and none put together from two readings. As many transfers as the environment asks
// for, over all the lines.
void tst_SdoFuzz::unreliableLines()
{
    QFETCH(LineFaults, faults);
    QFETCH(int, values);
    bool asked = false;
    const int total = qEnvironmentVariableIntValue("OVERVIEW_FUZZ_TRANSFERS", &asked);
    const int transferCount = (asked ? total : defaultTransfers) / lineCount;
    LineTally tally;
    for (quint32 seed = 1; tally.transfers < transferCount; ++seed) {
        UnreliableLine line(seed, faults, NodeHabits());
        for (int transfer = 0; transfer < transfersPerNode; ++transfer) {
            const UnreliableLine::Object object
                = line.objects().at(line.random().below(line.objects().size()));
            tally.count(line, object, line.read(object), object.type);
            if (line.random().oneIn(10))
                line.idle(line.random().below(line.random().oneIn(10) ? 1000000 : 20000));
        }
        tally.time += line.now();
        tally.requests += line.requests();
    }
    qInfo(
        "%d transfers: %d values, %d not there, %d failed, %d without answer; %.2f requests and %.1f ms each",
        tally.transfers, tally.values, tally.aborts, tally.errors, tally.timeouts,
        double(tally.requests) / tally.transfers, double(tally.time) / 1000.0 / tally.transfers);
    QCOMPARE(tally.wrong, 0);
    QVERIFY2(100 * tally.values > values * tally.transfers, qPrintable(QString::number(tally.values)));
    QVERIFY(tally.aborts > 0);
}

// The same without knowing any type, in all protocols: the length is what the node says, and nothing tells a segment that
// is missing but that the readings do not agree.
void tst_SdoFuzz::rawBytesOverUnreliableLines()
{
    QFETCH(LineFaults, faults);
    QFETCH(int, values);
    LineTally tally;
    for (quint32 seed = 1; tally.transfers < defaultTransfers / lineCount; ++seed) {
        UnreliableLine line(seed, faults, NodeHabits());
        for (int transfer = 0; transfer < transfersPerNode; ++transfer) {
            UnreliableLine::Object object = line.objects().at(line.random().below(line.objects().size()));
            object.type = rawBytes;
            const SdoProtocol protocol
                = line.random().oneIn(2) ? SdoProtocol::BlockWhenLong : SdoProtocol::Plain;
            tally.count(line, object, line.read(object, protocol), rawBytes);
        }
    }
    qInfo("%d transfers: %d values, %d not there, %d failed, %d without answer", tally.transfers,
          tally.values, tally.aborts, tally.errors, tally.timeouts);
    QCOMPARE(tally.wrong, 0);
    QVERIFY2(100 * tally.values > (values - 10) * tally.transfers, qPrintable(QString::number(tally.values)));
    QVERIFY(tally.aborts > 0);
}

// The same server has a second client, whose requests the first one sees in the order of the bus.
void tst_SdoFuzz::anotherClient()
{
    Random random(2);
    quint16 reading = 0;
    ModelServer server([&reading](ObjectKey key) {
        const Object *object = findObject(key);
        return object != nullptr && object->size > 0 ? valueOf(*object, ++reading) : QByteArray();
    });
    std::deque<std::pair<bool, QByteArray>>
        bus; // requests on the bus, not yet read by the server; true: foreign
    SdoUpload ours;
    SdoUpload theirs;
    Tally tally;
    int theirTransfers = 0;
    qint64 now = 0; // ms

    const auto send = [&](const SdoUpload::Step &step, bool foreign) {
        for (int i = 0; i < step.frameCount; ++i) {
            const QByteArray payload = step.frames[static_cast<std::size_t>(i)];
            bus.push_back({foreign, payload});
        }
    };
    std::deque<QByteArray> seen; // answers on the bus, for both

    for (int transfer = 0; transfer < foreignTransferCount; ++transfer) {
        const Object &object = objects[random.below(objectCount)];
        send(ours.start(object.key, object.type, 2), false);
        while (ours.isActive()) {
            now += 10;
            ours.setTime(now);
            theirs.setTime(now);
            const int chance = random.below(64);
            if (chance == 0) {
                send(ours.timeOver(), false);
            } else if (chance == 1) {
                send(theirs.isActive() ? theirs.timeOver() : SdoUpload::Step(), true);
            } else if (chance < 4 && !theirs.isActive()) {
                const Object &other = objects[random.below(objectCount)];
                const SdoUpload::Step step = theirs.start(other.key, other.type, 1);
                send(step, true);
                ++theirTransfers;
            } else if (chance < 34 && !bus.empty()) {
                // A request becomes visible when it is on the bus; the server answers in order.
                const auto [foreign, payload] = bus.front();
                bus.pop_front();
                if (foreign)
                    send(ours.handleForeignRequest(payload), false);
                const QByteArray answer = server.answer(payload);
                if (!answer.isNull())
                    seen.push_back(answer);
            } else if (!seen.empty()) {
                const QByteArray answer = seen.front();
                seen.pop_front();
                send(ours.handleResponse(answer), false);
                send(theirs.handleResponse(answer), true);
            }
        }
        tally.count(ours.outcome(), object);
    }
    QCOMPARE(tally.wrong, 0);
    QVERIFY(theirTransfers > foreignTransferCount / 10);
    QVERIFY2(tally.values > foreignTransferCount / 2, qPrintable(QString::number(tally.values)));
}

void tst_SdoFuzz::anyBytesIntoUpload()
{
    Random random(3);
    SdoUpload upload;
    qint64 now = 0; // ms
    int finished = 0;
    for (int transfer = 0; transfer < 100000; ++transfer) {
        const Object &object = objects[random.below(objectCount)];
        upload.start(object.key, object.type, 2, random.oneIn(3) ? SdoProtocol::Block : SdoProtocol::Plain);
        if (random.oneIn(3)) // past the first check of a block transfer
            upload.handleResponse(
                makeSdoBlockInitiateResponse({object.key, random.oneIn(2), random.oneIn(2), 9}));
        for (int frame = 0; frame < 20 && upload.isActive(); ++frame) {
            const QByteArray payload = randomPayload(&random, random.oneIn(10) ? random.below(20) : 8);
            if (random.oneIn(20))
                upload.timeOver();
            else if (random.oneIn(4))
                upload.handleForeignRequest(payload);
            else
                upload.handleResponse(payload);
        }
        // Whatever came: silence ends it. One wait per attempt, one for another client before each, and those
        // until the line is clear.
        for (int wait = 0; wait < 2 * (1 + 2) + SdoUpload::maximumQuietWaits && upload.isActive(); ++wait) {
            upload.setTime(now += 1000);
            upload.timeOver();
        }
        finished += upload.isActive() ? 0 : 1;
    }
    QCOMPARE(finished, 100000);
}

void tst_SdoFuzz::anyFramesIntoClient()
{
    Random random(4);
    int sent = 0;
    int finished = 0;
    SdoClient client([&sent](const QCanBusFrame &) {
        ++sent;
        return Sending::Written;
    });
    connect(&client, &SdoClient::finished, this, [&finished] { ++finished; });

    constexpr int uploads = 20000;
    for (int i = 0; i < uploads; ++i) {
        const Object &object = objects[random.below(objectCount)];
        client.upload(static_cast<quint8>(random.below(256)), object.key, object.type);
        for (int count = 0; count < 20; ++count) {
            const int size = random.oneIn(4) ? random.below(65) : 8;
            const quint32 base = random.oneIn(2) ? 0x580 : 0x600;
            const quint32 id = random.oneIn(4) ? static_cast<quint32>(random.below(0x800))
                                               : base + static_cast<quint32>(random.below(128));
            QCanBusFrame frame(id, randomPayload(&random, size));
            frame.setExtendedFrameFormat(random.oneIn(50));
            frame.setFrameType(static_cast<QCanBusFrame::FrameType>(random.oneIn(50) ? random.below(5) : 1));
            client.handleFrame(frame);
        }
    }
    client.cancelAll();
    QCOMPARE(finished, uploads);
    QVERIFY(!client.isBusy());
    QVERIFY(sent > 0);
}

void tst_SdoFuzz::anyFramesIntoParsers()
{
    Random random(5);
    HeartbeatConsumer consumer;
    int heartbeats = 0;
    int commands = 0;
    for (int i = 0; i < 500000; ++i) {
        QByteArray payload(random.below(9), '\0');
        for (char &byte : payload)
            byte = static_cast<char>(random.below(256));
        QCanBusFrame frame(static_cast<quint32>(random.oneIn(8) ? 0 : random.below(0x800)), payload);
        frame.setExtendedFrameFormat(random.oneIn(10));
        frame.setFrameType(static_cast<QCanBusFrame::FrameType>(random.oneIn(10) ? random.below(5) : 1));
        consumer.handleFrame(frame);
        if (const std::optional<Heartbeat> heartbeat = parseHeartbeatFrame(frame)) {
            QVERIFY(isNodeId(heartbeat->nodeId));
            ++heartbeats;
        }
        if (const std::optional<NmtMessage> message = parseNmtFrame(frame)) {
            QVERIFY(message->nodeId <= 127);
            ++commands;
        }
    }
    QVERIFY(heartbeats > 0);
    QVERIFY(commands > 0);
    QVERIFY(consumer.activeNodeCount() <= 127);
    QVERIFY(consumer.activeNodeCount() > 0);
}

QTEST_GUILESS_MAIN(tst_SdoFuzz)

#include "tst_sdofuzz.moc"
