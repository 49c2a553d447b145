// SPDX-License-Identifier: MIT
#pragma once

#include "rowtable.h"

#include <QVector>

/*! A table that only keeps its rows, for whoever writes them as text. */
class TextRows : public RowTable
{
public:
    enum class Kind : quint8 { Value, List, Separator };

    struct Row
    {
        Kind kind = Kind::Separator;
        DetailRow detail;    //!< empty for a separator; without a text for a list
        QStringList entries; //!< of a list
    };

    const QVector<Row> &rows() const { return m_rows; }

    int rowCount() const override { return m_rows.size(); }
    void clear() override { m_rows.clear(); }

protected:
    void placeRow(int position, const DetailRow &row) override;
    void placeListRow(int position, const QString &name, const QString &toolTip,
                      const QStringList &entries) override;
    void placeSeparator(int position) override;

private:
    QVector<Row> m_rows;
};
