// SPDX-License-Identifier: MIT
#pragma once

#include <servicereport/reportmark.h>

#include <QAbstractTableModel>
#include <QVector>

class CheckupSession;

/*! The components of the check-up as a table: while they are read in the order of their nodes, with how far each is; then
 *  judged, the worst first.
 */
class ComponentModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { NameColumn, NodeColumn, StateColumn, ChangesColumn, ColumnCount };
    enum Role {
        MarkRole = Qt::UserRole, //!< a ReportMark as int; None while there is none
        SentenceRole,            //!< the one below the name
        ShareRole,               //!< how much is read, 0 to 1; -1 when it is not being read
        NodeRole,                //!< 0: the vehicle as a whole
    };

    /*! \a session must outlive the model. */
    explicit ComponentModel(CheckupSession *session, QObject *parent = nullptr);

    /*! The row of a node; -1 when there is none. */
    int rowOf(quint8 nodeId) const;
    quint8 nodeAt(int row) const;

    /*! Texts in another language. */
    void retranslate();

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    struct Row
    {
        quint8 nodeId = 0;
        QString name;
        QString state;
        QString sentence;
        QString changes;
        ReportMark mark = ReportMark::None;
        qreal share = -1;
    };

    void rebuild();
    void fillFromRun();
    void fillFromRecord();
    Row rowFromRun(quint8 nodeId) const;
    void update(const QVector<quint8> &nodeIds);
    QString text(const Row &row, int column) const;

    CheckupSession *m_session;
    QVector<Row> m_rows;
};
