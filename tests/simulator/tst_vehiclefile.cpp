// SPDX-License-Identifier: MIT
#include <simulator/vehiclefile.h>

#include <canopen/datatype.h>

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <random>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

using namespace CanOpen;
using namespace Simulator;

class tst_VehicleFile : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void readsAVehicle();
    void defaults();
    void errors_data();
    void errors();
    void errorsNameTheFile();
    void missingFile();
    void namesAndPaths();
    void shippedVehiclesAreListed();
    void shippedVehiclesLoad_data();
    void shippedVehiclesLoad();
    void objectsOfTheReadListHaveItsTypes_data();
    void objectsOfTheReadListHaveItsTypes();
    void copiesBesideTheProgramsAreTheSame();
    void mutatedFilesNeverCrash();

private:
    QTemporaryDir m_folder;
};

namespace {

const char deviceFile[] = "[1001]\nObjectType=7\nDataType=5\nAccessType=ro\nDefaultValue=1\n"
                          "[1008]\nObjectType=7\nDataType=9\nAccessType=ro\nDefaultValue=Device\n"
                          "[1014]\nObjectType=7\nDataType=7\nAccessType=rw\nDefaultValue=$NODEID+0x80\n"
                          "[6164]\nObjectType=8\nSubNumber=2\n"
                          "[6164sub1]\nDataType=6\nAccessType=ro\nDefaultValue=8400\n"
                          "[6164sub2]\nDataType=6\nAccessType=ro\nDefaultValue=8400\n"
                          "[DeviceInfo]\nProductName=DX-Pack\n";

const char vehicleFile[] = R"({
  "name": "test", "description": "A vehicle", "bitRate": 125000, "speed": 2.5,
  "nodes": [
    { "id": 2, "name": "Battery", "dictionary": "device.dcf", "heartbeatMs": 250, "bootUp": false,
      "state": "preOperational",
      "values": { "6164sub1": 7000, "1008": "Pack" },
      "behaviour": [ { "object": "6164sub2", "kind": "ramp", "from": 8400, "to": 1500, "seconds": 3600 } ],
      "faults": [ { "kind": "sdoDelay", "ms": 150, "object": "1001" } ] } ],
  "faults": [ { "kind": "busLoss", "afterFrames": 1000 } ] })";

/*! A vehicle of one node with more keys. */
QByteArray oneNode(const QByteArray &keys)
{
    return R"({"nodes":[{"id":2,"dictionary":"device.dcf")" + (keys.isEmpty() ? QByteArray() : "," + keys)
           + "}]}";
}

} // namespace

void tst_VehicleFile::initTestCase()
{
    qputenv("DRAXEL_VEHICLES", OVERVIEW_VEHICLES_DIR);
    QVERIFY(m_folder.isValid());
    QFile device(m_folder.filePath(QStringLiteral("device.dcf")));
    QVERIFY(device.open(QIODevice::WriteOnly));
    device.write(deviceFile);
    QFile broken(m_folder.filePath(QStringLiteral("broken.dcf")));
    QVERIFY(broken.open(QIODevice::WriteOnly));
    broken.write("[1000]\nDataType=0x99\n");
}

