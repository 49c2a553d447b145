// SPDX-License-Identifier: MIT
#include <tests/cli/program.h>
#include <tests/support/vehiclesnapshot.h>

#include <snapshot/snapshotfile.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

namespace {

QJsonObject jsonOf(const Result &result)
{
    return QJsonDocument::fromJson(result.output.toUtf8()).object();
}

} // namespace

/*! The commands "checkup" and "diff". */
class tst_Checkup : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void healthyVehicle();
    void faults();
    void silentDevice();
    void silentDeviceHasItsEarlierName();
    void notesAreNoFindings();
    void exchangeFileIsNotComplete();
    void json();
    void language();
    void reasonsInTheLanguage();
    void numbersInTheLanguage();
    void ownRules();
    void brokenRulesAreSaid();
    void hostileTextsAreShown();
    void usage_data();
    void usage();
    void wrongFile();
    void liveBus();
    void sameVehicle();
    void differentVehicles();
    void differencesAsJson();
    void liveBusIsCompared();
    void deadDeviceIsOneLine();
    void silentDeviceKeepsItsName();
    void comparisonInTheLanguage();

private:
    QString save(const Snapshot &snapshot, const QString &name = QStringLiteral("vehicle.dxsnap"));
    QString path(const QString &name) const { return m_folder->filePath(name); }
    void write(const QString &name, const QByteArray &text);
    Result run(const QStringList &arguments);

    std::unique_ptr<QTemporaryDir> m_folder;
    Snapshot m_snapshot;
};

void tst_Checkup::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_snapshot = VehicleSnapshot::of(QStringLiteral("pedelec"));
}

QString tst_Checkup::save(const Snapshot &snapshot, const QString &name)
{
    QString error;
    if (!SnapshotFile::save(path(name), snapshot, &error))
        qFatal("%s", qPrintable(error));
    return path(name);
}

void tst_Checkup::write(const QString &name, const QByteArray &text)
{
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(text), qint64(text.size()));
}

/*! Without rules of the user who runs the test. */
Result tst_Checkup::run(const QStringList &arguments)
{
    return Program(arguments, {QStringLiteral("XDG_DATA_HOME=") + m_folder->path()}).finish();
}

void tst_Checkup::healthyVehicle()
{
    const Result result = run({QStringLiteral("checkup"), save(m_snapshot)});
    QCOMPARE(result.errors, QString());
    QCOMPARE(
        result.output,
        QStringLiteral("good: Draxel Controller (node 1), Battery Pack (node 2), Voltage Converter/Charger "
                       "(node 3), Motor Control unit (node 4), HMI control unit/display (node 5), Security "
                       "unit (node 6), Sensor unit (node 7)\n\nComponents: 7. Faults: 0, warnings: 0, notes: "
                       "0. Components with something not checked: 0.\n"));
    QCOMPARE(result.status, 0);
}

void tst_Checkup::faults()
{
    VehicleSnapshot::setNumber(&m_snapshot, 2, {0x6165, 7}, 3520);
    VehicleSnapshot::setNumber(&m_snapshot, 4, {0x1001, 0}, 0x06);
    const Result result = run({QStringLiteral("checkup"), save(m_snapshot)});
    const QString expected = QStringLiteral(
        "fault: Battery Pack (node 2)\n"
        "    fault: Cell 7 is 410 mV below the others: 3.52 V, the others 3.93 V (limit 100 mV).\n"
        "      Charge and balance, then check again; if it stays, the pack needs service.\n"
        "fault: Motor Control unit (node 4)\n"
        "    fault: It reports an error: current.\n"
        "    fault: It reports an error: voltage.\n"
        "      The error is there now. Its history and its alarms say more; the maker's documents tell what "
        "to "
        "do.\n"
        "good: Draxel Controller (node 1), ");
    QCOMPARE(result.output.left(expected.size()), expected);
    QCOMPARE(result.status, 8);
}

