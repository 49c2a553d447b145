// SPDX-License-Identifier: MIT
#include "sdotraffic.h"

#include <bundle/bundledtrace.h>
#include <bundle/bundlefile.h>
#include <bundle/bundlemanifest.h>
#include <bundle/bundlemasking.h>
#include <bundle/bundlemessages.h>
#include <bundle/bundlewriting.h>
#include <bundle/zipfile.h>
#include <checkup/ruleset.h>
#include <snapshot/snapshotfile.h>
#include <tests/support/vehiclesnapshot.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const QByteArray textSerial = QByteArrayLiteral("S/N AB-7654321");

QDateTime timeOf(int second)
{
    return QDateTime(QDate(2026, 11, 22), QTime(10, 11, second), Qt::OffsetFromUTC, 3600);
}

/*! Everything that a bundle can hold. */
SupportBundle fullBundle()
{
    SupportBundle bundle;
    bundle.program = QStringLiteral("test 1.0");
    bundle.time = timeOf(0);
    bundle.snapshot = VehicleSnapshot::of(QStringLiteral("pedelec"));
    bundle.snapshot->notes
        = {QStringLiteral("Cargo bike 7"), QStringLiteral("Erika Mustermann"), QStringLiteral("Max Beispiel"),
           QStringLiteral("1204 km"), QStringLiteral("stolen twice")};
    bundle.trace.emplace();
    bundle.trace->head = {{QStringLiteral("can0")}, true};
    SdoTraffic traffic(&*bundle.trace, 2);
    const SnapshotEntry *number = bundle.snapshot->find(2)->find(0x1018, 4);
    traffic.put({0x1018, 4}, number->raw);
    traffic.put({0x2001, 0}, textSerial);
    traffic.ask("4018100400000000");
    traffic.ask("4001200000000000");
    traffic.ask("6000000000000000");
    traffic.ask("7000000000000000");
    for (TraceFrame &frame : bundle.trace->frames)
        frame.time += timeOf(1).toMSecsSinceEpoch() * 1000;
    LiveEvent event;
    event.kind = EventKind::InterfaceGone;
    event.count = 3;
    event.time = timeOf(2).toMSecsSinceEpoch() * 1000;
    event.lastTime = timeOf(3).toMSecsSinceEpoch() * 1000;
    event.detail = QStringLiteral("/dev/serial/by-id/AB-7654321 went away");
    bundle.events.push_back(event);
    event.kind = EventKind::Emergency;
    event.nodeId = 4;
    event.code = 0x4210;
    event.errorRegister = 9;
    event.manufacturer = {1, 2, 3, 4, 5};
    event.detail.clear();
    bundle.events.push_back(event);
    bundle.messages = {{timeOf(4), Severity::Note, QStringLiteral("Opened: /home/erika/My bikes/7.dxsnap")},
                       {timeOf(5), Severity::Fault,
                        QStringLiteral("The device AB-7654321 of Erika Mustermann\ndoes not answer: %1.")
                            .arg(number->value.toUInt())}};
    bundle.system = {{QStringLiteral("program"), QStringLiteral("test 1.0")},
                     {QStringLiteral("computer"),
                      QJsonObject{{QStringLiteral("items"),
                                   QJsonArray{QStringLiteral("adapter AB-7654321 of Max Beispiel")}}}}};
    return bundle;
}

/*! Numbers that name a device, of the simulated vehicle. */
QVector<quint32> serialsOf(const Snapshot &snapshot)
{
    QVector<quint32> serials;
    for (const SnapshotNode &node : snapshot.nodes) {
        for (const auto &key : {CanOpen::ObjectKey{0x1018, 4}, CanOpen::ObjectKey{0x6005, 0}}) {
            const quint32 number = node.value(key.index, key.subIndex).toUInt();
            if (number > 1000)
                serials.append(number);
        }
    }
    return serials;
}

QVector<ZipFile::Entry> filesOf(const SupportBundle &bundle)
{
    return BundleWriting::toFiles(bundle, RuleSet(), QStringLiteral("en"));
}

const ZipFile::Entry &find(const QVector<ZipFile::Entry> &files, const char *name)
{
    for (const ZipFile::Entry &file : files) {
        if (file.name == QLatin1String(name))
            return file;
    }
    qFatal("no %s", name);
}

