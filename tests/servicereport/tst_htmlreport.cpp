// SPDX-License-Identifier: MIT
#include "hostiletext.h"
#include "reportexample.h"
#include "reporttexts.h"

#include <servicereport/htmlreport.h>
#include <servicereport/reportmaker.h>

#include <QXmlStreamReader>
#include <QtTest>

namespace {

/*! What the file's body says, and the names of its elements and attributes; an error when it is not well-formed. */
struct Parsed
{
    explicit Parsed(const QByteArray &html)
    {
        QXmlStreamReader xml(html);
        while (!xml.atEnd()) {
            xml.readNext();
            if (xml.isStartElement()) {
                elements << xml.name().toString();
                for (const QXmlStreamAttribute &attribute : xml.attributes())
                    attributes << attribute.name().toString() + QLatin1Char('=')
                                      + attribute.value().toString();
            }
            if (xml.isCharacters())
                text += xml.text();
        }
        error = xml.hasError() ? xml.errorString() : QString();
    }

    /*! The names of all elements and attributes, each once. */
    QStringList kinds() const
    {
        QStringList names = elements;
        for (const QString &attribute : attributes)
            names << QLatin1Char('@') + attribute.section(QLatin1Char('='), 0, 0);
        names.removeDuplicates();
        names.sort();
        return names;
    }

    QStringList elements;
    QStringList attributes;
    QString text;
    QString error;
};

ServiceReportData hostileData(const QString &text)
{
    ServiceReportData data = ReportExample::data();
    data.workshop.name = text;
    data.workshop.lines = QStringList{text};
    data.program = text;
    data.snapshot.program = text;
    data.snapshot.bus = text;
    data.snapshot.adapter = text;
    data.snapshot.notes = {text, text, text, text, text};
    for (SnapshotNode &node : data.snapshot.nodes) {
        node.dataSheet = text;
        for (SnapshotEntry &entry : node.entries) {
            if (entry.value.type() == QVariant::String)
                entry.value = text;
        }
    }
    for (CheckedComponent &component : data.checkup.components) {
        component.name = text;
        component.notChecked = QStringList{text};
        for (Finding &finding : component.findings) {
            finding.text = text;
            finding.advice = text;
        }
    }
    for (Change &change : data.comparison->comparison.changes) {
        change.before = text;
        change.after = text;
        change.text = text;
    }
    return data;
}

} // namespace

class tst_HtmlReport : public QObject
{
    Q_OBJECT

private slots:
    void saysEverything();
    void isWellFormed();
    void needsNothingFromElsewhere();
    void hostileTexts_data();
    void hostileTexts();
    void writesOutWhatWouldAct();
    void namesItsLanguage();
    void holdsItsLogo();
    void hasNoLogoWithoutOne();
    void marksHaveAWord();
};

void tst_HtmlReport::saysEverything()
{
    const ServiceReport report = makeServiceReport(ReportExample::data());
    const QString text = ReportTexts::squeezed(Parsed(toHtml(report)).text);
    const QStringList texts = ReportTexts::of(report);
    QVERIFY(texts.size() > 150);
    for (const QString &sentence : texts)
        QVERIFY2(text.contains(ReportTexts::squeezed(sentence)), qPrintable(sentence));
}

void tst_HtmlReport::isWellFormed()
{
    const Parsed html(toHtml(makeServiceReport(ReportExample::data())));
    QCOMPARE(html.error, QString());
    QVERIFY(html.elements.contains(QStringLiteral("svg")));
    // In HTML only these may close themselves.
    const QByteArray file = toHtml(makeServiceReport(ReportExample::data()));
    QRegularExpressionMatchIterator it
        = QRegularExpression(QStringLiteral("<([a-z0-9]+)[^>]*/>")).globalMatch(QString::fromUtf8(file));
    const QStringList voids{QStringLiteral("meta"),     QStringLiteral("img"),     QStringLiteral("col"),
                            QStringLiteral("polyline"), QStringLiteral("polygon"), QStringLiteral("circle")};
    int count = 0;
    for (; it.hasNext(); ++count) {
        const QString element = it.next().captured(1);
        QVERIFY2(voids.contains(element), qPrintable(element));
    }
    QVERIFY(count > 20);
    QVERIFY(file.startsWith("<!DOCTYPE html>"));
}

