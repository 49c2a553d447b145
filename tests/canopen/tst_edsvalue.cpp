// SPDX-License-Identifier: MIT
#include <canopen/edsvalue.h>

#include <QtTest>

Q_DECLARE_METATYPE(CanOpen::DataType)

using namespace CanOpen;

/*! Numbers and values as electronic data sheets write them. */
class tst_EdsValue : public QObject
{
    Q_OBJECT

private slots:
    void numbers_data();
    void numbers();
    void numbersUpToABound();
    void hexNumbers();
    void values_data();
    void values();
    void noValues_data();
    void noValues();
    void limits_data();
    void limits();
    void limitThatLimitsNothing();
    void typesWithLimits();
};

void tst_EdsValue::numbers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("number"); // -1: none

    const auto row
        = [](const char *text, qint64 number) { QTest::newRow(text) << QString::fromLatin1(text) << number; };
    row("0", 0);
    row("17", 17);
    row("0x1f", 31);
    row("0X1F", 31);
    row("017", 15);
    row("9223372036854775807", std::numeric_limits<qint64>::max());
    row("", -1);
    row("0x", -1);
    row("08", -1);
    row("-1", -1);
    row("+1", -1);
    row(" 1", -1);
    row("1 ", -1);
    row("1h", -1);
    row("0x-1", -1);
    row("18446744073709551616", -1);
}

void tst_EdsValue::numbers()
{
    QFETCH(QString, text);
    QFETCH(qint64, number);
    const std::optional<quint64> parsed = parseEdsNumber(text);
    QCOMPARE(parsed ? static_cast<qint64>(*parsed) : -1, number);
}

void tst_EdsValue::numbersUpToABound()
{
    QVERIFY(parseEdsNumber(QStringLiteral("0x7F"), 127) == quint64(127));
    QVERIFY(!parseEdsNumber(QStringLiteral("0x80"), 127).has_value());
    QVERIFY(!parseEdsNumber(QStringLiteral("x"), 127).has_value());
}

void tst_EdsValue::hexNumbers()
{
    QVERIFY(isHexNumber(QStringLiteral("09afAF")));
    QVERIFY(!isHexNumber(QString()));
    QVERIFY(!isHexNumber(QStringLiteral("0x1")));
    QVERIFY(!isHexNumber(QStringLiteral("1 ")));
    QVERIFY(!isHexNumber(QStringLiteral("g")));
}

void tst_EdsValue::values_data()
{
    QTest::addColumn<DataType>("type");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("data");

    const auto row = [](const char *name, DataType type, const char *text, const char *data) {
        QTest::newRow(name) << type << QByteArray(text) << QByteArray(data);
    };
    row("decimal", DataType::Unsigned16, "258", "0201");
    row("hexadecimal", DataType::Unsigned16, "0x1f2E", "2e1f");
    row("hexadecimal with capital X", DataType::Unsigned16, "0X10", "1000");
    row("octal", DataType::Unsigned16, "0777", "ff01");
    row("zero", DataType::Unsigned16, "0", "0000");
    row("negative", DataType::Integer16, "-2", "feff");
    row("signed in two's complement", DataType::Integer16, "0xFFFE", "feff");
    row("lowest INTEGER8", DataType::Integer8, "-128", "80");
    row("highest UNSIGNED64", DataType::Unsigned64, "0xFFFFFFFFFFFFFFFF", "ffffffffffffffff");
    row("lowest INTEGER64", DataType::Integer64, "-0x8000000000000000", "0000000000000080");
    row("boolean", DataType::Boolean, "1", "01");
    row("real as fraction", DataType::Real32, "1.5", "0000c03f");
    row("real as bits", DataType::Real32, "0x3FC00000", "0000c03f");
    row("real, double", DataType::Real64, "-2.5", "00000000000004c0");
    row("node ID added", DataType::Unsigned32, "$NODEID+0x600", "07060000");
    row("node ID behind", DataType::Unsigned32, "0x600 + $NodeID", "07060000");
    row("node ID alone", DataType::Unsigned8, "$NODEID", "07");
    row("text", DataType::VisibleString, "DX-Pack 36/500", "44582d5061636b2033362f353030");
    row("text with = and ;", DataType::VisibleString, "a=b;c", "613d623b63");
    row("bytes", DataType::OctetString, "01 fF 7a", "01ff7a");
    row("bytes without blanks", DataType::OctetString, "01fF7a", "01ff7a");
    row("wide text", DataType::UnicodeString, "Ab", "41006200");
    row("empty text", DataType::VisibleString, "", "");
    row("with a plus", DataType::Integer16, "+5", "0500");
    row("minus zero", DataType::Unsigned16, "-0", "0000");
    row("blanks around a number", DataType::Unsigned16, " 5 ", "0500");
    row("domain", DataType::Domain, "0102", "0102");
    row("node ID in octal sum", DataType::Unsigned16, "$NODEID+010", "0f00");
}