std::optional<SupportBundle> opened(const QVector<ZipFile::Entry> &files, QString *problem)
{
    return BundleFile::fromBytes(ZipFile::pack(files, problem), problem);
}

bool savePacked(const QString &fileName, const QVector<ZipFile::Entry> &files, QString *problem)
{
    QFile file(fileName);
    return file.open(QIODevice::WriteOnly) && file.write(ZipFile::pack(files, problem)) > 0;
}

} // namespace

Q_DECLARE_METATYPE(Severity)
Q_DECLARE_METATYPE(QVector<ZipFile::Entry>)

/*! Support bundles: made, masked, opened. */
class tst_BundleFile : public QObject
{
    Q_OBJECT

private slots:
    void comesBack();
    void emptyOneToo();
    void holdsWhatItSays();
    void nothingOfTheVehicleIsInAMaskedOne();
    void maskedFramesTellNothing();
    void mappingOfTheSnapshotCounts();
    void channelIsAText();
    void emergencySaysWhatItsFrameSays();
    void fileThatIsABus();
    void sameSerialStaysTheSame();
    void maskedOneCanBeUsed();
    void changedFileIsNotUsed();
    void missingFileIsTold();
    void otherFilesAreLeftAlone();
    void badManifest_data();
    void badManifest();
    void badParts_data();
    void badParts();
    void traceAlone();
    void refusedTrace_data();
    void refusedTrace();
    void messages();
    void messagesOfOthers();
    void savesWholeOrNot();
    void badFiles();
};

void tst_BundleFile::comesBack()
{
    const SupportBundle bundle = fullBundle();
    QString problem;
    const std::optional<SupportBundle> read = opened(filesOf(bundle), &problem);
    QVERIFY2(read, qPrintable(problem));
    QCOMPARE(read->problems, QStringList());
    QCOMPARE(read->program, QStringLiteral("test 1.0"));
    QCOMPARE(read->time.toString(Qt::ISODate), QStringLiteral("2026-11-22T10:11:00+01:00"));
    QVERIFY(!read->isMasked);
    QCOMPARE(SnapshotFile::toJson(*read->snapshot), SnapshotFile::toJson(*bundle.snapshot));
    QVERIFY(read->trace->frames == bundle.trace->frames);
    QCOMPARE(read->trace->head.channels, QStringList{QStringLiteral("can0")});
    QVERIFY(read->trace->head.hasTimeOfDay);
    QCOMPARE(read->events.size(), std::size_t(2));
    const LiveEvent &gone = read->events[0];
    QCOMPARE(gone.kind, EventKind::InterfaceGone);
    QCOMPARE(gone.count, 3U);
    QCOMPARE(gone.time, bundle.events[0].time);
    QCOMPARE(gone.lastTime, bundle.events[0].lastTime);
    QCOMPARE(gone.detail, bundle.events[0].detail);
    const LiveEvent &emergency = read->events[1];
    QCOMPARE(int(emergency.nodeId), 4);
    QCOMPARE(emergency.code, 0x4210U);
    QCOMPARE(int(emergency.errorRegister), 9);
    QVERIFY(emergency.manufacturer == bundle.events[1].manufacturer);
    QVERIFY(read->messages == bundle.messages);
}

void tst_BundleFile::emptyOneToo()
{
    SupportBundle bundle;
    bundle.time = timeOf(0);
    QString problem;
    const std::optional<SupportBundle> read = opened(filesOf(bundle), &problem);
    QVERIFY2(read, qPrintable(problem));
    QCOMPARE(read->problems, QStringList());
    QVERIFY(!read->snapshot);
    QVERIFY(!read->trace);
    QVERIFY(read->events.empty());
}

