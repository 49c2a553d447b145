// SPDX-License-Identifier: MIT
#pragma once

#include <servicereport/servicereport.h>

#include <QRegularExpression>

/*! Every text that a report has to say, from top to bottom. */
class ReportTexts
{
public:
    static QStringList of(const ServiceReport &report)
    {
        ReportTexts texts;
        texts.m_texts << report.title << report.workshop << report.workshopLines << report.verdictHeadline
                      << report.verdictSentence;
        texts.add(ReportFacts{report.facts});
        for (const ReportSection &section : report.sections) {
            texts.m_texts << section.title;
            for (const ReportBlock &block : section.blocks)
                std::visit([&texts](const auto &content) { texts.add(content); }, block);
        }
        texts.m_texts.removeAll(QString());
        return texts.m_texts;
    }

    /*! Without blanks and line breaks, which differ with the layout. */
    static QString squeezed(QString text)
    {
        static const QRegularExpression blanks(QStringLiteral("[\\s\\x{a0}\\x{202f}\\x{c}]+"));
        return text.remove(blanks);
    }

private:
    void add(const ReportFacts &facts)
    {
        for (const ReportFact &fact : facts.facts)
            m_texts << fact.name << fact.text;
    }
    void add(const ReportParagraph &paragraph) { m_texts << paragraph.text; }
    void add(const ReportHeading &heading) { m_texts << heading.text << heading.aside; }
    void add(const ReportItems &items)
    {
        for (const ReportItem &item : items.items)
            m_texts << ReportMarks::word(item.mark) << item.place << item.text << item.advice;
    }
    void add(const ReportTable &table)
    {
        for (const ReportTable::Column &column : table.columns)
            m_texts << column.title;
        for (const ReportTable::Row &row : table.rows)
            m_texts << row.cells;
    }
    void add(const ReportPicture &picture) { m_texts << picture.title << picture.words; }

    QStringList m_texts;
};
