// SPDX-License-Identifier: MIT
#include <json/jsondocument.h>
#include <json/jsonobject.h>

#include <QtTest>

#include <limits>

namespace {

/*! Hands the document's top object to \a look; returns what was found to be wrong. */
template<typename Look>
QString faultOf(const QByteArray &text, Look look)
{
    QString error;
    const std::optional<JsonDocument> document = JsonDocument::parse(text, &error);
    if (!document)
        return QStringLiteral("no JSON: ") + error;
    JsonFault fault;
    const JsonPlace top(&fault);
    look(JsonObject(document->root(), top));
    return fault.text;
}

} // namespace

class tst_JsonDocument : public QObject
{
    Q_OBJECT

private slots:
    void errorsHaveLineAndColumn_data();
    void errorsHaveLineAndColumn();
    void depthHasNoLimit();
    void longTextIsRefusedUnread();
    void membersAreReadByKind();
    void faultsHaveTheirPlace_data();
    void faultsHaveTheirPlace();
    void faultInAListHasItsNumbers();
    void listEndsAtItsFirstFault();
    void firstFaultStays();
    void nullCountsAsMissing();
    void wideNumbersKeepTheirDigits();
};

void tst_JsonDocument::errorsHaveLineAndColumn_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("error");
    const QString start = QStringLiteral("syntax error while parsing ");
    QTest::newRow("empty") << QByteArray("")
                           << QStringLiteral("line 1, column 1: ") + start
                                  + QStringLiteral(
                                      "value - unexpected end of input; expected '[', '{', or a literal");
    QTest::newRow("cut off") << QByteArray("{\n \"a\": 1")
                             << QStringLiteral("line 2, column 7: ") + start
                                    + QStringLiteral("object - unexpected end of input; expected '}'");
    QTest::newRow("something behind")
        << QByteArray("{}\n\n x")
        << QStringLiteral("line 3, column 2: ") + start
               + QStringLiteral("value - invalid literal; expected end of input");
    QTest::newRow("wrong UTF-8") << QByteArray("{\"a\": \"\xff\"}")
                                 << QStringLiteral("line 1, column 8: ") + start
                                        + QStringLiteral("value - invalid string: ill-formed UTF-8 byte");
    QTest::newRow("long text without end")
        << QByteArray("[\"") + QByteArray(100000, 'x')
        << QStringLiteral("line 1, column 100002: ") + start
               + QStringLiteral("value - invalid string: missing closing quote");
    QTest::newRow("number too large")
        << QByteArray("[1e999]") << QStringLiteral("number overflow parsing '1e999'");
}

void tst_JsonDocument::errorsHaveLineAndColumn()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, error);
    QString found;
    QVERIFY(!JsonDocument::parse(text, &found));
    QCOMPARE(found, error);
}

void tst_JsonDocument::depthHasNoLimit()
{
    constexpr int levels = 1000000;
    QString error;
    QVERIFY(JsonDocument::parse(QByteArray(levels, '[') + QByteArray(levels, ']'), &error));
    QVERIFY(!JsonDocument::parse(QByteArray(levels, '['), &error));
}

void tst_JsonDocument::longTextIsRefusedUnread()
{
    QString error;
    QVERIFY(!JsonDocument::parse(QByteArray(JsonDocument::maximumSize + 1, ' '), &error));
    QCOMPARE(error, QStringLiteral("More than 64 MB: far too much."));
}

void tst_JsonDocument::membersAreReadByKind()
{
    const QString fault = faultOf(R"({"n": 5, "t": "text", "b": true, "f": 1.5, "l": [{"n": 1}, {"n": 2}]})",
                                  [](const JsonObject &object) {
                                      QCOMPARE(object.integer("n", 0, 5), qint64(5));
                                      QCOMPARE(object.optionalInteger("n", 0, 5), std::optional<qint64>(5));
                                      QCOMPARE(object.text("t"), QStringLiteral("text"));
                                      QCOMPARE(object.boolean("b", false), true);
                                      QCOMPARE(object.number("f"), 1.5);
                                      QVector<qint64> numbers;
                                      object.forEachObject("l", [&numbers](const JsonObject &element) {
                                          numbers.append(element.integer("n", 0, 9));
                                      });
                                      QCOMPARE(numbers, (QVector<qint64>{1, 2}));
                                      QVERIFY(!object.has("other"));
                                      QVERIFY(!object.optionalInteger("other", 0, 5));
                                      QCOMPARE(object.optionalText("other"), QString());
                                      QCOMPARE(object.boolean("other", true), true);
                                  });
    QCOMPARE(fault, QString());
}

