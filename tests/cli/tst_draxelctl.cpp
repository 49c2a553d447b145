// SPDX-License-Identifier: MIT
#include "program.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QtTest>

#include <memory>

namespace {

/*! The value of an exported object; -1 when it is not there. */
qlonglong exportedValue(const QString &path, int nodeId, int index, int subIndex)
{
    const QString text = readFile(path);
    QXmlStreamReader reader(text);
    int currentNode = -1;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QXmlStreamAttributes attributes = reader.attributes();
        if (reader.name() == QLatin1String("node"))
            currentNode = attributes.value(QStringLiteral("nodeid")).toInt();
        else if (reader.name() == QLatin1String("object") && currentNode == nodeId
                 && attributes.value(QStringLiteral("index")).toInt(nullptr, 0) == index
                 && attributes.value(QStringLiteral("sub")).toInt(nullptr, 0) == subIndex)
            return attributes.value(QStringLiteral("value")).toLongLong();
    }
    return -1;
}

QString virtualBus(quint16 port)
{
    return QStringLiteral("virtualcan:tcp://127.0.0.1:%1/can0").arg(port);
}

} // namespace

class tst_DraxelCtl : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void printsUsage();
    void printsHelp_data();
    void printsHelp();
    void printsVersion_data();
    void printsVersion();
    void wrongUsage_data();
    void wrongUsage();
    void listsInterfaces();
    void readsSimulatedVehicle();
    void busThatCannotBeOpened_data();
    void busThatCannotBeOpened();
    void node1IsMissing();
    void nobodyIsHeard();
    void stoppedByTimeout();
    void stoppedNodeIsNamed();
    void busLostDuringRead();
    void fileCannotBeWritten();
    void fileCannotBeRead_data();
    void fileCannotBeRead();
    void interruptedRead_data();
    void interruptedRead();
    void readsOverVirtualCan();
    void simulatesExportedVehicle();
    void simulationEndsBySignal();
    void scansSilentNodes();
    void scanSaysWhoIsHeardAndDoesNotAnswer();
    void scanFindsNobody();

private:
    QString path(const char *name) const { return m_folder->path() + QLatin1Char('/') + QLatin1String(name); }
    QString writeExchangeFile(const char *body) const;
    QString writeVehicle(const char *nodes, const char *faults = "") const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

QString tst_DraxelCtl::writeExchangeFile(const char *body) const
{
    const QString name = path("given.dxxml");
    QFile file(name);
    if (file.open(QIODevice::WriteOnly)) {
        file.write("<?xml version =\"1.0\" encoding=\"UTF-8\" ?>\n<dxtoolstorage pl_overwiew=\"1.0\" "
                   "date=\"\">\n<nodes>\n");
        file.write(body);
        file.write("</nodes>\n</dxtoolstorage>\n");
    }
    return name;
}

/*! A vehicle file whose nodes all have the shipped dictionary of the bus controller. */
QString tst_DraxelCtl::writeVehicle(const char *nodes, const char *faults) const
{
    const QString name = path("vehicle.json");
    QFile::copy(QStringLiteral(VEHICLE_FOLDER "/pedelec-controller.dcf"), path("node.dcf"));
    QFile file(name);
    if (file.open(QIODevice::WriteOnly)) {
        file.write("{ \"name\": \"test\", \"nodes\": [");
        file.write(nodes);
        file.write("], \"faults\": [");
        file.write(faults);
        file.write("] }");
    }
    return name;
}

void tst_DraxelCtl::printsUsage()
{
    const Result result = run({});
    QCOMPARE(result.status, 1);
    for (const char *command :
         {"read", "get", "show", "report", "check-update", "scan", "simulate", "interfaces"})
        QVERIFY2(result.errors.contains(QLatin1String("\n  ") + QLatin1String(command)), command);
    QVERIFY(result.output.isEmpty());
}

