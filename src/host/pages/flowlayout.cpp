// SPDX-License-Identifier: MIT
#include "flowlayout.h"

#include <algorithm>

namespace {

constexpr int gap = 6;

} // namespace

FlowLayout::FlowLayout()
{
    setContentsMargins(0, 0, 0, 0);
}

FlowLayout::~FlowLayout()
{
    qDeleteAll(m_items);
}

void FlowLayout::addItem(QLayoutItem *item)
{
    m_items.append(item);
}

QLayoutItem *FlowLayout::takeAt(int position)
{
    return position >= 0 && position < m_items.size() ? m_items.takeAt(position) : nullptr;
}

int FlowLayout::heightForWidth(int width) const
{
    return arrange(QRect(0, 0, width, 0), Act::Measure);
}

QSize FlowLayout::minimumSize() const
{
    QSize size;
    for (const QLayoutItem *item : m_items)
        size = size.expandedTo(item->minimumSize());
    return size;
}

void FlowLayout::setGeometry(const QRect &area)
{
    QLayout::setGeometry(area);
    arrange(area, Act::Place);
}

/*! Returns the height that is needed. */
int FlowLayout::arrange(const QRect &area, Act act) const
{
    QPoint place = area.topLeft();
    int rowHeight = 0;
    for (QLayoutItem *item : m_items) {
        const QSize size = item->sizeHint();
        if (place.x() > area.left() && place.x() + size.width() > area.right() + 1) {
            place = QPoint(area.left(), place.y() + rowHeight + gap);
            rowHeight = 0;
        }
        if (act == Act::Place)
            item->setGeometry(QRect(place, size));
        place.rx() += size.width() + gap;
        rowHeight = std::max(rowHeight, size.height());
    }
    return place.y() + rowHeight - area.top();
}
