// SPDX-License-Identifier: MIT
#include "program.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

/*! "draxelctl bundle", and what the other commands make of a bundle. */
class tst_BundleCommand : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void ofABus();
    void ofAPlayedTrace();
    void ofFiles();
    void eventsOfSeveralBuses();
    void maskedHasNoSerialNumbers();
    void otherCommandsTakeIt();
    void reportTakesIt();
    void simulateTakesIt();
    void badBundles();
    void badArguments_data();
    void badArguments();
    void fileThatCannotBeWritten();
    void interruptLeavesAWholeOneOrNone();
    void interruptEndsTheInput();

private:
    QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }
    Result make(const QStringList &more = {}) const;
    QByteArray fileOf(const char *bundle, const char *name) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

namespace {

// Of the simulated pedelec: what its battery on node 2 says in 1018h.4.
const QString batterySerial = QStringLiteral("1023457");

QString withoutBlanks(QString text)
{
    return text.remove(QLatin1Char(' '));
}

} // namespace

Result tst_BundleCommand::make(const QStringList &more) const
{
    return run(QStringList{QStringLiteral("bundle"), QStringLiteral("--bus"),
                           QStringLiteral("simulated:pedelec"), QStringLiteral("--quick"),
                           QStringLiteral("--output"), path("b.zip")}
               + more);
}

/*! A file of a bundle, unpacked by another program. */
QByteArray tst_BundleCommand::fileOf(const char *bundle, const char *name) const
{
    QProcess python;
    python.start(
        QStringLiteral("python3"),
        {QStringLiteral("-c"),
         QStringLiteral("import gzip, sys, zipfile\nb = zipfile.ZipFile(sys.argv[1]).read(sys.argv[2])\n"
                        "sys.stdout.buffer.write(gzip.decompress(b) if sys.argv[2].endswith('.gz') else b)"),
         path(bundle), QLatin1String(name)});
    return python.waitForFinished() ? python.readAllStandardOutput() : QByteArray();
}

void tst_BundleCommand::ofABus()
{
    const Result result = make({QStringLiteral("--for"), QStringLiteral("3s")});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.status, 0);
    QVERIFY2(result.output.contains(QLatin1String("Total: 7 nodes, 393 values read")),
             qPrintable(result.output));
    QVERIFY2(result.output.endsWith(QStringLiteral("Wrote %1\n").arg(path("b.zip"))),
             qPrintable(result.output));
    const QByteArray trace = fileOf("b.zip", "trace.log.gz");
    QVERIFY(trace.contains(" pedelec 602#4018100400000000")); // what was asked
    QVERIFY(trace.contains(" pedelec 582#"));                 // and what was answered
    const QList<QByteArray> lines = trace.trimmed().split('\n');
    const auto timeOf = [](const QByteArray &line) { return line.mid(1, line.indexOf(')') - 1).toDouble(); };
    QVERIFY(timeOf(lines.last()) - timeOf(lines.first()) > 3);
    const QJsonObject events = QJsonDocument::fromJson(fileOf("b.zip", "events.json")).object();
    QVERIFY(events.value(QLatin1String("events")).toArray().size() >= 7);
    const QJsonObject system = QJsonDocument::fromJson(fileOf("b.zip", "system.json")).object();
    QCOMPARE(system.value(QLatin1String("bus")).toString(), QStringLiteral("simulated:pedelec"));
    QCOMPARE(system.value(QLatin1String("bitRate")).toInt(), 250000);
    QVERIFY(!system.value(QLatin1String("computer"))
                 .toObject()
                 .value(QLatin1String("items"))
                 .toArray()
                 .isEmpty());
    QVERIFY(fileOf("b.zip", "messages.txt").contains(" note: Node 2, Battery Pack: "));
}

