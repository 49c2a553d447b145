// SPDX-License-Identifier: MIT
#include "textcolumns.h"

#include <algorithm>

namespace {

constexpr int gap = 2; // columns between two cells

/*! Characters that are two columns wide (Unicode Standard Annex 11, wide and full width). */
struct WideRange
{
    uint first;
    uint last;
};

constexpr WideRange wideRanges[] = {
    {0x1100, 0x115F},   // Hangul Jamo
    {0x2E80, 0x303E},   // CJK radicals, punctuation
    {0x3041, 0xA4CF},   // Kana, CJK ideographs, Yi
    {0xAC00, 0xD7A3},   // Hangul
    {0xF900, 0xFAFF},   // CJK compatibility
    {0xFE30, 0xFE6F},   // CJK compatibility forms
    {0xFF00, 0xFF60},   // full width forms
    {0xFFE0, 0xFFE6},   // full width signs
    {0x20000, 0x3FFFD}, // CJK extensions
};

int columnsOf(uint character)
{
    const QChar::Category category = QChar::category(character);
    if (category == QChar::Mark_NonSpacing || category == QChar::Mark_Enclosing
        || category == QChar::Other_Format)
        return 0;
    const bool isWide
        = std::any_of(std::begin(wideRanges), std::end(wideRanges), [character](WideRange range) {
              return character >= range.first && character <= range.last;
          });
    return isWide ? 2 : 1;
}

QVector<int> columnWidths(const QVector<QStringList> &rows)
{
    QVector<int> widths;
    for (const QStringList &row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (int i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths.at(i), terminalWidth(row.at(i)));
    }
    return widths;
}

QString withoutTrailingBlanks(QString line)
{
    while (line.endsWith(QLatin1Char(' ')))
        line.chop(1);
    return line;
}

} // namespace

int terminalWidth(const QString &text)
{
    int width = 0;
    const QVector<uint> characters = text.toUcs4();
    for (const uint character : characters)
        width += columnsOf(character);
    return width;
}

QString cutToWidth(const QString &text, int columns)
{
    const QString mark = QStringLiteral("...").left(std::max(columns, 0));
    if (terminalWidth(text) <= columns)
        return text;
    int room = columns - mark.size();
    QVector<uint> kept;
    const QVector<uint> characters = text.toUcs4();
    for (const uint character : characters) {
        room -= columnsOf(character);
        if (room < 0)
            break;
        kept.append(character);
    }
    return QString::fromUcs4(kept.constData(), kept.size()) + mark;
}

QStringList alignedLines(const QVector<QStringList> &rows, int indent)
{
    const QVector<int> widths = columnWidths(rows);
    QStringList lines;
    for (const QStringList &row : rows) {
        QString line(indent, QLatin1Char(' '));
        int width = indent; // of the line, and then where the last cell begins
        for (int i = 0; i < row.size() - 1; ++i) {
            line += row.at(i) + QString(widths.at(i) - terminalWidth(row.at(i)) + gap, QLatin1Char(' '));
            width += widths.at(i) + gap;
        }
        const QStringList last = row.value(row.size() - 1).split(QLatin1Char('\n'));
        lines.append(withoutTrailingBlanks(line + last.constFirst()));
        for (int i = 1; i < last.size(); ++i)
            lines.append(withoutTrailingBlanks(QString(width, QLatin1Char(' ')) + last.at(i)));
    }
    return lines;
}
