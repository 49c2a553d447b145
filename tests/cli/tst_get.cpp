// SPDX-License-Identifier: MIT
#include "program.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

/*! Reading one object, and one node. */
class tst_Get : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void text_data();
    void text();
    void json_data();
    void json();
    void fails_data();
    void fails();
    void wrongUsage_data();
    void wrongUsage();
    void deviceWithAnotherType();
    void language();
    void isInterrupted();

    void silentNodeThatIsHeard();

    void nodeWithoutHeartbeat();
    void nodeWithFailures();
    void nodeThatIsNotThere();
    void nodeThatIsHeardIsThere();
    void nodeThatFallsSilent();
    void silentObjectsDoNotEndIt();
    void nodeWithReport();

private:
    bool copyBattery() const;
    Result get(const QString &arguments) const;
    Result readNode(const QString &vehicle, int nodeId, const QStringList &more = {}) const;
    QString writeVehicle(const QByteArray &name, const QByteArray &faults, int heartbeat = 0) const;

    QTemporaryDir m_folder;
    QString m_vehicle;
};

void tst_Get::initTestCase()
{
    QVERIFY(copyBattery());
    m_vehicle = writeVehicle("vehicle", R"({"kind": "wrongWidth", "bytes": 4, "object": "1001"},
                                           {"kind": "sdoAbort", "code": "0x08000022", "object": "6002sub1"},
                                           {"kind": "sdoSilent", "object": "6003sub1"},
                                           {"kind": "sizeBits", "expedited": 0, "object": "6105sub1"})");
}

/*! The battery, with a text of which only its maker knows that it is one. */
bool tst_Get::copyBattery() const
{
    QFile battery(QStringLiteral(VEHICLE_FOLDER "/pedelec-battery.dcf"));
    QFile copy(m_folder.filePath(QStringLiteral("node.dcf")));
    if (!battery.open(QIODevice::ReadOnly) || !copy.open(QIODevice::WriteOnly))
        return false;
    const QByteArray text = battery.readAll().replace("[ManufacturerObjects]\nSupportedObjects=0",
                                                      "[ManufacturerObjects]\nSupportedObjects=1\n1=0x2008");
    return copy.write(text
                      + "\n[2008]\nParameterName=Greeting\nObjectType=0x7\nDataType=0x0009\nAccessType=ro\n"
                        "DefaultValue=Good morning\nPDOMapping=0\n")
           > 0;
}

/*! One node, 9, with a heartbeat every so many ms (0: none); node 1 is missing. */
QString tst_Get::writeVehicle(const QByteArray &name, const QByteArray &faults, int heartbeat) const
{
    QFile file(m_folder.filePath(QString::fromLatin1(name) + QStringLiteral(".json")));
    if (file.open(QIODevice::WriteOnly)) {
        file.write("{ \"name\": \"test\", \"nodes\": [ { \"id\": 9, \"dictionary\": \"node.dcf\", "
                   "\"heartbeatMs\": "
                   + QByteArray::number(heartbeat) + ", \"faults\": [" + faults + "] } ] }");
    }
    return file.fileName();
}

Result tst_Get::get(const QString &arguments) const
{
    return run(QStringList{QStringLiteral("get"), QStringLiteral("--bus"),
                           QStringLiteral("simulated:") + m_vehicle, QStringLiteral("--bitrate"),
                           QStringLiteral("0"), QStringLiteral("--retries"), QStringLiteral("0")}
               + arguments.split(QLatin1Char(' ')));
}

Result tst_Get::readNode(const QString &vehicle, int nodeId, const QStringList &more) const
{
    return run(QStringList{QStringLiteral("read"), QStringLiteral("--bus"),
                           QStringLiteral("simulated:") + vehicle, QStringLiteral("--bitrate"),
                           QStringLiteral("0"), QStringLiteral("--retries"), QStringLiteral("0"),
                           QStringLiteral("--node"), QString::number(nodeId)}
               + more);
}

