// SPDX-License-Identifier: MIT
#pragma once

#include <snapshot/snapshot.h>

#include <QAbstractTableModel>

/*! The entries of one node as a table: its values, or what could not be read and why. Texts are made when they are shown:
 *  a node may have thousands.
 */
class EntryModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum class Content : quint8 { Values, Gaps };
    enum Column { NameColumn, NumberColumn, ValueColumn, BytesColumn };

    explicit EntryModel(Content content, QObject *parent = nullptr);

    void setNode(const SnapshotNode &node);
    void clear() { setNode(SnapshotNode()); }

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    QString text(const SnapshotEntry &entry, int column) const;

    Content m_content;
    QVector<SnapshotEntry> m_entries;
};
