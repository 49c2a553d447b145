// SPDX-License-Identifier: MIT
#include "reportmark.h"

#include "reporttr.h"

namespace {

constexpr qreal shapeSize = 16;
constexpr qreal stroke = 2;
const QPointF middle(8, 8);

void drawTick(ReportDrawing &drawing)
{
    drawing.disc(Ink::Good, middle, 8);
    drawing.line(Ink::Paper, {{4.2, 8.4}, {7, 11.2}, {11.8, 5.4}}, stroke);
}

void drawLetterI(ReportDrawing &drawing)
{
    drawing.box(Ink::Note, QRectF(1, 1, 14, 14));
    drawing.disc(Ink::Paper, {8, 4.6}, 1.25);
    drawing.line(Ink::Paper, {{8, 7.6}, {8, 12}}, stroke);
}

void drawQuestionMark(ReportDrawing &drawing)
{
    drawing.disc(Ink::NotChecked, middle, 8);
    drawing.line(Ink::Paper,
                 {{5.6, 6},
                  {6, 4.6},
                  {7.2, 3.9},
                  {8.8, 3.9},
                  {10, 4.6},
                  {10.4, 5.8},
                  {10, 7},
                  {8.6, 8},
                  {8, 8.8},
                  {8, 9.6}},
                 1.7);
    drawing.disc(Ink::Paper, {8, 12.2}, 1.15);
}

void drawExclamationMark(ReportDrawing &drawing)
{
    drawing.area(Ink::Warning, {{8, 0.8}, {15.8, 15}, {0.2, 15}});
    drawing.line(Ink::Paper, {{8, 6}, {8, 10.2}}, stroke);
    drawing.disc(Ink::Paper, {8, 12.7}, 1.15);
}

void drawCross(ReportDrawing &drawing)
{
    drawing.area(Ink::Fault,
                 {{5, 0.5}, {11, 0.5}, {15.5, 5}, {15.5, 11}, {11, 15.5}, {5, 15.5}, {0.5, 11}, {0.5, 5}});
    drawing.line(Ink::Paper, {{5.2, 5.2}, {10.8, 10.8}}, stroke);
    drawing.line(Ink::Paper, {{10.8, 5.2}, {5.2, 10.8}}, stroke);
}

struct MarkRow
{
    ReportMark mark;
    Ink ink;
    const char *word;
    void (*draw)(ReportDrawing &);
};

constexpr MarkRow marks[] = {
    {ReportMark::Good, Ink::Good, QT_TRANSLATE_NOOP("ServiceReport", "Good"), drawTick},
    {ReportMark::Note, Ink::Note, QT_TRANSLATE_NOOP("ServiceReport", "Note"), drawLetterI},
    {ReportMark::NotChecked, Ink::NotChecked, QT_TRANSLATE_NOOP("ServiceReport", "Not checked"),
     drawQuestionMark},
    {ReportMark::Warning, Ink::Warning, QT_TRANSLATE_NOOP("ServiceReport", "Warning"), drawExclamationMark},
    {ReportMark::Fault, Ink::Fault, QT_TRANSLATE_NOOP("ServiceReport", "Fault"), drawCross},
};

const MarkRow *rowOf(ReportMark mark)
{
    for (const MarkRow &row : marks) {
        if (row.mark == mark)
            return &row;
    }
    return nullptr;
}

} // namespace

ReportMark ReportMarks::of(ComponentState state)
{
    switch (state) {
    case ComponentState::Good:
        return ReportMark::Good;
    case ComponentState::Note:
        return ReportMark::Note;
    case ComponentState::NotChecked:
        return ReportMark::NotChecked;
    case ComponentState::Warning:
        return ReportMark::Warning;
    case ComponentState::Fault:
        return ReportMark::Fault;
    }
    return ReportMark::NotChecked;
}

ReportMark ReportMarks::of(Severity severity)
{
    switch (severity) {
    case Severity::Note:
        return ReportMark::Note;
    case Severity::Warning:
        return ReportMark::Warning;
    case Severity::Fault:
        return ReportMark::Fault;
    }
    return ReportMark::Note;
}

ReportMark ReportMarks::of(Verdict verdict)
{
    switch (verdict) {
    case Verdict::Ok:
        return ReportMark::Good;
    case Verdict::Note:
        return ReportMark::Note;
    case Verdict::Incomplete:
        return ReportMark::NotChecked;
    case Verdict::Warning:
        return ReportMark::Warning;
    case Verdict::Fault:
        return ReportMark::Fault;
    }
    return ReportMark::NotChecked;
}

Ink ReportMarks::ink(ReportMark mark)
{
    const MarkRow *row = rowOf(mark);
    return row != nullptr ? row->ink : Ink::Text;
}

QString ReportMarks::word(ReportMark mark)
{
    const MarkRow *row = rowOf(mark);
    return row != nullptr ? ReportTr::tr(row->word) : QString();
}

ReportDrawing ReportMarks::shape(ReportMark mark)
{
    ReportDrawing drawing;
    drawing.size = QSizeF(shapeSize, shapeSize);
    if (const MarkRow *row = rowOf(mark))
        row->draw(drawing);
    return drawing;
}
