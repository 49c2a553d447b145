// SPDX-License-Identifier: MIT
#include <cli/core/objectaddress.h>
#include <tests/cli/program.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <memory>

namespace {

QStringList words(const QString &line)
{
    return line.split(QLatin1Char(' '));
}

/*! The objects of an output of one to each line. */
QVector<QJsonObject> jsonLines(const QString &output)
{
    QVector<QJsonObject> objects;
    const QStringList lines = output.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString &line : lines)
        objects.append(QJsonDocument::fromJson(line.toUtf8()).object());
    return objects;
}

QJsonObject summaryOf(const Result &result, int position = 0)
{
    const QVector<QJsonObject> lines = jsonLines(result.output);
    return lines.isEmpty() ? QJsonObject()
                           : lines.last().value(QStringLiteral("summary")).toArray().at(position).toObject();
}

} // namespace

/*! The command "watch". */
class tst_Watch : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void addresses_data();
    void addresses();
    void fromPdos();
    void byAsking();
    void eachAtItsPace();
    void summaryForPeople();
    void dataSheetSpareQuestions();
    void temperatureBelowZero();
    void pdoThatDoesNotCome();
    void lateValue();
    void objectsOfTwoNodesKeepTheirPace();
    void lyingMapping();
    void silentNode();
    void playedTraceHasItsTime();
    void textIsNoNumber();
    void table();
    void tableSaysWhatIsLate();
    void tableSaysWhatCannotBeRead();
    void tableThatCannotBeWritten();
    void endsOnSignal();
    void readerThatGoes();
    void usage_data();
    void usage();
    void noSuchBus();

private:
    QString battery(const QByteArray &more) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

/*! The address of a bus with the battery of the shipped "ride" alone, which sends a SYNC. */
QString tst_Watch::battery(const QByteArray &more) const
{
    const QString folder = m_folder->path() + QLatin1Char('/');
    QString text = readFile(QStringLiteral(VEHICLE_FOLDER "/ride-battery.dcf"));
    text.replace(QStringLiteral("$NODEID+0x280"), QStringLiteral("0x282"));
    // The first PDO comes by its timer, since nobody sends a SYNC.
    const int timer = text.indexOf(QStringLiteral("[1800sub5]"));
    text.replace(text.indexOf(QStringLiteral("ParameterValue=0"), timer), 16,
                 QStringLiteral("ParameterValue=200"));
    const int type = text.indexOf(QStringLiteral("[1800sub2]"));
    text.replace(text.indexOf(QStringLiteral("ParameterValue=2"), type), 16,
                 QStringLiteral("ParameterValue=255"));
    QFile sheet(folder + QStringLiteral("battery.dcf"));
    QFile vehicle(folder + QStringLiteral("vehicle.json"));
    if (!sheet.open(QIODevice::WriteOnly) || !vehicle.open(QIODevice::WriteOnly))
        return QString();
    sheet.write(text.toUtf8());
    vehicle.write(R"({"name": "battery", "nodes": [{"id": 2, "dictionary": "battery.dcf", "heartbeatMs": 500)"
                  + more + "}]}");
    return QStringLiteral("simulated:") + vehicle.fileName();
}

void tst_Watch::addresses_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("address"); // empty: refused
    const auto row = [](const char *text, const char *address) {
        QTest::newRow(text) << QString::fromLatin1(text) << QString::fromLatin1(address);
    };
    row("2:6040:1", "2 6040h.1");
    row("2:6040h:0x0A", "2 6040h.10");
    row("0x7F:0x1000", "127 1000h.0");
    row("127:FFFF:255", "127 FFFFh.255");
    row("0:6040:1", "");
    row("128:6040:1", "");
    row("2:10000:1", "");
    row("2:6040:256", "");
    row("2:6040:-1", "");
    row("2:6040:", "");
    row("2::1", "");
    row("2", "");
    row("", "");
    row("2:6040:1:1", "");
    row("2 6040 1", "");
}

void tst_Watch::addresses()
{
    QFETCH(QString, text);
    const std::optional<ObjectAddress> address = ObjectAddress::parse(text);
    const QString read
        = address ? QString::number(address->nodeId) + QLatin1Char(' ') + address->key.toShortString()
                  : QString();
    QTEST(read, "address");
}

