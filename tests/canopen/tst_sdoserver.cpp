// SPDX-License-Identifier: MIT
#include <canopen/sdoserver.h>

#include <QtTest>

#include <random>

Q_DECLARE_METATYPE(QCanBusFrame)

using namespace CanOpen;

class tst_SdoServer : public QObject
{
    Q_OBJECT

private slots:
    void ignoresWhatIsNotARequest_data();
    void ignoresWhatIsNotARequest();
    void answers_data();
    void answers();
    void segmentedUpload();
    void segmentedUploadOfSevenBytes();
    void segmentedUploadOfASmallValue();
    void emptyTextIsOneEmptySegment();
    void uploadIsOfTheValueAtItsBegin();
    void toggleNotAlternatedEndsUpload();
    void clientAbortEndsTransfer();
    void newInitiateReplacesHalfOpenTransfer();
    void resetDropsTransfer();
    void expeditedDownload_data();
    void expeditedDownload();
    void segmentedDownload();
    void segmentedDownloadWithoutSize();
    void segmentedDownloadAborts_data();
    void segmentedDownloadAborts();
    void blockUpload();
    void blockUploadWithoutCrc();
    void blockUploadResumesAfterEarlyAcknowledge();
    void blockUploadRefusals_data();
    void blockUploadRefusals();
    void blockUploadSwitchesProtocolBelowThreshold();
    void chanceFramesNeverBreakIt();
};

namespace {

constexpr quint8 nodeId = 5;

ObjectDictionary makeDictionary()
{
    ObjectDictionary dictionary;
    const auto add = [&dictionary](ObjectKey key, DataType type, Access access, const char *hex) {
        ObjectEntry entry;
        entry.type = type;
        entry.access = access;
        entry.data = QByteArray::fromHex(hex);
        dictionary.insert(key, entry);
    };
    add({0x1000, 0}, DataType::Unsigned32, Access::ReadOnly, "c6010000");
    add({0x1001, 0}, DataType::Unsigned8, Access::ReadOnly, "81");
    add({0x1018, 0}, DataType::Unsigned8, Access::Constant, "01");
    add({0x1018, 1}, DataType::Unsigned32, Access::ReadOnly, "feff0000");
    add({0x6042, 1}, DataType::Integer16, Access::ReadOnly, "f6ff");
    add({0x2000, 0}, DataType::Unsigned16, Access::ReadWrite, "0000");
    add({0x2001, 0}, DataType::Unsigned8, Access::WriteOnly, "00");
    add({0x2002, 0}, DataType::VisibleString, Access::ReadWrite, "");
    add({0x2003, 0}, DataType::Unsigned64, Access::ReadWrite, "0000000000000000");
    add({0x2005, 0}, DataType::Boolean, Access::ReadWrite, "00");
    add({0x2006, 0}, DataType::VisibleString, Access::ReadOnly, "414243");
    ObjectEntry limited;
    limited.type = DataType::Integer16;
    limited.access = Access::ReadWrite;
    limited.data = QByteArray::fromHex("0000");
    limited.lowLimit = -10;
    limited.highLimit = 10;
    dictionary.insert({0x2004, 0}, limited);
    ObjectEntry text;
    text.type = DataType::VisibleString;
    text.access = Access::ReadOnly;
    text.data = QByteArrayLiteral("Pedelec controller, 36 V");
    dictionary.insert({0x1008, 0}, text);
    ObjectEntry seven = text;
    seven.data = QByteArrayLiteral("DX-2026");
    dictionary.insert({0x1009, 0}, seven);
    ObjectEntry big = text;
    big.type = DataType::Domain;
    big.data.clear();
    for (int byte = 0; byte < 30; ++byte)
        big.data.append(static_cast<char>(byte));
    dictionary.insert({0x3000, 0}, big);
    return dictionary;
}

struct Bench
{
    ObjectDictionary dictionary = makeDictionary();
    SdoServer server{nodeId, &dictionary};

    /*! The answers to one request, as hexadecimal digits, separated by blanks. */
    QByteArray ask(const char *hex)
    {
        QByteArrayList answers;
        const auto frames = server.handleFrame(QCanBusFrame(0x605, QByteArray::fromHex(hex)));
        for (const QCanBusFrame &frame : frames) {
            if (frame.frameId() != 0x585 || frame.frameType() != QCanBusFrame::DataFrame)
                return QByteArrayLiteral("wrong frame");
            answers.append(frame.payload().toHex());
        }
        return answers.join(' ');
    }
};

} // namespace

