// SPDX-License-Identifier: MIT
#include "encoding.h"
#include "traceframes.h"

#include <QtTest>

namespace {

const QByteArray head("date Fri Jul 10 08:37:32.249 am 2015\nbase hex  timestamps absolute\n"
                      "internal events logged\n// version 9.0.0\n"
                      "Begin Triggerblock Fri Jul 10 08:37:32.249 am 2015\n"
                      "   0.000000 Start of measurement\n");

} // namespace

/*! Vector's asc. Times are of UTC, which the tests run in, unless they say otherwise. */
class tst_AscReader : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qputenv("TZ", "UTC"); }
    void lines_data();
    void lines();
    void problems_data();
    void problems();
    void relativeTimes();
    void decimalNumbers();
    void dates_data();
    void dates();
    void unknownDate();
    void withoutHead();
    void writes();
    void writesWithoutTimeOfDay();
};

void tst_AscReader::lines_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QStringList>("frames");

    const auto row = [](const char *name, const char *line, const char *frame) {
        QTest::newRow(name) << QByteArray(line)
                            << (*frame != 0 ? QStringList{QString::fromLatin1(frame)} : QStringList());
    };
    row("received", "   0.015991 1  123             Rx   d 8 00 11 22 33 44 55 66 77",
        "1436517452.264991 1 123 0011223344556677");
    row("sent", "   0.015991 2  123             Tx   d 1 00", "1436517452.264991 2 123 00 sent");
    row("extended",
        "   0.015991 1  18EBFF00x       Rx   d 2 01 A0  Length = 273910 BitCount = 141 ID = 418119424x",
        "1436517452.264991 1 18ebff00 01a0");
    row("no bytes", "   0.015991 1  80              Rx   d 0", "1436517452.264991 1 080");
    row("remote", "   0.015991 1  123             Rx   r", "1436517452.264991 1 123 remote 0");
    row("remote with length", "   0.015991 1  123x            Rx   r 8",
        "1436517452.264991 1 00000123 remote 8");
    row("error", "   0.015991 1  ErrorFrame", "1436517452.264991 1 080 error 0000000000000000");
    row("error with more", "   0.015991 1  ErrorFrame Flags = 0xe CodeExt = 0x20a2",
        "1436517452.264991 1 080 error 0000000000000000");
    row("length on the wire", "   0.015991 1  123 Rx   d f 00 11 22 33 44 55 66 77",
        "1436517452.264991 1 123 0011223344556677");
    row("classic frame among CAN FD",
        "   0.015991 CANFD   1 Rx        123  Name 0 0 2 2 11 22   130000  130   200000 0 0",
        "1436517452.264991 1 123 1122");
    row("the same without a name",
        "   0.015991 CANFD   1 Tx       123x  0 0 2 2 11 22   130000  130   200000 0 0",
        "1436517452.264991 1 00000123 1122 sent");
    row("request to send", "   0.015991 1  123             TxRq d 1 00", "");
    row("statistic", "   0.015991 1  Statistic: D 0 R 0 XD 0 XR 0 E 0 O 0 B 0.0%", "");
    row("status", "   0.015991 CAN 1 Status:chip status error active", "");
    row("log event", "   0.015991 log trigger event", "");
    row("comment", "// 0.015991 1 123 Rx d 1 00", "");
    row("end", "End TriggerBlock", "");
}

void tst_AscReader::lines()
{
    QFETCH(QByteArray, line);
    QFETCH(QStringList, frames);

    QCOMPARE(readTexts(head + line + '\n'), frames);
    QCOMPARE(readTexts(QByteArray(head + line + '\n').replace("\n", "\r\n")), frames);
}

void tst_AscReader::problems_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("problem");

    const auto row = [](const char *name, const char *line, const char *problem = "") {
        const QString text = *problem != 0
                                 ? QString::fromLatin1(problem)
                                 : QStringLiteral("This is no frame: \"%1\".").arg(QLatin1String(line));
        QTest::newRow(name) << QByteArray(line) << text;
    };
    const char *const flexible = "A CAN FD frame; only classic frames are read.";
    row("CAN FD", "0.1 CANFD 1 Rx 123 1 0 9 12 00 11 22 33 44 55 66 77 88 99 AA BB 130000 130 303000 0 0",
        flexible);
    row("short CAN FD", "0.1 CANFD 1 Rx 123 0 0 1 1 00 130000 130 1000 0 0", flexible);
    row("CAN FD without flags", "0.1 CANFD 1 Rx 123 0 0 1 1 00", flexible);
    row("name in place of the identifier", "0.1 1  EngineData Rx d 1 00");
    row("large identifier", "0.1 1  800 Rx d 1 00", "The identifier is larger than one can be.");
    row("too few bytes", "0.1 1  123 Rx d 8 00 11");
    row("cut in a byte", "0.1 1  123 Rx d 2 00 1x");
    row("no length", "0.1 1  123 Rx d");
    row("no kind", "0.1 1  123 Rx");
    row("long length", "0.1 1  123 Rx d 10 00");
    row("cut", "0.1 1");
    row("something else", "hello");
}

void tst_AscReader::problems()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, problem);

    const QStringList texts = readTexts(head + line + "\n   1.000000 1  1 Rx d 0\n");
    QCOMPARE(texts,
             (QStringList{QStringLiteral("1436517453.249000 1 001"), QStringLiteral("! 7 ") + problem}));
}

