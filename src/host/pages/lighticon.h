// SPDX-License-Identifier: MIT
#pragma once

#include <servicereport/reportmark.h>

#include <QIcon>

class QPainter;
class QRectF;

/*! The lights of check-ups on the screen, the same shapes as in reports, sharp in every size. */
namespace LightIcon {

QIcon of(ReportMark mark);

/*! Paints the light into \a box, as large as it has room. */
void paint(QPainter &painter, const QRectF &box, ReportMark mark);

/*! As an image of \a size units, for a screen of \a ratio pixels a unit. */
QImage image(ReportMark mark, int size, qreal ratio);

} // namespace LightIcon
