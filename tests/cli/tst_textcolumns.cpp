// SPDX-License-Identifier: MIT
#include <cli/core/textcolumns.h>

#include <QtTest>

class tst_TextColumns : public QObject
{
    Q_OBJECT

private slots:
    void widths_data();
    void widths();
    void cellsStandBelowEachOther();
    void wideCharactersCountTwice();
    void lastCellOfSeveralLines();
    void nothing();
};

void tst_TextColumns::widths_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("width");
    QTest::newRow("empty") << QString() << 0;
    QTest::newRow("ASCII") << QStringLiteral("12.04 V") << 7;
    QTest::newRow("Latin") << QStringLiteral("Ger\u00E4t \u00B0C") << 8;
    QTest::newRow("combined") << QStringLiteral("Gera\u0308t") << 5;
    QTest::newRow("Chinese") << QStringLiteral("\u8282\u70B9 ID") << 7;
    QTest::newRow("full width brackets") << QStringLiteral("\uFF08a\uFF09") << 5;
    QTest::newRow("beyond the first plane") << QString::fromUcs4(U"\U00020000", 1) << 2;
}

void tst_TextColumns::widths()
{
    QFETCH(QString, text);
    QFETCH(int, width);
    QCOMPARE(terminalWidth(text), width);
}

void tst_TextColumns::cellsStandBelowEachOther()
{
    QCOMPARE(alignedLines({{QStringLiteral("name"), QStringLiteral("x "), QStringLiteral("y ")},
                           {},
                           {QStringLiteral("n"), QStringLiteral("long"), QString()}},
                          2),
             QStringList({QStringLiteral("  name  x     y"), QString(), QStringLiteral("  n     long")}));
}

void tst_TextColumns::wideCharactersCountTwice()
{
    QCOMPARE(alignedLines({{QStringLiteral("\u8282\u70B9"), QStringLiteral("1")},
                           {QStringLiteral("abcde"), QStringLiteral("2")}},
                          0),
             QStringList({QStringLiteral("\u8282\u70B9   1"), QStringLiteral("abcde  2")}));
}

void tst_TextColumns::lastCellOfSeveralLines()
{
    QCOMPARE(alignedLines({{QStringLiteral("list"), QStringLiteral("a\nb")},
                           {QStringLiteral("single"), QStringLiteral("c")}},
                          1),
             QStringList(
                 {QStringLiteral(" list    a"), QStringLiteral("         b"), QStringLiteral(" single  c")}));
}

void tst_TextColumns::nothing()
{
    QCOMPARE(alignedLines({}, 4), QStringList());
    QCOMPARE(alignedLines({{}}, 4), QStringList(QString()));
}

QTEST_GUILESS_MAIN(tst_TextColumns)
#include "tst_textcolumns.moc"