void tst_DraxelCtl::printsHelp_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("text");

    QTest::newRow("program") << QStringList{QStringLiteral("--help")}
                             << QStringLiteral("Usage: draxelctl COMMAND");
    QTest::newRow("read") << QStringList{QStringLiteral("read"), QStringLiteral("--help")}
                          << QStringLiteral("--export <FILE>");
    QTest::newRow("read with a report")
        << QStringList{QStringLiteral("read"), QStringLiteral("--help")} << QStringLiteral("--report <DIR>");
    QTest::newRow("show") << QStringList{QStringLiteral("show"), QStringLiteral("--help")}
                          << QStringLiteral("Usage: draxelctl show [OPTION]... [FILE]\n");
    QTest::newRow("report") << QStringList{QStringLiteral("report"), QStringLiteral("--help")}
                            << QStringLiteral("--output <DIR>");
    QTest::newRow("check-update") << QStringList{QStringLiteral("check-update"), QStringLiteral("--help")}
                                  << QStringLiteral("--node <N>");
    QTest::newRow("help of a command") << QStringList{QStringLiteral("help"), QStringLiteral("read")}
                                       << QStringLiteral("Usage: draxelctl read [OPTION]...\n");
    QTest::newRow("help of a group's command")
        << QStringList{QStringLiteral("help"), QStringLiteral("trace"), QStringLiteral("record")}
        << QStringLiteral("Usage: draxelctl trace record [OPTION]...\n");
    QTest::newRow("help alone") << QStringList{QStringLiteral("help")}
                                << QStringLiteral("Usage: draxelctl COMMAND");
    QTest::newRow("get") << QStringList{QStringLiteral("get"), QStringLiteral("-h")}
                         << QStringLiteral("Usage: draxelctl get [OPTION]... NODE INDEX [SUB]\n");
    QTest::newRow("scan") << QStringList{QStringLiteral("scan"), QStringLiteral("--help")}
                          << QStringLiteral("--bus <PLUGIN:INTERFACE>");
    QTest::newRow("simulate") << QStringList{QStringLiteral("simulate"), QStringLiteral("-h")}
                              << QStringLiteral("Usage: draxelctl simulate [OPTION]... VEHICLE\n");
    QTest::newRow("interfaces") << QStringList{QStringLiteral("interfaces"), QStringLiteral("--help")}
                                << QStringLiteral("Lists the CAN back ends");
}

void tst_DraxelCtl::printsHelp()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, text);
    const Result result = run(arguments);
    QCOMPARE(result.status, 0);
    QVERIFY2(result.output.contains(text), qPrintable(result.output));
    QVERIFY(result.errors.isEmpty());
}

void tst_DraxelCtl::printsVersion_data()
{
    QTest::addColumn<QString>("option");

    QTest::newRow("long") << QStringLiteral("--version");
    QTest::newRow("short") << QStringLiteral("-V");
}

void tst_DraxelCtl::printsVersion()
{
    QFETCH(QString, option);
    const Result result = run({option});
    QCOMPARE(result.status, 0);
    QVERIFY(QRegularExpression(QStringLiteral("^draxelctl \\d+\\.\\d+\\.\\d+\\n$"))
                .match(result.output)
                .hasMatch());
}

