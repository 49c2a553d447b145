// SPDX-License-Identifier: MIT
#include <archive/bytecolumn.h>

#include <QtTest>

#include <limits>

/*! Numbers and bytes in a row, and their compression. */
class tst_ByteColumn : public QObject
{
    Q_OBJECT

private slots:
    void writesNumbers_data();
    void writesNumbers();
    void foldsSignedNumbers_data();
    void foldsSignedNumbers();
    void keepsBytes();
    void refusesWhatIsCutOff_data();
    void refusesWhatIsCutOff();
    void knowsTheEnd();
    void compressesWithoutLoss_data();
    void compressesWithoutLoss();
    void refusesMoreThanTheBound();
    void refusesDamage();
};

void tst_ByteColumn::writesNumbers_data()
{
    QTest::addColumn<quint64>("number");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("0") << quint64(0) << QByteArray::fromHex("00");
    QTest::newRow("largest of a byte") << quint64(127) << QByteArray::fromHex("7f");
    QTest::newRow("smallest of two bytes") << quint64(128) << QByteArray::fromHex("8001");
    QTest::newRow("300") << quint64(300) << QByteArray::fromHex("ac02");
    QTest::newRow("largest") << std::numeric_limits<quint64>::max()
                             << QByteArray::fromHex("ffffffffffffffffff01");
}

void tst_ByteColumn::writesNumbers()
{
    QFETCH(quint64, number);
    QFETCH(QByteArray, bytes);
    ColumnWriter writer;
    writer.add(number);
    QCOMPARE(writer.bytes(), bytes);
    ColumnReader reader(bytes);
    QCOMPARE(reader.next(), number);
    QVERIFY(reader.isAtEnd());
}

void tst_ByteColumn::foldsSignedNumbers_data()
{
    QTest::addColumn<qint64>("number");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("0") << qint64(0) << QByteArray::fromHex("00");
    QTest::newRow("-1") << qint64(-1) << QByteArray::fromHex("01");
    QTest::newRow("1") << qint64(1) << QByteArray::fromHex("02");
    QTest::newRow("-64") << qint64(-64) << QByteArray::fromHex("7f");
    QTest::newRow("largest") << std::numeric_limits<qint64>::max()
                             << QByteArray::fromHex("feffffffffffffffff01");
    QTest::newRow("smallest") << std::numeric_limits<qint64>::min()
                              << QByteArray::fromHex("ffffffffffffffffff01");
}

void tst_ByteColumn::foldsSignedNumbers()
{
    QFETCH(qint64, number);
    QFETCH(QByteArray, bytes);
    ColumnWriter writer;
    writer.addSigned(number);
    QCOMPARE(writer.bytes(), bytes);
    ColumnReader reader(bytes);
    QCOMPARE(reader.nextSigned(), number);
}

void tst_ByteColumn::keepsBytes()
{
    ColumnWriter writer;
    writer.addBytes(QByteArray());
    writer.addBytes("abc");
    QCOMPARE(writer.bytes(), QByteArray::fromHex("0003616263"));
    ColumnReader reader(writer.bytes());
    QCOMPARE(reader.nextBytes(), QByteArray());
    QCOMPARE(reader.nextBytes(), QByteArray("abc"));
    QVERIFY(reader.isAtEnd());
}

void tst_ByteColumn::refusesWhatIsCutOff_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("number without its end") << QByteArray::fromHex("80");
    QTest::newRow("number of eleven bytes") << QByteArray::fromHex("ffffffffffffffffffff01");
    QTest::newRow("number of more than 64 bits") << QByteArray::fromHex("ffffffffffffffffff02");
    QTest::newRow("fewer bytes than said") << QByteArray::fromHex("0461");
    QTest::newRow("more bytes than there can be") << QByteArray::fromHex("ffffffffffffffffff01");
}

void tst_ByteColumn::refusesWhatIsCutOff()
{
    QFETCH(QByteArray, bytes);
    ColumnReader reader(bytes);
    QCOMPARE(reader.nextBytes(), QByteArray());
    QVERIFY(reader.isFaulty());
    QVERIFY(!reader.isAtEnd());
    QCOMPARE(reader.next(), quint64(0)); // and nothing comes after it
}

void tst_ByteColumn::knowsTheEnd()
{
    ColumnReader reader(QByteArray::fromHex("0102"));
    reader.next();
    QVERIFY(!reader.isAtEnd());
    reader.next();
    QVERIFY(reader.isAtEnd());
    reader.next();
    QVERIFY(reader.isFaulty());
}

void tst_ByteColumn::compressesWithoutLoss_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("a byte") << QByteArray("x");
    QTest::newRow("the same again and again") << QByteArray(100000, 'x');
}

void tst_ByteColumn::compressesWithoutLoss()
{
    QFETCH(QByteArray, bytes);
    const QByteArray packed = Deflate::compress(bytes);
    QVERIFY(packed.size() < 1000);
    QCOMPARE(Deflate::uncompress(packed, bytes.size()).value_or("none"), bytes);
}

void tst_ByteColumn::refusesMoreThanTheBound()
{
    const QByteArray packed = Deflate::compress(QByteArray(1000, 'x'));
    QVERIFY(Deflate::uncompress(packed, 1000));
    QVERIFY(!Deflate::uncompress(packed, 999));
    // One that says less than it has.
    ColumnWriter less;
    less.add(10);
    QVERIFY(!Deflate::uncompress(less.bytes() + packed.mid(2), 1000));
}

void tst_ByteColumn::refusesDamage()
{
    const QByteArray packed = Deflate::compress("the same bytes again, the same bytes again");
    for (int i = 0; i < packed.size(); ++i) {
        QByteArray damaged = packed;
        damaged[i] = static_cast<char>(damaged.at(i) ^ 0x55);
        QVERIFY2(!Deflate::uncompress(damaged, 1000), qPrintable(QString::number(i)));
        QVERIFY(!Deflate::uncompress(packed.left(i), 1000));
    }
}

QTEST_APPLESS_MAIN(tst_ByteColumn)
#include "tst_bytecolumn.moc"