/*! Its frames have the time of then, and so has what is asked meanwhile. */
void tst_BundleCommand::ofAPlayedTrace()
{
    QFile log(path("ride.log"));
    QVERIFY(log.open(QIODevice::WriteOnly));
    for (int i = 0; i < 30; ++i)
        log.write(QStringLiteral("(1600000000.%1) can0 702#05\n")
                      .arg(i * 10'000, 6, 10, QLatin1Char('0'))
                      .toLatin1());
    log.close();
    const Result result
        = run({QStringLiteral("bundle"), QStringLiteral("--bus"), QStringLiteral("trace:") + log.fileName(),
               QStringLiteral("--quick"), QStringLiteral("--for"), QStringLiteral("100ms"),
               QStringLiteral("--output"), path("b.zip")});
    QVERIFY2(QFile::exists(path("b.zip")), qPrintable(result.errors));
    const QList<QByteArray> lines = fileOf("b.zip", "trace.log.gz").trimmed().split('\n');
    int heard = 0;
    int asked = 0;
    for (const QByteArray &line : lines) {
        QVERIFY2(line.startsWith("(1600000000."), line);
        heard += line.contains(" 702#05") ? 1 : 0;
        asked += line.contains(" 602#40") ? 1 : 0;
    }
    QCOMPARE(heard, 30);
    QVERIFY(asked > 0);
    const QByteArray events = fileOf("b.zip", "events.json");
    QVERIFY2(events.contains("\"kind\": \"nodeHeard\""), events);
    for (const QByteArray &line : events.split('\n'))
        QVERIFY2(!line.contains("ime\": ") || line.contains("ime\": \"2020-09-1"), line);
}

void tst_BundleCommand::ofFiles()
{
    QCOMPARE(make().status, 0);
    QFile log(path("t.log"));
    QVERIFY(log.open(QIODevice::WriteOnly));
    log.write("(1790000000.000001) can0 702#00\n(1790000000.100000) can0 082#1042010000000000\nrubbish\n");
    log.close();
    const Result result
        = run({QStringLiteral("bundle"), QStringLiteral("--snapshot"), path("b.zip"),
               QStringLiteral("--trace"), log.fileName(), QStringLiteral("--output"), path("c.zip")});
    QCOMPARE(result.status, 7);
    QVERIFY2(result.errors.contains(QLatin1String("t.log:3: ")), qPrintable(result.errors));
    QVERIFY2(result.output.contains(QLatin1String("Frames: 2, events: 2")), qPrintable(result.output));
    QCOMPARE(fileOf("c.zip", "snapshot.dxsnap"), fileOf("b.zip", "snapshot.dxsnap"));
    QCOMPARE(fileOf("c.zip", "trace.log.gz"),
             QByteArray("(1790000000.000001) can0 702#00\n(1790000000.100000) can0 082#1042010000000000\n"));
    QVERIFY(fileOf("c.zip", "events.json").contains("\"kind\": \"emergency\""));
}

/*! The same node ID on another bus is another device. */
void tst_BundleCommand::eventsOfSeveralBuses()
{
    QFile log(path("t.log"));
    QVERIFY(log.open(QIODevice::WriteOnly));
    log.write("(1790000000.000000) can0 701#05\n(1790000000.100000) can1 701#7F\n"
              "(1790000001.000000) can0 701#05\n(1790000001.100000) can1 701#7F\n");
    log.close();
    run({QStringLiteral("snapshot"), QStringLiteral("--from-trace"), log.fileName(),
         QStringLiteral("--output"), path("s.dxsnap")});
    const Result result
        = run({QStringLiteral("bundle"), QStringLiteral("--snapshot"), path("s.dxsnap"),
               QStringLiteral("--trace"), log.fileName(), QStringLiteral("--output"), path("c.zip")});
    QVERIFY2(result.output.contains(QLatin1String("Frames: 4, events: 1")), qPrintable(result.output));
    QVERIFY(!fileOf("c.zip", "events.json").contains("stateChanged"));
}

void tst_BundleCommand::maskedHasNoSerialNumbers()
{
    QCOMPARE(make({QStringLiteral("--mask")}).status, 0);
    const Result plain
        = run({QStringLiteral("get"), QStringLiteral("--bus"), QStringLiteral("simulated:pedelec"),
               QStringLiteral("2"), QStringLiteral("1018"), QStringLiteral("4")});
    QVERIFY2(plain.output.contains(batterySerial), qPrintable(plain.output));
    const QString bytes = withoutBlanks(plain.output.section(QLatin1String("Bytes"), 1).trimmed());
    QCOMPARE(bytes.size(), 8);
    const QByteArray trace = fileOf("b.zip", "trace.log.gz");
    QVERIFY(trace.contains("582#43181004"));
    QVERIFY(!trace.contains(bytes.toLatin1()));
    const QByteArray snapshot = fileOf("b.zip", "snapshot.dxsnap");
    QVERIFY(!snapshot.contains(batterySerial.toLatin1()));
    QVERIFY(!snapshot.contains(bytes.toLower().toLatin1()));
    // The answer in the frames is the value in the snapshot.
    const int at = trace.indexOf("582#43181004") + 12;
    QVERIFY(snapshot.contains("\"raw\":\"" + trace.mid(at, 8).toLower() + '"'));
}

void tst_BundleCommand::otherCommandsTakeIt()
{
    QCOMPARE(make().status, 0);
    const Result show = run({QStringLiteral("show"), path("b.zip")});
    QCOMPARE(show.status, 0);
    QVERIFY2(show.output.contains(QLatin1String("Battery Pack")), qPrintable(show.output));
    const Result checkup = run({QStringLiteral("checkup"), path("b.zip"), QStringLiteral("--json")});
    QCOMPARE(checkup.output.toUtf8(), fileOf("b.zip", "checkup.json"));
    const Result trace
        = run({QStringLiteral("trace"), QStringLiteral("show"), path("b.zip"), QStringLiteral("--node"),
               QStringLiteral("2"), QStringLiteral("--object"), QStringLiteral("1018h.4")});
    QVERIFY2(trace.output.contains(batterySerial), qPrintable(trace.output));
    const Result diff = run({QStringLiteral("diff"), path("b.zip"), path("b.zip")});
    QCOMPARE(diff.status, 0);
}

void tst_BundleCommand::reportTakesIt()
{
    QCOMPARE(make().status, 0);
    const Result report
        = run({QStringLiteral("report"), path("b.zip"), QStringLiteral("--output"), path("report")});
    QCOMPARE(report.errors, QString());
    QCOMPARE(report.status, 0);
    QFile html(path("report/dx_report.html"));
    QVERIFY(html.open(QIODevice::ReadOnly));
    QVERIFY(html.readAll().contains("Battery Pack"));
}

void tst_BundleCommand::simulateTakesIt()
{
    QCOMPARE(make().status, 0);
    Program program({QStringLiteral("simulate"), path("b.zip"), QStringLiteral("--bus"),
                     QStringLiteral("virtualcan:tcp://127.0.0.1:%1/can0").arg(freePort())});
    QVERIFY(program.waitForOutput(QStringLiteral("b is on ")));
    program.signal(SIGINT);
    const Result result = program.finish();
    QVERIFY2(result.output.contains(QLatin1String(" with 7 nodes; Ctrl+C ends it.")),
             qPrintable(result.output));
    QCOMPARE(result.errors, QStringLiteral("The simulation has ended.\n"));
}

void tst_BundleCommand::badBundles()
{
    QCOMPARE(make().status, 0);
    QFile file(path("b.zip"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    QFile cut(path("cut.zip"));
    QVERIFY(cut.open(QIODevice::WriteOnly));
    cut.write(bytes.left(bytes.size() / 2));
    cut.close();
    const QString sentence
        = QStringLiteral("The support bundle %1 cannot be opened: it is damaged").arg(path("cut.zip"));
    for (const QStringList &command :
         {QStringList{QStringLiteral("show")}, QStringList{QStringLiteral("checkup")},
          QStringList{QStringLiteral("trace"), QStringLiteral("show")}}) {
        const Result result = run(command + QStringList{path("cut.zip")});
        QCOMPARE(result.status, 5);
        QCOMPARE(result.output, QString());
        QVERIFY2(result.errors.startsWith(sentence), qPrintable(result.errors));
    }
}

void tst_BundleCommand::badArguments_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("complaint");
    const auto add = [](const char *name, const char *arguments, const char *complaint) {
        QTest::newRow(name) << QString::fromLatin1(arguments).split(QLatin1Char(' '), Qt::SkipEmptyParts)
                            << QString::fromLatin1(complaint);
    };
    add("nothing", "--output x.zip", "What is meant? Name a --bus or a --snapshot.");
    add("both", "--output x.zip --bus simulated:pedelec --snapshot x",
        "Name either a --bus or a --snapshot, not both.");
    add("trace of a bus", "--output x.zip --bus simulated:pedelec --trace x",
        "Of a bus the frames are recorded; leave out --trace.");
    add("no output", "--bus simulated:pedelec", "--output takes the name of a file.");
    add("output to a pipe", "--bus simulated:pedelec --output -",
        "A bundle is written to a file, not to standard output.");
    add("time of a file", "--output x.zip --snapshot x --for 3s", "--for is for a bus only.");
    add("no time", "--output x.zip --bus simulated:pedelec --for soon", "\"soon\" is no time;");
}

void tst_BundleCommand::badArguments()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, complaint);
    const Result result = run(QStringList{QStringLiteral("bundle")} + arguments);
    QCOMPARE(result.status, 1);
    QVERIFY2(result.errors.contains(complaint), qPrintable(result.errors));
}

