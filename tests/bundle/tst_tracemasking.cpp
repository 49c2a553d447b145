// SPDX-License-Identifier: MIT
#include "sdotraffic.h"

#include <bundle/masking/masking.h>
#include <bundle/masking/tracemasking.h>
#include <canopen/sdoframe.h>
#include <snapshot/snapshot.h>

#include <QtEndian>
#include <QtTest>

using Outcome = SdoTransfer::Outcome;
using Protocol = SdoTransfer::Protocol;

namespace {

constexpr quint32 serial = 1031904; // 000FBEE0h
const char serialHex[] = "e0be0f00";
constexpr quint32 request = 0x602;
constexpr quint32 answer = 0x582;
const QByteArray textSerial = QByteArrayLiteral("AB-7654321-XYZ-00042");

/*! Masks a trace as a bundle does. */
Trace masked(Trace trace, Masking *masking, const Snapshot *snapshot = nullptr)
{
    TraceMasking frames;
    if (snapshot != nullptr)
        frames.tell(*snapshot);
    frames.learn(trace, masking);
    frames.mask(&trace, masking);
    return trace;
}

quint32 wordAt(const TraceFrame &frame, int place)
{
    return qFromLittleEndian<quint32>(frame.bytes.data() + place);
}

/*! The bytes of all frames but their first ones, which are the commands of SDO: long values stand in it as a whole. */
QByteArray segmentsOf(const Trace &trace)
{
    QByteArray bytes;
    for (const TraceFrame &frame : trace.frames)
        bytes.append(reinterpret_cast<const char *>(frame.bytes.data()) + 1, qMax(0, frame.length - 1));
    return bytes;
}

/*! Whether both have the same frames but for their data. */
void compareShape(const Trace &a, const Trace &b)
{
    QCOMPARE(a.frames.size(), b.frames.size());
    for (std::size_t i = 0; i < a.frames.size(); ++i) {
        QCOMPARE(a.frames[i].time, b.frames[i].time);
        QCOMPARE(a.frames[i].id, b.frames[i].id);
        QCOMPARE(int(a.frames[i].flags), int(b.frames[i].flags));
        QCOMPARE(int(a.frames[i].length), int(b.frames[i].length));
    }
}

/*! A value of the secret object 1018h.4 that is a text, masked, in the one transfer of \a trace. */
void checkTransfer(const Trace &trace, Protocol protocol, const QByteArray &secret)
{
    Masking masking;
    const Trace result = masked(trace, &masking);
    compareShape(result, trace);
    const std::vector<SdoTransfer> before = transfersOf(trace);
    const std::vector<SdoTransfer> after = transfersOf(result);
    QCOMPARE(before.size(), std::size_t(1));
    QCOMPARE(after.size(), std::size_t(1));
    QCOMPARE(before.front().data, secret);
    QCOMPARE(after.front().protocol, protocol);
    QCOMPARE(after.front().outcome, Outcome::Done);
    QCOMPARE(int(after.front().problems), int(before.front().problems));
    QCOMPARE(after.front().data, masking.value({0x1018, 4}, secret));
    QVERIFY(after.front().data != secret);
    QVERIFY(!segmentsOf(result).contains(secret.left(7)));
    QVERIFY(!segmentsOf(result).contains(secret.right(4)));
}

} // namespace

/*! Serial numbers in the frames of a trace. */
class tst_TraceMasking : public QObject
{
    Q_OBJECT

private slots:
    void expeditedUpload();
    void expeditedDownload();
    void leftoversGo();
    void otherObjectsStay();
    void segmentedUpload();
    void segmentedDownload();
    void repeatedSegment();
    void blockUpload();
    void blockUploadInSeveralBlocks();
    void blockUploadWithLostSegments();
    void blockDownload();
    void wrongChecksumStaysWrong();
    void noChecksumStaysNone();
    void brokenTransfer();
    void segmentThatIsNoPartOfTheValue_data();
    void segmentThatIsNoPartOfTheValue();
    void severalAtOnce();
    void strayFrames_data();
    void strayFrames();
    void mappedIntoAPdo();
    void pdoThatEndsInTheMiddleOfASecret();
    void mappingOfASnapshot();
    void whereverTheNumberStands();
    void settingUpDevices_data();
    void settingUpDevices();
    void numberOfSettingUpIsFoundElsewhere();
    void scannedNumberIsNobodys();
    void revisionOfSettingUpIsNoSecret();
    void sameAsInTheValue();
    void framesWithoutData();
};

