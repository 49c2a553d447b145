// SPDX-License-Identifier: MIT
#include <cli/core/vehiclefromfile.h>

#include <snapshot/snapshot.h>
#include <snapshot/snapshotfile.h>

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

namespace {

/*! An exchange file with the lines \a body inside "nodes". */
QString document(const char *body)
{
    return QStringLiteral(
               "<?xml version =\"1.0\" encoding=\"UTF-8\" ?>\n<dxtoolstorage pl_overwiew=\"1.0\" date=\"\">\n"
               "<nodes>\n%1</nodes>\n</dxtoolstorage>\n")
        .arg(QLatin1String(body));
}

/*! The vehicle of a file that holds \a text. */
std::optional<Simulator::VehicleDescription> vehicleOf(const QByteArray &text, QString *error,
                                                       QStringList *warnings)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("vehicle.file")));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        return std::nullopt;
    file.close();
    return vehicleFromFile(file.fileName(), error, warnings);
}

std::optional<Simulator::VehicleDescription> vehicleOf(const QString &text, QString *error,
                                                       QStringList *warnings)
{
    return vehicleOf(text.toUtf8(), error, warnings);
}

SnapshotEntry entry(quint16 index, quint8 subIndex)
{
    SnapshotEntry result;
    result.key = {index, subIndex};
    return result;
}

} // namespace

Q_DECLARE_METATYPE(SnapshotScope)

class tst_VehicleFromFile : public QObject
{
    Q_OBJECT

private slots:
    void nodesLiveOnce();
    void typesFollowTheReadList_data();
    void typesFollowTheReadList();
    void leavesOutWhatDoesNotFit();
    void leavesOutObject0000();
    void snapshotsAnswerAsTheyAnsweredThen();
    void heartbeatIsTheRecordedOne_data();
    void heartbeatIsTheRecordedOne();
    void complains_data();
    void complains();
};

void tst_VehicleFromFile::nodesLiveOnce()
{
    QString error;
    QStringList warnings;
    const auto vehicle = vehicleOf(
        document("<node nodeid=\"5\"></node><node nodeid=\"0\"></node><node nodeid=\"1\"></node>"
                 "<node nodeid=\"5\"></node><node nodeid=\"200\"></node><node nodeid=\"127\"></node>"),
        &error, &warnings);
    QVERIFY2(vehicle, qPrintable(error));
    QCOMPARE(vehicle->nodes.size(), 3);
    QCOMPARE(int(vehicle->nodes.at(0).id), 1);
    QCOMPARE(int(vehicle->nodes.at(1).id), 5);
    QCOMPARE(int(vehicle->nodes.at(2).id), 127);
    QCOMPARE(int(vehicle->nodes.at(0).heartbeatMs.value_or(0)), 500);
    QVERIFY(warnings.isEmpty());
}

void tst_VehicleFromFile::typesFollowTheReadList_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("subIndex");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QByteArray>("bytes"); // hexadecimal, as on the bus

    QTest::newRow("UNSIGNED8") << 0x6000 << 0 << QStringLiteral("3") << QByteArray("03");
    QTest::newRow("UNSIGNED16") << 0x6001 << 1 << QStringLiteral("0x1234") << QByteArray("3412");
    QTest::newRow("UNSIGNED32") << 0x1000 << 0 << QStringLiteral("4294967295") << QByteArray("ffffffff");
    QTest::newRow("INTEGER16") << 0x6042 << 1 << QStringLiteral("-5") << QByteArray("fbff");
    QTest::newRow("INTEGER32") << 0x6024 << 1 << QStringLiteral("-2") << QByteArray("feffffff");
    // Read as UNSIGNED32 first and as UNSIGNED16 later.
    QTest::newRow("read twice") << 0x6311 << 1 << QStringLiteral("7") << QByteArray("0700");
    QTest::newRow("not in the read list") << 0x2000 << 0 << QStringLiteral("7") << QByteArray("07000000");
    QTest::newRow("negative, not in the read list")
        << 0x2000 << 0 << QStringLiteral("-1") << QByteArray("ffffffff");
}

