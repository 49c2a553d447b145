// SPDX-License-Identifier: MIT
#include <canopen/inifile.h>
#include <canopen/plaintext.h>

#include <QtTest>

using namespace CanOpen;

/*! Sections, keys and values of a text file, and what is wrong with them. */
class tst_IniFile : public QObject
{
    Q_OBJECT

private slots:
    void sectionsInTheOrderOfTheFile();
    void fieldsWithTheirLines();
    void bytesThatAreNoUtf8();
    void errors_data();
    void errors();
    void hostileFiles_data();
    void hostileFiles();
    void problems_data();
    void problems();
    void plainTexts_data();
    void plainTexts();
};

void tst_IniFile::sectionsInTheOrderOfTheFile()
{
    QString error;
    const auto file
        = IniFile::parse("\xEF\xBB\xBF; comment\r\n[Two]\r\n\r\n [ one ] ; comment\r\n[]\n", &error);
    QVERIFY(!file.has_value()); // the last name is empty
    const auto good = IniFile::parse("\xEF\xBB\xBF; comment\r\n[Two]\r\n\r\n [ one ] ; comment\r\n", &error);
    QVERIFY2(good.has_value(), qPrintable(error));
    QCOMPARE(good->sections().size(), 2);
    QCOMPARE(good->sections().at(0).name, QStringLiteral("Two"));
    QCOMPARE(good->sections().at(0).line, 2);
    QCOMPARE(good->sections().at(1).name, QStringLiteral("one"));
    QCOMPARE(good->sections().at(1).line, 4);
    QCOMPARE(good->find(QStringLiteral("two")), &good->sections().at(0));
    QVERIFY(good->find(QStringLiteral("Two")) == nullptr);
    QVERIFY(good->find(QStringLiteral("three")) == nullptr);
}

void tst_IniFile::fieldsWithTheirLines()
{
    QString error;
    const auto file = IniFile::parse("[A]\nKey = a=b;c \n\n;x=1\nEmpty=\n[B]\nkey=2", &error);
    QVERIFY2(file.has_value(), qPrintable(error));
    const IniFile::Section &section = file->sections().at(0);
    QCOMPARE(section.fields.size(), 2);
    QVERIFY(section.find("key") != nullptr);
    QCOMPARE(section.find("key")->value, QStringLiteral("a=b;c"));
    QCOMPARE(section.find("key")->line, 2);
    QVERIFY(section.find("empty") != nullptr);
    QCOMPARE(section.find("empty")->value, QString());
    QCOMPARE(section.find("empty")->line, 5);
    QVERIFY(section.find("x") == nullptr);
    QCOMPARE(file->sections().at(1).find("key")->value, QStringLiteral("2"));
}

void tst_IniFile::bytesThatAreNoUtf8()
{
    const auto file = IniFile::parse("[A]\nutf=W\xC3\xA4rme\nlatin=W\xE4rme\n", nullptr);
    QVERIFY(file.has_value());
    QCOMPARE(file->sections().first().find("utf")->value, QStringLiteral("W\u00E4rme"));
    QCOMPARE(file->sections().first().find("latin")->value, QStringLiteral("W\u00E4rme"));
}

void tst_IniFile::errors_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("message");

    const auto row = [](const char *name, const QByteArray &text, const char *message) {
        QTest::newRow(name) << text << QString::fromLatin1(message);
    };
    row("text before a section", "DataType=5\n", "line 1: there is text before the first section");
    row("neither", "[2000]\nhello\n", "line 2, [2000]: neither a section nor a key with a value");
    row("no key", "[2000]\n=5\n", "line 2, [2000]: neither a section nor a key with a value");
    row("open bracket", "[2000\n", "line 1: the section's name has no closing bracket");
    row("text behind", "[2000] x\n", "line 1: there is text behind the section's name");
    row("no name", "[ ]\n", "line 1: the section's name has no length between 1 and 80");
    row("long name", "[" + QByteArray(81, 'x') + "]\n",
        "line 1: the section's name has no length between 1 and 80");
    row("section twice", "[2000]\nDataType=5\n[2000]\n",
        "line 3, [2000]: the section is there twice, first in line 1");
    row("section twice in another case", "[Ab]\n[aB]\n",
        "line 2, [aB]: the section is there twice, first in line 1");
    row("key twice", "[2000]\nDataType=5\ndatatype=6\n", "line 3, [2000] datatype: the key is there twice");
    row("control characters", "[A\x1b[m]\nx=5\nX\x07=\nx\x07=6\n",
        "line 4, [A\\u001B[m] x\\u0007: the key is there twice");
}

