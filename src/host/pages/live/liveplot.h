// SPDX-License-Identifier: MIT
#pragma once

#include <live/values/valuehistory.h>

#include <QPen>
#include <QVector>

#include <qwt_plot.h>

#include <memory>

class LiveCurve;
class QMouseEvent;
class QRubberBand;
class QwtPlotGrid;
class QwtPlotMarker;

/*! Curves over the time. The first unit has the axis on the left, the second the one on the right; curves of further units
 *  have the whole height for themselves, and the cursor reads them. Times in us, on the line of all that was heard.
 *
 *  A click sets the cursor, a drag chooses a part of the time, the wheel makes it shorter and longer.
 */
class LivePlot : public QwtPlot
{
    Q_OBJECT

public:
    struct Curve
    {
        std::shared_ptr<const ValueHistory> history;
        QString unit;
        QPen pen;
    };

    explicit LivePlot(QWidget *parent = nullptr);

    /*! In place of those before. */
    void setCurves(const QVector<Curve> &curves);
    /*! The time of day at 0 (ms since 1970), for the axis. */
    void setStart(qint64 start) { m_start = start; }
    /*! Draws this part of the time. */
    void showTime(qint64 from, qint64 to);
    /*! -1: none. */
    void setCursorTime(qint64 time);

    qint64 from() const { return m_from; }
    qint64 to() const { return m_to; }

    QSize minimumSizeHint() const override;

signals:
    /*! The user wants to see this part. */
    void timeChosen(qint64 from, qint64 to);
    void cursorChosen(qint64 time);
    /*! A double click: everything again. */
    void resetRequested();

protected:
    void changeEvent(QEvent *event) override;
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    struct Shown
    {
        LiveCurve *curve; // the plot's
        int group;        // of its unit, in the order of the units
    };

    void takeColours();
    void scaleAxes();
    void scaleGroup(int group);
    void handleMouse(const QMouseEvent &mouse);
    void press(const QPoint &place);
    void drag(const QPoint &place);
    void release(const QPoint &place);
    void zoom(const QPoint &place, int steps);
    qint64 timeAt(int place) const;

    QwtPlotGrid *m_grid;
    QwtPlotMarker *m_cursor;
    QVector<Shown> m_shown;
    QStringList m_units;
    QRubberBand *m_band;
    QPoint m_pressed;
    bool m_isPressed = false;
    qint64 m_start = 0;
    qint64 m_from = 0;
    qint64 m_to = 1;
};