/*! Before the bus is read. */
void tst_BundleCommand::fileThatCannotBeWritten()
{
    const Result result
        = run({QStringLiteral("bundle"), QStringLiteral("--bus"), QStringLiteral("simulated:pedelec"),
               QStringLiteral("--output"), path("no/x.zip")});
    QCOMPARE(result.status, 5);
    QVERIFY2(result.errors.contains(QLatin1String("cannot be written")), qPrintable(result.errors));
    QCOMPARE(result.output, QString());
}

void tst_BundleCommand::interruptLeavesAWholeOneOrNone()
{
    Program program({QStringLiteral("bundle"), QStringLiteral("--bus"), QStringLiteral("simulated:pedelec"),
                     QStringLiteral("--quick"), QStringLiteral("--for"), QStringLiteral("1h"),
                     QStringLiteral("--output"), path("b.zip")},
                    {QStringLiteral("LD_PRELOAD")});
    QVERIFY(program.waitForStart());
    QVERIFY(program.waitForSignalHandler(SIGINT));
    program.signal(SIGINT);
    const Result result = program.finish();
    QCOMPARE(result.status, 130);
    QVERIFY2(result.errors.startsWith(QLatin1String("Interrupted; ")), qPrintable(result.errors));
    QCOMPARE(QFile::exists(path("b.zip")), !fileOf("b.zip", "manifest.json").isEmpty());
    QCOMPARE(QFile::exists(path("b.zip")), result.errors.contains(QLatin1String("what was read is kept")));
}