void tst_Checkup::silentDevice()
{
    SnapshotNode *display = m_snapshot.find(5);
    display->end = SnapshotEnd::Silent;
    display->nmtState.reset();
    display->entries.clear();
    const Result result = run({QStringLiteral("checkup"), save(m_snapshot)});
    QVERIFY2(result.output.startsWith(QStringLiteral(
                 "not checked: Device (node 5)\n"
                 "    note: Neither its heartbeat nor an answer was heard.\n"
                 "      Switch the vehicle off and on again. If it stays so, check the device's "
                 "connector and supply, and whether another tool is talking to it.\n"
                 "    not checked: The device does not answer.\n"
                 "good: ")),
             qPrintable(result.output));
    QCOMPARE(result.status, 4);
}

void tst_Checkup::silentDeviceHasItsEarlierName()
{
    const QString earlier = save(m_snapshot, QStringLiteral("earlier.dxsnap"));
    SnapshotNode *display = m_snapshot.find(5);
    display->end = SnapshotEnd::Silent;
    display->entries.clear();
    const QString now = save(m_snapshot);
    const Result result = run({QStringLiteral("checkup"), now, QStringLiteral("--against"), earlier});
    QVERIFY2(result.output.contains(QStringLiteral("not checked: HMI control unit/display (node 5)\n")),
             qPrintable(result.output));

    write(QStringLiteral("broken.dxsnap"), "{");
    const Result broken = run(
        {QStringLiteral("checkup"), now, QStringLiteral("--against"), path(QStringLiteral("broken.dxsnap"))});
    QCOMPARE(broken.status, 5);
    QCOMPARE(broken.output, QString());
    QVERIFY2(broken.errors.contains(QStringLiteral("broken.dxsnap")), qPrintable(broken.errors));
}

void tst_Checkup::notesAreNoFindings()
{
    VehicleSnapshot::setNumber(&m_snapshot, 2, {0x6164, 2}, 500);
    const Result result = run({QStringLiteral("checkup"), save(m_snapshot)});
    QVERIFY(result.output.contains(QStringLiteral("note: It is nearly empty: 5.00 %.")));
    QCOMPARE(result.status, 0);
}

void tst_Checkup::exchangeFileIsNotComplete()
{
    m_snapshot.scope = SnapshotScope::Imported;
    QVector<SnapshotEntry> &entries = m_snapshot.find(6)->entries;
    entries.erase(std::remove_if(entries.begin(), entries.end(),
                                 [](const SnapshotEntry &entry) { return entry.key.index == 0x6009; }),
                  entries.end());
    const Result result = run({QStringLiteral("checkup"), save(m_snapshot)});
    QVERIFY2(result.output.contains(QStringLiteral(
                 "not checked: Security unit (node 6)\n"
                 "    not checked: The file does not hold everything. (6009h)\n"
                 "    not checked: The file does not tell how the device behaves on the bus.\n")),
             qPrintable(result.output));
    QCOMPARE(result.status, 4);
}

void tst_Checkup::json()
{
    VehicleSnapshot::setNumber(&m_snapshot, 2, {0x6009, 1}, 0x0400);
    VehicleSnapshot::setNumber(&m_snapshot, 4, {0x600E, 1}, 0x71810300);
    m_snapshot.find(5)->end = SnapshotEnd::Cancelled;
    const Result result = run({QStringLiteral("checkup"), save(m_snapshot), QStringLiteral("--json")});
    const QJsonObject json = jsonOf(result);
    QCOMPARE(json.keys(), (QStringList{QStringLiteral("components"), QStringLiteral("findings"),
                                       QStringLiteral("verdict")}));
    QCOMPARE(json.value(QStringLiteral("verdict")).toString(), QStringLiteral("fault"));
    QCOMPARE(json.value(QStringLiteral("findings")).toArray().size(), 1);
    const QJsonArray components = json.value(QStringLiteral("components")).toArray();
    QCOMPARE(components.size(), 7);
    const QByteArray battery = QJsonDocument(components.at(0).toObject()).toJson(QJsonDocument::Compact);
    QCOMPARE(QString::fromUtf8(battery),
             QStringLiteral(
                 "{\"findings\":[{\"advice\":\"The device protects itself or the vehicle. Mend the cause "
                 "before the vehicle is used.\",\"objects\":[{\"index\":24585,\"sub\":1},{\"index\":"
                 "24585,\"sub\":0}],\"rule\":\"alarm\",\"severity\":\"fault\",\"text\":\"Alarm: cell "
                 "damaged.\"}],\"name\":\"Battery Pack\",\"node\":2,\"notChecked\":[],\"state\":"
                 "\"fault\"}"));
    const QJsonObject display = components.at(1).toObject();
    QCOMPARE(display.value(QStringLiteral("state")).toString(), QStringLiteral("notChecked"));
    QCOMPARE(display.value(QStringLiteral("notChecked")).toArray().at(0).toString(),
             QStringLiteral("The reading was ended before all was asked."));
    QCOMPARE(result.status, 8);
}