void tst_VehicleFromFile::typesFollowTheReadList()
{
    QFETCH(int, index);
    QFETCH(int, subIndex);
    QFETCH(QString, value);
    QFETCH(QByteArray, bytes);

    const QString object
        = QStringLiteral("<node nodeid=\"1\"><object index=\"%1\" sub=\"%2\" value=\"%3\" /></node>")
              .arg(index)
              .arg(subIndex)
              .arg(value);
    QString error;
    QStringList warnings;
    const auto vehicle = vehicleOf(document(object.toLatin1().constData()), &error, &warnings);
    QVERIFY2(vehicle, qPrintable(error));
    QVERIFY2(warnings.isEmpty(), qPrintable(warnings.value(0)));
    const CanOpen::ObjectEntry *entry = vehicle->nodes.first().dictionary.find(
        {static_cast<quint16>(index), static_cast<quint8>(subIndex)});
    QVERIFY(entry != nullptr);
    QCOMPARE(entry->data.toHex(), bytes);
}

void tst_VehicleFromFile::leavesOutWhatDoesNotFit()
{
    QString error;
    QStringList warnings;
    const auto vehicle
        = vehicleOf(document("<node nodeid=\"4\"><object index=\"0x6001\" sub=\"0x01\" value=\"70000\" />"
                             "<object index=\"0x1000\" sub=\"0x00\" value=\"1\" /></node>"),
                    &error, &warnings);
    QVERIFY(vehicle);
    QCOMPARE(warnings,
             QStringList(QStringLiteral("Node 4, object 6001h sub-index 1: the value 70000 does not fit the "
                                        "object and is left out.")));
    QVERIFY(vehicle->nodes.first().dictionary.find({0x6001, 1}) == nullptr);
    QVERIFY(vehicle->nodes.first().dictionary.find({0x1000, 0}) != nullptr);
}

void tst_VehicleFromFile::leavesOutObject0000()
{
    QString error;
    QStringList warnings;
    const auto vehicle = vehicleOf(
        document("<node nodeid=\"1\"><object index=\"0x1000\" sub=\"0x00\" value=\"1\" /></node>"), &error,
        &warnings);
    QVERIFY(vehicle);
    QCOMPARE(vehicle->nodes.first().dictionary.keys().size(), 1);
}

void tst_VehicleFromFile::snapshotsAnswerAsTheyAnsweredThen()
{
    SnapshotNode node;
    node.id = 9;
    node.nmtState = CanOpen::NmtState::Stopped;
    SnapshotEntry typed = entry(0x6042, 1);
    typed.type = CanOpen::DataType::Integer16;
    typed.raw = QByteArray::fromHex("fbff");
    typed.value = -5;
    SnapshotEntry text = entry(0x1008, 0); // empty
    text.type = CanOpen::DataType::VisibleString;
    text.value = QString();
    SnapshotEntry unknown = entry(0x2000, 0);
    unknown.raw = QByteArray(20, 'x');
    SnapshotEntry wrong = entry(0x6040, 1);
    wrong.type = CanOpen::DataType::Integer32;
    wrong.raw = QByteArray::fromHex("0102");
    wrong.gap = SnapshotGap::WrongSize;
    SnapshotEntry refused = entry(0x6005, 0);
    refused.gap = SnapshotGap::Abort;
    refused.abortCode = 0x08000020;
    SnapshotEntry silent = entry(0x6006, 0);
    silent.gap = SnapshotGap::NoAnswer;
    SnapshotEntry absent = entry(0x6007, 0);
    absent.gap = SnapshotGap::Absent;
    for (const SnapshotEntry &each : {typed, text, unknown, wrong, refused, silent, absent})
        node.insert(each);
    Snapshot snapshot;
    snapshot.time = QDateTime(QDate(2026, 1, 1), QTime(0, 0), Qt::UTC);
    snapshot.bitRate = 125000;
    snapshot.nodes.append(node);

    QString error;
    QStringList warnings;
    const auto vehicle = vehicleOf(SnapshotFile::toJson(snapshot), &error, &warnings);
    QVERIFY2(vehicle, qPrintable(error));
    QCOMPARE(warnings, QStringList());
    QCOMPARE(vehicle->name, QStringLiteral("vehicle"));
    QCOMPARE(vehicle->bitRate, 125000);
    const Simulator::NodeDescription &made = vehicle->nodes.first();
    QCOMPARE(int(made.id), 9);
    QVERIFY(made.state == CanOpen::NmtState::Stopped);
    QCOMPARE(made.dictionary.keys().size(), 4);
    QCOMPARE(made.dictionary.find({0x6042, 1})->data.toHex(), QByteArray("fbff"));
    QCOMPARE(made.dictionary.find({0x6042, 1})->type, CanOpen::DataType::Integer16);
    QCOMPARE(made.dictionary.find({0x1008, 0})->data, QByteArray());
    QCOMPARE(made.dictionary.find({0x2000, 0})->data, QByteArray(20, 'x'));
    QCOMPARE(made.dictionary.find({0x6040, 1})->data.toHex(), QByteArray("0102"));
    QCOMPARE(made.faults.size(), 2);
    const auto *abort = std::get_if<Simulator::Faults::SdoAbort>(&made.faults.at(0));
    QVERIFY(abort != nullptr);
    QCOMPARE(abort->object->toString(), QStringLiteral("6005h sub-index 0"));
    QCOMPARE(abort->code, 0x08000020u);
    const auto *silence = std::get_if<Simulator::Faults::SdoSilent>(&made.faults.at(1));
    QVERIFY(silence != nullptr);
    QCOMPARE(silence->object->toString(), QStringLiteral("6006h sub-index 0"));
}