void tst_DraxelCtl::wrongUsage_data()
{
    QTest::addColumn<QString>("arguments"); // separated by blanks
    QTest::addColumn<QString>("sentence");

    QTest::newRow("unknown command") << QStringLiteral("fly")
                                     << QStringLiteral("draxelctl: There is no command \"fly\".");
    QTest::newRow("help of an unknown command")
        << QStringLiteral("help fly") << QStringLiteral("draxelctl: There is no command \"fly\".");
    QTest::newRow("help of a group's unknown command")
        << QStringLiteral("help trace fly")
        << QStringLiteral("draxelctl trace: There is no command \"fly\".");
    QTest::newRow("node to read") << QStringLiteral("read --bus simulated:pedelec --node 0")
                                  << QStringLiteral(
                                         "draxelctl read: --node takes a number from 1 to 127, not \"0\".");
    QTest::newRow("speed that is no number")
        << QStringLiteral("simulate ride --bus virtualcan:can0 --speed fast")
        << QStringLiteral("draxelctl simulate: --speed takes a number from 0.01 to 1000, not \"fast\".");
    QTest::newRow("speed that is too high")
        << QStringLiteral("simulate ride --bus virtualcan:can0 --speed 1001")
        << QStringLiteral("draxelctl simulate: --speed takes a number from 0.01 to 1000, not \"1001\".");
    QTest::newRow("unknown option") << QStringLiteral("read --bus simulated:pedelec --fast")
                                    << QStringLiteral("draxelctl read: Unknown option 'fast'.");
    QTest::newRow("option for another command")
        << QStringLiteral("interfaces --bus simulated:pedelec")
        << QStringLiteral("draxelctl interfaces: Unknown option 'bus'.");
    QTest::newRow("no bus") << QStringLiteral("read")
                            << QStringLiteral("draxelctl read: --bus is missing: which bus is meant?");
    QTest::newRow("bus without a value")
        << QStringLiteral("read --bus") << QStringLiteral("draxelctl read: Missing value after '--bus'.");
    QTest::newRow("bus without a colon")
        << QStringLiteral("scan --bus can0") << QStringLiteral("draxelctl scan: \"can0\" names no bus.");
    QTest::newRow("bit rate") << QStringLiteral("read --bus simulated:pedelec --bitrate fast")
                              << QStringLiteral("draxelctl read: \"fast\" is no bit rate.");
    QTest::newRow("time-out")
        << QStringLiteral("read --bus simulated:pedelec --timeout 99")
        << QStringLiteral("draxelctl read: --timeout takes a number from 100 to 60000, not \"99\".");
    QTest::newRow("retries") << QStringLiteral("read --bus simulated:pedelec --retries -1")
                             << QStringLiteral(
                                    "draxelctl read: --retries takes a number from 0 to 100, not \"-1\".");
    QTest::newRow("nothing to show") << QStringLiteral(
        "show") << QStringLiteral("draxelctl show: What is meant? Name a FILE or a --bus.");
    QTest::newRow("too much to show")
        << QStringLiteral("show v.dxxml --bus simulated:pedelec")
        << QStringLiteral("draxelctl show: Name either a FILE or a --bus, not both.");
    QTest::newRow("node ID") << QStringLiteral("show v.dxxml --node 128")
                             << QStringLiteral(
                                    "draxelctl show: --node takes a number from 1 to 127, not \"128\".");
    QTest::newRow("language") << QStringLiteral("show v.dxxml --language tlh")
                              << QStringLiteral(
                                     "draxelctl show: There are no texts in the language \"tlh\"; there");
    QTest::newRow("no folder for the report")
        << QStringLiteral("report v.dxxml")
        << QStringLiteral("draxelctl report: --output is missing: which folder is meant?");
    QTest::newRow("nothing to report on")
        << QStringLiteral("report --output r") << QStringLiteral("draxelctl report: FILE is missing.");
    QTest::newRow("report of a bus") << QStringLiteral("report --bus simulated:pedelec --output r")
                                     << QStringLiteral("draxelctl report: Unknown option 'bus'.");
    QTest::newRow("no node to check")
        << QStringLiteral("check-update v.dxxml")
        << QStringLiteral("draxelctl check-update: --node is missing: which node is meant?");
    QTest::newRow("too many words") << QStringLiteral("read --bus simulated:pedelec now")
                                    << QStringLiteral("draxelctl read: What is \"now\" for?");
    QTest::newRow("no vehicle") << QStringLiteral("simulate --bus virtualcan:can0")
                                << QStringLiteral("draxelctl simulate: VEHICLE is missing.");
}

void tst_DraxelCtl::wrongUsage()
{
    QFETCH(QString, arguments);
    QFETCH(QString, sentence);
    const Result result = run(arguments.split(QLatin1Char(' ')));
    QCOMPARE(result.status, 1);
    QVERIFY2(result.errors.startsWith(sentence), qPrintable(result.errors));
    QVERIFY(result.output.isEmpty());
}

void tst_DraxelCtl::listsInterfaces()
{
    const Result result = run({QStringLiteral("interfaces")});
    QCOMPARE(result.status, 0);
    QVERIFY2(result.output.contains(QStringLiteral("\n  simulated:pedelec  (")), qPrintable(result.output));
    QVERIFY2(result.output.contains(QStringLiteral("\n  simulated:full-bus  (")), qPrintable(result.output));
    QVERIFY2(result.output.contains(QStringLiteral("socketcan\n")), qPrintable(result.output));
}

