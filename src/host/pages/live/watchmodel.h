// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractTableModel>

class LiveSession;
struct LiveValue;

/*! The watch list as a table. A value that is late is grey, and its tool tip says since when; the box of a row says whether
 *  it is plotted.
 */
class WatchModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column {
        NameColumn,
        ValueColumn,
        UnitColumn,
        SmallestColumn,
        LargestColumn,
        MeanColumn,
        NodeColumn,
        ObjectColumn,
        ColumnCount
    };

    /*! \a session must outlive it. */
    explicit WatchModel(LiveSession *session, QObject *parent = nullptr);

    /*! Everything may have another value. */
    void refresh();

    /*! A number of a value with as many decimals as it has. */
    static QString numberText(double number, const LiveValue &value, int moreDecimals = 0);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    QString cell(int row, int column) const;
    QString toolTip(int row) const;
    bool isLate(int row) const;
    QString sinceWhen(const LiveValue &value) const;

    LiveSession *m_session;
};
