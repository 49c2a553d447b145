// SPDX-License-Identifier: MIT
#include <interpreter/texttables.h>

#include <QTest>

/*! The checks of the tables and the algorithms that read them. */
class tst_TextTables : public QObject
{
    Q_OBJECT

private slots:
    void bitFields_data();
    void bitFields();
    void doubleCodesAreNoticed();
    void bitsOutOfOrderAreNoticed();
    void findsTheTextOfACode();
    void unknownCodesGiveTheFallback();
    void textsOfBitsComeInTheOrderOfTheTable();
    void pairsSayBothStates();
};

namespace {

constexpr CodeText lamps[] = {{0, "off"}, {1, "on"}, {0xFFFFFFFF, "broken"}};
constexpr CodeText doubledLamps[] = {{0, "off"}, {1, "on"}, {0, "off again"}};
constexpr BitText lampBits[] = {{1, "one"}, {4, "four"}, {31, "last"}};
constexpr BitText doubledBits[] = {{1, "one"}, {1, "one again"}};
constexpr BitText fallingBits[] = {{4, "four"}, {1, "one"}};
constexpr BitText bitsBeyondTheLast[] = {{1, "one"}, {32, "none"}};
constexpr BitTextPair lampPairs[] = {{0, "lit ", "dark "}, {2, "warm", "cold"}};

} // namespace

void tst_TextTables::bitFields_data()
{
    QTest::addColumn<uint>("value");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("last");
    QTest::addColumn<uint>("field");

    QTest::newRow("one bit") << 0x10u << 4 << 4 << 1u;
    QTest::newRow("one clear bit") << 0xFFFFFFEFu << 4 << 4 << 0u;
    QTest::newRow("lowest bits") << 0xABCDu << 0 << 3 << 0xDu;
    QTest::newRow("middle bits") << 0xABCDu << 4 << 11 << 0xBCu;
    QTest::newRow("highest bit") << 0x80000000u << 31 << 31 << 1u;
    QTest::newRow("highest bits") << 0xABCD0000u << 16 << 31 << 0xABCDu;
    QTest::newRow("all bits") << 0xFFFFFFFFu << 0 << 31 << 0xFFFFFFFFu;
}

void tst_TextTables::bitFields()
{
    QFETCH(uint, value);
    QFETCH(int, first);
    QFETCH(int, last);
    QFETCH(uint, field);

    QCOMPARE(bitField(value, static_cast<quint8>(first), static_cast<quint8>(last)), field);
}

void tst_TextTables::doubleCodesAreNoticed()
{
    QVERIFY(hasDistinctCodes(lamps));
    QVERIFY(!hasDistinctCodes(doubledLamps));
}

void tst_TextTables::bitsOutOfOrderAreNoticed()
{
    QVERIFY(hasAscendingBits(lampBits));
    QVERIFY(!hasAscendingBits(doubledBits));
    QVERIFY(!hasAscendingBits(fallingBits));
    QVERIFY(!hasAscendingBits(bitsBeyondTheLast));
}

void tst_TextTables::findsTheTextOfACode()
{
    QCOMPARE(findText(lamps, 1), "on");
    QCOMPARE(findText(lamps, 0xFFFFFFFF), "broken");
    QVERIFY(findText(lamps, 2) == nullptr);
}

void tst_TextTables::unknownCodesGiveTheFallback()
{
    QCOMPARE(codeText(lamps, 0, "reserved"), QStringLiteral("off"));
    QCOMPARE(codeText(lamps, 2, "reserved"), QStringLiteral("reserved"));
}

void tst_TextTables::textsOfBitsComeInTheOrderOfTheTable()
{
    QCOMPARE(bitTexts(lampBits, 0x80000002u), (QStringList{QStringLiteral("one"), QStringLiteral("last")}));
    QCOMPARE(bitTexts(lampBits, 0x7FFFFFEDu), QStringList());
    QCOMPARE(bitTextsInOne(lampBits, 0xFFFFFFFFu), QStringLiteral("onefourlast"));
    QCOMPARE(bitTextsInOne(lampBits, 0u), QString());
}

void tst_TextTables::pairsSayBothStates()
{
    QCOMPARE(bitTextPairs(lampPairs, 0x0u), QStringLiteral("dark cold"));
    QCOMPARE(bitTextPairs(lampPairs, 0x1u), QStringLiteral("lit cold"));
    QCOMPARE(bitTextPairs(lampPairs, 0x4u), QStringLiteral("dark warm"));
    QCOMPARE(bitTextPairs(lampPairs, 0x5u), QStringLiteral("lit warm"));
}

QTEST_APPLESS_MAIN(tst_TextTables)

#include "tst_texttables.moc"
