// SPDX-License-Identifier: MIT
#include "program.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace {

/*! 3 September 2026, 12:03:11 UTC */
constexpr char ride[] = "(1788436991.204000) can0 282#84990000\n"
                        "(1788436991.205000) can0 602#4001180100000000\n"
                        "(1788436991.205500) can0 080#\n"
                        "(1788436991.206000) can0 582#4301180182020000\n"
                        "(1788436991.207000) can0 602#40011A0000000000\n"
                        "(1788436991.208000) can0 582#4F011A0001000000\n"
                        "(1788436991.209000) can0 602#40011A0100000000\n"
                        "(1788436991.210000) can0 582#43011A0120014060\n"
                        "(1788436991.300000) can0 604#4064610200000000\n"
                        "(1788436991.800000) can0 604#8064610200000405\n"
                        "(1788436993.000000) can0 084#1042090000000000\n";

QVector<QJsonObject> jsonLines(const QString &output)
{
    QVector<QJsonObject> objects;
    const QStringList lines = output.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString &line : lines)
        objects.append(QJsonDocument::fromJson(line.toUtf8()).object());
    return objects;
}

} // namespace

/*! The command "trace show". */
class tst_TraceShow : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void words();
    void choice_data();
    void choice();
    void json();
    void pipe();
    void pipeAsItComes();
    void dataSheet();
    void brokenLines();
    void twoChannels();
    void channelThatComesLater();
    void timesWithoutADay();
    void usage_data();
    void usage();
    void noSuchFile();
    void help();

private:
    QString write(const QByteArray &text, const QString &name = QStringLiteral("ride.log")) const
    {
        QFile file(m_folder->filePath(name));
        if (!file.open(QIODevice::WriteOnly))
            qFatal("The file cannot be written");
        file.write(text);
        return file.fileName();
    }
    static Result show(const QStringList &arguments)
    {
        return run(QStringList{QStringLiteral("trace"), QStringLiteral("show")} + arguments,
                   {QStringLiteral("TZ=UTC"), QStringLiteral("LC_ALL=C.UTF-8")});
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_TraceShow::words()
{
    const Result result = show({write(ride)});
    QCOMPARE(result.errors, QString());
    QCOMPARE(
        result.output,
        QString::fromUtf8(
            "2026-09-03\n"
            "12:03:11.204              2  PDO 2: Device actual voltage = 39.30 V\n"
            "12:03:11.205     1.0 ms   2  read 1801h.1 Sent PDO 2, identifier = 282h (2 frames, 1.0 ms)\n"
            "12:03:11.205     0.5 ms      SYNC\n"
            "12:03:11.207     1.5 ms   2  read 1A01h.0 Sent PDO 2, mapping = 1 (2 frames, 1.0 ms)\n"
            "12:03:11.209     2.0 ms   2  read 1A01h.1 Sent PDO 2, mapping = 6040h.1 (32 bit) "
            "(2 frames, 1.0 ms)\n"
            "12:03:11.300    91.0 ms   4  fault: read 6164h.2 Relative battery Wh capacity: no answer "
            "(2 frames, 500.0 ms)\n"
            "12:03:13.000     1.70 s   4  fault: emergency 4210h: device temperature, error register 09h "
            "(generic error, temperature)\n"));
    QCOMPARE(result.status, 0);
}

void tst_TraceShow::choice_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<int>("lines"); // without that of the day
    const auto row = [](const char *options, int lines) {
        QTest::newRow(options) << QString::fromLatin1(options).split(QLatin1Char(' ')) << lines;
    };
    row("--node 4", 2);
    row("--node 4 --node 2", 6);
    row("--kind sdo", 4);
    row("--kind sync,emergency", 2);
    row("--object 6040h.1", 1);
    row("--object 1A01", 2);
    row("--object 1A01.1 --object 6164", 2);
    row("--text VOLTAGE", 1);
    row("--wrong", 2);
    row("--wrong --kind sdo", 1);
    row("--wrong --node 2", 0);
}

void tst_TraceShow::choice()
{
    QFETCH(QStringList, options);
    QFETCH(int, lines);
    const Result result = show(QStringList{write(ride)} + options);
    const QStringList shown = result.output.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(std::max(0, shown.size() - 1), lines);
    QCOMPARE(result.errors, QStringLiteral("%1 of 7 lines shown\n").arg(lines));
    QCOMPARE(result.status, 0);
}

