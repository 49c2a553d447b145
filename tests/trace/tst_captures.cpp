// SPDX-License-Identifier: MIT
#include "encoding.h"
#include "traceframes.h"

#include <QtTest>

namespace {

QByteArray hex(const char *digits)
{
    return QByteArray::fromHex(digits);
}

// Heads of files: us, little-endian and big-endian; ns.
const char *const littleHead = "D4C3B2A1 0200 0400 00000000 00000000 00000400 E3000000";
const char *const bigHead = "A1B2C3D4 0002 0004 00000000 00000000 00040000 000000E3";
const char *const nanosecondHead = "4D3CB2A1 0200 0400 00000000 00000000 00000400 E3000000";
const char *const cookedHead = "D4C3B2A1 0200 0400 00000000 00000000 00000400 71000000";
const char *const cooked2Head = "D4C3B2A1 0200 0400 00000000 00000000 00000400 14010000";
const char *const ethernetHead = "D4C3B2A1 0200 0400 00000000 00000000 00000400 01000000";

// A pcapng: a section, an interface "can0", and one "can1" whose times count ns.
const char *const section = "0A0D0D0A 1C000000 4D3C2B1A 0100 0000 FFFFFFFFFFFFFFFF 1C000000";
const char *const can0 = "01000000 20000000 E300 0000 00000000 0200 0400 63616E30 0000 0000 20000000";
const char *const can1
    = "01000000 28000000 E300 0000 00000000 0200 0400 63616E31 0900 0100 09000000 0000 0000 28000000";
const char *const ethernet = "01000000 14000000 0100 0000 00000000 14000000";
const char *const onCan0 = "06000000 30000000 00000000 811A0500 5A6A1F26 10000000 10000000 "
                           "00000123 02 000000 1122000000000000 30000000";

QStringList texts(std::initializer_list<const char *> parts)
{
    QByteArray bytes;
    for (const char *part : parts)
        bytes += hex(part);
    return readTexts(bytes);
}

} // namespace

/*! pcap and pcapng. */
class tst_Captures : public QObject
{
    Q_OBJECT

private slots:
    void pcap_data();
    void pcap();
    void pcapNg();
    void pcapNgBigEndian();
    void pcapNgProblems_data();
    void pcapNgProblems();
    void otherInterfacesArePassedOver();
    void namesOfInterfaces();
    void writesPcap();
    void writesPcapNg();
    void channelThatComesLater();
    void everyByteMayBeMissing();
};

void tst_Captures::pcap_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("frames");

    const auto row = [](const char *name, const char *head, const char *records, const QStringList &frames) {
        QTest::newRow(name) << hex(head) + hex(records) << frames;
    };
    const auto text = [](const char *frame) { return QStringList{QString::fromLatin1(frame)}; };
    row("little-endian", littleHead,
        "0C829F55 71CF0300 10000000 10000000 00000123 02 000000 1122000000000000",
        text("1436516876.249713 1 123 1122"));
    row("big-endian", bigHead, "559F820C 0003CF71 00000010 00000010 00000123 02 000000 1122000000000000",
        text("1436516876.249713 1 123 1122"));
    row("nanoseconds", nanosecondHead, "0C829F55 FF55E20E 0A000000 0A000000 00000123 02 000000 1122",
        text("1436516876.249714 1 123 1122"));
    row("extended", littleHead, "0C829F55 00000000 09000000 09000000 98EBFF00 01 000000 11",
        text("1436516876.000000 1 18ebff00 11"));
    row("remote", littleHead, "0C829F55 00000000 08000000 08000000 40000123 08 000000",
        text("1436516876.000000 1 123 remote 8"));
    row("error", littleHead, "0C829F55 00000000 10000000 10000000 20000088 08 000000 0000801900000000",
        text("1436516876.000000 1 088 error 0000801900000000"));
    row("cooked, sent", cookedHead,
        "0C829F55 00000000 20000000 20000000 0004 0118 0000 0000000000000000 000C "
        "00000123 02 000000 1122000000000000",
        text("1436516876.000000 1 123 1122 sent"));
    row("cooked, another protocol", cookedHead,
        "0C829F55 00000000 14000000 14000000 0004 0001 0000 0000000000000000 0800 00000000", {});
    row("cooked 2, interface 7", cooked2Head,
        "0C829F55 00000000 24000000 24000000 000C 0000 00000007 0118 00 00 0000000000000000 "
        "00000123 02 000000 1122000000000000",
        text("1436516876.000000 7 123 1122"));
    const QString flexible = QStringLiteral("! 1 A CAN FD frame; only classic frames are read.");
    row("CAN FD, short", littleHead,
        "0C829F55 00000000 10000000 10000000 00000123 02 040000 1122000000000000", {flexible});
    row("CAN FD, long", littleHead, "0C829F55 00000000 08000000 08000000 00000123 0C 000000", {flexible});
    row("too short", littleHead, "0C829F55 00000000 04000000 04000000 00000123",
        {QStringLiteral("! 1 The packet is no frame of a CAN bus.")});
    row("fewer bytes than its length", littleHead,
        "0C829F55 00000000 09000000 09000000 00000123 02 000000 11",
        {QStringLiteral("! 1 The packet is no frame of a CAN bus.")});
    row("large identifier", littleHead, "0C829F55 00000000 08000000 08000000 00000800 00 000000",
        {QStringLiteral("! 1 The packet is no frame of a CAN bus.")});
    row("cut", littleHead, "0C829F55 00000000 10000000 10000000 00000123",
        {QStringLiteral("! 1 The file is cut: its end is missing.")});
    row("cut in the head of a record", littleHead, "0C829F55",
        {QStringLiteral("! 0 The file is cut: its end is missing.")});
    row("impossible length", littleHead, "0C829F55 00000000 FFFFFFFF FFFFFFFF 00000123",
        {QStringLiteral("! 1 A length of 4294967295 bytes cannot be: the rest is not read.")});
    row("empty", littleHead, "", {});
    row("of no CAN bus", ethernetHead, "0C829F55 00000000 04000000 04000000 00000123",
        {QStringLiteral("! 0 The packets are not of a CAN bus (link type 1).")});
}

