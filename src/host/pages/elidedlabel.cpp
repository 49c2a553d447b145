// SPDX-License-Identifier: MIT
#include "elidedlabel.h"

#include <QPainter>
#include <QStyle>

ElidedLabel::ElidedLabel(const char *name, Qt::TextElideMode mode, QWidget *parent)
    : QLabel(parent)
    , m_mode(mode)
{
    setObjectName(QLatin1String(name));
    setTextFormat(Qt::PlainText);
    setMinimumWidth(1);
}

void ElidedLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QString shown = fontMetrics().elidedText(text(), m_mode, width());
    style()->drawItemText(&painter, rect(), Qt::AlignVCenter | Qt::AlignLeft, palette(), isEnabled(), shown,
                          foregroundRole());
}
