// SPDX-License-Identifier: MIT
#include "reportexample.h"
#include "reporttexts.h"

#include <servicereport/pdfreport.h>
#include <servicereport/reportlanguage.h>
#include <servicereport/reportmaker.h>

#include <checkup/objectwords.h>

#include <QEvent>
#include <QGuiApplication>
#include <QTranslator>
#include <QtTest>

namespace {

const QString folder = QStringLiteral(LANGUAGE_FOLDER);

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

ServiceReport reportIn(const QString &name)
{
    const ReportLanguage language(name, folder);
    return makeServiceReport(ReportExample::data(language.locale()));
}

/*! Counts what windows would hear of another language. */
class LanguageWatcher : public QObject
{
public:
    LanguageWatcher() { qApp->installEventFilter(this); }
    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (event->type() == QEvent::LanguageChange)
            ++count;
        return QObject::eventFilter(object, event);
    }
    int count = 0;
};

} // namespace

class tst_ReportLanguage : public QObject
{
    Q_OBJECT

private slots:
    void languages() { QCOMPARE(ReportLanguage::available(folder), list("de en fr nl zh_CN")); }
    void titles_data();
    void titles();
    void everyLanguageIsComplete_data();
    void everyLanguageIsComplete();
    void programKeepsItsLanguage();
    void englishInAGermanProgram();
    void windowsHearNothing();
    void unitsAndPlurals();
    void findingsHaveTheNumbersOfTheLanguage();
    void datesOfEnglish();

private:
    static QStringList list(const char *texts) { return QString::fromLatin1(texts).split(QLatin1Char(' ')); }
};

void tst_ReportLanguage::titles_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("headline");
    QTest::addColumn<QString>("date");
    QTest::newRow("English") << s("en") << s("Service report") << s("Faults were found")
                             << s("3 September 2026, 10:12 (UTC+02:00)");
    QTest::newRow("German") << s("de") << s("Servicebericht") << s("Es wurden Fehler gefunden")
                            << s("3. September 2026, 10:12 (UTC+02:00)");
    QTest::newRow("French") << s("fr") << s("Rapport d’entretien") << s("Des défauts ont été trouvés")
                            << s("3 septembre 2026, 10:12 (UTC+02:00)");
    QTest::newRow("Dutch") << s("nl") << s("Servicerapport") << s("Er zijn fouten gevonden")
                           << s("3 september 2026, 10:12 (UTC+02:00)");
    QTest::newRow("Chinese") << s("zh_CN") << s("检修报告") << s("发现故障")
                             << s("2026年9月3日 10:12 (UTC+02:00)");
}

void tst_ReportLanguage::titles()
{
    QFETCH(QString, language);
    QFETCH(QString, title);
    QFETCH(QString, headline);
    QFETCH(QString, date);
    const ServiceReport report = reportIn(language);
    QCOMPARE(report.title, title);
    QCOMPARE(report.verdictHeadline, headline);
    QCOMPARE(report.facts.at(2).text, date);
}

void tst_ReportLanguage::everyLanguageIsComplete_data()
{
    QTest::addColumn<QString>("language");
    for (const char *language : {"de", "fr", "nl", "zh_CN"})
        QTest::newRow(language) << s(language);
}

void tst_ReportLanguage::everyLanguageIsComplete()
{
    QFETCH(QString, language);
    const ServiceReport report = reportIn(language);
    const ServiceReport english = reportIn(s("en"));
    QCOMPARE(report.sections.size(), english.sections.size());
    for (int i = 0; i < report.sections.size(); ++i)
        QVERIFY2(report.sections.at(i).title != english.sections.at(i).title,
                 qPrintable(report.sections.at(i).title));
    for (const QString &text : ReportTexts::of(report))
        QVERIFY2(!text.contains(s("%1")) && !text.contains(s("%n")), qPrintable(text));
}

void tst_ReportLanguage::programKeepsItsLanguage()
{
    const QString before = makeServiceReport(ReportExample::data()).title;
    reportIn(s("de"));
    QCOMPARE(makeServiceReport(ReportExample::data()).title, before);
}

void tst_ReportLanguage::englishInAGermanProgram()
{
    QTranslator german;
    QVERIFY(german.load(folder + s("/draxel_de.qm")));
    QCoreApplication::installTranslator(&german);
    QCOMPARE(makeServiceReport(ReportExample::data()).title, s("Servicebericht"));
    QCOMPARE(reportIn(s("en")).title, s("Service report"));
    QCOMPARE(reportIn(s("fr")).title, s("Rapport d’entretien"));
    QCOMPARE(makeServiceReport(ReportExample::data()).title, s("Servicebericht"));
}

void tst_ReportLanguage::windowsHearNothing()
{
    LanguageWatcher watcher;
    reportIn(s("de"));
    QCoreApplication::processEvents();
    QCOMPARE(watcher.count, 0);
    QTranslator german;
    QVERIFY(german.load(folder + s("/draxel_de.qm")));
    QCoreApplication::installTranslator(&german); // as the program itself does
    QCOMPARE(watcher.count, 1);
}

void tst_ReportLanguage::unitsAndPlurals()
{
    QCOMPARE(reportIn(s("en")).verdictSentence,
             s("2 faults, 1 warning, 2 notes, 2 components not fully checked"));
    QCOMPARE(reportIn(s("de")).verdictSentence,
             s("2 Fehler, 1 Warnung, 2 Hinweise, 2 Komponenten nicht vollständig geprüft"));
}

void tst_ReportLanguage::findingsHaveTheNumbersOfTheLanguage()
{
    QCOMPARE(ObjectWords::inUnit(36500, s("mV")), s("36.50 V"));
    {
        const ReportLanguage language(s("de"), folder);
        QCOMPARE(ObjectWords::inUnit(36500, s("mV")), s("36,50 V"));
        QCOMPARE(ObjectWords::value({0x6040, 1}, 36500), s("36,50 V"));
    }
    QCOMPARE(ObjectWords::inUnit(36500, s("mV")), s("36.50 V"));
    QCOMPARE(ObjectWords::value({0x6040, 1}, 36500), s("36.50 V"));
}

void tst_ReportLanguage::datesOfEnglish()
{
    QCOMPARE(ReportLanguage::localeOf(s("en")).country(), QLocale::UnitedKingdom);
    QCOMPARE(ReportLanguage::localeOf(s("zh_CN")).language(), QLocale::Chinese);
}

QTEST_MAIN(tst_ReportLanguage)
#include "tst_reportlanguage.moc"