void tst_BundleFile::holdsWhatItSays()
{
    const QVector<ZipFile::Entry> files = filesOf(fullBundle());
    QStringList names;
    for (const ZipFile::Entry &file : files)
        names.append(file.name);
    QCOMPARE(names.join(QLatin1Char(' ')),
             QStringLiteral("manifest.json README.txt snapshot.dxsnap checkup.json trace.log.gz events.json "
                            "messages.txt system.json"));
    const QJsonObject manifest = QJsonDocument::fromJson(files.first().bytes).object();
    QCOMPARE(manifest.value(QLatin1String("format")).toString(), QStringLiteral("draxel-bundle"));
    QCOMPARE(manifest.value(QLatin1String("version")).toInt(), 1);
    QCOMPARE(manifest.value(QLatin1String("masked")).toBool(true), false);
    QCOMPARE(manifest.value(QLatin1String("files")).toArray().size(), 7);
    QVERIFY(find(files, "checkup.json").bytes.startsWith("{\"verdict\":\""));
    QVERIFY(find(files, "README.txt").bytes.contains("Nothing is masked"));
    QVERIFY(find(files, "trace.log.gz").bytes.startsWith("\x1f\x8b"));
}

void tst_BundleFile::nothingOfTheVehicleIsInAMaskedOne()
{
    const SupportBundle bundle = fullBundle();
    QVector<ZipFile::Entry> files = filesOf(BundleMasking::masked(bundle));
    QString error;
    const std::optional<Trace> trace = BundledTrace::fromBytes(find(files, "trace.log.gz").bytes, &error);
    QVERIFY(trace);
    QByteArray all;
    for (const ZipFile::Entry &file : qAsConst(files))
        all += file.bytes;
    for (const TraceFrame &frame : trace->frames)
        all.append(reinterpret_cast<const char *>(frame.bytes.data()), frame.length);
    QList<QByteArray> secrets{"Cargo bike", "Erika",    "erika",   "Mustermann", "Max",        "Beispiel",
                              "stolen",     "My bikes", "7654321", "/home",      "/dev/serial"};
    for (const quint32 serial : serialsOf(*bundle.snapshot)) {
        secrets.append(QByteArray::number(serial));
        QByteArray raw(4, '\0');
        qToLittleEndian(serial, raw.data());
        secrets.append(raw.toHex());
        secrets.append(raw);
    }
    QVERIFY(secrets.size() > 30);
    for (const QByteArray &secret : qAsConst(secrets))
        QVERIFY2(!all.contains(secret), secret.toPercentEncoding());
    QVERIFY(find(files, "README.txt").bytes.contains("are masked"));
    QVERIFY(find(files, "manifest.json").bytes.contains("\"masked\":true"));
}

/*! Also put together again out of their frames. */
void tst_BundleFile::maskedFramesTellNothing()
{
    const SupportBundle bundle = fullBundle();
    const SupportBundle masked = BundleMasking::masked(bundle);
    const std::vector<SdoTransfer> before = transfersOf(*bundle.trace);
    const std::vector<SdoTransfer> after = transfersOf(*masked.trace);
    QCOMPARE(after.size(), before.size());
    QCOMPARE(after.size(), std::size_t(2));
    for (std::size_t i = 0; i < after.size(); ++i) {
        QCOMPARE(after[i].outcome, SdoTransfer::Outcome::Done);
        QCOMPARE(after[i].data.size(), before[i].data.size());
        QVERIFY(after[i].data != before[i].data);
    }
    QCOMPARE(before[1].data, textSerial);
    QVERIFY2(after[1].data.startsWith("S/N "), after[1].data);
    QVERIFY2(!after[1].data.contains("7654"), after[1].data);
}

/*! A number too small to be looked for, in a PDO of which the snapshot alone knows what it carries. */
void tst_BundleFile::mappingOfTheSnapshotCounts()
{
    SupportBundle bundle;
    bundle.snapshot.emplace();
    SnapshotNode node;
    node.id = 2;
    for (const auto &[key, value] : {std::pair<CanOpen::ObjectKey, uint>{{0x1800, 1}, 0x182U},
                                     {{0x1A00, 0}, 1U},
                                     {{0x1A00, 1}, 0x10180420U}}) {
        SnapshotEntry entry;
        entry.key = key;
        entry.value = value;
        node.insert(entry);
    }
    bundle.snapshot->nodes.append(node);
    bundle.trace.emplace();
    bundle.trace->frames.push_back(frameAt(0, 0x182, "09000000"));
    const SupportBundle masked = BundleMasking::masked(bundle);
    QVERIFY(masked.trace->frames[0].bytes[0] != 9);
}

