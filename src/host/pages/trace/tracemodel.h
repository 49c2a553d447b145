// SPDX-License-Identifier: MIT
#pragma once

#include "tracedocument.h"
#include "tracerows.h"

#include <servicereport/reportmark.h>

#include <QAbstractTableModel>
#include <QTimer>

#include <memory>

/*! The lines of a trace that go through a filter, in their order. Words are made when a line is shown.
 *
 *  The lines are looked at in slices of some ms from the event loop, so that a million of them never hold the window.
 */
class TraceModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { TimeColumn, DifferenceColumn, ChannelColumn, NodeColumn, WhatColumn, ColumnCount };

    explicit TraceModel(QObject *parent = nullptr);

    void setDocument(const std::shared_ptr<TraceDocument> &document);
    const TraceDocument &document() const { return *m_document; }
    void setFilter(const TraceFilter &filter);
    /*! Takes lines that were added to the document, and transfers that have ended. */
    void update();

    /*! Whether there are lines that were not looked at. */
    bool isLooking() const { return !m_rows.isComplete(); }

    const TraceRows &rows() const { return m_rows; }
    /*! The line of the document in a row. */
    std::size_t lineAt(int row) const { return m_rows.lineAt(static_cast<std::size_t>(row)); }
    /*! The row of a line of the document, or of the next one that is shown, else of the last; -1 without any. */
    int rowOfLine(std::size_t line) const;
    /*! us; of a row. */
    qint64 timeAt(int row) const { return m_document->lines.time(lineAt(row)); }
    /*! What the row says, for searching. */
    QString wordsAt(int row) const;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    static ReportMark markOf(TraceMark mark);

signals:
    /*! More lines were looked at, or all again. */
    void looked();

private:
    void look();
    void showLate();
    void append(const std::vector<quint32> &lines);
    QVariant cell(int row, int column) const;
    QString channelName(const TraceLine &line) const;
    QString toolTip(int row) const;

    std::shared_ptr<TraceDocument> m_document;
    TraceRows m_rows;
    QTimer m_timer;
};
