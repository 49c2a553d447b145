// SPDX-License-Identifier: MIT
#include <QCryptographicHash>
#include <QFile>
#include <QMap>
#include <QTest>

#include <algorithm>

/*! The object description table as it ships: its bytes, and what its rows say. */
class tst_ObjectTable : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void hasWindowsLineEnds();
    void hasNoByteBeyondAsciiButTheDash();
    void isTheTableThatIsKnown();
    void startsWithTheHeader();
    void rowsHaveEightFields();
    void indicesAreUpperCaseHexadecimal();
    void countsOfUnits_data();
    void countsOfUnits();
    void rowsOfUnits_data();
    void rowsOfUnits();
    void onlyTwoRowsHaveLimits();
    void onlyOneRowHasAnAlternativeName();
    void fiveRowsDescribeSubIndices();
    void duplicatesAreKept();
    void indicesOfThreeDigitsAreKept();
    void slipsAreKept_data();
    void slipsAreKept();
    void firstAndLastRow();

private:
    QStringList indicesOf(const QByteArray &unit) const;

    QByteArray m_bytes;
    QList<QByteArray> m_lines; // without line ends, without the header
};

namespace {

bool isSubIndexRow(const QByteArray &line)
{
    return line.split(';').size() == 9;
}

QByteArray field(const QByteArray &line, int number)
{
    return line.split(';').value(number);
}

} // namespace