void tst_DraxelCtl::readsSimulatedVehicle()
{
    const Result result = run({QStringLiteral("read"), QStringLiteral("--bus"),
                               QStringLiteral("simulated:pedelec"), QStringLiteral("--bitrate"),
                               QStringLiteral("0"), QStringLiteral("--export"), path("v.dxxml")});
    QCOMPARE(result.status, 0);
    QVERIFY2(result.errors.isEmpty(), qPrintable(result.errors)); // no terminal, no progress
    QVERIFY2(result.output.contains(QStringLiteral("Node 1: device type 0x")), qPrintable(result.output));
    QVERIFY2(result.output.contains(QStringLiteral("\nTotal: 7 nodes, ")), qPrintable(result.output));
    QVERIFY2(result.output.endsWith(QStringLiteral("Wrote %1\n").arg(path("v.dxxml"))),
             qPrintable(result.output));

    const QRegularExpression counts(
        QStringLiteral("(\\d+) values read, (\\d+) objects not there, (\\d+) failed"));
    QRegularExpressionMatchIterator matches = counts.globalMatch(result.output);
    int lines = 0;
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        const int nodes = matches.hasNext() ? 1 : 7; // the total is the last one
        // Of the 204 entries of the list 4 are asked for twice.
        QCOMPARE(match.captured(1).toInt() + match.captured(2).toInt(), nodes * 200);
        QCOMPARE(match.captured(3), QStringLiteral("0"));
        ++lines;
    }
    QCOMPARE(lines, 8);

    QCOMPARE(exportedValue(path("v.dxxml"), 1, 0x1000, 0), Q_INT64_C(0x470001C6));
    for (int nodeId = 1; nodeId <= 7; ++nodeId)
        QCOMPARE(exportedValue(path("v.dxxml"), nodeId, 0x1018, 0), Q_INT64_C(4));
    QCOMPARE(exportedValue(path("v.dxxml"), 8, 0x1018, 0), Q_INT64_C(-1));
}

void tst_DraxelCtl::busThatCannotBeOpened_data()
{
    QTest::addColumn<QString>("bus");
    QTest::addColumn<QString>("beginning");

    QTest::newRow("unknown back end") << QStringLiteral("nosuchplugin:can0")
                                      << QStringLiteral("The bus nosuchplugin:can0 cannot be opened: ");
    QTest::newRow("missing interface") << QStringLiteral("socketcan:nosuchcan0")
                                       << QStringLiteral("The bus socketcan:nosuchcan0 cannot be ");
    QTest::newRow("unknown vehicle") << QStringLiteral("simulated:nosuchvehicle")
                                     << QStringLiteral("The bus simulated:nosuchvehicle cannot be opened: ");
}

void tst_DraxelCtl::busThatCannotBeOpened()
{
    QFETCH(QString, bus);
    QFETCH(QString, beginning);
    const Result result = run(
        {QStringLiteral("read"), QStringLiteral("--bus"), bus, QStringLiteral("--export"), path("v.dxxml")});
    QCOMPARE(result.status, 2);
    QVERIFY2(result.errors.contains(beginning), qPrintable(result.errors));
    QVERIFY2(result.errors.endsWith(QStringLiteral("\n\"draxelctl interfaces\" lists what there is.\n")),
             qPrintable(result.errors));
    QVERIFY(!QFile::exists(path("v.dxxml")));
}

void tst_DraxelCtl::node1IsMissing()
{
    const QString vehicle
        = writeVehicle("{ \"id\": 5, \"dictionary\": \"node.dcf\", \"heartbeatMs\": 200 },"
                       "{ \"id\": 16, \"dictionary\": \"node.dcf\", \"heartbeatMs\": 200 }");
    const Result result = run({QStringLiteral("read"), QStringLiteral("--bus"),
                               QStringLiteral("simulated:") + vehicle, QStringLiteral("--bitrate"),
                               QStringLiteral("0"), QStringLiteral("--export"), path("v.dxxml")});
    QCOMPARE(result.status, 3);
    QCOMPARE(result.errors,
             QStringLiteral("Nothing was read: node 1, the bus controller, sent no heartbeat. Heard: "
                            "node 5, 16.\n"));
    QVERIFY(!QFile::exists(path("v.dxxml")));
}

void tst_DraxelCtl::nobodyIsHeard()
{
    const Result result = run({QStringLiteral("read"), QStringLiteral("--bus"), virtualBus(freePort())});
    QCOMPARE(result.status, 3);
    QVERIFY2(result.errors.startsWith(QStringLiteral("Nothing was read: no node sent a heartbeat.")),
             qPrintable(result.errors));
}