void tst_EdsValue::values()
{
    QFETCH(DataType, type);
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, data);
    const std::optional<QByteArray> encoded = encodeEdsValue(type, QString::fromLatin1(text), 7);
    QVERIFY(encoded.has_value());
    QCOMPARE(encoded->toHex(), data);
}

void tst_EdsValue::noValues_data()
{
    QTest::addColumn<DataType>("type");
    QTest::addColumn<QString>("text");

    const auto row = [](const char *name, DataType type, const char *text) {
        QTest::newRow(name) << type << QString::fromLatin1(text);
    };
    row("too large", DataType::Unsigned8, "256");
    row("negative", DataType::Unsigned8, "-1");
    row("below", DataType::Integer8, "-129");
    row("beyond the two's complement", DataType::Integer8, "0x100");
    row("truth beyond 1", DataType::Boolean, "2");
    row("blank between", DataType::Unsigned8, "1 2");
    row("no octal", DataType::Unsigned8, "08");
    row("two signs", DataType::Integer16, "--1");
    row("beyond 64 bits", DataType::Unsigned64, "0x10000000000000000");
    row("empty", DataType::Unsigned8, "");
    row("product", DataType::Unsigned32, "$NODEID*2");
    row("difference", DataType::Unsigned32, "$NODEID-2");
    row("sum of three", DataType::Unsigned32, "1+$NODEID+2");
    row("node ID twice", DataType::Unsigned32, "$NODEID+$NODEID");
    row("sum beyond 64 bits", DataType::Unsigned64, "$NODEID+0xFFFFFFFFFFFFFFFF");
    row("half of a byte", DataType::OctetString, "012");
    row("no digits", DataType::Domain, "0g");
    row("larger than any REAL32", DataType::Real32, "1e99");
    row("bits of a REAL64", DataType::Real32, "0x100000000");
    row("infinite", DataType::Real64, "inf");
    row("no number", DataType::Real64, "nan");
}

void tst_EdsValue::noValues()
{
    QFETCH(DataType, type);
    QFETCH(QString, text);
    QVERIFY(!encodeEdsValue(type, text, 7).has_value());
}

void tst_EdsValue::limits_data()
{
    QTest::addColumn<DataType>("type");
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("limit");

    const auto row = [](const char *name, DataType type, const char *text, qint64 limit) {
        QTest::newRow(name) << type << QString::fromLatin1(text) << limit;
    };
    row("negative", DataType::Integer16, "-10", -10);
    row("lowest in two's complement", DataType::Integer16, "0x8000", -32768);
    row("highest in two's complement", DataType::Integer16, "0x7FFF", 32767);
    row("unsigned", DataType::Unsigned16, "0x8000", 32768);
    row("lowest INTEGER64", DataType::Integer64, "0x8000000000000000", std::numeric_limits<qint64>::min());
    row("with the node ID", DataType::Unsigned32, "$NODEID+0x180", 0x187);
}

void tst_EdsValue::limits()
{
    QFETCH(DataType, type);
    QFETCH(QString, text);
    QFETCH(qint64, limit);
    std::optional<qint64> read;
    QVERIFY(readEdsLimit(type, text, 7, &read));
    QVERIFY(read.has_value());
    QCOMPARE(*read, limit);
    QVERIFY(!readEdsLimit(type, text + QLatin1Char('x'), 7, &read));
}

void tst_EdsValue::limitThatLimitsNothing()
{
    std::optional<qint64> read;
    QVERIFY(readEdsLimit(DataType::Unsigned64, QStringLiteral("0xFFFFFFFFFFFFFFFF"), 7, &read));
    QVERIFY(!read.has_value());
}

void tst_EdsValue::typesWithLimits()
{
    QVERIFY(hasEdsLimits(DataType::Boolean));
    QVERIFY(hasEdsLimits(DataType::Unsigned64));
    QVERIFY(!hasEdsLimits(DataType::Real32));
    QVERIFY(!hasEdsLimits(DataType::Real64));
    QVERIFY(!hasEdsLimits(DataType::VisibleString));
    QVERIFY(!hasEdsLimits(DataType::Domain));
}

QTEST_GUILESS_MAIN(tst_EdsValue)
#include "tst_edsvalue.moc"
