// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

class QWidget;

/*! Keeps a widget as high as its wrapped texts need at its width. A layout that is short of room would cut them off, or take the
 *  room from parts that need it themselves. The child of its widget.
 */
class HeightKeeper : public QObject
{
    Q_OBJECT

public:
    explicit HeightKeeper(QWidget *widget);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void fit();

    QWidget *m_widget;
};
