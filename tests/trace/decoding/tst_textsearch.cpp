// SPDX-License-Identifier: MIT
#include <trace/decoding/textsearch.h>

#include <QtTest>

#include <random>

/*! Looking into words once, however many lines say them. */
class tst_TextSearch : public QObject
{
    Q_OBJECT

private slots:
    void looksOnceIntoTheSame();
    void looksEachTimeWithoutAKey();
    void isRightWithMoreThanHaveRoom();
    void manyAreSeldomMadeAnew();

private:
    static QString wordsOf(const TextSearch::Key &key)
    {
        return key.data % 3 == 0 ? QStringLiteral("Voltage = 39.30 V") : QStringLiteral("Voltage = 12 V");
    }
};

void tst_TextSearch::looksOnceIntoTheSame()
{
    TextSearch search(QStringLiteral("VOLT"));
    int made = 0;
    const auto words = [&made] {
        ++made;
        return QStringLiteral("Voltage = 12 V");
    };
    QVERIFY(search.isIn(TextSearch::Key{1, 2, 3}, words));
    QVERIFY(search.isIn(TextSearch::Key{1, 2, 3}, words));
    QCOMPARE(made, 1);
    for (const TextSearch::Key &other :
         {TextSearch::Key{2, 2, 3}, TextSearch::Key{1, 3, 3}, TextSearch::Key{1, 2, 4}})
        QVERIFY(search.isIn(other, words));
    QCOMPARE(made, 4);
}

void tst_TextSearch::looksEachTimeWithoutAKey()
{
    TextSearch search(QStringLiteral("volt"));
    QVERIFY(search.isIn(std::nullopt, [] { return QStringLiteral("Voltage"); }));
    QVERIFY(!search.isIn(std::nullopt, [] { return QStringLiteral("Current"); }));
}

void tst_TextSearch::isRightWithMoreThanHaveRoom()
{
    TextSearch search(QStringLiteral("39.30"));
    std::mt19937_64 random(7);
    std::vector<TextSearch::Key> keys(600'000);
    for (TextSearch::Key &key : keys)
        key = {random(), random() % 4, random() % 4};
    for (int round = 0; round < 2; ++round) {
        for (const TextSearch::Key &key : keys)
            QCOMPARE(search.isIn(key, [&key] { return wordsOf(key); }), key.data % 3 == 0);
    }
}

// A ride has some 50 000 different lines, which come again and again, by turns.
void tst_TextSearch::manyAreSeldomMadeAnew()
{
    constexpr int different = 50'000;
    constexpr int rounds = 10;
    TextSearch search(QStringLiteral("39.30"));
    int made = 0;
    for (int round = 0; round < rounds; ++round) {
        for (quint64 i = 0; i < different; ++i) {
            const TextSearch::Key key{i * 7, 0x181, 1};
            QCOMPARE(search.isIn(key,
                                 [&made, &key] {
                                     ++made;
                                     return wordsOf(key);
                                 }),
                     key.data % 3 == 0);
        }
    }
    QVERIFY2(made < different * 3 / 2, qPrintable(QString::number(made)));
}

QTEST_GUILESS_MAIN(tst_TextSearch)

#include "tst_textsearch.moc"
