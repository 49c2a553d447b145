// SPDX-License-Identifier: MIT
#pragma once

#include <QVector>

/*! The values that a chart's vertical axis shows, with a few round ones to label. */
struct ChartScale
{
    double low = 0;
    double high = 1; //!< above low
    QVector<double> ticks;
    int decimals = 0; //!< that tell the ticks apart

    /*! An axis that holds both values and some room beyond them; \a lowest and \a highest may be equal. */
    static ChartScale around(double lowest, double highest);

    /*! 0 at low, 1 at high. */
    double share(double value) const { return (value - low) / (high - low); }
};
