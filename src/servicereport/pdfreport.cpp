// SPDX-License-Identifier: MIT
#include "pdfreport.h"

#include "pageflow.h"
#include "pdfpieces.h"
#include "pdftext.h"
#include "servicereport.h"

#include <canopen/plaintext.h>

#include <QBuffer>
#include <QLocale>
#include <QPainter>
#include <QPdfWriter>

namespace {

constexpr int resolution = 1200; // dots per inch
constexpr qreal pointsPerInch = 72;
constexpr qreal sideMargin = 18; // mm
constexpr qreal topMargin = 14;
constexpr qreal footHeight = 22; // points
constexpr qreal footSize = 8;

class PdfPrinter
{
public:
    PdfPrinter(const ServiceReport &report, QPdfWriter *writer)
        : m_report(report)
        , m_writer(writer)
        , m_point(resolution / pointsPerInch)
        , m_pageHeight(writer->height() - footHeight * m_point)
        , m_pieces(report, writer, m_point, writer->width(), m_pageHeight)
    {
    }

    void print()
    {
        const QVector<PlacedPiece> placed = flowOntoPages(m_pieces.pieces(), m_pageHeight);
        const int pages = placed.isEmpty() ? 1 : placed.last().page + 1;
        QPainter painter(m_writer);
        int page = 0;
        paintFoot(painter, page, pages);
        for (const PlacedPiece &piece : placed) {
            for (; page < piece.page; paintFoot(painter, page, pages)) {
                m_writer->newPage();
                ++page;
            }
            m_pieces.paint(piece.piece, painter, QPointF(0, piece.top));
        }
    }

private:
    void paintFoot(QPainter &painter, int page, int pages) const
    {
        const qreal top = m_writer->height() - footHeight * m_point * 0.6;
        const QFont font = m_pieces.font(footSize);
        painter.fillRect(QRectF(0, top, m_writer->width(), 0.5 * m_point), ReportInk::onPaper(Ink::Rule));
        const PdfText left(m_report.subject, font, Ink::Faint, m_writer->width() * 0.75, m_writer, 1);
        const PdfText right(m_report.labels.page.arg(QString::number(page + 1), QString::number(pages)), font,
                            Ink::Faint, m_writer->width() * 0.25, m_writer, 1);
        left.paint(painter, QPointF(0, top + 3 * m_point));
        right.paint(painter, QPointF(m_writer->width() - right.width(), top + 3 * m_point));
    }

    const ServiceReport &m_report;
    QPdfWriter *m_writer;
    qreal m_point; // device units
    qreal m_pageHeight;
    PdfPieces m_pieces;
};

} // namespace

QPageSize::PageSizeId usualPaper(const QLocale &locale)
{
    return locale.measurementSystem() == QLocale::ImperialUSSystem ? QPageSize::Letter : QPageSize::A4;
}

QByteArray toPdf(const ServiceReport &report, QPageSize::PageSizeId paper)
{
    QByteArray pdf;
    QBuffer buffer(&pdf);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setResolution(resolution);
    writer.setPageSize(QPageSize(paper));
    writer.setPageMargins(QMarginsF(sideMargin, topMargin, sideMargin, topMargin), QPageLayout::Millimeter);
    writer.setTitle(CanOpen::plainText(report.title + QStringLiteral(" · ") + report.subject));
    writer.setCreator(CanOpen::plainText(report.program));
    PdfPrinter(report, &writer).print();
    return pdf;
}
