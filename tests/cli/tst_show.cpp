// SPDX-License-Identifier: MIT
#include "program.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <memory>

namespace {

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

/*! A battery pack with a security unit in one node, and a node without components. */
QByteArray smallVehicle()
{
    const QByteArray battery = object(0x1018, 0, 1) + object(0x1018, 1, 500) + object(0x6000, 0, 2)
                               + object(0x6000, 1, 6) + object(0x6000, 2, 10) + object(0x6002, 1, 0x8180)
                               + object(0x6003, 1, 0x204) + object(0x6100, 1, 0xA0) + object(0x6105, 0, 1)
                               + object(0x6105, 1, 701);
    return node(5, battery) + node(9, object(0x6005, 0, 7)) + node(5, QByteArray());
}

QJsonObject parse(const QString &output)
{
    return QJsonDocument::fromJson(output.toUtf8()).object();
}

} // namespace

/*! What `draxelctl show` prints. */
class tst_Show : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void printsTreeAndTables();
    void oneNode();
    void nodeWithoutComponents();
    void nodeThatIsNotThere();
    void vehicleWithoutComponents();
    void json();
    void jsonOfOneNode();
    void language();
    void languageOfACountry();
    void englishIsALanguage();
    void badFiles_data();
    void badFiles();
    void liveBus();
    void liveBusWithoutNode1();
    void stoppedRead();
    void fullDisk();

private:
    QString path(const char *name) const { return m_folder->path() + QLatin1Char('/') + QLatin1String(name); }
    QString writeBus(QByteArray nodes) const;
    QString vehicle() const { return writeExchange(path("v.dxxml"), smallVehicle()); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

/*! A simulated bus; DICTIONARY stands for the shipped dictionary of the bus controller. */
QString tst_Show::writeBus(QByteArray nodes) const
{
    QFile::copy(QStringLiteral(VEHICLE_FOLDER "/pedelec-controller.dcf"), path("node.dcf"));
    QFile file(path("vehicle.json"));
    if (file.open(QIODevice::WriteOnly)) {
        file.write("{ \"name\": \"test\", \"nodes\": ["
                   + nodes.replace("DICTIONARY", "\"dictionary\": \"node.dcf\", \"heartbeatMs\": 200")
                   + "] }");
    }
    return s("simulated:") + file.fileName();
}

void tst_Show::printsTreeAndTables()
{
    const Result result = run({s("show"), vehicle()});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.output, s("Draxel Network Components  Node-Id  DX FSA State\n"
                              "Battery Pack               5        Operating\n"
                              "Security unit              5        Operating\n"
                              "\n"
                              "Node-Id 5: Battery Pack, Security unit\n"
                              "\n"
                              "  Device Parameters (fixed)\n"
                              "    Vendor ID        Robatech AG\n"
                              "    no entry         no entry\n"
                              "\n"
                              "    Type of battery  Lithium Ion (Li-Ion) - carbon anode\n"
                              "\n"
                              "  Actual Values\n"
                              "    Device capability                   Device is a master capable\n"
                              "                                        Device is able to receive dynamic "
                              "limitation\n"
                              "    Device status                       nothing active\n"
                              "    Draxel FSA state                    Operating\n"
                              "    Battery Status                      Error\n"
                              "    Battery Pack 1 highest temperature  70.10 °C\n"));
    QCOMPARE(result.status, 0);
}

void tst_Show::oneNode()
{
    const QString name
        = writeExchange(path("v.dxxml"), node(1, object(0x6000, 0, 1) + object(0x6000, 1, 4))
                                             + node(5, object(0x6000, 0, 1) + object(0x6000, 1, 6)));
    const Result result = run({s("show"), name, s("--node"), s("1")});
    QCOMPARE(result.output, s("Draxel Network Components  Node-Id  DX FSA State\n"
                              "Draxel Controller          1\n"
                              "\n"
                              "Node-Id 1: Draxel Controller\n"));
    QCOMPARE(result.status, 0);
}

void tst_Show::nodeWithoutComponents()
{
    const Result result = run({s("show"), vehicle(), s("--node=9")});
    QCOMPARE(result.output, s("Draxel Network Components  Node-Id  DX FSA State\n"
                              "\n"
                              "Node-Id 9\n"
                              "\n"
                              "  Device Parameters (fixed)\n"
                              "    Device unique part number  7\n"));
    QCOMPARE(result.status, 0);
}

