// SPDX-License-Identifier: MIT
#include <cli/core/vehiclefromexchange.h>

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

} // namespace

class tst_VehicleFromExchange : public QObject
{
    Q_OBJECT

private slots:
    void nodesLiveOnce();
    void typesFollowTheReadList_data();
    void typesFollowTheReadList();
    void leavesOutWhatDoesNotFit();
    void leavesOutObject0000();
    void complains_data();
    void complains();
};

void tst_VehicleFromExchange::nodesLiveOnce()
{
    QString error;
    QStringList warnings;
    const auto vehicle = vehicleFromExchange(
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

void tst_VehicleFromExchange::typesFollowTheReadList_data()
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

void tst_VehicleFromExchange::typesFollowTheReadList()
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
    const auto vehicle = vehicleFromExchange(document(object.toLatin1().constData()), &error, &warnings);
    QVERIFY2(vehicle, qPrintable(error));
    QVERIFY2(warnings.isEmpty(), qPrintable(warnings.value(0)));
    const CanOpen::ObjectEntry *entry = vehicle->nodes.first().dictionary.find(
        {static_cast<quint16>(index), static_cast<quint8>(subIndex)});
    QVERIFY(entry != nullptr);
    QCOMPARE(entry->data.toHex(), bytes);
}

void tst_VehicleFromExchange::leavesOutWhatDoesNotFit()
{
    QString error;
    QStringList warnings;
    const auto vehicle = vehicleFromExchange(
        document("<node nodeid=\"4\"><object index=\"0x6001\" sub=\"0x01\" value=\"70000\" />"
                 "<object index=\"0x1000\" sub=\"0x00\" value=\"1\" /></node>"),
        &error, &warnings);
    QVERIFY(vehicle);
    QCOMPARE(warnings,
             QStringList(QStringLiteral("Node 4, object 6001h sub-index 1: the value 70000 does not fit the "
                                        "object and is left out.")));
    QVERIFY(vehicle->nodes.first().dictionary.find({0x6001, 1}) == nullptr);
    QVERIFY(vehicle->nodes.first().dictionary.find({0x1000, 0}) != nullptr);
}

void tst_VehicleFromExchange::leavesOutObject0000()
{
    QString error;
    QStringList warnings;
    const auto vehicle = vehicleFromExchange(
        document("<node nodeid=\"1\"><object index=\"0x1000\" sub=\"0x00\" value=\"1\" /></node>"), &error,
        &warnings);
    QVERIFY(vehicle);
    QCOMPARE(vehicle->nodes.first().dictionary.keys().size(), 1);
}

void tst_VehicleFromExchange::complains_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("empty") << QString();
    QTest::newRow("no XML") << QStringLiteral("nonsense");
    QTest::newRow("broken off") << document("<node nodeid=\"1\"></node>").left(120);
    QTest::newRow("no node") << document("");
    QTest::newRow("node 0 only") << document("<node nodeid=\"0\"></node>");
}

void tst_VehicleFromExchange::complains()
{
    QFETCH(QString, text);
    QString error;
    QStringList warnings;
    QVERIFY(!vehicleFromExchange(text, &error, &warnings));
    QVERIFY(!error.isEmpty());
}

QTEST_GUILESS_MAIN(tst_VehicleFromExchange)
#include "tst_vehiclefromexchange.moc"
