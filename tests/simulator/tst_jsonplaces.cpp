// SPDX-License-Identifier: MIT
#include <simulator/jsonplaces.h>

#include <QtTest>

using namespace Simulator;

/*! Where in a JSON file a key stands. */
class tst_JsonPlaces : public QObject
{
    Q_OBJECT

private slots:
    void keys();
    void lines_data();
    void lines();
    void repeatedKeysTakeNoTime();
    void textsThatAreNoJson_data();
    void textsThatAreNoJson();
};

namespace {

const char vehicle[] = "{\n" // line 1
                       "  \"name\": \"a \\\"quoted\\\" {name}, [1]\",\n"
                       "  \"nodes\": [\n" // 3
                       "    { \"id\": 1 },\n"
                       "    { \"id\": 2,\n" // 5
                       "      \"values\": {\n"
                       "        \"1000\": 5,\n"
                       "        \"a\\u001bb\":\n" // 8
                       "           6,\n"
                       "        \"1018sub1\": -1.5e3 },\n" // 10
                       "      \"faults\": [ [], [ true, {\n"
                       "         \"kind\": null } ] ] } ],\n"
                       "  \"faults\": [ ]\n" // 13
                       "}\n";

} // namespace

void tst_JsonPlaces::keys()
{
    QCOMPARE(jsonMember(QString(), QStringLiteral("nodes")), QStringLiteral("nodes"));
    QCOMPARE(jsonMember(QStringLiteral("nodes[1]"), QStringLiteral("id")), QStringLiteral("nodes[1].id"));
    QCOMPARE(jsonElement(QString(), QStringLiteral("nodes"), 3), QStringLiteral("nodes[3]"));
    QCOMPARE(jsonElement(QStringLiteral("nodes[1]"), QStringLiteral("faults"), 0),
             QStringLiteral("nodes[1].faults[0]"));
}

void tst_JsonPlaces::lines_data()
{
    QTest::addColumn<QString>("place");
    QTest::addColumn<int>("line");

    const auto row
        = [](const char *place, int line) { QTest::newRow(place) << QString::fromLatin1(place) << line; };
    row("name", 2);
    row("nodes", 3);
    row("nodes[0]", 4);
    row("nodes[0].id", 4);
    row("nodes[1].id", 5);
    row("nodes[1].values", 6);
    row("nodes[1].values.1000", 7);
    row("nodes[1].values.a\x1b"
        "b",
        9);
    row("nodes[1].values.1018sub1", 10);
    row("nodes[1].faults[1][1].kind", 12);
    row("faults", 13);
    // What is missing has the line of what should hold it.
    row("", 1);
    row("wheels", 1);
    row("nodes[0].dictionary", 4);
    row("nodes[1].dictionary", 5);
    row("nodes[2]", 3);
    row("nodes[11]", 3);
    row("name.x", 2);
}

void tst_JsonPlaces::lines()
{
    QFETCH(QString, place);
    QFETCH(int, line);
    QCOMPARE(jsonLine(vehicle, place), line);
}

void tst_JsonPlaces::repeatedKeysTakeNoTime()
{
    QByteArray text("{");
    for (int key = 0; key < 100000; ++key)
        text += "\"nodes\":[1],\n";
    text += "\"nodes\":[2]}";
    QCOMPARE(jsonLine(text, QStringLiteral("nodes[0].id")), 100001);
}

void tst_JsonPlaces::textsThatAreNoJson_data()
{
    QTest::addColumn<QByteArray>("text");

    for (const char *text : {"", "{", "[", "\"", "{\"", "{\"a", "{\"a\"", "{\"a\":", "[1,", "{]", "[}", "\\",
                             "\"\\", "{{{{", "[[[[", "{:", ",", "{\"a\" \"b\" \"c\"}", "[,,,"})
        QTest::newRow(qPrintable(QStringLiteral("'%1'").arg(QLatin1String(text)))) << QByteArray(text);
}

void tst_JsonPlaces::textsThatAreNoJson()
{
    QFETCH(QByteArray, text);
    QCOMPARE(jsonLine(text, QStringLiteral("a[0]")), 1);
}

QTEST_GUILESS_MAIN(tst_JsonPlaces)
#include "tst_jsonplaces.moc"
