// SPDX-License-Identifier: MIT
#include "breakingrow.h"

#include <QBoxLayout>
#include <QEvent>
#include <QStyle>

#include <algorithm>

BreakingRow::BreakingRow(int distance, QWidget *parent)
    : QWidget(parent)
    , m_distance(distance)
    , m_parts(new QBoxLayout(QBoxLayout::LeftToRight, this))
{
    m_parts->setSpacing(distance);
}

void BreakingRow::addPart(QLayout *part, int stretch)
{
    m_parts->addLayout(part, stretch);
}

QSize BreakingRow::minimumSizeHint() const
{
    const QMargins margins = m_parts->contentsMargins();
    int width = 0;
    for (int i = 0; i < m_parts->count(); ++i)
        width = std::max(width, m_parts->itemAt(i)->minimumSize().width());
    return {width + margins.left() + margins.right(), m_parts->minimumSize().height()};
}

void BreakingRow::resizeEvent(QResizeEvent *event)
{
    arrange();
    QWidget::resizeEvent(event);
}

bool BreakingRow::event(QEvent *event)
{
    if (event->type() == QEvent::LayoutRequest) { // a text has changed
        arrange();
        m_parts->activate();
    }
    return QWidget::event(event);
}

/*! Nothing that it goes by depends on how the parts stand now: they would change places for ever. */
void BreakingRow::arrange()
{
    const QMargins margins = m_parts->contentsMargins();
    int inOneRow = margins.left() + margins.right() + m_distance * (m_parts->count() - 1);
    for (int i = 0; i < m_parts->count(); ++i)
        inOneRow += m_parts->itemAt(i)->minimumSize().width();
    const auto direction = width() < inOneRow ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight;
    if (direction == m_parts->direction())
        return;
    m_parts->setDirection(direction);
    m_parts->setSpacing(direction == QBoxLayout::LeftToRight
                            ? m_distance
                            : style()->pixelMetric(QStyle::PM_LayoutVerticalSpacing));
}
