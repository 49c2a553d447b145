// SPDX-License-Identifier: MIT
#include "tracetable.h"

#include <QItemSelection>
#include <QScrollBar>

#include <algorithm>
#include <utility>

TraceTable::TraceTable(QWidget *parent)
    : CopyTable(parent)
{
    // New rows change the range and not the value, so a new value is where the user has scrolled to.
    QScrollBar *bar = verticalScrollBar();
    connect(bar, &QScrollBar::valueChanged, this, [this, bar](int value) {
        const bool isAtEnd = value >= bar->maximum();
        if (std::exchange(m_isClamped, false) || m_isScrolling || isAtEnd == m_isFollowing)
            return;
        m_isFollowing = isAtEnd;
        emit followingChanged(isAtEnd);
    });
    connect(bar, &QScrollBar::rangeChanged, this, [this, bar](int, int maximum) {
        if (m_isFollowing)
            setFollowing(true);
        else
            m_isClamped = bar->value() > maximum;
    });
}

void TraceTable::setFollowing(bool follows)
{
    m_isFollowing = follows;
    if (!follows)
        return;
    m_isScrolling = true;
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
    m_isScrolling = false;
}

int TraceTable::firstSelected() const
{
    int first = -1;
    for (const QItemSelectionRange &range : selectionModel()->selection())
        first = first < 0 ? range.top() : std::min(first, range.top());
    return first;
}

int TraceTable::lastSelected() const
{
    int last = -1;
    for (const QItemSelectionRange &range : selectionModel()->selection())
        last = std::max(last, range.bottom());
    return last;
}

QString TraceTable::toText() const
{
    const QItemSelection selection = selectionModel()->selection();
    const bool isAll = selection.isEmpty();
    const int first = isAll ? 0 : firstSelected();
    const int last = isAll ? model()->rowCount() - 1 : lastSelected();
    QString text;
    int copied = 0;
    for (int row = first; row <= last && copied < mostCopied; ++row) {
        const QModelIndex index = model()->index(row, 0);
        if (!isAll && !selection.contains(index))
            continue;
        QStringList cells;
        for (int column = 0; column < model()->columnCount(); ++column) {
            if (!isColumnHidden(column))
                cells << index.sibling(row, column).data().toString().simplified();
        }
        text += cells.join(QLatin1Char('\t')) + QLatin1Char('\n');
        ++copied;
    }
    return text;
}

void TraceTable::copy()
{
    CopyTable::copy();
    int rows = 0;
    for (const QItemSelectionRange &range : selectionModel()->selection())
        rows += range.height();
    if ((rows == 0 ? model()->rowCount() : rows) > mostCopied)
        emit copiedNotAll();
}