void tst_Checkup::language()
{
    VehicleSnapshot::setNumber(&m_snapshot, 2, {0x6009, 1}, 0x0400);
    const Result result = run(
        {QStringLiteral("checkup"), save(m_snapshot), QStringLiteral("--language"), QStringLiteral("de_AT")});
    QVERIFY2(result.output.contains(QStringLiteral("Alarm: Zelle beschädigt.")), qPrintable(result.output));
    QVERIFY2(result.output.contains(QStringLiteral("Akkupack")), qPrintable(result.output));
    QCOMPARE(result.status, 8);
}

/*! Of a device of which one value was refused, and of one that fell silent. */
void tst_Checkup::reasonsInTheLanguage()
{
    SnapshotEntry refused = *m_snapshot.find(2)->find(0x6009, 1);
    refused.gap = SnapshotGap::Abort;
    refused.abortCode = 0x08000021;
    refused.value = QVariant();
    refused.raw.clear();
    m_snapshot.find(2)->insert(refused);
    m_snapshot.find(5)->end = SnapshotEnd::Silent;
    m_snapshot.find(5)->entries.clear();
    const Result result = run(
        {QStringLiteral("checkup"), save(m_snapshot), QStringLiteral("--language"), QStringLiteral("de")});
    QVERIFY2(result.output.contains(QStringLiteral("Akkupack (node 2)")), qPrintable(result.output));
    QVERIFY2(result.output.contains(QStringLiteral("Das Gerät hat es verweigert: ")),
             qPrintable(result.output));
    QVERIFY2(result.output.contains(QStringLiteral("Das Gerät antwortet nicht.\n")),
             qPrintable(result.output));
    for (const char *english : {"The device", "refused", "does not", "Device (", "data cannot"})
        QVERIFY2(!result.output.contains(QLatin1String(english)), qPrintable(result.output));
}

void tst_Checkup::numbersInTheLanguage()
{
    VehicleSnapshot::setNumber(&m_snapshot, 2, {0x6165, 7}, 3520);
    const QString file = save(m_snapshot);
    const Result result
        = run({QStringLiteral("checkup"), file, QStringLiteral("--language"), QStringLiteral("de")});
    QVERIFY2(result.output.contains(QStringLiteral("3,52 V")), qPrintable(result.output));
    QVERIFY2(!result.output.contains(QStringLiteral("3.52")), qPrintable(result.output));
    const Result json = run({QStringLiteral("checkup"), file, QStringLiteral("--language"),
                             QStringLiteral("de"), QStringLiteral("--json")});
    QVERIFY2(json.output.contains(QStringLiteral("\"sub\":7")), qPrintable(json.output));
}

void tst_Checkup::ownRules()
{
    write(QStringLiteral("mine.json"),
          R"({"format": "draxel-rules", "version": 1, "rules": [
              {"id": "charge-low", "severity": "off"},
              {"id": "hot-motor", "severity": "warning", "components": [7], "for": "s in 6042h",
               "when": "6042h.s > 300", "text": {"en": "The motor control has {6042h.s}."}}]})");
    VehicleSnapshot::setNumber(&m_snapshot, 2, {0x6164, 2}, 500);
    const Result result
        = run({QStringLiteral("checkup"), save(m_snapshot), QStringLiteral("--rules"), m_folder->path()});
    QVERIFY2(result.output.startsWith(QStringLiteral("warning: Motor Control unit (node 4)\n"
                                                     "    warning: The motor control has 37.10 °C.\n"
                                                     "good: ")),
             qPrintable(result.output));
    QCOMPARE(result.status, 8);
}