void tst_TraceMasking::expeditedUpload()
{
    Trace trace;
    SdoTraffic traffic(&trace, 2);
    traffic.put({0x1018, 4}, QByteArray::fromHex(serialHex));
    traffic.ask("4018100400000000");
    Masking masking;
    const Trace result = masked(trace, &masking);
    compareShape(result, trace);
    QCOMPARE(result.frames[0], trace.frames[0]);
    QCOMPARE(wordAt(result.frames[1], 0), 0x04101843U & 0xFFFFFFFF);
    QCOMPARE(wordAt(result.frames[1], 4), quint32(masking.number(serial, 32)));
    QVERIFY(wordAt(result.frames[1], 4) != serial);
}

void tst_TraceMasking::expeditedDownload()
{
    Trace trace;
    SdoTraffic traffic(&trace, 2);
    traffic.add(request, QByteArrayLiteral("23881f05") + serialHex);
    traffic.add(answer, "60881f0500000000");
    Masking masking;
    const Trace result = masked(trace, &masking);
    QCOMPARE(wordAt(result.frames[0], 4), quint32(masking.number(serial, 32)));
    QCOMPARE(result.frames[1], trace.frames[1]);
}

/*! Behind a value of two bytes stands what was in the device's memory. */
void tst_TraceMasking::leftoversGo()
{
    Trace trace;
    SdoTraffic traffic(&trace, 2);
    traffic.add(request, "4018100400000000");
    traffic.add(answer, "4b1810041234abcd");
    Masking masking;
    const Trace result = masked(trace, &masking);
    QCOMPARE(int(result.frames[1].bytes[6]), 0);
    QCOMPARE(int(result.frames[1].bytes[7]), 0);
}

void tst_TraceMasking::otherObjectsStay()
{
    Trace trace;
    SdoTraffic traffic(&trace, 2);
    traffic.put({0x1018, 1}, QByteArray::fromHex("feff0000"));
    traffic.put({0x1008, 0}, "DX-Pack 36/500");
    traffic.ask("4018100100000000");
    traffic.ask("4008100000000000");
    traffic.ask("6000000000000000");
    traffic.ask("7000000000000000");
    traffic.add(0x182, "1122334455667788");
    Masking masking;
    const Trace result = masked(trace, &masking);
    for (std::size_t i = 0; i < trace.frames.size(); ++i)
        QCOMPARE(result.frames[i], trace.frames[i]);
}

void tst_TraceMasking::segmentedUpload()
{
    Trace trace;
    SdoTraffic traffic(&trace, 2);
    traffic.put({0x1018, 4}, textSerial);
    traffic.ask("4018100400000000");
    traffic.ask("6000000000000000");
    traffic.ask("7000000000000000");
    traffic.ask("6000000000000000");
    checkTransfer(trace, Protocol::Segmented, textSerial);
}

void tst_TraceMasking::segmentedDownload()
{
    Trace trace;
    SdoTraffic traffic(&trace, 2);
    traffic.add(request, "2118100409000000");
    traffic.add(answer, "6018100400000000");
    traffic.add(request, "0041422d31323334"); // "AB-1234"
    traffic.add(answer, "2000000000000000");
    traffic.add(request, "1b35360000000000"); // "56"
    traffic.add(answer, "3000000000000000");
    checkTransfer(trace, Protocol::Segmented, "AB-123456");
}

void tst_TraceMasking::repeatedSegment()
{
    Trace trace;
    SdoTraffic traffic(&trace, 2);
    traffic.add(request, "4018100400000000");
    traffic.add(answer, "4118100409000000");
    traffic.add(request, "6000000000000000");
    traffic.add(answer, "0041422d31323334");
    traffic.add(answer, "0041422d31323334"); // once more
    traffic.add(request, "7000000000000000");
    traffic.add(answer, "1b35360000000000");
    checkTransfer(trace, Protocol::Segmented, "AB-123456");
    Masking masking;
    const Trace result = masked(trace, &masking);
    QCOMPARE(result.frames[3].bytes, result.frames[4].bytes);
}

void tst_TraceMasking::blockUpload()
{
    Trace trace;
    SdoTraffic traffic(&trace, 2);
    traffic.put({0x1018, 4}, textSerial);
    traffic.ask("a41810047f000000");
    traffic.ask("a300000000000000");
    traffic.ask("a2037f0000000000");
    traffic.ask("a100000000000000");
    checkTransfer(trace, Protocol::Block, textSerial);
}

