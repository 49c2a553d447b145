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

/*! "draxelctl snapshot": what it writes, what it says, and its exit status. */
class tst_SnapshotCommand : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void healthyVehicleIsComplete();
    void sickVehicleHasGaps();
    void reasonsInTheLanguage();
    void oneByteIsNoPlural();
    void readsNamedNodes();
    void scans();
    void dataSheetOfANode();
    void resumes();
    void resumesAQuickOneInFull();
    void resumeOnAnotherVehicleKeepsTheFile();
    void resumeOnAVehicleOfOtherNodesKeepsTheFile();
    void resumeSaysWhatItCannotRecognize();
    void nameBesideAFileWithoutSuffix();
    void printsJson();
    void writesToStandardOutput();
    void interruptKeepsWhatWasRead();
    void noNode();
    void badArguments_data();
    void badArguments();
    void badFiles();

private:
    QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }
    QString writeVehicle(const QByteArray &nodes, const QByteArray &faults = {}) const;
    QStringList arguments(const QString &vehicle, const QStringList &more = {}) const;
    QJsonObject load(const char *name = "out.dxsnap") const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

namespace {

QJsonObject nodeOf(const QJsonObject &snapshot, int id)
{
    const QJsonArray nodes = snapshot.value(QLatin1String("nodes")).toArray();
    for (const QJsonValue &node : nodes) {
        if (node.toObject().value(QLatin1String("id")).toInt() == id)
            return node.toObject();
    }
    return QJsonObject();
}

QJsonObject entryOf(const QJsonObject &node, int index, int sub)
{
    const QJsonArray entries = node.value(QLatin1String("entries")).toArray();
    for (const QJsonValue &value : entries) {
        const QJsonObject entry = value.toObject();
        if (entry.value(QLatin1String("index")).toInt() == index
            && entry.value(QLatin1String("sub")).toInt() == sub)
            return entry;
    }
    return QJsonObject();
}

} // namespace

QString tst_SnapshotCommand::writeVehicle(const QByteArray &nodes, const QByteArray &faults) const
{
    for (const char *name : {"controller", "battery"})
        QFile::copy(QStringLiteral(VEHICLE_FOLDER "/pedelec-%1.dcf").arg(QLatin1String(name)),
                    m_folder->filePath(QStringLiteral("%1.dcf").arg(QLatin1String(name))));
    QFile file(path("vehicle.json"));
    if (file.open(QIODevice::WriteOnly))
        file.write("{ \"name\": \"test\", \"nodes\": [" + nodes + "], \"faults\": [" + faults + "] }");
    return file.fileName();
}

QStringList tst_SnapshotCommand::arguments(const QString &vehicle, const QStringList &more) const
{
    return QStringList{QStringLiteral("snapshot"),
                       QStringLiteral("--bus"),
                       QStringLiteral("simulated:") + vehicle,
                       QStringLiteral("--output"),
                       path("out.dxsnap"),
                       QStringLiteral("--share"),
                       QStringLiteral("100"),
                       QStringLiteral("--bitrate"),
                       QStringLiteral("1000000")}
           + more;
}

QJsonObject tst_SnapshotCommand::load(const char *name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
}