void tst_Show::nodeThatIsNotThere()
{
    const QString name = vehicle();
    const Result result = run({s("show"), name, s("--node"), s("6")});
    QCOMPARE(result.status, 3);
    QCOMPARE(result.output, QString());
    QCOMPARE(result.errors, s("There is no node 6 in %1.\n").arg(name));
}

void tst_Show::vehicleWithoutComponents()
{
    const QString name = writeExchange(path("v.dxxml"), node(5, object(0x1000, 0, 1)));
    const Result result = run({s("show"), name});
    QCOMPARE(result.status, 0);
    QCOMPARE(result.output, QString());
    QCOMPARE(result.errors, s("There is no component in %1.\n").arg(name));
}

void tst_Show::json()
{
    const Result result = run({s("show"), vehicle(), s("--json")});
    QCOMPARE(result.status, 0);
    QCOMPARE(result.errors, QString());

    QList<int> ids;
    const QJsonArray nodes = parse(result.output).value(s("nodes")).toArray();
    for (const QJsonValue &entry : nodes)
        ids.append(entry.toObject().value(s("id")).toInt());
    // Each once, also those without components; the closing tags of the file made node 0.
    QCOMPARE(ids, QList<int>({5, 0, 9}));
    QCOMPARE(nodes.at(1).toObject().value(s("components")).toArray().size(), 0);
    QCOMPARE(nodes.at(2).toObject().value(s("components")).toArray().size(), 0);
}

void tst_Show::jsonOfOneNode()
{
    const Result result = run({s("show"), vehicle(), s("--json"), s("--node"), s("5")});
    QCOMPARE(result.status, 0);
    const QJsonArray nodes = parse(result.output).value(s("nodes")).toArray();
    QCOMPARE(nodes.size(), 1);
    const QJsonObject node = nodes.at(0).toObject();
    QCOMPARE(node.keys(),
             QStringList({s("components"), s("id"), s("nmtState"), s("parameters"), s("values")}));
    QVERIFY(node.value(s("nmtState")).isNull());

    const QJsonArray components = node.value(s("components")).toArray();
    QCOMPARE(components.size(), 2);
    QCOMPARE(components.at(0).toObject(),
             QJsonObject({{s("name"), s("Battery Pack")},
                          {s("state"), s("Operating")},
                          {s("tooltip"), s("Object: 0x6002, Value: 33152 | 0x8180")}}));
    QCOMPARE(components.at(1).toObject().value(s("name")).toString(), s("Security unit"));

    const QJsonArray parameters = node.value(s("parameters")).toArray();
    QCOMPARE(parameters.size(), 3); // the empty rows are left out
    QCOMPARE(parameters.at(0).toObject(),
             QJsonObject({{s("name"), s("Vendor ID")},
                          {s("text"), s("Robatech AG")},
                          {s("tooltip"), s("Object: 0x1018, Value: 500 | 0x1F4")},
                          {s("colour"), QJsonValue::Null}}));

    const QJsonArray values = node.value(s("values")).toArray();
    QCOMPARE(values.size(), 5);
    QCOMPARE(values.at(0).toObject(),
             QJsonObject(
                 {{s("name"), s("Device capability")},
                  {s("text"), s("Device is a master capable\nDevice is able to receive dynamic limitation")},
                  {s("entries"), QJsonArray({s("Device is a master capable"),
                                             s("Device is able to receive dynamic limitation")})},
                  {s("tooltip"), s("Object: 0x6005, Value: 516 | 0x204")},
                  {s("colour"), QJsonValue::Null}}));
    QCOMPARE(values.at(3).toObject(), QJsonObject({{s("name"), s("Battery Status")},
                                                   {s("text"), s("Error")},
                                                   {s("tooltip"), s("Object: 0x6002, Value: 33152 | 0x8180")},
                                                   {s("colour"), s("red")}}));
    QCOMPARE(values.at(4).toObject().value(s("text")).toString(), s("70.10 °C"));
    QCOMPARE(values.at(4).toObject().value(s("colour")).toString(), s("red"));
}

