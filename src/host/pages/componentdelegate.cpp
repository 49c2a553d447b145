// SPDX-License-Identifier: MIT
#include "componentdelegate.h"

#include "componentmodel.h"
#include "lighticon.h"

#include <QApplication>
#include <QPainter>

namespace {

constexpr int padding = 5;
constexpr int barHeight = 4;
constexpr qreal faintness = 0.7; // of the sentence below the name

/*! Where the parts of a row are. */
struct Parts
{
    QRect light;
    QRect name;
    QRect sentence;
    QRect bar;
};

Parts partsOf(const QRect &cell, const QFontMetrics &metrics)
{
    Parts parts;
    const int side = qRound(metrics.height() * 1.3);
    parts.light = QRect(cell.left() + padding, cell.center().y() - side / 2, side, side);
    const int left = parts.light.right() + 1 + 2 * padding;
    const int width = qMax(0, cell.right() - padding - left);
    parts.name = QRect(left, cell.top() + padding, width, metrics.height());
    parts.sentence = QRect(left, parts.name.bottom() + 2, width, metrics.height());
    parts.bar = QRect(left, cell.bottom() - barHeight, width, barHeight - 1);
    return parts;
}

void paintBar(QPainter *painter, const QRect &bar, qreal share, const QPalette &palette)
{
    painter->fillRect(bar, palette.color(QPalette::Midlight));
    QRect done = bar;
    done.setWidth(qRound(bar.width() * qBound(0.0, share, 1.0)));
    painter->fillRect(done, palette.color(QPalette::Highlight));
}

/*! Still nothing to see: a ring, of which the share that is read is drawn. */
void paintRing(QPainter *painter, const QRect &box, qreal share, const QPalette &palette)
{
    constexpr int fullCircle = 360 * 16;
    constexpr int top = 90 * 16;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const QRectF ring = QRectF(box).adjusted(2, 2, -2, -2);
    painter->setPen(QPen(palette.color(QPalette::Midlight), 3));
    painter->drawEllipse(ring);
    painter->setPen(QPen(palette.color(QPalette::Highlight), 3, Qt::SolidLine, Qt::FlatCap));
    painter->drawArc(ring, top, -qRound(fullCircle * qBound(0.0, share, 1.0)));
    painter->restore();
}

} // namespace

int ComponentDelegate::rowHeight(const QFontMetrics &metrics)
{
    return 2 * metrics.height() + 2 * padding + 2 + barHeight;
}

QSize ComponentDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    return {QStyledItemDelegate::sizeHint(option, index).width(), rowHeight(option.fontMetrics)};
}

void ComponentDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const
{
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    item.text.clear();
    item.icon = QIcon();
    const QWidget *widget = item.widget;
    const QStyle *style = widget != nullptr ? widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &item, painter, widget);

    const Parts parts = partsOf(item.rect, item.fontMetrics);
    const bool isSelected = item.state & QStyle::State_Selected;
    QColor ink = item.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text);
    const qreal share = index.data(ComponentModel::ShareRole).toReal();

    painter->save();
    const auto mark = static_cast<ReportMark>(index.data(ComponentModel::MarkRole).toInt());
    if (mark != ReportMark::None)
        LightIcon::paint(*painter, parts.light, mark);
    else
        paintRing(painter, parts.light, share, item.palette);
    QFont bold = item.font;
    bold.setBold(true);
    painter->setFont(bold);
    painter->setPen(ink);
    painter->drawText(
        parts.name, Qt::AlignLeft | Qt::AlignVCenter,
        QFontMetrics(bold).elidedText(index.data().toString(), Qt::ElideRight, parts.name.width()));
    painter->setFont(item.font);
    ink.setAlphaF(isSelected ? 1 : faintness);
    painter->setPen(ink);
    const QString sentence = index.data(ComponentModel::SentenceRole).toString().simplified();
    painter->drawText(parts.sentence, Qt::AlignLeft | Qt::AlignVCenter,
                      item.fontMetrics.elidedText(sentence, Qt::ElideRight, parts.sentence.width()));
    if (share >= 0 && mark == ReportMark::None)
        paintBar(painter, parts.bar, share, item.palette);
    painter->restore();
}
