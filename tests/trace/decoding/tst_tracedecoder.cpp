// SPDX-License-Identifier: MIT
#include "../frames.h"
#include "transfers.h"

#include <canopen/edsfile.h>
#include <snapshot/snapshot.h>
#include <tests/support/markingtranslator.h>
#include <trace/decoding/tracedecoder.h>

#include <QtTest>

using CanOpen::ObjectKey;
using Outcome = SdoTransfer::Outcome;
using Protocol = SdoTransfer::Protocol;

Q_DECLARE_METATYPE(SdoTransfer)
Q_DECLARE_METATYPE(TraceMark)

namespace {

CanOpen::ObjectDictionary sheetFrom(const QByteArray &text)
{
    QString error;
    const std::optional<CanOpen::EdsFile> file = CanOpen::parseEds(text, 2, &error);
    if (!file)
        qFatal("%s", qPrintable(error));
    return file->dictionary;
}

/*! Of node 2, whose object 2000h.0 has a type and no value. */
Snapshot snapshotOf2000(CanOpen::DataType type)
{
    SnapshotEntry entry;
    entry.key = {0x2000, 0};
    entry.type = type;
    SnapshotNode node;
    node.id = 2;
    node.insert(entry);
    Snapshot snapshot;
    snapshot.nodes.append(node);
    return snapshot;
}

SdoTransfer withOutcome(SdoTransfer transfer, Outcome outcome, quint32 abortCode = 0, int problems = 0)
{
    transfer.outcome = outcome;
    transfer.abortCode = abortCode;
    transfer.problems = static_cast<quint16>(problems);
    return transfer;
}

QStringList textsOf(const QVector<FramePart> &parts)
{
    QStringList texts;
    for (const FramePart &part : parts) {
        texts
            += QStringLiteral("%1-%2 %3")
                   .arg(QString::number(part.first), QString::number(part.first + part.count - 1), part.text);
    }
    return texts;
}

void addTransfer(const char *name, const SdoTransfer &transfer, const QByteArray &text, TraceMark mark)
{
    QTest::newRow(name) << transfer << QString::fromUtf8(text) << mark;
}

QByteArray namedRead(const char *rest)
{
    return QByteArray("read 6164h.2 Relative battery Wh capacity") + rest;
}

void addTransfersWithValues()
{
    const SdoTransfer charge = readOf(2, {0x6164, 2}, "d020");

    addTransfer("value with unit", charge, namedRead(" = 84.00 %"), TraceMark::Plain);
    addTransfer("written", writeOf(2, {0x1017, 0}, "f401"), "write 1017h.0 Heartbeat producer time = 0.50 s",
                TraceMark::Plain);
    addTransfer("negative", readOf(2, {0x6105, 1}, "f5ff"),
                "read 6105h.1 Battery pack temperature = -1.10 \u00b0C", TraceMark::Plain);
    addTransfer("count", readOf(2, {0x6164, 0}, "02"), "read 6164h.0 Relative battery Wh capacity = 2",
                TraceMark::Plain);
    addTransfer("text", readOf(2, {0x1008, 0}, "44582d53656e7365"),
                "read 1008h.0 Manufacturer device name = \"DX-Sense\"", TraceMark::Plain);
    addTransfer("unknown number", readOf(2, {0x2000, 3}, "f401"), "read 2000h.3 = 500 (01F4h)",
                TraceMark::Plain);
    addTransfer("unknown text", readOf(2, {0x2000, 3}, "48656c6c6f20776f726c64"),
                "read 2000h.3 = \"Hello world\"", TraceMark::Plain);
    addTransfer("unknown bytes", readOf(2, {0x2000, 3}, "000102030405060708"),
                "read 2000h.3 = 00 01 02 03 04 05 06 07 08", TraceMark::Plain);
    addTransfer(
        "many bytes", readOf(2, {0x2000, 3}, QByteArray(80, '0')),
        "read 2000h.3 = 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
        "00 00 00 00 ... (40 bytes)",
        TraceMark::Plain);
    addTransfer("nothing", readOf(2, {0x2000, 3}, ""), "read 2000h.3 = nothing (0 bytes)", TraceMark::Plain);

    SdoTransfer unsized = readOf(2, {0x6164, 2}, "d020ffff");
    unsized.isSizeUnknown = true;
    addTransfer("size that is not told", unsized, namedRead(" = 84.00 %"), TraceMark::Plain);
    SdoTransfer cut = withOutcome(charge, Outcome::Done, 0, SdoTransfer::Cut);
    addTransfer("cut", cut, namedRead(" = 2 bytes and more; too long to be kept"), TraceMark::Plain);
}

void addTransfersWithout()
{
    const SdoTransfer charge = readOf(2, {0x6164, 2}, "d020");
    addTransfer("absent", withOutcome(charge, Outcome::AbortedByServer, 0x06020000),
                namedRead(": refused: The object does not exist (0602 0000h)"), TraceMark::Note);
    addTransfer("no such sub-index", withOutcome(charge, Outcome::AbortedByServer, 0x06090011),
                namedRead(": refused: The sub-index does not exist (0609 0011h)"), TraceMark::Note);
    addTransfer("refused", withOutcome(charge, Outcome::AbortedByServer, 0x06060000),
                namedRead(": refused: The access failed because of a hardware error (0606 0000h)"),
                TraceMark::Warning);
    addTransfer("code of its own", withOutcome(charge, Outcome::AbortedByServer, 0x12345678),
                namedRead(": refused: Abort code 1234 5678h"), TraceMark::Warning);
    addTransfer("toggle", withOutcome(charge, Outcome::AbortedByClient, 0x05030000, SdoTransfer::WrongToggle),
                namedRead(": ended by the client: The toggle bit did not alternate (0503 0000h); "
                          "the toggle bit did not alternate"),
                TraceMark::Fault);
    addTransfer("no answer", withOutcome(charge, Outcome::NoAnswer), namedRead(": no answer"),
                TraceMark::Fault);
    addTransfer("broken", withOutcome(charge, Outcome::Broken, 0, SdoTransfer::LostSegment),
                namedRead(": its frames make no whole value; frames of it are missing in the trace"),
                TraceMark::Fault);
    addTransfer("checksum", withOutcome(charge, Outcome::Broken, 0, SdoTransfer::WrongChecksum),
                namedRead(": its frames make no whole value; the checksum is wrong"), TraceMark::Fault);
    addTransfer("size", withOutcome(charge, Outcome::Broken, 0, SdoTransfer::SizeMismatch),
                namedRead(": its frames make no whole value; not as many bytes came as were announced"),
                TraceMark::Fault);
    addTransfer("unfinished", withOutcome(charge, Outcome::Unfinished), namedRead(": not finished"),
                TraceMark::Note);
    addTransfer("foreign client", withOutcome(charge, Outcome::Done, 0, SdoTransfer::ForeignClient),
                namedRead(" = 84.00 %; another client used the device meanwhile"), TraceMark::Warning);
    addTransfer(
        "overtaken and repeated",
        withOutcome(charge, Outcome::Done, 0, SdoTransfer::Overtaken | SdoTransfer::Repeated),
        namedRead(" = 84.00 %; another request came before it was at its end; a part of it came twice"),
        TraceMark::Warning);
}

void addParts(const char *name, quint32 id, const char *bytes, SdoStep step,
              std::initializer_list<const char *> texts)
{
    QStringList parts;
    for (const char *text : texts)
        parts += QString::fromUtf8(text);
    QTest::newRow(name) << id << QByteArray(bytes) << int(step) << parts;
}

void addPartsOfOthers()
{
    addParts("nmt", 0x000, "8105", SdoStep::None, {"0-0 command: reset the device", "1-1 node 5"});
    addParts("nmt to all", 0x000, "0100", SdoStep::None, {"0-0 command: start", "1-1 all nodes"});
    addParts("sync", 0x080, "0C", SdoStep::None, {"0-0 counter 12"});
    addParts("empty sync", 0x080, "", SdoStep::None, {});
    addParts("time", 0x100, "95519802323D", SdoStep::None,
             {"0-3 time of day: 12:05:36.789", "4-5 day: 2026-11-22"});
    addParts("emergency", 0x084, "1042090102030405", SdoStep::None,
             {"0-1 error code 4210h: device temperature", "2-2 error register: generic error, temperature",
              "3-7 the device's own"});
    addParts("heartbeat", 0x705, "05", SdoStep::None, {"0-0 heartbeat: Operational"});
}

void addPartsOfSdos()
{
    addParts("request", 0x602, "4064610200000000", SdoStep::UploadRequest,
             {"0-0 request to read", "1-2 object 6164h: Relative battery Wh capacity", "3-3 sub-index 2",
              "4-7 not used"});
    addParts("answer", 0x582, "4b646102d0200000", SdoStep::UploadAnswer,
             {"0-0 answer to a read", "1-2 object 6164h: Relative battery Wh capacity", "3-3 sub-index 2",
              "4-7 value: 84.00 %"});
    addParts("answer of segments", 0x582, "4108100009000000", SdoStep::UploadAnswer,
             {"0-0 answer to a read", "1-2 object 1008h: Manufacturer device name", "3-3 sub-index 0",
              "4-7 9 bytes follow"});
    addParts("segment request", 0x602, "7000000000000000", SdoStep::UploadSegmentRequest,
             {"0-0 request for a segment, toggle bit 1", "1-7 not used"});
    addParts("segment", 0x582, "0044582d53656e73", SdoStep::UploadSegment,
             {"0-0 segment of a read, toggle bit 0", "1-7 data"});
    addParts("last segment", 0x582, "1b65210000000000", SdoStep::UploadSegment,
             {"0-0 segment of a read, toggle bit 1, the last one", "1-2 data", "3-7 not used"});
    addParts("write", 0x602, "2b171000f4010000", SdoStep::DownloadRequest,
             {"0-0 request to write", "1-2 object 1017h: Heartbeat producer time", "3-3 sub-index 0",
              "4-7 value: 0.50 s"});
    addParts("written", 0x582, "6017100000000000", SdoStep::DownloadAnswer,
             {"0-0 answer to a write", "1-2 object 1017h: Heartbeat producer time", "3-3 sub-index 0",
              "4-7 not used"});
    addParts("abort", 0x582, "8064610200000206", SdoStep::ServerAbort,
             {"0-0 abort by the server", "1-2 object 6164h: Relative battery Wh capacity", "3-3 sub-index 2",
              "4-7 The object does not exist (0602 0000h)"});
}

void addPartsOfBlocks()
{
    addParts("block request", 0x602, "a40020007f000000", SdoStep::BlockUploadRequest,
             {"0-0 request to read in blocks", "1-2 object 2000h", "3-3 sub-index 0",
              "4-7 127 segments in a block"});
    addParts(
        "block answer", 0x582, "c600200014000000", SdoStep::BlockUploadAnswer,
        {"0-0 answer to a read in blocks", "1-2 object 2000h", "3-3 sub-index 0", "4-7 20 bytes follow"});
    addParts("block start", 0x602, "a300000000000000", SdoStep::BlockUploadStart,
             {"0-0 start of the blocks", "1-7 not used"});
    addParts("block segment", 0x582, "8301020304050607", SdoStep::BlockUploadSegment,
             {"0-0 segment 3, the last one", "1-7 data"});
    addParts("acknowledge", 0x602, "a2037f0000000000", SdoStep::BlockUploadAcknowledge,
             {"0-0 acknowledge of a block", "1-1 has come up to segment 3", "2-2 next block: 127 segments",
              "3-7 not used"});
    addParts("block end", 0x582, "c534120000000000", SdoStep::BlockUploadEnd,
             {"0-0 end of the blocks, 1 bytes of the last segment do not count", "1-2 checksum 1234h",
              "3-7 not used"});
    addParts("stray", 0x582, "4b646102d0200000", SdoStep::Stray, {"0-0 answer to a read", "1-7 data"});
    addParts("other", 0x6F1, "0102", SdoStep::None, {"0-1 data"});
}

} // namespace

