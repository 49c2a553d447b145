// SPDX-License-Identifier: MIT
#include "textrows.h"

void TextRows::placeRow(int position, const DetailRow &row)
{
    m_rows.insert(position, {Kind::Value, row, {}});
}

void TextRows::placeListRow(int position, const QString &name, const QString &toolTip,
                            const QStringList &entries)
{
    m_rows.insert(position, {Kind::List, {name, QString(), toolTip}, entries});
}

void TextRows::placeSeparator(int position)
{
    m_rows.insert(position, Row());
}
