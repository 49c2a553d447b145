// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class LivePlot;
class LiveSession;
class QComboBox;
class QLabel;
class QToolButton;

/*! The plot of the values that are ticked in the watch list, how much of the time it shows, and what the cursor reads. */
class PlotView : public QWidget
{
    Q_OBJECT

public:
    /*! \a session must outlive the view. */
    explicit PlotView(LiveSession *session, QWidget *parent = nullptr);

    /*! Follows the time, unless it is held. */
    void refresh();

    /*! Moves the cursor to a time (us), and the plot when it does not show it. */
    void showTime(qint64 time);

    bool isHeld() const { return m_isHeld; }
    LivePlot &plot() { return *m_plot; }

protected:
    void changeEvent(QEvent *event) override;

private:
    void build();
    void takeCurves();
    void bindCurves();
    void hold(bool isHeld);
    void zoomTo(qint64 from, qint64 to);
    void setCursorTime(qint64 time);
    void showReadings();
    QString readings() const;
    void draw();
    void retranslate();
    qint64 span() const;

    LiveSession *m_session;
    QComboBox *m_span;
    QToolButton *m_hold;
    QLabel *m_readings;
    QLabel *m_empty;
    LivePlot *m_plot;
    bool m_isHeld = false;
    qint64 m_from = 0; // what is shown while it is held
    qint64 m_to = 1;
    qint64 m_cursor = -1;
    int m_bound = 0; // curves that have a history
};
