// SPDX-License-Identifier: MIT
#include "program.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

/*! Reads and scans on a bus of which others take most or all of the time, with messages of higher priority. */
class tst_CrowdedBus : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_bitRate = 250000;
    }

    void readsAtAnyLoadThatLeavesRoom_data();
    void readsAtAnyLoadThatLeavesRoom();
    void nodesMayBeMissing();
    void stopIsTheBusNotTheNode();
    void controllerThatCannotBeHeard();
    void oneNodeThatCannotAnswer();
    void nodeThatFindsNoRoomIsNotSilent();
    void scanSaysWhatItDoesNotKnow();
    void snapshotMayMissNodes_data();
    void snapshotMayMissNodes();
    void snapshotScanSaysWhatItDoesNotKnow();
    void checkupScanSaysWhatItDoesNotKnow();

private:
    /*! Nothing of lower priority gets through, neither heartbeats nor our requests. */
    static constexpr char withoutEnd[] = R"({"kind": "noBootUp"}, {"kind": "noHeartbeat"},
                                            {"kind": "babbleSdo", "perSecond": 5000})";

    QString writeVehicle(const QByteArray &faultsOfNode7, const QByteArray &faultsOfNode1 = {}) const;
    Result read(const QByteArray &faultsOfNode7, const QStringList &more = {}) const;
    Result snapshot(const QByteArray &faultsOfNode7, const QStringList &more) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    int m_bitRate = 250000;
};

/*! Nodes 1, 2 and 7 on a bus, usually of 250 kbit/s. */
QString tst_CrowdedBus::writeVehicle(const QByteArray &faultsOfNode7, const QByteArray &faultsOfNode1) const
{
    const QString folder = m_folder->path() + QLatin1Char('/');
    QFile::copy(QStringLiteral(VEHICLE_FOLDER "/pedelec-controller.dcf"),
                folder + QStringLiteral("node.dcf"));
    QFile file(folder + QStringLiteral("vehicle.json"));
    if (file.open(QIODevice::WriteOnly)) {
        file.write("{ \"name\": \"test\", \"bitRate\": " + QByteArray::number(m_bitRate)
                   + ", \"nodes\": ["
                     "{ \"id\": 1, \"dictionary\": \"node.dcf\", \"heartbeatMs\": 200, \"faults\": ["
                   + faultsOfNode1
                   + "] },"
                     "{ \"id\": 2, \"dictionary\": \"node.dcf\", \"heartbeatMs\": 200 },"
                     "{ \"id\": 7, \"dictionary\": \"node.dcf\", \"heartbeatMs\": 200, \"faults\": ["
                   + faultsOfNode7 + "] } ] }");
    }
    return QStringLiteral("simulated:") + file.fileName();
}

Result tst_CrowdedBus::read(const QByteArray &faultsOfNode7, const QStringList &more) const
{
    return run(QStringList{QStringLiteral("read"), QStringLiteral("--bus"), writeVehicle(faultsOfNode7)}
               + more);
}

void tst_CrowdedBus::readsAtAnyLoadThatLeavesRoom_data()
{
    QTest::addColumn<QByteArray>("faults");

    for (const int percent : {50, 80, 90, 96, 99}) {
        QTest::addRow("%d percent", percent)
            << R"({"kind": "traffic", "percent": )" + QByteArray::number(percent) + '}';
    }
}

void tst_CrowdedBus::readsAtAnyLoadThatLeavesRoom()
{
    QFETCH(QByteArray, faults);
    const Result result = read(faults);
    QVERIFY2(result.status == 0, qPrintable(result.errors));
    QVERIFY2(result.output.contains(
                 QStringLiteral("Total: 3 nodes, 150 values read, 450 objects not there, 0 failed")),
             qPrintable(result.output));
}

void tst_CrowdedBus::nodesMayBeMissing()
{
    QCOMPARE(read(R"({"kind": "traffic", "percent": 85})").errors, QString());
    QCOMPARE(read(R"({"kind": "traffic", "percent": 98})").errors,
             QStringLiteral("The bus was full while nodes were looked for, so nodes may be missing. Find out "
                            "who sends so much, and read again.\n"));
}

void tst_CrowdedBus::stopIsTheBusNotTheNode()
{
    const Result result = read(R"({"kind": "flood", "perSecond": 5000})");
    QCOMPARE(result.status, 4);
    QVERIFY2(result.errors.startsWith(QStringLiteral("The read stopped at node 7, object ")),
             qPrintable(result.errors));
    QVERIFY2(
        result.errors.contains(QStringLiteral(
            ", because the bus is full, and the node's answer may find no room on it. Find out who sends "
            "so much, and read again. Values read until then: ")),
        qPrintable(result.errors));
    QVERIFY2(!result.errors.contains(QStringLiteral("--timeout")), qPrintable(result.errors));
}

void tst_CrowdedBus::controllerThatCannotBeHeard()
{
    // It is not heard before the others begin either.
    const QString vehicle = writeVehicle(withoutEnd, R"({"kind": "noBootUp"})");
    const Result result = run({QStringLiteral("read"), QStringLiteral("--bus"), vehicle});
    QCOMPARE(result.status, 3);
    QCOMPARE(result.errors,
             QStringLiteral("Nothing was read, because node 1, the bus controller, was not heard: the bus is "
                            "full, and the node's heartbeat may find no room on it. Find out who sends so "
                            "much, and read again.\n"));
}

