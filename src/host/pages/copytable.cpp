// SPDX-License-Identifier: MIT
#include "copytable.h"

#include <QAction>
#include <QClipboard>
#include <QEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QPainter>

#include <algorithm>

namespace {

constexpr int lookedAt = 40; // rows, for the widths of columns: all of a long table would take too long
constexpr int leastCharacters = 14; // of the wide column; when there is less room, the table scrolls

} // namespace

CopyTable::CopyTable(QWidget *parent)
    : QTableView(parent)
    , m_copy(new QAction(this))
{
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setAlternatingRowColors(true);
    setShowGrid(false);
    setWordWrap(false);
    setTabKeyNavigation(false);
    setHorizontalScrollMode(ScrollPerPixel);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    horizontalHeader()->setResizeContentsPrecision(lookedAt);
    m_copy->setShortcut(QKeySequence::Copy);
    m_copy->setShortcutContext(Qt::WidgetShortcut);
    m_copy->setText(tr("&Copy"));
    connect(m_copy, &QAction::triggered, this, &CopyTable::copy);
    addAction(m_copy);
    setContextMenuPolicy(Qt::ActionsContextMenu);
}

void CopyTable::setWideColumn(int column)
{
    m_wideColumn = column;
    fitColumns();
}

void CopyTable::setModel(QAbstractItemModel *newModel)
{
    QTableView::setModel(newModel);
    connect(newModel, &QAbstractItemModel::modelReset, this, &CopyTable::fitColumns);
    connect(newModel, &QAbstractItemModel::rowsInserted, this, [this](const QModelIndex &, int first) {
        if (first == 0)
            fitColumns();
    });
    fitColumns();
}

void CopyTable::setHint(const QString &hint)
{
    m_hint = hint;
    viewport()->update();
}

QString CopyTable::toText() const
{
    QModelIndexList rows = selectionModel()->selectedRows();
    if (rows.isEmpty()) {
        for (int row = 0; row < model()->rowCount(); ++row)
            rows.append(model()->index(row, 0));
    }
    std::sort(rows.begin(), rows.end());
    QString text;
    for (const QModelIndex &row : qAsConst(rows)) {
        QStringList cells;
        for (int column = 0; column < model()->columnCount(); ++column)
            cells << row.sibling(row.row(), column).data().toString().simplified();
        text += cells.join(QLatin1Char('\t')) + QLatin1Char('\n');
    }
    return text;
}

void CopyTable::copy()
{
    QGuiApplication::clipboard()->setText(toText());
}

void CopyTable::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        m_copy->setText(tr("&Copy"));
    if (event->type() == QEvent::FontChange)
        verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    QTableView::changeEvent(event);
}

void CopyTable::paintEvent(QPaintEvent *event)
{
    QTableView::paintEvent(event);
    if (m_hint.isEmpty() || model() == nullptr || model()->rowCount() > 0)
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect(), Qt::AlignCenter | Qt::TextWordWrap, m_hint);
}

void CopyTable::resizeEvent(QResizeEvent *event)
{
    QTableView::resizeEvent(event);
    fitColumns();
}

/*! No column takes more than a third, so that the wide one keeps its room. */
void CopyTable::fitColumns()
{
    if (model() == nullptr)
        return;
    const int columns = model()->columnCount();
    const int most = std::max(viewport()->width() / 3, 40);
    int rest = viewport()->width();
    for (int column = 0; column < columns; ++column) {
        if (column == m_wideColumn || isColumnHidden(column))
            continue;
        const int width = std::min(
            std::max(sizeHintForColumn(column), horizontalHeader()->sectionSizeHint(column)) + 8, most);
        setColumnWidth(column, width);
        rest -= width;
    }
    if (m_wideColumn < columns)
        setColumnWidth(m_wideColumn,
                       std::max({rest, most, leastCharacters * fontMetrics().averageCharWidth()}));
}