void tst_Watch::fromPdos()
{
    const Result result = run(words(QStringLiteral("watch --bus simulated:ride 2:6040:1 --for 5s --json")));
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.status, 0);
    const QVector<QJsonObject> lines = jsonLines(result.output);
    const QJsonObject first = lines.first();
    QCOMPARE(first.value(QStringLiteral("node")).toInt(), 2);
    QCOMPARE(first.value(QStringLiteral("index")).toInt(), 0x6040);
    QCOMPARE(first.value(QStringLiteral("sub")).toInt(), 1);
    QCOMPARE(first.value(QStringLiteral("name")).toString(), QStringLiteral("Device actual voltage"));
    QCOMPARE(first.value(QStringLiteral("unit")).toString(), QStringLiteral("V"));
    QVERIFY(first.value(QStringLiteral("value")).toDouble() > 37
            && first.value(QStringLiteral("value")).toDouble() < 37.7);
    QVERIFY(
        QDateTime::fromString(first.value(QStringLiteral("time")).toString(), Qt::ISODateWithMs).isValid());
    const QJsonObject summary = summaryOf(result);
    QVERIFY(summary.value(QStringLiteral("fromPdo")).toBool());
    QVERIFY(!summary.value(QStringLiteral("late")).toBool());
    QVERIFY(summary.value(QStringLiteral("count")).toInt() >= 20); // five a second, once the mapping is known
    const double smallest = summary.value(QStringLiteral("smallest")).toDouble();
    const double mean = summary.value(QStringLiteral("mean")).toDouble();
    QVERIFY(smallest > 36 && smallest < mean && mean < summary.value(QStringLiteral("largest")).toDouble());
    QCOMPARE(summary.value(QStringLiteral("last")).toDouble(), smallest); // it falls
}

void tst_Watch::byAsking()
{
    const Result result
        = run(words(QStringLiteral("watch --bus simulated:ride 2:6042:1 --every 200ms --for 5s --json")));
    QCOMPARE(result.status, 0);
    const QJsonObject summary = summaryOf(result);
    QVERIFY(!summary.value(QStringLiteral("fromPdo")).toBool());
    const int count = summary.value(QStringLiteral("count")).toInt();
    QVERIFY2(count >= 20 && count <= 26, qPrintable(QString::number(count)));
    QVERIFY(summary.value(QStringLiteral("last")).toDouble() > 24);
    QCOMPARE(summary.value(QStringLiteral("unit")).toString(), QString::fromUtf8("°C"));
}

void tst_Watch::eachAtItsPace()
{
    const Result result
        = run(words(QStringLiteral("watch --bus simulated:ride 2:6040:1 --every 1s --for 5s --json")));
    const int lines = jsonLines(result.output).size();
    QVERIFY2(lines >= 5 && lines <= 7, qPrintable(result.output)); // with the summary
}

void tst_Watch::summaryForPeople()
{
    const Result result
        = run(words(QStringLiteral("watch --bus simulated:ride 2:6040:1 9:6040:1 2:6040:1 --for 5s")));
    QCOMPARE(result.status, 7);
    const QStringList lines = result.output.split(QLatin1Char('\n'));
    QVERIFY2(lines.first().contains(QStringLiteral(" Device actual voltage (node 2, 6040h.1)  37.")),
             qPrintable(lines.first()));
    QVERIFY(lines.first().endsWith(QStringLiteral(" V")));
    QCOMPARE(lines.size(), lines.indexOf(QString()) + 5); // a head, two values (one was named twice), an end
    QVERIFY(lines.at(lines.size() - 4).startsWith(QStringLiteral("Value    ")));
    QVERIFY2(lines.at(lines.size() - 2).endsWith(QStringLiteral(" 0      The device did not answer.")),
             qPrintable(result.output));
    QCOMPARE(result.errors,
             QStringLiteral("Node 9: what its PDOs carry could not be read. The device did not answer.\n"));
}

void tst_Watch::dataSheetSpareQuestions()
{
    const QString bus = battery(R"(, "faults": [{"kind": "sdoSilent"}])");
    const QStringList command = words(QStringLiteral("watch --for 5s --json 2:6040:1 --bus")) << bus;
    const Result asked = run(command);
    QCOMPARE(asked.status, 7);
    const Result told
        = run(command
              + QStringList{QStringLiteral("--eds"),
                            QStringLiteral("2:") + m_folder->filePath(QStringLiteral("battery.dcf"))});
    QCOMPARE(told.errors, QString());
    QCOMPARE(told.status, 0);
    QVERIFY(summaryOf(told).value(QStringLiteral("fromPdo")).toBool());
    QVERIFY(summaryOf(told).value(QStringLiteral("count")).toInt() >= 24);
}

