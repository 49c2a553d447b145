// SPDX-License-Identifier: MIT
#pragma once

#include "rowsmodel.h"
#include "watchlist.h"

#include <QDialog>
#include <QSortFilterProxyModel>

class CopyTable;
class LiveSession;
class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;

/*! Which values are to be watched: some of those that are known, or an object that a node is asked for. */
class AddValueDialog : public QDialog
{
    Q_OBJECT

public:
    /*! \a session must outlive the dialog. */
    explicit AddValueDialog(LiveSession *session, QWidget *parent = nullptr);

    /*! Those that are chosen, and the one that is typed. */
    QVector<WatchedItem> chosen() const;

private:
    void build();
    void buildKnown();
    QWidget *buildAsked();
    void showKnown();
    void showState();

    LiveSession *m_session;
    RowsModel m_known;
    QVector<WatchedItem> m_items; // of the rows
    QSortFilterProxyModel m_filtered;
    QLineEdit *m_search;
    CopyTable *m_table;
    QLabel *m_empty;
    QLineEdit *m_object;
    QSpinBox *m_period;
    QPushButton *m_add = nullptr;
};
