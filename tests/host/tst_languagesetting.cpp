// SPDX-License-Identifier: MIT
#include <host/core/languagesetting.h>

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

class tst_LanguageSetting : public QObject
{
    Q_OBJECT

private slots:
    void listsLanguages();
    void findsBest_data();
    void findsBest();
    void appliesLanguage();
    void unknownLanguageIsEnglish();
};

namespace {

void addFiles(const QTemporaryDir &folder, const QStringList &languages)
{
    for (const QString &language : languages) {
        QFile file(folder.path() + QStringLiteral("/draxel_%1.qm").arg(language));
        if (!file.open(QIODevice::WriteOnly))
            qFatal("cannot write %s", qUtf8Printable(file.fileName()));
    }
}

} // namespace

void tst_LanguageSetting::listsLanguages()
{
    QTemporaryDir folder;
    QCOMPARE(LanguageSetting(folder.path()).available(), QStringList{QStringLiteral("en")});
    addFiles(folder, {QStringLiteral("zh_CN"), QStringLiteral("de")});
    QFile other(folder.path() + QStringLiteral("/pl_overview_nl.qm"));
    QVERIFY(other.open(QIODevice::WriteOnly));
    QCOMPARE(LanguageSetting(folder.path()).available(),
             QStringList({QStringLiteral("de"), QStringLiteral("en"), QStringLiteral("zh_CN")}));
}

void tst_LanguageSetting::findsBest_data()
{
    QTest::addColumn<QStringList>("wanted");
    QTest::addColumn<QString>("best");

    QTest::newRow("nothing wanted") << QStringList() << QStringLiteral("en");
    QTest::newRow("exact") << QStringList{QStringLiteral("de")} << QStringLiteral("de");
    QTest::newRow("country") << QStringList{QStringLiteral("de-AT")} << QStringLiteral("de");
    QTest::newRow("script") << QStringList{QStringLiteral("zh-Hans-CN")} << QStringLiteral("zh_CN");
    QTest::newRow("second choice") << QStringList{QStringLiteral("pt"), QStringLiteral("de")}
                                   << QStringLiteral("de");
    QTest::newRow("none of them") << QStringList{QStringLiteral("pt-BR")} << QStringLiteral("en");
    QTest::newRow("English before others")
        << QStringList{QStringLiteral("en-US"), QStringLiteral("de")} << QStringLiteral("en");
}

void tst_LanguageSetting::findsBest()
{
    QFETCH(QStringList, wanted);
    QFETCH(QString, best);
    QTemporaryDir folder;
    addFiles(folder, {QStringLiteral("zh_CN"), QStringLiteral("de")});
    QCOMPARE(LanguageSetting(folder.path()).bestOf(wanted), best);
}

void tst_LanguageSetting::appliesLanguage()
{
    LanguageSetting setting(QStringLiteral(TEST_LANGUAGE_FOLDER));
    QVERIFY(setting.apply(QStringLiteral("xx")));
    QCOMPARE(setting.current(), QStringLiteral("xx"));
    QCOMPARE(QCoreApplication::translate("StatusLine", "Not connected."), QStringLiteral("Nicht verbunden."));
    QVERIFY(setting.apply(QStringLiteral("en")));
    QCOMPARE(QCoreApplication::translate("StatusLine", "Not connected."), QStringLiteral("Not connected."));
}

void tst_LanguageSetting::unknownLanguageIsEnglish()
{
    LanguageSetting setting(QStringLiteral(TEST_LANGUAGE_FOLDER));
    QVERIFY(setting.apply(QStringLiteral("xx")));
    QVERIFY(!setting.apply(QStringLiteral("yy")));
    QCOMPARE(QCoreApplication::translate("StatusLine", "Not connected."), QStringLiteral("Not connected."));
}

QTEST_GUILESS_MAIN(tst_LanguageSetting)
#include "tst_languagesetting.moc"