/*! Transfers, PDOs and bytes in words. */
class tst_TraceDecoder : public QObject
{
    Q_OBJECT

private slots:
    void transfers_data();
    void transfers();
    void efforts_data();
    void efforts();
    void sheetNamesAndTypes();
    void snapshotTypes();
    void pdoFromTheTrace();
    void pdoOfSmallParts();
    void pdoOfASheetThatComesLater();
    void pdoInAnotherLanguage();
    void shortPdo();
    void pdoToTheNode();
    void mappingThatNamesAnSdo();
    void controlCharactersDoNotAct();

    void partsOfFrames_data();
    void partsOfFrames();
    void partsOfAPdo();
    void partsOfACutPdo();
    void partsCoverEveryByte();
};

void tst_TraceDecoder::transfers_data()
{
    QTest::addColumn<SdoTransfer>("transfer");
    QTest::addColumn<QString>("text");
    QTest::addColumn<TraceMark>("mark");
    addTransfersWithValues();
    addTransfersWithout();
}

void tst_TraceDecoder::transfers()
{
    QFETCH(SdoTransfer, transfer);
    const TraceBook book;
    const TraceText text = TraceDecoder(&book).text(transfer);
    QTEST(text.text, "text");
    QTEST(text.mark, "mark");
}

void tst_TraceDecoder::efforts_data()
{
    QTest::addColumn<int>("frames");
    QTest::addColumn<qint64>("duration");
    QTest::addColumn<int>("protocol");
    QTest::addColumn<QString>("text");
    QTest::newRow("expedited") << 2 << qint64(900) << 0 << "2 frames, 0.9 ms";
    QTest::newRow("alone") << 1 << qint64(0) << 0 << "1 frame, 0.0 ms";
    QTest::newRow("segments") << 14 << qint64(12340) << 1 << "14 frames in segments, 12.3 ms";
    QTest::newRow("blocks") << 140 << qint64(2'345'000) << 2 << "140 frames in blocks, 2.35 s";
    QTest::newRow("backward") << 2 << qint64(-5000) << 0 << "2 frames, 0.0 ms";
}