void tst_Watch::temperatureBelowZero()
{
    const QString bus = battery(QByteArray());
    const QString name = m_folder->filePath(QStringLiteral("battery.dcf"));
    const QString sheet = readFile(name);
    const int temperature = sheet.indexOf(QStringLiteral("[6042sub1]"));
    QString device = sheet;
    device.replace(device.indexOf(QStringLiteral("ParameterValue=268"), temperature), 18,
                   QStringLiteral("ParameterValue=-100"));
    QString told = sheet;
    told.replace(told.indexOf(QStringLiteral("DataType=0x0003"), temperature), 15,
                 QStringLiteral("DataType=0x0006"));
    told.replace(QStringLiteral("LowLimit=-400"), QStringLiteral("LowLimit=0"));
    const QString toldName = m_folder->filePath(QStringLiteral("told.dcf"));
    QFile deviceFile(name);
    QFile toldFile(toldName);
    QVERIFY(deviceFile.open(QIODevice::WriteOnly) && toldFile.open(QIODevice::WriteOnly));
    deviceFile.write(device.toUtf8());
    toldFile.write(told.toUtf8());
    deviceFile.close();
    toldFile.close();
    const QStringList command = words(QStringLiteral("watch --for 3s --json 2:6042:1 --bus")) << bus;
    QCOMPARE(summaryOf(run(command)).value(QStringLiteral("last")).toDouble(), -10.0);
    const QStringList eds{QStringLiteral("--eds"), QStringLiteral("2:") + toldName};
    QCOMPARE(summaryOf(run(command + eds)).value(QStringLiteral("last")).toDouble(),
             -10.0); // a temperature has its sign all the same
}

void tst_Watch::pdoThatDoesNotCome()
{
    const QString bus = battery(R"(, "state": "preOperational")");
    const Result result = run(words(QStringLiteral("watch --for 8s --json 2:6040:1 --bus")) << bus);
    QCOMPARE(result.status, 0);
    QVERIFY(!summaryOf(result).value(QStringLiteral("fromPdo")).toBool());
    const int count = summaryOf(result).value(QStringLiteral("count")).toInt();
    QVERIFY2(count >= 6 && count <= 11, qPrintable(QString::number(count))); // after three seconds
}

void tst_Watch::lateValue()
{
    // It falls silent when it is asked for the temperature, after all that it has been asked for its PDOs.
    const QString bus = battery(R"(, "faults": [{"kind": "silent", "from": 100}])");
    const QStringList command = words(QStringLiteral("watch --for 10s 2:6040:1 2:6042:1 --bus")) << bus;
    const Result result = run(command);
    QVERIFY2(result.output.contains(QStringLiteral("late, nothing since ")), qPrintable(result.output));
    QCOMPARE(result.output.count(QStringLiteral("late, nothing since ")), 2);
    const QJsonObject summary = summaryOf(run(QStringList(command) << QStringLiteral("--json")));
    QVERIFY(summary.value(QStringLiteral("late")).toBool());
}

/*! What one node maps is known before what the other one does. */
void tst_Watch::objectsOfTwoNodesKeepTheirPace()
{
    const Result result
        = run(words(QStringLiteral("watch --bus simulated:pedelec 2:6040:1 4:603E:1 --every 1s --for 4s")));
    QCOMPARE(result.status, 0);
    QVERIFY2(!result.output.contains(QStringLiteral("late, nothing since ")), qPrintable(result.output));
}

void tst_Watch::lyingMapping()
{
    const QString bus = battery(R"(, "faults": [{"kind": "lyingMapping", "entries": 8, "bits": 32}])");
    const Result result = run(words(QStringLiteral("watch --for 5s --json 2:6040:1 --bus")) << bus);
    QCOMPARE(result.status, 0); // by asking
    QVERIFY(!summaryOf(result).value(QStringLiteral("fromPdo")).toBool());
    QCOMPARE(result.errors, QStringLiteral("Node 2, PDO 1: its mapping is longer than a frame.\n"));
}

