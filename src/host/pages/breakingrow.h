// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QBoxLayout;
class QLayout;

/*! Parts beside each other; below each other where there is no room for that. */
class BreakingRow : public QWidget
{
    Q_OBJECT

public:
    /*! \a distance: pixels between parts that stand beside each other. */
    BreakingRow(int distance, QWidget *parent);

    /*! Of the parts below each other. */
    QSize minimumSizeHint() const override;

protected:
    void addPart(QLayout *part, int stretch = 0);
    QBoxLayout *parts() const { return m_parts; }

    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void arrange();

    int m_distance;
    QBoxLayout *m_parts;
};
