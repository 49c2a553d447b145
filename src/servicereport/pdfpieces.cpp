// SPDX-License-Identifier: MIT
#include "pdfpieces.h"

#include <QPainter>

namespace {

constexpr qreal bodySize = 9.5; // points
constexpr qreal smallSize = 8;
constexpr qreal cellPadding = 3;
constexpr int mostCellLines = 30;   // of one cell: a row stays lower than a page
constexpr int longFactOnPaper = 70; // characters that need the whole width
constexpr qreal barWidth = 2;
constexpr qreal factNameWidth = 98;
constexpr qreal pictureScale = 0.72; // points for a pixel

QString familiesFor(const QLocale &locale)
{
    const QString latin = QStringLiteral("Noto Sans,Liberation Sans,DejaVu Sans");
    const QString chinese = QStringLiteral("Noto Sans CJK SC,Noto Sans SC,WenQuanYi Zen Hei");
    return locale.language() == QLocale::Chinese ? chinese + QLatin1Char(',') + latin
                                                 : latin + QLatin1Char(',') + chinese;
}

void paintRule(QPainter &painter, QPointF left, qreal length, qreal width, Ink ink)
{
    painter.fillRect(QRectF(left.x(), left.y(), length, width), ReportInk::onPaper(ink));
}

QString inOneLine(QString text)
{
    return text.replace(QLatin1Char('\n'), QLatin1Char(' '));
}

} // namespace

PdfPieces::PdfPieces(const ServiceReport &report, QPaintDevice *device, qreal pointSize, qreal width,
                     qreal pageHeight)
    : m_device(device)
    , m_point(pointSize)
    , m_width(width)
    , m_pageHeight(pageHeight)
    , m_families(familiesFor(report.locale))
    , m_labels(report.labels)
{
    addLetterHead(report);
    addVerdict(report);
    addFacts(report.facts);
    for (const ReportSection &section : report.sections)
        addSection(section);
}

QFont PdfPieces::font(qreal size, bool isBold) const
{
    QFont font(m_families);
    font.setPixelSize(qMax(1, qRound(points(size))));
    font.setBold(isBold);
    // A spacing that nobody sees keeps letters from being joined: "ff" as one sign is not found by who searches for two.
    constexpr qreal leastSpacing = 1.0 / 64;
    font.setLetterSpacing(QFont::AbsoluteSpacing, leastSpacing);
    return font;
}

PdfText PdfPieces::text(const QString &text, qreal size, Ink ink, qreal width, bool isBold,
                        int mostLines) const
{
    return PdfText(text, font(size, isBold), ink, width, m_device, mostLines);
}

int PdfPieces::add(qreal height, Painter painter, Bond bond, int head)
{
    FlowPiece piece;
    piece.height = height;
    piece.keepsWithNext = bond == Bond::KeptWithNext;
    piece.head = head;
    m_pieces.append(piece);
    m_painters.append(std::move(painter));
    return m_pieces.size() - 1;
}

void PdfPieces::addSpace(qreal pointCount)
{
    FlowPiece piece;
    piece.height = points(pointCount);
    piece.isSpace = true;
    m_pieces.append(piece);
    m_painters.append([](QPainter &, QPointF) {});
}

void PdfPieces::addLetterHead(const ServiceReport &report)
{
    const QSizeF logoSize
        = report.logo.isNull()
              ? QSizeF()
              : QSizeF(report.logo.size()).scaled(points(150), points(60), Qt::KeepAspectRatio);
    const qreal textWidth = m_width - logoSize.width() - points(10);
    const PdfText title = text(report.title, 20, Ink::Accent, textWidth, true);
    const PdfText shop = text(report.workshop, 12, Ink::Text, textWidth, true, mostCellLines);
    const PdfText lines = text(report.workshopLines.join(QLatin1Char('\n')), bodySize, Ink::Faint, textWidth,
                               false, mostCellLines);
    const qreal shopHeight = report.workshop.isEmpty() ? 0 : shop.height();
    const qreal linesHeight = report.workshopLines.isEmpty() ? 0 : lines.height();
    const qreal inner = qMax(title.height() + shopHeight + linesHeight, logoSize.height());
    const QImage logo = report.logo;
    add(inner + points(8), [=](QPainter &painter, QPointF corner) {
        title.paint(painter, corner);
        if (shopHeight > 0)
            shop.paint(painter, corner + QPointF(0, title.height()));
        if (linesHeight > 0)
            lines.paint(painter, corner + QPointF(0, title.height() + shopHeight));
        if (!logo.isNull())
            painter.drawImage(QRectF(corner + QPointF(m_width - logoSize.width(), 0), logoSize), logo);
        paintRule(painter, corner + QPointF(0, inner + points(5)), m_width, points(2), Ink::Accent);
    });
}

