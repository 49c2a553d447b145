// SPDX-License-Identifier: MIT
#include <cli/core/duration.h>
#include <tests/cli/program.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

using namespace std::chrono_literals;

namespace {

QJsonObject jsonOf(const Result &result)
{
    return QJsonDocument::fromJson(result.output.toUtf8()).object();
}

/*! "busLoad.mean" */
QJsonValue at(const QJsonObject &object, const char *path)
{
    QJsonValue value(object);
    for (const QString &key : QString::fromLatin1(path).split(QLatin1Char('.')))
        value = value.toObject().value(key);
    return value;
}

QStringList words(const char *line)
{
    return QString::fromLatin1(line).split(QLatin1Char(' '));
}

} // namespace

/*! The commands "health" and "events". */
class tst_Listening : public QObject
{
    Q_OBJECT

private slots:
    void durations_data();
    void durations();
    void healthyBus();
    void healthAsJson();
    void heartbeatOfADataSheet();
    void emergencyAsADataSheetCallsIt();
    void allNumbers();
    void emergencyIsFound();
    void inTheLanguage();
    void events();
    void eventsAsTable();
    void eventsAsTheyCome();
    void endsOnSignal();
    void usage_data();
    void usage();
    void noSuchBus();
};

void tst_Listening::durations_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("milliseconds"); // -1: refused
    const auto row = [](const char *text, qint64 milliseconds) {
        QTest::newRow(text) << QString::fromLatin1(text) << milliseconds;
    };
    row("500ms", 500);
    row("10s", 10000);
    row("10", 10000);
    row("2min", 120000);
    row("1h", 3600000);
    row("10 s", 10000);
    row("168h", 604800000);
    row("169h", -1);
    row("999999999h", -1);
    row("0s", -1);
    row("", -1);
    row("-1s", -1);
    row("1.5s", -1);
    row("10x", -1);
    row("s", -1);
    row("9999999999s", -1);
}

void tst_Listening::durations()
{
    QFETCH(QString, text);
    const std::optional<std::chrono::milliseconds> time = parseDuration(text);
    QTEST(qint64(time.value_or(-1ms).count()), "milliseconds");
}

void tst_Listening::healthyBus()
{
    const Result result = run(words("health --bus simulated:ride --for 8s"));
    QCOMPARE(result.errors, QString());
    const QStringList lines = result.output.split(QLatin1Char('\n'));
    QVERIFY2(lines.at(0).startsWith(QStringLiteral("good: The bus is used to 2 %")), qPrintable(lines.at(0)));
    QCOMPARE(lines.at(1), QStringLiteral("good: 5 devices are heard, and nothing is wrong with them."));
    QCOMPARE(lines.at(2), QStringLiteral("good: There are no errors on the bus."));
    QCOMPARE(lines.size(), 4);
    QCOMPARE(result.status, 0);
}

void tst_Listening::healthAsJson()
{
    const Result result = run(words("health --bus simulated:ride --for 8s --json"));
    QCOMPARE(result.status, 0);
    const QJsonObject json = jsonOf(result);
    QVERIFY(at(json, "busLoad.mean").toDouble() > 0.015 && at(json, "busLoad.mean").toDouble() < 0.03);
    QVERIFY(at(json, "busLoad.peak").toDouble() >= at(json, "busLoad.mean").toDouble());
    QVERIFY(at(json, "frames").toInt() > 400);
    QVERIFY(at(json, "framesPerSecond").toDouble() > 50);
    const QJsonArray nodes = at(json, "nodes").toArray();
    QCOMPARE(nodes.size(), 5);
    const QJsonObject battery = nodes.at(1).toObject();
    QCOMPARE(at(battery, "id").toInt(), 2);
    QCOMPARE(at(battery, "nmtState").toString(), QStringLiteral("operational"));
    QVERIFY(qAbs(at(battery, "heartbeat.period").toDouble() - 500) < 50);
    QVERIFY(at(battery, "heartbeat.longestGap").toDouble() < 1000);
    QCOMPARE(at(battery, "restarts").toInt(-1), 0);
    QCOMPARE(at(battery, "emergencies").toInt(-1), 0);
    QVERIFY(at(battery, "sdo.median").isNull()); // nobody asks: we only listen
    QCOMPARE(at(battery, "sdo.requests").toInt(-1), 0);
    QCOMPARE(at(json, "kinds.sdo.frames").toInt(-1), 0);
}

void tst_Listening::heartbeatOfADataSheet()
{
    const QString sheet = QStringLiteral("2:" VEHICLE_FOLDER "/ride-battery.dcf");
    const Result result = run(words("health --bus simulated:ride --for 3s --json --eds") << sheet);
    QCOMPARE(result.errors, QString());
    const QJsonArray nodes = at(jsonOf(result), "nodes").toArray();
    QVERIFY(at(nodes.at(0).toObject(), "heartbeat.configured").isNull());
    QCOMPARE(at(nodes.at(1).toObject(), "heartbeat.configured").toDouble(), 500.0);
}