void tst_TraceMasking::blockUploadInSeveralBlocks()
{
    const QByteArray secret = textSerial + textSerial;
    Trace trace;
    SdoTraffic traffic(&trace, 2);
    traffic.put({0x1018, 4}, secret);
    traffic.ask("a418100404000000"); // blocks of four segments
    traffic.ask("a300000000000000");
    traffic.ask("a204040000000000");
    traffic.ask("a202040000000000");
    traffic.ask("a100000000000000");
    checkTransfer(trace, Protocol::Block, secret);
}

void tst_TraceMasking::blockUploadWithLostSegments()
{
    Trace trace;
    SdoTraffic traffic(&trace, 2);
    traffic.put({0x1018, 4}, textSerial + QByteArrayLiteral("abcdefgh"));
    traffic.ask("a418100403000000");
    traffic.ask("a300000000000000");
    traffic.ask("a201030000000000"); // the client has but the first of three
    traffic.ask("a203030000000000");
    traffic.ask("a100000000000000");
    checkTransfer(trace, Protocol::Block, textSerial + QByteArrayLiteral("abcdefgh"));
}

void tst_TraceMasking::blockDownload()
{
    Trace trace;
    SdoTraffic traffic(&trace, 2);
    traffic.add(request, "c61810040a000000");
    traffic.add(answer, "a418100402000000");
    traffic.add(request, "0141422d31323334");
    traffic.add(request, "8235363700000000");
    traffic.add(answer, "a202020000000000");
    const quint16 crc = CanOpen::sdoBlockCrc("AB-1234567");
    traffic.add(request, CanOpen::makeSdoBlockEnd({4, crc}).toHex().replace(0, 2, "d1"));
    traffic.add(answer, "a100000000000000");
    checkTransfer(trace, Protocol::Block, "AB-1234567");
}

void tst_TraceMasking::wrongChecksumStaysWrong()
{
    Trace trace;
    SdoTraffic traffic(&trace, 2);
    traffic.put({0x1018, 4}, textSerial);
    traffic.ask("a41810047f000000");
    traffic.ask("a300000000000000");
    traffic.ask("a2037f0000000000");
    traffic.ask("a100000000000000");
    TraceFrame &end = trace.frames[trace.frames.size() - 2];
    QCOMPARE(int(end.bytes[0] & 0xE3), 0xC1);
    end.bytes[1] ^= 0x10;
    Masking masking;
    const std::vector<SdoTransfer> after = transfersOf(masked(trace, &masking));
    QVERIFY(after.front().has(SdoTransfer::WrongChecksum));
    QVERIFY(!segmentsOf(masked(trace, &masking)).contains("7654321"));
}

void tst_TraceMasking::noChecksumStaysNone()
{
    Trace trace;
    SdoTraffic traffic(&trace, 2);
    traffic.put({0x1018, 4}, textSerial);
    traffic.ask("a01810047f000000");
    traffic.ask("a300000000000000");
    traffic.ask("a2037f0000000000");
    traffic.ask("a100000000000000");
    checkTransfer(trace, Protocol::Block, textSerial);
    Masking masking;
    const Trace result = masked(trace, &masking);
    const TraceFrame &end = result.frames[result.frames.size() - 2];
    QCOMPARE(int(end.bytes[1]), 0);
    QCOMPARE(int(end.bytes[2]), 0);
}

/*! The client gives up in the middle. */
void tst_TraceMasking::brokenTransfer()
{
    Trace trace;
    SdoTraffic traffic(&trace, 2);
    traffic.put({0x1018, 4}, textSerial);
    traffic.ask("4018100400000000");
    traffic.ask("6000000000000000");
    traffic.add(request, "8018100400000405");
    Masking masking;
    const Trace result = masked(trace, &masking);
    compareShape(result, trace);
    QVERIFY(segmentsOf(trace).contains("AB-7654"));
    QVERIFY(!segmentsOf(result).contains("7654"));
    QCOMPARE(transfersOf(result).front().outcome, Outcome::AbortedByClient);
    QCOMPARE(result.frames.back(), trace.frames.back());
}

void tst_TraceMasking::segmentThatIsNoPartOfTheValue_data()
{
    QTest::addColumn<QByteArray>("asked");
    QTest::addColumn<QByteArray>("answered");
    QTest::addColumn<QByteArray>("asksOn");
    QTest::addColumn<QByteArray>("segment"); // "B-76543"

    QTest::newRow("wrong toggle bit") << QByteArray("4018100400000000") << QByteArray("4118100409000000")
                                      << QByteArray("6000000000000000") << QByteArray("10422d3736353433");
    QTest::newRow("the one before is lost")
        << QByteArray("a41810047f000000") << QByteArray("c61810040e000000") << QByteArray("a300000000000000")
        << QByteArray("02422d3736353433");
    QTest::newRow("of a text") << QByteArray("a40810007f000000") << QByteArray("c60810000e000000")
                               << QByteArray("a300000000000000") << QByteArray("02422d3736353433");
}