void tst_SdoServer::ignoresWhatIsNotARequest_data()
{
    QTest::addColumn<QCanBusFrame>("frame");

    const QByteArray request = QByteArray::fromHex("4000100000000000");
    QTest::newRow("another node") << QCanBusFrame(0x606, request);
    QTest::newRow("an answer") << QCanBusFrame(0x585, request);
    QTest::newRow("seven bytes") << QCanBusFrame(0x605, request.left(7));
    QTest::newRow("no bytes") << QCanBusFrame(0x605, QByteArray());
    QCanBusFrame remote(0x605, request);
    remote.setFrameType(QCanBusFrame::RemoteRequestFrame);
    QTest::newRow("remote frame") << remote;
    QCanBusFrame extended(0x605, request);
    extended.setExtendedFrameFormat(true);
    QTest::newRow("extended identifier") << extended;
}

void tst_SdoServer::ignoresWhatIsNotARequest()
{
    QFETCH(QCanBusFrame, frame);
    Bench bench;
    QVERIFY(bench.server.handleFrame(frame).isEmpty());
}

void tst_SdoServer::answers_data()
{
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<QByteArray>("answer");

    const auto row = [](const char *name, const char *request, const char *answer) {
        QTest::newRow(name) << QByteArray(request) << QByteArray(answer);
    };
    row("upload of four bytes", "4000100000000000", "43001000c6010000");
    row("upload of three bytes", "4006200000000000", "4706200041424300");
    row("upload of two bytes", "4042600100000000", "4b426001f6ff0000");
    row("upload of one byte", "4001100000000000", "4f01100081000000");
    row("reserved bits of the request", "5f01100000000000", "4f01100081000000");
    row("upload of eight bytes", "4003200000000000", "4103200008000000");
    row("object does not exist", "4000500000000000", "8000500000000206");
    row("sub-index does not exist", "4018100200000000", "8018100211000906");
    row("sub-index of a variable", "4000100100000000", "8000100111000906");
    row("write only", "4001200000000000", "8001200001000106");
    row("download to a read only object", "2301100001000000", "8001100002000106");
    row("download to a constant", "2f18100001000000", "8018100002000106");
    row("download to no object", "2f00500001000000", "8000500000000206");
    row("download to no sub-index", "2f00200101000000", "8000200111000906");
    row("upload segment without a transfer", "6000000000000000", "8000000001000405");
    row("download segment without a transfer", "0000000000000000", "8000000001000405");
    row("block download", "c000200000000000", "8000200001000405");
    row("unknown specifier", "e000200000000000", "8000200001000405");
    row("block acknowledge without a transfer", "a200000000000000", "8000000001000405");
    row("abort without a transfer", "8000200000000405", "");
}

void tst_SdoServer::answers()
{
    QFETCH(QByteArray, request);
    QFETCH(QByteArray, answer);
    Bench bench;
    QCOMPARE(bench.ask(request.constData()), answer);
}

void tst_SdoServer::segmentedUpload()
{
    Bench bench; // 24 bytes
    QCOMPARE(bench.ask("4008100000000000"), QByteArray("4108100018000000"));
    QCOMPARE(bench.ask("6000000000000000"), QByteArray("00") + QByteArray("Pedelec").toHex());
    QCOMPARE(bench.ask("7000000000000000"), QByteArray("10") + QByteArray(" contro").toHex());
    QCOMPARE(bench.ask("6000000000000000"), QByteArray("00") + QByteArray("ller, 3").toHex());
    QCOMPARE(bench.ask("7000000000000000"), QByteArray("19") + QByteArray("6 V").toHex() + "00000000");
    QCOMPARE(bench.ask("6000000000000000"), QByteArray("8000000001000405"));
}

void tst_SdoServer::segmentedUploadOfSevenBytes()
{
    Bench bench;
    QCOMPARE(bench.ask("4009100000000000"), QByteArray("4109100007000000"));
    QCOMPARE(bench.ask("6000000000000000"), QByteArray("01") + QByteArray("DX-2026").toHex());
}

void tst_SdoServer::segmentedUploadOfASmallValue()
{
    Bench bench;
    const QByteArray expedited = bench.ask("4000100000000000");
    QVERIFY(expedited.startsWith("43001000"));
    bench.server.setSegmented(true);
    QCOMPARE(bench.ask("4000100000000000"), QByteArray("4100100004000000"));
    QCOMPARE(bench.ask("6000000000000000"), "07" + expedited.mid(8) + "000000");
}

