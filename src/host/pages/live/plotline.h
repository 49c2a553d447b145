// SPDX-License-Identifier: MIT
#pragma once

#include <live/values/valuehistory.h>

#include <QVector>

#include <optional>

/*! A part of a history as a plot needs it: point by point while there are few, else for each pixel column the lowest and
 *  the highest, so that no peak is lost. Times in us.
 */
struct PlotLine
{
    struct Column
    {
        double place = 0; //!< in pixels from the left edge; may be a little outside of it
        float lowest = 0;
        float highest = 0;
        float last = 0;
        bool isBehindGap = false; //!< nothing came for so long that there is no line from the one before
    };

    QVector<Column> columns;
    bool isDense = false; //!< a column is more than one point
    float lowest = 0;     //!< of all columns
    float highest = 0;

    /*! Of \a history from \a from to \a to, on \a width pixels. One point more on both sides, so that lines go on. */
    static PlotLine of(const ValueHistory &history, qint64 from, qint64 to, int width);

    /*! The last value at a time; empty when there is none yet. */
    static std::optional<float> valueAt(const ValueHistory &history, qint64 time);
};
