// SPDX-License-Identifier: MIT
#include "hostiletext.h"
#include "reportexample.h"
#include "reporttexts.h"

#include <servicereport/pdfreport.h>
#include <servicereport/reportlanguage.h>
#include <servicereport/reportmaker.h>

#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

namespace {

/*! What one of poppler's tools says of a PDF. */
QString ask(const QByteArray &pdf, const QString &tool, const QStringList &options = {},
            bool writesToOutput = false)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("report.pdf"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(pdf) != pdf.size())
        return QString();
    file.close();
    QProcess process;
    process.start(tool, options + QStringList{path}
                            + (writesToOutput ? QStringList{QStringLiteral("-")} : QStringList()));
    if (!process.waitForFinished(60000) || process.exitCode() != 0)
        return QStringLiteral("failed: ") + QString::fromUtf8(process.readAllStandardError());
    return QString::fromUtf8(process.readAllStandardOutput());
}

QString textOf(const QByteArray &pdf)
{
    return ask(pdf, QStringLiteral("pdftotext"),
               {QStringLiteral("-raw"), QStringLiteral("-enc"), QStringLiteral("UTF-8")}, true);
}

QString information(const QByteArray &pdf, const char *name)
{
    for (const QString &line : ask(pdf, QStringLiteral("pdfinfo")).split(QLatin1Char('\n'))) {
        if (line.startsWith(QLatin1String(name) + QLatin1Char(':')))
            return line.section(QLatin1Char(':'), 1).trimmed();
    }
    return QString();
}

} // namespace

/*! The PDF, read back by programs that were not written here. */
class tst_PdfReport : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void saysEverything();
    void wordsOfStatesAreWhole_data();
    void wordsOfStatesAreWhole();
    void statesOfHeadingsAreOneLine();
    void numbersItsPages();
    void hasATitle();
    void embedsItsFonts();
    void paper_data();
    void paper();
    void paperOfACountry();
    void manyComponents();
    void pagesSayWhoseValuesTheyHave();
    void hostileTexts_data();
    void hostileTexts();
    void longNoteGoesOnOverPages();
    void numbersOfObjectsAreNotBroken();
};

void tst_PdfReport::initTestCase()
{
    QVERIFY2(!QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty(),
             "poppler-utils is missing");
}

void tst_PdfReport::saysEverything()
{
    const ServiceReport report = makeServiceReport(ReportExample::data());
    const QString text = ReportTexts::squeezed(textOf(toPdf(report, QPageSize::A4)));
    const QStringList texts = ReportTexts::of(report);
    QVERIFY(texts.size() > 150);
    for (const QString &sentence : texts)
        QVERIFY2(text.contains(ReportTexts::squeezed(sentence)), qPrintable(sentence));
}

void tst_PdfReport::wordsOfStatesAreWhole_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("word");

    QTest::newRow("French") << "fr"
                            << "Avertissement";
    QTest::newRow("Dutch") << "nl"
                           << "Waarschuwing";
    QTest::newRow("Dutch, the longest") << "nl"
                                        << "gecontroleerd";
    QTest::newRow("German") << "de"
                            << "Warnung";
}

// The column of states is as wide as the longest word of any language.
void tst_PdfReport::wordsOfStatesAreWhole()
{
    QFETCH(QString, language);
    QFETCH(QString, word);
    const ReportLanguage texts(language, QStringLiteral(LANGUAGE_FOLDER));
    const ServiceReport report = makeServiceReport(ReportExample::data());
    const int count = ReportTexts::of(report).join(QLatin1Char('\n')).count(word);
    QVERIFY(count > 1);
    QCOMPARE(textOf(toPdf(report, QPageSize::A4)).count(word),
             count + 1); // the light of the component says it, too
}

// The longest state of any language behind the name of a component.
void tst_PdfReport::statesOfHeadingsAreOneLine()
{
    const ReportLanguage texts(QStringLiteral("nl"), QStringLiteral(LANGUAGE_FOLDER));
    const QByteArray pdf = toPdf(makeServiceReport(ReportExample::data()), QPageSize::A4);
    const QString text = ask(pdf, QStringLiteral("pdftotext"), {QStringLiteral("-layout")}, true);
    const QRegularExpression heading(QStringLiteral("node \\d+ +Niet gecontroleerd"));
    QVERIFY2(text.contains(heading), qPrintable(text));
}

