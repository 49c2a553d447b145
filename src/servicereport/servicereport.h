// SPDX-License-Identifier: MIT
#pragma once

#include "reportdrawing.h"
#include "reportmark.h"

#include <QImage>
#include <QLocale>
#include <QString>
#include <QStringList>
#include <QVector>

#include <variant>

/*! \file
 *  A service report as a document: what it says, in which order, and nothing about how that looks. HTML and PDF are made of
 *  the same one, so that they say the same. Texts are plain and may hold anything; whoever writes them escapes them.
 */

/*! A name and what stands beside it. */
struct ReportFact
{
    QString name;
    QString text;
};

struct ReportFacts
{
    QVector<ReportFact> facts;
};

struct ReportParagraph
{
    enum class Look : quint8 { Plain, Small, Code };

    QString text; //!< its line breaks stay
    Look look = Look::Plain;
};

/*! Begins what is said about one component. */
struct ReportHeading
{
    QString text;
    QString aside; //!< in smaller letters behind it
    ReportMark mark = ReportMark::None;
};

/*! Something that was found, with its light. */
struct ReportItem
{
    ReportMark mark = ReportMark::None;
    QString place; //!< where: component and node
    QString text;
    QString advice; //!< may be empty
};

struct ReportItems
{
    QVector<ReportItem> items;
};

struct ReportTable
{
    struct Column
    {
        QString title;
        int share = 1; //!< of the width, in proportion to the others
    };
    struct Row
    {
        QStringList cells;                  //!< one for each column
        ReportMark mark = ReportMark::None; //!< in front of the cell markColumn
    };

    QVector<Column> columns;
    QVector<Row> rows;
    int markColumn = 0;
    bool isWordOfMarkShown = false; //!< otherwise only the shape, with the word for who cannot see it
};

struct ReportPicture
{
    QString title;
    ReportDrawing drawing;
    QString words; //!< what it shows, for everyone: sentences below it
};

using ReportBlock
    = std::variant<ReportFacts, ReportParagraph, ReportHeading, ReportItems, ReportTable, ReportPicture>;

struct ReportSection
{
    QString title;
    QVector<ReportBlock> blocks;
};

/*! Words that whoever writes the report puts in between: in its language, also when it is written later or in another
 *  thread, when the program's language is another one.
 */
struct ReportLabels
{
    QString advice;         //!< "What to do:"
    QString page;           //!< "Page %1 of %2"
    QVector<QString> marks; //!< by ReportMark

    QString word(ReportMark mark) const { return marks.value(static_cast<int>(mark)); }
};

struct ServiceReport
{
    QLocale locale; //!< of texts and numbers
    ReportLabels labels;
    QString title;
    QString subject; //!< vehicle and date, for the foot of pages
    QString program; //!< that made the report
    QString workshop;
    QStringList workshopLines;
    QImage logo; //!< may be null
    QVector<ReportFact> facts;
    ReportMark verdict = ReportMark::NotChecked;
    QString verdictHeadline;
    QString verdictSentence;
    QVector<ReportSection> sections;
};