void tst_SdoServer::emptyTextIsOneEmptySegment()
{
    Bench bench;
    QCOMPARE(bench.ask("4002200000000000"), QByteArray("4102200000000000"));
    QCOMPARE(bench.ask("6000000000000000"), QByteArray("0f00000000000000"));
}

void tst_SdoServer::uploadIsOfTheValueAtItsBegin()
{
    Bench bench;
    bench.ask("4009100000000000");
    bench.dictionary.setData({0x1009, 0}, QByteArrayLiteral("changed"));
    QCOMPARE(bench.ask("6000000000000000"), QByteArray("01") + QByteArray("DX-2026").toHex());
}

void tst_SdoServer::toggleNotAlternatedEndsUpload()
{
    Bench bench;
    bench.ask("4008100000000000");
    bench.ask("6000000000000000");
    QCOMPARE(bench.ask("6000000000000000"), QByteArray("8008100000000305"));
    QCOMPARE(bench.ask("7000000000000000"), QByteArray("8000000001000405"));
}

void tst_SdoServer::clientAbortEndsTransfer()
{
    Bench bench;
    bench.ask("4008100000000000");
    QCOMPARE(bench.ask("8008100000000405"), QByteArray());
    QCOMPARE(bench.ask("6000000000000000"), QByteArray("8000000001000405"));
}

void tst_SdoServer::newInitiateReplacesHalfOpenTransfer()
{
    Bench bench;
    bench.ask("4008100000000000");
    bench.ask("6000000000000000");
    QCOMPARE(bench.ask("4009100000000000"), QByteArray("4109100007000000"));
    QCOMPARE(bench.ask("6000000000000000"), QByteArray("01") + QByteArray("DX-2026").toHex());

    bench.ask("2102200010000000");
    QCOMPARE(bench.ask("4001100000000000"), QByteArray("4f01100081000000"));
    QCOMPARE(bench.ask("0000000000000000"), QByteArray("8000000001000405"));
}

void tst_SdoServer::resetDropsTransfer()
{
    Bench bench;
    bench.ask("4008100000000000");
    bench.server.reset();
    QCOMPARE(bench.ask("6000000000000000"), QByteArray("8000000001000405"));
}

void tst_SdoServer::expeditedDownload_data()
{
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<int>("index");
    QTest::addColumn<QByteArray>("data");

    const auto row
        = [](const char *name, const char *request, const char *answer, int index, const char *data) {
              QTest::newRow(name) << QByteArray(request) << QByteArray(answer) << index << QByteArray(data);
          };
    row("two bytes", "2b00200034120000", "6000200000000000", 0x2000, "3412");
    row("size not indicated", "2200200034120000", "6000200000000000", 0x2000, "3412");
    row("to a write only object", "2f01200007000000", "6001200000000000", 0x2001, "07");
    row("length too high", "2300200034120000", "8000200012000706", 0x2000, "0000");
    row("length too low", "2f00200034000000", "8000200013000706", 0x2000, "0000");
    row("at the high limit", "2b0420000a000000", "6004200000000000", 0x2004, "0a00");
    row("above the high limit", "2b0420000b000000", "8004200031000906", 0x2004, "0000");
    row("at the low limit", "2b042000f6ff0000", "6004200000000000", 0x2004, "f6ff");
    row("below the low limit", "2b042000f5ff0000", "8004200032000906", 0x2004, "0000");
    row("true", "2f05200001000000", "6005200000000000", 0x2005, "01");
    row("two is no boolean", "2f05200002000000", "8005200031000906", 0x2005, "00");
    row("text", "2702200041424300", "6002200000000000", 0x2002, "414243");
}

void tst_SdoServer::expeditedDownload()
{
    QFETCH(QByteArray, request);
    QFETCH(QByteArray, answer);
    QFETCH(int, index);
    QFETCH(QByteArray, data);
    Bench bench;
    QCOMPARE(bench.ask(request.constData()), answer);
    QCOMPARE(bench.dictionary.find({static_cast<quint16>(index), 0})->data.toHex(), data);
}

void tst_SdoServer::segmentedDownload()
{
    Bench bench;
    QCOMPARE(bench.ask("210220000a000000"), QByteArray("6002200000000000"));
    QCOMPARE(bench.ask("0041424344454647"), QByteArray("2000000000000000"));
    QCOMPARE(bench.dictionary.find({0x2002, 0})->data, QByteArray());
    QCOMPARE(bench.ask("1948494a00000000"), QByteArray("3000000000000000"));
    QCOMPARE(bench.dictionary.find({0x2002, 0})->data, QByteArray("ABCDEFGHIJ"));
}