void tst_BundleFile::channelIsAText()
{
    SupportBundle bundle = fullBundle();
    bundle.trace->head.channels = QStringList{QStringLiteral("adapter AB-7654321")};
    const QString channel = BundleMasking::masked(bundle).trace->head.channels.at(0);
    QVERIFY2(channel.startsWith(QLatin1String("adapter masked-")), qPrintable(channel));
}

/*! The number stands in the manufacturer's bytes. */
void tst_BundleFile::emergencySaysWhatItsFrameSays()
{
    SupportBundle bundle;
    bundle.trace.emplace();
    SdoTraffic traffic(&*bundle.trace, 2);
    traffic.put({0x1018, 4}, QByteArray::fromHex("d8c6b412"));
    traffic.ask("4018100400000000");
    traffic.add(0x082, "00ff81d8c6b41200");
    LiveEvent event;
    event.kind = EventKind::Emergency;
    event.nodeId = 2;
    event.code = 0xFF00;
    event.errorRegister = 0x81;
    event.manufacturer = {0xD8, 0xC6, 0xB4, 0x12, 0};
    bundle.events.push_back(event);
    const SupportBundle masked = BundleMasking::masked(bundle);
    const TraceFrame &frame = masked.trace->frames.back();
    QVERIFY(masked.events[0].manufacturer != event.manufacturer);
    for (std::size_t i = 0; i < event.manufacturer.size(); ++i)
        QCOMPARE(masked.events[0].manufacturer[i], frame.bytes[3 + i]);
    QCOMPARE(int(masked.events[0].errorRegister), 0x81);
    QCOMPARE(masked.events[0].code, 0xFF00U);
    const QByteArray json = find(filesOf(masked), "events.json").bytes;
    QVERIFY2(!json.toUpper().contains("D8C6B412"), json);
    QVERIFY2(!json.contains("D8 C6 B4 12"), json);
}

void tst_BundleFile::fileThatIsABus()
{
    for (const char *address : {"trace:Anna Huber.log?speed=2", "trace:rides/Anna Huber.log",
                                "trace:/home/x/Anna Huber.log", "simulated:Anna Huber.json"}) {
        SupportBundle bundle;
        bundle.system = {{QStringLiteral("bus"), QLatin1String(address)}};
        bundle.snapshot.emplace();
        bundle.snapshot->bus = QLatin1String(address);
        bundle.trace.emplace();
        bundle.trace->frames.push_back(frameAt(0, 0x182, "09000000"));
        bundle.trace->head.channels = QStringList{
            QFileInfo(
                QString::fromLatin1(address).section(QLatin1Char('?'), 0, 0).section(QLatin1Char(':'), 1))
                .fileName()};
        QByteArray all;
        const QVector<ZipFile::Entry> files = filesOf(BundleMasking::masked(bundle));
        for (const ZipFile::Entry &file : files)
            all += file.bytes;
        QString error;
        all += BundledTrace::fromBytes(find(files, "trace.log.gz").bytes, &error)
                   ->head.channels.at(0)
                   .toUtf8();
        QVERIFY2(!all.contains("Huber"), all);
        QVERIFY2(all.contains("trace:masked-") || all.contains("simulated:masked-"), all);
    }
}

void tst_BundleFile::sameSerialStaysTheSame()
{
    const SupportBundle masked = BundleMasking::masked(fullBundle());
    const QByteArray inSnapshot = masked.snapshot->find(2)->find(0x1018, 4)->raw;
    QCOMPARE(transfersOf(*masked.trace)[0].data, inSnapshot);
    const QString token = QString::fromLatin1(QByteArray(1, inSnapshot.at(1)).toHex()
                                              + QByteArray(1, inSnapshot.at(0)).toHex())
                              .toUpper();
    QVERIFY2(masked.messages[1].text.contains(QLatin1String("masked-") + token),
             qPrintable(masked.messages[1].text));
    const QString word = masked.snapshot->notes.customer;
    QVERIFY2(masked.messages[1].text.contains(word), qPrintable(masked.messages[1].text));
    const QString item = masked.system.value(QLatin1String("computer"))
                             .toObject()
                             .value(QLatin1String("items"))
                             .toArray()
                             .first()
                             .toString();
    QVERIFY2(item.endsWith(masked.snapshot->notes.technician), qPrintable(item));
    const QString adapter = item.section(QLatin1Char(' '), 1, 1);
    QVERIFY2(masked.messages[1].text.contains(adapter), qPrintable(adapter));
    QCOMPARE(masked.snapshot->notes.odometer, QStringLiteral("1204 km"));
}

