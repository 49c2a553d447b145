// SPDX-License-Identifier: MIT
#include "program.h"

#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

/*! What the command line says of devices that break the rules: nothing is lost without a word. */
class tst_ReadFaults : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void healthyVehicles_data();
    void healthyVehicles();
    void faults_data();
    void faults();
    void foreignClientLosesNothing();
    void foreignClientThatIsInTheWay();
    void objectsThatAreNotThereAreNoFailure();
    void wholeNodeFails();
    void showSaysItToo();
    void stopIsSaidOnce();

private:
    QString writeVehicle(const QByteArray &faults) const;
    Result read(const QString &vehicle, const QStringList &more = {}) const;
    static QString lineOf(const Result &result, const QString &beginning);

    std::unique_ptr<QTemporaryDir> m_folder;
};

/*! Node 1 is healthy, node 7 has the faults; both have the shipped dictionary of the bus controller. */
QString tst_ReadFaults::writeVehicle(const QByteArray &faults) const
{
    const QString folder = m_folder->path() + QLatin1Char('/');
    QFile::copy(QStringLiteral(VEHICLE_FOLDER "/pedelec-controller.dcf"),
                folder + QStringLiteral("node.dcf"));
    QFile file(folder + QStringLiteral("vehicle.json"));
    if (file.open(QIODevice::WriteOnly)) {
        file.write("{ \"name\": \"test\", \"nodes\": ["
                   "{ \"id\": 1, \"dictionary\": \"node.dcf\", \"heartbeatMs\": 200 },"
                   "{ \"id\": 7, \"dictionary\": \"node.dcf\", \"heartbeatMs\": 200, \"faults\": ["
                   + faults + "] } ] }");
    }
    return file.fileName();
}

Result tst_ReadFaults::read(const QString &vehicle, const QStringList &more) const
{
    return run(QStringList{QStringLiteral("read"), QStringLiteral("--bus"),
                           QStringLiteral("simulated:") + vehicle, QStringLiteral("--bitrate"),
                           QStringLiteral("0"), QStringLiteral("--retries"), QStringLiteral("0")}
               + more);
}

QString tst_ReadFaults::lineOf(const Result &result, const QString &beginning)
{
    const QStringList lines = result.output.split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        if (line.startsWith(beginning))
            return line;
    }
    return QString();
}

void tst_ReadFaults::healthyVehicles_data()
{
    QTest::addColumn<QString>("vehicle");
    QTest::addColumn<QString>("total");

    QTest::newRow("pedelec") << QStringLiteral("pedelec") << QStringLiteral("Total: 7 nodes, ");
    QTest::newRow("full-bus") << QStringLiteral("full-bus") << QStringLiteral("Total: 14 nodes, ");
}

void tst_ReadFaults::healthyVehicles()
{
    QFETCH(QString, vehicle);
    QFETCH(QString, total);
    const Result result = read(vehicle);
    QCOMPARE(result.status, 0);
    QCOMPARE(result.errors, QString());
    const QStringList lines = result.output.trimmed().split(QLatin1Char('\n'));
    for (const QString &line : lines)
        QVERIFY2(line.contains(QStringLiteral(" objects not there, 0 failed")), qPrintable(line));
    QVERIFY2(lines.last().startsWith(total), qPrintable(lines.last()));
}

void tst_ReadFaults::faults_data()
{
    QTest::addColumn<QByteArray>("faults");
    QTest::addColumn<QString>("counts"); // of node 7
    QTest::addColumn<QString>("errors"); // as far as they are the same for all objects

    QTest::newRow("wrong toggle bit")
        << QByteArray(R"({"kind": "segmented", "object": "1018sub1"},
                         {"kind": "wrongToggle", "object": "1018sub1"})")
        << QStringLiteral("49 values read, 150 objects not there, 1 failed")
        << QStringLiteral(
               "Node 7, object 1018h sub-index 1: The toggle bit did not alternate (0503 0000h)\n");
    QTest::newRow("wrong announced size")
        << QByteArray(R"({"kind": "segmented", "object": "1018sub1"},
                         {"kind": "sizeBits", "size": 9, "object": "1018sub1"})")
        << QStringLiteral("49 values read, 150 objects not there, 1 failed")
        << QStringLiteral("Node 7, object 1018h sub-index 1: There are more bytes than the data type has "
                          "(0607 0012h)\n");
    QTest::newRow("always four bytes")
        << QByteArray(R"({"kind": "wrongWidth", "bytes": 4})")
        << QStringLiteral("18 values read, 150 objects not there, 32 failed")
        << QStringLiteral("Node 7, object 1001h sub-index 0: There are more bytes than the data type has "
                          "(0607 0012h)\n");
    QTest::newRow("strange abort codes")
        << QByteArray(R"({"kind": "sdoAbort", "code": "0x12345678", "object": "1001"},
                         {"kind": "sdoAbort", "code": "0x06040043", "object": "1018sub2"},
                         {"kind": "sdoAbort", "code": "0xFFFFFFFF", "object": "1018sub3"})")
        << QStringLiteral("47 values read, 150 objects not there, 3 failed")
        << QStringLiteral("Node 7, object 1001h sub-index 0: Abort code 1234 5678h\n"
                          "Node 7, object 1018h sub-index 2: The parameter is incompatible (0604 0043h)\n"
                          "Node 7, object 1018h sub-index 3: General error (0800 0000h)\n");
    QTest::newRow("refused half way")
        << QByteArray(R"({"kind": "segmented", "object": "1018sub4"},
                         {"kind": "abortMidTransfer", "code": "0x06060000", "afterSegments": 0,
                          "object": "1018sub4"})")
        << QStringLiteral("49 values read, 150 objects not there, 1 failed")
        << QStringLiteral("Node 7, object 1018h sub-index 4: The access failed because of a hardware error "
                          "(0606 0000h)\n");
}

