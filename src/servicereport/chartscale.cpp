// SPDX-License-Identifier: MIT
#include "chartscale.h"

#include <QtGlobal>

#include <cmath>

namespace {

constexpr int wantedTicks = 4;

/*! The next step of 1, 2 or 5 times a power of ten. */
double roundStep(double step)
{
    const double power = std::pow(10, std::floor(std::log10(step)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (step <= factor * power * 1.0001)
            return factor * power;
    }
    return 10 * power;
}

} // namespace

ChartScale ChartScale::around(double lowest, double highest)
{
    const double span = qMax(highest - lowest, qMax(std::abs(highest) * 0.02, 1e-6));
    const double step = roundStep(span / wantedTicks);
    ChartScale scale;
    scale.low = std::floor((lowest - span * 0.08) / step) * step;
    scale.high = std::ceil((highest + span * 0.08) / step) * step;
    const int count = qRound((scale.high - scale.low) / step);
    for (int i = 0; i <= count; ++i)
        scale.ticks.append(scale.low + i * step);
    scale.decimals = qMax(0, static_cast<int>(-std::floor(std::log10(step) + 1e-9)));
    return scale;
}
