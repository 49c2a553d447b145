// SPDX-License-Identifier: MIT
#include "networkpicture.h"

#include <QBrush>
#include <QFont>
#include <QFontMetrics>
#include <QGraphicsScene>
#include <QGraphicsTextItem>
#include <QGraphicsView>

namespace {

constexpr int step = 3;    // pixels
constexpr int margin = 20; // pixels left free at either end

} // namespace

TitleMotion nextTitleMotion(TitleMotion motion, int viewHeight, int textWidth)
{
    const bool hasRoom
        = motion.isMovingDown ? viewHeight > motion.y + margin : motion.y - textWidth - margin > 0;
    const bool isMovingDown = motion.isMovingDown == hasRoom;
    return {motion.y + (isMovingDown ? step : -step), isMovingDown};
}

QGraphicsTextItem *NetworkPicture::create(QGraphicsView &view, QObject *parent)
{
    auto *scene = new QGraphicsScene(parent);
    scene->setBackgroundBrush(QBrush(QColor(235, 240, 230, 255), Qt::SolidPattern));

    // Not QStringLiteral: Qt's font cache keeps the name, and a literal would go with the plug-in's library.
    QFont font(QString::fromLatin1("Arial"), 20);
    font.setStyleStrategy(QFont::PreferAntialias);
    QGraphicsTextItem *title = scene->addText(QStringLiteral("Draxel"), font);
    title->setDefaultTextColor(Qt::black); // as the background, the same on a dark desktop
    title->setRotation(270.0);

    view.setScene(scene);
    view.show();
    return title;
}

void NetworkPicture::moveTitle(QGraphicsTextItem &title, const QGraphicsView &view, bool &isMovingDown)
{
    const int textWidth = QFontMetrics(title.font()).horizontalAdvance(title.toPlainText());
    const TitleMotion motion = nextTitleMotion({title.y(), isMovingDown}, view.height(), textWidth);
    title.setPos(title.x(), motion.y);
    isMovingDown = motion.isMovingDown;
}
