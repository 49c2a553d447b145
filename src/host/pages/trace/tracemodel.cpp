// SPDX-License-Identifier: MIT
#include "tracemodel.h"

#include "tracetimes.h"
#include "workslice.h"

#include <host/pages/lighticon.h>
#include <host/pages/plaintooltip.h>

#include <QElapsedTimer>

#include <algorithm>
#include <limits>

namespace {

constexpr std::size_t linesBetweenLooks = 256; // at the clock
constexpr std::size_t linesInSlice = 50000;    // where the clock is too coarse to tell

/*! Nodes stand apart from the differences before them. */
int alignment(int column)
{
    if (column == TraceModel::DifferenceColumn)
        return int(Qt::AlignRight | Qt::AlignVCenter);
    return column == TraceModel::NodeColumn ? int(Qt::AlignCenter) : int(Qt::AlignLeft | Qt::AlignVCenter);
}

constexpr auto mostRows = static_cast<std::size_t>(std::numeric_limits<int>::max());

} // namespace

TraceModel::TraceModel(QObject *parent)
    : QAbstractTableModel(parent)
    , m_document(std::make_shared<TraceDocument>())
{
    m_timer.setInterval(0);
    connect(&m_timer, &QTimer::timeout, this, &TraceModel::look);
}

void TraceModel::setDocument(const std::shared_ptr<TraceDocument> &document)
{
    beginResetModel();
    m_document = document;
    m_rows.setLines(&m_document->lines);
    if (m_rows.isAll())
        m_rows.showAll();
    endResetModel();
    update();
}

void TraceModel::setFilter(const TraceFilter &filter)
{
    beginResetModel();
    m_rows.setFilter(filter);
    if (m_rows.isAll())
        m_rows.showAll();
    endResetModel();
    update();
}

void TraceModel::update()
{
    if (m_rows.isAll()) {
        const auto there = static_cast<int>(std::min(m_document->lines.size(), mostRows));
        if (there > rowCount()) {
            beginInsertRows(QModelIndex(), rowCount(), there - 1);
            m_rows.showAll();
            endInsertRows();
        }
        emit looked();
    } else {
        showLate();
        look();
    }
    // Transfers under way say something else when they end. Only what is seen is painted again.
    if (rowCount() > 0)
        emit dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
}

void TraceModel::look()
{
    QElapsedTimer clock;
    clock.start();
    std::vector<quint32> found;
    for (std::size_t looked = 0; !m_rows.isComplete() && looked < linesInSlice && clock.elapsed() < workSlice;
         looked += linesBetweenLooks) {
        const std::vector<quint32> some = m_rows.examine(linesBetweenLooks);
        found.insert(found.end(), some.begin(), some.end());
    }
    append(found);
    if (m_rows.isComplete())
        m_timer.stop();
    else if (!m_timer.isActive())
        m_timer.start();
    emit looked();
}

void TraceModel::append(const std::vector<quint32> &lines)
{
    if (lines.empty())
        return;
    const int first = rowCount();
    beginInsertRows(QModelIndex(), first, first + static_cast<int>(lines.size()) - 1);
    m_rows.append(lines);
    endInsertRows();
}

void TraceModel::showLate()
{
    while (const std::optional<quint32> line = m_rows.takeLate()) {
        const auto row = static_cast<int>(m_rows.rowOf(*line));
        beginInsertRows(QModelIndex(), row, row);
        m_rows.insert(*line);
        endInsertRows();
    }
}

int TraceModel::rowOfLine(std::size_t line) const
{
    return std::min(static_cast<int>(std::min(m_rows.rowOf(line), mostRows)), rowCount() - 1);
}

QString TraceModel::wordsAt(int row) const
{
    const TraceText text = m_document->lines.text(lineAt(row));
    return text.detail.isEmpty() ? text.text : tr("%1 (%2)").arg(text.text, text.detail);
}

int TraceModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(std::min(m_rows.size(), mostRows));
}

int TraceModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(ColumnCount);
}

QString TraceModel::channelName(const TraceLine &line) const
{
    return m_document->trace.head.channels.value(line.channel, QString::number(line.channel));
}

QVariant TraceModel::cell(int row, int column) const
{
    const TraceLine &line = m_document->lines.at(lineAt(row));
    switch (column) {
    case TimeColumn:
        return TraceTimes::shortText(timeAt(row), m_document->trace.head.hasTimeOfDay);
    case DifferenceColumn:
        return row == 0 ? QString() : TraceTimes::difference(timeAt(row) - timeAt(row - 1));
    case ChannelColumn:
        return channelName(line);
    case NodeColumn:
        return line.nodeId != 0 ? QString::number(line.nodeId) : QString();
    default:
        return wordsAt(row);
    }
}

QString TraceModel::toolTip(int row) const
{
    const QString mark = ReportMarks::word(markOf(m_document->lines.at(lineAt(row)).mark));
    const QString words = mark.isEmpty() ? wordsAt(row) : mark + QStringLiteral(": ") + wordsAt(row);
    return plainToolTip(TraceTimes::longText(timeAt(row), m_document->trace.head.hasTimeOfDay)
                        + QLatin1Char('\n') + words);
}

QVariant TraceModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return QVariant();
    switch (role) {
    case Qt::DisplayRole:
        return cell(index.row(), index.column());
    case Qt::ToolTipRole:
        return toolTip(index.row());
    case Qt::DecorationRole:
        return index.column() == WhatColumn
                   ? QVariant(LightIcon::of(markOf(m_document->lines.at(lineAt(index.row())).mark)))
                   : QVariant();
    case Qt::TextAlignmentRole:
        return alignment(index.column());
    default:
        return QVariant();
    }
}

QVariant TraceModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QVariant();
    switch (section) {
    case TimeColumn:
        return tr("Time");
    case DifferenceColumn:
        return tr("Difference");
    case ChannelColumn:
        return tr("Bus");
    case NodeColumn:
        return tr("Node");
    default:
        return tr("What happened");
    }
}

ReportMark TraceModel::markOf(TraceMark mark)
{
    switch (mark) {
    case TraceMark::Plain:
        return ReportMark::None;
    case TraceMark::Note:
        return ReportMark::Note;
    case TraceMark::Warning:
        return ReportMark::Warning;
    case TraceMark::Fault:
        break;
    }
    return ReportMark::Fault;
}