void tst_DraxelCtl::stoppedByTimeout()
{
    const QString vehicle
        = writeVehicle("{ \"id\": 1, \"dictionary\": \"node.dcf\", \"heartbeatMs\": 200 },"
                       "{ \"id\": 7, \"dictionary\": \"node.dcf\", \"heartbeatMs\": 200,"
                       "  \"faults\": [ { \"kind\": \"sdoSilent\", \"object\": \"6000sub0\" } ] }");
    const Result result
        = run({QStringLiteral("read"), QStringLiteral("--bus"), QStringLiteral("simulated:") + vehicle,
               QStringLiteral("--bitrate"), QStringLiteral("0"), QStringLiteral("--retries"),
               QStringLiteral("0"), QStringLiteral("--export"), path("v.dxxml")});
    QVERIFY2(result.status == 4, qPrintable(result.errors));
    QVERIFY2(result.errors.startsWith(QStringLiteral("The read stopped at node 7, object 6000h sub-index 0, "
                                                     "because it did not answer.")),
             qPrintable(result.errors));
    // What was read before is saved all the same.
    QCOMPARE(exportedValue(path("v.dxxml"), 7, 0x1018, 0), Q_INT64_C(4));
    QCOMPARE(exportedValue(path("v.dxxml"), 7, 0x6000, 0), Q_INT64_C(-1));
    QVERIFY(exportedValue(path("v.dxxml"), 1, 0x6000, 0) >= 0);
}

void tst_DraxelCtl::stoppedNodeIsNamed()
{
    const QString vehicle = writeVehicle(
        "{ \"id\": 1, \"dictionary\": \"node.dcf\", \"heartbeatMs\": 200, \"state\": \"stopped\" }");
    const Result result = run({QStringLiteral("read"), QStringLiteral("--bus"),
                               QStringLiteral("simulated:") + vehicle, QStringLiteral("--bitrate"),
                               QStringLiteral("0"), QStringLiteral("--retries"), QStringLiteral("0")});
    QVERIFY2(result.status == 4, qPrintable(result.errors));
    QVERIFY2(result.errors.contains(
                 QStringLiteral("because the node is in the state Stopped and answers no SDO.")),
             qPrintable(result.errors));
}

void tst_DraxelCtl::busLostDuringRead()
{
    const QString vehicle = writeVehicle("{ \"id\": 1, \"dictionary\": \"node.dcf\", \"heartbeatMs\": 200 }",
                                         "{ \"kind\": \"busLoss\", \"afterFrames\": 101, \"drop\": 1 }");
    const Result result = run({QStringLiteral("read"), QStringLiteral("--bus"),
                               QStringLiteral("simulated:") + vehicle, QStringLiteral("--bitrate"),
                               QStringLiteral("0"), QStringLiteral("--export"), path("v.dxxml")});
    QVERIFY2(result.status == 4, qPrintable(result.errors));
    const QRegularExpression sentence(QStringLiteral(
        "^The read stopped at node 1, object [0-9A-F]{4}h sub-index \\d+, because the bus was lost: .+"));
    QVERIFY2(sentence.match(result.errors).hasMatch(), qPrintable(result.errors));
    QCOMPARE(exportedValue(path("v.dxxml"), 1, 0x1018, 0), Q_INT64_C(4));
}

void tst_DraxelCtl::fileCannotBeWritten()
{
    const Result result
        = run({QStringLiteral("read"), QStringLiteral("--bus"), QStringLiteral("simulated:pedelec"),
               QStringLiteral("--export"), QStringLiteral("/there/is/no/such/folder/v.dxxml")});
    QCOMPARE(result.status, 5);
    QVERIFY2(result.errors.startsWith(
                 QStringLiteral("The file /there/is/no/such/folder/v.dxxml cannot be written: ")),
             qPrintable(result.errors));
    QVERIFY(result.output.isEmpty()); // said before the read, not after it
}

void tst_DraxelCtl::fileCannotBeRead_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("text"); // null: no file

    QTest::newRow("exchange file that is missing") << QStringLiteral("missing.dxxml") << QByteArray();
    QTest::newRow("exchange file that is none") << QStringLiteral("broken.dxxml") << QByteArray("nonsense");
    QTest::newRow("vehicle file that is missing") << QStringLiteral("missing.json") << QByteArray();
    QTest::newRow("vehicle file that is none") << QStringLiteral("broken.json") << QByteArray("{ nonsense");
}