void tst_TraceShow::json()
{
    const Result result = show({write(ride), QStringLiteral("--json")});
    const QVector<QJsonObject> lines = jsonLines(result.output);
    QCOMPARE(lines.size(), 7);
    const QJsonObject pdo = lines.at(0);
    QCOMPARE(pdo.value(QStringLiteral("time")).toDouble(), 1788436991.204);
    QCOMPARE(pdo.value(QStringLiteral("channel")).toString(), QStringLiteral("can0"));
    QCOMPARE(pdo.value(QStringLiteral("node")).toInt(), 2);
    QCOMPARE(pdo.value(QStringLiteral("kind")).toString(), QStringLiteral("pdo"));
    QCOMPARE(pdo.value(QStringLiteral("mark")).toString(), QStringLiteral("plain"));
    QCOMPARE(pdo.value(QStringLiteral("id")).toInt(), 0x282);
    QCOMPARE(pdo.value(QStringLiteral("bytes")).toString(), QStringLiteral("84 99 00 00"));
    const QJsonObject silent = lines.at(5);
    QCOMPARE(silent.value(QStringLiteral("mark")).toString(), QStringLiteral("fault"));
    const QJsonObject transfer = silent.value(QStringLiteral("transfer")).toObject();
    QCOMPARE(transfer.value(QStringLiteral("index")).toInt(), 0x6164);
    QCOMPARE(transfer.value(QStringLiteral("sub")).toInt(), 2);
    QCOMPARE(transfer.value(QStringLiteral("outcome")).toString(), QStringLiteral("noAnswer"));
    QCOMPARE(transfer.value(QStringLiteral("abortCode")).toDouble(), double(0x05040000));
    QCOMPARE(transfer.value(QStringLiteral("frames")).toInt(), 2);
    QVERIFY(transfer.value(QStringLiteral("value")).isNull());
    const QJsonObject read = lines.at(1).value(QStringLiteral("transfer")).toObject();
    QCOMPARE(read.value(QStringLiteral("value")).toString(), QStringLiteral("282h"));
    QCOMPARE(read.value(QStringLiteral("bytes")).toString(), QStringLiteral("82 02 00 00"));
    QCOMPARE(read.value(QStringLiteral("problems")).toArray().size(), 0);
}

/*! A pipe tells nothing ahead, so the first PDO has no names yet, and lines come as they end. */
void tst_TraceShow::pipe()
{
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TZ"), QStringLiteral("UTC"));
    program.setProcessEnvironment(environment);
    program.setStandardInputFile(write(QByteArray(ride) + "(1788436993.100000) can0 282#84990000\n"));
    program.start(QStringLiteral(DRAXELCTL),
                  {QStringLiteral("trace"), QStringLiteral("show"), QStringLiteral("-")});
    QVERIFY(program.waitForFinished(patience));
    QCOMPARE(program.exitCode(), 0);
    const QStringList lines
        = QString::fromUtf8(program.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 9);
    QVERIFY2(lines.at(1).endsWith(QStringLiteral("PDO 2, its mapping is not known: 84 99 00 00")),
             qPrintable(lines.at(1)));
    QVERIFY2(lines.at(2).endsWith(QStringLiteral("SYNC")), qPrintable(lines.at(2)));
    QVERIFY2(lines.last().endsWith(QStringLiteral("PDO 2: Device actual voltage = 39.30 V")),
             qPrintable(lines.last()));
}

void tst_TraceShow::pipeAsItComes()
{
    QProcess program;
    program.start(QStringLiteral(DRAXELCTL),
                  {QStringLiteral("trace"), QStringLiteral("show"), QStringLiteral("-")});
    QVERIFY(program.waitForStarted(patience));
    QByteArray output;
    const auto comes = [&](const char *text) {
        return QTest::qWaitFor(
            [&] {
                output += program.readAllStandardOutput();
                return output.contains(text);
            },
            patience);
    };
    program.write("(1788436991.204000) can0 080#\n");
    QVERIFY(comes("SYNC\n"));
    program.write("(1788436991.205000) can0 704#05\n");
    QVERIFY(comes("heartbeat: Operational\n"));
    program.closeWriteChannel();
    QVERIFY(program.waitForFinished(patience));
    QCOMPARE(program.exitCode(), 0);
}

