// SPDX-License-Identifier: MIT
#include "reportdrawing.h"

#include <canopen/plaintext.h>

#include <QFontMetricsF>
#include <QPainter>
#include <QRectF>
#include <QXmlStreamWriter>

namespace {

QString number(qreal value)
{
    return QString::number(value, 'f', 2);
}

QString pointList(const QVector<QPointF> &points)
{
    QStringList texts;
    for (const QPointF &point : points)
        texts.append(number(point.x()) + QLatin1Char(',') + number(point.y()));
    return texts.join(QLatin1Char(' '));
}

QString fillClass(Ink ink)
{
    return QStringLiteral("f-") + ReportInk::name(ink);
}

void writeLine(QXmlStreamWriter &xml, const DrawnItem &item)
{
    xml.writeEmptyElement(QStringLiteral("polyline"));
    xml.writeAttribute(QStringLiteral("class"), QStringLiteral("s-") + ReportInk::name(item.ink));
    xml.writeAttribute(QStringLiteral("points"), pointList(item.points));
    xml.writeAttribute(QStringLiteral("stroke-width"), number(item.size));
    xml.writeAttribute(QStringLiteral("stroke-linecap"), QStringLiteral("round"));
    xml.writeAttribute(QStringLiteral("stroke-linejoin"), QStringLiteral("round"));
    if (item.isDashed)
        xml.writeAttribute(QStringLiteral("stroke-dasharray"), QStringLiteral("5 4"));
}

void writeArea(QXmlStreamWriter &xml, const DrawnItem &item)
{
    xml.writeEmptyElement(QStringLiteral("polygon"));
    xml.writeAttribute(QStringLiteral("class"), fillClass(item.ink));
    xml.writeAttribute(QStringLiteral("points"), pointList(item.points));
}

void writeDisc(QXmlStreamWriter &xml, const DrawnItem &item)
{
    xml.writeEmptyElement(QStringLiteral("circle"));
    xml.writeAttribute(QStringLiteral("class"), fillClass(item.ink));
    xml.writeAttribute(QStringLiteral("cx"), number(item.points.first().x()));
    xml.writeAttribute(QStringLiteral("cy"), number(item.points.first().y()));
    xml.writeAttribute(QStringLiteral("r"), number(item.size));
}

void writeLabel(QXmlStreamWriter &xml, const DrawnItem &item)
{
    static const QString anchors[]
        = {QStringLiteral("start"), QStringLiteral("middle"), QStringLiteral("end")};
    xml.writeStartElement(QStringLiteral("text"));
    xml.writeAttribute(QStringLiteral("class"), fillClass(item.ink));
    xml.writeAttribute(QStringLiteral("x"), number(item.points.first().x()));
    xml.writeAttribute(QStringLiteral("y"), number(item.points.first().y()));
    xml.writeAttribute(QStringLiteral("font-size"), number(item.size));
    xml.writeAttribute(QStringLiteral("text-anchor"), anchors[int(item.anchor)]);
    if (item.isBold)
        xml.writeAttribute(QStringLiteral("font-weight"), QStringLiteral("700"));
    xml.writeCharacters(CanOpen::plainText(item.text));
    xml.writeEndElement();
}

void writeItem(QXmlStreamWriter &xml, const DrawnItem &item)
{
    switch (item.kind) {
    case DrawnItem::Kind::Line:
        return writeLine(xml, item);
    case DrawnItem::Kind::Area:
        return writeArea(xml, item);
    case DrawnItem::Kind::Disc:
        return writeDisc(xml, item);
    case DrawnItem::Kind::Label:
        return writeLabel(xml, item);
    }
}

void paintLine(QPainter &painter, const DrawnItem &item)
{
    QPen pen(ReportInk::onPaper(item.ink), item.size, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    if (item.isDashed)
        pen.setDashPattern({5 / item.size, 4 / item.size}); // in widths of the line
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawPolyline(item.points.constData(), item.points.size());
}

void paintFilled(QPainter &painter, const DrawnItem &item)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(ReportInk::onPaper(item.ink));
    if (item.kind == DrawnItem::Kind::Disc)
        painter.drawEllipse(item.points.first(), item.size, item.size);
    else
        painter.drawPolygon(item.points.constData(), item.points.size());
}

/*! In device units: letters keep their shapes only in sizes of whole pixels. */
void paintLabel(QPainter &painter, const DrawnItem &item, QPointF corner, qreal scale)
{
    QFont font = painter.font();
    font.setPixelSize(qMax(1, qRound(item.size * scale)));
    font.setBold(item.isBold);
    const QString text = CanOpen::plainText(item.text);
    const qreal width = QFontMetricsF(font, painter.device()).horizontalAdvance(text);
    const qreal shares[] = {0, 0.5, 1};
    const QPointF point = corner + item.points.first() * scale;
    painter.save();
    painter.setFont(font);
    painter.setPen(ReportInk::onPaper(item.ink));
    painter.drawText(QPointF(point.x() - width * shares[int(item.anchor)], point.y()), text);
    painter.restore();
}

void paintShape(QPainter &painter, const DrawnItem &item, QPointF corner, qreal scale)
{
    painter.save();
    painter.translate(corner);
    painter.scale(scale, scale);
    if (item.kind == DrawnItem::Kind::Line)
        paintLine(painter, item);
    else
        paintFilled(painter, item);
    painter.restore();
}

} // namespace

