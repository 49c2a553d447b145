// SPDX-License-Identifier: MIT
#include "eventmodel.h"

#include <host/pages/lighticon.h>
#include <host/pages/plaintooltip.h>
#include <live/events/eventwords.h>

#include <algorithm>
#include <limits>
#include <vector>

EventModel::EventModel(QObject *parent)
    : QAbstractTableModel(parent)
    , m_timeOfDay([](qint64) { return QDateTime(); })
{
    m_next.setSingleShot(true);
    connect(&m_next, &QTimer::timeout, this, &EventModel::filterOn);
}

void EventModel::setSource(const EventList *list, const EventWriting::TimeOfDay &timeOfDay)
{
    m_list = list;
    m_timeOfDay = timeOfDay;
    reset();
}

void EventModel::reset()
{
    beginResetModel();
    m_all.clear();
    m_shown.clear();
    m_revision = 0;
    m_prepared = 0;
    m_filtered = 0;
    endResetModel();
    update();
}

void EventModel::setFilter(Severity least, const QString &text)
{
    m_least = least;
    m_text = text.trimmed();
    beginResetModel();
    m_shown.clear();
    m_filtered = 0;
    endResetModel();
    filterOn();
}

/*! A slice, when words are to be made and searched. */
void EventModel::filterOn()
{
    constexpr quint64 slice = 2500;
    if (!isFiltering())
        return;
    const quint64 atOnce = m_text.isEmpty() ? m_all.size() : slice;
    filterTo(std::max(m_filtered, m_all.front().event.number - 1) + atOnce);
    if (isFiltering())
        m_next.start(0);
}

void EventModel::finishFiltering()
{
    if (isFiltering())
        filterTo(m_all.back().event.number);
}

void EventModel::filterTo(quint64 last)
{
    std::vector<quint64> added;
    const quint64 first = std::max(m_filtered + 1, m_all.front().event.number);
    m_filtered = std::min(last, m_all.back().event.number);
    for (quint64 number = first; number <= m_filtered; ++number) {
        if (matches(rowOf(number)))
            added.push_back(number);
    }
    if (added.empty())
        return;
    const int row = rowCount();
    beginInsertRows(QModelIndex(), row, row + static_cast<int>(added.size()) - 1);
    m_shown.insert(m_shown.end(), added.cbegin(), added.cend());
    endInsertRows();
}

void EventModel::update()
{
    prepareWords();
    if (m_list == nullptr || m_list->revision() == m_revision)
        return;
    m_revision = m_list->revision();
    removeForgotten();
    countAgain();
    append();
}

void EventModel::removeForgotten()
{
    const quint64 first
        = m_list->events().empty() ? std::numeric_limits<quint64>::max() : m_list->events().front().number;
    const auto end = std::lower_bound(m_shown.cbegin(), m_shown.cend(), first);
    if (end != m_shown.cbegin()) {
        beginRemoveRows(QModelIndex(), 0, static_cast<int>(end - m_shown.cbegin()) - 1);
        m_shown.erase(m_shown.cbegin(), end);
        endRemoveRows();
    }
    while (!m_all.empty() && m_all.front().event.number < first)
        m_all.pop_front();
}

/*! Events that came once more, or are called otherwise now. */
void EventModel::countAgain()
{
    const std::deque<LiveEvent> &events = m_list->events();
    for (std::size_t i = 0; i < m_all.size(); ++i) {
        if (m_all[i].event.count == events[i].count && m_all[i].event.detail == events[i].detail)
            continue;
        m_all[i] = {events[i], QString()};
        const auto shown = std::lower_bound(m_shown.cbegin(), m_shown.cend(), events[i].number);
        const auto row = static_cast<int>(shown - m_shown.cbegin());
        if (shown != m_shown.cend() && *shown == events[i].number)
            emit dataChanged(index(row, 0), index(row, ColumnCount - 1));
    }
}

void EventModel::append()
{
    const std::deque<LiveEvent> &events = m_list->events();
    for (std::size_t i = m_all.size(); i < events.size(); ++i)
        m_all.push_back({events[i], QString()});
    filterOn();
}

/*! A few at a time, so that a search has not to make all of them at once. */
void EventModel::prepareWords()
{
    constexpr quint64 atOnce = 500;
    if (m_all.empty() || m_prepared >= m_all.back().event.number)
        return;
    const quint64 first = std::max(m_prepared + 1, m_all.front().event.number);
    m_prepared = std::min(first + atOnce - 1, m_all.back().event.number);
    for (quint64 number = first; number <= m_prepared; ++number)
        wordsOf(rowOf(number));
}

const QString &EventModel::wordsOf(const Row &row)
{
    if (row.text.isEmpty()) {
        const QString text = EventWords::text(row.event);
        row.text
            = row.event.count > 1 ? tr("%1 (%2 times)").arg(text, QString::number(row.event.count)) : text;
    }
    return row.text;
}

bool EventModel::matches(const Row &row) const
{
    if (row.event.severity() < m_least)
        return false;
    return m_text.isEmpty() || wordsOf(row).contains(m_text, Qt::CaseInsensitive)
           || (row.event.nodeId != 0 && QString::number(row.event.nodeId) == m_text);
}

int EventModel::nearestRow(qint64 time) const
{
    int best = -1;
    for (int row = 0; row < rowCount(); ++row) {
        if (best < 0 || qAbs(eventAt(row).time - time) < qAbs(eventAt(best).time - time))
            best = row;
    }
    return best;
}

EventTable EventModel::shown() const
{
    EventTable table;
    table.start = m_timeOfDay(0);
    table.events.reserve(m_shown.size());
    for (int row = 0; row < rowCount(); ++row)
        table.events.push_back(eventAt(row));
    return table;
}

int EventModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

int EventModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(ColumnCount);
}

QVariant EventModel::cell(const Row &row, int column) const
{
    switch (column) {
    case TimeColumn:
        return m_timeOfDay(row.event.time).toString(QStringLiteral("HH:mm:ss.zzz"));
    case NodeColumn:
        return row.event.nodeId != 0 ? QString::number(row.event.nodeId) : QString();
    default:
        return wordsOf(row);
    }
}

QVariant EventModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return QVariant();
    const Row &row = rowAt(index.row());
    if (role == Qt::DisplayRole)
        return cell(row, index.column());
    if (role == Qt::ToolTipRole)
        return plainToolTip(EventWords::severity(row.event.severity()) + QStringLiteral(": ")
                            + EventWords::line(row.event));
    if (role == Qt::DecorationRole && index.column() == TimeColumn)
        return LightIcon::of(ReportMarks::of(row.event.severity()));
    return QVariant();
}

QVariant EventModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QVariant();
    switch (section) {
    case TimeColumn:
        return tr("Time");
    case NodeColumn:
        return tr("Node");
    default:
        return tr("What happened");
    }
}
