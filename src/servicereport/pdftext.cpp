// SPDX-License-Identifier: MIT
#include "pdftext.h"

#include <canopen/plaintext.h>

#include <QFont>
#include <QPainter>
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
