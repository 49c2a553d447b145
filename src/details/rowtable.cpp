// SPDX-License-Identifier: MIT
#include "rowtable.h"

RowTable::~RowTable() = default;

void RowTable::insertRow(int position, const DetailRow &row)
{
    if (isInReach(position))
        placeRow(position, row);
}

void RowTable::insertListRow(int position, const QString &name, const QString &toolTip,
                             const QStringList &entries)
{
    if (isInReach(position))
        placeListRow(position, name, toolTip, entries);
}

void RowTable::insertSeparator(int position)
{
    if (isInReach(position))
        placeSeparator(position);
}

bool RowTable::isInReach(int position) const
{
    return position >= 0 && position <= rowCount();
}
