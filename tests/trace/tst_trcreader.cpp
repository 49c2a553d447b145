// SPDX-License-Identifier: MIT
#include "encoding.h"
#include "traceframes.h"

#include <QtTest>

namespace {

// 2015-07-10 08:37:32.249 UTC is 42195.359401030092... days after the beginning of 1899-12-30.
const QByteArray start(";$STARTTIME=42195.359401030093\n");

QByteArray version(const char *number, const char *more = "")
{
    return QByteArray(";$FILEVERSION=") + number + '\n' + start + more + ";\n;---+--   ----+----\n";
}

const char columns[] = ";$COLUMNS=N,O,T,B,I,d,R,L,D\n";

} // namespace

Q_DECLARE_METATYPE(TraceFormat)

/*! PEAK's trc. Times are of UTC, which the tests run in, unless they say otherwise. */
class tst_TrcReader : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qputenv("TZ", "UTC"); }
    void lines_data();
    void lines();
    void problems_data();
    void problems();
    void columnsInAnotherOrder();
    void withoutVersion();
    void startTimes_data();
    void startTimes();
    void everyMicrosecondComesBack();
    void clockSetMeanwhile_data();
    void clockSetMeanwhile();
    void writes21();
    void writes11();
};

void tst_TrcReader::lines_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QStringList>("frames");

    const auto row = [](const char *name, const QByteArray &head, const char *line, const char *frame) {
        QTest::newRow(name) << head << QByteArray(line)
                            << (*frame != 0 ? QStringList{QString::fromLatin1(frame)} : QStringList());
    };
    const QByteArray one = version("1.1");
    row("1.1", one, "     1)      1059.9  Rx     00000300  8  00 00 00 00 04 00 00 00 ",
        "1436517453.308900 1 00000300 0000000004000000");
    row("1.1 sent", one, "     2)      1.0  Tx     0300  2  01 02", "1436517452.250000 1 300 0102 sent");
    row("1.1 remote", one, "     3)      1.0  Rx     0400  5  RTR", "1436517452.250000 1 400 remote 5");
    row("1.1 error", one, "     4)      1.0  Error  0004  4  00 00 00 00",
        "1436517452.250000 1 088 error 0000040000000000");
    row("1.1 warning", one, "     5)      1.0  Warng  FFFFFFFF  4  00 00 00 08  BUSHEAVY", "");
    row("1.0", version("1.0"), "     1)      1841  0001  2  00 01", "1436517454.090000 1 001 0001");
    row("1.2", version("1.2"), "     1)      1.000 2  Rx  0300  1  05", "1436517452.250000 2 300 05");
    row("1.3", version("1.3"), "     1)      1.000 2  Rx  0300 -  1  05", "1436517452.250000 2 300 05");
    row("2.0", version("2.0"), "      1      1.234 DT     0300 Rx 1  05", "1436517452.250234 1 300 05");
    const QByteArray two = version("2.1", columns);
    row("2.1", two, "      1      1.234 DT 2      0300 Rx -  2    05 06", "1436517452.250234 2 300 0506");
    row("2.1 extended", two, "      1      1.234 DT 1  18EF0300 Tx -  0",
        "1436517452.250234 1 18ef0300 sent");
    row("2.1 remote", two, "      1      1.234 RR 1      0300 Rx -  8", "1436517452.250234 1 300 remote 8");
    row("2.1 error", two, "      1      1.234 ER 1      0001 Rx -  5    04 00 02 00 00",
        "1436517452.250234 1 088 error 0000010000000000");
    row("2.1 other error", two, "      1      1.234 ER 1      0008 Rx -  5    04 00 02 00 00",
        "1436517452.250234 1 080 error 0000000000000000");
    row("2.1 status", two, "      1      1.234 ST 1         - Rx -  4    00 00 00 08", "");
    row("2.1 event", two, "      1      1.234 EV 1 user event", "");
    row("2.1 length on the wire", two, "      1      1.234 DT 1      0300 Rx -  15   01 02 03 04 05 06 07 08",
        "1436517452.250234 1 300 0102030405060708");
    row("comment", two, ";  1      1.234 DT 1      0300 Rx -  0", "");
}