void tst_ReadFaults::faults()
{
    QFETCH(QByteArray, faults);
    QFETCH(QString, counts);
    QFETCH(QString, errors);
    const QString exported = m_folder->path() + QStringLiteral("/v.dxxml");
    const Result result = read(writeVehicle(faults), {QStringLiteral("--export"), exported});
    QCOMPARE(result.status, 7);
    QVERIFY2(lineOf(result, QStringLiteral("Node 7:")).endsWith(counts), qPrintable(result.output));
    QVERIFY2(lineOf(result, QStringLiteral("Node 1:"))
                 .endsWith(QStringLiteral("50 values read, 150 objects not there, 0 failed")),
             qPrintable(result.output));
    QVERIFY2(result.errors.startsWith(errors), qPrintable(result.errors));
    // As many lines as failures, and what was read is saved.
    const QString failed = counts.section(QLatin1Char(' '), -2, -2);
    QCOMPARE(result.errors.count(QLatin1Char('\n')), failed.toInt());
    QVERIFY(readFile(exported).contains(QStringLiteral("<node nodeid=\"7\">")));
}

void tst_ReadFaults::foreignClientLosesNothing()
{
    const Result result = read(writeVehicle(R"({"kind": "foreignClient", "every": 3})"));
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.status, 0);
    QVERIFY2(lineOf(result, QStringLiteral("Node 7:"))
                 .endsWith(QStringLiteral("50 values read, 150 objects not there, 0 failed")),
             qPrintable(result.output));
}

void tst_ReadFaults::foreignClientThatIsInTheWay()
{
    const Result result
        = read(writeVehicle(R"({"kind": "segmented"}, {"kind": "foreignClient", "every": 1})"));
    QCOMPARE(result.status, 7);
    const QString hint
        = QStringLiteral("Another client is reading node 7. Objects of it may take long or fail; end "
                         "the other program, or take its adapter off the bus.\n");
    QVERIFY2(result.errors.startsWith(hint), qPrintable(result.errors));
    QCOMPARE(result.errors.count(hint), 1);
    QVERIFY2(result.errors.contains(
                 QStringLiteral("Node 7, object 1018h sub-index 1: Another client was using the node\n")),
             qPrintable(result.errors));
    QVERIFY2(lineOf(result, QStringLiteral("Node 7:"))
                 .endsWith(QStringLiteral(" 0 values read, 150 objects not there, 50 failed")),
             qPrintable(result.output));
}

void tst_ReadFaults::objectsThatAreNotThereAreNoFailure()
{
    const Result result = read(writeVehicle(R"({"kind": "sdoAbort", "code": "0x06020000", "object": "1001"},
                                               {"kind": "sdoAbort", "code": "0x06090011",
                                                "object": "1018sub4"})"));
    QCOMPARE(result.status, 0);
    QCOMPARE(result.errors, QString());
    const QString line = lineOf(result, QStringLiteral("Node 7:"));
    QVERIFY2(line.endsWith(QStringLiteral("48 values read, 152 objects not there, 0 failed")),
             qPrintable(line));
    QVERIFY2(line.contains(QStringLiteral("serial number -;")), qPrintable(line));
}

void tst_ReadFaults::wholeNodeFails()
{
    const Result result = read(writeVehicle(R"({"kind": "sdoAbort", "code": "0x08000022"})"));
    QCOMPARE(result.status, 7);
    const QString line = lineOf(result, QStringLiteral("Node 7:"));
    QCOMPARE(line, QStringLiteral("Node 7: device type not read, vendor not read, product not read, revision "
                                  "not read, serial number not read; 0 values read, 0 objects not there, "
                                  "200 failed"));
    QCOMPARE(result.errors.count(QLatin1Char('\n')), 200);
}

void tst_ReadFaults::showSaysItToo()
{
    const QString vehicle
        = writeVehicle(R"({"kind": "sdoAbort", "code": "0x08000022", "object": "6002sub1"})");
    const Result result = run({QStringLiteral("show"), QStringLiteral("--bus"),
                               QStringLiteral("simulated:") + vehicle, QStringLiteral("--bitrate"),
                               QStringLiteral("0"), QStringLiteral("--node"), QStringLiteral("7")});
    QCOMPARE(result.status, 7);
    QCOMPARE(result.errors, QStringLiteral("Node 7, object 6002h sub-index 1: The data cannot be transferred "
                                           "or stored in the present state of the device (0800 0022h)\n"));
}

void tst_ReadFaults::stopIsSaidOnce()
{
    const Result result = read(writeVehicle(R"({"kind": "sdoAbort", "code": "0x08000022", "object": "1001"},
                                               {"kind": "sdoSilent", "object": "1018sub2"})"));
    QCOMPARE(result.status, 4);
    QCOMPARE(
        result.errors,
        QStringLiteral("The read stopped at node 7, object 1018h sub-index 2, because it did not answer. "
                       "Values read until then: 53. A larger --timeout or more --retries help with slow "
                       "nodes.\n"
                       "Node 7, object 1001h sub-index 0: The data cannot be transferred or stored in "
                       "the present state of the device (0800 0022h)\n"));
    QVERIFY2(lineOf(result, QStringLiteral("Node 7:"))
                 .endsWith(QStringLiteral("3 values read, 0 objects not there, 2 failed")),
             qPrintable(result.output));
}

QTEST_GUILESS_MAIN(tst_ReadFaults)
#include "tst_readfaults.moc"