void tst_VehicleFile::readsAVehicle()
{
    QString error;
    const auto vehicle = parseVehicle(vehicleFile, m_folder.path(), &error);
    QVERIFY2(vehicle.has_value(), qPrintable(error));
    QCOMPARE(vehicle->name, QStringLiteral("test"));
    QCOMPARE(vehicle->description, QStringLiteral("A vehicle"));
    QCOMPARE(vehicle->bitRate, 125000);
    QCOMPARE(vehicle->speed, 2.5);
    QCOMPARE(vehicle->faults.size(), 1);
    QCOMPARE(std::get<Faults::BusLoss>(vehicle->faults.first()).afterFrames, 1000);
    QCOMPARE(vehicle->nodes.size(), 1);
    const NodeDescription &node = vehicle->nodes.first();
    QCOMPARE(int(node.id), 2);
    QCOMPARE(node.name, QStringLiteral("Battery"));
    QCOMPARE(int(node.heartbeatMs.value_or(0)), 250);
    QVERIFY(!node.bootUp);
    QCOMPARE(node.state, NmtState::PreOperational);
    QCOMPARE(node.dictionary.value({0x6164, 1}).toInt(), 7000);
    QCOMPARE(node.dictionary.value({0x6164, 2}).toInt(), 8400);
    QCOMPARE(node.dictionary.value({0x1008, 0}).toString(), QStringLiteral("Pack"));
    QCOMPARE(node.dictionary.value({0x1014, 0}).toInt(), 0x82);
    QCOMPARE(node.behaviours.size(), 1);
    QCOMPARE(node.behaviours.first().kind, BehaviourKind::Ramp);
    QCOMPARE(node.faults.size(), 1);
    QCOMPARE(std::get<Faults::SdoDelay>(node.faults.first()).delay.count(), qint64(150));
}

void tst_VehicleFile::defaults()
{
    QString error;
    const auto vehicle = parseVehicle(oneNode(""), m_folder.path(), &error);
    QVERIFY2(vehicle.has_value(), qPrintable(error));
    QCOMPARE(vehicle->bitRate, 250000);
    QCOMPARE(vehicle->speed, 1.0);
    const NodeDescription &node = vehicle->nodes.first();
    QCOMPARE(node.name, QStringLiteral("DX-Pack"));
    QVERIFY(!node.heartbeatMs.has_value());
    QVERIFY(node.bootUp);
    QCOMPARE(node.state, NmtState::Operational);
}