void tst_TraceDecoder::efforts()
{
    QFETCH(int, frames);
    QFETCH(qint64, duration);
    QFETCH(int, protocol);
    SdoTransfer transfer = readOf(2, {0x6164, 2}, "d020");
    transfer.frames = frames;
    transfer.end = transfer.begin + duration;
    transfer.protocol = static_cast<Protocol>(protocol);
    const TraceBook book;
    QTEST(TraceDecoder(&book).text(transfer).detail, "text");
}

void tst_TraceDecoder::sheetNamesAndTypes()
{
    TraceBook book;
    book.tell(2, sheetFrom("[2000]\nParameterName=Lamp\nObjectType=7\nDataType=0x0002\nAccessType=rw\n"));
    const TraceDecoder decoder(&book);
    QCOMPARE(decoder.text(readOf(2, {0x2000, 0}, "ff")).text, QStringLiteral("read 2000h.0 Lamp = -1"));
    QCOMPARE(decoder.text(readOf(3, {0x2000, 0}, "ff")).text, QStringLiteral("read 2000h.0 = 255 (FFh)"));
}

void tst_TraceDecoder::snapshotTypes()
{
    TraceBook book;
    book.tell(snapshotOf2000(CanOpen::DataType::Integer16));
    QCOMPARE(TraceDecoder(&book).text(readOf(2, {0x2000, 0}, "feff")).text,
             QStringLiteral("read 2000h.0 = -2"));
}