void tst_TraceMasking::segmentThatIsNoPartOfTheValue()
{
    QFETCH(QByteArray, asked);
    QFETCH(QByteArray, answered);
    QFETCH(QByteArray, asksOn);
    QFETCH(QByteArray, segment);
    Trace trace;
    SdoTraffic traffic(&trace, 2);
    traffic.add(request, asked);
    traffic.add(answer, answered);
    traffic.add(request, asksOn);
    traffic.add(answer, segment);
    Masking masking;
    const Trace result = masked(trace, &masking);
    compareShape(result, trace);
    QVERIFY(segmentsOf(trace).contains("B-76543"));
    QVERIFY(!segmentsOf(result).contains("76543"));
    QCOMPARE(int(result.frames.back().bytes[0]), int(trace.frames.back().bytes[0]));
}

/*! The frames of two nodes stand among each other. */
void tst_TraceMasking::severalAtOnce()
{
    Trace trace;
    SdoTraffic one(&trace, 2);
    SdoTraffic other(&trace, 3);
    one.put({0x1018, 4}, textSerial);
    other.put({0x1018, 4}, "ZZ-9999999");
    one.ask("4018100400000000");
    other.ask("4018100400000000");
    for (const char *segment : {"6000000000000000", "7000000000000000"}) {
        one.ask(segment);
        other.ask(segment);
    }
    one.ask("6000000000000000");
    Masking masking;
    const std::vector<SdoTransfer> after = transfersOf(masked(trace, &masking));
    QCOMPARE(after.size(), std::size_t(2));
    QCOMPARE(after[0].data, masking.value({0x1018, 4}, "ZZ-9999999"));
    QCOMPARE(after[1].data, masking.value({0x1018, 4}, textSerial));
}

void tst_TraceMasking::strayFrames_data()
{
    QTest::addColumn<quint32>("id");
    QTest::addColumn<QByteArray>("frame");
    QTest::addColumn<QByteArray>("masked");
    QTest::newRow("segment of an upload")
        << answer << QByteArray("0041422d31323334") << QByteArray("0000000000000000");
    QTest::newRow("segment of a download")
        << request << QByteArray("1141422d31323334") << QByteArray("1100000000000000");
    QTest::newRow("segment of a block")
        << answer << QByteArray("8535363700000000") << QByteArray("8500000000000000");
    QTest::newRow("abort") << answer << QByteArray("8018100400000405") << QByteArray("8018100400000405");
    QTest::newRow("end of a write") << answer << QByteArray("6018100400000000")
                                    << QByteArray("6018100400000000");
    QTest::newRow("answer of another object")
        << answer << QByteArray("4b64610210270000") << QByteArray("4b64610210270000");
}

void tst_TraceMasking::strayFrames()
{
    QFETCH(quint32, id);
    QFETCH(QByteArray, frame);
    QFETCH(QByteArray, masked);
    Trace trace;
    trace.frames.push_back(frameAt(0, id, frame));
    Masking masking;
    QCOMPARE(::masked(trace, &masking).frames.front(), frameAt(0, id, masked));
}

/*! The trace itself tells the mapping; the number stands in the bits 8 to 39. */
void tst_TraceMasking::mappedIntoAPdo()
{
    Trace trace;
    SdoTraffic traffic(&trace, 2);
    traffic.put({0x1800, 1}, QByteArray::fromHex("82010000"));
    traffic.put({0x1A00, 0}, QByteArray::fromHex("02"));
    traffic.put({0x1A00, 1}, QByteArray::fromHex("08000060"));
    traffic.put({0x1A00, 2}, QByteArray::fromHex("20041810"));
    for (const char *question :
         {"4000180100000000", "40001a0000000000", "40001a0100000000", "40001a0200000000"})
        traffic.ask(question);
    traffic.add(0x182, "55070000006677");
    Masking masking;
    const Trace result = masked(trace, &masking);
    const TraceFrame &pdo = result.frames.back();
    QCOMPARE(int(pdo.bytes[0]), 0x55);
    QCOMPARE(wordAt(pdo, 1), quint32(masking.number(7, 32))); // too small to be looked for anywhere
    QVERIFY(wordAt(pdo, 1) != 7);
    QCOMPARE(int(pdo.bytes[5]), 0x66);
    QCOMPARE(int(pdo.bytes[6]), 0x77);
}

