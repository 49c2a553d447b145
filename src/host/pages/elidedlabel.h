// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>

/*! One line of plain text that gives way: where the room ends, "..." stands for what does not fit. */
class ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    /*! \a mode says where: the end of a path is worth more than its middle. */
    ElidedLabel(const char *name, Qt::TextElideMode mode, QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Qt::TextElideMode m_mode;
};