void tst_SnapshotCommand::healthyVehicleIsComplete()
{
    const Result result = run(
        arguments(QStringLiteral("pedelec"),
                  {QStringLiteral("--vehicle"), QStringLiteral("the blue one"), QStringLiteral("--note"),
                   QStringLiteral("squeaks"), QStringLiteral("--odometer"), QStringLiteral("1200 km"),
                   QStringLiteral("--customer"), QStringLiteral("M\u00fcller"),
                   QStringLiteral("--technician"), QStringLiteral("Ada")}));
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.status, 0);
    QVERIFY2(
        result.output.contains(QRegularExpression(QStringLiteral(
            "\nNode 2, Battery Pack: \\d{3} values read, \\d{3} objects not there, 0 could not be read\n"))),
        qPrintable(result.output));
    QVERIFY(result.output.contains(QLatin1String("\nTotal: 7 nodes, ")));
    QVERIFY(result.output.endsWith(
        QStringLiteral("\nWrote %1\n").arg(QDir::toNativeSeparators(path("out.dxsnap")))));
    const QJsonObject snapshot = load();
    QCOMPARE(snapshot.value(QLatin1String("format")).toString(), QStringLiteral("draxel-snapshot"));
    QCOMPARE(snapshot.value(QLatin1String("scope")).toString(), QStringLiteral("full"));
    QCOMPARE(snapshot.value(QLatin1String("bus")).toString(), QStringLiteral("simulated:pedelec"));
    QCOMPARE(snapshot.value(QLatin1String("bitRate")).toInt(), 1000000);
    QVERIFY(snapshot.value(QLatin1String("program")).toString().startsWith(QLatin1String("draxelctl ")));
    QCOMPARE(snapshot.value(QLatin1String("vehicle")).toString(), QStringLiteral("the blue one"));
    QCOMPARE(snapshot.value(QLatin1String("customer")).toString(), QStringLiteral("M\u00fcller"));
    QCOMPARE(snapshot.value(QLatin1String("technician")).toString(), QStringLiteral("Ada"));
    QCOMPARE(snapshot.value(QLatin1String("odometer")).toString(), QStringLiteral("1200 km"));
    QCOMPARE(snapshot.value(QLatin1String("note")).toString(), QStringLiteral("squeaks"));
    QCOMPARE(entryOf(nodeOf(snapshot, 7), 0x1008, 0).value(QLatin1String("value")).toString(),
             QStringLiteral("DX-Sense TQ"));
}

void tst_SnapshotCommand::sickVehicleHasGaps()
{
    const QString vehicle = writeVehicle(
        R"({ "id": 1, "dictionary": "controller.dcf", "heartbeatMs": 200, "faults": [
               {"kind": "wrongWidth", "bytes": 3, "object": "6005"} ] },
           { "id": 2, "dictionary": "battery.dcf", "heartbeatMs": 200, "faults": [ {"kind": "sdoSilent"} ] },
           { "id": 3, "dictionary": "battery.dcf", "heartbeatMs": 200, "faults": [ {"kind": "stopped"} ] },
           { "id": 4, "dictionary": "battery.dcf", "heartbeatMs": 200, "faults": [
               {"kind": "sdoAbort", "code": "0x08000000"} ] })");
    const Result result = run(arguments(vehicle, {QStringLiteral("--quick")}));
    QCOMPARE(result.status, 4);
    QCOMPARE(result.errors, QString());
    QVERIFY2(result.output.contains(QRegularExpression(QStringLiteral(
                 "\n    The answer has 3 byte\\S+, which does not fit the object\\. 6005h\\.0\n"))),
             qPrintable(result.output));
    QVERIFY(result.output.contains(QLatin1String("\nNode 2: The device does not answer.\n")));
    QVERIFY(result.output.contains(QLatin1String("\nNode 3: The device is stopped and answers nothing.\n")));
    QVERIFY(result.output.contains(
        QLatin1String("\nNode 4, Device: 0 values read, 0 objects not there, 203 could not be read\n"
                      "    The device refused it: General error (0800 0000h). 1000h.0, 1001h.0, 1008h.0 and "
                      "200 more\n")));
    const QJsonObject snapshot = load();
    QCOMPARE(nodeOf(snapshot, 2).value(QLatin1String("end")).toString(), QStringLiteral("silent"));
    QCOMPARE(nodeOf(snapshot, 3).value(QLatin1String("end")).toString(), QStringLiteral("stopped"));
    QCOMPARE(entryOf(nodeOf(snapshot, 4), 0x1018, 4).value(QLatin1String("gap")).toString(),
             QStringLiteral("abort"));
}

void tst_SnapshotCommand::reasonsInTheLanguage()
{
    const QString vehicle = writeVehicle(
        R"({ "id": 1, "dictionary": "controller.dcf", "heartbeatMs": 200 },
           { "id": 2, "dictionary": "battery.dcf", "heartbeatMs": 200, "faults": [ {"kind": "sdoSilent"} ] })");
    const Result result = run(
        arguments(vehicle, {QStringLiteral("--quick"), QStringLiteral("--language"), QStringLiteral("de")}));
    QCOMPARE(result.status, 4);
    QVERIFY2(result.output.contains(QStringLiteral("\nNode 2: Das Gerät antwortet nicht.\n")),
             qPrintable(result.output));
}

