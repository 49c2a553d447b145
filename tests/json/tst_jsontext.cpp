// SPDX-License-Identifier: MIT
#include <json/jsontext.h>

#include <QtTest>

#include <cmath>
#include <limits>

class tst_JsonText : public QObject
{
    Q_OBJECT

private slots:
    void membersStandInTheOrderOfWriting();
    void listsAndObjectsNest();
    void lineBreaksStandBeforeTheValue();
    void numbersKeepAllDigits();
    void whatIsNoNumberIsNull();
    void textsAreEscaped();
    void emptyListHasNothing();
};

void tst_JsonText::membersStandInTheOrderOfWriting()
{
    JsonText json;
    json.beginObject();
    json.write("z", QStringLiteral("first"));
    json.write("a", qint64(2));
    json.writeBoolean("m", true);
    json.endObject();
    QCOMPARE(json.bytes(), QByteArray("{\"z\":\"first\",\"a\":2,\"m\":true}"));
}

void tst_JsonText::listsAndObjectsNest()
{
    JsonText json;
    json.beginObject();
    json.beginArray("list");
    json.beginObject();
    json.endObject();
    json.beginObject();
    json.writeBoolean("b", false);
    json.endObject();
    json.endArray();
    json.write("after", qint64(1));
    json.endObject();
    QCOMPARE(json.bytes(), QByteArray("{\"list\":[{},{\"b\":false}],\"after\":1}"));
}

void tst_JsonText::lineBreaksStandBeforeTheValue()
{
    JsonText json;
    json.beginArray();
    json.breakLine();
    json.write(nullptr, qint64(1));
    json.breakLine();
    json.write(nullptr, qint64(2));
    json.write(nullptr, qint64(3));
    json.endArray();
    QCOMPARE(json.bytes(), QByteArray("[\n1,\n2,3]"));
}

void tst_JsonText::numbersKeepAllDigits()
{
    JsonText json;
    json.beginArray();
    json.write(nullptr, std::numeric_limits<quint64>::max());
    json.write(nullptr, std::numeric_limits<qint64>::min());
    json.write(nullptr, 0.1);
    json.write(nullptr, 1e300);
    json.endArray();
    QCOMPARE(json.bytes(), QByteArray("[18446744073709551615,-9223372036854775808,0.1,1e+300]"));
}

void tst_JsonText::whatIsNoNumberIsNull()
{
    JsonText json;
    json.beginArray();
    json.write(nullptr, std::nan(""));
    json.write(nullptr, std::numeric_limits<double>::infinity());
    json.endArray();
    QCOMPARE(json.bytes(), QByteArray("[null,null]"));
}

void tst_JsonText::textsAreEscaped()
{
    JsonText json;
    json.beginObject();
    json.write("k\"", QString::fromUtf8("a\"b\\c\n\x01 \u00e4\u4e2d") + QChar::fromLatin1('\0'));
    json.endObject();
    QCOMPARE(json.bytes(), QByteArray("{\"k\\\"\":\"a\\\"b\\\\c\\n\\u0001 \xc3\xa4\xe4\xb8\xad\\u0000\"}"));
}

void tst_JsonText::emptyListHasNothing()
{
    JsonText json;
    json.beginArray();
    json.endArray();
    QCOMPARE(json.bytes(), QByteArray("[]"));
}

QTEST_GUILESS_MAIN(tst_JsonText)
#include "tst_jsontext.moc"
