// SPDX-License-Identifier: MIT
#pragma once

#include "batterypack.h"

#include <QWidget>

class CellBars;
class LiveSession;
class QComboBox;
class QLabel;

/*! A battery: its cells as bars with the lowest, the highest and what lies between them, and what else is heard of it. It
 *  is only there when cells are heard.
 */
class BatteryView : public QWidget
{
    Q_OBJECT

public:
    /*! \a session must outlive the view. */
    explicit BatteryView(LiveSession *session, QWidget *parent = nullptr);

    /*! Shows the values as they are now. */
    void refresh();

protected:
    void changeEvent(QEvent *event) override;

private:
    void showPacks(const QVector<BatteryPack> &packs);
    QString cellText(const BatteryPack &pack) const;
    void showOthers(const BatteryPack &pack);

    LiveSession *m_session;
    QComboBox *m_choice;
    QLabel *m_text;
    QLabel *m_others;
    CellBars *m_bars;
    int m_chosen = 0; // battery of the user's choice, whichever place it has among the others
};

/*! A bar for each cell; their feet are left out, so that differences are seen. The lowest and the highest stand out. */
class CellBars : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

    void setPack(const BatteryPack &pack);
    QSize sizeHint() const override { return {200, 60}; }
    QSize minimumSizeHint() const override { return {60, 30}; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    BatteryPack m_pack;
};
