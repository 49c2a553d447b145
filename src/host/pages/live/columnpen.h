// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QPen>

class QPainter;

/*! Draws a line from left to right, one column of pixels after the other: its time depends on the columns and not, as that of a
 *  stroked path, on how often the line goes up and down. All of it is in pixels of the device.
 */
class ColumnPen
{
public:
    enum class Edges {
        Smooth, //!< pixels that the line covers in part get a part of its colour
        Sharp   //!< several times as fast
    };

    /*! \a painter has to outlive it. Dashes count along the x axis. */
    ColumnPen(QPainter *painter, const QPen &pen, double width, Edges edges);
    ~ColumnPen() { lift(); }
    Q_DISABLE_COPY(ColumnPen)

    /*! To a place on or to the right of the one before. The first one begins a line, also after lift(). What is no number lifts
     *  the pen.
     */
    void lineTo(double x, double y);
    void lift();

private:
    void include(double y);
    void nextColumn(double y);
    void paintColumn();
    void paintPart(int y, double share);

    QPainter *m_painter;
    QColor m_colour;
    Qt::PenStyle m_style;
    double m_half; // of the width
    int m_dash;    // pixels
    Edges m_edges;
    bool m_isDown = false;
    double m_x = 0;
    double m_y = 0;
    int m_column = 0;
    double m_top = 0; // of what is in the column
    double m_bottom = 0;
};