/*! Of node 2: its PDO 1 carries its serial number, behind so many bits of nothing. */
Snapshot snapshotWithPdo(uint bitsBefore)
{
    SnapshotNode node;
    node.id = 2;
    const auto put = [&node](CanOpen::ObjectKey key, uint value) {
        SnapshotEntry entry;
        entry.key = key;
        entry.value = value;
        node.insert(entry);
    };
    put({0x1800, 1}, 0x182);
    put({0x1A00, 0}, bitsBefore > 0 ? 2 : 1);
    put({0x1A00, quint8(bitsBefore > 0 ? 2 : 1)}, 0x10180420);
    if (bitsBefore > 0)
        put({0x1A00, 1}, 0x60410000 + bitsBefore);
    Snapshot snapshot;
    snapshot.nodes.append(node);
    return snapshot;
}

/*! Of a device that sends less than it says: three bytes of a number tell most of it. */
void tst_TraceMasking::pdoThatEndsInTheMiddleOfASecret()
{
    const Snapshot snapshot = snapshotWithPdo(32);
    Trace trace;
    trace.frames.push_back(frameAt(0, 0x182, "11223344e0be0f"));
    trace.frames.push_back(frameAt(1, 0x182, "11223344"));
    Masking masking;
    const Trace result = masked(trace, &masking, &snapshot);
    QCOMPARE(result.frames[0], frameAt(0, 0x182, "11223344000000"));
    QCOMPARE(result.frames[1], trace.frames[1]);
}

void tst_TraceMasking::mappingOfASnapshot()
{
    const Snapshot snapshot = snapshotWithPdo(0);
    Trace trace;
    trace.frames.push_back(frameAt(0, 0x182, "09000000"));
    Masking masking;
    QCOMPARE(wordAt(masked(trace, &masking, &snapshot).frames[0], 0), quint32(masking.number(9, 32)));
}

/*! In a frame of which nothing is known. */
void tst_TraceMasking::whereverTheNumberStands()
{
    Trace trace;
    trace.frames.push_back(frameAt(0, 0x3A5, QByteArrayLiteral("ff01") + serialHex + "7a"));
    trace.frames.push_back(frameAt(1, 0x1234567, QByteArray(serialHex), TraceFrame::Extended));
    trace.frames.push_back(frameAt(2, 0x3A5, "e0be0f01"));
    trace.frames.push_back(frameAt(3, 0x3A5, "ff000fbee0ff")); // the other byte first
    Masking masking;
    masking.learnNumber(serial);
    const Trace result = masked(trace, &masking);
    const auto number = quint32(masking.number(serial, 32));
    QCOMPARE(wordAt(result.frames[0], 2), number);
    QCOMPARE(int(result.frames[0].bytes[1]), 0x01);
    QCOMPARE(int(result.frames[0].bytes[6]), 0x7A);
    QCOMPARE(wordAt(result.frames[1], 0), number);
    QCOMPARE(result.frames[2], trace.frames[2]);
    QCOMPARE(qFromBigEndian<quint32>(result.frames[3].bytes.data() + 1), number);
    QCOMPARE(int(result.frames[3].bytes[0]), 0xFF);
    QCOMPARE(int(result.frames[3].bytes[5]), 0xFF);
}

void tst_TraceMasking::settingUpDevices_data()
{
    QTest::addColumn<quint32>("id");
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QByteArray>("rest");
    QTest::addColumn<bool>("isMasked");
    QTest::newRow("select") << 0x7E5U << QByteArray("43") << QByteArray("000000") << true;
    QTest::newRow("identify, serial number from")
        << 0x7E5U << QByteArray("4a") << QByteArray("000000") << true;
    QTest::newRow("identify, serial number to") << 0x7E5U << QByteArray("4b") << QByteArray("000000") << true;
    QTest::newRow("identify, revision from") << 0x7E5U << QByteArray("48") << QByteArray("000000") << false;
    QTest::newRow("identify, revision to") << 0x7E5U << QByteArray("49") << QByteArray("000000") << false;
    QTest::newRow("answer, revision") << 0x7E4U << QByteArray("5c") << QByteArray("000000") << false;
    QTest::newRow("answer") << 0x7E4U << QByteArray("5d") << QByteArray("000000") << true;
    QTest::newRow("fastscan, serial number") << 0x7E5U << QByteArray("51") << QByteArray("000303") << true;
    QTest::newRow("fastscan, product") << 0x7E5U << QByteArray("51") << QByteArray("000101") << false;
    QTest::newRow("select, vendor") << 0x7E5U << QByteArray("40") << QByteArray("000000") << false;
    QTest::newRow("another identifier") << 0x7E6U << QByteArray("43") << QByteArray("000000") << false;
}