void tst_BundleFile::maskedOneCanBeUsed()
{
    const SupportBundle bundle = fullBundle();
    QString problem;
    const std::optional<SupportBundle> read = opened(filesOf(BundleMasking::masked(bundle)), &problem);
    QVERIFY2(read, qPrintable(problem));
    QCOMPARE(read->problems, QStringList());
    QVERIFY(read->isMasked);
    QCOMPARE(read->snapshot->valueCount(), bundle.snapshot->valueCount());
    QCOMPARE(read->snapshot->gapCount(), bundle.snapshot->gapCount());
    QCOMPARE(read->trace->frames.size(), bundle.trace->frames.size());
}

void tst_BundleFile::changedFileIsNotUsed()
{
    QVector<ZipFile::Entry> files = filesOf(fullBundle());
    for (ZipFile::Entry &file : files) {
        if (file.name == QLatin1String("events.json"))
            file.bytes.replace("InterfaceGone", "InterfaceBack").replace("\"count\": 3", "\"count\": 4");
    }
    QString problem;
    const std::optional<SupportBundle> read = opened(files, &problem);
    QVERIFY(read);
    QCOMPARE(read->problems, QStringList{QStringLiteral(
                                 "events.json of the bundle was not opened: It is not the file that was "
                                 "put in: somebody has changed it.")});
    QVERIFY(read->events.empty());
    QVERIFY(read->snapshot);
    QVERIFY(read->trace);
}

void tst_BundleFile::missingFileIsTold()
{
    QVector<ZipFile::Entry> files = filesOf(fullBundle());
    files.remove(2); // snapshot.dxsnap
    QString problem;
    const std::optional<SupportBundle> read = opened(files, &problem);
    QVERIFY(read);
    QCOMPARE(read->problems,
             QStringList{QStringLiteral("snapshot.dxsnap of the bundle was not opened: It is missing.")});
    QVERIFY(!read->snapshot);
    QVERIFY(read->trace);
}

/*! What somebody has put beside them. */
void tst_BundleFile::otherFilesAreLeftAlone()
{
    SupportBundle bundle = fullBundle();
    bundle.trace.reset();
    QVector<ZipFile::Entry> files = filesOf(bundle);
    files.append({QStringLiteral("photo.jpg"), QByteArrayLiteral("jpg")});
    files.append({QStringLiteral("trace.log.gz"), QByteArrayLiteral("not of it")});
    QString problem;
    const std::optional<SupportBundle> read = opened(files, &problem);
    QVERIFY2(read, qPrintable(problem));
    QVERIFY(!read->trace);
    QVERIFY(read->snapshot);
}

void tst_BundleFile::badManifest_data()
{
    QTest::addColumn<QByteArray>("manifest");
    QTest::addColumn<QString>("problem");
    const QString cannot = QStringLiteral("its manifest.json cannot be used: ");
    QTest::newRow("another format") << QByteArray(R"({"format":"zip","version":1,"files":[]})")
                                    << cannot + QStringLiteral("it is no support bundle");
    QTest::newRow("newer") << QByteArray(R"({"format":"draxel-bundle","version":2,"files":[]})")
                           << cannot
                                  + QStringLiteral(
                                      "it was made by a newer version of the program (format 2)");
    QTest::newRow("no files") << QByteArray(R"({"format":"draxel-bundle","version":1})") << cannot;
    QTest::newRow("a list") << QByteArray("[]") << cannot;
    QTest::newRow("broken") << QByteArray("{") << cannot;
}

void tst_BundleFile::badManifest()
{
    QFETCH(QByteArray, manifest);
    QFETCH(QString, problem);
    QString told;
    QVERIFY(!opened({{QStringLiteral("manifest.json"), manifest}}, &told));
    QVERIFY2(told.startsWith(problem), qPrintable(told));
    QVERIFY(!opened({{QStringLiteral("x.txt"), manifest}}, &told));
    QCOMPARE(told, QStringLiteral("it is no support bundle: it has no manifest.json"));
}

