// SPDX-License-Identifier: MIT
#include "trendvalues.h"

#include <iterator>

namespace {

struct Row
{
    quint16 index;
    quint8 subIndex;
    const char *title;
    double divisor; // of the raw value
};

constexpr Row rows[] = {
    {0x6176, 1, QT_TRANSLATE_NOOP("TrendValues", "Battery: state of health (%)"), 100},
    {0x6107, 1, QT_TRANSLATE_NOOP("TrendValues", "Battery: charge cycles"), 1},
    {0x6160, 1, QT_TRANSLATE_NOOP("TrendValues", "Battery: energy in it (Wh)"), 1000},
    {0x617F, 1, QT_TRANSLATE_NOOP("TrendValues", "Battery: deep discharges"), 1},
    {0x6180, 1, QT_TRANSLATE_NOOP("TrendValues", "Battery: short circuits"), 1},
    {0x6181, 1, QT_TRANSLATE_NOOP("TrendValues", "Battery: over-temperatures"), 1},
    {0x63ED, 1, QT_TRANSLATE_NOOP("TrendValues", "Display: distance"), 1},
    {0x6043, 1, QT_TRANSLATE_NOOP("TrendValues", "Time switched on (h)"), 60},
};

} // namespace

int TrendValues::count()
{
    return static_cast<int>(std::size(rows));
}

CanOpen::ObjectKey TrendValues::key(int position)
{
    return {rows[position].index, rows[position].subIndex};
}

QString TrendValues::title(int position)
{
    return tr(rows[position].title);
}

double TrendValues::number(int position, const QVariant &value)
{
    return value.toDouble() / rows[position].divisor;
}