void tst_TraceMasking::settingUpDevices()
{
    QFETCH(quint32, id);
    QFETCH(QByteArray, command);
    QFETCH(QByteArray, rest);
    QFETCH(bool, isMasked);
    Trace trace;
    trace.frames.push_back(frameAt(0, id, command + "22110000" + rest));
    Masking masking;
    const TraceFrame frame = masked(trace, &masking).frames.front();
    QCOMPARE(wordAt(frame, 1), isMasked ? quint32(masking.number(0x1122, 32)) : 0x1122U);
    QCOMPARE(frame.bytes[0], trace.frames[0].bytes[0]);
    QCOMPARE(frame.bytes[6], trace.frames[0].bytes[6]);
}

/*! Learnt from a frame that is not the first one. */
void tst_TraceMasking::numberOfSettingUpIsFoundElsewhere()
{
    Trace trace;
    trace.frames.push_back(frameAt(0, 0x7E5, "5d00000000000000"));
    trace.frames.push_back(frameAt(1, 0x7E4, QByteArrayLiteral("5d") + serialHex + "000000"));
    trace.frames.push_back(frameAt(2, 0x3A5, QByteArrayLiteral("ff") + serialHex));
    Masking masking;
    const Trace result = masked(trace, &masking);
    QCOMPARE(wordAt(result.frames[2], 1), quint32(masking.number(serial, 32)));
    QVERIFY(wordAt(result.frames[2], 1) != serial);
}

/*! Otherwise the revision that a bundle tells would be a wrong one. */
void tst_TraceMasking::revisionOfSettingUpIsNoSecret()
{
    Trace trace;
    trace.frames.push_back(frameAt(0, 0x7E5, "4902000100000000"));
    SdoTraffic traffic(&trace, 2);
    traffic.put({0x1018, 3}, QByteArray::fromHex("02000100"));
    traffic.ask("4018100300000000");
    Masking masking;
    const Trace result = masked(trace, &masking);
    for (std::size_t i = 0; i < trace.frames.size(); ++i)
        QCOMPARE(result.frames[i], trace.frames[i]);
}

/*! Fastscan asks for one bit after the other; what it has so far is no device's. */
void tst_TraceMasking::scannedNumberIsNobodys()
{
    Trace trace;
    trace.frames.push_back(frameAt(0, 0x7E5, QByteArrayLiteral("51") + serialHex + "000303"));
    trace.frames.push_back(frameAt(1, 0x3A5, QByteArrayLiteral("ff") + serialHex));
    Masking masking;
    QCOMPARE(masked(trace, &masking).frames[1], trace.frames[1]);
}

/*! As a snapshot has it. */
void tst_TraceMasking::sameAsInTheValue()
{
    Trace trace;
    SdoTraffic traffic(&trace, 2);
    traffic.put({0x1018, 4}, QByteArray::fromHex(serialHex));
    traffic.server().setSegmented(true);
    traffic.ask("4018100400000000");
    traffic.ask("6000000000000000");
    Masking masking;
    const std::vector<SdoTransfer> after = transfersOf(masked(trace, &masking));
    QCOMPARE(after.front().protocol, Protocol::Segmented);
    QCOMPARE(after.front().data, masking.value({0x1018, 4}, QByteArray::fromHex(serialHex)));
}

void tst_TraceMasking::framesWithoutData()
{
    Trace trace;
    trace.frames.push_back(frameAt(0, 0x182, "", TraceFrame::Remote));
    trace.frames.back().length = 8;
    trace.frames.push_back(frameAt(1, 0x80, "0000000000000000", TraceFrame::Error));
    trace.frames.push_back(frameAt(2, 0x80, ""));
    Masking masking;
    masking.learnNumber(serial);
    const Trace result = masked(trace, &masking);
    for (std::size_t i = 0; i < trace.frames.size(); ++i)
        QCOMPARE(result.frames[i], trace.frames[i]);
}

QTEST_GUILESS_MAIN(tst_TraceMasking)
#include "tst_tracemasking.moc"