void tst_Captures::pcap()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, frames);

    QCOMPARE(readTexts(bytes), frames);
}

void tst_Captures::pcapNg()
{
    QCOMPARE(texts({section, can0, can1, onCan0,
                    // On can1, 1.5 s in ns, outgoing, with a comment before its flags
                    "06000000 40000000 01000000 00000000 002F6859 09000000 09000000 "
                    "80000123 01 000000 AB000000 0100 0200 41420000 0200 0400 02000000 0000 0000 40000000",
                    // A block that nobody knows
                    "99000000 10000000 00000000 10000000"}),
             (QStringList{QStringLiteral("1436516876.249690 can0 123 1122"),
                          QStringLiteral("1.500000 can1 00000123 ab sent")}));
}

void tst_Captures::pcapNgBigEndian()
{
    QCOMPARE(texts({"0A0D0D0A 0000001C 1A2B3C4D 0001 0000 FFFFFFFFFFFFFFFF 0000001C",
                    "00000001 00000014 00E3 0000 00000000 00000014",
                    "00000006 00000030 00000000 00000000 000F4241 00000010 00000010 "
                    "00000123 02 000000 1122000000000000 00000030"}),
             QStringList{QStringLiteral("1.000001 1 123 1122")});
}

void tst_Captures::pcapNgProblems_data()
{
    QTest::addColumn<QByteArray>("block");
    QTest::addColumn<QStringList>("texts");

    const QString after = QStringLiteral("1436516876.249690 can0 123 1122");
    const auto row = [](const char *name, const char *block, const QStringList &expected) {
        QTest::newRow(name) << hex(block) << expected;
    };
    row("interface that is not there",
        "06000000 20000000 07000000 00000000 00000000 00000000 00000000 20000000",
        {after, QStringLiteral("! 3 A packet is not described as one can be.")});
    row("more bytes than the block",
        "06000000 20000000 00000000 00000000 00000000 01000000 01000000 20000000",
        {after, QStringLiteral("! 3 A packet is not described as one can be.")});
    row("packet that is too short", "06000000 0C000000 0C000000",
        {after, QStringLiteral("! 3 A packet is not described as one can be.")});
    row("length of nothing", "06000000 00000000 00000000",
        {QStringLiteral("! 3 A length of 0 bytes cannot be: the rest is not read.")});
    row("odd length", "06000000 0D000000 00000000 00",
        {QStringLiteral("! 3 A length of 13 bytes cannot be: the rest is not read.")});
    row("interface that is too short", "01000000 10000000 E3000000 10000000",
        {QStringLiteral("! 3 An interface is not described as one can be: the rest is not read.")});
    row("longer than the file", "99000000 00010000",
        {QStringLiteral("! 3 The file is cut: its end is missing.")});
    row("very long", "99000000 00000080", {QStringLiteral("! 3 The file is cut: its end is missing.")});
    row("section without magic number", "0A0D0D0A 1C000000 00000000 0100 0000 FFFFFFFFFFFFFFFF 1C000000",
        {QStringLiteral("! 3 A section begins without its magic number: the rest is not read.")});
}

