// SPDX-License-Identifier: MIT
#include <checkup/objectwords.h>

#include <QtTest>

using CanOpen::ObjectKey;

/*! What identifiers, times and mappings of the communication profile area look like. */
class tst_CommunicationValues : public QObject
{
    Q_OBJECT

private slots:
    void namesOfPdoParameters_data();
    void namesOfPdoParameters();
    void valuesInWords_data();
    void valuesInWords();
    void fractionsAreOfTheLanguage();
    void whatIsNoNumberOfTheirs();
};

void tst_CommunicationValues::namesOfPdoParameters_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("sub");
    QTest::addColumn<QString>("name");
    const auto row = [](int index, int sub, const char *name) {
        QTest::addRow("%Xh.%d", index, sub) << index << sub << QString::fromUtf8(name);
    };
    row(0x1400, 0, "Received PDO 1");
    row(0x1400, 1, "Received PDO 1, identifier");
    row(0x1401, 2, "Received PDO 2, transmission type");
    row(0x1402, 3, "Received PDO 3, inhibit time");
    row(0x1400, 4, "Received PDO 1");
    row(0x15FF, 5, "Received PDO 512, event timer");
    row(0x15FF, 6, "Received PDO 512");
    row(0x1600, 1, "Received PDO 1, mapping");
    row(0x1800, 0, "Sent PDO 1");
    row(0x1800, 1, "Sent PDO 1, identifier");
    row(0x1801, 2, "Sent PDO 2, transmission type");
    row(0x1802, 3, "Sent PDO 3, inhibit time");
    row(0x1803, 5, "Sent PDO 4, event timer");
    row(0x19FF, 6, "Sent PDO 512, SYNC start value");
    row(0x1A00, 5, "Sent PDO 1, mapping");
}

void tst_CommunicationValues::namesOfPdoParameters()
{
    QFETCH(int, index);
    QFETCH(int, sub);
    QTEST(ObjectWords::name({static_cast<quint16>(index), static_cast<quint8>(sub)}), "name");
}

void tst_CommunicationValues::valuesInWords_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("sub");
    QTest::addColumn<quint32>("number");
    QTest::addColumn<QString>("text");
    const auto row = [](int index, int sub, quint32 number, const char *text) {
        QTest::addRow("%Xh.%d %Xh", index, sub, number) << index << sub << number << QString::fromUtf8(text);
    };
    row(0x1005, 0, 0x80, "080h");
    row(0x1005, 0, 0x40000080, "40000080h"); // it sends SYNC: switched on, not off
    row(0x1006, 0, 100000, "100000 µs");
    row(0x1007, 0, 5000, "5000 µs");
    row(0x100C, 0, 200, "200 ms");
    row(0x1012, 0, 0x80000100, "80000100h"); // it takes TIME
    row(0x1014, 0, 0x82, "082h");
    row(0x1014, 0, 0x80000082, "80000082h (not used)");
    row(0x1015, 0, 15, "1.5 ms");
    row(0x1015, 0, 100, "10 ms");
    row(0x1016, 0, 3, "3");
    row(0x1016, 1, 0x000501F4, "node 5, 500 ms");
    row(0x1016, 127, 0x007F0001, "node 127, 1 ms");
    row(0x1016, 2, 0, "0");
    row(0x1017, 0, 500, "0.50 s"); // as the overview shows it
    row(0x1200, 0, 2, "2");
    row(0x1200, 1, 0x602, "602h");
    row(0x1280, 2, 0x80000000, "80000000h (not used)");
    row(0x1280, 3, 17, "17");
    row(0x1400, 1, 0x185, "185h");
    row(0x15FF, 1, 0xC0000185, "C0000185h (not used)");
    row(0x1800, 1, 0x20012345, "20012345h");
    row(0x1800, 2, 254, "254");
    row(0x1800, 3, 1, "0.1 ms");
    row(0x19FF, 5, 1000, "1000 ms");
    row(0x1600, 0, 2, "2");
    row(0x1600, 1, 0x60400120, "6040h.1 (32 bit)");
    row(0x1A00, 8, 0x60000001, "6000h.0 (1 bit)");
    row(0x1BFF, 64, 0x616501FF, "6165h.1 (255 bit)");
    row(0x1A00, 1, 0, "0");
    row(0x1A00, 65, 0x60400120, "1614807328");
    row(0x1C00, 1, 500, "500");
}

void tst_CommunicationValues::valuesInWords()
{
    QFETCH(int, index);
    QFETCH(int, sub);
    QFETCH(quint32, number);
    const ObjectKey key{static_cast<quint16>(index), static_cast<quint8>(sub)};
    QTEST(ObjectWords::value(key, number), "text");
}

void tst_CommunicationValues::fractionsAreOfTheLanguage()
{
    const ObjectWords::NumberStyle german(QLocale(QStringLiteral("de")));
    QCOMPARE(ObjectWords::value({0x1800, 3}, 25), QStringLiteral("2,5 ms"));
    QCOMPARE(ObjectWords::value({0x1800, 3}, 60000), QStringLiteral("6000 ms"));
}

/*! What a data sheet may make of them: they stay what they are. */
void tst_CommunicationValues::whatIsNoNumberOfTheirs()
{
    QCOMPARE(ObjectWords::value({0x100C, 0}, -1), QStringLiteral("-1"));
    QCOMPARE(ObjectWords::value({0x1800, 1}, Q_UINT64_C(0x100000185)), QStringLiteral("4294967685"));
    QCOMPARE(ObjectWords::value({0x100C, 0}, QStringLiteral("often")), QStringLiteral("often"));
    QCOMPARE(ObjectWords::value({0x100C, 0}, QByteArray::fromHex("0102")), QStringLiteral("01 02"));
}

QTEST_GUILESS_MAIN(tst_CommunicationValues)
#include "tst_communicationvalues.moc"
