// SPDX-License-Identifier: MIT
#include <interpreter/vendortable.h>

#include <QBuffer>
#include <QFile>
#include <QSet>
#include <QTest>

class tst_VendorTable : public QObject
{
    Q_OBJECT

private slots:
    void theTableThatShips();
    void rowsThatShip_data();
    void rowsThatShip();
    void readsIdsWithAndWithoutLeadingZeros();
    void theFirstRowOfAnIdCounts();
    void idsWithTheHighBitAreNeverFound();
    void idsThatAreNoNumberAreNeverFound();
    void companiesKeepTheirBlanks();
    void shortRowsHaveNoCompany();
    void anEmptyTableSaysSo();
};

namespace {

VendorTable read(const QByteArray &text)
{
    QBuffer buffer;
    buffer.setData(text);
    buffer.open(QIODevice::ReadOnly | QIODevice::Text);
    return VendorTable::read(buffer);
}

QByteArray shippedTable()
{
    QFile file(QStringLiteral(":/files/vendor.csv"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

void tst_VendorTable::theTableThatShips()
{
    const QByteArray bytes = shippedTable();
    QCOMPARE(bytes.count("\r\n"), 1606);
    QCOMPARE(bytes.count('\n'), 1606);
    QCOMPARE(bytes.count('\r'), 1606);
    QVERIFY(bytes.endsWith("; \r\n"));

    QSet<uint> ids;
    QList<QByteArray> lines = QByteArray(bytes).replace("\r\n", "\n").split('\n');
    QCOMPARE(lines.takeLast(), QByteArray());
    for (const QByteArray &line : qAsConst(lines)) {
        const QList<QByteArray> fields = line.split(';');
        QCOMPARE(fields.size(), 3);
        bool isNumber = false;
        ids.insert(fields[0].toUInt(&isNumber, 16));
        QVERIFY2(isNumber, line.constData());
        QVERIFY2(!fields[1].isEmpty() && fields[1] == fields[1].trimmed(), line.constData());
        QCOMPARE(fields[2], QByteArray(" "));
        for (const char character : line)
            QVERIFY2(character >= ' ' && character <= '~', line.constData());
    }
    QCOMPARE(ids.size(), 1606);
}

void tst_VendorTable::rowsThatShip_data()
{
    QTest::addColumn<uint>("vendorId");
    QTest::addColumn<QString>("company");

    QTest::newRow("first") << 0x2u << QStringLiteral("Beckhoff Automation GmbH");
    QTest::newRow("u with dots") << 0x2Bu << QStringLiteral("EMS Dr. Thomas Wuensche");
    QTest::newRow("sharp s") << 0x11Du << QStringLiteral("Hottinger Baldwin Messtechnik GmbH");
    QTest::newRow("two letters with dots")
        << 0x15Au << QStringLiteral("Baumueller Nuernberg Electronic GmbH & Co. KG");
    QTest::newRow("capital letter with dots") << 0x492u << QStringLiteral("Comodule OU");
    QTest::newRow("accent") << 0x2C9u << QStringLiteral("Midi Ingenierie");
    QTest::newRow("cedilla and apostrophe")
        << 0xEFEu << QStringLiteral("L'Essor Francais Electronique (EFE)");
    QTest::newRow("several accents") << 0x4E8u << QStringLiteral("E-LIFT Automatizalasi Kft. Hungary");
    QTest::newRow("registered as liquidated") << 0x11u << QStringLiteral("Liquidated");
    QTest::newRow("highest that is found") << 0x040002F6u
                                           << QStringLiteral("Verband der Fahrzeugumruester fuer "
                                                             "mobilitaetseingeschraenkte Personen - VFMP");
}

void tst_VendorTable::rowsThatShip()
{
    QFETCH(uint, vendorId);
    QFETCH(QString, company);

    QVERIFY(vendorTable().contains(vendorId));
    QCOMPARE(vendorTable().company(vendorId), company);
}

void tst_VendorTable::readsIdsWithAndWithoutLeadingZeros()
{
    const VendorTable table = read("1;One; \r\n0000000A;Ten; \r\n0b;Eleven; \r\n");
    QCOMPARE(table.company(1), QStringLiteral("One"));
    QCOMPARE(table.company(10), QStringLiteral("Ten"));
    QCOMPARE(table.company(11), QStringLiteral("Eleven"));
}

void tst_VendorTable::theFirstRowOfAnIdCounts()
{
    QCOMPARE(read("1;First; \r\n1;Second; \r\n").company(1), QStringLiteral("First"));
}

void tst_VendorTable::idsWithTheHighBitAreNeverFound()
{
    const VendorTable table = read("7FFFFFFF;Highest; \r\n80000000;Beyond; \r\nFFFFFFFF;Last; \r\n");
    QCOMPARE(table.company(0x7FFFFFFF), QStringLiteral("Highest"));
    QVERIFY(!table.contains(0x80000000));
    QVERIFY(!table.contains(0xFFFFFFFF));
    QVERIFY(!table.contains(0));
}

void tst_VendorTable::idsThatAreNoNumberAreNeverFound()
{
    const VendorTable table = read("ID;Company; \r\n\r\n");
    QVERIFY(!table.contains(0));
    QVERIFY(!table.isEmpty());
}

void tst_VendorTable::companiesKeepTheirBlanks()
{
    QCOMPARE(read("1; A  B ; \r\n").company(1), QStringLiteral(" A  B "));
}

void tst_VendorTable::shortRowsHaveNoCompany()
{
    const VendorTable table = read("1\r\n");
    QVERIFY(table.contains(1));
    QCOMPARE(table.company(1), QString());
}

void tst_VendorTable::anEmptyTableSaysSo()
{
    QVERIFY(read(QByteArray()).isEmpty());
    QVERIFY(!read("1;A; \r\n").isEmpty());
}

QTEST_APPLESS_MAIN(tst_VendorTable)

#include "tst_vendortable.moc"