void tst_SnapshotCommand::oneByteIsNoPlural()
{
    const QString vehicle = writeVehicle(
        R"({ "id": 1, "dictionary": "controller.dcf", "heartbeatMs": 200, "faults": [
               {"kind": "wrongWidth", "bytes": 1, "object": "1000"} ] })");
    const Result result = run(arguments(vehicle, {QStringLiteral("--quick")}));
    QCOMPARE(result.status, 4);
    QVERIFY2(result.output.contains(
                 QStringLiteral("\n    The answer has 1 byte, which does not fit the object. 1000h.0\n")),
             qPrintable(result.output));
}

void tst_SnapshotCommand::readsNamedNodes()
{
    const Result result = run(arguments(
        QStringLiteral("pedelec"), {QStringLiteral("--quick"), QStringLiteral("--node"), QStringLiteral("5"),
                                    QStringLiteral("--node"), QStringLiteral("2")}));
    QCOMPARE(result.status, 0);
    QCOMPARE(load().value(QLatin1String("nodes")).toArray().size(), 2);
}

void tst_SnapshotCommand::scans()
{
    const QString vehicle
        = writeVehicle(R"({ "id": 9, "dictionary": "battery.dcf", "heartbeatMs": 0, "bootUp": false })");
    const Result result = run(arguments(vehicle, {QStringLiteral("--quick"), QStringLiteral("--scan")}));
    QCOMPARE(result.status, 0);
    QVERIFY(result.output.startsWith(QLatin1String("Node 9, Battery Pack: ")));
}

void tst_SnapshotCommand::dataSheetOfANode()
{
    QFile sheet(path("other.eds"));
    QVERIFY(sheet.open(QIODevice::WriteOnly));
    sheet.write("[DeviceInfo]\nProductName=DX Other\n[MandatoryObjects]\nSupportedObjects=1\n1=0x1000\n"
                "[1000]\nParameterName=Device type\nObjectType=0x7\nDataType=0x0007\nAccessType=ro\n"
                "[ManufacturerObjects]\nSupportedObjects=1\n1=0x2345\n"
                "[2345]\nParameterName=Nothing\nObjectType=0x7\nDataType=0x0007\nAccessType=ro\n");
    sheet.close();
    const Result result = run(arguments(QStringLiteral("pedelec"),
                                        {QStringLiteral("--node"), QStringLiteral("2"),
                                         QStringLiteral("--eds"), QStringLiteral("2:") + path("other.eds")}));
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.status, 0);
    const QJsonObject node = nodeOf(load(), 2);
    QCOMPARE(node.value(QLatin1String("dataSheet")).toString(), QStringLiteral("DX Other"));
    QCOMPARE(entryOf(node, 0x2345, 0).value(QLatin1String("gap")).toString(), QStringLiteral("absent"));
}

void tst_SnapshotCommand::resumes()
{
    const QByteArray nodes = R"({ "id": 1, "dictionary": "controller.dcf", "heartbeatMs": 200 },
                                { "id": 2, "dictionary": "battery.dcf", "heartbeatMs": 200%1 })";
    QString vehicle
        = writeVehicle(QByteArray(nodes).replace("%1", R"(, "faults": [ {"kind": "sdoSilent"} ])"));
    QCOMPARE(run(arguments(vehicle,
                           {QStringLiteral("--quick"), QStringLiteral("--note"), QStringLiteral("first")}))
                 .status,
             4);
    const QString time = load().value(QLatin1String("time")).toString();
    vehicle = writeVehicle(QByteArray(nodes).replace("%1", ""));
    const Result result
        = run(arguments(vehicle, {QStringLiteral("--quick"), QStringLiteral("--resume"), path("out.dxsnap"),
                                  QStringLiteral("--vehicle"), QStringLiteral("second")}));
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.status, 0);
    QCOMPARE(load().value(QLatin1String("time")).toString(), time);
    QCOMPARE(load().value(QLatin1String("scope")).toString(), QStringLiteral("quick"));
    QCOMPARE(load().value(QLatin1String("note")).toString(), QStringLiteral("first"));
    QCOMPARE(load().value(QLatin1String("vehicle")).toString(), QStringLiteral("second"));
    QVERIFY(nodeOf(load(), 2).value(QLatin1String("entries")).toArray().size() == 203);
}

