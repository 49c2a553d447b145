// SPDX-License-Identifier: MIT
#pragma once

#include "eventtable.h"

#include <live/events/eventfilter.h>
#include <live/events/eventlist.h>
#include <live/events/eventwriting.h>

#include <QAbstractTableModel>
#include <QTimer>

#include <deque>

/*! The events of a bus that go through a filter, the newest last. As bounded as the list.
 *
 *  It follows the list when update() is called, and then tells only what is new, so that views keep what is chosen. A
 *  filter goes through many events in slices, the oldest first, so that nobody waits for it.
 */
class EventModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { TimeColumn, NodeColumn, TextColumn, ColumnCount };

    explicit EventModel(QObject *parent = nullptr);

    /*! \a list has to outlive the model, or the next call; \a timeOfDay too. */
    void setSource(const EventList *list, const EventWriting::TimeOfDay &timeOfDay);

    /*! Takes what has happened since. */
    void update();
    /*! Begins anew, also in another language. */
    void reset();

    void setFilter(Severity least, const QString &text);
    /*! Whether the filter has not gone through all events yet. */
    bool isFiltering() const { return !m_all.empty() && m_filtered < m_all.back().event.number; }
    /*! Lets the filter go through the rest at once. */
    void finishFiltering();

    const LiveEvent &eventAt(int row) const { return rowAt(row).event; }
    /*! The row of the event that is nearest to a time (us); -1 without any. */
    int nearestRow(qint64 time) const;

    /*! What goes through the filter, for files; see finishFiltering(). */
    EventTable shown() const;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    struct Row
    {
        LiveEvent event;
        mutable QString text; // made when it is needed
    };

    const Row &rowOf(quint64 number) const { return m_all[std::size_t(number - m_all.front().event.number)]; }
    const Row &rowAt(int row) const { return rowOf(m_shown[static_cast<std::size_t>(row)]); }
    bool matches(const Row &row) const;
    void removeForgotten();
    void countAgain();
    void append();
    void filterOn();
    void filterTo(quint64 last);
    void prepareWords();
    QVariant cell(const Row &row, int column) const;
    static const QString &wordsOf(const Row &row);

    const EventList *m_list = nullptr;
    EventWriting::TimeOfDay m_timeOfDay;
    std::deque<Row> m_all;       // their numbers have no gaps
    std::deque<quint64> m_shown; // numbers of those that go through the filter
    Severity m_least = Severity::Note;
    QString m_text;
    quint64 m_revision = 0;
    quint64 m_prepared = 0; // number of the last event whose words are made
    quint64 m_filtered = 0; // number of the last event that the filter has looked at
    QTimer m_next;          // slice
};
