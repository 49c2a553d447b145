// SPDX-License-Identifier: MIT
#include "encoding.h"
#include "traceframes.h"

#include <QtTest>

#include <random>

namespace {

QString unknown(const char *line)
{
    return QStringLiteral("This is no frame: \"%1\".").arg(QLatin1String(line));
}

const char good[] = "(1.000000) can0 7FF#\n"; // so that the text is known to be a log

} // namespace

/*! Logs and screens of candump. */
class tst_CandumpReader : public QObject
{
    Q_OBJECT

private slots:
    void lines_data();
    void lines();
    void problems_data();
    void problems();
    void channelsAreNamedOnce();
    void usualLinesAreReadAsAnyOther();
    void dateOnTheScreen();
    void timeOfDay();
    void writesLikeCandump();
};

void tst_CandumpReader::lines_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("frame");

    const auto row = [](const char *name, const char *line, const char *frame) {
        QTest::newRow(name) << QByteArray(line) << QString::fromLatin1(frame);
    };
    row("standard", "(1436509052.249713) can0 123#1122334455667788",
        "1436509052.249713 can0 123 1122334455667788");
    row("lower case", "(1436509052.249713) vcan12 6ab#cd", "1436509052.249713 vcan12 6ab cd");
    row("extended", "(1436509052.249713) can0 1C23456F#00", "1436509052.249713 can0 1c23456f 00");
    row("extended, small", "(1436509052.249713) can0 00000123#00", "1436509052.249713 can0 00000123 00");
    row("no bytes", "(1436509052.249713) can0 080#", "1436509052.249713 can0 080");
    row("remote", "(1436509052.249713) can0 123#R", "1436509052.249713 can0 123 remote 0");
    row("remote with length", "(1436509052.249713) can0 1C23456F#R8",
        "1436509052.249713 can0 1c23456f remote 8");
    row("error", "(1436509053.850870) can0 20000088#0000801900000000",
        "1436509053.850870 can0 088 error 0000801900000000");
    row("received", "(1436509052.249713) can0 123#11 R", "1436509052.249713 can0 123 11");
    row("sent", "(1436509052.249713) can0 123#11 T", "1436509052.249713 can0 123 11 sent");
    row("remote, sent", "(1436509052.249713) can0 123#R4 T", "1436509052.249713 can0 123 remote 4 sent");
    row("length on the wire", "(1436509052.249713) can0 123#1122334455667788_E",
        "1436509052.249713 can0 123 1122334455667788");
    row("points between bytes", "(1436509052.249713) can0 123#11.22.33", "1436509052.249713 can0 123 112233");
    row("end of a line of DOS", "(1436509052.249713) can0 123#11\r", "1436509052.249713 can0 123 11");
    row("nanoseconds", "(1436509052.249713999) can0 123#11", "1436509052.249713 can0 123 11");
    row("milliseconds", "(1436509052.249) can0 123#11", "1436509052.249000 can0 123 11");
    row("before the beginning", "(-1.500000) can0 123#11", "-1.500000 can0 123 11");
    row("screen", "  can0  123   [8]  11 22 33 44 55 66 77 88", "0.000000 can0 123 1122334455667788");
    row("screen, extended", "  can0  00000123   [1]  11", "0.000000 can0 00000123 11");
    row("screen, time", " (003.249713)  can0  123   [2]  11 22", "3.249713 can0 123 1122");
    row("screen, characters", "  can0  123   [4]  11 22 33 44               '.\"3D'",
        "0.000000 can0 123 11223344");
    row("screen, remote", "  can0  123   [8]  remote request", "0.000000 can0 123 remote 8");
    row("screen, error", "  can0  20000088   [8]  00 00 80 19 00 00 00 00   ERRORFRAME",
        "0.000000 can0 088 error 0000801900000000");
    row("screen, sent", "  can0  TX - -  123   [1]  11", "0.000000 can0 123 11 sent");
    row("screen, received", "  can0  RX - -  123   [1]  11", "0.000000 can0 123 11");
    row("screen, length on the wire", "  can0  123   [8]{E}  11 22 33 44 55 66 77 88",
        "0.000000 can0 123 1122334455667788");
}

void tst_CandumpReader::lines()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, frame);

    QCOMPARE(readTexts(line + '\n'), QStringList{frame});
}

void tst_CandumpReader::problems_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("problem");

    const auto row = [](const char *name, const char *line, const QString &problem = {}) {
        QTest::newRow(name) << QByteArray(line) << (problem.isEmpty() ? unknown(line) : problem);
    };
    const QString flexible = QStringLiteral("A CAN FD frame; only classic frames are read.");
    const QString large = QStringLiteral("The identifier is larger than one can be.");
    row("CAN FD", "(1.000000) can0 123##1112233", flexible);
    row("CAN FD on the screen", "  can0  123  [08]  11 22 33 44 55 66 77 88", flexible);
    row("long CAN FD on the screen", "  can0  123  [12]  11 22 33 44 55 66 77 88 99 AA BB CC", flexible);
    row("large", "(1.000000) can0 800#11", large);
    row("large, extended", "(1.000000) can0 FFFFFFFF#11", large);
    row("half a byte", "(1.000000) can0 123#112");
    row("nine bytes", "(1.000000) can0 123#112233445566778899");
    row("four digits", "(1.000000) can0 1234#11");
    row("cut in the time", "(1.00");
    row("cut in the channel", "(1.000000) ca");
    row("cut in the identifier", "(1.000000) can0 12");
    row("long remote", "(1.000000) can0 123#R9");
    row("error frame that asks", "(1.000000) can0 20000088#R8");
    row("error frame that asks, on the screen", "  can0  20000088   [8]  remote request",
        unknown("can0  20000088   [8]  remote request"));
    row("rubbish behind", "(1.000000) can0 123#11 X");
    row("rubbish at the bytes", "(1.000000) can0 123#11X");
    row("screen with too few", "  can0  123   [3]  11 22", unknown("can0  123   [3]  11 22"));
    row("screen with nine", "  can0  123   [9]  11 22", unknown("can0  123   [9]  11 22"));
    row("another program", "Nov 22 08:00:00 host kernel: can0: bus-off");
    row("long line", QByteArray(20000, 'x').constData(),
        QStringLiteral("The line has more than 16384 characters."));
}

