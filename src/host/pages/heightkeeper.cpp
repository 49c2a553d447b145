// SPDX-License-Identifier: MIT
#include "heightkeeper.h"

#include <QEvent>
#include <QWidget>

HeightKeeper::HeightKeeper(QWidget *widget)
    : QObject(widget)
    , m_widget(widget)
{
    widget->installEventFilter(this);
}

bool HeightKeeper::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize || event->type() == QEvent::LayoutRequest)
        fit();
    return QObject::eventFilter(watched, event);
}

void HeightKeeper::fit()
{
    m_widget->setMinimumHeight(qMax(0, m_widget->heightForWidth(m_widget->width())));
}