void tst_SdoServer::segmentedDownloadWithoutSize()
{
    Bench bench;
    QCOMPARE(bench.ask("2003200000000000"), QByteArray("6003200000000000"));
    QCOMPARE(bench.ask("0001020304050607"), QByteArray("2000000000000000"));
    QCOMPARE(bench.ask("1d08000000000000"), QByteArray("3000000000000000"));
    QCOMPARE(bench.dictionary.find({0x2003, 0})->data.toHex(), QByteArray("0102030405060708"));
}

void tst_SdoServer::segmentedDownloadAborts_data()
{
    QTest::addColumn<QByteArrayList>("requests");
    QTest::addColumn<QByteArray>("lastAnswer");

    const auto row = [](const char *name, const QByteArrayList &requests, const char *answer) {
        QTest::newRow(name) << requests << QByteArray(answer);
    };
    row("indicated size too high", {"2103200009000000"}, "8003200012000706");
    row("indicated size too low", {"2103200007000000"}, "8003200013000706");
    row("4 GB announced", {"21022000ffffffff"}, "8002200005000405");
    row("more than the type takes", {"2003200000000000", "0001020304050607", "1b08090000000000"},
        "8003200012000706");
    row("less than the type takes", {"2003200000000000", "0101020304050607"}, "8003200013000706");
    row("more than announced", {"2102200002000000", "0941424300000000"}, "8002200012000706");
    row("less than announced", {"2102200004000000", "0941424300000000"}, "8002200013000706");
    row("toggle not alternated", {"2102200020000000", "0041424344454647", "0041424344454647"},
        "8002200000000305");
    row("first toggle set", {"2102200020000000", "1041424344454647"}, "8002200000000305");
    row("upload segment instead", {"2102200020000000", "6000000000000000"}, "8002200001000405");
    row("download segment in an upload", {"4008100000000000", "0041424344454647"}, "8008100001000405");
    row("value above the limit", {"2004200000000000", "0b0b000000000000"}, "8004200031000906");
}

void tst_SdoServer::segmentedDownloadAborts()
{
    QFETCH(QByteArrayList, requests);
    QFETCH(QByteArray, lastAnswer);
    Bench bench;
    QByteArray answer;
    for (const QByteArray &request : requests)
        answer = bench.ask(request.constData());
    QCOMPARE(answer, lastAnswer);
    QCOMPARE(bench.dictionary.find({0x2002, 0})->data, QByteArray());
    QCOMPARE(bench.dictionary.find({0x2003, 0})->data, QByteArray(8, '\0'));
    QCOMPARE(bench.dictionary.find({0x2004, 0})->data, QByteArray(2, '\0'));
    QCOMPARE(bench.ask("4001100000000000"), QByteArray("4f01100081000000"));
}

void tst_SdoServer::blockUpload()
{
    Bench bench; // 30 bytes: five segments, two bytes in the last
    QCOMPARE(bench.ask("a400300003000000"), QByteArray("c60030001e000000"));
    QCOMPARE(bench.ask("a300000000000000"), QByteArray("0100010203040506 020708090a0b0c0d 030e0f1011121314"));
    QCOMPARE(bench.ask("a203030000000000"), QByteArray("0115161718191a1b 821c1d0000000000"));
    // CRC-16 of bytes 0 to 1Dh, polynomial 1021h, start value 0
    QCOMPARE(bench.ask("a202030000000000"), QByteArray("d5111f0000000000"));
    QCOMPARE(bench.ask("a100000000000000"), QByteArray());
    QCOMPARE(bench.ask("a202030000000000"), QByteArray("8000000001000405"));
}

void tst_SdoServer::blockUploadWithoutCrc()
{
    Bench bench;
    QCOMPARE(bench.ask("a00030007f000000"), QByteArray("c60030001e000000"));
    bench.ask("a300000000000000");
    QCOMPARE(bench.ask("a2057f0000000000"), QByteArray("d500000000000000"));
}