void tst_Show::language()
{
    const Result result = run({s("show"), vehicle(), s("--language"), s("de")});
    QCOMPARE(result.status, 0);
    QVERIFY2(result.output.startsWith(s("Draxel Network Components  Knoten-ID")), qPrintable(result.output));
    QVERIFY2(result.output.contains(s("\nAkkupack ")), qPrintable(result.output));
    QVERIFY2(result.output.contains(s("\n  Istwerte\n")), qPrintable(result.output));
}

void tst_Show::languageOfACountry()
{
    const QStringList arguments{s("show"), vehicle(), s("--language")};
    QCOMPARE(run(arguments + QStringList(s("de-AT"))).output, run(arguments + QStringList(s("de"))).output);
}

void tst_Show::englishIsALanguage()
{
    const QStringList arguments{s("show"), vehicle()};
    const Result result = run(arguments + QStringList({s("--language"), s("en")}));
    QCOMPARE(result.status, 0);
    QCOMPARE(result.output, run(arguments).output);
}

void tst_Show::badFiles_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("sentence"); // %1 is the file
    QTest::newRow("missing") << QByteArray() << s("The file %1 cannot be read: ");
    QTest::newRow("no XML") << QByteArray("hello")
                            << s("The file %1 is neither a snapshot nor an exchange file: ");
    QTest::newRow("another document")
        << QByteArray("<html></html>") << s("The file %1 is neither a snapshot nor an exchange file: ");
    QTest::newRow("broken off") << QByteArray("<nodes><node nodeid=\"5\">")
                                << s("The file %1 is neither a snapshot nor an exchange file: ");
}

void tst_Show::badFiles()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, sentence);
    const QString name = path("bad.dxxml");
    if (!content.isEmpty()) {
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    const Result result = run({s("show"), name});
    QCOMPARE(result.status, 5);
    QCOMPARE(result.output, QString());
    QVERIFY2(result.errors.startsWith(sentence.arg(name)), qPrintable(result.errors));
}

void tst_Show::liveBus()
{
    const Result result = run({s("show"), s("--bus"), s("simulated:pedelec"), s("--node"), s("1")});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.status, 0);
    QVERIFY2(result.output.startsWith(s("Draxel Network Components  Node-Id  NMT-State    DX FSA State\n"
                                        "Draxel Controller          1        Operational  Operating\n")),
             qPrintable(result.output));
}

void tst_Show::liveBusWithoutNode1()
{
    const Result result
        = run({s("show"), s("--bus"), writeBus("{ \"id\": 5, DICTIONARY }"), s("--bitrate"), s("0")});
    QCOMPARE(result.status, 3);
    QCOMPARE(result.output, QString());
    QVERIFY2(result.errors.startsWith(s("Nothing was read: node 1, the bus controller, sent no heartbeat.")),
             qPrintable(result.errors));
}

void tst_Show::stoppedRead()
{
    const Result result = run({s("show"), s("--bus"),
                               writeBus("{ \"id\": 1, DICTIONARY },"
                                        "{ \"id\": 7, DICTIONARY, \"state\": \"stopped\" }"),
                               s("--bitrate"), s("0"), s("--retries"), s("0")});
    QVERIFY2(result.status == 4, qPrintable(result.errors));
    // What was read before is shown all the same.
    QVERIFY2(result.output.contains(s("\nDraxel Controller          1        Operational  Operating\n")),
             qPrintable(result.output));
    QVERIFY2(result.errors.startsWith(s("The read stopped at node 7, object 1000h sub-index 0,")),
             qPrintable(result.errors));
}

void tst_Show::fullDisk()
{
    if (!QFile::exists(s("/dev/full")))
        QSKIP("This system has no /dev/full");
    QProcess process;
    process.setStandardOutputFile(s("/dev/full"));
    process.start(QStringLiteral(DRAXELCTL), {s("show"), vehicle(), s("--json")});
    QVERIFY(process.waitForFinished(patience));
    QCOMPARE(process.exitCode(), 5);
    QCOMPARE(QString::fromUtf8(process.readAllStandardError()),
             s("draxelctl: Not all of the output could be written.\n"));
}

QTEST_GUILESS_MAIN(tst_Show)
#include "tst_show.moc"
