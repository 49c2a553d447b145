// SPDX-License-Identifier: MIT
#pragma once

#include <QLayout>
#include <QVector>

/*! Widgets beside each other, in as many rows as the width asks for: buttons whose texts are long in some languages. */
class FlowLayout : public QLayout
{
public:
    FlowLayout();
    ~FlowLayout() override;

    void addItem(QLayoutItem *item) override;
    int count() const override { return m_items.size(); }
    QLayoutItem *itemAt(int position) const override { return m_items.value(position); }
    QLayoutItem *takeAt(int position) override;
    Qt::Orientations expandingDirections() const override { return {}; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize minimumSize() const override;
    QSize sizeHint() const override { return minimumSize(); }
    void setGeometry(const QRect &area) override;

private:
    enum class Act { Measure, Place };
    int arrange(const QRect &area, Act act) const;

    QVector<QLayoutItem *> m_items;
};