void PdfPieces::addVerdict(const ServiceReport &report)
{
    const Ink ink = ReportMarks::ink(report.verdict);
    const qreal padding = points(10);
    const qreal markSize = points(30);
    const qreal indent = padding * 2 + markSize;
    const PdfText headline = text(report.verdictHeadline, 15, ink, m_width - indent - padding, true);
    const PdfText sentence
        = text(report.verdictSentence, bodySize + 0.5, Ink::Text, m_width - indent - padding);
    const qreal textHeight = headline.height() + sentence.height();
    const qreal height = qMax(textHeight, markSize) + 2 * padding;
    const ReportDrawing shape = ReportMarks::shape(report.verdict);
    addSpace(10);
    add(height, [=](QPainter &painter, QPointF corner) {
        painter.fillRect(QRectF(corner, QSizeF(m_width, height)), ReportInk::onPaper(Ink::Shade));
        painter.fillRect(QRectF(corner, QSizeF(points(4), height)), ReportInk::onPaper(ink));
        paintDrawing(painter, shape, corner + QPointF(padding + points(2), (height - markSize) / 2),
                     markSize / shape.size.height());
        const QPointF top = corner + QPointF(indent, (height - textHeight) / 2);
        headline.paint(painter, top);
        sentence.paint(painter, top + QPointF(0, headline.height()));
    });
}

void PdfPieces::addFacts(const QVector<ReportFact> &facts)
{
    addSpace(6);
    QVector<ReportFact> waiting; // at most one
    const auto flush = [&] {
        if (!waiting.isEmpty())
            addFactPair(waiting.first(), ReportFact());
        waiting.clear();
    };
    for (const ReportFact &fact : facts) {
        if (fact.text.size() > longFactOnPaper || fact.text.contains(QLatin1Char('\n'))) {
            flush();
            addLongFact(fact);
        } else if (waiting.isEmpty()) {
            waiting.append(fact);
        } else {
            addFactPair(waiting.takeFirst(), fact);
        }
    }
    flush();
    m_pieces.last().keepsWithNext = false;
}

void PdfPieces::addFactPair(const ReportFact &left, const ReportFact &right)
{
    const qreal half = m_width / 2;
    const qreal nameWidth = points(factNameWidth);
    const qreal textWidth = half - nameWidth - points(8);
    const PdfText texts[]
        = {text(left.name, bodySize, Ink::Faint, nameWidth - points(4), false, mostCellLines),
           text(left.text, bodySize, Ink::Text, textWidth, false, mostCellLines),
           text(right.name, bodySize, Ink::Faint, nameWidth - points(4), false, mostCellLines),
           text(right.text, bodySize, Ink::Text, textWidth, false, mostCellLines)};
    qreal height = 0;
    for (const PdfText &part : texts)
        height = qMax(height, part.height());
    const bool hasRight = !right.name.isEmpty();
    const auto paint = [=, leftName = texts[0], leftText = texts[1], rightName = texts[2],
                        rightText = texts[3]](QPainter &painter, QPointF corner) {
        leftName.paint(painter, corner);
        leftText.paint(painter, corner + QPointF(nameWidth, 0));
        if (!hasRight)
            return;
        rightName.paint(painter, corner + QPointF(half, 0));
        rightText.paint(painter, corner + QPointF(half + nameWidth, 0));
    };
    add(height + points(2), paint, Bond::KeptWithNext);
}

void PdfPieces::addLongFact(const ReportFact &fact)
{
    const qreal indent = points(factNameWidth);
    const PdfText title = text(fact.name, bodySize, Ink::Faint, indent - points(4), false, mostCellLines);
    const int first = m_pieces.size();
    addLines(text(fact.text, bodySize, Ink::Text, m_width - indent), indent, Bond::Free);
    m_pieces[first].height = qMax(m_pieces.at(first).height, title.height());
    m_painters[first] = [=, line = m_painters.at(first)](QPainter &painter, QPointF corner) {
        title.paint(painter, corner);
        line(painter, corner);
    };
}