void tst_CrowdedBus::oneNodeThatCannotAnswer()
{
    const Result result = read(withoutEnd, {QStringLiteral("--node"), QStringLiteral("2")});
    QCOMPARE(result.status, 4);
    QVERIFY2(result.errors.contains(QStringLiteral("because the request could not be sent: the bus is "
                                                   "overloaded, or nobody acknowledges.")),
             qPrintable(result.errors));
}

/*! Its boot-up message was heard, and its answer comes when the bus is full. */
void tst_CrowdedBus::nodeThatFindsNoRoomIsNotSilent()
{
    const QString vehicle = writeVehicle(withoutEnd, R"({"kind": "sdoDelay", "ms": 300})");
    const Result result = run({QStringLiteral("get"), QStringLiteral("--bus"), vehicle, QStringLiteral("1"),
                               QStringLiteral("1018"), QStringLiteral("1")});
    QCOMPARE(result.status, 4);
    QCOMPARE(result.errors, QStringLiteral("Node 1, object 1018h sub-index 1: No answer\n"));
}

void tst_CrowdedBus::scanSaysWhatItDoesNotKnow()
{
    const Result result = run({QStringLiteral("scan"), QStringLiteral("--bus"),
                               writeVehicle(R"({"kind": "flood", "perSecond": 5000})")});
    QCOMPARE(result.status, 4);
    QVERIFY2(result.output.contains(QStringLiteral("Node 1 answers\n")), qPrintable(result.output));
    QVERIFY2(result.errors.startsWith(QStringLiteral("Nothing is known of node ")),
             qPrintable(result.errors));
    QVERIFY2(result.errors.endsWith(
                 QStringLiteral(": requests or answers found no room on the bus. It is overloaded, or nobody "
                                "acknowledges; scan again when it is quieter.\n")),
             qPrintable(result.errors));
}

Result tst_CrowdedBus::snapshot(const QByteArray &faultsOfNode7, const QStringList &more) const
{
    return run(QStringList{QStringLiteral("snapshot"), QStringLiteral("--bus"), writeVehicle(faultsOfNode7),
                           QStringLiteral("--output"), m_folder->filePath(QStringLiteral("out.dxsnap")),
                           QStringLiteral("--quick"), QStringLiteral("--json")}
               + more);
}

void tst_CrowdedBus::snapshotMayMissNodes_data()
{
    QTest::addColumn<QByteArray>("faults");
    QTest::addColumn<QStringList>("more");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("errors");
    QTest::addColumn<bool>("isComplete");

    const QByteArray some = R"({"kind": "traffic", "percent": 50})";
    const QByteArray most = R"({"kind": "traffic", "percent": 98})";
    QTest::newRow("room") << some << QStringList() << 0 << QString() << true;
    QTest::newRow("full") << most << QStringList() << 4
                          << QStringLiteral(
                                 "The bus was full while nodes were looked for, so nodes may be missing. "
                                 "Find out who sends so much, and read again.\n")
                          << false;
    QTest::newRow("nobody is looked for")
        << most << QStringList{QStringLiteral("--node"), QStringLiteral("1")} << 0 << QString() << true;
}

void tst_CrowdedBus::snapshotMayMissNodes()
{
    QFETCH(QByteArray, faults);
    QFETCH(QStringList, more);
    const Result result = snapshot(faults, more);
    QFETCH(QString, errors);
    QVERIFY2(result.errors.startsWith(errors + QStringLiteral("Wrote ")), qPrintable(result.errors));
    QTEST(result.status, "status");
    const QJsonObject summary = QJsonDocument::fromJson(result.output.toUtf8()).object();
    QTEST(summary.value(QLatin1String("complete")).toBool(), "isComplete");
}

void tst_CrowdedBus::snapshotScanSaysWhatItDoesNotKnow()
{
    m_bitRate = 10000; // that few frames fill
    const Result result = snapshot(R"({"kind": "flood", "perSecond": 300})", {QStringLiteral("--scan")});
    QCOMPARE(result.status, 4);
    QVERIFY2(result.errors.startsWith(QStringLiteral("Nothing is known of node ")),
             qPrintable(result.errors));
    QVERIFY2(result.errors.contains(
                 QStringLiteral(": requests or answers found no room on the bus. It is overloaded, "
                                "or nobody acknowledges; scan again when it is quieter.\n")),
             qPrintable(result.errors));
    const QJsonObject summary = QJsonDocument::fromJson(result.output.toUtf8()).object();
    QCOMPARE(summary.value(QLatin1String("complete")), QJsonValue(false));
}

void tst_CrowdedBus::checkupScanSaysWhatItDoesNotKnow()
{
    m_bitRate = 10000;
    const Result result
        = run({QStringLiteral("checkup"), QStringLiteral("--scan"), QStringLiteral("--quick"),
               QStringLiteral("--bus"), writeVehicle(R"({"kind": "flood", "perSecond": 300})")});
    QVERIFY2(result.errors.startsWith(QStringLiteral("Nothing is known of node ")),
             qPrintable(result.errors));
    QVERIFY2(result.status != 0, qPrintable(result.output));
}

QTEST_GUILESS_MAIN(tst_CrowdedBus)
#include "tst_crowdedbus.moc"
