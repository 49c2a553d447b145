// SPDX-License-Identifier: MIT
#include "nodelisting.h"
#include "textcolumns.h"

#include <details/nodedetails.h>
#include <details/overviewtr.h>

#include <algorithm>

namespace {

constexpr int titleIndent = 2; // columns
constexpr int rowIndent = 4;   // columns

QStringList cellsOf(const TextRows::Row &row)
{
    switch (row.kind) {
    case TextRows::Kind::Value:
        return {row.detail.name, row.detail.text};
    case TextRows::Kind::List:
        return {row.detail.name, row.entries.join(QLatin1Char('\n'))};
    case TextRows::Kind::Separator:
        break;
    }
    return {};
}

/*! The lines of the rows. Of empty rows those between others count, and one of several is enough. */
QStringList tableLines(const QVector<TextRows::Row> &rows)
{
    QVector<QStringList> cells;
    bool isSeparated = false;
    for (const TextRows::Row &row : rows) {
        if (row.kind == TextRows::Kind::Separator) {
            isSeparated = !cells.isEmpty();
            continue;
        }
        if (isSeparated)
            cells.append(QStringList());
        isSeparated = false;
        cells.append(cellsOf(row));
    }
    return alignedLines(cells, rowIndent);
}

QStringList sectionLines(const QString &title, const QVector<TextRows::Row> &rows)
{
    const QStringList lines = tableLines(rows);
    if (lines.isEmpty())
        return {};
    return QStringList({QString(), QString(titleIndent, QLatin1Char(' ')) + title}) + lines;
}

QStringList treeLines(const QVector<ListedNode> &nodes)
{
    const bool hasNmtStates = std::any_of(nodes.cbegin(), nodes.cend(),
                                          [](const ListedNode &node) { return !node.nmtState.isEmpty(); });
    QVector<QStringList> cells{{QStringLiteral("Draxel Network Components"), OverviewTr::tr("Node-Id"),
                                OverviewTr::tr("NMT-State"), OverviewTr::tr("DX FSA State")}};
    for (const ListedNode &node : nodes) {
        QString nmtState = node.nmtState;
        for (const Component &component : node.components) {
            cells.append({component.name, QString::number(node.id), nmtState, component.deviceState});
            nmtState.clear(); // as in the window, it stands in the first row of the node
        }
    }
    if (!hasNmtStates) {
        for (QStringList &row : cells)
            row.removeAt(2);
    }
    return alignedLines(cells, 0);
}

QString titleOf(const ListedNode &node)
{
    QStringList names;
    for (const Component &component : node.components)
        names.append(component.name);
    const QString title = QStringLiteral("%1 %2").arg(OverviewTr::tr("Node-Id"), QString::number(node.id));
    return names.isEmpty() ? title : title + QStringLiteral(": ") + names.join(QStringLiteral(", "));
}

} // namespace

QString listingText(const QVector<ListedNode> &nodes)
{
    QStringList lines = treeLines(nodes);
    for (const ListedNode &node : nodes) {
        lines << QString() << titleOf(node);
        lines << sectionLines(NodeDetails::parametersTitle(), node.parameters);
        lines << sectionLines(NodeDetails::valuesTitle(), node.values);
    }
    return lines.join(QLatin1Char('\n'));
}