void tst_TrcReader::lines()
{
    QFETCH(QByteArray, head);
    QFETCH(QByteArray, line);
    QFETCH(QStringList, frames);

    QCOMPARE(readTexts(head + line + '\n'), frames);
    QCOMPARE(readTexts(QByteArray(head + line + '\n').replace("\n", "\r\n")), frames);
}

void tst_TrcReader::problems_data()
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
    row("CAN FD", "1 1.0 FD 1 0300 Rx - 9 01 02 03 04 05 06 07 08 09 0A 0B 0C", flexible);
    row("CAN FD with bit rate switch", "1 1.0 FB 1 0300 Rx - 1 01", flexible);
    row("large identifier", "1 1.0 DT 1 0800 Rx - 1 01", "The identifier is larger than one can be.");
    row("no identifier", "1 1.0 DT 1 - Rx - 1 01");
    row("too few bytes", "1 1.0 DT 1 0300 Rx - 2 01");
    row("long", "1 1.0 DT 1 0300 Rx - 16 01 02 03 04 05 06 07 08");
    row("no time", "1 x DT 1 0300 Rx - 0");
    row("cut", "1");
}

void tst_TrcReader::problems()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, problem);

    const QStringList texts = readTexts(version("2.1", columns) + line + "\n2 1.000 DT 1 0001 Rx - 0\n");
    QCOMPARE(texts,
             (QStringList{QStringLiteral("1436517452.250000 1 001"), QStringLiteral("! 6 ") + problem}));
}

void tst_TrcReader::columnsInAnotherOrder()
{
    QCOMPARE(readTexts(version("2.1", ";$COLUMNS=T,O,I,l,D\n") + "DT 1.0 0300 1 05\n"),
             QStringList{QStringLiteral("1436517452.250000 1 300 05")});
}

void tst_TrcReader::withoutVersion()
{
    QCOMPARE(readTexts("     1)      1841  0001  2  00 01\n"),
             QStringList{QStringLiteral("1.841000 1 001 0001")});
}

void tst_TrcReader::startTimes_data()
{
    QTest::addColumn<QByteArray>("days");
    QTest::addColumn<QString>("time");

    QTest::newRow("ten places, as PEAK's") << QByteArray("42195.3594010301") << "1436517452.249001";
    QTest::newRow("none") << QByteArray("0") << "0.000000";
    QTest::newRow("midnight") << QByteArray("42195") << "1436486400.000000";
    QTest::newRow("a day too small to tell") << QByteArray("42195.999999999999") << "1436572799.999999";
    QTest::newRow("no number") << QByteArray("yesterday") << "0.000000";
}

void tst_TrcReader::startTimes()
{
    QFETCH(QByteArray, days);
    QFETCH(QString, time);

    const Trace trace = readTrace(";$FILEVERSION=1.1\n;$STARTTIME=" + days + "\n1) 0.0 Rx 0001 0\n");
    QCOMPARE(textsOf(trace), QStringList{time + QStringLiteral(" 1 001")});
    QCOMPARE(trace.head.hasTimeOfDay, time != QLatin1String("0.000000"));
}