void tst_Get::text_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("output");

    const QString vendor = QStringLiteral("Object  1018h sub-index 1 of node 9\n"
                                          "Name    Identity\n"
                                          "Number  65534 (0xFFFE)\n"
                                          "Type    UNSIGNED32\n"
                                          "Bytes   FE FF 00 00\n");
    QTest::newRow("hexadecimal without a mark") << QStringLiteral("9 1018 1") << vendor;
    QTest::newRow("hexadecimal with h") << QStringLiteral("9 1018h 1") << vendor;
    QTest::newRow("hexadecimal with 0x") << QStringLiteral("0x9 0x1018 0x01") << vendor;
    QTest::newRow("with a unit") << QStringLiteral("9 6164 2")
                                 << QStringLiteral("Object  6164h sub-index 2 of node 9\n"
                                                   "Name    Relative battery Wh capacity\n"
                                                   "Value   84.00 %\n"
                                                   "Number  8400 (0x20D0)\n"
                                                   "Type    UNSIGNED16\n"
                                                   "Bytes   D0 20\n");
    QTest::newRow("number of sub-indices of an object with a unit")
        << QStringLiteral("9 6042")
        << QStringLiteral("Object  6042h sub-index 0 of node 9\n"
                          "Name    Device electronic temperature\n"
                          "Number  1 (0x1)\n"
                          "Type    UNSIGNED8\n"
                          "Bytes   01\n");
    QTest::newRow("text, no sub-index given")
        << QStringLiteral("9 2008h")
        << QStringLiteral("Object  2008h sub-index 0 of node 9\n"
                          "Text    Good morning\n"
                          "Length  12 bytes\n"
                          "Bytes   47 6F 6F 64 20 6D 6F 72 6E 69 6E 67\n");
    QTest::newRow("text that is known to be one")
        << QStringLiteral("9 1008h")
        << QStringLiteral("Object  1008h sub-index 0 of node 9\n"
                          "Value   DX-Pack 36/500\n"
                          "Type    VISIBLE_STRING\n"
                          "Bytes   44 58 2D 50 61 63 6B 20 33 36 2F 35 30 30\n");
}

void tst_Get::text()
{
    QFETCH(QString, arguments);
    QFETCH(QString, output);
    const Result result = get(arguments);
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.output, output);
    QCOMPARE(result.status, 0);
}

void tst_Get::json_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QByteArray>("json");

    QTest::newRow("number") << QStringLiteral("9 1018 1 --json")
                            << QByteArray(R"({"node": 9, "index": 4120, "subIndex": 1, "name": "Identity",
                                 "type": "UNSIGNED32", "value": 65534, "text": null, "bytes": "feff0000"})");
    QTest::newRow("with a unit")
        << QStringLiteral("9 6042 1 --json")
        << QByteArray(R"({"node": 9, "index": 24642, "subIndex": 1, "name": "Device electronic temperature",
             "type": "INTEGER16", "value": 268, "text": "26.80 °C", "bytes": "0c01"})");
    QTest::newRow("bytes") << QStringLiteral("9 1008 0 --json --type bytes")
                           << QByteArray(R"({"node": 9, "index": 4104, "subIndex": 0, "name": null,
             "type": "OCTET_STRING", "value": null, "text": null, "bytes": "44582d5061636b2033362f353030"})");
    QTest::newRow("nobody knows the type")
        << QStringLiteral("9 2008 --json")
        << QByteArray(R"({"node": 9, "index": 8200, "subIndex": 0, "name": null,
             "type": null, "value": null, "text": null, "bytes": "476f6f64206d6f726e696e67"})");
}

void tst_Get::json()
{
    QFETCH(QString, arguments);
    QFETCH(QByteArray, json);
    const Result result = get(arguments);
    QCOMPARE(result.status, 0);
    QCOMPARE(QJsonDocument::fromJson(result.output.toUtf8()).object(),
             QJsonDocument::fromJson(json).object());
}

void tst_Get::fails_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("errors");

    QTest::newRow("no object") << QStringLiteral("9 2000") << 7
                               << QStringLiteral(
                                      "Node 9, object 2000h sub-index 0: The object does not exist "
                                      "(0602 0000h)\n");
    QTest::newRow("refused") << QStringLiteral("9 6002 1") << 7
                             << QStringLiteral("Node 9, object 6002h sub-index 1: The data cannot be "
                                               "transferred or stored in the present state of the device "
                                               "(0800 0022h)\n");
    QTest::newRow("another size than was asked for")
        << QStringLiteral("9 1018 1 --type u8") << 7
        << QStringLiteral("Node 9, object 1018h sub-index 1: There are more bytes than the data type has "
                          "(0607 0012h)\n");
    QTest::newRow("another size, and no bytes")
        << QStringLiteral("9 6105 1") << 7
        << QStringLiteral("Node 9, object 6105h sub-index 1: There are more bytes than the data type has "
                          "(0607 0012h)\n");
    QTest::newRow("silent object") << QStringLiteral("9 6003 1") << 4
                                   << QStringLiteral("Node 9, object 6003h sub-index 1: No answer\n"
                                                     "Node 9 has sent its boot-up message, but does not "
                                                     "answer.\n");
    QTest::newRow("silent node") << QStringLiteral("10 1000") << 4
                                 << QStringLiteral("Node 10, object 1000h sub-index 0: No answer\n");
}