void tst_Checkup::brokenRulesAreSaid()
{
    write(QStringLiteral("mine.json"),
          R"({"format": "draxel-rules", "version": 1, "rules": [
              {"id": "mine", "severity": "note", "when": "6042h.1 >", "text": {"en": "x"}}]})");
    const Result result
        = run({QStringLiteral("checkup"), save(m_snapshot), QStringLiteral("--rules"), m_folder->path()});
    QCOMPARE(
        result.errors,
        path(QStringLiteral("mine.json"))
            + QStringLiteral(": rules[0].when: Something is missing, at character 10. (rule \"mine\")\n"));
    QCOMPARE(result.status, 0);
}

void tst_Checkup::hostileTextsAreShown()
{
    SnapshotEntry name = *m_snapshot.find(5)->find(0x1008, 0);
    name.raw = QByteArray("a\x1b[2Jb");
    name.value = QStringLiteral("a\x1b[2Jb");
    m_snapshot.find(5)->insert(name);
    m_snapshot.find(5)->insert(VehicleSnapshot::absent({0x6000, 0}));
    const Result result = run({QStringLiteral("checkup"), save(m_snapshot)});
    QVERIFY2(result.output.contains(QStringLiteral("a\\u001b[2Jb (node 5)")), qPrintable(result.output));
}

void tst_Checkup::usage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("complaint");

    QTest::newRow("nothing") << QStringList{QStringLiteral("checkup")}
                             << QStringLiteral("What is meant? Name a FILE or a --bus.");
    QTest::newRow("both") << QStringList{QStringLiteral("checkup"), QStringLiteral("a"),
                                         QStringLiteral("--bus"), QStringLiteral("simulated:pedelec")}
                          << QStringLiteral("Name either a FILE or a --bus, not both.");
    QTest::newRow("no folder") << QStringList{QStringLiteral("checkup"), QStringLiteral("a"),
                                              QStringLiteral("--rules"), QStringLiteral("/nowhere")}
                               << QStringLiteral("There is no folder \"/nowhere\".");
    QTest::newRow("one side only") << QStringList{QStringLiteral("diff"), QStringLiteral("a")}
                                   << QStringLiteral("What is meant? Name a FILE or a --bus.");
}

void tst_Checkup::usage()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, complaint);

    const Result result = run(arguments);
    QVERIFY2(result.errors.contains(complaint), qPrintable(result.errors));
    QCOMPARE(result.output, QString());
    QCOMPARE(result.status, 1);
}

void tst_Checkup::wrongFile()
{
    write(QStringLiteral("wrong.dxsnap"), "{\"format\": \"draxel-snapshot\"");
    const QString wrong = path(QStringLiteral("wrong.dxsnap"));
    for (const QStringList &arguments :
         {QStringList{QStringLiteral("checkup"), wrong}, QStringList{QStringLiteral("diff"), wrong, wrong},
          QStringList{QStringLiteral("diff"), save(m_snapshot), wrong}}) {
        const Result result = run(arguments);
        QVERIFY2(result.errors.contains(wrong), qPrintable(result.errors));
        QCOMPARE(result.output, QString());
        QCOMPARE(result.status, 5);
    }
}

