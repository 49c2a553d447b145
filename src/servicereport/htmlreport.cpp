// SPDX-License-Identifier: MIT
#include "htmlreport.h"

#include "htmlstyle.h"
#include "servicereport.h"

#include <canopen/plaintext.h>

#include <QBuffer>
#include <QXmlStreamWriter>

#include <algorithm>

namespace {

constexpr int widestCell
    = 6; // share of a column; a table with more columns or wider ones becomes a list on a telephone
constexpr int mostNarrowColumns = 3;
constexpr int longFactOnScreen = 120; // characters that need the whole width

QString name(const char *text)
{
    return QString::fromLatin1(text);
}

/*! What is written, line breaks included, with everything that would act written out. */
QString visible(const QString &text)
{
    QStringList lines = text.split(QLatin1Char('\n'));
    for (QString &line : lines) {
        if (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
        line = CanOpen::plainText(line);
    }
    return lines.join(QLatin1Char('\n'));
}

QString styleOf(ReportMark mark)
{
    return QStringLiteral("--ink:var(--%1)").arg(ReportInk::name(ReportMarks::ink(mark)));
}

class HtmlWriter
{
public:
    explicit HtmlWriter(QByteArray *html)
        : m_xml(html)
    {
    }

    void write(const ServiceReport &report)
    {
        m_labels = report.labels;
        m_xml.writeDTD(QStringLiteral("<!DOCTYPE html>"));
        begin("html");
        m_xml.writeAttribute(name("lang"), report.locale.bcp47Name());
        writeHead(report);
        begin("body");
        begin("main");
        writeLetterHead(report);
        writeVerdict(report);
        writeFacts(report.facts);
        for (const ReportSection &section : report.sections)
            writeSection(section);
        element("footer", footText(report));
        end();
        end();
        end();
    }

private:
    void begin(const char *tag, const char *cssClass = nullptr)
    {
        m_xml.writeStartElement(name(tag));
        if (cssClass != nullptr)
            m_xml.writeAttribute(name("class"), name(cssClass));
    }

    void end()
    {
        // Without this an element without a text would become <p/>, which HTML takes for <p>.
        m_xml.writeCharacters(QString());
        m_xml.writeEndElement();
    }

    void text(const QString &text) { m_xml.writeCharacters(visible(text)); }

    void element(const char *tag, const QString &content, const char *cssClass = nullptr)
    {
        begin(tag, cssClass);
        text(content);
        end();
    }

    void meta(const char *key, const char *value, const QString &content)
    {
        m_xml.writeEmptyElement(name("meta"));
        m_xml.writeAttribute(name(key), name(value));
        m_xml.writeAttribute(name("content"), visible(content));
    }

    void writeHead(const ServiceReport &report)
    {
        begin("head");
        m_xml.writeEmptyElement(name("meta"));
        m_xml.writeAttribute(name("charset"), name("utf-8"));
        meta("http-equiv", "Content-Security-Policy",
             name("default-src 'none'; style-src 'unsafe-inline'; img-src data:"));
        meta("name", "viewport", name("width=device-width, initial-scale=1"));
        meta("name", "color-scheme", name("light dark"));
        meta("name", "generator", report.program);
        element("title", report.title + QStringLiteral(" · ") + report.subject);
        begin("style");
        // As it is: the style sheets have no sign that HTML or XML would take for their own.
        m_xml.writeCharacters(ReportInk::styleSheet()
                              + name(htmlStyle).replace(QLatin1Char('"'), QLatin1Char('\'')));
        end();
        end();
    }

    void writeLetterHead(const ServiceReport &report)
    {
        begin("header", "letter");
        begin("div");
        element("h1", report.title);
        if (!report.workshop.isEmpty())
            element("div", report.workshop, "shop");
        if (!report.workshopLines.isEmpty())
            element("div", report.workshopLines.join(QLatin1Char('\n')), "shoplines lines");
        end();
        writeLogo(report.logo, report.workshop);
        end();
    }

    void writeLogo(const QImage &logo, const QString &workshop)
    {
        if (logo.isNull())
            return;
        QByteArray png;
        QBuffer buffer(&png);
        logo.save(&buffer, "PNG");
        m_xml.writeEmptyElement(name("img"));
        m_xml.writeAttribute(name("alt"), visible(workshop));
        m_xml.writeAttribute(name("src"),
                             name("data:image/png;base64,") + QString::fromLatin1(png.toBase64()));
    }

    void writeMark(ReportMark mark)
    {
        if (mark != ReportMark::None)
            writeSvg(m_xml, ReportMarks::shape(mark), name("mark"), m_labels.word(mark));
    }

    void writeVerdict(const ServiceReport &report)
    {
        begin("div", "verdict");
        m_xml.writeAttribute(name("style"), styleOf(report.verdict));
        writeMark(report.verdict);
        begin("div");
        element("strong", report.verdictHeadline);
        element("span", report.verdictSentence);
        end();
        end();
    }

    void writeFacts(const QVector<ReportFact> &facts)
    {
        begin("dl");
        for (const ReportFact &fact : facts) {
            const bool isLong = fact.text.size() > longFactOnScreen || fact.text.contains(QLatin1Char('\n'));
            begin("div", isLong ? "wide" : nullptr);
            element("dt", fact.name);
            begin("dd");
            m_xml.writeAttribute(name("dir"), name("auto"));
            text(fact.text);
            end();
            end();
        }
        end();
    }

    void writeSection(const ReportSection &section)
    {
        begin("section");
        element("h2", section.title);
        for (const ReportBlock &block : section.blocks)
            std::visit([this](const auto &content) { writeBlock(content); }, block);
        end();
    }

    void writeBlock(const ReportFacts &facts) { writeFacts(facts.facts); }

    void writeBlock(const ReportParagraph &paragraph)
    {
        const char *cssClass = paragraph.look == ReportParagraph::Look::Code    ? "lines code"
                               : paragraph.look == ReportParagraph::Look::Small ? "lines small"
                                                                                : "lines";
        element("p", paragraph.text, cssClass);
    }

    void writeBlock(const ReportHeading &heading)
    {
        begin("h3");
        writeMark(heading.mark);
        element("span", heading.text);
        element("span", heading.aside, "aside");
        end();
    }

    void writeBlock(const ReportItems &items)
    {
        begin("ul", "items");
        for (const ReportItem &item : items.items)
            writeItem(item);
        end();
    }

    void writeItem(const ReportItem &item)
    {
        begin("li");
        m_xml.writeAttribute(name("style"), styleOf(item.mark));
        writeMark(item.mark);
        begin("div", "what");
        begin("div");
        element("span", m_labels.word(item.mark), "word");
        text(QStringLiteral(" · "));
        element("span", item.place, "place");
        end();
        element("div", item.text, "said");
        if (!item.advice.isEmpty()) {
            begin("div", "advice");
            element("b", m_labels.advice);
            text(QStringLiteral(" ") + item.advice);
            end();
        }
        end();
        end();
    }

    void writeBlock(const ReportTable &table)
    {
        begin("table", isWide(table) ? "wide" : nullptr);
        writeColumns(table);
        begin("thead");
        begin("tr");
        for (const ReportTable::Column &column : table.columns)
            element("th", column.title);
        end();
        end();
        begin("tbody");
        for (const ReportTable::Row &row : table.rows)
            writeRow(table, row);
        end();
        end();
    }

    static bool isWide(const ReportTable &table)
    {
        return table.columns.size() > mostNarrowColumns
               || std::any_of(table.columns.cbegin(), table.columns.cend(),
                              [](const ReportTable::Column &column) { return column.share > widestCell; });
    }

    void writeColumns(const ReportTable &table)
    {
        int shares = 0;
        for (const ReportTable::Column &column : table.columns)
            shares += column.share;
        begin("colgroup");
        for (const ReportTable::Column &column : table.columns) {
            m_xml.writeEmptyElement(name("col"));
            m_xml.writeAttribute(name("style"), QStringLiteral("width:%1%").arg(100 * column.share / shares));
        }
        end();
    }

    void writeRow(const ReportTable &table, const ReportTable::Row &row)
    {
        begin("tr");
        for (int i = 0; i < row.cells.size(); ++i) {
            const bool isMarked = i == table.markColumn && row.mark != ReportMark::None;
            begin("td", isMarked ? "marked" : nullptr);
            if (isMarked)
                m_xml.writeAttribute(name("style"), styleOf(row.mark));
            m_xml.writeAttribute(name("data-title"), visible(table.columns.value(i).title));
            if (isMarked) {
                writeMark(row.mark);
                text(QStringLiteral(" "));
            }
            text(row.cells.at(i));
            end();
        }
        end();
    }

    void writeBlock(const ReportPicture &picture)
    {
        begin("figure");
        element("h4", picture.title);
        writeSvg(m_xml, picture.drawing, name("chart"), picture.title);
        element("figcaption", picture.words);
        end();
    }

    static QString footText(const ServiceReport &report)
    {
        return report.subject + QStringLiteral(" · ") + report.program;
    }

    QXmlStreamWriter m_xml;
    ReportLabels m_labels;
};

} // namespace

QByteArray toHtml(const ServiceReport &report)
{
    QByteArray html;
    HtmlWriter(&html).write(report);
    return html;
}