void tst_SdoServer::blockUploadResumesAfterEarlyAcknowledge()
{
    Bench bench;
    bench.ask("a400300003000000");
    bench.ask("a300000000000000");
    // Only the first of three segments has arrived; the next block has two.
    QCOMPARE(bench.ask("a201020000000000"), QByteArray("010708090a0b0c0d 020e0f1011121314"));
    // None has arrived.
    QCOMPARE(bench.ask("a200030000000000"), QByteArray("010708090a0b0c0d 020e0f1011121314 0315161718191a1b"));
    QCOMPARE(bench.ask("a203030000000000"), QByteArray("811c1d0000000000"));
    // The last one is lost.
    QCOMPARE(bench.ask("a200010000000000"), QByteArray("811c1d0000000000"));
    QCOMPARE(bench.ask("a201030000000000").left(2), QByteArray("d5"));
}

void tst_SdoServer::blockUploadRefusals_data()
{
    QTest::addColumn<QByteArrayList>("requests");
    QTest::addColumn<QByteArray>("lastAnswer");

    const auto row = [](const char *name, const QByteArrayList &requests, const char *answer) {
        QTest::newRow(name) << requests << QByteArray(answer);
    };
    const QByteArray initiate = "a400300003000000";
    const QByteArray start = "a300000000000000";
    row("block size 0", {"a400300000000000"}, "8000300002000405");
    row("block size 128", {"a400300080000000"}, "8000300002000405");
    row("no such object", {"a400500003000000"}, "8000500000000206");
    row("no such sub-index", {"a400300103000000"}, "8000300111000906");
    row("write only", {"a401200003000000"}, "8001200001000106");
    row("next block size 0", {initiate, start, "a203000000000000"}, "8000300002000405");
    row("next block size 128", {initiate, start, "a203800000000000"}, "8000300002000405");
    row("more acknowledged than sent", {initiate, start, "a204030000000000"}, "8000300003000405");
    row("start twice", {initiate, start, start}, "8000300001000405");
    row("acknowledge before the start", {initiate, "a203030000000000"}, "8000300001000405");
    row("end response in the middle", {initiate, start, "a100000000000000"}, "8000300001000405");
    row("upload segment in the middle", {initiate, start, "6000000000000000"}, "8000300001000405");
}

void tst_SdoServer::blockUploadRefusals()
{
    QFETCH(QByteArrayList, requests);
    QFETCH(QByteArray, lastAnswer);
    Bench bench;
    QByteArray answer;
    for (const QByteArray &request : requests)
        answer = bench.ask(request.constData());
    QCOMPARE(answer, lastAnswer);
    QCOMPARE(bench.ask("4001100000000000"), QByteArray("4f01100081000000"));
}

void tst_SdoServer::blockUploadSwitchesProtocolBelowThreshold()
{
    Bench bench;
    QCOMPARE(bench.ask("a40110007f040000"), QByteArray("4f01100081000000"));
    QCOMPARE(bench.ask("a40110007f000000"), QByteArray("c601100001000000"));
    QCOMPARE(bench.ask("a30000000000000000"), QByteArray());
    QCOMPARE(bench.ask("a300000000000000"), QByteArray("8181000000000000"));
    QCOMPARE(bench.ask("a2017f0000000000").left(2), QByteArray("d9"));
}

void tst_SdoServer::chanceFramesNeverBreakIt()
{
    Bench bench;
    std::mt19937 random(454);
    const QVector<ObjectKey> keys = bench.dictionary.keys();
    for (int round = 0; round < 200000; ++round) {
        QByteArray payload(8, '\0');
        for (char &byte : payload)
            byte = static_cast<char>(random() & 0xFF);
        if (random() % 2 == 0) {
            const ObjectKey key = keys.at(static_cast<int>(random() % unsigned(keys.size())));
            payload[1] = static_cast<char>(key.index & 0xFF);
            payload[2] = static_cast<char>(key.index >> 8);
            payload[3] = static_cast<char>(key.subIndex);
        }
        const auto answers = bench.server.handleFrame(QCanBusFrame(0x605, payload));
        QVERIFY(answers.size() <= 127);
        for (const QCanBusFrame &answer : answers)
            QCOMPARE(answer.payload().size(), 8);
    }
    QCOMPARE(bench.dictionary.find({0x1000, 0})->data.toHex(), QByteArray("c6010000"));
    QCOMPARE(bench.dictionary.find({0x2003, 0})->data.size(), 8);
    const int limited = bench.dictionary.value({0x2004, 0}).toInt();
    QVERIFY(limited >= -10 && limited <= 10);
    bench.ask("8000000000000000");
    QCOMPARE(bench.ask("4001100000000000"), QByteArray("4f01100081000000"));
}

QTEST_GUILESS_MAIN(tst_SdoServer)
#include "tst_sdoserver.moc"