void tst_SnapshotCommand::resumesAQuickOneInFull()
{
    const QString vehicle = writeVehicle(R"({ "id": 2, "dictionary": "battery.dcf", "heartbeatMs": 200 })");
    QCOMPARE(run(arguments(vehicle)).status, 0);
    const int whole = nodeOf(load(), 2).value(QLatin1String("entries")).toArray().size();
    QCOMPARE(run(arguments(vehicle, {QStringLiteral("--quick")})).status, 0);
    const QJsonObject quick = load();
    QCOMPARE(nodeOf(quick, 2).value(QLatin1String("entries")).toArray().size(), 203);
    QVERIFY(whole > 203);
    const Result result = run(arguments(vehicle, {QStringLiteral("--resume"), path("out.dxsnap")}));
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.status, 0);
    QCOMPARE(load().value(QLatin1String("scope")).toString(), QStringLiteral("full"));
    QCOMPARE(load().value(QLatin1String("time")).toString(), quick.value(QLatin1String("time")).toString());
    QVERIFY(nodeOf(load(), 2).value(QLatin1String("entries")).toArray().size() >= whole);
    QCOMPARE(entryOf(nodeOf(load(), 2), 0x6001, 0), entryOf(nodeOf(quick, 2), 0x6001, 0)); // not read again
}

void tst_SnapshotCommand::resumeOnAnotherVehicleKeepsTheFile()
{
    QString vehicle = writeVehicle(R"({ "id": 2, "dictionary": "battery.dcf", "heartbeatMs": 200 })");
    QCOMPARE(run(arguments(vehicle, {QStringLiteral("--quick")})).status, 0);
    const QJsonObject first = load();
    vehicle = writeVehicle(R"({ "id": 2, "dictionary": "controller.dcf", "heartbeatMs": 200 })");
    const Result result = run(
        arguments(vehicle, {QStringLiteral("--quick"), QStringLiteral("--resume"), path("out.dxsnap")}));
    QCOMPARE(result.status, 0);
    QCOMPARE(result.errors,
             QStringLiteral("There is another device than in %1 on node 2; it was read anew.\n")
                 .arg(QDir::toNativeSeparators(path("out.dxsnap"))));
    QCOMPARE(load(), first);
    const QJsonObject second = load("out-2.dxsnap");
    QVERIFY(entryOf(nodeOf(second, 2), 0x1018, 4).value(QLatin1String("value"))
            != entryOf(nodeOf(first, 2), 0x1018, 4).value(QLatin1String("value")));
    QCOMPARE(nodeOf(second, 2).value(QLatin1String("entries")).toArray().size(), 203);
}

void tst_SnapshotCommand::resumeOnAVehicleOfOtherNodesKeepsTheFile()
{
    QString vehicle = writeVehicle(R"({ "id": 2, "dictionary": "battery.dcf", "heartbeatMs": 200 })");
    const QStringList notes{QStringLiteral("--customer"), QStringLiteral("Ms Field"),
                            QStringLiteral("--technician"), QStringLiteral("Jo")};
    QCOMPARE(run(arguments(vehicle, notes + QStringList{QStringLiteral("--quick")})).status, 0);
    const QJsonObject first = load();
    vehicle = writeVehicle(R"({ "id": 3, "dictionary": "battery.dcf", "heartbeatMs": 200 })");
    const Result result = run(
        arguments(vehicle, {QStringLiteral("--quick"), QStringLiteral("--resume"), path("out.dxsnap")}));
    QCOMPARE(result.errors,
             QStringLiteral("No device of %1 is on the bus, but others are: they were read anew.\n")
                 .arg(QDir::toNativeSeparators(path("out.dxsnap"))));
    QCOMPARE(result.status, 0);
    QCOMPARE(load(), first);
    const QJsonObject second = load("out-2.dxsnap");
    QCOMPARE(second.value(QLatin1String("nodes")).toArray().size(), 1);
    QCOMPARE(nodeOf(second, 3).value(QLatin1String("entries")).toArray().size(), 203);
    QVERIFY(second.value(QLatin1String("time")) != first.value(QLatin1String("time")));
    QCOMPARE(second.value(QLatin1String("technician")).toString(), QStringLiteral("Jo"));
    QVERIFY(!second.contains(QLatin1String("customer")));
}