void tst_VehicleFile::errors_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("message"); // %1 stands for the folder

    const auto row = [](const char *name, const QByteArray &json, const char *message) {
        QTest::newRow(name) << json << QString::fromUtf8(message);
    };
    row("no object", "[1, 2]", "the file is not in the form { \"name\": ..., \"nodes\": [ ... ] }");
    row("no nodes", "{}", "line 1, nodes: the vehicle has no node");
    row("nodes no list", R"({"nodes":5})", "line 1, nodes: no list");
    row("node no object", R"({"nodes":[5]})", "line 1, nodes[0]: not in the form { \"key\": value }");
    row("unknown key", R"({"nodes":[],"wheels":2})", "line 1, wheels: this key is not known");
    row("unknown key of a node", oneNode(R"("colour":"red")"),
        "line 1, nodes[0].colour: this key is not known");
    row("name", R"({"name":5})", "line 1, name: no text");
    row("bit rate", R"({"bitRate":33333})", "line 1, bitRate: 33333 bit/s is no bit rate of CAN");
    row("speed", R"({"speed":"fast"})", "line 1, speed: no number from 0.01 to 1000");
    row("standing still", R"({"speed":0})", "line 1, speed: no number from 0.01 to 1000");
    row("too fast", R"({"speed":1001})", "line 1, speed: no number from 0.01 to 1000");
    row("emergency of no object", oneNode(R"("faults":[{"kind":"emergency","object":"5FFF","above":1}])"),
        "line 1, nodes[0].faults[0].object: the dictionary has no object 5FFF");
    row("emergency of a text", oneNode(R"("faults":[{"kind":"emergency","object":"1008","above":1}])"),
        "line 1, nodes[0].faults[0].object: 1008 is no number");
    row("bit rate huge", R"({"bitRate":1e12})", "line 1, bitRate: no whole number from 1 to 1000000");
    row("no ID", R"({"nodes":[{"dictionary":"device.dcf"}]})", "line 1, nodes[0].id: the node ID is missing");
    row("ID 0", R"({"nodes":[{"id":0}]})", "line 1, nodes[0].id: no whole number from 1 to 127");
    row("ID 128", R"({"nodes":[{"id":128}]})", "line 1, nodes[0].id: no whole number from 1 to 127");
    row("ID as text", R"({"nodes":[{"id":"1"}]})", "line 1, nodes[0].id: no whole number from 1 to 127");
    row("ID twice", R"({"nodes":[{"id":2,"dictionary":"device.dcf"},{"id":2,"dictionary":"device.dcf"}]})",
        "line 1, nodes[1].id: node 2 is there twice");
    row("heartbeat", oneNode(R"("heartbeatMs":65536)"),
        "line 1, nodes[0].heartbeatMs: no whole number from 0 to 65535");
    row("heartbeat fraction", oneNode(R"("heartbeatMs":0.5)"),
        "line 1, nodes[0].heartbeatMs: no whole number from 0 to 65535");
    row("boot-up", oneNode(R"("bootUp":1)"), "line 1, nodes[0].bootUp: neither true nor false");
    row("state", oneNode(R"("state":"asleep")"),
        "line 1, nodes[0].state: \"asleep\" is none of operational, preOperational, stopped");
    row("no dictionary", R"({"nodes":[{"id":2}]})",
        "line 1, nodes[0].dictionary: the device configuration file is missing");
    row("dictionary absent", R"({"nodes":[{"id":2,"dictionary":"none.dcf"}]})",
        "line 1, nodes[0].dictionary: there is no file %1/none.dcf");
    row("dictionary is a folder", R"({"nodes":[{"id":2,"dictionary":"."}]})",
        "line 1, nodes[0].dictionary: there is no file %1/.");
    row("dictionary broken", R"({"nodes":[{"id":2,"dictionary":"broken.dcf"}]})",
        "line 1, nodes[0].dictionary: %1/broken.dcf: line 2, [1000] DataType: 0x99 is no data type of CiA "
        "301");
    row("values no object", oneNode(R"("values":[])"),
        "line 1, nodes[0].values: not in the form { \"6041sub1\": 36500 }");
    row("value of nonsense", oneNode(R"("values":{"battery":1})"),
        "line 1, nodes[0].values.battery: no object such as \"6164sub2\"");
    row("value of no object", oneNode(R"("values":{"6164sub3":1})"),
        "line 1, nodes[0].values.6164sub3: the dictionary has no such object");
    row("value too large", oneNode(R"("values":{"6164sub1":65536})"),
        "line 1, nodes[0].values.6164sub1: the value does not fit the object's data type");
    row("value null", oneNode(R"("values":{"6164sub1":null})"),
        "line 1, nodes[0].values.6164sub1: the value does not fit the object's data type");
    row("behaviour kind", oneNode(R"("behaviour":[{"object":"6164sub1","kind":"zigzag"}])"),
        "line 1, nodes[0].behaviour[0].kind: \"zigzag\" is none of ramp, sine, random, counter, course");
    row("behaviour of no object",
        oneNode(R"("behaviour":[{"object":"6165","kind":"ramp","from":1,"to":2,"seconds":1}])"),
        "line 1, nodes[0].behaviour[0].object: the dictionary has no object 6165");
    row("behaviour of a text",
        oneNode(R"("behaviour":[{"object":"1008","kind":"ramp","from":1,"to":2,"seconds":1}])"),
        "line 1, nodes[0].behaviour[0].object: 1008 is no number");
    row("two behaviours of an object",
        oneNode(R"("behaviour":[{"object":"6164sub1","kind":"ramp","from":1,"to":2,"seconds":1},)"
                R"({"object":"6164sub1","kind":"sine","mean":1,"amplitude":2,"periodSeconds":1}])"),
        "line 1, nodes[0].behaviour[1].object: 6164sub1 moves already");
    row("fault", oneNode(R"("faults":[{"kind":"sdoDelay","ms":-5}])"),
        "line 1, nodes[0].faults[0].ms: no whole number from 0 to 1000000");
    row("fault of the bus on a node", oneNode(R"("faults":[{"kind":"busLoss"}])"),
        "line 1, nodes[0].faults[0].kind: \"busLoss\" is a fault of the whole bus");
    row("fault of a node on the bus", R"({"faults":[{"kind":"silent"}]})",
        "line 1, faults[0].kind: \"silent\" is a fault of a node");
    row("line of a value",
        "{\n \"nodes\": [\n  {\n   \"id\": 2,\n   \"dictionary\": \"device.dcf\",\n"
        "   \"heartbeatMs\": -1\n  }\n ]\n}",
        "line 6, nodes[0].heartbeatMs: no whole number from 0 to 65535");
    row("control characters in a key", "{\"nodes\":[],\n\"a\\u001b[2J\":1}",
        "line 2, a\\u001B[2J: this key is not known");
    row("control characters in a text", oneNode("\"state\":\"\\u001b]0;x\\u0007\""),
        "line 1, nodes[0].state: \"\\u001B]0;x\\u0007\" is none of operational, preOperational, stopped");
    row("control characters in a fault", oneNode("\"faults\":[{\"kind\":\"sdoDelay\",\"a\\u009bb\":1}]"),
        "line 1, nodes[0].faults[0].a\\u009Bb: not known for \"sdoDelay\"");
    row("colon in a key of a fault", oneNode(R"("faults":[{"kind":"silent","a:b":1}])"),
        "line 1, nodes[0].faults[0].a:b: not known for \"silent\"");
    row("no JSON", "{\n\"name\" 5 }", "line 2: missing name separator");
    row("too large", QByteArray(5 * 1024 * 1024, ' '), "the file is larger than 4 MB");
}

