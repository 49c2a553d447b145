// SPDX-License-Identifier: MIT
#pragma once

#include <details/rowtable.h>

class QTableWidget;

/*! Writes rows of a name and a value into a table of the window, of two or more columns. A list becomes a box
 *  that opens.
 */
class TableWriter : public RowTable
{
public:
    explicit TableWriter(QTableWidget &table)
        : m_table(table)
    {
    }

    int rowCount() const override;

    /*! Removes all rows; the headers stay. */
    void clear() override;

protected:
    void placeRow(int position, const DetailRow &row) override;
    void placeListRow(int position, const QString &name, const QString &toolTip,
                      const QStringList &entries) override;
    void placeSeparator(int position) override;

private:
    void setName(int position, const QString &name, const QString &toolTip);

    QTableWidget &m_table;
};