void tst_TrcReader::everyMicrosecondComesBack()
{
    for (const char *zone : {"UTC", "Europe/Berlin", "Asia/Kathmandu"}) {
        qputenv("TZ", zone);
        for (qint64 i = 0; i < 2000; ++i) {
            Trace trace;
            trace.head = {{QStringLiteral("1")}, true};
            trace.frames = {traceFrame(1436517452249713 + i * 43'199'999'983, 1, "")};
            QCOMPARE(textsOf(readTrace(encoded(trace, TraceFormat::Trc21))), textsOf(trace));
        }
    }
    qputenv("TZ", "UTC");
}

void tst_TrcReader::clockSetMeanwhile_data()
{
    QTest::addColumn<TraceFormat>("format");
    QTest::addColumn<bool>("hasTimeOfDay");
    QTest::addColumn<qint64>("first");
    QTest::addColumn<qint64>("second");
    QTest::addColumn<QStringList>("frames");

    const QStringList set{QStringLiteral("12.000000 1 001"), QStringLiteral("1795397561.000000 1 002")};
    const QStringList setBack{QStringLiteral("1795397561.000000 1 001"), QStringLiteral("12.000000 1 002")};
    constexpr qint64 early = 12'000'000;
    constexpr qint64 late = 1'795'397'561'000'000;
    QTest::newRow("1.1 forwards") << TraceFormat::Trc11 << false << early << late << set;
    QTest::newRow("1.1 backwards") << TraceFormat::Trc11 << true << late << early << setBack;
    QTest::newRow("2.1 forwards") << TraceFormat::Trc21 << false << early << late << set;
    QTest::newRow("2.1 backwards") << TraceFormat::Trc21 << true << late << early << setBack;
}

/*! A computer without a clock begins in 1970, until the network tells it the time. */
void tst_TrcReader::clockSetMeanwhile()
{
    QFETCH(TraceFormat, format);
    QFETCH(bool, hasTimeOfDay);
    QFETCH(qint64, first);
    QFETCH(qint64, second);
    QFETCH(QStringList, frames);
    Trace trace;
    trace.head = {{QStringLiteral("1")}, hasTimeOfDay};
    trace.frames = {traceFrame(first, 1, ""), traceFrame(second, 2, "")};
    QCOMPARE(textsOf(readTrace(encoded(trace, format))), frames);
}

void tst_TrcReader::writes21()
{
    Trace trace;
    trace.head = {{QStringLiteral("can0"), QStringLiteral("can1")}, true};
    trace.frames
        = {traceFrame(1436517452249713, 0x123, "0011223344556677"),
           traceFrame(1436517462249714, 0x18EBFF00, "AB", TraceFrame::Extended | TraceFrame::Sent, 1),
           remoteFrame(1436517452250000, 0x7FF, 8),
           traceFrame(1436517452250001, 0x88, "0000040000000000", TraceFrame::Error)};
    const QByteArray text = encoded(trace, TraceFormat::Trc21);
    QVERIFY(
        text.startsWith(";$FILEVERSION=2.1\n;$STARTTIME=42195.359401030093\n;$COLUMNS=N,O,T,B,I,d,R,L,D\n"));
    QVERIFY(text.contains(";   Start time: 10.07.2015 08:37:32.249\n"));
    QVERIFY(text.endsWith("\n     1         0.713 DT 1      0123 Rx -  8    00 11 22 33 44 55 66 77\n"
                          "     2     10000.714 DT 2  18EBFF00 Tx -  1    AB\n"
                          "     3         1.000 RR 1      07FF Rx -  8\n"
                          "     4         1.001 ER 1      0004 Rx -  5    00 00 00 00 00\n"));
    QStringList expected = textsOf(trace);
    expected.replaceInStrings(QStringLiteral("can0"), QStringLiteral("1"));
    expected.replaceInStrings(QStringLiteral("can1"), QStringLiteral("2"));
    QCOMPARE(textsOf(readTrace(text)), expected);
}

void tst_TrcReader::writes11()
{
    Trace trace;
    trace.head = {{QStringLiteral("can0")}, true};
    trace.frames = {traceFrame(1436517452249713, 0x123, "0011"),
                    traceFrame(1436517462249714, 0x18EBFF00, "AB", TraceFrame::Extended | TraceFrame::Sent),
                    remoteFrame(1436517452250000, 0x7FF, 8)};
    const QByteArray text = encoded(trace, TraceFormat::Trc11);
    QVERIFY(text.startsWith(";$FILEVERSION=1.1\n;$STARTTIME=42195.359401030093\n"));
    QVERIFY(text.endsWith("\n     1)            0.7  Rx         0123  2  00 11\n"
                          "     2)        10000.7  Tx     18EBFF00  1  AB\n"
                          "     3)            1.0  Rx         07FF  8  RTR\n"));
}

QTEST_GUILESS_MAIN(tst_TrcReader)
#include "tst_trcreader.moc"