void tst_VehicleFile::errors()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, message);
    QString error;
    QVERIFY(!parseVehicle(json, m_folder.path(), &error).has_value());
    QCOMPARE(error, message.replace(QLatin1String("%1"), m_folder.path()));
    QVERIFY(!parseVehicle(json, m_folder.path(), nullptr).has_value());
}

void tst_VehicleFile::errorsNameTheFile()
{
    const QString path = m_folder.filePath(QStringLiteral("wrong.json"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("{}");
    file.close();
    QString error;
    QVERIFY(!readVehicleFile(path, &error).has_value());
    QCOMPARE(error, path + QStringLiteral(": line 1, nodes: the vehicle has no node"));
}

void tst_VehicleFile::missingFile()
{
    QString error;
    QVERIFY(!readVehicleFile(QStringLiteral("/nowhere/car.json"), &error).has_value());
    QVERIFY2(error.startsWith(QStringLiteral("/nowhere/car.json: ")), qPrintable(error));
}

void tst_VehicleFile::namesAndPaths()
{
    QString error;
    QCOMPARE(findVehicleFile(QStringLiteral("pedelec"), &error),
             QStringLiteral(OVERVIEW_VEHICLES_DIR "/pedelec.json"));
    const QString device = m_folder.filePath(QStringLiteral("device.dcf"));
    QCOMPARE(findVehicleFile(device, &error), device);
    QCOMPARE(findVehicleFile(QStringLiteral("car"), &error), QString());
    QCOMPARE(
        error,
        QStringLiteral(
            "There is neither a vehicle nor a vehicle file \"car\"; vehicles are: full-bus, pedelec, ride"));

    qputenv("DRAXEL_VEHICLES", "/nowhere");
    QCOMPARE(findVehicleFile(QStringLiteral("pedelec"), &error), QString());
    QCOMPARE(error, QStringLiteral("There is no vehicle file \"pedelec\", and no vehicles are installed"));
    qputenv("DRAXEL_VEHICLES", OVERVIEW_VEHICLES_DIR);
}

void tst_VehicleFile::shippedVehiclesAreListed()
{
    const QVector<ShippedVehicle> vehicles = shippedVehicles();
    QCOMPARE(vehicles.size(), 3);
    QCOMPARE(vehicles.at(0).name, QStringLiteral("full-bus"));
    QCOMPARE(vehicles.at(1).name, QStringLiteral("pedelec"));
    QVERIFY(!vehicles.at(0).description.isEmpty());
    QVERIFY(!vehicles.at(1).description.isEmpty());
    QCOMPARE(vehicles.at(2).name, QStringLiteral("ride"));
    QVERIFY(!vehicles.at(2).description.isEmpty());
}

void tst_VehicleFile::shippedVehiclesLoad_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QVector<int>>("nodes");

    QTest::newRow("pedelec") << QStringLiteral("pedelec") << QVector<int>({1, 2, 3, 4, 5, 6, 7});
    QTest::newRow("ride") << QStringLiteral("ride") << QVector<int>({1, 2, 4, 5, 7});
    QTest::newRow("full-bus") << QStringLiteral("full-bus")
                              << QVector<int>({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 16, 17, 100, 127});
}

void tst_VehicleFile::shippedVehiclesLoad()
{
    QFETCH(QString, name);
    QFETCH(QVector<int>, nodes);
    QString error;
    const auto vehicle = readVehicleFile(findVehicleFile(name, &error), &error);
    QVERIFY2(vehicle.has_value(), qPrintable(error));
    QVector<int> ids;
    for (const NodeDescription &node : vehicle->nodes) {
        ids.append(node.id);
        QVERIFY(!node.name.isEmpty());
        QVERIFY2(node.heartbeatMs.value_or(0) > 0 && node.heartbeatMs.value_or(0) <= 2000,
                 qPrintable(node.name));
        QVERIFY(node.dictionary.find({0x1018, 1}) != nullptr);
        QVERIFY(node.dictionary.find({0x6000, 1}) != nullptr);
    }
    std::sort(ids.begin(), ids.end());
    QCOMPARE(ids, nodes);
    QCOMPARE(vehicle->bitRate, 250000);
    QCOMPARE(vehicle->faults.size(), 0);
}

void tst_VehicleFile::objectsOfTheReadListHaveItsTypes_data()
{
    shippedVehiclesLoad_data();
}

void tst_VehicleFile::objectsOfTheReadListHaveItsTypes()
{
    struct Row
    {
        quint16 firstIndex;
        quint16 lastIndex;
        int firstSub;
        int lastSub;
        int bytes;
    };
    // Index range, sub-indices and bytes that a reader asks for; sub-index 0 of arrays and records is
    // UNSIGNED8.
    static constexpr Row rows[] = {
        {0x1000, 0x1000, 0, 0, 4}, {0x1001, 0x1001, 0, 0, 1}, {0x1018, 0x1018, 1, 4, 4},
        {0x6000, 0x6000, 1, 5, 4}, {0x6001, 0x6003, 1, 5, 2}, {0x6005, 0x6005, 0, 0, 4},
        {0x6008, 0x6008, 1, 4, 4}, {0x600D, 0x600D, 0, 0, 1}, {0x600E, 0x600E, 1, 14, 4},
        {0x6020, 0x6020, 1, 5, 2}, {0x6022, 0x6023, 1, 5, 2}, {0x6024, 0x6027, 1, 5, 4},
        {0x603E, 0x603E, 1, 5, 4}, {0x6040, 0x6040, 1, 5, 4}, {0x6042, 0x6042, 1, 5, 2},
        {0x6046, 0x604F, 1, 2, 4}, {0x6080, 0x6080, 0, 0, 2}, {0x6081, 0x6081, 0, 0, 1},
        {0x6100, 0x6100, 1, 2, 2}, {0x6102, 0x6102, 1, 2, 4}, {0x6105, 0x6105, 1, 2, 2},
        {0x6120, 0x6121, 1, 1, 2}, {0x6126, 0x6127, 1, 2, 4}, {0x6160, 0x6160, 1, 2, 4},
        {0x6162, 0x6162, 1, 2, 4}, {0x6164, 0x6164, 1, 1, 1}, {0x6164, 0x6164, 2, 2, 2},
        {0x6176, 0x6176, 1, 2, 2}, {0x6310, 0x6310, 1, 7, 4}, {0x62E8, 0x62E8, 1, 5, 2},
    };
    QFETCH(QString, name);
    QString error;
    const auto vehicle = readVehicleFile(findVehicleFile(name, &error), &error);
    QVERIFY2(vehicle.has_value(), qPrintable(error));
    int checked = 0;
    for (const NodeDescription &node : vehicle->nodes) {
        for (const Row &row : rows) {
            for (int index = row.firstIndex; index <= row.lastIndex; ++index) {
                for (int sub = row.firstSub; sub <= row.lastSub; ++sub) {
                    const ObjectKey key{static_cast<quint16>(index), static_cast<quint8>(sub)};
                    const ObjectEntry *entry = node.dictionary.find(key);
                    if (entry == nullptr)
                        continue;
                    ++checked;
                    QVERIFY2(byteSize(entry->type) == row.bytes && entry->data.size() == row.bytes,
                             qPrintable(node.name + QLatin1Char(' ') + key.toString()));
                    QVERIFY(entry->access != Access::WriteOnly);
                }
                const ObjectEntry *count = node.dictionary.find({static_cast<quint16>(index), 0});
                QVERIFY(count == nullptr || row.firstSub == 0 || count->type == DataType::Unsigned8);
            }
        }
    }
    QVERIFY2(checked > 140, qPrintable(QString::number(checked)));
}

void tst_VehicleFile::copiesBesideTheProgramsAreTheSame()
{
    const QDir source(QStringLiteral(OVERVIEW_VEHICLES_DIR));
    const QDir copies(QStringLiteral(OVERVIEW_BIN_DIR "/vehicles"));
    const QStringList names
        = source.entryList({QStringLiteral("*.json"), QStringLiteral("*.dcf")}, QDir::Files, QDir::Name);
    QVERIFY(names.size() >= 4);
    for (const QString &name : names) {
        QFile original(source.filePath(name));
        QFile copy(copies.filePath(name));
        QVERIFY(original.open(QIODevice::ReadOnly));
        QVERIFY2(copy.open(QIODevice::ReadOnly), qPrintable(name));
        QVERIFY2(original.readAll() == copy.readAll(), qPrintable(name));
    }
}

void tst_VehicleFile::mutatedFilesNeverCrash()
{
#ifdef __SANITIZE_ADDRESS__
    // Qt's own reader loses some memory on malformed JSON.
    const __lsan::ScopedDisabler disabler;
#endif
    const QByteArray original(vehicleFile);
    static const QByteArrayList snippets
        = {"{",    "}",       "[",    "]",    "\"",      ",",         ":",
           "null", "-1",      "1e9",  "true", "\"id\":", "\"nodes\"", QByteArray(1, '\0'),
           "\xFF", "\\u0000", "[[[[["};
    std::mt19937 random(8259);
    int accepted = 0;
    for (int round = 0; round < 5000; ++round) {
        QByteArray text = original;
        const int changes = 1 + static_cast<int>(random() % 4);
        for (int change = 0; change < changes && !text.isEmpty(); ++change) {
            const int place = static_cast<int>(random() % unsigned(text.size()));
            switch (random() % 4) {
            case 0:
                text[place] = static_cast<char>(random() & 0xFF);
                break;
            case 1:
                text.remove(place, 1 + static_cast<int>(random() % 30));
                break;
            case 2:
                text.insert(place, snippets.at(static_cast<int>(random() % unsigned(snippets.size()))));
                break;
            default:
                text.insert(place, text.mid(static_cast<int>(random() % unsigned(text.size())), 80));
                break;
            }
        }
        QString error;
        if (parseVehicle(text, m_folder.path(), &error).has_value())
            ++accepted;
        else
            QVERIFY(!error.isEmpty());
    }
    QVERIFY(accepted > 10);
    QByteArray deep(200000, '[');
    QString error;
    QVERIFY(!parseVehicle(deep, m_folder.path(), &error).has_value());
}

QTEST_GUILESS_MAIN(tst_VehicleFile)
#include "tst_vehiclefile.moc"