void tst_IniFile::errors()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, message);
    QString error;
    QVERIFY(!IniFile::parse(text, &error).has_value());
    QCOMPARE(error, message);
    QVERIFY(!IniFile::parse(text, nullptr).has_value());
}

void tst_IniFile::hostileFiles_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("message");

    constexpr int megabyte = 1024 * 1024;
    QTest::newRow("10 MB in a line") << "[2000]\nDataType=" + QByteArray(10 * megabyte, '5')
                                     << QStringLiteral("the file is larger than 8 MB");
    QTest::newRow("7 MB in a line") << "[2000]\nDataType=" + QByteArray(7 * megabyte, '5')
                                    << QStringLiteral("line 2: longer than 65536 bytes");
    QTest::newRow("7 MB without a line end")
        << QByteArray(7 * megabyte, '[') << QStringLiteral("line 1: longer than 65536 bytes");
    QTest::newRow("NUL bytes only") << QByteArray(60000, '\0')
                                    << QStringLiteral("line 1: there is a NUL byte; this is no text file");
    QByteArray keys("[X]\n");
    for (int key = 0; key < 600000; ++key)
        keys += QByteArray::number(key, 36) + "=\n";
    QTest::newRow("600000 keys") << keys
                                 << QStringLiteral(
                                        "line 500001: the file has more than 500000 sections and keys");
}

void tst_IniFile::hostileFiles()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, message);
    QString error;
    QVERIFY(!IniFile::parse(text, &error).has_value());
    QCOMPARE(error, message);
}

void tst_IniFile::problems_data()
{
    QTest::addColumn<QString>("section");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("problem");
    QTest::addColumn<QString>("message");

    const QString dots = QStringLiteral("...");
    QTest::newRow("line") << QString() << QString() << QStringLiteral("bad") << QStringLiteral("line 7: bad");
    QTest::newRow("section") << QStringLiteral("S") << QString() << QStringLiteral("bad")
                             << QStringLiteral("line 7, [S]: bad");
    QTest::newRow("key") << QStringLiteral("S") << QStringLiteral("k") << QStringLiteral("bad")
                         << QStringLiteral("line 7, [S] k: bad");
    QTest::newRow("long key") << QStringLiteral("S") << QString(500, QLatin1Char('k'))
                              << QStringLiteral("bad")
                              << QStringLiteral("line 7, [S] ") + QString(80, QLatin1Char('k'))
                                     + QStringLiteral(": bad");
    QTest::newRow("long problem") << QString() << QString() << QString(201, QLatin1Char('x'))
                                  << QStringLiteral("line 7: ") + QString(200, QLatin1Char('x')) + dots;
}

void tst_IniFile::problems()
{
    QFETCH(QString, section);
    QFETCH(QString, key);
    QFETCH(QString, problem);
    QFETCH(QString, message);
    QCOMPARE(iniProblem(7, section, key, problem), message);
}

void tst_IniFile::plainTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("plain");

    const auto row = [](const char *name, const QString &text, const char *plain) {
        QTest::newRow(name) << text << QString::fromUtf8(plain);
    };
    row("letters of any script", QStringLiteral("a \u00E4 \u96FB"), "a \u00E4 \u96FB");
    row("beyond 16 bits", QString::fromUtf8("\xF0\x9F\x9A\xB2"), "\xF0\x9F\x9A\xB2");
    row("escape", QStringLiteral("\u001B[31m"), "\\u001B[31m");
    row("line ends and tabs", QStringLiteral("a\r\n\tb"), "a\\u000D\\u000A\\u0009b");
    row("delete", QString(QChar(0x7F)), "\\u007F");
    row("eight-bit control", QString(QChar(0x9B)), "\\u009B");
    row("right to left", QStringLiteral("\u202Ecod"), "\\u202Ecod");
    row("line separator", QString(QChar(0x2028)), "\\u2028");
    row("tag beyond 16 bits", QString::fromUtf8("\xF3\xA0\x80\x81"), "\\u{E0001}");
    row("lone surrogates", QString(QChar(0xD800)) + QString(QChar(0xDC00)).prepend(QLatin1Char('x')),
        "\\uD800x\\uDC00");
    row("empty", QString(), "");
}

void tst_IniFile::plainTexts()
{
    QFETCH(QString, text);
    QFETCH(QString, plain);
    QCOMPARE(plainText(text), plain);
}

QTEST_GUILESS_MAIN(tst_IniFile)
#include "tst_inifile.moc"