void tst_Get::fails()
{
    QFETCH(QString, arguments);
    QFETCH(int, status);
    QFETCH(QString, errors);
    const Result result = get(arguments);
    QCOMPARE(result.errors, errors);
    QCOMPARE(result.status, status);
    QCOMPARE(result.output, QString());
}

void tst_Get::wrongUsage_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("sentence");

    QTest::newRow("no index") << QStringLiteral("9") << QStringLiteral("draxelctl get: INDEX is missing.");
    QTest::newRow("too much") << QStringLiteral("9 1000 0 7")
                              << QStringLiteral("draxelctl get: What is \"7\" for?");
    QTest::newRow("node 0") << QStringLiteral("0 1000")
                            << QStringLiteral("draxelctl get: \"0\" is no node ID from 1 to 127.");
    QTest::newRow("node 128") << QStringLiteral("128 1000")
                              << QStringLiteral("draxelctl get: \"128\" is no node ID from 1 to 127.");
    QTest::newRow("index too long") << QStringLiteral("9 10000")
                                    << QStringLiteral("draxelctl get: \"10000\" is no index.");
    QTest::newRow("index that is none")
        << QStringLiteral("9 10g0") << QStringLiteral("draxelctl get: \"10g0\" is no index.");
    QTest::newRow("sub-index too high")
        << QStringLiteral("9 1000 256")
        << QStringLiteral("draxelctl get: \"256\" is no sub-index from 0 to 255.");
    QTest::newRow("type") << QStringLiteral("9 1000 0 --type u23")
                          << QStringLiteral(
                                 "draxelctl get: There is no data type \"u23\"; there are bool, i8");
}

void tst_Get::wrongUsage()
{
    QFETCH(QString, arguments);
    QFETCH(QString, sentence);
    const Result result = get(arguments);
    QCOMPARE(result.status, 1);
    QVERIFY2(result.errors.startsWith(sentence), qPrintable(result.errors));
    QCOMPARE(result.output, QString());
}

void tst_Get::deviceWithAnotherType()
{
    // The read list asks for UNSIGNED8; this device sends four bytes.
    const Result result = get(QStringLiteral("9 1001"));
    QCOMPARE(result.status, 0);
    QVERIFY2(result.output.contains(QStringLiteral("\nLength  4 bytes\n")), qPrintable(result.output));
    QVERIFY(!result.output.contains(QStringLiteral("Type")));
}

void tst_Get::language()
{
    const Result result = get(QStringLiteral("9 6126 1 --language de"));
    QCOMPARE(result.status, 0);
    QVERIFY2(result.output.contains(QStringLiteral("\nValue ")), qPrintable(result.output));
    QCOMPARE(get(QStringLiteral("9 6126 1 --language tlh")).status, 1);
}

void tst_Get::isInterrupted()
{
    Program program({QStringLiteral("get"), QStringLiteral("--bus"), QStringLiteral("simulated:") + m_vehicle,
                     QStringLiteral("--timeout"), QStringLiteral("60000"), QStringLiteral("10"),
                     QStringLiteral("1000")});
    QVERIFY(program.waitForStart());
    QVERIFY(program.waitForSignalHandler(SIGINT));
    program.signal(SIGINT);
    const Result result = program.finish();
    QCOMPARE(result.status, 130);
    QCOMPARE(result.errors, QStringLiteral("Interrupted.\n"));
}

void tst_Get::silentNodeThatIsHeard()
{
    const auto getFrom = [](const QString &vehicle) {
        return run({QStringLiteral("get"), QStringLiteral("--bus"), QStringLiteral("simulated:") + vehicle,
                    QStringLiteral("--bitrate"), QStringLiteral("0"), QStringLiteral("--retries"),
                    QStringLiteral("0"), QStringLiteral("9"), QStringLiteral("1018"), QStringLiteral("1")});
    };
    const Result stopped = getFrom(writeVehicle("stopped-get", R"({"kind": "stopped"})", 50));
    QCOMPARE(stopped.status, 4);
    QCOMPARE(stopped.errors, QStringLiteral("Node 9, object 1018h sub-index 1: No answer\n"
                                            "Node 9 is in the state Stopped and answers no SDO.\n"));
    const Result silent = getFrom(writeVehicle("silent-get", R"({"kind": "sdoSilent"})", 50));
    QCOMPARE(silent.status, 4);
    QCOMPARE(silent.errors, QStringLiteral("Node 9, object 1018h sub-index 1: No answer\n"
                                           "Node 9 sends a heartbeat, but does not answer.\n"));
}