void tst_Watch::silentNode()
{
    const Result result = run(words(QStringLiteral("watch --bus simulated:ride 9:6040:1 --for 9s --json")));
    QCOMPARE(result.status, 7);
    QCOMPARE(jsonLines(result.output).size(), 2); // its reason is said once
    QJsonObject reason = jsonLines(result.output).first();
    reason.remove(QStringLiteral("time"));
    QCOMPARE(reason, (QJsonObject{{QStringLiteral("node"), 9},
                                  {QStringLiteral("index"), 0x6040},
                                  {QStringLiteral("sub"), 1},
                                  {QStringLiteral("name"), QStringLiteral("Device actual voltage")},
                                  {QStringLiteral("unit"), QStringLiteral("V")},
                                  {QStringLiteral("reason"), QStringLiteral("The device did not answer.")}}));
    QVERIFY(summaryOf(result).value(QStringLiteral("last")).isNull());
}

/*! Also where nothing comes: the trace holds no answer to what is asked. */
void tst_Watch::playedTraceHasItsTime()
{
    QFile log(m_folder->filePath(QStringLiteral("ride.log")));
    QVERIFY(log.open(QIODevice::WriteOnly));
    for (int i = 0; i < 20; ++i)
        log.write(QStringLiteral("(1600000000.%1) can0 702#05\n")
                      .arg(i * 50'000, 6, 10, QLatin1Char('0'))
                      .toLatin1());
    log.close();
    const Result result = run(words(QStringLiteral("watch --for 1s --json 2:6040:1 --bus"))
                              << QStringLiteral("trace:") + log.fileName());
    const QJsonObject first = jsonLines(result.output).first();
    QVERIFY2(first.contains(QStringLiteral("reason")), qPrintable(result.output));
    QVERIFY2(first.value(QStringLiteral("time")).toString().startsWith(QStringLiteral("2020-09-1")),
             qPrintable(result.output));
}

void tst_Watch::textIsNoNumber()
{
    const Result result = run(words(QStringLiteral("watch --bus simulated:ride 2:1008 --for 3s --json")));
    QCOMPARE(result.status, 7);
    QCOMPARE(summaryOf(result).value(QStringLiteral("reason")).toString(),
             QStringLiteral("Its value is no number."));
}

void tst_Watch::table()
{
    const QString file = m_folder->filePath(QStringLiteral("values.csv"));
    const Result result
        = run(words(QStringLiteral("watch --bus simulated:ride 2:6040:1 2:6042:1 --for 4s --csv")) << file);
    QCOMPARE(result.status, 0);
    const QStringList lines = readFile(file).split(QStringLiteral("\r\n"));
    QCOMPARE(lines.first(), QStringLiteral("time,node,object,name,value,unit,lateSince,reason"));
    QVERIFY2(lines.size() >= 12 && lines.size() <= 18, qPrintable(readFile(file)));
    const QStringList fields = lines.at(1).split(QLatin1Char(','));
    QVERIFY(QDateTime::fromString(fields.first(), Qt::ISODateWithMs).isValid());
    QVERIFY2(readFile(file).contains(QStringLiteral(",2,6040h.1,Device actual voltage,37.")),
             qPrintable(readFile(file)));
    QVERIFY2(
        readFile(file).contains(QString::fromUtf8(",2,6042h.1,Device electronic temperature,25,°C,,\r\n")),
        qPrintable(readFile(file)));
    QCOMPARE(lines.last(), QString());
}

void tst_Watch::tableSaysWhatIsLate()
{
    const QString bus = battery(R"(, "faults": [{"kind": "silent", "from": 100}])");
    const QString file = m_folder->filePath(QStringLiteral("values.csv"));
    run(words(QStringLiteral("watch --for 10s 2:6040:1 2:6042:1 --bus"))
        << bus << QStringLiteral("--csv") << file);
    const QStringList voltages
        = readFile(file).split(QStringLiteral("\r\n")).filter(QLatin1String(",6040h.1,"));
    QVERIFY2(voltages.size() >= 2, qPrintable(readFile(file)));
    const QStringList value = voltages.at(voltages.size() - 2).split(QLatin1Char(','));
    const QStringList late = voltages.last().split(QLatin1Char(','));
    QCOMPARE(value.mid(6), (QStringList{QString(), QString()}));
    QCOMPARE(late.mid(1, 5).join(QLatin1Char(',')), QStringLiteral("2,6040h.1,Device actual voltage,,V"));
    QCOMPARE(late.mid(6), (QStringList{value.first(), QString()})); // since the value that came last
    QVERIFY2(late.first() > value.first(), qPrintable(readFile(file)));
}

void tst_Watch::tableSaysWhatCannotBeRead()
{
    const QString file = m_folder->filePath(QStringLiteral("values.csv"));
    run(words(QStringLiteral("watch --bus simulated:ride 9:6040:1 --for 9s --csv")) << file);
    const QStringList lines = readFile(file).split(QStringLiteral("\r\n"));
    QCOMPARE(lines.size(), 3); // the head, the reason once, and what follows the last line
    QVERIFY(QDateTime::fromString(lines.at(1).section(QLatin1Char(','), 0, 0), Qt::ISODateWithMs).isValid());
    QCOMPARE(lines.at(1).section(QLatin1Char(','), 1),
             QStringLiteral("9,6040h.1,Device actual voltage,,V,,The device did not answer."));
}

void tst_Watch::tableThatCannotBeWritten()
{
    const QString file = m_folder->filePath(QStringLiteral("no/such/folder.csv"));
    const Result result
        = run(words(QStringLiteral("watch --bus simulated:ride 2:6040:1 --for 4s --csv")) << file);
    QCOMPARE(result.status, 5);
    QVERIFY2(result.errors.startsWith(QStringLiteral("The file %1 cannot be written: ").arg(file)),
             qPrintable(result.errors));
    QCOMPARE(result.output, QString());
}

void tst_Watch::endsOnSignal()
{
    Program program(words(QStringLiteral("watch --bus simulated:ride 2:6040:1")),
                    {QStringLiteral("LD_PRELOAD")});
    QVERIFY(program.waitForOutput(QStringLiteral(" V\n")));
    program.signal(SIGINT);
    const Result result = program.finish();
    QCOMPARE(result.status, 130);
    QVERIFY2(result.output.contains(QStringLiteral("\nValue    ")),
             qPrintable(result.output)); // what there is so far
}

void tst_Watch::readerThatGoes()
{
    const QString table = m_folder->filePath(QStringLiteral("values.csv"));
    QCOMPARE(
        withoutReader(
            QStringLiteral("watch --bus simulated:ride 2:6040:1 --every 100ms --csv '%1'").arg(table), 1),
        QStringLiteral("status 141\n"));
    QVERIFY2(readFile(table).count(QStringLiteral("\r\n")) >= 2, qPrintable(readFile(table)));
    // Also when there is nothing to be written
    QCOMPARE(withoutReader(QStringLiteral("watch --bus simulated:ride 2:6040:1 --every 24h"), 0),
             QStringLiteral("status 141\n"));
}

void tst_Watch::usage_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("complaint");
    QTest::newRow("no bus") << QStringLiteral("watch 2:6040:1")
                            << QStringLiteral("draxelctl watch: --bus is missing");
    QTest::newRow("no object") << QStringLiteral("watch --bus simulated:ride")
                               << QStringLiteral("draxelctl watch: NODE:INDEX:SUB");
    QTest::newRow("not an object")
        << QStringLiteral("watch --bus simulated:ride 2:6040:1 voltage")
        << QStringLiteral("draxelctl watch: \"voltage\" is no object; one is written like 2:6040:1");
    QTest::newRow("too often") << QStringLiteral("watch --bus simulated:ride 2:6040:1 --every 99ms")
                               << QStringLiteral("draxelctl watch: \"99ms\" is no time of 100ms or more");
    QTest::newRow("share") << QStringLiteral("watch --bus simulated:ride 2:6040:1 --share 0")
                           << QStringLiteral("draxelctl watch: ");
}

void tst_Watch::usage()
{
    QFETCH(QString, arguments);
    QFETCH(QString, complaint);
    const Result result = run(words(arguments));
    QCOMPARE(result.status, 1);
    QVERIFY2(result.errors.startsWith(complaint), qPrintable(result.errors));
}

void tst_Watch::noSuchBus()
{
    QCOMPARE(run(words(QStringLiteral("watch --bus simulated:nothing 2:6040:1"))).status, 2);
}

QTEST_GUILESS_MAIN(tst_Watch)
#include "tst_watch.moc"
