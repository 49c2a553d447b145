// SPDX-License-Identifier: MIT
#include "curveink.h"

#include <QPainter>
#include <QPixmap>

namespace {

// To be seen on white and on black
constexpr QRgb inks[] = {0xFF2F7FC8, 0xFFD2691E, 0xFF2F9F4E, 0xFFA050C0, 0xFFC83C4B,
                         0xFF1FA3A3, 0xFF9A8A1F, 0xFFD95FA8, 0xFF8A8A8A, 0xFF6A5ACD};
constexpr int inkCount = 10;
constexpr Qt::PenStyle styles[] = {Qt::SolidLine, Qt::DashLine, Qt::DotLine, Qt::DashDotLine};
constexpr int styleCount = 4;
constexpr QSize signSize(22, 14);

} // namespace

QPen CurveInk::pen(int row)
{
    return {QColor(inks[row % inkCount]), 1.6, styles[row / inkCount % styleCount]};
}

QIcon CurveInk::sign(int row)
{
    QPixmap pixmap(signSize);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    QPen ink = pen(row);
    ink.setWidthF(3);
    painter.setPen(ink);
    painter.drawLine(1, signSize.height() / 2, signSize.width() - 2, signSize.height() / 2);
    return QIcon(pixmap);
}