void tst_Get::nodeWithoutHeartbeat()
{
    const QString exported = m_folder.filePath(QStringLiteral("node.dxxml"));
    const Result result = readNode(writeVehicle("healthy", ""), 9, {QStringLiteral("--export"), exported});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.status, 0);
    const QStringList lines = result.output.split(QLatin1Char('\n'));
    QVERIFY2(lines.at(0).startsWith(QStringLiteral("Node 9: device type 0x4D0101C6, vendor 0x0000FFFE, ")),
             qPrintable(result.output));
    QVERIFY2(lines.at(1).startsWith(QStringLiteral("Total: 1 nodes, ")), qPrintable(result.output));
    const QString text = readFile(exported);
    QVERIFY(text.contains(QStringLiteral("<node nodeid=\"9\">")));
    QVERIFY(text.contains(QStringLiteral("<object index=\"0x1018\" sub=\"0x01\" value=\"65534\" />")));
    QCOMPARE(text.count(QStringLiteral("<node ")), 1);
}

void tst_Get::nodeWithFailures()
{
    const QString vehicle
        = writeVehicle("refusing", R"({"kind": "sdoAbort", "code": "0x08000022", "object": "6002sub1"})");
    const Result result = readNode(vehicle, 9);
    QCOMPARE(result.status, 7);
    QCOMPARE(result.errors, QStringLiteral("Node 9, object 6002h sub-index 1: The data cannot be transferred "
                                           "or stored in the present state of the device (0800 0022h)\n"));
    QVERIFY2(result.output.contains(QStringLiteral(" objects not there, 1 failed\n")),
             qPrintable(result.output));
}

void tst_Get::nodeThatIsNotThere()
{
    const QString exported = m_folder.filePath(QStringLiteral("none.dxxml"));
    const Result result = readNode(m_vehicle, 10, {QStringLiteral("--export"), exported});
    QCOMPARE(result.status, 3);
    QCOMPARE(result.errors,
             QStringLiteral("Nothing was read: node 10 does not answer. Check that it is switched "
                            "on, the cable, and the bit rate.\n"));
    QCOMPARE(result.output, QString());
    QVERIFY(!QFile::exists(exported));
}

void tst_Get::nodeThatIsHeardIsThere()
{
    const Result stopped = readNode(writeVehicle("stopped", R"({"kind": "stopped"})", 50), 9);
    QCOMPARE(stopped.status, 4);
    QCOMPARE(stopped.errors,
             QStringLiteral("The read stopped at node 9, object 1018h sub-index 0, because the node is in "
                            "the state Stopped and answers no SDO. Values read until then: 0.\n"
                            "Node 9, object 1000h sub-index 0: No answer\n"
                            "Node 9, object 1001h sub-index 0: No answer\n"));
    const Result silent = readNode(writeVehicle("silent", R"({"kind": "sdoSilent"})", 50), 9);
    QCOMPARE(silent.status, 4);
    QVERIFY2(silent.errors.startsWith(
                 QStringLiteral("The read stopped at node 9, object 1018h sub-index 0, because it did not "
                                "answer. Values read until then: 0. A larger --timeout or more --retries ")),
             qPrintable(silent.errors));
}

void tst_Get::nodeThatFallsSilent()
{
    const Result result = readNode(writeVehicle("falling", R"({"kind": "sdoSilent", "from": 20})"), 9);
    QCOMPARE(result.status, 4);
    // Entries 20 to 22 of the list.
    QVERIFY2(result.errors.startsWith(QStringLiteral("The read stopped at node 9, object 6002h sub-index 2, "
                                                     "because it did not answer. Values read until then: ")),
             qPrintable(result.errors));
    QCOMPARE(result.errors.count(QStringLiteral(": No answer\n")), 2);
}

void tst_Get::silentObjectsDoNotEndIt()
{
    const QString vehicle = writeVehicle("holes", R"({"kind": "sdoSilent", "object": "6002sub1"},
                                                     {"kind": "sdoSilent", "object": "6002sub2"},
                                                     {"kind": "sdoSilent", "object": "6003sub1"})");
    const Result result = readNode(vehicle, 9);
    QCOMPARE(result.status, 7);
    QCOMPARE(result.errors, QStringLiteral("Node 9, object 6002h sub-index 1: No answer\n"
                                           "Node 9, object 6002h sub-index 2: No answer\n"
                                           "Node 9, object 6003h sub-index 1: No answer\n"));
}

void tst_Get::nodeWithReport()
{
    const QString folder = m_folder.filePath(QStringLiteral("report"));
    const Result result = readNode(writeVehicle("reported", ""), 9, {QStringLiteral("--report"), folder});
    QCOMPARE(result.status, 0);
    QVERIFY(readFile(folder + QStringLiteral("/dx_report.html")).contains(QStringLiteral("Battery")));
    QVERIFY(QFile::exists(folder + QStringLiteral("/dx_report.pdf")));
}

QTEST_GUILESS_MAIN(tst_Get)
#include "tst_get.moc"
