// SPDX-License-Identifier: MIT
#pragma once

#include <tests/support/nodevalues.h>

#include <details/nodedetails.h>
#include <details/textrows.h>

#include <QStringList>

/*! One node, and the two tables that show it. */
class ShownNode : public NodeValues<ShownNode>
{
public:
    void show() { NodeDetails(store, parameters, values).showNode(nodeId); }

    QStringList parameterRows() const { return rows(parameters); }
    QStringList valueRows() const { return rows(values); }

    /*! A row as a text: "name = text [tooltip]", "name = (item, item) [tooltip]" or "-" when empty. */
    static QString row(const TextRows &table, int number)
    {
        const TextRows::Row &row = table.rows().at(number);
        switch (row.kind) {
        case TextRows::Kind::Value:
            return QStringLiteral("%1 = %2 [%3]").arg(row.detail.name, row.detail.text, row.detail.toolTip);
        case TextRows::Kind::List:
            return QStringLiteral("%1 = (%2) [%3]")
                .arg(row.detail.name, row.entries.join(QLatin1String(", ")), row.detail.toolTip);
        case TextRows::Kind::Separator:
            break;
        }
        return QStringLiteral("-");
    }

    static QString name(const TextRows &table, int number) { return table.rows().at(number).detail.name; }
    static QString text(const TextRows &table, int number) { return table.rows().at(number).detail.text; }
    static std::optional<Qt::GlobalColor> color(const TextRows &table, int number)
    {
        return table.rows().at(number).detail.color;
    }

    TextRows parameters;
    TextRows values;

private:
    static QStringList rows(const TextRows &table)
    {
        QStringList lines;
        for (int i = 0; i < table.rowCount(); ++i)
            lines.append(row(table, i));
        return lines;
    }
};
