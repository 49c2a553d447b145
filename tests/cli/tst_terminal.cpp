// SPDX-License-Identifier: MIT
#include <cli/core/datatypename.h>
#include <cli/core/terminal.h>

#include <QtTest>

class tst_Terminal : public QObject
{
    Q_OBJECT

private slots:
    void visible_data();
    void visible();
    void everyControlCharacter();
    void dataTypeNames();
};

void tst_Terminal::visible_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");

    QTest::newRow("plain") << QStringLiteral("Düse 24.20 °C 电池") << QStringLiteral("Düse 24.20 °C 电池");
    QTest::newRow("lines and tabulators") << QStringLiteral("a\n\tb") << QStringLiteral("a\n\tb");
    QTest::newRow("line end of two") << QStringLiteral("a\r\nb") << QStringLiteral("a\nb");
    QTest::newRow("carriage return alone")
        << QStringLiteral("safe\rEVIL") << QStringLiteral("safe\\u000dEVIL");
    QTest::newRow("title") << QStringLiteral("\x1b]0;x\x07") << QStringLiteral("\\u001b]0;x\\u0007");
    QTest::newRow("null") << QString(QChar(0)) << QStringLiteral("\\u0000");
    QTest::newRow("DEL") << QStringLiteral("\x7f") << QStringLiteral("\\u007f");
    QTest::newRow("CSI of C1") << QString(QChar(0x9b)) + QStringLiteral("2J") << QStringLiteral("\\u009b2J");
    QTest::newRow("no-break space, first after C1") << QString(QChar(0xa0)) << QString(QChar(0xa0));
    QTest::newRow("override") << QString(QChar(0x202e)) + QStringLiteral("cod")
                              << QStringLiteral("\\u202ecod");
    QTest::newRow("isolate") << QString(QChar(0x2066)) << QStringLiteral("\\u2066");
    QTest::newRow("line separator") << QString(QChar(0x2028)) << QStringLiteral("\\u2028");
    QTest::newRow("joiner of one word") << QString(QChar(0x200d)) << QString(QChar(0x200d));
}

void tst_Terminal::visible()
{
    QFETCH(QString, text);
    QTEST(Terminal::visible(text), "shown");
}

void tst_Terminal::everyControlCharacter()
{
    for (ushort code = 0; code < 0x3000; ++code) {
        const QChar character(code);
        const bool isLayout = code == '\n' || code == '\t';
        if (character.category() == QChar::Other_Control && !isLayout)
            QCOMPARE(Terminal::visible(QString(character)).size(), 6);
    }
}

void tst_Terminal::dataTypeNames()
{
    QCOMPARE(DataTypeName::parse(QStringLiteral("UNSIGNED16")), CanOpen::DataType::Unsigned16);
    QCOMPARE(DataTypeName::parse(QStringLiteral("i8")), CanOpen::DataType::Integer8);
    QCOMPARE(DataTypeName::parse(QStringLiteral("String")), CanOpen::DataType::VisibleString);
    QCOMPARE(DataTypeName::parse(QStringLiteral("real64")), CanOpen::DataType::Real64);
    QVERIFY(!DataTypeName::parse(QStringLiteral("u23")));
    QVERIFY(!DataTypeName::parse(QString()));
    QCOMPARE(
        DataTypeName::shortNames().join(QLatin1Char(' ')),
        QStringLiteral("bool i8 i16 i24 i32 i40 i48 i56 i64 u8 u16 u24 u32 u40 u48 u56 u64 f32 f64 string "
                       "unicode bytes domain"));
}

QTEST_GUILESS_MAIN(tst_Terminal)
#include "tst_terminal.moc"
