// SPDX-License-Identifier: MIT
#include "pdftext.h"

#include <canopen/plaintext.h>

#include <QFont>
#include <QPainter>
#include <QRegularExpression>
#include <QTextLayout>
#include <QTextOption>

namespace {

QString printable(const QString &text)
{
    QStringList lines = text.split(QLatin1Char('\n'));
    for (QString &line : lines)
        line = CanOpen::plainText(line.endsWith(QLatin1Char('\r')) ? line.chopped(1) : line);
    return lines.join(QChar(QChar::LineSeparator));
}

/*! Where a line from \a begin on had better end than at \a end: before the number of an object, "1003h.0", that would be
 *  broken behind its dot. \a end when it is not, or when the line has nothing else.
 */
int unbrokenEnd(const QString &text, int begin, int end)
{
    static const QRegularExpression broken(QStringLiteral("\\S*\\b[0-9A-F]{4}h\\.\\z"));
    if (end >= text.size() || !text.at(end).isDigit())
        return end;
    const QRegularExpressionMatch match = broken.match(text.mid(begin, end - begin));
    return match.hasMatch() && match.capturedStart() > 0 ? begin + match.capturedStart() : end;
}

} // namespace

PdfText::PdfText(const QString &text, const QFont &font, Ink ink, qreal width, QPaintDevice *device,
                 int mostLines)
    : m_layout(std::make_shared<QTextLayout>(printable(text), font, device))
    , m_ink(ink)
{
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setUseDesignMetrics(true);
    m_layout->setTextOption(option);
    m_layout->beginLayout();
    qreal y = 0;
    for (QTextLine line = m_layout->createLine(); line.isValid(); line = m_layout->createLine()) {
        line.setLineWidth(width);
        const int end = line.textStart() + line.textLength();
        const int better = unbrokenEnd(m_layout->text(), line.textStart(), end);
        if (better < end)
            line.setNumColumns(better - line.textStart(), width);
        line.setPosition(QPointF(0, y));
        y += line.height();
        if (m_layout->lineCount() == mostLines)
            break;
    }
    m_layout->endLayout();
}

PdfText::~PdfText() = default;

int PdfText::lineCount() const
{
    return m_layout->lineCount();
}

qreal PdfText::lineHeight(int line) const
{
    return m_layout->lineAt(line).height();
}

qreal PdfText::height() const
{
    qreal height = 0;
    for (int i = 0; i < lineCount(); ++i)
        height += lineHeight(i);
    return height;
}

qreal PdfText::width() const
{
    qreal width = 0;
    for (int i = 0; i < lineCount(); ++i)
        width = qMax(width, m_layout->lineAt(i).naturalTextWidth());
    return width;
}

void PdfText::paint(QPainter &painter, QPointF corner) const
{
    for (int i = 0; i < lineCount(); ++i)
        paintLine(painter, i, corner + QPointF(0, m_layout->lineAt(i).y()));
}

void PdfText::paintLine(QPainter &painter, int line, QPointF corner) const
{
    painter.setPen(ReportInk::onPaper(m_ink));
    const QTextLine textLine = m_layout->lineAt(line);
    textLine.draw(&painter, corner - textLine.position());
}
