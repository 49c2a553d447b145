// SPDX-License-Identifier: MIT
#include "lighticon.h"

#include <servicereport/reportdrawing.h>

#include <QIconEngine>
#include <QPainter>

namespace {

class Engine : public QIconEngine
{
public:
    explicit Engine(ReportMark mark)
        : m_mark(mark)
    {
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode, QIcon::State) override
    {
        LightIcon::paint(*painter, rect, m_mark);
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return pixmap;
    }

    QIconEngine *clone() const override { return new Engine(m_mark); }

private:
    ReportMark m_mark;
};

} // namespace

QIcon LightIcon::of(ReportMark mark)
{
    return mark == ReportMark::None ? QIcon() : QIcon(new Engine(mark));
}

void LightIcon::paint(QPainter &painter, const QRectF &box, ReportMark mark)
{
    const ReportDrawing drawing = ReportMarks::shape(mark);
    const qreal side = qMin(box.width(), box.height());
    const QPointF corner = box.center() - QPointF(side / 2, side / 2);
    paintDrawing(painter, drawing, corner, side / drawing.size.width());
}

QImage LightIcon::image(ReportMark mark, int size, qreal ratio)
{
    QImage image(QSizeF(size * ratio, size * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paint(painter, QRectF(0, 0, size, size), mark);
    return image;
}