void tst_PdfReport::numbersItsPages()
{
    const QByteArray pdf = toPdf(makeServiceReport(ReportExample::data()), QPageSize::A4);
    const int pages = information(pdf, "Pages").toInt();
    QVERIFY(pages > 1);
    const QStringList texts = textOf(pdf).split(QLatin1Char('\f'));
    for (int page = 1; page <= pages; ++page) {
        QVERIFY(texts.value(page - 1).contains(QStringLiteral("Page %1 of %2").arg(page).arg(pages)));
        QVERIFY(texts.value(page - 1).contains(QStringLiteral("Cargo bike 7 (1104001) · 3 September 2026")));
    }
}

void tst_PdfReport::hasATitle()
{
    const QByteArray pdf = toPdf(makeServiceReport(ReportExample::data()), QPageSize::A4);
    QCOMPARE(information(pdf, "Title"),
             QStringLiteral("Service report · Cargo bike 7 (1104001) · 3 September 2026"));
    QCOMPARE(information(pdf, "Creator"), QStringLiteral("draxelctl 1.0.0"));
}

void tst_PdfReport::embedsItsFonts()
{
    const QByteArray pdf = toPdf(makeServiceReport(ReportExample::data()), QPageSize::A4);
    const QStringList lines
        = ask(pdf, QStringLiteral("pdffonts")).split(QLatin1Char('\n'), Qt::SkipEmptyParts).mid(2);
    QVERIFY(!lines.isEmpty());
    static const QRegularExpression embedded(QStringLiteral("Identity-H +yes"));
    for (const QString &line : lines)
        QVERIFY2(line.contains(embedded), qPrintable(line));
}

void tst_PdfReport::paper_data()
{
    QTest::addColumn<int>("paper");
    QTest::addColumn<QString>("size");
    QTest::newRow("A4") << int(QPageSize::A4) << QStringLiteral("595 x 842 pts (A4)");
    QTest::newRow("Letter") << int(QPageSize::Letter) << QStringLiteral("612 x 792 pts (letter)");
}

void tst_PdfReport::paper()
{
    QFETCH(int, paper);
    QFETCH(QString, size);
    const QByteArray pdf
        = toPdf(makeServiceReport(ReportExample::data()), static_cast<QPageSize::PageSizeId>(paper));
    QCOMPARE(information(pdf, "Page size"), size);
}

void tst_PdfReport::paperOfACountry()
{
    QCOMPARE(usualPaper(QLocale(QLocale::English, QLocale::UnitedStates)), QPageSize::Letter);
    QCOMPARE(usualPaper(QLocale(QLocale::English, QLocale::UnitedKingdom)), QPageSize::A4);
    QCOMPARE(usualPaper(QLocale(QLocale::German)), QPageSize::A4);
}

void tst_PdfReport::manyComponents()
{
    ServiceReportData data = ReportExample::data();
    const SnapshotNode battery = *data.snapshot.find(2);
    data.snapshot.nodes.clear();
    for (int id = 1; id <= 127; ++id) {
        data.snapshot.nodes.append(battery);
        data.snapshot.nodes.last().id = quint8(id);
    }
    const QByteArray pdf = toPdf(makeServiceReport(data), QPageSize::A4);
    const QString text = textOf(pdf);
    QCOMPARE(text.count(QStringLiteral("Cell voltages")), 127);
    const int pages = information(pdf, "Pages").toInt();
    QVERIFY(text.contains(QStringLiteral("Page %1 of %1").arg(pages)));
}

