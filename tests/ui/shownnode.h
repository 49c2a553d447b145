// SPDX-License-Identifier: MIT
#pragma once

#include <tests/support/nodevalues.h>

#include <ui/detailtables.h>

#include <QComboBox>
#include <QStringList>
#include <QTableWidget>

/*! One node, and the two tables that show it. */
class ShownNode : public NodeValues<ShownNode>
{
public:
    void show() { DetailTables(store, parameters, values).showNode(nodeId); }

    QStringList parameterRows() const { return rows(parameters); }
    QStringList valueRows() const { return rows(values); }

    /*! A row as a text: "name = text [tooltip]", "name = (item, item) [tooltip of the name]" or "-" when
     *  empty.
     */
    static QString row(const QTableWidget &table, int number)
    {
        const QTableWidgetItem *name = table.item(number, 0);
        const QTableWidgetItem *text = table.item(number, 1);
        const auto *box = qobject_cast<QComboBox *>(table.cellWidget(number, 1));
        if (name == nullptr)
            return text == nullptr && box == nullptr ? QStringLiteral("-") : QStringLiteral("no name");

        QString line = name->text() + QLatin1String(" = ");
        if (box != nullptr) {
            QStringList items;
            for (int i = 0; i < box->count(); ++i)
                items.append(box->itemText(i));
            line += QLatin1Char('(') + items.join(QLatin1String(", ")) + QLatin1Char(')');
        } else if (text != nullptr) {
            line += text->text();
        }
        line += QLatin1String(" [") + name->toolTip();
        if (text != nullptr && text->toolTip() != name->toolTip())
            line += QLatin1String(" / ") + text->toolTip();
        return line + QLatin1Char(']');
    }

    QTableWidget parameters{0, 2};
    QTableWidget values{0, 2};

private:
    static QStringList rows(const QTableWidget &table)
    {
        QStringList lines;
        for (int i = 0; i < table.rowCount(); ++i)
            lines.append(row(table, i));
        return lines;
    }
};
