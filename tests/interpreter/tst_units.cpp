// SPDX-License-Identifier: MIT
#include <interpreter/units.h>

#include <QTest>
#include <QVariant>

class tst_Units : public QObject
{
    Q_OBJECT

private slots:
    void formatsEveryKey_data();
    void formatsEveryKey();
    void keysAreExact_data();
    void keysAreExact();
    void writesTwoDecimals_data();
    void writesTwoDecimals();
    void signedValuesKeepTheirSign_data();
    void signedValuesKeepTheirSign();
    void withoutUnitAValueIsUnsigned_data();
    void withoutUnitAValueIsUnsigned();
};

namespace {

QString shown(const char *key, const QVariant &value)
{
    return formatWithUnit(findUnitFormat(QString::fromUtf8(key)), value);
}

} // namespace

void tst_Units::formatsEveryKey_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("ms") << QStringLiteral("12.35 s");
    QTest::newRow("mA") << QStringLiteral("12.35 A");
    QTest::newRow("mAh") << QStringLiteral("12.35 Ah");
    QTest::newRow("Ah") << QStringLiteral("12346.00 Ah");
    QTest::newRow("mAh/day") << QStringLiteral("12.35 Ah/day");
    QTest::newRow("Wh") << QStringLiteral("12346.00 Wh");
    QTest::newRow("mWh") << QStringLiteral("12.35 Wh");
    QTest::newRow("Hz") << QStringLiteral("123.46 Hz");
    QTest::newRow("mOhm") << QStringLiteral("12.35 Ohm");
    QTest::newRow("mV") << QStringLiteral("12.35 V");
    QTest::newRow("degree") << QStringLiteral("12.35 degree");
    QTest::newRow("m") << QStringLiteral("12346.00 m");
    QTest::newRow("mm") << QStringLiteral("12346.00 mm");
    QTest::newRow("N") << QStringLiteral("123.46 N");
    QTest::newRow("rpm") << QStringLiteral("12346.00 rpm");
    QTest::newRow("revolution") << QStringLiteral("12346.00 revolution");
    QTest::newRow("Nm") << QStringLiteral("123.46 Nm");
    QTest::newRow("km/h") << QStringLiteral("123.46 km/h");
    QTest::newRow("bpm") << QStringLiteral("123.46 bpm");
    QTest::newRow("%") << QStringLiteral("123.46 %");
    QTest::newRow("C") << QStringLiteral("1234.60 °C");
    QTest::newRow("C/min") << QStringLiteral("12.35 °C/min");
    QTest::newRow("day") << QStringLiteral("12346.00 days");
    QTest::newRow("min") << QStringLiteral("12346.00 minutes");
}

void tst_Units::formatsEveryKey()
{
    QFETCH(QString, text);

    QCOMPARE(shown(QTest::currentDataTag(), 12346u), text);
}

void tst_Units::keysAreExact_data()
{
    QTest::addColumn<QString>("key");

    QTest::newRow("empty") << QString();
    QTest::newRow("depends on the prefixes") << QStringLiteral("dep 6053h");
    QTest::newRow("other case") << QStringLiteral("mv");
    QTest::newRow("upper case") << QStringLiteral("MIN");
    QTest::newRow("leading blank") << QStringLiteral(" mV");
    QTest::newRow("line feed at the end") << QStringLiteral("mV\n");
    QTest::newRow("part of a key") << QStringLiteral("km");
    QTest::newRow("the header's word") << QStringLiteral("unit");
}

void tst_Units::keysAreExact()
{
    QFETCH(QString, key);

    QVERIFY(findUnitFormat(key) == nullptr);
    QCOMPARE(formatWithUnit(findUnitFormat(key), 12346u), QStringLiteral("12346"));
}

void tst_Units::writesTwoDecimals_data()
{
    QTest::addColumn<uint>("value");
    QTest::addColumn<QString>("text");

    QTest::newRow("zero") << 0u << QStringLiteral("0.00 V");
    QTest::newRow("less than shown") << 4u << QStringLiteral("0.00 V");
    QTest::newRow("rounded up") << 6u << QStringLiteral("0.01 V");
    QTest::newRow("one volt") << 1000u << QStringLiteral("1.00 V");
    QTest::newRow("rounded to whole") << 9996u << QStringLiteral("10.00 V");
    QTest::newRow("largest") << 0xFFFFFFFFu << QStringLiteral("4294967.29 V");
}

void tst_Units::writesTwoDecimals()
{
    QFETCH(uint, value);
    QFETCH(QString, text);

    QCOMPARE(shown("mV", value), text);
}

void tst_Units::signedValuesKeepTheirSign_data()
{
    QTest::addColumn<QVariant>("value");

    QTest::newRow("INTEGER16") << QVariant::fromValue<qint16>(-5000);
    QTest::newRow("INTEGER32") << QVariant::fromValue<qint32>(-5000);
    QTest::newRow("wider than needed") << QVariant::fromValue<qint64>(-5000);
    QTest::newRow("text of a file") << QVariant(QStringLiteral("-5000"));
}

void tst_Units::signedValuesKeepTheirSign()
{
    QFETCH(QVariant, value);

    QCOMPARE(shown("mA", value), QStringLiteral("-5.00 A"));
    QCOMPARE(shown("C", value), QStringLiteral("-500.00 °C"));
}

void tst_Units::withoutUnitAValueIsUnsigned_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");

    QTest::newRow("zero") << QVariant(0u) << QStringLiteral("0");
    QTest::newRow("largest") << QVariant(0xFFFFFFFFu) << QStringLiteral("4294967295");
    QTest::newRow("negative INTEGER32") << QVariant(-1) << QStringLiteral("4294967295");
    QTest::newRow("negative INTEGER16") << QVariant::fromValue<qint16>(-5) << QStringLiteral("4294967291");
    QTest::newRow("negative 64-bit") << QVariant::fromValue<qint64>(-5) << QStringLiteral("4294967291");
    QTest::newRow("no value") << QVariant() << QStringLiteral("0");
    QTest::newRow("no number") << QVariant(QStringLiteral("abc")) << QStringLiteral("0");
}

void tst_Units::withoutUnitAValueIsUnsigned()
{
    QFETCH(QVariant, value);
    QFETCH(QString, text);

    QCOMPARE(formatWithUnit(nullptr, value), text);
}

QTEST_APPLESS_MAIN(tst_Units)

#include "tst_units.moc"