void tst_BundleFile::badParts_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("problem");
    const auto add = [](const char *row, const char *name, const QByteArray &content, const char *problem) {
        QTest::newRow(row) << QString::fromLatin1(name) << content << QString::fromLatin1(problem);
    };
    add("snapshot", "snapshot.dxsnap", "{}", "snapshot.dxsnap of the bundle was not opened: ");
    add("trace", "trace.log.gz", QByteArray("\0\1\2", 3), "trace.log.gz of the bundle was not opened: ");
    add("events", "events.json", "{\"events\":[{\"kind\":\"none\"}]}",
        "events.json of the bundle was not opened: events[0]: ");
    add("event of no node", "events.json",
        "{\"events\":[{\"kind\":\"nodeLost\",\"node\":200,\"code\":0,\"count\":1,\"time\":\"2026-11-22T10:00:"
        "00Z\","
        "\"lastTime\":\"2026-11-22T10:00:00Z\"}]}",
        "events.json of the bundle was not opened: events[0].node: ");
    add("event without time", "events.json",
        "{\"events\":[{\"kind\":\"nodeLost\",\"node\":2,\"code\":0,\"count\":1,\"time\":\"soon\","
        "\"lastTime\":\"\"}]}",
        "events.json of the bundle was not opened: events[0]: the time cannot be read");
}

void tst_BundleFile::badParts()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(QString, problem);
    QVector<ZipFile::Entry> files{
        {name, content}, {QStringLiteral("messages.txt"), QByteArray("2026-11-22T10:00:00Z note: Hello.\n")}};
    BundleManifest manifest = BundleManifest::of(files);
    manifest.time = timeOf(0);
    files.prepend({QStringLiteral("manifest.json"), manifest.toJson()});
    QString told;
    const std::optional<SupportBundle> read = opened(files, &told);
    QVERIFY2(read, qPrintable(told));
    QCOMPARE(read->problems.size(), 1);
    QVERIFY2(read->problems.first().startsWith(problem), qPrintable(read->problems.first()));
    QCOMPARE(read->messages.size(), 1);
}

void tst_BundleFile::traceAlone()
{
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("x.zip"));
    QString error;
    QVERIFY2(savePacked(name, filesOf(fullBundle()), &error), qPrintable(error));
    const std::optional<QByteArray> bytes = BundleFile::loadTrace(name, &error);
    QVERIFY2(bytes, qPrintable(error));
    QCOMPARE(*bytes, BundledTrace::toBytes(*fullBundle().trace));
}

void tst_BundleFile::refusedTrace_data()
{
    QTest::addColumn<QVector<ZipFile::Entry>>("files");
    QTest::addColumn<QString>("complaint"); // %1: the file

    const QVector<ZipFile::Entry> good = filesOf(fullBundle());
    QVector<ZipFile::Entry> files = good;
    files[4].bytes = BundledTrace::toBytes(Trace());
    QTest::newRow("changed") << files
                             << QStringLiteral(
                                    "trace.log.gz of the bundle was not opened: It is not the file "
                                    "that was put in: somebody has changed it.");
    files = good;
    files.remove(4);
    QTest::newRow("missing") << files
                             << QStringLiteral("trace.log.gz of the bundle was not opened: It is missing.");
    SupportBundle without = fullBundle();
    without.trace.reset();
    files = filesOf(without);
    files.append(good[4]);
    QTest::newRow("put beside") << files << QStringLiteral("The support bundle %1 has no trace.");
    files = good;
    files.remove(0);
    QTest::newRow("no manifest") << files
                                 << QStringLiteral("The support bundle %1 cannot be opened: it is no support "
                                                   "bundle: it has no manifest.json.");
    files = good;
    files[0].bytes.replace("\"version\":1", "\"version\":2");
    QTest::newRow("newer") << files
                           << QStringLiteral(
                                  "The support bundle %1 cannot be opened: its manifest.json cannot "
                                  "be used: it was made by a newer version of the program (format 2)"
                                  ".");
}

