// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <memory>
#include <optional>

class QTableWidget;
class QWidget;

/*! One row of a detail table. */
struct DetailRow
{
    QString name;                                        //!< column 0: what the value is
    QString text;                                        //!< column 1: the value in words
    QString toolTip = QString();                         //!< of both cells; empty for none
    std::optional<Qt::GlobalColor> color = std::nullopt; //!< of the text; without it the table's own
};

/*! Writes rows of a name and a value into a table of two or more columns.
 *
 *  Positions are row numbers. A row is inserted before the one that stood at its position; one that is to go
 * beyond the end of the table is not shown at all.
 */
class TableWriter
{
public:
    explicit TableWriter(QTableWidget &table)
        : m_table(table)
    {
    }

    int rowCount() const;

    /*! Removes all rows; the headers stay. */
    void clear();

    void insertRow(int position, const DetailRow &row);
    void appendRow(const DetailRow &row) { insertRow(rowCount(), row); }

    /*! Inserts a row that shows \a widget as its value. The tooltip is the name's; the table owns the widget.
     */
    void insertWidgetRow(int position, const QString &name, const QString &toolTip,
                         std::unique_ptr<QWidget> widget);

    /*! Inserts an empty row. */
    void insertSeparator(int position);
    void appendSeparator() { insertSeparator(rowCount()); }

private:
    bool isInReach(int position) const;
    void setName(int position, const QString &name, const QString &toolTip);

    QTableWidget &m_table;
};