/*! Through the simulator and the whole chain: a vehicle with a worn battery, a low cell and a tampered lock. */
void tst_Checkup::liveBus()
{
    QFile shipped(QStringLiteral(VEHICLE_FOLDER "/pedelec.json"));
    QVERIFY(shipped.open(QIODevice::ReadOnly));
    QJsonObject vehicle = QJsonDocument::fromJson(shipped.readAll()).object();
    QJsonArray nodes;
    for (const QJsonValue &value : vehicle.value(QStringLiteral("nodes")).toArray()) {
        QJsonObject node = value.toObject();
        node.insert(QStringLiteral("dictionary"),
                    QStringLiteral(VEHICLE_FOLDER "/") + node.value(QStringLiteral("dictionary")).toString());
        if (node.value(QStringLiteral("id")).toInt() == 2) {
            node.insert(QStringLiteral("behaviour"), QJsonArray());
            node.insert(QStringLiteral("values"),
                        QJsonObject{{QStringLiteral("6176sub1"), 7000}, {QStringLiteral("6165sub7"), 3520}});
        }
        if (node.value(QStringLiteral("id")).toInt() == 6)
            node.insert(QStringLiteral("values"), QJsonObject{{QStringLiteral("6311sub1"), 0xC1}});
        nodes.append(node);
    }
    vehicle.insert(QStringLiteral("nodes"), nodes);
    write(QStringLiteral("ill.json"), QJsonDocument(vehicle).toJson());

    const Result result = run({QStringLiteral("checkup"), QStringLiteral("--bus"),
                               QStringLiteral("simulated:") + path(QStringLiteral("ill.json")),
                               QStringLiteral("--share"), QStringLiteral("100")});
    const QString expected = QStringLiteral(
        "fault: Battery Pack (node 2)\n"
        "    fault: Cell 7 is 410 mV below the others: 3.52 V, the others 3.93 V (limit 100 mV).\n"
        "      Charge and balance, then check again; if it stays, the pack needs service.\n"
        "    warning: Its state of health is 70.00 %.\n"
        "      The battery has less range and less power than a new one; talk to the customer about a new "
        "one.\n"
        "fault: Security unit (node 6)\n"
        "    fault: It has detected manipulation.\n"
        "      Somebody has opened or changed the device. Ask the customer; the maker resets it.\n"
        "good: Draxel Controller (node 1), Voltage Converter/Charger (node 3), Motor Control unit (node 4), "
        "HMI "
        "control unit/display (node 5), Sensor unit (node 7)\n");
    QCOMPARE(result.output.left(expected.size()), expected);
    QCOMPARE(result.status, 8);
}

void tst_Checkup::sameVehicle()
{
    const QString file = save(m_snapshot);
    const Result result = run({QStringLiteral("diff"), file, file});
    QCOMPARE(result.output, QStringLiteral("Nothing has changed.\n"));
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.status, 0);
}

void tst_Checkup::differentVehicles()
{
    const QString before = save(m_snapshot, QStringLiteral("before.dxsnap"));
    VehicleSnapshot::setNumber(&m_snapshot, 2, {0x6107, 1}, 246);
    m_snapshot.nodes.removeLast();
    const Result result = run({QStringLiteral("diff"), before, save(m_snapshot)});
    QCOMPARE(
        result.output,
        QStringLiteral("Sensor unit (node 7) is gone.\n"
                       "Battery Pack (node 2): Battery pack lifetime cycles (6107h.1) rose from 212 to 246.\n"
                       "\n"
                       "Changes: 2.\n"));
    QCOMPARE(result.status, 7);
}

void tst_Checkup::differencesAsJson()
{
    const QString before = save(m_snapshot, QStringLiteral("before.dxsnap"));
    VehicleSnapshot::setNumber(&m_snapshot, 2, {0x6107, 1}, 246);
    m_snapshot.nodes.removeLast();
    const QString after = save(m_snapshot);
    const Result result = run({QStringLiteral("diff"), before, after, QStringLiteral("--json")});
    const QJsonObject json = jsonOf(result);
    QCOMPARE(json.value(QStringLiteral("same")), QJsonValue(false));
    const QJsonArray changes = json.value(QStringLiteral("changes")).toArray();
    QCOMPARE(
        QString::fromUtf8(QJsonDocument(changes).toJson(QJsonDocument::Compact)),
        QStringLiteral(
            "[{\"after\":\"\",\"before\":\"Sensor unit (node 7)\",\"kind\":\"removed\",\"node\":7,\"text\":"
            "\"Sensor unit (node 7) is gone.\"},{\"after\":\"246\",\"before\":\"212\",\"index\":24839,"
            "\"kind\":\"counter\",\"node\":2,\"sub\":1,\"text\":\"Battery Pack (node 2): Battery pack "
            "lifetime "
            "cycles (6107h.1) rose from 212 to 246.\"}]"));
    QCOMPARE(result.status, 7);
    QCOMPARE(jsonOf(run({QStringLiteral("diff"), after, after, QStringLiteral("--json")}))
                 .value(QStringLiteral("same")),
             QJsonValue(true));
}