/*! Who asks for the trace alone is told what who asks for all is. */
void tst_BundleFile::refusedTrace()
{
    QFETCH(QVector<ZipFile::Entry>, files);
    QFETCH(QString, complaint);
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("x.zip"));
    QString error;
    QVERIFY2(savePacked(name, files, &error), qPrintable(error));
    QVERIFY(!BundleFile::loadTrace(name, &error));
    QCOMPARE(error, complaint.contains(QLatin1String("%1")) ? complaint.arg(name) : complaint);
}

void tst_BundleFile::messages()
{
    const QByteArray text = BundleMessages::toText(fullBundle().messages);
    const QList<QByteArray> lines = text.split('\n');
    QCOMPARE(lines.at(0),
             QByteArray("2026-11-22T10:11:04.000+01:00 note: Opened: /home/erika/My bikes/7.dxsnap"));
    QCOMPARE(lines.at(1),
             QByteArray("2026-11-22T10:11:05.000+01:00 fault: The device AB-7654321 of Erika Mustermann"));
    QVERIFY(lines.at(2).startsWith("    does not answer: "));
    QVERIFY(BundleMessages::fromText(text) == fullBundle().messages);
}

void tst_BundleFile::messagesOfOthers()
{
    QCOMPARE(BundleMessages::fromText("").size(), 0);
    QCOMPARE(BundleMessages::fromText("    x\nhello\n\n2026 note: x\n2026-11-22T10:00:00Z bad: x\n").size(),
             0);
    QByteArray many;
    for (int i = 0; i < 1500; ++i)
        many += "2026-11-22T10:00:00Z note: x\n";
    QCOMPARE(BundleMessages::fromText(many).size(), 1000);
    const QVector<BundleMessage> long_
        = BundleMessages::fromText("2026-11-22T10:00:00Z note: " + QByteArray(100000, 'x'));
    QCOMPARE(long_.first().text.size(), 10000);
}

void tst_BundleFile::savesWholeOrNot()
{
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("x.zip"));
    QString error;
    QVERIFY2(BundleFile::save(name, fullBundle(), RuleSet(), QStringLiteral("en"), &error),
             qPrintable(error));
    QVERIFY(BundleFile::isBundle(name));
    const std::optional<SupportBundle> read = BundleFile::load(name, &error);
    QVERIFY2(read, qPrintable(error));
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList{QStringLiteral("x.zip")});

    const QString nowhere = folder.filePath(QStringLiteral("no/x.zip"));
    QVERIFY(!BundleFile::save(nowhere, fullBundle(), RuleSet(), QStringLiteral("en"), &error));
    QCOMPARE(error, QStringLiteral("The file %1 cannot be written: no such file or folder.").arg(nowhere));
}

void tst_BundleFile::badFiles()
{
    QTemporaryDir folder;
    QString error;
    const QString missing = folder.filePath(QStringLiteral("no.zip"));
    QVERIFY(!BundleFile::isBundle(missing));
    QVERIFY(!BundleFile::load(missing, &error));
    QCOMPARE(error, QStringLiteral("The file %1 cannot be read: no such file or folder.").arg(missing));
    QVERIFY(!BundleFile::isBundle(folder.path()));
    QVERIFY(!BundleFile::load(folder.path(), &error));
    QVERIFY(error.contains(QLatin1String("cannot be read")));

    const QString rubbish = folder.filePath(QStringLiteral("rubbish.zip"));
    QFile file(rubbish);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("PK\x03\x04 and nothing more");
    file.close();
    QVERIFY(BundleFile::isBundle(rubbish));
    QVERIFY(!BundleFile::load(rubbish, &error));
    QVERIFY2(error.startsWith(
                 QStringLiteral("The support bundle %1 cannot be opened: it is damaged").arg(rubbish)),
             qPrintable(error));
    QVERIFY(!BundleFile::loadTrace(rubbish, &error));

    // As large as a hole in it makes it.
    QVERIFY(file.resize(300LL * 1024 * 1024));
    QVERIFY(!BundleFile::load(rubbish, &error));
    QCOMPARE(error, QStringLiteral("The file %1 is far too large for a support bundle.").arg(rubbish));
}

QTEST_GUILESS_MAIN(tst_BundleFile)
#include "tst_bundlefile.moc"