void tst_PdfReport::pagesSayWhoseValuesTheyHave()
{
    ServiceReportData data = ReportExample::data();
    const SnapshotNode battery = *data.snapshot.find(2);
    data.snapshot.nodes.clear();
    for (int id = 1; id <= 30; ++id) {
        data.snapshot.nodes.append(battery);
        data.snapshot.nodes.last().id = quint8(id);
    }
    const QByteArray pdf = toPdf(makeServiceReport(data), QPageSize::A4);
    const QStringList pages = textOf(pdf).split(QLatin1Char('\f'));
    int tables = 0;
    int charts = 0;
    int tablesOfAll = 0;
    for (const QString &page : pages) {
        const QString first = page.section(QLatin1Char('\n'), 1, 1); // behind the page's foot
        const QString second = page.section(QLatin1Char('\n'), 2, 2);
        QVERIFY2(!first.startsWith(QStringLiteral("Value Now")), qPrintable(page));
        QVERIFY2(!first.startsWith(QStringLiteral("Cell voltages")), qPrintable(page));
        tablesOfAll += first.startsWith(QStringLiteral("Component Why")) ? 1 : 0;
        if (first.contains(QRegularExpression(QStringLiteral("node \\d+")))) {
            tables += second.startsWith(QStringLiteral("Value Now")) ? 1 : 0;
            charts += second.startsWith(QStringLiteral("Cell voltages")) ? 1 : 0;
        }
    }
    QVERIFY(tables > 0);
    QVERIFY(charts > 0);
    QVERIFY(tablesOfAll > 0); // what was not read is not the last component's
}

void tst_PdfReport::hostileTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("markup") << HostileText::markup();
    QTest::newRow("control characters") << HostileText::control();
    QTest::newRow("turned around") << HostileText::turnedAround();
    QTest::newRow("half a character") << HostileText::loneSurrogate();
    QTest::newRow("10 kB") << HostileText::veryLong();
    QTest::newRow("line breaks") << QString(5000, QLatin1Char('\n'));
    QTest::newRow("wide letter") << QString(3000, QChar(0xFDFD));
}

void tst_PdfReport::hostileTexts()
{
    QFETCH(QString, text);
    ServiceReportData data = ReportExample::data();
    data.workshop.name = text;
    data.workshop.lines = QStringList{text, text};
    data.snapshot.notes = {text, text, text, text, text};
    data.checkup.components[0].name = text;
    data.checkup.components[0].findings[0].text = text;
    data.checkup.components[0].findings[0].advice = text;
    data.checkup.components[0].notChecked = QStringList{text};
    data.comparison->comparison.changes[0].text = text;
    for (SnapshotEntry &entry : data.snapshot.nodes[1].entries) {
        if (entry.value.type() == QVariant::String)
            entry.value = text;
    }
    const QByteArray pdf = toPdf(makeServiceReport(data), QPageSize::A4);
    QVERIFY(information(pdf, "Pages").toInt() >= 3);
    const QString written = textOf(pdf);
    // What stands at the very end is there, and nothing that the hostile text may turn around.
    QVERIFY(written.contains(QStringLiteral("certutil")));
    QVERIFY(!written.contains(QChar(0x202E)) && !written.contains(QChar(0x1B)));
}

void tst_PdfReport::numbersOfObjectsAreNotBroken()
{
    ServiceReportData data = ReportExample::data();
    QStringList lines;
    for (int i = 40; i < 70; ++i) // somewhere the line ends at each letter
        lines << QString(i, QLatin1Char('x')) + QStringLiteral(" was reported (1003h.0) and (6164h.12).");
    data.snapshot.notes.note = lines.join(QLatin1Char('\n'));
    const QStringList drawn = textOf(toPdf(makeServiceReport(data), QPageSize::A4)).split(QLatin1Char('\n'));
    int numbers = 0;
    for (const QString &line : drawn) {
        QVERIFY2(!line.endsWith(QLatin1String("h.")), qPrintable(line));
        numbers += line.count(QLatin1String("(1003h.0)")) + line.count(QLatin1String("(6164h.12)"));
    }
    QCOMPARE(numbers, 60);
}

void tst_PdfReport::longNoteGoesOnOverPages()
{
    ServiceReportData data = ReportExample::data();
    QStringList lines;
    for (int i = 0; i < 200; ++i)
        lines << QStringLiteral("line-%1").arg(i);
    data.snapshot.notes.note = lines.join(QLatin1Char('\n'));
    const QString text = textOf(toPdf(makeServiceReport(data), QPageSize::A4));
    for (const QString &line : lines)
        QVERIFY2(text.contains(line), qPrintable(line));
}

QTEST_MAIN(tst_PdfReport)
#include "tst_pdfreport.moc"