void tst_CandumpReader::problems()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, problem);

    // The lines around it are read.
    const QByteArray text = good + line + '\n' + good;
    const QString frame = QStringLiteral("1.000000 can0 7ff");
    QCOMPARE(readTexts(text), (QStringList{frame, frame, QStringLiteral("! 2 ") + problem}));
}

void tst_CandumpReader::channelsAreNamedOnce()
{
    const Trace trace = readTrace("(1.0) can0 001#\n(1.1) can1 002#\n(1.2) can0 003#\n(1.3) x 80000000#\n");
    QCOMPARE(trace.head.channels, (QStringList{QStringLiteral("can0"), QStringLiteral("can1")}));
    QCOMPARE(trace.frames.size(), size_t(3));
    QCOMPARE(int(trace.frames.at(0).channel), 0);
    QCOMPARE(int(trace.frames.at(1).channel), 1);
    QCOMPARE(int(trace.frames.at(2).channel), 0);

    QByteArray many;
    for (int i = 0; i < 257; ++i)
        many += "(1.0) c" + QByteArray::number(i) + " 001#\n";
    const Trace full = readTrace(many);
    QCOMPARE(full.frames.size(), size_t(256));
    QCOMPARE(int(full.frames.back().channel), 255);
    QCOMPARE(full.problems.size(), size_t(1));
    QCOMPARE(full.problems.front().text, QStringLiteral("There are more than 256 channels."));
}

/*! Lines of the channel of the first one are read in another way: what comes of them is the same. */
void tst_CandumpReader::usualLinesAreReadAsAnyOther()
{
    const QByteArray usual = "(1436509052.249713) can0 123#1122334455667788";
    const QByteArray letters = "0123456789abcdefABCDEFgG# .()_RT-can\t\r";
    std::mt19937 random(1); // NOLINT: the same lines each time
    const auto below
        = [&random](int bound) { return static_cast<int>(random() % static_cast<unsigned>(bound)); };
    const auto readBehind = [](const char *first, const QByteArray &line) {
        QStringList texts = readTexts(first + line + '\n', QStringLiteral("trace.log"));
        texts.removeFirst();
        return texts;
    };
    int frames = 0;
    for (int i = 0; i < 50'000; ++i) {
        QByteArray line = usual.left(usual.size() - below(18));
        for (int changes = below(3); changes > 0; --changes)
            line[below(line.size())] = letters.at(below(letters.size()));
        if (below(10) == 0)
            line.insert(below(line.size()), letters.at(below(letters.size())));
        if (below(10) == 0)
            line.remove(below(line.size()), 1 + below(3));
        const QStringList expected = readBehind("(1436509052.000000) can1 7FF#\n", line);
        const QStringList texts = readBehind("(1436509052.000000) can0 7FF#\n", line);
        QVERIFY2(texts == expected, line.constData());
        frames += texts.size() == 1 && !texts.first().startsWith(QLatin1Char('!')) ? 1 : 0;
    }
    QVERIFY(frames > 10'000);
}

void tst_CandumpReader::dateOnTheScreen()
{
    const QByteArray zone = qgetenv("TZ");
    qputenv("TZ", "Europe/Berlin");
    const QStringList texts = readTexts(" (2015-07-10 08:37:32.249713)  can0  123   [1]  11\n"
                                        " (2015-07-10 09:00:00.000001)  can0  123   [1]  11\n");
    zone.isNull() ? qunsetenv("TZ") : qputenv("TZ", zone);
    QCOMPARE(texts, (QStringList{QStringLiteral("1436510252.249713 can0 123 11"),
                                 QStringLiteral("1436511600.000001 can0 123 11")}));
}

void tst_CandumpReader::timeOfDay()
{
    QVERIFY(readTrace("(1436509052.249713) can0 123#11\n").head.hasTimeOfDay);
    QVERIFY(!readTrace("(000.249713) can0 123#11\n").head.hasTimeOfDay);
}

void tst_CandumpReader::writesLikeCandump()
{
    const QByteArray log = "(1436509052.249713) can0 123#1122334455667788\n"
                           "(1436509052.349713) can1 1C23456F#\n"
                           "(1436509052.349712) can1 00000001#AB\n"
                           "(1436509052.449713) can0 080#R\n"
                           "(1436509052.549713) can0 123#R8\n"
                           "(1436509053.850870) can0 20000088#0000801900000000\n"
                           "(1436509053.850871) can0 601#4000100000000000 T\n";
    QCOMPARE(encoded(readTrace(log), TraceFormat::Candump), log);
}

QTEST_GUILESS_MAIN(tst_CandumpReader)
#include "tst_candumpreader.moc"
