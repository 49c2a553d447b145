// SPDX-License-Identifier: MIT
#pragma once

#include "tracedocument.h"

#include <QAbstractTableModel>
#include <QVector>

/*! The frames of one line of a trace, byte by byte in words: a row for each frame, below it a row for each part. */
class FrameDetails : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { WhereColumn, BytesColumn, MeaningColumn, ColumnCount };

    /*! Frames that are taken apart; of more only the number is said. */
    static constexpr std::size_t mostFrames = 200;

    using QAbstractTableModel::QAbstractTableModel;

    void show(const TraceDocument &document, std::size_t line);
    /*! Shows the same line again when more of its frames have come. */
    void update(const TraceDocument &document, std::size_t line);
    void clear();
    /*! Whether a row is a frame and not a part of one. */
    bool isFrame(int row) const { return m_rows.at(row).isFrame; }

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    struct Row
    {
        QString where;
        QString bytes;
        QString meaning;
        bool isFrame = false;

        friend bool operator==(const Row &a, const Row &b)
        {
            return a.where == b.where && a.bytes == b.bytes && a.meaning == b.meaning
                   && a.isFrame == b.isFrame;
        }
    };

    static QVector<Row> rowsOf(const TraceDocument &document, std::size_t line);
    static QVector<Row> rowsOf(const TraceHead &head, const TraceFrame &frame,
                               const QVector<FramePart> &parts);

    QVector<Row> m_rows;
    std::size_t m_frames = 0;
    bool m_isUnderWay = false; // a transfer that may go on
};
