// SPDX-License-Identifier: MIT
#pragma once

#include "reportink.h"

#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QVector>

class QPainter;
class QXmlStreamWriter;

/*! One thing of a drawing. */
struct DrawnItem
{
    enum class Kind : quint8 {
        Line,  //!< through all points
        Area,  //!< a filled polygon
        Disc,  //!< filled, around the first point
        Label, //!< at the first point, see anchor
    };
    enum class Anchor : quint8 { Start, Middle, End };

    Kind kind = Kind::Line;
    Ink ink = Ink::Text;
    QVector<QPointF> points;
    qreal size = 1; //!< width of a line, radius of a disc, height of a label's letters
    QString text = QString();
    Anchor anchor = Anchor::Middle; //!< what of the label's base line is at the point
    bool isDashed = false;
    bool isBold = false;
};

/*! A picture of lines, areas and texts, the same in HTML and on paper. The unit is a CSS pixel where the picture has its
 *  own size; y grows downwards.
 */
struct ReportDrawing
{
    QSizeF size;
    QVector<DrawnItem> items;

    void line(Ink ink, const QVector<QPointF> &points, qreal width = 1, bool isDashed = false);
    void area(Ink ink, const QVector<QPointF> &points);
    void box(Ink ink, const QRectF &box);
    void disc(Ink ink, QPointF center, qreal radius);
    void label(Ink ink, QPointF point, const QString &text, DrawnItem::Anchor anchor, qreal letterHeight = 11,
               bool isBold = false);
};

/*! Writes the picture as an element <svg> of a page whose style sheet has ReportInk::styleSheet(). \a description says in
 *  words what it shows; empty when words beside it do.
 */
void writeSvg(QXmlStreamWriter &xml, const ReportDrawing &drawing, const QString &cssClass,
              const QString &description);

/*! Paints the picture with its upper left corner at \a corner, \a scale device units per unit of the drawing. Fonts are
 *  the painter's in other sizes.
 */
void paintDrawing(QPainter &painter, const ReportDrawing &drawing, QPointF corner, qreal scale);