void tst_HtmlReport::needsNothingFromElsewhere()
{
    const QByteArray file = toHtml(makeServiceReport(ReportExample::data()));
    const Parsed html(file);
    QVERIFY(!html.elements.contains(QStringLiteral("script")));
    QVERIFY(!html.elements.contains(QStringLiteral("link")));
    QVERIFY(!file.contains("url("));
    QVERIFY(!file.contains("@import"));
    for (const QString &attribute : html.attributes) {
        QVERIFY2(!attribute.startsWith(QLatin1String("href=")) && !attribute.startsWith(QLatin1String("on")),
                 qPrintable(attribute));
        QVERIFY2(!attribute.contains(QLatin1String("://")), qPrintable(attribute));
    }
    QVERIFY(html.attributes.contains(
        QStringLiteral("content=default-src 'none'; style-src 'unsafe-inline'; img-src data:")));
}

void tst_HtmlReport::hostileTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("markup") << HostileText::markup();
    QTest::newRow("control characters") << HostileText::control();
    QTest::newRow("turned around") << HostileText::turnedAround();
    QTest::newRow("half a character") << HostileText::loneSurrogate();
    QTest::newRow("10 kB") << HostileText::veryLong();
    QTest::newRow("line breaks") << QString(5000, QLatin1Char('\n'));
}

void tst_HtmlReport::hostileTexts()
{
    QFETCH(QString, text);
    const Parsed html(toHtml(makeServiceReport(hostileData(text))));
    QCOMPARE(html.error, QString());
    const Parsed harmless(toHtml(makeServiceReport(hostileData(QStringLiteral("harmless")))));
    QCOMPARE(html.kinds(), harmless.kinds());
}

void tst_HtmlReport::writesOutWhatWouldAct()
{
    ServiceReportData data = ReportExample::data();
    data.snapshot.notes.vehicle = HostileText::turnedAround();
    data.snapshot.notes.customer = HostileText::control();
    data.snapshot.notes.technician = HostileText::loneSurrogate();
    const QString text = Parsed(toHtml(makeServiceReport(data))).text;
    QVERIFY(text.contains(QStringLiteral("abc\\u202Edef\\u2066")));
    QVERIFY(text.contains(QStringLiteral("a\\u001B[31m\\u0000\\u000Cb")));
    QVERIFY(text.contains(QStringLiteral("x\\uD83Dy")));
    for (const QChar character : text)
        QVERIFY(character == QLatin1Char('\n') || character.unicode() >= 0x20);
}

void tst_HtmlReport::namesItsLanguage()
{
    const Parsed html(toHtml(makeServiceReport(ReportExample::data(QLocale(QStringLiteral("zh_CN"))))));
    QVERIFY(html.attributes.contains(QStringLiteral("lang=zh")));
    const Parsed german(toHtml(makeServiceReport(ReportExample::data(QLocale(QLocale::German)))));
    QVERIFY(german.attributes.contains(QStringLiteral("lang=de")));
}

void tst_HtmlReport::holdsItsLogo()
{
    ServiceReportData data = ReportExample::data();
    data.workshop.logo = QImage(4, 3, QImage::Format_ARGB32);
    data.workshop.logo.fill(Qt::red);
    const Parsed html(toHtml(makeServiceReport(data)));
    const QString prefix = QStringLiteral("src=data:image/png;base64,");
    const int position = html.attributes.indexOf(QRegularExpression(prefix + QStringLiteral(".*")));
    QVERIFY(position >= 0);
    const QImage logo = QImage::fromData(
        QByteArray::fromBase64(html.attributes.at(position).mid(prefix.size()).toLatin1()), "PNG");
    QCOMPARE(logo.size(), QSize(4, 3));
    QCOMPARE(logo.pixelColor(1, 1), QColor(Qt::red));
}

void tst_HtmlReport::hasNoLogoWithoutOne()
{
    QVERIFY(
        !Parsed(toHtml(makeServiceReport(ReportExample::data()))).elements.contains(QStringLiteral("img")));
}

void tst_HtmlReport::marksHaveAWord()
{
    const Parsed html(toHtml(makeServiceReport(ReportExample::data())));
    for (const char *word : {"Fault", "Warning", "Note", "Not checked", "Good"})
        QVERIFY2(html.attributes.contains(QStringLiteral("aria-label=") + QLatin1String(word)), word);
}

QTEST_MAIN(tst_HtmlReport)
#include "tst_htmlreport.moc"