void tst_DraxelCtl::fileCannotBeRead()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, text);
    const QString fileName = path(name.toLatin1().constData());
    if (!text.isNull()) {
        QFile file(fileName);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
    const Result result
        = run({QStringLiteral("simulate"), fileName, QStringLiteral("--bus"), virtualBus(freePort())});
    QCOMPARE(result.status, 5);
    QVERIFY2(result.errors.contains(name), qPrintable(result.errors));
}

void tst_DraxelCtl::interruptedRead_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<int>("status");

    QTest::newRow("SIGINT") << SIGINT << 130;
    QTest::newRow("SIGTERM") << SIGTERM << 143;
}

void tst_DraxelCtl::interruptedRead()
{
    QFETCH(int, number);
    QFETCH(int, status);
    {
        QFile old(path("v.dxxml"));
        QVERIFY(old.open(QIODevice::WriteOnly));
        old.write("the old file");
    }
    // The read has not ended when the signal comes, however late that is: one object is never answered.
    const QString silent
        = writeVehicle("{ \"id\": 1, \"dictionary\": \"node.dcf\", \"heartbeatMs\": 200,"
                       "  \"faults\": [ { \"kind\": \"sdoSilent\", \"object\": \"6000sub0\" } ] }");
    const QStringList files = QDir(m_folder->path()).entryList(QDir::Files);
    // What the bus carries is seen by a third client.
    const quint16 port = freePort();
    Program vehicle({QStringLiteral("simulate"), silent, QStringLiteral("--bus"), virtualBus(port)});
    QVERIFY(vehicle.waitForOutput(QStringLiteral("is on")));
    Program reader({QStringLiteral("read"), QStringLiteral("--bus"), virtualBus(port),
                    QStringLiteral("--timeout"), QStringLiteral("60000"), QStringLiteral("--export"),
                    path("v.dxxml")});
    QVERIFY(reader.waitForStart());
    QTcpSocket client;
    client.connectToHost(QHostAddress::LocalHost, port);
    QVERIFY(client.waitForConnected(patience));
    client.write("connect:can0\n");
    // Its first request shows that it reads: COB-ID 601h.
    QByteArray traffic;
    QVERIFY(QTest::qWaitFor(
        [&] {
            traffic += client.readAll();
            return traffic.contains("1537#");
        },
        patience));
    reader.signal(number);
    const Result result = reader.finish();
    QCOMPARE(result.status, status);
    QCOMPARE(result.errors, QStringLiteral("Interrupted; nothing was saved.\n"));
    QCOMPARE(readFile(path("v.dxxml")), QStringLiteral("the old file"));
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), files); // nothing half-written beside it
}

void tst_DraxelCtl::readsOverVirtualCan()
{
    const quint16 port = freePort();
    Program vehicle(
        {QStringLiteral("simulate"), QStringLiteral("pedelec"), QStringLiteral("--bus"), virtualBus(port)});
    QVERIFY(vehicle.waitForOutput(QStringLiteral("pedelec is on")));
    const Result result
        = run({QStringLiteral("read"), QStringLiteral("--bus"), virtualBus(port), QStringLiteral("--timeout"),
               QStringLiteral("10000"), QStringLiteral("--export"), path("v.dxxml")});
    QVERIFY2(result.status == 0, qPrintable(result.errors));
    QVERIFY2(result.output.contains(QStringLiteral("\nTotal: 7 nodes, ")), qPrintable(result.output));
    QCOMPARE(exportedValue(path("v.dxxml"), 1, 0x1000, 0), Q_INT64_C(0x470001C6));
}

