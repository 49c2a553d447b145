// SPDX-License-Identifier: MIT
#include <cli/core/textcolumns.h>

#include <QtTest>

class tst_TextColumns : public QObject
{
    Q_OBJECT

private slots:
    void widths_data();
    void widths();
    void cutting_data();
    void cutting();
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

void tst_TextColumns::cutting_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("columns");
    QTest::addColumn<QString>("cut");
    QTest::newRow("fits") << QStringLiteral("12.04 V") << 7 << QStringLiteral("12.04 V");
    QTest::newRow("too long") << QStringLiteral("12.04 V") << 6 << QStringLiteral("12....");
    QTest::newRow("hardly room") << QStringLiteral("12.04 V") << 2 << QStringLiteral("..");
    QTest::newRow("no room") << QStringLiteral("12.04 V") << 0 << QString();
    QTest::newRow("less than none") << QStringLiteral("12.04 V") << -5 << QString();
    QTest::newRow("wide") << QStringLiteral("\u8282\u70B9\u8282\u70B9") << 6 << QStringLiteral("\u8282...");
    QTest::newRow("combined") << QStringLiteral("a\u0308a\u0308") << 2 << QStringLiteral("a\u0308a\u0308");
}

void tst_TextColumns::cutting()
{
    QFETCH(QString, text);
    QFETCH(int, columns);
    QTEST(cutToWidth(text, columns), "cut");
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
