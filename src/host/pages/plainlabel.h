// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QString>

/*! A label for texts that may come from a device: never markup, and giving way, so that a long one makes no window wider. */
inline QLabel *makePlainLabel(const char *name, QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    label->setMinimumWidth(1);
    return label;
}

/*! One whose text can be marked and copied. */
inline QLabel *makeCopyableLabel(const char *name, QWidget *parent)
{
    QLabel *label = makePlainLabel(name, parent);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}