/*! Line by line, so that a page may end between them. */
void PdfPieces::addLines(const PdfText &lines, qreal indent, Bond bond, bool hasBar)
{
    for (int i = 0; i < lines.lineCount(); ++i) {
        const qreal height = lines.lineHeight(i);
        const auto paint = [=](QPainter &painter, QPointF corner) {
            lines.paintLine(painter, i, corner + QPointF(indent, 0));
            if (hasBar)
                painter.fillRect(
                    QRectF(corner.x() + indent - points(6), corner.y(), points(barWidth), height),
                    ReportInk::onPaper(Ink::Rule));
        };
        add(height, paint, i + 1 < lines.lineCount() ? bond : Bond::Free);
    }
}

void PdfPieces::addSection(const ReportSection &section)
{
    m_heading = -1;
    addSpace(16);
    const PdfText title = text(section.title, 13, Ink::Accent, m_width, true, mostCellLines);
    add(
        title.height() + points(5),
        [=](QPainter &painter, QPointF corner) {
            title.paint(painter, corner);
            paintRule(painter, corner + QPointF(0, title.height() + points(1)), m_width, points(0.7),
                      Ink::Rule);
        },
        Bond::KeptWithNext);
    for (const ReportBlock &block : section.blocks)
        std::visit([this](const auto &content) { addBlock(content); }, block);
}

void PdfPieces::addBlock(const ReportFacts &facts)
{
    addFacts(facts.facts);
    addSpace(4);
}

void PdfPieces::addBlock(const ReportParagraph &paragraph)
{
    const bool isSmall = paragraph.look == ReportParagraph::Look::Small;
    const bool isCode = paragraph.look == ReportParagraph::Look::Code;
    addLines(text(paragraph.text, isSmall ? smallSize : bodySize, isSmall ? Ink::Faint : Ink::Text, m_width,
                  isCode),
             0, Bond::Free);
    addSpace(3);
}

void PdfPieces::addBlock(const ReportHeading &heading)
{
    addSpace(12);
    const qreal size = points(11);
    const qreal indent = heading.mark == ReportMark::None ? 0 : size + points(5);
    const qreal gap = points(8);
    const QString word = m_labels.word(heading.mark);
    const PdfText aside = text(heading.aside, bodySize, Ink::Faint, m_width);
    const PdfText state = text(word, bodySize, ReportMarks::ink(heading.mark), m_width, true);
    // Its lines are broken, not those of the short texts behind it.
    const qreal room = m_width - indent - aside.width() - state.width() - 2 * gap;
    const PdfText title
        = text(heading.text, 11.5, Ink::Text, std::max(room, m_width / 3), true, mostCellLines);
    const ReportDrawing shape = ReportMarks::shape(heading.mark);
    m_heading = add(
        title.height() + points(3),
        [=](QPainter &painter, QPointF corner) {
            if (indent > 0)
                paintDrawing(painter, shape, corner + QPointF(0, points(2)), size / shape.size.height());
            title.paint(painter, corner + QPointF(indent, 0));
            const QPointF behind = corner + QPointF(indent + title.width() + gap, points(2.2));
            aside.paint(painter, behind);
            state.paint(painter, behind + QPointF(aside.width() + gap, 0));
        },
        Bond::KeptWithNext);
}

void PdfPieces::addBlock(const ReportItems &items)
{
    for (const ReportItem &item : items.items)
        addItem(item);
}

void PdfPieces::addItem(const ReportItem &item)
{
    const qreal indent = points(22);
    const qreal width = m_width - indent - points(8);
    const PdfText word = text(m_labels.word(item.mark) + QStringLiteral(" · "), bodySize,
                              ReportMarks::ink(item.mark), width, true);
    const PdfText place
        = text(item.place, bodySize, Ink::Text, width - word.width() - points(8), true, mostCellLines);
    const PdfText said = text(item.text, bodySize, Ink::Text, width);
    const PdfText advice
        = text(m_labels.advice + QLatin1Char(' ') + item.advice, bodySize, Ink::Text, width - points(8));
    const ReportDrawing shape = ReportMarks::shape(item.mark);
    addSpace(7);
    // What is short stays together; what is long may go on on the next page.
    const bool isShort = place.height() + said.height() + advice.height() < m_pageHeight / 3;
    const Bond bond = isShort ? Bond::KeptWithNext : Bond::Free;
    const auto paint = [=](QPainter &painter, QPointF corner) {
        paintDrawing(painter, shape, corner + QPointF(0, points(1)), points(13) / shape.size.height());
        word.paint(painter, corner + QPointF(indent, 0));
        place.paint(painter, corner + QPointF(indent + word.width() + points(3), 0));
    };
    add(place.height() + points(1), paint, Bond::KeptWithNext);
    addLines(said, indent, bond);
    if (item.advice.isEmpty())
        return;
    m_pieces.last().keepsWithNext = isShort;
    add(
        points(2), [](QPainter &, QPointF) {}, bond);
    addLines(advice, indent + points(8), bond, true);
}