void tst_VehicleFromFile::heartbeatIsTheRecordedOne_data()
{
    QTest::addColumn<int>("producerTime"); // 1017h; -1: not there
    QTest::addColumn<bool>("isHeard");
    QTest::addColumn<SnapshotScope>("scope");
    QTest::addColumn<int>("expected");
    QTest::newRow("of the object") << 250 << true << SnapshotScope::Full << 250;
    QTest::newRow("heard, object not known") << -1 << true << SnapshotScope::Full << 500;
    QTest::newRow("heard, although it is off") << 0 << true << SnapshotScope::Full << 500;
    QTest::newRow("not heard") << -1 << false << SnapshotScope::Full << 0;
    QTest::newRow("not heard, although it is on") << 250 << false << SnapshotScope::Quick << 0;
    QTest::newRow("of a file that does not know") << -1 << false << SnapshotScope::Imported << 500;
    QTest::newRow("of a trace that may be short") << -1 << false << SnapshotScope::Recorded << 500;
}

void tst_VehicleFromFile::heartbeatIsTheRecordedOne()
{
    QFETCH(int, producerTime);
    QFETCH(bool, isHeard);
    QFETCH(SnapshotScope, scope);
    QFETCH(int, expected);
    SnapshotNode node;
    node.id = 9;
    if (isHeard)
        node.nmtState = CanOpen::NmtState::Operational;
    if (producerTime >= 0) {
        SnapshotEntry time = entry(0x1017, 0);
        time.value = producerTime;
        node.insert(time);
    }
    Snapshot snapshot;
    snapshot.scope = scope;
    snapshot.nodes.append(node);
    QStringList warnings;
    QCOMPARE(int(vehicleFromSnapshot(snapshot, &warnings).nodes.first().heartbeatMs.value_or(9999)),
             expected);
}

void tst_VehicleFromFile::complains_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("empty") << QString();
    QTest::newRow("no XML") << QStringLiteral("nonsense");
    QTest::newRow("broken off") << document("<node nodeid=\"1\"></node>").left(120);
    QTest::newRow("no node") << document("");
    QTest::newRow("snapshot without nodes") << QString::fromUtf8(SnapshotFile::toJson(Snapshot()));
    QTest::newRow("no snapshot") << QStringLiteral("{}");
    QTest::newRow("node 0 only") << document("<node nodeid=\"0\"></node>");
}

void tst_VehicleFromFile::complains()
{
    QFETCH(QString, text);
    QString error;
    QStringList warnings;
    QVERIFY(!vehicleOf(text, &error, &warnings));
    QVERIFY(!error.isEmpty());
}

QTEST_GUILESS_MAIN(tst_VehicleFromFile)
#include "tst_vehiclefromfile.moc"