void tst_JsonDocument::faultsHaveTheirPlace_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("fault");
    QTest::newRow("missing") << QByteArray("{}") << QStringLiteral("n: This is missing.");
    QTest::newRow("no object") << QByteArray("[]") << QStringLiteral("An object, {...}, is wanted.");
    QTest::newRow("too high") << QByteArray("{\"n\": 6}")
                              << QStringLiteral("n: A whole number from -1 to 5 is wanted.");
    QTest::newRow("too low") << QByteArray("{\"n\": -2}")
                             << QStringLiteral("n: A whole number from -1 to 5 is wanted.");
    QTest::newRow("fraction") << QByteArray("{\"n\": 1.0}")
                              << QStringLiteral("n: A whole number from -1 to 5 is wanted.");
    QTest::newRow("text for a number")
        << QByteArray("{\"n\": \"1\"}") << QStringLiteral("n: A whole number from -1 to 5 is wanted.");
    QTest::newRow("number for a text")
        << QByteArray("{\"n\": 1, \"t\": 1}") << QStringLiteral("t: A text is wanted.");
    QTest::newRow("long text") << QByteArray("{\"n\": 1, \"t\": \"12345\"}")
                               << QStringLiteral("t: This text is too long.");
    QTest::newRow("no list") << QByteArray("{\"n\": 1, \"t\": \"1\", \"l\": {}}")
                             << QStringLiteral("l: A list, [...], is wanted.");
    QTest::newRow("missing list") << QByteArray("{\"n\": 1, \"t\": \"1\"}")
                                  << QStringLiteral("l: This is missing.");
    QTest::newRow("no boolean") << QByteArray("{\"n\": 1, \"t\": \"1\", \"l\": [], \"b\": 1}")
                                << QStringLiteral("b: true or false is wanted.");
    QTest::newRow("no number") << QByteArray("{\"n\": 1, \"t\": \"1\", \"l\": [], \"f\": \"1\"}")
                               << QStringLiteral("f: A number is wanted.");
}

void tst_JsonDocument::faultsHaveTheirPlace()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, fault);
    const QString found = faultOf(text, [](const JsonObject &object) {
        object.integer("n", -1, 5);
        object.text("t", 4);
        object.forEachObject("l", [](const JsonObject &) {});
        object.boolean("b", false);
        object.number("f");
    });
    QCOMPARE(found, fault);
}

void tst_JsonDocument::faultInAListHasItsNumbers()
{
    const QString found = faultOf(
        R"({"nodes": [{"entries": []}, {"entries": [{"n": 1}, {}]}]})", [](const JsonObject &object) {
            object.forEachObject("nodes", [](const JsonObject &node) {
                node.forEachObject("entries", [](const JsonObject &entry) { entry.integer("n", 0, 1); });
            });
        });
    QCOMPARE(found, QStringLiteral("nodes[1].entries[1].n: This is missing."));
}

void tst_JsonDocument::listEndsAtItsFirstFault()
{
    int seen = 0;
    const QString found = faultOf(R"({"l": [{"n": 1}, 5, {"n": 1}]})", [&seen](const JsonObject &object) {
        object.forEachObject("l", [&seen](const JsonObject &) { ++seen; });
    });
    QCOMPARE(found, QStringLiteral("l[1]: An object, {...}, is wanted."));
    QCOMPARE(seen, 1);
}

void tst_JsonDocument::firstFaultStays()
{
    const QString found = faultOf("{}", [](const JsonObject &object) {
        object.text("first");
        object.text("second");
    });
    QCOMPARE(found, QStringLiteral("first: This is missing."));
}

void tst_JsonDocument::nullCountsAsMissing()
{
    const QString found = faultOf(R"({"n": null})", [](const JsonObject &object) {
        QVERIFY(!object.has("n"));
        QVERIFY(!object.optionalInteger("n", 0, 1));
        object.integer("n", 0, 1);
    });
    QCOMPARE(found, QStringLiteral("n: This is missing."));
}

void tst_JsonDocument::wideNumbersKeepTheirDigits()
{
    const QString found = faultOf(R"({"n": 9007199254740993})", [](const JsonObject &object) {
        QCOMPARE(object.integer("n", 0, std::numeric_limits<qint64>::max()), qint64(9007199254740993));
    });
    QCOMPARE(found, QString());
}

QTEST_GUILESS_MAIN(tst_JsonDocument)
#include "tst_jsondocument.moc"
