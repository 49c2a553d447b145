// SPDX-License-Identifier: MIT
#pragma once

#include "pageflow.h"
#include "pdftext.h"
#include "servicereport.h"

#include <QFont>
#include <QVector>

#include <functional>

class QPaintDevice;

/*! Takes a report apart into pieces that pages are made of. */
class PdfPieces
{
public:
    /*! All lengths are in units of \a device; there are \a pointSize of them in a point. */
    PdfPieces(const ServiceReport &report, QPaintDevice *device, qreal pointSize, qreal width,
              qreal pageHeight);

    const QVector<FlowPiece> &pieces() const { return m_pieces; }
    void paint(int piece, QPainter &painter, QPointF corner) const { m_painters.at(piece)(painter, corner); }

    /*! The font of a size in points. */
    QFont font(qreal size, bool isBold = false) const;

private:
    using Painter = std::function<void(QPainter &painter, QPointF corner)>;
    enum class Bond { Free, KeptWithNext };

    qreal points(qreal count) const { return count * m_point; }
    int add(qreal height, Painter painter, Bond bond = Bond::Free, int head = -1);
    void addSpace(qreal pointCount);
    PdfText text(const QString &text, qreal size, Ink ink, qreal width, bool isBold = false,
                 int mostLines = 0) const;

    void addLetterHead(const ServiceReport &report);
    void addVerdict(const ServiceReport &report);
    void addFacts(const QVector<ReportFact> &facts);
    void addFactPair(const ReportFact &left, const ReportFact &right);
    void addLongFact(const ReportFact &fact);
    void addLines(const PdfText &lines, qreal indent, Bond bond, bool hasBar = false);
    void addSection(const ReportSection &section);
    void addBlock(const ReportFacts &facts);
    void addBlock(const ReportParagraph &paragraph);
    void addBlock(const ReportHeading &heading);
    void addBlock(const ReportItems &items);
    void addItem(const ReportItem &item);
    void addBlock(const ReportTable &table);
    QVector<qreal> columnWidths(const ReportTable &table) const;
    int addTableHead(const ReportTable &table, const QVector<qreal> &widths);
    void addRow(const ReportTable &table, const ReportTable::Row &row, const QVector<qreal> &widths,
                int head);
    void addBlock(const ReportPicture &picture);

    QPaintDevice *m_device;
    qreal m_point;
    qreal m_width;
    qreal m_pageHeight;
    QString m_families;
    ReportLabels m_labels;
    int m_heading = -1; //!< the piece above what is added now; -1 for none
    QVector<FlowPiece> m_pieces;
    QVector<Painter> m_painters; // as many
};