void tst_DraxelCtl::simulatesExportedVehicle()
{
    const QString given
        = writeExchangeFile("<node nodeid=\"1\"><object index=\"0x1000\" sub=\"0x00\" value=\"454\" />"
                            "<object index=\"0x6042\" sub=\"0x01\" value=\"-5\" /></node>"
                            "<node nodeid=\"5\"><object index=\"0x6024\" sub=\"0x01\" value=\"-100000\" />"
                            "<object index=\"0x6311\" sub=\"0x01\" value=\"65535\" /></node>\n");
    const quint16 port = freePort();
    Program vehicle({QStringLiteral("simulate"), given, QStringLiteral("--bus"), virtualBus(port)});
    QVERIFY(vehicle.waitForOutput(QStringLiteral("given is on")));
    const Result result
        = run({QStringLiteral("read"), QStringLiteral("--bus"), virtualBus(port), QStringLiteral("--timeout"),
               QStringLiteral("10000"), QStringLiteral("--export"), path("v.dxxml")});
    QVERIFY2(result.status == 0, qPrintable(result.errors));
    const QString exported = path("v.dxxml");
    QCOMPARE(exportedValue(exported, 1, 0x1000, 0), Q_INT64_C(454));
    QCOMPARE(exportedValue(exported, 1, 0x6042, 1), Q_INT64_C(-5));
    QCOMPARE(exportedValue(exported, 5, 0x6024, 1), Q_INT64_C(-100000));
    QCOMPARE(exportedValue(exported, 5, 0x6311, 1), Q_INT64_C(65535));
    QVERIFY(!readFile(exported).contains(QStringLiteral("0x0000\"")));
    QCOMPARE(readFile(exported).count(QStringLiteral("<object")), 4);
}

void tst_DraxelCtl::simulationEndsBySignal()
{
    Program vehicle({QStringLiteral("simulate"), QStringLiteral("pedelec"), QStringLiteral("--bus"),
                     virtualBus(freePort())});
    QVERIFY(vehicle.waitForOutput(QStringLiteral("is on")));
    vehicle.signal(SIGINT);
    const Result result = vehicle.finish();
    QCOMPARE(result.status, 130);
    QCOMPARE(result.errors, QStringLiteral("The simulation has ended.\n"));
}

void tst_DraxelCtl::scansSilentNodes()
{
    const QString vehicle = writeVehicle("{ \"id\": 3, \"dictionary\": \"node.dcf\", \"heartbeatMs\": 0 },"
                                         "{ \"id\": 127, \"dictionary\": \"node.dcf\", \"heartbeatMs\": 0 }");
    const Result result
        = run({QStringLiteral("scan"), QStringLiteral("--bus"), QStringLiteral("simulated:") + vehicle,
               QStringLiteral("--bitrate"), QStringLiteral("0")});
    QVERIFY2(result.status == 0, qPrintable(result.errors));
    QCOMPARE(result.output, QStringLiteral("Node 3 answers\nNode 127 answers\n2 nodes found\n"));
}

void tst_DraxelCtl::scanSaysWhoIsHeardAndDoesNotAnswer()
{
    const QByteArray stopped = "{ \"id\": 3, \"dictionary\": \"node.dcf\", \"heartbeatMs\": 50, "
                               "\"faults\": [{\"kind\": \"stopped\"}] }";
    const QByteArray others = ", { \"id\": 5, \"dictionary\": \"node.dcf\", \"heartbeatMs\": 50, "
                              "\"faults\": [{\"kind\": \"sdoSilent\"}] }, "
                              "{ \"id\": 7, \"dictionary\": \"node.dcf\", \"heartbeatMs\": 50 }";
    const auto scan = [this](const QByteArray &nodes) {
        return run({QStringLiteral("scan"), QStringLiteral("--bus"),
                    QStringLiteral("simulated:") + writeVehicle(nodes.constData()),
                    QStringLiteral("--bitrate"), QStringLiteral("0")});
    };
    const Result some = scan(stopped + others);
    QCOMPARE(some.status, 0);
    QCOMPARE(some.output, QStringLiteral("Node 7 answers\n1 nodes found\n"));
    QCOMPARE(some.errors, QStringLiteral("Node 3 is in the state Stopped and answers no SDO.\n"
                                         "Node 5 sends a heartbeat, but does not answer.\n"));
    const Result none = scan(stopped);
    QCOMPARE(none.status, 3);
    QCOMPARE(none.output, QStringLiteral("0 nodes found\n"));
    QCOMPARE(none.errors, QStringLiteral("Node 3 is in the state Stopped and answers no SDO.\n"));
}

void tst_DraxelCtl::scanFindsNobody()
{
    const Result result = run({QStringLiteral("scan"), QStringLiteral("--bus"), virtualBus(freePort())});
    QCOMPARE(result.status, 3);
    QCOMPARE(result.output, QStringLiteral("0 nodes found\n"));
    QVERIFY2(result.errors.startsWith(QStringLiteral("No node answered.")), qPrintable(result.errors));
}

QTEST_GUILESS_MAIN(tst_DraxelCtl)
#include "tst_draxelctl.moc"