void tst_SnapshotCommand::resumeSaysWhatItCannotRecognize()
{
    const QString vehicle = writeVehicle(R"(
        { "id": 1, "dictionary": "controller.dcf", "heartbeatMs": 200 },
        { "id": 2, "dictionary": "battery.dcf", "heartbeatMs": 200, "faults": [
          {"kind": "sdoAbort", "code": "0x08000000", "object": "1018sub1"},
          {"kind": "sdoAbort", "code": "0x08000000", "object": "1018sub2"},
          {"kind": "sdoAbort", "code": "0x08000000", "object": "1018sub3"},
          {"kind": "sdoAbort", "code": "0x08000000", "object": "1018sub4"} ] })");
    QCOMPARE(run(arguments(vehicle, {QStringLiteral("--quick")})).status, 4);
    const Result result = run(
        arguments(vehicle, {QStringLiteral("--quick"), QStringLiteral("--resume"), path("out.dxsnap")}));
    QCOMPARE(
        result.errors,
        QStringLiteral("Whether the same device as in %1 is on node 2 cannot be told, as too little of its "
                       "identity is known; its values there were kept.\n")
            .arg(QDir::toNativeSeparators(path("out.dxsnap"))));
    QCOMPARE(result.status, 4);
    QVERIFY(!QFile::exists(path("out-2.dxsnap")));
}

void tst_SnapshotCommand::nameBesideAFileWithoutSuffix()
{
    const auto read = [this](const char *dictionary, const QStringList &more) {
        const QByteArray node = R"({ "id": 2, "heartbeatMs": 200, "dictionary": ")";
        QStringList options = arguments(writeVehicle(node + dictionary + "\" }"), more);
        options[4] = path("bike");
        return run(options).status;
    };
    QCOMPARE(read("battery.dcf", {QStringLiteral("--quick")}), 0);
    QCOMPARE(read("controller.dcf", {QStringLiteral("--resume"), path("bike")}), 0);
    QVERIFY(QFile::exists(path("bike-2")));
    QVERIFY(!QFile::exists(path("bike-2.")));
}

void tst_SnapshotCommand::printsJson()
{
    const QString vehicle = writeVehicle(
        R"({ "id": 1, "dictionary": "controller.dcf", "heartbeatMs": 200, "faults": [
               {"kind": "sdoAbort", "code": "0x08000000", "object": "6005"} ] },
           { "id": 2, "dictionary": "battery.dcf", "heartbeatMs": 200, "faults": [ {"kind": "sdoSilent"} ] })");
    const Result result = run(arguments(vehicle, {QStringLiteral("--quick"), QStringLiteral("--json")}));
    QCOMPARE(result.status, 4);
    const QJsonObject json = QJsonDocument::fromJson(result.output.toUtf8()).object();
    QCOMPARE(json.value(QLatin1String("complete")), QJsonValue(false));
    QCOMPARE(json.value(QLatin1String("file")).toString(), path("out.dxsnap"));
    QVERIFY(json.value(QLatin1String("duration")).toInt() >= 2000);
    const QJsonObject first = nodeOf(json, 1);
    QCOMPARE(first.value(QLatin1String("name")).toString(), QStringLiteral("Draxel Controller"));
    QCOMPARE(first.value(QLatin1String("complete")), QJsonValue(false));
    QCOMPARE(first.value(QLatin1String("reason")).toString(), QString());
    QCOMPARE(first.value(QLatin1String("values")).toInt() + first.value(QLatin1String("absent")).toInt(),
             202);
    const QJsonObject gap = first.value(QLatin1String("gaps")).toArray().first().toObject();
    QCOMPARE(gap.value(QLatin1String("index")).toInt(), 0x6005);
    QCOMPARE(gap.value(QLatin1String("sub")).toInt(), 0);
    QCOMPARE(gap.value(QLatin1String("reason")).toString(),
             QStringLiteral("The device refused it: General error (0800 0000h)."));
    QCOMPARE(nodeOf(json, 2).value(QLatin1String("reason")).toString(),
             QStringLiteral("The device does not answer."));
}

void tst_SnapshotCommand::writesToStandardOutput()
{
    QStringList options
        = arguments(QStringLiteral("pedelec"),
                    {QStringLiteral("--quick"), QStringLiteral("--node"), QStringLiteral("2")});
    options[4] = QStringLiteral("-");
    const Result result = run(options);
    QCOMPARE(result.status, 0);
    const QJsonObject snapshot = QJsonDocument::fromJson(result.output.toUtf8()).object();
    QCOMPARE(nodeOf(snapshot, 2).value(QLatin1String("end")).toString(), QStringLiteral("complete"));
    QVERIFY(result.errors.startsWith(QLatin1String("Node 2, Battery Pack: ")));
}