void tst_TraceShow::dataSheet()
{
    const QString sheet
        = write("[1800]\nSubNumber=1\nParameterName=P\nObjectType=9\n"
                "[1800sub1]\nParameterName=C\nDataType=7\nAccessType=rw\nDefaultValue=$NODEID+0x180\n"
                "[1A00]\nSubNumber=2\nParameterName=M\nObjectType=9\n"
                "[1A00sub0]\nParameterName=N\nDataType=5\nAccessType=rw\nDefaultValue=1\n"
                "[1A00sub1]\nParameterName=1\nDataType=7\nAccessType=rw\nDefaultValue=0x20000008\n"
                "[2000]\nParameterName=Gear\nObjectType=7\nDataType=2\nAccessType=rw\n",
                QStringLiteral("gear.eds"));
    const Result result = show(
        {write("(1788436991.204000) can0 185#FE\n"), QStringLiteral("--eds"), QStringLiteral("5:") + sheet});
    QVERIFY2(result.output.endsWith(QStringLiteral("PDO 1: Gear = -2\n")), qPrintable(result.output));
}

void tst_TraceShow::brokenLines()
{
    const Result result = show({write(QByteArray(ride) + "(1788436993.1000")});
    QVERIFY(!result.errors.isEmpty());
    QCOMPARE(result.output.count(QLatin1Char('\n')), 8);
}

void tst_TraceShow::twoChannels()
{
    const Result result = show({write("(1788436991.204000) can0 080#\n(1788436991.205000) can1 705#05\n")});
    const QStringList lines = result.output.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 3);
    QVERIFY2(lines.at(2).contains(QStringLiteral(" can1    5  heartbeat")), qPrintable(lines.at(2)));
}

void tst_TraceShow::channelThatComesLater()
{
    const Result result = show({write("(0.204000) can0 080#\n(0.205000) can1 705#05\n")});
    QCOMPARE(result.output, QStringLiteral("0.204000            can0       SYNC\n"
                                           "0.205000     1.0 ms can1    5  heartbeat: Operational\n"));
}

void tst_TraceShow::timesWithoutADay()
{
    const Result result = show({write("(0.204000) can0 080#\n(2.205001) can0 705#05\n")});
    QCOMPARE(result.output, QStringLiteral("0.204000                 SYNC\n"
                                           "2.205001     2.00 s   5  heartbeat: Operational\n"));
}

void tst_TraceShow::usage_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("complaint");
    const auto row = [](const char *options, const char *complaint) {
        QTest::newRow(options) << QString::fromLatin1(options).split(QLatin1Char(' '))
                               << QString::fromLatin1(complaint);
    };
    row("--node 128", "\"128\" is no node ID; they are 1 to 127.");
    row("--kind sdo,xyz",
        "There is no kind \"xyz\"; there are nmt, sync, time, emergency, pdo, sdo, heartbeat, other, error.");
    row("--object 6164h.", "\"6164h.\" is no object; one is written like 6164h or 6164h.2.");
    row("--object 61640", "\"61640\" is no object; one is written like 6164h or 6164h.2.");
    row("--eds gear.eds", "--eds takes a node ID and a file, as in 2:battery.eds.");
}

void tst_TraceShow::usage()
{
    QFETCH(QStringList, options);
    QFETCH(QString, complaint);
    const Result result = show(QStringList{write(ride)} + options);
    QCOMPARE(result.status, 1);
    QCOMPARE(result.output, QString());
    QVERIFY2(result.errors.contains(complaint), qPrintable(result.errors));
}

void tst_TraceShow::noSuchFile()
{
    const Result result = show({m_folder->filePath(QStringLiteral("none.log"))});
    QCOMPARE(result.status, 5);
    QVERIFY2(result.errors.contains(QStringLiteral("none.log")), qPrintable(result.errors));
    QCOMPARE(result.errors.count(QLatin1Char('\n')), 1);
}

void tst_TraceShow::help()
{
    const Result result = show({QStringLiteral("--help")});
    QCOMPARE(result.status, 0);
    for (const char *option :
         {"--node", "--kind", "--object", "--text", "--wrong", "--json", "--eds", "--snapshot"})
        QVERIFY2(result.output.contains(QLatin1String(option)), option);
}

QTEST_GUILESS_MAIN(tst_TraceShow)
#include "tst_traceshow.moc"