void tst_TraceDecoder::pdoFromTheTrace()
{
    TraceBook book;
    const TraceDecoder decoder(&book);
    const TraceFrame frame = frameAt(0, 0x182, "84990000F5FF");
    QCOMPARE(decoder.text(frame, 0).text,
             QStringLiteral("PDO 1, its mapping is not known: 84 99 00 00 F5 FF"));
    book.learn(readOf(2, {0x1800, 1}, "82010000", 10));
    book.learn(readOf(2, {0x1A00, 0}, "02", 11));
    book.learn(readOf(2, {0x1A00, 1}, "20014060", 12));
    book.learn(readOf(2, {0x1A00, 2}, "10010561", 13));
    QCOMPARE(decoder.text(frame, 0).text,
             QString::fromUtf8(
                 "PDO 1: Device actual voltage = 39.30 V, Battery pack temperature = -1.10 \u00b0C"));
    QCOMPARE(decoder.text(frame, 0).mark, TraceMark::Plain);
}

void tst_TraceDecoder::pdoOfSmallParts()
{
    TraceBook book;
    book.tell(2, sheetFrom("[1800]\nSubNumber=1\nParameterName=P\nObjectType=9\n"
                           "[1800sub1]\nParameterName=C\nDataType=7\nAccessType=rw\nDefaultValue=0x182\n"
                           "[1A00]\nSubNumber=4\nParameterName=M\nObjectType=9\n"
                           "[1A00sub0]\nParameterName=N\nDataType=5\nAccessType=rw\nDefaultValue=4\n"
                           "[1A00sub1]\nParameterName=1\nDataType=7\nAccessType=rw\nDefaultValue=0x20000101\n"
                           "[1A00sub2]\nParameterName=2\nDataType=7\nAccessType=rw\nDefaultValue=0x00050003\n"
                           "[1A00sub3]\nParameterName=3\nDataType=7\nAccessType=rw\nDefaultValue=0x20000304\n"
                           "[1A00sub4]\nParameterName=4\nDataType=7\nAccessType=rw\nDefaultValue=0x20000408\n"
                           "[2000]\nSubNumber=3\nParameterName=R\nObjectType=9\n"
                           "[2000sub1]\nParameterName=On\nDataType=1\nAccessType=rw\n"
                           "[2000sub3]\nParameterName=Step\nDataType=2\nAccessType=rw\n"
                           "[2000sub4]\nParameterName=Gear\nDataType=5\nAccessType=rw\n"));
    const TraceDecoder decoder(&book);
    // Bit 0: 1; bits 1 to 3 fill; bits 4 to 7: -2; byte 1: 7
    QCOMPARE(decoder.text(frameAt(0, 0x182, "E107"), 0).text,
             QStringLiteral("PDO 1: On = 1, Step = -2, Gear = 7"));
}