/*! The running vehicle against what was made without a bus. */
void tst_Checkup::liveBusIsCompared()
{
    const Result result
        = run({QStringLiteral("diff"), save(m_snapshot), QStringLiteral("--bus"),
               QStringLiteral("simulated:pedelec"), QStringLiteral("--share"), QStringLiteral("100")});
    QCOMPARE(result.output, QStringLiteral("Nothing has changed.\n"));
    QCOMPARE(result.status, 0);
}

/*! It was heard to the end, but gave no value any more. */
void tst_Checkup::deadDeviceIsOneLine()
{
    const QString before = save(m_snapshot, QStringLiteral("before.dxsnap"));
    int lost = 0;
    for (SnapshotEntry &entry : m_snapshot.find(5)->entries) {
        lost += entry.hasValue() ? 1 : 0;
        entry.gap = entry.gap == SnapshotGap::None ? SnapshotGap::NoAnswer : entry.gap;
        entry.value = QVariant();
        entry.raw.clear();
    }
    const QString after = save(m_snapshot);
    const Result text = run({QStringLiteral("diff"), before, after});
    QVERIFY(lost > 20);
    QCOMPARE(
        text.output,
        QStringLiteral("Not read any more: %1 values of HMI control unit/display (node 5). The device did "
                       "not answer.\n\nChanges: 1.\n")
            .arg(lost));
    QCOMPARE(text.status, 7);
    const Result json = run({QStringLiteral("diff"), before, after, QStringLiteral("--json")});
    QCOMPARE(jsonOf(json).value(QStringLiteral("changes")).toArray().size(), lost);
}

void tst_Checkup::silentDeviceKeepsItsName()
{
    const QString before = save(m_snapshot, QStringLiteral("before.dxsnap"));
    m_snapshot.find(5)->end = SnapshotEnd::Silent;
    m_snapshot.find(5)->entries.clear();
    const Result result = run({QStringLiteral("diff"), before, save(m_snapshot)});
    QCOMPARE(result.output,
             QStringLiteral("HMI control unit/display (node 5): new: It sends its heartbeat, but does not "
                            "answer.\n"
                            "HMI control unit/display (node 5) could not be read to its end this time. The "
                            "device does not answer.\n\nChanges: 2.\n"));
}

void tst_Checkup::comparisonInTheLanguage()
{
    const QString before = save(m_snapshot, QStringLiteral("before.dxsnap"));
    VehicleSnapshot::setNumber(&m_snapshot, 4, {0x6026, 1}, 44000);
    for (const quint16 index : {quint16(0x6307), quint16(0x6308)}) {
        SnapshotEntry entry = *m_snapshot.find(4)->find(index, 1);
        entry.gap = SnapshotGap::NoAnswer;
        entry.value = QVariant();
        entry.raw.clear();
        m_snapshot.find(4)->insert(entry);
    }
    const Result result = run({QStringLiteral("diff"), before, save(m_snapshot), QStringLiteral("--language"),
                               QStringLiteral("de")});
    QVERIFY2(result.output.contains(QStringLiteral("war 43,00 V, ist 44,00 V.\n")),
             qPrintable(result.output));
    QVERIFY2(result.output.contains(QStringLiteral("Nicht mehr gelesen: 2 Werte von ")),
             qPrintable(result.output));
    QVERIFY2(result.output.contains(QStringLiteral("Das Gerät hat nicht geantwortet.\n")),
             qPrintable(result.output));
}

QTEST_GUILESS_MAIN(tst_Checkup)
#include "tst_checkup.moc"