void ReportDrawing::line(Ink ink, const QVector<QPointF> &points, qreal width, bool isDashed)
{
    DrawnItem item;
    item.kind = DrawnItem::Kind::Line;
    item.ink = ink;
    item.points = points;
    item.size = width;
    item.isDashed = isDashed;
    items.append(item);
}

void ReportDrawing::area(Ink ink, const QVector<QPointF> &points)
{
    DrawnItem item;
    item.kind = DrawnItem::Kind::Area;
    item.ink = ink;
    item.points = points;
    items.append(item);
}

void ReportDrawing::box(Ink ink, const QRectF &box)
{
    area(ink, {box.topLeft(), box.topRight(), box.bottomRight(), box.bottomLeft()});
}

void ReportDrawing::disc(Ink ink, QPointF center, qreal radius)
{
    DrawnItem item;
    item.kind = DrawnItem::Kind::Disc;
    item.ink = ink;
    item.points = {center};
    item.size = radius;
    items.append(item);
}

void ReportDrawing::label(Ink ink, QPointF point, const QString &text, DrawnItem::Anchor anchor,
                          qreal letterHeight, bool isBold)
{
    DrawnItem item;
    item.kind = DrawnItem::Kind::Label;
    item.ink = ink;
    item.points = {point};
    item.size = letterHeight;
    item.text = text;
    item.anchor = anchor;
    item.isBold = isBold;
    items.append(item);
}

void writeSvg(QXmlStreamWriter &xml, const ReportDrawing &drawing, const QString &cssClass,
              const QString &description)
{
    xml.writeStartElement(QStringLiteral("svg"));
    xml.writeAttribute(QStringLiteral("class"), cssClass);
    xml.writeAttribute(
        QStringLiteral("viewBox"),
        QStringLiteral("0 0 %1 %2").arg(number(drawing.size.width()), number(drawing.size.height())));
    if (description.isEmpty()) {
        xml.writeAttribute(QStringLiteral("aria-hidden"), QStringLiteral("true"));
    } else {
        xml.writeAttribute(QStringLiteral("role"), QStringLiteral("img"));
        xml.writeAttribute(QStringLiteral("aria-label"), CanOpen::plainText(description));
    }
    for (const DrawnItem &item : drawing.items)
        writeItem(xml, item);
    xml.writeEndElement();
}

void paintDrawing(QPainter &painter, const ReportDrawing &drawing, QPointF corner, qreal scale)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    for (const DrawnItem &item : drawing.items) {
        if (item.kind == DrawnItem::Kind::Label)
            paintLabel(painter, item, corner, scale);
        else
            paintShape(painter, item, corner, scale);
    }
    painter.restore();
}
