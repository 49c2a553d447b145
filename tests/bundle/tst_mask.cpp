// SPDX-License-Identifier: MIT
#include <bundle/masking/mask.h>

#include <QRegularExpression>
#include <QSet>
#include <QtTest>

/*! The stand-ins of secrets. */
class tst_Mask : public QObject
{
    Q_OBJECT

private slots:
    void sameSecretHasTheSameWord();
    void otherKeysGiveOtherWords();
    void noTwoSecretsShareAWord();
    void numberEndsWithItsWord();
    void numberKeepsItsSize_data();
    void numberKeepsItsSize();
    void nothingStaysNothing();
    void textKeepsItsLength_data();
    void textKeepsItsLength();
};

void tst_Mask::sameSecretHasTheSameWord()
{
    Mask mask(QByteArrayLiteral("key"));
    const QString word = mask.word(QStringLiteral("Erika Mustermann"));
    QVERIFY2(QRegularExpression(QStringLiteral("^masked-[0-9A-F]{4}$")).match(word).hasMatch(),
             qPrintable(word));
    QCOMPARE(mask.word(QStringLiteral(" erika mustermann ")), word);
    QCOMPARE(mask.word(QStringLiteral("0001031904")), mask.word(QStringLiteral("1031904")));
    QVERIFY(mask.word(QStringLiteral("Erika")) != word);
}

void tst_Mask::otherKeysGiveOtherWords()
{
    const QString secret = QStringLiteral("1031904");
    QSet<QString> words;
    for (int i = 0; i < 8; ++i)
        words.insert(Mask().word(secret)); // 16 bits each: all alike is impossible, not merely unlikely
    QVERIFY(words.size() > 1);
}

void tst_Mask::noTwoSecretsShareAWord()
{
    Mask mask(QByteArrayLiteral("key"));
    QSet<QString> words;
    for (int i = 0; i < 3000; ++i) // by chance 69 pairs of them would be alike
        words.insert(mask.word(QString::number(100000 + i)));
    QCOMPARE(words.size(), 3000);
}

void tst_Mask::numberEndsWithItsWord()
{
    Mask mask(QByteArrayLiteral("key"));
    const quint64 number = mask.number(1031904, 32);
    QCOMPARE(QStringLiteral("masked-%1").arg(number & 0xFFFF, 4, 16, QLatin1Char('0')).toUpper(),
             mask.word(QStringLiteral("1031904")).toUpper());
    QVERIFY(number != 1031904);
    QCOMPARE(mask.number(1031904, 32), number);
}

void tst_Mask::numberKeepsItsSize_data()
{
    QTest::addColumn<int>("bits");
    for (const int bits : {1, 3, 8, 15, 16, 24, 32, 40, 64})
        QTest::addRow("%d bits", bits) << bits;
}

void tst_Mask::numberKeepsItsSize()
{
    QFETCH(int, bits);
    Mask mask(QByteArrayLiteral("key"));
    const quint64 highest = bits == 64 ? ~quint64(0) : (quint64(1) << bits) - 1;
    for (quint64 secret = 0; secret < 200 && secret <= highest; ++secret)
        QVERIFY(mask.number(secret, bits) <= highest);
    if (bits >= 16)
        QVERIFY(mask.number(0x4711 & highest, bits) != (0x4711 & highest));
}

void tst_Mask::nothingStaysNothing()
{
    Mask mask(QByteArrayLiteral("key"));
    QCOMPARE(mask.number(0, 32), quint64(0));
    QCOMPARE(mask.number(0xFFFFFFFF, 32), quint64(0xFFFFFFFF));
    QCOMPARE(mask.number(0xFFFF, 16), quint64(0xFFFF));
    QVERIFY(mask.number(0xFFFF, 32) != 0xFFFF);
}

void tst_Mask::textKeepsItsLength_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<QString>("pattern");
    QTest::newRow("none") << 0 << QStringLiteral("");
    QTest::newRow("two") << 2 << QStringLiteral("[0-9A-F]{2}");
    QTest::newRow("four") << 4 << QStringLiteral("[0-9A-F]{4}");
    QTest::newRow("five") << 5 << QStringLiteral("-[0-9A-F]{4}");
    QTest::newRow("seven") << 7 << QStringLiteral("ma-[0-9A-F]{4}");
    QTest::newRow("eleven") << 11 << QStringLiteral("masked-[0-9A-F]{4}");
    QTest::newRow("more") << 14 << QStringLiteral("masked-[0-9A-F]{4}\\.\\.\\.");
}

void tst_Mask::textKeepsItsLength()
{
    QFETCH(int, size);
    QFETCH(QString, pattern);
    Mask mask(QByteArrayLiteral("key"));
    const QString text = mask.text(QStringLiteral("AB-1234"), size);
    QVERIFY2(QRegularExpression(QLatin1Char('^') + pattern + QLatin1Char('$')).match(text).hasMatch(),
             qPrintable(text));
}

QTEST_GUILESS_MAIN(tst_Mask)
#include "tst_mask.moc"