void tst_Listening::emergencyAsADataSheetCallsIt()
{
    const QString sheet = QStringLiteral("4:" VEHICLE_FOLDER "/ride-motor.dcf");
    const Result result = run(words("events --bus simulated:ride --for 5min --eds") << sheet);
    QVERIFY2(result.output.contains(QStringLiteral(
                 " fault: Node 4: Emergency 4210h: device temperature (Winding too hot: let it "
                 "cool down). Error register: ")),
             qPrintable(result.output));
}

void tst_Listening::allNumbers()
{
    const Result result = run(words("health --bus simulated:ride --for 5s --all"));
    QVERIFY2(result.output.contains(QStringLiteral("\nBit rate              250000 bit/s\n")),
             qPrintable(result.output));
    QVERIFY2(result.output.contains(QStringLiteral("\n2     Operational  ")), qPrintable(result.output));
}

void tst_Listening::emergencyIsFound()
{
    const Result result = run(words("health --bus simulated:ride --for 5min"));
    QVERIFY2(result.output.contains(QStringLiteral("(emergency 4210h)")), qPrintable(result.output));
    QCOMPARE(result.status, 8);
}

void tst_Listening::inTheLanguage()
{
    const Result result = run(words("health --bus simulated:ride --for 5min --language de"));
    QVERIFY2(result.output.contains(QString::fromUtf8("Fehler")), qPrintable(result.output));
    QCOMPARE(result.status, 8);
}

void tst_Listening::events()
{
    const Result result = run(words("events --bus simulated:ride --for 5min --json"));
    QCOMPARE(result.status, 0);
    const QJsonArray events = at(jsonOf(result), "events").toArray();
    QCOMPARE(at(events.first().toObject(), "kind").toString(), QStringLiteral("nodeHeard"));
    int emergencies = 0;
    for (const QJsonValue &value : events) {
        const QJsonObject event = value.toObject();
        if (at(event, "kind").toString() != QLatin1String("emergency") || at(event, "code").toInt() != 0x4210)
            continue;
        ++emergencies;
        QCOMPARE(at(event, "severity").toString(), QStringLiteral("fault"));
        QVERIFY(
            at(event, "text").toString().startsWith(QStringLiteral("Emergency 4210h: device temperature.")));
        const QDateTime time = QDateTime::fromString(at(event, "time").toString(), Qt::ISODateWithMs);
        QVERIFY(time.isValid());
    }
    QCOMPARE(emergencies, 1);
}

void tst_Listening::eventsAsTable()
{
    const Result result = run(words("events --bus simulated:ride --for 2s --csv"));
    QVERIFY(result.output.startsWith(QStringLiteral("time,severity,node,kind,code,count,text\r\n")));
    QVERIFY(result.output.contains(QStringLiteral(",note,1,nodeHeard,0,1,")));
}

void tst_Listening::eventsAsTheyCome()
{
    Program program(words("events --bus simulated:ride"));
    QVERIFY(
        program.waitForOutput(QStringLiteral("note: Node 5: It is now working (NMT state Operational).")));
    program.signal(SIGINT);
    QCOMPARE(program.finish().status, 130);
}

void tst_Listening::endsOnSignal()
{
    Program program(words("health --bus simulated:ride --for 24h --json"), {QStringLiteral("LD_PRELOAD")});
    QVERIFY(program.waitForStart());
    QVERIFY(program.waitForSignalHandler(SIGINT));
    program.signal(SIGINT);
    const Result result = program.finish();
    QCOMPARE(result.status, 130);
    QVERIFY(jsonOf(result).contains(QStringLiteral("busLoad"))); // what there is so far
}

void tst_Listening::usage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("complaint");
    QTest::newRow("health without a bus")
        << words("health") << QStringLiteral("draxelctl health: --bus is missing");
    QTest::newRow("time that is none")
        << words("events --bus simulated:ride --for soon")
        << QStringLiteral(
               "draxelctl events: \"soon\" is no time; one is written like 500ms, 10s or 2min, up to "
               "a week.");
    QTest::newRow("data sheet of no node")
        << words("health --bus simulated:ride --eds battery.eds")
        << QStringLiteral("draxelctl health: --eds takes a node ID and a file, as in 2:battery.eds.");
    QTest::newRow("language that is none")
        << words("health --bus simulated:ride --language xx") << QStringLiteral("draxelctl health:");
}

void tst_Listening::usage()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, complaint);
    const Result result = run(arguments);
    QCOMPARE(result.status, 1);
    QVERIFY2(result.errors.startsWith(complaint), qPrintable(result.errors));
}

void tst_Listening::noSuchBus()
{
    QCOMPARE(run(words("health --bus simulated:nothing --for 1s")).status, 2);
    QCOMPARE(run(words("events --bus simulated:nothing --for 1s")).status, 2);
}

QTEST_GUILESS_MAIN(tst_Listening)
#include "tst_listening.moc"