void tst_ObjectTable::initTestCase()
{
    QFile file(QStringLiteral(":/files/od.csv"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    m_bytes = file.readAll();
    m_lines = QByteArray(m_bytes).replace("\r\n", "\n").split('\n');
    QCOMPARE(m_lines.takeLast(), QByteArray());
    QCOMPARE(m_lines.size(), 520);
    m_lines.removeFirst();
}

QStringList tst_ObjectTable::indicesOf(const QByteArray &unit) const
{
    QStringList indices;
    for (const QByteArray &line : m_lines) {
        if (!isSubIndexRow(line) && field(line, 3) == unit)
            indices.append(QString::fromLatin1(field(line, 0)));
    }
    return indices;
}

void tst_ObjectTable::hasWindowsLineEnds()
{
    QCOMPARE(m_bytes.count("\r\n"), 520);
    QCOMPARE(m_bytes.count('\n'), 520);
    QCOMPARE(m_bytes.count('\r'), 520);
    QVERIFY(m_bytes.endsWith(";x\r\n"));
}

void tst_ObjectTable::hasNoByteBeyondAsciiButTheDash()
{
    int dashes = 0;
    for (const char character : m_bytes) {
        const auto byte = static_cast<uchar>(character);
        if (byte == 0x96)
            ++dashes;
        else
            QVERIFY2(byte == '\r' || byte == '\n' || (byte >= ' ' && byte <= '~'),
                     QByteArray::number(byte, 16).constData());
    }
    QCOMPARE(dashes, 4);
}

void tst_ObjectTable::isTheTableThatIsKnown()
{
    // Any change of the table is wanted here too: names and order have no other test for every row.
    QCOMPARE(QCryptographicHash::hash(m_bytes, QCryptographicHash::Sha256).toHex(),
             QByteArray("98f82b5b0aa4589ef936cdbba042fb2c6421014572ecbf1e7313292c26092635"));
}

void tst_ObjectTable::startsWithTheHeader()
{
    QVERIFY(m_bytes.startsWith("Object;CiA Description;Description2;unit;minVal;maxVal;;x\r\n"));
}

void tst_ObjectTable::rowsHaveEightFields()
{
    for (const QByteArray &line : m_lines) {
        const QList<QByteArray> fields = line.split(';');
        QVERIFY2(fields.size() == 8 || isSubIndexRow(line), line.constData());
        QVERIFY2(!fields[1].isEmpty(), line.constData());
        QVERIFY2(fields[fields.size() - 2].isEmpty(), line.constData());
        QCOMPARE(fields.last(), QByteArray("x"));
    }
}

void tst_ObjectTable::indicesAreUpperCaseHexadecimal()
{
    for (const QByteArray &line : m_lines) {
        const QByteArray index = field(line, 0);
        bool isNumber = false;
        const uint number = index.toUInt(&isNumber, 16);
        QVERIFY2(isNumber, line.constData());
        QCOMPARE(QByteArray::number(number, 16).toUpper(), index);
    }
}

void tst_ObjectTable::countsOfUnits_data()
{
    QTest::addColumn<int>("count");

    QTest::newRow("mA") << 18;
    QTest::newRow("dep 6053h") << 18;
    QTest::newRow("mV") << 17;
    QTest::newRow("%") << 9;
    QTest::newRow("C") << 9;
    QTest::newRow("min") << 6;
    QTest::newRow("ms") << 5;
    QTest::newRow("mWh") << 4;
    QTest::newRow("mAh") << 3;
    QTest::newRow("Ah") << 2;
    QTest::newRow("Wh") << 2;
    QTest::newRow("Hz") << 1;
    QTest::newRow("mAh/day") << 1;
    QTest::newRow("mOhm") << 1;
}

void tst_ObjectTable::countsOfUnits()
{
    QFETCH(int, count);

    QCOMPARE(indicesOf(QTest::currentDataTag()).size(), count);

    // 423 rows without a unit, the five rows of sub-indices among them
    QCOMPARE(indicesOf(QByteArray()).size(), 418);
    QCOMPARE(m_lines.size(), 519);
}

void tst_ObjectTable::rowsOfUnits_data()
{
    QTest::addColumn<QString>("indices");

    QTest::newRow("mA") << QStringLiteral(
        "6022 6023 6024 6025 603A 603C 603E 603F 6041 604A 604B 604C 604E 6064 "
        "6065 6070 60A3 60B1");
    QTest::newRow("dep 6053h") << QStringLiteral(
        "6011 6012 6013 6014 6015 6016 6017 6018 6019 6030 6031 6032 6033 "
        "6034 6035 6036 6037 6038");
    QTest::newRow("mV") << QStringLiteral(
        "6008 6020 6026 6027 6039 6040 6046 6047 6066 6067 6071 60A1 60A2 60B0 "
        "6126 6127 618C");
    QTest::newRow("%") << QStringLiteral("6164 6176 618E 651C 651D 6623 6624 6724 6725");
    QTest::newRow("C") << QStringLiteral("6010 6042 6105 6120 6121 6122 6123 6124 6125");
    QTest::newRow("min") << QStringLiteral("6043 6044 6177 6178 6601 6602");
    QTest::newRow("ms") << QStringLiteral("1017 603B 603D 604D 604F");
    QTest::newRow("mWh") << QStringLiteral("6102 6108 6160 6162");
    QTest::newRow("mAh") << QStringLiteral("6103 6161 6163");
    QTest::newRow("Ah") << QStringLiteral("6179 617A");
    QTest::newRow("Wh") << QStringLiteral("617B 617C");
    QTest::newRow("Hz") << QStringLiteral("6050");
    QTest::newRow("mAh/day") << QStringLiteral("6188");
    QTest::newRow("mOhm") << QStringLiteral("6051");
}

void tst_ObjectTable::rowsOfUnits()
{
    QFETCH(QString, indices);

    QCOMPARE(indicesOf(QTest::currentDataTag()).join(QLatin1Char(' ')), indices);
}

void tst_ObjectTable::onlyTwoRowsHaveLimits()
{
    QList<QByteArray> rows;
    for (const QByteArray &line : m_lines) {
        if (!isSubIndexRow(line) && !(field(line, 4).isEmpty() && field(line, 5).isEmpty()))
            rows.append(line);
    }
    QCOMPARE(rows, (QList<QByteArray>{"6105;Battery pack temperature;;C;150;700;;x",
                                      "6164;Relative battery Wh capacity;;%;1000;25000;;x"}));
}

void tst_ObjectTable::onlyOneRowHasAnAlternativeName()
{
    QList<QByteArray> rows;
    for (const QByteArray &line : m_lines) {
        if (!isSubIndexRow(line) && !field(line, 2).isEmpty())
            rows.append(line);
    }
    QCOMPARE(rows, QList<QByteArray>{"6008;Device rated voltage;Nominal voltage;mV;;;;x"});
}

void tst_ObjectTable::fiveRowsDescribeSubIndices()
{
    const int record = m_lines.indexOf("62E8;MCU 1 actual motor values;;;;;;x");
    QVERIFY(record > 0);
    QCOMPARE(m_lines.mid(record + 1, 6),
             (QList<QByteArray>{
                 "62E8;1;MCU 1 actual motor current;;;;;;x", "62E8;2;MCU 1 actual motor speed;;;;;;x",
                 "62E8;3;MCU 1 actual motor position;;;;;;x", "62E8;4;MCU 1 actual motor temperature;;;;;;x",
                 "62E8;5;MCU 1 actual LEV speed;;;;;;x", "62E9;MCU 2 actual motor ??values;;;;;;x"}));
    QCOMPARE(std::count_if(m_lines.cbegin(), m_lines.cend(), isSubIndexRow), 5);
}

void tst_ObjectTable::duplicatesAreKept()
{
    QMap<QByteArray, int> counts;
    for (const QByteArray &line : m_lines)
        ++counts[field(line, 0)];

    QList<QByteArray> repeated;
    for (auto count = counts.cbegin(); count != counts.cend(); ++count) {
        if (count.value() == 2)
            repeated.append(count.key());
    }
    QCOMPARE(repeated,
             (QList<QByteArray>{"60AA", "60AB", "60AC", "60AD", "60F0", "60F1", "60F2", "60F3", "60F4"}));
    QCOMPARE(counts.value("62E8"), 6);
}

void tst_ObjectTable::indicesOfThreeDigitsAreKept()
{
    QList<QByteArray> rows;
    for (const QByteArray &line : m_lines) {
        if (field(line, 0).size() != 4)
            rows.append(line);
    }
    QCOMPARE(rows, (QList<QByteArray>{
                       "638;DC-to-DC converter 3 set output configuration;;;;;;x",
                       "640;HMI 1 displayed temperature value;;;;;;x",
                       "641;HMI 1 displayed SOH value in %;;;;;;x",
                       "642;HMI 1 displayed active and passive device actual voltage value;;;;;;x",
                       "643;HMI 1 displayed active and passive device actual power value;;;;;;x",
                   }));
}

void tst_ObjectTable::slipsAreKept_data()
{
    QTest::addColumn<QByteArray>("row");

    QTest::newRow("a voltage in mA") << QByteArray("6041;DC-DC converter actual voltage side B;;mA;;;;x");
    QTest::newRow("two blanks") << QByteArray("6001;Device control  command;;;;;;x");
    QTest::newRow("the index in the name") << QByteArray("60DB;60DBh Maximum L2 apparent power AC1;;;;;;x");
    QTest::newRow("a question mark") << QByteArray("60AC;Characteristic curve cos ? (PN);;;;;;x");
    QTest::newRow("a dash") << QByteArray("60F0;Charge Battery Pack data \x96 Instance (6000er entry of the "
                                          "battery);;;;;;x");
    QTest::newRow("a misspelt word") << QByteArray("6022;Device dynamic current input limitaton;;mA;;;;x");
}

void tst_ObjectTable::slipsAreKept()
{
    QFETCH(QByteArray, row);

    QCOMPARE(m_lines.count(row), 1);
}

void tst_ObjectTable::firstAndLastRow()
{
    QCOMPARE(m_lines.first(), QByteArray("1000;Device type;;;;;;x"));
    QCOMPARE(m_lines.last(), QByteArray("6725;Load switch off SOC;;%;;;;x"));
}

QTEST_APPLESS_MAIN(tst_ObjectTable)

#include "tst_objecttable.moc"