void tst_BundleCommand::interruptEndsTheInput()
{
    QCOMPARE(run({QStringLiteral("snapshot"), QStringLiteral("--bus"), QStringLiteral("simulated:pedelec"),
                  QStringLiteral("--quick"), QStringLiteral("--output"), path("a.dxsnap")})
                 .status,
             0);
    Program program({QStringLiteral("bundle"), QStringLiteral("--snapshot"), path("a.dxsnap"),
                     QStringLiteral("--trace"), QStringLiteral("-"), QStringLiteral("--output"),
                     path("b.zip")});
    program.type("(1600000000.0) can0 702#05\n(1600000000.1) can0 123##1\n");
    QVERIFY(program.waitForErrors(QStringLiteral("A CAN FD frame")));
    program.signal(SIGINT);
    const Result result = program.finish();
    QCOMPARE(result.status, 130);
    QVERIFY2(result.output.endsWith(QStringLiteral("Frames: 1, events: 1\nWrote %1\n").arg(path("b.zip"))),
             qPrintable(result.output));
    QCOMPARE(fileOf("b.zip", "trace.log.gz"), QByteArray("(1600000000.000000) can0 702#05\n"));
}

QTEST_GUILESS_MAIN(tst_BundleCommand)
#include "tst_bundlecommand.moc"
