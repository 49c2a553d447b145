// SPDX-License-Identifier: MIT
#pragma once

#include <live/values/valuehistory.h>

#include <QVector>

#include <limits>
#include <optional>

/*! A part of a history as a plot needs it: point by point while there are few, else for each pixel column the lowest and
 *  the highest, so that no peak is lost. Times in us.
 */
struct PlotLine
{
    struct Column
    {
        double time = 0; //!< of its first point
        float lowest = 0;
        float highest = 0;
        float last = 0;
        qint64 bucket = 0;        //!< of the time, when it is dense
        bool isBehindGap = false; //!< nothing came for so long that there is no line from the one before
        double place = 0;         //!< in pixels from the left edge; may be a little outside of it
    };

    QVector<Column> columns;
    bool isDense = false; //!< a column is more than one point
    float lowest = 0;     //!< of all columns
    float highest = 0;

    /*! Of \a history from \a from to \a to, on \a width pixels. One point more on both sides, so that lines go on. */
    static PlotLine of(const ValueHistory &history, qint64 from, qint64 to, int width);

    /*! The same, of the same history as before: what is known of it is used again when only the time went on. */
    void follow(const ValueHistory &history, qint64 from, qint64 to, int width);

    /*! The last value at a time; empty when there is none yet. */
    static std::optional<float> valueAt(const ValueHistory &history, qint64 time);

private:
    bool canGoOn(qint64 from, qint64 to, int width) const;
    void begin(const ValueHistory &history, qint64 from, qint64 to, int width);
    void goOn(const ValueHistory &history, qint64 from, qint64 to);
    void add(const ValueHistory &history, std::size_t first, std::size_t end);
    void addPoint(const ValueHistory::Point &point);
    void place(qint64 from, qint64 to);

    qint64 m_from = 0;
    qint64 m_to = 0;
    int m_width = 0;
    qint64 m_gap = 0;       // longer than this is one
    qint64 m_last = noTime; // time of the last point
    double m_bucket = 1;    // us of a column
    static constexpr qint64 noTime = std::numeric_limits<qint64>::min();
};