void tst_AscReader::relativeTimes()
{
    // Times count from the event before, whatever it was.
    const QByteArray text
        = QByteArray(head).replace("absolute", "relative")
          + "   0.100000 1  1 Rx d 0\n   0.100000 log trigger event\n   0.100000 1  2 Rx d 0\n";
    QCOMPARE(readTexts(text), (QStringList{QStringLiteral("1436517452.349000 1 001"),
                                           QStringLiteral("1436517452.549000 1 002")}));
}

void tst_AscReader::decimalNumbers()
{
    const QByteArray text = QByteArray(head).replace("base hex", "base dec")
                            + "   0.000000 1  291 Rx d 3 255 0 16\n   0.000000 1  418119424x Rx d 0\n";
    QCOMPARE(readTexts(text), (QStringList{QStringLiteral("1436517452.249000 1 123 ff0010"),
                                           QStringLiteral("1436517452.249000 1 18ebff00")}));
    QCOMPARE(readTexts(text + "   0.000000 1  1 Rx d 1 256\n").size(), 3);
}

void tst_AscReader::dates_data()
{
    QTest::addColumn<QByteArray>("date");
    QTest::addColumn<QString>("time");

    const auto row = [](const char *name, const char *date, const char *time) {
        QTest::newRow(name) << QByteArray(date) << QString::fromLatin1(time);
    };
    row("morning", "date Fri Jul 10 08:37:32.249 am 2015", "1436517452.249000");
    row("afternoon", "date Fri Jul 10 08:37:32.249 pm 2015", "1436560652.249000");
    row("noon", "date Fri Jul 10 12:37:32 PM 2015", "1436531852.000000");
    row("midnight", "date Fri Jul 10 12:37:32 am 2015", "1436488652.000000");
    row("24 hours", "date Fri Jul 10 20:37:32.249 2015", "1436560652.249000");
    row("microseconds", "date Fri Jul 10 20:37:32.249713 2015", "1436560652.249713");
    row("German", "date Mit Okt 14 20:37:32.249 2015", "1444855052.249000");
    row("German word", "datum Die Mai 12 20:37:32.249 2015", "1431463052.249000");
    row("German, Latin 1", "date Sam M\xE4r 14 20:37:32.249 2015", "1426365452.249000");
    row("German, UTF-8", "date Sam M\xC3\xA4r 14 20:37:32.249 2015", "1426365452.249000");
    row("German December", "date Don Dez 24 20:37:32 2015", "1450989452.000000");
    row("long ago", "date Thu Jan 1 00:00:00 1970", "0.000000");
}

void tst_AscReader::dates()
{
    QFETCH(QByteArray, date);
    QFETCH(QString, time);

    QCOMPARE(readTexts(date + "\nbase hex  timestamps absolute\n0.000000 1 1 Rx d 0\n"),
             QStringList{time + QStringLiteral(" 1 001")});
}

void tst_AscReader::unknownDate()
{
    const Trace trace = readTrace("base hex  timestamps absolute\ndate someday\n0.5 1 1 Rx d 0\n");
    QCOMPARE(textsOf(trace),
             (QStringList{QStringLiteral("0.500000 1 001"),
                          QStringLiteral("! 2 This date is not understood, so times begin with the trace: "
                                         "\"date someday\".")}));
    QVERIFY(!trace.head.hasTimeOfDay);
}

void tst_AscReader::withoutHead()
{
    QCOMPARE(readTexts("   0.015991 1  123             Rx   d 1 77\n"),
             QStringList{QStringLiteral("0.015991 1 123 77")});
}

void tst_AscReader::writes()
{
    Trace trace;
    trace.head = {{QStringLiteral("can0"), QStringLiteral("can1")}, true};
    trace.frames
        = {traceFrame(1436517452249713, 0x123, "0011223344556677"),
           traceFrame(1436517462249714, 0x18EBFF00, "AB", TraceFrame::Extended | TraceFrame::Sent, 1),
           remoteFrame(1436517452250000, 0x7FF, 8),
           traceFrame(1436517452250001, 0x88, "0000800000000000", TraceFrame::Error)};
    QCOMPARE(encoded(trace, TraceFormat::Asc),
             QByteArray("date Fri Jul 10 08:37:32.249 2015\nbase hex  timestamps absolute\n"
                        "internal events logged\nBegin Triggerblock Fri Jul 10 08:37:32.249 2015\n"
                        "   0.000000 Start of measurement\n"
                        "   0.000713 1  123             Rx   d 8 00 11 22 33 44 55 66 77\n"
                        "  10.000714 2  18EBFF00x       Tx   d 1 AB\n"
                        "   0.001000 1  7FF             Rx   r 8\n"
                        "   0.001001 1  ErrorFrame\n"
                        "End TriggerBlock\n"));
}

void tst_AscReader::writesWithoutTimeOfDay()
{
    Trace trace;
    trace.head = {{QStringLiteral("1")}, false};
    trace.frames = {traceFrame(500, 1, ""), traceFrame(-1'000'500, 2, "")};
    const Trace read = readTrace(encoded(trace, TraceFormat::Asc));
    QCOMPARE(textsOf(read),
             (QStringList{QStringLiteral("0.000500 1 001"), QStringLiteral("-1.000500 1 002")}));
    QVERIFY(!read.head.hasTimeOfDay);
}

QTEST_GUILESS_MAIN(tst_AscReader)
#include "tst_ascreader.moc"
