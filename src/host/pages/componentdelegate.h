// SPDX-License-Identifier: MIT
#pragma once

#include <QStyledItemDelegate>

/*! Draws the first column of the components: the light, the name, and below it the one sentence; while the component is
 *  read, a bar that fills.
 */
class ComponentDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    /*! Of a row, for its font. */
    static int rowHeight(const QFontMetrics &metrics);
};