void tst_SnapshotCommand::interruptKeepsWhatWasRead()
{
    const QString vehicle = writeVehicle(R"({ "id": 2, "dictionary": "battery.dcf", "heartbeatMs": 200 })",
                                         R"({ "kind": "busLoss", "afterFrames": 300, "drop": 1 })");
    Program program(arguments(vehicle), {QStringLiteral("LD_PRELOAD")});
    QVERIFY(program.waitForErrors(QStringLiteral("Waiting for it ...")));
    program.signal(SIGINT);
    const Result result = program.finish();
    QCOMPARE(result.status, 130);
    QVERIFY2(result.errors.startsWith(QLatin1String("The bus was lost: ")), qPrintable(result.errors));
    QVERIFY2(result.errors.endsWith(QLatin1String("\nInterrupted; what was read is kept.\n")),
             qPrintable(result.errors));
    QCOMPARE(nodeOf(load(), 2).value(QLatin1String("end")).toString(), QStringLiteral("cancelled"));
    QVERIFY(nodeOf(load(), 2).value(QLatin1String("entries")).toArray().size() > 100);
}

void tst_SnapshotCommand::noNode()
{
    const QString vehicle
        = writeVehicle(R"({ "id": 9, "dictionary": "battery.dcf", "heartbeatMs": 0, "bootUp": false })");
    const Result result = run(arguments(vehicle));
    QCOMPARE(result.status, 3);
    QCOMPARE(result.errors,
             QStringLiteral("Nothing was read: no node was found. Check that the vehicle is switched on, the "
                            "cable, and the bit rate; --scan finds nodes that send no heartbeat.\n"));
    QVERIFY(!QFile::exists(path("out.dxsnap")));
}

void tst_SnapshotCommand::badArguments_data()
{
    QTest::addColumn<QStringList>("more");
    QTest::addColumn<QString>("sentence");

    const auto add = [](const char *name, const QStringList &more, const char *sentence) {
        QTest::newRow(name) << more << QString::fromUtf8(sentence);
    };
    add("node", {QStringLiteral("--node"), QStringLiteral("128")}, "\"128\" is no node ID from 1 to 127.");
    add("node and scan", {QStringLiteral("--node"), QStringLiteral("1"), QStringLiteral("--scan")},
        "--scan looks for nodes, --node names them: one of both is enough.");
    add("data sheet without node", {QStringLiteral("--eds"), QStringLiteral("battery.eds")},
        "--eds takes a node ID and a file, as in 2:battery.eds.");
    add("data sheet of node 0", {QStringLiteral("--eds"), QStringLiteral("0:battery.eds")},
        "--eds takes a node ID and a file, as in 2:battery.eds.");
    add("no file", {QStringLiteral("--output"), QString()}, "--output takes the name of a file.");
    add("two for one output", {QStringLiteral("--output"), QStringLiteral("-"), QStringLiteral("--json")},
        "Standard output takes the snapshot or the summary, not both.");
    add("share", {QStringLiteral("--share"), QStringLiteral("0")},
        "--share takes a number from 1 to 100, not \"0\".");
}

void tst_SnapshotCommand::badArguments()
{
    QFETCH(QStringList, more);
    QFETCH(QString, sentence);
    const Result result
        = run(QStringList{QStringLiteral("snapshot"), QStringLiteral("--bus"),
                          QStringLiteral("simulated:pedelec"), QStringLiteral("--output"), path("out.dxsnap")}
              + more);
    QCOMPARE(result.status, 1);
    QVERIFY2(result.errors.contains(sentence), qPrintable(result.errors));
    QCOMPARE(result.output, QString());
}

void tst_SnapshotCommand::badFiles()
{
    const auto status
        = [this](const QStringList &more) { return run(arguments(QStringLiteral("pedelec"), more)).status; };
    QCOMPARE(status({QStringLiteral("--resume"), path("missing.dxsnap")}), 5);
    QCOMPARE(status({QStringLiteral("--eds"), QStringLiteral("2:") + path("missing.eds")}), 5);
    QCOMPARE(status({QStringLiteral("--output"), path("no-such-folder/out.dxsnap")}), 5);
    QVERIFY(!QFile::exists(path("out.dxsnap")));
}

QTEST_GUILESS_MAIN(tst_SnapshotCommand)
#include "tst_snapshotcommand.moc"