/*! Words that were said before are not said again. */
void tst_TraceDecoder::pdoOfASheetThatComesLater()
{
    TraceBook book;
    book.learn(readOf(2, {0x1800, 1}, "82010000"));
    book.learn(readOf(2, {0x1A00, 0}, "01"));
    book.learn(readOf(2, {0x1A00, 1}, "08000020"));
    const TraceDecoder decoder(&book);
    const TraceFrame frame = frameAt(0, 0x182, "D6");
    QCOMPARE(decoder.text(frame, 0).text, QStringLiteral("PDO 1: 2000h.0 = 214 (D6h)"));
    book.tell(snapshotOf2000(CanOpen::DataType::Integer8));
    QCOMPARE(decoder.text(frame, 0).text, QStringLiteral("PDO 1: 2000h.0 = -42"));
    book.tell(2, sheetFrom("[2000]\nParameterName=Lamp\nObjectType=7\nDataType=0x0002\nAccessType=rw\n"));
    QCOMPARE(decoder.text(frame, 0).text, QStringLiteral("PDO 1: Lamp = -42"));
    QCOMPARE(textsOf(decoder.parts(frame, 0)), QStringList(QStringLiteral("0-0 Lamp = -42")));
}

void tst_TraceDecoder::pdoInAnotherLanguage()
{
    TraceBook book;
    book.learn(readOf(2, {0x1800, 1}, "82010000"));
    book.learn(readOf(2, {0x1A00, 0}, "01"));
    book.learn(readOf(2, {0x1A00, 1}, "20014060"));
    TraceDecoder decoder(&book);
    const TraceFrame frame = frameAt(0, 0x182, "84990000");
    QCOMPARE(decoder.text(frame, 0).text, QStringLiteral("PDO 1: Device actual voltage = 39.30 V"));
    const MarkingTranslator translator("DataInterpreter");
    decoder.forgetWords();
    QCOMPARE(decoder.text(frame, 0).text,
             QStringLiteral("PDO 1: Device actual voltage = [DataInterpreter:39.30 V]"));
}

void tst_TraceDecoder::shortPdo()
{
    TraceBook book;
    book.learn(readOf(2, {0x1800, 1}, "82010000"));
    book.learn(readOf(2, {0x1A00, 0}, "02"));
    book.learn(readOf(2, {0x1A00, 1}, "20014060"));
    book.learn(readOf(2, {0x1A00, 2}, "10010561"));
    const TraceText text = TraceDecoder(&book).text(frameAt(0, 0x182, "8499000001"), 0);
    QCOMPARE(text.text, QStringLiteral("PDO 1, too short for its mapping: Device actual voltage = 39.30 V, "
                                       "Battery pack temperature is missing"));
    QCOMPARE(text.mark, TraceMark::Warning);
}

void tst_TraceDecoder::pdoToTheNode()
{
    TraceBook book;
    book.learn(readOf(4, {0x1400, 1}, "04020000"));
    book.learn(readOf(4, {0x1600, 0}, "01"));
    book.learn(readOf(4, {0x1600, 1}, "20014060"));
    QCOMPARE(TraceDecoder(&book).text(frameAt(0, 0x204, "84990000"), 0).text,
             QStringLiteral("PDO 1 to the node: Device actual voltage = 39.30 V"));
}

