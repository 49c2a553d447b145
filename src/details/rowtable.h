// SPDX-License-Identifier: MIT
#pragma once

#include "detailrow.h"

#include <QStringList>

/*! A table of rows with a name and a value, whatever it is made of.
 *
 *  Positions are row numbers. A row is inserted before the one that stood at its position; one that is to go
 *  beyond the end of the table is not shown at all.
 */
class RowTable
{
public:
    RowTable() = default;
    virtual ~RowTable();
    RowTable(const RowTable &) = delete;
    RowTable &operator=(const RowTable &) = delete;

    virtual int rowCount() const = 0;

    /*! Removes all rows. */
    virtual void clear() = 0;

    void insertRow(int position, const DetailRow &row);
    void appendRow(const DetailRow &row) { insertRow(rowCount(), row); }

    /*! Inserts a row that lists \a entries as its value. The tooltip is the name's alone. */
    void insertListRow(int position, const QString &name, const QString &toolTip, const QStringList &entries);

    /*! Inserts an empty row. */
    void insertSeparator(int position);
    void appendSeparator() { insertSeparator(rowCount()); }

protected:
    // The position is from 0 to the number of rows.
    virtual void placeRow(int position, const DetailRow &row) = 0;
    virtual void placeListRow(int position, const QString &name, const QString &toolTip,
                              const QStringList &entries)
        = 0;
    virtual void placeSeparator(int position) = 0;

private:
    bool isInReach(int position) const;
};
