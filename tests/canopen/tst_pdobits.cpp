// SPDX-License-Identifier: MIT
#include <canopen/pdobits.h>

#include <QtTest>

#include <random>

using namespace CanOpen;

class tst_PdoBits : public QObject
{
    Q_OBJECT

private slots:
    void unpacks_data();
    void unpacks();
    void packs_data();
    void packs();
    void refusesWhatIsNotThere_data();
    void refusesWhatIsNotThere();
    void givesBackWhatWasPacked();
};

void tst_PdoBits::unpacks_data()
{
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("count");
    QTest::addColumn<quint64>("value");

    const auto row = [](const char *name, const char *payload, int first, int count, quint64 value) {
        QTest::newRow(name) << QByteArray::fromHex(payload) << first << count << value;
    };
    row("a byte", "1234", 8, 8, 0x34);
    row("least significant byte first", "3412", 0, 16, 0x1234);
    row("all eight bytes", "8877665544332211", 0, 64, Q_UINT64_C(0x1122334455667788));
    row("the lowest bit", "01", 0, 1, 1);
    row("the highest bit", "80", 7, 1, 1);
    row("a bit that is not set", "7f", 7, 1, 0);
    row("inside a byte", "b4", 2, 4, 0xD);
    row("across a border", "80010000", 7, 2, 3);
    row("twelve bits from bit 4 on", "3412", 4, 12, 0x123);
    row("64 bits beside the bytes", "100000000000000002", 4, 64, Q_UINT64_C(0x2000000000000001));
}

void tst_PdoBits::unpacks()
{
    QFETCH(QByteArray, payload);
    QFETCH(int, first);
    QFETCH(int, count);

    QTEST(unpackBits(payload, first, count).value_or(~quint64(0)), "value");
}

void tst_PdoBits::packs_data()
{
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("count");
    QTest::addColumn<quint64>("value");
    QTest::addColumn<QByteArray>("packed");

    const auto row
        = [](const char *name, const char *payload, int first, int count, quint64 value, const char *packed) {
              QTest::newRow(name) << QByteArray::fromHex(payload) << first << count << value
                                  << QByteArray::fromHex(packed);
          };
    row("two bytes", "00000000", 8, 16, 0x1234, "00341200");
    row("a bit", "0000", 9, 1, 1, "0002");
    row("a bit is taken back", "ffff", 9, 1, 0, "fffd");
    row("across a border", "0000", 6, 4, 0xF, "c003");
    row("only its lowest bits", "0000", 4, 4, 0x123, "3000");
    row("the others stay", "ffff", 4, 8, 0, "0ff0");
    row("all", "0000000000000000", 0, 64, Q_UINT64_C(0x1122334455667788), "8877665544332211");
}

void tst_PdoBits::packs()
{
    QFETCH(QByteArray, payload);
    QFETCH(int, first);
    QFETCH(int, count);
    QFETCH(quint64, value);

    QVERIFY(packBits(&payload, first, count, value));
    QTEST(payload, "packed");
}

void tst_PdoBits::refusesWhatIsNotThere_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("count");

    QTest::newRow("beyond the end") << 32 << 1;
    QTest::newRow("half beyond the end") << 25 << 8;
    QTest::newRow("before the beginning") << -1 << 8;
    QTest::newRow("no bit") << 0 << 0;
    QTest::newRow("fewer than none") << 8 << -8;
    QTest::newRow("more than 64") << 0 << 65;
    QTest::newRow("more than an int holds") << 0x7FFFFFF0 << 64;
}

void tst_PdoBits::refusesWhatIsNotThere()
{
    QFETCH(int, first);
    QFETCH(int, count);

    QByteArray payload = QByteArray::fromHex("11223344");
    QVERIFY(!unpackBits(payload, first, count));
    QVERIFY(!packBits(&payload, first, count, 0));
    QCOMPARE(payload, QByteArray::fromHex("11223344"));
    QVERIFY(!unpackBits(QByteArray(9, '\0'), 0, 65));
}

void tst_PdoBits::givesBackWhatWasPacked()
{
    std::mt19937_64 random(20);
    for (int run = 0; run < 20000; ++run) {
        const int count = 1 + static_cast<int>(random() % 64);
        const int first = static_cast<int>(random() % (72 - static_cast<unsigned>(count) + 1));
        const quint64 value = random();
        const quint64 lowBits = count == 64 ? value : value & ((Q_UINT64_C(1) << count) - 1);
        QByteArray before(9, '\0');
        for (char &byte : before)
            byte = static_cast<char>(random() & 0xFF);

        QByteArray after = before;
        QVERIFY(packBits(&after, first, count, value));
        QCOMPARE(unpackBits(after, first, count).value_or(~lowBits), lowBits);
        // What stands beside it is as before.
        QVERIFY(packBits(&after, first, count, unpackBits(before, first, count).value_or(0)));
        QCOMPARE(after.toHex(), before.toHex());
    }
}

QTEST_GUILESS_MAIN(tst_PdoBits)
#include "tst_pdobits.moc"