/*! What a device says of its identifiers must not hide commands and transfers. */
void tst_TraceDecoder::mappingThatNamesAnSdo()
{
    TraceBook book;
    for (const quint8 node : {quint8(2), quint8(3)}) {
        book.learn(readOf(node, {0x1800, 1}, node == 2 ? "82050000" : "00000000"));
        book.learn(readOf(node, {0x1A00, 0}, "01"));
        book.learn(readOf(node, {0x1A00, 1}, "08000020"));
    }
    const TraceDecoder decoder(&book);
    QCOMPARE(decoder.sort(frameAt(0, 0x582, "4B646102D0200000"), 0).kind, FrameKind::Sdo);
    QCOMPARE(decoder.sort(frameAt(0, 0x000, "0100"), 0).kind, FrameKind::Nmt);
}

void tst_TraceDecoder::controlCharactersDoNotAct()
{
    const TraceBook book;
    const QString text = TraceDecoder(&book).text(readOf(2, {0x1008, 0}, "41 1b5b324a 42")).text;
    QVERIFY2(!text.contains(QChar(0x1B)), qPrintable(text));
}

void tst_TraceDecoder::partsOfFrames_data()
{
    QTest::addColumn<quint32>("id");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("step");
    QTest::addColumn<QStringList>("parts");
    addPartsOfOthers();
    addPartsOfSdos();
    addPartsOfBlocks();
}

void tst_TraceDecoder::partsOfFrames()
{
    QFETCH(quint32, id);
    QFETCH(QByteArray, bytes);
    QFETCH(int, step);
    const TraceBook book;
    const TraceDecoder decoder(&book);
    QTEST(textsOf(decoder.parts(frameAt(0, id, bytes), 0, static_cast<SdoStep>(step))), "parts");
}

void tst_TraceDecoder::partsOfAPdo()
{
    TraceBook book;
    book.learn(readOf(2, {0x1800, 1}, "82010000"));
    book.learn(readOf(2, {0x1A00, 0}, "03"));
    book.learn(readOf(2, {0x1A00, 1}, "10010561"));
    book.learn(readOf(2, {0x1A00, 2}, "04010020"));
    book.learn(readOf(2, {0x1A00, 3}, "04020020"));
    const TraceDecoder decoder(&book);
    QCOMPARE(textsOf(decoder.parts(frameAt(0, 0x182, "F5FF21AA"), 0)),
             (QStringList{QString::fromUtf8("0-1 Battery pack temperature = -1.10 \u00b0C"),
                          QStringLiteral("2-2 bits 0 to 3: 2000h.1 = 1 (01h)"),
                          QStringLiteral("2-2 bits 4 to 7: 2000h.2 = 2 (02h)"),
                          QStringLiteral("3-3 not mapped")}));
}

void tst_TraceDecoder::partsOfACutPdo()
{
    TraceBook book;
    book.learn(readOf(2, {0x1800, 1}, "82010000"));
    book.learn(readOf(2, {0x1A00, 0}, "02"));
    book.learn(readOf(2, {0x1A00, 1}, "08010020"));
    book.learn(readOf(2, {0x1A00, 2}, "20020020"));
    const TraceDecoder decoder(&book);
    QCOMPARE(textsOf(decoder.parts(frameAt(0, 0x182, "0102"), 0)),
             (QStringList{QStringLiteral("0-0 2000h.1 = 1 (01h)"),
                          QStringLiteral("1-1 the beginning of what is missing")}));
}

void tst_TraceDecoder::partsCoverEveryByte()
{
    const TraceBook book;
    const TraceDecoder decoder(&book);
    for (int step = 0; step <= int(SdoStep::ServerAbort); ++step) {
        for (const quint32 id : {0x582U, 0x602U}) {
            for (int command = 0; command < 256; ++command) {
                const QByteArray first = QByteArray(1, static_cast<char>(command)).toHex();
                const TraceFrame frame = frameAt(0, id, first + "64610203040506");
                int next = 0;
                for (const FramePart &part : decoder.parts(frame, 0, static_cast<SdoStep>(step))) {
                    QCOMPARE(part.first, next);
                    next = part.first + part.count;
                    QVERIFY(!part.text.isEmpty());
                }
                QCOMPARE(next, 8);
            }
        }
    }
}

QTEST_GUILESS_MAIN(tst_TraceDecoder)
#include "tst_tracedecoder.moc"