void tst_Captures::pcapNgProblems()
{
    QFETCH(QByteArray, block);
    QFETCH(QStringList, texts);

    QCOMPARE(readTexts(hex(section) + hex(can0) + block + hex(onCan0)), texts);
}

void tst_Captures::otherInterfacesArePassedOver()
{
    const char *const onEthernet
        = "06000000 24000000 01000000 00000000 00000000 04000000 04000000 00000000 24000000";
    QCOMPARE(
        texts({section, can0, ethernet, onEthernet, onEthernet, onCan0}),
        (QStringList{QStringLiteral("1436516876.249690 can0 123 1122"),
                     QStringLiteral("! 3 The packets of interface 2 are not of a CAN bus (link type 1).")}));
}

void tst_Captures::namesOfInterfaces()
{
    // 8 + 8 + an option of 100 bytes with a line end in its name + the length again
    QByteArray long1 = hex("01000000 7C000000 E300 0000 00000000 0200 6400");
    long1 += "a\nb" + QByteArray(97, 'x') + hex("7C000000");
    const Trace trace = readTrace(hex(section) + long1 + hex(onCan0));
    QCOMPARE(trace.frames.size(), size_t(1));
    QCOMPARE(trace.head.channels.first(),
             QStringLiteral("a\uFFFDb") + QString(57, QLatin1Char('x')) + QStringLiteral("..."));
}

void tst_Captures::writesPcap()
{
    Trace trace;
    trace.head = {{QStringLiteral("can0")}, true};
    trace.frames = {traceFrame(1436516876249713, 0x123, "1122")};
    QCOMPARE(
        encoded(trace, TraceFormat::Pcap).toHex(),
        (hex(littleHead) + hex("0C829F55 71CF0300 10000000 10000000 00000123 02 000000 1122000000000000"))
            .toHex());
}

void tst_Captures::writesPcapNg()
{
    Trace trace;
    trace.head = {{QStringLiteral("can0"), QStringLiteral("battery")}, true};
    trace.frames = {traceFrame(1436516876249713, 0x123, "1122"),
                    traceFrame(1436516876249712, 0x123, "AB", TraceFrame::Extended | TraceFrame::Sent, 1),
                    remoteFrame(1436516876249714, 0x80, 0),
                    traceFrame(1436516876249715, 0x88, "0000801900000000", TraceFrame::Error)};
    const Trace read = readTrace(encoded(trace, TraceFormat::PcapNg));
    QCOMPARE(textsOf(read), textsOf(trace));
    QCOMPARE(read.head.channels, trace.head.channels);
    QVERIFY(read.head.hasTimeOfDay);
}

void tst_Captures::channelThatComesLater()
{
    QByteArray bytes;
    TraceWriter writer(FrameEncoder::of(TraceFormat::PcapNg), std::make_unique<MemorySink>(&bytes));
    writer.setHead({{QStringLiteral("can0")}, false});
    writer.write(traceFrame(1, 1, ""));
    writer.setHead({{QStringLiteral("can0"), QStringLiteral("can1")}, false});
    writer.write(traceFrame(2, 2, "", 0, 1));
    writer.finish();
    QCOMPARE(readTexts(bytes),
             (QStringList{QStringLiteral("0.000001 can0 001"), QStringLiteral("0.000002 can1 002")}));
}

void tst_Captures::everyByteMayBeMissing()
{
    const QByteArray whole = hex(section) + hex(can0) + hex(onCan0);
    QCOMPARE(readTexts(whole).size(), 1);
    for (int size = 4; size < whole.size(); ++size) {
        const Trace trace = readTrace(whole.left(size));
        const bool isBetweenBlocks = size == 28 || size == 60;
        QVERIFY2(trace.frames.empty(), qPrintable(QString::number(size)));
        QCOMPARE(trace.problems.size(), size_t(isBetweenBlocks ? 0 : 1));
    }
}

QTEST_GUILESS_MAIN(tst_Captures)
#include "tst_captures.moc"