QVector<qreal> PdfPieces::columnWidths(const ReportTable &table) const
{
    int shares = 0;
    for (const ReportTable::Column &column : table.columns)
        shares += column.share;
    QVector<qreal> widths;
    for (const ReportTable::Column &column : table.columns)
        widths.append(m_width * column.share / shares);
    return widths;
}

int PdfPieces::addTableHead(const ReportTable &table, const QVector<qreal> &widths)
{
    QVector<PdfText> titles;
    qreal height = 0;
    for (int i = 0; i < table.columns.size(); ++i) {
        titles.append(text(table.columns.at(i).title, smallSize, Ink::Faint,
                           widths.at(i) - points(2 * cellPadding), false, mostCellLines));
        height = qMax(height, titles.last().height());
    }
    const qreal all = height + points(4);
    return add(
        all,
        [=](QPainter &painter, QPointF corner) {
            qreal x = 0;
            for (int i = 0; i < titles.size(); ++i) {
                titles.at(i).paint(painter, corner + QPointF(x, height - titles.at(i).height() + points(1)));
                x += widths.at(i);
            }
            paintRule(painter, corner + QPointF(0, all - points(1.2)), m_width, points(1), Ink::Rule);
        },
        Bond::KeptWithNext, m_heading);
}

void PdfPieces::addRow(const ReportTable &table, const ReportTable::Row &row, const QVector<qreal> &widths,
                       int head)
{
    const bool isMarked = row.mark != ReportMark::None;
    const qreal markSize = points(9);
    const qreal indent = isMarked ? markSize + points(4) : 0;
    QVector<PdfText> cells;
    qreal height = 0;
    for (int i = 0; i < row.cells.size(); ++i) {
        const bool isMarkedCell = isMarked && i == table.markColumn;
        const qreal width = widths.at(i) - points(2 * cellPadding) - (isMarkedCell ? indent : 0);
        cells.append(text(inOneLine(row.cells.at(i)), bodySize - 0.5,
                          isMarkedCell ? ReportMarks::ink(row.mark) : Ink::Text, width, isMarkedCell,
                          mostCellLines));
        height = qMax(height, cells.last().height());
    }
    const qreal all = height + points(4.5);
    const ReportDrawing shape = ReportMarks::shape(row.mark);
    const int markColumn = table.markColumn;
    const auto paint = [=](QPainter &painter, QPointF corner) {
        qreal x = 0;
        for (int i = 0; i < cells.size(); ++i) {
            const bool isMarkedCell = isMarked && i == markColumn;
            if (isMarkedCell)
                paintDrawing(painter, shape, corner + QPointF(x, points(3)), markSize / shape.size.height());
            cells.at(i).paint(painter, corner + QPointF(x + (isMarkedCell ? indent : 0), points(2)));
            x += widths.at(i);
        }
        paintRule(painter, corner + QPointF(0, all - points(0.6)), m_width, points(0.5), Ink::Rule);
    };
    add(all, paint, Bond::Free, head);
}

void PdfPieces::addBlock(const ReportTable &table)
{
    const QVector<qreal> widths = columnWidths(table);
    const int head = addTableHead(table, widths);
    for (const ReportTable::Row &row : table.rows)
        addRow(table, row, widths, head);
    addSpace(5);
}

void PdfPieces::addBlock(const ReportPicture &picture)
{
    addSpace(6);
    const PdfText title = text(picture.title, bodySize, Ink::Text, m_width, true, mostCellLines);
    const PdfText words = text(picture.words, bodySize, Ink::Text, m_width, false, mostCellLines);
    const qreal scale = points(pictureScale);
    const qreal drawingHeight = picture.drawing.size.height() * scale;
    const ReportDrawing drawing = picture.drawing;
    const QFont letters = font(bodySize);
    const auto paint = [=](QPainter &painter, QPointF corner) {
        title.paint(painter, corner);
        painter.setFont(letters);
        paintDrawing(painter, drawing, corner + QPointF(0, title.height()), scale);
        words.paint(painter, corner + QPointF(0, title.height() + drawingHeight + points(2)));
    };
    add(title.height() + drawingHeight + words.height() + points(4), paint, Bond::Free, m_heading);
}
